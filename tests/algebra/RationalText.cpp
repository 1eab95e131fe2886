// Reading rational numbers exactly.
#include "Nuv/Algebra/RationalText.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Random.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace nuv::test
{
namespace
{

std::string Decimal(std::string_view text)
{
    const std::optional<Rational> value = ReadDecimal(text);
    return value ? ToString(*value) : "nothing";
}

std::string Quotient(std::string_view text)
{
    const std::optional<Rational> value = ReadQuotient(text);
    return value ? ToString(*value) : "nothing";
}

TEST(ReadDecimal, TakesEveryDigit)
{
    EXPECT_EQ(Decimal("0.1"), "1/10");
    EXPECT_EQ(Decimal("9007199254740993"), "9007199254740993");
    EXPECT_EQ(Decimal("-0.1000000000000000000000000000000000000001"),
              "-1000000000000000000000000000000000000001/"
              "10000000000000000000000000000000000000000");
    EXPECT_EQ(Decimal("+12.50e+2"), "1250");
    EXPECT_EQ(Decimal("1E-3"), "1/1000");
    EXPECT_EQ(Decimal("007"), "7");
    EXPECT_EQ(Decimal(".5"), "1/2");
    EXPECT_EQ(Decimal("5."), "5");
    EXPECT_EQ(Decimal("-0"), "0");
    EXPECT_EQ(Decimal("0e99"), "0");
    EXPECT_EQ(Decimal("1e0"), "1");
    EXPECT_EQ(Decimal("00.000"), "0");
    const std::string most(10'000, '1');
    EXPECT_EQ(Decimal(most), most);
    EXPECT_EQ(Decimal("1e10000"), "1" + std::string(10'000, '0'));
    EXPECT_EQ(Decimal("1e-10000"), "1/1" + std::string(10'000, '0'));
}

/// As the C library rounds it, whose doubles are the nearest, ties to even: of few digits and of
/// many, normal and not, too large and too small.
TEST(ReadDecimal, IsRoundedToADoubleAsTheLibraryRoundsIt)
{
    Random random(21);
    for (int round = 0; round < ShareOf(6000); ++round)
    {
        std::string text = random.OneIn(2) ? "-" : "";
        for (int digits = random.Between(1, random.OneIn(3) ? 60 : 18); digits > 0; --digits)
            text += static_cast<char>('0' + random.Between(0, 9));
        const int widest = random.OneIn(3) ? 400 : 30;
        text += "e" + std::to_string(random.Between(-widest, widest));
        ASSERT_EQ(ToDouble(*ReadDecimal(text)), std::strtod(text.c_str(), nullptr)) << text;
    }
}

TEST(ReadDecimal, RefusesWhatIsNone)
{
    for (const char* text :
         {"", ".", "-", "e1", "1e", "1e+", "1e+-2", "--1", "+-1", "1 ", " 1", "0x10", "1.2.3",
          "inf", "nan", "1/2", "1e10001", "1e99999999999999999999", "1e5x"})
        EXPECT_EQ(Decimal(text), "nothing") << text;
    EXPECT_EQ(Decimal(std::string(10'001, '1')), "nothing");
}

TEST(ReadQuotient, TakesTwoIntegers)
{
    EXPECT_EQ(Quotient("1/3"), "1/3");
    EXPECT_EQ(Quotient("-6/4"), "-3/2");
    EXPECT_EQ(Quotient("+0/7"), "0");
    EXPECT_EQ(Quotient("10000000000000000000001/10000000000000000000000"),
              "10000000000000000000001/10000000000000000000000");
}

TEST(ReadQuotient, RefusesWhatIsNone)
{
    for (const char* text :
         {"", "3", "/", "1/", "/2", "1/0", "1/-2", "1/2/3", "1.5/2", "010/3", "1/02", " 1/2"})
        EXPECT_EQ(Quotient(text), "nothing") << text;
}

TEST(ToRational, TakesTheTextBesideADoubleWhereThereIsOne)
{
    const std::string quotient = "1/3";
    const std::string decimal = "0.12345678901234567890123";
    const std::string none = "a third";
    EXPECT_EQ(ToRational(0.25, &quotient), Rational(1, 3));
    EXPECT_EQ(ToString(ToRational(0.25, &decimal)),
              "12345678901234567890123/100000000000000000000000");
    EXPECT_EQ(ToRational(0.1, nullptr), Rational(1, 10));
    EXPECT_EQ(ToRational(0.1, &none), Rational(1, 10));
}

TEST(ToFullDecimal, WritesEveryDigit)
{
    const auto written = [](const char* text)
    { return ToFullDecimal(*ReadRational(text)).value(); };
    EXPECT_EQ(written("0"), "0");
    EXPECT_EQ(written("-1/8"), "-0.125");
    EXPECT_EQ(written("1/20"), "0.05");
    EXPECT_EQ(written("-25/4"), "-6.25");
    EXPECT_EQ(written("1/25"), "0.04");
    EXPECT_EQ(written("1200"), "1200");
    // As many as 20 zeros are written, more are counted.
    EXPECT_EQ(written("-7e20"), "-700000000000000000000");
    EXPECT_EQ(written("-7e21"), "-7e21");
    EXPECT_EQ(written("12e30"), "12e30");
    EXPECT_EQ(written("1e-21"), "0.000000000000000000001");
    EXPECT_EQ(written("-12e-24"), "-12e-24");
    EXPECT_EQ(written("1e-22"), "1e-22");
    EXPECT_EQ(written("12e-22"), "0.0000000000000000000012");
}

TEST(ToFullDecimal, WritesNothingWhereNoDecimalEnds)
{
    for (const char* text : {"1/3", "-7/30", "1/1000000007"})
        EXPECT_EQ(ToFullDecimal(*ReadRational(text)), std::nullopt) << text;
}

}  // namespace
}  // namespace nuv::test
