/// For an infeasible model, a minimal set of rows and bounds that exclude each other: without any
/// one of them the others have a common point. Minimality is proved as exactly as infeasibility.
#pragma once

#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <vector>

namespace nuv
{

using ConflictMember = BoundOfVariable;

struct Conflict
{
    std::vector<ConflictMember> members;  ///< by increasing variable
    /// False if the control ended the search; then the members still exclude each other, but some
    /// may be dispensable.
    bool minimal = false;
};

/// Starts from what the Farkas certificate of `proof` uses and leaves out members, one at a time,
/// while the rest stays infeasible (the deletion filter of Chinneck and Dravnieks 1991).
[[nodiscard]] Conflict FindConflict(const BoundedForm& form, const Proof& proof,
                                    SolveControl& control);

}  // namespace nuv
