/// Doubles in exact terms: a whole mantissa times powers of two and five.
#pragma once

#include <cstdint>

namespace nuv
{

/// What a double stands for in exact arithmetic.
enum class CoefficientMeaning : std::uint8_t
{
    StoredDouble,     ///< itself: 0.1 is 3602879701896397 / 2^55
    ShortestDecimal,  ///< the shortest decimal that reads back to it: 0.1 is 1/10
};

/// A power of two times a power of five.
struct Scale
{
    int two = 0;   ///< the exponent of 2
    int five = 0;  ///< the exponent of 5

    ///@{
    /// Exponents change sign, add up, subtract, compare: as the powers are inverted, multiplied,
    /// divided.
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
    ///@}
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
    std::int64_t mantissa = 0;  ///< odd, or 0
    Scale scale;                ///< what it is to be multiplied by
};

/// The number that a finite double stands for.
[[nodiscard]] ExactNumber TakeApart(double value, CoefficientMeaning meaning) noexcept;

/// number times 2^scale.two * 5^scale.five, which is an integer, or 0 where it needs more than 63
/// bits.
[[nodiscard]] std::int64_t ScaledInWord(const ExactNumber& number, Scale scale) noexcept;

}  // namespace nuv
