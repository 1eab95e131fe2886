// Phase I, Phase II and the test between them. No tolerance anywhere: every test compares with
// exactly 0 or FLT_MAX. What a phase leaves with the allocator is part of its contract; on every
// other way out it gives back what it took.
#include "Nuv/Utils/Simplex/Phases.h"

#include <float.h>

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Simplex/Iteration.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
/// prices · b: what the basis is worth.
NuvFloat32 ComputeObjective(const Iteration* it)
{
    NuvFloat32 objective = 0.0F;
    for (NuvUint i = 0; i != it->m; ++i)
        objective = objective + it->prices[i] * it->b[i];
    return objective;
}

bool BeginPhaseII(Iteration* it, const NuvLinearProgramming* lp, SolveWatch* watch,
                  const StandardFormFacts* facts)
{
    if (!BeginIteration(it, watch, 2, lp, facts))
        return false;
    NuvMemCopy(it->basic, lp->basic.data, it->m * sizeof *it->basic);
    NuvMemCopy(it->independent, lp->independent.data, it->width * sizeof *it->independent);
    return EnterFirstBasis(it, facts);
}

/// Writes the objective, and the values of the basic variables that are not slacks.
void WriteBack(NuvLinearProgramming* lp, const Iteration* it)
{
    lp->objectiveValue = ComputeObjective(it);
    const NuvSizeT numValues = NuvVector_NuvPair_NuvString__NuvFloat32Size(&lp->variableValues);
    for (NuvUint i = 0; i != it->m; ++i)
    {
        const NuvUint label = it->basic[i];
        if (label <= it->n && label <= numValues)
            lp->variableValues.begin[label - 1].second = it->basicValues[i];
    }
}

NuvLinearProgrammingResultType FinishOptimal(Iteration* it, NuvLinearProgramming* lp)
{
    const NuvSizeT vector = it->m * sizeof(NuvFloat32);
    const NuvSizeT sizes[] = {vector, vector * it->m};
    if (!LeaveBehind(it->allocator, sizes, 2))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    WriteBack(lp, it);
    return NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;
}

NuvLinearProgrammingResultType FinishUnbounded(Iteration* it, NuvLinearProgramming* lp)
{
    const NuvSizeT vector = it->m * sizeof(NuvFloat32);
    const NuvSizeT sizes[] = {vector, vector, vector, vector, vector * it->m};
    if (!LeaveBehind(it->allocator, sizes, 5))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    lp->objectiveValue = FLT_MAX;
    return NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded;
}

NuvLinearProgrammingResultType IteratePhaseII(Iteration* it, NuvLinearProgramming* lp)
{
    for (;;)
    {
        const Entering entering = ChooseEntering(it);
        if (!ComputeValuesAndDirection(it, &entering))
        {
            if (!TakeLiteralRoad(it))
                return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
            continue;
        }
        if (entering.reducedCost == 0.0F)
            return FinishOptimal(it, lp);
        const Leaving leaving = ChooseLeaving(it);
        if (!leaving.exists)
            return FinishUnbounded(it, lp);
        if (!IsGoingOn(it, entering.position, leaving.row))
            return NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped;
        if (!Pivot(it, entering.position, leaving.row))
            return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    }
}

bool BeginPhaseI(Iteration* it, const NuvLinearProgramming* lp, SolveWatch* watch,
                 const StandardFormFacts* facts)
{
    if (!BeginIteration(it, watch, 1, lp, facts))
        return false;
    NuvMemCopy(it->basic, lp->basic.data, it->m * sizeof *it->basic);
    it->independent[0] = 0;
    NuvMemCopy(it->independent + 1, lp->independent.data, it->n * sizeof *it->independent);
    return EnterFirstBasis(it, facts);
}

/// The row of the smallest basic value, the first one on ties: what leaves for the artificial
/// variable.
NuvUint MostNegativeRow(const Iteration* it)
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
    return row;
}

/// Leaves what the end of Phase I leaves behind, `numVectors` blocks of m floats, and what its
/// set-up does.
bool LeavePhaseIBehind(const Iteration* it, NuvSizeT numVectors)
{
    const NuvSizeT vector = it->m * sizeof(NuvFloat32);
    const NuvSizeT width = it->width * sizeof(NuvFloat32);
    const NuvSizeT sizes[] = {vector * (it->width + static_cast<NuvSizeT>(it->m)),
                              vector * it->m,
                              vector * it->width,
                              vector,
                              width,
                              vector * it->m,
                              vector,
                              width,
                              vector,
                              vector,
                              vector,
                              vector};
    return LeaveBehind(it->allocator, sizes, 8 + numVectors);
}

/// The verdict when no reduced cost is positive while the artificial variable is still basic.
NuvLinearProgrammingResultType JudgeAuxiliaryOptimum(const Iteration* it)
{
    if (!LeavePhaseIBehind(it, 1))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    return ComputeObjective(it) == 0.0F ? NUV_LINEARPROGRAMMINGRESULTTYPE_Ok
                                        : NUV_LINEARPROGRAMMINGRESULTTYPE_Infeasible;
}

/// The artificial variable goes: the labels are the result, and no inverse is needed any more.
NuvLinearProgrammingResultType HandOver(Iteration* it, NuvLinearProgramming* lp, NuvUint entering,
                                        NuvUint leaving)
{
    if (!LeavePhaseIBehind(it, 4))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    Exchange(it, entering, leaving);
    NuvMemCopy(lp->basic.data, it->basic, it->m * sizeof *it->basic);
    // At most n are left: the exchange has put label 0 among the n + 1.
    NuvUint next = 0;
    for (NuvUint j = 0; j != it->width; ++j)
        if (it->independent[j] != 0)
            lp->independent.data[next++] = it->independent[j];
    return NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;
}

NuvLinearProgrammingResultType IteratePhaseI(Iteration* it, NuvLinearProgramming* lp)
{
    for (bool isFirst = true;;)
    {
        const Entering entering = isFirst ? Entering{0, 1.0F} : ChooseEntering(it);
        if (!ComputeValuesAndDirection(it, &entering))
        {
            if (!TakeLiteralRoad(it))
                return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
            continue;
        }
        if (entering.reducedCost == 0.0F)
            return JudgeAuxiliaryOptimum(it);
        const Leaving leaving = isFirst ? Leaving{MostNegativeRow(it), true} : ChooseLeaving(it);
        if (!leaving.exists)
            return LeavePhaseIBehind(it, 4) ? NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded
                                            : NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
        if (!IsGoingOn(it, entering.position, leaving.row))
            return NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped;
        if (it->basic[leaving.row] == 0)
            return HandOver(it, lp, entering.position, leaving.row);
        if (!Pivot(it, entering.position, leaving.row))
            return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
        isFirst = false;
    }
}
/// Whether 32 bits can count the elements of A with so many artificial columns.
bool CanCountElements(const NuvLinearProgramming* lp, NuvSizeT numArtificial)
{
    const NuvSizeT m = lp->numConstraints;
    return m * (numArtificial + lp->numVars + m) <= UINT32_MAX;
}
}  // namespace

NuvLinearProgrammingResultType SolvePhaseI(NuvLinearProgramming* lp, SolveWatch* watch,
                                           const StandardFormFacts* facts)
{
    if (!CanCountElements(lp, 1))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    Iteration it;
    const NuvLinearProgrammingResultType result =
        BeginPhaseI(&it, lp, watch, facts) ? IteratePhaseI(&it, lp)
                                           : NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    EndIteration(&it);
    return result;
}

NuvLinearProgrammingResultType SolvePhaseII(NuvLinearProgramming* lp, SolveWatch* watch,
                                            const StandardFormFacts* facts)
{
    Iteration it;
    const NuvLinearProgrammingResultType result =
        BeginPhaseII(&it, lp, watch, facts) ? IteratePhaseII(&it, lp)
                                            : NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    EndIteration(&it);
    return result;
}

namespace
{
bool AreLabelsIn(const NuvMatrix_NuvUint* labels, NuvUint columns)
{
    for (NuvUint i = 0; i != labels->nc; ++i)
        if (labels->data[i] == 0 || labels->data[i] > columns)
            return false;
    return true;
}

/// Whether lp's matrices are of one standard form, so that the phases may walk them.
bool HasStandardForm(const NuvLinearProgramming* lp)
{
    const NuvSizeT m = lp->numConstraints;
    const NuvSizeT n = lp->numVars;
    if (m == 0 || n == 0)
        return false;
    const bool hasShapes = lp->A.nr == m && lp->A.nc == n + m && lp->b.nr == m && lp->b.nc == 1 &&
                           lp->c.nr == n + m && lp->c.nc == 1 && lp->basic.nr == 1 &&
                           lp->basic.nc == m && lp->independent.nr == 1 && lp->independent.nc == n;
    return hasShapes && lp->A.data && lp->b.data && lp->c.data && lp->basic.data &&
           lp->independent.data && AreLabelsIn(&lp->basic, lp->A.nc) &&
           AreLabelsIn(&lp->independent, lp->A.nc);
}

bool IsFinite(const NuvMatrix_NuvFloat32* x)
{
    const NuvSizeT count = static_cast<NuvSizeT>(x->nr) * x->nc;
    bool isFinite = true;
    for (NuvSizeT i = 0; i != count; ++i)
        isFinite &= x->data[i] * 0.0F == 0.0F;
    return isFinite;
}

/// Finds out about a standard form that may be anyone's.
StandardFormFacts Inspect(const NuvLinearProgramming* lp)
{
    const NuvUint n = lp->numVars;
    StandardFormFacts facts = {IsFinite(&lp->A) && IsFinite(&lp->b) && IsFinite(&lp->c), 0};
    for (NuvUint i = 0; i != lp->A.nr; ++i)
    {
        const NuvFloat32* const row = lp->A.data + static_cast<NuvSizeT>(i) * lp->A.nc;
        for (NuvUint j = 0; j != n; ++j)
            facts.nonzeros += row[j] != 0.0F ? 1 : 0;
        for (NuvUint j = n; j != lp->A.nc; ++j)
            facts.isExact &= row[j] == (j == n + i ? 1.0F : 0.0F);
        facts.isExact &= lp->c.data[n + i] == 0.0F;
    }
    return facts;
}

using Phase = NuvLinearProgrammingResultType (*)(NuvLinearProgramming*, SolveWatch*,
                                                 const StandardFormFacts*);

NuvLinearProgrammingResultType CallPhase(Phase phase, NuvLinearProgramming* lp,
                                         NuvSizeT numArtificial)
{
    if (!CanCountElements(lp, numArtificial) || !HasStandardForm(lp))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    SolveWatch watch = {nullptr, 0, KernelsOfThisMachine()};
    const StandardFormFacts facts = Inspect(lp);
    return phase(lp, &watch, &facts);
}
}  // namespace
}  // namespace nuv

NuvBool NuvRevisedSimplexIsPhaseIRequired(NuvLinearProgramming* lp)
{
    const NuvUint rows = lp->b.data && lp->numConstraints <= lp->b.nr ? lp->numConstraints : 0;
    for (NuvUint i = 0; i != rows; ++i)
        if (0.0F > NuvMatrix_NuvFloat32At(&lp->b, i, 0))
            return NUV_TRUE;
    return NUV_FALSE;
}

NuvLinearProgrammingResultType NuvRevisedSimplexSolvePhaseI(NuvLinearProgramming* lp)
{
    return nuv::CallPhase(nuv::SolvePhaseI, lp, 1);
}

NuvLinearProgrammingResultType NuvRevisedSimplexSolvePhaseII(NuvLinearProgramming* lp)
{
    return nuv::CallPhase(nuv::SolvePhaseII, lp, 0);
}
