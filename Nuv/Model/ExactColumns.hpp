/// The numbers of a linear form as integers times powers of two, ready for exact sums. Column j and
/// its cost share the exponent Exponent(j); all bounds share one shift.
#pragma once

#include "Nuv/Model/Proof.hpp"

#include <vector>

namespace nuv
{

class ExactColumns
{
public:
    explicit ExactColumns(const LinearForm& form);

    /// The exponent of column j: its entries and cost are integers times 2^Exponent(j). For a
    /// logical it is 0.
    [[nodiscard]] int Exponent(Index variable) const noexcept
    {
        return variable < m_exponent.size() ? m_exponent[variable] : 0;
    }

    /// The product of the variable's column with integers by row, divided by 2^Exponent(variable).
    [[nodiscard]] Integer Dot(Index variable, const std::vector<Integer>& byRow) const;

    /// (cost * duals.denominator - column . duals.numerator) / 2^Exponent(variable): the reduced
    /// cost, but for positive factors. The cost counts only if `withCost`.
    [[nodiscard]] Integer ReducedCost(Index variable, const ExactVector& duals,
                                      bool withCost) const;

    /// Every finite bound is an integer divided by 2^BoundShift().
    [[nodiscard]] int BoundShift() const noexcept
    {
        return m_boundShift;
    }

private:
    struct Entry
    {
        std::int64_t mantissa;
        unsigned shift;
    };
    const LinearForm& m_form;
    std::vector<int> m_exponent;
    std::vector<Entry> m_entries;  // alongside form.byColumn
    std::vector<Entry> m_cost;
    int m_boundShift = 0;
};

/// The sign of numerator / denominator - bound, the denominator positive and the bound finite.
[[nodiscard]] int CompareToBound(const Integer& numerator, const Integer& denominator,
                                 double bound);

}  // namespace nuv
