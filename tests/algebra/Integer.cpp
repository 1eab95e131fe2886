/// Integers of any size, against machine words where these suffice and against identities
/// elsewhere.
#include "Nuv/Algebra/Integer.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Random.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>

namespace nuv::test
{
namespace
{

std::int64_t Word(Random& random)
{
    return static_cast<std::int64_t>(random.Next()) >> random.Between(0, 63);
}

/// Up to three words long.
Integer Draw(Random& random)
{
    Integer value = Word(random);
    for (int word = random.Between(0, 2); word > 0; --word)
        value = (value << 64) + Integer(random.Next());
    return value;
}

TEST(Integer, AgreesWithMachineWords)
{
    Random random(1);
    for (int round = 0; round < ShareOf(5000); ++round)
    {
        const std::int64_t a = Word(random) / 2;
        const std::int64_t b = Word(random) / 2;
        const std::int64_t small = b >> 32;
        const Integer x = a;
        const Integer y = b;
        ASSERT_EQ((x + y).ToWord(), a + b);
        ASSERT_EQ((x - y).ToWord(), a - b);
        ASSERT_EQ((Integer(a >> 32) * small).ToWord(), (a >> 32) * small);
        ASSERT_EQ((Integer(a >> 32) * Integer(small)).ToWord(), (a >> 32) * small);
        ASSERT_EQ((-x).ToWord(), -a);
        ASSERT_EQ(x.Sign(), a < 0 ? -1 : a > 0 ? 1 : 0);
        ASSERT_EQ(x < y, a < b);
        ASSERT_EQ(x == y, a == b);
        ASSERT_EQ(x < b, a < b);
        ASSERT_EQ(x == b, a == b);
        ASSERT_EQ(x.ToString(), std::to_string(a));
        if (b != 0)
        {
            ASSERT_EQ((x / y).ToWord(), a / b);
            ASSERT_EQ((x % y).ToWord(), a % b);
        }
    }
}

TEST(Integer, HoldsEveryMachineWord)
{
    const std::int64_t least = std::numeric_limits<std::int64_t>::min();
    const std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(Integer(least).ToString(), "-9223372036854775808");
    EXPECT_EQ(Integer(least).ToWord(), least);
    EXPECT_EQ(Integer(greatest).ToString(), "18446744073709551615");
    EXPECT_TRUE(Integer(greatest) > std::numeric_limits<std::int64_t>::max());
    EXPECT_TRUE(Integer(least) - 1 < least);
}

TEST(Integer, ObeysTheLawsOfARingBeyondWords)
{
    Random random(2);
    for (int round = 0; round < ShareOf(2000); ++round)
    {
        const Integer x = Draw(random);
        const Integer y = Draw(random);
        const Integer z = Draw(random);
        ASSERT_EQ((x + y) * z, x * z + y * z);
        ASSERT_EQ(x - (x - y), y);
        Integer sum = z;
        ASSERT_EQ(sum.AddProduct(x, y), z + x * y);
        ASSERT_EQ(sum.SubtractProduct(x, y), z);
        ASSERT_EQ(Integer(x.ToString()), x);
        ASSERT_EQ(Abs(x).Sign() < 0, false);
        if (y.Sign() == 0)
            continue;
        Integer quotient;
        Integer remainder;
        Divide(x, y, quotient, remainder);
        ASSERT_EQ(quotient * y + remainder, x);
        ASSERT_TRUE(Abs(remainder) < Abs(y));
        ASSERT_TRUE(remainder.Sign() == 0 || remainder.Sign() == x.Sign());
        ASSERT_EQ(x / y, quotient);
        ASSERT_EQ(x % y, remainder);
        const Integer divisor = Gcd(x, y);
        ASSERT_EQ(x % divisor, 0);
        ASSERT_EQ(y % divisor, 0);
        ASSERT_EQ(Gcd(x / divisor, y / divisor), 1);
        ASSERT_EQ(LeastCommonMultiple(x, y) * divisor, x * y);
    }
}

/// Up to twelve half words, most of them all zeros, all ones or nearly so: what a digit of a
/// quotient is first guessed from then often misses it.
Integer DrawOfEdges(Random& random)
{
    constexpr std::uint64_t kEdges[] = {0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};
    Integer value;
    for (int half = random.Between(1, 12); half > 0; --half)
        value = (value << 32) + Integer(kEdges[random.Between(0, 5)]);
    return random.Between(0, 1) == 0 ? value : -value;
}

TEST(Integer, DividesWhatIsNearTheEdgesOfWords)
{
    Random random(3);
    for (int round = 0; round < ShareOf(20000); ++round)
    {
        const Integer x = DrawOfEdges(random);
        const Integer y = DrawOfEdges(random);
        ASSERT_EQ((x + y) - y, x);
        ASSERT_EQ((x * y) - (x - 1) * y, y);
        if (y.Sign() == 0)
            continue;
        Integer quotient;
        Integer remainder;
        Divide(x, y, quotient, remainder);
        ASSERT_EQ(quotient * y + remainder, x);
        ASSERT_TRUE(Abs(remainder) < Abs(y));
        ASSERT_EQ(x * y / y, x);
        ASSERT_EQ((x * y).ToString(), (y * x).ToString());
        const Integer divisor = Gcd(x, y);
        ASSERT_EQ(Gcd(x / divisor, y / divisor), 1);
    }
}

TEST(Integer, CountsBits)
{
    for (std::size_t bits = 1; bits < 200; ++bits)
    {
        const Integer power = Integer(1) << bits;
        EXPECT_EQ(BitLength(power), bits + 1);
        EXPECT_EQ(BitLength(-power), bits + 1);
        EXPECT_EQ(BitLength(power - 1), bits);
        EXPECT_EQ(TrailingZeros(power), bits);
        EXPECT_EQ(TrailingZeros(-power), bits);
        EXPECT_EQ(power, Power(2, static_cast<unsigned>(bits)));
        Integer back = power;
        back >>= bits;
        EXPECT_EQ(back, 1);
    }
    EXPECT_EQ(BitLength(Integer()), 0U);
    EXPECT_EQ(Power(5, 0), 1);
}

TEST(Integer, GivesTheLowWordOfItsMagnitude)
{
    const Integer high = Integer(3) << 64;
    EXPECT_EQ((high + 5).LowWord(), 5U);
    EXPECT_EQ((-high - 5).LowWord(), 5U);
    EXPECT_EQ(Integer(~std::uint64_t{0}).LowWord(), ~std::uint64_t{0});
    EXPECT_EQ(Integer().LowWord(), 0U);
}

/// A number that once was long, and may be stored in another way than one that never was, is no
/// other number; sums and products that leave the words are right.
TEST(Integer, ForgetsThatItWasLong)
{
    const Integer large = Power(Integer(7), 50);
    const auto once = [&](const Integer& x) { return Integer((x + large) - large); };
    Random random(9);
    const auto nearAnEdge = [&random]
    {
        constexpr std::int64_t kEdges[] = {
            std::numeric_limits<std::int64_t>::min(), -1, 0, 1, std::int64_t{1} << 32,
            std::numeric_limits<std::int64_t>::max()};
        const Integer edge = kEdges[random.Between(0, 5)];
        return edge + Integer(random.Between(-2, 2));
    };
    for (int round = 0; round < ShareOf(5000); ++round)
    {
        const Integer x = nearAnEdge();
        const Integer y = nearAnEdge();
        const Integer z = nearAnEdge();
        const Integer longX = once(x);
        const Integer longY = once(y);
        ASSERT_EQ(longX, x);
        ASSERT_EQ(longX.ToString(), x.ToString());
        ASSERT_EQ(longX.LowWord(), x.LowWord());
        ASSERT_EQ(BitLength(longX), BitLength(x));
        ASSERT_EQ(x < y, longX < longY);
        ASSERT_EQ(x < longY, longX < y);
        ASSERT_EQ(x + y, longX + longY);
        ASSERT_EQ(x - y, longX - y);
        ASSERT_EQ(x * y, longX * longY);
        ASSERT_EQ((x + y) - y, x);
        ASSERT_EQ(Integer(once(z)).AddProduct(x, y), z + x * y);
        ASSERT_EQ(Integer(z).AddProduct(x, y), z + longX * y);
        ASSERT_EQ(Integer(z).SubtractProduct(longX, y), z - x * y);
        ASSERT_EQ(Integer(z).SubtractProduct(x, y), z - x * longY);
        ASSERT_EQ(Gcd(x, y), Gcd(longX, y));
        ASSERT_EQ(-x, -longX);
        ASSERT_EQ(x << 3, x * 8);
        ASSERT_EQ(longX << 3, x * 8);
        if (y == 0)
            continue;
        Integer quotient = longX;
        Integer remainder;
        Divide(x, y, quotient, remainder);
        ASSERT_EQ(quotient * y + remainder, x);
        ASSERT_EQ(x / y, longX / y);
        ASSERT_EQ(x % longY, remainder);
        ASSERT_EQ(TrailingZeros(y), TrailingZeros(longY));
    }
}

TEST(Integer, IsCopiedMovedAndSwapped)
{
    const Integer value("123456789012345678901234567890");
    Integer copy = value;
    Integer moved = std::move(copy);
    EXPECT_EQ(moved, value);
    copy = 7;  // what was moved from may be given a value again
    EXPECT_EQ(copy, 7);
    swap(copy, moved);
    EXPECT_EQ(copy, value);
    EXPECT_EQ(moved, 7);
    copy = std::move(moved);
    EXPECT_EQ(copy, 7);
    const Integer& self = copy;
    copy = self;
    copy += self;
    copy *= self;
    EXPECT_EQ(copy, 196);
    copy -= self;
    EXPECT_EQ(copy, 0);
}

}  // namespace
}  // namespace nuv::test
