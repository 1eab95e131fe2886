#include "apps/nuvlp/batch/ScenarioTable.hpp"

#include "Nuv/Io/NumberText.hpp"
#include "Nuv/Report/JsonReader.hpp"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>
#include <utility>

namespace nuvlp
{
namespace
{

using Cells = std::vector<std::string>;

/// Where a table is read, and how its errors are told.
struct Place
{
    const std::string& name;
    std::size_t line = 0;

    [[nodiscard]] nuv::Error Error(const char* code, std::string text, std::string hint = "") const
    {
        return {code, std::move(text), std::move(hint), name, line, 0};
    }
};

std::string_view TakeLine(std::string_view& text)
{
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

/// Takes a cell off the line, with the comma behind it; in quotes a comma is a comma and two quotes
/// are one. @return false where a quote is not closed.
bool TakeCell(std::string_view& line, std::string& cell)
{
    bool isQuoted = false;
    std::size_t k = 0;
    while (k != line.size() && line[k] != ',' && line[k] != '"')
        ++k;
    cell.assign(line.substr(0, k));
    for (; k != line.size() && (isQuoted || line[k] != ','); ++k)
    {
        if (line[k] == '"' && isQuoted && k + 1 != line.size() && line[k + 1] == '"')
            cell += line[k++];
        else if (line[k] == '"')
            isQuoted = !isQuoted;
        else
            cell += line[k];
    }
    line.remove_prefix(k);
    return !isQuoted;
}

/// Fills `cells`, which keeps its storage from line to line. @return as TakeCell does.
bool SplitCells(std::string_view line, Cells& cells)
{
    std::size_t count = 0;
    for (bool isMore = true; isMore; ++count)
    {
        if (count == cells.size())
            cells.emplace_back();
        if (!TakeCell(line, cells[count]))
            return false;
        isMore = !line.empty();
        line.remove_prefix(isMore ? 1 : 0);
    }
    cells.resize(count);
    return true;
}

std::string_view WithoutBlanks(std::string_view text)
{
    while (text.starts_with(' ') || text.starts_with('\t'))
        text.remove_prefix(1);
    while (text.ends_with(' ') || text.ends_with('\t'))
        text.remove_suffix(1);
    return text;
}

/// What a cell says: nothing, a number, or why it is none.
struct Cell
{
    std::optional<double> value = {};
    std::string fault = {};
};

Cell ReadCell(std::string_view text)
{
    text = WithoutBlanks(text);
    if (text.empty())
        return {};
    if (text.starts_with('+'))
        text.remove_prefix(1);
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto [at, fault] = nuv::ReadDouble(text.data(), end, value);
    if (fault == std::errc::result_out_of_range && at == end)
        return {{},
                nuv::IsBelowDoubles(text) ? "is nearer to 0 than any double"
                                          : "is beyond the largest double"};
    if (text.empty() || fault != std::errc() || at != end || std::isnan(value))
        return {{}, "is not a number"};
    return {value, {}};
}

/// Why the model cannot take an infinity in a place; empty if it can.
std::string_view Objection(const Replacement& to, double value, const nuv::Model& model)
{
    const bool isLower = to.what == Replaced::VariableLower || to.what == Replaced::RowLower ||
                         (to.what == Replaced::Side && std::isinf(model.RowUpper()[to.at]));
    if (!std::isinf(value))
        return {};
    if (to.what == Replaced::Cost)
        return "is no cost: costs are finite";
    if (to.what == Replaced::Side && model.RowLower()[to.at] == model.RowUpper()[to.at])
        return "is no side of an equation: that is finite";
    if (isLower && value > 0.0)
        return "is no lower side or bound";
    return !isLower && value < 0.0 ? "is no upper side or bound" : "";
}

/// A row with two different sides, or none, has no one side to replace.
bool HasOneSide(const nuv::Model& model, std::uint32_t row)
{
    const double lower = model.RowLower()[row];
    const double upper = model.RowUpper()[row];
    return lower == upper || std::isinf(lower) != std::isinf(upper);
}

struct Kind
{
    std::string_view prefix;
    Replaced what;
    bool isOfRow;
};

constexpr Kind kKinds[] = {
    {"cost:", Replaced::Cost, false},           {"lower:", Replaced::VariableLower, false},
    {"upper:", Replaced::VariableUpper, false}, {"side:", Replaced::Side, true},
    {"row-lower:", Replaced::RowLower, true},   {"row-upper:", Replaced::RowUpper, true}};

nuv::Result<Replacement> ReplacementOf(std::string_view column, const nuv::Model& model,
                                       const Place& place)
{
    for (const Kind& kind : kKinds)
    {
        if (!column.starts_with(kind.prefix))
            continue;
        const std::string_view name = column.substr(kind.prefix.size());
        const std::optional<nuv::Row> row = model.FindRow(name);
        const std::optional<nuv::Variable> variable = model.FindVariable(name);
        if (kind.isOfRow ? !row : !variable)
            return place.Error(
                "table.name",
                fmt::format("the model has no {} '{}'", kind.isOfRow ? "row" : "variable", name),
                "names count in their letter case");
        const std::uint32_t at = kind.isOfRow ? model.IndexOf(*row) : model.IndexOf(*variable);
        if (kind.what == Replaced::Side && !HasOneSide(model, at))
            return place.Error("table.side", fmt::format("row '{}' has not one side", name),
                               "say row-lower: or row-upper:");
        return Replacement{kind.what, at};
    }
    return place.Error("table.column", fmt::format("a column '{}' is not known", column),
                       "columns are scenario, cost:VARIABLE, lower:VARIABLE, upper:VARIABLE, "
                       "side:ROW, row-lower:ROW and row-upper:ROW");
}

/// Fills a table scenario by scenario; columns are made as their names are met.
class Builder
{
public:
    Builder(const nuv::Model& model, const std::string& name) : m_model(model), m_place{name} {}

    Place& At()
    {
        return m_place;
    }

    /// @return the column's place in the table; none for the label.
    nuv::Result<std::optional<std::size_t>> ColumnOf(const std::string& name)
    {
        if (name == "scenario")
            return std::optional<std::size_t>();
        const auto [known, isNew] = m_columns.try_emplace(name, m_table.columns.size());
        if (!isNew)
            return std::optional(known->second);
        const nuv::Result<Replacement> made = ReplacementOf(name, m_model, m_place);
        if (!made)
            return made.GetError();
        Widen();
        m_table.columns.push_back(*made);
        return std::optional(known->second);
    }

    void BeginScenario()
    {
        m_table.cells.resize(m_table.cells.size() + m_table.columns.size(), kNoNumber);
        m_table.labels.push_back(std::to_string(m_table.labels.size() + 1));
    }

    /// @return an error for what is no number.
    std::optional<nuv::Error> Put(std::optional<std::size_t> column, std::string_view cell)
    {
        if (!column)
        {
            m_table.labels.back() = cell;
            return std::nullopt;
        }
        const Cell read = ReadCell(cell);
        const std::string_view objection =
            read.value ? Objection(m_table.columns[*column], *read.value, m_model) : read.fault;
        if (!objection.empty())
            return m_place.Error("table.number", fmt::format("'{}' {}", cell, objection));
        if (read.value)
            m_table.cells[m_table.cells.size() - m_table.columns.size() + *column] = *read.value;
        return std::nullopt;
    }

    ScenarioTable Finish()
    {
        return std::move(m_table);
    }

private:
    static constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

    /// Makes room for one more column in the scenarios that there are.
    void Widen()
    {
        const std::size_t had = m_table.columns.size();
        std::vector<double> wider(m_table.labels.size() * (had + 1), kNoNumber);
        for (std::size_t k = 0; k != m_table.cells.size(); ++k)
            wider[k + k / had] = m_table.cells[k];
        m_table.cells = std::move(wider);
    }

    const nuv::Model& m_model;
    Place m_place;
    ScenarioTable m_table;
    std::unordered_map<std::string, std::size_t> m_columns;
};

/// The columns of the first line, each named once.
nuv::Result<std::vector<std::optional<std::size_t>>> ReadHeader(const Cells& cells,
                                                                Builder& builder)
{
    std::vector<std::optional<std::size_t>> columns;
    for (const std::string& cell : cells)
    {
        const std::string name(WithoutBlanks(cell));
        const auto column = builder.ColumnOf(name);
        if (!column && cells.size() == 1 && name.find_first_of(";\t") != std::string::npos)
            return builder.At().Error("table.separator", "this line has no comma",
                                      "cells are separated by commas");
        if (!column)
            return column.GetError();
        if (std::ranges::find(columns, *column) != columns.end())
            return builder.At().Error("table.repeated-column",
                                      fmt::format("a second column '{}'", name));
        columns.push_back(*column);
    }
    return columns;
}

nuv::Result<ScenarioTable> ReadCsv(std::string_view text, Builder builder)
{
    std::vector<std::optional<std::size_t>> columns;
    Cells cells;
    while (!text.empty())
    {
        ++builder.At().line;
        const std::string_view line = TakeLine(text);
        if (!SplitCells(line, cells))
            return builder.At().Error("table.quote", "a quote is not closed");
        if (builder.At().line == 1)
        {
            nuv::Result<std::vector<std::optional<std::size_t>>> named = ReadHeader(cells, builder);
            if (!named)
                return named.GetError();
            columns = *std::move(named);
            continue;
        }
        if (WithoutBlanks(line).empty())
            continue;
        if (cells.size() != columns.size())
            return builder.At().Error(
                "table.cells", fmt::format("{} cells instead of {}", cells.size(), columns.size()),
                "numbers have a decimal point; a cell with a comma stands in quotes");
        builder.BeginScenario();
        for (std::size_t k = 0; k != columns.size(); ++k)
            if (std::optional<nuv::Error> error = builder.Put(columns[k], cells[k]))
                return *error;
    }
    return builder.Finish();
}

nuv::Result<ScenarioTable> ReadJsonLines(std::string_view text, const std::string& name,
                                         Builder builder)
{
    using JsonKind = nuv::JsonValue::Kind;
    while (!text.empty())
    {
        ++builder.At().line;
        const std::string_view line = WithoutBlanks(TakeLine(text));
        if (line.empty())
            continue;
        nuv::DiagnosticLog log(name, line);
        const std::optional<nuv::JsonValue> object = nuv::ReadJson(line, log);
        if (!object || object->kind != JsonKind::Object)
            return builder.At().Error("table.object", "this is no JSON object");
        builder.BeginScenario();
        for (std::size_t k = 0; k != object->items.size(); ++k)
        {
            const nuv::JsonValue& value = object->items[k];
            if (value.kind != JsonKind::Number && value.kind != JsonKind::String)
                return builder.At().Error(
                    "table.value",
                    fmt::format("'{}' has {}", object->keys[k], nuv::KindWords(value.kind)),
                    "numbers and strings are known, such as \"-inf\"");
            const auto column = builder.ColumnOf(object->keys[k]);
            if (!column)
                return column.GetError();
            if (std::optional<nuv::Error> error = builder.Put(*column, value.text))
                return *error;
        }
    }
    return builder.Finish();
}

}  // namespace

nuv::Result<ScenarioTable> ReadScenarios(std::string_view text, const std::string& name,
                                         const nuv::Model& model)
{
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    Builder builder(model, name);
    if (WithoutBlanks(text.substr(0, text.find_last_not_of("\r\n") + 1)).empty())
        return nuv::Error{"table.empty",
                          "there is no table in this file",
                          "its first line names columns: scenario, cost:VARIABLE, side:ROW",
                          name,
                          0,
                          0};
    return text.starts_with('{') ? ReadJsonLines(text, name, std::move(builder))
                                 : ReadCsv(text, std::move(builder));
}

}  // namespace nuvlp
