// The iteration for few rows: the inverse as a dense matrix, by rows and by columns, and A with
// padded rows, so that a pivot is four passes over whole vectors (Kernels/SmallSteps.inl). It has
// the bits of DenseIteration.h as long as all numbers are finite; where one is not, the step says
// so, as in StructuredIteration.h. Not installed.
//
// Invariant between iterations: both inverses, the prices and the basic values are up to date.
#ifndef NUV_UTILS_SIMPLEX_SMALLITERATION_H
#define NUV_UTILS_SIMPLEX_SMALLITERATION_H

#include "Nuv/Utils/Simplex/StructuredIteration.h"

namespace nuv
{
struct SmallIteration
{
    SmallState state;
    /// Of the ratio test, with the direction.
    Choice smallest;
    /// Whether the basic values and the prices are finite. An entry of the inverse that is not
    /// makes a basic value that is not.
    bool isFinite;
    /// For the first basis of Phase II after Phase I.
    BasisInverse inverse;
    Elimination elimination;
};

/// Whether there are so few rows that this iteration is the faster one.
bool IsSmall(const StandardForm* form);

void PlaceArrays(SmallIteration* x, const Iteration* it, WorkspaceLayout* layout);
/// As the structured iteration.
bool TryStart(SmallIteration* x, Iteration* it);
Entering ChooseEntering(SmallIteration* x, Iteration* it);
bool ComputeValuesAndDirection(SmallIteration* x, Iteration* it, const Entering* entering);
Leaving ChooseLeaving(const SmallIteration* x, Iteration* it);
bool FormEta(SmallIteration* x, const Iteration* it, NuvUint row);
void Update(SmallIteration* x, Iteration* it, NuvUint row);
void FallBackToDense(const SmallIteration* x, const Iteration* it, DenseIteration* dense);
}  // namespace nuv

#endif
