// Doubles as decimals, for WebAssembly. The C++ library's own tables for it would be half of the
// program; JavaScript has the same shortest decimals and the same nearest doubles, and the common
// numbers need neither.
#include "Host.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "fast_float/fast_float.h"

namespace
{

constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                              1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                              1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int kLargestPower = 22;
constexpr double kFifteenDigits = 1e15;
constexpr int kMostPlaces = 6;

/// The significant digits of a positive number, without zeros at the end, and the power of ten of
/// the first of them.
struct Digits
{
    char text[24];
    int count = 0;
    int power = 0;
};

Digits DigitsOf(unsigned long long integer, int places)
{
    char reversed[24];
    int length = 0;
    for (; integer != 0; integer /= 10)
        reversed[length++] = static_cast<char>('0' + integer % 10);
    Digits digits;
    digits.power = length - 1 - places;
    for (int at = length; at != 0; --at)
        digits.text[digits.count++] = reversed[at - 1];
    while (digits.count > 1 && digits.text[digits.count - 1] == '0')
        --digits.count;
    return digits;
}

/// Two decimals of at most 15 digits never read as the same double, so one that reads back is the
/// shortest. The quotient of integers below 10^15 and 10^6, both doubles, is rounded once: it is
/// the nearest double to the decimal.
bool IsShortDecimal(double magnitude, Digits& digits)
{
    for (int places = 0; places <= kMostPlaces; ++places)
    {
        const double shifted = std::nearbyint(magnitude * kPowers[places]);
        if (!(shifted < kFifteenDigits))
            return false;
        if (shifted / kPowers[places] != magnitude)
            continue;
        digits = DigitsOf(static_cast<unsigned long long>(shifted), places);
        return true;
    }
    return false;
}

/// JavaScript writes d.ddde+x.
Digits AskHost(double magnitude)
{
    char text[32];
    const char* const end = text + HostWrite(magnitude, text);
    const char* const mark = std::find<const char*>(text, end, 'e');
    Digits digits;
    for (const char* at = text; at != mark; ++at)
        if (*at != '.')
            digits.text[digits.count++] = *at;
    for (const char* at = mark + 2; at < end; ++at)
        digits.power = 10 * digits.power + (*at - '0');
    if (mark[1] == '-')
        digits.power = -digits.power;
    return digits;
}

Digits ShortestDigits(double magnitude)
{
    Digits digits;
    if (magnitude == 0.0)
    {
        digits.text[digits.count++] = '0';
        return digits;
    }
    return IsShortDecimal(magnitude, digits) ? digits : AskHost(magnitude);
}

char* Put(char* out, std::string_view text)
{
    return std::copy(text.begin(), text.end(), out);
}

char* PutScientific(char* out, const Digits& digits)
{
    *out++ = digits.text[0];
    if (digits.count > 1)
        *out++ = '.';
    out = Put(out, {digits.text + 1, static_cast<std::size_t>(digits.count) - 1});
    *out++ = 'e';
    *out++ = digits.power < 0 ? '-' : '+';
    const int power = std::abs(digits.power);
    if (power >= 100)
        *out++ = static_cast<char>('0' + power / 100);
    *out++ = static_cast<char>('0' + power / 10 % 10);
    *out++ = static_cast<char>('0' + power % 10);
    return out;
}

/// All digits of an integer below 2^128, also those that no shortest decimal has.
char* PutInteger(char* out, double magnitude)
{
    char reversed[40];
    int length = 0;
    auto rest = static_cast<unsigned __int128>(magnitude);
    do
        reversed[length++] = static_cast<char>('0' + static_cast<int>(rest % 10));
    while ((rest /= 10) != 0);
    return std::reverse_copy(reversed, reversed + length, out);
}

char* PutPlain(char* out, const Digits& digits, double magnitude)
{
    if (digits.count <= digits.power + 1)
        return PutInteger(out, magnitude);
    const auto before = static_cast<std::size_t>(std::max(digits.power + 1, 0));
    out = before == 0 ? Put(out, "0") : Put(out, {digits.text, before});
    *out++ = '.';
    for (int zero = digits.power + 1; zero < 0; ++zero)
        *out++ = '0';
    return Put(out, {digits.text + before, static_cast<std::size_t>(digits.count) - before});
}

/// What is not finite has a name; @return null for all others.
const char* NameOf(double value)
{
    return std::isfinite(value) ? nullptr : std::isnan(value) ? "nan" : "inf";
}

std::to_chars_result Deliver(char* first, char* last, const char* text, const char* end)
{
    if (last - first < end - text)
        return {last, std::errc::value_too_large};
    return {std::copy(text, end, first), std::errc()};
}

/// Beyond these powers of ten the plain form is the longer one.
constexpr int kLeastPlainPower = -5;
constexpr int kLargestPlainPower = 21;

}  // namespace

std::to_chars_result std::to_chars(char* first, char* last, double value, chars_format format)
{
    if (format != chars_format::scientific)
        std::abort();
    char text[32];
    char* end = std::signbit(value) ? Put(text, "-") : text;
    end = NameOf(value) ? Put(end, NameOf(value))
                        : PutScientific(end, ShortestDigits(std::fabs(value)));
    return Deliver(first, last, text, end);
}

/// The shorter of the plain and the scientific form, the plain one of two of the same length.
std::to_chars_result std::to_chars(char* first, char* last, double value)
{
    char scientific[32];
    char* const sign = std::signbit(value) ? Put(scientific, "-") : scientific;
    if (NameOf(value))
        return Deliver(first, last, scientific, Put(sign, NameOf(value)));
    const Digits digits = ShortestDigits(std::fabs(value));
    const char* const end = PutScientific(sign, digits);
    if (digits.power < kLeastPlainPower || digits.power > kLargestPlainPower)
        return Deliver(first, last, scientific, end);
    char plain[64];
    const char* const plainEnd =
        PutPlain(std::copy(scientific, sign, plain), digits, std::fabs(value));
    return plainEnd - plain <= end - scientific ? Deliver(first, last, plain, plainEnd)
                                                : Deliver(first, last, scientific, end);
}

namespace fast_float
{
namespace
{

bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// A number's digits, as far as 15 of them say it.
struct Mantissa
{
    double value = 0.0;
    int digits = 0;  ///< significant ones
    int places = 0;  ///< behind the point

    const char* Read(const char* at, const char* last, bool isFraction)
    {
        for (; at != last && IsDigit(*at); ++at)
        {
            places += isFraction ? 1 : 0;
            digits += digits != 0 || *at != '0' ? 1 : 0;
            if (digits <= 15)
                value = 10.0 * value + (*at - '0');
        }
        return at;
    }
};

/// The exponent behind an 'e', if there is one; else nothing is read.
const char* ReadExponent(const char* at, const char* last, int& exponent)
{
    constexpr int kMost = 100000;
    const char* digit = at;
    if (digit == last || (*digit != 'e' && *digit != 'E'))
        return at;
    ++digit;
    const bool isNegative = digit != last && *digit == '-';
    if (digit != last && (*digit == '-' || *digit == '+'))
        ++digit;
    if (digit == last || !IsDigit(*digit))
        return at;
    for (; digit != last && IsDigit(*digit); ++digit)
        exponent = std::min(10 * exponent + (*digit - '0'), kMost);
    if (isNegative)
        exponent = -exponent;
    return digit;
}

}  // namespace

from_chars_result from_chars(const char* first, const char* last, double& value)
{
    const bool isNegative = first != last && *first == '-';
    const char* const begin = isNegative ? first + 1 : first;
    Mantissa mantissa;
    const char* at = mantissa.Read(begin, last, false);
    bool hasDigits = at != begin;
    if (at != last && *at == '.')
    {
        const char* const fraction = at + 1;
        at = mantissa.Read(fraction, last, true);
        hasDigits = hasDigits || at != fraction;
    }
    if (!hasDigits)
        return {first, std::errc::invalid_argument};
    int exponent = 0;
    at = ReadExponent(at, last, exponent);
    exponent -= mantissa.places;
    // Both factors are doubles as they stand, so that the one rounding gives the nearest.
    if (mantissa.digits <= 15 && exponent >= -kLargestPower && exponent <= kLargestPower)
        value =
            exponent < 0 ? mantissa.value / kPowers[-exponent] : mantissa.value * kPowers[exponent];
    else
        value = HostRead(begin, static_cast<std::size_t>(at - begin));
    if (isNegative)
        value = -value;
    return {at, std::errc()};
}

}  // namespace fast_float
