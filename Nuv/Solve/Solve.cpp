// Stages of a solve: the core on the canonical form, then doubles, then rationals, each from the
// basis of the stage before. The first stage only has to be quick; the last one decides.
#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/Exact/Iis.hpp"
#include "Nuv/Exact/Ranging.hpp"
#include "Nuv/Solve/ModelForm.hpp"
#include "Nuv/Solve/ModelTerms.hpp"
#include "Nuv/Solve/SinglePrecisionSolve.hpp"
#include "Nuv/Solve/Solution.hpp"
#include "Nuv/Solve/SolveSteps.hpp"
#include "Nuv/SparseSimplex/StartBasis.hpp"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace nuv
{
namespace
{

/// What is worth knowing of a proved verdict beyond its proof.
void Analyse(const Model& model, const BoundedForm& form, double sign, const SolveOptions& options,
             const CertifiedResult& result, SolveControl& control, Solution& solution)
{
    if (!result.record.proved)
        return;
    if (result.certificate.status == Status::Optimal && options.sensitivity)
    {
        std::optional<Sensitivity> found = AnalyseSensitivity(form, result, control);
        if (found)
            solution.sensitivity = InSense(std::move(*found), sign);
        else
            solution.stopReason = control.Reason();
        control.Log("ranging", [&] { return found ? "done" : "ended early"; });
    }
    if (result.certificate.status == Status::Optimal && options.uniqueness)
    {
        solution.unique = FindUniqueness(form, result, control);
        const bool isKnown = solution.unique.point != Uniqueness::Unknown &&
                             solution.unique.duals != Uniqueness::Unknown;
        if (!isKnown)
            solution.stopReason = control.Reason();
        control.Log("uniqueness", [&] { return isKnown ? "decided" : "ended early"; });
    }
    if (result.certificate.status == Status::Infeasible)
    {
        const InfeasibleBounds found = FindIis(form, result.certificate, control, options.iisWork);
        solution.iis = ByHandle(model, found);
        if (!found.minimal)
            solution.stopReason =
                control.Reason() == StopReason::None ? StopReason::PivotLimit : control.Reason();
        control.Log("infeasible subsystem",
                    [&]
                    {
                        return std::to_string(found.members.size()) + " members, " +
                               (found.minimal ? "minimal" : "ended early") + ", work " +
                               std::to_string(found.work);
                    });
    }
}

}  // namespace

Solution BlankSolution(const Model& model, const SolveOptions& options)
{
    Solution solution;
    solution.numbers = options.numbers;
    solution.variables = model.VariableOrigins();
    solution.rows = model.RowOrigins();
    if (std::optional<Error> fault = model.FindFault())
        solution.failure = std::move(*fault);
    return solution;
}

std::optional<Basis> StartOf(const BoundedForm& form, double sign, const SolveOptions& options,
                             SolveControl& control, Solution& solution)
{
    if (options.start)
        return options.start;
    if (!options.startValues.empty())
        return BasisNear(form, options.startValues);
    return FindStart(form, sign, options, control, solution);
}

void Conclude(const Model& model, const BoundedForm& form, const SolveOptions& options,
              const std::shared_ptr<const CertifiedResult>& result, SolveControl& control,
              Solution& solution)
{
    SayOfModel(form, SignOf(model), *result, solution);
    if (options.exact && solution.proved)
        solution.exact = ExactTextsOf(form, SignOf(model), result->certificate);
    Analyse(model, form, SignOf(model), options, *result, control, solution);
    if (solution.proved)
        solution.certificate = {result, &result->certificate};
}

Solution Solve(const Model& model, const SolveOptions& options)
{
    SolveControl control(options.limits);
    Solution solution = BlankSolution(model, options);
    if (!solution.failure.code.empty())
        return solution;
    const double sign = SignOf(model);
    const BoundedForm form = FormOf(model, options.numbers);
    control.ReportObjectiveAs(sign, form.constant);
    control.Log("model",
                [&]
                {
                    return std::to_string(form.rows) + " rows, " + std::to_string(form.columns) +
                           " variables, " + std::to_string(model.NonzeroCount()) + " entries";
                });
    if (options.singlePrecisionOnly)
        BelieveSinglePrecision(form, sign, options, control, solution);
    else
    {
        const std::optional<Basis> start = StartOf(form, sign, options, control, solution);
        const auto solve = options.doublePrecisionOnly ? SolveUnproved : SolveCertified;
        Conclude(model, form, options,
                 std::make_shared<const CertifiedResult>(
                     solve(form, start ? &*start : nullptr, control)),
                 control, solution);
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
