#include "Nuv/Exact/ExactForm.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{

ExactForm::ExactForm(const BoundedForm& linear)
    : form(linear),
      entries(linear.byColumn.index.size()),
      cost(linear.columns),
      lower(linear.Variables()),
      upper(linear.Variables()),
      m_columnScale(linear.columns)
{
    for (std::size_t at = 0; at < entries.size(); ++at)
        entries[at] = TakeApart(form.byColumn.value[at], form.numbers);
    m_multipliers.reserve(entries.size());
    m_costs.reserve(form.columns);
    for (Index j = 0; j < form.columns; ++j)
    {
        cost[j] = TakeApart(form.cost[j], form.numbers);
        Scale scale;
        scale.LowerTo(cost[j].scale);
        for (std::size_t at = form.byColumn.start[j]; at < form.byColumn.start[j + 1]; ++at)
            scale.LowerTo(entries[at].scale);
        m_columnScale[j] = scale;
        m_costs.push_back(Divided(cost[j], scale));
        for (std::size_t at = form.byColumn.start[j]; at < form.byColumn.start[j + 1]; ++at)
            m_multipliers.push_back(Divided(entries[at], scale));
    }
    for (Index v = 0; v < form.Variables(); ++v)
    {
        if (std::isfinite(form.Lower(v)))
            lower[v] = TakeApart(form.Lower(v), form.numbers);
        if (std::isfinite(form.Upper(v)))
            upper[v] = TakeApart(form.Upper(v), form.numbers);
        m_boundScale.LowerTo(lower[v].scale);
        m_boundScale.LowerTo(upper[v].scale);
    }
}

ExactForm::Multiplier ExactForm::Divided(const ExactNumber& number, Scale scale)
{
    const Scale left = number.scale - scale;
    return {PowerOf({0, number.mantissa == 0 ? 0 : left.five}) * number.mantissa,
            number.mantissa == 0 ? 0 : static_cast<unsigned>(left.two)};
}

void ExactForm::AddProduct(Integer& sum, const Integer& value, const Multiplier& multiplier)
{
    Integer term = value * multiplier.factor;
    if (multiplier.shift != 0)
        term <<= multiplier.shift;
    sum += term;
}

Integer ExactForm::Dot(Index variable, const std::vector<Integer>& byRow) const
{
    if (form.IsLogical(variable))
        return -byRow[variable - form.columns];
    Integer sum(0);
    for (std::size_t at = form.byColumn.start[variable]; at < form.byColumn.start[variable + 1];
         ++at)
    {
        const Integer& value = byRow[form.byColumn.index[at]];
        if (value != 0)
            AddProduct(sum, value, m_multipliers[at]);
    }
    return sum;
}

Integer ExactForm::ReducedCost(Index variable, const ExactVector& duals, bool withCost) const
{
    Integer result = -Dot(variable, duals.numerator);
    if (withCost && !form.IsLogical(variable) && cost[variable].mantissa != 0)
        AddProduct(result, duals.denominator, m_costs[variable]);
    return result;
}

double ExactForm::ReducedCostInDouble(Index variable, const ExactVector& duals, bool withCost) const
{
    const Scale scale = ColumnScale(variable);  // neither exponent is positive
    const Integer denominator = duals.denominator * PowerOf({0, -scale.five});
    return std::ldexp(QuotientToDouble(ReducedCost(variable, duals, withCost), denominator),
                      scale.two);
}

int CompareToBound(const Integer& numerator, const Integer& denominator, const ExactNumber& bound,
                   double nearby)
{
    const int sign = numerator.sign();
    const int boundSign = bound.mantissa > 0 ? 1 : bound.mantissa < 0 ? -1 : 0;
    if (sign != boundSign)
        return sign < boundSign ? -1 : 1;
    if (sign == 0)
        return 0;
    // Magnitudes far enough apart need no arithmetic.
    const long size =
        static_cast<long>(BitLength(numerator)) - static_cast<long>(BitLength(denominator));
    const long boundSize = std::ilogb(nearby);
    if (size - 1 > boundSize + 2)
        return sign;
    if (size + 1 < boundSize - 1)
        return -sign;
    const Scale down{std::max(-bound.scale.two, 0), std::max(-bound.scale.five, 0)};
    const Integer left = numerator * PowerOf(down);
    const Integer right = denominator * Scaled(bound, down);
    const int order = left.compare(right);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

}  // namespace nuv
