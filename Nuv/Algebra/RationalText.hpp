/// Rational numbers out of text, exactly, however many digits there are.
#pragma once

#include "Nuv/Algebra/Rational.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace nuv
{

/// An optional sign, digits with at most one point among or around them, and perhaps e and a whole
/// exponent: "-1.25e-3".
/// @return nothing for any other text, and for more than 10 000 digits or places.
[[nodiscard]] std::optional<Rational> ReadDecimal(std::string_view text);

/// p/q of integers without leading zeros, with a sign before p only: "-3/7".
/// @return nothing for any other text, for q = 0, and for integers of more than 10 000 digits.
[[nodiscard]] std::optional<Rational> ReadQuotient(std::string_view text);

/// Either of them.
[[nodiscard]] std::optional<Rational> ReadRational(std::string_view text);

/// The number that a text beside a double says, which is one of either kind, or the shortest
/// decimal of the double where there is none.
[[nodiscard]] Rational ToRational(double value, const std::string* text);

/// The number in full: "-0.125", "12e30". @return nothing if no decimal ends there, as for 1/3.
[[nodiscard]] std::optional<std::string> ToFullDecimal(const Rational& value);

}  // namespace nuv
