#include "Nuv/Algebra/Rational.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace nuv
{

namespace
{

ExactNumber TakeApartStored(double value) noexcept
{
    int exponent = 0;
    const double fraction = std::frexp(value, &exponent);
    return {static_cast<std::int64_t>(std::ldexp(fraction, 53)), {exponent - 53, 0}};
}

/// The shortest decimal in scientific form has at most 17 digits, so they fit.
ExactNumber TakeApartWritten(double value) noexcept
{
    char text[32];
    const std::to_chars_result written =
        std::to_chars(text, text + sizeof text, value, std::chars_format::scientific);
    ExactNumber number;
    bool negative = false;
    bool fraction = false;
    int exponent = 0;
    for (const char* at = text; at != written.ptr; ++at)
    {
        if (*at == '-')
            negative = true;
        else if (*at == '.')
            fraction = true;
        else if (*at == 'e')
        {
            const char* digits = at[1] == '+' ? at + 2 : at + 1;
            int power = 0;
            (void)std::from_chars(digits, written.ptr, power);  // to_chars wrote it
            exponent += power;
            break;
        }
        else
        {
            number.mantissa = 10 * number.mantissa + (*at - '0');
            exponent -= fraction ? 1 : 0;
        }
    }
    if (negative)
        number.mantissa = -number.mantissa;
    number.scale = {exponent, exponent};
    while (number.scale.five < 0 && number.mantissa % 5 == 0)
    {
        number.mantissa /= 5;
        ++number.scale.five;
    }
    return number;
}

}  // namespace

ExactNumber TakeApart(double value, Numbers numbers) noexcept
{
    if (value == 0.0)
        return {};
    ExactNumber number =
        numbers == Numbers::AsStored ? TakeApartStored(value) : TakeApartWritten(value);
    for (; (number.mantissa & 0xFF) == 0; number.scale.two += 8)
        number.mantissa /= 256;
    for (; (number.mantissa & 1) == 0; ++number.scale.two)
        number.mantissa /= 2;
    return number;
}

Rational ToRational(double value, Numbers numbers)
{
    const ExactNumber number = TakeApart(value, numbers);
    const Scale up{std::max(number.scale.two, 0), std::max(number.scale.five, 0)};
    return Rational(Integer(number.mantissa) * PowerOf(up), PowerOf(up - number.scale));
}

Integer PowerOf(Scale scale)
{
    Integer power = scale.five == 0
                        ? Integer(1)
                        : boost::multiprecision::pow(Integer(5), static_cast<unsigned>(scale.five));
    if (scale.two != 0)
        power <<= static_cast<unsigned>(scale.two);
    return power;
}

Integer Scaled(const ExactNumber& number, Scale scale)
{
    if (number.mantissa == 0)
        return Integer(0);
    return PowerOf(number.scale + scale) * number.mantissa;
}

double ToDouble(const Rational& value)
{
    return QuotientToDouble(boost::multiprecision::numerator(value),
                            boost::multiprecision::denominator(value));
}

double QuotientToDouble(const Integer& numerator, const Integer& denominator)
{
    if (numerator == 0)
        return 0.0;
    const bool negative = numerator < 0;
    Integer top = negative ? Integer(-numerator) : numerator;
    Integer bottom = denominator;
    // A quotient of 54 or 55 bits, made odd if anything is cut off, rounds like the exact one;
    // below the normal range fewer bits are kept, so that only one rounding happens.
    const long excess = static_cast<long>(BitLength(top)) - static_cast<long>(BitLength(bottom));
    const long lowest =
        std::numeric_limits<double>::min_exponent - std::numeric_limits<double>::digits - 2;
    const long exponent = std::max(excess - 55, lowest);
    if (exponent < 0)
        top <<= static_cast<unsigned>(-exponent);
    else
        bottom <<= static_cast<unsigned>(exponent);
    Integer quotient;
    Integer remainder;
    boost::multiprecision::divide_qr(top, bottom, quotient, remainder);
    std::int64_t bits = static_cast<std::int64_t>(quotient);
    if (remainder != 0)
        bits |= 1;
    // Three or fewer spare bits below the 53: rounding by hand keeps the sticky bit's meaning.
    int spare = 0;
    while ((bits >> spare) >= (std::int64_t{1} << 53))
        ++spare;
    if (exponent == lowest)
        spare = std::max(spare, 2);
    const std::int64_t half = spare == 0 ? 0 : std::int64_t{1} << (spare - 1);
    std::int64_t kept = bits >> spare;
    const std::int64_t rest = bits - (kept << spare);
    if (rest > half || (spare > 0 && rest == half && (kept & 1) != 0))
        ++kept;
    const double magnitude =
        exponent > 2000 ? std::numeric_limits<double>::infinity()
                        : std::ldexp(static_cast<double>(kept), static_cast<int>(exponent) + spare);
    return negative ? -magnitude : magnitude;
}

std::string ToString(const Rational& value)
{
    const Integer denominator = boost::multiprecision::denominator(value);
    std::string text = boost::multiprecision::numerator(value).str();
    if (denominator != 1)
        text.append("/").append(denominator.str());
    return text;
}

std::string ToDecimal(const Rational& value, int digits)
{
    if (value == 0)
        return "0";
    Integer top = boost::multiprecision::abs(boost::multiprecision::numerator(value));
    Integer bottom = boost::multiprecision::denominator(value);
    // The estimate of the decimal exponent is at most one too small, never too large.
    const double bits =
        static_cast<double>(BitLength(top)) - static_cast<double>(BitLength(bottom));
    int exponent = static_cast<int>(std::floor((bits - 1.0) * 0.30102999566398119));
    const auto power = [](int n)
    { return boost::multiprecision::pow(Integer(10), static_cast<unsigned>(n)); };
    (exponent < 0 ? top : bottom) *= power(std::abs(exponent));
    while (top >= bottom * 10)
    {
        bottom *= 10;
        ++exponent;
    }
    while (top < bottom)
    {
        top *= 10;
        --exponent;
    }
    top *= power(digits - 1) * 2;
    Integer rounded = (top + bottom) / (bottom * 2);
    if (rounded >= power(digits))
    {
        rounded /= 10;
        ++exponent;
    }
    const std::string figures = rounded.str();
    std::string text = value < 0 ? "-" : "";
    text.append(figures, 0, 1);
    if (digits > 1)
        text.append(".").append(figures, 1);
    return text.append("e").append(std::to_string(exponent));
}

std::size_t BitLength(const Integer& value)
{
    if (value == 0)
        return 0;
    return boost::multiprecision::msb(value < 0 ? Integer(-value) : value) + 1;
}

std::size_t TrailingZeros(const Integer& value)
{
    return boost::multiprecision::lsb(value < 0 ? Integer(-value) : value);
}

}  // namespace nuv
