/// The stages of a certified solve one by one, for what solves once and for what solves again.
#pragma once

#include "Nuv/Certificate/RepeatedCheck.hpp"
#include "Nuv/Exact/CertifiedResult.hpp"
#include "Nuv/Exact/ExactEvaluation.hpp"
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "Nuv/SparseSimplex/PrimalSimplex.hpp"
#include "Nuv/SparseSimplex/ScaledForm.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

namespace nuv
{

/// How often the exact stage looks for a better basis in doubles before it pivots itself.
inline constexpr int kRefinements = 20;

/// What needs no solving: bad data and bounds that cross. @return whether that was all.
[[nodiscard]] bool ProveAtSight(const BoundedForm& form, CertifiedResult& result);

/// What the simplex in doubles came to.
void LogDoubles(SimplexVerdict verdict, SolveControl& control);

/// Takes the verdict of the simplex in doubles on the basis of the record for the answer.
void Believe(SimplexVerdict verdict, ScalableForm& form, SolveControl& control,
             CertifiedResult& result);

/// The exact stage from the basis of the record, the guess being what the stage before says of it
/// and `blocked`, if not null, its reason to think that the form is infeasible; then Finish.
void ProveBasis(ScalableForm& form, ExactEvaluation& evaluation, SimplexVerdict guess,
                int refinements, RepeatedCheck* check, SolveControl& control,
                CertifiedResult& result, const BlockedRow* blocked = nullptr);

/// Checks what the exact stage, which began at that second, claims; and says what is left to say if
/// it claims nothing. `check` is that of the form, or null for a form that is checked once.
void Finish(ScalableForm& form, double begin, RepeatedCheck* check, SolveControl& control,
            CertifiedResult& result);

}  // namespace nuv
