// The core for JavaScript: batches of any shape, one program being a batch of one.
#include "Nuv/Utils/Batch/LaneState.h"
#include "Nuv/Utils/Kernels/Kernels.h"
#include "Nuv/Utils/NuvLinearProgrammingBatch.h"

#define NUV_EXPORT(name) __attribute__((export_name(name))) extern "C"

// Every engine has vectors of four floats: the loops without them, which give the same bits, are
// left out, and those with them stand in their place.
const nuv::Kernels* nuv::PlainKernels()
{
    return BaselineKernels();
}

const nuv::LaneLoops* nuv::PlainLanes()
{
    return BaselineLanes();
}

NUV_EXPORT("workspaceSize") unsigned WorkspaceSize(unsigned rows, unsigned columns, unsigned count)
{
    NuvLinearProgrammingBatch batch = {};
    batch.numVars = columns;
    batch.numConstraints = rows;
    batch.count = count;
    const NuvSizeT size = NuvLinearProgrammingBatchWorkspaceSize(&batch);
    return size > 0xFFFFFFFFU ? 0 : static_cast<unsigned>(size);
}

/// Strides count floats; 0 is one for all. @return 0 for a shape that cannot be solved.
NUV_EXPORT("solve")
unsigned Solve(unsigned rows, unsigned columns, unsigned count, const float* A, unsigned strideA,
               const float* b, unsigned strideB, const float* c, unsigned strideC,
               unsigned pivotLimit, unsigned* verdicts, float* objectives, float* values,
               unsigned* pivots, unsigned* bases, float* prices, void* workspace)
{
    NuvLinearProgrammingBatch batch = {};
    batch.numVars = columns;
    batch.numConstraints = rows;
    batch.count = count;
    batch.A = A;
    batch.strideA = strideA;
    batch.b = b;
    batch.strideB = strideB;
    batch.c = c;
    batch.strideC = strideC;
    batch.pivotLimit = pivotLimit;
    batch.verdicts = verdicts;
    batch.objectives = objectives;
    batch.values = values;
    batch.pivots = pivots;
    batch.bases = bases;
    batch.prices = prices;
    return NuvLinearProgrammingBatchSolve(&batch, workspace);
}
