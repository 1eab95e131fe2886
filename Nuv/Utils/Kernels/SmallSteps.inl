// The steps of a pivot for few rows, each one pass whose sums wait in registers. Lanes.inl stands
// before this.
//
// Exactness: every sum runs in increasing index from +0. A term whose factor is ±0 is left out in
// the reduced costs and the direction, where the other factor is finite: it would add ±0.
#include <float.h>

#include <limits>

#include "Nuv/Utils/Kernels/SmallSteps.h"

namespace nuv
{
namespace
{
/// How many vectors of a line are taken at a time at most: two matrices want registers. A program
/// that must be small says how many columns are.
#ifdef NUV_COLUMNS_AT_ONCE
constexpr NuvSizeT kVectorsAtOnce = NUV_COLUMNS_AT_ONCE;
#else
constexpr NuvSizeT kVectorsAtOnce = kLanes == 16 ? 4 : 2;
#endif

/// Calls `operation.template Do<count>(first)` for all vectors of a line, `count` vectors from
/// element `first` on at a time.
template <NuvSizeT count, class Operation>
NUV_LANES_INLINE void DoInStripes(NuvSizeT length, NuvSizeT first, Operation* operation)
{
    for (; length - first >= count * kLanes; first += count * kLanes)
        operation->template Do<count>(first);
    if constexpr (count != 1)
        DoInStripes<count / 2>(length, first, operation);
}

/// A bit for each number that is not ±0.
NUV_LANES_INLINE RowBits NonzerosOf(const NuvFloat32* x, NuvSizeT length)
{
    RowBits bits = 0;
    for (NuvSizeT i = 0; i != length; i += kLanes)
        bits |= NonzerosOf(Load(x + i)) << i;
    return bits;
}

/// `count` numbers, fewer than there are lanes, and zeros behind them.
NUV_LANES_INLINE Lanes LoadSome(const NuvFloat32* from, NuvSizeT count)
{
#if NUV_LANES == 16
    return _mm512_maskz_loadu_ps(static_cast<__mmask16>((1U << count) - 1), from);
#elif NUV_LANES == 8
    const UintLanes wanted = CountFrom(0) < BroadcastUint(static_cast<NuvUint>(count));
    return _mm256_maskload_ps(from, (__m256i)wanted);
#else
    NuvFloat32 numbers[kLanes] = {};
    for (NuvSizeT j = 0; j != count; ++j)
        numbers[j] = from[j];
    return Load(numbers);
#endif
}

/// Some columns of A, in some rows: at most as many as half the bits are for. What is past the end
/// of a row belongs to columns that are padding, and these never enter.
struct CopyOfColumns
{
    const SmallState* s;
    const NuvFloat32* A;
    NuvSizeT rowLength;
    NuvSizeT first;
    /// Sums of numbers times 0.
    Lanes doubt;

    /// @return the non-zeros, a bit for each row.
    NUV_LANES_INLINE UintLanes Copy(NuvSizeT from, NuvSizeT to)
    {
        const NuvSizeT end = s->m * rowLength;
        NuvSizeT at = from * rowLength + first;
        NuvFloat32* copy = s->A + from * s->lengthOfA + first;
        UintLanes nonzeros = {};
        UintLanes bit = BroadcastUint(1);
        for (NuvSizeT i = from; i != to; ++i, at += rowLength, copy += s->lengthOfA)
        {
            const Lanes elements =
                at + kLanes <= end ? Load(A + at) : LoadSome(A + at, end > at ? end - at : 0);
            Store(copy, elements);
            doubt = doubt + elements * Broadcast(0.0F);
            nonzeros = elements != Lanes{} ? nonzeros | bit : nonzeros;
            bit = bit + bit;
        }
        return nonzeros;
    }
};

/// Makes the inverse the identity.
void StartInverse(SmallState* s)
{
    NuvSizeT at = 0;
    for (NuvUint i = 0; i != s->m; ++i)
        for (NuvUint k = 0; k != s->stride; k += static_cast<NuvUint>(kLanes), at += kLanes)
        {
            const Lanes line = CountFrom(k) == BroadcastUint(i) ? Broadcast(1.0F) : Lanes{};
            Store(s->columns + at, line);
            if (s->hasRows)
                Store(s->rows + at, line);
        }
    if (s->hasRows)
        return;
    for (NuvUint i = 0; i != s->stride; i += static_cast<NuvUint>(kLanes))
    {
        const UintLanes bits = BroadcastUint(1) << CountFrom(i % kHalfBits);
        StoreUint(s->patterns + i, i < kHalfBits ? bits : UintLanes{});
        StoreUint(s->patterns + s->stride + i, i < kHalfBits ? UintLanes{} : bits);
    }
}

/// Has the slacks basic, which cost nothing: prices and values are sums of zeros and one number.
void StartLabels(SmallState* s, const SmallStart* start)
{
    const Lanes basicCost = Broadcast(-std::numeric_limits<NuvFloat32>::infinity());
    for (NuvUint j = 0; j != s->lengthOfA; j += static_cast<NuvUint>(kLanes))
    {
        const NuvSizeT count = j < start->n ? start->n - j : 0;
        Lanes cost = {};
        if (start->c)
            cost = count >= kLanes ? Load(start->c + j) : LoadSome(start->c + j, count);
        const UintLanes index = CountFrom(j);
        const UintLanes position = index + start->firstPosition;
        const UintLanes end = BroadcastUint(start->n);
        Store(s->costs + j, index < end ? cost : basicCost);
        StoreUint(s->positions + j, index < end ? position : BroadcastUint(UINT32_MAX));
    }
    for (NuvSizeT i = 0; i != s->stride; i += kLanes)
    {
        Store(s->costs + s->lengthOfA + i, basicCost);
        StoreUint(s->positions + s->lengthOfA + i, BroadcastUint(UINT32_MAX));
        Store(s->values + i, Broadcast(0.0F) + Load(s->b + i));
    }
    s->nonzeroPrices = 0;
}

bool StartSmall(SmallState* s, const SmallStart* start)
{
    CopyOfColumns copy = {s, start->A, start->rowLength, 0, Lanes{}};
    const NuvSizeT half = s->m < kHalfBits ? s->m : kHalfBits;
    for (; copy.first != s->lengthOfA; copy.first += kLanes)
    {
        StoreUint(s->nonzerosOfA + copy.first, copy.Copy(0, half));
        StoreUint(s->nonzerosOfA + s->lengthOfA + copy.first, copy.Copy(half, s->m));
    }
    StartInverse(s);
    StartLabels(s, start);
    return AreZero(copy.doubt);
}

/// The reduced costs of the columns that are not slacks.
struct SmallPricing
{
    const SmallState& s;
    RowBits rows;
    Lanes largest;

    template <NuvSizeT count>
    NUV_LANES_INLINE void Do(NuvSizeT first)
    {
        Lanes sums[count] = {};
        for (RowBits left = rows; left != 0; left &= left - 1)
        {
            const NuvSizeT i = static_cast<NuvSizeT>(std::countr_zero(left));
            const Lanes price = Broadcast(s.prices[i]);
            const NuvFloat32* const row = s.A + i * s.lengthOfA + first;
            for (NuvSizeT v = 0; v != count; ++v)
                sums[v] = sums[v] + price * Load(row + v * kLanes);
        }
        for (NuvSizeT v = 0; v != count; ++v)
        {
            const Lanes difference = Load(s.costs + first + v * kLanes) - sums[v];
            Store(s.differences + first + v * kLanes, difference);
            largest = LargerOf(difference, largest);
        }
    }
};

Choice PriceSmall(const SmallState* s)
{
    SmallPricing pricing = {*s, s->nonzeroPrices, Lanes{}};
    DoInStripes<kVectorsAtOnce>(s->lengthOfA, 0, &pricing);
    // A slack's sum is +0 + price · 1: the price itself, which is a sum from +0 and never −0.
    const NuvSizeT length = s->lengthOfA + s->stride;
    for (NuvSizeT i = 0; i != s->stride; i += kLanes)
    {
        const Lanes difference = Load(s->costs + s->lengthOfA + i) - Load(s->prices + i);
        Store(s->differences + s->lengthOfA + i, difference);
        pricing.largest = LargerOf(difference, pricing.largest);
    }
    return LastOf(s->differences, s->positions, length, pricing.largest);
}

/// Directions and ratios of some rows.
struct SmallRatios
{
    const SmallState& s;
    Lanes smallest;

    template <NuvSizeT count>
    NUV_LANES_INLINE void Do(NuvSizeT first)
    {
        Lanes sums[count] = {};
        for (RowBits left = s.nonzerosOfColumn; left != 0; left &= left - 1)
        {
            const NuvSizeT k = static_cast<NuvSizeT>(std::countr_zero(left));
            const Lanes element = Broadcast(s.enteringColumn[k * s.stepOfColumn]);
            const NuvFloat32* const column = s.columns + k * s.stride + first;
            for (NuvSizeT v = 0; v != count; ++v)
                sums[v] = sums[v] + element * Load(column + v * kLanes);
        }
        for (NuvSizeT v = 0; v != count; ++v)
        {
            const NuvSizeT at = first + v * kLanes;
            Store(s.direction + at, sums[v]);
            const Lanes ratio = RatioOf(Load(s.values + at), sums[v]);
            Store(s.ratios + at, ratio);
            smallest = SmallerOf(ratio, smallest);
        }
    }
};

Choice TestSmall(const SmallState* s)
{
    SmallRatios ratios = {*s, Broadcast(FLT_MAX)};
    DoInStripes<kVectorsAtOnce>(s->stride, 0, &ratios);
    const NuvFloat32 smallest = std::bit_cast<NuvFloat32>(Reduce(ratios.smallest, kSmaller));
    RowBits bits = 0;
    for (NuvSizeT i = 0; i != s->stride; i += kLanes)
        bits |= WhereEqual(Load(s->ratios + i), Broadcast(smallest)) << i;
    return {smallest, static_cast<NuvUint>(std::countr_zero(bits))};
}

}  // namespace
}  // namespace nuv
