// The simplex method in integers, for models so small that nothing can overflow.
#pragma once

#include "tests/reference/NaiveSimplex.hpp"

#include <cstdint>

namespace fuzz
{
/// What is true of a model: its verdict and, where there is one, its optimum as a fraction with a
/// denominator above 0.
struct ExactOptimum
{
    reference::Status status;
    std::int64_t numerator;
    std::int64_t denominator;
};

/// Solves a model of at most 6 rows and 6 columns in integers, the coefficients of the rows at most
/// 4 in magnitude, the others at most 16. Every number of the tableau is a determinant of the data
/// (Edmonds 1967; Bareiss 1968): by Hadamard below (6 · 4² + 16²)^3 < 2^26 in a row of the model
/// and below 2^32 in that of the objective.
ExactOptimum SolveExactly(const reference::Problem& problem);
}  // namespace fuzz
