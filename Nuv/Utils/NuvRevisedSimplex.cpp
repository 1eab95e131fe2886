// Phase I, Phase II and the update of the basis inverse. No tolerance anywhere: every test compares
// with exactly 0 or FLT_MAX. What a phase leaves with the allocator is part of its contract; on
// every other way out it gives back what it took.
#include "Nuv/Utils/NuvRevisedSimplex.h"

#include <float.h>

#include <initializer_list>

#include "Nuv/Templates/NuvStorage.hpp"
#include "Nuv/Utils/NuvFloatContract.h"
#include "Nuv/Utils/NuvKernels.h"
#include "Nuv/Utils/NuvSimplexIteration.h"

namespace nuv
{
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
    if (m == 0 || n == 0 || m * (n + m) > UINT32_MAX)
        return false;
    const bool hasShapes = lp->A.nr == m && lp->A.nc == n + m && lp->b.nr == m && lp->b.nc == 1 &&
                           lp->c.nr == n + m && lp->c.nc == 1 && lp->basic.nr == 1 &&
                           lp->basic.nc == m && lp->independent.nr == 1 && lp->independent.nc == n;
    return hasShapes && lp->A.data && lp->b.data && lp->c.data && lp->basic.data &&
           lp->independent.data && AreLabelsIn(&lp->basic, lp->A.nc) &&
           AreLabelsIn(&lp->independent, lp->A.nc);
}

/// Copies the columns of A under `labels`, position by position.
void CopyColumns(NuvMatrix_NuvFloat32* columns, const Iteration* it,
                 const NuvMatrix_NuvUint* labels)
{
    for (NuvUint j = 0; j != labels->nc; ++j)
        NuvMatrix_NuvFloat32CopyRange(columns, it->A, 0, j, 0, labels->data[j] - it->firstLabel,
                                      it->A->nr, 1);
}

/// Inverts the columns that `basic` labels, in the room of `basis`. A singular basis is not
/// detected, by contract.
bool InvertBasis(Iteration* it, NuvMatrix_NuvFloat32* basis)
{
    const NuvUint m = it->basic.nc;
    if (!NuvMatrix_NuvFloat32Resize(basis, m, m))
        return false;
    CopyColumns(basis, it, &it->basic);
    NuvMatrix_NuvFloat32Reset(&it->inverse);
    for (NuvUint i = 0; i != m; ++i)
        RowOf(&it->inverse, i)[i] = 1.0F;
    (void)ReduceToIdentity(basis->data, it->inverse.data, m);
    return true;
}

bool BeginPhaseII(Iteration* it, NuvLinearProgramming* lp)
{
    if (!TakeStorage(it, lp->numConstraints, lp->numVars))
        return false;
    NuvMatrix_NuvUintAssign(&it->basic, &lp->basic);
    NuvMatrix_NuvUintAssign(&it->independent, &lp->independent);
    CopyColumns(&it->nonbasicColumns, it, &it->independent);
    for (NuvUint i = 0; i != it->basic.nc; ++i)
        it->basicCosts.data[i] = lp->c.data[it->basic.data[i] - 1];
    for (NuvUint j = 0; j != it->independent.nc; ++j)
        it->nonbasicCosts.data[j] = lp->c.data[it->independent.data[j] - 1];
    NuvMatrix_NuvFloat32 basis;
    NuvMatrix_NuvFloat32ConstructDefault(&basis, lp->alloc);
    const bool isInverted = InvertBasis(it, &basis);
    NuvMatrix_NuvFloat32Destruct(&basis);
    return isInverted;
}

/// Writes the objective, and the values of the basic variables that are not slacks.
void WriteBack(NuvLinearProgramming* lp, const Iteration* it)
{
    NuvFloat32 objective = 0.0F;
    for (NuvUint i = 0; i != it->prices.nc; ++i)
        objective = objective + it->prices.data[i] * lp->b.data[i];
    lp->objectiveValue = objective;
    const NuvSizeT numValues = NuvVector_NuvPair_NuvString__NuvFloat32Size(&lp->variableValues);
    for (NuvUint i = 0; i != it->basic.nc; ++i)
    {
        const NuvUint label = it->basic.data[i];
        if (label <= lp->numVars && label <= numValues)
            lp->variableValues.begin[label - 1].second = it->basicValues.data[i];
    }
}

NuvLinearProgrammingResultType IteratePhaseII(Iteration* it, NuvLinearProgramming* lp)
{
    for (;;)
    {
        Price(it);
        const Entering entering = ChooseEntering(it);
        if (!ComputeBasicValues(it))
            return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
        if (entering.reducedCost == 0.0F)
        {
            WriteBack(lp, it);
            LeaveBehind(&it->basicValues);
            LeaveBehind(&it->inverse);
            return NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;
        }
        ComputeDirection(it, entering.position);
        const Leaving leaving = ChooseLeaving(it);
        if (!leaving.exists)
        {
            if (!LeavePivotBehind(it))
                return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
            lp->objectiveValue = FLT_MAX;
            LeaveBehind(&it->inverse);
            return NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded;
        }
        if (!IsGoingOn(it, entering.position, leaving.row))
            return NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped;
        if (!Pivot(it, entering.position, leaving.row))
            return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    }
}

/// The columns of Phase I: the artificial variable's, −1 in every row, before those of lp.
bool MakeAuxiliaryColumns(NuvMatrix_NuvFloat32* columns, const NuvLinearProgramming* lp)
{
    const NuvUint m = lp->A.nr;
    if (static_cast<NuvSizeT>(m) * (static_cast<NuvSizeT>(lp->A.nc) + 1) > UINT32_MAX ||
        !NuvMatrix_NuvFloat32Resize(columns, m, lp->A.nc + 1))
        return false;
    NuvMatrix_NuvFloat32CopyRange(columns, &lp->A, 0, 1, 0, 0, m, lp->A.nc);
    for (NuvUint r = 0; r != m; ++r)
        RowOf(columns, r)[0] = -1.0F;
    return true;
}

bool BeginPhaseI(Iteration* it, const NuvLinearProgramming* lp, NuvMatrix_NuvFloat32* columns,
                 NuvMatrix_NuvFloat32* basis)
{
    if (!MakeAuxiliaryColumns(columns, lp) || !TakeStorage(it, lp->numConstraints, lp->numVars + 1))
        return false;
    it->A = columns;
    it->firstLabel = 0;
    NuvMatrix_NuvUintAssign(&it->basic, &lp->basic);
    it->independent.data[0] = 0;
    NuvMatrix_NuvUintCopyRange(&it->independent, &lp->independent, 0, 1, 0, 0, 1, lp->numVars);
    CopyColumns(&it->nonbasicColumns, it, &it->independent);
    NuvMatrix_NuvFloat32Reset(&it->basicCosts);
    NuvMatrix_NuvFloat32Reset(&it->nonbasicCosts);
    it->nonbasicCosts.data[0] = -1.0F;
    return InvertBasis(it, basis);
}

/// Leaves what the set-up of Phase I took with the allocator for good.
void LeavePhaseIBehind(Iteration* it, NuvMatrix_NuvFloat32* columns, NuvMatrix_NuvFloat32* basis)
{
    for (NuvMatrix_NuvFloat32* const x :
         {columns, basis, &it->nonbasicColumns, &it->basicCosts, &it->nonbasicCosts, &it->inverse})
        LeaveBehind(x);
    LeaveBehind(&it->basic);
    LeaveBehind(&it->independent);
}

/// The row of the smallest basic value, the first one on ties: what leaves for the artificial
/// variable.
NuvUint MostNegativeRow(const NuvMatrix_NuvFloat32* basicValues)
{
    NuvFloat32 smallest = FLT_MAX;
    NuvUint row = 0;
    for (NuvUint i = 0; i != basicValues->nr; ++i)
    {
        if (!(smallest > basicValues->data[i]))
            continue;
        row = i;
        smallest = basicValues->data[i];
    }
    return row;
}

/// Gives lp the basis that Phase I reached, without the artificial variable.
void HandOver(NuvLinearProgramming* lp, const Iteration* it)
{
    NuvMatrix_NuvUintAssign(&lp->basic, &it->basic);
    NuvUint next = 0;
    for (NuvUint j = 0; j != it->independent.nc; ++j)
        if (it->independent.data[j] != 0 && next != lp->independent.nc)
            lp->independent.data[next++] = it->independent.data[j];
}

/// The verdict when no reduced cost is positive while the artificial variable is still basic.
NuvLinearProgrammingResultType JudgeAuxiliaryOptimum(const Iteration* it)
{
    NuvFloat32 objective = 0.0F;
    for (NuvUint i = 0; i != it->prices.nc; ++i)
        objective = objective + it->prices.data[i] * it->b->data[i];
    return objective == 0.0F ? NUV_LINEARPROGRAMMINGRESULTTYPE_Ok
                             : NUV_LINEARPROGRAMMINGRESULTTYPE_Infeasible;
}

NuvLinearProgrammingResultType IteratePhaseI(Iteration* it, NuvLinearProgramming* lp)
{
    for (bool isFirst = true;; isFirst = false)
    {
        Price(it);
        const Entering entering = isFirst ? Entering{0, 1.0F} : ChooseEntering(it);
        if (!ComputeBasicValues(it))
            return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
        if (entering.reducedCost == 0.0F)
        {
            LeaveBehind(&it->basicValues);
            return JudgeAuxiliaryOptimum(it);
        }
        ComputeDirection(it, entering.position);
        const Leaving leaving =
            isFirst ? Leaving{MostNegativeRow(&it->basicValues), true} : ChooseLeaving(it);
        if (!leaving.exists)
            return LeavePivotBehind(it) ? NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded
                                        : NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
        if (!IsGoingOn(it, entering.position, leaving.row))
            return NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped;
        if (it->basic.data[leaving.row] == 0)
        {
            // The artificial variable goes: the labels are the result, and no inverse is needed any
            // more.
            if (!LeavePivotBehind(it))
                return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
            Exchange(it, entering.position, leaving.row);
            HandOver(lp, it);
            return NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;
        }
        if (!Pivot(it, entering.position, leaving.row))
            return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    }
}

/// Whether a result comes with what the contract of storage says that it leaves behind.
bool IsVerdict(NuvLinearProgrammingResultType result)
{
    return result != NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput &&
           result != NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped;
}
}  // namespace

NuvLinearProgrammingResultType SolvePhaseI(NuvLinearProgramming* lp, Watch* watch)
{
    if (!HasStandardForm(lp))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    Iteration it;
    NuvMatrix_NuvFloat32 columns;
    NuvMatrix_NuvFloat32 basis;
    BeginIteration(&it, watch, 1, lp);
    NuvMatrix_NuvFloat32ConstructDefault(&columns, lp->alloc);
    NuvMatrix_NuvFloat32ConstructDefault(&basis, lp->alloc);
    const NuvLinearProgrammingResultType result =
        BeginPhaseI(&it, lp, &columns, &basis) ? IteratePhaseI(&it, lp)
                                               : NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    if (IsVerdict(result))
        LeavePhaseIBehind(&it, &columns, &basis);
    EndIteration(&it);
    NuvMatrix_NuvFloat32Destruct(&columns);
    NuvMatrix_NuvFloat32Destruct(&basis);
    return result;
}

NuvLinearProgrammingResultType SolvePhaseII(NuvLinearProgramming* lp, Watch* watch)
{
    if (!HasStandardForm(lp))
        return NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    Iteration it;
    BeginIteration(&it, watch, 2, lp);
    const NuvLinearProgrammingResultType result =
        BeginPhaseII(&it, lp) ? IteratePhaseII(&it, lp)
                              : NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
    EndIteration(&it);
    return result;
}

namespace
{
/// The matrices of one update, from which the inverse eta matrix of the pivot is formed.
struct EtaMatrices
{
    NuvMatrix_NuvFloat32 Ak;
    NuvMatrix_NuvFloat32 ak;
    NuvMatrix_NuvFloat32 ei;
    NuvMatrix_NuvFloat32 eiT;
    NuvMatrix_NuvFloat32 difference;
    NuvMatrix_NuvFloat32 product;
    NuvMatrix_NuvFloat32 identity;
};

void BeginEta(EtaMatrices* eta, NuvAllocator* alloc)
{
    for (NuvMatrix_NuvFloat32* const x :
         {&eta->Ak, &eta->ak, &eta->ei, &eta->eiT, &eta->difference, &eta->product, &eta->identity})
        NuvMatrix_NuvFloat32ConstructDefault(x, alloc);
}

void EndEta(EtaMatrices* eta)
{
    for (NuvMatrix_NuvFloat32* const x :
         {&eta->Ak, &eta->ak, &eta->ei, &eta->eiT, &eta->difference, &eta->product, &eta->identity})
        NuvMatrix_NuvFloat32Destruct(x);
}

/// product = identity − (((ak − ei) · eiᵀ) · (1 / ak(i))): the inverse eta matrix.
bool FormEta(EtaMatrices* eta, const NuvMatrix_NuvFloat32* A, const NuvMatrix_NuvFloat32* inverse,
             NuvUint k, NuvUint i)
{
    const NuvUint m = inverse->nr;
    if (!NuvMatrix_NuvFloat32ConstructCopyRange(&eta->Ak, A, 0, k, m, 1, inverse->allocator))
        return false;
    NuvMatrix_NuvFloat32Multiply(inverse, &eta->Ak, &eta->ak);
    if (!IsStored(&eta->ak) || !NuvMatrix_NuvFloat32Resize(&eta->ei, m, 1) ||
        !NuvMatrix_NuvFloat32ConstructIdentity(&eta->identity, m, inverse->allocator))
        return false;
    const NuvFloat32 reciprocal = 1.0F / eta->ak.data[i];
    NuvMatrix_NuvFloat32Reset(&eta->ei);
    eta->ei.data[i] = 1.0F;
    NuvMatrix_NuvFloat32Transpose(&eta->ei, &eta->eiT);
    NuvMatrix_NuvFloat32Subtract(&eta->ak, &eta->ei, &eta->difference);
    NuvMatrix_NuvFloat32Multiply(&eta->difference, &eta->eiT, &eta->product);
    NuvMatrix_NuvFloat32MultiplyScalar(&eta->product, reciprocal, &eta->product);
    NuvMatrix_NuvFloat32Subtract(&eta->identity, &eta->product, &eta->product);
    return IsStored(&eta->eiT) && IsStored(&eta->difference) && IsStored(&eta->product);
}
}  // namespace
}  // namespace nuv

NuvBool NuvRevisedSimplexAlogirthmBasisUpdate(const NuvMatrix_NuvFloat32* A,
                                              const NuvMatrix_NuvFloat32* Ab_inv, NuvUint k,
                                              NuvUint i, NuvUint, NuvMatrix_NuvFloat32* result)
{
    nuv::EtaMatrices eta;
    nuv::BeginEta(&eta, Ab_inv->allocator);
    bool isUpdated = nuv::FormEta(&eta, A, Ab_inv, k, i);
    if (isUpdated)
    {
        NuvMatrix_NuvFloat32Multiply(&eta.product, Ab_inv, result);
        isUpdated = nuv::IsStored(result);
    }
    if (isUpdated)
        nuv::LeaveBehind(&eta.identity);
    nuv::EndEta(&eta);
    return isUpdated ? NUV_TRUE : NUV_FALSE;
}

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
    nuv::Watch watch = {nullptr, 0};
    return nuv::SolvePhaseI(lp, &watch);
}

NuvLinearProgrammingResultType NuvRevisedSimplexSolvePhaseII(NuvLinearProgramming* lp)
{
    nuv::Watch watch = {nullptr, 0};
    return nuv::SolvePhaseII(lp, &watch);
}
