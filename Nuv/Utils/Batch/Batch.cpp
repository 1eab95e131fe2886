// The entries, and the choice of the way.
#include "Nuv/Utils/Batch/Batch.h"

#include "Nuv/Utils/Batch/LaneQueue.h"

namespace nuv
{
namespace
{
struct Plan
{
    SingleSolve singles[kMaxTurns];
    LaneQueue lanes;
    UnitTableau tableaus[kUnitTurns];
};

/// The lanes come first; of the single solves they need one at most.
NuvSizeT PlaceArrays(Plan* plan, const NuvLinearProgrammingBatch* batch, const BatchWay* way,
                     NuvSizeT memorySize, void* workspace)
{
    WorkspaceLayout layout(workspace);
    for (NuvSizeT k = 0; k != kMaxTurns; ++k)
    {
        plan->singles[k].batch = batch;
        plan->singles[k].kernels = way->kernels;
        plan->singles[k].trace = way->trace;
    }
    if (way->lanes)
    {
        plan->lanes.batch = batch;
        plan->lanes.loops = way->lanes;
        plan->lanes.single = plan->singles;
        PlaceArrays(&plan->lanes, &layout);
    }
    if (kHasTurns && way->units)
        for (UnitTableau& tableau : plan->tableaus)
            PlaceArrays(&tableau, batch, &layout);
    for (NuvSizeT k = 0; k != (way->hasTurns ? kMaxTurns : 1); ++k)
        PlaceArrays(&plan->singles[k], memorySize, &layout);
    return layout.BytesNeeded();
}

constexpr InstructionSet kWidestFirst[] = {InstructionSet::Avx512, InstructionSet::Avx2,
                                           InstructionSet::Baseline};

/// Whether the lanes are faster than solving one problem after the other: while what they read and
/// write in every step, the inverses and the matrices of all lanes, is not far beyond the nearest
/// cache. They do all the products of their problems, those with zeros too, which the solve of one
/// problem leaves out, and fewer lanes gain less. bench/small measures where the two meet. What of
/// this the data decide, and not the shape, is IsSparse: a workspace is for both.
bool DoLanesPay(const NuvLinearProgrammingBatch* batch, NuvUint lanes)
{
    constexpr NuvSizeT kMostBytes = 96 * 1024;
    const NuvSizeT m = batch->numConstraints;
    const NuvSizeT mostRows = lanes >= 8 ? 32 : 20;
    const NuvSizeT elements = m * (m + batch->numVars);
    return m <= mostRows && elements * lanes * sizeof(NuvFloat32) <= kMostBytes;
}

/// Whether turns gain: while the inverses and the matrices of all of them are in the nearest cache.
bool DoTurnsPay(const NuvLinearProgrammingBatch* batch)
{
    constexpr NuvSizeT kMostRows = 64;
    constexpr NuvSizeT kMostBytes = 56 * 1024;
    const NuvSizeT m = batch->numConstraints;
    const NuvSizeT elements = m * (InTiles(m) + InTiles(batch->numVars));
    return m <= kMostRows && kMaxTurns * elements * sizeof(NuvFloat32) <= kMostBytes;
}

/// Whether tableaus gain where all coefficients are units: fewer rows are as fast in lanes.
bool DoUnitTableausPay(const NuvLinearProgrammingBatch* batch)
{
    constexpr NuvUint kFewestRows = 10;
    return batch->numConstraints >= kFewestRows && batch->numConstraints <= kMaxUnitRows;
}

/// Whether a problem of so many rows has so many zeros that leaving them out gains more than lanes.
bool IsSparse(const NuvLinearProgrammingBatch* batch, NuvSizeT problem)
{
    constexpr NuvUint kFewestRows = 17;
    constexpr NuvSizeT kMostOfHundred = 25;
    const NuvUint m = batch->numConstraints;
    const NuvSizeT size = static_cast<NuvSizeT>(m) * batch->numVars;
    return m >= kFewestRows &&
           100 * CountNonzeros(DataOf(batch, problem).A, size) <= kMostOfHundred * size;
}
}  // namespace

const LaneLoops* LanesOf(InstructionSet set)
{
    // In the order of the sets.
    constexpr const LaneLoops* (*kLoops[])() = {PlainLanes, BaselineLanes, Avx2Lanes, Avx512Lanes};
    return KernelsOf(set) ? kLoops[static_cast<NuvSizeT>(set)]() : nullptr;
}

const UnitLoops* UnitLoopsOf(InstructionSet set)
{
    constexpr const UnitLoops* (*kLoops[])() = {PlainUnitLoops, BaselineUnitLoops, Avx2UnitLoops,
                                                Avx512UnitLoops};
    return KernelsOf(set) ? kLoops[static_cast<NuvSizeT>(set)]() : nullptr;
}

BatchWay WayOf(const NuvLinearProgrammingBatch* batch)
{
    BatchWay way = {KernelsOfThisMachine(), nullptr, nullptr};
    for (const InstructionSet set : kWidestFirst)
        if (!way.lanes)
            way.lanes = LanesOf(set);
    if (way.lanes && (!FitsLanes(batch) || !DoLanesPay(batch, way.lanes->lanes)))
        way.lanes = nullptr;
    way.hasTurns = kHasTurns && DoTurnsPay(batch);
    way.areLanesForDense = kHasTurns;
    for (const InstructionSet set : kWidestFirst)
        if (kHasTurns && !way.units && DoUnitTableausPay(batch))
            way.units = UnitLoopsOf(set);
    return way;
}

NuvSizeT WorkspaceSize(const NuvLinearProgrammingBatch* batch, const BatchWay* way)
{
    Plan plan;
    return PlaceArrays(&plan, batch, way, MemoryOfPhases(batch), nullptr);
}

void SolveRange(const NuvLinearProgrammingBatch* batch, const BatchWay* way, NuvSizeT first,
                NuvSizeT last, void* workspace)
{
    if (first == last)
        return;
    Plan plan;
    if (kHasTurns && way->units && HasUnitCoefficients(batch, first))
    {
        (void)PlaceArrays(&plan, batch, way, MemoryOfPhases(batch), workspace);
        first = SolveRange(plan.tableaus, way->units, plan.singles, first, last);
        if (first == last)
            return;
    }
    const bool areInLanes = way->lanes && !(way->areLanesForDense && IsSparse(batch, first));
    (void)PlaceArrays(&plan, batch, way, areInLanes ? 0 : MemoryOfPhases(batch), workspace);
    if (areInLanes)
        return SolveRange(&plan.lanes, first, last);
    if (kHasTurns && way->hasTurns)
        return SolveInTurns(plan.singles, first, last);
    for (NuvSizeT problem = first; problem != last; ++problem)
        Solve(plan.singles, problem);
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
