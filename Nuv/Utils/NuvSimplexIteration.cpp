// The steps of the iteration.
#include "Nuv/Utils/NuvSimplexIteration.h"

#include <float.h>

#include <initializer_list>

#include "Nuv/Templates/NuvStorage.hpp"
#include "Nuv/Utils/NuvFloatContract.h"

namespace nuv
{
namespace
{
/// The blocks that a pivot leaves behind besides its basic values. Nothing is ever written to them.
struct Leftovers
{
    static constexpr int count = 3;
    void* blocks[count];
};

void ReturnLeftovers(const Iteration* it, const Leftovers* leftovers, int taken)
{
    while (taken != 0)
        NuvAllocatorDeallocate(it->basicValues.allocator, leftovers->blocks[--taken],
                               BytesOf(&it->basicValues));
}

bool TakeLeftovers(const Iteration* it, Leftovers* leftovers)
{
    for (int i = 0; i != Leftovers::count; ++i)
    {
        leftovers->blocks[i] =
            NuvAllocatorAllocate(it->basicValues.allocator, BytesOf(&it->basicValues));
        if (leftovers->blocks[i])
            continue;
        ReturnLeftovers(it, leftovers, i);
        return false;
    }
    return true;
}

/// Brings the inverse to the basis in which column k of A stands in row `leaving`.
bool UpdateInverse(Iteration* it, NuvUint k, NuvUint leaving)
{
    NuvMatrix_NuvFloat32 former;
    if (!NuvMatrix_NuvFloat32ConstructCopy(&former, &it->inverse))
        return false;
    const NuvBool isUpdated =
        NuvRevisedSimplexAlogirthmBasisUpdate(it->A, &former, k, leaving, leaving, &it->inverse);
    NuvMatrix_NuvFloat32Destruct(&former);
    return isUpdated != NUV_FALSE;
}
}  // namespace

void BeginIteration(Iteration* it, Watch* watch, NuvUint phase, NuvLinearProgramming* lp)
{
    it->watch = watch;
    it->phase = phase;
    it->A = &lp->A;
    it->firstLabel = 1;
    it->b = &lp->b;
    NuvMatrix_NuvUintConstructDefault(&it->basic, lp->alloc);
    NuvMatrix_NuvUintConstructDefault(&it->independent, lp->alloc);
    for (NuvMatrix_NuvFloat32* const x :
         {&it->basicCosts, &it->nonbasicCosts, &it->nonbasicColumns, &it->inverse, &it->prices,
          &it->reducedCosts, &it->basicValues, &it->column, &it->direction})
        NuvMatrix_NuvFloat32ConstructDefault(x, lp->alloc);
}

bool TakeStorage(Iteration* it, NuvUint m, NuvUint width)
{
    return NuvMatrix_NuvUintResize(&it->basic, 1, m) &&
           NuvMatrix_NuvUintResize(&it->independent, 1, width) &&
           NuvMatrix_NuvFloat32Resize(&it->basicCosts, 1, m) &&
           NuvMatrix_NuvFloat32Resize(&it->nonbasicCosts, 1, width) &&
           NuvMatrix_NuvFloat32Resize(&it->nonbasicColumns, m, width) &&
           NuvMatrix_NuvFloat32Resize(&it->inverse, m, m) &&
           NuvMatrix_NuvFloat32Resize(&it->prices, 1, m) &&
           NuvMatrix_NuvFloat32Resize(&it->reducedCosts, 1, width) &&
           NuvMatrix_NuvFloat32Resize(&it->column, m, 1) &&
           NuvMatrix_NuvFloat32Resize(&it->direction, m, 1);
}

void EndIteration(Iteration* it)
{
    for (NuvMatrix_NuvFloat32* const x :
         {&it->basicCosts, &it->nonbasicCosts, &it->nonbasicColumns, &it->inverse, &it->prices,
          &it->reducedCosts, &it->basicValues, &it->column, &it->direction})
        NuvMatrix_NuvFloat32Destruct(x);
    NuvMatrix_NuvUintDestruct(&it->basic);
    NuvMatrix_NuvUintDestruct(&it->independent);
}

void Price(Iteration* it)
{
    NuvMatrix_NuvFloat32Multiply(&it->basicCosts, &it->inverse, &it->prices);
    NuvMatrix_NuvFloat32Multiply(&it->prices, &it->nonbasicColumns, &it->reducedCosts);
    NuvMatrix_NuvFloat32Subtract(&it->nonbasicCosts, &it->reducedCosts, &it->reducedCosts);
}

Entering ChooseEntering(const Iteration* it)
{
    Entering best = {0, 0.0F};
    for (NuvUint j = 0; j != it->reducedCosts.nc; ++j)
    {
        const NuvFloat32 reducedCost = it->reducedCosts.data[j];
        if (reducedCost >= best.reducedCost)
            best = {j, reducedCost};
    }
    return best;
}

bool ComputeBasicValues(Iteration* it)
{
    NuvMatrix_NuvFloat32Multiply(&it->inverse, it->b, &it->basicValues);
    return IsStored(&it->basicValues);
}

void ComputeDirection(Iteration* it, NuvUint entering)
{
    const NuvUint k = it->independent.data[entering] - it->firstLabel;
    NuvMatrix_NuvFloat32CopyRange(&it->column, it->A, 0, 0, 0, k, it->column.nr, 1);
    NuvMatrix_NuvFloat32Multiply(&it->inverse, &it->column, &it->direction);
}

Leaving ChooseLeaving(const Iteration* it)
{
    NuvFloat32 smallest = FLT_MAX;
    NuvUint row = 0;
    for (NuvUint i = 0; i != it->basicValues.nr; ++i)
    {
        const NuvFloat32 decrease = it->direction.data[i];
        if (decrease <= 0.0F)
            continue;
        const NuvFloat32 ratio = it->basicValues.data[i] / decrease;
        if (smallest > ratio || (ratio == smallest && it->basic.data[i] == 0))
        {
            row = i;
            smallest = ratio;
        }
    }
    return {row, smallest != FLT_MAX};
}

bool IsGoingOn(Iteration* it, NuvUint entering, NuvUint leaving)
{
    ++it->watch->pivots;
    NuvLinearProgrammingMonitor* const monitor = it->watch->monitor;
    if (!monitor)
        return true;
    const NuvLinearProgrammingPivot pivot = {it->phase,
                                             it->watch->pivots,
                                             it->independent.data[entering],
                                             it->basic.data[leaving],
                                             it->basic.nc,
                                             it->basic.data,
                                             it->basicValues.data};
    return monitor->beforePivot(monitor, &pivot) != NUV_FALSE;
}

void Exchange(Iteration* it, NuvUint entering, NuvUint leaving)
{
    const NuvUint label = it->basic.data[leaving];
    it->basic.data[leaving] = it->independent.data[entering];
    it->independent.data[entering] = label;
    const NuvFloat32 cost = it->basicCosts.data[leaving];
    it->basicCosts.data[leaving] = it->nonbasicCosts.data[entering];
    it->nonbasicCosts.data[entering] = cost;
    NuvMatrix_NuvFloat32CopyRange(&it->nonbasicColumns, it->A, 0, entering, 0,
                                  label - it->firstLabel, it->nonbasicColumns.nr, 1);
}

bool Pivot(Iteration* it, NuvUint entering, NuvUint leaving)
{
    Leftovers leftovers;
    if (!TakeLeftovers(it, &leftovers))
        return false;
    const NuvUint k = it->independent.data[entering] - it->firstLabel;
    Exchange(it, entering, leaving);
    if (!UpdateInverse(it, k, leaving))
    {
        ReturnLeftovers(it, &leftovers, Leftovers::count);
        return false;
    }
    LeaveBehind(&it->basicValues);
    return true;
}

bool LeavePivotBehind(Iteration* it)
{
    Leftovers leftovers;
    if (!TakeLeftovers(it, &leftovers))
        return false;
    LeaveBehind(&it->basicValues);
    return true;
}

void LeaveBehind(NuvMatrix_NuvFloat32* x)
{
    NuvMatrix_NuvFloat32ConstructDefault(x, x->allocator);
}

void LeaveBehind(NuvMatrix_NuvUint* x)
{
    NuvMatrix_NuvUintConstructDefault(x, x->allocator);
}
}  // namespace nuv
