#include "Nuv/Solve/SinglePrecisionSolve.hpp"

#include "Nuv/Solve/ModelTerms.hpp"
#include "Nuv/Solve/SinglePrecisionStage.hpp"

#include <string>

namespace nuv
{
namespace
{

/// What the dense matrices of the core may take where the sparse stage follows, which is faster
/// than it beyond that, and where nothing follows.
constexpr std::size_t kBytesToStart = std::size_t{1} << 28;
constexpr std::size_t kBytesToSolve = std::size_t{1} << 30;

/// Whether a start from the core may be worth what finding it costs: a dense tableau of at most
/// some hundred entries. The sparse simplex is quicker from its own start on anything else.
bool IsSmallAndDense(const BoundedForm& form)
{
    constexpr std::size_t kMostEntries = 256;
    const std::size_t entries = form.matrix.EntryCount();
    return entries <= kMostEntries && 4 * entries >= std::size_t{form.rows} * form.columns;
}

/// Where the single-precision stage stands before a pivot. A basic artificial variable is left out.
PathStep VertexBefore(const SinglePrecisionPivot& pivot, const BoundedForm& form,
                      const Canonicalisation& canonicalised, double sign)
{
    std::vector<double> canonical(canonicalised.form.columns, 0.0);
    for (std::size_t i = 0; i < pivot.basic.size(); ++i)
        if (pivot.basic[i] != 0 && pivot.basic[i] <= canonicalised.form.columns)
            canonical[pivot.basic[i] - 1] = static_cast<double>(pivot.values[i]);
    PathStep step;
    step.phase = pivot.phase;
    step.values = FromCanonicalPoint(canonicalised, canonical);
    double objective = form.constant;
    for (Index j = 0; j < form.columns; ++j)
        objective += form.cost[j] * step.values[j];
    step.objective = sign * objective;
    return step;
}

SinglePrecisionResult RunSinglePrecision(const BoundedForm& form, double sign,
                                         const Canonicalisation& canonicalised,
                                         const SolveOptions& options, SolveControl& control,
                                         Solution& solution)
{
    const CanonicalForm& canonical = canonicalised.form;
    const SinglePrecisionBudget budget{SinglePrecisionPivots(canonical.rows, canonical.columns),
                                       options.singlePrecisionOnly ? kBytesToSolve : kBytesToStart};
    if (!options.recordPath)
        return RunSinglePrecisionStage(canonical, budget, control);
    return RunSinglePrecisionStage(
        canonical, budget, control,
        [&](const SinglePrecisionPivot& pivot)
        { solution.path.push_back(VertexBefore(pivot, form, canonicalised, sign)); });
}

void Record(const SolveControl& control, Solution& solution)
{
    solution.stages[Stage::SinglePrecision] = {!solution.singlePrecision.basicLabels.empty(),
                                               solution.singlePrecision.pivots, control.Seconds()};
    const Status found = solution.singlePrecision.status;
    control.Log("single precision",
                [&]
                {
                    return (found == Status::Stopped ? "no verdict" : std::string(WordOf(found))) +
                           " after " + std::to_string(solution.singlePrecision.pivots) + " pivots";
                });
}

}  // namespace

std::optional<Basis> FindStart(const BoundedForm& form, double sign, const SolveOptions& options,
                               SolveControl& control, Solution& solution)
{
    // Bounds that cross have no canonical form, and need none. Who asks for the path gets it.
    if (!options.useSinglePrecision || FindCrossedBounds(form) != kNoIndex ||
        !(options.recordPath || IsSmallAndDense(form)))
        return std::nullopt;
    const Canonicalisation canonicalised = ToCanonicalForm(form, options.scaling);
    solution.singlePrecision =
        RunSinglePrecision(form, sign, canonicalised, options, control, solution);
    Record(control, solution);
    if (solution.singlePrecision.basicLabels.empty())
        return std::nullopt;
    return FromCanonicalBasis(canonicalised, solution.singlePrecision.basicLabels);
}

void BelieveSinglePrecision(const BoundedForm& form, double sign, const SolveOptions& options,
                            SolveControl& control, Solution& solution)
{
    if (FindCrossedBounds(form) != kNoIndex)
    {
        solution.status = Status::Infeasible;
        return;
    }
    const Canonicalisation canonicalised = ToCanonicalForm(form, options.scaling);
    solution.singlePrecision =
        RunSinglePrecision(form, sign, canonicalised, options, control, solution);
    Record(control, solution);
    solution.status = solution.singlePrecision.status;
    solution.stopReason = solution.singlePrecision.stop == SinglePrecisionStop::PivotLimit
                              ? StopReason::PivotLimit
                              : control.Reason();
    if (solution.status == Status::Optimal)
        TakeCanonicalPoint(form, sign, canonicalised, solution.singlePrecision.values, solution);
}

void TakeCanonicalPoint(const BoundedForm& form, double sign, const Canonicalisation& canonicalised,
                        std::span<const float> y, Solution& solution)
{
    const std::vector<double> canonical(y.begin(), y.end());
    solution.values = FromCanonicalPoint(canonicalised, canonical);
    double objective = form.constant;
    for (Index j = 0; j < form.columns; ++j)
        objective += form.cost[j] * solution.values[j];
    solution.objective = sign * objective;
    solution.activities.assign(form.rows, 0.0);
    for (Index i = 0; i < form.rows; ++i)
        for (const auto [column, entry] : form.matrix.Row(i))
            solution.activities[i] += entry * solution.values[column];
    solution.slacks = SlacksOf(form, solution.activities);
}

}  // namespace nuv
