// What a solution says, by handle, and what it does not say: a number that is not known is NaN.
#include "Nuv/Solve/Solution.hpp"

#include "Nuv/Model/ModelBuilder.hpp"
#include "Nuv/Solve/ModelTerms.hpp"

#include "Nuv/Certificate/Certificate.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace nuv::test
{
namespace
{

/// maximise x + 2 y: x + y <= 4, x - y >= -2, x in [0, 3].
class Optimum : public testing::Test
{
protected:
    Optimum()
    {
        x = model.AddVariable("x", {0, 3});
        y = model.AddVariable("y");
        sum = model.Add("sum", x + y <= 4);
        difference = model.Add("difference", x - y >= -2);
        loose = model.Add("loose", Range(-1, x + y, 10));
        model.Maximize(x + 2 * y);
    }

    Model model;
    Variable x;
    Variable y;
    Row sum;
    Row difference;
    Row loose;
};

TEST_F(Optimum, IsSaidByHandleInTheSenseOfTheModel)
{
    const Solution solution = model.Solve();
    ASSERT_EQ(solution.status, Status::Optimal);
    EXPECT_EQ(solution.stopReason, StopReason::None);
    EXPECT_EQ(solution.objective, 7.0);
    EXPECT_EQ(solution.Value(x), 1.0);
    EXPECT_EQ(solution.Value(y), 3.0);
    EXPECT_EQ(solution.ReducedCost(x), 0.0);
    EXPECT_EQ(solution.Activity(sum), 4.0);
    EXPECT_EQ(solution.Activity(difference), -2.0);
    EXPECT_EQ(solution.Slack(sum), 0.0);
    EXPECT_EQ(solution.Slack(loose), 5.0);
    EXPECT_EQ(solution.Dual(sum), 1.5) << "what one more of the right-hand side is worth";
    EXPECT_EQ(solution.Dual(difference), -0.5);
    EXPECT_EQ(solution.basis.rows[loose.Index()], BasisStatus::Basic);
    EXPECT_TRUE(std::isnan(solution.Ray(x)));
    EXPECT_TRUE(std::isnan(solution.Farkas(sum)));
}

TEST_F(Optimum, GivesExpressionsTheirValue)
{
    const Solution solution = model.Solve();
    EXPECT_EQ(Evaluate(x + 2 * y, solution), solution.objective);
    EXPECT_EQ(Evaluate(3 * x - y / 2 + 4, solution), 5.5);
    EXPECT_EQ(Evaluate(7, Solution()), 7.0);
    EXPECT_TRUE(std::isnan(Evaluate(x + 1, Solution())));
}

TEST_F(Optimum, IsToldStageByStage)
{
    std::vector<std::string> told;
    SolveOptions options;
    options.sensitivity = true;
    options.limits.log = [&told](std::string_view line)
    { told.emplace_back(line.substr(0, line.rfind(','))); };
    EXPECT_EQ(model.Solve(options).Outcome(), "optimal");
    EXPECT_EQ(told, (std::vector<std::string>{
                        "model: 3 rows, 2 variables, 6 entries",
                        "single precision: optimal after 2 pivots",
                        "doubles: optimal after 0 pivots",
                        "exact: proved optimal after 0 pivots",
                        "ranging: done",
                    }));
    told.clear();
    model.Add("against", x + y >= 11);
    EXPECT_EQ(model.Solve(options).Outcome(), "infeasible");
    EXPECT_TRUE(told.back().starts_with("infeasible subsystem: 2 members, minimal, work "))
        << "and none of its solves: " << told.back();
    EXPECT_LT(told.size(), 6u);
}

TEST_F(Optimum, HasNoNumberForAHandleThatTheSolvedModelDidNotKnow)
{
    const Solution solution = model.Solve();
    Model other;
    const Variable foreign = other.AddVariable("x");
    const Row foreignRow = other.Add("sum", foreign <= 1);
    EXPECT_TRUE(std::isnan(solution.Value(foreign)));
    EXPECT_TRUE(std::isnan(solution.ReducedCost(foreign)));
    EXPECT_TRUE(std::isnan(solution.Activity(foreignRow)));
    EXPECT_TRUE(std::isnan(solution.Dual(foreignRow)));
    EXPECT_TRUE(std::isnan(solution.Value(Variable())));
    const Variable later = model.AddVariable("later");
    EXPECT_TRUE(std::isnan(solution.Value(later)));
    EXPECT_EQ(solution.Value(x), 1.0) << "what the model knew then is known";
}

TEST_F(Optimum, HasNoNumberOfASolveThatDidNotBegin)
{
    ASSERT_FALSE(model.SetBounds(x, {std::nan(""), 1}));
    const Solution solution = model.Solve();
    EXPECT_EQ(solution.status, Status::Invalid);
    EXPECT_FALSE(solution.failure.text.empty());
    EXPECT_TRUE(std::isnan(solution.objective));
    EXPECT_TRUE(std::isnan(solution.Value(x)));
    EXPECT_TRUE(std::isnan(solution.Dual(sum)));
    EXPECT_EQ(solution.certificate, nullptr);
}

TEST_F(Optimum, IsLeftWithoutDualsBySinglePrecision)
{
    SolveOptions options;
    options.singlePrecisionOnly = true;
    const Solution solution = model.Solve(options);
    EXPECT_EQ(solution.status, Status::Optimal);
    EXPECT_FALSE(solution.proved);
    EXPECT_EQ(solution.certificate, nullptr);
    EXPECT_EQ(solution.Value(y), 3.0);
    EXPECT_EQ(solution.Slack(loose), 5.0);
    EXPECT_TRUE(std::isnan(solution.Dual(sum)));
    EXPECT_TRUE(std::isnan(solution.ReducedCost(x)));
}

TEST_F(Optimum, IsNotProvedByDoubles)
{
    SolveOptions options;
    options.doublePrecisionOnly = true;
    options.exact = options.uniqueness = options.sensitivity = true;
    const Solution believed = model.Solve(options);
    const Solution proved = model.Solve();
    EXPECT_EQ(believed.status, Status::Optimal);
    EXPECT_FALSE(believed.proved);
    EXPECT_EQ(believed.certificate, nullptr);
    EXPECT_EQ(believed.exactObjective, "");
    EXPECT_FALSE(believed.exact);
    EXPECT_EQ(believed.unique.point, Uniqueness::Unknown);
    EXPECT_TRUE(believed.sensitivity.cost.empty());
    EXPECT_FALSE(believed.stages[Stage::Exact].ran);
    EXPECT_TRUE(believed.stages[Stage::Double].ran);
    EXPECT_EQ(believed.values, proved.values);
    EXPECT_EQ(believed.duals, proved.duals);
    EXPECT_EQ(believed.primalViolation, 0.0);
    EXPECT_EQ(believed.dualViolation, 0.0);
}

/// What nobody stopped says which stage got no further: the last one, not a guess before it.
TEST(Solution, SaysThatDoublesGotNoFurther)
{
    Solution stopped;
    stopped.status = Status::Stopped;
    stopped.singlePrecision.stop = SinglePrecisionStop::Empty;
    EXPECT_EQ(stopped.Outcome(),
              "stopped: there is no row or no variable for single precision to work on");
    stopped.stages[Stage::Double] = {true, 27, 0.0};
    EXPECT_EQ(stopped.Outcome(), "stopped: double precision gets no further after 27 pivots, but a "
                                 "solve with proof may");
    stopped.stopReason = StopReason::PivotLimit;
    EXPECT_EQ(stopped.Outcome(), "stopped by the pivot limit");
    stopped.stopReason = StopReason::None;
    stopped.stages[Stage::Exact].ran = true;
    EXPECT_EQ(stopped.Outcome(), "stopped");
}

/// Each verdict of the doubles, and the limit that leaves none.
TEST_F(Optimum, OfDoublesIsAnyVerdict)
{
    SolveOptions options;
    options.doublePrecisionOnly = true;
    options.useSinglePrecision = false;
    Model none = model;
    (void)none.SetBounds(sum, {100, 200});
    (void)none.SetBounds(x, {0, 1});
    (void)none.SetBounds(y, {0, 1});
    const Solution infeasible = none.Solve(options);
    EXPECT_EQ(infeasible.status, Status::Infeasible);
    EXPECT_FALSE(infeasible.proved);
    EXPECT_TRUE(infeasible.iis.members.empty());
    (void)none.SetBounds(x, {1, 0});
    EXPECT_EQ(none.Solve(options).status, Status::Infeasible);
    EXPECT_FALSE(none.Solve(options).proved) << "it is not said of some verdicts alone";
    Model free;
    free.Maximize(free.AddVariable());
    const Solution unbounded = free.Solve(options);
    EXPECT_EQ(unbounded.status, Status::Unbounded);
    EXPECT_TRUE(unbounded.ray.empty());
    EXPECT_FALSE(unbounded.proved);
    options.limits.doublePivots = 0;
    const Solution stopped = model.Solve(options);
    EXPECT_EQ(stopped.status, Status::Stopped);
    EXPECT_EQ(stopped.stopReason, StopReason::PivotLimit);
}

TEST_F(Optimum, IsKnownAlsoWhereRangingWasEnded)
{
    int asked = 0;
    SolveOptions options;
    options.limits.keepGoing = [&asked](const Progress&)
    {
        ++asked;
        return true;
    };
    EXPECT_EQ(model.Solve(options).stopReason, StopReason::None);
    // The next question comes from ranging.
    options.sensitivity = true;
    options.limits.keepGoing = [&asked](const Progress&) { return asked-- > 0; };
    const Solution solution = model.Solve(options);
    EXPECT_EQ(solution.status, Status::Optimal);
    EXPECT_TRUE(solution.proved);
    EXPECT_EQ(solution.Value(y), 3.0);
    EXPECT_TRUE(solution.sensitivity.cost.empty());
    EXPECT_EQ(solution.stopReason, StopReason::Cancelled);
}

/// max 3 x + 2 y under x + 1/3 y <= 1 and y <= 2, with a row that no side limits.
TEST(Solution, HasItsNumbersAsFractionsIfAsked)
{
    Model model;
    const Variable x = model.AddVariable("x");
    const Variable y = model.AddVariable("y", {0, 2});
    const Row a = model.Add("a", 3 * x + y <= 4);
    const Row free = model.Add("free", Range(-Infinity, x + 3 * y, Infinity));
    model.Maximize(3 * x + 2 * y);
    SolveOptions options;
    EXPECT_EQ(Solve(model, options).ExactValue(x), "");
    options.exact = true;
    const Solution solution = Solve(model, options);
    EXPECT_EQ(solution.exactObjective, "6");
    EXPECT_EQ(solution.ExactValue(x), "2/3");
    EXPECT_EQ(solution.ExactValue(y), "2");
    EXPECT_EQ(solution.ExactReducedCost(x), "0");
    EXPECT_EQ(solution.ExactReducedCost(y), "1");
    EXPECT_EQ(solution.ExactActivity(a), "4");
    EXPECT_EQ(solution.ExactSlack(a), "0");
    EXPECT_EQ(solution.ExactDual(a), "1");
    EXPECT_EQ(solution.ExactActivity(free), "20/3");
    EXPECT_EQ(solution.ExactSlack(free), "") << "there is no side to be away from";
    EXPECT_EQ(solution.ExactDual(free), "0");
    EXPECT_EQ(solution.ExactRay(x), "");
    EXPECT_EQ(solution.ExactValue(Variable()), "");
}

/// Of each kind of side, in the sense of a minimisation, with a coordinate that is zero.
TEST(Solution, HasFractionsOfSlacksOfEachKindAndOfARay)
{
    Model model;
    const Variable x = model.AddVariable("x");
    const Variable y = model.AddVariable("y");
    const Row range = model.Add("range", Range(1, 3 * x + y, 5));
    const Row least = model.Add("least", x + y >= -2);
    const Row most = model.Add("most", 6 * x - y <= 7);
    model.Minimize(x + y);
    SolveOptions options;
    options.exact = true;
    const Solution solution = Solve(model, options);
    EXPECT_EQ(solution.exactObjective, "1/3");
    EXPECT_EQ(solution.ExactValue(y), "0");
    EXPECT_EQ(solution.ExactSlack(range), "0");
    EXPECT_EQ(solution.ExactSlack(least), "7/3");
    EXPECT_EQ(solution.ExactSlack(most), "5");
    EXPECT_EQ(solution.ExactDual(range), "1/3");
    EXPECT_EQ(solution.ExactReducedCost(y), "2/3");

    Model open;
    const Variable u = open.AddVariable("u");
    const Variable v = open.AddVariable("v");
    open.Add(u - 3 * v <= 1);
    open.Maximize(u);
    const Solution unbounded = Solve(open, options);
    ASSERT_EQ(unbounded.status, Status::Unbounded);
    EXPECT_NE(unbounded.ExactRay(u), "");
    EXPECT_NE(unbounded.ExactRay(v), "0");
    Model closed = open;
    closed.Add(u + v <= -1);
    const Solution infeasible = Solve(closed, options);
    ASSERT_EQ(infeasible.status, Status::Infeasible);
    EXPECT_EQ(infeasible.ExactValue(u), "");
}

/// What is said of a number in words that say none leaves the double to speak; a side and the
/// constant of a maximisation are what they say.
TEST(Solution, IsOfTheNumbersThatTheModelSays)
{
    Model model;
    const Variable x = model.AddVariable("x");
    model.Add("a", x <= 0.25);
    model.Add("b", x <= 9);
    model.Maximize(x + 0.5);
    ModelBuilder builder(std::move(model));
    builder.SetExact({NumberPlace::Of::RowUpper, 0}, "1/3");
    builder.SetExact({NumberPlace::Of::RowUpper, 1}, "nine");
    builder.SetExact({NumberPlace::Of::ObjectiveConstant, 0}, "1/7");
    EXPECT_EQ(builder.Take().Solve().exactObjective, "10/21");
}

TEST(Infeasible, NamesRowsAndBoundsByHandle)
{
    Model model;
    const Variable x = model.AddVariable("x", {2, Infinity});
    const Variable y = model.AddVariable("y");
    const Row a = model.Add("a", x + y <= 1);
    model.Add("b", x - y <= 7);
    model.Minimize(x);
    const Solution solution = model.Solve();
    ASSERT_EQ(solution.status, Status::Infeasible);
    EXPECT_TRUE(std::isnan(solution.objective));
    EXPECT_TRUE(std::isnan(solution.Value(x)));
    EXPECT_LT(solution.Farkas(a), 0.0);
    EXPECT_TRUE(solution.iis.minimal);
    ASSERT_EQ(solution.iis.members.size(), 2U) << "y >= 0 is no member: nobody stated it";
    EXPECT_TRUE(Same(std::get<Variable>(solution.iis.members[0].of), x));
    EXPECT_FALSE(solution.iis.members[0].upper);
    EXPECT_TRUE(Same(std::get<Row>(solution.iis.members[1].of), a));
    EXPECT_TRUE(solution.iis.members[1].upper);
}

TEST(Infeasible, IsProvedAlsoWhereTheSearchOfAnIisWasEnded)
{
    Model model;
    const Variable x = model.AddVariable("x");
    const Variable y = model.AddVariable("y");
    const Variable u = model.AddVariable("u");
    const Variable v = model.AddVariable("v");
    model.Add("source", x + y <= 1);
    model.Add("other source", u + v <= 1);
    model.Add("sink", x + u >= 3);
    model.Add("other sink", y + v >= 1);
    SolveOptions options;
    options.iisWork = 0;
    const Solution cut = model.Solve(options);
    EXPECT_EQ(cut.status, Status::Infeasible);
    EXPECT_TRUE(cut.proved);
    EXPECT_FALSE(cut.iis.minimal);
    EXPECT_EQ(cut.stopReason, StopReason::PivotLimit);
    EXPECT_EQ(cut.Outcome(), "infeasible");
    bool wasEnded = false;
    for (int last = 1; last < 100; ++last)
    {
        int asked = 0;
        SolveOptions asking;
        asking.limits.keepGoing = [&](const Progress&) { return ++asked < last; };
        const Solution ended = model.Solve(asking);
        if (!ended.proved || ended.iis.minimal)
            continue;
        wasEnded = true;
        EXPECT_EQ(ended.stopReason, StopReason::Cancelled);
    }
    EXPECT_TRUE(wasEnded);
    const Solution whole = model.Solve();
    EXPECT_TRUE(whole.iis.minimal);
    EXPECT_EQ(whole.iis.members.size(), 3U);
    EXPECT_EQ(whole.stopReason, StopReason::None);
}

TEST_F(Optimum, SaysInWordsWhatEndedIt)
{
    const auto outcome = [this](auto change)
    {
        SolveOptions options;
        change(options);
        return model.Solve(options).Outcome();
    };
    EXPECT_EQ(outcome([](SolveOptions& o) { o.limits.seconds = 0; }), "stopped by the time limit");
    EXPECT_EQ(outcome([](SolveOptions& o)
                      { o.limits.keepGoing = [](const Progress&) { return false; }; }),
              "stopped by an interrupt");
    EXPECT_EQ(outcome(
                  [](SolveOptions& o)
                  {
                      o.useSinglePrecision = false;
                      o.limits.doublePivots = 0;
                      o.limits.exactPivots = 0;
                  }),
              "stopped by the pivot limit");
    model.Minimize(std::nan("") * x);
    EXPECT_EQ(outcome([](SolveOptions&) {}),
              "invalid: objective has a coefficient or constant that is not finite");
}

TEST_F(Optimum, HasRangesInTheSenseOfItsModel)
{
    Model opposite;
    const Variable u = opposite.AddVariable("u");
    const Variable v = opposite.AddVariable("v", {0, 3});
    opposite.Add("need", u + v >= 4);
    opposite.Minimize(2 * u + v);
    SolveOptions options;
    options.sensitivity = true;
    const Solution least = opposite.Solve(options);
    opposite.Maximize(-2 * u - v);
    const Solution most = opposite.Solve(options);
    ASSERT_EQ(least.sensitivity.cost.size(), 2U);
    for (std::size_t j = 0; j < 2; ++j)
    {
        EXPECT_EQ(least.sensitivity.cost[j].lower, -most.sensitivity.cost[j].upper);
        EXPECT_EQ(least.sensitivity.cost[j].upper, -most.sensitivity.cost[j].lower);
    }
}

/// Uniqueness, as ranging, may be ended at any question; the optimum stays.
TEST(Solution, IsAnOptimumAlsoWhereUniquenessIsNotKnown)
{
    Model model;
    const Variable x = model.AddVariable("x");
    const Variable y = model.AddVariable("y");
    model.Add(x + y <= 4);
    model.Add(2 * x + 2 * y <= 8);
    model.Maximize(x + y);
    SolveOptions options;
    options.uniqueness = true;
    EXPECT_EQ(model.Solve(options).unique.point, Uniqueness::NotUnique);
    EXPECT_EQ(model.Solve(options).unique.duals, Uniqueness::NotUnique);
    int unknown = 0;
    for (int last = 1; last < 100; ++last)
    {
        int asked = 0;
        options.limits.keepGoing = [&](const Progress&) { return ++asked < last; };
        const Solution solution = model.Solve(options);
        const bool isKnown = solution.unique.point != Uniqueness::Unknown &&
                             solution.unique.duals != Uniqueness::Unknown;
        if (!solution.proved)
            continue;
        EXPECT_EQ(solution.exactObjective, "4");
        EXPECT_EQ(solution.stopReason, isKnown ? StopReason::None : StopReason::Cancelled);
        unknown += isKnown ? 0 : 1;
    }
    EXPECT_GT(unknown, 0);
}

/// Each end of the first stage has words of its own.
TEST(Solution, SaysInWordsWhySinglePrecisionFoundNothing)
{
    Solution solution;
    solution.status = Status::Stopped;
    const auto outcome = [&](SinglePrecisionStop stop, std::uint64_t pivots)
    {
        solution.singlePrecision.stop = stop;
        solution.singlePrecision.pivots = pivots;
        solution.singlePrecision.period = 6;
        return solution.Outcome();
    };
    using enum SinglePrecisionStop;
    EXPECT_EQ(outcome(Cycling, 40), "stopped: basis repeated after 40 pivots, a cycle of 6");
    EXPECT_EQ(outcome(PivotBudget, 400),
              "stopped: no end after 400 pivots, 50 for each row and column of the canonical form");
    EXPECT_EQ(outcome(Memory, 0), "stopped: too large for the dense matrices of single precision");
    EXPECT_EQ(outcome(Memory, 7), "stopped: the dense matrices of single precision take too much "
                                  "memory after 7 pivots");
    EXPECT_EQ(outcome(Control, 3), "stopped");
}

/// Of a form with a defect, which no model has, the defect is said; of a solve without a point
/// nothing.
TEST(Solution, IsMadeOfWhateverWasCertified)
{
    BoundedForm form;
    form.rows = 1;
    CertifiedResult result;
    result.certificate.status = Status::Invalid;
    result.record.defect = "row arrays of the wrong length";
    Solution invalid;
    SayOfModel(form, 1.0, result, invalid);
    EXPECT_EQ(invalid.status, Status::Invalid);
    EXPECT_EQ(invalid.failure.text, "row arrays of the wrong length");
    CertifiedResult stopped;
    stopped.certificate.status = Status::Stopped;
    Solution empty;
    SayOfModel(form, 1.0, stopped, empty);
    EXPECT_EQ(empty.status, Status::Stopped);
    EXPECT_TRUE(empty.values.empty());
}

/// Of a solve that is not proved there are no fractions.
TEST_F(Optimum, HasNoFractionsWithoutAProof)
{
    SolveOptions options;
    options.exact = true;
    options.limits.doublePivots = 0;
    options.limits.exactPivots = 0;
    options.useSinglePrecision = false;
    const Solution solution = model.Solve(options);
    EXPECT_EQ(solution.status, Status::Stopped);
    EXPECT_FALSE(solution.exact);
}

TEST(Unbounded, HasARayByHandleAndNoObjective)
{
    Model model;
    const Variable x = model.AddVariable("x");
    const Variable y = model.AddVariable("y");
    model.Add("a", x - y <= 3);
    model.Maximize(x);
    const Solution solution = model.Solve();
    ASSERT_EQ(solution.status, Status::Unbounded);
    EXPECT_GT(solution.Ray(x), 0.0);
    EXPECT_GE(solution.Ray(y), solution.Ray(x));
    EXPECT_TRUE(std::isnan(solution.objective));
    EXPECT_NE(solution.certificate, nullptr);
}

}  // namespace
}  // namespace nuv::test
