/// Words of file formats, which count in any letter case. Only the letters of ASCII have one here.
#pragma once

#include <cstddef>
#include <string_view>

namespace nuv
{

[[nodiscard]] inline char ToLower(char c) noexcept
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// @return whether `text` reads as `word`, which is in lower case, in any letter case.
[[nodiscard]] inline bool EqualsIgnoringCase(std::string_view text, std::string_view word) noexcept
{
    if (text.size() != word.size())
        return false;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (ToLower(text[i]) != word[i])
            return false;
    }
    return true;
}

}  // namespace nuv
