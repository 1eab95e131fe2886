/// What the parser says about words that have no place where they stand, and about names that look
/// like something else.
#include "Nuv/Io/Lp/LpNames.hpp"
#include "Nuv/Io/Lp/LpParser.hpp"

#include <fmt/format.h>

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

struct Refusal
{
    Section section;
    std::string_view what;
    std::string_view hint;
};

constexpr Refusal kRefusals[] = {
    {Section::General, "integer variables", "--relax reads them as continuous ones"},
    {Section::Binary, "binary variables", "--relax reads them as continuous ones between 0 and 1"},
    {Section::SemiContinuous, "semi-continuous variables",
     "state them as continuous ones, without the section"},
    {Section::SpecialOrderedSets, "special ordered sets", "a linear program cannot say that"},
    {Section::LazyConstraints, "lazy constraints", "state them as rows in Subject To"},
    {Section::UserCuts, "user cuts",
     "take the section out: cuts do not change a linear program's answer"},
    {Section::GeneralConstraints, "general constraints", "a linear program cannot say that"},
    {Section::PiecewiseLinear, "a piecewise-linear objective",
     "state it with rows and more variables"},
    {Section::MultiObjectives, "several objectives",
     "keep one of them; the others can be bounded by rows"},
};

constexpr std::string_view kSections =
    "sections are Maximize or Minimize, Subject To, Bounds and End";

bool LooksLikeSemicolonDialect(std::string_view text) noexcept
{
    const std::string_view head = text.substr(0, 2000);
    return head.find(";\n") != std::string_view::npos ||
           head.find(";\r") != std::string_view::npos || (!text.empty() && text.ends_with(';'));
}

}  // namespace

bool Parser::AtSection(bool mayBeName)
{
    const Keyword keyword = MatchKeyword(m_token, m_lexer);
    if (keyword.section == Section::None || keyword.section == Section::Maximize ||
        keyword.section == Section::Minimize)
        return false;
    if (mayBeName && !keyword.manyWords)
    {
        const Token next = Peek();
        const bool sameLine = !next.firstOfLine;
        if (next.IsRelation() || next.kind == TokenKind::Colon || (sameLine && next.IsSign()))
            return false;
        if (m_place == Place::Bounds && sameLine && EqualsIgnoringCase(next.text, "free"))
            return false;
    }
    m_section = keyword;
    return true;
}

/// Called once for each variable, where it is met first.
bool Parser::CheckNewName(std::string_view name)
{
    if (!CheckName(name, name.data()))
        return false;
    if (EqualsIgnoringCase(name, "nan"))
        return NotANumber(name);
    if (LooksLikeExponent(name))
    {
        m_log.Warn(name.data(), "lp.exponent-name",
                   fmt::format("the variable '{}' looks like an exponent", name),
                   "rename it, or other programs take it for a part of the number before it");
    }
    return true;
}

bool Parser::CheckName(std::string_view name, const char* at)
{
    if (LooksLikeQuotient(name))
    {
        return m_log.Fail(at, "lp.quotient", fmt::format("'{}' divides", name),
                          "write the coefficient as one number: 0.5 x for x/2");
    }
    if (!HasBalancedParentheses(name))
    {
        return m_log.Fail(
            at, "lp.unbalanced-parenthesis",
            fmt::format("the name '{}' has a parenthesis without its partner", name),
            "parentheses are characters of names here: write 2 x + 2 y for 2 (x + y)");
    }
    if (StartsLikePercentage(name))
    {
        return m_log.Fail(at, "lp.percentage",
                          fmt::format("'{}' would be the name of a variable", name),
                          "write 0.1 for 10%; a name cannot start with '%'");
    }
    for (const LookAlike& look : kLookAlikes)
    {
        const std::size_t found = name.find(look.bytes);
        if (found != std::string_view::npos)
        {
            return m_log.Fail(at + found, "lp.look-alike",
                              fmt::format("{} is no sign of this format", look.called),
                              fmt::format("write {} in its place", look.write));
        }
    }
    if (name.size() > kLongestCommonName)
    {
        m_log.Warn(at, "lp.long-name", fmt::format("a name of {} bytes", name.size()),
                   "other programs accept at most 255");
    }
    if (name.ends_with(';'))
    {
        m_log.Warn(at, "lp.semicolon",
                   fmt::format("the semicolon is a part of the name '{}'", name),
                   "rows end with their line, without a semicolon");
    }
    if (IsKeyword(name) || EqualsIgnoringCase(name, "free"))
    {
        m_log.Warn(at, "lp.keyword-name",
                   fmt::format("'{}' is a word of the format, taken for a name here", name),
                   "rename it, or other programs misread it");
    }
    return true;
}

std::string Parser::Where() const
{
    switch (m_place)
    {
    case Place::Objective:
        return "in the objective";
    case Place::Bounds:
        return "in Bounds";
    case Place::Integers:
        return "in a list of variables";
    case Place::Start:
        return "before the model";
    case Place::Rows:
        break;
    }
    const std::uint32_t row = m_model.RowCount() - 1;
    const std::string_view name = m_model.RowName(row);
    return name.empty() ? fmt::format("in row R{}", row + 1) : fmt::format("in row '{}'", name);
}

bool Parser::Unexpected()
{
    if (!FlushTerms())
        return false;
    const std::string_view word = m_token.text;
    switch (m_token.kind)
    {
    case TokenKind::End:
        return FailHere("lp.unfinished", fmt::format("the file ends {}", Where()),
                        "check that it is complete");
    case TokenKind::Binary:
        return FailHere(
            "lp.binary",
            fmt::format("byte 0x{:02X} is not text", static_cast<unsigned char>(word[0])),
            "this is not an LP file, or it is damaged");
    case TokenKind::Range:
        return FailHere("lp.number-out-of-range",
                        fmt::format("{} is beyond double precision", word.substr(0, 40)),
                        "scale the model, or write inf in a bound");
    case TokenKind::Name:
        return UnexpectedName();
    case TokenKind::Number:
        return UnexpectedNumber();
    case TokenKind::Arrow:
        return FailHere("lp.indicator", "indicator rows are refused",
                        "a linear program cannot say 'if'");
    case TokenKind::Colon:
        return FailHere("lp.unexpected-colon", fmt::format("a colon {}", Where()),
                        "a label is one name before the row, such as 'limit: x + y <= 4'");
    default:
        break;
    }
    if (word == "*" || word == "/" || word == "^" || word == "[" || word == "]")
    {
        if (word == "*" || word == "/")
        {
            return FailHere(
                word == "*" ? "lp.product" : "lp.quotient", fmt::format("'{}' {}", word, Where()),
                word == "*" ? "a coefficient stands before its variable without a sign: 2 x"
                            : "write the coefficient as one number: 0.5 x for 1/2 x");
        }
        return FailHere("lp.quadratic",
                        fmt::format("'{}' {}: quadratic terms are refused", word, Where()),
                        "only linear terms, such as 2 x, can be read");
    }
    return FailHere("lp.unexpected", fmt::format("'{}' has no place {}", word, Where()),
                    m_place == Place::Bounds ? "a bound is 0 <= x <= 4, x >= -2, x = 3 or x free"
                                             : "write sums such as 2 x + 3 y");
}

bool Parser::UnexpectedName()
{
    if (EqualsIgnoringCase(m_token.text, "nan"))
        return NotANumber(m_token.text);
    if (m_place == Place::Bounds)
    {
        return FailHere("lp.bad-bound", fmt::format("'{}' has no place in a bound", m_token.text),
                        "a bound is 0 <= x <= 4, x >= -2, x = 3 or x free");
    }
    if (!CheckName(m_token.text, m_token.Begin()))
        return false;
    std::string_view hint = "write + or - between terms; products of variables are not linear";
    if (m_place == Place::Objective && m_token.firstOfLine)
        hint = "write Subject To before the first row, or + or - before a further term";
    return FailHere("lp.missing-sign",
                    fmt::format("no sign stands before '{}' {}", m_token.text, Where()),
                    std::string(hint));
}

bool Parser::NotANumber(std::string_view name)
{
    return m_log.Fail(name.data(), "lp.not-a-number", fmt::format("'{}' is not a number", name),
                      "write the number, or rename the variable");
}

bool Parser::UnexpectedNumber()
{
    const Token next = Peek();
    if (next.kind == TokenKind::Name && next.glued)
    {
        return FailHere("lp.name-starts-with-digit",
                        fmt::format("'{}{}' starts with a digit", m_token.text, next.text),
                        "names start with a letter; a number before one is its coefficient");
    }
    return FailHere("lp.missing-sign",
                    fmt::format("no sign stands before {} {}", m_token.text, Where()),
                    m_place == Place::Bounds ? "a bound is 0 <= x <= 4, x >= -2, x = 3 or x free"
                                             : "write + or - between terms");
}

bool Parser::SecondRelation()
{
    if (!FlushTerms())
        return false;
    return FailHere("lp.second-relation", fmt::format("a second '{}' {}", m_token.text, Where()),
                    m_place == Place::Bounds
                        ? "write lower <= variable <= upper"
                        : "a range is lower <= expression <= upper, with the expression between");
}

bool Parser::RowWithoutRelation(const Side& side)
{
    if (!FlushTerms())
        return false;
    if (side.bareName && (m_token.firstOfLine || m_token.kind == TokenKind::End))
    {
        const Token name = Lexer({side.begin, static_cast<std::size_t>(m_text.data() +
                                                                       m_text.size() - side.begin)})
                               .Next();
        return m_log.Fail(side.begin, "lp.unknown-section",
                          fmt::format("'{}' is neither a section nor a row", name.text),
                          std::string(kSections));
    }
    if (side.bareName && m_token.kind == TokenKind::Name && Peek().firstOfLine)
    {
        return FailHere("lp.missing-sign",
                        fmt::format("no sign stands before '{}' {}", m_token.text, Where()),
                        fmt::format("if the line names a section: {}", kSections));
    }
    const bool labelNext = m_token.kind == TokenKind::Name && Peek().kind == TokenKind::Colon;
    const bool ends = m_token.firstOfLine || m_token.kind == TokenKind::End || labelNext;
    if (ends && (m_token.kind == TokenKind::Name || m_token.kind == TokenKind::Number ||
                 m_token.kind == TokenKind::End))
    {
        return m_log.Fail(side.begin, "lp.missing-relation",
                          fmt::format("there is no <=, >= or = {}", Where()),
                          "a right-hand side ends with its line, and the next row starts");
    }
    return Unexpected();
}

bool Parser::Refuse(const Keyword& keyword)
{
    for (const Refusal& refusal : kRefusals)
    {
        if (refusal.section == keyword.section)
        {
            return m_log.Fail(
                keyword.text.data(), "lp.refused-section",
                fmt::format("section '{}': {} are refused", keyword.text, refusal.what),
                std::string(refusal.hint));
        }
    }
    return m_log.Fail(keyword.text.data(), "lp.unexpected",
                      fmt::format("'{}' has no place here", keyword.text), std::string(kSections));
}

/// The first word is not Maximize or Minimize: the best guess at what the file is instead.
bool Parser::NotAModel()
{
    const std::string_view word = m_token.text;
    if (m_text.starts_with("\xFF\xFE") || m_text.starts_with("\xFE\xFF"))
        return m_log.Fail(m_text.data(), "lp.utf-16", "this is UTF-16 text",
                          "save the file as UTF-8");
    if (m_token.kind == TokenKind::End)
        return m_log.Fail(m_text.data(), "lp.empty", "there is no model in the file",
                          "it starts with Maximize or Minimize");
    if (m_token.kind == TokenKind::Binary)
        return Unexpected();
    if (m_token.kind == TokenKind::Colon || word == "/" || word.starts_with("//") ||
        LooksLikeSemicolonDialect(m_text))
    {
        return FailHere("lp.other-dialect",
                        "this looks like the lp_solve language, which is another one",
                        "convert it to CPLEX-LP, which starts with a line 'Maximize' or 'Minimize' "
                        "and has no semicolons");
    }
    if (word == "NAME" || word == "ROWS" || word == "*")
        return FailHere("lp.looks-like-mps", "this looks like an MPS file", "name it .mps");
    if (MatchKeyword(m_token, m_lexer).section == Section::Constraints)
    {
        return FailHere("lp.no-objective", "the objective is missing",
                        "write Maximize or Minimize first; the objective itself may be empty");
    }
    return FailHere(
        "lp.no-objective",
        fmt::format("a model starts with Maximize or Minimize, not with '{}'", word.substr(0, 40)),
        "if this is not an LP file, name it after its kind");
}

}  // namespace nuv::lp
