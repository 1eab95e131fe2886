// A range of a batch in lanes: whenever a lane's problem is at its end, the next one takes its
// place. Not installed.
#ifndef NUV_UTILS_BATCH_LANEQUEUE_H
#define NUV_UTILS_BATCH_LANEQUEUE_H

#include "Nuv/Utils/Batch/LaneState.h"
#include "Nuv/Utils/Batch/SingleSolve.h"
#include "Nuv/Utils/Simplex/BasisInversion.h"

namespace nuv
{
struct LaneQueue
{
    LaneState state;
    const NuvLinearProgrammingBatch* batch;
    const LaneLoops* loops;
    /// What problems are handed to whose numbers are not finite.
    SingleSolve* single;
    NuvSizeT problems[kMaxLanes];
    NuvSizeT next;
    NuvSizeT last;

    // For the basis that Phase I hands to Phase II.
    BasisInverse inverse;
    Elimination elimination;
    NuvUint* labels;    /// [m]
    NuvFloat32* zeros;  /// [PaddedLength(m)]
    NuvSizeT length;    /// of the state's arrays, in floats
    NuvUint numPhaseI;
};

/// Whether the lanes can count what a problem of the shape has.
bool FitsLanes(const NuvLinearProgrammingBatch* batch);

void PlaceArrays(LaneQueue* x, WorkspaceLayout* layout);
/// Solves the problems from `first` to before `last`, and writes their answers.
void SolveRange(LaneQueue* x, NuvSizeT first, NuvSizeT last);
}  // namespace nuv

#endif
