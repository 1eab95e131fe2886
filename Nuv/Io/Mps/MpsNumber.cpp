/// The common number goes through std::from_chars as it stands; what that does not know (a leading
/// plus, Fortran's exponents) is brought into its form.
#include "Nuv/Io/Mps/MpsNumber.hpp"

#include "Nuv/Algebra/Rational.hpp"
#include "Nuv/Io/DecimalSum.hpp"
#include "Nuv/Io/NumberText.hpp"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>

namespace nuv::mps
{
namespace
{

constexpr std::size_t kDigitsOfADouble = 17;
constexpr std::size_t kMostDigits = 60;
constexpr int kMostExponent = 400;

/// std::from_chars says "out of range" at both ends. A number at the small one has only zeros
/// before its point, or a negative exponent.
NumberFault Beyond(std::string_view text) noexcept
{
    const std::size_t letter = text.find_first_of("eE");
    if (letter != std::string_view::npos)
        return text.substr(letter).starts_with("e-") || text.substr(letter).starts_with("E-")
                   ? NumberFault::TooSmall
                   : NumberFault::TooLarge;
    return text.substr(0, text.find('.')).find_first_of("123456789") == std::string_view::npos
               ? NumberFault::TooSmall
               : NumberFault::TooLarge;
}

/// Reads a number from the front of a text. @return where it ends; at the front if there is none.
const char* ReadDecimal(std::string_view text, Number& number) noexcept
{
    const char* const end = text.data() + text.size();
    const std::from_chars_result result = ReadDouble(text.data(), end, number.value);
    number.fault = NumberFault::None;
    if (result.ec == std::errc::invalid_argument)
        number.fault = NumberFault::NotANumber;
    else if (result.ec == std::errc::result_out_of_range)
        number.fault = Beyond(text.substr(0, static_cast<std::size_t>(result.ptr - text.data())));
    else if (std::isnan(number.value))
        number.fault = NumberFault::Undefined;
    return result.ptr;
}

/// A plain decimal: its digits without point, and the power of ten of the last of them.
struct Decimal
{
    std::string digits;
    int exponent = 0;
};

bool IsDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

/// The decimal behind a number that ReadNumber took; nothing if it is short or out of all
/// proportion.
std::optional<Decimal> LongDecimal(std::string_view text)
{
    Decimal decimal;
    std::size_t at = text.find_first_not_of("+-");
    bool point = false;
    for (; at < text.size() && (IsDigit(text[at]) || text[at] == '.'); ++at)
    {
        if (text[at] == '.')
        {
            point = true;
            continue;
        }
        if (decimal.digits.size() == kMostDigits)
            return std::nullopt;
        // Zeros in front are not digits of the number; a zero alone would be read as octal's sign.
        if (!decimal.digits.empty() || text[at] != '0')
            decimal.digits += text[at];
        decimal.exponent -= point ? 1 : 0;
    }
    if (decimal.digits.size() <= kDigitsOfADouble)
        return std::nullopt;
    if (at < text.size())
    {
        std::string_view rest = text.substr(at + 1);
        rest.remove_prefix(rest.starts_with('+') ? 1 : 0);
        int exponent = 0;
        if (std::from_chars(rest.data(), rest.data() + rest.size(), exponent).ec != std::errc{} ||
            std::abs(exponent) > kMostExponent)
            return std::nullopt;
        decimal.exponent += exponent;
    }
    return decimal;
}

Rational Exactly(const Decimal& decimal)
{
    const Integer digits(decimal.digits);
    const int power = std::abs(decimal.exponent);
    const Integer tens = PowerOf({power, power});
    return decimal.exponent < 0 ? Rational(digits, tens) : Rational(digits * tens);
}

}  // namespace

Number ReadNumber(std::string_view text) noexcept
{
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    Number number;
    const char* const stop = ReadDecimal(text, number);
    const auto read = static_cast<std::size_t>(stop - text.data());
    if (read == text.size())
        return number;
    const bool isFortran = read != 0 && (*stop == 'd' || *stop == 'D');
    number.fault = NumberFault::NotANumber;
    if (!isFortran)
        return number;
    std::string copy(text);
    copy[read] = 'e';
    if (ReadDecimal(copy, number) != copy.data() + copy.size())
        number.fault = NumberFault::NotANumber;
    return number;
}

double EndOfRange(double rightHandSide, double range, std::string_view text, bool sum)
{
    const std::optional<Decimal> decimal =
        std::isfinite(range) && std::isfinite(rightHandSide) ? LongDecimal(text) : std::nullopt;
    if (!decimal)
        return SumOfDecimals(rightHandSide, sum ? range : -range);
    Rational exact = Exactly(*decimal);
    if (std::signbit(range) == sum)
        exact = -exact;
    return ToDouble(ToRational(rightHandSide) + exact);
}

}  // namespace nuv::mps
