// Reading rational numbers exactly.
#include "Nuv/Algebra/RationalText.hpp"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace nuv::test
