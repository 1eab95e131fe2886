/// Numbers as they are written, in a file or a program: what they are exactly, and the nearest
/// doubles.
#pragma once

#include "Nuv/Algebra/Rational.hpp"
#include "Nuv/Model/Error.hpp"
#include "Nuv/Model/ExactNumbers.hpp"
#include "Nuv/Model/ModelBuilder.hpp"

#include <memory>
#include <string>
#include <string_view>

namespace nuv
{

/// Invariant: `exact` is null where the number is the shortest decimal that reads back to `value`,
/// as most are, and where it is infinite.
struct WrittenNumber
{
    double value = 0.0;
    std::shared_ptr<const Rational> exact;

    WrittenNumber() = default;
    WrittenNumber(double shortest) noexcept : value(shortest) {}
    /// The nearest double may be infinite.
    explicit WrittenNumber(const Rational& number);
    /// A decimal or a quotient, whose nearest double is known; `text` need not be short.
    WrittenNumber(std::string_view text, double nearest);

    [[nodiscard]] Rational Exactly() const;
    friend bool operator==(const WrittenNumber& x, const WrittenNumber& y);
};

/// A text that a program gives: an integer, a decimal of any length or a quotient of integers.
/// @return the error model.not-a-number for any other, and for what is beyond doubles.
Result<WrittenNumber> ReadNumber(std::string_view text);

[[nodiscard]] WrittenNumber operator-(const WrittenNumber& number);
/// Of the numbers themselves, which is not always the sum of the doubles: 0.1 and 0.2 make 0.3.
/// Infinite where that is beyond doubles.
[[nodiscard]] WrittenNumber operator+(const WrittenNumber& x, const WrittenNumber& y);

/// The number at a place of a model, whose double is `value`.
[[nodiscard]] WrittenNumber NumberAt(const Model& model, const NumberPlace& place, double value);
[[nodiscard]] WrittenNumber ConstantOf(const Model& model);
[[nodiscard]] WrittenNumber CostOf(const Model& model, std::uint32_t column);
[[nodiscard]] WrittenNumber LowerOf(const Model& model, Variable variable);
[[nodiscard]] WrittenNumber UpperOf(const Model& model, Variable variable);
[[nodiscard]] WrittenNumber LowerOf(const Model& model, Row row);
[[nodiscard]] WrittenNumber UpperOf(const Model& model, Row row);

/// Keeps beside its double, which is in the model already, what is left to say of a number.
void Keep(ModelBuilder& builder, const NumberPlace& place, const WrittenNumber& number);

}  // namespace nuv
