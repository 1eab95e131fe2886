/// ROWS and COLUMNS: the rows with their types, and the matrix column by column.
#include "Nuv/Io/Mps/MpsParser.hpp"

#include "Nuv/Model/Prefetch.hpp"

#include "fmt/format.h"

#include <cmath>
#include <utility>

namespace nuv::mps
{
namespace
{

char Upper(char c) noexcept
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

bool Parser::ReadRow(const Record& record)
{
    const char type = record.type.size() == 1 ? Upper(record.type[0]) : '\0';
    if (type != 'N' && type != 'L' && type != 'G' && type != 'E')
    {
        return Fail(
            record.Begin(), "mps.unknown-row-type",
            fmt::format("'{}' is no type of a row, in ROWS of line {}", record.type,
                        m_log.LineOf(m_sectionPlaces[static_cast<std::size_t>(Section::Rows)])),
            "rows are of type N (the objective), L (<=), G (>=) or E (=)");
    }
    const std::string_view name = record.name;
    if (name.empty() || !record.first.empty() || !record.firstNumber.empty())
    {
        return Fail(name.empty() ? name.data() : record.first.data(), "mps.row-name",
                    name.empty() ? "this row has no name"
                                 : fmt::format("text stands behind row '{}'", name),
                    "a line of ROWS is a type and a name");
    }
    const NameTable::Interned row = m_rowNames.Intern(name);
    if (!row.isNew)
    {
        return Fail(name.data(), "mps.duplicate-row",
                    fmt::format("a second row called '{}'; the first is in line {}", name,
                                m_log.LineOf(m_rowPlaces[row.index])),
                    "give each row a name of its own");
    }
    m_rowPlaces.push_back(name.data());
    if (!CheckNewName(name, "row"))
        return false;
    if (type == 'N')
        return AddFreeRow(name);
    m_rowStates.push_back({nullptr, m_model.AppendRow(name, {}).Index()});
    m_types.push_back(type);
    return true;
}

bool Parser::AddFreeRow(std::string_view name)
{
    m_rowStates.push_back({nullptr, m_hasObjective ? kDropped : kObjective});
    if (m_hasObjective)
    {
        m_log.Note(name.data(), "mps.free-row",
                   fmt::format("row '{}' of type N is left out: the objective is '{}'", name,
                               m_model.ObjectiveName()),
                   "only the first row of type N counts");
        return true;
    }
    m_hasObjective = true;
    m_model.SetObjectiveName(name);
    return true;
}

bool Parser::ReadColumn(const Record& record)
{
    if (record.first == kMarker)
        return ReadMarker(record);
    if (record.name != m_column || record.name.empty())
    {
        if (!BeginColumn(record.name))
            return false;
    }
    if (!AddEntry(record.first, record.firstNumber))
        return false;
    if (record.second.empty() && record.secondNumber.empty())
        return true;
    return AddEntry(record.second, record.secondNumber);
}

bool Parser::BeginColumn(std::string_view name)
{
    if (name.empty())
    {
        return Fail(m_line.Begin(), "mps.column-name", "this line names no column",
                    "a line of COLUMNS is a column, and one or two rows with a number each");
    }
    const NameTable::Interned column = m_model.InternVariable(name);
    if (!column.isNew)
    {
        return Fail(name.data(), "mps.split-column",
                    fmt::format("column '{}' comes a second time; it began in line {}", name,
                                m_log.LineOf(m_columnPlaces[column.index])),
                    "put all lines of a column together");
    }
    m_column = name;
    m_columnPlaces.push_back(name.data());
    if (m_integerMarker != nullptr)
        m_integers.push_back(column.index);
    return CheckNewName(name, "column");
}

bool Parser::ReadMarker(const Record& record)
{
    const bool opens = record.second == "'INTORG'";
    if (!opens && record.second != "'INTEND'")
    {
        return Fail(record.second.data(), "mps.marker",
                    fmt::format("the marker {} is no part of a linear program",
                                record.second.empty() ? "without a word" : record.second),
                    "markers are 'INTORG' and 'INTEND', around integer columns");
    }
    if (opens == (m_integerMarker != nullptr))
    {
        return Fail(record.second.data(), "mps.marker",
                    opens ? fmt::format("'INTORG' inside of the one in line {}",
                                        m_log.LineOf(m_integerMarker))
                          : std::string("'INTEND' without 'INTORG' before it"),
                    "each 'INTORG' is followed by its 'INTEND'");
    }
    m_integerMarker = opens ? record.second.data() : nullptr;
    m_column = {};  // No column goes on behind a marker.
    if (!opens || m_options.relax)
        return true;
    return Fail(record.second.data(), "mps.integer", "the model has integer variables",
                "--relax takes them for continuous ones within their bounds");
}

bool Parser::AddEntry(std::string_view row, std::string_view number)
{
    if (m_pendingCount == kPending && !SettleOldest())
        return false;
    const std::size_t at = m_firstPending + m_pendingCount;
    m_pending[at % kPending] = {
        row,   number,         m_rowNames.PrepareKey(row), m_model.VariableCount() - 1,
        false, NameTable::None};
    ++m_pendingCount;
    if (m_pendingCount > kPending / 2)
        LookUp(m_pending[(at - kPending / 2) % kPending]);
    return true;
}

void Parser::LookUp(PendingEntry& entry)
{
    entry.row = m_rowNames.Find(entry.name, entry.key);
    entry.isLookedUp = true;
    if (entry.row != NameTable::None)
        Prefetch(&m_rowStates[entry.row]);
}

bool Parser::SettleOldest()
{
    PendingEntry& oldest = m_pending[m_firstPending];
    if (!oldest.isLookedUp)
        LookUp(oldest);
    // An error of this entry comes before those that the entries behind it may have.
    const std::size_t behind = std::exchange(m_pendingCount, 0) - 1;
    m_firstPending = (m_firstPending + 1) % kPending;
    if (!SettleEntry(oldest))
        return false;
    m_pendingCount = behind;
    return true;
}

bool Parser::SettleEntries()
{
    while (m_pendingCount != 0)
    {
        if (!SettleOldest())
            return false;
    }
    return true;
}

bool Parser::SettleEntry(const PendingEntry& entry)
{
    if (entry.row == NameTable::None)
        return UnknownRow(entry.name);
    RowState& row = m_rowStates[entry.row];
    // Places grow within a file, so what is not before the column's begin belongs to it.
    if (row.lastEntry != nullptr && row.lastEntry >= m_columnPlaces[entry.column])
    {
        return Fail(entry.name.data(), "mps.repeated-entry",
                    fmt::format("column '{}' has a second coefficient in row '{}'; the first is in "
                                "line {}",
                                m_model.VariableName(entry.column), entry.name,
                                m_log.LineOf(row.lastEntry)),
                    "take one of them out, or write their sum");
    }
    row.lastEntry = entry.name.data();
    return TakeCoefficient(entry, row.to);
}

bool Parser::TakeCoefficient(const PendingEntry& entry, std::uint32_t to)
{
    double value = 0.0;
    if (!TakeNumber(entry.number, entry.name, value))
        return false;
    if (!std::isfinite(value))
    {
        return Fail(
            entry.number.data(), "mps.not-finite",
            fmt::format("the coefficient of '{}' is infinite", m_model.VariableName(entry.column)),
            "only bounds may be infinite");
    }
    if (to == kObjective)
    {
        m_model.SetObjectiveCoefficient(entry.column, value);
        return true;
    }
    if (to == kDropped)
        return true;
    if (value == 0.0)
        m_firstZero = m_zeros++ == 0 ? entry.number.data() : m_firstZero;
    while (m_starts.size() <= entry.column)
        m_starts.push_back(m_entries.size());
    m_entryRows.push_back(to);
    m_entries.push_back(value);
    return true;
}

bool Parser::FindRow(std::string_view name, std::uint32_t& index)
{
    index = m_rowNames.Find(name);
    return index != NameTable::None || UnknownRow(name);
}

bool Parser::UnknownRow(std::string_view name)
{
    if (name.empty())
    {
        return Fail(name.data(), "mps.missing-row", "there is no row on this line",
                    "a row and its number are missing");
    }
    return Fail(name.data(), "mps.unknown-row",
                fmt::format("there is no row called '{}' in ROWS, line {}", name,
                            m_log.LineOf(m_sectionPlaces[static_cast<std::size_t>(Section::Rows)])),
                "check its spelling; letter case counts");
}

void Parser::FinishColumns()
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
    m_starts.resize(m_model.VariableCount() + 1, m_entries.size());
    m_model.AssignColumns(m_starts, m_entryRows, m_entries);
}

}  // namespace nuv::mps
