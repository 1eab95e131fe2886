/// Taking models in: every name and number is checked before anything is stored, so a refused call
/// changes nothing but Failure().
#include "Nuv/Model/Model.hpp"

#include <algorithm>
#include <cmath>

namespace nuv
{
namespace
{

std::string Quoted(std::string_view name)
{
    std::string quoted = "'";
    quoted.append(name).append("'");
    return quoted;
}

}  // namespace

Variable Model::AddVariable(std::string_view name, Bounds bounds)
{
    if (name.empty())
    {
        Fail("model.empty-name", "a variable needs a name", "pass a name that is not empty");
        return {};
    }
    if (m_variableNames.Find(name) != NameTable::None)
    {
        Fail("model.duplicate-variable", "there is already a variable called " + Quoted(name),
             "give each variable a name of its own");
        return {};
    }
    if (!CheckBounds("variable", name, bounds))
        return {};
    const std::uint32_t column = m_variableNames.Intern(name).index;
    AppendColumn(bounds);
    return Variable(column);
}

Row Model::Add(std::string_view name, const Constraint& constraint)
{
    if (name.empty())
    {
        Fail("model.empty-name", "a row needs a name", "leave the name out to have one made");
        return {};
    }
    const double constant = constraint.expression.Constant();
    const Bounds bounds = {constraint.lower - constant, constraint.upper - constant};
    if (!CheckExpression("row", name, constraint.expression) || !CheckBounds("row", name, bounds))
        return {};
    const Row row = AppendRow(name, bounds);
    if (!row.Valid())
    {
        Fail("model.duplicate-row", "there is already a row called " + Quoted(name),
             "give each row a name of its own");
        return {};
    }
    std::vector<Term> terms = constraint.expression.Terms();
    std::stable_sort(terms.begin(), terms.end(),
                     [](const Term& a, const Term& b)
                     { return a.variable.Index() < b.variable.Index(); });
    for (std::size_t i = 0; i < terms.size(); ++i)
    {
        if (i > 0 && terms[i].variable.Index() == terms[i - 1].variable.Index())
            m_coefficients.back() += terms[i].coefficient;
        else
            AppendEntry(terms[i].variable.Index(), terms[i].coefficient);
    }
    return row;
}

Row Model::Add(const Constraint& constraint)
{
    std::string name = "R" + std::to_string(RowCount() + 1);
    while (m_rowNames.Find(name) != NameTable::None)
        name += '_';
    return Add(name, constraint);
}

bool Model::SetBounds(Variable variable, Bounds bounds)
{
    if (!variable.Valid() || variable.Index() >= VariableCount())
    {
        return Fail("model.unknown-variable",
                    "bounds are set for a variable that is not of this model",
                    "use the handle that AddVariable of this model returned");
    }
    if (!CheckBounds("variable", VariableName(variable.Index()), bounds))
        return false;
    SetVariableBounds(variable.Index(), bounds);
    return true;
}

std::optional<Variable> Model::FindVariable(std::string_view name) const noexcept
{
    const std::uint32_t column = m_variableNames.Find(name);
    return column == NameTable::None ? std::nullopt : std::optional(Variable(column));
}

std::optional<Row> Model::FindRow(std::string_view name) const noexcept
{
    const std::uint32_t row = m_rowNames.Find(name);
    return row == NameTable::None ? std::nullopt : std::optional(Row{row});
}

Row Model::AppendRow(std::string_view name, Bounds bounds)
{
    Row row;
    if (name.empty())
    {
        row.index = m_rowNames.AddUnnamed();
    }
    else
    {
        const NameTable::Interned interned = m_rowNames.Intern(name);
        if (!interned.isNew)
            return {};
        row.index = interned.index;
    }
    m_rowLower.push_back(bounds.lower);
    m_rowUpper.push_back(bounds.upper);
    m_rowStarts.push_back(m_columns.size());
    return row;
}

std::size_t Model::DropZerosOfLastRow()
{
    const std::size_t before = m_columns.size();
    std::size_t kept = m_rowStarts[RowCount() - 1];
    for (std::size_t at = kept; at < before; ++at)
    {
        if (m_coefficients[at] == 0.0)
            continue;
        m_columns[kept] = m_columns[at];
        m_coefficients[kept] = m_coefficients[at];
        ++kept;
    }
    m_columns.resize(kept);
    m_coefficients.resize(kept);
    m_rowStarts.back() = kept;
    return before - kept;
}

void Model::AssignColumns(std::span<const std::size_t> starts, std::span<const std::uint32_t> rows,
                          std::span<const double> coefficients)
{
    // A counting sort by row: it keeps the columns of each row in increasing order.
    std::fill(m_rowStarts.begin(), m_rowStarts.end(), std::size_t{0});
    for (const std::uint32_t row : rows)
        ++m_rowStarts[row + 1];
    for (std::size_t row = 1; row < m_rowStarts.size(); ++row)
        m_rowStarts[row] += m_rowStarts[row - 1];
    m_columns.resize(rows.size());
    m_coefficients.resize(rows.size());
    std::vector<std::size_t> next(m_rowStarts.begin(), m_rowStarts.end());
    for (std::size_t column = 0; column + 1 < starts.size(); ++column)
    {
        for (std::size_t at = starts[column]; at < starts[column + 1]; ++at)
        {
            const std::size_t to = next[rows[at]]++;
            m_columns[to] = static_cast<std::uint32_t>(column);
            m_coefficients[to] = coefficients[at];
        }
    }
}

void Model::NameUnnamedRows()
{
    for (std::uint32_t row = 0; row < RowCount(); ++row)
    {
        if (!m_rowNames[row].empty())
            continue;
        std::string name = "R" + std::to_string(row + 1);
        while (!m_rowNames.Name(row, name))
            name += '_';
    }
}

void Model::Reserve(std::size_t rows, std::size_t columns, std::size_t entries)
{
    m_rowLower.reserve(rows);
    m_rowUpper.reserve(rows);
    m_rowStarts.reserve(rows + 1);
    m_objective.reserve(columns);
    m_variableLower.reserve(columns);
    m_variableUpper.reserve(columns);
    m_columns.reserve(entries);
    m_coefficients.reserve(entries);
}

void Model::AppendColumn(Bounds bounds)
{
    m_objective.push_back(0.0);
    m_variableLower.push_back(bounds.lower);
    m_variableUpper.push_back(bounds.upper);
}

void Model::SetObjective(Sense sense, const Expression& objective)
{
    if (!CheckExpression("objective", m_objectiveName, objective))
        return;
    m_sense = sense;
    m_objectiveConstant = objective.Constant();
    std::fill(m_objective.begin(), m_objective.end(), 0.0);
    for (const Term& term : objective.Terms())
        m_objective[term.variable.Index()] += term.coefficient;
}

bool Model::CheckBounds(std::string_view what, std::string_view name, Bounds bounds)
{
    const std::string subject = std::string(what) + " " + Quoted(name);
    if (std::isnan(bounds.lower) || std::isnan(bounds.upper))
    {
        return Fail("model.not-a-number", "a bound of " + subject + " is not a number",
                    "check the arithmetic that made it");
    }
    if (bounds.lower == Infinity || bounds.upper == -Infinity)
    {
        return Fail("model.impossible-bound", "no number can keep the bounds of " + subject,
                    "a lower bound is finite or -Infinity, an upper bound finite or Infinity");
    }
    return true;
}

bool Model::CheckExpression(std::string_view what, std::string_view name,
                            const Expression& expression)
{
    const std::string subject = std::string(what) + (name.empty() ? "" : " " + Quoted(name));
    bool finite = std::isfinite(expression.Constant());
    for (const Term& term : expression.Terms())
    {
        if (!term.variable.Valid() || term.variable.Index() >= VariableCount())
        {
            return Fail("model.unknown-variable",
                        subject + " uses a variable that is not of this model",
                        "use handles that AddVariable of this model returned");
        }
        finite = finite && std::isfinite(term.coefficient);
    }
    if (!finite)
    {
        return Fail("model.not-finite",
                    subject + " has a coefficient or constant that is not finite",
                    "only bounds may be infinite");
    }
    return true;
}

bool Model::Fail(std::string code, std::string text, std::string hint)
{
    if (!m_failure)
        m_failure = Error{std::move(code), std::move(text), std::move(hint), {}, 0, 0};
    return false;
}

}  // namespace nuv
