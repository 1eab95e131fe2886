// The first stage by itself: what it says it found, why it says nothing, and the path that it took.
#include "Nuv/Solve/ModelForm.hpp"
#include "Nuv/Solve/SinglePrecisionStage.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace nuv::test
{
namespace
{

SolveOptions Alone()
{
    SolveOptions options;
    options.singlePrecisionOnly = true;
    return options;
}

Model Factory()
{
    Model model;
    const Variable chairs = model.AddVariable("chairs");
    const Variable tables = model.AddVariable("tables", {0, 40});
    model.Add("wood", 2 * chairs + 5 * tables <= 300);
    model.Add("labour", 4 * chairs + 3 * tables <= 240);
    model.Maximize(30 * chairs + 70 * tables + 5);
    return model;
}

/// Chvatal's example, of which the largest coefficient comes back to the slack basis.
Model Cycling()
{
    Model model;
    Variable x[4];
    for (Variable& variable : x)
        variable = model.AddVariable();
    model.Add(0.5 * x[0] - 5.5 * x[1] - 2.5 * x[2] + 9 * x[3] <= 0);
    model.Add(0.5 * x[0] - 1.5 * x[1] - 0.5 * x[2] + x[3] <= 0);
    model.Add(1 * x[0] <= 1);
    model.Maximize(10 * x[0] - 57 * x[1] - 9 * x[2] - 24 * x[3]);
    return model;
}

TEST(SinglePrecision, SaysWhatItFoundAndProvesNothing)
{
    const Solution optimum = Factory().Solve(Alone());
    EXPECT_EQ(optimum.status, Status::Optimal);
    EXPECT_EQ(optimum.singlePrecision.status, Status::Optimal);
    EXPECT_EQ(optimum.singlePrecision.stop, SinglePrecisionStop::None);
    EXPECT_EQ(optimum.objective, 3705.0);
    EXPECT_FALSE(optimum.proved);

    Model infeasible = Factory();
    infeasible.Add(1 * *infeasible.FindVariable("chairs") >= 61);
    EXPECT_EQ(infeasible.Solve(Alone()).status, Status::Infeasible);
    EXPECT_EQ(infeasible.Solve(Alone()).singlePrecision.stop, SinglePrecisionStop::None);

    Model unbounded;
    unbounded.Maximize(unbounded.AddVariable() + 0.0);
    unbounded.Add(unbounded.AddVariable() <= 1);
    EXPECT_EQ(unbounded.Solve(Alone()).status, Status::Unbounded);

    Model crossed = Factory();
    EXPECT_TRUE(crossed.SetBounds(*crossed.FindVariable("tables"), {3, 2}));
    EXPECT_EQ(crossed.Solve(Alone()).status, Status::Infeasible);
    EXPECT_EQ(crossed.Solve(Alone()).singlePrecision.stop, SinglePrecisionStop::Skipped);
}

TEST(SinglePrecision, SaysWhyItFoundNothing)
{
    const Solution cycle = Cycling().Solve(Alone());
    EXPECT_EQ(cycle.status, Status::Stopped);
    EXPECT_EQ(cycle.singlePrecision.stop, SinglePrecisionStop::Cycling);
    EXPECT_EQ(cycle.singlePrecision.period, 6U);
    EXPECT_EQ(cycle.Outcome(), "stopped: basis repeated after " +
                                   std::to_string(cycle.singlePrecision.pivots) +
                                   " pivots, a cycle of 6");

    const Solution empty = Model().Solve(Alone());
    EXPECT_EQ(empty.singlePrecision.stop, SinglePrecisionStop::Empty);
    EXPECT_EQ(empty.Outcome(),
              "stopped: there is no row or no variable for single precision to work on");

    Model wide = Factory();
    wide.Add(1e50 * *wide.FindVariable("chairs") <= 1);
    EXPECT_EQ(wide.Solve(Alone()).singlePrecision.stop, SinglePrecisionStop::OutOfRange);
    EXPECT_EQ(wide.Solve(Alone()).Outcome(),
              "stopped: a number of the model is beyond single precision");

    SolveOptions limited = Alone();
    limited.limits.singlePrecisionPivots = 1;
    const Solution limit = Factory().Solve(limited);
    EXPECT_EQ(limit.singlePrecision.stop, SinglePrecisionStop::PivotLimit);
    EXPECT_EQ(limit.stopReason, StopReason::PivotLimit);
    EXPECT_EQ(limit.Outcome(), "stopped by the pivot limit");
}

/// The matrices of 7000 rows would take more than a gigabyte.
TEST(SinglePrecision, RefusesModelsThatAreTooLargeForDenseMatrices)
{
    Model model;
    const Variable x = model.AddVariable();
    const Variable y = model.AddVariable();
    for (int i = 0; i < 7000; ++i)
        model.Add(x + y <= i + 1);
    model.Maximize(x);
    const Solution solution = model.Solve(Alone());
    EXPECT_EQ(solution.singlePrecision.stop, SinglePrecisionStop::Memory);
    EXPECT_EQ(solution.singlePrecision.pivots, 0U);
    EXPECT_EQ(solution.Outcome(), "stopped: too large for the dense matrices of single precision");
}

CanonicalForm CanonicalFactory()
{
    return ToCanonicalForm(FormOf(Factory()), Scaling::None).form;
}

TEST(SinglePrecision, KeepsToItsBudget)
{
    const CanonicalForm form = CanonicalFactory();
    SolveControl control;
    const SinglePrecisionResult enough = RunSinglePrecisionStage(form, {10, 1U << 20}, control);
    ASSERT_EQ(enough.status, Status::Optimal);
    ASSERT_GE(enough.pivots, 2U);

    const SinglePrecisionResult pivots = RunSinglePrecisionStage(form, {1, 1U << 20}, control);
    EXPECT_EQ(pivots.status, Status::Stopped);
    EXPECT_EQ(pivots.stop, SinglePrecisionStop::PivotBudget);
    EXPECT_EQ(pivots.pivots, 1U);

    // Bytes for the matrices and for what one pivot leaves behind.
    std::size_t bytes = 1;
    SinglePrecisionResult memory;
    do
        memory = RunSinglePrecisionStage(form, {1000, bytes *= 2}, control);
    while (memory.pivots == 0 && bytes < 1U << 20);
    EXPECT_EQ(memory.stop == SinglePrecisionStop::Memory || memory.status == Status::Optimal, true);
    bytes = bytes / 2;
    for (; memory.pivots != 1 && bytes < 1U << 20; ++bytes)
        memory = RunSinglePrecisionStage(form, {1000, bytes}, control);
    EXPECT_EQ(memory.stop, SinglePrecisionStop::Memory);
    EXPECT_EQ(memory.pivots, 1U);
    EXPECT_EQ(memory.basicLabels.size(), form.rows);
}

/// Of each kind, once: a side, a cost, a coefficient.
TEST(SinglePrecision, KnowsWhichNumbersItCannotHold)
{
    const CanonicalForm form = CanonicalFactory();
    SolveControl control;
    const auto stop = [&](auto spoil)
    {
        CanonicalForm spoilt = form;
        spoil(spoilt);
        return RunSinglePrecisionStage(spoilt, {10, 1U << 20}, control).stop;
    };
    EXPECT_EQ(stop([](CanonicalForm&) {}), SinglePrecisionStop::None);
    EXPECT_EQ(stop([](CanonicalForm& f) { f.rhs[0] = 1e39; }), SinglePrecisionStop::OutOfRange);
    EXPECT_EQ(stop([](CanonicalForm& f) { f.cost[0] = 1e39; }), SinglePrecisionStop::OutOfRange);
    EXPECT_EQ(stop([](CanonicalForm& f) { f.byRow.value[0] = -1e39; }),
              SinglePrecisionStop::OutOfRange);
}

TEST(SinglePrecision, RecordsThePathThatItTook)
{
    Model model = Factory();
    model.Add("most", *model.FindVariable("chairs") + *model.FindVariable("tables") >= 2);
    SolveOptions options = Alone();
    options.recordPath = true;
    const Solution solution = model.Solve(options);
    ASSERT_EQ(solution.status, Status::Optimal);
    ASSERT_EQ(solution.path.size(), solution.singlePrecision.pivots);
    EXPECT_EQ(solution.path.front().phase, 1U);
    EXPECT_EQ(solution.path.front().values, (std::vector<double>{0, 0}));
    EXPECT_EQ(solution.path.front().objective, 5.0);
    EXPECT_EQ(solution.path.back().phase, 2U);
    for (std::size_t k = 1; k < solution.path.size(); ++k)
    {
        if (solution.path[k - 1].phase == 2)
        {
            EXPECT_GE(solution.path[k].objective, solution.path[k - 1].objective);
        }
    }
    // Who asks for the path of a proved solve gets it as well, whatever the model's shape.
    options.singlePrecisionOnly = false;
    const Solution proved = model.Solve(options);
    EXPECT_TRUE(proved.proved);
    EXPECT_EQ(proved.path.size(), solution.path.size());
}

TEST(SinglePrecision, LetsThroughWhatTheCallerThrows)
{
    SolveOptions options;
    options.limits.keepGoing = [](const Progress& progress) -> bool
    {
        if (progress.stage == Stage::SinglePrecision)
            throw std::runtime_error("enough");
        return true;
    };
    EXPECT_THROW((void)Factory().Solve(options), std::runtime_error);
}

}  // namespace
}  // namespace nuv::test
