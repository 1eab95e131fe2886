/// Small linear forms for the engine's tests: stated densely, or drawn from a seeded generator.
#pragma once

#include "Nuv/SparseSimplex/BoundedForm.hpp"
#include "tests/support/Random.hpp"

#include <limits>
#include <vector>

namespace nuv::test
{

inline constexpr double kInf = std::numeric_limits<double>::infinity();

struct Interval
{
    double lower = 0.0;
    double upper = kInf;
};

struct DenseRow
{
    std::vector<double> coefficients;
    Interval bounds;
};

/// minimise cost . x subject to the rows; `columns` may be left out for x >= 0.
BoundedForm MakeForm(const std::vector<double>& cost, const std::vector<DenseRow>& rows,
                     const std::vector<Interval>& columns = {});

/// Integers in [-3, 3], bounds of all kinds, now and then bounds that cross.
BoundedForm RandomSmallForm(Random& random, Index rows, Index columns);

/// Sparse, with decimal coefficients, feasible and bounded more often than not.
BoundedForm RandomSparseForm(Random& random, Index rows, Index columns);

/// Rows and columns that differ from others by 1e-3 to 1e-12 of their size, so that bases are
/// nearly singular.
BoundedForm NearlyDependentForm(Random& random, Index rows, Index columns);

/// A cone cut off at a distance: all rows but the last are tight at its apex, where the slack basis
/// starts, so that most pivots lead nowhere.
BoundedForm DegenerateCone(Index size);

}  // namespace nuv::test
