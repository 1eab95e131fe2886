// What belongs to a solve as a whole. Not installed.
#ifndef NUV_UTILS_SIMPLEX_SOLVECONTEXT_H
#define NUV_UTILS_SIMPLEX_SOLVECONTEXT_H

#include "Nuv/Utils/Kernels/Kernels.h"
#include "Nuv/Utils/NuvLinearProgrammingMonitor.h"

namespace nuv
{
/// An optimum as a solve has it; the arrays are the solve's.
struct Optimum
{
    NuvFloat32 objective;
    const NuvUint* basic;      /// [m] labels
    const NuvFloat32* values;  /// [m] of the basic variables
    const NuvFloat32* prices;  /// [m]
};

/// Where the optimum goes of a solve without a model.
struct AnswerTaker
{
    void (*take)(AnswerTaker* taker, const Optimum* optimum);
};

struct SolveContext
{
    /// Told of each pivot; null for nobody.
    NuvLinearProgrammingMonitor* monitor;
    /// How many pivots were made, in both phases.
    NuvUint pivots;
    const Kernels* kernels;
    /// Told of the optimum in place of the model, or null. Such a solve leaves no blocks with its
    /// allocator.
    AnswerTaker* taker;
    /// The solve ends before it makes more pivots.
    NuvUint pivotLimit = UINT32_MAX;
};
}  // namespace nuv

#endif
