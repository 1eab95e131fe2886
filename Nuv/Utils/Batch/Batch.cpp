// The entries, and the choice of the way.
#include "Nuv/Utils/Batch/Batch.h"

#include "Nuv/Utils/Batch/LaneQueue.h"

namespace nuv
{
namespace
{
struct Plan
{
    SingleSolve single;
    LaneQueue lanes;
};

NuvSizeT PlaceArrays(Plan* plan, const NuvLinearProgrammingBatch* batch, const BatchWay* way,
                     void* workspace)
{
    WorkspaceLayout layout(workspace);
    plan->single.batch = batch;
    plan->single.kernels = way->kernels;
    plan->single.trace = way->trace;
    PlaceArrays(&plan->single, &layout);
    if (way->lanes)
    {
        plan->lanes.batch = batch;
        plan->lanes.loops = way->lanes;
        plan->lanes.single = &plan->single;
        PlaceArrays(&plan->lanes, &layout);
    }
    return layout.BytesNeeded();
}

constexpr InstructionSet kWidestFirst[] = {InstructionSet::Avx512, InstructionSet::Avx2,
                                           InstructionSet::Baseline};

/// Whether the lanes are faster than solving one problem after the other: while what they read and
/// write in every step, the inverses and the matrices of all lanes, is not far beyond the nearest
/// cache. They do all the products of their problems, those with zeros too, which the solve of one
/// problem leaves out, and fewer lanes gain less. bench/small measures where the two meet.
bool DoLanesPay(const NuvLinearProgrammingBatch* batch, NuvUint lanes)
{
    constexpr NuvSizeT kMostBytes = 96 * 1024;
    const NuvSizeT m = batch->numConstraints;
    const NuvSizeT mostRows = lanes >= 8 ? 32 : 20;
    const NuvSizeT elements = m * (m + batch->numVars);
    return m <= mostRows && elements * lanes * sizeof(NuvFloat32) <= kMostBytes;
}
}  // namespace

const LaneLoops* LanesOf(InstructionSet set)
{
    if (!KernelsOf(set))
        return nullptr;
    switch (set)
    {
    case InstructionSet::Avx512:
        return Avx512Lanes();
    case InstructionSet::Avx2:
        return Avx2Lanes();
    case InstructionSet::Baseline:
        return BaselineLanes();
    default:
        return PlainLanes();
    }
}

BatchWay WayOf(const NuvLinearProgrammingBatch* batch)
{
    BatchWay way = {KernelsOfThisMachine(), nullptr, nullptr};
    for (const InstructionSet set : kWidestFirst)
        if (!way.lanes)
            way.lanes = LanesOf(set);
    if (way.lanes && (!FitsLanes(batch) || !DoLanesPay(batch, way.lanes->lanes)))
        way.lanes = nullptr;
    return way;
}

NuvSizeT WorkspaceSize(const NuvLinearProgrammingBatch* batch, const BatchWay* way)
{
    Plan plan;
    return PlaceArrays(&plan, batch, way, nullptr);
}

void SolveRange(const NuvLinearProgrammingBatch* batch, const BatchWay* way, NuvSizeT first,
                NuvSizeT last, void* workspace)
{
    Plan plan;
    (void)PlaceArrays(&plan, batch, way, workspace);
    Start(&plan.single);
    if (way->lanes)
        return SolveRange(&plan.lanes, first, last);
    for (NuvSizeT problem = first; problem != last; ++problem)
        Solve(&plan.single, problem);
}
}  // namespace nuv

NuvSizeT NuvLinearProgrammingBatchWorkspaceSize(const NuvLinearProgrammingBatch* batch)
{
    if (!nuv::HasShape(batch))
        return 0;
    const nuv::BatchWay way = nuv::WayOf(batch);
    return nuv::WorkspaceSize(batch, &way);
}

NuvBool NuvLinearProgrammingBatchSolve(const NuvLinearProgrammingBatch* batch, void* workspace)
{
    return NuvLinearProgrammingBatchSolveRange(batch, 0, batch->count, workspace);
}

NuvBool NuvLinearProgrammingBatchSolveRange(const NuvLinearProgrammingBatch* batch, NuvSizeT first,
                                            NuvSizeT last, void* workspace)
{
    if (!nuv::HasShape(batch))
        return NUV_FALSE;
    const nuv::BatchWay way = nuv::WayOf(batch);
    nuv::SolveRange(batch, &way, first, last, workspace);
    return NUV_TRUE;
}
