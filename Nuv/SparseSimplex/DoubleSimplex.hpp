/// The simplex in doubles as one stage: a basis in, a basis and the reason to stop out. Its verdict
/// is a guess, good to about nine digits; only the exact stage behind it proves.
#pragma once

#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/PrimalSimplex.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

namespace nuv
{

/// A basis, and a basic variable of it that violates a bound and that no other can bring there, as
/// far as doubles tell. Its row of the inverse holds multipliers that prove a form infeasible.
struct BlockedRow
{
    Basis basis;
    Index variable = kNoIndex;  ///< kNoIndex if none was found
};

struct DoubleResult
{
    SimplexVerdict verdict = SimplexVerdict::Numerical;
    Basis basis;
    BlockedRow blocked;
};

/// Solves from `start`, which need not be fitted to the form.
[[nodiscard]] DoubleResult SolveInDoubles(ScalableForm& form, Basis start, SolveControl& control);

/// The same without a start: solves what presolve makes of the form, and goes on in the form itself
/// from the basis that postsolve brings.
[[nodiscard]] DoubleResult SolveInDoubles(ScalableForm& form, SolveControl& control);

/// The same for a state that stands: its scaled form may be one that no bounded form states.
/// Writes a blocked row into `blocked`, where it is wanted, if the dual simplex meets one.
SimplexVerdict SolveInDoubles(SimplexState& state, SolveControl& control,
                              BlockedRow* blocked = nullptr);

/// Whether the basis of the state, whose values stand, is optimal, as far as doubles tell.
[[nodiscard]] bool IsOptimal(SimplexState& state);

}  // namespace nuv
