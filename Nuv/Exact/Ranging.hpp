/// How far the data of a solved model may move, one number at a time, before its optimal basis is
/// no longer optimal. The ranges are those of the final basis: where that is degenerate another
/// optimal basis may have wider ones.
#pragma once

#include "Nuv/Exact/CertifiedResult.hpp"
#include "Nuv/Exact/Sensitivity.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <optional>

namespace nuv
{

/// The ranges at the optimum that `result` holds: computed in rationals and rounded once for small
/// models, in doubles from the exact basic solution for large ones.
/// @return nothing if the control ended it first.
[[nodiscard]] std::optional<Sensitivity>
AnalyseSensitivity(const BoundedForm& form, const CertifiedResult& result, SolveControl& control);

}  // namespace nuv
