// The definition, step by step.
#include "Nuv/Utils/Simplex/DenseIteration.h"

#include "Nuv/Utils/Kernels/DenseAlgebra.h"
#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
NuvSizeT PlaceArrays(DenseIteration* x, const Iteration* it, void* block)
{
    WorkspaceLayout layout(block);
    const NuvSizeT square = static_cast<NuvSizeT>(it->m) * it->m;
    layout.Place(square, &x->inverse, &x->eta, &x->product);
    layout.Place(it->numNonbasic, &x->sums);
    layout.Place(it->m, &x->basicColumns);
    layout.Place(it->numNonbasic, &x->nonbasicColumns);
    return layout.BytesNeeded();
}

bool AllocateArrays(DenseIteration* x, const Iteration* it)
{
    // same bits: the answer is false on both ways, and without a block there is nothing to give
    // back
    if (!AllocateWorkspace(&x->workspace, it->allocator, PlaceArrays(x, it, nullptr)))
        return false;
    (void)PlaceArrays(x, it, x->workspace.block);
    return true;
}

void StartFromFirstBasis(DenseIteration* x, const Iteration* it)
{
    StartFromLabels(x, it);
    if (it->phase == Phase::I)
    {
        for (NuvUint i = 0; i != it->m; ++i)
            x->basicColumns[i] = SlackOf(it->form, i);
        for (NuvUint j = 0; j != it->numNonbasic; ++j)
            x->nonbasicColumns[j] = j;
    }
    NuvMemZero(x->inverse, static_cast<NuvSizeT>(it->m) * it->m * sizeof *x->inverse);
    for (NuvSizeT i = 0; i != it->m; ++i)
    {
        for (NuvSizeT k = 0; k != it->m; ++k)
            x->product[i * it->m + k] = ElementOf(it->form, i, x->basicColumns[k]);
        x->inverse[i * it->m + i] = 1.0F;
    }
    (void)ReduceToIdentity(it->kernels, x->product, x->inverse, it->m);
}

void StartFromLabels(DenseIteration* x, const Iteration* it)
{
    NuvMemCopy(x->basicColumns, it->basic, it->m * sizeof *it->basic);
    NuvMemCopy(x->nonbasicColumns, it->nonbasic, it->numNonbasic * sizeof *it->nonbasic);
}

Entering ChooseEntering(DenseIteration* x, Iteration* it)
{
    it->kernels->multiply(it->basicCosts, x->inverse, it->prices, 1, it->m, it->m);
    NuvMemZero(x->sums, it->numNonbasic * sizeof *x->sums);
    for (NuvSizeT i = 0; i != it->m; ++i)
        for (NuvUint j = 0; j != it->numNonbasic; ++j)
            x->sums[j] = x->sums[j] + it->prices[i] * ElementOf(it->form, i, x->nonbasicColumns[j]);
    // same bits: without an entering column its position is not read
    Entering best = {0, 0.0F};
    for (NuvUint j = 0; j != it->numNonbasic; ++j)
    {
        const NuvFloat32 reducedCost = CostOf(it, it->nonbasic[j]) - x->sums[j];
        if (reducedCost >= best.reducedCost)
            best = {j, reducedCost};
    }
    return best;
}

bool ComputeValuesAndDirection(DenseIteration* x, Iteration* it, const Entering* entering)
{
    it->kernels->multiply(x->inverse, it->b, it->basicValues, it->m, it->m, 1);
    if (entering->reducedCost == 0.0F)
        return true;
    // By its label: the two agree but in a phase that is called by itself.
    const NuvUint label = it->nonbasic[entering->position];
    for (NuvUint i = 0; i != it->m; ++i)
        it->enteringColumn[i] = ElementOf(it->form, i, label);
    it->kernels->multiply(x->inverse, it->enteringColumn, it->direction, it->m, it->m, 1);
    return true;
}

bool FormEta(DenseIteration* x, const Iteration* it, NuvUint row)
{
    FormEtaMatrix(it->direction, row, it->m, x->eta);
    return true;
}

void Exchange(DenseIteration* x, Iteration* it, NuvUint position, NuvUint row)
{
    ExchangeLabels(it, position, row);
    const NuvUint leaving = x->basicColumns[row];
    x->basicColumns[row] = x->nonbasicColumns[position];
    x->nonbasicColumns[position] = leaving;
}

void Update(DenseIteration* x, Iteration* it, NuvUint)
{
    it->kernels->multiply(x->eta, x->inverse, x->product, it->m, it->m, it->m);
    NuvFloat32* const former = x->inverse;
    x->inverse = x->product;
    x->product = former;
}

void FormEtaMatrix(const NuvFloat32* direction, NuvUint row, NuvUint m, NuvFloat32* eta)
{
    const NuvFloat32 reciprocal = 1.0F / direction[row];
    for (NuvSizeT i = 0; i != m; ++i)
    {
        const NuvFloat32 difference = direction[i] - (i == row ? 1.0F : 0.0F);
        // A product of one column and one row: sums of one term.
        const NuvFloat32 inColumn = (0.0F + difference * 1.0F) * reciprocal;
        const NuvFloat32 elsewhere = (0.0F + difference * 0.0F) * reciprocal;
        for (NuvSizeT k = 0; k != m; ++k)
            eta[i * m + k] = (i == k ? 1.0F : 0.0F) - (k == row ? inColumn : elsewhere);
    }
}
}  // namespace nuv
