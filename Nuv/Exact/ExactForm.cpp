/// Sums over the columns of [A, -I] in integers: each column and its cost are brought to one scale.
#include "Nuv/Exact/ExactForm.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{

ExactForm::ExactForm(const BoundedForm& bounded)
    : form(bounded),
      byVariable(ColumnsWithLogicals<ExactNumber>(bounded, [&bounded](Index, Index, double entry)
                                                  { return TakeApart(entry, bounded.numbers); })),
      cost(bounded.Variables()),
      lower(bounded.Variables()),
      upper(bounded.Variables()),
      m_columnScale(bounded.Variables())
{
    m_costs.reserve(form.Variables());
    for (Index v = 0; v < form.Variables(); ++v)
    {
        cost[v] = TakeApart(form.Cost(v), form.numbers);
        Scale& scale = m_columnScale[v];
        scale.LowerTo(cost[v].scale);
        for (const auto [row, entry] : byVariable[v])
            scale.LowerTo(entry.scale);
        m_costs.push_back(Divided(cost[v], scale));
    }
    m_multipliers =
        Mapped<Multiplier>(byVariable, [this](Index variable, Index, const ExactNumber& entry)
                           { return Divided(entry, m_columnScale[variable]); });
    for (Index v = 0; v < form.Variables(); ++v)
        TakeBounds(v);
}

void ExactForm::TakeBounds(Index variable)
{
    if (std::isfinite(form.Lower(variable)))
        lower[variable] = TakeApart(form.Lower(variable), form.numbers);
    if (std::isfinite(form.Upper(variable)))
        upper[variable] = TakeApart(form.Upper(variable), form.numbers);
    // A scale that is lower than need be is right too.
    m_boundScale.LowerTo(lower[variable].scale);
    m_boundScale.LowerTo(upper[variable].scale);
}

ExactForm::Multiplier ExactForm::Divided(const ExactNumber& number, Scale scale)
{
    const Scale left = number.scale - scale;
    return {PowerOf({0, number.mantissa == 0 ? 0 : left.five}) * number.mantissa,
            number.mantissa == 0 ? 0 : static_cast<unsigned>(left.two)};
}

void ExactForm::AddProduct(Integer& sum, const Integer& value, const Multiplier& multiplier)
{
    if (multiplier.shift == 0)
        sum.AddProduct(value, multiplier.factor);
    else
        sum += (value * multiplier.factor) << multiplier.shift;
}

Integer ExactForm::Dot(Index variable, const std::vector<Integer>& byRow) const
{
    Integer sum(0);
    for (const auto [row, multiplier] : m_multipliers[variable])
    {
        if (byRow[row] != 0)
            AddProduct(sum, byRow[row], multiplier);
    }
    return sum;
}

Integer ExactForm::ReducedCost(Index variable, const ExactVector& duals, bool withCost) const
{
    Integer result = -Dot(variable, duals.numerator);
    if (withCost && cost[variable].mantissa != 0)
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
    const int sign = numerator.Sign();
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
    const int order = left.Compare(right);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

}  // namespace nuv
