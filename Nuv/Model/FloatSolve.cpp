#include "Nuv/Model/FloatSolve.hpp"

#include "Nuv/Model/Lowering.hpp"
#include "Nuv/Model/ModelForm.hpp"

#include <chrono>
#include <cmath>

namespace nuv
{
namespace
{

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// The dense matrices and what the pivots leave behind.
constexpr std::size_t kMostBytes = std::size_t{1} << 30;

FloatLimits LimitsOf(const Lowering& lowering, const SolveOptions& options, Clock::time_point start)
{
    FloatLimits limits;
    limits.bytes = kMostBytes;
    limits.pivots = options.floatPivots != 0
                        ? options.floatPivots
                        : 50 * (std::uint64_t{lowering.form.rows} + lowering.form.columns);
    limits.keepGoing = [&options, start](const FloatPivot& pivot)
    {
        const double seconds = SecondsSince(start);
        return seconds < options.seconds &&
               (!options.keepGoing ||
                options.keepGoing({SolveStage::Float, pivot.number, seconds, std::nan(""), false}));
    };
    return limits;
}

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

void LiftPoint(const Model& model, const LinearForm& form, const Lowering& lowering,
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
        for (std::size_t at = form.byRow.start[i]; at < form.byRow.start[i + 1]; ++at)
            solution.activities[i] += form.byRow.value[at] * solution.values[form.byRow.index[at]];
}

/// A variable or row whose bounds cross has no canonical form, and needs none.
bool Contradicts(const LinearForm& form)
{
    for (Index v = 0; v < form.Variables(); ++v)
        if (form.Lower(v) > form.Upper(v))
            return true;
    return false;
}

}  // namespace

Solution SolveInFloats(const Model& model, const SolveOptions& options)
{
    const Clock::time_point start = Clock::now();
    Solution solution;
    if (model.Failure())
    {
        solution.failure = *model.Failure();
        return solution;
    }
    const LinearForm form = FormOf(model);
    if (Contradicts(form))
    {
        solution.status = SolveStatus::Infeasible;
        return solution;
    }
    const Lowering lowering = Lower(form, options.scaling);
    solution.binary32 = ReportBinary32(lowering);
    if (options.useFloatStage)
        solution.floatStage = RunFloatStage(lowering.form, LimitsOf(lowering, options, start));
    solution.status = StatusOf(solution.floatStage.outcome);
    if (solution.floatStage.outcome == FloatOutcome::Cancelled)
        solution.proof.stopReason =
            SecondsSince(start) < options.seconds ? StopReason::Cancelled : StopReason::TimeLimit;
    if (solution.floatStage.outcome == FloatOutcome::PivotLimit || !options.useFloatStage)
        solution.proof.stopReason = StopReason::PivotLimit;
    if (solution.status == SolveStatus::Optimal)
        LiftPoint(model, form, lowering, solution);
    solution.floatSeconds = solution.seconds = SecondsSince(start);
    return solution;
}

}  // namespace nuv
