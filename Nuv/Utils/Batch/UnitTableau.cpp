// Which problems are solved by a tableau of integers, and what becomes of those that cannot.
#include "Nuv/Utils/Batch/UnitTableau.h"

#include "Nuv/Utils/Batch/SingleSolve.h"
#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Kernels/Kernels.h"

namespace nuv
{
namespace
{
void WriteOptimum(const UnitTableau* x, const NuvLinearProgrammingBatch* batch)
{
    const NuvFloat32* const b = DataOf(batch, x->problem).b;
    BatchOptimum found = {0.0F, x->basic, x->values, x->prices, 1, 1};
    for (NuvSizeT i = 0; i != x->m; ++i)
        found.objective = found.objective + x->prices[i] * b[i];
    WriteOptimum(batch, x->problem, x->pivots, &found);
}

/// Writes the answers of a problem at its end.
/// @return whether the tableau was exact.
bool Finish(const UnitTableau* x, UnitEnd end, SingleSolve* single)
{
    switch (end)
    {
    case UnitEnd::Optimal:
        WriteOptimum(x, single->batch);
        return true;
    case UnitEnd::Unbounded:
        WriteVerdict(single->batch, x->problem, x->pivots,
                     NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded);
        return true;
    case UnitEnd::Stopped:
        WriteVerdict(single->batch, x->problem, x->pivots, NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped);
        return true;
    default:
        if (x->trace)
            x->trace->onPivot(x->trace, x->problem, 0, 0, 0);
        Solve(single, x->problem);
        return false;
    }
}

constexpr NuvSizeT kMostInVain = 4;

struct UnitQueue
{
    const UnitLoops* loops;
    SingleSolve* single;
    NuvSizeT next;
    NuvSizeT last;
    /// How many more problems in vain than with success are not yet too many.
    NuvSizeT credit;
};

/// @return whether there was a problem left.
bool Refill(UnitTableau* x, UnitQueue* queue)
{
    if (queue->next == queue->last || queue->credit == 0)
        return false;
    x->problem = queue->next++;
    const BatchData data = DataOf(queue->single->batch, x->problem);
    queue->loops->start(x, &data);
    return true;
}
}  // namespace

bool HasUnitCoefficients(const NuvLinearProgrammingBatch* batch, NuvSizeT problem)
{
    const NuvFloat32* const A = DataOf(batch, problem).A;
    const NuvSizeT size = static_cast<NuvSizeT>(batch->numConstraints) * batch->numVars;
    bool areUnits = true;
    for (NuvSizeT k = 0; k != size && areUnits; ++k)
        areUnits = A[k] == 0.0F || A[k] == 1.0F || A[k] == -1.0F;
    return areUnits;
}

void PlaceArrays(UnitTableau* x, const NuvLinearProgrammingBatch* batch, WorkspaceLayout* layout)
{
    x->m = batch->numConstraints;
    x->n = batch->numVars;
    x->rowLength = InTiles(x->n);
    x->columnLength = InTiles(x->m);
    x->pivotLimit = PivotLimitOf(batch);
    layout->Place(x->m * x->rowLength, &x->rows);
    layout->Place(x->rowLength, &x->costs, &x->positions);
    layout->Place((x->rowLength + 16) / 32 * x->columnLength, &x->patterns);
    layout->Place(x->columnLength, &x->values, &x->direction, &x->basic, &x->prices);
}

NuvSizeT SolveRange(UnitTableau* turns, const UnitLoops* loops, SingleSolve* single, NuvSizeT first,
                    NuvSizeT last)
{
    UnitQueue queue = {loops, single, first, last, kMostInVain};
    NuvSizeT numTurns = 0;
    for (NuvSizeT k = 0; k != kUnitTurns; ++k)
    {
        turns[k].trace = single->trace;
        numTurns += Refill(&turns[k], &queue) ? 1 : 0;
    }
    while (numTurns != 0)
        for (NuvSizeT k = 0; k < numTurns; ++k)
        {
            UnitTableau* const x = &turns[k];
            const UnitEnd end = loops->step(x);
            if (end == UnitEnd::None)
                continue;
            if (Finish(x, end, single))
                ++queue.credit;
            else if (queue.credit != 0)
                --queue.credit;
            if (!Refill(x, &queue))
                *x = turns[--numTurns];
        }
    return queue.next;
}
}  // namespace nuv
