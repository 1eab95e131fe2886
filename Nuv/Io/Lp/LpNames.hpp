/// What the lexer takes for a name and is more likely something else: refused, or warned of. `name`
/// is a part of the text that `log` is about.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"

#include <string_view>

namespace nuv::lp
{

/// Whether each parenthesis of a name has its partner: not in the `(x` and `y)` of `2 (x + y)`.
[[nodiscard]] bool HasBalancedParentheses(std::string_view name) noexcept;

/// Whether a name starts like the `%` of `<= 10%`.
[[nodiscard]] inline bool StartsLikePercentage(std::string_view name) noexcept
{
    return name.starts_with('%');
}

/// Checks the name of anything, where it is met first.
/// @return false if it is refused.
bool CheckName(std::string_view name, DiagnosticLog& log);

/// The same for the name of a variable.
bool CheckVariableName(std::string_view name, DiagnosticLog& log);

/// Refuses the word "nan". @return false.
bool NotANumber(std::string_view name, DiagnosticLog& log);

}  // namespace nuv::lp
