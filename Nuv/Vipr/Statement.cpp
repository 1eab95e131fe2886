#include "Nuv/Vipr/Statement.hpp"

#include "Nuv/Algebra/RationalText.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

namespace nuv::vipr
{
namespace
{

class Stater
{
public:
    Stater(const Model& model, CoefficientMeaning numbers) : m_model(model), m_numbers(numbers)
    {
        m_problem.maximize = model.ObjectiveSense() == Sense::Maximize;
        for (std::uint32_t j = 0; j < model.VariableCount(); ++j)
        {
            m_problem.variables.emplace_back(model.VariableName(j));
            AddTerm(m_problem.objective, j, {NumberPlace::Of::Objective, j}, model.Objective()[j]);
        }
        for (std::uint32_t j = 0; j < model.VariableCount(); ++j)
            State({"fixed(", "lower(", "upper("}, model.VariableName(j),
                  SideAt({NumberPlace::Of::VariableLower, j}, model.VariableLower()[j]),
                  SideAt({NumberPlace::Of::VariableUpper, j}, model.VariableUpper()[j]),
                  {{j, Rational(1)}});
        m_problem.bounds = m_problem.constraints.size();
        for (std::uint32_t i = 0; i < model.RowCount(); ++i)
            State({"row(", "least(", "most("}, model.RowName(i),
                  SideAt({NumberPlace::Of::RowLower, i}, model.RowLower()[i]),
                  SideAt({NumberPlace::Of::RowUpper, i}, model.RowUpper()[i]), TermsOfRow(i));
    }

    Statement Take()
    {
        return std::move(m_statement);
    }

private:
    struct Labels
    {
        std::string_view equal;
        std::string_view lower;
        std::string_view upper;
    };

    void AddTerm(Terms& terms, std::uint32_t column, const NumberPlace& place,
                 double coefficient) const
    {
        if (coefficient != 0.0)
            terms.push_back({column, NumberAt(m_model, m_numbers, place, coefficient)});
    }

    /// Nothing for an infinite side.
    [[nodiscard]] std::optional<Rational> SideAt(const NumberPlace& place, double side) const
    {
        if (!std::isfinite(side))
            return std::nullopt;
        return NumberAt(m_model, m_numbers, place, side);
    }

    [[nodiscard]] Terms TermsOfRow(std::uint32_t row) const
    {
        Terms terms;
        const std::span<const std::uint32_t> columns = m_model.RowColumns(row);
        const std::span<const double> coefficients = m_model.RowCoefficients(row);
        for (std::size_t k = 0; k < columns.size(); ++k)
            AddTerm(terms, columns[k], {NumberPlace::Of::Entry, row, columns[k]}, coefficients[k]);
        std::ranges::sort(terms, {}, &Term::index);
        return terms;
    }

    std::size_t Add(std::string_view label, std::string_view name, Relation relation,
                    const Rational& side, Terms terms)
    {
        m_problem.constraints.push_back(
            {std::string(label).append(name).append(")"), relation, side, std::move(terms)});
        return m_problem.constraints.size() - 1;
    }

    void State(const Labels& labels, std::string_view name, const std::optional<Rational>& lower,
               const std::optional<Rational>& upper, const Terms& terms)
    {
        Sides sides;
        if (lower && lower == upper)
        {
            sides.lower = Add(labels.equal, name, Relation::Equal, *lower, terms);
            sides.upper = sides.lower;
            m_statement.sides.push_back(sides);
            return;
        }
        if (lower)
            sides.lower = Add(labels.lower, name, Relation::AtLeast, *lower, terms);
        if (upper)
            sides.upper = Add(labels.upper, name, Relation::AtMost, *upper, terms);
        m_statement.sides.push_back(sides);
    }

    const Model& m_model;
    CoefficientMeaning m_numbers;
    Statement m_statement;
    Problem& m_problem = m_statement.problem;
};

}  // namespace

Rational NumberAt(const Model& model, CoefficientMeaning numbers, const NumberPlace& place,
                  double value)
{
    return numbers == CoefficientMeaning::StoredDouble
               ? ToRational(value)
               : ToRational(value, model.Exact().Find(place));
}

Statement StatementOf(const Model& model, CoefficientMeaning numbers)
{
    return Stater(model, numbers).Take();
}

}  // namespace nuv::vipr
