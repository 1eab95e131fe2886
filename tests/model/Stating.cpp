// Stating models in C++: expressions, what they are stored as, and what is refused.
#include "Nuv/Model/ModelBuilder.hpp"
#include "tests/model/ModelText.hpp"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <optional>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace nuv::stating
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

TEST(Stating, ATermIsOfOneVariableAndHasNoStorage)
{
    static_assert(std::is_trivially_copyable_v<Term>);
    Model model;
    const Variable x = model.AddVariable("x");
    static_assert(std::is_same_v<decltype(2 * x), Term>);
    for (const Term& term : {2 * x, x * 2, x / 0.5, 4 * (x / 2), +(2 * x), -(x * -2), -x * -2,
                             0.5 * (2 * (2 * x)), (4 * x) / 2, (1 * x) * 2})
    {
        EXPECT_TRUE(Same(term.variable, x));
        EXPECT_EQ(term.coefficient, 2.0);
    }
    EXPECT_EQ((x / 3).coefficient, 1.0 / 3.0);
}

TEST(Stating, SumsOfTermsVariablesAndNumbersInAnyOrder)
{
    Model model;
    const Variable x = model.AddVariable("x"), y = model.AddVariable("y");
    model.Add("a", 2 * x + y <= 1);
    model.Add("b", x + 2 * y <= 1);
    model.Add("c", x - y <= 1);
    model.Add("d", 2 * x - 3 * y <= 1);
    model.Add("e", 1 + 2 * x - y <= 1);
    model.Add("f", 3 - x - 1 <= 1);
    model.Add("g", +(x + y) <= 1);
    model.Add("h", (4 * x + 2 * y + 6) / 2 <= 1);
    Expression sum = 7;
    sum += x;
    sum -= 2 * y;
    sum += 3;
    sum -= x;
    sum.Add(5, y).Add(-4, x);
    model.Add("i", sum <= 1);
    model.Add("j", sum == y);
    EXPECT_EQ(Written(model), "min 0; a: -inf <= 2 x + 1 y <= 1; b: -inf <= 1 x + 2 y <= 1; "
                              "c: -inf <= 1 x + -1 y <= 1; d: -inf <= 2 x + -3 y <= 1; "
                              "e: -inf <= 2 x + -1 y <= 0; f: -inf <= -1 x <= -1; "
                              "g: -inf <= 1 x + 1 y <= 1; h: -inf <= 2 x + 1 y <= -2; "
                              "i: -inf <= -4 x + 3 y <= -9; j: -10 <= -4 x + 2 y <= -10; "
                              "0 <= x <= inf; 0 <= y <= inf");
}

TEST(Stating, SumAndDotTakeAnyRange)
{
    Model model;
    const Variable x = model.AddVariable("x"), y = model.AddVariable("y");
    const std::vector<Variable> both = {x, y};
    const std::array<double, 2> cost = {2, 5};
    model.Add("a", Sum(both) <= 1);
    model.Add("b", Sum({x, y}) <= 1);
    model.Add("c", Sum(both, [](Variable v) { return 3 * v; }) <= 1);
    model.Add("d", Sum(std::vector<Expression>{x + y, 2 * x - 1, Expression(y)}) <= 1);
    model.Add("e", Sum(std::vector<double>{1, 2}) + x <= 4);
    model.Add("f", Dot(cost, both) <= 1);
    model.Add("g", Dot({2, 5}, both) <= 1);
    model.Add("h", Dot({2, 5}, {x, y}) <= 1);
    model.Add("i", Dot(std::vector<int>{2, 5}, both) <= Sum(std::vector<Variable>{}));
    EXPECT_EQ(Written(model),
              "min 0; a: -inf <= 1 x + 1 y <= 1; b: -inf <= 1 x + 1 y <= 1; "
              "c: -inf <= 3 x + 3 y <= 1; d: -inf <= 3 x + 2 y <= 2; e: -inf <= 1 x <= 1; "
              "f: -inf <= 2 x + 5 y <= 1; g: -inf <= 2 x + 5 y <= 1; h: -inf <= 2 x + 5 y <= 1; "
              "i: -inf <= 2 x + 5 y <= 0; 0 <= x <= inf; 0 <= y <= inf");
}

TEST(Stating, NamesWhatIsNotNamedByItsPosition)
{
    Model model;
    const Variable first = model.AddVariable();
    const Variable second = model.AddVariable({-1, 2});
    model.AddVariable("y");
    const std::vector<Variable> more = model.AddVariables(2, {0, 1});
    model.Add(Sum(more) <= 1);
    model.Add("mine", first <= second);
    model.Add(first >= 0);
    EXPECT_EQ(Written(model), "min 0; R1: -inf <= 1 x4 + 1 x5 <= 1; mine: -inf <= 1 x1 + -1 x2 <= "
                              "0; R3: 0 <= 1 x1 <= inf; 0 <= x1 <= inf; -1 <= x2 <= 2; 0 <= y <= "
                              "inf; 0 <= x4 <= 1; 0 <= x5 <= 1");
    EXPECT_TRUE(Same(*model.FindVariable("x4"), more[0]));
    EXPECT_FALSE(model.Failure().has_value());
}

TEST(Stating, AMadeNameMakesRoomForAGivenOne)
{
    Model model;
    model.AddVariable("x2");
    const Variable made = model.AddVariable();
    EXPECT_EQ(model.VariableName(made.Index()), "x2_");
    const Variable given = model.AddVariable("x2_");
    EXPECT_EQ(model.VariableName(given.Index()), "x2_");
    EXPECT_EQ(model.VariableName(made.Index()), "x2__");
    EXPECT_TRUE(Same(*model.FindVariable("x2_"), given));
    EXPECT_TRUE(Same(*model.FindVariable("x2__"), made));
    EXPECT_FALSE(model.AddVariable("x2").Valid()) << "given names stay";

    const std::vector<Variable> more = model.AddVariables(3);
    EXPECT_TRUE(model.Remove(more[0]));
    EXPECT_EQ(model.VariableName(model.IndexOf(more[2])), "x6");
    EXPECT_EQ(model.VariableName(model.IndexOf(model.AddVariable())), "x6_");
    const Variable column = model.AddColumn("x6", 1, {0, 1}, {});
    EXPECT_TRUE(Same(*model.FindVariable("x6"), column));
    EXPECT_EQ(model.VariableName(model.IndexOf(more[2])), "x6__");

    const Row madeRow = model.Add(made <= 1);
    const Row givenRow = model.Add("R1", made <= 2);
    EXPECT_EQ(model.RowName(madeRow.Index()), "R1_");
    EXPECT_EQ(model.RowName(givenRow.Index()), "R1");
    for (int i = 0; i < 100; ++i)
        model.Add("a name beyond sixteen bytes " + std::to_string(i), made <= i);
    EXPECT_TRUE(Same(*model.FindRow("R1"), givenRow));
    EXPECT_TRUE(Same(*model.FindRow("R1_"), madeRow));
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
        EXPECT_EQ(model.FindRow("row" + std::to_string(i))->Index(), i);
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
                      EXPECT_FALSE(m.AddVariables(2, {0, nan})[1].Valid());
                  }),
              "model.not-a-number: a bound of variable 'x2' is not a number");
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
    EXPECT_EQ(
        FailureAfter([](Model& m, Variable) { EXPECT_FALSE(m.Add("r", Variable() <= 2).Valid()); }),
        "model.unknown-variable: row 'r' uses a variable that is not of this model");
    EXPECT_EQ(FailureAfter([](Model& m, Variable x) { m.Maximize(Infinity * x); }),
              "model.not-finite: objective has a coefficient or constant that is not finite");
    EXPECT_EQ(FailureAfter(
                  [](Model& m, Variable) {
                      EXPECT_FALSE(m.SetBounds(Variable(), {0, 1}));
                  }),
              "model.unknown-variable: bounds are set for a variable that is not of this model");
    EXPECT_EQ(FailureAfter(
                  [](Model& m, Variable x) {
                      m.Minimize(Dot({1, 2}, std::vector{x}));
                  }),
              "model.unknown-variable: objective uses a variable that is not of this model");
    EXPECT_EQ(FailureAfter(
                  [](Model& m, Variable x) {
                      m.Minimize(Dot({1}, {x, x}));
                  }),
              "model.not-finite: objective has a coefficient or constant that is not finite");
    EXPECT_EQ(FailureAfter([](Model& m, Variable x) { m.Minimize((x + 1) / 0); }),
              "model.not-finite: objective has a coefficient or constant that is not finite");
    EXPECT_EQ(FailureAfter(
                  [](Model& m, Variable x)
                  {
                      (void)m.AddVariable("x");
                      (void)m.Add("row", x <= 2);
                  }),
              "model.duplicate-variable: there is already a variable called 'x'");
}

TEST(Stating, ManyTermsAddedOneByOneMoveRarely)
{
    Model model;
    const Variable x = model.AddVariable("x");
    Expression up, down;
    int moves = 0;
    for (int i = 0; i < 100000; ++i)
    {
        const Term* const before[] = {up.Terms().data(), down.Terms().data()};
        up += 2 * x;
        down -= 2 * x;
        moves += up.Terms().data() != before[0];
        moves += down.Terms().data() != before[1];
    }
    EXPECT_EQ(up.Terms().size(), 100000u);
    EXPECT_EQ(down.Terms().back().coefficient, -2.0);
    EXPECT_LT(moves, 200);
}

TEST(Stating, RefusesAVariableOfAnotherModelWhoseIndexIsOneOfThisModel)
{
    Model other;
    const Variable stranger = other.AddVariable("stranger");
    const std::string refused = "model.unknown-variable: ";
    EXPECT_EQ(
        FailureAfter([&](Model& m, Variable) { EXPECT_FALSE(m.Add("r", stranger <= 1).Valid()); }),
        refused + "row 'r' uses a variable that is not of this model");
    EXPECT_EQ(FailureAfter([&](Model& m, Variable x) { m.Minimize(x + stranger); }),
              refused + "objective uses a variable that is not of this model");
    EXPECT_EQ(FailureAfter(
                  [&](Model& m, Variable) {
                      EXPECT_FALSE(m.SetBounds(stranger, {0, 1}));
                  }),
              refused + "bounds are set for a variable that is not of this model");
}

TEST(Stating, ACopyTakesTheHandlesFromBeforeItAndNoneFromAfter)
{
    Model original;
    const Variable x = original.AddVariable("x");
    const Row row = original.Add("row", x <= 1);
    Model copy = original;
    const Variable ours = original.AddVariable("y");
    const Variable theirs = copy.AddVariable("y");
    EXPECT_TRUE(original.Owns(x) && copy.Owns(x));
    EXPECT_TRUE(original.Owns(row) && copy.Owns(row));
    EXPECT_TRUE(original.Owns(ours) && !copy.Owns(ours));
    EXPECT_TRUE(copy.Owns(theirs) && !original.Owns(theirs));
    EXPECT_FALSE(Same(ours, theirs));
    const Model second = copy;
    EXPECT_TRUE(second.Owns(x) && second.Owns(theirs) && !second.Owns(ours));
}

TEST(Stating, HandlesGoWithAModelThatIsMoved)
{
    Model from;
    const Variable x = from.AddVariable("x");
    Model to = std::move(from);
    EXPECT_TRUE(to.Owns(x));
    from = Model();
    const Variable y = from.AddVariable("y");
    EXPECT_FALSE(from.Owns(x));
    EXPECT_FALSE(to.Owns(y));
    to = from;
    EXPECT_TRUE(to.Owns(y) && !to.Owns(x));
}

TEST(Stating, HandlesAreComparedAndHashed)
{
    Model model, other;
    const Variable x = model.AddVariable("x"), y = model.AddVariable("y");
    const Row first = model.Add(x <= 1), second = model.Add(y <= 1);
    EXPECT_TRUE(Same(x, *model.FindVariable("x")));
    EXPECT_TRUE(Same(x, model.VariableAt(0)));
    EXPECT_FALSE(Same(x, y));
    EXPECT_FALSE(Same(x, other.AddVariable("x")));
    EXPECT_TRUE(Same(second, *model.FindRow("R2")));
    EXPECT_FALSE(Same(first, second));
    std::unordered_map<Variable, int> count;
    ++count[x];
    ++count[y];
    ++count[model.VariableAt(1)];
    EXPECT_EQ(count.size(), 2u);
    EXPECT_EQ(count[y], 2);
    EXPECT_FALSE(model.VariableAt(2).Valid());
    EXPECT_FALSE(model.RowAt(2).Valid());
}

/// What FindFault says of a model with the variable x and the row "row" after `change`.
template <class Change>
std::string FaultAfter(Change change)
{
    Model model;
    const Variable x = model.AddVariable("x");
    model.Add("row", 2 * x <= 1);
    EXPECT_FALSE(model.FindFault().has_value());
    ModelBuilder builder(model);
    change(builder);
    const std::optional<Error> fault = builder.Take().FindFault();
    return fault ? fault->code + ": " + fault->text : "none";
}

TEST(Stating, FindsWhatABuilderLetsThrough)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(FaultAfter(
                  [&](ModelBuilder& m) {
                      m.SetVariableBounds(0, {0, nan});
                  }),
              "model.not-a-number: a bound of variable 'x' is not a number");
    EXPECT_EQ(FaultAfter(
                  [&](ModelBuilder& m) {
                      m.SetRowBounds(0, {nan, 1});
                  }),
              "model.not-a-number: a bound of row 'row' is not a number");
    EXPECT_EQ(FaultAfter(
                  [&](ModelBuilder& m) {
                      m.SetRowBounds(0, {Infinity, Infinity});
                  }),
              "model.impossible-bound: no number can keep the bounds of row 'row'");
    EXPECT_EQ(FaultAfter([&](ModelBuilder& m) { m.SetObjectiveCoefficient(0, nan); }),
              "model.not-finite: the objective at variable 'x' has a coefficient or constant that "
              "is not finite");
    EXPECT_EQ(FaultAfter([&](ModelBuilder& m) { m.SetObjectiveConstant(Infinity); }),
              "model.not-finite: the objective has a coefficient or constant that is not finite");
    EXPECT_EQ(FaultAfter(
                  [&](ModelBuilder& m)
                  {
                      (void)m.AppendRow("next", {0, 1});
                      m.AppendEntry(0, nan);
                  }),
              "model.not-finite: row 'next' has a coefficient or constant that is not finite");
    EXPECT_EQ(FaultAfter([](ModelBuilder& m) { m.SetVariableBounds(0, {5, 3}); }), "none");
}

TEST(Stating, ItsFirstFailureIsItsFault)
{
    Model model;
    (void)model.AddVariable("");
    ASSERT_TRUE(model.FindFault().has_value());
    EXPECT_EQ(model.FindFault()->code, "model.empty-name");
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
    ModelBuilder model;
    for (const char* name : {"x", "y", "z"})
        (void)model.InternVariable(name);
    for (const char* name : {"a", "b"})
        (void)model.AppendRow(name, {0, 1});
    const std::size_t starts[] = {0, 2, 2, 3};
    const std::uint32_t rows[] = {1, 0, 1};
    const double coefficients[] = {3, 4, 5};
    model.AssignColumns(starts, rows, coefficients);
    EXPECT_EQ(Written(model.Take()),
              "min 0; a: 0 <= 4 x <= 1; b: 0 <= 3 x + 5 z <= 1; 0 <= x <= inf; 0 "
              "<= y <= inf; 0 <= z <= inf");
}

}  // namespace
}  // namespace nuv::stating
