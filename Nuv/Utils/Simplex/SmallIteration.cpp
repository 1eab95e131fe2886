// The steps for few rows. Each sum runs over all its terms, in increasing index from +0, as the
// definition has it, but for terms that are ±0; and the eta matrix is taken as the identity but for
// one column, which it is for finite numbers: see FormEta in BasisInverse.cpp. The update replaces
// the row that leaves by +0 + eta(r) · v, and so does the definition.
#include "Nuv/Utils/Simplex/SmallIteration.h"

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Kernels/Switches.h"

namespace nuv
{
namespace
{
/// Above so many rows the inverse's columns that are still unit vectors are worth their lists.
constexpr NuvUint kMostRows = 64;
static_assert(kMostRows <= 8 * sizeof(RowBits));
/// Fewer rows are kept as rows from the beginning.
constexpr NuvSizeT kFewestSparse = 17;

/// Marks an entry of the inverse that may be other than ±0.
void MarkEntry(SmallState* s, NuvSizeT i, NuvSizeT k)
{
    s->patterns[k / kHalfBits * s->stride + i] |= NuvUint{1} << k % kHalfBits;
}

bool InvertBasis(SmallIteration* x, const Iteration* it)
{
    SmallState* const s = &x->state;
    if (!Invert(&x->inverse, it->form, it->basic, it->b, &x->elimination))
        return false;
    for (NuvUint i = 0; i != it->m; ++i)
        for (NuvUint k = 0; k != it->m; ++k)
        {
            const NuvFloat32 entry = EntryOf(&x->inverse, i, k);
            s->columns[k * s->stride + i] = entry;
            if (s->hasRows)
                s->rows[i * s->stride + k] = entry;
            if (entry != 0.0F)
                MarkEntry(s, i, k);
        }
    return true;
}

/// Says where the column under the label is.
void PointToColumn(SmallState* s, const StandardForm* form, NuvUint label)
{
    static constexpr NuvFloat32 kOfSlack = 1.0F;
    static constexpr NuvFloat32 kOfArtificial = -1.0F;
    s->stepOfColumn = 0;
    if (label == kArtificialLabel)
    {
        s->enteringColumn = &kOfArtificial;
        s->nonzerosOfColumn = ~RowBits{0} >> (8 * sizeof(RowBits) - s->m);
    }
    else if (label > form->n)
    {
        s->enteringColumn = &kOfSlack;
        s->nonzerosOfColumn = RowBits{1} << (label - form->n - 1);
    }
    else
    {
        const NuvSizeT column = label - 1;
        s->enteringColumn = s->A + column;
        s->stepOfColumn = s->lengthOfA;
        s->nonzerosOfColumn =
            s->nonzerosOfA[column] | RowBits{s->nonzerosOfA[s->lengthOfA + column]} << 32U;
    }
}
}  // namespace

bool IsSmall(const StandardForm* form)
{
    return switches.structured && switches.few && form->m <= kMostRows && form->isOrdinary;
}

void PlaceArrays(SmallIteration* x, const Iteration* it, WorkspaceLayout* layout)
{
    SmallState* const s = &x->state;
    s->m = it->m;
    s->stride = it->stride;
    s->lengthOfA = it->firstSlack;
    s->costs = it->costs;
    s->positions = it->positions;
    layout->Place(it->length, &s->differences);
    layout->Place(s->m * s->lengthOfA, &s->A);
    layout->Place(2 * s->lengthOfA, &s->nonzerosOfA);
    layout->Place(2 * s->stride, &s->patterns);
    layout->Place(s->m * s->stride, &s->columns, &s->rows);
    layout->Place(s->stride, &s->eta, &s->multipliers);
    s->b = it->b;
    s->basicCosts = it->basicCosts;
    s->prices = it->prices;
    s->values = it->basicValues;
    s->direction = it->direction;
    s->ratios = it->ratios;
    if (it->form->hasFirstLabels)
        return;
    x->inverse.kernels = it->kernels;
    PlaceArrays(&x->inverse, it->m, 0, layout);
    layout->Place(s->m, &x->elimination.steps);
    layout->Place(s->m * s->stride, &x->elimination.multipliers);
}

bool TryStart(SmallIteration* x, Iteration* it)
{
    SmallState* const s = &x->state;
    const StandardForm* const form = it->form;
    s->hasRows = s->m < kFewestSparse;
    const SmallStart start = {form->A, form->rowLength, it->phase == Phase::II ? form->c : nullptr,
                              form->n, it->numNonbasic - form->n};
    if (!it->kernels->startSmall(s, &start))
        return false;
    x->isFinite = true;
    if (form->hasFirstLabels)
        return true;
    if (!InvertBasis(x, it))
        return false;
    PlaceLabels(it);
    x->isFinite = it->kernels->updateSmall(s, it->m);
    return true;
}

Entering ChooseEntering(SmallIteration* x, Iteration* it)
{
    const Choice largest = it->kernels->priceSmall(&x->state);
    return {largest.number, largest.value};
}

bool ComputeValuesAndDirection(SmallIteration* x, Iteration* it, const Entering* entering)
{
    if (x->isFinite && entering->reducedCost != 0.0F)
    {
        PointToColumn(&x->state, it->form, it->nonbasic[entering->position]);
        x->smallest = it->kernels->testSmall(&x->state);
    }
    return x->isFinite;
}

Leaving ChooseLeaving(const SmallIteration* x, Iteration* it)
{
    return LeavingOf(it, &x->smallest);
}

bool FormEta(SmallIteration* x, const Iteration* it, NuvUint row)
{
    return it->kernels->formEta(it->direction, row, x->state.eta, it->stride);
}

void Update(SmallIteration* x, Iteration* it, NuvUint row)
{
    x->isFinite = it->kernels->updateSmall(&x->state, row);
}

void FallBackToDense(const SmallIteration* x, const Iteration* it, DenseIteration* dense)
{
    const SmallState* const s = &x->state;
    StartFromLabels(dense, it);
    for (NuvSizeT i = 0; i != s->m; ++i)
        for (NuvSizeT k = 0; k != s->m; ++k)
            dense->inverse[i * s->m + k] = s->columns[k * s->stride + i];
}
}  // namespace nuv
