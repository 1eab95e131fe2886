#include "Nuv/Io/Lp/LpBuilder.hpp"

#include "Nuv/Io/Infinity.hpp"
#include "Nuv/Io/Lp/LpNames.hpp"
#include "Nuv/Io/NamesInOtherCase.hpp"
#include "Nuv/Model/Prefetch.hpp"
#include "Nuv/Io/NumberText.hpp"

#include <fmt/core.h>

#include <cmath>
#include <optional>
#include <string>

namespace nuv::lp
{
namespace
{

// As the row of a mark; the objective comes before the first row.
constexpr std::uint32_t kObjectiveRow = 0xFFFFFFFFu;
constexpr std::uint32_t kNoRow = 0xFFFFFFFEu;

}  // namespace

bool Builder::BeginRow(std::string_view label, const char* at)
{
    m_rowHasZeros = false;
    const Row row = m_builder.AppendRow(label, {-Infinity, Infinity});
    if (row.Valid())
    {
        m_rowPlaces.push_back(at);
        m_messages.EnterRow(label, Made().RowCount());
        return true;
    }
    const std::uint32_t first = Made().FindRow(label)->Index();
    return m_log.Fail(at, "lp.duplicate-row",
                      fmt::format("a second row called '{}'; the first is in line {}", label,
                                  m_log.LineOf(m_rowPlaces[first])),
                      "give each row a name of its own");
}

bool Builder::EndObjective(const WrittenNumber& constant)
{
    m_builder.SetObjectiveConstant(constant.value);
    Keep(m_builder, {NumberPlace::Of::ObjectiveConstant}, constant);
    return TakeTerms();
}

bool Builder::AddTerm(std::string_view name, WrittenNumber coefficient)
{
    m_terms.push_back({m_builder.PrepareVariable(name), name, std::move(coefficient), 0});
    return m_terms.size() < kTermsTogether || TakeTerms();
}

bool Builder::TakeTerms()
{
    bool isTaken = true;
    for (std::size_t at = 0; at < m_terms.size() && isTaken; ++at)
    {
        Term& term = m_terms[at];
        isTaken = InternVariable(term.name, term.key, term.column);
        Prefetch(&m_marks[term.column]);
    }
    for (std::size_t at = 0; at < m_terms.size() && isTaken; ++at)
        isTaken = TakeTerm(m_terms[at]);
    m_terms.clear();
    return isTaken;
}

bool Builder::TakeTerm(const Term& term)
{
    const double coefficient = term.coefficient.value;
    m_rowHasZeros = m_rowHasZeros || coefficient == 0.0;
    const std::uint32_t row = LastRow();
    Mark& mark = m_marks[term.column];
    if (mark.row == row)
        return AddRepeated(term);
    mark.row = row;
    if (row == kObjectiveRow)
    {
        m_builder.SetObjectiveCoefficient(term.column, coefficient);
        Keep(m_builder, {NumberPlace::Of::Objective, term.column}, term.coefficient);
        return true;
    }
    mark.entry = static_cast<std::uint32_t>(Made().NonzeroCount() - Made().RowStarts()[row]);
    m_builder.AppendEntry(term.column, coefficient);
    Keep(m_builder, {NumberPlace::Of::Entry, row, term.column}, term.coefficient);
    return true;
}

bool Builder::AddRepeated(const Term& term)
{
    const std::uint32_t row = LastRow();
    const bool isObjective = row == kObjectiveRow;
    const NumberPlace place = isObjective ? NumberPlace{NumberPlace::Of::Objective, term.column}
                                          : NumberPlace{NumberPlace::Of::Entry, row, term.column};
    const std::size_t at = isObjective ? 0 : Made().RowStarts()[row] + m_marks[term.column].entry;
    const double before = isObjective ? Made().Objective()[term.column] : Made().Coefficients()[at];
    const WrittenNumber sum = NumberAt(Made(), place, before) + term.coefficient;
    if (isObjective)
        m_builder.SetObjectiveCoefficient(term.column, sum.value);
    else
        m_builder.EntryOfLastRow(at) = sum.value;
    Keep(m_builder, place, sum);
    m_rowHasZeros = m_rowHasZeros || sum.value == 0.0;
    if (!std::isfinite(sum.value))
    {
        return m_log.Fail(
            term.name.data(), "lp.number-too-large",
            fmt::format("the coefficients of '{}' add up beyond double precision", term.name),
            "scale the model");
    }
    NoteRepeat(term.name);
    return true;
}

void Builder::NoteRepeat(std::string_view name)
{
    constexpr std::string_view kCode = "lp.repeated-variable";
    if (m_log.Full(kCode))
        return m_log.CountOnly(kCode);
    m_log.Note(name.data(), std::string(kCode),
               fmt::format("'{}' stands twice {}: its coefficients are added up", name,
                           m_messages.Where()));
}

bool Builder::InternVariable(std::string_view name, const NameTable::Key& key,
                             std::uint32_t& column)
{
    const NameTable::Interned found = m_builder.InternVariable(name, key);
    column = found.index;
    if (!found.isNew)
        return true;
    m_marks.push_back({kNoRow, 0});
    m_variablePlaces.push_back(name.data());
    return CheckVariableName(name, m_log);
}

/// The value of a row's limit; numbers that stand for infinity become it.
bool Builder::LimitOf(TokenKind relation, const Limit& limit, WrittenNumber& number)
{
    double value = limit.number.value;
    number = limit.number;
    if (std::isfinite(value) && std::fabs(value) >= kInfiniteFrom && relation != TokenKind::Equal)
    {
        m_log.Warn(limit.at, "lp.infinite-number", fmt::format("{} is taken for infinity", value),
                   "write inf, or a smaller number");
        value = std::copysign(Infinity, value);
        number = value;
    }
    const bool unlimited =
        relation == TokenKind::LessEqual ? value == Infinity : value == -Infinity;
    if (std::isfinite(value) || (unlimited && relation != TokenKind::Equal))
        return true;
    return m_log.Fail(limit.at, "lp.impossible-bound", "no number can be that large",
                      "an upper bound may be inf and a lower bound -inf, not the other way round");
}

bool Builder::SetLimit(TokenKind relation, const Limit& limit, const WrittenNumber& bodyConstant)
{
    WrittenNumber number;
    if (!LimitOf(relation, limit, number))
        return false;
    const WrittenNumber moved = number + -bodyConstant;
    if (std::isfinite(number.value) && !std::isfinite(moved.value))
    {
        return m_log.Fail(limit.at, "lp.number-too-large",
                          "the constants add up beyond double precision", "scale the row");
    }
    const std::uint32_t row = LastRow();
    Bounds bounds = {Made().RowLower()[row], Made().RowUpper()[row]};
    if (relation != TokenKind::LessEqual)
    {
        bounds.lower = moved.value;
        Keep(m_builder, {NumberPlace::Of::RowLower, row}, moved);
    }
    if (relation != TokenKind::GreaterEqual)
    {
        bounds.upper = moved.value;
        Keep(m_builder, {NumberPlace::Of::RowUpper, row}, moved);
    }
    m_builder.SetRowBounds(row, bounds);
    return true;
}

bool Builder::EndRow(const WrittenNumber& bodyConstant)
{
    if (!TakeTerms())
        return false;
    const char* const at = m_rowPlaces.back();
    const bool isEmpty = Made().RowColumns(LastRow()).empty();
    if (m_rowHasZeros)
    {
        const std::size_t zeros = m_builder.DropZerosOfLastRow();
        m_log.Note(at, "lp.zero-coefficient",
                   fmt::format("{} zero coefficient{} left out {}", zeros,
                               zeros == 1 ? " is" : "s are", m_messages.Where()));
    }
    if (isEmpty)
    {
        m_log.Note(at, "lp.empty-row", fmt::format("there is no variable {}", m_messages.Where()));
    }
    else if (bodyConstant.value != 0.0)
    {
        m_log.Note(at, "lp.moved-constant",
                   fmt::format("the constant {} {} is moved to the other side",
                               NumberText(bodyConstant), m_messages.Where()));
    }
    CheckRow(at);
    return true;
}

void Builder::CheckRow(const char* at)
{
    const std::uint32_t row = LastRow();
    const double lower = Made().RowLower()[row];
    const double upper = Made().RowUpper()[row];
    if (lower > upper)
    {
        m_log.Warn(at, "lp.contradictory-row",
                   fmt::format("{} <= {} is demanded {}", lower, upper, m_messages.Where()),
                   "no values can keep it: the model is infeasible");
    }
    else if (Made().RowColumns(row).empty() && (lower > 0.0 || upper < 0.0))
    {
        m_log.Warn(at, "lp.contradictory-row",
                   fmt::format("0 does not lie within the bounds {}", m_messages.Where()),
                   "no values can keep the row: the model is infeasible");
    }
}

bool Builder::FindBounded(std::string_view name, std::uint32_t& column)
{
    const std::uint32_t before = Made().VariableCount();
    if (!InternVariable(name, m_builder.PrepareVariable(name), column))
        return false;
    if (column == before)
    {
        m_log.Warn(
            name.data(), "lp.new-variable",
            fmt::format("'{}' has a bound but stands in no row and not in the objective", name),
            "check its spelling");
    }
    m_boundPlaces.resize(Made().VariableCount());
    return true;
}

bool Builder::SetBound(std::uint32_t column, TokenKind relation, const Limit& limit)
{
    const bool setsLower = relation != TokenKind::LessEqual;
    const bool setsUpper = relation != TokenKind::GreaterEqual;
    const double value = limit.number.value;
    if ((setsLower && value == Infinity) || (setsUpper && value == -Infinity))
    {
        return m_log.Fail(
            limit.at, "lp.impossible-bound",
            fmt::format("no value of '{}' can keep this bound", Made().VariableName(column)),
            "an upper bound may be inf and a lower bound -inf, not the other way round");
    }
    const WrittenNumber lower = LowerOf(Made(), Made().VariableAt(column));
    const WrittenNumber upper = UpperOf(Made(), Made().VariableAt(column));
    BoundPlace& place = m_boundPlaces[column];
    if ((setsLower && place.lower && !(lower == limit.number)) ||
        (setsUpper && place.upper && !(upper == limit.number)))
    {
        m_log.Warn(limit.at, "lp.bound-redefined",
                   fmt::format("a bound of '{}' is set a second time; this one holds",
                               Made().VariableName(column)),
                   "take one of them out");
    }
    if (setsLower)
        Keep(m_builder, {NumberPlace::Of::VariableLower, column}, limit.number);
    if (setsUpper)
        Keep(m_builder, {NumberPlace::Of::VariableUpper, column}, limit.number);
    m_builder.SetVariableBounds(column,
                                {setsLower ? value : lower.value, setsUpper ? value : upper.value});
    place = {limit.at, place.lower || setsLower, place.upper || setsUpper};
    return true;
}

bool Builder::SetFree(std::string_view name)
{
    std::uint32_t column = 0;
    return FindBounded(name, column) &&
           SetBound(column, TokenKind::GreaterEqual, {-Infinity, name.data()}) &&
           SetBound(column, TokenKind::LessEqual, {Infinity, name.data()});
}

bool Builder::AddInteger(std::string_view name, bool isBinary)
{
    std::uint32_t column = 0;
    const std::uint32_t before = Made().VariableCount();
    if (!InternVariable(name, m_builder.PrepareVariable(name), column))
        return false;
    if (column == before)
    {
        m_log.Note(
            name.data(), "lp.new-variable",
            fmt::format("'{}' stands in no row, in no bound and not in the objective", name));
    }
    if (isBinary)
        SetBinary(column, name);
    return true;
}

void Builder::SetBinary(std::uint32_t column, std::string_view name)
{
    const bool bounded = column < m_boundPlaces.size() && m_boundPlaces[column].at != nullptr;
    const double lower = Made().VariableLower()[column];
    const double upper = Made().VariableUpper()[column];
    if (bounded && (lower < 0.0 || upper > 1.0))
    {
        m_log.Warn(name.data(), "lp.bound-redefined",
                   fmt::format("the bounds {} <= {} <= {} become 0 and 1", lower, name, upper),
                   "take one of them out");
    }
    m_builder.SetVariableBounds(column, {0.0, 1.0});
    Keep(m_builder, {NumberPlace::Of::VariableLower, column}, 0.0);
    Keep(m_builder, {NumberPlace::Of::VariableUpper, column}, 1.0);
}

Model Builder::Finish()
{
    CheckBounds();
    CheckNames();
    m_builder.NameUnnamedRows();
    return m_builder.Take();
}

/// Bounds that no value can keep.
void Builder::CheckBounds()
{
    for (std::uint32_t column = 0; column < m_boundPlaces.size(); ++column)
    {
        const BoundPlace& place = m_boundPlaces[column];
        const double lower = Made().VariableLower()[column];
        const double upper = Made().VariableUpper()[column];
        if (place.at == nullptr || lower <= upper)
            continue;
        const std::string_view name = Made().VariableName(column);
        if (place.lower)
        {
            m_log.Warn(
                place.at, "lp.contradictory-bounds",
                fmt::format("the bounds {} <= {} <= {} contradict each other", lower, name, upper),
                "no value can keep them: the model is infeasible");
        }
        else
        {
            m_log.Warn(
                place.at, "lp.negative-upper-bound",
                fmt::format("'{}' <= {} while its lower bound stays 0: the model is infeasible",
                            name, upper),
                fmt::format(
                    "write -inf <= {} <= {} if it may be negative, as some programs read it", name,
                    upper));
        }
    }
}

void Builder::CheckNames()
{
    const std::string& objective = Made().ObjectiveName();
    if (const std::optional<Row> row = Made().FindRow(objective))
    {
        m_log.Warn(m_rowPlaces[row->Index()], "lp.objective-name-taken",
                   fmt::format("row '{}' has the name of the objective", objective),
                   "an MPS file cannot hold both; rename one");
    }
    WarnOfNamesInOtherCase(m_log, "lp", "variables", m_variablePlaces,
                           [this](std::uint32_t at) { return Made().VariableName(at); });
    WarnOfNamesInOtherCase(m_log, "lp", "rows", m_rowPlaces,
                           [this](std::uint32_t at) { return Made().RowName(at); });
}

}  // namespace nuv::lp
