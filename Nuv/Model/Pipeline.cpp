#include "Nuv/Model/Pipeline.hpp"

#include "Nuv/Model/DoubleSimplex.hpp"
#include "Nuv/Model/ExactSimplex.hpp"
#include "Nuv/Model/SimplexState.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuv
{
namespace
{

/// A variable whose bounds cross, which is a proof of infeasibility of its own.
Index FindContradiction(const LinearForm& form)
{
    for (Index v = 0; v < form.Variables(); ++v)
    {
        if (form.Lower(v) > form.Upper(v))
            return v;
    }
    return kNoIndex;
}

/// What a basis is worth in doubles, for an outcome that is not proved.
void Measure(const LinearForm& form, Proof& proof)
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
        const double value = state.value[v] * scaled.scale[v];
        const double reduced = state.reduced[v] / scaled.scale[v] / scaled.costScale;
        proof.value[v] = value;
        proof.reduced[v] = reduced;
        proof.objectiveValue += form.Cost(v) * value;
        proof.primalViolation =
            std::max({proof.primalViolation, form.Lower(v) - value, value - form.Upper(v)});
        const BasisStatus status = state.status[v];
        if (status == BasisStatus::Basic || form.Lower(v) == form.Upper(v))
            continue;
        const double wrong = status == BasisStatus::AtLower   ? -reduced
                             : status == BasisStatus::AtUpper ? reduced
                                                              : std::fabs(reduced);
        proof.dualViolation = std::max(proof.dualViolation, wrong);
    }
}

/// The exact stage from proof.basis, its check, and what is left to say if it was stopped.
void ProveBasis(const LinearForm& form, bool expectInfeasible, Watch& watch, Proof& proof)
{
    const double begin = watch.Seconds();
    proof.ranExact = true;
    ExactSimplex exact(form, Basis(proof.basis), expectInfeasible, watch);
    exact.Run(proof);
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
bool ProveAtSight(const LinearForm& form, Proof& proof)
{
    proof.defect = form.Defect();
    if (!proof.defect.empty())
        return true;
    proof.contradiction = FindContradiction(form);
    if (proof.contradiction == kNoIndex)
        return false;
    proof.status = ProofStatus::Infeasible;
    proof.proved = CheckProof(form, proof).empty();
    return true;
}

}  // namespace

Proof SolveProved(const LinearForm& form, const Basis* start, const Limits& limits)
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
    ProveBasis(form, result.verdict == SimplexVerdict::Infeasible, watch, proof);
    return proof;
}

Proof ProveFrom(const LinearForm& form, const Basis& start, const Limits& limits)
{
    Proof proof;
    if (ProveAtSight(form, proof))
        return proof;
    Watch watch(limits);
    proof.basis = start;
    FitBasis(form, proof.basis);
    ProveBasis(form, false, watch, proof);
    return proof;
}

}  // namespace nuv
