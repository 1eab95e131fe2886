// How a range of a batch is solved. Not installed.
#ifndef NUV_UTILS_BATCH_BATCH_H
#define NUV_UTILS_BATCH_BATCH_H

#include "Nuv/Utils/Batch/BatchProblem.h"
#include "Nuv/Utils/Batch/LaneState.h"
#include "Nuv/Utils/Batch/UnitTableau.h"
#include "Nuv/Utils/Kernels/Kernels.h"

namespace nuv
{
struct BatchWay
{
    const Kernels* kernels;
    /// Null to solve the problems one by one.
    const LaneLoops* lanes;
    /// Null for nobody.
    BatchTrace* trace;
    /// Whether those that are solved one by one take turns.
    bool hasTurns = false;
    /// Whether the lanes are left where the first problem of a range has many zeros.
    bool areLanesForDense = false;
    /// For ranges whose first problem has unit coefficients, or null.
    const UnitLoops* units = nullptr;
};

/// @return the lanes, or null when this machine cannot run them.
const LaneLoops* LanesOf(InstructionSet set);
const UnitLoops* UnitLoopsOf(InstructionSet set);

/// The way that is fastest on this machine, as far as the shape tells.
BatchWay WayOf(const NuvLinearProgrammingBatch* batch);

/// Workspace and solve of a way; see NuvLinearProgrammingBatch.h.
NuvSizeT WorkspaceSize(const NuvLinearProgrammingBatch* batch, const BatchWay* way);
void SolveRange(const NuvLinearProgrammingBatch* batch, const BatchWay* way, NuvSizeT first,
                NuvSizeT last, void* workspace);
}  // namespace nuv

#endif
