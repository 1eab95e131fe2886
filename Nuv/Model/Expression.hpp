/// Linear expressions and constraints as people write them: `2 * chairs + 5 * tables <= 300`. An
/// expression is a list of terms and a constant; a term may repeat a variable, the model adds such
/// terms up when it takes the expression in.
#pragma once

#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace nuv
{

inline constexpr double Infinity = std::numeric_limits<double>::infinity();

/// A variable of one model. A handle that AddVariable could not make is not valid, and using it is
/// an error of the model.
class Variable
{
public:
    static constexpr std::uint32_t NoIndex = 0xFFFFFFFFu;

    Variable() = default;
    explicit Variable(std::uint32_t index) : m_index(index) {}

    [[nodiscard]] std::uint32_t Index() const noexcept
    {
        return m_index;
    }
    [[nodiscard]] bool Valid() const noexcept
    {
        return m_index != NoIndex;
    }

private:
    std::uint32_t m_index = NoIndex;
};

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
        // By index, because `other` may be this expression itself.
        const std::size_t count = other.m_terms.size();
        m_terms.reserve(m_terms.size() + count);
        for (std::size_t i = 0; i < count; ++i)
            m_terms.push_back(other.m_terms[i]);
        m_constant += other.m_constant;
        return *this;
    }
    Expression& operator-=(const Expression& other)
    {
        Expression negated = other;
        negated *= -1.0;
        return *this += negated;
    }
    Expression& operator*=(double factor)
    {
        for (Term& term : m_terms)
            term.coefficient *= factor;
        m_constant *= factor;
        return *this;
    }

private:
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
