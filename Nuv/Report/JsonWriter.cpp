#include "Nuv/Report/JsonWriter.hpp"

#include "Nuv/Io/Utf8.hpp"

#include <charconv>
#include <cmath>

namespace nuv
{
namespace
{

std::string Escaped(char c)
{
    constexpr std::string_view kDigits = "0123456789abcdef";
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
    return std::string("\\u00") + kDigits[code >> 4] + kDigits[code & 15U];
}

}  // namespace

std::string JsonString(std::string_view text)
{
    std::string result = "\"";
    while (!text.empty())
    {
        const Utf8Character character = FirstCharacter(text);
        if (character.code == Utf8Character::kNoCharacter)
            result += "\xEF\xBF\xBD";
        else if (character.bytes == 1)
            result += Escaped(text[0]);
        else
            result += text.substr(0, character.bytes);
        text.remove_prefix(character.bytes);
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
