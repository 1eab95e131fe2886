// The steps of the iteration, and the choice of the road.
#include "Nuv/Utils/Simplex/Iteration.h"

#include <float.h>

#include <initializer_list>

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Kernels/Switches.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
/// Cuts the iteration's arrays out of the block.
/// @return the size that the block must have.
NuvSizeT LayOut(Iteration* it, NuvSizeT nonzeros, void* block)
{
    Cutter cutter(block);
    const NuvSizeT stride = PaddedLength(it->m);
    cutter.Take(&it->basic, it->m);
    cutter.Take(&it->independent, it->width);
    for (NuvFloat32** const x : {&it->basicCosts, &it->b, &it->prices, &it->basicValues,
                                 &it->column, &it->direction, &it->ratios})
        cutter.Take(x, stride);
    cutter.Take(&it->elimination.steps, it->m);
    // Where slacks cost nothing, no more basic variables have a cost than there are others.
    const NuvUint fewer = it->m < it->n ? it->m : it->n;
    LayOut(&it->inverse, it->m, it->costs ? fewer : 1, &cutter);
    LayOut(&it->reducedCosts, it->m, it->n, nonzeros, &cutter);
    const NuvSizeT forPricing = it->reducedCosts.isSparse ? 0 : PaddedLength(it->n);
    const NuvSizeT forInversion = it->costs ? stride : 0;
    cutter.Take(&it->copies, it->m * (forInversion > forPricing ? forInversion : forPricing));
    return cutter.BytesNeeded();
}

bool IsSlackBasis(const Iteration* it)
{
    for (NuvUint i = 0; i != it->m; ++i)
        if (it->basic[i] != SlackOf(it, i))
            return false;
    return true;
}

/// Whether the columns of the first basis stand under their labels: in Phase II by definition, in
/// Phase I if the labels are those of a fresh standard form.
bool HasColumnsUnderLabels(const Iteration* it)
{
    if (it->costs)
        return true;
    for (NuvUint j = 0; j != it->width; ++j)
        if (it->independent[j] != j)
            return false;
    return IsSlackBasis(it);
}

/// Places the nonbasic labels for pricing.
/// @return whether each label but 0 stands in exactly one place.
bool PlaceLabels(Iteration* it)
{
    ReducedCosts* const x = &it->reducedCosts;
    for (NuvUint i = 0; i != it->m; ++i)
        if (!MarkPlaced(x, it->basic[i]))
            return false;
    for (NuvUint j = 0; j != it->width; ++j)
    {
        const NuvUint label = it->independent[j];
        if (label == 0)
            continue;
        if (!MarkPlaced(x, label))
            return false;
        MakeNonbasic(x, label, CostOf(it, label), j);
    }
    return true;
}

bool InvertBasis(Iteration* it)
{
    if (IsSlackBasis(it))
    {
        SetToIdentity(&it->inverse);
        return true;
    }
    it->elimination.multipliers = it->copies;
    const BasisColumns columns = {it->A, static_cast<NuvSizeT>(it->n) + it->m, it->basic};
    return Invert(&it->inverse, &columns, &it->elimination);
}

/// Begins the fast road.
/// @return false when it does not lead anywhere.
bool EnterFast(Iteration* it)
{
    if (!InvertBasis(it))
        return false;
    // From here on the room of the inversion is that of pricing.
    BeginReducedCosts(&it->reducedCosts, it->copies);
    if (!PlaceLabels(it))
        return false;
    for (NuvUint i = 0; i != it->m; ++i)
        if (it->basicCosts[i] != 0.0F)
            SetCost(&it->inverse, i, it->basicCosts[i]);
    ComputePrices(&it->inverse, it->prices);
    return true;
}

void CopyEnteringColumn(Iteration* it, NuvUint label)
{
    if (label != 0 && !it->isLiteral)
    {
        CopyColumn(&it->reducedCosts, label, it->column, it->inverse.stride);
        return;
    }
    for (NuvUint i = 0; i != it->m; ++i)
        it->column[i] = EntryOfA(it, i, label);
}

/// Leaves what a pivot leaves behind: four blocks of m floats and one of m × m.
bool LeavePivotBehind(const Iteration* it)
{
    const NuvSizeT vector = it->m * sizeof(NuvFloat32);
    const NuvSizeT sizes[] = {vector, vector, vector, vector, vector * it->m};
    return LeaveBehind(it->allocator, sizes, 5);
}
}  // namespace

bool BeginIteration(Iteration* it, SolveWatch* watch, NuvUint phase, const NuvLinearProgramming* lp,
                    const StandardFormFacts* facts)
{
    it->watch = watch;
    it->phase = phase;
    it->allocator = lp->alloc;
    it->kernels = watch->kernels;
    it->m = lp->numConstraints;
    it->n = lp->numVars;
    it->width = phase == 1 ? it->n + 1 : it->n;
    it->A = lp->A.data;
    it->costs = phase == 1 ? nullptr : lp->c.data;
    it->isLiteral = false;
    it->inverse.kernels = it->kernels;
    it->reducedCosts.kernels = it->kernels;
    it->reducedCosts.A = it->A;
    if (!TakeWorkspace(&it->workspace, it->allocator, LayOut(it, facts->nonzeros, nullptr)))
        return false;
    (void)LayOut(it, facts->nonzeros, it->workspace.block);
    it->prices = PricesOf(&it->reducedCosts);
    it->artificialRow = it->m;
    const NuvSizeT bytes = PaddedLength(it->m) * sizeof *it->b;
    for (NuvFloat32* const x : {it->basicCosts, it->b, it->column, it->basicValues, it->direction})
        NuvMemZero(x, bytes);
    NuvMemCopy(it->b, lp->b.data, it->m * sizeof *it->b);
    it->inverse.b = it->b;
    return true;
}

bool EnterFirstBasis(Iteration* it, const StandardFormFacts* facts)
{
    for (NuvUint i = 0; i != it->m; ++i)
        it->basicCosts[i] = CostOf(it, it->basic[i]);
    if (switches.structured && facts->isExact && HasColumnsUnderLabels(it) && EnterFast(it))
        return true;
    if (!BeginLiteralRoad(it))
        return false;
    EnterFirstBasisLiterally(it);
    return true;
}

void EndIteration(Iteration* it)
{
    if (it->isLiteral)
        GiveBack(&it->literal.workspace);
    GiveBack(&it->workspace);
}

Entering ChooseEntering(Iteration* it)
{
    if (it->isLiteral)
        return FindLargestLiterally(it);
    const Choice largest =
        FindLargestReducedCost(&it->reducedCosts, it->inverse.numbers, it->inverse.numStored);
    return {largest.value == 0.0F ? 0 : largest.number - 1, largest.value};
}

bool ComputeValuesAndDirection(Iteration* it, const Entering* entering)
{
    const bool hasEntering = entering->reducedCost != 0.0F;
    if (hasEntering)
        CopyEnteringColumn(it, it->independent[entering->position]);
    if (it->isLiteral)
    {
        MultiplyLiterally(it, it->b, it->basicValues);
        if (hasEntering)
            MultiplyLiterally(it, it->column, it->direction);
        return true;
    }
    MultiplyByInverse(&it->inverse, it->basicValues, hasEntering ? it->column : nullptr,
                      it->direction);
    // Each entry of a column that an update may have changed is a factor of a basic value: one that
    // is not finite shows there. Prices that are not finite are not to be multiplied by zeros that
    // are left out.
    const NuvSizeT stride = it->inverse.stride;
    return it->kernels->isFinite(it->basicValues, stride) &&
           it->kernels->isFinite(it->prices, stride);
}

Leaving ChooseLeaving(Iteration* it)
{
    const Choice smallest = it->kernels->findSmallestRatio(it->basicValues, it->direction,
                                                           it->ratios, PaddedLength(it->m));
    if (smallest.value == FLT_MAX)
        return {0, false};
    const bool isArtificial =
        it->artificialRow != it->m && it->ratios[it->artificialRow] == smallest.value;
    return {isArtificial ? it->artificialRow : smallest.number, true};
}

bool IsGoingOn(const Iteration* it, NuvUint entering, NuvUint leaving)
{
    ++it->watch->pivots;
    NuvLinearProgrammingMonitor* const monitor = it->watch->monitor;
    if (!monitor)
        return true;
    const NuvLinearProgrammingPivot pivot = {
        it->phase, it->watch->pivots, it->independent[entering], it->basic[leaving], it->m,
        it->basic, it->basicValues};
    return monitor->beforePivot(monitor, &pivot) != NUV_FALSE;
}

void Exchange(Iteration* it, NuvUint entering, NuvUint leaving)
{
    const NuvUint label = it->independent[entering];
    const NuvUint former = it->basic[leaving];
    it->basic[leaving] = label;
    it->independent[entering] = former;
    it->basicCosts[leaving] = CostOf(it, label);
    if (label == 0)
        it->artificialRow = leaving;
    if (it->isLiteral)
    {
        ExchangeLiterally(it, entering, leaving);
        return;
    }
    if (label != 0)
        MakeBasic(&it->reducedCosts, label);
    if (former != 0)
        MakeNonbasic(&it->reducedCosts, former, CostOf(it, former), entering);
}

bool Pivot(Iteration* it, NuvUint entering, NuvUint leaving)
{
    Exchange(it, entering, leaving);
    if (!it->isLiteral && !FormEta(&it->inverse, it->direction, leaving) && !TakeLiteralRoad(it))
        return false;
    if (it->isLiteral)
        UpdateLiterally(it, leaving);
    else
        Update(&it->inverse, leaving, it->basicCosts[leaving], it->prices);
    return LeavePivotBehind(it);
}

bool TakeLiteralRoad(Iteration* it)
{
    if (!BeginLiteralRoad(it))
        return false;
    TakeInverseOver(it);
    return true;
}
}  // namespace nuv
