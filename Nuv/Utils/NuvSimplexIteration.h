// The iteration that both phases share: price, choose the entering column, choose the leaving row,
// pivot. The steps carry the textbook's names (Chvátal, Linear Programming, chapter 7). What
// differs between the phases is passed in. Not installed.
//
// Invariant between iterations: `inverse` is the inverse of the columns that `basic` labels, and
// `nonbasicColumns`, `nonbasicCosts` and `basicCosts` follow the labels position by position.
#ifndef NUV_UTILS_NUVSIMPLEXITERATION_H
#define NUV_UTILS_NUVSIMPLEXITERATION_H

#include "Nuv/Utils/NuvRevisedSimplex.h"

namespace nuv
{
struct Iteration
{
    Watch* watch;
    NuvUint phase;
    /// The columns to choose from; column 0 has the label `firstLabel`.
    const NuvMatrix_NuvFloat32* A;
    NuvUint firstLabel;
    const NuvMatrix_NuvFloat32* b;

    /// Labels by basis row (1 × m) and by nonbasic position (1 × width).
    NuvMatrix_NuvUint basic;
    NuvMatrix_NuvUint independent;
    /// 1 × m and 1 × width.
    NuvMatrix_NuvFloat32 basicCosts;
    NuvMatrix_NuvFloat32 nonbasicCosts;
    /// m × width and m × m.
    NuvMatrix_NuvFloat32 nonbasicColumns;
    NuvMatrix_NuvFloat32 inverse;

    /// This iteration's prices (1 × m), reduced costs (1 × width), basic values, entering column as
    /// it stands in A, and entering column in terms of the basis (m × 1 each).
    NuvMatrix_NuvFloat32 prices;
    NuvMatrix_NuvFloat32 reducedCosts;
    NuvMatrix_NuvFloat32 basicValues;
    NuvMatrix_NuvFloat32 column;
    NuvMatrix_NuvFloat32 direction;
};

/// The nonbasic position that enters, and its reduced cost; 0 means that the basis is optimal.
struct Entering
{
    NuvUint position;
    NuvFloat32 reducedCost;
};

/// The basis row that leaves, if there is one.
struct Leaving
{
    NuvUint row;
    bool exists;
};

/// Makes an iteration over the columns A from the basis labels in `basic`; every matrix starts
/// empty.
void BeginIteration(Iteration* it, Watch* watch, NuvUint phase, NuvLinearProgramming* lp);
/// Takes room for the labels, the costs, the columns and the results of the steps.
/// @return false when storage is refused.
bool TakeStorage(Iteration* it, NuvUint m, NuvUint width);
/// Gives back what the iteration holds.
void EndIteration(Iteration* it);

/// reducedCosts = nonbasicCosts − (basicCosts · inverse) · nonbasicColumns.
void Price(Iteration* it);
/// Dantzig's rule: the largest reduced cost, the last one on ties; a NaN is passed over.
Entering ChooseEntering(const Iteration* it);
/// basicValues = inverse · b, in a new block.
/// @return false when it is refused.
bool ComputeBasicValues(Iteration* it);
/// direction = inverse · the column at the entering position.
void ComputeDirection(Iteration* it, NuvUint entering);
/// The smallest ratio, the first one on ties; but the artificial variable, label 0, goes before
/// others of the same ratio.
Leaving ChooseLeaving(const Iteration* it);
/// Tells the watch of the pivot that is about to be made.
/// @return false when the solve is to end.
bool IsGoingOn(Iteration* it, NuvUint entering, NuvUint leaving);
/// Exchanges labels, columns and costs between the entering position and the leaving row.
void Exchange(Iteration* it, NuvUint entering, NuvUint leaving);
/// Makes the pivot: exchanges, brings the inverse to the new basis in product form, and leaves its
/// blocks behind.
/// @return false when storage is refused; nothing is left behind then, and the iteration cannot go
/// on.
bool Pivot(Iteration* it, NuvUint entering, NuvUint leaving);
/// Leaves what a pivot leaves behind apart from its update: the basic values and three more blocks
/// of their size.
/// @return false when one is refused; none is left then.
bool LeavePivotBehind(Iteration* it);
/// Leaves the block of `x` with the allocator for good.
void LeaveBehind(NuvMatrix_NuvFloat32* x);
void LeaveBehind(NuvMatrix_NuvUint* x);
}  // namespace nuv

#endif
