/// Words that the lexer takes for names and that are more likely something else, so that the format
/// as this library reads and writes it has no such names.
#pragma once

#include <string_view>

namespace nuv::lp
{

/// Whether each parenthesis of a name has its partner: not in the `(x` and `y)` of `2 (x + y)`.
[[nodiscard]] inline bool HasBalancedParentheses(std::string_view name) noexcept
{
    std::size_t open = 0;
    for (const char c : name)
    {
        if (c == ')' && open == 0)
            return false;
        open += c == '(';
        open -= c == ')';
    }
    return open == 0;
}

/// Whether a name starts like the `%` of `<= 10%`.
[[nodiscard]] inline bool StartsLikePercentage(std::string_view name) noexcept
{
    return name.starts_with('%');
}

}  // namespace nuv::lp
