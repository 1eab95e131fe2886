/// For an infeasible model, an irreducible infeasible subsystem (IIS): rows and bounds that exclude
/// each other while the others have a common point without any one of them. It is made of what was
/// stated: a lower bound of zero, which a variable has without anybody saying so, stays in force
/// and is no member. That it is irreducible is proved as exactly as infeasibility.
#pragma once

#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <cstdint>
#include <limits>
#include <vector>

namespace nuv
{

struct InfeasibleBounds
{
    std::vector<BoundOfVariable> members;  ///< by increasing variable
    /// False if the control or the budget ended the search; then the members still exclude each
    /// other, but some may be dispensable.
    bool minimal = false;
    /// What the search took of its budget.
    std::uint64_t work = 0;
};

inline constexpr std::uint64_t kUnlimitedWork = std::numeric_limits<std::uint64_t>::max();

/// Starts from what the Farkas certificate of `certificate` uses and leaves out members, one at a
/// time, while the rest stays infeasible (the deletion filter of Chinneck and Dravnieks 1991).
/// A solve of the filter is work of the size of its form, entries and rows and columns, once for
/// each pivot and twenty times for what it takes besides; none begins when `most` is done. So where
/// the search ends is the same on every machine.
[[nodiscard]] InfeasibleBounds FindIis(const BoundedForm& form, const Certificate& certificate,
                                       SolveControl& control, std::uint64_t most = kUnlimitedWork);

}  // namespace nuv
