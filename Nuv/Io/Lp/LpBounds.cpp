/// The Bounds section: `3 <= x <= 5`, `x >= 3`, `x = 4`, `x free`, in any order and number; the
/// last one said of a side holds.
#include "Nuv/Io/Infinity.hpp"
#include "Nuv/Io/Lp/LpParser.hpp"
#include "Nuv/Io/NumberText.hpp"

#include <fmt/core.h>

namespace nuv::lp
{

bool Parser::ParseBounds()
{
    m_messages.Enter(Place::Bounds);
    while (m_token.kind != TokenKind::End)
    {
        if (AtSection(true))
            return true;
        if (!ParseBound())
            return false;
    }
    return true;
}

bool Parser::ParseBound()
{
    if (m_token.kind == TokenKind::Name && !IsInfinity(m_token))
    {
        const Token name = m_token;
        Advance();
        return ParseBoundAfterName(name);
    }
    Limit first;
    if (!ParseLimit(first))
        return false;
    if (m_token.kind == TokenKind::Name)
    {
        return FailHere("lp.coefficient-in-bounds",
                        fmt::format("'{}' has a coefficient in Bounds", m_token.text),
                        "divide it out, or move the line to Subject To, where it is a row");
    }
    const TokenKind relation = m_token.kind;
    if (!m_token.IsRelation())
        return Unexpected();
    Advance();
    if (m_token.kind != TokenKind::Name || IsInfinity(m_token))
        return Unexpected();
    const Token name = m_token;
    std::uint32_t column = 0;
    if (!m_builder.FindBounded(name.text, column))
        return false;
    Advance();
    if (!m_builder.SetBound(column, Mirrored(relation), first))
        return false;
    if (!m_token.IsRelation())
        return true;
    if (m_token.kind != relation || relation == TokenKind::Equal)
    {
        return FailHere("lp.mixed-relations",
                        "the two relations of a bound point in different directions",
                        "write lower <= variable <= upper");
    }
    Advance();
    Limit second;
    return ParseLimit(second) && m_builder.SetBound(column, relation, second);
}

bool Parser::ParseBoundAfterName(const Token& name)
{
    if (m_token.kind == TokenKind::Name && EqualsIgnoringCase(m_token.text, "free"))
    {
        Advance();
        return m_builder.SetFree(name.text);
    }
    if (m_token.kind == TokenKind::Colon)
    {
        return FailHere("lp.label-in-bounds", fmt::format("'{}:' labels a bound", name.text),
                        "bounds have no names; move the line to Subject To if it is a row");
    }
    if (!m_token.IsRelation())
        return Unexpected();
    const TokenKind relation = m_token.kind;
    Advance();
    Limit limit;
    std::uint32_t column = 0;
    if (!ParseLimit(limit) || !m_builder.FindBounded(name.text, column) ||
        !m_builder.SetBound(column, relation, limit))
        return false;
    return m_token.IsRelation() ? m_messages.SecondRelation(m_token) : true;
}

bool Parser::ParseLimit(Limit& limit)
{
    limit.at = m_token.Begin();
    double sign = 1.0;
    for (; m_token.IsSign(); Advance())
        sign = m_token.kind == TokenKind::Minus ? -sign : sign;
    if (IsInfinity(m_token))
    {
        limit.number = sign * Infinity;
    }
    else if (m_token.kind == TokenKind::Number)
    {
        limit.number = NumberOf(m_token, sign);
        if (m_token.value >= kInfiniteFrom)
            limit.number = sign * Infinity;
        else if (m_token.value >= kInfiniteForSomeFrom)
        {
            m_log.Warn(limit.at, "lp.large-bound",
                       fmt::format("the bound {} is a number here and infinite for other programs",
                                   NumberText(limit.number)),
                       "write inf, or a smaller number");
        }
    }
    else if (m_token.kind == TokenKind::Name && !EqualsIgnoringCase(m_token.text, "nan"))
    {
        return FailHere("lp.variable-as-bound",
                        fmt::format("'{}' stands where a bound needs a number", m_token.text),
                        "a relation between variables is a row; move it to Subject To");
    }
    else
    {
        return Unexpected();
    }
    Advance();
    if (m_token.kind == TokenKind::Name && m_token.glued)
        return Unexpected();
    return true;
}

}  // namespace nuv::lp
