/// A small problem as dense arrays of somebody else's,
///
///     minimise  cost . x   subject to  A x <= b,  E x = d,  lower <= x <= upper,
///
/// and the answer to it in doubles.
#pragma once

#include "Nuv/Algebra/ExactNumber.hpp"
#include "Nuv/Algebra/Index.hpp"
#include "Nuv/Certificate/Status.hpp"

#include <cstdint>
#include <vector>

namespace nuv
{

struct DenseProblem
{
    CoefficientMeaning numbers = CoefficientMeaning::StoredDouble;
    Index columns = 0;
    Index upperRows = 0;
    Index equalRows = 0;
    const double* cost = nullptr;         ///< null: zeros
    const double* upperMatrix = nullptr;  ///< A by rows
    const double* upperSides = nullptr;
    const double* equalMatrix = nullptr;  ///< E by rows
    const double* equalSides = nullptr;
    const double* lower = nullptr;  ///< null: zeros
    const double* upper = nullptr;  ///< null: infinity

    /// Those of A come first.
    [[nodiscard]] Index Rows() const noexcept
    {
        return upperRows + equalRows;
    }
};

/// Every number the nearest double; the arrays are empty without an optimum.
struct DenseAnswer
{
    Status status = Status::Stopped;
    bool proved = false;
    std::uint64_t pivots = 0;
    double objective = 0.0;
    std::vector<double> values;
    std::vector<double> reducedCosts;
    std::vector<double> duals;  ///< signs as in a certificate
};

}  // namespace nuv
