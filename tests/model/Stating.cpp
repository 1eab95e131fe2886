// Stating models in C++: expressions, what they are stored as, and what is refused.
#include "tests/model/LpText.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace nuv
{
namespace
{

using test::Written;

TEST(Stating, ReadsLikeMathematics)
{
    Model factory;
    const Variable chairs = factory.AddVariable("chairs");
    const Variable tables = factory.AddVariable("tables", {0, 40});
    factory.Add("wood", 2 * chairs + 5 * tables <= 300);
    factory.Add("labour", 4 * chairs + 3 * tables <= 240);
    factory.Maximize(30 * chairs + 70 * tables - 12);
    EXPECT_FALSE(factory.Failure().has_value());
    EXPECT_EQ(Written(factory),
              "max -12 + 30 chairs + 70 tables; wood: -inf <= 2 chairs + 5 tables <= 300; "
              "labour: -inf <= 4 chairs + 3 tables <= 240; 0 <= chairs <= inf; 0 <= tables <= 40");
}

TEST(Stating, EveryRelationInEveryOrder)
{
    Model model;
    const Variable x = model.AddVariable("x"), y = model.AddVariable("y");
    model.Add("a", x <= 4);
    model.Add("b", 4 >= x);
    model.Add("c", x >= 4);
    model.Add("d", 4 <= x);
    model.Add("e", x == 4);
    model.Add("f", 4 == x);
    model.Add("g", x + 1 <= y + 5);
    model.Add("h", x >= y);
    model.Add("i", Range(-1, x - 2 * y + 3, 7));
    EXPECT_EQ(
        Written(model),
        "min 0; a: -inf <= 1 x <= 4; b: -inf <= 1 x <= 4; c: 4 <= 1 x <= inf; d: 4 <= 1 x <= inf; "
        "e: 4 <= 1 x <= 4; f: 4 <= 1 x <= 4; g: -inf <= 1 x + -1 y <= 4; h: 0 <= 1 x + -1 y <= "
        "inf; "
        "i: -4 <= 1 x + -2 y <= 4; 0 <= x <= inf; 0 <= y <= inf");
}

TEST(Stating, AddsTheTermsOfAVariableUp)
{
    Model model;
    const Variable x = model.AddVariable("x"), y = model.AddVariable("y");
    Expression sum = y;
    for (int i = 0; i < 3; ++i)
        sum += 2 * x;
    sum += sum;
    sum -= y;
    sum *= 0.5;
    model.Add(-sum + x * 3.0 <= 1);
    model.Minimize(x + y + x);
    EXPECT_EQ(Written(model),
              "min 0 + 2 x + 1 y; R1: -inf <= -3 x + -0.5 y <= 1; 0 <= x <= inf; 0 <= y <= inf");
}

TEST(Stating, NamesRowsByTheirPositionIfAskedTo)
{
    Model model;
    const Variable x = model.AddVariable("x");
    model.Add("R2", x <= 1);
    const Row row = model.Add(x <= 2);
    EXPECT_EQ(model.RowName(row.index), "R2_");
}

TEST(Stating, FindsByName)
{
    Model model;
    for (int i = 0; i < 1000; ++i)
    {
        const Variable x = model.AddVariable("a rather long name of variable " + std::to_string(i));
        model.Add("row" + std::to_string(i), x <= i);
    }
    for (std::uint32_t i = 0; i < 1000; ++i)
    {
        EXPECT_EQ(
            model.FindVariable("a rather long name of variable " + std::to_string(i))->Index(), i);
        EXPECT_EQ(model.FindRow("row" + std::to_string(i))->index, i);
    }
    EXPECT_FALSE(model.FindVariable("a rather long name of variable 1000").has_value());
    EXPECT_FALSE(model.FindVariable("").has_value());
    EXPECT_FALSE(model.FindRow("row").has_value());
}

/// The code of the failure after `state`, on a model with the variable x and the row "row".
template <class State>
std::string FailureAfter(State state)
{
    Model model;
    const Variable x = model.AddVariable("x");
    model.Add("row", x <= 1);
    const std::string before = Written(model);
    state(model, x);
    EXPECT_EQ(Written(model), before) << "a refused call changes nothing";
    return model.Failure() ? model.Failure()->code + ": " + model.Failure()->text : "none";
}

TEST(Stating, RefusesWithTheNameAndKeepsTheFirstFailure)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(FailureAfter([](Model& m, Variable) { EXPECT_FALSE(m.AddVariable("x").Valid()); }),
              "model.duplicate-variable: there is already a variable called 'x'");
    EXPECT_EQ(FailureAfter([](Model& m, Variable) { EXPECT_FALSE(m.AddVariable("").Valid()); }),
              "model.empty-name: a variable needs a name");
    EXPECT_EQ(FailureAfter(
                  [&](Model& m, Variable) {
                      EXPECT_FALSE(m.AddVariable("y", {nan, 1}).Valid());
                  }),
              "model.not-a-number: a bound of variable 'y' is not a number");
    EXPECT_EQ(FailureAfter(
                  [](Model& m, Variable) {
                      EXPECT_FALSE(m.AddVariable("y", {Infinity, Infinity}).Valid());
                  }),
              "model.impossible-bound: no number can keep the bounds of variable 'y'");
    EXPECT_EQ(
        FailureAfter([](Model& m, Variable x) { EXPECT_FALSE(m.Add("row", x <= 2).Valid()); }),
        "model.duplicate-row: there is already a row called 'row'");
    EXPECT_EQ(
        FailureAfter([&](Model& m, Variable x) { EXPECT_FALSE(m.Add("r", nan * x <= 2).Valid()); }),
        "model.not-finite: row 'r' has a coefficient or constant that is not finite");
    EXPECT_EQ(FailureAfter([](Model& m, Variable)
                           { EXPECT_FALSE(m.Add("r", Variable(7) <= 2).Valid()); }),
              "model.unknown-variable: row 'r' uses a variable that is not of this model");
    EXPECT_EQ(
        FailureAfter([](Model& m, Variable) { EXPECT_FALSE(m.Add("r", Variable() <= 2).Valid()); }),
        "model.unknown-variable: row 'r' uses a variable that is not of this model");
    EXPECT_EQ(FailureAfter([](Model& m, Variable) { m.Maximize(Infinity * Variable(0)); }),
              "model.not-finite: objective has a coefficient or constant that is not finite");
    EXPECT_EQ(FailureAfter(
                  [](Model& m, Variable) {
                      EXPECT_FALSE(m.SetBounds(Variable(3), {0, 1}));
                  }),
              "model.unknown-variable: bounds are set for a variable that is not of this model");
    EXPECT_EQ(FailureAfter(
                  [](Model& m, Variable x)
                  {
                      (void)m.AddVariable("x");
                      (void)m.Add("row", x <= 2);
                  }),
              "model.duplicate-variable: there is already a variable called 'x'");
}

TEST(Stating, TakesContradictoryBoundsForAModel)
{
    Model model;
    const Variable x = model.AddVariable("x", {5, 3});
    model.Add("r", Range(2, x, 1));
    EXPECT_FALSE(model.Failure().has_value());
}

TEST(Stating, FillsRowsFromColumns)
{
    Model model;
    for (const char* name : {"x", "y", "z"})
        (void)model.InternVariable(name);
    for (const char* name : {"a", "b"})
        (void)model.AppendRow(name, {0, 1});
    const std::size_t starts[] = {0, 2, 2, 3};
    const std::uint32_t rows[] = {1, 0, 1};
    const double coefficients[] = {3, 4, 5};
    model.AssignColumns(starts, rows, coefficients);
    EXPECT_EQ(Written(model), "min 0; a: 0 <= 4 x <= 1; b: 0 <= 3 x + 5 z <= 1; 0 <= x <= inf; 0 "
                              "<= y <= inf; 0 <= z <= inf");
}

}  // namespace
}  // namespace nuv
