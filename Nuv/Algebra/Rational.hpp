/// Rational numbers of any size, and their ways from and to doubles and text.
#pragma once

#include "Nuv/Algebra/ExactNumber.hpp"
#include "Nuv/Algebra/Integer.hpp"

#include <compare>
#include <concepts>
#include <string>
#include <utility>

namespace nuv
{

/// Invariant: in lowest terms, the denominator positive.
class Rational
{
public:
    Rational() = default;
    template <std::integral Number>
    Rational(Number value) : m_numerator(value)
    {
    }
    Rational(Integer value) noexcept : m_numerator(std::move(value)) {}
    /// numerator / denominator, the denominator not zero.
    Rational(Integer numerator, Integer denominator);

    [[nodiscard]] const Integer& Numerator() const noexcept
    {
        return m_numerator;
    }
    [[nodiscard]] const Integer& Denominator() const noexcept
    {
        return m_denominator;
    }
    [[nodiscard]] int Sign() const noexcept
    {
        return m_numerator.Sign();
    }

    Rational& operator+=(const Rational& other);
    Rational& operator-=(const Rational& other);
    Rational& operator*=(const Rational& other);
    /// The other is not zero.
    Rational& operator/=(const Rational& other);

    friend Rational operator+(Rational x, const Rational& y)
    {
        return std::move(x += y);
    }
    friend Rational operator-(Rational x, const Rational& y)
    {
        return std::move(x -= y);
    }
    friend Rational operator*(Rational x, const Rational& y)
    {
        return std::move(x *= y);
    }
    friend Rational operator/(Rational x, const Rational& y)
    {
        return std::move(x /= y);
    }
    friend Rational operator-(Rational x) noexcept
    {
        x.m_numerator.Negate();
        return x;
    }
    friend bool operator==(const Rational& x, const Rational& y) noexcept
    {
        return x.m_numerator == y.m_numerator && x.m_denominator == y.m_denominator;
    }
    friend std::strong_ordering operator<=>(const Rational& x, const Rational& y);

private:
    Rational& Add(const Rational& other, bool subtract);

    Integer m_numerator;
    Integer m_denominator = 1;
};

[[nodiscard]] inline Rational Abs(Rational value)
{
    return value.Sign() < 0 ? -std::move(value) : std::move(value);
}

/// The number that a finite double stands for.
[[nodiscard]] Rational ToRational(double value,
                                  CoefficientMeaning meaning = CoefficientMeaning::StoredDouble);

/// 2^scale.two * 5^scale.five, neither exponent negative.
[[nodiscard]] Integer PowerOf(Scale scale);

/// number times 2^scale.two * 5^scale.five, which must be an integer.
[[nodiscard]] Integer Scaled(const ExactNumber& number, Scale scale);

/// The nearest double, ties to even; infinite beyond the largest.
[[nodiscard]] double ToDouble(const Rational& value);
/// The same for numerator / denominator, the denominator positive.
[[nodiscard]] double QuotientToDouble(const Integer& numerator, const Integer& denominator);

/// "p" or "p/q" in lowest terms, q positive.
[[nodiscard]] std::string ToString(const Rational& value);

/// The value rounded to `digits` significant decimal digits, as d.ddde<exponent>; for reports.
[[nodiscard]] std::string ToDecimal(const Rational& value, int digits);

}  // namespace nuv
