// The solve as a whole: its stages agree, signs are as stated, and nothing is claimed without
// proof.
#include "Nuv/Model/ModelBuilder.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace
{

constexpr double kInfinity = nuv::Infinity;

TEST(Solve, ReadsLikeMathematics)
{
    nuv::Model factory;
    const nuv::Variable chairs = factory.AddVariable("chairs");
    const nuv::Variable tables = factory.AddVariable("tables", {0, 40});
    const nuv::Row wood = factory.Add("wood", 2 * chairs + 5 * tables <= 300);
    const nuv::Row labour = factory.Add("labour", 4 * chairs + 3 * tables <= 240);
    factory.Maximize(30 * chairs + 70 * tables);
    const nuv::Solution plan = factory.Solve();
    ASSERT_EQ(plan.status, nuv::Status::Optimal);
    EXPECT_TRUE(plan.proved);
    EXPECT_EQ(plan.exactObjective, "3700");
    EXPECT_EQ(plan.objective, 3700.0);
    EXPECT_EQ(plan.Value(chairs), 30.0);
    EXPECT_EQ(plan.Value(tables), 40.0);
    EXPECT_EQ(plan.Dual(wood), 0.0);
    EXPECT_EQ(plan.Dual(labour), 7.5);
    EXPECT_EQ(plan.reducedCosts[tables.Index()], 47.5);
    EXPECT_EQ(plan.activities[wood.Index()], 260.0);
}

/// By how much the objective changes when the right-hand side of `x + y >= 3` does is its dual.
double OptimumFor(double rhs, bool maximise)
{
    nuv::Model model;
    const nuv::Variable x = model.AddVariable("x");
    const nuv::Variable y = model.AddVariable("y", {1.0, 10.0});
    if (maximise)
    {
        model.Add(x + 2 * y <= rhs);
        model.Maximize(3 * x + 4 * y);
    }
    else
    {
        model.Add(x + 2 * y >= rhs);
        model.Minimize(3 * x + 4 * y);
    }
    const nuv::Solution solution = model.Solve();
    EXPECT_EQ(solution.status, nuv::Status::Optimal);
    EXPECT_EQ(solution.duals.size(), 1U);
    EXPECT_EQ(solution.duals[0], maximise ? 3.0 : 2.0);
    return solution.objective;
}

TEST(Solve, ADualIsTheGainPerUnitOfTheRightHandSideInEitherSense)
{
    EXPECT_EQ(OptimumFor(9.0, true) - OptimumFor(8.0, true), 3.0);
    EXPECT_EQ(OptimumFor(9.0, false) - OptimumFor(8.0, false), 2.0);
}

TEST(Solve, MinimisesWithEquationsRangesAndFreeVariables)
{
    nuv::Model model;
    const nuv::Variable x = model.AddVariable("x", {-kInfinity, kInfinity});
    const nuv::Variable y = model.AddVariable("y", {-kInfinity, 4.0});
    model.Add("balance", x + y == 1);
    model.Add("band", nuv::Range(-2, x - y, 6));
    model.Minimize(x + 3 * y + 10);
    const nuv::Solution solution = model.Solve();
    ASSERT_EQ(solution.status, nuv::Status::Optimal);
    EXPECT_TRUE(solution.proved);
    EXPECT_EQ(solution.exactObjective, "6");
    EXPECT_EQ(solution.values, (std::vector<double>{3.5, -2.5}));
}

TEST(Solve, ProvesInfeasibilityByMultipliers)
{
    nuv::Model model;
    const nuv::Variable x = model.AddVariable("x");
    model.Add(x >= 2);
    model.Add(x <= 1);
    const nuv::Solution solution = model.Solve();
    ASSERT_EQ(solution.status, nuv::Status::Infeasible);
    EXPECT_TRUE(solution.proved);
    ASSERT_EQ(solution.farkas.size(), 2U);
    EXPECT_GT(solution.farkas[0], 0.0);
    EXPECT_LT(solution.farkas[1], 0.0);
}

TEST(Solve, ProvesUnboundednessByARay)
{
    nuv::Model model;
    const nuv::Variable x = model.AddVariable("x");
    const nuv::Variable y = model.AddVariable("y");
    model.Add(x - y <= 1);
    model.Maximize(x + y);
    const nuv::Solution solution = model.Solve();
    ASSERT_EQ(solution.status, nuv::Status::Unbounded);
    EXPECT_TRUE(solution.proved);
    ASSERT_EQ(solution.ray.size(), 2U);
    EXPECT_GT(solution.ray[0] + solution.ray[1], 0.0);
    EXPECT_LE(solution.ray[0] - solution.ray[1], 0.0);
}

TEST(Solve, ContradictoryBoundsAreAVerdict)
{
    nuv::Model model;
    model.AddVariable("x", {3.0, 2.0});
    const nuv::Solution solution = model.Solve();
    EXPECT_EQ(solution.status, nuv::Status::Infeasible);
    EXPECT_TRUE(solution.proved);
}

TEST(Solve, AModelWithoutRowsOrVariablesHasAnAnswer)
{
    nuv::Model empty;
    EXPECT_EQ(empty.Solve().status, nuv::Status::Optimal);
    nuv::Model noRows;
    const nuv::Variable x = noRows.AddVariable("x", {0, 7});
    noRows.Maximize(2 * x + 1);
    EXPECT_EQ(noRows.Solve().exactObjective, "15");
    nuv::Model noVariables;
    noVariables.Add(nuv::Expression(0) <= 5);
    EXPECT_EQ(noVariables.Solve().status, nuv::Status::Optimal);
}

TEST(Solve, NumbersBeyondBinary32AreSolvedExactlyInstead)
{
    nuv::Model model;
    const nuv::Variable x = model.AddVariable("x");
    model.Add(1e-300 * x <= 1.0);
    model.Add(1e200 * x <= 5e200);
    model.Maximize(x);
    const nuv::Solution solution = model.Solve();
    EXPECT_EQ(solution.singlePrecision.stop, nuv::SinglePrecisionStop::OutOfRange);
    ASSERT_EQ(solution.status, nuv::Status::Optimal);
    EXPECT_EQ(solution.objective, 5.0);
}

TEST(Solve, AFaultyModelIsNotTried)
{
    nuv::Model model;
    model.AddVariable("x");
    model.AddVariable("x");
    const nuv::Solution solution = model.Solve();
    EXPECT_EQ(solution.status, nuv::Status::Invalid);
    EXPECT_FALSE(solution.failure.text.empty());
}

TEST(Solve, ANumberThatIsNoneIsAnErrorWithTheNameOfWhatHasIt)
{
    nuv::Model model;
    const nuv::Variable x = model.AddVariable("x");
    model.Add("limit", x <= 4);
    nuv::ModelBuilder builder(model);
    builder.SetRowBounds(0, {0.0, std::nan("")});
    const nuv::Solution solution = builder.Take().Solve();
    EXPECT_EQ(solution.status, nuv::Status::Invalid);
    EXPECT_EQ(solution.failure.code, "model.not-a-number");
    EXPECT_EQ(solution.failure.text, "a bound of row 'limit' is not a number");
}

/// Three models for the core: with an optimum, without a point, without an end.
std::vector<nuv::Model> OneOfEachVerdict()
{
    std::vector<nuv::Model> models(3);
    for (std::size_t k = 0; k < models.size(); ++k)
    {
        nuv::Model& model = models[k];
        const nuv::Variable x = model.AddVariable("x");
        const nuv::Variable y = model.AddVariable("y");
        model.Add("a", x - y <= 1);
        model.Add("b", x + 2 * y >= 2);
        if (k != 2)
            model.Add("c", x + y <= (k == 0 ? 5.0 : 0.5));
        model.Maximize(x + 3 * y);
    }
    return models;
}

TEST(Solve, StopsWhenToldToInSinglePrecision)
{
    for (const nuv::Model& model : OneOfEachVerdict())
    {
        int asked = 0;
        nuv::SolveOptions options;
        options.limits.keepGoing = [&asked](const nuv::Progress& progress)
        {
            EXPECT_EQ(progress.stage, nuv::Stage::SinglePrecision);
            ++asked;
            return false;
        };
        const nuv::Solution solution = model.Solve(options);
        EXPECT_EQ(solution.singlePrecision.stop, nuv::SinglePrecisionStop::Control);
        EXPECT_EQ(solution.status, nuv::Status::Stopped);
        EXPECT_EQ(solution.stopReason, nuv::StopReason::Cancelled);
        EXPECT_EQ(asked, 1) << "a stop is final";
    }
}

TEST(Solve, StopsWhenToldToInAnyLaterStage)
{
    for (const nuv::Stage stage : {nuv::Stage::Double, nuv::Stage::Exact})
        for (const nuv::Model& model : OneOfEachVerdict())
        {
            int asked = 0;
            nuv::SolveOptions options;
            options.useSinglePrecision = false;
            if (stage == nuv::Stage::Exact)
                options.limits.doublePivots = 0;
            options.limits.keepGoing = [&](const nuv::Progress& progress)
            {
                asked += progress.stage == stage ? 1 : 0;
                return progress.stage != stage;
            };
            const nuv::Solution solution = model.Solve(options);
            EXPECT_EQ(solution.status, nuv::Status::Stopped);
            EXPECT_EQ(solution.stopReason, nuv::StopReason::Cancelled);
            EXPECT_EQ(asked, 1) << "a stop is final";
        }
}

TEST(Solve, APivotLimitOfEveryStageIsOneForTheWholeSolve)
{
    for (const nuv::Model& model : OneOfEachVerdict())
        for (std::uint64_t most = 0; most < 4; ++most)
        {
            nuv::SolveOptions options;
            options.limits.singlePrecisionPivots = most;
            options.limits.doublePivots = most;
            options.limits.exactPivots = most;
            options.limits.keepGoing = [most](const nuv::Progress& progress)
            {
                EXPECT_LE(progress.pivots, most);
                return true;
            };
            const nuv::Solution solution = model.Solve(options);
            EXPECT_LE(solution.singlePrecision.pivots, most);
            EXPECT_LE(solution.stages[nuv::Stage::Double].pivots, most);
            EXPECT_LE(solution.stages[nuv::Stage::Exact].pivots, most);
        }
}

TEST(Solve, TakesNumbersForTheDecimalsThatTheyLookLike)
{
    nuv::Model model;
    const nuv::Variable a = model.AddVariable("a", {0.7, 0.7});
    const nuv::Variable b = model.AddVariable("b", {0.2, 0.2});
    const nuv::Variable c = model.AddVariable("c", {0.1, 0.1});
    model.Add(a + b + c == 1);
    model.Minimize(a + 0.1 * c);
    const nuv::Solution written = model.Solve();
    EXPECT_EQ(written.status, nuv::Status::Optimal);
    EXPECT_EQ(written.numbers, nuv::CoefficientMeaning::ShortestDecimal);
    EXPECT_EQ(written.exactObjective, "71/100");
    nuv::SolveOptions options;
    options.numbers = nuv::CoefficientMeaning::StoredDouble;
    const nuv::Solution stored = model.Solve(options);
    EXPECT_EQ(stored.status, nuv::Status::Infeasible);
    EXPECT_EQ(stored.numbers, nuv::CoefficientMeaning::StoredDouble);
    EXPECT_TRUE(stored.proved);
}

/// 3 x + 2 y + 10 with x + y >= least and more: the progress of its solve.
std::vector<nuv::Progress> Follow(double least, nuv::Sense sense, nuv::Solution& solution)
{
    nuv::Model model;
    const nuv::Variable x = model.AddVariable("x", {0, 4});
    const nuv::Variable y = model.AddVariable("y");
    model.Add("a", x + y >= least);
    model.Add("b", x + 3 * y <= 9);
    if (sense == nuv::Sense::Maximize)
        model.Maximize(3 * x + 2 * y + 10);
    else
        model.Minimize(3 * x + 2 * y + 10);
    nuv::SolveOptions options;
    options.useSinglePrecision = false;
    std::vector<nuv::Progress> seen;
    options.limits.keepGoing = [&seen](const nuv::Progress& progress)
    {
        seen.push_back(progress);
        return true;
    };
    solution = model.Solve(options);
    return seen;
}

TEST(Solve, TellsWhereItStandsWhileFeasible)
{
    nuv::Solution solution;
    const std::vector<nuv::Progress> seen = Follow(0, nuv::Sense::Maximize, solution);
    ASSERT_GE(seen.size(), 2U);
    EXPECT_TRUE(seen.front().feasible);
    EXPECT_EQ(seen.front().objective, 10.0);
    EXPECT_GT(seen.back().objective, 10.0);
    EXPECT_LT(seen.back().objective, solution.objective);
}

TEST(Solve, TellsHowFarItIsFromFeasible)
{
    nuv::Solution solution;
    const std::vector<nuv::Progress> seen = Follow(2, nuv::Sense::Minimize, solution);
    ASSERT_GE(seen.size(), 1U);
    EXPECT_FALSE(seen.front().feasible);
    EXPECT_NEAR(seen.front().objective, 2.0, 1e-3) << "row a lacks 2";
    EXPECT_EQ(solution.objective, 14.0);
}

/// Thousands of columns that no row uses take no pivot each.
TEST(Solve, ColumnsOfNoRowCostNoPivots)
{
    nuv::Model model;
    nuv::Expression objective;
    for (int j = 0; j < 5000; ++j)
        objective += model.AddVariable("x" + std::to_string(j));
    model.Maximize(objective);
    const nuv::Solution solution = model.Solve();
    EXPECT_EQ(solution.status, nuv::Status::Unbounded);
    EXPECT_TRUE(solution.proved);
    EXPECT_LT(solution.stages[nuv::Stage::Double].pivots +
                  solution.stages[nuv::Stage::Exact].pivots,
              100U);
}

}  // namespace
