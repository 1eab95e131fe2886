// The float loops, and nothing that knows linear programs. Each element is summed in a fixed order,
// each product rounded before it is added; loops run over independent results side by side, never
// inside a sum, so that all instruction sets give the same bits.
#ifndef NUV_UTILS_KERNELS_KERNELS_H
#define NUV_UTILS_KERNELS_KERNELS_H

#include "Nuv/Utils/NuvTypes.h"

namespace nuv
{
/// A walk along several vectors at once, within the range [first, last) of each:
///     vectors[c] += multipliers[c] · update      unless update is null,
///     sums = x[c] · vectors[c] + ...             from +0, one c after the other.
/// The vectors are only written where there is an update.
struct Walk
{
    NuvFloat32* const* vectors;
    NuvSizeT count;
    const NuvFloat32* multipliers;
    const NuvFloat32* update;
    const NuvFloat32* x;
    NuvFloat32* sums;
    NuvSizeT first;
    NuvSizeT last;
};

/// Some columns of a square matrix, by increasing number; its others are the identity's.
/// Their count is a multiple of `block`: those that are missing are columns of zeros with factors
/// of 0, with the last one's number and no gap.
struct StoredColumns
{
    static constexpr NuvSizeT block = 4;

    NuvFloat32** elements;
    NuvUint* numbers;
    /// The identity's columns between a column and the one before it: the first number, and how
    /// many.
    NuvUint* firsts;
    NuvUint* gaps;
    /// By tile, and one more: how many columns have numbers below the tile's.
    NuvUint* below;
    NuvSizeT count;
};

/// A product of such a matrix with a vector: the sums, and the vector's elements by stored column
/// and, for the identity's columns, by number, where the others are 0.
struct ColumnProduct
{
    const NuvFloat32* factors;
    const NuvFloat32* unitFactors;
    NuvFloat32* sums;
};

/// A walk along the columns of such a matrix, within the rows [first, last):
///     columns[c] += multipliers[c] · update      unless update is null,
///     product.sums = the matrix · a vector       for one product or two,
/// each sum from +0, in increasing number of the columns. All numbers must be finite.
struct ColumnWalk
{
    StoredColumns columns;
    const NuvFloat32* multipliers;
    const NuvFloat32* update;
    ColumnProduct product;
    /// Without factors there is none.
    ColumnProduct other;
    NuvSizeT first;
    NuvSizeT last;
};

/// A number that was looked for, and where it was found.
struct Choice
{
    NuvFloat32 value;
    NuvUint number;
};

/// The loops as made for one instruction set. Ranges begin and end at multiples of `tile`, and
/// lengths are such, but where any shape is allowed.
struct Kernels
{
    static constexpr NuvSizeT tile = 16;

    void (*walk)(const Walk* walk);
    void (*walkColumns)(const ColumnWalk* walk);
    /// eta = 0 − direction · reciprocal.
    /// @return whether all of eta is finite.
    bool (*formEta)(const NuvFloat32* direction, NuvFloat32 reciprocal, NuvFloat32* eta,
                    NuvSizeT length);
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

/// result (rows × cols) = x (rows × inner) · y (inner × cols), each element summed in increasing
/// index of the inner dimension from 0; result must not be an operand.
void Multiply(const NuvFloat32* x, const NuvFloat32* y, NuvFloat32* result, NuvSizeT rows,
              NuvSizeT inner, NuvSizeT cols);

/// The same for unsigned integers, modulo 2³².
void Multiply(const NuvUint* x, const NuvUint* y, NuvUint* result, NuvSizeT rows, NuvSizeT inner,
              NuvSizeT cols);

/// Reduces y (n × n) to the identity by Gauss-Jordan elimination with partial pivoting, and does
/// the same to `result`.
/// @return false when a pivot column is exactly zero; both then hold the rows reduced so far.
bool ReduceToIdentity(const Kernels* kernels, NuvFloat32* y, NuvFloat32* result, NuvSizeT n);
bool ReduceToIdentity(NuvFloat32* y, NuvFloat32* result, NuvSizeT n);
}  // namespace nuv

#endif
