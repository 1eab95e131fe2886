/// Sums of terms: the objective and the sides of rows.
#include "Nuv/Io/Lp/LpParser.hpp"
#include "Nuv/Io/NumberText.hpp"

#include <fmt/core.h>

#include <cmath>
#include <utility>

namespace nuv::lp
{

bool Parser::ParseObjective()
{
    m_messages.Enter(Place::Objective);
    Token label;
    if (!AtObjectiveEnd() && TakeLabel(label))
        m_builder.SetObjectiveName(label.text);
    if (m_log.HasError())
        return false;
    if (AtObjectiveEnd())
    {
        if (m_section.section == Section::MultiObjectives)
            return true;
        m_log.Note(m_token.Begin(), "lp.empty-objective",
                   "the objective is empty: every feasible point is optimal");
        return true;
    }
    Side side;
    if (!ParseSide(side, 1.0, SideKind::Objective))
        return false;
    if (!m_builder.EndObjective(side.constant) || !EndObjective())
        return false;
    if (side.constant.value != 0.0)
        m_log.Note(side.begin, "lp.objective-constant",
                   fmt::format("the objective has the constant {}", NumberText(side.constant)));
    return true;
}

/// Whether nothing of the objective is left. A word for Subject To is always taken for it here,
/// since the section must come.
bool Parser::AtObjectiveEnd()
{
    if (m_token.kind == TokenKind::End || m_section.section != Section::None)
        return true;
    const Keyword keyword = MatchKeyword(m_token, m_lexer);
    if (keyword.section == Section::Constraints)
        m_section = keyword;
    return m_section.section != Section::None || AtSection(true);
}

bool Parser::EndObjective()
{
    if (m_token.kind == TokenKind::End || AtSection(false))
        return true;
    if (m_token.IsRelation())
    {
        return FailHere("lp.no-constraints", "a relation in the objective",
                        "write Subject To between the objective and the first row");
    }
    const Token next = Peek();
    if (m_token.kind == TokenKind::Name &&
        (next.kind == TokenKind::Colon || next.kind == TokenKind::DoubleColon))
    {
        return FailHere(
            "lp.several-objectives",
            fmt::format("'{}:' starts a second objective, or Subject To is missing before it",
                        m_token.text),
            "keep one objective; the others can be bounded by rows");
    }
    return Unexpected();
}

bool Parser::ParseSide(Side& side, double factor, SideKind kind)
{
    side.begin = m_token.Begin();
    do
    {
        double sign = 1.0;
        side.bareName = side.terms == 0 && m_token.kind == TokenKind::Name;
        for (; m_token.IsSign(); Advance())
            sign = m_token.kind == TokenKind::Minus ? -sign : sign;
        if (!ParseTerm(side, factor, sign, kind))
            return false;
        ++side.terms;
    } while (Continues(side, kind));
    return true;
}

/// Whether a sign continues the side. On the right of a relation it may start the next row instead.
bool Parser::Continues(const Side& side, SideKind kind) const
{
    if (!m_token.IsSign())
        return false;
    if (kind != SideKind::Right)
        return true;
    const bool constant = side.terms == 1 && !side.hasVariables;
    return !m_token.firstOfLine && !(constant && RelationFollowsOnLine());
}

/// `<= 4 x + y <= 6`, all on one line: the 4 ends a row, and x starts the next.
bool Parser::RelationFollowsOnLine() const
{
    Lexer ahead = m_lexer;
    for (Token token = ahead.Next(); !token.firstOfLine && token.kind != TokenKind::End;
         token = ahead.Next())
    {
        if (token.IsRelation())
            return true;
        if (token.kind == TokenKind::Colon)
            return false;
    }
    return false;
}

bool Parser::ParseTerm(Side& side, double factor, double sign, SideKind kind)
{
    if (side.infinity != 0)
        return FailHere("lp.infinite-term", "an infinite side has further terms",
                        "infinity stands alone in a bound");
    if (m_token.kind == TokenKind::Number)
        return ParseNumberTerm(side, factor, sign, kind);
    if (m_token.kind != TokenKind::Name)
        return Unexpected();
    if (IsInfinity(m_token))
        return AddInfinity(side, sign, kind);
    const Token name = m_token;
    Advance();
    return AddTerm(side, name, factor * sign);
}

bool Parser::ParseNumberTerm(Side& side, double factor, double sign, SideKind kind)
{
    const Token number = m_token;
    Advance();
    if (!NumberTakesName(kind))
        return AddConstant(side, NumberOf(number, sign), number.Begin());
    if (m_token.glued && !CheckGluedName(number))
        return false;
    const Token name = m_token;
    Advance();
    return AddTerm(side, name, NumberOf(number, factor * sign));
}

/// The number, which has been found to be one, times 1 or -1.
WrittenNumber Parser::NumberOf(const Token& number, double sign)
{
    if (number.text.find('/') != std::string_view::npos)
        m_messages.NoteQuotient(number);
    const WrittenNumber value(number.text, number.value);
    return sign < 0.0 ? -value : value;
}

/// A name without a blank between the number and it.
bool Parser::CheckGluedName(const Token& number)
{
    if (m_token.text[0] == ',' || m_token.text[0] == ';')
    {
        const bool comma = m_token.text[0] == ',';
        return FailHere(
            comma ? "lp.comma-in-number" : "lp.semicolon",
            fmt::format("'{}' follows a number", m_token.text[0]),
            comma ? "numbers have a decimal point and no marks between thousands: 1.5, 1000"
                  : "rows end with their line, without a semicolon");
    }
    if (number.text.find_first_of("eE") != std::string_view::npos &&
        number.text.find_first_of("+-") == std::string_view::npos)
    {
        m_log.Warn(number.Begin(), "lp.glued-exponent",
                   fmt::format("'{}{}' is read as {} times '{}'", number.text, m_token.text,
                               number.value, m_token.text),
                   "put a blank between the number and the variable");
    }
    return true;
}

/// Whether the name at m_token is the variable of the number before it, rather than what follows a
/// constant.
bool Parser::NumberTakesName(SideKind kind) const
{
    if (m_token.kind != TokenKind::Name)
        return false;
    if (kind == SideKind::Right && !m_token.firstOfLine && RelationFollowsOnLine())
        return false;
    if (m_token.glued || kind == SideKind::Left)
        return true;
    if (m_token.firstOfLine && kind != SideKind::Objective)
        return false;
    const Keyword keyword = MatchKeyword(m_token, m_lexer);
    const bool section = keyword.section != Section::None && keyword.section != Section::Maximize &&
                         keyword.section != Section::Minimize;
    if (kind == SideKind::Right)
        return !section && Peek().kind != TokenKind::Colon;
    return !section || (kind == SideKind::Objective && !SectionAfterObjectiveConstant(keyword));
}

/// `max x + 5 st ...`: whether the word opens the section or is a variable with the coefficient 5.
/// It opens it if rows come before another word that could.
bool Parser::SectionAfterObjectiveConstant(const Keyword& keyword) const
{
    if (keyword.manyWords)
        return true;
    Lexer ahead = keyword.after;
    for (Token token = ahead.Next(); token.kind != TokenKind::End; token = ahead.Next())
    {
        if (token.IsRelation() || token.kind == TokenKind::Colon)
            return true;
        if (MatchKeyword(token, ahead).section == Section::Constraints)
            return false;
    }
    return true;
}

bool Parser::AddConstant(Side& side, const WrittenNumber& number, const char* at)
{
    side.constant = side.constant + number;
    if (std::isfinite(side.constant.value))
        return true;
    return m_log.Fail(at, "lp.number-too-large",
                      "the sum of the constants is beyond double precision", "scale the model");
}

bool Parser::AddInfinity(Side& side, double sign, SideKind kind)
{
    if (side.terms != 0 || kind == SideKind::Objective)
        return FailHere("lp.infinite-term", "infinity in a sum", "only a bound may be infinite");
    side.infinity = sign > 0 ? 1 : -1;
    Advance();
    return true;
}

bool Parser::AddTerm(Side& side, const Token& name, WrittenNumber coefficient)
{
    if (IsInfinity(name))
    {
        return m_log.Fail(name.Begin(), "lp.infinite-term",
                          fmt::format("'{}' with a coefficient", name.text),
                          "infinity is a bound, not a variable");
    }
    side.hasVariables = true;
    return m_builder.AddTerm(name.text, std::move(coefficient));
}

}  // namespace nuv::lp
