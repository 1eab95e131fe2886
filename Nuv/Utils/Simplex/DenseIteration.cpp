// The literal road.
#include "Nuv/Utils/Simplex/DenseIteration.h"

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Simplex/Iteration.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
NuvSizeT LayOut(LiteralRoad* road, NuvUint m, NuvUint width, void* block)
{
    Cutter cutter(block);
    const NuvSizeT square = static_cast<NuvSizeT>(m) * m;
    cutter.Take(&road->inverse, square);
    cutter.Take(&road->eta, square);
    cutter.Take(&road->product, square);
    cutter.Take(&road->reducedCosts, width);
    cutter.Take(&road->basicColumns, m);
    cutter.Take(&road->nonbasicColumns, width);
    return cutter.BytesNeeded();
}
}  // namespace

bool BeginLiteralRoad(Iteration* it)
{
    LiteralRoad* const road = &it->literal;
    if (!TakeWorkspace(&road->workspace, it->allocator, LayOut(road, it->m, it->width, nullptr)))
        return false;
    (void)LayOut(road, it->m, it->width, road->workspace.block);
    it->isLiteral = true;
    return true;
}

void EnterFirstBasisLiterally(Iteration* it)
{
    LiteralRoad* const road = &it->literal;
    for (NuvUint i = 0; i != it->m; ++i)
        road->basicColumns[i] = it->costs ? it->basic[i] : SlackOf(it, i);
    for (NuvUint j = 0; j != it->width; ++j)
        road->nonbasicColumns[j] = it->costs ? it->independent[j] : j;
    NuvMemZero(road->inverse, static_cast<NuvSizeT>(it->m) * it->m * sizeof *road->inverse);
    for (NuvSizeT i = 0; i != it->m; ++i)
    {
        for (NuvSizeT k = 0; k != it->m; ++k)
            road->product[i * it->m + k] = EntryOfA(it, i, road->basicColumns[k]);
        road->inverse[i * it->m + i] = 1.0F;
    }
    (void)ReduceToIdentity(it->kernels, road->product, road->inverse, it->m);
}

void TakeInverseOver(Iteration* it)
{
    LiteralRoad* const road = &it->literal;
    NuvMemCopy(road->basicColumns, it->basic, it->m * sizeof *it->basic);
    NuvMemCopy(road->nonbasicColumns, it->independent, it->width * sizeof *it->independent);
    for (NuvUint i = 0; i != it->m; ++i)
        for (NuvUint k = 0; k != it->m; ++k)
            road->inverse[static_cast<NuvSizeT>(i) * it->m + k] = EntryOf(&it->inverse, i, k);
}

Entering FindLargestLiterally(Iteration* it)
{
    const LiteralRoad* const road = &it->literal;
    it->kernels->multiply(it->basicCosts, road->inverse, it->prices, 1, it->m, it->m);
    NuvMemZero(road->reducedCosts, it->width * sizeof *road->reducedCosts);
    for (NuvSizeT i = 0; i != it->m; ++i)
        for (NuvUint j = 0; j != it->width; ++j)
            road->reducedCosts[j] =
                road->reducedCosts[j] + it->prices[i] * EntryOfA(it, i, road->nonbasicColumns[j]);
    Entering best = {0, 0.0F};
    for (NuvUint j = 0; j != it->width; ++j)
    {
        const NuvFloat32 reducedCost = CostOf(it, it->independent[j]) - road->reducedCosts[j];
        if (reducedCost >= best.reducedCost)
            best = {j, reducedCost};
    }
    return best;
}

void MultiplyLiterally(const Iteration* it, const NuvFloat32* vector, NuvFloat32* result)
{
    it->kernels->multiply(it->literal.inverse, vector, result, it->m, it->m, 1);
}

void ExchangeLiterally(Iteration* it, NuvUint entering, NuvUint leaving)
{
    LiteralRoad* const road = &it->literal;
    const NuvUint label = road->basicColumns[leaving];
    road->basicColumns[leaving] = road->nonbasicColumns[entering];
    road->nonbasicColumns[entering] = label;
}

void UpdateLiterally(Iteration* it, NuvUint row)
{
    LiteralRoad* const road = &it->literal;
    FormEtaMatrix(it->direction, row, it->m, road->eta);
    it->kernels->multiply(road->eta, road->inverse, road->product, it->m, it->m, it->m);
    NuvFloat32* const former = road->inverse;
    road->inverse = road->product;
    road->product = former;
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
