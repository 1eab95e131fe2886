#include "Nuv/Report/JsonWriter.hpp"

#include <charconv>
#include <cmath>

namespace nuv
{
namespace
{

/// The length of the UTF-8 sequence that `text` begins with, 0 if there is none.
std::size_t SequenceLength(std::string_view text)
{
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const std::size_t length = byte(0) < 0x80   ? 1
                               : byte(0) < 0xC2 ? 0
                               : byte(0) < 0xE0 ? 2
                               : byte(0) < 0xF0 ? 3
                               : byte(0) < 0xF5 ? 4
                                                : 0;
    if (length == 0 || length > text.size())
        return 0;
    for (std::size_t at = 1; at < length; ++at)
        if ((byte(at) & 0xC0U) != 0x80U)
            return 0;
    // Overlong forms, surrogates and what lies beyond the last character.
    if (length == 3 &&
        ((byte(0) == 0xE0 && byte(1) < 0xA0) || (byte(0) == 0xED && byte(1) >= 0xA0)))
        return 0;
    if (length == 4 &&
        ((byte(0) == 0xF0 && byte(1) < 0x90) || (byte(0) == 0xF4 && byte(1) >= 0x90)))
        return 0;
    return length;
}

std::string Escaped(char c)
{
    constexpr std::string_view digits = "0123456789abcdef";
    switch (c)
    {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\n':
        return "\\n";
    case '\t':
        return "\\t";
    case '\r':
        return "\\r";
    default:
        break;
    }
    const auto code = static_cast<unsigned char>(c);
    if (code >= 0x20)
        return std::string(1, c);
    return std::string("\\u00") + digits[code >> 4] + digits[code & 15U];
}

}  // namespace

std::string JsonString(std::string_view text)
{
    std::string result = "\"";
    while (!text.empty())
    {
        const std::size_t length = SequenceLength(text);
        if (length == 1)
            result += Escaped(text[0]);
        else if (length == 0)
            result += "\xEF\xBF\xBD";
        else
            result += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result + "\"";
}

std::string JsonNumber(double value)
{
    if (!std::isfinite(value))
        return "null";
    char buffer[40];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value + 0.0);
    return std::string(buffer, end.ptr);
}

}  // namespace nuv
