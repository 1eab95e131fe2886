// The road of a solve: the core on the lowered model, then doubles, then rationals, each from the
// basis of the stage before. The first stage only has to be quick; the last one decides.
#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/Solve/ModelForm.hpp"
#include "Nuv/Solve/Solution.hpp"
#include "Nuv/Solve/StageLimits.hpp"

#include <cmath>
#include <optional>
#include <utility>

namespace nuv
{
namespace
{

/// What the float stage may take: beyond it the dense matrices cost more than the sparse stage.
constexpr std::size_t floatBytes = std::size_t{1} << 28;

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

/// @return the basis to go on from, if the stage found one.
std::optional<Basis> RunFloatStage(const BoundedForm& form, double sign,
                                   const SolveOptions& options, const SolveClock& clock,
                                   Solution& solution)
{
    const double start = clock.Seconds();
    const Lowering lowering = Lower(form, options.scaling);
    solution.binary32 = ReportBinary32(lowering);
    if (!options.useFloatStage)
        return std::nullopt;
    FloatLimits limits = FloatLimitsOf(options, lowering.form, clock, floatBytes);
    if (options.recordPath)
        limits.keepGoing = [&, goesOn = std::move(limits.keepGoing)](const FloatPivot& pivot)
        {
            solution.path.push_back(VertexBefore(pivot, form, lowering, sign));
            return goesOn(pivot);
        };
    solution.floatStage = nuv::RunFloatStage(lowering.form, limits);
    solution.floatSeconds = clock.Seconds() - start;
    if (solution.floatStage.outcome == FloatOutcome::Skipped)
        return std::nullopt;
    return LiftBasis(lowering, solution.floatStage.basicLabels);
}

Limits LimitsOf(const SolveOptions& options, const SolveClock& clock, const BoundedForm& form,
                double sign)
{
    Limits limits;
    limits.seconds = std::fmax(0.0, options.seconds - clock.Seconds());
    limits.doublePivots = options.doublePivots;
    limits.exactPivots = options.exactPivots;
    if (options.keepGoing)
        limits.keepGoing = [&options, &clock, &form, sign](const Progress& progress)
        {
            return options.keepGoing(
                {progress.stage == Stage::Double ? SolveStage::Double : SolveStage::Exact,
                 progress.pivots, clock.Seconds(),
                 progress.feasible ? sign * (progress.objective + form.constant)
                                   : progress.objective,
                 progress.feasible});
        };
    return limits;
}

SolveStatus StatusOf(ProofStatus status)
{
    switch (status)
    {
    case ProofStatus::Optimal:
        return SolveStatus::Optimal;
    case ProofStatus::Infeasible:
        return SolveStatus::Infeasible;
    case ProofStatus::Unbounded:
        return SolveStatus::Unbounded;
    case ProofStatus::Stopped:
        break;
    }
    return SolveStatus::Stopped;
}

std::vector<double> Approximations(const ExactVector& vector)
{
    std::vector<double> result;
    for (Index k = 0; k < vector.numerator.size(); ++k)
        result.push_back(vector.Approximately(k));
    return result;
}

/// Says in the model's own sense what the proof says of the minimisation form.
void Report(const BoundedForm& form, double sign, Solution& solution)
{
    const Proof& proof = solution.proof;
    solution.status = StatusOf(proof.status);
    solution.proved = proof.proved;
    if (proof.status == ProofStatus::Unbounded)
        solution.ray = Approximations(proof.ray);
    if (proof.status == ProofStatus::Infeasible)
        solution.farkas = Approximations(proof.dual);
    const bool hasPoint =
        proof.status == ProofStatus::Optimal || proof.status == ProofStatus::Stopped;
    if (!hasPoint || proof.value.size() != form.Variables())
        return;
    solution.objective = sign * proof.objectiveValue;
    if (proof.status == ProofStatus::Optimal && proof.proved)
        solution.exactObjective =
            ToString(sign < 0.0 ? Rational(-proof.objective) : proof.objective);
    const auto columns = static_cast<std::ptrdiff_t>(form.columns);
    solution.values.assign(proof.value.begin(), proof.value.begin() + columns);
    solution.activities.assign(proof.value.begin() + columns, proof.value.end());
    for (Index v = 0; v < form.Variables(); ++v)
        (v < form.columns ? solution.reducedCosts : solution.duals)
            .push_back(sign * proof.reduced[v] + 0.0);
}

/// The ranges of the minimisation form, as ranges of the model's own costs.
Sensitivity InSense(Sensitivity sensitivity, double sign)
{
    if (sign < 0.0)
        for (AllowedRange& range : sensitivity.cost)
            range = {-range.upper, -range.lower};
    return sensitivity;
}

/// What is worth knowing of a proved verdict beyond its proof.
void Analyse(const BoundedForm& form, double sign, const SolveOptions& options,
             const SolveClock& clock, Solution& solution)
{
    if (!solution.proved)
        return;
    if (solution.status == SolveStatus::Optimal && options.sensitivity)
        solution.sensitivity = InSense(AnalyseSensitivity(form, solution.proof), sign);
    if (solution.status != SolveStatus::Infeasible)
        return;
    Limits limits;
    limits.seconds =
        std::fmin(options.conflictSeconds, std::fmax(0.0, options.seconds - clock.Seconds()));
    solution.conflict = FindConflict(form, solution.proof, limits);
}

}  // namespace

Solution Solve(const Model& model, const SolveOptions& options)
{
    const SolveClock clock;
    Solution solution;
    if (std::optional<Error> fault = model.FindFault())
    {
        solution.failure = std::move(*fault);
        return solution;
    }
    const double sign = model.ObjectiveSense() == Sense::Maximize ? -1.0 : 1.0;
    BoundedForm form = FormOf(model);
    form.numbers = options.numbers;
    std::optional<Basis> start;
    if (FindCrossedBounds(form) == kNoIndex)
        start = RunFloatStage(form, sign, options, clock, solution);
    solution.proof =
        SolveProved(form, start ? &*start : nullptr, LimitsOf(options, clock, form, sign));
    Report(form, sign, solution);
    Analyse(form, sign, options, clock, solution);
    solution.seconds = clock.Seconds();
    return solution;
}

Solution Model::Solve() const
{
    return nuv::Solve(*this, {});
}

Solution Model::Solve(const SolveOptions& options) const
{
    return nuv::Solve(*this, options);
}

}  // namespace nuv
