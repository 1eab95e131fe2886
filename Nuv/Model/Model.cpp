/// Taking models in: every name and number is checked before anything is stored, so a refused call
/// changes nothing but Failure().
#include "Nuv/Model/Model.hpp"

#include "Nuv/Model/ModelErrors.hpp"
#include "Nuv/Model/WrittenNumber.hpp"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace nuv
{
namespace
{

bool AreFinite(std::span<const double> numbers) noexcept
{
    return std::all_of(numbers.begin(), numbers.end(),
                       [](double number) { return std::isfinite(number); });
}

}  // namespace

Variable Model::AddVariable(Bounds bounds)
{
    return AddNamedVariable(m_variableNames.MakeName('x'), bounds, true);
}

std::vector<Variable> Model::AddVariables(std::size_t count, Bounds bounds)
{
    std::vector<Variable> variables(count);
    for (Variable& variable : variables)
        variable = AddVariable(bounds);
    return variables;
}

Variable Model::AddNamedVariable(std::string_view name, Bounds bounds, bool isMade)
{
    if (!CheckNewVariable(name, bounds))
        return {};
    (void)m_variableNames.Add(name, isMade);
    AppendColumn(bounds);
    return VariableAt(VariableCount() - 1);
}

Row Model::Add(std::string_view name, const Constraint& constraint)
{
    return AddNamedRow(name, constraint, false);
}

Row Model::Add(const Constraint& constraint)
{
    return AddNamedRow(m_rowNames.MakeName('R'), constraint, true);
}

Row Model::AddNamedRow(std::string_view name, const Constraint& constraint, bool isMade)
{
    if (name.empty())
    {
        Fail(MakeError("model.empty-name", "a row needs a name",
                       "leave the name out to have one made"));
        return {};
    }
    const WrittenNumber constant = ConstantOf(constraint.expression);
    const WrittenNumber lower = WrittenNumber(constraint.lower) + -constant;
    const WrittenNumber upper = WrittenNumber(constraint.upper) + -constant;
    const Bounds bounds = {lower.value, upper.value};
    if (!CheckExpression("row", name, constraint.expression) || !CheckBounds("row", name, bounds))
        return {};
    const Row row = AppendRow(name, bounds, isMade);
    if (!row.Valid())
    {
        Fail(MakeError("model.duplicate-row", "there is already a row called " + Quoted(name),
                       "give each row a name of its own"));
        return {};
    }
    KeepExact({NumberPlace::Of::RowLower, RowCount() - 1}, lower);
    KeepExact({NumberPlace::Of::RowUpper, RowCount() - 1}, upper);
    AppendTerms(constraint.expression.Terms());
    return row;
}

WrittenNumber Model::ConstantOf(const Expression& expression)
{
    WrittenNumber sum = expression.m_constant;
    for (const double constant : expression.m_furtherConstants)
        sum = sum + constant;
    return sum;
}

void Model::KeepExact(const NumberPlace& place, const WrittenNumber& number)
{
    if (number.exact)
        m_exact.Set(place, ToString(*number.exact));
}

void Model::AppendTerms(std::span<const Term> added)
{
    std::vector<std::pair<std::uint32_t, double>> terms;
    for (const Term& term : added)
        terms.emplace_back(IndexOf(term.variable), term.coefficient);
    std::stable_sort(terms.begin(), terms.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t i = 0; i < terms.size();)
    {
        const std::uint32_t column = terms[i].first;
        WrittenNumber sum = terms[i].second;
        for (++i; i < terms.size() && terms[i].first == column; ++i)
            sum = sum + terms[i].second;
        AppendEntry(column, sum.value);
        KeepExact({NumberPlace::Of::Entry, RowCount() - 1, column}, sum);
    }
}

std::optional<Error> Model::FindFault() const
{
    if (m_failure)
        return m_failure;
    if (!std::isfinite(m_objectiveConstant))
        return NotFinite("the objective");
    for (std::uint32_t column = 0; column < VariableCount(); ++column)
    {
        const Bounds bounds = {m_variableLower[column], m_variableUpper[column]};
        if (std::isfinite(m_objective[column]) && ArePossible(bounds))
            continue;
        const std::string subject = "variable " + Quoted(VariableName(column));
        return ArePossible(bounds) ? NotFinite("the objective at " + subject)
                                   : FaultOf(bounds, subject);
    }
    for (std::uint32_t row = 0; row < RowCount(); ++row)
    {
        const Bounds bounds = {m_rowLower[row], m_rowUpper[row]};
        const bool isFinite = AreFinite(RowCoefficients(row));
        if (isFinite && ArePossible(bounds))
            continue;
        const std::string subject = "row " + Quoted(RowName(row));
        return isFinite ? FaultOf(bounds, subject) : NotFinite(subject);
    }
    return std::nullopt;
}

std::optional<Variable> Model::FindVariable(std::string_view name) const noexcept
{
    const std::uint32_t column = m_variableNames.Find(name);
    return column == NameTable::kNone ? std::nullopt : std::optional(VariableAt(column));
}

std::optional<Row> Model::FindRow(std::string_view name) const noexcept
{
    const std::uint32_t row = m_rowNames.Find(name);
    return row == NameTable::kNone ? std::nullopt : std::optional(RowAt(row));
}

Row Model::AppendRow(std::string_view name, Bounds bounds, bool isMade)
{
    if (name.empty())
        (void)m_rowNames.AddUnnamed();
    else if (m_rowNames.Add(name, isMade) == NameTable::kNone)
        return {};
    AppendUnnamedRow(bounds);
    return RowAt(RowCount() - 1);
}

void Model::AppendUnnamedRow(Bounds bounds)
{
    m_rows.Add();
    m_rowLower.push_back(bounds.lower);
    m_rowUpper.push_back(bounds.upper);
    m_rowStarts.push_back(m_columns.size());
}

void Model::AppendEntry(std::uint32_t column, double coefficient)
{
    m_columns.push_back(column);
    m_coefficients.push_back(coefficient);
    m_rowStarts.back() = m_columns.size();
}

void Model::AppendColumn(Bounds bounds)
{
    m_variables.Add();
    m_objective.push_back(0.0);
    m_variableLower.push_back(bounds.lower);
    m_variableUpper.push_back(bounds.upper);
}

void Model::SetObjective(Sense sense, const Expression& objective)
{
    if (!CheckExpression("objective", m_objectiveName, objective))
        return;
    m_sense = sense;
    m_exact.EraseObjective();
    const WrittenNumber constant = ConstantOf(objective);
    m_objectiveConstant = constant.value;
    KeepExact({NumberPlace::Of::ObjectiveConstant}, constant);
    std::fill(m_objective.begin(), m_objective.end(), 0.0);
    std::map<std::uint32_t, WrittenNumber> repeated;
    for (const Term& term : objective.Terms())
    {
        const std::uint32_t column = IndexOf(term.variable);
        double& cost = m_objective[column];
        if (cost == 0.0)
        {
            cost = term.coefficient;
            repeated.erase(column);
            continue;
        }
        WrittenNumber& sum = repeated.try_emplace(column, cost).first->second;
        sum = sum + term.coefficient;
        cost = sum.value;
    }
    for (const auto& [column, sum] : repeated)
        KeepExact({NumberPlace::Of::Objective, column}, sum);
}

bool Model::CheckNewVariable(std::string_view name, Bounds bounds)
{
    if (name.empty())
    {
        return Fail(MakeError("model.empty-name", "a variable needs a name",
                              "leave the name out to have one made"));
    }
    const std::uint32_t taken = m_variableNames.Find(name);
    if (taken != NameTable::kNone && !m_variableNames.IsMade(taken))
    {
        return Fail(MakeError("model.duplicate-variable",
                              "there is already a variable called " + Quoted(name),
                              "give each variable a name of its own"));
    }
    return CheckBounds("variable", name, bounds);
}

bool Model::CheckBounds(std::string_view what, std::string_view name, Bounds bounds)
{
    return ArePossible(bounds) || Fail(FaultOf(bounds, std::string(what) + " " + Quoted(name)));
}

bool Model::CheckExpression(std::string_view what, std::string_view name,
                            const Expression& expression)
{
    const std::string subject = std::string(what) + (name.empty() ? "" : " " + Quoted(name));
    bool finite = std::isfinite(expression.Constant());
    for (const Term& term : expression.Terms())
    {
        if (!Owns(term.variable))
        {
            return Fail(MakeError("model.unknown-variable",
                                  subject + " uses a variable that is not of this model",
                                  "use handles that AddVariable of this model returned"));
        }
        finite = finite && std::isfinite(term.coefficient);
    }
    return finite || Fail(NotFinite(subject));
}

bool Model::Fail(Error error)
{
    if (!m_failure)
        m_failure = std::move(error);
    return false;
}

}  // namespace nuv
