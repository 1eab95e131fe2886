/// Rationals: lowest terms, order, and the ways from and to doubles and text.
#include "Nuv/Algebra/Rational.hpp"

#include "Nuv/Algebra/RationalField.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Random.hpp"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

namespace nuv::test::rational
{
namespace
{

constexpr double kInf = std::numeric_limits<double>::infinity();

Rational Draw(Random& random)
{
    const std::int64_t top = static_cast<std::int64_t>(random.Next()) >> random.Between(0, 62);
    const std::int64_t bottom = static_cast<std::int64_t>(random.Next() >> random.Between(1, 62));
    return Rational(Integer(top), Integer(bottom + 1));
}

bool IsInLowestTerms(const Rational& value)
{
    return value.Denominator() > 0 && Gcd(value.Numerator(), value.Denominator()) == 1;
}

TEST(Rational, PowersOfTwoAndFiveAreExactWithinAWordAndBeyond)
{
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    for (const int two : {0, 1, 2, 20, 39, 40, 61, 62, 63, 64, 90})
        for (const int five : {0, 1, 9, 10, 26, 27, 28, 40})
        {
            Integer power = 1;
            for (int k = 0; k != two; ++k)
                power *= Integer(2);
            for (int k = 0; k != five; ++k)
                power *= Integer(5);
            EXPECT_EQ(PowerOf({two, five}), power) << two << ' ' << five;
            for (const std::int64_t mantissa :
                 {std::int64_t{0}, std::int64_t{1}, std::int64_t{-3}, std::int64_t{999999937},
                  std::int64_t{-999999937}, kMost / 5, -(kMost / 5), kMost, -kMost})
                EXPECT_EQ(Scaled({mantissa, {two - 3, five - 2}}, {3, 2}), power * mantissa)
                    << mantissa << ' ' << two << ' ' << five;
        }
}

TEST(Rational, IsMadeInLowestTermsWithAPositiveDenominator)
{
    EXPECT_EQ(ToString(Rational(6, -4)), "-3/2");
    EXPECT_EQ(ToString(Rational(-6, -4)), "3/2");
    EXPECT_EQ(ToString(Rational(0, -4)), "0");
    EXPECT_EQ(Rational(0, -4).Denominator(), 1);
    EXPECT_EQ(ToString(Rational(8, 4)), "2");
}

/// The fractions' arithmetic is cross-multiplication; the shorter ways must give the same.
TEST(Rational, AgreesWithCrossMultiplication)
{
    Random random(3);
    for (int round = 0; round < ShareOf(2000); ++round)
    {
        const Rational x = Draw(random);
        // Now and then denominators that share factors, or the other's inverse.
        const Rational y = random.OneIn(3)   ? Rational(x.Numerator() + 1, x.Denominator() * 6)
                           : random.OneIn(9) ? -x
                                             : Draw(random);
        const auto& [a, b] = std::pair(x.Numerator(), x.Denominator());
        const auto& [c, d] = std::pair(y.Numerator(), y.Denominator());
        ASSERT_EQ(x + y, Rational(a * d + c * b, b * d));
        ASSERT_EQ(x - y, Rational(a * d - c * b, b * d));
        ASSERT_EQ(x * y, Rational(a * c, b * d));
        ASSERT_EQ(x < y, a * d < c * b);
        ASSERT_TRUE(IsInLowestTerms(x + y) && IsInLowestTerms(x - y) && IsInLowestTerms(x * y));
        if (y.Sign() != 0)
        {
            ASSERT_EQ(x / y, Rational(a * d, b * c));
            ASSERT_TRUE(IsInLowestTerms(x / y));
        }
    }
}

TEST(Rational, MayBeItsOwnOperand)
{
    Rational x(3, 4);
    x += x;
    EXPECT_EQ(ToString(x), "3/2");
    x *= x;
    EXPECT_EQ(ToString(x), "9/4");
    const Rational& same = x;
    x /= same;
    EXPECT_EQ(ToString(x), "1");
    x -= same;
    EXPECT_EQ(ToString(x), "0");
}

TEST(Rational, TakesDoublesApartExactly)
{
    for (const double value : {0.0, 1.0, -1.0, 0.1, 1e300, -1e-300, 5e-324, 1.7976931348623157e308})
    {
        const ExactNumber number = TakeApart(value, CoefficientMeaning::StoredDouble);
        EXPECT_EQ(std::ldexp(static_cast<double>(number.mantissa), number.scale.two), value);
        EXPECT_EQ(number.scale.five, 0);
        EXPECT_TRUE(value == 0.0 || (number.mantissa & 1) != 0);
        EXPECT_EQ(ToDouble(ToRational(value)), value);
    }
}

/// What the shortest decimal's text says, without zeros at the end.
ExactNumber TakeApartText(double value)
{
    char text[32];
    const char* const end =
        std::to_chars(text, text + sizeof text, value, std::chars_format::scientific).ptr;
    ExactNumber number;
    const char* at = text + (*text == '-' ? 1 : 0);
    int exponent = 0;
    bool isFraction = false;
    for (; *at != 'e'; ++at)
    {
        if (*at == '.')
        {
            isFraction = true;
            continue;
        }
        number.mantissa = 10 * number.mantissa + (*at - '0');
        exponent -= isFraction ? 1 : 0;
    }
    exponent += std::stoi(std::string(at + 1, end));
    if (*text == '-')
        number.mantissa = -number.mantissa;
    number.scale = {exponent, exponent};
    for (; number.scale.five < 0 && number.mantissa % 5 == 0; ++number.scale.five)
        number.mantissa /= 5;
    for (; number.mantissa % 2 == 0; ++number.scale.two)
        number.mantissa /= 2;
    return number;
}

TEST(Rational, TakesWholeNumbersApartAsTheirDecimalsSay)
{
    Random random(4);
    const auto expectSame = [](double value)
    {
        const ExactNumber found = TakeApart(value, CoefficientMeaning::ShortestDecimal);
        const ExactNumber wanted = TakeApartText(value);
        EXPECT_EQ(found.mantissa, wanted.mantissa) << value;
        EXPECT_EQ(found.scale, wanted.scale) << value;
    };
    for (const double edge : {1.0, 10.0, 25.0, 1e5, 1024.0, 999999999999999.0, 1e15, 1e15 + 1,
                              9007199254740993.0, 9.2e18, 1e22, 1.5, 0.1})
        for (const double value : {edge, -edge, edge - 1, edge + 1})
            if (value != 0.0)
                expectSame(value);
    for (int round = 0; round < ShareOf(3000); ++round)
    {
        auto whole = static_cast<double>(random.Next() >> random.Between(1, 63));
        for (int zeros = random.Between(0, 5); zeros > 0; --zeros)
            whole *= 10.0;
        if (whole != 0.0)
            expectSame(whole);
    }
}

TEST(Rational, ReadsDoublesAsTheirShortestDecimal)
{
    const auto written = [](double value)
    { return ToString(ToRational(value, CoefficientMeaning::ShortestDecimal)); };
    EXPECT_EQ(written(0.1), "1/10");
    EXPECT_EQ(written(-0.75), "-3/4");
    EXPECT_EQ(written(1e22), "10000000000000000000000");
    EXPECT_EQ(written(120.0), "120");
    EXPECT_EQ(written(0.33333334), "16666667/50000000");
    EXPECT_EQ(written(-2.5e-7), "-1/4000000");
    EXPECT_EQ(written(123456789.123456), "1929012330054/15625");
    EXPECT_EQ(written(0.0), "0");
    EXPECT_EQ(written(-0.0), "0");
}

/// By the digits that the library writes: a mantissa without twos, and without fives where these
/// are divided by.
TEST(Rational, TakesApartWhatIsWrittenAsItsShortestDigits)
{
    Random random(17);
    const auto cases = ShareOf(std::uint64_t{200000});
    for (std::uint64_t round = 0; round < cases; ++round)
    {
        // Few digits and few places, the limit of 15 digits on both sides, anything.
        double value = 0.0;
        const int kind = random.Between(0, 2);
        if (kind == 0)
            value = random.Between(-1000000, 1000000) / std::pow(10.0, random.Between(0, 9));
        else if (kind == 1)
            value = static_cast<double>(random.Next() >> random.Between(10, 20)) /
                    std::pow(10.0, random.Between(0, 9));
        else
            value =
                std::ldexp(static_cast<double>(random.Next() >> 11), random.Between(-1100, 900));
        char text[32];
        const auto written =
            std::to_chars(text, text + sizeof text, value, std::chars_format::scientific);
        const std::string digits(text, written.ptr);
        const std::size_t e = digits.find('e');
        std::string whole = digits.substr(0, e);
        int exponent = std::stoi(digits.substr(e + 1));
        if (const std::size_t point = whole.find('.'); point != std::string::npos)
        {
            exponent -= static_cast<int>(whole.size() - point - 1);
            whole.erase(point, 1);
        }
        ExactNumber expected{std::stoll(whole), {exponent, exponent}};
        if (expected.mantissa == 0)
            expected = {};
        for (; expected.scale.five < 0 && expected.mantissa % 5 == 0; ++expected.scale.five)
            expected.mantissa /= 5;
        for (; expected.mantissa != 0 && expected.mantissa % 2 == 0; ++expected.scale.two)
            expected.mantissa /= 2;
        const ExactNumber number = TakeApart(value, CoefficientMeaning::ShortestDecimal);
        ASSERT_EQ(number.mantissa, expected.mantissa) << digits;
        ASSERT_EQ(number.scale, expected.scale) << digits;
    }
}

/// The largest numbers that fit with each power, and the next.
TEST(Rational, ScalesInAWordUpToItsLastBit)
{
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(ScaledInWord({0, {}}, {62, 27}), 0);
    for (int five = 0; five <= 28; ++five)
    {
        for (int two = 0; two <= 64; ++two)
        {
            const Integer power = (Integer(1) << static_cast<std::size_t>(two)) *
                                  Power(5, static_cast<unsigned>(five));
            const std::int64_t most = (Integer(kMost) / power).ToWord();
            for (const std::int64_t mantissa : {most, most - 1, std::int64_t{1}})
            {
                const bool fits = mantissa > 0 && mantissa <= most;
                const Integer expected = fits ? power * mantissa : Integer(0);
                EXPECT_EQ(expected, ScaledInWord({mantissa, {two, five}}, {}));
                EXPECT_EQ(-expected, ScaledInWord({-mantissa, {}}, {two, five}));
            }
            if (most < kMost)
            {
                EXPECT_EQ(ScaledInWord({most + 1, {}}, {two, five}), 0);
                EXPECT_EQ(ScaledInWord({-most - 1, {}}, {two, five}), 0);
            }
        }
    }
}

TEST(Rational, ScalesInAWordWhatFitsOne)
{
    Random random(18);
    const auto cases = ShareOf(std::uint64_t{20000});
    for (std::uint64_t round = 0; round < cases; ++round)
    {
        const ExactNumber number{static_cast<std::int64_t>(random.Next() >> random.Between(1, 62)) *
                                     (random.OneIn(2) ? 1 : -1),
                                 {random.Between(-5, 5), random.Between(-5, 5)}};
        const Scale scale{random.Between(5, 70), random.Between(5, 40)};
        const std::int64_t word = ScaledInWord(number, scale);
        const Integer product = PowerOf(number.scale + scale) * number.mantissa;
        ASSERT_EQ(word == 0, number.mantissa == 0 || BitLength(product) > 63) << product.ToString();
        if (word != 0)
        {
            ASSERT_EQ(product, word);
        }
        ASSERT_EQ(Scaled(number, scale), product);
    }
}

TEST(Rational, RoundsToTheNearestDoubleTiesToEven)
{
    const Rational unit = Rational(1, Integer(1) << 53);  // half a unit in the last place of 1
    EXPECT_EQ(ToDouble(1 + unit), 1.0);
    EXPECT_EQ(ToDouble(1 + 3 * unit), 1.0 + 0x1p-51);
    EXPECT_EQ(ToDouble(1 + unit + Rational(1, Integer(1) << 300)), 1.0 + 0x1p-52);
    EXPECT_EQ(ToDouble(-1 - unit - Rational(1, Integer(1) << 300)), -1.0 - 0x1p-52);
    EXPECT_EQ(ToDouble(Rational(1, 3)), 1.0 / 3.0);
    EXPECT_EQ(ToDouble(Rational(Integer(1) << 1024)), kInf);
    EXPECT_EQ(ToDouble(Rational(1, Integer(1) << 1074)), 0x1p-1074);
    EXPECT_EQ(ToDouble(Rational(1, Integer(1) << 1075)), 0.0);
    EXPECT_EQ(ToDouble(Rational(3, Integer(1) << 1076)), 0x1p-1074);
    EXPECT_EQ(ToDouble(Rational(1, Integer(1) << 5000)), 0.0);
}

/// The quotient of two integers below 2^53 is rounded correctly by the machine's own division.
TEST(Rational, RoundsAsTheMachineDivides)
{
    Random random(1);
    for (int round = 0; round < ShareOf(20000); ++round)
    {
        const std::int64_t top = static_cast<std::int64_t>(random.Next() >> random.Between(11, 60));
        const std::int64_t bottom =
            static_cast<std::int64_t>(random.Next() >> random.Between(11, 60)) + 1;
        ASSERT_EQ(ToDouble(Rational(top, bottom)),
                  static_cast<double>(top) / static_cast<double>(bottom))
            << top << "/" << bottom;
    }
}

/// Between a double and the next one, of all sizes: the middle goes to the even one, and the least
/// more or less to the nearer.
TEST(Rational, RoundsTheMiddleOfTwoDoublesToTheEvenOne)
{
    Random random(19);
    const Rational tiny = Rational(1, Power(2, 1200));
    for (int round = 0; round < ShareOf(4000); ++round)
    {
        const double low =
            random.OneIn(4)
                ? static_cast<double>(random.Next() >> random.Between(12, 63)) *
                      std::numeric_limits<double>::denorm_min()
                : std::ldexp(static_cast<double>(random.Next() >> 11), random.Between(-1100, 970));
        const double high = std::nextafter(low, kInf);
        const Rational middle = (ToRational(low) + ToRational(high)) * Rational(1, 2);
        const double even = (TakeApart(low, CoefficientMeaning::StoredDouble).scale.two >
                             TakeApart(high, CoefficientMeaning::StoredDouble).scale.two) ||
                                    low == 0.0
                                ? low
                                : high;
        ASSERT_EQ(ToDouble(middle), even) << low;
        ASSERT_EQ(ToDouble(-middle), -even) << low;
        ASSERT_EQ(ToDouble(middle - tiny), low) << low;
        ASSERT_EQ(ToDouble(middle + tiny), high) << low;
    }
}

/// As the C library prints them, to as many digits: numbers too long to end in the middle of two.
TEST(Rational, PrintsDecimalsAsTheLibraryDoes)
{
    Random random(20);
    for (int round = 0; round < ShareOf(4000); ++round)
    {
        const int exponent =
            random.OneIn(2) ? random.Between(70, 900) : random.Between(-1000, -110);
        const double value = std::ldexp(static_cast<double>(random.Next() >> 11 | 1), exponent) *
                             (random.OneIn(2) ? 1 : -1);
        const int digits = random.Between(1, 16);
        char text[64];
        (void)std::snprintf(text, sizeof text, "%.*e", digits - 1, value);
        const std::string printed = text;
        const std::size_t e = printed.find('e');
        ASSERT_EQ(ToDecimal(ToRational(value), digits),
                  printed.substr(0, e + 1) + std::to_string(std::stoi(printed.substr(e + 1))));
    }
}

TEST(Rational, PrintsDecimalsRounded)
{
    EXPECT_EQ(ToDecimal(Rational(1, 3), 5), "3.3333e-1");
    EXPECT_EQ(ToDecimal(Rational(-2, 3), 5), "-6.6667e-1");
    EXPECT_EQ(ToDecimal(Rational(99999), 3), "1.00e5");
    EXPECT_EQ(ToDecimal(Rational(0), 3), "0");
    EXPECT_EQ(ToDecimal(Rational(7), 1), "7e0");
    EXPECT_EQ(ToDecimal(Rational(1000), 2), "1.0e3");
    EXPECT_EQ(ToDecimal(Rational(1046, 1000), 3), "1.05e0");
}

TEST(Rational, MayPivotUnlessItIsZero)
{
    EXPECT_FALSE(RationalField::MayPivot(Rational(0)));
    EXPECT_TRUE(RationalField::MayPivot(Rational(-1, 7)));
}

TEST(Scale, IsAPairOfExponents)
{
    const std::vector<Scale> scales{{1, 2}, {1, 2}, {1, 3}, {0, 2}};
    EXPECT_TRUE(scales[0] == scales[1]);
    EXPECT_FALSE(scales[0] == scales[2]);
    EXPECT_FALSE(scales[0] == scales[3]);
}

}  // namespace
}  // namespace nuv::test::rational
