/// @file
/// What only matrices of real numbers have. Needs NUV_SELF and NUV_ELEMENT, after NuvMatrix.decl.h
/// with the same.
#include "Nuv/Templates/NuvTemplateBegin.h"

/// result = x − y; `result` may be an operand.
/// @return false when the shapes differ; `result` is then untouched.
NUV_API NuvBool NUV_OP(Subtract)(const NUV_SELF* x, const NUV_SELF* y, NUV_SELF* result);

/// result = x⁻¹, by Gauss-Jordan elimination with partial pivoting (Golub and Van Loan, Matrix
/// Computations, chapter 3): the largest magnitude of the column, the upper row on ties; only an
/// exact 0 is singular. `result` may be `x`.
/// @return false when `x` is empty or not square (`result` is then untouched, and for a matrix that
/// is not square one block of its size stays with the allocator) or singular (`result` then holds
/// the rows reduced so far).
NUV_API NuvBool NUV_OP(Inverse)(const NUV_SELF* x, NUV_SELF* result);

#include "Nuv/Templates/NuvTemplateEnd.h"
