// The float loops for vectors of NUV_LANES floats, gathered in the table that the function
// NUV_KERNELS returns. Everything else here is the including source's own, so that no code made for
// one machine is ever linked into what another runs.
#include "Nuv/Utils/Kernels/Kernels.h"
#include "Nuv/Utils/Kernels/Columns.inl"

namespace nuv
{
namespace
{
constexpr NuvSizeT floatSize = sizeof(NuvFloat32);

/// The longest range that is walked across: past all vectors before the next step along them.
constexpr NuvSizeT maxAcross = 4 * Kernels::tile;

/// How many lanes are walked across side by side, so that no sum waits for another.
constexpr NuvSizeT maxSideBySide = lanes == 16 ? 4 : 2;

/// Past all vectors, `count` lanes of each from `i` on.
template <bool hasUpdate, NuvSizeT count>
NUV_LANES_INLINE void WalkAcross(const Walk& w, NuvSizeT i)
{
    Lanes update[count];
    Lanes sums[count];
    for (NuvSizeT k = 0; k != count; ++k)
    {
        update[k] = hasUpdate ? Load(w.update + i + k * lanes) : Lanes{};
        sums[k] = Lanes{};
    }
    for (NuvSizeT c = 0; c != w.count; ++c)
    {
        const Lanes multiplier = Spread(hasUpdate ? w.multipliers[c] : 0.0F);
        const Lanes x = Spread(w.x[c]);
        for (NuvSizeT k = 0; k != count; ++k)
        {
            NuvFloat32* const at = w.vectors[c] + i + k * lanes;
            Lanes elements = Load(at);
            if constexpr (hasUpdate)
            {
                elements = elements + multiplier * update[k];
                Store(at, elements);
            }
            sums[k] = sums[k] + x * elements;
        }
    }
    for (NuvSizeT k = 0; k != count; ++k)
        Store(w.sums + i + k * lanes, sums[k]);
}

template <bool hasUpdate>
void WalkAcrossAll(const Walk& w)
{
    NuvSizeT i = w.first;
    for (; w.last - i >= maxSideBySide * lanes; i += maxSideBySide * lanes)
        WalkAcross<hasUpdate, maxSideBySide>(w, i);
    if (w.last - i >= 2 * lanes)
    {
        WalkAcross<hasUpdate, 2>(w, i);
        i += 2 * lanes;
    }
    if (i != w.last)
        WalkAcross<hasUpdate, 1>(w, i);
}

/// The whole range, along a few vectors from the one at `from` on.
template <bool hasUpdate, NuvSizeT count>
void WalkAlong(const Walk& w, NuvSizeT from)
{
    NuvFloat32* at[count];
    Lanes spread[count];
    Lanes spreadX[count];
    for (NuvSizeT c = 0; c != count; ++c)
    {
        at[c] = w.vectors[from + c];
        spread[c] = Spread(hasUpdate ? w.multipliers[from + c] : 0.0F);
        spreadX[c] = Spread(w.x[from + c]);
    }
    const NuvFloat32* const atUpdate = w.update;
    NuvFloat32* const atSums = w.sums;
    const NuvSizeT last = w.last;
    const bool isNew = from == 0;
    for (NuvSizeT i = w.first; i != last; i += lanes)
    {
        const Lanes update = hasUpdate ? Load(atUpdate + i) : Lanes{};
        Lanes sums = isNew ? Lanes{} : Load(atSums + i);
        for (NuvSizeT c = 0; c != count; ++c)
        {
            Lanes elements = Load(at[c] + i);
            if constexpr (hasUpdate)
            {
                elements = elements + spread[c] * update;
                Store(at[c] + i, elements);
            }
            sums = sums + spreadX[c] * elements;
        }
        Store(atSums + i, sums);
    }
}

/// The whole range, along the vectors that are left from `from` on, at most `count`.
template <bool hasUpdate, NuvSizeT count>
void WalkAlongLast(const Walk& w, NuvSizeT from)
{
    if constexpr (count != 0)
    {
        if (w.count - from == count)
            WalkAlong<hasUpdate, count>(w, from);
        else
            WalkAlongLast<hasUpdate, count - 1>(w, from);
    }
}

template <bool hasUpdate>
void WalkAll(const Walk& w)
{
    const bool isShort = w.last - w.first <= maxAcross;
    if ((isShort && switches.across) || w.count == 0)
    {
        WalkAcrossAll<hasUpdate>(w);
        return;
    }
    NuvSizeT c = 0;
    for (; w.count - c >= vectorsAtOnce; c += vectorsAtOnce)
        WalkAlong<hasUpdate, vectorsAtOnce>(w, c);
    WalkAlongLast<hasUpdate, vectorsAtOnce - 1>(w, c);
}

void WalkVectors(const Walk* w)
{
    if (w->update)
        WalkAll<true>(*w);
    else
        WalkAll<false>(*w);
}

constexpr auto larger = [](const auto& x, const auto& y) { return LargerOf(x, y); };
constexpr auto smaller = [](const auto& x, const auto& y) { return SmallerOf(x, y); };

bool IsFinite(const NuvFloat32* x, NuvSizeT length)
{
    Lanes doubt = {};
    for (NuvSizeT i = 0; i != length; i += lanes)
        doubt = doubt + Load(x + i) * Spread(0.0F);
    return AreZero(doubt);
}

bool FormEta(const NuvFloat32* direction, NuvFloat32 reciprocal, NuvFloat32* eta, NuvSizeT length)
{
    const Lanes spread = Spread(reciprocal);
    Lanes doubt = {};
    for (NuvSizeT i = 0; i != length; i += lanes)
    {
        const Lanes etaLanes = Spread(0.0F) - Load(direction + i) * spread;
        doubt = doubt + etaLanes * Spread(0.0F);
        Store(eta + i, etaLanes);
    }
    return AreZero(doubt);
}

Choice FindLargest(const NuvFloat32* costs, const NuvFloat32* sums, const NuvUint* numbers,
                   NuvFloat32* differences, NuvSizeT length)
{
    Lanes best = {};
    for (NuvSizeT i = 0; i != length; i += lanes)
    {
        const Lanes difference = Load(costs + i) - Load(sums + i);
        Store(differences + i, difference);
        best = LargerOf(difference, best);
    }
    const NuvFloat32 largest = std::bit_cast<NuvFloat32>(Merge(best, larger));
    if (largest == 0.0F)
        return {largest, 0};
    UintLanes last = {};
    for (NuvSizeT i = 0; i != length; i += lanes)
    {
        const UintLanes found =
            Load(differences + i) == Spread(largest) ? LoadAs<UintLanes>(numbers + i) : UintLanes{};
        last = LargerOf(found, last);
    }
    return {largest, Merge(last, larger)};
}

Choice FindSmallestRatio(const NuvFloat32* values, const NuvFloat32* direction, NuvFloat32* ratios,
                         NuvSizeT length)
{
    const Lanes none = Spread(FLT_MAX);
    Lanes best = none;
    for (NuvSizeT i = 0; i != length; i += lanes)
    {
        const Lanes decrease = Load(direction + i);
        const Lanes ratio = decrease > Spread(0.0F) ? Load(values + i) / decrease : none;
        Store(ratios + i, ratio);
        best = SmallerOf(ratio, best);
    }
    const NuvFloat32 smallest = std::bit_cast<NuvFloat32>(Merge(best, smaller));
    if (smallest == FLT_MAX)
        return {smallest, 0};
    UintLanes first = SpreadUint(UINT32_MAX);
    for (NuvSizeT i = 0; i != length; i += lanes)
    {
        const UintLanes found = Load(ratios + i) == Spread(smallest)
                                    ? CountFrom(static_cast<NuvUint>(i))
                                    : SpreadUint(UINT32_MAX);
        first = SmallerOf(found, first);
    }
    return {smallest, Merge(first, smaller)};
}

/// The product of `numRows` rows of x with a stripe of y that is `numVectors` vectors wide.
template <class Vector, NuvSizeT numRows, NuvSizeT numVectors>
NUV_LANES_INLINE void MultiplyStripe(const NuvFloat32* x, const NuvFloat32* y, NuvFloat32* result,
                                     NuvSizeT inner, NuvSizeT cols)
{
    constexpr NuvSizeT width = sizeof(Vector) / floatSize;
    Vector sums[numRows][numVectors] = {};
    for (NuvSizeT k = 0; k != inner; ++k)
        for (NuvSizeT v = 0; v != numVectors; ++v)
        {
            const Vector elements = LoadAs<Vector>(y + k * cols + v * width);
            for (NuvSizeT r = 0; r != numRows; ++r)
                sums[r][v] = sums[r][v] + Spread<Vector>(x[r * inner + k]) * elements;
        }
    for (NuvSizeT r = 0; r != numRows; ++r)
        for (NuvSizeT v = 0; v != numVectors; ++v)
            memcpy(result + r * cols + v * width, &sums[r][v], sizeof(Vector));
}

template <NuvSizeT numRows>
void MultiplyRows(const NuvFloat32* x, const NuvFloat32* y, NuvFloat32* result, NuvSizeT inner,
                  NuvSizeT cols)
{
    NuvSizeT j = 0;
    for (; cols - j >= 2 * lanes; j += 2 * lanes)
        MultiplyStripe<Lanes, numRows, 2>(x, y + j, result + j, inner, cols);
    for (; cols - j >= lanes; j += lanes)
        MultiplyStripe<Lanes, numRows, 1>(x, y + j, result + j, inner, cols);
    for (; j != cols; ++j)
        MultiplyStripe<NuvFloat32, numRows, 1>(x, y + j, result + j, inner, cols);
}

void MultiplyMatrices(const NuvFloat32* x, const NuvFloat32* y, NuvFloat32* result, NuvSizeT rows,
                      NuvSizeT inner, NuvSizeT cols)
{
    if (inner == 0)
    {
        // Sums of nothing; the operands may be null, from which no address is counted.
        for (NuvSizeT i = 0; i != rows * cols; ++i)
            result[i] = 0.0F;
        return;
    }
    for (; rows >= 4; rows -= 4, x += 4 * inner, result += 4 * cols)
        MultiplyRows<4>(x, y, result, inner, cols);
    for (; rows != 0; --rows, x += inner, result += cols)
        MultiplyRows<1>(x, y, result, inner, cols);
}

void Divide(NuvFloat32* x, NuvFloat32 divisor, NuvSizeT length)
{
    const Lanes spread = Spread(divisor);
    NuvSizeT i = 0;
    for (; length - i >= lanes; i += lanes)
        Store(x + i, Load(x + i) / spread);
    for (; i != length; ++i)
        x[i] = x[i] / divisor;
}

void SubtractMultiple(NuvFloat32* x, const NuvFloat32* y, NuvFloat32 multiplier, NuvSizeT length)
{
    const Lanes spread = Spread(multiplier);
    NuvSizeT i = 0;
    for (; length - i >= lanes; i += lanes)
        Store(x + i, Load(x + i) - Load(y + i) * spread);
    for (; i != length; ++i)
        x[i] = x[i] - y[i] * multiplier;
}

constexpr Kernels kernels = {WalkVectors,      WalkColumns, FormEta,
                             IsFinite,         FindLargest, FindSmallestRatio,
                             MultiplyMatrices, Divide,      SubtractMultiple};
}  // namespace

const Kernels* NUV_KERNELS()
{
    return &kernels;
}
}  // namespace nuv
