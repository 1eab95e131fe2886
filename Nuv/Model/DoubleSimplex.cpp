#include "Nuv/Model/DoubleSimplex.hpp"

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
        state.Rest(v);
}

}  // namespace

DoubleResult SolveInDoubles(const LinearForm& form, Basis start, Watch& watch)
{
    constexpr int kPerturbedRounds = 3;
    constexpr int kRounds = 6;
    FitBasis(form, start);
    const ScaledForm scaled(form);
    SimplexState state(scaled, start);
    DoubleResult result;
    for (int round = 0; round < kRounds; ++round)
    {
        PrimalSimplex primal(state, watch, result.pivots);
        result.verdict = primal.Run(round < kPerturbedRounds);
        const bool moved = primal.BoundsWereMoved();
        RestoreBounds(state);
        if (!moved || result.verdict == SimplexVerdict::Stopped)
            break;
    }
    result.basis = state.ExportBasis();
    return result;
}

}  // namespace nuv
