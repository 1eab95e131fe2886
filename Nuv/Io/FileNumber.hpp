/// The numbers of a model file: what they are exactly, and the nearest doubles.
#pragma once

#include "Nuv/Algebra/Rational.hpp"
#include "Nuv/Model/ExactNumbers.hpp"
#include "Nuv/Model/ModelBuilder.hpp"

#include <memory>
#include <string>
#include <string_view>

namespace nuv
{

/// Invariant: `exact` is null where the number is the shortest decimal that reads back to `value`,
/// as most are, and where it is infinite.
struct FileNumber
{
    double value = 0.0;
    std::shared_ptr<const Rational> exact;

    FileNumber() = default;
    FileNumber(double shortest) noexcept : value(shortest) {}
    /// The nearest double may be infinite.
    explicit FileNumber(const Rational& number);
    /// A decimal or a quotient, whose nearest double is known; `text` need not be short.
    FileNumber(std::string_view text, double nearest);

    [[nodiscard]] Rational Exactly() const;
    friend bool operator==(const FileNumber& x, const FileNumber& y);
};

[[nodiscard]] FileNumber operator-(const FileNumber& number);
/// Of the numbers themselves, which is not always the sum of the doubles: 0.1 and 0.2 make 0.3.
/// Infinite where that is beyond doubles.
[[nodiscard]] FileNumber operator+(const FileNumber& x, const FileNumber& y);

/// The number at a place of a model, whose double is `value`.
[[nodiscard]] FileNumber NumberAt(const Model& model, const NumberPlace& place, double value);
[[nodiscard]] FileNumber ConstantOf(const Model& model);
[[nodiscard]] FileNumber CostOf(const Model& model, std::uint32_t column);
[[nodiscard]] FileNumber LowerOf(const Model& model, Variable variable);
[[nodiscard]] FileNumber UpperOf(const Model& model, Variable variable);
[[nodiscard]] FileNumber LowerOf(const Model& model, Row row);
[[nodiscard]] FileNumber UpperOf(const Model& model, Row row);

/// Keeps beside its double, which is in the model already, what is left to say of a number.
void Keep(ModelBuilder& builder, const NumberPlace& place, const FileNumber& number);

/// The shortest text that says the number: a decimal, or where there is none a quotient.
[[nodiscard]] std::string NumberText(const FileNumber& number);

}  // namespace nuv
