// One problem of a batch by itself, solved as a model of its own would be, in memory that is given.
// Not installed.
#ifndef NUV_UTILS_BATCH_SINGLESOLVE_H
#define NUV_UTILS_BATCH_SINGLESOLVE_H

#include "Nuv/Utils/Batch/BatchProblem.h"
#include "Nuv/Utils/Simplex/StandardForm.h"
#include "Nuv/Utils/Memory/Workspace.h"

namespace nuv
{
struct Kernels;

struct SingleSolve
{
    const NuvLinearProgrammingBatch* batch;
    const Kernels* kernels;
    BatchTrace* trace;
    NuvFloat32* A;         /// [m × (n + m)] where there are more than a few rows
    NuvFloat32* c;         /// [n + m]
    NuvUint* basic;        /// [m]
    NuvUint* independent;  /// [n]
    /// What the phases allocate from, as from a stack; 0 where its size is not known yet.
    NuvSizeT memorySize;
    unsigned char* memory;
    bool isStarted;
};

/// Whether 32 bits can count the elements, and there are any.
bool HasShape(const NuvLinearProgrammingBatch* batch);

/// How much memory the phases of a problem take.
NuvSizeT MemoryOfPhases(const NuvLinearProgrammingBatch* batch);

/// The memory comes last: where nothing follows, 0 for its size will do, which takes time to know.
void PlaceArrays(SingleSolve* x, NuvSizeT memorySize, WorkspaceLayout* layout);
/// Solves a problem, and writes its answers.
void Solve(SingleSolve* x, NuvSizeT problem);

/// Whether problems are solved in turns: not where code must be small.
#ifdef NUV_WITHOUT_TURNS
inline constexpr bool kHasTurns = false;
#else
inline constexpr bool kHasTurns = true;
#endif
inline constexpr NuvSizeT kMaxTurns = 3;
/// Solves the problems from `first` to before `last`, a pivot of each in turns, in the memory of
/// kMaxTurns solves.
void SolveInTurns(SingleSolve* singles, NuvSizeT first, NuvSizeT last);
}  // namespace nuv

#endif
