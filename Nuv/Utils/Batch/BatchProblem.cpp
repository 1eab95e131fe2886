// The answers of a batch.
#include "Nuv/Utils/Batch/BatchProblem.h"

#include <float.h>

namespace nuv
{
namespace
{
template <class T>
void Fill(T* array, NuvSizeT problem, NuvUint length, T value)
{
    if (!array)
        return;
    T* const elements = array + problem * length;
    for (NuvUint i = 0; i != length; ++i)
        elements[i] = value;
}

void Write(const NuvLinearProgrammingBatch* batch, NuvSizeT problem, NuvUint pivots,
           NuvLinearProgrammingResultType verdict, NuvFloat32 objective)
{
    Fill(batch->verdicts, problem, 1, static_cast<NuvUint>(verdict));
    Fill(batch->pivots, problem, 1, pivots);
    Fill(batch->objectives, problem, 1, objective);
    Fill(batch->values, problem, batch->numVars, 0.0F);
}
}  // namespace

NuvSizeT CountNonzeros(const NuvFloat32* x, NuvSizeT count)
{
    NuvSizeT numNonzeros = 0;
    for (NuvSizeT i = 0; i != count; ++i)
        numNonzeros += x[i] != 0.0F ? 1 : 0;
    return numNonzeros;
}

NuvUint PivotLimitOf(const NuvLinearProgrammingBatch* batch)
{
    if (batch->pivotLimit != 0)
        return batch->pivotLimit;
    const NuvSizeT limit = (static_cast<NuvSizeT>(batch->numVars) + batch->numConstraints) * 100;
    return limit < UINT32_MAX ? static_cast<NuvUint>(limit) : UINT32_MAX;
}

void WriteOptimum(const NuvLinearProgrammingBatch* batch, NuvSizeT problem, NuvUint pivots,
                  const BatchOptimum* optimum)
{
    Write(batch, problem, pivots, NUV_LINEARPROGRAMMINGRESULTTYPE_Ok, optimum->objective);
    const NuvSizeT m = batch->numConstraints;
    const NuvSizeT step = optimum->stride;
    if (batch->values)
    {
        // Which are slacks cannot be foreseen: these are written as well, but elsewhere.
        NuvFloat32 ofSlack = 0.0F;
        NuvFloat32* const places[] = {&ofSlack, batch->values + problem * batch->numVars};
        for (NuvSizeT i = 0; i != m; ++i)
        {
            const NuvUint column = optimum->basic[i * step] - optimum->firstColumn;
            const NuvSizeT isVariable = column < batch->numVars ? 1 : 0;
            places[isVariable][isVariable * column] = optimum->values[i * step];
        }
    }
    if (batch->bases)
        for (NuvSizeT i = 0; i != m; ++i)
            batch->bases[problem * m + i] = optimum->basic[i * step] - optimum->firstColumn + 1;
    if (batch->prices)
        for (NuvSizeT i = 0; i != m; ++i)
            batch->prices[problem * m + i] = optimum->prices[i * step];
}

void WriteVerdict(const NuvLinearProgrammingBatch* batch, NuvSizeT problem, NuvUint pivots,
                  NuvLinearProgrammingResultType verdict)
{
    const bool isUnbounded = verdict == NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded;
    Write(batch, problem, pivots, verdict, isUnbounded ? FLT_MAX : 0.0F);
    Fill(batch->bases, problem, batch->numConstraints, NuvUint{0});
    Fill(batch->prices, problem, batch->numConstraints, 0.0F);
}
}  // namespace nuv
