#include "Nuv/Solve/SinglePrecisionSolve.hpp"

#include "Nuv/Solve/ModelTerms.hpp"

namespace nuv
{
namespace
{

/// What the dense matrices of the core may take where the sparse stage follows, which is faster
/// than it beyond that, and where nothing follows.
constexpr std::size_t kBytesToStart = std::size_t{1} << 28;
constexpr std::size_t kBytesToSolve = std::size_t{1} << 30;

/// Where the float stage stands before a pivot. A basic artificial variable is left out.
PathStep VertexBefore(const FloatPivot& pivot, const BoundedForm& form, const Lowering& lowering,
                      double sign)
{
    std::vector<double> canonical(lowering.form.columns, 0.0);
    for (std::size_t i = 0; i < pivot.basic.size(); ++i)
        if (pivot.basic[i] != 0 && pivot.basic[i] <= lowering.form.columns)
            canonical[pivot.basic[i] - 1] = static_cast<double>(pivot.values[i]);
    PathStep step;
    step.phase = pivot.phase;
    step.values = LiftValues(lowering, canonical);
    double objective = form.constant;
    for (Index j = 0; j < form.columns; ++j)
        objective += form.cost[j] * step.values[j];
    step.objective = sign * objective;
    return step;
}

FloatResult RunSinglePrecision(const BoundedForm& form, double sign, const Lowering& lowering,
                               const SolveOptions& options, SolveControl& control,
                               Solution& solution)
{
    const CanonicalForm& canonical = lowering.form;
    const FloatBudget budget{50 * (std::uint64_t{canonical.rows} + canonical.columns),
                             options.singlePrecisionOnly ? kBytesToSolve : kBytesToStart};
    if (!options.recordPath)
        return RunFloatStage(canonical, budget, control);
    return RunFloatStage(canonical, budget, control,
                         [&](const FloatPivot& pivot)
                         { solution.path.push_back(VertexBefore(pivot, form, lowering, sign)); });
}

void Record(const SolveControl& control, Solution& solution)
{
    solution.stages[Stage::SinglePrecision] = {!solution.floatStage.basicLabels.empty(),
                                               solution.floatStage.pivots, control.Seconds()};
}

Status StatusOf(FloatOutcome outcome)
{
    switch (outcome)
    {
    case FloatOutcome::Optimal:
        return Status::Optimal;
    case FloatOutcome::Infeasible:
        return Status::Infeasible;
    case FloatOutcome::Unbounded:
        return Status::Unbounded;
    default:
        return Status::Stopped;
    }
}

}  // namespace

std::optional<Basis> FindStart(const BoundedForm& form, double sign, const SolveOptions& options,
                               SolveControl& control, Solution& solution)
{
    // Bounds that cross have no canonical form, and need none.
    if (!options.useSinglePrecision || FindCrossedBounds(form) != kNoIndex)
        return std::nullopt;
    const Lowering lowering = Lower(form, options.scaling);
    solution.floatStage = RunSinglePrecision(form, sign, lowering, options, control, solution);
    Record(control, solution);
    if (solution.floatStage.basicLabels.empty())
        return std::nullopt;
    return LiftBasis(lowering, solution.floatStage.basicLabels);
}

void BelieveSinglePrecision(const BoundedForm& form, double sign, const SolveOptions& options,
                            SolveControl& control, Solution& solution)
{
    if (FindCrossedBounds(form) != kNoIndex)
    {
        solution.status = Status::Infeasible;
        return;
    }
    const Lowering lowering = Lower(form, options.scaling);
    solution.floatStage = RunSinglePrecision(form, sign, lowering, options, control, solution);
    Record(control, solution);
    solution.status = StatusOf(solution.floatStage.outcome);
    solution.stopReason = solution.floatStage.outcome == FloatOutcome::PivotLimit
                              ? StopReason::PivotLimit
                              : control.Reason();
    if (solution.status != Status::Optimal)
        return;
    const std::vector<double> canonical(solution.floatStage.values.begin(),
                                        solution.floatStage.values.end());
    solution.values = LiftValues(lowering, canonical);
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
