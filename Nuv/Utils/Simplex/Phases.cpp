// Phase I and Phase II: one loop, and two sets of rules for what differs. No tolerance anywhere:
// every test compares with exactly 0 or FLT_MAX. What a phase retains with the allocator is part of
// its contract; whatever else it has allocated it frees.
#include "Nuv/Utils/Simplex/Phases.h"

#include <float.h>

#include <initializer_list>
#include <optional>

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/NuvStdCLibInline.h"
#include "Nuv/Utils/Simplex/SmallIteration.h"

namespace nuv
{
namespace
{
using Result = NuvLinearProgrammingResultType;

/// What differs between the phases. The functions answer InvalidInput when storage is refused.
struct PhaseRules
{
    Phase phase;
    /// The first pivot is forced: position 0, the artificial variable, enters in the row of the
    /// most negative right-hand side.
    bool isFirstPivotForced;
    Result (*finishOptimal)(const Iteration* it, NuvLinearProgramming* lp);
    Result (*finishUnbounded)(const Iteration* it, NuvLinearProgramming* lp);
};

/// The artificial variable leaves: the labels are the result of Phase I.
Result FinishFeasible(Iteration* it, NuvLinearProgramming* lp, const Entering* entering,
                      const Leaving* leaving);

/// Leaves blocks with the allocator of a model; a solve without one leaves none.
bool Retain(const Iteration* it, const NuvSizeT* sizes, NuvSizeT count)
{
    return it->context->taker || AllocateRetained(it->allocator, sizes, count);
}

/// What a pivot retains: four blocks of m floats and one of m × m.
bool RetainPivotBlocks(const Iteration* it)
{
    const NuvSizeT vector = it->m * sizeof(NuvFloat32);
    const NuvSizeT sizes[] = {vector, vector, vector, vector, vector * it->m};
    return Retain(it, sizes, 5);
}

template <class Steps>
Leaving ChooseLeaving(const Steps*, Iteration* it)
{
    return ChooseLeaving(it);
}

template <class Steps>
void Exchange(Steps*, Iteration* it, NuvUint position, NuvUint row)
{
    ExchangeLabels(it, position, row);
}

/// The simplex method. `Steps` is a DenseIteration, a StructuredIteration or a SmallIteration.
/// @return nothing when the dense iteration is to take over.
template <class Steps>
std::optional<Result> Iterate(Steps* steps, Iteration* it, const PhaseRules* rules,
                              NuvLinearProgramming* lp)
{
    for (;;)
    {
        const bool isForced = rules->isFirstPivotForced && !it->hasPivoted;
        const Entering entering = isForced ? Entering{0, 1.0F} : ChooseEntering(steps, it);
        if (!ComputeValuesAndDirection(steps, it, &entering))
            return {};
        if (entering.reducedCost == 0.0F)
            return rules->finishOptimal(it, lp);
        const Leaving leaving = isForced ? ChooseMostNegative(it) : ChooseLeaving(steps, it);
        if (!leaving.exists)
            return rules->finishUnbounded(it, lp);
        if (!FormEta(steps, it, leaving.row))
            return {};
        if (!ReportPivot(it, &entering, &leaving))
            return NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped;
        if (leaving.row == it->artificialRow)
            return FinishFeasible(it, lp, &entering, &leaving);
        Exchange(steps, it, entering.position, leaving.row);
        Update(steps, it, leaving.row);
        it->hasPivoted = true;
        if (!RetainPivotBlocks(it))
            return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    }
}

/// Goes on with the dense iteration: from another's inverse, or from the first basis.
template <class Steps>
Result IterateDensely(const Steps* former, Iteration* it, const PhaseRules* rules,
                      NuvLinearProgramming* lp)
{
    DenseIteration dense;
    if (!AllocateArrays(&dense, it))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    if (former)
        FallBackToDense(former, it, &dense);
    else
        StartFromFirstBasis(&dense, it);
    const Result result = *Iterate(&dense, it, rules, lp);
    FreeWorkspace(&dense.workspace);
    return result;
}

template <class Steps>
NuvSizeT PlaceArrays(Iteration* it, Steps* steps, SolveContext* context, const StandardForm* form,
                     Phase phase, void* block)
{
    WorkspaceLayout layout(block);
    PlaceArrays(it, context, form, phase, &layout);
    PlaceArrays(steps, it, &layout);
    return layout.BytesNeeded();
}

/// The arrays of the smallest problems are on the stack.
constexpr NuvSizeT kLocalBytes = 16384;

template <class Steps>
Result SolvePhaseBy(const PhaseRules* rules, NuvLinearProgramming* lp, SolveContext* context,
                    const StandardForm* form)
{
    Iteration it;
    Steps steps;
    unsigned char local[kLocalBytes];
    Workspace workspace = {nullptr, local, sizeof local};
    const NuvSizeT size = PlaceArrays(&it, &steps, context, form, rules->phase, local);
    const bool isLocal = size <= sizeof local;
    if (!isLocal)
    {
        if (!AllocateWorkspace(&workspace, lp->alloc, size))
            return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
        (void)PlaceArrays(&it, &steps, context, form, rules->phase, workspace.block);
    }
    Initialise(&it, lp);
    const bool isStarted = TryStart(&steps, &it);
    std::optional<Result> result;
    if (isStarted)
        result = Iterate(&steps, &it, rules, lp);
    if (!result)
        result = IterateDensely(isStarted ? &steps : nullptr, &it, rules, lp);
    if (!isLocal)
        FreeWorkspace(&workspace);
    return *result;
}

Result SolvePhase(const PhaseRules* rules, NuvLinearProgramming* lp, SolveContext* context,
                  const StandardForm* form)
{
    return IsSmall(form) ? SolvePhaseBy<SmallIteration>(rules, lp, context, form)
                         : SolvePhaseBy<StructuredIteration>(rules, lp, context, form);
}

// Phase I -----------------------------------------------------------------------------------------

/// Retains what the end of Phase I does, `numVectors` blocks of m floats, and what its set-up does.
bool RetainPhaseIBlocks(const Iteration* it, NuvSizeT numVectors)
{
    const NuvSizeT vector = it->m * sizeof(NuvFloat32);
    const NuvSizeT nonbasic = it->numNonbasic * sizeof(NuvFloat32);
    const NuvSizeT sizes[] = {vector * (it->numNonbasic + static_cast<NuvSizeT>(it->m)),
                              vector * it->m,
                              vector * it->numNonbasic,
                              vector,
                              nonbasic,
                              vector * it->m,
                              vector,
                              nonbasic,
                              vector,
                              vector,
                              vector,
                              vector};
    return Retain(it, sizes, 8 + numVectors);
}

/// No reduced cost is positive while the artificial variable is still basic.
Result ClassifyPhaseIOptimum(const Iteration* it, NuvLinearProgramming*)
{
    if (!RetainPhaseIBlocks(it, 1))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    return ComputeObjective(it) == 0.0F ? NUV_LINEARPROGRAMMINGRESULTTYPE_Ok
                                        : NUV_LINEARPROGRAMMINGRESULTTYPE_Infeasible;
}

Result FinishUnboundedPhaseI(const Iteration* it, NuvLinearProgramming*)
{
    return RetainPhaseIBlocks(it, 4) ? NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded
                                     : NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
}

Result FinishFeasible(Iteration* it, NuvLinearProgramming* lp, const Entering* entering,
                      const Leaving* leaving)
{
    if (!RetainPhaseIBlocks(it, 4))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    ExchangeLabels(it, entering->position, leaving->row);
    NuvMemCopy(lp->basic.data, it->basic, it->m * sizeof *it->basic);
    // n are left: the exchange has put the artificial variable among the n + 1.
    NuvUint next = 0;
    for (NuvUint j = 0; j != it->numNonbasic; ++j)
        if (it->nonbasic[j] != kArtificialLabel)
            lp->independent.data[next++] = it->nonbasic[j];
    return NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;
}

constexpr PhaseRules kRulesOfPhaseI = {Phase::I, true, ClassifyPhaseIOptimum,
                                       FinishUnboundedPhaseI};

// Phase II ----------------------------------------------------------------------------------------

/// Writes the objective, and the values of the basic variables that are not slacks.
Result FinishOptimal(const Iteration* it, NuvLinearProgramming* lp)
{
    const NuvSizeT vector = it->m * sizeof(NuvFloat32);
    const NuvSizeT sizes[] = {vector, vector * it->m};
    if (!Retain(it, sizes, 2))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    lp->objectiveValue = ComputeObjective(it);
    if (AnswerTaker* const taker = it->context->taker)
    {
        const Optimum optimum = {lp->objectiveValue, it->basic, it->basicValues, it->prices};
        taker->take(taker, &optimum);
        return NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;
    }
    const NuvSizeT numValues = NuvVector_NuvPair_NuvString__NuvFloat32Size(&lp->variableValues);
    for (NuvUint i = 0; i != it->m; ++i)
    {
        const NuvUint label = it->basic[i];
        if (label <= it->form->n && label <= numValues)
            lp->variableValues.begin[label - 1].second = it->basicValues[i];
    }
    return NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;
}

Result FinishUnbounded(const Iteration* it, NuvLinearProgramming* lp)
{
    if (!RetainPivotBlocks(it))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    lp->objectiveValue = FLT_MAX;
    return NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded;
}

constexpr PhaseRules kRulesOfPhaseII = {Phase::II, false, FinishOptimal, FinishUnbounded};
}  // namespace

NuvLinearProgrammingResultType SolvePhaseI(NuvLinearProgramming* lp, SolveContext* context,
                                           const StandardForm* form)
{
    return CanCountElements(lp, 1) ? SolvePhase(&kRulesOfPhaseI, lp, context, form)
                                   : NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
}

NuvLinearProgrammingResultType SolvePhaseII(NuvLinearProgramming* lp, SolveContext* context,
                                            const StandardForm* form)
{
    return SolvePhase(&kRulesOfPhaseII, lp, context, form);
}

NuvLinearProgrammingResultType SolveInContext(NuvLinearProgramming* lp, SolveContext* context)
{
    StandardForm form;
    return PrepareInputs(lp, &form) ? SolveForm(lp, context, &form)
                                    : NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
}

NuvLinearProgrammingResultType SolveForm(NuvLinearProgramming* lp, SolveContext* context,
                                         const StandardForm* form)
{
    if (!NuvRevisedSimplexIsPhaseIRequired(lp))
        return SolvePhaseII(lp, context, form);
    const NuvLinearProgrammingResultType result = SolvePhaseI(lp, context, form);
    if (result != NUV_LINEARPROGRAMMINGRESULTTYPE_Ok)
        return result;
    StandardForm feasible = *form;
    feasible.hasFirstLabels = HasFirstLabels(lp);
    return SolvePhaseII(lp, context, &feasible);
}

NuvSizeT BytesOfPhases(const StandardForm* form)
{
    SolveContext context = {nullptr, 0, nullptr, nullptr};
    StandardForm shape = *form;
    NuvSizeT most = 0;
    for (const Phase phase : {Phase::I, Phase::II})
        // Dense pricing, and sparse pricing of as many non-zeros as it is for.
        for (const NuvSizeT part : {NuvSizeT{1}, Kernels::kTile})
        {
            Iteration it;
            StructuredIteration structured;
            SmallIteration small;
            DenseIteration dense;
            shape.hasFirstLabels = phase == Phase::I;
            shape.maxNonzeros = static_cast<NuvSizeT>(form->m) * form->n / part;
            for (const NuvSizeT bytes :
                 {PlaceArrays(&it, &small, &context, &shape, phase, nullptr),
                  PlaceArrays(&it, &structured, &context, &shape, phase, nullptr)})
            {
                const NuvSizeT all = bytes + PlaceArrays(&dense, &it, nullptr);
                most = all > most ? all : most;
            }
        }
    return most;
}
}  // namespace nuv
