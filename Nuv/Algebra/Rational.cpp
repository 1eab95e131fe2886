/// The sums and products keep intermediate numbers small by dividing common factors out before they
/// are multiplied in (Knuth, The Art of Computer Programming, volume 2, section 4.5.1).
#include "Nuv/Algebra/Rational.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace nuv
{

Rational::Rational(Integer numerator, Integer denominator)
    : m_numerator(std::move(numerator)), m_denominator(std::move(denominator))
{
    if (m_denominator.Sign() < 0)
    {
        m_numerator.Negate();
        m_denominator.Negate();
    }
    // same bits (always, never, -> 0): a factor of 1
    if (m_denominator == 1)
        return;
    const Integer divisor = Gcd(m_numerator, m_denominator);
    if (divisor != 1)  // same bits: a division by 1
    {
        m_numerator /= divisor;
        m_denominator /= divisor;
    }
}

Rational& Rational::operator+=(const Rational& other)
{
    return Add(other, false);
}

Rational& Rational::operator-=(const Rational& other)
{
    return Add(other, true);
}

/// a / (g b) + c / (g d) with b and d coprime is (a d + c b) / (g b d), and of the numerator only g
/// can share a factor with the denominator: a prime of b divides neither a nor d.
Rational& Rational::Add(const Rational& other, bool subtract)
{
    const Integer divisor = Gcd(m_denominator, other.m_denominator);
    // same bits (always, never): dividing by 1 changes nothing
    const Integer otherRest = divisor == 1 ? other.m_denominator : other.m_denominator / divisor;
    // same bits (always, never): dividing by 1 changes nothing
    const Integer rest = divisor == 1 ? m_denominator : m_denominator / divisor;
    Integer sum = m_numerator * otherRest;
    if (subtract)
        sum.SubtractProduct(other.m_numerator, rest);
    else
        sum.AddProduct(other.m_numerator, rest);
    // same bits (always, never): the common divisor with 1 is 1
    const Integer common = divisor == 1 ? Integer(1) : Gcd(sum, divisor);
    m_denominator *= otherRest;
    if (common != 1)  // same bits (always, -> 0): dividing by 1 changes nothing
    {
        sum /= common;
        m_denominator /= common;
    }
    m_numerator = std::move(sum);
    return *this;
}

Rational& Rational::operator*=(const Rational& other)
{
    const Integer across = Gcd(m_numerator, other.m_denominator);
    const Integer back = Gcd(other.m_numerator, m_denominator);
    m_numerator = (m_numerator / across) * (other.m_numerator / back);
    m_denominator = (m_denominator / back) * (other.m_denominator / across);
    return *this;
}

Rational& Rational::operator/=(const Rational& other)
{
    Rational inverse;
    inverse.m_numerator = other.m_denominator;
    inverse.m_denominator = other.m_numerator;
    if (inverse.m_denominator.Sign() < 0)
    {
        inverse.m_numerator.Negate();
        inverse.m_denominator.Negate();
    }
    return *this *= inverse;
}

std::strong_ordering operator<=>(const Rational& x, const Rational& y)
{
    // same bits: as cross-multiplied
    if (x.m_denominator == y.m_denominator)
        return x.m_numerator <=> y.m_numerator;
    return x.m_numerator * y.m_denominator <=> y.m_numerator * x.m_denominator;
}

Rational ToRational(double value, CoefficientMeaning meaning)
{
    const ExactNumber number = TakeApart(value, meaning);
    const Scale down{std::max(-number.scale.two, 0), std::max(-number.scale.five, 0)};
    return Rational(Scaled(number, down), PowerOf(down));
}

Integer PowerOf(Scale scale)
{
    // same bits: the long way comes to the same
    if (const std::int64_t small = ScaledInWord({1, {}}, scale); small != 0)
        return Integer(small);
    // same bits (always, never, -> 0): a factor of 1
    Integer power = scale.five == 0 ? Integer(1) : Power(5, static_cast<unsigned>(scale.five));
    // same bits (always, never, -> 0): a factor of 1
    if (scale.two != 0)
        power <<= static_cast<std::size_t>(scale.two);
    return power;
}

Integer Scaled(const ExactNumber& number, Scale scale)
{
    // same bits: so is the product
    if (number.mantissa == 0)
        return Integer();
    // same bits: the long way comes to the same
    if (const std::int64_t small = ScaledInWord(number, scale); small != 0)
        return Integer(small);
    return PowerOf(number.scale + scale) * number.mantissa;
}

double ToDouble(const Rational& value)
{
    return QuotientToDouble(value.Numerator(), value.Denominator());
}

double QuotientToDouble(const Integer& numerator, const Integer& denominator)
{
    if (numerator == 0)  // same bits: the long way comes to the same
        return 0.0;
    const bool negative = numerator < 0;  // same bits (-> <=, -> 1): it is not 0
    Integer top = Abs(numerator);
    Integer bottom = denominator;
    // A quotient of 55 or 56 bits, made odd if anything is cut off, rounds like the exact one;
    // below the normal range fewer bits are kept, so that only one rounding happens.
    const long excess = static_cast<long>(BitLength(top)) - static_cast<long>(BitLength(bottom));
    const long lowest =
        std::numeric_limits<double>::min_exponent - std::numeric_limits<double>::digits - 2;
    // same bits (-> 56): a bit more to spare
    const long exponent = std::max(excess - 55, lowest);
    if (exponent < 0)
        top <<= static_cast<std::size_t>(-exponent);
    else
        bottom <<= static_cast<std::size_t>(exponent);
    Integer quotient;
    Integer remainder;
    Divide(top, bottom, quotient, remainder);
    std::int64_t bits = quotient.ToWord();
    if (remainder != 0)
        bits |= 1;
    // Two or three spare bits below the 53, two below the normal range: rounding by hand
    // keeps the sticky bit's meaning.
    int spare = 2;
    while ((bits >> spare) >= (std::int64_t{1} << 53))
        ++spare;
    const std::int64_t half = std::int64_t{1} << (spare - 1);
    std::int64_t kept = bits >> spare;
    const std::int64_t rest = bits - (kept << spare);
    if (rest > half || (rest == half && (kept & 1) != 0))
        ++kept;
    // same bits (-> >=, -> 1999, -> 2001, always, never): far beyond the largest double
    const double magnitude =
        exponent > 2000 ? std::numeric_limits<double>::infinity()
                        : std::ldexp(static_cast<double>(kept), static_cast<int>(exponent) + spare);
    return negative ? -magnitude : magnitude;
}

std::string ToString(const Rational& value)
{
    std::string text = value.Numerator().ToString();
    if (value.Denominator() != 1)
        text.append("/").append(value.Denominator().ToString());
    return text;
}

std::string ToDecimal(const Rational& value, int digits)
{
    if (value == 0)
        return "0";
    Integer top = Abs(value.Numerator());
    Integer bottom = value.Denominator();
    // The estimate of the decimal exponent is at most one too small, never too large.
    const double bits =
        static_cast<double>(BitLength(top)) - static_cast<double>(BitLength(bottom));
    int exponent = static_cast<int>(std::floor((bits - 1.0) * 0.30102999566398119));
    const auto power = [](int n) { return Power(10, static_cast<unsigned>(n)); };
    // same bits (-> 1, -> <=): ten to the power of 0 is 1
    (exponent < 0 ? top : bottom) *= power(std::abs(exponent));
    while (top >= bottom * 10)
    {
        bottom *= 10;
        ++exponent;
    }
    top *= power(digits - 1) * 2;
    Integer rounded = (top + bottom) / (bottom * 2);
    if (rounded >= power(digits))
    {
        rounded /= 10;
        ++exponent;
    }
    const std::string figures = rounded.ToString();
    std::string text = value < 0 ? "-" : "";
    text.append(figures, 0, 1);
    if (digits > 1)
        text.append(".").append(figures, 1);
    return text.append("e").append(std::to_string(exponent));
}

}  // namespace nuv
