/// How far the data of a solved model may move, one number at a time, before its optimal basis is
/// no longer optimal. The ranges are those of the final basis: where that is degenerate another
/// optimal basis may have wider ones.
#pragma once

#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <limits>
#include <optional>
#include <vector>

namespace nuv
{

struct AllowedRange
{
    double lower = -std::numeric_limits<double>::infinity();
    double upper = std::numeric_limits<double>::infinity();
    bool operator==(const AllowedRange&) const = default;
};

struct Sensitivity
{
    std::vector<AllowedRange> cost;      ///< by column: of its cost
    std::vector<AllowedRange> rowLower;  ///< by row: of its lower side
    /// By row: of its upper side. The sides of an equation move together.
    std::vector<AllowedRange> rowUpper;
};

/// The ranges at the optimum that `proof` holds: computed in rationals and rounded once for small
/// models, in doubles from the exact basic solution for large ones.
/// @return nothing if the control ended it first.
[[nodiscard]] std::optional<Sensitivity>
AnalyseSensitivity(const BoundedForm& form, const Proof& proof, SolveControl& control);

}  // namespace nuv
