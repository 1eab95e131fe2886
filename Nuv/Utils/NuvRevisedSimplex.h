// The solver as the module sees it. Not installed.
#ifndef NUV_UTILS_NUVREVISEDSIMPLEX_H
#define NUV_UTILS_NUVREVISEDSIMPLEX_H

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
/// Who watches a solve, and how many pivots it has made in both phases.
struct Watch
{
    NuvLinearProgrammingMonitor* monitor;
    NuvUint pivots;
};

/// The two phases under a watch; they answer Stopped when it ends them.
NuvLinearProgrammingResultType SolvePhaseI(NuvLinearProgramming* lp, Watch* watch);
NuvLinearProgrammingResultType SolvePhaseII(NuvLinearProgramming* lp, Watch* watch);
}  // namespace nuv

#endif
