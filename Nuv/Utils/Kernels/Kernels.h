// The float loops, and nothing that knows linear programs. Each element is summed in a fixed order,
// each product rounded before it is added; loops run over independent results side by side, never
// inside a sum, so that all instruction sets give the same bits.
#ifndef NUV_UTILS_KERNELS_KERNELS_H
#define NUV_UTILS_KERNELS_KERNELS_H

#include "Nuv/Utils/Kernels/SmallSteps.h"
#include "Nuv/Utils/NuvTypes.h"

namespace nuv
{
/// A product of some columns of a matrix with a vector: the vector's elements by column, those of
/// the unit columns by number, where the others are 0, and the sums.
struct ColumnProduct
{
    const NuvFloat32* factors;      /// [count]
    const NuvFloat32* unitFactors;  /// [length], or null where there are no unit columns
    NuvFloat32* sums;               /// [length]
};

/// A rank-1 update of some columns, and a product or two with what they are then:
///     columns[c] += multipliers[c] · update      unless update is null,
///     product.sums = the matrix · a vector,
/// each sum from +0, in increasing number of the columns. With unitFactors the matrix is square,
/// and its columns that are not given are the identity's; without, it has these alone. All numbers
/// must be finite; where an update overflows, product.sums are not finite. The columns are only
/// written where there is an update.
struct FusedProduct
{
    NuvFloat32* const* columns;  /// [count], each [length]
    const NuvUint* numbers;      /// [count], increasing; not read without unit columns
    NuvSizeT count;
    const NuvFloat32* multipliers;  /// [count], or null without update
    const NuvFloat32* update;       /// [length], or null
    ColumnProduct product;
    /// Without factors there is none.
    ColumnProduct other;
    NuvSizeT length;
};

/// A number that was looked for, and where it was found.
struct Choice
{
    NuvFloat32 value;
    NuvUint number;
};

/// The loops as made for one instruction set. Lengths are multiples of `tile` but where any length
/// or shape is allowed.
struct Kernels
{
    static constexpr NuvSizeT kTile = 16;

    void (*updateAndMultiply)(const FusedProduct* product);
    /// Few rows: copies A and marks its non-zeros, and starts from the basis of the slacks, with
    /// the others nonbasic in their order.
    /// @return whether all of A is finite.
    bool (*startSmall)(SmallState* state, const SmallStart* start);
    /// Both inverses += the pending update, unless `row`, which leaves, is m; prices = basicCosts ·
    /// inverse; values = inverse · b. The former row goes to `multipliers`. Prices and values are
    /// those of before, but for m.
    /// @return whether all of prices and values are finite.
    bool (*updateSmall)(SmallState* state, NuvUint row);
    /// differences = costs − prices · [A I]; prices are finite.
    /// @return as findLargest.
    Choice (*priceSmall)(const SmallState* state);
    /// direction = inverse · enteringColumn, and the ratios; the inverse is finite.
    /// @return as findSmallestRatio.
    Choice (*testSmall)(const SmallState* state);
    /// eta = 0 − direction · p, and 1 − (direction − 1) · p in the row, with p = 1 /
    /// direction(row).
    /// @return whether all of 0 − direction · p is finite.
    bool (*formEta)(const NuvFloat32* direction, NuvUint row, NuvFloat32* eta, NuvSizeT length);
    bool (*isFinite)(const NuvFloat32* x, NuvSizeT length);
    /// differences = costs − sums.
    /// @return the largest that is above 0, or 0, and the largest of the numbers where it stands; a
    /// NaN is passed over.
    Choice (*findLargest)(const NuvFloat32* costs, const NuvFloat32* sums, const NuvUint* numbers,
                          NuvFloat32* differences, NuvSizeT length);
    /// ratios = values / direction where direction is above 0, else FLT_MAX.
    /// @return the smallest that is below FLT_MAX and the first index where it stands, or FLT_MAX;
    /// a NaN is passed over.
    Choice (*findSmallestRatio)(const NuvFloat32* values, const NuvFloat32* direction,
                                NuvFloat32* ratios, NuvSizeT length);
    /// result (rows × cols) = x (rows × inner) · y (inner × cols), row after row, of any shape.
    void (*multiply)(const NuvFloat32* x, const NuvFloat32* y, NuvFloat32* result, NuvSizeT rows,
                     NuvSizeT inner, NuvSizeT cols);
    /// x = x / divisor, of any length.
    void (*divide)(NuvFloat32* x, NuvFloat32 divisor, NuvSizeT length);
    /// x = x − y · multiplier, of any length.
    void (*subtractMultiple)(NuvFloat32* x, const NuvFloat32* y, NuvFloat32 multiplier,
                             NuvSizeT length);
};

/// The length of so many elements in whole tiles.
inline NuvSizeT InTiles(NuvSizeT count)
{
    return (count + Kernels::kTile - 1) / Kernels::kTile * Kernels::kTile;
}

/// The length of an array of `count` floats with its padding: in whole tiles, and never a multiple
/// of a kilobyte, so that the same rows of neighbouring columns do not compete for the same lines
/// of a cache.
inline NuvSizeT PaddedLength(NuvSizeT count)
{
    const NuvSizeT length = InTiles(count);
    return length % (Kernels::kTile * Kernels::kTile) == 0 ? length + Kernels::kTile : length;
}

enum class InstructionSet
{
    /// One float at a time: what any compiler makes of the loops for any machine.
    Plain,
    /// Four floats at a time, where every machine of the target has them: SSE2, NEON.
    Baseline,
    Avx2,
    Avx512
};

/// @return the loops, or null when this machine cannot run them.
const Kernels* KernelsOf(InstructionSet set);
/// The loops of the widest instruction set that this machine has.
const Kernels* KernelsOfThisMachine();

/// What the sources that are compiled for one instruction set each offer: null where they were not.
const Kernels* PlainKernels();
const Kernels* BaselineKernels();
const Kernels* Avx2Kernels();
const Kernels* Avx512Kernels();
}  // namespace nuv

#endif
