// What both ways of pricing share.
#include "Nuv/Utils/Simplex/Pricing.h"

#include <limits>

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Kernels/Switches.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
constexpr NuvFloat32 kBasicCost = -std::numeric_limits<NuvFloat32>::infinity();
constexpr NuvUint kNoPosition = UINT32_MAX;

/// Where the arrays hold what belongs to a label.
NuvSizeT IndexOf(const Pricing* x, NuvUint label)
{
    const NuvUint n = x->form->n;
    return label <= n ? label - 1 : x->firstSlack + (label - n - 1);
}
}  // namespace

void PlaceArrays(Pricing* x, const StandardForm* form, WorkspaceLayout* layout)
{
    x->form = form;
    x->firstSlack = PaddedLength(form->n);
    x->length = x->firstSlack + PaddedLength(form->m);
    layout->Place(x->length, &x->costs, &x->sums, &x->differences, &x->positions);
    x->isSparse = switches.sparsePricing && IsSparse(form);
    if (x->isSparse)
        PlaceArrays(&x->sparse, form, layout);
    else
        PlaceArrays(&x->dense, form, layout);
}

NuvSizeT RowBufferLength(const Pricing* x)
{
    return x->isSparse ? 0 : x->form->m * x->firstSlack;
}

void StartPricing(Pricing* x, NuvFloat32* rowBuffer)
{
    for (NuvSizeT j = 0; j != x->length; ++j)
    {
        x->costs[j] = kBasicCost;
        x->positions[j] = kNoPosition;
    }
    NuvMemZero(x->sums, x->firstSlack * sizeof *x->sums);
    if (x->isSparse)
        StartPricing(&x->sparse, x->form);
    else
        StartPricing(&x->dense, x->form, rowBuffer);
}

bool PlaceBasic(Pricing* x, NuvUint label)
{
    NuvUint* const position = x->positions + IndexOf(x, label);
    if (*position != kNoPosition)
        return false;
    *position = 0;
    return true;
}

bool PlaceNonbasic(Pricing* x, NuvUint label, NuvFloat32 cost, NuvUint position)
{
    if (!PlaceBasic(x, label))
        return false;
    MakeNonbasic(x, label, cost, position);
    return true;
}

void MakeBasic(Pricing* x, NuvUint label)
{
    x->costs[IndexOf(x, label)] = kBasicCost;
}

void MakeNonbasic(Pricing* x, NuvUint label, NuvFloat32 cost, NuvUint position)
{
    x->costs[IndexOf(x, label)] = cost;
    x->positions[IndexOf(x, label)] = position;
}

Choice FindLargestReducedCost(Pricing* x, const NuvFloat32* prices, const NuvUint* rows,
                              NuvUint count)
{
    if (x->isSparse)
        SumColumns(&x->sparse, prices, rows, count, x->sums);
    else
        SumRows(&x->dense, x->kernels, prices, rows, count, x->sums);
    // A slack's sum is +0 + price · 1: the price itself, which is a sum from +0 and never −0.
    NuvMemCopy(x->sums + x->firstSlack, prices, (x->length - x->firstSlack) * sizeof *prices);
    return x->kernels->findLargest(x->costs, x->sums, x->positions, x->differences, x->length);
}

void CopyColumn(const Pricing* x, NuvUint label, NuvFloat32* column, NuvSizeT length)
{
    const StandardForm* const form = x->form;
    NuvMemZero(column, length * sizeof *column);
    if (label > form->n)
        column[label - form->n - 1] = 1.0F;
    else if (x->isSparse)
        CopyColumn(&x->sparse, label - 1, column);
    else
        CopyColumn(&x->dense, form->m, label - 1, column);
}
}  // namespace nuv
