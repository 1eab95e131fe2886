/// Solving and proving small dense problems one after the other.
#pragma once

#include "Nuv/Exact/Dense/DenseProblem.hpp"
#include "Nuv/SparseSimplex/BoundedForm.hpp"

#include <cstdint>

namespace nuv
{

/// The same problem as a form.
[[nodiscard]] BoundedForm FormOf(const DenseProblem& problem);

/// Solves and proves with the strength of SolveCertified. The answer depends on the problem alone.
/// Neither in doubles nor exactly are more than `mostPivots` pivots made.
void SolveDense(const DenseProblem& problem, std::uint64_t mostPivots, DenseAnswer& answer);

}  // namespace nuv
