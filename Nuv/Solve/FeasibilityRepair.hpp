/// For an infeasible form, the least total change of sides and bounds that makes it feasible: the
/// elastic program (Chinneck, Feasibility and Infeasibility in Optimization, 2008, chapter 6)
/// solved and proved in exact numbers, so that no smaller change is enough.
#pragma once

#include "Nuv/Exact/CertifiedResult.hpp"

#include <vector>

namespace nuv
{

/// A lower bound that goes down, or an upper one that goes up, by an amount that is positive.
struct BoundChange
{
    BoundOfVariable bound;
    Rational amount = 0;
};

struct FeasibilityRepair
{
    /// Optimal: the changes are enough and the least; Infeasible: what is kept excludes itself.
    CertifiedResult elastic;
    std::vector<BoundChange> changes;  ///< by increasing variable, the lower bound first
    Rational total = 0;                ///< the sum of weights times amounts
    std::vector<Rational> point;       ///< by column: what keeps to the changed bounds
};

/// Whether a bound may move: it is finite, has a finite weight, and is not the lower bound of zero
/// that a variable has when nothing is said.
[[nodiscard]] bool MayMove(const BoundedForm& form, const std::vector<double>& weights,
                           const BoundOfVariable& bound);

/// `weights` has for each variable what a unit of change of its bounds costs: positive, or infinite
/// for bounds that stay. A lower bound of zero, which a variable has when nothing is said, stays
/// whatever its weight.
[[nodiscard]] FeasibilityRepair
FindRepair(const BoundedForm& form, const std::vector<double>& weights, SolveControl& control);

}  // namespace nuv
