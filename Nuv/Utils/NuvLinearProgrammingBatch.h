/// @file
/// Many small linear programs of one shape at once,
///
///     maximise cᵀx   subject to   A x ≤ b,   x ≥ 0
///
/// with m rows and n variables each, read from arrays of the caller's and answered in arrays of the
/// caller's. Each program's results have the bits that NuvLinearProgrammingSolve gives for the same
/// rows in the same order, whatever else is in the batch, however it is cut into ranges, and on
/// whichever machine; no program stops another or changes its results. Nothing is allocated.
///
///     NuvLinearProgrammingBatch batch = {0};
///     batch.numVars = 2, batch.numConstraints = 3, batch.count = 1000;
///     batch.A = A, batch.strideA = 0;           // all share one matrix, 3 × 2
///     batch.b = b, batch.strideB = 3;           // each has right-hand sides of its own
///     batch.c = c, batch.strideC = 2;
///     batch.verdicts = verdicts, batch.objectives = objectives;
///     void* workspace = malloc(NuvLinearProgrammingBatchWorkspaceSize(&batch));
///     if (workspace && NuvLinearProgrammingBatchSolve(&batch, workspace)) ...
#ifndef NUV_UTILS_NUVLINEARPROGRAMMINGBATCH_H
#define NUV_UTILS_NUVLINEARPROGRAMMINGBATCH_H

#include "Nuv/Utils/NuvLinearProgramming.h"

typedef struct NuvLinearProgrammingBatch NuvLinearProgrammingBatch;

/// `count` programs and where their answers go. Program k reads its data from k strides behind the
/// beginning of an array; a stride of 0 means that all programs share one. Of the answers, each
/// array may be null; they must not overlap the data.
struct NuvLinearProgrammingBatch
{
    /// n, at least 1.
    NuvUint numVars;
    /// m, at least 1.
    NuvUint numConstraints;
    /// How many programs there are.
    NuvSizeT count;

    /// m × n, row after row; strides count floats.
    const NuvFloat32* A;
    /// From one program's A to the next one's; 0: all have the same.
    NuvSizeT strideA;
    /// [m]
    const NuvFloat32* b;
    /// From one program's b to the next one's; 0: all have the same.
    NuvSizeT strideB;
    /// [n]
    const NuvFloat32* c;
    /// From one program's c to the next one's; 0: all have the same.
    NuvSizeT strideC;

    /// A program that wants more pivots than this, over both phases, is given up as Stopped; 0
    /// stands for 100 × (m + n).
    NuvUint pivotLimit;

    /// [count] Ok, Unbounded, Infeasible or Stopped, as NuvLinearProgrammingResultType.
    NuvUint* verdicts;
    /// [count] the optimum; FLT_MAX of an unbounded program, 0 without an optimum.
    NuvFloat32* objectives;
    /// [count × n] the optimal point; 0 without one.
    NuvFloat32* values;
    /// [count] how many pivots were made.
    NuvUint* pivots;
    /// [count × m] by row, the column of [A I] that is basic at the optimum, from 1, the slacks'
    /// behind the variables'; 0 without an optimum.
    NuvUint* bases;
    /// [count × m] by row, its price at the optimum; 0 without one.
    NuvFloat32* prices;
};

/// @return the bytes that one range at a time needs, which must be aligned as by malloc; 0 for a
/// shape that cannot be solved: without rows or variables, or with more elements than 32 bits
/// count.
NUV_API NuvSizeT NuvLinearProgrammingBatchWorkspaceSize(const NuvLinearProgrammingBatch* batch);

/// Solves all programs.
/// @return false, and no answers, for a shape that cannot be solved.
NUV_API NuvBool NuvLinearProgrammingBatchSolve(const NuvLinearProgrammingBatch* batch,
                                               void* workspace);

/// Solves the programs from `first` to before `last`, at most `count`, and writes the answers of
/// these alone. Threads may solve different ranges of a batch at the same time, each with a
/// workspace of its own.
/// @return as NuvLinearProgrammingBatchSolve.
NUV_API NuvBool NuvLinearProgrammingBatchSolveRange(const NuvLinearProgrammingBatch* batch,
                                                    NuvSizeT first, NuvSizeT last, void* workspace);

#endif
