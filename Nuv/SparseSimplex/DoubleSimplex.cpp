/// Rounds of the primal simplex, each behind a repair of what the pushed bounds of the last one
/// left violated.
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"

#include "Nuv/SparseSimplex/DualSimplex.hpp"

namespace nuv
{
namespace
{

/// Takes back all pushing of bounds; nonbasic variables return to their true bounds.
void RestoreBounds(SimplexState& state)
{
    state.lower = state.form.lower;
    state.upper = state.form.upper;
    for (Index v = 0; v < state.form.Variables(); ++v)
        state.SetToBound(v);
}

/// The violations that true bounds bring back are small and the reduced costs are right: a case
/// for the dual simplex. It leaves the basis to the primal one where that proves wrong.
void Repair(SimplexState& state, SolveControl& control)
{
    DualSimplex dual(state, control);
    (void)dual.Run();  // whatever it says, the primal simplex has the last word
    state.cost = state.form.cost;
}

}  // namespace

DoubleResult SolveInDoubles(ScalableForm& form, Basis start, SolveControl& control)
{
    FitBasis(form.Form(), start);
    SimplexState state(form.Scaled(), start);
    DoubleResult result;
    result.verdict = SolveInDoubles(state, control);
    result.basis = state.ExportBasis();
    return result;
}

SimplexVerdict SolveInDoubles(SimplexState& state, SolveControl& control)
{
    constexpr int kPerturbedRounds = 3;
    constexpr int kRounds = 6;
    SimplexVerdict verdict = SimplexVerdict::Numerical;
    for (int round = 0; round < kRounds; ++round)
    {
        PrimalSimplex primal(state, control);
        verdict = primal.Run(round < kPerturbedRounds);
        const bool moved = primal.BoundsWereMoved();
        RestoreBounds(state);
        if (!moved || verdict == SimplexVerdict::Stopped)
            break;
        if (verdict == SimplexVerdict::Optimal)
            Repair(state, control);
    }
    return verdict;
}

}  // namespace nuv
