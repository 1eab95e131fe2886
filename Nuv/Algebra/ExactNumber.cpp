/// Doubles taken apart, as they are stored or as the shortest decimal says.
#include "Nuv/Algebra/ExactNumber.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
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

/// Of most numbers in models. Decimals of at most 15 digits are further apart than doubles, so no
/// two of them read back to the same one: if one of them does, it is the shortest but for zeros at
/// its end. That m / 10^k does is seen by dividing, as both are doubles and the quotient is rounded
/// as reading rounds it.
bool TakeApartShort(double value, ExactNumber& number) noexcept
{
    constexpr double kPowers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8};
    constexpr double kLimit = 1e15;
    const double magnitude = std::fabs(value);
    // same bits (-> 1): one place and a zero that is cut off
    for (int places = 0; places < static_cast<int>(std::size(kPowers)); ++places)
    {
        const double product = magnitude * kPowers[places];
        if (product >= kLimit - 1.0)  // same bits: the long way comes to the same
            return false;
        const auto digits = static_cast<std::int64_t>(product + 0.5);
        if (static_cast<double>(digits) / kPowers[places] != magnitude)
            continue;
        number = {digits, {-places, -places}};
        // Without places behind the point there may be zeros at the end.
        for (; number.mantissa % 10 == 0; ++number.scale.two, ++number.scale.five)
            number.mantissa /= 10;
        if (value < 0.0)
            number.mantissa = -number.mantissa;
        return true;
    }
    return false;
}

/// The shortest decimal in scientific form has at most 17 digits, so they fit.
ExactNumber TakeApartLong(double value) noexcept
{
    char text[32];
    const std::to_chars_result written =
        std::to_chars(text, text + sizeof text, value, std::chars_format::scientific);
    ExactNumber number;
    bool negative = false;
    bool fraction = false;
    int exponent = 0;
    for (const char* at = text;; ++at)
    {
        if (*at == '-')
            negative = true;
        else if (*at == '.')
            fraction = true;
        else if (*at == 'e')  // which scientific form has, and ends with
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
    return number;
}

ExactNumber TakeApartWritten(double value) noexcept
{
    ExactNumber number;
    // same bits (never): what is short comes out of the long way too
    if (!TakeApartShort(value, number))
        number = TakeApartLong(value);
    while (number.scale.five < 0 && number.mantissa % 5 == 0)
    {
        number.mantissa /= 5;
        ++number.scale.five;
    }
    return number;
}

}  // namespace

ExactNumber TakeApart(double value, CoefficientMeaning meaning) noexcept
{
    if (value == 0.0)
        return {};
    ExactNumber number = meaning == CoefficientMeaning::StoredDouble ? TakeApartStored(value)
                                                                     : TakeApartWritten(value);
    for (; (number.mantissa & 0xFF) == 0; number.scale.two += 8)
        number.mantissa /= 256;
    for (; (number.mantissa & 1) == 0; ++number.scale.two)
        number.mantissa /= 2;
    return number;
}

std::int64_t ScaledInWord(const ExactNumber& number, Scale scale) noexcept
{
    static constexpr auto kPowersOfFive = []
    {
        std::array<std::int64_t, 28> powers{1};  // those below 2^63
        for (std::size_t k = 1; k != powers.size(); ++k)
            powers[k] = 5 * powers[k - 1];
        return powers;
    }();
    const Scale left = number.scale + scale;
    // same bits (-> 63): there is no room by 63
    if (left.two > 62 || left.five >= static_cast<int>(kPowersOfFive.size()))
        return 0;
    const std::int64_t five = kPowersOfFive[static_cast<std::size_t>(left.five)];
    const std::int64_t room = std::numeric_limits<std::int64_t>::max() >> left.two;
    if (five > room || number.mantissa > room / five || number.mantissa < -(room / five))
        return 0;
    return five * number.mantissa * (std::int64_t{1} << left.two);
}

}  // namespace nuv
