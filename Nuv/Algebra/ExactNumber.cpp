/// Doubles taken apart, as they are stored or as the shortest decimal says.
#include "Nuv/Algebra/ExactNumber.hpp"

#include <charconv>
#include <cmath>

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

/// Whole numbers below this have at most 15 digits, and two decimals of at most 15 digits never
/// read as the same double: the shortest decimal of such a number has no more digits than the
/// number itself, and so is the number.
constexpr double kDecimalsOfFifteenDigits = 1e15;

bool IsShortWhole(double value) noexcept
{
    return std::fabs(value) < kDecimalsOfFifteenDigits &&
           static_cast<double>(static_cast<std::int64_t>(value)) == value;
}

/// With the powers of ten in the scale, as where the decimal is read.
ExactNumber TakeApartWhole(std::int64_t value) noexcept
{
    ExactNumber number{value, {}};
    for (; number.mantissa % 10 == 0; number.mantissa /= 10)
        ++number.scale.five;
    number.scale.two = number.scale.five;
    return number;
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
                         : IsShortWhole(value) ? TakeApartWhole(static_cast<std::int64_t>(value))
                                               : TakeApartWritten(value);
    for (; (number.mantissa & 0xFF) == 0; number.scale.two += 8)
        number.mantissa /= 256;
    for (; (number.mantissa & 1) == 0; ++number.scale.two)
        number.mantissa /= 2;
    return number;
}

}  // namespace nuv
