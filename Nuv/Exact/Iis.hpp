/// For an infeasible model, an irreducible infeasible subsystem (IIS): rows and bounds that exclude
/// each other while the others have a common point without any one of them. It is made of what was
/// stated: a lower bound of zero, which a variable has without anybody saying so, stays in force
/// and is no member. That it is irreducible is proved as exactly as infeasibility.
#pragma once

#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <vector>

namespace nuv
{

struct InfeasibleBounds
{
    std::vector<BoundOfVariable> members;  ///< by increasing variable
    /// False if the control ended the search; then the members still exclude each other, but some
    /// may be dispensable.
    bool minimal = false;
};

/// Starts from what the Farkas certificate of `certificate` uses and leaves out members, one at a
/// time, while the rest stays infeasible (the deletion filter of Chinneck and Dravnieks 1991).
[[nodiscard]] InfeasibleBounds FindIis(const BoundedForm& form, const Certificate& certificate,
                                       SolveControl& control);

}  // namespace nuv
