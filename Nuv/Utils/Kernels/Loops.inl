// The float loops for vectors of NUV_LANES floats, gathered in the table that the function
// NUV_KERNELS returns. Everything else here is the including source's own, so that no code made for
// one machine is ever linked into what another runs.
#include "Nuv/Utils/Kernels/Kernels.h"
#include "Nuv/Utils/Kernels/FusedProduct.inl"

namespace nuv
{
namespace
{
constexpr NuvSizeT kFloatSize = sizeof(NuvFloat32);

constexpr auto kLarger = [](const auto& x, const auto& y) { return LargerOf(x, y); };
constexpr auto kSmaller = [](const auto& x, const auto& y) { return SmallerOf(x, y); };

bool IsFinite(const NuvFloat32* x, NuvSizeT length)
{
    Lanes accumulator = {};
    for (NuvSizeT i = 0; i != length; i += kLanes)
        accumulator = accumulator + Load(x + i) * Broadcast(0.0F);
    return AreZero(accumulator);
}

bool FormEta(const NuvFloat32* direction, NuvUint row, NuvFloat32* eta, NuvSizeT length)
{
    const NuvFloat32 pivot = direction[row];
    const NuvFloat32 reciprocal = 1.0F / pivot;
    const Lanes inRow = Broadcast(1.0F - (pivot - 1.0F) * reciprocal);
    Lanes doubt = {};
    for (NuvSizeT i = 0; i != length; i += kLanes)
    {
        const Lanes etaLanes = Broadcast(0.0F) - Load(direction + i) * Broadcast(reciprocal);
        doubt = doubt + etaLanes * Broadcast(0.0F);
        const UintLanes elements = CountFrom(static_cast<NuvUint>(i));
        Store(eta + i, elements != BroadcastUint(row) ? etaLanes : inRow);
    }
    return AreZero(doubt);
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

/// The largest of the differences, one lane of `best` being it, and the largest of the numbers
/// where it stands.
NUV_LANES_INLINE Choice LastOf(const NuvFloat32* differences, const NuvUint* numbers,
                               NuvSizeT length, const Lanes& best)
{
    const NuvFloat32 largest = std::bit_cast<NuvFloat32>(Reduce(best, kLarger));
    // same bits: the smallest ratio and the largest difference are no NaN
    if (largest == 0.0F)
        return {largest, 0};
    // Most often it stands alone, and its index is enough.
    constexpr NuvSizeT kAtOnce = 8 * sizeof(RowBits);
    int count = 0;
    NuvSizeT index = 0;
    for (NuvSizeT first = 0; first < length; first += kAtOnce)
    {
        const NuvSizeT end = length - first < kAtOnce ? length - first : kAtOnce;
        RowBits found = 0;
        for (NuvSizeT i = 0; i != end; i += kLanes)
            found |= WhereEqual(Load(differences + first + i), Broadcast(largest)) << i;
        count += std::popcount(found);
        index = found != 0 ? first + static_cast<NuvSizeT>(std::countr_zero(found)) : index;
    }
    if (count == 1)
        return {largest, numbers[index]};
    UintLanes last = {};
    for (NuvSizeT i = 0; i != length; i += kLanes)
    {
        const UintLanes found = Load(differences + i) == Broadcast(largest)
                                    ? LoadAs<UintLanes>(numbers + i)
                                    : UintLanes{};
        last = LargerOf(found, last);
    }
    return {largest, Reduce(last, kLarger)};
}

Choice FindLargest(const NuvFloat32* costs, const NuvFloat32* sums, const NuvUint* numbers,
                   NuvFloat32* differences, NuvSizeT length)
{
    Lanes best = {};
    for (NuvSizeT i = 0; i != length; i += kLanes)
    {
        const Lanes difference = Load(costs + i) - Load(sums + i);
        Store(differences + i, difference);
        best = LargerOf(difference, best);
    }
    return LastOf(differences, numbers, length, best);
}

NUV_LANES_INLINE Lanes RatioOf(const Lanes& value, const Lanes& decrease)
{
    return decrease > Broadcast(0.0F) ? value / decrease : Broadcast(FLT_MAX);
}

/// The smallest of the ratios, one lane of `best` being it, and the first index where it stands.
NUV_LANES_INLINE Choice FirstOf(const NuvFloat32* ratios, const Lanes& best)
{
    const NuvFloat32 smallest = std::bit_cast<NuvFloat32>(Reduce(best, kSmaller));
    // same bits: the smallest ratio and the largest difference are no NaN; beside FLT_MAX an index
    // says nothing
    if (smallest == FLT_MAX)
        return {smallest, 0};
    for (NuvSizeT i = 0;; i += kLanes)
        if (const RowBits found = WhereEqual(Load(ratios + i), Broadcast(smallest)))
            return {smallest,
                    static_cast<NuvUint>(i) + static_cast<NuvUint>(std::countr_zero(found))};
}

Choice FindSmallestRatio(const NuvFloat32* values, const NuvFloat32* direction, NuvFloat32* ratios,
                         NuvSizeT length)
{
    Lanes best = Broadcast(FLT_MAX);
    for (NuvSizeT i = 0; i != length; i += kLanes)
    {
        const Lanes ratio = RatioOf(Load(values + i), Load(direction + i));
        Store(ratios + i, ratio);
        best = SmallerOf(ratio, best);
    }
    return FirstOf(ratios, best);
}
}  // namespace
}  // namespace nuv

#include "Nuv/Utils/Kernels/SmallSteps.inl"
#include "Nuv/Utils/Kernels/SmallUpdate.inl"

namespace nuv
{
namespace
{
/// The product of `numRows` rows of x with a stripe of y that is `numVectors` vectors wide.
template <class Vector, NuvSizeT numRows, NuvSizeT numVectors>
NUV_LANES_INLINE void MultiplyStripe(const NuvFloat32* x, const NuvFloat32* y, NuvFloat32* result,
                                     NuvSizeT inner, NuvSizeT cols)
{
    constexpr NuvSizeT kWidth = sizeof(Vector) / kFloatSize;
    Vector sums[numRows][numVectors] = {};
    for (NuvSizeT k = 0; k != inner; ++k)
        for (NuvSizeT v = 0; v != numVectors; ++v)
        {
            const Vector elements = LoadAs<Vector>(y + k * cols + v * kWidth);
            for (NuvSizeT r = 0; r != numRows; ++r)
                sums[r][v] = sums[r][v] + Broadcast<Vector>(x[r * inner + k]) * elements;
        }
    for (NuvSizeT r = 0; r != numRows; ++r)
        for (NuvSizeT v = 0; v != numVectors; ++v)
            memcpy(result + r * cols + v * kWidth, &sums[r][v], sizeof(Vector));
}

template <NuvSizeT numRows>
void MultiplyRows(const NuvFloat32* x, const NuvFloat32* y, NuvFloat32* result, NuvSizeT inner,
                  NuvSizeT cols)
{
    NuvSizeT j = 0;
    // same bits: how many lanes are taken at a time is a choice of time
    for (; cols - j >= 2 * kLanes; j += 2 * kLanes)
        MultiplyStripe<Lanes, numRows, 2>(x, y + j, result + j, inner, cols);
    // same bits: how many lanes are taken at a time is a choice of time
    for (; cols - j >= kLanes; j += kLanes)
        MultiplyStripe<Lanes, numRows, 1>(x, y + j, result + j, inner, cols);
    for (; j != cols; ++j)
        MultiplyStripe<NuvFloat32, numRows, 1>(x, y + j, result + j, inner, cols);
}

void MultiplyMatrices(const NuvFloat32* x, const NuvFloat32* y, NuvFloat32* result, NuvSizeT rows,
                      NuvSizeT inner, NuvSizeT cols)
{
    // same bits: sums of nothing come out of the loops as well
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
    const Lanes broadcast = Broadcast(divisor);
    NuvSizeT i = 0;
    for (; length - i >= kLanes; i += kLanes)
        Store(x + i, Load(x + i) / broadcast);
    for (; i != length; ++i)
        x[i] = x[i] / divisor;
}

void SubtractMultiple(NuvFloat32* x, const NuvFloat32* y, NuvFloat32 multiplier, NuvSizeT length)
{
    const Lanes broadcast = Broadcast(multiplier);
    NuvSizeT i = 0;
    for (; length - i >= kLanes; i += kLanes)
        Store(x + i, Load(x + i) - Load(y + i) * broadcast);
    for (; i != length; ++i)
        x[i] = x[i] - y[i] * multiplier;
}

constexpr Kernels kKernels = {UpdateAndMultiply, StartSmall,       UpdateSmall, PriceSmall,
                              TestSmall,         FormEta,          IsFinite,    FindLargest,
                              FindSmallestRatio, MultiplyMatrices, Divide,      SubtractMultiple};
}  // namespace

const Kernels* NUV_KERNELS()
{
    return &kKernels;
}
}  // namespace nuv
