#include "Nuv/Solve/FloatSolve.hpp"

#include "Nuv/Solve/CanonicalForm.hpp"
#include "Nuv/Solve/ModelForm.hpp"
#include "Nuv/Solve/StageLimits.hpp"

namespace nuv
{
namespace
{

/// The dense matrices and what the pivots leave behind.
constexpr std::size_t kMostBytes = std::size_t{1} << 30;

SolveStatus StatusOf(FloatOutcome outcome)
{
    switch (outcome)
    {
    case FloatOutcome::Optimal:
        return SolveStatus::Optimal;
    case FloatOutcome::Infeasible:
        return SolveStatus::Infeasible;
    case FloatOutcome::Unbounded:
        return SolveStatus::Unbounded;
    default:
        return SolveStatus::Stopped;
    }
}

void LiftPoint(const Model& model, const BoundedForm& form, const Lowering& lowering,
               Solution& solution)
{
    const std::vector<double> canonical(solution.floatStage.values.begin(),
                                        solution.floatStage.values.end());
    solution.values = LiftValues(lowering, canonical);
    solution.objective = model.ObjectiveConstant();
    for (Index j = 0; j < form.columns; ++j)
        solution.objective += model.Objective()[j] * solution.values[j];
    solution.activities.assign(form.rows, 0.0);
    for (Index i = 0; i < form.rows; ++i)
        for (const auto [column, entry] : form.matrix.Row(i))
            solution.activities[i] += entry * solution.values[column];
}

}  // namespace

Solution SolveInFloats(const Model& model, const SolveOptions& options)
{
    const SolveClock clock;
    Solution solution;
    if (std::optional<Error> fault = model.FindFault())
    {
        solution.failure = std::move(*fault);
        return solution;
    }
    const BoundedForm form = FormOf(model);
    // Bounds that cross have no canonical form, and need none.
    if (FindCrossedBounds(form) != kNoIndex)
    {
        solution.status = SolveStatus::Infeasible;
        return solution;
    }
    const Lowering lowering = Lower(form, options.scaling);
    solution.binary32 = ReportBinary32(lowering);
    if (options.useFloatStage)
        solution.floatStage =
            RunFloatStage(lowering.form, FloatLimitsOf(options, lowering.form, clock, kMostBytes));
    solution.status = StatusOf(solution.floatStage.outcome);
    if (solution.floatStage.outcome == FloatOutcome::Cancelled)
        solution.proof.stopReason =
            clock.Seconds() < options.seconds ? StopReason::Cancelled : StopReason::TimeLimit;
    if (solution.floatStage.outcome == FloatOutcome::PivotLimit || !options.useFloatStage)
        solution.proof.stopReason = StopReason::PivotLimit;
    if (solution.status == SolveStatus::Optimal)
        LiftPoint(model, form, lowering, solution);
    solution.floatSeconds = solution.seconds = clock.Seconds();
    return solution;
}

}  // namespace nuv
