/// Linear expressions and constraints as people write them: `2 * chairs + 5 * tables <= 300`. An
/// expression is a list of terms and a constant; a term may repeat a variable, the model adds such
/// terms up when it takes the expression in.
#pragma once

#include "Nuv/Model/Handle.hpp"

#include <limits>
#include <utility>
#include <vector>

namespace nuv
{

inline constexpr double Infinity = std::numeric_limits<double>::infinity();

struct Term
{
    Variable variable;
    double coefficient;
};

class Expression
{
public:
    Expression() = default;
    Expression(double constant) : m_constant(constant) {}
    Expression(Variable variable) : m_terms{{variable, 1.0}} {}

    [[nodiscard]] const std::vector<Term>& Terms() const noexcept
    {
        return m_terms;
    }
    [[nodiscard]] double Constant() const noexcept
    {
        return m_constant;
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
    Expression& operator*=(double factor)
    {
        for (Term& term : m_terms)
            term.coefficient *= factor;
        m_constant *= factor;
        return *this;
    }

private:
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
        m_constant += factor * other.m_constant;
    }

    std::vector<Term> m_terms;
    double m_constant = 0.0;
};

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

/// lower <= expression <= upper. The constant of the expression counts with its terms.
struct Constraint
{
    Expression expression;
    double lower = -Infinity;
    double upper = Infinity;
};

// A constant on the left changes sides, so that `5 >= x` is stored as x <= 5 and not as -x >= -5.
inline Constraint operator<=(const Expression& left, const Expression& right)
{
    if (left.Terms().empty())
        return {right - left, 0.0, Infinity};
    return {left - right, -Infinity, 0.0};
}
inline Constraint operator>=(const Expression& left, const Expression& right)
{
    if (left.Terms().empty())
        return {right - left, -Infinity, 0.0};
    return {left - right, 0.0, Infinity};
}
inline Constraint operator==(const Expression& left, const Expression& right)
{
    return {left.Terms().empty() ? right - left : left - right, 0.0, 0.0};
}

/// lower <= expression <= upper; C++ has no chained comparison that could say so.
inline Constraint Range(double lower, Expression expression, double upper)
{
    return {std::move(expression), lower, upper};
}

}  // namespace nuv
