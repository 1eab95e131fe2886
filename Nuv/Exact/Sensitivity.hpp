/// How far the numbers of a model may move, one at a time.
#pragma once

#include <limits>
#include <vector>

namespace nuv
{

/// Between which two numbers one number of the model may move while the optimal basis stays
/// optimal.
struct AllowedRange
{
    double lower = -std::numeric_limits<double>::infinity();  ///< -infinity: as low as one likes
    double upper = std::numeric_limits<double>::infinity();   ///< infinity: as high as one likes
    /// Whether both ends are the same.
    bool operator==(const AllowedRange&) const = default;
};

/// The ranges of all costs and sides of an optimum.
struct Sensitivity
{
    /// Whether each end was computed exactly and rounded once; if not, in doubles from the exact
    /// optimum, as of models with many rows.
    bool exact = false;
    std::vector<AllowedRange> cost;      ///< by column: of its cost
    std::vector<AllowedRange> rowLower;  ///< by row: of its lower side
    /// By row: of its upper side. The sides of an equation move together.
    std::vector<AllowedRange> rowUpper;
};

}  // namespace nuv
