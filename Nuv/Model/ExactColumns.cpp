#include "Nuv/Model/ExactColumns.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{
namespace
{

void AddShifted(Integer& sum, const Integer& factor, std::int64_t mantissa, unsigned shift)
{
    Integer term = factor * mantissa;
    if (shift != 0)
        term <<= shift;
    sum += term;
}

}  // namespace

ExactColumns::ExactColumns(const LinearForm& form)
    : m_form(form),
      m_exponent(form.columns, 0),
      m_entries(form.byColumn.index.size()),
      m_cost(form.columns)
{
    for (Index j = 0; j < form.columns; ++j)
    {
        const Dyadic cost = TakeApart(form.cost[j]);
        int exponent = cost.mantissa == 0 ? 0 : std::min(0, cost.exponent);
        for (const double value : form.byColumn.Values(j))
            exponent = std::min(exponent, TakeApart(value).exponent);
        m_exponent[j] = exponent;
        m_cost[j] = {cost.mantissa, static_cast<unsigned>(cost.exponent - exponent)};
        for (std::size_t at = form.byColumn.start[j]; at < form.byColumn.start[j + 1]; ++at)
        {
            const Dyadic entry = TakeApart(form.byColumn.value[at]);
            m_entries[at] = {entry.mantissa, static_cast<unsigned>(entry.exponent - exponent)};
        }
    }
    for (Index v = 0; v < form.Variables(); ++v)
    {
        for (const double bound : {form.Lower(v), form.Upper(v)})
        {
            if (std::isfinite(bound))
                m_boundShift = std::max(m_boundShift, -TakeApart(bound).exponent);
        }
    }
}

Integer ExactColumns::Dot(Index variable, const std::vector<Integer>& byRow) const
{
    if (m_form.IsLogical(variable))
        return -byRow[variable - m_form.columns];
    Integer sum(0);
    for (std::size_t at = m_form.byColumn.start[variable]; at < m_form.byColumn.start[variable + 1];
         ++at)
    {
        const Integer& factor = byRow[m_form.byColumn.index[at]];
        if (factor != 0)
            AddShifted(sum, factor, m_entries[at].mantissa, m_entries[at].shift);
    }
    return sum;
}

Integer ExactColumns::ReducedCost(Index variable, const ExactVector& duals, bool withCost) const
{
    Integer result = -Dot(variable, duals.numerator);
    if (withCost && !m_form.IsLogical(variable) && m_cost[variable].mantissa != 0)
    {
        AddShifted(result, duals.denominator, m_cost[variable].mantissa, m_cost[variable].shift);
    }
    return result;
}

int CompareToBound(const Integer& numerator, const Integer& denominator, double bound)
{
    const int sign = numerator.sign();
    const int boundSign = bound > 0.0 ? 1 : bound < 0.0 ? -1 : 0;
    if (sign != boundSign)
        return sign < boundSign ? -1 : 1;
    if (sign == 0)
        return 0;
    // Magnitudes that differ by more than a factor of four need no arithmetic.
    const Dyadic parts = TakeApart(bound);
    const long size =
        static_cast<long>(BitLength(numerator)) - static_cast<long>(BitLength(denominator));
    const long boundSize = std::ilogb(bound);
    if (size - 1 > boundSize + 1)
        return sign;
    if (size + 1 < boundSize)
        return -sign;
    Integer left = numerator;
    Integer right = denominator * parts.mantissa;
    if (parts.exponent >= 0)
        right <<= static_cast<unsigned>(parts.exponent);
    else
        left <<= static_cast<unsigned>(-parts.exponent);
    return left.compare(right) < 0 ? -1 : left == right ? 0 : 1;
}

}  // namespace nuv
