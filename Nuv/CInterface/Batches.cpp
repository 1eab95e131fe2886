#include "Nuv/CInterface/Records.hpp"
#include "Nuv/CInterface/Solving.hpp"
#include "Nuv/Exact/Dense/SolveDense.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace nuv::c
{
namespace
{

static_assert(static_cast<std::uint32_t>(Status::Invalid) == NUV_STATUS_Invalid);

void CheckBatch(const NuvBatch& batch)
{
    (void)MeaningOf(batch.numbers);
    Require(batch.stages == NUV_STAGES_All || batch.stages == NUV_STAGES_WithoutProof,
            "a batch has all stages, or those without proof");
    const std::uint64_t rows = std::uint64_t{batch.numUpperRows} + batch.numEqualRows;
    Require(rows + batch.numColumns < NUV_MODEL_NO_INDEX, "a batch has too many rows or columns");
    const auto hasRows = [&](std::uint32_t count, const double* matrix, const double* sides)
    { return count == 0 || (sides && (matrix || batch.numColumns == 0)); };
    Require(hasRows(batch.numUpperRows, batch.upperMatrix, batch.upperSides),
            "a batch has rows of A, but no matrix or no sides for them");
    Require(hasRows(batch.numEqualRows, batch.equalMatrix, batch.equalSides),
            "a batch has rows of E, but no matrix or no sides for them");
}

const double* Of(const double* numbers, std::uint64_t stride, std::uint64_t problem) noexcept
{
    return numbers ? numbers + problem * stride : nullptr;
}

DenseProblem ProblemAt(const NuvBatch& batch, std::uint64_t k)
{
    DenseProblem problem;
    problem.numbers = MeaningOf(batch.numbers);
    problem.columns = batch.numColumns;
    problem.upperRows = batch.numUpperRows;
    problem.equalRows = batch.numEqualRows;
    problem.cost = Of(batch.costs, batch.costsStride, k);
    problem.upperMatrix = Of(batch.upperMatrix, batch.upperStride, k);
    problem.upperSides = Of(batch.upperSides, batch.upperSidesStride, k);
    problem.equalMatrix = Of(batch.equalMatrix, batch.equalStride, k);
    problem.equalSides = Of(batch.equalSides, batch.equalSidesStride, k);
    problem.lower = Of(batch.columnLower, batch.columnLowerStride, k);
    problem.upper = Of(batch.columnUpper, batch.columnUpperStride, k);
    return problem;
}

/// Writes one answer's part of an array of the caller's; NaN where there are no numbers.
void Write(const std::vector<double>& numbers, bool isKnown, double* all, std::uint64_t length,
           std::uint64_t problem)
{
    if (!all)
        return;
    double* const part = all + problem * length;
    if (isKnown)
        std::transform(numbers.begin(), numbers.end(), part, [](double x) { return x + 0.0; });
    else
        std::fill_n(part, length, std::numeric_limits<double>::quiet_NaN());
}

void Write(const NuvBatch& batch, std::uint64_t k, const DenseAnswer& answer)
{
    const bool isOptimal = answer.status == Status::Optimal;
    if (batch.status)
        batch.status[k] = static_cast<std::uint32_t>(answer.status);
    if (batch.proved)
        batch.proved[k] = answer.proved ? 1 : 0;
    if (batch.pivots)
        batch.pivots[k] = answer.pivots;
    Write({answer.objective}, isOptimal, batch.objectives, 1, k);
    Write(answer.values, isOptimal, batch.values, batch.numColumns, k);
    Write(answer.reducedCosts, isOptimal, batch.reducedCosts, batch.numColumns, k);
    Write(answer.duals, isOptimal, batch.duals,
          std::uint64_t{batch.numUpperRows} + batch.numEqualRows, k);
}

void SolveRange(const NuvBatch& batch, std::uint64_t first, std::uint64_t last)
{
    const DenseAnswer stopped;
    for (std::uint64_t k = first; k < last; ++k)
        Write(batch, k, stopped);
    const DenseSolver::Otherwise otherwise = batch.stages == NUV_STAGES_WithoutProof
                                                 ? DenseSolver::Otherwise::Believe
                                                 : DenseSolver::Otherwise::Prove;
    DenseSolver solver(otherwise);
    DenseAnswer answer;
    for (std::uint64_t k = first; k < last; ++k)
    {
        solver.Solve(ProblemAt(batch, k), batch.pivotLimit, answer);
        Write(batch, k, answer);
    }
}

}  // namespace
}  // namespace nuv::c

using namespace nuv::c;

NuvModelResult NuvBatchInit(NuvBatch* batch, uint32_t size)
{
    return Guarded(nullptr,
                   [&]
                   {
                       NuvBatch blank{};
                       blank.pivotLimit = nuv::SolveLimits::kNoLimit;
                       FillIn(batch, "batch", blank, size);
                   });
}

NuvModelResult NuvModelSolveBatch(const NuvBatch* batch, uint64_t first, uint64_t last,
                                  NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       const NuvBatch given = TakeIn(batch, "batch");
                       CheckBatch(given);
                       Require(first <= last && last <= given.count,
                               "the range is none of the batch's");
                       SolveRange(given, first, last);
                   });
}
