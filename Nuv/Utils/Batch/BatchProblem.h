// One problem of a batch: its data, and how its answers are written. Not installed.
#ifndef NUV_UTILS_BATCH_BATCHPROBLEM_H
#define NUV_UTILS_BATCH_BATCHPROBLEM_H

#include "Nuv/Utils/NuvLinearProgrammingBatch.h"

namespace nuv
{
struct BatchData
{
    const NuvFloat32* A;  /// [m × n]
    const NuvFloat32* b;  /// [m]
    const NuvFloat32* c;  /// [n]
};

inline BatchData DataOf(const NuvLinearProgrammingBatch* batch, NuvSizeT problem)
{
    return {batch->A + problem * batch->strideA, batch->b + problem * batch->strideB,
            batch->c + problem * batch->strideC};
}

/// Counts the numbers that are not ±0.
NuvSizeT CountNonzeros(const NuvFloat32* x, NuvSizeT count);

/// The pivots after which a problem is given up.
NuvUint PivotLimitOf(const NuvLinearProgrammingBatch* batch);

/// An optimum in arrays whose elements are `stride` apart.
struct BatchOptimum
{
    NuvFloat32 objective;
    const NuvUint* basic;      /// [m] columns, the first one being `firstColumn`
    const NuvFloat32* values;  /// [m] of the basic variables
    const NuvFloat32* prices;  /// [m]
    NuvSizeT stride;
    NuvUint firstColumn;
};

void WriteOptimum(const NuvLinearProgrammingBatch* batch, NuvSizeT problem, NuvUint pivots,
                  const BatchOptimum* optimum);
/// Any verdict but Ok.
void WriteVerdict(const NuvLinearProgrammingBatch* batch, NuvSizeT problem, NuvUint pivots,
                  NuvLinearProgrammingResultType verdict);

/// Told of each pivot, by the labels that a NuvLinearProgrammingPivot has: how the tests compare
/// the ways to solve a batch. Phase 0 says that the problem is begun again.
struct BatchTrace
{
    void (*onPivot)(BatchTrace* trace, NuvSizeT problem, NuvUint phase, NuvUint entering,
                    NuvUint leaving);
};
}  // namespace nuv

#endif
