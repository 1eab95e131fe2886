/// The computational form of a linear program, which every solving stage works on:
///
///     minimise  cost . x + constant
///     subject to  rowLower <= A x <= rowUpper,  columnLower <= x <= columnUpper,
///
/// with A sparse and all numbers doubles; a bound may be infinite. Row i has a logical variable of
/// index columns + i whose value is the row's activity, so that the rows read A x - r = 0 and all
/// restrictions are bounds on columns + rows variables. The logical's column of the matrix is minus
/// the unit vector. Invariant: byColumn and byRow hold the same entries, each at most once.
#pragma once

#include "Nuv/Algebra/Numbers.hpp"
#include "Nuv/Algebra/SparseMatrix.hpp"

#include <limits>
#include <string>
#include <vector>

namespace nuv
{

struct BoundedForm
{
    Index rows = 0;
    Index columns = 0;
    Numbers numbers = Numbers::AsStored;
    double constant = 0.0;
    std::vector<double> cost;
    std::vector<double> columnLower;
    std::vector<double> columnUpper;
    std::vector<double> rowLower;
    std::vector<double> rowUpper;
    SparseVectors<double> byColumn;
    SparseVectors<double> byRow;

    [[nodiscard]] Index Variables() const noexcept
    {
        return rows + columns;
    }
    [[nodiscard]] bool IsLogical(Index variable) const noexcept
    {
        return variable >= columns;
    }
    [[nodiscard]] double Lower(Index variable) const noexcept
    {
        return variable < columns ? columnLower[variable] : rowLower[variable - columns];
    }
    [[nodiscard]] double Upper(Index variable) const noexcept
    {
        return variable < columns ? columnUpper[variable] : rowUpper[variable - columns];
    }
    [[nodiscard]] double Cost(Index variable) const noexcept
    {
        return variable < columns ? cost[variable] : 0.0;
    }

    /// Whether some lower bound is above its upper one, which no point satisfies.
    [[nodiscard]] bool Contradicts() const noexcept
    {
        for (Index v = 0; v < Variables(); ++v)
            if (Lower(v) > Upper(v))
                return true;
        return false;
    }

    /// @return what is wrong with the data, empty if nothing is: array lengths, an index out of
    /// range or out of order in byColumn, byRow that is not byColumn transposed, a number that is
    /// NaN, an infinite coefficient, a lower bound of +infinity or an upper one of -infinity.
    [[nodiscard]] std::string Defect() const;
};

}  // namespace nuv
