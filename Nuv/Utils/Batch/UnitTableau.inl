// The tableau of UnitTableau.h, offered by the function NUV_UNIT_LOOPS. LaneMasks.inl stands
// before this.
#include <float.h>

#include <bit>

#include "Nuv/Utils/Batch/UnitTableau.h"

namespace nuv
{
namespace
{
/// A word of a pattern has a bit for each of so many columns.
constexpr NuvSizeT kColumnsOfWord = 32;
/// Half of what floats count up to: bounds are rounded themselves.
constexpr NuvFloat32 kLargestExact = 0x1p23F;

using UnitRows = uint64_t;

NUV_LANES_INLINE Lanes MagnitudeOf(const Lanes& x)
{
    return LargerOf(x, Lanes{} - x);
}

/// Whether all are integers, as far as they are below 2^22.
NUV_LANES_INLINE Mask AreIntegers(const Lanes& x)
{
    // From here on floats are integers.
    const Lanes shift = Broadcast(0x1.8p23F);
    return IsEqual((x + shift) - shift, x);
}

NUV_LANES_INLINE NuvFloat32 LargestOf(const Lanes& x)
{
    return std::bit_cast<NuvFloat32>(
        Reduce(x, [](const auto& y, const auto& z) { return LargerOf(y, z); }));
}

/// `count` numbers, or as many as there are lanes, and zeros behind them.
NUV_LANES_INLINE Lanes LoadUpTo(const NuvFloat32* from, NuvSizeT count)
{
    if (count >= kLanes)
        return Load(from);
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

constexpr NuvUint kAllLanes = static_cast<NuvUint>((NuvSizeT{1} << kLanes) - 1);

/// What is known of the numbers of a problem.
struct UnitBounds
{
    Lanes largestColumn;
    NuvUint areIntegers;
};

/// Numbers from a place on, and zeros from a count on.
NUV_LANES_INLINE Lanes LoadPadded(const NuvFloat32* from, NuvSizeT first, NuvSizeT count)
{
    return first < count ? LoadUpTo(from + first, count - first) : Lanes{};
}

/// Copies some columns of A, or of the padding behind it.
NUV_LANES_INLINE void CopyColumns(const UnitTableau* x, const NuvFloat32* A, NuvSizeT first,
                                  UnitBounds* bounds)
{
    NuvUint* const patterns = x->patterns + first / kColumnsOfWord * x->columnLength;
    const NuvSizeT shift = first % kColumnsOfWord;
    Lanes sums = {};
    for (NuvSizeT i = 0; i != x->m; ++i)
    {
        const Lanes elements = LoadPadded(A + i * x->n, first, x->n);
        Store(x->rows + i * x->rowLength + first, elements);
        sums = sums + MagnitudeOf(elements);
        bounds->areIntegers &= BitsOf(AreIntegers(elements));
        const NuvUint nonzeros = BitsOf(Not(IsEqual(elements, Lanes{}))) << shift;
        patterns[i] = shift == 0 ? nonzeros : patterns[i] | nonzeros;
    }
    bounds->largestColumn = LargerOf(sums, bounds->largestColumn);
}

/// Copies numbers, and zeros behind them.
/// @return the sum of their magnitudes.
NUV_LANES_INLINE NuvFloat32 CopyPadded(const NuvFloat32* from, NuvSizeT count, NuvFloat32* to,
                                       NuvSizeT length, UnitBounds* bounds)
{
    Lanes sums = {};
    for (NuvSizeT i = 0; i != length; i += kLanes)
    {
        const Lanes elements = LoadPadded(from, i, count);
        // A sum from +0, as the definition has it: never −0.
        Store(to + i, Lanes{} + elements);
        sums = sums + MagnitudeOf(elements);
        bounds->areIntegers &= BitsOf(AreIntegers(elements));
    }
    return std::bit_cast<NuvFloat32>(
        Reduce(sums, [](const auto& y, const auto& z) { return y + z; }));
}

/// Copies the problem, and starts from the slack basis.
/// @return how large an entry of the tableau may be, or less than 1 where none may.
NuvFloat32 LargestEntry(const UnitTableau* x, const BatchData* data)
{
    UnitBounds bounds = {Broadcast(1.0F), kAllLanes};
    for (NuvSizeT first = 0; first != x->rowLength; first += kLanes)
        CopyColumns(x, data->A, first, &bounds);
    const NuvFloat32 sides = CopyPadded(data->b, x->m, x->values, x->columnLength, &bounds);
    const NuvFloat32 costs = CopyPadded(data->c, x->n, x->costs, x->rowLength, &bounds);
    for (NuvUint j = 0; j != x->rowLength; j += static_cast<NuvUint>(kLanes))
        StoreUint(x->positions + j, CountFrom(j + 1));
    for (NuvUint i = 0; i != x->columnLength; i += static_cast<NuvUint>(kLanes))
        StoreUint(x->basic + i, CountFrom(x->n + 1 + i));
    NuvFloat32 least = 0.0F;
    for (NuvSizeT i = 0; i != x->m; ++i)
        least = SmallerOf(x->values[i], least);
    if (bounds.areIntegers != kAllLanes || least < 0.0F)
        return 0.0F;
    const NuvFloat32 largestColumn = LargestOf(bounds.largestColumn);
    const NuvFloat32 most = LargerOf(4.0F * largestColumn * LargerOf(costs, 1.0F), 2.0F * sides);
    return kLargestExact / most;
}

/// Dantzig's rule.
/// @return the position, or the number of columns.
NUV_LANES_INLINE NuvUint EnteringPosition(const UnitTableau* x)
{
    Lanes best = {};
    for (NuvSizeT j = 0; j != x->rowLength; j += kLanes)
        best = LargerOf(Load(x->costs + j), best);
    const NuvFloat32 largest = LargestOf(best);
    if (!(largest > 0.0F))
        return x->n;
    NuvUint position = 0;
    for (NuvUint j = 0; j != x->rowLength; j += static_cast<NuvUint>(kLanes))
    {
        const NuvUint found = BitsOf(IsEqual(Load(x->costs + j), Broadcast(largest)));
        position = found != 0 ? j + static_cast<NuvUint>(std::bit_width(found)) - 1 : position;
    }
    return position;
}

/// The rows where a column is not ±0.
NUV_LANES_INLINE UnitRows NonzerosOfColumn(const UnitTableau* x, NuvUint position)
{
    const NuvUint* const patterns = x->patterns + position / kColumnsOfWord * x->columnLength;
    const UintLanes bit = BroadcastUint(NuvUint{1} << position % kColumnsOfWord);
    UnitRows rows = 0;
    for (NuvSizeT i = 0; i != x->columnLength; i += kLanes)
        rows |= UnitRows{BitsOf(Not(IsEqual(LoadUint(patterns + i) & bit, UintLanes{})))} << i;
    return rows & (~UnitRows{0} >> (kMaxUnitRows - x->m));
}

/// The ratio test; keeps the direction.
/// @return the row, or m.
NUV_LANES_INLINE NuvUint LeavingRow(const UnitTableau* x, UnitRows nonzeros, NuvUint position)
{
    NuvFloat32 smallest = FLT_MAX;
    NuvUint row = x->m;
    for (; nonzeros != 0; nonzeros &= nonzeros - 1)
    {
        const NuvUint i = static_cast<NuvUint>(std::countr_zero(nonzeros));
        const NuvFloat32 decrease = x->rows[i * x->rowLength + position];
        x->direction[i] = decrease;
        const bool isFalling = decrease > 0.0F;
        const NuvFloat32 quotient = x->values[i] / (isFalling ? decrease : 1.0F);
        const NuvFloat32 ratio = isFalling ? quotient : FLT_MAX;
        row = ratio < smallest ? i : row;
        smallest = SmallerOf(ratio, smallest);
    }
    return row;
}

struct UnitPivot
{
    const UnitTableau& x;
    UnitRows others;  /// the rows that change but the leaving one
    NuvUint position;
    NuvUint row;
    NuvFloat32 cost;
    /// The largest magnitudes that were formed.
    Lanes largest;

    /// Some columns of one word.
    template <NuvSizeT count>
    NUV_LANES_INLINE void Do(NuvSizeT first)
    {
        NuvUint* const patterns = x.patterns + first / kColumnsOfWord * x.columnLength;
        const NuvFloat32* const leaving = x.rows + row * x.rowLength + first;
        Lanes multipliers[count];
        for (NuvSizeT v = 0; v != count; ++v)
        {
            const UintLanes columns = CountFrom(static_cast<NuvUint>(first + v * kLanes));
            multipliers[v] = Load(leaving + v * kLanes);
            // What stands in the entering column is d, and becomes −d = d − d · 2.
            multipliers[v] =
                Select(IsEqual(columns, BroadcastUint(position)), Broadcast(2.0F), multipliers[v]);
            NuvFloat32* const costs = x.costs + first + v * kLanes;
            Store(costs, Load(costs) - Broadcast(cost) * multipliers[v]);
        }
        for (UnitRows left = others; left != 0; left &= left - 1)
        {
            const NuvSizeT i = static_cast<NuvSizeT>(std::countr_zero(left));
            const Lanes factor = Broadcast(x.direction[i]);
            NuvFloat32* const elements = x.rows + i * x.rowLength + first;
            NuvUint nonzeros = 0;
            for (NuvSizeT v = 0; v != count; ++v)
            {
                const Lanes element = Load(elements + v * kLanes) - factor * multipliers[v];
                Store(elements + v * kLanes, element);
                largest = LargerOf(MagnitudeOf(element), largest);
                nonzeros |= BitsOf(Not(IsEqual(element, Lanes{}))) << v * kLanes;
            }
            patterns[i] = nonzeros;
        }
    }
};

/// Exchanges the variables, and brings the tableau up to date.
/// @return the largest magnitude that was formed.
NUV_LANES_INLINE NuvFloat32 MakePivot(const UnitTableau* x, UnitRows nonzeros, NuvUint position,
                                      NuvUint row)
{
    const NuvUint entering = x->positions[position];
    x->positions[position] = x->basic[row];
    x->basic[row] = entering;
    UnitPivot pivot = {*x,     nonzeros & ~(UnitRows{1} << row), position, row, x->costs[position],
                       Lanes{}};
    const NuvFloat32 value = x->values[row];
    for (UnitRows left = pivot.others; left != 0; left &= left - 1)
    {
        const NuvSizeT i = static_cast<NuvSizeT>(std::countr_zero(left));
        x->values[i] = x->values[i] - x->direction[i] * value;
    }
    NuvSizeT first = 0;
    for (; x->rowLength - first >= kColumnsOfWord; first += kColumnsOfWord)
        pivot.Do<kColumnsOfWord / kLanes>(first);
    if (first != x->rowLength)
        pivot.Do<kColumnsOfWord / 2 / kLanes>(first);
    return LargestOf(pivot.largest);
}

/// The prices of slacks that are nonbasic; all others are 0.
void FindPrices(const UnitTableau* x)
{
    for (NuvSizeT i = 0; i != x->m; ++i)
        x->prices[i] = 0.0F;
    for (NuvSizeT j = 0; j != x->n; ++j)
        if (x->positions[j] > x->n)
            x->prices[x->positions[j] - x->n - 1] = 0.0F - x->costs[j];
}

void StartUnit(UnitTableau* x, const BatchData* data)
{
    x->pivots = 0;
    x->largest = 1.0F;
    x->most = LargestEntry(x, data);
}

UnitEnd StepUnit(UnitTableau* shown)
{
    // A copy: for all that the compiler knows, a vector that is stored may change the record.
    const UnitTableau own = *shown;
    const UnitTableau* const x = &own;
    if (!(x->largest <= x->most))
        return UnitEnd::NotExact;
    const NuvUint position = EnteringPosition(x);
    if (position == x->n)
    {
        FindPrices(x);
        return UnitEnd::Optimal;
    }
    const UnitRows nonzeros = NonzerosOfColumn(x, position);
    const NuvUint row = LeavingRow(x, nonzeros, position);
    if (row == x->m)
        return UnitEnd::Unbounded;
    if (x->direction[row] != 1.0F)
        return UnitEnd::NotExact;
    if (x->pivots == x->pivotLimit)
        return UnitEnd::Stopped;
    if (x->trace)
        x->trace->onPivot(x->trace, x->problem, 2, x->positions[position], x->basic[row]);
    shown->pivots = x->pivots + 1;
    shown->largest = LargerOf(x->largest, MakePivot(x, nonzeros, position, row));
    return UnitEnd::None;
}

constexpr UnitLoops kUnitLoops = {StartUnit, StepUnit};
}  // namespace

const UnitLoops* NUV_UNIT_LOOPS()
{
    return &kUnitLoops;
}
}  // namespace nuv
