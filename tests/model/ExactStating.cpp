// Numbers that programs state: sums of decimals are decimals, and a text says what no double does.
#include "tests/model/ModelText.hpp"

#include "Nuv/Solve/Solution.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace nuv
{
namespace
{

using Of = NumberPlace::Of;
using test::Written;

std::string TextAt(const Model& model, const NumberPlace& place)
{
    const std::string* const text = model.Exact().Find(place);
    return text ? *text : "";
}

std::string FailureCode(const Model& model)
{
    return model.Failure() ? model.Failure()->code : "";
}

TEST(ExactStating, RepeatedTermsOfARowAddUpAsDecimals)
{
    Model model;
    const Variable x = model.AddVariable("x");
    const Variable y = model.AddVariable("y");
    (void)model.Add("r", 0.1 * x + y + 0.2 * x - 0.3 * y <= 1);
    ASSERT_NE(0.1 + 0.2, 0.3);
    EXPECT_EQ(model.RowCoefficients(0)[0], 0.3);
    EXPECT_EQ(model.RowCoefficients(0)[1], 0.7);
    EXPECT_TRUE(model.Exact().Empty());
    // No double says 10000000000000000.1, whose nearest one is 10^16.
    (void)model.Add("long", 1e16 * x + 0.1 * x <= 1);
    EXPECT_EQ(model.RowCoefficients(1)[0], 1e16);
    EXPECT_EQ(TextAt(model, {Of::Entry, 1, 0}), "100000000000000001/10");
}

TEST(ExactStating, WhatCancelsIsZero)
{
    Model model;
    const Variable x = model.AddVariable("x");
    (void)model.Add("r", 0.1 * x + 0.2 * x - 0.3 * x + 1 * x <= 1);
    EXPECT_EQ(model.RowCoefficients(0)[0], 1.0);
    model.Minimize(0.1 * x + 0.2 * x - 0.3 * x);
    EXPECT_EQ(model.Objective()[0], 0.0);
    EXPECT_TRUE(model.Exact().Empty());
}

TEST(ExactStating, MovedConstantsAddUpAsDecimals)
{
    Model model;
    const Variable x = model.AddVariable("x");
    (void)model.Add("r", x + 0.1 <= 0.3);
    (void)model.Add("s", x + 0.1 + 0.2 >= 1 + 0.7 * Expression(1.0));
    (void)model.Add("t", Range(0.3, x + 0.1, 0.4));
    (void)model.Add("long", x + 0.1 <= 1e16);
    ASSERT_NE(0.3 - 0.1, 0.2);
    EXPECT_EQ(model.RowUpper()[0], 0.2);
    EXPECT_EQ(model.RowLower()[1], 1.4);
    EXPECT_EQ(model.RowLower()[2], 0.2);
    EXPECT_EQ(model.RowUpper()[2], 0.3);
    EXPECT_EQ(model.RowLower()[3], -Infinity);
    EXPECT_EQ(model.RowUpper()[3], 1e16);
    EXPECT_EQ(TextAt(model, {Of::RowUpper, 3}), "99999999999999999/10");
    EXPECT_FALSE(model.Failure());
}

TEST(ExactStating, ObjectivesAddUpAsDecimals)
{
    Model model;
    const Variable x = model.AddVariable("x");
    const Variable y = model.AddVariable("y");
    model.Maximize(0.1 * x + 0.1 + 0.2 * x + 0.2 + 1e16 * y + 0.1 * y);
    EXPECT_EQ(model.Objective()[0], 0.3);
    EXPECT_EQ(model.ObjectiveConstant(), 0.3);
    EXPECT_EQ(TextAt(model, {Of::Objective, 1}), "100000000000000001/10");
    // Another objective knows nothing of the first.
    model.Minimize(x + y);
    EXPECT_TRUE(model.Exact().Empty());
    // After what cancels to zero, the next term begins anew.
    model.Minimize(1e16 * y + 0.1 * y - 1e16 * y - 0.1 * y + 0.5 * y);
    EXPECT_EQ(model.Objective()[1], 0.5);
    EXPECT_TRUE(model.Exact().Empty());
}

TEST(ExactStating, ExpressionsKeepTheirConstantsThroughArithmetic)
{
    Model model;
    const Variable x = model.AddVariable("x");
    Expression sum = x + 0.1 + 0.2;
    sum += sum;
    EXPECT_EQ(sum.Terms().size(), 2U);
    sum *= 2.0;
    sum /= 4.0;
    (void)model.Add("r", sum <= 1);
    EXPECT_EQ(model.RowUpper()[0], 0.7);
    EXPECT_EQ((x + 0.1 + 0.2).Constant(), 0.1 + 0.2);
    EXPECT_EQ((-(x + 0.1 + 0.2)).Constant(), -(0.1 + 0.2));
}

TEST(ExactStating, CoefficientsOfOneRowInAColumnAddUpAsDecimals)
{
    Model model;
    const Row r = model.Add("r", Expression() <= 1);
    const Row s = model.Add("s", Expression() <= 1);
    const Variable x = model.AddColumn("x", 1.0, {}, {{s, 1e16}, {r, 0.1}, {s, 0.1}, {r, 0.2}});
    EXPECT_EQ(model.RowCoefficients(0)[0], 0.3);
    EXPECT_EQ(model.RowCoefficients(1)[0], 1e16);
    EXPECT_EQ(TextAt(model, {Of::Entry, 1, model.IndexOf(x)}), "100000000000000001/10");
    EXPECT_EQ(TextAt(model, {Of::Entry, 0, model.IndexOf(x)}), "");
}

TEST(ExactStating, ColumnsMayHaveNamesMadeForThem)
{
    Model model;
    const Row r = model.Add("r", Expression() <= 4);
    const Variable x = model.AddColumn(-1.0, {0, 3}, {{r, 2}});
    const std::vector<ColumnTerm> terms = {{r, 1}};
    const Variable y = model.AddColumn(-2.0, {}, terms);
    ASSERT_TRUE(model.Owns(x) && model.Owns(y));
    EXPECT_EQ(model.VariableName(0), "x1");
    EXPECT_EQ(model.VariableName(1), "x2");
    EXPECT_EQ(model.Objective()[1], -2.0);
    EXPECT_EQ(model.RowCoefficients(0).size(), 2U);
    // A made name gives way to a stated one.
    EXPECT_TRUE(model.Owns(model.AddColumn("x1", 0.0, {}, {})));
    EXPECT_FALSE(model.Failure());
    EXPECT_FALSE(model.Owns(model.AddColumn(NAN, {}, {})));
    EXPECT_EQ(FailureCode(model), "model.not-finite");
    EXPECT_EQ(model.VariableCount(), 3U);
}

/// The double sums of random decimals are not what is stated; whole tenths are.
TEST(ExactStating, RandomSumsOfTenthsAreWholeTenths)
{
    for (unsigned seed = 0; seed < 300; ++seed)
    {
        std::mt19937_64 random(seed);
        Model model;
        const Variable x = model.AddVariable("x");
        Expression sum;
        long coefficient = 0;
        long constant = 0;
        for (int k = 0; k < 12; ++k)
        {
            const long tenths = static_cast<long>(random() % 4001) - 2000;
            const long moved = static_cast<long>(random() % 4001) - 2000;
            sum += static_cast<double>(tenths) / 10.0 * x;
            sum += static_cast<double>(moved) / 10.0;
            coefficient += tenths;
            constant += moved;
        }
        (void)model.Add("r", sum <= 0);
        model.Minimize(sum);
        EXPECT_EQ(model.RowCoefficients(0)[0], static_cast<double>(coefficient) / 10.0) << seed;
        EXPECT_EQ(model.RowUpper()[0], static_cast<double>(-constant) / 10.0) << seed;
        EXPECT_EQ(model.Objective()[0], static_cast<double>(coefficient) / 10.0) << seed;
        EXPECT_EQ(model.ObjectiveConstant(), static_cast<double>(constant) / 10.0) << seed;
        EXPECT_TRUE(model.Exact().Empty()) << seed;
    }
}

struct Thirds
{
    Model model;
    Variable x = model.AddVariable("x", {0, 4});
    Variable y = model.AddVariable("y", {0, 4});
    Row r = model.Add("r", Range(-5, x + y, 5));
};

TEST(ExactStating, ATextSaysANumberOfEachKind)
{
    Thirds t;
    EXPECT_TRUE(t.model.SetExactCost(t.x, "1/3"));
    EXPECT_TRUE(t.model.SetExactConstant("-2/7"));
    EXPECT_TRUE(t.model.SetExactLower(t.x, "1/9"));
    EXPECT_TRUE(t.model.SetExactUpper(t.x, "10/3"));
    EXPECT_TRUE(t.model.SetExactUpper(t.r, "9007199254740993"));
    EXPECT_TRUE(t.model.SetExactLower(t.r, "-0.33333333333333333333"));
    EXPECT_TRUE(t.model.SetExactCoefficient(t.r, t.y, "2/3"));
    EXPECT_EQ(t.model.Objective()[0], 1.0 / 3.0);
    EXPECT_EQ(t.model.ObjectiveConstant(), -2.0 / 7.0);
    EXPECT_EQ(t.model.RowUpper()[0], 9007199254740992.0);
    EXPECT_EQ(TextAt(t.model, {Of::Objective, 0}), "1/3");
    EXPECT_EQ(TextAt(t.model, {Of::ObjectiveConstant}), "-2/7");
    EXPECT_EQ(TextAt(t.model, {Of::VariableLower, 0}), "1/9");
    EXPECT_EQ(TextAt(t.model, {Of::VariableUpper, 0}), "10/3");
    EXPECT_EQ(TextAt(t.model, {Of::RowUpper, 0}), "9007199254740993");
    EXPECT_EQ(TextAt(t.model, {Of::RowLower, 0}), "-0.33333333333333333333");
    EXPECT_EQ(TextAt(t.model, {Of::Entry, 0, 1}), "2/3");
    EXPECT_FALSE(t.model.Failure());
}

TEST(ExactStating, AnOptimumIsAboutTheNumbersThatTextsSay)
{
    Thirds t;
    t.model.Maximize(t.x + t.y);
    EXPECT_TRUE(t.model.SetExactCoefficient(t.r, t.x, "1/3"));
    EXPECT_TRUE(t.model.SetExactCoefficient(t.r, t.y, "1/3"));
    EXPECT_TRUE(t.model.SetExactUpper(t.r, "1/11"));
    SolveOptions options;
    EXPECT_EQ(t.model.Solve(options).exactObjective, "3/11");
    options.numbers = CoefficientMeaning::StoredDouble;
    EXPECT_NE(t.model.Solve(options).exactObjective, "3/11");
}

TEST(ExactStating, ADoubleForgetsTheText)
{
    Thirds t;
    EXPECT_TRUE(t.model.SetExactCost(t.x, "1/3"));
    EXPECT_TRUE(t.model.SetExactLower(t.x, "1/9"));
    EXPECT_TRUE(t.model.SetExactUpper(t.x, "10/3"));
    EXPECT_TRUE(t.model.SetExactCoefficient(t.r, t.y, "2/3"));
    // A text that a double says needs none beside it.
    EXPECT_TRUE(t.model.SetExactLower(t.x, "0.25"));
    EXPECT_EQ(TextAt(t.model, {Of::VariableLower, 0}), "");
    EXPECT_EQ(TextAt(t.model, {Of::VariableUpper, 0}), "10/3");
    EXPECT_TRUE(t.model.SetBounds(t.x, {0, 3}));
    EXPECT_TRUE(t.model.SetCost(t.x, 2));
    EXPECT_TRUE(t.model.SetExactCoefficient(t.r, t.y, "0"));
    EXPECT_EQ(t.model.NonzeroCount(), 1U);
    EXPECT_TRUE(t.model.Exact().Empty());
}

TEST(ExactStating, WhatIsNoNumberIsRefusedAndChangesNothing)
{
    for (const char* text :
         {"", "a", "1/0", "1e999", "1e-999", "1/3 ", "0x10", "inf", "nan", "1//3"})
    {
        Thirds t;
        const std::string before = Written(t.model);
        EXPECT_FALSE(t.model.SetExactCost(t.x, text)) << text;
        EXPECT_EQ(FailureCode(t.model), "model.not-a-number") << text;
        EXPECT_FALSE(t.model.SetExactUpper(t.r, text)) << text;
        EXPECT_FALSE(t.model.SetExactCoefficient(t.r, t.x, text)) << text;
        EXPECT_EQ(Written(t.model), before);
        EXPECT_TRUE(t.model.Exact().Empty());
    }
}

TEST(ExactStating, HandlesOfOtherModelsAreRefused)
{
    Thirds t;
    Thirds other;
    EXPECT_FALSE(t.model.SetExactLower(other.x, "1/3"));
    EXPECT_EQ(FailureCode(t.model), "model.unknown-variable");
    EXPECT_FALSE(t.model.SetExactUpper(other.x, "1/3"));
    EXPECT_FALSE(t.model.SetExactCost(other.x, "1/3"));
    EXPECT_FALSE(t.model.SetExactCoefficient(t.r, other.x, "1/3"));
    EXPECT_FALSE(t.model.SetExactCoefficient(other.r, t.x, "1/3"));
    EXPECT_TRUE(t.model.Exact().Empty());
    EXPECT_FALSE(other.model.SetExactLower(t.r, "1/3"));
    EXPECT_EQ(FailureCode(other.model), "model.unknown-row");
    EXPECT_FALSE(other.model.SetExactUpper(t.r, "1/3"));
    EXPECT_TRUE(other.model.Exact().Empty());
}

}  // namespace
}  // namespace nuv
