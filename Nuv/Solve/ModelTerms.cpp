#include "Nuv/Solve/ModelTerms.hpp"

#include <cmath>
#include <string>

namespace nuv
{
namespace
{

std::vector<double> Approximations(const ExactVector& vector)
{
    std::vector<double> result;
    for (Index k = 0; k < vector.numerator.size(); ++k)
        result.push_back(vector.Approximately(k));
    return result;
}

/// A point with its prices: of an optimum, or of the basis at which the solve was stopped.
void SayPoint(const BoundedForm& form, double sign, const SolveRecord& record, Solution& solution)
{
    solution.objective = sign * record.objectiveValue + 0.0;
    solution.primalViolation = record.primalViolation;
    solution.dualViolation = record.dualViolation;
    const auto columns = static_cast<std::ptrdiff_t>(form.columns);
    solution.values.assign(record.value.begin(), record.value.begin() + columns);
    solution.activities.assign(record.value.begin() + columns, record.value.end());
    solution.slacks = SlacksOf(form, solution.activities);
    for (Index v = 0; v < form.Variables(); ++v)
        (v < form.columns ? solution.reducedCosts : solution.duals)
            .push_back(sign * record.reduced[v] + 0.0);
}

/// Why single precision alone came to no verdict.
std::string SinglePrecisionWords(const SinglePrecisionResult& stage)
{
    const std::string pivots = std::to_string(stage.pivots) + " pivots";
    switch (stage.stop)
    {
    case SinglePrecisionStop::Cycling:
        return ": basis repeated after " + pivots + ", a cycle of " + std::to_string(stage.period);
    case SinglePrecisionStop::PivotBudget:
        return ": no end after " + pivots + ", 50 for each row and column of the canonical form";
    case SinglePrecisionStop::Memory:
        return stage.pivots == 0
                   ? ": too large for the dense matrices of single precision"
                   : ": the dense matrices of single precision take too much memory after " +
                         pivots;
    case SinglePrecisionStop::Empty:
        return ": there is no row or no variable for single precision to work on";
    case SinglePrecisionStop::OutOfRange:
        return ": a number of the model is beyond single precision";
    default:
        return "";
    }
}

std::string StopWords(const Solution& solution)
{
    switch (solution.stopReason)
    {
    case StopReason::TimeLimit:
        return " by the time limit";
    case StopReason::PivotLimit:
        return " by the pivot limit";
    case StopReason::Cancelled:
        return " by an interrupt";
    case StopReason::None:
        break;
    }
    const StageRecord& doubles = solution.stages[Stage::Double];
    if (doubles.ran && !solution.stages[Stage::Exact].ran)
        return ": double precision gets no further after " + std::to_string(doubles.pivots) +
               " pivots, but a solve with proof may";
    return doubles.ran ? "" : SinglePrecisionWords(solution.singlePrecision);
}

}  // namespace

void SayOfModel(const BoundedForm& form, double sign, const CertifiedResult& result,
                Solution& solution)
{
    const Certificate& certificate = result.certificate;
    const SolveRecord& record = result.record;
    solution.status = certificate.status;
    solution.proved = record.proved;
    solution.stopReason = record.stopReason;
    if (certificate.status == Status::Invalid)
        solution.failure = {"model.defect", record.defect, "", "", 0, 0};
    if (certificate.status == Status::Unbounded)
        solution.ray = Approximations(certificate.ray);
    if (certificate.status == Status::Infeasible)
        solution.farkas = Approximations(certificate.dual);
    const bool hasPoint =
        certificate.status == Status::Optimal || certificate.status == Status::Stopped;
    if (hasPoint && record.value.size() == form.Variables())
        SayPoint(form, sign, record, solution);
    if (certificate.status == Status::Optimal && record.proved)
        solution.exactObjective =
            ToString(sign < 0.0 ? Rational(-certificate.objective) : certificate.objective);
    for (const Stage stage : {Stage::Double, Stage::Exact})
        solution.stages[stage] = record.stages[stage];
    solution.checkSeconds = record.checkSeconds;
    solution.basis = record.basis;
}

std::vector<double> SlacksOf(const BoundedForm& form, const std::vector<double>& activities)
{
    std::vector<double> slacks;
    for (Index i = 0; i < form.rows; ++i)
        slacks.push_back(
            std::fmin(form.rowUpper[i] - activities[i], activities[i] - form.rowLower[i]) + 0.0);
    return slacks;
}

Sensitivity InSense(Sensitivity sensitivity, double sign)
{
    if (sign < 0.0)
        for (AllowedRange& range : sensitivity.cost)
            range = {-range.upper, -range.lower};
    return sensitivity;
}

Iis ByHandle(const Model& model, const InfeasibleBounds& bounds)
{
    Iis iis{{}, bounds.minimal};
    for (const BoundOfVariable& member : bounds.members)
    {
        const Index columns = model.VariableCount();
        if (member.variable < columns)
            iis.members.push_back({model.VariableAt(member.variable), member.upper});
        else
            iis.members.push_back({model.RowAt(member.variable - columns), member.upper});
    }
    return iis;
}

std::string Solution::Outcome() const
{
    const std::string word(WordOf(status));
    if (status == Status::Invalid)
        return word + ": " + failure.text;
    return status == Status::Stopped ? word + StopWords(*this) : word;
}

}  // namespace nuv
