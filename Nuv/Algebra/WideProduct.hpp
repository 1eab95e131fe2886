/// The full product of two 64-bit numbers and the division by one of them, with the compiler's
/// 128-bit integers where it has them.
#pragma once

#include <cstdint>

namespace nuv
{

struct WideProduct
{
    std::uint64_t low;
    std::uint64_t high;
};

[[nodiscard]] inline WideProduct MultiplyWide(std::uint64_t x, std::uint64_t y) noexcept
{
#if defined(__SIZEOF_INT128__)
    __extension__ using Wide = unsigned __int128;
    const Wide product = static_cast<Wide>(x) * y;
    return {static_cast<std::uint64_t>(product), static_cast<std::uint64_t>(product >> 64)};
#else
    constexpr std::uint64_t kHalf = 0xFFFFFFFFu;
    const std::uint64_t lowLow = (x & kHalf) * (y & kHalf);
    const std::uint64_t highLow = (x >> 32) * (y & kHalf);
    const std::uint64_t lowHigh = (x & kHalf) * (y >> 32);
    const std::uint64_t middle = (lowLow >> 32) + (highLow & kHalf) + (lowHigh & kHalf);
    return {(middle << 32) | (lowLow & kHalf),
            (x >> 32) * (y >> 32) + (highLow >> 32) + (lowHigh >> 32) + (middle >> 32)};
#endif
}

/// high 2^64 / divisor, rounded down, the remainder behind it; `high` is below the divisor.
struct WideQuotient
{
    std::uint64_t quotient;
    std::uint64_t remainder;
};

[[nodiscard]] inline WideQuotient DivideWide(std::uint64_t high, std::uint64_t divisor) noexcept
{
#if defined(__SIZEOF_INT128__)
    __extension__ using Wide = unsigned __int128;
    const Wide dividend = static_cast<Wide>(high) << 64;
    return {static_cast<std::uint64_t>(dividend / divisor),
            static_cast<std::uint64_t>(dividend % divisor)};
#else
    WideQuotient result{0, high};
    for (int bit = 0; bit < 64; ++bit)
    {
        const bool carries = (result.remainder >> 63) != 0;
        result.remainder <<= 1;
        result.quotient <<= 1;
        if (carries || result.remainder >= divisor)
        {
            result.remainder -= divisor;
            result.quotient |= 1;
        }
    }
    return result;
#endif
}

}  // namespace nuv
