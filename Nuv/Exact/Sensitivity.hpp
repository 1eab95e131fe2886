/// How far the numbers of a model may move, one at a time.
#pragma once

#include <limits>
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
    /// Whether each end was computed exactly and rounded once; if not, in doubles from the exact
    /// optimum, as of models with many rows.
    bool exact = false;
    std::vector<AllowedRange> cost;      ///< by column: of its cost
    std::vector<AllowedRange> rowLower;  ///< by row: of its lower side
    /// By row: of its upper side. The sides of an equation move together.
    std::vector<AllowedRange> rowUpper;
};

}  // namespace nuv
