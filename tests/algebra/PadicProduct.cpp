/// Products to the base of a prime, against integers.
#include "Nuv/Algebra/Lifting/PadicProduct.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Random.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace nuv::test::padic_product
{
namespace
{

constexpr std::uint64_t kPrime = 4611686018427387847u;

/// Of all sizes, the greatest, the least and none among them.
std::int64_t DrawDigit(Random& random)
{
    if (random.OneIn(4))
        return random.Between(-1, 1);
    constexpr auto kMost = static_cast<std::int64_t>(kPrime / 2);
    const std::int64_t magnitude =
        random.OneIn(3)
            ? kMost
            : static_cast<std::int64_t>(random.Next() % kPrime / 2) >> random.Between(0, 62);
    return random.OneIn(2) ? magnitude : -magnitude;
}

TEST(PadicProduct, IsTheResidueOfLeastMagnitude)
{
    const auto cases = ShareOf(std::uint64_t{5000});
    const PrimeField field(kPrime);
    for (std::uint64_t seed = 1; seed <= cases; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const auto count = static_cast<unsigned>(random.Between(1, 40));
        const auto stride = static_cast<std::size_t>(random.Between(1, 3));
        const Integer modulus = Power(Integer(kPrime), count);
        // So small a number that its product is shorter than the modulus, or any digits.
        std::vector<std::int64_t> digits(count * stride, -7);
        const unsigned length = random.OneIn(2) ? count / 2 : count;
        Integer number(0);
        for (unsigned k = count; k-- > 0;)
        {
            digits[k * stride] = k < length ? DrawDigit(random) : 0;
            number = number * Integer(kPrime) + Integer(digits[k * stride]);
        }
        Integer factor = Power(Integer(random.Next() | 1),
                               static_cast<unsigned>(random.Between(0, static_cast<int>(count))));
        PadicProduct product(field);
        product.SetFactor(factor, count + static_cast<std::size_t>(random.Between(0, 2)));
        Integer residue;
        Integer expected = (number * factor) % modulus;
        if (expected < 0)
            expected += modulus;
        const Integer top = expected / Power(Integer(kPrime), count - 1);
        if (expected * 2 > modulus)
            expected -= modulus;
        const bool isTold = product.Multiply(digits.data(), stride, count, residue);
        ASSERT_EQ(isTold, top != static_cast<std::int64_t>(kPrime / 2));
        if (isTold)
        {
            ASSERT_EQ(residue, expected);
        }
    }
}

/// All numbers of three small digits: also those whose lowest digits are 0 or 1 once they are
/// negative.
TEST(PadicProduct, TakesEverySmallDigit)
{
    PadicProduct product{PrimeField(kPrime)};
    const Integer prime(kPrime);
    for (int factor = 1; factor <= 3; ++factor)
    {
        product.SetFactor(factor, 3);
        for (int code = 0; code < 125; ++code)
        {
            const std::vector<std::int64_t> digits{code % 5 - 2, code / 5 % 5 - 2, code / 25 - 2};
            Integer residue;
            ASSERT_TRUE(product.Multiply(digits.data(), 1, 3, residue));
            ASSERT_EQ(residue, ((Integer(digits[2]) * prime + Integer(digits[1])) * prime +
                                Integer(digits[0])) *
                                   Integer(factor));
        }
    }
}

TEST(PadicProduct, DoesNotTellWhatIsInTheMiddle)
{
    PadicProduct product{PrimeField(kPrime)};
    product.SetFactor(1, 3);
    const std::vector<std::int64_t> digits{5, 0, static_cast<std::int64_t>(kPrime / 2)};
    Integer residue;
    EXPECT_FALSE(product.Multiply(digits.data(), 1, 3, residue));
}

}  // namespace
}  // namespace nuv::test::padic_product
