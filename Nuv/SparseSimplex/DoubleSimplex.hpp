/// The simplex in doubles as one stage: a basis in, a basis and the reason to stop out. Its verdict
/// is a guess, good to about nine digits; only the exact stage behind it proves.
#pragma once

#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/PrimalSimplex.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

namespace nuv
{

struct DoubleResult
{
    SimplexVerdict verdict = SimplexVerdict::Numerical;
    Basis basis;
};

/// Solves from `start`, which need not be fitted to the form.
[[nodiscard]] DoubleResult SolveInDoubles(ScalableForm& form, Basis start, SolveControl& control);

/// The same for a state that stands: its scaled form may be one that no bounded form states.
SimplexVerdict SolveInDoubles(SimplexState& state, SolveControl& control);

}  // namespace nuv
