/// Rows: a label, two or three sides and the relations between them. Constants move to the bounds,
/// variables to the side of the first ones.
#include "Nuv/Io/Lp/LpParser.hpp"

#include <fmt/format.h>

#include <cmath>

namespace nuv::lp
{

bool Parser::ParseRows()
{
    m_place = Place::Rows;
    while (m_token.kind != TokenKind::End)
    {
        std::optional<Token> label(std::in_place);
        if (!TakeLabel(*label))
        {
            if (m_log.HasError())
                return false;
            label.reset();
            if (AtSection(m_token.firstOfLine))
                return true;
        }
        if (!BeginRow(label) || !ParseRow())
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
    if (colon.kind != TokenKind::Colon || !CheckName(label.text, label.Begin()))
        return false;
    m_lexer = ahead;
    Advance();
    return true;
}

bool Parser::BeginRow(const std::optional<Token>& label)
{
    m_rowHasZeros = false;
    const char* const at = label ? label->Begin() : m_token.Begin();
    const Row row =
        m_model.AppendRow(label ? label->text : std::string_view(), {-Infinity, Infinity});
    if (row.Valid())
    {
        m_rowPlaces.push_back(at);
        return true;
    }
    const std::uint32_t first = m_model.FindRow(label->text)->Index();
    return m_log.Fail(at, "lp.duplicate-row",
                      fmt::format("a second row called '{}'; the first is in line {}", label->text,
                                  m_log.LineOf(m_rowPlaces[first])),
                      "give each row a name of its own");
}

bool Parser::ParseRow()
{
    Side left;
    // `name: = 0` is what some writers make of a row without variables.
    const bool empty = m_token.IsRelation() && !m_model.RowName(m_model.RowCount() - 1).empty();
    if (!empty && !ParseSide(left, 1.0, SideKind::Left))
        return false;
    if (!m_token.IsRelation())
        return RowWithoutRelation(left);
    const TokenKind relation = m_token.kind;
    Advance();
    return left.hasVariables ? ParseAfterVariables(left, relation)
                             : ParseAfterConstant(left, relation);
}

bool Parser::ParseAfterVariables(const Side& left, TokenKind relation)
{
    Side right;
    return ParseSide(right, -1.0, SideKind::Right) && EndRow(right) &&
           SetRow(relation, right, left.constant) && FinishRow(left.constant);
}

bool Parser::ParseAfterConstant(const Side& left, TokenKind relation)
{
    Side body;
    if (!ParseSide(body, 1.0, SideKind::Body))
        return false;
    if (body.infinity != 0)
        return m_log.Fail(body.begin, "lp.infinite-term", "a row between two constants",
                          "name a variable in it");
    const TokenKind second = m_token.kind;
    if (m_token.IsRelation() && body.hasVariables)
    {
        if (second != relation || relation == TokenKind::Equal)
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
        if (!SetRow(second, right, body.constant))
            return false;
    }
    else if (!EndRow(body))
    {
        return false;
    }
    return SetRow(Mirrored(relation), left, body.constant) && FinishRow(body.constant);
}

/// Sees to it that a row may end here.
bool Parser::EndRow(const Side& last)
{
    if (m_token.IsRelation())
        return SecondRelation();
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

/// The number of an end of a row; numbers that stand for infinity become it.
bool Parser::SideValue(const Side& side, TokenKind relation, double& value)
{
    value = side.constant;
    if (side.infinity != 0)
    {
        value = side.infinity * Infinity;
    }
    else if (std::fabs(value) >= kInfiniteFrom && relation != TokenKind::Equal)
    {
        m_log.Warn(side.begin, "lp.infinite-number", fmt::format("{} is taken for infinity", value),
                   "write inf, or a smaller number");
        value = std::copysign(Infinity, value);
    }
    const bool unlimited =
        relation == TokenKind::LessEqual ? value == Infinity : value == -Infinity;
    if (std::isfinite(value) || (unlimited && relation != TokenKind::Equal))
        return true;
    return m_log.Fail(side.begin, "lp.impossible-bound", "no number can be that large",
                      "an upper bound may be inf and a lower bound -inf, not the other way round");
}

/// Takes `body relation bound` into the last row's bounds.
bool Parser::SetRow(TokenKind relation, const Side& bound, double bodyConstant)
{
    double value = 0.0;
    if (!SideValue(bound, relation, value))
        return false;
    const double moved = value - bodyConstant;
    if (std::isfinite(value) && !std::isfinite(moved))
    {
        return m_log.Fail(bound.begin, "lp.number-too-large",
                          "the constants add up beyond double precision", "scale the row");
    }
    const std::uint32_t row = m_model.RowCount() - 1;
    Bounds bounds = {m_model.RowLower()[row], m_model.RowUpper()[row]};
    if (relation != TokenKind::LessEqual)
        bounds.lower = moved;
    if (relation != TokenKind::GreaterEqual)
        bounds.upper = moved;
    m_model.SetRowBounds(row, bounds);
    return true;
}

bool Parser::FinishRow(double bodyConstant)
{
    if (!FlushTerms())
        return false;
    const char* const at = m_rowPlaces.back();
    const bool empty = m_model.RowStarts().back() == m_model.RowStarts()[m_model.RowCount() - 1];
    if (m_rowHasZeros)
    {
        const std::size_t zeros = m_model.DropZerosOfLastRow();
        m_log.Note(at, "lp.zero-coefficient",
                   fmt::format("{} zero coefficient{} left out {}", zeros,
                               zeros == 1 ? " is" : "s are", Where()));
    }
    if (empty)
        m_log.Note(at, "lp.empty-row", fmt::format("there is no variable {}", Where()));
    else if (bodyConstant != 0.0)
    {
        m_log.Note(
            at, "lp.moved-constant",
            fmt::format("the constant {} {} is moved to the other side", bodyConstant, Where()));
    }
    return CheckRow(at);
}

bool Parser::CheckRow(const char* at)
{
    const std::uint32_t row = m_model.RowCount() - 1;
    const double lower = m_model.RowLower()[row];
    const double upper = m_model.RowUpper()[row];
    if (lower > upper)
    {
        m_log.Warn(at, "lp.contradictory-row",
                   fmt::format("{} <= {} is demanded {}", lower, upper, Where()),
                   "no values can keep it: the model is infeasible");
    }
    else if (m_model.RowStarts().back() == m_model.RowStarts()[row] && (lower > 0.0 || upper < 0.0))
    {
        m_log.Warn(at, "lp.contradictory-row",
                   fmt::format("0 does not lie within the bounds {}", Where()),
                   "no values can keep the row: the model is infeasible");
    }
    return true;
}

}  // namespace nuv::lp
