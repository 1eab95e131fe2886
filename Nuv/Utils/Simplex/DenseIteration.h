// The steps on the road that takes the definition by its word: dense products in the definition's
// order over all terms, with zeros, infinities and NaNs as they come. Not installed.
#ifndef NUV_UTILS_SIMPLEX_DENSEITERATION_H
#define NUV_UTILS_SIMPLEX_DENSEITERATION_H

#include "Nuv/Utils/Simplex/Workspace.h"

namespace nuv
{
struct Entering;
struct Iteration;

/// Invariant: the inverse (m × m, row after row) is that of the columns that stand in the basis.
struct LiteralRoad
{
    Workspace workspace;
    NuvFloat32* inverse;
    NuvFloat32* eta;
    NuvFloat32* product;
    NuvFloat32* reducedCosts;
    /// Labels of the columns that stand at the positions. A phase that is called by itself may have
    /// other labels in `basic` and `independent` than columns.
    NuvUint* basicColumns;
    NuvUint* nonbasicColumns;
};

/// @return false when storage is refused.
bool BeginLiteralRoad(Iteration* it);
/// Makes the columns of the first basis stand, and inverts it. A singular one is not detected, by
/// contract.
void EnterFirstBasisLiterally(Iteration* it);
/// Makes the columns under the labels stand, and takes the inverse over from the fast road.
void TakeInverseOver(Iteration* it);

/// reducedCosts = costs − (basicCosts · inverse) · nonbasic columns.
/// @return the largest that is not below 0, the last one on ties, else a reduced cost of 0.
Entering FindLargestLiterally(Iteration* it);
/// result = inverse · vector.
void MultiplyLiterally(const Iteration* it, const NuvFloat32* vector, NuvFloat32* result);
/// Exchanges the columns that stand at the entering position and in the leaving row.
void ExchangeLiterally(Iteration* it, NuvUint entering, NuvUint leaving);
/// Multiplies the inverse eta matrix of a pivot in `row` onto the inverse.
void UpdateLiterally(Iteration* it, NuvUint row);

/// eta = I − ((direction − e) · eᵀ) · (1 / direction(row)), m × m, each element as the definition
/// forms it.
void FormEtaMatrix(const NuvFloat32* direction, NuvUint row, NuvUint m, NuvFloat32* eta);
}  // namespace nuv

#endif
