// The iteration with what is known of its numbers: most columns of the inverse are unit vectors, a
// slack's column is one, zeros add nothing. It has the bits of DenseIteration.h as long as all
// numbers are finite; where one is not, the step says so and nothing of the iteration is done that
// the dense one does not do again. Not installed.
//
// Invariant between iterations: the inverse is that of the columns that `basic` labels; no update
// is pending after the values are computed.
#ifndef NUV_UTILS_SIMPLEX_STRUCTUREDITERATION_H
#define NUV_UTILS_SIMPLEX_STRUCTUREDITERATION_H

#include "Nuv/Utils/Simplex/BasisInversion.h"
#include "Nuv/Utils/Simplex/DenseIteration.h"
#include "Nuv/Utils/Simplex/Pricing.h"

namespace nuv
{
struct StructuredIteration
{
    BasisInverse inverse;
    Pricing pricing;
    Elimination elimination;
    /// First the multipliers of the inversion, then the rows that pricing copies.
    NuvFloat32* rowBuffer;
};

void PlaceArrays(StructuredIteration* x, const Iteration* it, WorkspaceLayout* layout);
/// Finds the inverse and the prices of the first basis: that of the slacks in Phase I, that of the
/// labels in Phase II.
/// @return false if the form is not an ordinary one, or the inverse overflows; the dense iteration
/// is to start from the first basis.
bool TryStart(StructuredIteration* x, Iteration* it);

/// The steps of the dense iteration; false from one of them means that the dense iteration is to
/// take over, and to begin this iteration again.
Entering ChooseEntering(StructuredIteration* x, Iteration* it);
bool ComputeValuesAndDirection(StructuredIteration* x, Iteration* it, const Entering* entering);
bool FormEta(StructuredIteration* x, const Iteration* it, NuvUint row);
void Update(StructuredIteration* x, Iteration* it, NuvUint row);

/// Starts the dense iteration from the inverse as it is; its arrays are allocated.
void FallBackToDense(const StructuredIteration* x, const Iteration* it, DenseIteration* dense);
}  // namespace nuv

#endif
