#include "Nuv/Exact/CertifiedSolve.hpp"

#include "Nuv/Exact/Auxiliary.hpp"
#include "Nuv/Exact/CertifiedStages.hpp"
#include "Nuv/Exact/Dense/SolveSmall.hpp"
#include "Nuv/Exact/ExactSimplex.hpp"
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "Nuv/SparseSimplex/SimplexState.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuv
{
namespace
{

/// As many as take a basis that is nearly right to the right one.
constexpr int kFewRefinements = 4;

/// What a basis is worth in doubles, for an outcome that is not proved.
void EvaluateInDoubles(ScalableForm& scalable, SolveRecord& record)
{
    const BoundedForm& form = scalable.Form();
    const ScaledForm& scaled = scalable.Scaled();
    SimplexState state(scaled, record.basis);
    state.Refactorise();
    std::vector<double> basicCost(form.rows);
    for (Index k = 0; k < form.rows; ++k)
        basicCost[k] = state.cost[state.head[k]];
    state.ComputeReducedCosts(state.cost, basicCost);
    record.basis = state.ExportBasis();
    record.value.resize(form.Variables());
    record.reduced.resize(form.Variables());
    record.objectiveValue = form.constant;
    for (Index v = 0; v < form.Variables(); ++v)
    {
        const double value = state.value[v] * scaled.Scale(v);
        const double reduced = state.reduced[v] / scaled.Scale(v) / scaled.costScale;
        record.value[v] = value;
        record.reduced[v] = reduced;
        record.objectiveValue += form.Cost(v) * value;
        record.primalViolation =
            std::max({record.primalViolation, form.Lower(v) - value, value - form.Upper(v)});
        if (!form.IsFixed(v))
            record.dualViolation =
                std::max(record.dualViolation, DualInfeasibility(state.status[v], reduced));
    }
}

std::string AfterPivots(const SolveControl& control, Stage stage)
{
    return " after " + std::to_string(control.Pivots(stage)) + " pivots";
}

std::string_view WordOf(SimplexVerdict verdict)
{
    constexpr std::string_view kWords[] = {"optimal", "infeasible", "unbounded", "stopped",
                                           "no further"};
    return kWords[static_cast<std::size_t>(verdict)];
}

DoubleResult RunDoubles(ScalableForm& form, const Basis* start, SolveControl& control,
                        CertifiedResult& result)
{
    const double begin = control.Seconds();
    DoubleResult doubles =
        start != nullptr ? SolveInDoubles(form, *start, control) : SolveInDoubles(form, control);
    result.record.stages[Stage::Double].ran = true;
    result.record.stages[Stage::Double].seconds = control.Seconds() - begin;
    result.record.basis = std::move(doubles.basis);
    LogDoubles(doubles.verdict, control);
    return doubles;
}

/// The exact stage from the basis of the record. @return what it suspects if it gave up.
SimplexVerdict RunExact(ScalableForm& form, ExactEvaluation& evaluation, int rounds,
                        SolveControl& control, CertifiedResult& result)
{
    ExactSimplex exact(form, evaluation, Basis(result.record.basis), rounds, control);
    return exact.Run(result);
}

/// Optimises an auxiliary form from its start, in doubles and then exactly; `onlyRefine`: without
/// exact pivots.
CertifiedResult Optimise(ScalableForm& auxiliary, const Basis& start, bool onlyRefine,
                         SolveControl& control)
{
    const SolveControl::Aside aside(control);
    CertifiedResult result;
    DoubleResult doubles = SolveInDoubles(auxiliary, start, control);
    result.record.basis = std::move(doubles.basis);
    ExactEvaluation evaluation(auxiliary.Form());
    ExactSimplex exact(auxiliary, evaluation, Basis(result.record.basis),
                       onlyRefine ? kFewRefinements : kRefinements, control);
    if (onlyRefine)
        exact.OnlyRefine();
    (void)exact.Run(result);
    return result;
}

CertifiedResult OptimiseElastic(const AuxiliaryForm& elastic, bool onlyRefine,
                                SolveControl& control)
{
    ScalableForm auxiliary(elastic.form);
    return Optimise(auxiliary, elastic.start, onlyRefine, control);
}

/// Near the basis first. Where doubles get no grip on that, a larger program from the slack basis
/// is sooner at its end than exact pivots would be.
CertifiedResult OptimiseElastic(ScalableForm& form, const Basis& basis, SolveControl& control)
{
    CertifiedResult result = OptimiseElastic(ElasticForm(form, basis), true, control);
    if (result.certificate.status == Status::Stopped && !control.IsStopped())
        result = OptimiseElastic(ElasticRowsForm(form.Form()), false, control);
    return result;
}

/// The matrix and the cost are the original's, so their scales are too.
CertifiedResult OptimiseRay(ScalableForm& form, const Basis& basis, SolveControl& control)
{
    const AuxiliaryForm ray = RayForm(form.Form(), basis);
    ScaledForm scaled = form.Scaled();
    scaled.SetBounds(ray.form);
    ScalableForm auxiliary(ray.form, std::move(scaled));
    return Optimise(auxiliary, ray.start, false, control);
}

/// Takes the numbers of the original's columns and rows out of those of an auxiliary form, whose
/// own columns stand between them.
std::vector<double> CutColumns(const BoundedForm& form, std::vector<double> byVariable)
{
    if (byVariable.size() > form.Variables())
        byVariable.erase(byVariable.begin() + form.columns, byVariable.end() - form.rows);
    return byVariable;
}

/// @return whether the form is proved infeasible. If it is feasible after all, that of the record
/// is a basis near a feasible one, and `point` the point found.
bool ProveInfeasible(ScalableForm& scalable, SolveControl& control, CertifiedResult& result,
                     ExactVector& point)
{
    const BoundedForm& form = scalable.Form();
    CertifiedResult elastic = OptimiseElastic(scalable, result.record.basis, control);
    // With a column for each violated bound, or each side, there is a point.
    if (elastic.certificate.status != Status::Optimal)
        return false;
    result.record.value = CutColumns(form, std::move(elastic.record.value));
    if (elastic.certificate.objective == 0)
    {
        point = std::move(elastic.certificate.primal);
        point.numerator.resize(form.columns);
        elastic.record.basis.columns.resize(form.columns);
        result.record.basis = std::move(elastic.record.basis);
        FitBasis(form, result.record.basis);
        return false;
    }
    result.certificate.status = Status::Infeasible;
    result.certificate.dual = std::move(elastic.certificate.dual);
    result.record.reduced = CutColumns(form, std::move(elastic.record.reduced));
    return true;
}

/// The shortest proof that a form is infeasible: the exact row of the inverse that belongs to a
/// blocked variable, if rounding did not make it seem blocked. @return whether it is one.
bool ProveByRow(const BoundedForm& form, const ExactForm& exact, const BlockedRow& blocked,
                SolveControl& control, Certificate& certificate)
{
    Certificate tried;
    tried.status = Status::Infeasible;
    // same bits (never): a row that was not found passes no check
    if (!RowOfInverse(exact, blocked, control, tried.dual))
        return false;
    // Which way the variable is blocked decides the sign, and so does the check.
    // same bits (-> 3): a third look would be the first again
    for (int sign = 0; sign < 2; ++sign)
    {
        if (CheckCertificate(form, tried).empty())
        {
            certificate = std::move(tried);
            return true;
        }
        for (Integer& numerator : tried.dual.numerator)
            numerator = -numerator;
    }
    return false;
}

/// A point and a direction from it, each found by itself.
/// @return whether there is a verdict: that the form is unbounded or, for want of a point,
/// infeasible.
bool ProveUnbounded(ScalableForm& form, SolveControl& control, CertifiedResult& result)
{
    CertifiedResult ray = OptimiseRay(form, result.record.basis, control);
    if (ray.certificate.status != Status::Optimal || ray.certificate.objective >= 0)
        return false;
    if (ProveInfeasible(form, control, result, result.certificate.primal))
        return true;
    if (result.certificate.primal.numerator.empty())
        return false;
    result.certificate.status = Status::Unbounded;
    result.certificate.ray = std::move(ray.certificate.primal);
    return true;  // same bits: the last round would find it by pivots
}

/// Takes the guess of the stage before for what it is, and follows it until something is proved.
void ResolveVerdict(ScalableForm& form, ExactEvaluation& evaluation, SimplexVerdict guess,
                    int refinements, SolveControl& control, CertifiedResult& result)
{
    constexpr int kGuesses = 3;
    for (int round = 1;; ++round)
    {
        if (control.IsStopped())
            return;
        ExactVector unused;
        if (guess == SimplexVerdict::Infeasible && ProveInfeasible(form, control, result, unused))
            return;
        if (guess == SimplexVerdict::Unbounded && ProveUnbounded(form, control, result))
            return;
        // Without refinements, in the end, nothing is guessed.
        guess = RunExact(form, evaluation, round < kGuesses ? refinements : 0, control, result);
        if (result.certificate.status != Status::Stopped || guess == SimplexVerdict::Optimal)
            return;
    }
}

}  // namespace

void Finish(ScalableForm& form, double begin, RepeatedCheck* check, SolveControl& control,
            CertifiedResult& result)
{
    const double solved = control.Seconds();
    result.record.stages[Stage::Exact].ran = true;
    result.record.stages[Stage::Exact].seconds = solved - begin;
    if (result.certificate.status != Status::Stopped)
    {
        const std::string defect = check != nullptr
                                       ? check->Check(result.certificate)
                                       : CheckCertificate(form.Form(), result.certificate);
        result.record.proved = defect.empty();
        result.record.checkSeconds = control.Seconds() - solved;
        if (!result.record.proved)
            result.certificate.status = Status::Stopped;
    }
    if (result.certificate.status == Status::Stopped)
    {
        result.record.stopReason = control.Reason();
        EvaluateInDoubles(form, result.record);
    }
    result.record.stages[Stage::Double].pivots = control.Pivots(Stage::Double);
    result.record.stages[Stage::Exact].pivots = control.Pivots(Stage::Exact);
    control.Log("exact",
                [&]
                {
                    return (result.record.proved
                                ? "proved " + std::string(nuv::WordOf(result.certificate.status))
                                : "nothing proved") +
                           AfterPivots(control, Stage::Exact);
                });
}

void ProveBasis(ScalableForm& form, ExactEvaluation& evaluation, SimplexVerdict guess,
                int refinements, RepeatedCheck* check, SolveControl& control,
                CertifiedResult& result, const BlockedRow* blocked)
{
    const double begin = control.Seconds();
    if (blocked == nullptr || blocked->variable == kNoIndex ||
        !ProveByRow(form.Form(), *evaluation.exact, *blocked, control, result.certificate))
        ResolveVerdict(form, evaluation, guess, refinements, control, result);
    Finish(form, begin, check, control, result);
}

bool ProveAtSight(const BoundedForm& form, CertifiedResult& result)
{
    result.record.defect = form.Defect();
    if (!result.record.defect.empty())
    {
        result.certificate.status = Status::Invalid;
        return true;
    }
    result.certificate.contradiction = FindCrossedBounds(form);
    if (result.certificate.contradiction == kNoIndex)
        return false;
    result.certificate.status = Status::Infeasible;
    result.record.proved = CheckCertificate(form, result.certificate).empty();
    return true;
}

void LogDoubles(SimplexVerdict verdict, SolveControl& control)
{
    control.Log("doubles",
                [&] { return std::string(WordOf(verdict)) + AfterPivots(control, Stage::Double); });
}

void Believe(SimplexVerdict verdict, ScalableForm& form, SolveControl& control,
             CertifiedResult& result)
{
    constexpr Status kStatus[] = {Status::Optimal, Status::Infeasible, Status::Unbounded,
                                  Status::Stopped, Status::Stopped};
    result.certificate.status = kStatus[static_cast<std::size_t>(verdict)];
    if (result.certificate.status == Status::Stopped)
        result.record.stopReason = control.Reason();
    EvaluateInDoubles(form, result.record);
    result.record.stages[Stage::Double].pivots = control.Pivots(Stage::Double);
}

CertifiedResult SolveUnproved(const BoundedForm& form, const Basis* start, SolveControl& control)
{
    CertifiedResult result;
    if (ProveAtSight(form, result))
    {
        result.record.proved = false;
        return result;
    }
    ScalableForm scalable(form);
    const DoubleResult doubles = RunDoubles(scalable, start, control, result);
    Believe(doubles.verdict, scalable, control, result);
    return result;
}

CertifiedResult SolveCertified(const BoundedForm& form, const Basis* start, SolveControl& control)
{
    CertifiedResult result;
    if (ProveAtSight(form, result) || SolveSmall(form, start, control, result))
        return result;
    ScalableForm scalable(form);
    const DoubleResult doubles = RunDoubles(scalable, start, control, result);
    ExactEvaluation evaluation(form);
    ProveBasis(scalable, evaluation, doubles.verdict, kRefinements, nullptr, control, result,
               &doubles.blocked);
    return result;
}

CertifiedResult SolveExactly(const BoundedForm& form, const Basis& start, SolveControl& control)
{
    CertifiedResult result;
    if (ProveAtSight(form, result))
        return result;
    result.record.basis = start;
    FitBasis(form, result.record.basis);
    ScalableForm scalable(form);
    ExactEvaluation evaluation(form);
    ProveBasis(scalable, evaluation, SimplexVerdict::Optimal, 0, nullptr, control, result);
    return result;
}

CertifiedResult CertifyBasis(const BoundedForm& form, const Basis& basis, SolveControl& control)
{
    CertifiedResult result;
    if (ProveAtSight(form, result))
        return result;
    const double begin = control.Seconds();
    result.record.basis = basis;
    FitBasis(form, result.record.basis);
    ScalableForm scalable(form);
    ExactEvaluation evaluation(form);
    ExactSimplex exact(scalable, evaluation, Basis(result.record.basis), 0, control);
    exact.ForbidPivots();
    (void)exact.Run(result);
    Finish(scalable, begin, nullptr, control, result);
    return result;
}

}  // namespace nuv
