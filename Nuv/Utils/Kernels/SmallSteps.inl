// The steps of a pivot for few rows, each one pass whose sums wait in registers. Lanes.inl stands
// before this.
//
// Exactness: every sum runs in increasing index from +0. A term whose factor is ±0 is left out in
// the reduced costs and the direction, where the other factor is finite: it would add ±0.
#include <float.h>

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

/// A bit for each lane.
#if NUV_LANES == 16
NUV_LANES_INLINE RowBits NonzerosOf(const Lanes& x)
{
    return _mm512_cmp_ps_mask(x, Lanes{}, _CMP_NEQ_UQ);
}

NUV_LANES_INLINE RowBits WhereEqual(const Lanes& x, const Lanes& y)
{
    return _mm512_cmp_ps_mask(x, y, _CMP_EQ_OQ);
}
#elif NUV_LANES == 8
NUV_LANES_INLINE RowBits NonzerosOf(const Lanes& x)
{
    return static_cast<NuvUint>(_mm256_movemask_ps(_mm256_cmp_ps(x, Lanes{}, _CMP_NEQ_UQ)));
}

NUV_LANES_INLINE RowBits WhereEqual(const Lanes& x, const Lanes& y)
{
    return static_cast<NuvUint>(_mm256_movemask_ps(_mm256_cmp_ps(x, y, _CMP_EQ_OQ)));
}
#else
NUV_LANES_INLINE RowBits WhereEqual(const Lanes& x, const Lanes& y)
{
    NuvFloat32 a[kLanes];
    NuvFloat32 b[kLanes];
    memcpy(a, &x, sizeof x);
    memcpy(b, &y, sizeof y);
    RowBits bits = 0;
    for (NuvSizeT lane = 0; lane != kLanes; ++lane)
        bits |= static_cast<RowBits>(a[lane] == b[lane]) << lane;
    return bits;
}

NUV_LANES_INLINE RowBits NonzerosOf(const Lanes& x)
{
    constexpr RowBits kAll = (RowBits{1} << kLanes) - 1;
    return kAll & ~WhereEqual(x, Lanes{});
}
#endif

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

/// Some columns of A: what is past the end of a row belongs to columns that are padding, and these
/// never enter.
void CopyColumns(const SmallState* s, const NuvFloat32* A, NuvSizeT rowLength, NuvSizeT first)
{
    const NuvSizeT end = s->m * rowLength;
    UintLanes nonzeros[2] = {};
    for (NuvSizeT i = 0; i != s->m; ++i)
    {
        const NuvSizeT from = i * rowLength + first;
        NuvFloat32* const to = s->A + i * s->lengthOfA + first;
        const Lanes elements =
            from + kLanes <= end ? Load(A + from) : LoadSome(A + from, end > from ? end - from : 0);
        Store(to, elements);
        const UintLanes bit = BroadcastUint(NuvUint{1} << i % 32);
        UintLanes& bits = nonzeros[i / 32];
        bits = elements != Lanes{} ? bits | bit : bits;
    }
    memcpy(s->nonzerosOfA + first, nonzeros, sizeof nonzeros[0]);
    memcpy(s->nonzerosOfA + s->lengthOfA + first, nonzeros + 1, sizeof nonzeros[1]);
}

void CopySmall(const SmallState* s, const NuvFloat32* A, NuvSizeT rowLength)
{
    for (NuvSizeT first = 0; first != s->lengthOfA; first += kLanes)
        CopyColumns(s, A, rowLength, first);
}

/// Adds the pending update to both matrices and sums prices and values, which are independent of
/// each other, in the same pass.
template <bool hasUpdate>
struct SmallUpdate
{
    SmallState& s;
    NuvUint row;
    /// Sums of numbers times 0.
    Lanes doubt;

    template <NuvSizeT count>
    NUV_LANES_INLINE void Do(NuvSizeT first)
    {
        Lanes eta[count] = {};
        Lanes multipliers[count] = {};
        Lanes prices[count] = {};
        Lanes values[count] = {};
        UintLanes elements[count] = {};
        for (NuvSizeT v = 0; hasUpdate && v != count; ++v)
        {
            eta[v] = Load(s.eta + first + v * kLanes);
            multipliers[v] = Load(s.multipliers + first + v * kLanes);
            elements[v] = CountFrom(static_cast<NuvUint>(first + v * kLanes));
        }
        const UintLanes leaving = BroadcastUint(row);
        // Copies: for all that the compiler knows, a vector that is stored may change the record.
        const NuvFloat32* const costs = s.basicCosts;
        const NuvFloat32* const sides = s.b;
        const NuvFloat32* const etas = s.eta;
        const NuvFloat32* const formers = s.multipliers;
        const NuvSizeT m = s.m;
        const NuvSizeT stride = s.stride;
        NuvFloat32* inRow = s.rows + first;
        NuvFloat32* inColumn = s.columns + first;
        for (NuvSizeT l = 0; l != m; ++l, inRow += stride, inColumn += stride)
        {
            const Lanes cost = Broadcast(costs[l]);
            const Lanes side = Broadcast(sides[l]);
            const Lanes etaOfLine = Broadcast(hasUpdate ? etas[l] : 0.0F);
            const Lanes multiplier = Broadcast(hasUpdate ? formers[l] : 0.0F);
            for (NuvSizeT v = 0; v != count; ++v)
            {
                Lanes ofRow = Load(inRow + v * kLanes);
                Lanes ofColumn = Load(inColumn + v * kLanes);
                if constexpr (hasUpdate)
                {
                    // The leaving row was cleared; the columns are cleared of it here.
                    ofRow = ofRow + etaOfLine * multipliers[v];
                    ofColumn = (elements[v] != leaving ? ofColumn : Lanes{}) + multiplier * eta[v];
                    Store(inRow + v * kLanes, ofRow);
                    Store(inColumn + v * kLanes, ofColumn);
                }
                prices[v] = prices[v] + cost * ofRow;
                values[v] = values[v] + side * ofColumn;
            }
        }
        for (NuvSizeT v = 0; v != count; ++v)
        {
            Store(s.prices + first + v * kLanes, prices[v]);
            Store(s.values + first + v * kLanes, values[v]);
            s.nonzeroPrices |= NonzerosOf(prices[v]) << (first + v * kLanes);
            doubt = doubt + (prices[v] * Broadcast(0.0F) + values[v] * Broadcast(0.0F));
        }
    }
};

/// The same where most of the leaving row is ±0: the lines whose multiplier is ±0 stay as they are,
/// as adding ±0 changes no bit but the sign of a zero, which nothing shows. Rows that neither
/// change nor cost are left out.
struct SparseUpdate
{
    SmallState& s;
    NuvUint row;
    RowBits changedRows;
    RowBits changedColumns;
    Lanes doubt;

    template <NuvSizeT count>
    NUV_LANES_INLINE void Do(NuvSizeT first)
    {
        UpdateRows<count>(first);
        UpdateColumns<count>(first);
        Lanes values[count] = {};
        const NuvFloat32* const sides = s.b;
        const NuvFloat32* column = s.columns + first;
        const NuvSizeT m = s.m;
        for (NuvSizeT l = 0; l != m; ++l, column += s.stride)
            for (NuvSizeT v = 0; v != count; ++v)
                values[v] = values[v] + Broadcast(sides[l]) * Load(column + v * kLanes);
        for (NuvSizeT v = 0; v != count; ++v)
        {
            Store(s.values + first + v * kLanes, values[v]);
            doubt = doubt + values[v] * Broadcast(0.0F);
        }
    }

    template <NuvSizeT count>
    NUV_LANES_INLINE void UpdateRows(NuvSizeT first)
    {
        Lanes multipliers[count];
        Lanes prices[count] = {};
        for (NuvSizeT v = 0; v != count; ++v)
            multipliers[v] = Load(s.multipliers + first + v * kLanes);
        for (RowBits left = changedRows; left != 0; left &= left - 1)
        {
            const NuvSizeT l = static_cast<NuvSizeT>(std::countr_zero(left));
            const Lanes eta = Broadcast(s.eta[l]);
            const Lanes cost = Broadcast(s.basicCosts[l]);
            NuvFloat32* const line = s.rows + l * s.stride + first;
            for (NuvSizeT v = 0; v != count; ++v)
            {
                const Lanes part = Load(line + v * kLanes) + eta * multipliers[v];
                Store(line + v * kLanes, part);
                prices[v] = prices[v] + cost * part;
            }
        }
        for (NuvSizeT v = 0; v != count; ++v)
        {
            Store(s.prices + first + v * kLanes, prices[v]);
            s.nonzeroPrices |= NonzerosOf(prices[v]) << (first + v * kLanes);
            doubt = doubt + prices[v] * Broadcast(0.0F);
        }
    }

    template <NuvSizeT count>
    NUV_LANES_INLINE void UpdateColumns(NuvSizeT first)
    {
        Lanes eta[count];
        UintLanes elements[count];
        for (NuvSizeT v = 0; v != count; ++v)
        {
            eta[v] = Load(s.eta + first + v * kLanes);
            elements[v] = CountFrom(static_cast<NuvUint>(first + v * kLanes));
        }
        const UintLanes leaving = BroadcastUint(row);
        for (RowBits left = changedColumns; left != 0; left &= left - 1)
        {
            const NuvSizeT l = static_cast<NuvSizeT>(std::countr_zero(left));
            const Lanes multiplier = Broadcast(s.multipliers[l]);
            NuvFloat32* const line = s.columns + l * s.stride + first;
            for (NuvSizeT v = 0; v != count; ++v)
            {
                const Lanes former = Load(line + v * kLanes);
                Store(line + v * kLanes,
                      (elements[v] != leaving ? former : Lanes{}) + multiplier * eta[v]);
            }
        }
    }
};

/// Σ factors(k) · line(k) over the line's numbers that are not ±0.
NUV_LANES_INLINE NuvFloat32 SumOfNonzeros(const NuvFloat32* factors, const NuvFloat32* line,
                                          NuvSizeT length)
{
    NuvFloat32 sum = 0.0F;
    for (RowBits left = NonzerosOf(line, length); left != 0; left &= left - 1)
    {
        const NuvSizeT k = static_cast<NuvSizeT>(std::countr_zero(left));
        sum = sum + factors[k] * line[k];
    }
    return sum;
}

/// The update where it changes few rows and columns of the inverse. The others keep their numbers
/// but for signs of zeros, and with them their values, whose terms are the same, and their prices:
/// where the multiplier is ±0, so is the element in the leaving row, before and after, whatever
/// that row costs.
bool UpdateFew(SmallState* s, NuvUint row, RowBits changedRows, RowBits changedColumns)
{
    for (RowBits left = changedRows; left != 0; left &= left - 1)
    {
        const NuvSizeT i = static_cast<NuvSizeT>(std::countr_zero(left));
        NuvFloat32* const line = s->rows + i * s->stride;
        const Lanes eta = Broadcast(s->eta[i]);
        for (NuvSizeT k = 0; k != s->stride; k += kLanes)
            Store(line + k, Load(line + k) + eta * Load(s->multipliers + k));
    }
    const UintLanes leaving = BroadcastUint(row);
    for (RowBits left = changedColumns; left != 0; left &= left - 1)
    {
        const NuvSizeT k = static_cast<NuvSizeT>(std::countr_zero(left));
        NuvFloat32* const line = s->columns + k * s->stride;
        const Lanes multiplier = Broadcast(s->multipliers[k]);
        for (NuvSizeT i = 0; i != s->stride; i += kLanes)
        {
            const Lanes former =
                CountFrom(static_cast<NuvUint>(i)) != leaving ? Load(line + i) : Lanes{};
            Store(line + i, former + multiplier * Load(s->eta + i));
        }
    }
    NuvFloat32 doubt = 0.0F;
    for (RowBits left = changedColumns; left != 0; left &= left - 1)
    {
        const NuvSizeT k = static_cast<NuvSizeT>(std::countr_zero(left));
        const NuvFloat32 price =
            SumOfNonzeros(s->basicCosts, s->columns + k * s->stride, s->stride);
        const RowBits bit = RowBits{1} << k;
        s->nonzeroPrices = price != 0.0F ? s->nonzeroPrices | bit : s->nonzeroPrices & ~bit;
        s->prices[k] = price;
        doubt = doubt + price * 0.0F;
    }
    for (RowBits left = changedRows; left != 0; left &= left - 1)
    {
        const NuvSizeT i = static_cast<NuvSizeT>(std::countr_zero(left));
        const NuvFloat32 value = SumOfNonzeros(s->b, s->rows + i * s->stride, s->stride);
        s->values[i] = value;
        doubt = doubt + value * 0.0F;
    }
    return doubt == 0.0F;
}

/// With fewer rows the zeros of the leaving row are not looked for.
constexpr NuvSizeT kFewestSparse = 17;

bool UpdateSmall(SmallState* s, NuvUint row)
{
    if (row == s->m)
    {
        s->nonzeroPrices = 0;
        SmallUpdate<false> sums = {*s, row, Lanes{}};
        DoInStripes<kVectorsAtOnce>(s->stride, 0, &sums);
        return AreZero(sums.doubt);
    }
    NuvFloat32* const leaving = s->rows + row * s->stride;
    for (NuvSizeT i = 0; i != s->stride; i += kLanes)
    {
        Store(s->multipliers + i, Load(leaving + i));
        Store(leaving + i, Lanes{});
    }
    if (s->m >= kFewestSparse)
    {
        const RowBits columns = NonzerosOf(s->multipliers, s->stride);
        const RowBits rows = NonzerosOf(s->eta, s->stride) | RowBits{1} << row;
        const NuvSizeT numColumns = static_cast<NuvSizeT>(std::popcount(columns));
        if (2 * (numColumns + static_cast<NuvSizeT>(std::popcount(rows))) < s->m)
            return UpdateFew(s, row, rows, columns);
        s->nonzeroPrices = 0;
        if (2 * numColumns < s->m)
        {
            const RowBits costed = NonzerosOf(s->basicCosts, s->stride);
            SparseUpdate update = {*s, row, rows | costed, columns, Lanes{}};
            DoInStripes<kVectorsAtOnce>(s->stride, 0, &update);
            return AreZero(update.doubt);
        }
    }
    s->nonzeroPrices = 0;
    SmallUpdate<true> update = {*s, row, Lanes{}};
    DoInStripes<kVectorsAtOnce>(s->stride, 0, &update);
    return AreZero(update.doubt);
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

bool FormSmallEta(const SmallState* s, NuvUint row)
{
    const NuvFloat32 pivot = s->direction[row];
    const NuvFloat32 reciprocal = 1.0F / pivot;
    const Lanes inRow = Broadcast(1.0F - (pivot - 1.0F) * reciprocal);
    Lanes doubt = {};
    for (NuvSizeT i = 0; i != s->stride; i += kLanes)
    {
        const Lanes eta = Broadcast(0.0F) - Load(s->direction + i) * Broadcast(reciprocal);
        doubt = doubt + eta * Broadcast(0.0F);
        const UintLanes elements = CountFrom(static_cast<NuvUint>(i));
        Store(s->eta + i, elements != BroadcastUint(row) ? eta : inRow);
    }
    return AreZero(doubt);
}
}  // namespace
}  // namespace nuv
