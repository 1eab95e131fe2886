/// Sums over the columns of [A, -I] in integers: each column and its cost are brought to one scale.
#include "Nuv/Exact/ExactForm.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{
namespace
{

/// How often two and five divide a positive number.
Scale PowersIn(const Integer& number)
{
    // same bits: the loop finds no power
    if (number == 1)
        return {};
    Scale powers{static_cast<int>(TrailingZeros(number)), 0};
    Integer rest = number / PowerOf(powers);
    for (Integer quotient, remainder; rest != 1; ++powers.five)
    {
        Divide(rest, 5, quotient, remainder);
        if (remainder != 0)
            break;
        swap(rest, quotient);
    }
    return powers;
}

}  // namespace

ExactForm::ExactForm(const BoundedForm& bounded)
    : form(bounded),
      cost(bounded.Variables()),
      lower(bounded.Variables()),
      upper(bounded.Variables()),
      m_columnScale(bounded.Variables())
{
    byVariable.start.reserve(std::size_t{form.Variables()} + 1);
    const std::size_t entries = form.matrix.EntryCount() + form.rows;  // same bits: room alone
    byVariable.index.reserve(entries);
    byVariable.value.reserve(entries);
    m_costs.reserve(form.Variables());
    for (Index v = 0; v < form.Variables(); ++v)
        TakeColumn(v);
    for (const Rational& columnCost : cost)
        IncludeDenominator(columnCost, m_costDivisor);
    TakeMultipliers();
    for (const auto& [variable, divisor] : m_columnDivisor)
        m_columnDivisors = LeastCommonMultiple(m_columnDivisors, divisor);
    m_boundDivisor = m_columnDivisors;
    for (Index v = 0; v < form.Variables(); ++v)
        TakeBounds(v);
}

void ExactForm::TakeColumn(Index variable)
{
    const Integer divisor = DivisorOf(variable);
    form.VisitColumn(variable,
                     [&](Index row, double entry)
                     {
                         // same bits: another way to say the same number
                         if (form.exact.Empty())
                             byVariable.Append(row, TakeApart(entry, form.numbers));
                         else
                             AppendWords(row, form.ExactEntry(row, variable, entry) * divisor);
                     });
    byVariable.Close();
    for (const auto [row, entry] : byVariable[variable])
        m_columnScale[variable].LowerTo(entry.scale);
    TakeCost(variable, divisor);
    if (divisor != 1)
        m_columnDivisor.emplace(variable, divisor);
}

void ExactForm::TakeCost(Index variable, const Integer& divisor)
{
    m_costs.emplace_back();
    if (form.IsLogical(variable))
        return;
    cost[variable] = form.ExactCost(variable);
    // same bits (always, never): what is 0 adds nothing
    if (cost[variable].Sign() == 0)
        return;
    // same bits (always, never, -> 0): a factor of 1
    const Rational scaledCost = divisor == 1 ? cost[variable] : cost[variable] * divisor;
    Scale& scale = m_columnScale[variable];
    scale.LowerTo(-PowersIn(scaledCost.Denominator()));
    m_costs.back() = scaledCost.Numerator() * (PowerOf(-scale) / scaledCost.Denominator());
}

void ExactForm::TakeMultipliers()
{
    m_multipliers.Reserve(byVariable.value.size());
    for (Index v = 0; v < form.Variables(); ++v)
    {
        for (const auto [row, entry] : byVariable[v])
            m_multipliers.Append(entry, -m_columnScale[v]);
    }
}

/// What the column and its cost are to be multiplied by to have denominators of twos and fives
/// alone.
Integer ExactForm::DivisorOf(Index variable) const
{
    Integer divisor(1);
    if (form.exact.Empty())  // same bits: doubles have no other denominators
        return divisor;
    form.VisitColumn(variable, [&](Index row, double entry)
                     { IncludeDenominator(form.ExactEntry(row, variable, entry), divisor); });
    IncludeDenominator(form.ExactCost(variable), divisor);
    return divisor / PowerOf(PowersIn(divisor));
}

/// A number whose denominator has no prime but two and five, as words of 62 bits.
void ExactForm::AppendWords(Index row, const Rational& number)
{
    constexpr std::uint64_t kMask = (std::uint64_t{1} << 62) - 1;
    Integer rest = Abs(number.Numerator());
    for (Scale scale = -PowersIn(number.Denominator()); rest != 0; rest >>= 62, scale.two += 62)
    {
        ExactNumber word{static_cast<std::int64_t>(rest.LowWord() & kMask), scale};
        if (word.mantissa == 0)
            continue;
        for (; (word.mantissa & 1) == 0; ++word.scale.two)
            word.mantissa /= 2;
        // same bits (-> <=): of 0 there are no words
        word.mantissa = number.Sign() < 0 ? -word.mantissa : word.mantissa;
        byVariable.Append(row, word);
    }
}

void ExactForm::TakeBounds(Index variable)
{
    lower[variable] = std::isfinite(form.Lower(variable)) ? form.ExactLower(variable) : Rational();
    upper[variable] = std::isfinite(form.Upper(variable)) ? form.ExactUpper(variable) : Rational();
    // A divisor that is larger than need be is right too. Divided by the divisor of its column, a
    // resting value is an integer over this as well.
    for (const Rational* const bound : {&lower[variable], &upper[variable]})
    {
        // same bits: the divisor is a multiple of those of columns
        if (bound->Denominator() != 1)
            m_boundDivisor =
                LeastCommonMultiple(m_boundDivisor, bound->Denominator() * m_columnDivisors);
    }
}

Integer ExactForm::ScaledBound(const Rational& bound) const
{
    // same bits (always, never, -> 0): a factor of 1
    if (bound.Denominator() == 1)
        return bound.Numerator() * m_boundDivisor;
    return bound.Numerator() * (m_boundDivisor / bound.Denominator());
}

Integer ExactForm::Dot(Index variable, const std::vector<Integer>& byRow) const
{
    Integer sum;
    for (std::size_t at = byVariable.start[variable]; at < byVariable.start[variable + 1]; ++at)
    {
        const Integer& value = byRow[byVariable.index[at]];
        // same bits (always, never): what is 0 adds nothing
        if (value.Sign() != 0)
            m_multipliers.AddProduct(at, value, sum);
    }
    return sum;
}

Integer ExactForm::ReducedCost(Index variable, const ExactVector& duals, bool withCost) const
{
    Integer result = -Dot(variable, duals.numerator);
    // same bits (always, never): what is 0 adds nothing
    if (withCost && cost[variable].Sign() != 0)
        result.AddProduct(duals.denominator, m_costs[variable]);
    return result;
}

double ExactForm::ReducedCostInDouble(Index variable, const ExactVector& duals, bool withCost) const
{
    return InDouble(variable, ReducedCost(variable, duals, withCost), duals);
}

double ExactForm::InDouble(Index variable, const Integer& reduced, const ExactVector& duals) const
{
    // same bits: the quotient is 0 as well
    if (reduced.Sign() == 0)
        return 0.0;
    const Scale scale = ColumnScale(variable);  // neither exponent is positive
    // same bits: the divisors below are 1
    if (scale.five == 0 && HasNoQuotient())
        return std::ldexp(QuotientToDouble(reduced, duals.denominator), scale.two);
    const Integer denominator =
        duals.denominator * PowerOf({0, -scale.five}) * ColumnDivisor(variable);
    return std::ldexp(QuotientToDouble(reduced, denominator), scale.two);
}

void IncludeDenominator(const Rational& number, Integer& divisor)
{
    // same bits: the least common multiple is the divisor itself
    if (number.Denominator() != 1 && divisor != number.Denominator())
        divisor = LeastCommonMultiple(divisor, number.Denominator());
}

int CompareToBound(const Integer& numerator, const Integer& denominator, const Rational& bound,
                   double nearby)
{
    const int sign = numerator.Sign();
    const int boundSign = bound.Sign();
    if (sign != boundSign)
        return sign < boundSign ? -1 : 1;
    // same bits: both products are 0
    if (sign == 0)
        return 0;
    // Magnitudes far enough apart need no arithmetic.
    const long size =
        static_cast<long>(BitLength(numerator)) - static_cast<long>(BitLength(denominator));
    const long boundSize = std::ilogb(nearby);
    if (size - 1 > boundSize + 2)  // same bits: what is not decided here is decided below
        return sign;
    if (size + 1 < boundSize - 1)  // same bits: what is not decided here is decided below
        return -sign;
    const Integer left = numerator * bound.Denominator();
    const Integer right = denominator * bound.Numerator();
    const int order = left.Compare(right);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

}  // namespace nuv
