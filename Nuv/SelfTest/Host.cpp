// The machine's arithmetic, tried on numbers that the compiler must not compute itself.
#include "Nuv/SelfTest/SelfTest.hpp"

#include "Nuv/Corpus/Random.hpp"

namespace nuv::selftest
{
namespace
{
using corpus::BitsOf;
using corpus::FloatOfBits;

constexpr uint32_t kSmallestNormal = 0x00800000U;
constexpr uint32_t kHalfOfIt = 0x00400000U;

uint32_t BitsOfProduct(uint32_t x, uint32_t y)
{
    const volatile float left = FloatOfBits(x);
    const volatile float right = FloatOfBits(y);
    const volatile float product = left * right;
    return BitsOf(product);
}

uint32_t BitsOfSum(uint32_t x, uint32_t y)
{
    const volatile float left = FloatOfBits(x);
    const volatile float right = FloatOfBits(y);
    const volatile float sum = left + right;
    return BitsOf(sum);
}

/// 1 + 2⁻²⁵ and its like in the four directions of rounding: only to nearest, both go back to ±1,
/// and of two ties one goes up and one down.
bool RoundsToNearest()
{
    constexpr uint32_t kOne = 0x3F800000U;
    constexpr uint32_t kSign = 0x80000000U;
    constexpr uint32_t kQuarterOfLast = 0x33000000U;  // 2⁻²⁵
    constexpr uint32_t kHalfOfLast = 0x33800000U;     // 2⁻²⁴
    return BitsOfSum(kOne, kQuarterOfLast) == kOne &&
           BitsOfSum(kOne | kSign, kQuarterOfLast | kSign) == (kOne | kSign) &&
           BitsOfSum(kOne, kHalfOfLast) == kOne && BitsOfSum(kOne + 1, kHalfOfLast) == kOne + 2;
}
}  // namespace

Host InspectHost()
{
    constexpr uint32_t kHalf = 0x3F000000U;
    constexpr uint32_t kTwo = 0x40000000U;
    return {BitsOfProduct(kSmallestNormal, kHalf) != kHalfOfIt,
            BitsOfProduct(kHalfOfIt, kTwo) != kSmallestNormal, RoundsToNearest()};
}
}  // namespace nuv::selftest
