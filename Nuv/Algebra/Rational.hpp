/// Exact numbers: integers and rationals of any size. Over GMP where the build has it
/// (NUV_USE_GMP), otherwise over Boost's own integers; both give the same numbers and the same
/// strings.
#pragma once

#if defined(NUV_USE_GMP)
#include <boost/multiprecision/gmp.hpp>
#else
#include <boost/multiprecision/cpp_int.hpp>
#endif

#include "Nuv/Algebra/Numbers.hpp"

#include <cstdint>
#include <string>

namespace nuv
{

#if defined(NUV_USE_GMP)
using Integer =
    boost::multiprecision::number<boost::multiprecision::gmp_int, boost::multiprecision::et_off>;
using Rational = boost::multiprecision::number<boost::multiprecision::gmp_rational,
                                               boost::multiprecision::et_off>;
#else
using Integer = boost::multiprecision::number<boost::multiprecision::cpp_int_backend<>,
                                              boost::multiprecision::et_off>;
using Rational = boost::multiprecision::number<
    boost::multiprecision::rational_adaptor<boost::multiprecision::cpp_int_backend<>>,
    boost::multiprecision::et_off>;
#endif

/// A power of two times a power of five.
struct Scale
{
    int two = 0;
    int five = 0;

    Scale operator-() const noexcept
    {
        return {-two, -five};
    }
    friend Scale operator+(Scale x, Scale y) noexcept
    {
        return {x.two + y.two, x.five + y.five};
    }
    friend Scale operator-(Scale x, Scale y) noexcept
    {
        return x + -y;
    }
    friend bool operator==(Scale, Scale) = default;
    /// Lowers both exponents to those of `other` where these are lower.
    void LowerTo(Scale other) noexcept
    {
        two = other.two < two ? other.two : two;
        five = other.five < five ? other.five : five;
    }
};

/// A finite double in exact terms: mantissa * 2^scale.two * 5^scale.five, the mantissa odd. Zero
/// has the mantissa 0 and the scale {0, 0}.
struct ExactNumber
{
    std::int64_t mantissa = 0;
    Scale scale;
};

/// The number that a finite double stands for.
[[nodiscard]] ExactNumber TakeApart(double value, Numbers numbers) noexcept;
[[nodiscard]] Rational ToRational(double value, Numbers numbers = Numbers::AsStored);

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

/// Bits of the magnitude; 0 for zero.
[[nodiscard]] std::size_t BitLength(const Integer& value);

/// Trailing zero bits of the magnitude; the value is not zero.
[[nodiscard]] std::size_t TrailingZeros(const Integer& value);

}  // namespace nuv
