// The float loops, and nothing that knows linear programs. Each element is summed in a fixed order,
// each product rounded before it is added; loops run over independent results side by side, never
// inside a sum, so that all instruction sets give the same bits.
#ifndef NUV_UTILS_NUVKERNELS_H
#define NUV_UTILS_NUVKERNELS_H

#include "Nuv/Utils/NuvTypes.h"

namespace nuv
{
/// The loops as made for one instruction set. Ranges begin and end at multiples of `tile`, and
/// lengths are such, but where any shape is allowed. The vectors of one call do not overlap.
struct Kernels
{
    static constexpr NuvSizeT tile = 16;

    /// sums += x[c] · vectors[c] within [first, last), one c after the other.
    void (*addMultiples)(const NuvFloat32* const* vectors, const NuvFloat32* x, NuvSizeT count,
                         NuvFloat32* sums, NuvSizeT first, NuvSizeT last);
    /// The same for two sums in one walk: sumsX += x[c] · vectors[c], sumsY += y[c] · vectors[c].
    void (*addMultiplesToTwo)(const NuvFloat32* const* vectors, const NuvFloat32* x,
                              const NuvFloat32* y, NuvSizeT count, NuvFloat32* sumsX,
                              NuvFloat32* sumsY, NuvSizeT first, NuvSizeT last);
    /// vectors[c] += multipliers[c] · update, then sums += x[c] · vectors[c].
    void (*updateAndAdd)(NuvFloat32* const* vectors, const NuvFloat32* multipliers,
                         const NuvFloat32* update, const NuvFloat32* x, NuvSizeT count,
                         NuvFloat32* sums, NuvSizeT first, NuvSizeT last);
    /// The same for two sums in one walk.
    void (*updateAndAddToTwo)(NuvFloat32* const* vectors, const NuvFloat32* multipliers,
                              const NuvFloat32* update, const NuvFloat32* x, const NuvFloat32* y,
                              NuvSizeT count, NuvFloat32* sumsX, NuvFloat32* sumsY, NuvSizeT first,
                              NuvSizeT last);
    /// eta = 0 − direction · reciprocal.
    /// @return whether all of eta is finite.
    bool (*formEta)(const NuvFloat32* direction, NuvFloat32 reciprocal, NuvFloat32* eta,
                    NuvSizeT length);
    bool (*isFinite)(const NuvFloat32* x, NuvSizeT length);
    /// reducedCosts = costs − sums.
    /// @return the largest that is above 0, or 0; a NaN is passed over.
    NuvFloat32 (*subtractAndFindLargest)(const NuvFloat32* costs, const NuvFloat32* sums,
                                         NuvFloat32* reducedCosts, NuvSizeT length);
    /// @return the largest of the numbers that stand where x equals `value`, or 0.
    NuvUint (*largestWhereEqual)(const NuvFloat32* x, NuvFloat32 value, const NuvUint* numbers,
                                 NuvSizeT length);
    /// ratios = values / direction where direction is above 0, else FLT_MAX.
    /// @return the smallest that is below FLT_MAX, or FLT_MAX; a NaN is passed over.
    NuvFloat32 (*formRatios)(const NuvFloat32* values, const NuvFloat32* direction,
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
