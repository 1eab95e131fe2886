/// Rows: a label, two or three sides and the relations between them. Constants move to the bounds,
/// variables to the side of the first ones.
#include "Nuv/Io/Lp/LpNames.hpp"
#include "Nuv/Io/Lp/LpParser.hpp"

#include <fmt/core.h>

namespace nuv::lp
{

bool Parser::ParseRows()
{
    m_messages.Enter(Place::Rows);
    while (m_token.kind != TokenKind::End)
    {
        Token label;
        const bool isLabelled = TakeLabel(label);
        if (!isLabelled)
        {
            if (m_log.HasError())
                return false;
            if (AtSection(m_token.firstOfLine))
                return true;
            label = Token();
        }
        const char* const at = isLabelled ? label.Begin() : m_token.Begin();
        if (!m_builder.BeginRow(label.text, at) || !ParseRow(isLabelled))
            return false;
    }
    return true;
}

/// Takes `name :`. @return false if there is no label here, or if there is an error.
bool Parser::TakeLabel(Token& label)
{
    label = m_token;
    Lexer ahead = m_lexer;
    if (m_token.kind == TokenKind::Number || m_token.kind == TokenKind::Range)
    {
        // A label may start with a digit, as no other name may.
        label.text = m_lexer.NameRun(m_token.Begin());
        ahead.Rewind(label.End());
    }
    else if (m_token.kind != TokenKind::Name)
    {
        return false;
    }
    const Token colon = ahead.Next();
    if (colon.kind == TokenKind::DoubleColon)
    {
        return m_log.Fail(colon.Begin(), "lp.double-colon",
                          fmt::format("'::' after '{}'", label.text),
                          "a label has one colon; '::' belongs to SOS sections, which are refused");
    }
    if (colon.kind != TokenKind::Colon || IsAloneWithColon(MatchKeyword(m_token, m_lexer)) ||
        !CheckName(label.text, m_log))
        return false;
    m_lexer = ahead;
    Advance();
    return true;
}

bool Parser::ParseRow(bool isLabelled)
{
    Side left;
    // `name: = 0` is what some writers make of a row without variables.
    const bool empty = m_token.IsRelation() && isLabelled;
    if (!empty && !ParseSide(left, 1.0, SideKind::Left))
        return false;
    if (!m_token.IsRelation())
    {
        // What is wrong with a name says more than that it is no row.
        return m_builder.TakeTerms() &&
               m_messages.RowWithoutRelation(left.begin, left.bareName, m_token, Peek());
    }
    const TokenKind relation = m_token.kind;
    Advance();
    return left.hasVariables ? ParseAfterVariables(left, relation)
                             : ParseAfterConstant(left, relation);
}

bool Parser::ParseAfterVariables(const Side& left, TokenKind relation)
{
    Side right;
    return ParseSide(right, -1.0, SideKind::Right) && EndRow(right) &&
           m_builder.SetLimit(relation, right.AsLimit(), left.constant) &&
           m_builder.EndRow(left.constant);
}

bool Parser::ParseAfterConstant(const Side& left, TokenKind relation)
{
    Side body;
    if (!ParseSide(body, 1.0, SideKind::Body))
        return false;
    if (body.infinity != 0)
    {
        return m_log.Fail(body.begin, "lp.infinite-term", "a row between two constants",
                          "name a variable in it");
    }
    const bool isRange = m_token.IsRelation() && body.hasVariables;
    if (isRange ? !ParseEndOfRange(relation, body) : !EndRow(body))
        return false;
    return m_builder.SetLimit(Mirrored(relation), left.AsLimit(), body.constant) &&
           m_builder.EndRow(body.constant);
}

/// What follows `constant <= body`, from the second relation on.
bool Parser::ParseEndOfRange(TokenKind first, const Side& body)
{
    const TokenKind second = m_token.kind;
    if (second != first || first == TokenKind::Equal)
    {
        return FailHere("lp.mixed-relations",
                        "the two relations of a range point in different directions",
                        "a range is lower <= expression <= upper, or the same with >=");
    }
    Advance();
    Side right;
    if (!ParseSide(right, -1.0, SideKind::Right) || !EndRow(right))
        return false;
    if (right.hasVariables)
    {
        return m_log.Fail(right.begin, "lp.range-without-constants",
                          "a range has variables at its end",
                          "a range is number <= expression <= number; make two rows of it");
    }
    return m_builder.SetLimit(second, right.AsLimit(), body.constant);
}

/// Sees to it that a row may end here.
bool Parser::EndRow(const Side& last)
{
    if (m_token.IsRelation())
        return m_messages.SecondRelation(m_token);
    if (m_token.kind == TokenKind::End || m_token.kind == TokenKind::Number)
        return true;
    if (m_token.firstOfLine && (m_token.kind == TokenKind::Name || m_token.IsSign()))
        return true;
    if (m_token.kind == TokenKind::Name &&
        (MatchKeyword(m_token, m_lexer).section != Section::None ||
         Peek().kind == TokenKind::Colon))
        return true;
    if (last.hasVariables || !(m_token.kind == TokenKind::Name || m_token.IsSign()))
        return Unexpected();
    m_log.Warn(m_token.Begin(), "lp.rows-on-one-line",
               fmt::format("a new row starts with '{}'", m_token.text),
               "put each row on a line of its own");
    return true;
}

}  // namespace nuv::lp
