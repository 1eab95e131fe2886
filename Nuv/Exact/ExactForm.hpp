/// The numbers of a bounded form in exact terms, taken apart once, and the sums over them that an
/// exact simplex needs. The column of variable v and its cost are integers times ColumnScale(v) /
/// ColumnDivisor(v), the divisor being 1 but for quotients; all finite bounds are integers divided
/// by BoundDivisor(), which is a multiple of each divisor of a column.
#pragma once

#include "Nuv/Algebra/Singletons/IntegerEntries.hpp"
#include "Nuv/Certificate/Certificate.hpp"

#include <map>
#include <vector>

namespace nuv
{

class ExactForm
{
public:
    explicit ExactForm(const BoundedForm& bounded);

    /// Takes over the bounds of a variable, when the form has other ones.
    void TakeBounds(Index variable);

    const BoundedForm& form;
    /// The columns of [A, -I] times their divisors. An entry is the sum of those at its place,
    /// which follow each other: mostly one, more where it is too long for one.
    SparseVectors<ExactNumber> byVariable;
    std::vector<Rational> cost;   ///< by variable
    std::vector<Rational> lower;  ///< by variable; 0 where the bound is infinite
    std::vector<Rational> upper;

    [[nodiscard]] Scale ColumnScale(Index variable) const noexcept
    {
        return m_columnScale[variable];
    }
    [[nodiscard]] const Integer& ColumnDivisor(Index variable) const
    {
        const auto found = m_columnDivisor.find(variable);
        return found == m_columnDivisor.end() ? m_one : found->second;
    }
    /// Whether every column has the divisor 1.
    [[nodiscard]] bool HasNoQuotient() const noexcept
    {
        return m_columnDivisor.empty();
    }
    [[nodiscard]] const Integer& BoundDivisor() const noexcept
    {
        return m_boundDivisor;
    }
    /// The least common denominator of all costs.
    [[nodiscard]] const Integer& CostDivisor() const noexcept
    {
        return m_costDivisor;
    }
    /// bound * BoundDivisor(), for a bound of this form.
    [[nodiscard]] Integer ScaledBound(const Rational& bound) const;

    /// The product of the variable's column with integers by row, times ColumnDivisor(variable) /
    /// ColumnScale(variable).
    [[nodiscard]] Integer Dot(Index variable, const std::vector<Integer>& byRow) const;

    /// The same of cost * duals.denominator - column . duals.numerator: the reduced cost, but for
    /// positive factors. The cost counts only if `withCost`.
    [[nodiscard]] Integer ReducedCost(Index variable, const ExactVector& duals,
                                      bool withCost) const;

    /// The reduced cost itself, to the nearest double or so.
    [[nodiscard]] double ReducedCostInDouble(Index variable, const ExactVector& duals,
                                             bool withCost) const;
    /// The same from what ReducedCost says.
    [[nodiscard]] double InDouble(Index variable, const Integer& reduced,
                                  const ExactVector& duals) const;

private:
    void TakeColumn(Index variable);
    [[nodiscard]] Integer DivisorOf(Index variable) const;
    void AppendWords(Index row, const Rational& number);
    void TakeCost(Index variable, const Integer& divisor);
    void TakeMultipliers();

    std::vector<Scale> m_columnScale;
    std::map<Index, Integer> m_columnDivisor;  ///< those that are not 1
    IntegerEntries m_multipliers;              ///< those of byVariable / ColumnScale
    std::vector<Integer> m_costs;              ///< cost * ColumnDivisor / ColumnScale
    Integer m_columnDivisors = 1;              ///< their least common multiple
    Integer m_boundDivisor = 1;
    Integer m_costDivisor = 1;
    Integer m_one = 1;
};

/// Makes `divisor` a multiple of the number's denominator, the least that is one of itself too.
void IncludeDenominator(const Rational& number, Integer& divisor);

/// The sign of numerator / denominator - bound, the denominator positive. `nearby` is the bound in
/// double, which decides where sizes differ.
[[nodiscard]] int CompareToBound(const Integer& numerator, const Integer& denominator,
                                 const Rational& bound, double nearby);

}  // namespace nuv
