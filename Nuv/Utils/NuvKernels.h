// The float loops, each a sum or an update of a fixed order, and nothing that knows linear
// programs. Every element is summed in increasing index of the inner dimension, from +0, each
// product rounded before it is added; loops run over independent results side by side, so that a
// compiler may vectorise them without touching a sum's order.
#ifndef NUV_UTILS_NUVKERNELS_H
#define NUV_UTILS_NUVKERNELS_H

#include "Nuv/Utils/NuvTypes.h"

namespace nuv
{
/// result (rows × cols) = x (rows × inner) · y (inner × cols), row after row; result must not be an
/// operand.
void Multiply(const NuvFloat32* x, const NuvFloat32* y, NuvFloat32* result, NuvSizeT rows,
              NuvSizeT inner, NuvSizeT cols);

/// The same for unsigned integers, modulo 2³².
void Multiply(const NuvUint* x, const NuvUint* y, NuvUint* result, NuvSizeT rows, NuvSizeT inner,
              NuvSizeT cols);

/// Reduces y (n × n) to the identity by Gauss-Jordan elimination with partial pivoting, and does
/// the same to `result`.
/// @return false when a pivot column is exactly zero; both then hold the rows reduced so far.
bool ReduceToIdentity(NuvFloat32* y, NuvFloat32* result, NuvSizeT n);
}  // namespace nuv

#endif
