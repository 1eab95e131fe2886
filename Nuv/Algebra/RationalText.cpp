#include "Nuv/Algebra/RationalText.hpp"

#include <algorithm>
#include <charconv>
#include <string>

namespace nuv
{
namespace
{

/// Longer numbers are no one's, and take time with the square of their length.
constexpr long kMostDigits = 10'000;

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Takes the sign off the front. @return whether it was a minus.
bool TakeSign(std::string_view& text)
{
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    return negative;
}

/// The digits as an integer; those of Integer begin with no zero.
std::optional<Integer> ReadDigits(std::string_view text)
{
    if (text.empty() || std::ssize(text) > kMostDigits || !std::ranges::all_of(text, IsDigit))
        return std::nullopt;
    const std::size_t first = std::min(text.find_first_not_of('0'), text.size() - 1);
    return Integer(std::string(text.substr(first)));
}

/// The same without leading zeros, which some languages take for the mark of an octal number.
std::optional<Integer> ReadInteger(std::string_view text)
{
    return text.size() > 1 && text.front() == '0' ? std::nullopt : ReadDigits(text);
}

/// @return the exponent behind 'e', 0 for none; nothing if it is no number or beyond all use.
std::optional<long> ReadExponent(std::string_view text)
{
    if (text.empty())
        return 0;
    text.remove_prefix(1);
    const bool negative = TakeSign(text);
    long exponent = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), exponent);
    if (error != std::errc() || end != text.data() + text.size() || exponent < 0 ||
        exponent > kMostDigits)
        return std::nullopt;
    return negative ? -exponent : exponent;
}

}  // namespace

std::optional<Rational> ReadDecimal(std::string_view text)
{
    const bool negative = TakeSign(text);
    const std::size_t mark = std::min(text.find_first_of("eE"), text.size());
    const std::string_view figures = text.substr(0, mark);
    const std::size_t point = std::min(figures.find('.'), figures.size());
    const std::string_view fraction = figures.substr(std::min(point + 1, figures.size()));
    const std::optional<Integer> digits =
        ReadDigits(std::string(figures.substr(0, point)).append(fraction));
    if (!digits)
        return std::nullopt;
    // Zero has no use for its exponent, but it must be one.
    const std::optional<long> exponent = ReadExponent(text.substr(mark));
    if (!exponent)
        return std::nullopt;
    const long places = std::ssize(fraction) - *exponent;
    const Integer power = Power(10, static_cast<unsigned>(std::abs(places)));
    const Integer signedDigits = negative ? Integer(-*digits) : *digits;
    // same bits (-> <=): over ten to the power of 0
    return places < 0 ? Rational(Integer(signedDigits * power)) : Rational(signedDigits, power);
}

std::optional<Rational> ReadQuotient(std::string_view text)
{
    const bool negative = TakeSign(text);
    const std::size_t bar = text.find('/');
    if (bar == std::string_view::npos)
        return std::nullopt;
    const std::optional<Integer> above = ReadInteger(text.substr(0, bar));
    const std::optional<Integer> below = ReadInteger(text.substr(bar + 1));
    if (!above || !below || *below == 0)
        return std::nullopt;
    const Rational value(*above, *below);
    return negative ? -value : value;
}

std::optional<Rational> ReadRational(std::string_view text)
{
    return text.find('/') == std::string_view::npos ? ReadDecimal(text) : ReadQuotient(text);
}

Rational ToRational(double value, const std::string* text)
{
    const std::optional<Rational> number = text != nullptr ? ReadRational(*text) : std::nullopt;
    return number ? *number : ToRational(value, CoefficientMeaning::ShortestDecimal);
}

std::optional<std::string> ToFullDecimal(const Rational& value)
{
    // Multiplied by 10^places it is an integer, if any power of ten makes it one.
    const Integer& denominator = value.Denominator();
    const auto twos = static_cast<long>(TrailingZeros(denominator));
    long fives = 0;
    Integer rest = denominator / Power(2, static_cast<unsigned>(twos));
    for (Integer quotient, remainder; rest != 1; ++fives)
    {
        Divide(rest, 5, quotient, remainder);
        if (remainder != 0)
            return std::nullopt;
        swap(rest, quotient);
    }
    const long places = std::max(twos, fives);
    const Integer whole =
        Abs(value.Numerator()) * (Power(10, static_cast<unsigned>(places)) / denominator);
    std::string digits = whole.ToString();
    const auto zeros = std::ssize(digits) - 1 - static_cast<long>(digits.find_last_not_of('0'));
    std::string text = value.Sign() < 0 ? "-" : "";
    // With decimal places the last digit is not zero.
    if (zeros > 20)
        return text + digits.substr(0, digits.size() - static_cast<std::size_t>(zeros)) + "e" +
               std::to_string(zeros);
    if (places > std::ssize(digits) + 20)
        return text + digits + "e-" + std::to_string(places);
    if (places >= std::ssize(digits))
        digits.insert(0, static_cast<std::size_t>(places + 1) - digits.size(), '0');
    if (places > 0)
        digits.insert(digits.size() - static_cast<std::size_t>(places), ".");
    return text + digits;
}

}  // namespace nuv
