/// The Bounds section: `3 <= x <= 5`, `x >= 3`, `x = 4`, `x free`, in any order and number; the
/// last one said of a side holds.
#include "Nuv/Io/Lp/LpParser.hpp"

#include <fmt/format.h>

#include <cmath>

namespace nuv::lp
{
namespace
{

/// Programs that take numbers from here on for infinite are common enough to warn.
constexpr double kInfiniteForSomeFrom = 1e20;

}  // namespace

bool Parser::ParseBounds()
{
    m_place = Place::Bounds;
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
    Value first;
    if (!ParseValue(first))
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
    const std::uint32_t column = BoundColumn(name);
    Advance();
    if (m_log.HasError() || !ApplyBound(column, Mirrored(relation), first, name.text))
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
    Value second;
    return ParseValue(second) && ApplyBound(column, relation, second, name.text);
}

bool Parser::ParseBoundAfterName(const Token& name)
{
    if (m_token.kind == TokenKind::Name && EqualsIgnoringCase(m_token.text, "free"))
    {
        Advance();
        return SetFree(name);
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
    Value value;
    if (!ParseValue(value))
        return false;
    const std::uint32_t column = BoundColumn(name);
    if (m_log.HasError() || !ApplyBound(column, relation, value, name.text))
        return false;
    return m_token.IsRelation() ? SecondRelation() : true;
}

bool Parser::ParseValue(Value& value)
{
    value.at = m_token.Begin();
    double sign = 1.0;
    for (; m_token.IsSign(); Advance())
        sign = m_token.kind == TokenKind::Minus ? -sign : sign;
    if (IsInfinity(m_token))
    {
        value.number = sign * Infinity;
    }
    else if (m_token.kind == TokenKind::Number)
    {
        value.number = sign * m_token.value;
        if (m_token.value >= kInfiniteFrom)
            value.number = sign * Infinity;
        else if (m_token.value >= kInfiniteForSomeFrom)
        {
            m_log.Warn(value.at, "lp.large-bound",
                       fmt::format("the bound {} is a number here and infinite for other programs",
                                   value.number),
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

bool Parser::ApplyBound(std::uint32_t column, TokenKind relation, const Value& value,
                        std::string_view name)
{
    const bool setsLower = relation != TokenKind::LessEqual;
    const bool setsUpper = relation != TokenKind::GreaterEqual;
    if ((setsLower && value.number == Infinity) || (setsUpper && value.number == -Infinity))
    {
        return m_log.Fail(
            value.at, "lp.impossible-bound",
            fmt::format("no value of '{}' can keep this bound", name),
            "an upper bound may be inf and a lower bound -inf, not the other way round");
    }
    Bounds bounds = {m_model.VariableLower()[column], m_model.VariableUpper()[column]};
    BoundPlace& place = m_boundPlaces[column];
    if ((setsLower && place.lower && bounds.lower != value.number) ||
        (setsUpper && place.upper && bounds.upper != value.number))
    {
        m_log.Warn(value.at, "lp.bound-redefined",
                   fmt::format("a bound of '{}' is set a second time; this one holds", name),
                   "take one of them out");
    }
    bounds.lower = setsLower ? value.number : bounds.lower;
    bounds.upper = setsUpper ? value.number : bounds.upper;
    m_model.SetVariableBounds(column, bounds);
    place = {value.at, place.lower || setsLower, place.upper || setsUpper};
    return true;
}

bool Parser::SetFree(const Token& name)
{
    const std::uint32_t column = BoundColumn(name);
    if (m_log.HasError())
        return false;
    return ApplyBound(column, TokenKind::GreaterEqual, {-Infinity, name.Begin()}, name.text) &&
           ApplyBound(column, TokenKind::LessEqual, {Infinity, name.Begin()}, name.text);
}

/// The column of a name in Bounds, new or not.
std::uint32_t Parser::BoundColumn(const Token& name)
{
    std::uint32_t column = 0;
    const std::uint32_t before = m_model.VariableCount();
    if (InternVariable(name.text, column) && column == before)
    {
        m_log.Warn(name.Begin(), "lp.new-variable",
                   fmt::format("'{}' has a bound but stands in no row and not in the objective",
                               name.text),
                   "check its spelling");
    }
    if (m_boundPlaces.size() < m_model.VariableCount())
        m_boundPlaces.resize(m_model.VariableCount());
    return column;
}

}  // namespace nuv::lp
