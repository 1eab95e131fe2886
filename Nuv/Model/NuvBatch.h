/// @file
/// Many small problems of one shape at once, each solved and proved, on arrays of the caller's.
/// Programs include NuvModel.h.
///
///     minimise    costs . x
///     subject to  A x <= b,   E x = d,   columnLower <= x <= columnUpper
///
/// Problem k reads its numbers from k strides behind the beginning of each array; a stride of 0
/// means that all problems share one. Each answer is that of NuvModelSolve for the same problem,
/// the verdict and the exact optimum; a problem with several optimal points has the same one
/// whatever else is in the batch, however it is cut into ranges, and on whichever machine. No
/// problem stops another or changes its answer.
///
///     NuvBatch batch;
///     NuvBatchInit(&batch, sizeof batch);
///     batch.numColumns = 2, batch.numUpperRows = 3, batch.count = 1000;
///     batch.costs = c, batch.costsStride = 2;         // each has costs of its own
///     batch.upperMatrix = A, batch.upperStride = 0;   // all share one matrix, 3 x 2
///     batch.upperSides = b, batch.upperSidesStride = 3;
///     batch.status = status, batch.objectives = objectives;
///     if (NuvModelSolveBatch(&batch, 0, batch.count, NULL) == NUV_MODELRESULT_Ok) ...
#ifndef NUV_MODEL_NUVBATCH_H
#define NUV_MODEL_NUVBATCH_H

#include "Nuv/Model/NuvModelTypes.h"
#include "Nuv/Model/NuvSolution.h"

/// The verdict on a problem of a batch that is none: a number is NaN, a cost, an entry or a side of
/// an equation is infinite, a lower bound is infinity or an upper one minus infinity.
enum
{
    NUV_STATUS_Invalid = 4
};

/// `count` problems and where their answers go. Strides count doubles. Of the answers, each array
/// may be null; they must not overlap the data.
typedef struct NuvBatch
{
    /// sizeof(NuvBatch), set by NuvBatchInit.
    uint32_t size;
    /// NUV_NUMBERS_...: which numbers the answers are about.
    uint32_t numbers;
    /// n
    uint32_t numColumns;
    /// The rows of A.
    uint32_t numUpperRows;
    /// The rows of E.
    uint32_t numEqualRows;
    /// NUV_STAGES_All, the default, or NUV_STAGES_WithoutProof: then an answer that is not proved
    /// in a few words of arithmetic, as that of a small problem mostly is, is believed as the
    /// simplex in doubles found it, and its objective and values are near to the optimum.
    uint32_t stages;
    /// How many problems there are.
    uint64_t count;
    /// A problem that wants more pivots than this in doubles, or in exact numbers, is given up as
    /// Stopped; UINT64_MAX is no limit.
    uint64_t pivotLimit;

    /// [n]; null is 0 for all.
    const double* costs;
    /// From one problem's costs to the next one's; 0: all have the same.
    uint64_t costsStride;
    /// A, row after row.
    const double* upperMatrix;
    /// From one problem's upperMatrix to the next one's; 0: all have the same.
    uint64_t upperStride;
    /// b; infinity is a row without a side.
    const double* upperSides;
    /// From one problem's upperSides to the next one's; 0: all have the same.
    uint64_t upperSidesStride;
    /// E, row after row.
    const double* equalMatrix;
    /// From one problem's equalMatrix to the next one's; 0: all have the same.
    uint64_t equalStride;
    /// d
    const double* equalSides;
    /// From one problem's equalSides to the next one's; 0: all have the same.
    uint64_t equalSidesStride;
    /// [n]; null is 0 for all.
    const double* columnLower;
    /// From one problem's columnLower to the next one's; 0: all have the same.
    uint64_t columnLowerStride;
    /// [n]; null is infinity for all.
    const double* columnUpper;
    /// From one problem's columnUpper to the next one's; 0: all have the same.
    uint64_t columnUpperStride;

    /// [count] NUV_STATUS_...
    uint32_t* status;
    /// [count] 1 where the verdict was checked in exact arithmetic, else 0.
    uint8_t* proved;
    /// [count] how many pivots were made.
    uint64_t* pivots;
    /// [count] the double nearest to the optimum; NaN without one, as in the arrays below.
    double* objectives;
    /// [count x n] the optimal point, each number the nearest double.
    double* values;
    /// [count x n] what the objective gains per unit by which a column is moved up.
    double* reducedCosts;
    /// [count x rows] what it gains per unit by which a side is moved up; A's rows, then E's.
    double* duals;
} NuvBatch;

/// Fills in a batch without problems. `size` is sizeof(NuvBatch).
NUV_MODEL_API NuvModelResult NuvBatchInit(NuvBatch* batch, uint32_t size);

/// Solves the problems from `first` to before `last`, at most `count`, and writes the answers of
/// these alone. Threads may solve different ranges of a batch at the same time. If it ends for want
/// of memory, the problems that it has not come to are Stopped.
NUV_MODEL_API NuvModelResult NuvModelSolveBatch(const NuvBatch* batch, uint64_t first,
                                                uint64_t last, NuvDiagnostics* diagnostics);

#endif
