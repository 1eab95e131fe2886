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
void Measure(const BoundedForm& form, Proof& proof)
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
SimplexVerdict RunExact(const BoundedForm& form, int rounds, Watch& watch, Proof& proof)
{
    ExactSimplex exact(form, Basis(proof.basis), rounds, watch);
    return exact.Run(proof);
}

/// Optimises an auxiliary form from its start, in doubles and then exactly. The pivots are counted
/// in `outer`.
Proof Optimise(const AuxiliaryForm& auxiliary, Watch& watch, Proof& outer)
{
    Proof proof;
    DoubleResult result = SolveInDoubles(auxiliary.form, auxiliary.start, watch);
    proof.basis = std::move(result.basis);
    (void)RunExact(auxiliary.form, kRefinements, watch, proof);
    outer.doublePivots += result.pivots + proof.doublePivots;
    outer.exactPivots += proof.exactPivots;
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
bool ProveInfeasible(const BoundedForm& form, Watch& watch, Proof& proof, ExactVector& point)
{
    Proof elastic = Optimise(ElasticForm(form, proof.basis), watch, proof);
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
bool ProveUnbounded(const BoundedForm& form, Watch& watch, Proof& proof)
{
    Proof ray = Optimise(RayForm(form, proof.basis), watch, proof);
    if (ray.status != ProofStatus::Optimal || ray.objective >= 0)
        return false;
    if (ProveInfeasible(form, watch, proof, proof.primal))
        return true;
    if (proof.primal.numerator.empty())
        return false;
    proof.status = ProofStatus::Unbounded;
    proof.ray = std::move(ray.primal);
    return true;
}

/// Takes the guess of the stage before for what it is, and follows it until something is proved.
void Decide(const BoundedForm& form, SimplexVerdict guess, int refinements, Watch& watch,
            Proof& proof)
{
    constexpr int kGuesses = 3;
    for (int round = 0; round < kGuesses; ++round)
    {
        ExactVector unused;
        if (guess == SimplexVerdict::Infeasible && ProveInfeasible(form, watch, proof, unused))
            return;
        if (guess == SimplexVerdict::Unbounded && ProveUnbounded(form, watch, proof))
            return;
        guess = RunExact(form, round + 1 < kGuesses ? refinements : 0, watch, proof);
        if (proof.status != ProofStatus::Stopped || guess == SimplexVerdict::Optimal)
            return;
    }
}

/// The exact stage from proof.basis, its check, and what is left to say if it was stopped.
void ProveBasis(const BoundedForm& form, SimplexVerdict guess, int refinements, Watch& watch,
                Proof& proof)
{
    const double begin = watch.Seconds();
    proof.ranExact = true;
    Decide(form, guess, refinements, watch, proof);
    const double solved = watch.Seconds();
    proof.exactSeconds = solved - begin;
    if (proof.status != ProofStatus::Stopped)
    {
        proof.proved = CheckProof(form, proof).empty();
        proof.checkSeconds = watch.Seconds() - solved;
        if (!proof.proved)
            proof.status = ProofStatus::Stopped;
    }
    if (proof.status == ProofStatus::Stopped)
    {
        proof.stopReason = watch.Reason();
        Measure(form, proof);
    }
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

Proof SolveProved(const BoundedForm& form, const Basis* start, const Limits& limits)
{
    Proof proof;
    if (ProveAtSight(form, proof))
        return proof;
    Watch watch(limits);
    DoubleResult result = SolveInDoubles(form, start != nullptr ? *start : SlackBasis(form), watch);
    proof.ranDouble = true;
    proof.doublePivots = result.pivots;
    proof.doubleSeconds = watch.Seconds();
    proof.basis = std::move(result.basis);
    ProveBasis(form, result.verdict, kRefinements, watch, proof);
    return proof;
}

Proof ProveFrom(const BoundedForm& form, const Basis& start, const Limits& limits)
{
    Proof proof;
    if (ProveAtSight(form, proof))
        return proof;
    Watch watch(limits);
    proof.basis = start;
    FitBasis(form, proof.basis);
    ProveBasis(form, SimplexVerdict::Optimal, 0, watch, proof);
    return proof;
}

}  // namespace nuv
