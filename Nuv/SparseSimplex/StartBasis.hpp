/// A basis made from a point: the start of a simplex that is given values instead of a basis.
#pragma once

#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/BoundedForm.hpp"

#include <span>

namespace nuv
{

/// A regular basis whose solution is near the point, one value by column: variables away from their
/// bounds are basic as far as their columns are independent, the others rest at the nearer bound. A
/// vertex that is not degenerate comes back as itself. A column whose value is missing or NaN rests
/// where it would without any.
[[nodiscard]] Basis BasisNear(const BoundedForm& form, std::span<const double> point);

}  // namespace nuv
