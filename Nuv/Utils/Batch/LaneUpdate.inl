// How inverse, prices and values of NUV_LANES problems are brought up to date with the last pivot,
// or started from a first basis; LaneStep.inl has the proofs.
#include <limits>

#include "Nuv/Utils/Batch/LaneMasks.inl"
#include "Nuv/Utils/Batch/LaneState.h"

namespace nuv
{
namespace
{
/// How many columns or rows are taken at a time at most: as many as there are registers for.
constexpr NuvSizeT kAtOnce = kLanes == 16 ? 8 : 4;

/// Calls `operation.template Do<count>(first)` over 0 … length in blocks as equal as can be.
template <NuvSizeT count, class Operation>
NUV_LANES_INLINE void DoBlock(NuvSizeT size, NuvSizeT first, Operation* operation)
{
    if constexpr (count != 1)
        if (size < count)
            return DoBlock<count - 1>(size, first, operation);
    operation->template Do<count>(first);
}

template <class Operation>
NUV_LANES_INLINE void DoInBlocks(NuvSizeT length, Operation* operation)
{
    const NuvSizeT numBlocks = (length + kAtOnce - 1) / kAtOnce;
    const NuvSizeT size = length / numBlocks;
    const NuvSizeT numLonger = length - size * numBlocks;
    NuvSizeT first = 0;
    for (NuvSizeT block = 0; block != numBlocks; ++block)
    {
        const NuvSizeT count = size + (block < numLonger ? 1 : 0);
        DoBlock<kAtOnce>(count, first, operation);
        first += count;
    }
}

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
        multipliers[c] = Load(s->multipliers + (first + c) * kLanes);
        b[c] = Load(s->b + (first + c) * kLanes);
        prices[c] = Lanes{};
    }
    NuvFloat32* elements = s->inverse + first * kLanes;
    for (NuvSizeT i = 0; i != s->m; ++i, elements += s->m * kLanes)
    {
        const Lanes eta = Load(s->eta + i * kLanes);
        const Lanes cost = Load(s->basicCosts + i * kLanes);
        // The leaving row is replaced: +0 + eta · multiplier.
        const Mask isAdded =
            And(isKept, Not(IsEqual(rows, BroadcastUint(static_cast<NuvUint>(i)))));
        Lanes value = first == 0 ? Lanes{} : Load(s->values + i * kLanes);
        for (NuvSizeT c = 0; c != count; ++c)
        {
            const Lanes former = Select(isAdded, Load(elements + c * kLanes), Lanes{});
            const Lanes element = former + eta * multipliers[c];
            Store(elements + c * kLanes, element);
            prices[c] = prices[c] + cost * element;
            value = value + b[c] * element;
        }
        Store(s->values + i * kLanes, value);
    }
    for (NuvSizeT c = 0; c != count; ++c)
        Store(s->prices + (first + c) * kLanes, prices[c]);
}

struct Update
{
    const LaneState* s;

    template <NuvSizeT count>
    NUV_LANES_INLINE void Do(NuvSizeT first) const
    {
        UpdateColumns<count>(s, first);
    }
};

/// The first basis of fresh lanes: the slacks'. In Phase I it is that after the forced pivot, in
/// which the artificial variable stands in the place of the slack of row r, and that at position 0.
void StartLabels(const LaneState* s)
{
    const Mask isFresh = Not(MaskOf(s->isKept));
    const Lanes basicCost = Broadcast(-std::numeric_limits<NuvFloat32>::infinity());
    for (NuvUint j = 0; j != s->n; ++j)
    {
        NuvUint* const keys = s->keys + j * kLanes;
        StoreUint(keys, Select(isFresh, BroadcastUint(j << 16U | j), LoadUint(keys)));
    }
    for (NuvUint i = 0; i != s->m; ++i)
    {
        NuvFloat32* const cost = s->costs + (s->n + i) * kLanes;
        Store(cost, Select(isFresh, basicCost, Load(cost)));
        NuvUint* const basic = s->basic + i * kLanes;
        StoreUint(basic, Select(isFresh, BroadcastUint(s->n + i), LoadUint(basic)));
        NuvFloat32* const basicCosts = s->basicCosts + i * kLanes;
        Store(basicCosts, Select(isFresh, Lanes{}, Load(basicCosts)));
    }
}

void StartLabelsOfPhaseI(const LaneState* s, NuvSizeT lane)
{
    const NuvUint r = s->artificialRows[lane];
    for (NuvUint j = 0; j != s->n; ++j)
    {
        s->costs[j * kLanes + lane] = 0.0F;
        s->keys[j * kLanes + lane] = (j + 1) << 16U | j;
    }
    s->costs[(s->n + r) * kLanes + lane] = 0.0F;
    s->keys[(s->n + r) * kLanes + lane] = s->n + r;
    s->basic[r * kLanes + lane] = kArtificialColumn;
    s->basicCosts[r * kLanes + lane] = -1.0F;
}

bool IsFreshInPhaseI(const LaneState* s, NuvSizeT lane)
{
    return !s->isKept[lane] && s->artificialRows[lane] != s->m;
}

/// Makes the inverse of fresh lanes the identity.
void StartInverse(const LaneState* s)
{
    const Mask isFresh = Not(MaskOf(s->isKept));
    for (NuvSizeT i = 0; i != s->m; ++i)
    {
        NuvFloat32* const diagonal = s->inverse + i * (s->m + NuvSizeT{1}) * kLanes;
        Store(diagonal, Select(isFresh, Broadcast(1.0F), Load(diagonal)));
        NuvFloat32* const value = s->values + i * kLanes;
        Store(value, Select(isFresh, Load(s->b + i * kLanes), Load(value)));
    }
}

/// After the forced pivot of Phase I column r of the inverse is −1 throughout. B⁻¹b is b − b(r),
/// and −b(r) in row r, and of the prices only that of row r is not 0: (−1) · (−1).
void StartInverseOfPhaseI(const LaneState* s, NuvSizeT lane)
{
    const NuvSizeT r = s->artificialRows[lane];
    const NuvFloat32 most = s->b[r * kLanes + lane];
    for (NuvSizeT i = 0; i != s->m; ++i)
    {
        s->inverse[(i * s->m + r) * kLanes + lane] = -1.0F;
        NuvFloat32* const value = s->values + i * kLanes + lane;
        *value = i == r ? -most : *value - most;
    }
    s->prices[r * kLanes + lane] = 1.0F;
}

/// Brings the inverse, the prices and the values up to date.
void UpdateAll(LaneState* s)
{
    const bool hasFresh = s->hasFresh;
    if (hasFresh)
    {
        StartLabels(s);
        for (NuvSizeT lane = 0; lane != kLanes && s->hasPhaseI; ++lane)
            if (IsFreshInPhaseI(s, lane))
                StartLabelsOfPhaseI(s, lane);
    }
    Update update = {s};
    DoInBlocks(s->m, &update);
    if (!hasFresh)
        return;
    StartInverse(s);
    for (NuvSizeT lane = 0; lane != kLanes && s->hasPhaseI; ++lane)
        if (IsFreshInPhaseI(s, lane))
            StartInverseOfPhaseI(s, lane);
    s->hasFresh = false;
    StoreUint(s->isKept, BroadcastUint(UINT32_MAX));
}

Mask AreValuesAndPricesFinite(const LaneState* s)
{
    Lanes accumulator = {};
    for (NuvSizeT i = 0; i != s->m; ++i)
        accumulator = accumulator + (Load(s->values + i * kLanes) * Broadcast(0.0F) +
                                     Load(s->prices + i * kLanes) * Broadcast(0.0F));
    return IsEqual(accumulator, Lanes{});
}
}  // namespace
}  // namespace nuv
