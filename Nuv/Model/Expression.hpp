/// Linear expressions and constraints as people write them: `2 * chairs + 5 * tables <= 300`. An
/// expression is a list of terms and a list of constants; a term may repeat a variable. The model
/// that takes the expression in adds both up as the decimals that they say: `0.1 * x + 0.2 * x` has
/// the coefficient 0.3, and `x + 0.1 <= 0.3` the side 0.2, though doubles add up to others.
/// Products and quotients are computed in doubles as they are written: `x / 3` has the double next
/// to one third (Model::SetExactCoefficient says the third itself). What is not finite, and a
/// variable that is of no model, is refused by the model that gets the expression.
#pragma once

#include "Nuv/Model/Handle.hpp"

#include <cstddef>
#include <initializer_list>
#include <limits>
#include <utility>
#include <vector>

namespace nuv
{

/// A bound that is none.
inline constexpr double Infinity = std::numeric_limits<double>::infinity();

/// A coefficient and its variable: what `2 * x` is, without storage of its own.
struct Term
{
    Variable variable;         ///< of the model that is to get the term
    double coefficient = 1.0;  ///< finite, or that model refuses it
};

///@{
/// The variable or term times a number, over a number, or with its sign: one product or quotient of
/// doubles, rounded once. Dividing by 0 gives a term that every model refuses.
inline Term operator*(double factor, Variable variable) noexcept
{
    return {variable, factor};
}
inline Term operator*(Variable variable, double factor) noexcept
{
    return {variable, factor};
}
inline Term operator/(Variable variable, double divisor) noexcept
{
    return {variable, 1.0 / divisor};
}
inline Term operator+(Variable variable) noexcept
{
    return {variable, 1.0};
}
inline Term operator-(Variable variable) noexcept
{
    return {variable, -1.0};
}
inline Term operator*(double factor, Term term) noexcept
{
    return {term.variable, factor * term.coefficient};
}
inline Term operator*(Term term, double factor) noexcept
{
    return {term.variable, term.coefficient * factor};
}
inline Term operator/(Term term, double divisor) noexcept
{
    return {term.variable, term.coefficient / divisor};
}
inline Term operator+(Term term) noexcept
{
    return term;
}
inline Term operator-(Term term) noexcept
{
    return {term.variable, -term.coefficient};
}
///@}

/// A sum of terms and constants.
class Expression
{
public:
    Expression() = default;
    ///@{
    /// Of one constant, or of one term; implicit, so that numbers and variables may stand wherever
    /// an expression may.
    Expression(double constant) : m_constant(constant) {}
    Expression(Variable variable) : m_terms{{variable, 1.0}} {}
    Expression(Term term) : m_terms{term} {}
    ///@}

    /// In the order in which they were added, repeated variables as often as they were.
    [[nodiscard]] const std::vector<Term>& Terms() const noexcept
    {
        return m_terms;
    }
    /// The sum of the constants, as doubles add up.
    [[nodiscard]] double Constant() const noexcept
    {
        double sum = m_constant;
        for (const double constant : m_furtherConstants)
            sum += constant;
        return sum;
    }

    /// Adds `coefficient * variable`.
    Expression& Add(double coefficient, Variable variable)
    {
        m_terms.push_back({variable, coefficient});
        return *this;
    }
    /// Takes room for so many terms in all, for whoever knows how many will come.
    void Reserve(std::size_t terms)
    {
        m_terms.reserve(terms);
    }

    ///@{
    /// Appends what is on the right, or its negative. An expression may be added to itself.
    Expression& operator+=(Term term)
    {
        return Add(term.coefficient, term.variable);
    }
    Expression& operator-=(Term term)
    {
        return Add(-term.coefficient, term.variable);
    }
    Expression& operator+=(Variable variable)
    {
        return Add(1.0, variable);
    }
    Expression& operator-=(Variable variable)
    {
        return Add(-1.0, variable);
    }
    Expression& operator+=(const Expression& other)
    {
        Append(other, 1.0);
        return *this;
    }
    Expression& operator-=(const Expression& other)
    {
        Append(other, -1.0);
        return *this;
    }
    ///@}
    ///@{
    /// Multiplies or divides each coefficient and each constant, in doubles.
    Expression& operator*=(double factor)
    {
        for (Term& term : m_terms)
            term.coefficient *= factor;
        m_constant *= factor;
        for (double& constant : m_furtherConstants)
            constant *= factor;
        return *this;
    }
    Expression& operator/=(double divisor)
    {
        for (Term& term : m_terms)
            term.coefficient /= divisor;
        m_constant /= divisor;
        for (double& constant : m_furtherConstants)
            constant /= divisor;
        return *this;
    }
    ///@}

private:
    friend class Model;

    /// Storage grows by push_back's own rule, so that n terms added one by one cost n steps. By
    /// index, because `other` may be this expression itself.
    void Append(const Expression& other, double factor)
    {
        const std::size_t count = other.m_terms.size();
        for (std::size_t i = 0; i < count; ++i)
        {
            const Term term = other.m_terms[i];
            m_terms.push_back({term.variable, factor * term.coefficient});
        }
        const std::size_t further = other.m_furtherConstants.size();
        AddConstant(factor * other.m_constant);
        for (std::size_t i = 0; i < further; ++i)
            AddConstant(factor * other.m_furtherConstants[i]);
    }
    void AddConstant(double constant)
    {
        if (m_constant == 0.0 && m_furtherConstants.empty())
            m_constant = constant;
        else if (constant != 0.0)
            m_furtherConstants.push_back(constant);
    }

    std::vector<Term> m_terms;
    double m_constant = 0.0;  ///< the first that is not zero; most expressions have no other
    std::vector<double> m_furtherConstants;
};

///@{
/// The sum, difference, multiple or quotient: terms and constants of both sides in their order, not
/// added up yet; multiples and quotients are computed in doubles.
inline Expression operator+(Expression left, const Expression& right)
{
    left += right;
    return left;
}
inline Expression operator-(Expression left, const Expression& right)
{
    left -= right;
    return left;
}
inline Expression operator+(Expression left, Term right)
{
    left += right;
    return left;
}
inline Expression operator-(Expression left, Term right)
{
    left -= right;
    return left;
}
inline Expression operator+(Expression left, Variable right)
{
    left += right;
    return left;
}
inline Expression operator-(Expression left, Variable right)
{
    left -= right;
    return left;
}
inline Expression operator+(Expression expression)
{
    return expression;
}
inline Expression operator-(Expression expression)
{
    expression *= -1.0;
    return expression;
}
inline Expression operator*(double factor, Expression expression)
{
    expression *= factor;
    return expression;
}
inline Expression operator*(Expression expression, double factor)
{
    expression *= factor;
    return expression;
}

inline Expression operator/(Expression expression, double divisor)
{
    expression /= divisor;
    return expression;
}
///@}

///@{
/// The sum of the items of a range: variables, terms, expressions or numbers.
template <class Items>
[[nodiscard]] Expression Sum(Items&& items)
{
    Expression sum;
    for (auto&& item : items)
        sum += item;
    return sum;
}
[[nodiscard]] inline Expression Sum(std::initializer_list<Variable> variables)
{
    return Sum<const std::initializer_list<Variable>&>(variables);
}
///@}

/// The sum of `of(item)` over the items of a range.
template <class Items, class Function>
[[nodiscard]] Expression Sum(Items&& items, Function&& of)
{
    Expression sum;
    for (auto&& item : items)
        sum += of(item);
    return sum;
}

///@{
/// The sum of coefficients[k] * variables[k]. No model takes what two ranges of different lengths
/// give: it has a variable of no model, or a coefficient that is no number.
template <class Coefficients, class Variables>
[[nodiscard]] Expression Dot(const Coefficients& coefficients, const Variables& variables)
{
    Expression sum;
    auto variable = std::begin(variables);
    const auto last = std::end(variables);
    for (const double coefficient : coefficients)
        sum.Add(coefficient, variable == last ? Variable() : *variable++);
    for (; variable != last; ++variable)
        sum.Add(std::numeric_limits<double>::quiet_NaN(), *variable);
    return sum;
}
template <class Variables>
[[nodiscard]] Expression Dot(std::initializer_list<double> coefficients, const Variables& variables)
{
    return Dot<std::initializer_list<double>, Variables>(coefficients, variables);
}
[[nodiscard]] inline Expression Dot(std::initializer_list<double> coefficients,
                                    std::initializer_list<Variable> variables)
{
    return Dot<std::initializer_list<double>, std::initializer_list<Variable>>(coefficients,
                                                                               variables);
}
///@}

/// lower <= expression <= upper. The constant of the expression counts with its terms.
struct Constraint
{
    Expression expression;     ///< with its constants on this side still
    double lower = -Infinity;  ///< of the expression; -Infinity for none
    double upper = Infinity;   ///< of the expression; Infinity for none
};

///@{
/// Both sides on the left, against zero. What is a constant alone changes sides, so that `5 >= x`
/// is stored as x <= 5 and not as -x >= -5. Both sides constant is a row without terms.
inline Constraint operator<=(Expression left, const Expression& right)
{
    if (left.Terms().empty())
        return {right - left, 0.0, Infinity};
    return {std::move(left -= right), -Infinity, 0.0};
}
inline Constraint operator>=(Expression left, const Expression& right)
{
    if (left.Terms().empty())
        return {right - left, -Infinity, 0.0};
    return {std::move(left -= right), 0.0, Infinity};
}
inline Constraint operator==(Expression left, const Expression& right)
{
    if (left.Terms().empty())
        return {right - left, 0.0, 0.0};
    return {std::move(left -= right), 0.0, 0.0};
}
///@}

/// lower <= expression <= upper; C++ has no chained comparison that could say so.
inline Constraint Range(double lower, Expression expression, double upper)
{
    return {std::move(expression), lower, upper};
}

}  // namespace nuv
