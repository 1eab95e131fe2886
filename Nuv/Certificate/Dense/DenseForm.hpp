/// The bounded form of a small problem (see BoundedForm.hpp) with a dense matrix, in storage that
/// is used again from one problem to the next.
#pragma once

#include "Nuv/Algebra/ExactNumber.hpp"
#include "Nuv/Algebra/Index.hpp"

#include <vector>

namespace nuv
{

struct DenseForm
{
    // same bits (0 -> 1): who states a form states both
    Index rows = 0;
    // same bits (0 -> 1): as above
    Index columns = 0;
    CoefficientMeaning numbers = CoefficientMeaning::StoredDouble;
    std::vector<double> matrix;  ///< row after row
    std::vector<double> cost;
    // By variable: columns, then the rows' logicals.
    std::vector<double> lower;
    std::vector<double> upper;

    [[nodiscard]] Index Variables() const noexcept
    {
        return rows + columns;
    }
    [[nodiscard]] bool IsLogical(Index variable) const noexcept
    {
        return variable >= columns;
    }
};

}  // namespace nuv
