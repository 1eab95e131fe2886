// The update of the basis inverse as a function of its own. Not installed.
#ifndef NUV_UTILS_SIMPLEX_BASISUPDATE_H
#define NUV_UTILS_SIMPLEX_BASISUPDATE_H

#include "Nuv/Utils/NuvLinearProgrammingContainers.h"

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
