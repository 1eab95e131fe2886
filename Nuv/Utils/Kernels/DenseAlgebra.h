// Dense products and elimination, made of the float loops. Not installed.
#ifndef NUV_UTILS_KERNELS_DENSEALGEBRA_H
#define NUV_UTILS_KERNELS_DENSEALGEBRA_H

#include "Nuv/Utils/Kernels/Kernels.h"

namespace nuv
{
/// result (rows × cols) = x (rows × inner) · y (inner × cols), each element summed in increasing
/// index of the inner dimension from 0; result must not be an operand.
void Multiply(const NuvFloat32* x, const NuvFloat32* y, NuvFloat32* result, NuvSizeT rows,
              NuvSizeT inner, NuvSizeT cols);

/// The same for unsigned integers, modulo 2³².
void Multiply(const NuvUint* x, const NuvUint* y, NuvUint* result, NuvSizeT rows, NuvSizeT inner,
              NuvSizeT cols);

/// @return among the rows from `first` to before `end` the first one of the largest magnitude in a
/// column whose elements are `stride` apart; a NaN is never larger, nor is anything than a NaN.
NuvSizeT FindPivotRow(const NuvFloat32* column, NuvSizeT stride, NuvSizeT first, NuvSizeT end);

/// Reduces y (n × n) to the identity by Gauss-Jordan elimination with partial pivoting, and does
/// the same to `result`.
/// @return false when a pivot column is exactly zero; both then hold the rows reduced so far.
bool ReduceToIdentity(const Kernels* kernels, NuvFloat32* y, NuvFloat32* result, NuvSizeT n);
}  // namespace nuv

#endif
