// What belongs to a solve as a whole. Not installed.
#ifndef NUV_UTILS_SIMPLEX_SOLVECONTEXT_H
#define NUV_UTILS_SIMPLEX_SOLVECONTEXT_H

#include "Nuv/Utils/Kernels/Kernels.h"
#include "Nuv/Utils/NuvLinearProgrammingMonitor.h"

namespace nuv
{
struct SolveContext
{
    /// Told of each pivot; null for nobody.
    NuvLinearProgrammingMonitor* monitor;
    /// How many pivots were made, in both phases.
    NuvUint pivots;
    const Kernels* kernels;
};
}  // namespace nuv

#endif
