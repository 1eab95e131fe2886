// What both ways of pricing share.
#include "Nuv/Utils/Simplex/Pricing.h"

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Kernels/Switches.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
void PlaceArrays(Pricing* x, const Iteration* it, WorkspaceLayout* layout)
{
    layout->Place(it->length, &x->sums, &x->differences);
    x->isSparse = switches.sparsePricing && IsSparse(it->form);
    if (x->isSparse)
        PlaceArrays(&x->sparse, it->form, layout);
    else
        PlaceArrays(&x->dense, it->form, layout);
}

NuvSizeT RowBufferLength(const Pricing* x, const Iteration* it)
{
    return x->isSparse ? 0 : it->m * it->firstSlack;
}

void StartPricing(Pricing* x, const StandardForm* form, NuvFloat32* rowBuffer)
{
    NuvMemZero(x->sums, PaddedLength(form->n) * sizeof *x->sums);
    if (x->isSparse)
        StartPricing(&x->sparse, form);
    else
        StartPricing(&x->dense, form, rowBuffer);
}

Choice FindLargestReducedCost(Pricing* x, const Iteration* it, const NuvUint* rows, NuvUint count)
{
    if (x->isSparse)
        SumColumns(&x->sparse, it->prices, rows, count, x->sums);
    else
        SumRows(&x->dense, it->kernels, it->prices, rows, count, x->sums);
    // A slack's sum is +0 + price · 1: the price itself, which is a sum from +0 and never −0.
    NuvMemCopy(x->sums + it->firstSlack, it->prices, it->stride * sizeof *it->prices);
    return it->kernels->findLargest(it->costs, x->sums, it->positions, x->differences, it->length);
}

void CopyColumn(const Pricing* x, const Iteration* it, NuvUint label, NuvFloat32* column)
{
    const NuvUint n = it->form->n;
    NuvMemZero(column, it->stride * sizeof *column);
    if (label > n)
        column[label - n - 1] = 1.0F;
    else if (x->isSparse)
        CopyColumn(&x->sparse, label - 1, column);
    else
        CopyColumn(&x->dense, it->m, label - 1, column);
}
}  // namespace nuv
