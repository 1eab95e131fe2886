#include "tests/support/BruteForce.hpp"

#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

namespace nuv::test
{
namespace
{

Fraction Make(std::int64_t numerator, std::int64_t denominator)
{
    if (denominator < 0)
    {
        numerator = -numerator;
        denominator = -denominator;
    }
    const std::int64_t divisor = std::gcd(numerator, denominator);
    return divisor > 1 ? Fraction{numerator / divisor, denominator / divisor}
                       : Fraction{numerator, denominator};
}
Fraction operator+(Fraction x, Fraction y)
{
    return Make(x.numerator * y.denominator + y.numerator * x.denominator,
                x.denominator * y.denominator);
}
Fraction operator*(Fraction x, Fraction y)
{
    return Make(x.numerator * y.numerator, x.denominator * y.denominator);
}
Fraction operator-(Fraction x, Fraction y)
{
    return x + Fraction{-y.numerator, y.denominator};
}
Fraction operator/(Fraction x, Fraction y)
{
    return Make(x.numerator * y.denominator, x.denominator * y.numerator);
}
bool operator<(Fraction x, Fraction y)
{
    return x.numerator * y.denominator < y.numerator * x.denominator;
}
Fraction FromDouble(double value)
{
    return {static_cast<std::int64_t>(value), 1};
}

using Matrix = std::vector<std::vector<Fraction>>;

/// Solves the square system whose right side is the last column. @return whether it is regular.
bool Eliminate(Matrix& system)
{
    const std::size_t size = system.size();
    for (std::size_t k = 0; k < size; ++k)
    {
        std::size_t pivot = k;
        while (pivot < size && system[pivot][k].numerator == 0)
            ++pivot;
        if (pivot == size)
            return false;
        system[k].swap(system[pivot]);
        for (std::size_t i = 0; i < size; ++i)
        {
            if (i == k || system[i][k].numerator == 0)
                continue;
            const Fraction factor = system[i][k] / system[k][k];
            for (std::size_t j = k; j <= size; ++j)
                system[i][j] = system[i][j] - factor * system[k][j];
        }
    }
    for (std::size_t k = 0; k < size; ++k)
        system[k][size] = system[k][size] / system[k][k];
    return true;
}

/// The extended form [A, -1] (x, r) = 0 with bounds on all variables.
class Enumeration
{
public:
    explicit Enumeration(const BoundedForm& form) : m_rows(form.rows), m_value(form.Variables())
    {
        m_matrix.assign(form.rows, std::vector<Fraction>(form.Variables()));
        for (Index j = 0; j < form.columns; ++j)
        {
            for (const auto [row, entry] : form.matrix.Column(j))
                m_matrix[row][j] = FromDouble(entry);
        }
        for (Index i = 0; i < form.rows; ++i)
            m_matrix[i][form.columns + i] = {-1, 1};
        for (Index v = 0; v < form.Variables(); ++v)
        {
            lower.push_back(form.Lower(v));
            upper.push_back(form.Upper(v));
            m_cost.push_back(FromDouble(form.Cost(v)));
        }
    }

    /// The least objective of a basic feasible solution, if there is one.
    std::optional<Fraction> Best()
    {
        m_best.reset();
        m_basic.assign(m_value.size(), false);
        ChooseBasis(0, 0);
        return m_best;
    }

    std::vector<double> lower;
    std::vector<double> upper;

private:
    void ChooseBasis(std::size_t from, std::size_t chosen)
    {
        if (chosen == m_rows)
        {
            ChooseRest(0);
            return;
        }
        for (std::size_t v = from; v < m_value.size(); ++v)
        {
            m_basic[v] = true;
            ChooseBasis(v + 1, chosen + 1);
            m_basic[v] = false;
        }
    }

    void ChooseRest(std::size_t v)
    {
        if (v == m_value.size())
        {
            Evaluate();
            return;
        }
        const bool hasLower = std::isfinite(lower[v]);
        const bool hasUpper = std::isfinite(upper[v]);
        if (m_basic[v] || (!hasLower && !hasUpper))
        {
            m_value[v] = {0, 1};
            ChooseRest(v + 1);
            return;
        }
        if (hasLower)
        {
            m_value[v] = FromDouble(lower[v]);
            ChooseRest(v + 1);
        }
        if (hasUpper && upper[v] != lower[v])
        {
            m_value[v] = FromDouble(upper[v]);
            ChooseRest(v + 1);
        }
    }

    void Evaluate()
    {
        std::vector<std::size_t> basis;
        for (std::size_t v = 0; v < m_value.size(); ++v)
        {
            if (m_basic[v])
                basis.push_back(v);
            else if (Outside(v, m_value[v]))
                return;
        }
        Matrix system(m_rows, std::vector<Fraction>(m_rows + 1));
        for (std::size_t i = 0; i < m_rows; ++i)
        {
            for (std::size_t k = 0; k < m_rows; ++k)
                system[i][k] = m_matrix[i][basis[k]];
            for (std::size_t v = 0; v < m_value.size(); ++v)
            {
                if (!m_basic[v])
                    system[i][m_rows] = system[i][m_rows] - m_matrix[i][v] * m_value[v];
            }
        }
        if (!Eliminate(system))
            return;
        std::vector<Fraction> point = m_value;
        for (std::size_t k = 0; k < m_rows; ++k)
            point[basis[k]] = system[k][m_rows];
        Fraction objective;
        for (std::size_t v = 0; v < point.size(); ++v)
        {
            if (Outside(v, point[v]))
                return;
            objective = objective + m_cost[v] * point[v];
        }
        if (!m_best || objective < *m_best)
            m_best = objective;
    }

    [[nodiscard]] bool Outside(std::size_t v, Fraction value) const
    {
        return (std::isfinite(lower[v]) && value < FromDouble(lower[v])) ||
               (std::isfinite(upper[v]) && FromDouble(upper[v]) < value);
    }

    std::size_t m_rows;
    Matrix m_matrix;
    std::vector<Fraction> m_cost;
    std::vector<Fraction> m_value;
    std::vector<bool> m_basic;
    std::optional<Fraction> m_best;
};

}  // namespace

BruteForceResult SolveByEnumeration(const BoundedForm& form)
{
    Enumeration solutions(form);
    const std::optional<Fraction> best = solutions.Best();
    if (!best)
        return {Verdict::Infeasible, {}};
    // It is unbounded if a direction that keeps to the bounds improves; directions of at most one
    // per column are enough to find one.
    Enumeration directions(form);
    for (Index v = 0; v < form.Variables(); ++v)
    {
        const double box = form.IsLogical(v) ? std::numeric_limits<double>::infinity() : 1.0;
        directions.lower[v] = std::isfinite(form.Lower(v)) ? 0.0 : -box;
        directions.upper[v] = std::isfinite(form.Upper(v)) ? 0.0 : box;
    }
    const std::optional<Fraction> steepest = directions.Best();
    if (steepest && steepest->numerator < 0)
        return {Verdict::Unbounded, {}};
    return {Verdict::Optimal, *best};
}

}  // namespace nuv::test
