// The steps that both kinds of iteration share.
#include "Nuv/Utils/Simplex/Iteration.h"

#include <float.h>

#include <limits>

#include "Nuv/Utils/Kernels/Assert.h"
#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
constexpr NuvFloat32 kBasicCost = -std::numeric_limits<NuvFloat32>::infinity();

void PlaceNonbasic(Iteration* it, NuvUint position)
{
    const NuvUint label = it->nonbasic[position];
    if (label == kArtificialLabel)
        return;
    it->costs[IndexOf(it, label)] = CostOf(it, label);
    it->positions[IndexOf(it, label)] = position;
}
}  // namespace

void PlaceArrays(Iteration* it, SolveContext* context, const StandardForm* form, Phase phase,
                 WorkspaceLayout* layout)
{
    it->context = context;
    it->form = form;
    it->kernels = context->kernels;
    it->phase = phase;
    it->m = form->m;
    it->stride = PaddedLength(form->m);
    it->numNonbasic = phase == Phase::I ? form->n + 1 : form->n;
    it->firstSlack = PaddedLength(form->n);
    it->length = it->firstSlack + it->stride;
    layout->Place(it->length, &it->costs, &it->positions);
    layout->Place(it->m, &it->basic);
    layout->Place(it->numNonbasic, &it->nonbasic);
    layout->Place(it->stride, &it->basicCosts, &it->b, &it->prices, &it->basicValues,
                  &it->enteringColumn, &it->direction, &it->ratios);
}

void Initialise(Iteration* it, const NuvLinearProgramming* lp)
{
    it->allocator = lp->alloc;
    it->artificialRow = it->m;
    it->hasPivoted = false;
    NuvMemCopy(it->basic, lp->basic.data, it->m * sizeof *it->basic);
    const NuvUint numArtificial = it->phase == Phase::I ? 1 : 0;
    it->nonbasic[0] = kArtificialLabel;
    NuvMemCopy(it->nonbasic + numArtificial, lp->independent.data,
               it->form->n * sizeof *it->nonbasic);
    // Those up to the direction stand one behind the other: whole tiles are whole lines.
    constexpr NuvSizeT kNumZeroed = 6;
    NUV_ASSERT(it->direction == it->basicCosts + (kNumZeroed - 1) * it->stride);
    NuvMemZero(it->basicCosts, kNumZeroed * it->stride * sizeof *it->basicCosts);
    NuvMemCopy(it->b, it->form->b, it->m * sizeof *it->b);
    // Slacks of the standard form cost nothing.
    if (it->form->hasFirstLabels && it->form->isOrdinary)
        return;
    for (NuvUint i = 0; i != it->m; ++i)
        it->basicCosts[i] = CostOf(it, it->basic[i]);
}

void PlaceLabels(Iteration* it)
{
    for (NuvSizeT j = 0; j != it->length; ++j)
    {
        it->costs[j] = kBasicCost;
        it->positions[j] = 0;
    }
    for (NuvUint j = 0; j != it->numNonbasic; ++j)
        PlaceNonbasic(it, j);
}

Leaving ChooseLeaving(Iteration* it)
{
    const Choice smallest =
        it->kernels->findSmallestRatio(it->basicValues, it->direction, it->ratios, it->stride);
    return LeavingOf(it, &smallest);
}

Leaving LeavingOf(const Iteration* it, const Choice* smallest)
{
    if (smallest->value == FLT_MAX)
        // same bits: the row of a leaving variable that does not exist is not read
        return {0, false};
    const bool isArtificial =
        it->artificialRow != it->m && it->ratios[it->artificialRow] == smallest->value;
    return {isArtificial ? it->artificialRow : smallest->number, true};
}

Leaving ChooseMostNegative(const Iteration* it)
{
    NuvFloat32 smallest = FLT_MAX;
    NuvUint row = 0;
    for (NuvUint i = 0; i != it->m; ++i)
    {
        if (!(smallest > it->basicValues[i]))
            continue;
        row = i;
        smallest = it->basicValues[i];
    }
    return {row, true};
}

bool ReportPivot(const Iteration* it, const Entering* entering, const Leaving* leaving)
{
    // same bits: no solve makes as many pivots as there are numbers
    if (it->context->pivots == it->context->pivotLimit)
        return false;
    ++it->context->pivots;
    NuvLinearProgrammingMonitor* const monitor = it->context->monitor;
    if (!monitor)
        return true;
    const NuvLinearProgrammingPivot pivot = {static_cast<NuvUint>(it->phase),
                                             it->context->pivots,
                                             it->nonbasic[entering->position],
                                             it->basic[leaving->row],
                                             it->m,
                                             it->basic,
                                             it->basicValues};
    return monitor->beforePivot(monitor, &pivot) != NUV_FALSE;
}

void ExchangeLabels(Iteration* it, NuvUint position, NuvUint row)
{
    const NuvUint entering = it->nonbasic[position];
    it->nonbasic[position] = it->basic[row];
    it->basic[row] = entering;
    it->basicCosts[row] = CostOf(it, entering);
    PlaceNonbasic(it, position);
    if (entering == kArtificialLabel)
        it->artificialRow = row;
    else
        it->costs[IndexOf(it, entering)] = kBasicCost;
}

NuvFloat32 ComputeObjective(const Iteration* it)
{
    NuvFloat32 objective = 0.0F;
    for (NuvUint i = 0; i != it->m; ++i)
        objective = objective + it->prices[i] * it->b[i];
    return objective;
}
}  // namespace nuv
