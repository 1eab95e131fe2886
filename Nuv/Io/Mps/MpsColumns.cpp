/// ROWS and COLUMNS: the rows with their types, and the matrix column by column.
#include "Nuv/Io/Mps/MpsBuilder.hpp"

#include "Nuv/Model/Prefetch.hpp"

#include <fmt/core.h>

#include <cmath>

namespace nuv::mps
{
namespace
{

char Upper(char c) noexcept
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

bool Builder::AddRow(const Record& record)
{
    const char type = record.type.size() == 1 ? Upper(record.type[0]) : '\0';
    if (type != 'N' && type != 'L' && type != 'G' && type != 'E')
    {
        return m_messages.Fail(record.Begin(), "mps.unknown-row-type",
                               fmt::format("'{}' is no type of a row, in ROWS of line {}",
                                           record.type, m_messages.LineOf(Section::Rows)),
                               "rows are of type N (the objective), L (<=), G (>=) or E (=)");
    }
    const std::string_view name = record.name;
    if (name.empty() || !record.first.empty() || !record.firstNumber.empty())
    {
        return m_messages.Fail(name.empty() ? name.data() : record.first.data(), "mps.row-name",
                               name.empty() ? "this row has no name"
                                            : fmt::format("text stands behind row '{}'", name),
                               "a line of ROWS is a type and a name");
    }
    const NameTable::Interned row = m_rowNames.Intern(name);
    if (!row.isNew)
    {
        return m_messages.Fail(name.data(), "mps.duplicate-row",
                               fmt::format("a second row called '{}'; the first is in line {}",
                                           name, m_log.LineOf(m_rowPlaces[row.index])),
                               "give each row a name of its own");
    }
    m_rowPlaces.push_back(name.data());
    if (!m_messages.CheckName(name, "row"))
        return false;
    if (type == 'N')
    {
        AddFreeRow(name);
        return true;
    }
    m_rowStates.push_back({nullptr, m_builder.AppendRow(name, {}).Index()});
    m_types.push_back(type);
    return true;
}

void Builder::AddFreeRow(std::string_view name)
{
    const bool isAsked = m_objectiveAsked.empty() || m_objectiveAsked == name;
    const bool isObjective = isAsked && !m_hasObjective;
    m_rowStates.push_back({nullptr, isObjective ? kObjective : kDropped});
    if (!isObjective)
    {
        m_log.Note(
            name.data(), "mps.free-row",
            fmt::format("row '{}' of type N is left out: the objective is '{}'", name,
                        m_objectiveAsked.empty() ? Made().ObjectiveName() : m_objectiveAsked),
            "only the first row of type N counts, or the one that OBJNAME names");
        return;
    }
    m_hasObjective = true;
    m_builder.SetObjectiveName(name);
}

bool Builder::AddColumn(const Record& record)
{
    if (record.first == kMarker)
        return AddMarker(record);
    const bool isNew = record.name != m_column || record.name.empty();
    if (isNew && !BeginColumn(record))
        return false;
    if (!AddEntry(record.first, record.firstNumber))
        return false;
    if (record.second.empty() && record.secondNumber.empty())
        return true;
    return AddEntry(record.second, record.secondNumber);
}

bool Builder::BeginColumn(const Record& record)
{
    const std::string_view name = record.name;
    if (name.empty())
    {
        return m_messages.Fail(
            record.line, "mps.column-name", "this line names no column",
            "a line of COLUMNS is a column, and one or two rows with a number each");
    }
    const NameTable::Interned column = m_builder.InternVariable(name);
    if (!column.isNew)
    {
        return m_messages.Fail(name.data(), "mps.split-column",
                               fmt::format("column '{}' comes a second time; it began in line {}",
                                           name, m_log.LineOf(m_columnPlaces[column.index])),
                               "put all lines of a column together");
    }
    m_column = name;
    m_columnPlaces.push_back(name.data());
    if (m_integerMarker != nullptr)
        m_integers.push_back(column.index);
    return m_messages.CheckName(name, "column");
}

bool Builder::AddMarker(const Record& record)
{
    const bool opens = record.second == "'INTORG'";
    if (!opens && record.second != "'INTEND'")
    {
        return m_messages.Fail(
            record.second.data(), "mps.marker",
            fmt::format("the marker {} is no part of a linear program",
                        record.second.empty() ? "without a word" : record.second),
            "markers are 'INTORG' and 'INTEND', around integer columns");
    }
    if (opens == (m_integerMarker != nullptr))
    {
        return m_messages.Fail(record.second.data(), "mps.marker",
                               opens ? fmt::format("'INTORG' inside of the one in line {}",
                                                   m_log.LineOf(m_integerMarker))
                                     : std::string("'INTEND' without 'INTORG' before it"),
                               "each 'INTORG' is followed by its 'INTEND'");
    }
    m_integerMarker = opens ? record.second.data() : nullptr;
    m_column = {};  // No column goes on behind a marker.
    if (!opens || m_options.relax)
        return true;
    return m_messages.Fail(record.second.data(), "mps.integer", "the model has integer variables",
                           "--relax takes them for continuous ones within their bounds");
}

bool Builder::AddEntry(std::string_view row, std::string_view number)
{
    m_waiting.push_back(
        {m_rowNames.PrepareKey(row), row, number, Made().VariableCount() - 1, NameTable::kNone});
    return m_waiting.size() < kEntriesTogether || TakeEntries();
}

bool Builder::TakeEntries()
{
    for (Entry& entry : m_waiting)
    {
        entry.row = m_rowNames.Find(entry.name, entry.key);
        if (entry.row != NameTable::kNone)
            Prefetch(&m_rowStates[entry.row]);
    }
    bool isTaken = true;
    for (std::size_t at = 0; at < m_waiting.size() && isTaken; ++at)
        isTaken = TakeEntry(m_waiting[at]);
    m_waiting.clear();
    return isTaken;
}

bool Builder::TakeEntry(const Entry& entry)
{
    if (entry.row == NameTable::kNone)
        return m_messages.UnknownRow(entry.name);
    RowState& row = m_rowStates[entry.row];
    // Places grow within a file, so what is not before the column's begin belongs to it.
    if (row.lastEntry != nullptr && row.lastEntry >= m_columnPlaces[entry.column])
    {
        return m_messages.Fail(
            entry.name.data(), "mps.repeated-entry",
            fmt::format("column '{}' has a second coefficient in row '{}'; the first is in line {}",
                        Made().VariableName(entry.column), entry.name, m_log.LineOf(row.lastEntry)),
            "take one of them out, or write their sum");
    }
    row.lastEntry = entry.name.data();
    WrittenNumber number;
    return m_messages.TakeNumber(entry.number, entry.name, number) && AddCoefficient(entry, number);
}

bool Builder::AddCoefficient(const Entry& entry, const WrittenNumber& number)
{
    const char* const at = entry.number.data();
    const double value = number.value;
    if (!std::isfinite(value))
    {
        return m_messages.Fail(
            at, "mps.not-finite",
            fmt::format("the coefficient of '{}' is infinite", Made().VariableName(entry.column)),
            "only bounds may be infinite");
    }
    const std::uint32_t to = m_rowStates[entry.row].to;
    if (to == kObjective)
    {
        m_builder.SetObjectiveCoefficient(entry.column, value);
        Keep(m_builder, {NumberPlace::Of::Objective, entry.column}, number);
        return true;
    }
    if (to == kDropped)
        return true;
    if (value == 0.0)
        m_firstZero = m_zeros++ == 0 ? at : m_firstZero;
    while (m_starts.size() <= entry.column)
        m_starts.push_back(m_entries.size());
    Keep(m_builder, {NumberPlace::Of::Entry, to, entry.column}, number);
    m_entryRows.push_back(to);
    m_entries.push_back(value);
    return true;
}

bool Builder::FindRow(std::string_view name, std::uint32_t& index)
{
    index = m_rowNames.Find(name);
    return index != NameTable::kNone || m_messages.UnknownRow(name);
}

void Builder::FinishColumns()
{
    if (m_integerMarker != nullptr)
    {
        m_log.Warn(m_integerMarker, "mps.marker", "'INTORG' has no 'INTEND'",
                   "all columns behind it are taken for integer ones");
    }
    if (m_zeros != 0)
    {
        m_log.Note(
            m_firstZero, "mps.zero-coefficient",
            fmt::format("{} zero coefficient{} left out", m_zeros, m_zeros == 1 ? " is" : "s are"));
    }
    m_starts.resize(Made().VariableCount() + 1, m_entries.size());
    m_builder.AssignColumns(m_starts, m_entryRows, m_entries);
}

}  // namespace nuv::mps
