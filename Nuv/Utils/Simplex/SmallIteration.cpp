// The steps for few rows. Each sum runs over all its terms, in increasing index from +0, as the
// definition has it; only the eta matrix is taken as the identity but for one column, which it is
// for finite numbers: see FormEta in BasisInverse.cpp. The update replaces the row that leaves by
// +0 + eta(r) · v, and so does the definition.
#include "Nuv/Utils/Simplex/SmallIteration.h"

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Kernels/Switches.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
/// Above so many rows the inverse's columns that are still unit vectors are worth their lists.
constexpr NuvUint kMostRows = 32;

void CopyA(SmallIteration* x, const StandardForm* form)
{
    const NuvSizeT length = x->pricing.firstSlack;
    // Whole tiles, past the end of a row into the next one: what is summed there belongs to columns
    // that are padding, and these never enter.
    const NuvSizeT end = form->m * form->rowLength;
    for (NuvSizeT i = 0; i != form->m; ++i)
    {
        const NuvSizeT from = i * form->rowLength;
        const NuvSizeT count = end - from < length ? end - from : length;
        NuvMemCopy(x->A + i * length, form->A + from, count * sizeof *x->A);
        NuvMemZero(x->A + i * length + count, (length - count) * sizeof *x->A);
    }
}

void SetToIdentity(SmallIteration* x)
{
    const NuvSizeT size = x->m * x->stride * sizeof *x->rows;
    NuvMemZero(x->rows, size);
    NuvMemZero(x->columns, size);
    for (NuvSizeT i = 0; i != x->m; ++i)
    {
        x->rows[i * x->stride + i] = 1.0F;
        x->columns[i * x->stride + i] = 1.0F;
    }
}

bool InvertBasis(SmallIteration* x, const Iteration* it)
{
    SetToIdentity(x);
    if (IsSlackBasis(it))
        return true;
    if (!Invert(&x->inverse, it->form, it->basic, it->b, &x->elimination))
        return false;
    for (NuvUint i = 0; i != it->m; ++i)
        for (NuvUint k = 0; k != it->m; ++k)
        {
            const NuvFloat32 entry = EntryOf(&x->inverse, i, k);
            x->rows[i * x->stride + k] = entry;
            x->columns[k * x->stride + i] = entry;
        }
    return true;
}

/// Updates the rows, unless there is no update, and sums the prices.
void UpdateRows(SmallIteration* x, const Iteration* it, const NuvFloat32* update)
{
    const DenseUpdate rows = {
        x->rows,        x->m,       x->stride, x->eta, update, static_cast<NuvUint>(x->stride),
        it->basicCosts, it->prices, nullptr,   nullptr};
    it->kernels->updateDensely(&rows);
}
}  // namespace

bool IsSmall(const StandardForm* form)
{
    return switches.structured && switches.few && form->m <= kMostRows &&
           form->isFiniteWithUnitSlacks;
}

void PlaceArrays(SmallIteration* x, const Iteration* it, WorkspaceLayout* layout)
{
    x->m = it->m;
    x->stride = it->stride;
    x->pricing.kernels = it->kernels;
    PlaceCosts(&x->pricing, it->form, layout);
    layout->Place(&x->A, x->m * x->pricing.firstSlack);
    layout->Place(&x->rows, x->m * x->stride);
    layout->Place(&x->columns, x->m * x->stride);
    layout->Place(&x->eta, x->stride);
    layout->Place(&x->multipliers, x->stride);
    if (it->phase == Phase::I)
        return;
    x->inverse.kernels = it->kernels;
    PlaceArrays(&x->inverse, it->m, 0, layout);
    layout->Place(&x->elimination.steps, x->m);
    layout->Place(&x->elimination.multipliers, x->m * x->stride);
}

bool TryStart(SmallIteration* x, Iteration* it)
{
    if (!LabelsMatchColumns(it) || !InvertBasis(x, it))
        return false;
    StartCosts(&x->pricing);
    if (!PlaceLabels(&x->pricing, it))
        return false;
    CopyA(x, it->form);
    x->pendingRow = it->m;
    UpdateRows(x, it, nullptr);
    return true;
}

Entering ChooseEntering(SmallIteration* x, Iteration* it)
{
    Pricing* const pricing = &x->pricing;
    const DenseUpdate sums = {x->A, x->m,       pricing->firstSlack, nullptr, nullptr,
                              0,    it->prices, pricing->sums,       nullptr, nullptr};
    it->kernels->updateDensely(&sums);
    const Choice largest = FindLargestOfSums(pricing, it->prices);
    return {largest.number, largest.value};
}

bool ComputeValuesAndDirection(SmallIteration* x, Iteration* it, const Entering* entering)
{
    const bool hasColumn = entering->reducedCost != 0.0F;
    if (hasColumn)
    {
        const NuvUint label = it->nonbasic[entering->position];
        if (label == kArtificialLabel || label > it->form->n)
            for (NuvUint i = 0; i != it->m; ++i)
                it->enteringColumn[i] = label == kArtificialLabel       ? -1.0F
                                        : SlackOf(it->form, i) == label ? 1.0F
                                                                        : 0.0F;
        else
            for (NuvUint i = 0; i != it->m; ++i)
                it->enteringColumn[i] = x->A[i * x->pricing.firstSlack + label - 1];
    }
    const DenseUpdate columns = {x->columns,
                                 x->m,
                                 x->stride,
                                 x->multipliers,
                                 x->pendingRow != it->m ? x->eta : nullptr,
                                 x->pendingRow,
                                 it->b,
                                 it->basicValues,
                                 hasColumn ? it->enteringColumn : nullptr,
                                 it->direction};
    it->kernels->updateDensely(&columns);
    x->pendingRow = it->m;
    // An entry of the inverse that is not finite makes a basic value that is not.
    return it->kernels->isFinite(it->basicValues, it->stride) &&
           it->kernels->isFinite(it->prices, it->stride);
}

bool FormEta(SmallIteration* x, const Iteration* it, NuvUint row)
{
    const NuvFloat32 reciprocal = 1.0F / it->direction[row];
    const bool isFinite = it->kernels->formEta(it->direction, reciprocal, x->eta, x->stride);
    x->eta[row] = 1.0F - (it->direction[row] - 1.0F) * reciprocal;
    return isFinite;
}

void Exchange(SmallIteration* x, Iteration* it, NuvUint position, NuvUint row)
{
    Exchange(&x->pricing, it, position, row);
}

void Update(SmallIteration* x, Iteration* it, NuvUint row)
{
    NuvFloat32* const leaving = x->rows + row * x->stride;
    NuvMemCopy(x->multipliers, leaving, x->stride * sizeof *leaving);
    NuvMemZero(leaving, x->stride * sizeof *leaving);
    UpdateRows(x, it, x->multipliers);
    x->pendingRow = row;
}

void FallBackToDense(const SmallIteration* x, const Iteration* it, DenseIteration* dense)
{
    StartFromLabels(dense, it);
    for (NuvSizeT i = 0; i != x->m; ++i)
        NuvMemCopy(dense->inverse + i * x->m, x->rows + i * x->stride,
                   x->m * sizeof *dense->inverse);
}
}  // namespace nuv
