/// Exact numbers times powers of two and five, where the product fits a word.
#pragma once

#include "Nuv/Algebra/ExactNumber.hpp"

#include <array>
#include <cstdint>
#include <limits>

namespace nuv
{

/// number times 2^scale.two * 5^scale.five, which is an integer, or 0 where it needs more than 63
/// bits.
[[nodiscard]] inline std::int64_t ScaledInWord(const ExactNumber& number, Scale scale) noexcept
{
    static constexpr auto kPowersOfFive = []
    {
        std::array<std::int64_t, 28> powers{1};  // those below 2^63
        for (std::size_t k = 1; k != powers.size(); ++k)
            powers[k] = 5 * powers[k - 1];
        return powers;
    }();
    const Scale left = number.scale + scale;
    if (number.mantissa == 0 || left.two > 62 ||
        left.five >= static_cast<int>(kPowersOfFive.size()))
        return 0;
    const std::int64_t five = kPowersOfFive[static_cast<std::size_t>(left.five)];
    const std::int64_t room = std::numeric_limits<std::int64_t>::max() >> left.two;
    if (five > room || number.mantissa > room / five || number.mantissa < -(room / five))
        return 0;
    return five * number.mantissa * (std::int64_t{1} << left.two);
}

}  // namespace nuv
