// What happens to single lanes between the steps of all: problems that come and go, and bases that
// Phase I hands to Phase II.
#include "Nuv/Utils/Batch/LaneQueue.h"

#include <float.h>

#include <bit>
#include <initializer_list>
#include <limits>

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
constexpr NuvUint kIsTrue = UINT32_MAX;
constexpr NuvFloat32 kBasicCost = -std::numeric_limits<NuvFloat32>::infinity();

template <NuvSizeT lanes>
void SpreadBy(const NuvFloat32* from, NuvSizeT count, NuvFloat32* to)
{
    constexpr NuvSizeT kAtOnce = 8;
    for (; count >= kAtOnce; count -= kAtOnce, from += kAtOnce, to += kAtOnce * lanes)
        for (NuvSizeT k = 0; k != kAtOnce; ++k)
            to[k * lanes] = from[k];
    for (NuvSizeT k = 0; k != count; ++k)
        to[k * lanes] = from[k];
}

/// Copies an array into a lane.
void Spread(const NuvFloat32* from, NuvSizeT count, NuvFloat32* to, NuvSizeT lanes)
{
    switch (lanes)
    {
    case 16:
        return SpreadBy<16>(from, count, to);
    case 8:
        return SpreadBy<8>(from, count, to);
    case 4:
        return SpreadBy<4>(from, count, to);
    default:
        return SpreadBy<1>(from, count, to);
    }
}

/// The row of the most negative right-hand side, the first one on ties, or m without one.
NuvUint MostNegativeRow(const NuvFloat32* b, NuvUint m)
{
    NuvUint numNegative = 0;
    for (NuvUint i = 0; i != m; ++i)
        numNegative += b[i] < 0.0F ? 1 : 0;
    if (numNegative == 0)
        return m;
    NuvFloat32 smallest = FLT_MAX;
    NuvUint row = m;
    for (NuvUint i = 0; i != m; ++i)
    {
        if (!(smallest > b[i]))
            continue;
        row = i;
        smallest = b[i];
    }
    return row;
}

/// Has the next step begin with the slack basis of Phase II.
void StartPhaseII(LaneQueue* x, NuvUint lane)
{
    LaneState* const s = &x->state;
    Spread(DataOf(x->batch, x->problems[lane]).c, s->n, s->costs + lane, s->lanes);
    s->artificialRows[lane] = s->m;
    s->isKept[lane] = 0;
    s->hasFresh = true;
}

/// Has the next step begin with the basis after the forced pivot of Phase I.
void StartPhaseI(LaneQueue* x, NuvUint lane, NuvUint row)
{
    LaneState* const s = &x->state;
    s->artificialRows[lane] = row;
    s->isKept[lane] = 0;
    s->hasFresh = true;
    ++s->pivots[lane];
    ++x->numPhaseI;
    if (BatchTrace* const trace = x->single->trace)
        trace->onPivot(trace, x->problems[lane], 1, 0, s->n + row + 1);
}

/// Puts the next problem into a lane, or leaves it idle.
void Refill(LaneQueue* x, NuvUint lane)
{
    LaneState* const s = &x->state;
    s->isActive[lane] = x->next != x->last ? kIsTrue : 0;
    if (x->next == x->last)
        return;
    const NuvSizeT problem = x->next++;
    x->problems[lane] = problem;
    s->pivots[lane] = 0;
    const BatchData data = DataOf(x->batch, problem);
    if (!s->sharedA)
        Spread(data.A, static_cast<NuvSizeT>(s->m) * s->n, s->A + lane, s->lanes);
    Spread(data.b, s->m, s->b + lane, s->lanes);
    const NuvUint row = MostNegativeRow(data.b, s->m);
    if (row == s->m)
        StartPhaseII(x, lane);
    else
        StartPhaseI(x, lane, row);
}

NuvFloat32 ObjectiveOf(const LaneState* s, NuvUint lane)
{
    NuvFloat32 objective = 0.0F;
    for (NuvSizeT i = 0; i != s->m; ++i)
        objective = objective + s->prices[i * s->lanes + lane] * s->b[i * s->lanes + lane];
    return objective;
}

void WriteOptimum(const LaneQueue* x, NuvUint lane)
{
    const LaneState* const s = &x->state;
    const BatchOptimum optimum = {ObjectiveOf(s, lane), s->basic + lane, s->values + lane,
                                  s->prices + lane,     s->lanes,        0};
    WriteOptimum(x->batch, x->problems[lane], s->pivots[lane], &optimum);
}

/// Takes the labels of Phase I's basis: the entering column in the row of the artificial variable,
/// and the positions above the one that this leaves closed up by one.
void TakeFeasibleLabels(LaneQueue* x, NuvUint lane)
{
    LaneState* const s = &x->state;
    const NuvSizeT lanes = s->lanes;
    const NuvFloat32* const c = DataOf(x->batch, x->problems[lane]).c;
    const NuvUint entering = s->entering[lane];
    const NuvUint position = s->keys[entering * lanes + lane] >> 16U;
    s->basic[s->artificialRows[lane] * lanes + lane] = entering;
    for (NuvUint j = 0; j != s->n + s->m; ++j)
    {
        NuvFloat32* const cost = s->costs + j * lanes + lane;
        NuvUint* const key = s->keys + j * lanes + lane;
        if (j == entering)
            *cost = kBasicCost;
        if (*cost == kBasicCost)
            continue;
        *cost = j < s->n ? c[j] : 0.0F;
        if (*key >> 16U > position)
            *key -= 1U << 16U;
    }
    for (NuvUint i = 0; i != s->m; ++i)
    {
        const NuvUint column = s->basic[i * lanes + lane];
        s->basicCosts[i * lanes + lane] = column < s->n ? c[column] : 0.0F;
        x->labels[i] = column + 1;
    }
    s->artificialRows[lane] = s->m;
}

/// Inverts the basis of the labels for the lane.
/// @return false when the inverse is not finite.
bool InvertBasis(LaneQueue* x, NuvUint lane)
{
    LaneState* const s = &x->state;
    const BatchData data = DataOf(x->batch, x->problems[lane]);
    const StandardForm form = {s->m, s->n, data.A, data.b, data.c, true, 0, s->n, false};
    if (!Invert(&x->inverse, &form, x->labels, x->zeros, &x->elimination))
        return false;
    NuvFloat32* to = s->inverse + lane;
    for (NuvUint i = 0; i != s->m; ++i)
        for (NuvUint k = 0; k != s->m; ++k, to += s->lanes)
            *to = EntryOf(&x->inverse, i, k);
    return true;
}

/// Goes on with a lane that is at the end of a phase.
/// @return whether there is more to do for its problem.
bool GoOn(LaneQueue* x, NuvUint lane)
{
    LaneState* const s = &x->state;
    const LaneEnd end = static_cast<LaneEnd>(s->ends[lane]);
    const bool isPhaseI = s->artificialRows[lane] != s->m;
    x->numPhaseI -= isPhaseI ? 1 : 0;
    if (end == LaneEnd::Optimal && isPhaseI && ObjectiveOf(s, lane) == 0.0F)
    {
        // By definition: an artificial variable that is basic at 0 leaves Phase II the first basis.
        StartPhaseII(x, lane);
        return true;
    }
    if (end != LaneEnd::Feasible)
        return false;
    ++s->pivots[lane];
    if (BatchTrace* const trace = x->single->trace)
        trace->onPivot(trace, x->problems[lane], 1, s->entering[lane] + 1, 0);
    TakeFeasibleLabels(x, lane);
    if (InvertBasis(x, lane))
        return true;
    s->ends[lane] = static_cast<NuvUint>(LaneEnd::NotFinite);
    return false;
}

/// Writes the answers of a lane's problem.
void Finish(LaneQueue* x, NuvUint lane, bool wasPhaseI)
{
    const NuvSizeT problem = x->problems[lane];
    const NuvUint pivots = x->state.pivots[lane];
    switch (static_cast<LaneEnd>(x->state.ends[lane]))
    {
    case LaneEnd::NotFinite:
        if (x->single->trace)
            x->single->trace->onPivot(x->single->trace, problem, 0, 0, 0);
        return Solve(x->single, problem);
    case LaneEnd::Unbounded:
        return WriteVerdict(x->batch, problem, pivots, NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded);
    case LaneEnd::Stopped:
        return WriteVerdict(x->batch, problem, pivots, NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped);
    default:
        break;
    }
    if (wasPhaseI)
        WriteVerdict(x->batch, problem, pivots, NUV_LINEARPROGRAMMINGRESULTTYPE_Infeasible);
    else
        WriteOptimum(x, lane);
}

void TracePivots(const LaneQueue* x, NuvUint ended)
{
    const LaneState* const s = &x->state;
    for (NuvUint lane = 0; lane != s->lanes; ++lane)
        if (s->isActive[lane] && (ended >> lane & 1U) == 0)
            x->single->trace->onPivot(x->single->trace, x->problems[lane],
                                      s->artificialRows[lane] != s->m ? 1 : 2,
                                      s->entering[lane] + 1, s->leaving[lane] + 1);
}

/// Takes the beginning of an array of floats, or of none, for another.
template <class T>
void TakeFrom(NuvFloat32** from, NuvSizeT count, T** array)
{
    *array = reinterpret_cast<T*>(*from);
    if (*from)
        *from += count;
}

/// Idle lanes compute with zeros.
void StartLanes(LaneQueue* x)
{
    LaneState* const s = &x->state;
    NuvMemZero(s->inverse, x->length * sizeof *s->inverse);
    s->pivotLimit = PivotLimitOf(x->batch);
    s->hasFresh = false;
    x->numPhaseI = 0;
    for (NuvUint lane = 0; lane != kMaxLanes; ++lane)
    {
        s->rows[lane] = s->m;
        s->isKept[lane] = kIsTrue;
        s->artificialRows[lane] = s->m;
        s->pivots[lane] = 0;
        s->isActive[lane] = 0;
    }
}
}  // namespace

bool FitsLanes(const NuvLinearProgrammingBatch* batch)
{
    const NuvSizeT m = batch->numConstraints;
    const NuvSizeT n = batch->numVars;
    constexpr NuvSizeT kMaxElements = INT32_MAX / kMaxLanes;
    return n + m < kMaxKeyPart && m * m <= kMaxElements && m * n <= kMaxElements;
}

void PlaceArrays(LaneQueue* x, WorkspaceLayout* layout)
{
    LaneState* const s = &x->state;
    s->lanes = x->loops->lanes;
    s->m = x->batch->numConstraints;
    s->n = x->batch->numVars;
    s->sharedA = x->batch->strideA == 0 ? x->batch->A : nullptr;
    const NuvSizeT lanes = s->lanes;
    const NuvSizeT m = s->m;
    const NuvSizeT n = s->n;
    // One array for all.
    NuvFloat32* arrays = nullptr;
    const NuvSizeT elements = m * m + (s->sharedA ? 0 : m * n) + 3 * (n + m) + 10 * m;
    x->length = elements * lanes;
    layout->Place(x->length, &arrays);
    TakeFrom(&arrays, m * m * lanes, &s->inverse);
    TakeFrom(&arrays, s->sharedA ? 0 : m * n * lanes, &s->A);
    TakeFrom(&arrays, (n + m) * lanes, &s->costs);
    TakeFrom(&arrays, (n + m) * lanes, &s->keys);
    TakeFrom(&arrays, (n + m) * lanes, &s->reducedCosts);
    TakeFrom(&arrays, m * lanes, &s->basic);
    for (NuvFloat32** const array : {&s->b, &s->basicCosts, &s->prices, &s->values, &s->column,
                                     &s->direction, &s->ratios, &s->eta, &s->multipliers})
        TakeFrom(&arrays, m * lanes, array);
    x->inverse.kernels = x->single->kernels;
    PlaceArrays(&x->inverse, s->m, 0, layout);
    layout->Place(m, &x->elimination.steps);
    layout->Place(m * PaddedLength(m), &x->elimination.multipliers);
    layout->Place(m, &x->labels);
    layout->Place(PaddedLength(m), &x->zeros);
}

void SolveRange(LaneQueue* x, NuvSizeT first, NuvSizeT last)
{
    LaneState* const s = &x->state;
    StartLanes(x);
    NuvMemZero(x->zeros, PaddedLength(s->m) * sizeof *x->zeros);
    x->next = first;
    x->last = last;
    for (NuvUint lane = 0; lane != s->lanes; ++lane)
        Refill(x, lane);
    NuvUint numActive = 0;
    for (NuvUint lane = 0; lane != s->lanes; ++lane)
        numActive += s->isActive[lane] ? 1 : 0;
    while (numActive != 0)
    {
        s->hasPhaseI = x->numPhaseI != 0;
        NuvUint ended = x->loops->step(s);
        if (x->single->trace)
            TracePivots(x, ended);
        for (; ended != 0; ended &= ended - 1)
        {
            const NuvUint lane = static_cast<NuvUint>(std::countr_zero(ended));
            const bool wasPhaseI = s->artificialRows[lane] != s->m;
            if (GoOn(x, lane))
                continue;
            Finish(x, lane, wasPhaseI);
            Refill(x, lane);
            numActive -= s->isActive[lane] ? 0 : 1;
        }
    }
}
}  // namespace nuv
