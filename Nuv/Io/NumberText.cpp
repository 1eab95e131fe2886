#include "Nuv/Io/NumberText.hpp"

#include "Nuv/Algebra/RationalText.hpp"
#include "Nuv/Model/WrittenNumber.hpp"

// The macro says whether the library has all of <charconv>, for doubles too.
#if !defined(__cpp_lib_to_chars)
#include <fast_float/fast_float.h>

#include <algorithm>
#endif

#include <cmath>
#include <optional>

namespace nuv
{

namespace
{

/// From here on integers may have more digits than the shortest decimal, and std::to_chars writes
/// them all where that takes no more room.
constexpr double kEveryInteger = 9007199254740992.0;

}  // namespace

void AppendNumber(std::string& text, double value)
{
    // The longest shortest decimal, -2.2250738585072014e-308, has 24 characters.
    char characters[32];
    char* const end = characters + sizeof characters;
    const std::to_chars_result written = std::to_chars(characters, end, value);
    const std::string_view plain(characters, static_cast<std::size_t>(written.ptr - characters));
    text.append(plain);
    if (std::fabs(value) < kEveryInteger || !std::isfinite(value) ||
        plain.find('e') != std::string_view::npos)
        return;
    // The same length with zeros for the digits that mean nothing.
    const std::size_t length = plain.size() - (value < 0.0 ? 1 : 0);
    const std::size_t begin = text.size() - length;
    const std::to_chars_result shortest =
        std::to_chars(characters, end, std::fabs(value), std::chars_format::scientific);
    std::size_t at = begin;
    for (const char* digit = characters; digit != shortest.ptr && *digit != 'e'; ++digit)
        if (*digit != '.')
            text[at++] = *digit;
    for (; at < text.size(); ++at)
        text[at] = '0';
}

std::string NumberText(double value)
{
    std::string text;
    AppendNumber(text, value);
    return text;
}

std::string NumberText(const WrittenNumber& number)
{
    if (!number.exact)
        return NumberText(number.value);
    const std::optional<std::string> decimal = ToFullDecimal(*number.exact);
    return decimal ? *decimal : ToString(*number.exact);
}

#if defined(__cpp_lib_to_chars)

std::from_chars_result ReadDouble(const char* first, const char* last, double& value) noexcept
{
    return std::from_chars(first, last, value);
}

#else

std::from_chars_result ReadDouble(const char* first, const char* last, double& value) noexcept
{
    const fast_float::from_chars_result read = fast_float::from_chars(first, last, value);
    if (read.ec != std::errc())
        return {first, read.ec};
    // What has digits and is infinite, or is not 0 and yet read as 0, is out of range.
    const char* const exponent =
        std::find_if(first, read.ptr, [](char c) { return c == 'e' || c == 'E'; });
    const auto hasDigitFrom = [&](char least)
    { return std::any_of(first, exponent, [=](char c) { return c >= least && c <= '9'; }); };
    const bool isOutOfRange =
        (std::isinf(value) && hasDigitFrom('0')) || (value == 0.0 && hasDigitFrom('1'));
    return {read.ptr, isOutOfRange ? std::errc::result_out_of_range : std::errc()};
}

#endif

bool IsBelowDoubles(std::string_view text) noexcept
{
    // Only zeros stand before its point, or its exponent is negative.
    const std::size_t letter = text.find_first_of("eE");
    if (letter != std::string_view::npos)
        return text.substr(letter + 1).starts_with('-');
    return text.substr(0, text.find('.')).find_first_of("123456789") == std::string_view::npos;
}

}  // namespace nuv
