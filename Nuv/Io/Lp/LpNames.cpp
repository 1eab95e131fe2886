#include "Nuv/Io/Lp/LpNames.hpp"

#include "Nuv/Io/Lp/LpKeywords.hpp"

#include <fmt/core.h>

#include <algorithm>

namespace nuv::lp
{
namespace
{

constexpr std::size_t kLongestCommonName = 255;

bool IsDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

/// e1, E12: a number's exponent to a careless reader.
bool LooksLikeExponent(std::string_view name) noexcept
{
    return name.size() >= 2 && (name[0] == 'e' || name[0] == 'E') &&
           std::all_of(name.begin() + 1, name.end(), IsDigit);
}

/// x/2: a quotient that would pass for a name.
bool LooksLikeQuotient(std::string_view name) noexcept
{
    const std::size_t slash = name.rfind('/');
    if (slash == std::string_view::npos || slash + 1 == name.size())
        return false;
    const std::string_view divisor = name.substr(slash + 1);
    return std::all_of(divisor.begin(), divisor.end(),
                       [](char c) { return IsDigit(c) || c == '.'; });
}

struct LookAlike
{
    std::string_view bytes;
    std::string_view called;
    std::string_view write;
};

/// Characters that word processors and web pages put where the format has plain ones.
constexpr LookAlike kLookAlikes[] = {
    {"\xE2\x89\xA4", "≤", "<="},
    {"\xE2\x89\xA5", "≥", ">="},
    {"\xE2\x88\x92", "− (the long minus)", "-"},
    {"\xE2\x80\x93", "– (a dash)", "-"},
    {"\xC3\x97", "×", "a blank"},
    {"\xC2\xB7", "·", "a blank"},
    {"\xC2\xA0", "a no-break space", "a blank"},
};

/// What is written like a name here and can hardly be meant for one. @return false if it is that.
bool RefuseMistakes(std::string_view name, DiagnosticLog& log)
{
    if (LooksLikeQuotient(name))
    {
        return log.Fail(name.data(), "lp.quotient", fmt::format("'{}' divides", name),
                        "write the coefficient as one number: 0.5 x for x/2");
    }
    if (!HasBalancedParentheses(name))
    {
        return log.Fail(name.data(), "lp.unbalanced-parenthesis",
                        fmt::format("the name '{}' has a parenthesis without its partner", name),
                        "parentheses are characters of names here: write 2 x + 2 y for 2 (x + y)");
    }
    if (StartsLikePercentage(name))
    {
        return log.Fail(name.data(), "lp.percentage",
                        fmt::format("'{}' would be the name of a variable", name),
                        "write 0.1 for 10%; a name cannot start with '%'");
    }
    for (const LookAlike& look : kLookAlikes)
    {
        const std::size_t found = name.find(look.bytes);
        if (found != std::string_view::npos)
        {
            return log.Fail(name.data() + found, "lp.look-alike",
                            fmt::format("{} is no sign of this format", look.called),
                            fmt::format("write {} in its place", look.write));
        }
    }
    return true;
}

/// Names that other programs take for something else.
void WarnOfOthers(std::string_view name, DiagnosticLog& log)
{
    if (name.size() > kLongestCommonName)
    {
        log.Warn(name.data(), "lp.long-name", fmt::format("a name of {} bytes", name.size()),
                 "other programs accept at most 255");
    }
    if (name.find('[') != std::string_view::npos)
    {
        log.Note(name.data(), "lp.bracket-name", fmt::format("'{}' has brackets", name),
                 "other programs take them for the start of quadratic terms");
    }
    if (name.ends_with(';'))
    {
        log.Warn(name.data(), "lp.semicolon",
                 fmt::format("the semicolon is a part of the name '{}'", name),
                 "rows end with their line, without a semicolon");
    }
    if (IsKeyword(name) || EqualsIgnoringCase(name, "free"))
    {
        log.Warn(name.data(), "lp.keyword-name",
                 fmt::format("'{}' is a word of the format, taken for a name here", name),
                 "rename it, or other programs misread it");
    }
}

}  // namespace

bool HasBalancedParentheses(std::string_view name) noexcept
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

bool CheckVariableName(std::string_view name, DiagnosticLog& log)
{
    if (!CheckName(name, log))
        return false;
    if (EqualsIgnoringCase(name, "nan"))
        return NotANumber(name, log);
    if (LooksLikeExponent(name))
    {
        log.Warn(name.data(), "lp.exponent-name",
                 fmt::format("the variable '{}' looks like an exponent", name),
                 "rename it, or other programs take it for a part of the number before it");
    }
    return true;
}

bool CheckName(std::string_view name, DiagnosticLog& log)
{
    if (!RefuseMistakes(name, log))
        return false;
    WarnOfOthers(name, log);
    return true;
}

bool NotANumber(std::string_view name, DiagnosticLog& log)
{
    return log.Fail(name.data(), "lp.not-a-number", fmt::format("'{}' is not a number", name),
                    "write the number, or rename the variable");
}

}  // namespace nuv::lp
