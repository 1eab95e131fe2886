/// The dual simplex from any basis, then rounds of the primal one with the true costs, each behind
/// a repair of what the pushed bounds of the last one left violated.
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"

#include "Nuv/SparseSimplex/DualSimplex.hpp"
#include "Nuv/SparseSimplex/Presolve/ImpliedBounds.hpp"
#include "Nuv/SparseSimplex/Presolve/Presolve.hpp"
#include "Nuv/SparseSimplex/Tolerances.hpp"

#include <algorithm>

namespace nuv
{
namespace
{

/// Takes back all pushing of bounds; nonbasic variables return to their true bounds, and to another
/// one if theirs is none of the form's.
void RestoreBounds(SimplexState& state)
{
    state.lower = state.form.lower;
    state.upper = state.form.upper;
    for (Index v = 0; v < state.form.Variables(); ++v)
    {
        const BasisStatus at = state.status[v];
        if ((at == BasisStatus::AtLower && state.lower[v] == -kInfinity) ||
            (at == BasisStatus::AtUpper && state.upper[v] == kInfinity))
            state.status[v] = DefaultNonbasicStatus(state.lower[v], state.upper[v]);
        state.SetToBound(v);
    }
}

/// The violations that true bounds bring back are small and the reduced costs are right: a case
/// for the dual simplex. It leaves the basis to the primal one where that proves wrong.
void Repair(SimplexState& state, SolveControl& control)
{
    DualSimplex dual(state, control);
    (void)dual.Run();  // whatever it says, the primal simplex has the last word
    state.cost = state.form.cost;
}

/// Whether the basic variables are within their bounds: a case for the primal simplex at once.
bool IsFeasible(const SimplexState& state)
{
    return std::ranges::all_of(
        state.head,
        [&state](Index v)
        {
            return state.value[v] >= state.lower[v] - tolerance::kFeasibility &&
                   state.value[v] <= state.upper[v] + tolerance::kFeasibility;
        });
}

/// Whether no column is basic: no basis that someone chose.
bool IsSlackBasis(const SimplexState& state)
{
    return std::ranges::all_of(state.head, [&state](Index v) { return v >= state.form.columns; });
}

/// Gives columns the boxes that rows imply: a reduced cost of the wrong sign then needs no first
/// phase, and a ratio test passes more bounds. They lead far away, so a basis that is near to
/// something is left without them.
void AddImpliedBounds(SimplexState& state)
{
    BoxImplied(state.form, state.lower, state.upper);
    // same bits (-> <=): a logical stays where it rests
    for (Index v = 0; v < state.form.columns; ++v)
    {
        if (state.status[v] == BasisStatus::Free && state.lower[v] > -kInfinity)
            state.status[v] = BasisStatus::AtLower;
        state.SetToBound(v);
    }
}

void RemoveImpliedBounds(SimplexState& state)
{
    RestoreBounds(state);
    state.ComputeValues();
}

/// From any basis to one that is feasible, for costs that may be others; those of the form come
/// back at the end.
SimplexVerdict RunDual(SimplexState& state, SolveControl& control, BlockedRow* blocked)
{
    DualSimplex dual(state, control);
    const bool boxed = IsSlackBasis(state);
    if (boxed)
        AddImpliedBounds(state);
    SimplexVerdict verdict = dual.Run(DualSimplex::Start::Perturbed);
    if (boxed)
    {
        RemoveImpliedBounds(state);
        // Which variable blocks must be said of the form itself, and costs do not matter to that.
        if (verdict == SimplexVerdict::Infeasible)
            verdict = dual.Run();
    }
    state.cost = state.form.cost;
    if (blocked != nullptr && dual.Blocked() != kNoIndex)
        *blocked = {state.ExportBasis(), dual.Blocked()};
    return verdict;
}

/// Solves what presolve left. @return the basis of the form that presolve was given.
DoubleResult SolveReduced(const Presolve& presolve, SolveControl& control)
{
    ScaledForm scaled(presolve.Form());
    scaled.offset = presolve.Form().constant;
    SimplexState state(scaled, SlackBasis(presolve.Form()));
    DoubleResult result;
    result.verdict = SolveInDoubles(state, control);
    result.basis = presolve.Restore(state);
    return result;
}

}  // namespace

bool IsOptimal(SimplexState& state)
{
    if (!IsFeasible(state))
        return false;
    std::vector<double> basicCost;
    for (const Index v : state.head)
        basicCost.push_back(state.cost[v]);
    state.ComputeReducedCosts(state.cost, basicCost);
    for (Index v = 0; v < state.form.Variables(); ++v)
    {
        if (state.side[v] != 0 &&
            DualInfeasibility(state.status[v], state.reduced[v]) > tolerance::kOptimality)
            return false;
    }
    return true;
}

DoubleResult SolveInDoubles(ScalableForm& form, Basis start, SolveControl& control)
{
    FitBasis(form.Form(), start);
    SimplexState state(form.Scaled(), start);
    DoubleResult result;
    result.verdict = SolveInDoubles(state, control, &result.blocked);
    result.basis = state.ExportBasis();
    return result;
}

DoubleResult SolveInDoubles(ScalableForm& form, SolveControl& control)
{
    // A form with fewer entries is solved in the time that this would take.
    constexpr std::size_t kFewEntries = 100;
    if (form.Form().matrix.EntryCount() < kFewEntries)
        return SolveInDoubles(form, SlackBasis(form.Form()), control);
    const Presolve presolve(form.Form());
    if (!presolve.Reduces())
        return SolveInDoubles(form, SlackBasis(form.Form()), control);
    DoubleResult result = SolveReduced(presolve, control);
    FitBasis(form.Form(), result.basis);
    if (result.verdict == SimplexVerdict::Stopped)
        return result;
    SimplexState state(form.Scaled(), result.basis);
    state.Refactorise();
    const bool wasOptimal = result.verdict == SimplexVerdict::Optimal;
    if (wasOptimal && IsOptimal(state))
        return result;
    if (wasOptimal)
        Repair(state, control);
    result.verdict = SolveInDoubles(state, control, &result.blocked);
    result.basis = state.ExportBasis();
    return result;
}

SimplexVerdict SolveInDoubles(SimplexState& state, SolveControl& control, BlockedRow* blocked)
{
    constexpr int kPerturbedRounds = 3;  // same bits: one of many right choices
    constexpr int kRounds = 6;           // same bits: one of many right choices
    state.Refactorise();
    SimplexVerdict verdict = SimplexVerdict::Optimal;
    if (!IsFeasible(state))
        verdict = RunDual(state, control, blocked);
    for (int round = 0; round < kRounds && verdict != SimplexVerdict::Stopped; ++round)
    {
        PrimalSimplex primal(state, control);
        verdict = primal.Run(round < kPerturbedRounds);
        const bool moved = primal.BoundsWereMoved();
        RestoreBounds(state);
        if (!moved)
            break;
        if (verdict == SimplexVerdict::Optimal)
            Repair(state, control);
    }
    return verdict;
}

}  // namespace nuv
