/// Changing a model that stands. Entries are stored by rows without gaps, so what adds an entry in
/// the middle or takes some out moves those behind it: one pass, however many it concerns.
#include "Nuv/Model/Model.hpp"
#include "Nuv/Model/ModelErrors.hpp"
#include "Nuv/Model/WrittenNumber.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuv
{
namespace
{

/// A name table without the entries that are marked.
NameTable Without(const NameTable& names, const std::vector<bool>& marked)
{
    NameTable kept;
    for (std::uint32_t index = 0; index < names.Size(); ++index)
    {
        if (marked[index])
            continue;
        if (names[index].empty())
            (void)kept.AddUnnamed();
        else
            (void)kept.Add(names[index], names.IsMade(index));
    }
    return kept;
}

void RemoveMarked(std::vector<double>& numbers, const std::vector<bool>& marked)
{
    std::size_t kept = 0;
    for (std::size_t at = 0; at < numbers.size(); ++at)
    {
        if (!marked[at])
            numbers[kept++] = numbers[at];
    }
    numbers.resize(kept);
}

}  // namespace

Variable Model::AddColumn(std::string_view name, double cost, Bounds bounds,
                          std::span<const ColumnTerm> terms)
{
    return AddNamedColumn(name, cost, bounds, terms, false);
}

Variable Model::AddColumn(double cost, Bounds bounds, std::span<const ColumnTerm> terms)
{
    return AddNamedColumn(m_variableNames.MakeName('x'), cost, bounds, terms, true);
}

Variable Model::AddNamedColumn(std::string_view name, double cost, Bounds bounds,
                               std::span<const ColumnTerm> terms, bool isMade)
{
    if (!CheckNewVariable(name, bounds))
        return {};
    const std::string subject = "variable " + Quoted(name);
    bool finite = std::isfinite(cost);
    std::vector<ColumnTerm> byRow;
    for (const ColumnTerm& term : terms)
    {
        if (!Owns(term.row))
        {
            Fail(MakeError("model.unknown-row", subject + " has a row that is not of this model",
                           "use handles of rows of this model that were not removed"));
            return {};
        }
        finite = finite && std::isfinite(term.coefficient);
        byRow.push_back(term);
    }
    if (!finite)
    {
        Fail(NotFinite(subject));
        return {};
    }
    std::stable_sort(byRow.begin(), byRow.end(),
                     [this](const ColumnTerm& a, const ColumnTerm& b)
                     { return IndexOf(a.row) < IndexOf(b.row); });
    const Variable variable = AddNamedVariable(name, bounds, isMade);
    m_objective.back() = cost;
    InsertColumn(VariableCount() - 1, byRow);
    return variable;
}

/// Moves the rows up from the last to the first, each behind its place in the end, so that nothing
/// is overwritten before it has moved.
void Model::InsertColumn(std::uint32_t column, std::span<const ColumnTerm> byRow)
{
    std::vector<std::pair<std::uint32_t, WrittenNumber>> entries;
    for (const ColumnTerm& term : byRow)
    {
        const std::uint32_t row = IndexOf(term.row);
        if (!entries.empty() && entries.back().first == row)
            entries.back().second = entries.back().second + term.coefficient;
        else
            entries.emplace_back(row, term.coefficient);
    }
    for (const auto& [row, coefficient] : entries)
        KeepExact({NumberPlace::Of::Entry, row, column}, coefficient);
    std::size_t from = m_columns.size();
    std::size_t to = from + entries.size();
    m_columns.resize(to);
    m_coefficients.resize(to);
    std::uint32_t end = RowCount();
    for (std::size_t left = entries.size(); left-- > 0;)
    {
        const auto& [row, coefficient] = entries[left];
        const std::size_t moved = from - m_rowStarts[std::size_t{row} + 1];
        std::copy_backward(m_columns.begin() + static_cast<std::ptrdiff_t>(from - moved),
                           m_columns.begin() + static_cast<std::ptrdiff_t>(from),
                           m_columns.begin() + static_cast<std::ptrdiff_t>(to));
        std::copy_backward(m_coefficients.begin() + static_cast<std::ptrdiff_t>(from - moved),
                           m_coefficients.begin() + static_cast<std::ptrdiff_t>(from),
                           m_coefficients.begin() + static_cast<std::ptrdiff_t>(to));
        from -= moved;
        to -= moved;
        m_columns[--to] = column;
        m_coefficients[to] = coefficient.value;
        for (; end > row; --end)
            m_rowStarts[end] += left + 1;
    }
}

/// Twice as much as there is, where there is too little: entries that come one by one move those
/// before them a constant number of times each, on the average.
void Model::MakeRoom(std::size_t entries)
{
    const std::size_t needed = m_columns.size() + entries;
    if (m_columns.capacity() < needed)
        m_columns.reserve(std::max(needed, 2 * m_columns.size()));
    if (m_coefficients.capacity() < needed)
        m_coefficients.reserve(std::max(needed, 2 * m_coefficients.size()));
}

bool Model::SetBounds(Variable variable, Bounds bounds)
{
    const std::uint32_t column = Locate("bounds are set for", variable);
    if (column == Variable::NoIndex || !CheckBounds("variable", VariableName(column), bounds))
        return false;
    m_variableLower[column] = bounds.lower;
    m_variableUpper[column] = bounds.upper;
    m_exact.Erase({NumberPlace::Of::VariableLower, column});
    m_exact.Erase({NumberPlace::Of::VariableUpper, column});
    return true;
}

bool Model::SetBounds(Row row, Bounds bounds)
{
    const std::uint32_t at = Locate("bounds are set for", row);
    if (at == Row::NoIndex || !CheckBounds("row", RowName(at), bounds))
        return false;
    m_rowLower[at] = bounds.lower;
    m_rowUpper[at] = bounds.upper;
    m_exact.Erase({NumberPlace::Of::RowLower, at});
    m_exact.Erase({NumberPlace::Of::RowUpper, at});
    return true;
}

bool Model::SetCost(Variable variable, double cost)
{
    const std::uint32_t column = Locate("a cost is set for", variable);
    if (column == Variable::NoIndex)
        return false;
    if (!std::isfinite(cost))
        return Fail(NotFinite("the objective at variable " + Quoted(VariableName(column))));
    m_objective[column] = cost;
    m_exact.Erase({NumberPlace::Of::Objective, column});
    return true;
}

bool Model::SetObjectiveConstant(double constant)
{
    if (!std::isfinite(constant))
        return Fail(NotFinite("the objective"));
    m_objectiveConstant = constant;
    m_exact.Erase({NumberPlace::Of::ObjectiveConstant});
    return true;
}

bool Model::SetCoefficient(Row row, Variable variable, double coefficient)
{
    const std::uint32_t at = Locate("a coefficient is set for", row);
    const std::uint32_t column = Locate("a coefficient is set for", variable);
    if (at == Row::NoIndex || column == Variable::NoIndex)
        return false;
    if (!std::isfinite(coefficient))
        return Fail(NotFinite("row " + Quoted(RowName(at))));
    const std::size_t end = m_rowStarts[std::size_t{at} + 1];
    std::size_t found = m_rowStarts[at];
    while (found != end && m_columns[found] != column)
        ++found;
    if (found == end && coefficient != 0.0)
        InsertEntry(at, column, coefficient);
    else if (found != end && coefficient == 0.0)
        EraseEntry(at, found);
    else if (found != end)
        m_coefficients[found] = coefficient;
    m_exact.Erase({NumberPlace::Of::Entry, at, column});
    return true;
}

void Model::InsertEntry(std::uint32_t row, std::uint32_t column, double coefficient)
{
    MakeRoom(1);
    const auto at = static_cast<std::ptrdiff_t>(m_rowStarts[std::size_t{row} + 1]);
    m_columns.insert(m_columns.begin() + at, column);
    m_coefficients.insert(m_coefficients.begin() + at, coefficient);
    for (std::size_t behind = static_cast<std::size_t>(row) + 1; behind < m_rowStarts.size();
         ++behind)
        ++m_rowStarts[behind];
}

void Model::EraseEntry(std::uint32_t row, std::size_t at)
{
    m_columns.erase(m_columns.begin() + static_cast<std::ptrdiff_t>(at));
    m_coefficients.erase(m_coefficients.begin() + static_cast<std::ptrdiff_t>(at));
    for (std::size_t behind = static_cast<std::size_t>(row) + 1; behind < m_rowStarts.size();
         ++behind)
        --m_rowStarts[behind];
}

bool Model::Remove(std::span<const Row> rows)
{
    std::vector<bool> marked(RowCount(), false);
    for (const Row row : rows)
    {
        const std::uint32_t at = Locate("a removal is asked for", row);
        if (at == Row::NoIndex)
            return false;
        marked[at] = true;
    }
    RemoveRowsOfEntries(marked);
    RemoveMarked(m_rowLower, marked);
    RemoveMarked(m_rowUpper, marked);
    m_exact.RemoveRows(marked);
    m_rowNames = Without(m_rowNames, marked);
    m_rows.Remove(marked);
    return true;
}

bool Model::Remove(std::span<const Variable> variables)
{
    std::vector<bool> marked(VariableCount(), false);
    for (const Variable variable : variables)
    {
        const std::uint32_t column = Locate("a removal is asked for", variable);
        if (column == Variable::NoIndex)
            return false;
        marked[column] = true;
    }
    RemoveColumnsOfEntries(marked);
    RemoveMarked(m_objective, marked);
    RemoveMarked(m_variableLower, marked);
    RemoveMarked(m_variableUpper, marked);
    m_exact.RemoveVariables(marked);
    m_variableNames = Without(m_variableNames, marked);
    m_variables.Remove(marked);
    return true;
}

void Model::RemoveRowsOfEntries(const std::vector<bool>& marked)
{
    std::size_t kept = 0;
    std::size_t at = 0;
    std::uint32_t newRow = 0;
    for (std::uint32_t row = 0; row < RowCount(); ++row)
    {
        const std::size_t end = m_rowStarts[std::size_t{row} + 1];
        for (; at < end; ++at)
        {
            if (marked[row])
                continue;
            m_columns[kept] = m_columns[at];
            m_coefficients[kept++] = m_coefficients[at];
        }
        if (!marked[row])
            m_rowStarts[++newRow] = kept;
    }
    m_columns.resize(kept);
    m_coefficients.resize(kept);
    m_rowStarts.resize(std::size_t{newRow} + 1);
}

void Model::RemoveColumnsOfEntries(const std::vector<bool>& marked)
{
    std::vector<std::uint32_t> newColumn;
    std::uint32_t count = 0;
    for (const bool isRemoved : marked)
        newColumn.push_back(isRemoved ? count : count++);
    std::size_t kept = 0;
    std::size_t at = 0;
    for (std::uint32_t row = 0; row < RowCount(); ++row)
    {
        for (; at < m_rowStarts[std::size_t{row} + 1]; ++at)
        {
            if (marked[m_columns[at]])
                continue;
            m_columns[kept] = newColumn[m_columns[at]];
            m_coefficients[kept++] = m_coefficients[at];
        }
        m_rowStarts[std::size_t{row} + 1] = kept;
    }
    m_columns.resize(kept);
    m_coefficients.resize(kept);
}

std::uint32_t Model::Locate(std::string_view edit, Variable variable)
{
    const std::uint32_t column = IndexOf(variable);
    if (column == Variable::NoIndex)
    {
        Fail(MakeError("model.unknown-variable",
                       std::string(edit) + " a variable that is not of this model",
                       "use handles of variables of this model that were not removed"));
    }
    return column;
}

std::uint32_t Model::Locate(std::string_view edit, Row row)
{
    const std::uint32_t at = IndexOf(row);
    if (at == Row::NoIndex)
    {
        Fail(MakeError("model.unknown-row", std::string(edit) + " a row that is not of this model",
                       "use handles of rows of this model that were not removed"));
    }
    return at;
}

}  // namespace nuv
