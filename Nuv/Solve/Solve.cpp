// The road of a solve: the core on the lowered model, then doubles, then rationals, each from the
// basis of the stage before. The first stage only has to be quick; the last one decides.
#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/Solve/ModelForm.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <optional>
#include <utility>

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

/// @return the basis to go on from, if the core found one.
std::optional<Basis> FindStart(const BoundedForm& form, double sign, const SolveOptions& options,
                               SolveControl& control, Solution& solution)
{
    // Bounds that cross have no canonical form, and need none.
    if (!options.useSinglePrecision || FindCrossedBounds(form) != kNoIndex)
        return std::nullopt;
    const Lowering lowering = Lower(form, options.scaling);
    solution.floatStage = RunSinglePrecision(form, sign, lowering, options, control, solution);
    solution.floatSeconds = control.Seconds();
    if (solution.floatStage.basicLabels.empty())
        return std::nullopt;
    return LiftBasis(lowering, solution.floatStage.basicLabels);
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

/// What the core says of the model, believed as it stands.
void BelieveSinglePrecision(const BoundedForm& form, double sign, const SolveOptions& options,
                            SolveControl& control, Solution& solution)
{
    if (FindCrossedBounds(form) != kNoIndex)
    {
        solution.status = SolveStatus::Infeasible;
        return;
    }
    const Lowering lowering = Lower(form, options.scaling);
    solution.floatStage = RunSinglePrecision(form, sign, lowering, options, control, solution);
    solution.floatSeconds = control.Seconds();
    solution.status = StatusOf(solution.floatStage.outcome);
    solution.proof.stopReason = solution.floatStage.outcome == FloatOutcome::PivotLimit
                                    ? StopReason::PivotLimit
                                    : control.Reason();
    if (solution.status != SolveStatus::Optimal)
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
             SolveControl& control, Solution& solution)
{
    if (!solution.proved)
        return;
    if (solution.status == SolveStatus::Optimal && options.sensitivity)
    {
        if (std::optional<Sensitivity> found = AnalyseSensitivity(form, solution.proof, control))
            solution.sensitivity = InSense(std::move(*found), sign);
    }
    if (solution.status == SolveStatus::Infeasible)
    {
        control.EndWithin(options.iisSeconds);
        solution.iis = FindIis(form, solution.proof, control);
    }
}

}  // namespace

Solution Solve(const Model& model, const SolveOptions& options)
{
    SolveControl control(options.limits);
    Solution solution;
    solution.numbers = options.numbers;
    if (std::optional<Error> fault = model.FindFault())
    {
        solution.failure = std::move(*fault);
        return solution;
    }
    const double sign = model.ObjectiveSense() == Sense::Maximize ? -1.0 : 1.0;
    BoundedForm form = FormOf(model);
    form.numbers = options.numbers;
    control.ReportObjectiveAs(sign, form.constant);
    if (options.singlePrecisionOnly)
        BelieveSinglePrecision(form, sign, options, control, solution);
    else
    {
        const std::optional<Basis> start = FindStart(form, sign, options, control, solution);
        solution.proof = SolveProved(form, start ? &*start : nullptr, control);
        Report(form, sign, solution);
        Analyse(form, sign, options, control, solution);
    }
    solution.seconds = control.Seconds();
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
