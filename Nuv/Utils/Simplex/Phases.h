// The solver as the module sees it. Not installed.
#ifndef NUV_UTILS_SIMPLEX_PHASES_H
#define NUV_UTILS_SIMPLEX_PHASES_H

#include "Nuv/Utils/Kernels/Kernels.h"
#include "Nuv/Utils/NuvLinearProgrammingMonitor.h"

/// result = the inverse of the basis after a pivot, from the inverse Ab_inv (m × m) before it, in
/// product form (Chvátal, Linear Programming, chapter 7): column `k` of A, counted from 0, enters
/// in row `i`. `result` must not be Ab_inv; `leavingIndex` is not used. One block of m × m floats
/// stays with the allocator of Ab_inv.
/// @return true, or false when storage is refused; `result` is then untouched or without storage.
extern "C" NuvBool NuvRevisedSimplexAlogirthmBasisUpdate(const NuvMatrix_NuvFloat32* A,
                                                         const NuvMatrix_NuvFloat32* Ab_inv,
                                                         NuvUint k, NuvUint i, NuvUint leavingIndex,
                                                         NuvMatrix_NuvFloat32* result);

namespace nuv
{
/// Who watches a solve, how many pivots it has made in both phases, and the loops it runs on.
struct SolveWatch
{
    NuvLinearProgrammingMonitor* monitor;
    NuvUint pivots;
    const Kernels* kernels;
};

/// What is known about a standard form without reading it.
struct StandardFormFacts
{
    /// All of A, b and c is finite, the last m columns of A are the identity and cost nothing.
    bool isExact;
    /// No fewer than A's other columns have entries other than +0.
    NuvSizeT nonzeros;
};

/// NuvLinearProgrammingPrepareInputs_, which also tells what it knows about the result.
bool PrepareInputs(NuvLinearProgramming* lp, StandardFormFacts* facts);

/// The two phases under a watch; they answer Stopped when it ends them.
NuvLinearProgrammingResultType SolvePhaseI(NuvLinearProgramming* lp, SolveWatch* watch,
                                           const StandardFormFacts* facts);
NuvLinearProgrammingResultType SolvePhaseII(NuvLinearProgramming* lp, SolveWatch* watch,
                                            const StandardFormFacts* facts);
/// The whole solve under a watch.
NuvLinearProgrammingResultType SolveUnderWatch(NuvLinearProgramming* lp, SolveWatch* watch);
}  // namespace nuv

#endif
