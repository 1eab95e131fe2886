// Fraction-free pivots by Bland's rule, which ends without a limit.
#include "fuzz/ExactOptimum.hpp"

#include <utility>
#include <vector>

namespace fuzz
{
namespace
{
using Number = std::int64_t;

/// The rows of the model, each with its basic column, over one common denominator. The columns are
/// the variables, the slacks, the artificial variable and the right-hand side; the last row holds
/// what each column would add to the objective, and minus the objective's value.
class Tableau
{
public:
    explicit Tableau(const reference::Problem& problem);
    ExactOptimum Solve();

private:
    Number& At(std::size_t row, std::size_t column)
    {
        return numbers[row * width + column];
    }

    bool MakeFeasible();
    void PriceOut(const std::vector<Number>& gains);
    /// @return false when the objective grows without end.
    bool Climb(std::size_t columns);
    std::size_t LeavingRow(std::size_t column);
    void Pivot(std::size_t row, std::size_t column);

    const reference::Problem& problem;
    std::size_t rows;
    std::size_t artificial;
    std::size_t side;
    std::size_t width;
    std::vector<Number> numbers;
    std::vector<std::size_t> basis;
    Number denominator = 1;
};

Tableau::Tableau(const reference::Problem& p)
    : problem(p),
      rows(p.rows),
      artificial(p.columns + p.rows),
      side(artificial + 1),
      width(side + 1),
      numbers((rows + 1) * width)
{
    for (std::size_t i = 0; i != rows; ++i)
    {
        for (std::size_t j = 0; j != p.columns; ++j)
            At(i, j) = static_cast<Number>(p.A[i * p.columns + j]);
        At(i, p.columns + i) = 1;
        At(i, artificial) = -1;
        At(i, side) = static_cast<Number>(p.b[i]);
        basis.push_back(p.columns + i);
    }
}

/// Row operations keep the denominator common to all; it is the determinant of the basis.
void Tableau::Pivot(std::size_t row, std::size_t column)
{
    const Number pivot = At(row, column);
    for (std::size_t i = 0; i != rows + 1; ++i)
    {
        const Number factor = At(i, column);
        if (i == row)
            continue;
        for (std::size_t j = 0; j != width; ++j)
        {
            __extension__ typedef __int128 Wide;
            const Wide product = Wide(At(i, j)) * pivot - Wide(factor) * At(row, j);
            At(i, j) = static_cast<Number>(product / denominator);
        }
    }
    denominator = pivot;
    basis[row] = column;
    if (denominator > 0)
        return;
    denominator = -denominator;
    for (Number& number : numbers)
        number = -number;
}

/// Sets the last row to `gains` as the present basis sees them.
void Tableau::PriceOut(const std::vector<Number>& gains)
{
    for (std::size_t j = 0; j != width; ++j)
    {
        Number gain = gains[j] * denominator;
        for (std::size_t i = 0; i != rows; ++i)
            gain -= gains[basis[i]] * At(i, j);
        At(rows, j) = gain;
    }
}

/// @return the row of the smallest ratio and, among equal ones, of the lowest basic column; the
/// number of rows when no row stops the column.
std::size_t Tableau::LeavingRow(std::size_t column)
{
    std::size_t leaving = rows;
    for (std::size_t i = 0; i != rows; ++i)
    {
        if (At(i, column) <= 0)
            continue;
        if (leaving == rows)
        {
            leaving = i;
            continue;
        }
        const Number mine = At(i, side) * At(leaving, column);
        const Number best = At(leaving, side) * At(i, column);
        if (mine < best || (mine == best && basis[i] < basis[leaving]))
            leaving = i;
    }
    return leaving;
}

bool Tableau::Climb(std::size_t columns)
{
    for (;;)
    {
        std::size_t entering = 0;
        while (entering != columns && At(rows, entering) <= 0)
            ++entering;
        if (entering == columns)
            return true;
        const std::size_t leaving = LeavingRow(entering);
        if (leaving == rows)
            return false;
        Pivot(leaving, entering);
    }
}

/// Drives the artificial variable to 0, which is possible if and only if there is a feasible point.
bool Tableau::MakeFeasible()
{
    std::size_t lowest = 0;
    for (std::size_t i = 1; i != rows; ++i)
        lowest = At(i, side) < At(lowest, side) ? i : lowest;
    if (At(lowest, side) >= 0)
        return true;
    Pivot(lowest, artificial);
    std::vector<Number> gains(width);
    gains[artificial] = -1;
    PriceOut(gains);
    (void)Climb(width - 1);
    for (std::size_t i = 0; i != rows; ++i)
    {
        if (basis[i] != artificial)
            continue;
        if (At(i, side) != 0)
            return false;
        std::size_t column = 0;
        while (At(i, column) == 0)
            ++column;
        Pivot(i, column);
    }
    return true;
}

ExactOptimum Tableau::Solve()
{
    if (!MakeFeasible())
        return {reference::Status::Infeasible, 0, 1};
    std::vector<Number> gains(width);
    for (std::size_t j = 0; j != problem.columns; ++j)
        gains[j] = static_cast<Number>(problem.c[j]);
    PriceOut(gains);
    if (!Climb(artificial))
        return {reference::Status::Unbounded, 0, 1};
    return {reference::Status::Ok, -At(rows, side), denominator};
}
}  // namespace

ExactOptimum SolveExactly(const reference::Problem& problem)
{
    return Tableau(problem).Solve();
}
}  // namespace fuzz
