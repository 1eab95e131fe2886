// Numbers that doubles do not say, in files: kept as they are read, and written as they are kept.
#include "Nuv/Algebra/RationalText.hpp"
#include "Nuv/Model/WrittenNumber.hpp"
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Io/Mps/MpsReader.hpp"
#include "Nuv/Io/Mps/MpsWriter.hpp"
#include "Nuv/Io/NumberText.hpp"
#include "Nuv/Io/Smt/SmtWriter.hpp"
#include "Nuv/Io/TextFile.hpp"
#include "Nuv/Model/ModelBuilder.hpp"
#include "tests/io/Said.hpp"
#include "tests/model/Generator.hpp"
#include "tests/model/RandomModel.hpp"
#include "tests/model/SameModel.hpp"
#include "tests/support/Effort.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace
{

using namespace nuv;
using nuv::test::Difference;
using nuv::test::Generator;
using nuv::test::RandomModel;

Model Read(const std::string& text)
{
    ReadResult reading = ReadLp(text, "model.lp");
    EXPECT_TRUE(reading.Ok()) << nuv::test::Said(reading) << "\n" << text;
    return reading.Ok() ? std::move(*reading.model) : Model();
}

Model ReadAsMps(const std::string& text)
{
    ReadResult reading = ReadMps(text, "model.mps");
    EXPECT_TRUE(reading.Ok()) << nuv::test::Said(reading) << "\n" << text;
    return reading.Ok() ? std::move(*reading.model) : Model();
}

/// The exact numbers of a model, "cost 0 = 1/3;" and so on.
std::string ExactOf(const Model& model)
{
    constexpr const char* kNames[] = {"constant", "cost", "lower", "upper", "least", "most", "at"};
    std::string text;
    for (const auto& [place, number] : model.Exact())
    {
        text.append(kNames[static_cast<std::size_t>(place.of)]).append(" ");
        text.append(std::to_string(place.at)).append(" ");
        if (place.of == NumberPlace::Of::Entry)
            text.append(std::to_string(place.column)).append(" ");
        text.append(number).append(";");
    }
    return text;
}

TEST(WrittenNumber, IsItsDoubleWhereThatSaysIt)
{
    EXPECT_EQ(WrittenNumber("0.1", 0.1).exact, nullptr);
    EXPECT_EQ(WrittenNumber("0.30000000000000004", 0.30000000000000004).exact, nullptr);
    EXPECT_EQ(WrittenNumber("9007199254740992", 0x1p53).exact, nullptr);
    EXPECT_EQ(WrittenNumber("36028797018963970", 0x1p55).exact, nullptr);
    EXPECT_NE(WrittenNumber("36028797018963968", 0x1p55).exact, nullptr);
    EXPECT_NE(WrittenNumber("9007199254740993", 0x1p53).exact, nullptr);
    // Below the normal doubles even short decimals are not theirs.
    EXPECT_NE(WrittenNumber("1.234e-322", 1.234e-322).exact, nullptr);
    EXPECT_EQ(NumberText(WrittenNumber("1.234e-322", 1.234e-322)), "1234e-325");
    EXPECT_EQ(NumberText(WrittenNumber("-1/3", -1.0 / 3.0)), "-1/3");
    EXPECT_EQ(NumberText(WrittenNumber("4/8", 0.5)), "0.5");
}

TEST(WrittenNumber, AddsUpWhatItIs)
{
    const WrittenNumber third("1/3", 1.0 / 3.0);
    EXPECT_EQ(NumberText(third + third), "2/3");
    EXPECT_EQ(NumberText(third + third + third), "1");
    EXPECT_EQ(NumberText(WrittenNumber(0.1) + 0.2), "0.3");
    EXPECT_EQ(NumberText(WrittenNumber(1e20) + 0.1), "100000000000000000000.1");
    EXPECT_EQ(NumberText(-third), "-1/3");
    EXPECT_EQ((third + -third).value, 0.0);
    EXPECT_TRUE(std::signbit((WrittenNumber(-0.0) + -0.0).value));
    EXPECT_EQ((WrittenNumber(1e308) + 1e308).value, Infinity);
    EXPECT_FALSE(third == WrittenNumber(1.0 / 3.0));
}

/// Shortest decimals have no other digits than they need, also where doubles are whole numbers.
TEST(WrittenNumber, TextOfALargeDoubleIsItsShortestDecimal)
{
    EXPECT_EQ(NumberText(20369248369891901440.0), "20369248369891900000");
    EXPECT_EQ(NumberText(-20369248369891901440.0), "-20369248369891900000");
    EXPECT_EQ(NumberText(0x1p55), "36028797018963970");
    EXPECT_EQ(NumberText(0x1p53), "9007199254740992");
    EXPECT_EQ(NumberText(1e22), "1e+22");
    Generator generator(7);
    for (int i = 0; i < 20000; ++i)
    {
        const double value = std::ldexp(static_cast<double>(generator.Next() >> 11),
                                        static_cast<int>(generator.Below(20)));
        const std::string text = NumberText(value);
        ASSERT_EQ(ReadDecimal(text), ToRational(value, CoefficientMeaning::ShortestDecimal))
            << text;
    }
}

TEST(LpExact, KeepsEveryKindOfNumberThatNoDoubleSays)
{
    const Model model = Read("min 1/3 x + 9007199254740993 y + 2/7\nst\n"
                             " r: 0.12345678901234567890 x - 1/3 y >= 1/9\n"
                             " s: -1/3 <= x + y <= 5/3\n"
                             " t: x + 1/3 x + 1/3 x + 1/3 x - y = 1e20 + 0.1\n"
                             "bounds\n 1/7 <= x <= 22/7\n y >= -1/3\nend\n");
    EXPECT_EQ(ExactOf(model),
              "constant 0 2/7;cost 0 1/3;cost 1 9007199254740993;lower 0 1/7;lower 1 -1/3;"
              "upper 0 22/7;least 0 1/9;least 1 -1/3;least 2 1000000000000000000001/10;"
              "most 1 5/3;most 2 1000000000000000000001/10;"
              "at 0 0 1234567890123456789/10000000000000000000;at 0 1 -1/3;");
    EXPECT_EQ(model.RowCoefficients(2)[0], 2.0);
    EXPECT_EQ(model.VariableUpper()[0], 22.0 / 7.0);
}

/// What is said of a number a second time replaces all that was said before.
TEST(LpExact, TheLastBoundHolds)
{
    EXPECT_EQ(ExactOf(Read("min x st r: x >= 1\nbounds\n x <= 9007199254740993\n"
                           " x <= 9007199254740992\nend")),
              "");
    EXPECT_EQ(ExactOf(Read("min x st r: x >= 1\nbounds\n x <= 9007199254740992\n"
                           " x <= 9007199254740993\nend")),
              "upper 0 9007199254740993;");
    EXPECT_EQ(ExactOf(Read("min x st r: x >= 1\nbounds\n x <= 1/3\n x >= 1/7\n x free\nend")), "");
    EXPECT_EQ(ExactOf(Read("min x st r: x - 1/3 y + 1/3 y - 1/3 y >= 1/3 - 1/3\nend")),
              "at 0 1 -1/3;");
}

TEST(LpExact, SaysThatOthersDoNotReadQuotients)
{
    const ReadResult reading = ReadLp("min x\nst\n r: 1/3 x >= 1\nend\n", "model.lp");
    ASSERT_TRUE(reading.Ok());
    EXPECT_EQ(nuv::test::Said(reading), "note lp.kept-quotient 3:5");
}

TEST(MpsExact, KeepsLongDecimals)
{
    const std::string text = "ROWS\n N c\n G g\n L l\n E e\nCOLUMNS\n"
                             " x c 9007199254740993 g 0.12345678901234567890\n"
                             " x l 1.00000000000000000001d0 e 1\n"
                             "RHS\n R c 9007199254740995 g 9007199254740997\n R e -0.5\n"
                             " R l 2\nRANGES\n N e 0.10000000000000000001 l 9007199254740993\n"
                             "BOUNDS\n UP B x 9007199254740999\nENDATA\n";
    EXPECT_EQ(ExactOf(ReadAsMps(text)),
              "constant 0 -9007199254740995;cost 0 9007199254740993;upper 0 9007199254740999;"
              "least 0 9007199254740997;"
              "most 2 -39999999999999999999/100000000000000000000;"
              "at 0 0 1234567890123456789/10000000000000000000;"
              "at 1 0 100000000000000000001/100000000000000000000;");
}

TEST(MpsExact, HasNoQuotients)
{
    const Model model = Read("min x st r: 1/3 x >= 1\nend\n");
    const WriteResult writing = WriteMps(model);
    EXPECT_FALSE(writing.Ok());
    ASSERT_FALSE(writing.diagnostics.empty());
    EXPECT_EQ(writing.diagnostics[0].error.code, "mps.quotient");
    EXPECT_FALSE(WriteMps(Read("min x st r: 1/3 <= x + y <= 4/3\nend\n")).Ok());
    EXPECT_FALSE(WriteMps(Read("min x + 1/3 st r: x + y <= 4\nend\n")).Ok());
    EXPECT_FALSE(WriteMps(Read("min x st r: x + y <= 4\nbounds\n x <= 1/3\nend\n")).Ok());
    EXPECT_TRUE(WriteMps(Read("min x st r: 1/4 x + 0.12345678901234567890123 y <= 4\nend\n")).Ok());
}

/// Two sides next to one double are a range, not an equation, and contradict each other if the
/// lower one is larger.
TEST(WritersExact, TellSidesApartThatOneDoubleIsNextTo)
{
    const std::string text = "Minimize\n x\nSubject To\n r: 9007199254740992 <= x <= "
                             "9007199254740993\nBounds\n 9007199254740992 <= x <= "
                             "9007199254740993\nEnd\n";
    const Model model = Read(text);
    EXPECT_EQ(*WriteLp(model).text, text);
    Model second = ReadAsMps(*WriteMps(model).text);
    second.SetObjectiveName("");
    EXPECT_EQ(Difference(model, second), "");
    EXPECT_NE(WriteSmt(model).find("(assert (<= |x| 9007199254740993.0))"), std::string::npos);
    EXPECT_FALSE(
        WriteMps(Read("min x st\n r: 9007199254740993 <= x <= 9007199254740992\nend")).Ok());
}

/// A random model with some of its numbers made longer than doubles, or with `quotients`, divided.
Model RandomExactModel(std::uint64_t seed, bool quotients)
{
    Generator generator(seed + 99);
    ModelBuilder builder(RandomModel(seed));
    const Model model = builder.Made();
    const auto lengthen = [&](const NumberPlace& place, double value)
    {
        if (value == 0.0 || !std::isfinite(value) || generator.Below(3) != 0)
            return;
        const Rational exact = ToRational(value, CoefficientMeaning::ShortestDecimal);
        const Rational longer = quotients && generator.Below(2) == 0
                                    ? exact * Rational(Power(3, 40) * 2 + 1, Power(3, 40) * 2)
                                    : exact * Rational(Power(10, 30) + 7, Power(10, 30));
        // A factor this near to one leaves most doubles the nearest.
        if (ToDouble(longer) == value)
            Keep(builder, place, WrittenNumber(longer));
    };
    lengthen({NumberPlace::Of::ObjectiveConstant}, model.ObjectiveConstant());
    for (std::uint32_t j = 0; j < model.VariableCount(); ++j)
    {
        lengthen({NumberPlace::Of::Objective, j}, model.Objective()[j]);
        if (model.VariableLower()[j] < model.VariableUpper()[j])
        {
            lengthen({NumberPlace::Of::VariableLower, j}, model.VariableLower()[j]);
            lengthen({NumberPlace::Of::VariableUpper, j}, model.VariableUpper()[j]);
        }
    }
    for (std::uint32_t i = 0; i < model.RowCount(); ++i)
    {
        if (model.RowLower()[i] < model.RowUpper()[i])
        {
            lengthen({NumberPlace::Of::RowLower, i}, model.RowLower()[i]);
            lengthen({NumberPlace::Of::RowUpper, i}, model.RowUpper()[i]);
        }
        for (std::size_t k = 0; k < model.RowColumns(i).size(); ++k)
            lengthen({NumberPlace::Of::Entry, i, model.RowColumns(i)[k]},
                     model.RowCoefficients(i)[k]);
    }
    return builder.Take();
}

TEST(WritersExact, FilesWithSuchNumbersAreWrittenAsTheyAreRead)
{
    for (const char* const name : {"beyond.lp", "ray.lp", "thirds.lp"})
    {
        const Result<std::string> text =
            ReadTextFile(std::string(NUV_TEST_MODELS "/written/") + name);
        ASSERT_TRUE(text.Ok());
        EXPECT_EQ(*WriteLp(Read(*text)).text, *text);
    }
}

TEST(WritersExact, BothFormatsReadBackToTheSameNumbers)
{
    std::size_t exact = 0;
    for (std::uint64_t seed = 0; seed < ShareOf(1500U); ++seed)
    {
        const Model decimals = RandomExactModel(seed, false);
        exact += decimals.Exact().Empty() ? 0 : 1;
        ASSERT_EQ(Difference(decimals, Read(*WriteLp(decimals).text)), "") << seed;
        ASSERT_EQ(Difference(decimals, ReadAsMps(*WriteMps(decimals).text)), "")
            << seed << *WriteMps(decimals).text;
        const Model quotients = RandomExactModel(seed, true);
        ASSERT_EQ(Difference(quotients, Read(*WriteLp(quotients).text)), "") << seed;
    }
    EXPECT_GT(exact, ShareOf(1500U) / 2);
}

}  // namespace
