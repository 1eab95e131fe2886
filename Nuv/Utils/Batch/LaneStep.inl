// One iteration of the simplex method in NUV_LANES problems at once, offered by the function
// NUV_LANE_LOOPS. Everything here is the including source's own, so that no code made for one
// machine is ever linked into what another runs.
//
// Exactness: each lane forms every sum of the definition over all its terms, in increasing index
// from +0, and skips nothing; but for the eta matrix, all of which except one column is the
// identity's as long as its numbers are finite. Where one is not, the values, the prices or eta are
// not finite, and the lane's end says so: see BasisInverse.cpp for the proofs. Signs of zeros do
// not show, as everything ever enters sums that start at +0.
#include <float.h>

#include <limits>

#include "Nuv/Utils/Batch/LaneMasks.inl"
#include "Nuv/Utils/Batch/LaneState.h"

namespace nuv
{
namespace
{
/// How many columns or rows are taken at a time: as many as there are registers for.
constexpr NuvSizeT atOnce = lanes == 16 ? 8 : 4;

/// Adds the pending update to some columns of the inverse and sums their prices, and their
/// products with b to the values. Where the inverse is not kept it becomes 0: the update of a fresh
/// lane is.
template <NuvSizeT count>
NUV_LANES_INLINE void UpdateColumns(const LaneState* s, NuvSizeT first)
{
    const UintLanes rows = LoadUint(s->rows);
    const Mask isKept = MaskOf(s->isKept);
    Lanes multipliers[count];
    Lanes b[count];
    Lanes prices[count];
    for (NuvSizeT c = 0; c != count; ++c)
    {
        multipliers[c] = Load(s->multipliers + (first + c) * lanes);
        b[c] = Load(s->b + (first + c) * lanes);
        prices[c] = Lanes{};
    }
    NuvFloat32* elements = s->inverse + first * lanes;
    for (NuvSizeT i = 0; i != s->m; ++i, elements += s->m * lanes)
    {
        const Lanes eta = Load(s->eta + i * lanes);
        const Lanes cost = Load(s->basicCosts + i * lanes);
        // The leaving row is replaced: +0 + eta · multiplier.
        const Mask isAdded =
            And(isKept, Not(IsEqual(rows, BroadcastUint(static_cast<NuvUint>(i)))));
        Lanes value = first == 0 ? Lanes{} : Load(s->values + i * lanes);
        for (NuvSizeT c = 0; c != count; ++c)
        {
            const Lanes former = Select(isAdded, Load(elements + c * lanes), Lanes{});
            const Lanes element = former + eta * multipliers[c];
            Store(elements + c * lanes, element);
            prices[c] = prices[c] + cost * element;
            value = value + b[c] * element;
        }
        Store(s->values + i * lanes, value);
    }
    for (NuvSizeT c = 0; c != count; ++c)
        Store(s->prices + (first + c) * lanes, prices[c]);
}

template <NuvSizeT count>
void UpdateFrom(const LaneState* s, NuvSizeT first)
{
    for (; s->m - first >= count; first += count)
        UpdateColumns<count>(s, first);
    if constexpr (count != 1)
        UpdateFrom<count / 2>(s, first);
}

/// Makes the inverse of fresh lanes the identity, or that after the forced pivot of Phase I: in row
/// r the artificial variable is basic, and column r is −1 throughout. Then B⁻¹b is b − b(r), and
/// −b(r) in row r, and of the prices only that of row r is not 0: (−1) · (−1).
void StartFresh(LaneState* s)
{
    const Mask isFresh = Not(MaskOf(s->isKept));
    for (NuvSizeT i = 0; i != s->m; ++i)
    {
        NuvFloat32* const diagonal = s->inverse + i * (s->m + NuvSizeT{1}) * lanes;
        Store(diagonal, Select(isFresh, Broadcast(1.0F), Load(diagonal)));
        NuvFloat32* const value = s->values + i * lanes;
        Store(value, Select(isFresh, Load(s->b + i * lanes), Load(value)));
    }
    for (NuvSizeT lane = 0; lane != lanes; ++lane)
    {
        const NuvSizeT r = s->artificialRows[lane];
        if (s->isKept[lane] || r == s->m)
            continue;
        const NuvFloat32 most = s->b[r * lanes + lane];
        for (NuvSizeT i = 0; i != s->m; ++i)
        {
            s->inverse[(i * s->m + r) * lanes + lane] = -1.0F;
            NuvFloat32* const value = s->values + i * lanes + lane;
            *value = i == r ? -most : *value - most;
        }
        s->prices[r * lanes + lane] = 1.0F;
    }
}

Mask AreValuesAndPricesFinite(const LaneState* s)
{
    Lanes accumulator = {};
    for (NuvSizeT i = 0; i != s->m; ++i)
        accumulator = accumulator + (Load(s->values + i * lanes) * Broadcast(0.0F) +
                                     Load(s->prices + i * lanes) * Broadcast(0.0F));
    return IsEqual(accumulator, Lanes{});
}

/// The largest reduced cost that is not below 0, and its key, the larger one on ties; a NaN is
/// passed over.
struct Best
{
    Lanes reducedCost;
    UintLanes key;

    NUV_LANES_INLINE void Meet(const Lanes& other, const UintLanes& otherKey)
    {
        const Mask isTied = And(IsEqual(other, reducedCost), IsLarger(otherKey, key));
        const Mask isBetter = Or(IsLarger(other, reducedCost), isTied);
        reducedCost = Select(isBetter, other, reducedCost);
        key = Select(isBetter, otherKey, key);
    }
};

template <bool isShared, NuvSizeT count>
NUV_LANES_INLINE void PriceColumns(const LaneState* s, NuvSizeT first, Best* best)
{
    Lanes sums[count] = {};
    const NuvSizeT n = s->n;
    for (NuvSizeT i = 0; i != s->m; ++i)
    {
        const Lanes price = Load(s->prices + i * lanes);
        for (NuvSizeT c = 0; c != count; ++c)
        {
            const NuvSizeT at = i * n + first + c;
            const Lanes a = isShared ? Broadcast(s->sharedA[at]) : Load(s->A + at * lanes);
            sums[c] = sums[c] + price * a;
        }
    }
    for (NuvSizeT c = 0; c != count; ++c)
        best->Meet(Load(s->costs + (first + c) * lanes) - sums[c],
                   LoadUint(s->keys + (first + c) * lanes));
}

template <bool isShared, NuvSizeT count>
NUV_LANES_INLINE void PriceFrom(const LaneState* s, NuvSizeT first, Best* best)
{
    for (; s->n - first >= count; first += count)
        PriceColumns<isShared, count>(s, first, best);
    if constexpr (count != 1)
        PriceFrom<isShared, count / 2>(s, first, best);
}

/// Dantzig's rule over variables and slacks, whose reduced cost is the cost less the row's price.
Best ChooseEntering(const LaneState* s)
{
    Best best = {Lanes{}, UintLanes{}};
    if (s->sharedA)
        PriceFrom<true, atOnce>(s, 0, &best);
    else
        PriceFrom<false, atOnce>(s, 0, &best);
    for (NuvSizeT i = 0; i != s->m; ++i)
        best.Meet(Load(s->costs + (s->n + i) * lanes) - Load(s->prices + i * lanes),
                  LoadUint(s->keys + (s->n + i) * lanes));
    return best;
}

/// The column of [A I] that enters in each lane.
void CopyColumns(const LaneState* s, const UintLanes& entering)
{
    const Mask isSlack = IsLarger(entering, BroadcastUint(s->n - 1));
    const UintLanes column = Select(isSlack, UintLanes{}, entering);
    const UintLanes slackRow = Select(isSlack, entering - s->n, BroadcastUint(s->m));
    UintLanes index = s->sharedA ? column : column * static_cast<NuvUint>(lanes) + CountFrom(0);
    const NuvFloat32* const base = s->sharedA ? s->sharedA : s->A;
    const NuvUint rowLength = s->sharedA ? s->n : s->n * static_cast<NuvUint>(lanes);
    for (NuvUint i = 0; i != s->m; ++i, index = index + rowLength)
    {
        const Lanes unit = Select(IsEqual(slackRow, BroadcastUint(i)), Broadcast(1.0F), Lanes{});
        Store(s->column + i * lanes, Select(isSlack, unit, Gather(base, index)));
    }
}

/// The smallest ratio and its row, the first one on ties.
struct Smallest
{
    Lanes ratio;
    UintLanes row;
};

/// Some rows of the direction, and their ratios.
template <NuvSizeT count>
NUV_LANES_INLINE void TestRows(const LaneState* s, NuvSizeT first, Smallest* smallest)
{
    Lanes sums[count] = {};
    const NuvFloat32* const rows = s->inverse + first * s->m * lanes;
    for (NuvSizeT k = 0; k != s->m; ++k)
    {
        const Lanes a = Load(s->column + k * lanes);
        for (NuvSizeT c = 0; c != count; ++c)
            sums[c] = sums[c] + Load(rows + (c * s->m + k) * lanes) * a;
    }
    const Lanes none = Broadcast(FLT_MAX);
    for (NuvSizeT c = 0; c != count; ++c)
    {
        const NuvSizeT i = first + c;
        Store(s->direction + i * lanes, sums[c]);
        const Mask isFalling = IsLarger(sums[c], Lanes{});
        const Lanes divisor = Select(isFalling, sums[c], Broadcast(1.0F));
        const Lanes ratio = Select(isFalling, Load(s->values + i * lanes) / divisor, none);
        const Mask isSmaller = IsLarger(smallest->ratio, ratio);
        smallest->ratio = Select(isSmaller, ratio, smallest->ratio);
        smallest->row = Select(isSmaller, BroadcastUint(static_cast<NuvUint>(i)), smallest->row);
    }
}

template <NuvSizeT count>
NUV_LANES_INLINE void TestFrom(const LaneState* s, NuvSizeT first, Smallest* smallest)
{
    for (; s->m - first >= count; first += count)
        TestRows<count>(s, first, smallest);
    if constexpr (count != 1)
        TestFrom<count / 2>(s, first, smallest);
}

/// The ratio test; in Phase I the artificial variable goes before others of the same ratio.
Smallest ChooseLeaving(const LaneState* s)
{
    Smallest smallest = {Broadcast(FLT_MAX), UintLanes{}};
    TestFrom<atOnce>(s, 0, &smallest);
    if (!s->hasPhaseI)
        return smallest;
    const UintLanes artificialRows = LoadUint(s->artificialRows);
    const Mask isPhaseI = Not(IsEqual(artificialRows, BroadcastUint(s->m)));
    const UintLanes row = Select(isPhaseI, artificialRows, UintLanes{});
    const Lanes direction = Pick(s->direction, row);
    const Mask isFalling = And(isPhaseI, IsLarger(direction, Lanes{}));
    const Lanes ratio = Pick(s->values, row) / Select(isFalling, direction, Broadcast(1.0F));
    const Mask isTied = And(isFalling, IsEqual(ratio, smallest.ratio));
    smallest.row = Select(isTied, row, smallest.row);
    return smallest;
}

/// eta = 0 − d · p, and 1 − (d(r) − 1) · p in the row r that leaves, with p = 1 / d(r).
/// @return where it is finite; see FormEta in BasisInverse.cpp.
Mask FormEta(const LaneState* s, const UintLanes& rows)
{
    const Lanes pivot = Pick(s->direction, rows);
    const Lanes reciprocal = Broadcast(1.0F) / pivot;
    const Lanes inRow = Broadcast(1.0F) - (pivot - Broadcast(1.0F)) * reciprocal;
    Lanes accumulator = {};
    for (NuvUint i = 0; i != s->m; ++i)
    {
        const Lanes eta = Broadcast(0.0F) - Load(s->direction + i * lanes) * reciprocal;
        accumulator = accumulator + eta * Broadcast(0.0F);
        Store(s->eta + i * lanes, Select(IsEqual(rows, BroadcastUint(i)), inRow, eta));
    }
    return IsEqual(accumulator, Lanes{});
}

/// Saves the row of the inverse that leaves, and makes the update pending where `isMade`.
void MakePending(LaneState* s, const UintLanes& rows, Mask isMade)
{
    UintLanes index = rows * static_cast<NuvUint>(s->m * lanes) + CountFrom(0);
    for (NuvUint k = 0; k != s->m; ++k, index = index + static_cast<NuvUint>(lanes))
    {
        Store(s->multipliers + k * lanes, Select(isMade, Gather(s->inverse, index), Lanes{}));
        NuvFloat32* const eta = s->eta + k * lanes;
        Store(eta, Select(isMade, Load(eta), Lanes{}));
    }
    StoreUint(s->rows, Select(isMade, rows, BroadcastUint(s->m)));
}

/// Exchanges the entering column with that of the leaving row.
void Exchange(LaneState* s, NuvUint isMade, const NuvUint* keys)
{
    for (NuvSizeT lane = 0; lane != lanes; ++lane)
    {
        if (((isMade >> lane) & 1U) == 0)
            continue;
        const NuvSizeT row = s->rows[lane] * lanes + lane;
        const NuvUint entering = s->entering[lane];
        const NuvUint leaving = s->basic[row];
        const NuvFloat32 cost = s->basicCosts[row];
        NuvFloat32* const enteringCost = s->costs + entering * lanes + lane;
        s->basic[row] = entering;
        s->basicCosts[row] = *enteringCost;
        *enteringCost = -std::numeric_limits<NuvFloat32>::infinity();
        s->leaving[lane] = leaving;
        s->costs[leaving * lanes + lane] = cost;
        s->keys[leaving * lanes + lane] = (keys[lane] & ~maxKeyPart) | leaving;
        ++s->pivots[lane];
    }
}

/// Where `mask`, the end unless there is one already.
NUV_LANES_INLINE void EndWhere(Mask mask, LaneEnd end, UintLanes* ends)
{
    const Mask isFirst = And(mask, IsEqual(*ends, UintLanes{}));
    *ends = Select(isFirst, BroadcastUint(static_cast<NuvUint>(end)), *ends);
}

NuvUint Step(LaneState* s)
{
    UpdateFrom<atOnce>(s, 0);
    if (s->hasFresh)
        StartFresh(s);
    s->hasFresh = false;
    StoreUint(s->isKept, BroadcastUint(UINT32_MAX));
    UintLanes ends = {};
    EndWhere(Not(AreValuesAndPricesFinite(s)), LaneEnd::NotFinite, &ends);
    const Best best = ChooseEntering(s);
    EndWhere(Not(IsLarger(best.reducedCost, Lanes{})), LaneEnd::Optimal, &ends);
    const UintLanes entering = best.key & maxKeyPart;
    CopyColumns(s, entering);
    const Smallest smallest = ChooseLeaving(s);
    EndWhere(IsEqual(smallest.ratio, Broadcast(FLT_MAX)), LaneEnd::Unbounded, &ends);
    EndWhere(Not(FormEta(s, smallest.row)), LaneEnd::NotFinite, &ends);
    EndWhere(IsEqual(LoadUint(s->pivots), BroadcastUint(s->pivotLimit)), LaneEnd::Stopped, &ends);
    EndWhere(IsEqual(smallest.row, LoadUint(s->artificialRows)), LaneEnd::Feasible, &ends);
    const Mask isMade = And(MaskOf(s->isActive), IsEqual(ends, UintLanes{}));
    NuvUint keys[lanes];
    StoreUint(keys, best.key);
    StoreUint(s->entering, entering);
    StoreUint(s->ends, ends);
    MakePending(s, smallest.row, isMade);
    Exchange(s, BitsOf(isMade), keys);
    // The row in which Phase I would end.
    StoreUint(s->leaving, Select(isMade, LoadUint(s->leaving), smallest.row));
    return BitsOf(And(MaskOf(s->isActive), Not(isMade)));
}

constexpr LaneLoops loops = {static_cast<NuvUint>(lanes), Step};
}  // namespace

const LaneLoops* NUV_LANE_LOOPS()
{
    return &loops;
}
}  // namespace nuv
