/// Exact numbers: integers and rationals of any size. Over GMP where the build has it
/// (NUV_USE_GMP), otherwise over Boost's own integers; both give the same numbers and the same
/// strings.
#pragma once

#if defined(NUV_USE_GMP)
#include <boost/multiprecision/gmp.hpp>
#else
#include <boost/multiprecision/cpp_int.hpp>
#endif

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

/// A finite double taken apart: mantissa * 2^exponent, the mantissa odd unless the number is zero.
struct Dyadic
{
    std::int64_t mantissa = 0;
    int exponent = 0;
};
[[nodiscard]] Dyadic TakeApart(double value) noexcept;

/// The exact value of a finite double.
[[nodiscard]] Rational ToRational(double value);

/// value * 2^shift, which must be an integer.
[[nodiscard]] Integer ScaledInteger(double value, int shift);

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
