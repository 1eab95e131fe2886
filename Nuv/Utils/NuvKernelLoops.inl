// The float loops for vectors of NUV_LANES floats, gathered in the table that the function
// NUV_KERNELS returns. Everything else here is the including source's own, so that no code made for
// one machine is ever linked into what another runs.
#include "Nuv/Utils/NuvKernels.h"
#include "Nuv/Utils/NuvLanes.inl"

namespace nuv
{
namespace
{
/// How many vectors are walked side by side: as many as there are registers for.
constexpr NuvSizeT maxAtOnce = lanes == 16 ? 8 : 4;

/// One walk along several vectors at once. The sums are formed vector by vector, which fixes their
/// order; `hasUpdate` first brings each vector up to date, `hasTwo` forms a second sum.
template <bool hasUpdate, bool hasTwo>
struct Walk
{
    NuvFloat32* const* vectors;
    const NuvFloat32* multipliers;
    const NuvFloat32* update;
    const NuvFloat32* x;
    const NuvFloat32* y;
    NuvFloat32* sumsX;
    NuvFloat32* sumsY;

    template <NuvSizeT count>
    void Along(NuvSizeT first, NuvSizeT last) const
    {
        NuvFloat32* at[count];
        NuvFloat32* const atX = sumsX;
        NuvFloat32* const atY = sumsY;
        const NuvFloat32* const atUpdate = update;
        Lanes spread[count];
        Lanes spreadX[count];
        Lanes spreadY[count];
        for (NuvSizeT c = 0; c != count; ++c)
        {
            at[c] = vectors[c];
            spread[c] = Spread(hasUpdate ? multipliers[c] : 0.0F);
            spreadX[c] = Spread(x[c]);
            spreadY[c] = Spread(hasTwo ? y[c] : 0.0F);
        }
        for (NuvSizeT i = first; i != last; i += lanes)
        {
            const Lanes updateLanes = hasUpdate ? Load(atUpdate + i) : Lanes{};
            Lanes sumX = Load(atX + i);
            Lanes sumY = hasTwo ? Load(atY + i) : Lanes{};
            for (NuvSizeT c = 0; c != count; ++c)
            {
                Lanes elements = Load(at[c] + i);
                if constexpr (hasUpdate)
                {
                    elements = elements + spread[c] * updateLanes;
                    Store(at[c] + i, elements);
                }
                sumX = sumX + spreadX[c] * elements;
                if constexpr (hasTwo)
                    sumY = sumY + spreadY[c] * elements;
            }
            Store(atX + i, sumX);
            if constexpr (hasTwo)
                Store(atY + i, sumY);
        }
    }

    template <NuvSizeT count>
    void Step(NuvSizeT first, NuvSizeT last)
    {
        Along<count>(first, last);
        vectors += count;
        multipliers += hasUpdate ? count : 0;
        x += count;
        y += hasTwo ? count : 0;
    }

    void Run(NuvSizeT count, NuvSizeT first, NuvSizeT last)
    {
        for (; count >= maxAtOnce; count -= maxAtOnce)
            Step<maxAtOnce>(first, last);
        if (count >= 4)
        {
            Step<4>(first, last);
            count -= 4;
        }
        if (count == 3)
            Step<3>(first, last);
        else if (count == 2)
            Step<2>(first, last);
        else if (count == 1)
            Step<1>(first, last);
    }
};

void AddMultiples(const NuvFloat32* const* vectors, const NuvFloat32* x, NuvSizeT count,
                  NuvFloat32* sums, NuvSizeT first, NuvSizeT last)
{
    Walk<false, false> walk = {
        const_cast<NuvFloat32* const*>(vectors), nullptr, nullptr, x, nullptr, sums, nullptr};
    walk.Run(count, first, last);
}

void AddMultiplesToTwo(const NuvFloat32* const* vectors, const NuvFloat32* x, const NuvFloat32* y,
                       NuvSizeT count, NuvFloat32* sumsX, NuvFloat32* sumsY, NuvSizeT first,
                       NuvSizeT last)
{
    Walk<false, true> walk = {
        const_cast<NuvFloat32* const*>(vectors), nullptr, nullptr, x, y, sumsX, sumsY};
    walk.Run(count, first, last);
}

void UpdateAndAdd(NuvFloat32* const* vectors, const NuvFloat32* multipliers,
                  const NuvFloat32* update, const NuvFloat32* x, NuvSizeT count, NuvFloat32* sums,
                  NuvSizeT first, NuvSizeT last)
{
    Walk<true, false> walk = {vectors, multipliers, update, x, nullptr, sums, nullptr};
    walk.Run(count, first, last);
}

void UpdateAndAddToTwo(NuvFloat32* const* vectors, const NuvFloat32* multipliers,
                       const NuvFloat32* update, const NuvFloat32* x, const NuvFloat32* y,
                       NuvSizeT count, NuvFloat32* sumsX, NuvFloat32* sumsY, NuvSizeT first,
                       NuvSizeT last)
{
    Walk<true, true> walk = {vectors, multipliers, update, x, y, sumsX, sumsY};
    walk.Run(count, first, last);
}

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

NuvFloat32 SubtractAndFindLargest(const NuvFloat32* costs, const NuvFloat32* sums,
                                  NuvFloat32* reducedCosts, NuvSizeT length)
{
    Lanes best = {};
    for (NuvSizeT i = 0; i != length; i += lanes)
    {
        const Lanes reduced = Load(costs + i) - Load(sums + i);
        Store(reducedCosts + i, reduced);
        best = LargerOf(reduced, best);
    }
    NuvFloat32 elements[lanes];
    Store(elements, best);
    NuvFloat32 largest = 0.0F;
    for (NuvSizeT k = 0; k != lanes; ++k)
        largest = elements[k] > largest ? elements[k] : largest;
    return largest;
}

NuvUint LargestWhereEqual(const NuvFloat32* x, NuvFloat32 value, const NuvUint* numbers,
                          NuvSizeT length)
{
    const Lanes wanted = Spread(value);
    UintLanes best = {};
    for (NuvSizeT i = 0; i != length; i += lanes)
    {
        const UintLanes found =
            Load(x + i) == wanted ? LoadAs<UintLanes>(numbers + i) : UintLanes{};
        best = found > best ? found : best;
    }
    NuvUint elements[lanes];
    memcpy(elements, &best, sizeof best);
    NuvUint largest = 0;
    for (NuvSizeT k = 0; k != lanes; ++k)
        largest = elements[k] > largest ? elements[k] : largest;
    return largest;
}

NuvFloat32 FormRatios(const NuvFloat32* values, const NuvFloat32* direction, NuvFloat32* ratios,
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
    NuvFloat32 elements[lanes];
    Store(elements, best);
    NuvFloat32 smallest = FLT_MAX;
    for (NuvSizeT k = 0; k != lanes; ++k)
        smallest = elements[k] < smallest ? elements[k] : smallest;
    return smallest;
}

/// The product of `numRows` rows of x with a stripe of y that is `numVectors` vectors wide.
template <class Vector, NuvSizeT numRows, NuvSizeT numVectors>
NUV_LANES_INLINE void MultiplyStripe(const NuvFloat32* x, const NuvFloat32* y, NuvFloat32* result,
                                     NuvSizeT inner, NuvSizeT cols)
{
    constexpr NuvSizeT width = sizeof(Vector) / sizeof(NuvFloat32);
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

constexpr Kernels kernels = {
    AddMultiples, AddMultiplesToTwo,      UpdateAndAdd,      UpdateAndAddToTwo, FormEta,
    IsFinite,     SubtractAndFindLargest, LargestWhereEqual, FormRatios,        MultiplyMatrices,
    Divide,       SubtractMultiple};
}  // namespace

const Kernels* NUV_KERNELS()
{
    return &kernels;
}
}  // namespace nuv
