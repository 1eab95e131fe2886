// The iteration as it is defined: dense products in the definition's order over all terms, with
// zeros, infinities and NaNs as they come. It is the page to read first, and what a solve goes on
// with where the structured iteration cannot. Not installed.
#ifndef NUV_UTILS_SIMPLEX_DENSEITERATION_H
#define NUV_UTILS_SIMPLEX_DENSEITERATION_H

#include "Nuv/Utils/Simplex/Iteration.h"

namespace nuv
{
/// Invariant: the inverse is that of the basic columns.
struct DenseIteration
{
    Workspace workspace;
    NuvFloat32* inverse;  /// [m × m], row after row
    NuvFloat32* eta;      /// [m × m]
    NuvFloat32* product;  /// [m × m]
    NuvFloat32* sums;     /// [numNonbasic]
    /// The labels of the columns at the rows and positions. A phase that is called by itself may
    /// have other labels in `basic` and `nonbasic` than columns.
    NuvUint* basicColumns;     /// [m]
    NuvUint* nonbasicColumns;  /// [numNonbasic]
};

/// Places the arrays in a block, or in none.
/// @return the bytes that it needs.
NuvSizeT PlaceArrays(DenseIteration* x, const Iteration* it, void* block);
/// @return false when storage is refused.
bool AllocateArrays(DenseIteration* x, const Iteration* it);
/// Takes the columns of the first basis, the slacks' in Phase I and those under the labels in Phase
/// II, and inverts it. A singular one is not detected, by contract.
void StartFromFirstBasis(DenseIteration* x, const Iteration* it);
/// Takes the columns under the labels; the inverse is the caller's to fill in.
void StartFromLabels(DenseIteration* x, const Iteration* it);

/// Dantzig's rule: the largest reduced cost c(j) − π · A(j) that is not below 0, the last one on
/// ties, else a reduced cost of 0; a NaN is passed over.
Entering ChooseEntering(DenseIteration* x, Iteration* it);
/// basicValues = inverse · b and, if there is an entering column, direction = inverse · column.
/// @return true.
bool ComputeValuesAndDirection(DenseIteration* x, Iteration* it, const Entering* entering);
/// eta = the matrix of a pivot in `row` on the direction.
/// @return true.
bool FormEta(DenseIteration* x, const Iteration* it, NuvUint row);
/// Exchanges labels, costs and columns.
void Exchange(DenseIteration* x, Iteration* it, NuvUint position, NuvUint row);
/// inverse = eta · inverse.
void Update(DenseIteration* x, Iteration* it, NuvUint row);

/// eta [m × m] = I − ((direction − e) · eᵀ) · (1 / direction(row)), e being the unit vector of the
/// row, each element as the definition forms it.
void FormEtaMatrix(const NuvFloat32* direction, NuvUint row, NuvUint m, NuvFloat32* eta);
}  // namespace nuv

/// result = the inverse of the basis after a pivot, from the inverse Ab_inv (m × m) before it, in
/// product form (Chvátal, Linear Programming, chapter 7): column `k` of A, counted from 0, enters
/// in row `i`. `result` must not be Ab_inv; `leavingIndex` is not used. One block of m × m floats
/// stays with the allocator of Ab_inv.
/// @return true, or false when storage is refused; `result` is then untouched or without storage.
extern "C" NuvBool NuvRevisedSimplexAlogirthmBasisUpdate(const NuvMatrix_NuvFloat32* A,
                                                         const NuvMatrix_NuvFloat32* Ab_inv,
                                                         NuvUint k, NuvUint i, NuvUint leavingIndex,
                                                         NuvMatrix_NuvFloat32* result);

#endif
