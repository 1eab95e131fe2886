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

#include "Nuv/Utils/Batch/LaneUpdate.inl"

namespace nuv
{
namespace
{
/// Elements are picked by going over all of them, up to so many; by their index beyond.
constexpr NuvUint kMostPassed = kLanes == 16 ? 16 : 4;

/// The largest reduced cost that is not below 0, and its key, the larger one on ties; a NaN is
/// passed over.
struct Best
{
    Lanes reducedCost;
    UintLanes key;
};

template <bool isShared, NuvSizeT count>
NUV_LANES_INLINE void PriceColumns(const LaneState* s, NuvSizeT first, Lanes* largest)
{
    Lanes sums[count] = {};
    const NuvSizeT n = s->n;
    for (NuvSizeT i = 0; i != s->m; ++i)
    {
        const Lanes price = Load(s->prices + i * kLanes);
        for (NuvSizeT c = 0; c != count; ++c)
        {
            const NuvSizeT at = i * n + first + c;
            const Lanes a = isShared ? Broadcast(s->sharedA[at]) : Load(s->A + at * kLanes);
            sums[c] = sums[c] + price * a;
        }
    }
    for (NuvSizeT c = 0; c != count; ++c)
    {
        const Lanes difference = Load(s->costs + (first + c) * kLanes) - sums[c];
        Store(s->reducedCosts + (first + c) * kLanes, difference);
        *largest = LargerOf(difference, *largest);
    }
}

template <bool isShared>
struct PriceAll
{
    const LaneState* s;
    Lanes* largest;

    template <NuvSizeT count>
    NUV_LANES_INLINE void Do(NuvSizeT first) const
    {
        PriceColumns<isShared, count>(s, first, largest);
    }
};

/// Dantzig's rule over variables and slacks, whose reduced cost is the cost less the row's price.
Best ChooseEntering(const LaneState* s)
{
    Lanes largest = {};
    PriceAll<true> shared = {s, &largest};
    PriceAll<false> own = {s, &largest};
    if (s->sharedA)
        DoInBlocks(s->n, &shared);
    else
        DoInBlocks(s->n, &own);
    NuvFloat32* const ofSlacks = s->reducedCosts + static_cast<NuvSizeT>(s->n) * kLanes;
    for (NuvSizeT i = 0; i != s->m; ++i)
    {
        const Lanes difference =
            Load(s->costs + (s->n + i) * kLanes) - Load(s->prices + i * kLanes);
        Store(ofSlacks + i * kLanes, difference);
        largest = LargerOf(difference, largest);
    }
    UintLanes key = {};
    for (NuvSizeT j = 0; j != static_cast<NuvSizeT>(s->n) + s->m; ++j)
    {
        const Mask isIt = IsEqual(Load(s->reducedCosts + j * kLanes), largest);
        key = LargerOf(Select(isIt, LoadUint(s->keys + j * kLanes), UintLanes{}), key);
    }
    return {largest, key};
}

/// The column that enters in each lane, of A if there is one.
struct Entering
{
    UintLanes column;
    Mask isSlack;
    /// The column of A, or 0.
    UintLanes inA;
    /// The slack's row, or m.
    UintLanes slackRow;
};

Entering EnteringOf(const LaneState* s, const UintLanes& column)
{
    const Mask isSlack = IsLarger(column, BroadcastUint(s->n - 1));
    return {column, isSlack, Select(isSlack, UintLanes{}, column),
            Select(isSlack, column - s->n, BroadcastUint(s->m))};
}

/// Some rows of the entering columns, by going over all columns of A.
template <bool isShared>
struct PassColumns
{
    const LaneState* s;
    const Entering* entering;

    template <NuvSizeT count>
    NUV_LANES_INLINE void Do(NuvSizeT first) const
    {
        Lanes elements[count];
        for (NuvSizeT c = 0; c != count; ++c)
            elements[c] =
                Select(IsEqual(entering->slackRow, BroadcastUint(static_cast<NuvUint>(first + c))),
                       Broadcast(1.0F), Lanes{});
        for (NuvUint j = 0; j != s->n; ++j)
        {
            const Mask isIt = IsEqual(entering->column, BroadcastUint(j));
            for (NuvSizeT c = 0; c != count; ++c)
            {
                const NuvSizeT at = (first + c) * s->n + j;
                const Lanes a = isShared ? Broadcast(s->sharedA[at]) : Load(s->A + at * kLanes);
                elements[c] = Select(isIt, a, elements[c]);
            }
        }
        for (NuvSizeT c = 0; c != count; ++c)
            Store(s->column + (first + c) * kLanes, elements[c]);
    }
};

void GatherColumns(const LaneState* s, const Entering& entering)
{
    UintLanes index =
        s->sharedA ? entering.inA : entering.inA * static_cast<NuvUint>(kLanes) + CountFrom(0);
    const NuvFloat32* const base = s->sharedA ? s->sharedA : s->A;
    const NuvUint rowLength = s->sharedA ? s->n : s->n * static_cast<NuvUint>(kLanes);
    for (NuvUint i = 0; i != s->m; ++i, index = index + rowLength)
    {
        const Lanes unit =
            Select(IsEqual(entering.slackRow, BroadcastUint(i)), Broadcast(1.0F), Lanes{});
        Store(s->column + i * kLanes, Select(entering.isSlack, unit, Gather(base, index)));
    }
}

/// The column of [A I] that enters in each lane.
void CopyColumns(const LaneState* s, const Entering& entering)
{
    PassColumns<true> shared = {s, &entering};
    PassColumns<false> own = {s, &entering};
    if (s->n > kMostPassed)
        GatherColumns(s, entering);
    else if (s->sharedA)
        DoInBlocks(s->m, &shared);
    else
        DoInBlocks(s->m, &own);
}

/// The smallest ratio, the element of the direction that makes it and its row, the first one on
/// ties.
struct Smallest
{
    Lanes ratio;
    Lanes pivot;
    UintLanes row;
};

/// Some rows of the direction, and their ratios.
template <NuvSizeT count>
NUV_LANES_INLINE void TestRows(const LaneState* s, NuvSizeT first, Lanes* smallest)
{
    Lanes sums[count] = {};
    const NuvFloat32* const rows = s->inverse + first * s->m * kLanes;
    for (NuvSizeT k = 0; k != s->m; ++k)
    {
        const Lanes a = Load(s->column + k * kLanes);
        for (NuvSizeT c = 0; c != count; ++c)
            sums[c] = sums[c] + Load(rows + (c * s->m + k) * kLanes) * a;
    }
    const Lanes none = Broadcast(FLT_MAX);
    for (NuvSizeT c = 0; c != count; ++c)
    {
        const NuvSizeT i = first + c;
        Store(s->direction + i * kLanes, sums[c]);
        const Mask isFalling = IsLarger(sums[c], Lanes{});
        const Lanes divisor = Select(isFalling, sums[c], Broadcast(1.0F));
        const Lanes ratio = Select(isFalling, Load(s->values + i * kLanes) / divisor, none);
        Store(s->ratios + i * kLanes, ratio);
        *smallest = SmallerOf(ratio, *smallest);
    }
}

struct TestAll
{
    const LaneState* s;
    Lanes* smallest;

    template <NuvSizeT count>
    NUV_LANES_INLINE void Do(NuvSizeT first) const
    {
        TestRows<count>(s, first, smallest);
    }
};

/// The ratio test; in Phase I the artificial variable goes before others of the same ratio.
Smallest ChooseLeaving(const LaneState* s)
{
    Lanes least = Broadcast(FLT_MAX);
    TestAll test = {s, &least};
    DoInBlocks(s->m, &test);
    Smallest smallest = {least, Broadcast(1.0F), UintLanes{}};
    for (NuvUint i = s->m; i-- != 0;)
    {
        const Mask isIt = IsEqual(Load(s->ratios + i * kLanes), least);
        smallest.row = Select(isIt, BroadcastUint(i), smallest.row);
        smallest.pivot = Select(isIt, Load(s->direction + i * kLanes), smallest.pivot);
    }
    if (!s->hasPhaseI)
        return smallest;
    const UintLanes artificialRows = LoadUint(s->artificialRows);
    const Mask isPhaseI = Not(IsEqual(artificialRows, BroadcastUint(s->m)));
    const UintLanes row = Select(isPhaseI, artificialRows, UintLanes{});
    const Lanes direction = Pick(s->direction, row);
    const Mask isTied = And(isPhaseI, IsEqual(Pick(s->ratios, row), least));
    smallest.row = Select(isTied, row, smallest.row);
    smallest.pivot = Select(isTied, direction, smallest.pivot);
    return smallest;
}

/// eta = 0 − d · p, and 1 − (d(r) − 1) · p in the row r that leaves, with p = 1 / d(r).
/// @return where it is finite; see FormEta in BasisInverse.cpp.
Mask FormEta(const LaneState* s, const UintLanes& rows, const Lanes& pivot)
{
    const Lanes reciprocal = Broadcast(1.0F) / pivot;
    const Lanes inRow = Broadcast(1.0F) - (pivot - Broadcast(1.0F)) * reciprocal;
    Lanes accumulator = {};
    for (NuvUint i = 0; i != s->m; ++i)
    {
        const Lanes eta = Broadcast(0.0F) - Load(s->direction + i * kLanes) * reciprocal;
        accumulator = accumulator + eta * Broadcast(0.0F);
        Store(s->eta + i * kLanes, Select(IsEqual(rows, BroadcastUint(i)), inRow, eta));
    }
    return IsEqual(accumulator, Lanes{});
}

/// Some elements of the row of the inverse that leaves, by going over all rows.
struct PassRows
{
    const LaneState* s;
    UintLanes rows;

    template <NuvSizeT count>
    NUV_LANES_INLINE void Do(NuvSizeT first) const
    {
        Lanes elements[count] = {};
        for (NuvUint i = 0; i != s->m; ++i)
        {
            const Mask isIt = IsEqual(rows, BroadcastUint(i));
            const NuvFloat32* const row =
                s->inverse + (static_cast<NuvSizeT>(i) * s->m + first) * kLanes;
            for (NuvSizeT c = 0; c != count; ++c)
                elements[c] = Select(isIt, Load(row + c * kLanes), elements[c]);
        }
        for (NuvSizeT c = 0; c != count; ++c)
            Store(s->multipliers + (first + c) * kLanes, elements[c]);
    }
};

/// Saves the row of the inverse that leaves and makes the update pending in the lanes with rows
/// below m; in others it adds 0.
void MakePending(LaneState* s, const UintLanes& rows, Mask isMade)
{
    StoreUint(s->rows, rows);
    if (s->m <= kMostPassed)
    {
        PassRows pass = {s, rows};
        DoInBlocks(s->m, &pass);
    }
    UintLanes index =
        Select(isMade, rows, UintLanes{}) * static_cast<NuvUint>(s->m * kLanes) + CountFrom(0);
    for (NuvUint k = 0; k != s->m; ++k, index = index + static_cast<NuvUint>(kLanes))
    {
        NuvFloat32* const eta = s->eta + k * kLanes;
        Store(eta, Select(isMade, Load(eta), Lanes{}));
        if (s->m > kMostPassed)
            Store(s->multipliers + k * kLanes, Select(isMade, Gather(s->inverse, index), Lanes{}));
    }
}

/// Exchanges the entering column with that of the leaving row, in the lanes with rows below m.
void Exchange(LaneState* s, const UintLanes& rows, const UintLanes& key, Mask isMade)
{
    // In other lanes none of the two exists.
    const UintLanes none = BroadcastUint(UINT32_MAX);
    const UintLanes entering = Select(isMade, key & kMaxKeyPart, none);
    Lanes enteringCost = {};
    for (NuvUint j = 0; j != s->n; ++j)
        enteringCost =
            Select(IsEqual(entering, BroadcastUint(j)), Load(s->costs + j * kLanes), enteringCost);
    UintLanes leaving = none;
    Lanes leavingCost = {};
    for (NuvUint i = 0; i != s->m; ++i)
    {
        const Mask isIt = IsEqual(rows, BroadcastUint(i));
        NuvUint* const basic = s->basic + i * kLanes;
        NuvFloat32* const cost = s->basicCosts + i * kLanes;
        leaving = Select(isIt, LoadUint(basic), leaving);
        leavingCost = Select(isIt, Load(cost), leavingCost);
        StoreUint(basic, Select(isIt, entering, LoadUint(basic)));
        Store(cost, Select(isIt, enteringCost, Load(cost)));
    }
    const UintLanes leavingKey = (key & ~kMaxKeyPart) | leaving;
    const Lanes basicCost = Broadcast(-std::numeric_limits<NuvFloat32>::infinity());
    for (NuvUint j = 0; j != s->n + s->m; ++j)
    {
        const Mask enters = IsEqual(entering, BroadcastUint(j));
        const Mask leaves = IsEqual(leaving, BroadcastUint(j));
        NuvFloat32* const cost = s->costs + j * kLanes;
        NuvUint* const keys = s->keys + j * kLanes;
        Store(cost, Select(leaves, leavingCost, Select(enters, basicCost, Load(cost))));
        StoreUint(keys, Select(leaves, leavingKey, LoadUint(keys)));
    }
    StoreUint(s->leaving, leaving);
    StoreUint(s->pivots, Select(isMade, LoadUint(s->pivots) + 1, LoadUint(s->pivots)));
}

/// Where `mask`, the end unless there is one already.
NUV_LANES_INLINE void EndWhere(Mask mask, LaneEnd end, UintLanes* ends)
{
    const Mask isFirst = And(mask, IsEqual(*ends, UintLanes{}));
    *ends = Select(isFirst, BroadcastUint(static_cast<NuvUint>(end)), *ends);
}

NuvUint Step(LaneState* s)
{
    UpdateAll(s);
    UintLanes ends = {};
    EndWhere(Not(AreValuesAndPricesFinite(s)), LaneEnd::NotFinite, &ends);
    const Best best = ChooseEntering(s);
    EndWhere(Not(IsLarger(best.reducedCost, Lanes{})), LaneEnd::Optimal, &ends);
    const Entering entering = EnteringOf(s, best.key & kMaxKeyPart);
    CopyColumns(s, entering);
    const Smallest smallest = ChooseLeaving(s);
    EndWhere(IsEqual(smallest.ratio, Broadcast(FLT_MAX)), LaneEnd::Unbounded, &ends);
    EndWhere(Not(FormEta(s, smallest.row, smallest.pivot)), LaneEnd::NotFinite, &ends);
    EndWhere(IsEqual(LoadUint(s->pivots), BroadcastUint(s->pivotLimit)), LaneEnd::Stopped, &ends);
    EndWhere(IsEqual(smallest.row, LoadUint(s->artificialRows)), LaneEnd::Feasible, &ends);
    const Mask isMade = And(MaskOf(s->isActive), IsEqual(ends, UintLanes{}));
    StoreUint(s->entering, entering.column);
    StoreUint(s->ends, ends);
    const UintLanes rows = Select(isMade, smallest.row, BroadcastUint(s->m));
    MakePending(s, rows, isMade);
    Exchange(s, rows, best.key, isMade);
    return BitsOf(And(MaskOf(s->isActive), Not(isMade)));
}

constexpr LaneLoops kLoops = {static_cast<NuvUint>(kLanes), Step};
}  // namespace

const LaneLoops* NUV_LANE_LOOPS()
{
    return &kLoops;
}
}  // namespace nuv
