// The steps of the structured iteration.
#include "Nuv/Utils/Simplex/StructuredIteration.h"

#include "Nuv/Utils/Kernels/Assert.h"
#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Kernels/Switches.h"

namespace nuv
{
namespace
{
bool InvertBasis(StructuredIteration* x, const Iteration* it)
{
    if (it->form->hasFirstLabels)
    {
        SetToIdentity(&x->inverse, it->b);
        return true;
    }
    NUV_ASSERT(it->phase == Phase::II);
    x->elimination.multipliers = x->rowBuffer;
    return Invert(&x->inverse, it->form, it->basic, it->b, &x->elimination);
}
}  // namespace

void PlaceArrays(StructuredIteration* x, const Iteration* it, WorkspaceLayout* layout)
{
    x->inverse.kernels = it->kernels;
    layout->Place(it->m, &x->elimination.steps);
    // Slacks cost nothing: no more basic variables have a cost than there are others, and in Phase
    // I only the artificial one has.
    const NuvUint n = it->form->n;
    const NuvUint maxCosted = it->phase == Phase::I ? 1 : it->m < n ? it->m : n;
    PlaceArrays(&x->inverse, it->m, maxCosted, layout);
    PlaceArrays(&x->pricing, it, layout);
    const NuvSizeT forPricing = RowBufferLength(&x->pricing, it);
    const NuvSizeT forInversion = it->phase == Phase::I ? 0 : it->m * it->stride;
    layout->Place(forInversion > forPricing ? forInversion : forPricing, &x->rowBuffer);
}

bool TryStart(StructuredIteration* x, Iteration* it)
{
    if (!switches.structured || !it->form->isOrdinary || !InvertBasis(x, it))
        return false;
    // The steps of the inversion are done with, and so is their part of the buffer.
    StartPricing(&x->pricing, it->form, x->rowBuffer);
    PlaceLabels(it);
    for (NuvUint i = 0; i != it->m; ++i)
        if (it->basicCosts[i] != 0.0F)
            SetCost(&x->inverse, i, it->basicCosts[i]);
    ComputePrices(&x->inverse, it->prices);
    return true;
}

Entering ChooseEntering(StructuredIteration* x, Iteration* it)
{
    // Rows whose column of the inverse is a unit vector have no price.
    const Choice largest =
        FindLargestReducedCost(&x->pricing, it, x->inverse.numbers, x->inverse.numStored);
    return {largest.number, largest.value};
}

bool ComputeValuesAndDirection(StructuredIteration* x, Iteration* it, const Entering* entering)
{
    NuvFloat32* column = nullptr;
    if (entering->reducedCost != 0.0F)
    {
        column = it->enteringColumn;
        const NuvUint label = it->nonbasic[entering->position];
        if (label != kArtificialLabel)
            CopyColumn(&x->pricing, it, label, column);
        else
            for (NuvUint i = 0; i != it->m; ++i)
                column[i] = ElementOf(it->form, i, label);
    }
    MultiplyByInverse(&x->inverse, it->basicValues, column, it->direction);
    // Every updated entry of the inverse enters some basic value, so that an overflow there makes
    // that value infinite or NaN. Prices are tested because pricing skips products with 0, which is
    // exact for finite prices only.
    return it->kernels->isFinite(it->basicValues, it->stride) &&
           it->kernels->isFinite(it->prices, it->stride);
}

bool FormEta(StructuredIteration* x, const Iteration* it, NuvUint row)
{
    return FormEta(&x->inverse, it->direction, row);
}

void Update(StructuredIteration* x, Iteration* it, NuvUint row)
{
    Update(&x->inverse, row, it->basicCosts[row], it->prices);
}

void FallBackToDense(const StructuredIteration* x, const Iteration* it, DenseIteration* dense)
{
    StartFromLabels(dense, it);
    for (NuvUint i = 0; i != it->m; ++i)
        for (NuvUint k = 0; k != it->m; ++k)
            dense->inverse[static_cast<NuvSizeT>(i) * it->m + k] = EntryOf(&x->inverse, i, k);
}
}  // namespace nuv
