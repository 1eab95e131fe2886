// The iteration for few rows: the inverse as a dense matrix, by rows and by columns, and A with
// padded rows, so that every step is a loop or two over whole vectors. It has the bits of
// DenseIteration.h as long as all numbers are finite; where one is not, the step says so, as in
// StructuredIteration.h. Not installed.
//
// Invariant between iterations: the rows of the inverse are up to date; its columns are, but for
// the pending update, which is added when they are next multiplied. Padding is zero, in A anything.
#ifndef NUV_UTILS_SIMPLEX_SMALLITERATION_H
#define NUV_UTILS_SIMPLEX_SMALLITERATION_H

#include "Nuv/Utils/Simplex/StructuredIteration.h"

namespace nuv
{
struct SmallIteration
{
    Pricing pricing;  /// its labels, costs and sums alone
    NuvSizeT m;
    NuvSizeT stride;      /// of the inverse, PaddedLength(m)
    NuvFloat32* A;        /// [m × firstSlack], the columns that are not slacks
    NuvFloat32* rows;     /// [m × stride] of the inverse
    NuvFloat32* columns;  /// [m × stride] of the inverse
    /// The update: eta and the former row that leaves.
    NuvFloat32* eta;          /// [stride]
    NuvFloat32* multipliers;  /// [stride]
    NuvUint pendingRow;       /// or m
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
bool FormEta(SmallIteration* x, const Iteration* it, NuvUint row);
void Exchange(SmallIteration* x, Iteration* it, NuvUint position, NuvUint row);
void Update(SmallIteration* x, Iteration* it, NuvUint row);
void FallBackToDense(const SmallIteration* x, const Iteration* it, DenseIteration* dense);
}  // namespace nuv

#endif
