/// Residues in Montgomery form, against integers.
#include "Nuv/Algebra/PrimeField.hpp"
#include "Nuv/Algebra/Integer.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Random.hpp"

#include <gtest/gtest.h>

namespace nuv::test::prime_field
{
namespace
{

constexpr std::uint64_t kPrime = 4611686018427387847u;

TEST(PrimeField, AgreesWithIntegersModuloThePrime)
{
    const PrimeField field(kPrime);
    const Integer prime(kPrime);
    Random random(2);
    for (int round = 0; round < ShareOf(5000); ++round)
    {
        const std::int64_t a = static_cast<std::int64_t>(random.Next());
        const std::int64_t b = static_cast<std::int64_t>(random.Next() >> random.Between(0, 60));
        const PrimeField::Value x = field.FromSigned(a);
        const PrimeField::Value y = field.FromSigned(b);
        Integer expected = (Integer(a) * Integer(b)) % prime;
        if (expected * 2 > prime)
            expected -= prime;
        if (expected * 2 < -prime)
            expected += prime;
        ASSERT_EQ(Integer(field.ToSigned(field.Product(x, y))), expected);
        PrimeField::Value difference = x;
        field.SubtractProduct(difference, y, field.One());
        ASSERT_EQ(field.Sum(difference, y), x);
        ASSERT_EQ(field.Sum(x, field.Negated(x)), field.Zero());
        if (x != 0)
        {
            ASSERT_EQ(field.Product(x, field.Inverse(x)), field.One());
        }
    }
    EXPECT_EQ(field.ToSigned(field.PowerOf({3, 2})), 200);
    EXPECT_EQ(field.Product(field.PowerOf({-7, -3}), field.PowerOf({7, 3})), field.One());
}

TEST(PrimeField, ReducesASumOfProductsOnceAsOneByOne)
{
    const PrimeField field(kPrime);
    Random random(4);
    for (std::uint64_t round = 0; round < ShareOf(std::uint64_t{20000}); ++round)
    {
        PrimeField::ProductSum sum(field);
        PrimeField::Value expected = 0;
        const int length = random.Between(0, 40);
        for (int k = 0; k < length; ++k)
        {
            const PrimeField::Value x = random.OneIn(2) ? kPrime - 1 : random.Next() % kPrime;
            const PrimeField::Value y = random.OneIn(2) ? kPrime - 1 : random.Next() % kPrime;
            sum.Add(x, y);
            if (k % static_cast<int>(PrimeField::ProductSum::kFold) ==
                static_cast<int>(PrimeField::ProductSum::kFold) - 1)
                sum.Fold();
            expected = field.Sum(expected, field.Product(x, y));
        }
        sum.Fold();
        ASSERT_EQ(sum.Result(), expected) << length;
    }
}

TEST(PrimeField, KnowsZero)
{
    const PrimeField field(kPrime);
    EXPECT_EQ(field.Negated(field.Zero()), field.Zero());
    EXPECT_FALSE(PrimeField::MayPivot(field.Zero()));
    EXPECT_TRUE(PrimeField::MayPivot(field.One()));
}

}  // namespace
}  // namespace nuv::test::prime_field
