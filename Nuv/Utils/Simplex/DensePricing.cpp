// Every sum starts at +0 and runs in increasing row; a row whose price is 0 adds ±0, as all
// elements are finite, and is left out.
#include "Nuv/Utils/Simplex/DensePricing.h"

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
/// Copies a row with padding, in whose place it is read from then on.
void CopyRow(DensePricing* x, NuvUint i)
{
    const NuvSizeT length = PaddedLength(x->n);
    NuvFloat32* const copy = x->rowBuffer + i * length;
    NuvMemCopy(copy, x->rows[i], x->n * sizeof *copy);
    NuvMemZero(copy + x->n, (length - x->n) * sizeof *copy);
    x->rows[i] = copy;
    x->isCopied[i] = true;
}
}  // namespace

void PlaceArrays(DensePricing* x, const StandardForm* form, WorkspaceLayout* layout)
{
    layout->Place(form->m, &x->rows, &x->isCopied, &x->pricedRows, &x->pricesOfRows);
}

void StartPricing(DensePricing* x, const StandardForm* form, NuvFloat32* rowBuffer)
{
    x->n = form->n;
    x->rowBuffer = rowBuffer;
    for (NuvUint i = 0; i != form->m; ++i)
    {
        // Only read, like A.
        x->rows[i] = const_cast<NuvFloat32*>(RowOf(form, i));
        x->isCopied[i] = false;
    }
}

void SumRows(DensePricing* x, const Kernels* kernels, const NuvFloat32* prices, const NuvUint* rows,
             NuvUint count, NuvFloat32* sums)
{
    NuvSizeT numPriced = 0;
    for (NuvUint k = 0; k != count; ++k)
    {
        const NuvUint i = rows[k];
        if (!x->isCopied[i])
            CopyRow(x, i);
        // Branch-free: whether a price is 0 is unpredictable.
        x->pricedRows[numPriced] = x->rows[i];
        x->pricesOfRows[numPriced] = prices[i];
        numPriced += prices[i] != 0.0F ? 1 : 0;
    }
    ColumnProduct withPrices = {x->pricesOfRows, nullptr, nullptr};
    withPrices.sums = sums;
    const FusedProduct product = {x->pricedRows, nullptr,    numPriced, nullptr,
                                  nullptr,       withPrices, {},        PaddedLength(x->n)};
    kernels->updateAndMultiply(&product);
}

void CopyColumn(const DensePricing* x, NuvUint m, NuvUint j, NuvFloat32* column)
{
    for (NuvUint i = 0; i != m; ++i)
        column[i] = x->rows[i][j];
}
}  // namespace nuv
