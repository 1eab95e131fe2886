#include "Nuv/Io/Lp/LpMessages.hpp"

#include "Nuv/Io/Lp/LpNames.hpp"
#include "Nuv/Io/NumberText.hpp"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

namespace nuv::lp
{
namespace
{

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

std::string Messages::Where() const
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
    return m_row.empty() ? fmt::format("in row R{}", m_rowNumber)
                         : fmt::format("in row '{}'", m_row);
}

bool Messages::NumberOutOfRange(const Token& token)
{
    const std::string_view shown = token.text.substr(0, 40);
    const bool isQuotient = token.text.find('/') != std::string_view::npos;
    if (isQuotient ? token.value == 0.0 : IsBelowDoubles(token.text))
        return Fail(token, "lp.number-out-of-range",
                    fmt::format("{} is nearer to 0 than any double", shown),
                    "write 0, or scale the model");
    return Fail(token, "lp.number-out-of-range",
                fmt::format("{} is beyond the largest double", shown),
                "scale the model, or write inf in a bound");
}

bool Messages::Unexpected(const Token& token, const Token& next)
{
    const std::string_view word = token.text;
    switch (token.kind)
    {
    case TokenKind::End:
        return Fail(token, "lp.unfinished", fmt::format("the file ends {}", Where()),
                    "check that it is complete");
    case TokenKind::Binary:
        return Fail(token, "lp.binary",
                    fmt::format("byte 0x{:02X} is not text", static_cast<unsigned char>(word[0])),
                    "this is not an LP file, or it is damaged");
    case TokenKind::Range:
        return NumberOutOfRange(token);
    case TokenKind::Name:
        return UnexpectedName(token);
    case TokenKind::Number:
        return UnexpectedNumber(token, next);
    case TokenKind::Arrow:
        return Fail(token, "lp.indicator", "indicator rows are refused",
                    "a linear program cannot say 'if'");
    case TokenKind::Colon:
        return Fail(token, "lp.unexpected-colon", fmt::format("a colon {}", Where()),
                    "a label is one name before the row, such as 'limit: x + y <= 4'");
    default:
        break;
    }
    return UnexpectedSign(token);
}

bool Messages::UnexpectedSign(const Token& token)
{
    const std::string_view word = token.text;
    if (word == "*" || word == "/")
    {
        return Fail(token, word == "*" ? "lp.product" : "lp.quotient",
                    fmt::format("'{}' {}", word, Where()),
                    word == "*" ? "a coefficient stands before its variable without a sign: 2 x"
                                : "a quotient is two integers without blanks: 1/2 x");
    }
    if (word == "^" || word == "[" || word == "]")
    {
        return Fail(token, "lp.quadratic",
                    fmt::format("'{}' {}: quadratic terms are refused", word, Where()),
                    "only linear terms, such as 2 x, can be read");
    }
    // `< =` is two relations.
    const std::string_view before =
        m_text.substr(0, static_cast<std::size_t>(word.data() - m_text.data()));
    const std::size_t last = before.find_last_not_of(" \t\r\n");
    const bool isSecond =
        last != std::string_view::npos && std::string_view("<>=").find(before[last]) < 3;
    std::string hint = "write sums such as 2 x + 3 y";
    if (m_place == Place::Bounds)
        hint = "a bound is 0 <= x <= 4, x >= -2, x = 3 or x free";
    else if (m_place == Place::Rows && isSecond)
        hint = "a row has one of <=, >= and =, without a blank within, between two sides";
    return Fail(token, "lp.unexpected", fmt::format("'{}' has no place {}", word, Where()),
                std::move(hint));
}

bool Messages::UnexpectedName(const Token& token)
{
    if (EqualsIgnoringCase(token.text, "nan"))
        return NotANumber(token.text, m_log);
    if (m_place == Place::Bounds)
    {
        return Fail(token, "lp.bad-bound", fmt::format("'{}' has no place in a bound", token.text),
                    "a bound is 0 <= x <= 4, x >= -2, x = 3 or x free");
    }
    if (!CheckName(token.text, m_log))
        return false;
    std::string_view hint = "write + or - between terms; products of variables are not linear";
    if (m_place == Place::Objective && token.firstOfLine)
        hint = "write Subject To before the first row, or + or - before a further term";
    return Fail(token, "lp.missing-sign",
                fmt::format("no sign stands before '{}' {}", token.text, Where()),
                std::string(hint));
}

bool Messages::UnexpectedNumber(const Token& token, const Token& next)
{
    if (next.kind == TokenKind::Name && next.glued)
    {
        return Fail(token, "lp.name-starts-with-digit",
                    fmt::format("'{}{}' starts with a digit", token.text, next.text),
                    "names start with a letter; a number before one is its coefficient");
    }
    return Fail(token, "lp.missing-sign",
                fmt::format("no sign stands before {} {}", token.text, Where()),
                m_place == Place::Bounds ? "a bound is 0 <= x <= 4, x >= -2, x = 3 or x free"
                                         : "write + or - between terms");
}

bool Messages::SecondRelation(const Token& token)
{
    return Fail(token, "lp.second-relation", fmt::format("a second '{}' {}", token.text, Where()),
                m_place == Place::Bounds
                    ? "write lower <= variable <= upper"
                    : "a range is lower <= expression <= upper, with the expression between");
}

bool Messages::RowWithoutRelation(const char* begin, bool isBareName, const Token& token,
                                  const Token& next)
{
    if (isBareName && (token.firstOfLine || token.kind == TokenKind::End))
    {
        const Token name =
            Lexer({begin, static_cast<std::size_t>(m_text.data() + m_text.size() - begin)}).Next();
        return m_log.Fail(begin, "lp.unknown-section",
                          fmt::format("'{}' is neither a section nor a row", name.text),
                          std::string(kSections));
    }
    if (isBareName && token.kind == TokenKind::Name && next.firstOfLine)
    {
        return Fail(token, "lp.missing-sign",
                    fmt::format("no sign stands before '{}' {}", token.text, Where()),
                    fmt::format("if the line names a section: {}", kSections));
    }
    const bool labelNext = token.kind == TokenKind::Name && next.kind == TokenKind::Colon;
    const bool ends = token.firstOfLine || token.kind == TokenKind::End || labelNext;
    if (ends && (token.kind == TokenKind::Name || token.kind == TokenKind::Number ||
                 token.kind == TokenKind::End))
    {
        return m_log.Fail(begin, "lp.missing-relation",
                          fmt::format("there is no <=, >= or = {}", Where()),
                          "a right-hand side ends with its line, and the next row starts");
    }
    return Unexpected(token, next);
}

bool Messages::Refuse(const Keyword& keyword)
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
bool Messages::NotAModel(const Token& token, Section section)
{
    const std::string_view word = token.text;
    if (m_text.starts_with("\xFF\xFE") || m_text.starts_with("\xFE\xFF"))
        return m_log.Fail(m_text.data(), "lp.utf-16", "this is UTF-16 text",
                          "save the file as UTF-8");
    if (token.kind == TokenKind::End)
        return m_log.Fail(m_text.data(), "lp.empty", "there is no model in the file",
                          "it starts with Maximize or Minimize");
    if (token.kind == TokenKind::Binary)
        return Unexpected(token, Token());
    if (token.kind == TokenKind::Colon || word == "/" || word.starts_with("//") ||
        LooksLikeSemicolonDialect(m_text))
    {
        return Fail(token, "lp.other-dialect",
                    "this looks like the lp_solve language, which is another one",
                    "convert it to CPLEX-LP, which starts with a line 'Maximize' or 'Minimize' "
                    "and has no semicolons");
    }
    if (word == "NAME" || word == "ROWS" || word == "*")
        return Fail(token, "lp.looks-like-mps", "this looks like an MPS file", "name it .mps");
    if (section == Section::Constraints)
    {
        return Fail(token, "lp.no-objective", "the objective is missing",
                    "write Maximize or Minimize first; the objective itself may be empty");
    }
    return Fail(
        token, "lp.no-objective",
        fmt::format("a model starts with Maximize or Minimize, not with '{}'", word.substr(0, 40)),
        word.starts_with('#') || word.starts_with('%') || word.starts_with('!')
            ? "comments start with a backslash here"
            : "if this is not an LP file, name it after its kind");
}

void Messages::NoteQuotient(const Token& number)
{
    constexpr std::string_view kCode = "lp.kept-quotient";
    if (m_log.Full(kCode))
        return m_log.CountOnly(kCode);
    m_log.Note(number.Begin(), std::string(kCode),
               fmt::format("{} is kept as this quotient; other programs do not read such numbers",
                           number.text),
               "multiply the row or the objective by the divisor for them");
}

}  // namespace nuv::lp
