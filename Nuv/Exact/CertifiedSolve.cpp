#include "Nuv/Exact/CertifiedSolve.hpp"

#include "Nuv/Exact/Auxiliary.hpp"
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

/// What a basis is worth in doubles, for an outcome that is not proved.
void EvaluateInDoubles(const BoundedForm& form, Proof& proof)
{
    const ScaledForm scaled(form);
    SimplexState state(scaled, proof.basis);
    state.Refactorise();
    std::vector<double> basicCost(form.rows);
    for (Index k = 0; k < form.rows; ++k)
        basicCost[k] = state.cost[state.head[k]];
    state.ComputeReducedCosts(state.cost, basicCost);
    proof.basis = state.ExportBasis();
    proof.value.resize(form.Variables());
    proof.reduced.resize(form.Variables());
    proof.objectiveValue = form.constant;
    for (Index v = 0; v < form.Variables(); ++v)
    {
        const double value = state.value[v] * scaled.Scale(v);
        const double reduced = state.reduced[v] / scaled.Scale(v) / scaled.costScale;
        proof.value[v] = value;
        proof.reduced[v] = reduced;
        proof.objectiveValue += form.Cost(v) * value;
        proof.primalViolation =
            std::max({proof.primalViolation, form.Lower(v) - value, value - form.Upper(v)});
        if (!form.IsFixed(v))
            proof.dualViolation =
                std::max(proof.dualViolation, DualInfeasibility(state.status[v], reduced));
    }
}

/// How often the exact stage looks for a better basis in doubles before it pivots itself.
constexpr int kRefinements = 20;

/// The exact stage from proof.basis. @return what it suspects if it gave up.
SimplexVerdict RunExact(const BoundedForm& form, int rounds, SolveControl& control, Proof& proof)
{
    ExactSimplex exact(form, Basis(proof.basis), rounds, control);
    return exact.Run(proof);
}

/// Optimises an auxiliary form from its start, in doubles and then exactly.
Proof Optimise(const AuxiliaryForm& auxiliary, SolveControl& control)
{
    const SolveControl::Aside aside(control);
    Proof proof;
    DoubleResult result = SolveInDoubles(auxiliary.form, auxiliary.start, control);
    proof.basis = std::move(result.basis);
    (void)RunExact(auxiliary.form, kRefinements, control, proof);
    return proof;
}

/// Takes the numbers of the original's columns and rows out of those of an auxiliary form, whose
/// own columns stand between them.
std::vector<double> CutColumns(const BoundedForm& form, std::vector<double> byVariable)
{
    if (byVariable.size() > form.Variables())
        byVariable.erase(byVariable.begin() + form.columns, byVariable.end() - form.rows);
    return byVariable;
}

/// @return whether the form is proved infeasible. If it is feasible after all, proof.basis is a
/// basis near a feasible one, and `point` the point found.
bool ProveInfeasible(const BoundedForm& form, SolveControl& control, Proof& proof,
                     ExactVector& point)
{
    Proof elastic = Optimise(ElasticForm(form, proof.basis), control);
    // What has no point even so has none without the added columns.
    const bool isEmpty = elastic.status == ProofStatus::Infeasible;
    if (!isEmpty && elastic.status != ProofStatus::Optimal)
        return false;
    proof.value = CutColumns(form, std::move(elastic.value));
    if (!isEmpty && elastic.objective == 0)
    {
        point = std::move(elastic.primal);
        point.numerator.resize(form.columns);
        elastic.basis.columns.resize(form.columns);
        proof.basis = std::move(elastic.basis);
        FitBasis(form, proof.basis);
        return false;
    }
    proof.status = ProofStatus::Infeasible;
    proof.dual = std::move(elastic.dual);
    proof.reduced = CutColumns(form, std::move(elastic.reduced));
    return true;
}

/// A point and a direction from it, each found by itself.
/// @return whether there is a verdict: that the form is unbounded or, for want of a point,
/// infeasible.
bool ProveUnbounded(const BoundedForm& form, SolveControl& control, Proof& proof)
{
    Proof ray = Optimise(RayForm(form, proof.basis), control);
    if (ray.status != ProofStatus::Optimal || ray.objective >= 0)
        return false;
    if (ProveInfeasible(form, control, proof, proof.primal))
        return true;
    if (proof.primal.numerator.empty())
        return false;
    proof.status = ProofStatus::Unbounded;
    proof.ray = std::move(ray.primal);
    return true;
}

/// Takes the guess of the stage before for what it is, and follows it until something is proved.
void ResolveVerdict(const BoundedForm& form, SimplexVerdict guess, int refinements,
                    SolveControl& control, Proof& proof)
{
    constexpr int kGuesses = 3;
    for (int round = 0; round < kGuesses; ++round)
    {
        if (control.IsStopped())
            return;
        ExactVector unused;
        if (guess == SimplexVerdict::Infeasible && ProveInfeasible(form, control, proof, unused))
            return;
        if (guess == SimplexVerdict::Unbounded && ProveUnbounded(form, control, proof))
            return;
        guess = RunExact(form, round + 1 < kGuesses ? refinements : 0, control, proof);
        if (proof.status != ProofStatus::Stopped || guess == SimplexVerdict::Optimal)
            return;
    }
}

/// Checks what the exact stage claims, and says what is left to say if it claims nothing.
void Finish(const BoundedForm& form, double begin, SolveControl& control, Proof& proof)
{
    const double solved = control.Seconds();
    proof.ranExact = true;
    proof.exactSeconds = solved - begin;
    if (proof.status != ProofStatus::Stopped)
    {
        proof.proved = CheckProof(form, proof).empty();
        proof.checkSeconds = control.Seconds() - solved;
        if (!proof.proved)
            proof.status = ProofStatus::Stopped;
    }
    if (proof.status == ProofStatus::Stopped)
    {
        proof.stopReason = control.Reason();
        EvaluateInDoubles(form, proof);
    }
    proof.doublePivots = control.Pivots(Stage::Double);
    proof.exactPivots = control.Pivots(Stage::Exact);
}

/// The exact stage from proof.basis.
void ProveBasis(const BoundedForm& form, SimplexVerdict guess, int refinements,
                SolveControl& control, Proof& proof)
{
    const double begin = control.Seconds();
    ResolveVerdict(form, guess, refinements, control, proof);
    Finish(form, begin, control, proof);
}

/// What needs no solving: bad data and bounds that cross. @return whether that was all.
bool ProveAtSight(const BoundedForm& form, Proof& proof)
{
    proof.defect = form.Defect();
    if (!proof.defect.empty())
        return true;
    proof.contradiction = FindCrossedBounds(form);
    if (proof.contradiction == kNoIndex)
        return false;
    proof.status = ProofStatus::Infeasible;
    proof.proved = CheckProof(form, proof).empty();
    return true;
}

}  // namespace

Proof SolveProved(const BoundedForm& form, const Basis* start, SolveControl& control)
{
    Proof proof;
    if (ProveAtSight(form, proof))
        return proof;
    const double begin = control.Seconds();
    DoubleResult result =
        SolveInDoubles(form, start != nullptr ? *start : SlackBasis(form), control);
    proof.ranDouble = true;
    proof.doubleSeconds = control.Seconds() - begin;
    proof.basis = std::move(result.basis);
    ProveBasis(form, result.verdict, kRefinements, control, proof);
    return proof;
}

Proof ProveFrom(const BoundedForm& form, const Basis& start, SolveControl& control)
{
    Proof proof;
    if (ProveAtSight(form, proof))
        return proof;
    proof.basis = start;
    FitBasis(form, proof.basis);
    ProveBasis(form, SimplexVerdict::Optimal, 0, control, proof);
    return proof;
}

Proof CertifyBasis(const BoundedForm& form, const Basis& basis, SolveControl& control)
{
    Proof proof;
    if (ProveAtSight(form, proof))
        return proof;
    const double begin = control.Seconds();
    proof.basis = basis;
    FitBasis(form, proof.basis);
    ExactSimplex exact(form, Basis(proof.basis), 0, control);
    exact.ForbidPivots();
    (void)exact.Run(proof);
    Finish(form, begin, control, proof);
    return proof;
}

}  // namespace nuv
