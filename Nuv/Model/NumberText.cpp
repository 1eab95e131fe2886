#include "Nuv/Model/NumberText.hpp"

#include <charconv>

namespace nuv
{

void AppendNumber(std::string& text, double value)
{
    // The longest shortest decimal, -2.2250738585072014e-308, has 24 characters.
    char characters[32];
    const std::to_chars_result written =
        std::to_chars(characters, characters + sizeof characters, value);
    text.append(characters, written.ptr);
}

std::string NumberText(double value)
{
    std::string text;
    AppendNumber(text, value);
    return text;
}

}  // namespace nuv
