// The solve as a caller sees it: the way through preparation, Phase I and Phase II, textbook models
// with their answers, and solving again.
#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "tests/support/SmallModel.hpp"
#include "tests/reference/CoreSolve.hpp"
#include "tests/support/TestAllocator.hpp"

namespace
{
using Floats = std::vector<float>;

constexpr auto kOk = NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;
constexpr auto kInvalidInput = NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;
constexpr auto kUnbounded = NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded;
constexpr auto kInfeasible = NUV_LINEARPROGRAMMINGRESULTTYPE_Infeasible;

class Solve : public testing::Test
{
protected:
    Solve()
    {
        allocator.AcceptLeftBlocks();
    }

    /// The phases of the pivots of a solve.
    std::vector<unsigned> PhasesOf(SmallModel* solved)
    {
        reference::Recorder recorder;
        result = NuvLinearProgrammingSolveMonitored(&solved->lp, &recorder.monitor);
        std::vector<unsigned> phases;
        for (const reference::Pivot& pivot : recorder.pivots)
            phases.push_back(pivot.phase);
        return phases;
    }

    TestAllocator allocator;
    SmallModel model{2, allocator};
    NuvLinearProgrammingResultType result = kInvalidInput;
};

// Edge cases --------------------------------------------------------------------------------------

TEST_F(Solve, RightHandSidesThatAreNotNegativeGoStraightToPhaseII)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, -0.0F));
    ASSERT_TRUE(model.SetRow(2, {{2, 1.0F}}, 0.0F));
    ASSERT_TRUE(model.SetRow(3, {{1, 1.0F}, {2, 1.0F}}, 5.0F));
    model.Maximise({{1, 1.0F}, {2, 1.0F}});
    EXPECT_EQ(PhasesOf(&model), (std::vector<unsigned>{2, 2}));
    EXPECT_EQ(result, kOk);
}

TEST_F(Solve, ANegativeRightHandSideRunsPhaseIAndItsVerdictEndsTheSolve)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, 4.0F));
    ASSERT_TRUE(model.SetRow(2, {{1, 1.0F}, {2, 1.0F}}, -1.0F));
    model.Maximise({{1, 1.0F}});
    EXPECT_EQ(PhasesOf(&model), std::vector<unsigned>{1});
    EXPECT_EQ(result, kInfeasible);
    EXPECT_EQ(model.Values(), (Floats{0, 0}));
}

TEST_F(Solve, AModelWithoutConstraintsIsInvalid)
{
    EXPECT_EQ(model.Solve(), kInvalidInput);
}

// Answers -----------------------------------------------------------------------------------------

TEST_F(Solve, TheFirstExampleHasItsAnswer)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, 4.0F));
    ASSERT_TRUE(model.SetRow(2, {{1, 1.0F}, {2, 1.0F}}, 6.0F));
    model.Maximise({{1, 3.0F}, {2, 2.0F}});
    EXPECT_EQ(model.Solve(), kOk);
    EXPECT_EQ(model.Objective(), 16.0F);
    EXPECT_EQ(model.Values(), (Floats{4, 2}));
}

TEST_F(Solve, ADietIsMinimisedByItsNegativeCosts)
{
    // At least 8 of the first nutrient and 6 of the second, from foods at 2 and 3 a unit.
    ASSERT_TRUE(model.SetRow(1, {{1, -1.0F}, {2, -2.0F}}, -8.0F));
    ASSERT_TRUE(model.SetRow(2, {{1, -1.0F}, {2, -1.0F}}, -6.0F));
    model.Maximise({{1, -2.0F}, {2, -3.0F}});
    EXPECT_EQ(model.Solve(), kOk);
    EXPECT_EQ(model.Objective(), -14.0F);
    EXPECT_EQ(model.Values(), (Floats{4, 2}));
}

TEST_F(Solve, AnUnboundedModelIsToldFromAnInfeasibleOne)
{
    ASSERT_TRUE(model.SetRow(1, {{1, -1.0F}, {2, 1.0F}}, 2.0F));
    model.Maximise({{1, 1.0F}});
    EXPECT_EQ(model.Solve(), kUnbounded);
    ASSERT_TRUE(model.SetRow(2, {{1, 1.0F}, {2, 1.0F}}, -2.0F));
    EXPECT_EQ(model.Solve(), kInfeasible);
    EXPECT_EQ(NuvLinearProgrammingRemoveConstraint(&model.lp, 2), NUV_TRUE);
    ASSERT_TRUE(model.SetRow(3, {{1, 1.0F}}, 2.0F));
    EXPECT_EQ(model.Solve(), kOk);
    EXPECT_EQ(model.Objective(), 2.0F);
}

TEST_F(Solve, NamesAppearInTheResults)
{
    ASSERT_TRUE(model.Rename(1, "bread"));
    ASSERT_TRUE(model.Rename(2, "cake"));
    ASSERT_TRUE(model.SetNamedRow(10, {{"bread", 1.0F}, {"cake", 2.0F}}, 8.0F));
    ASSERT_TRUE(model.MaximiseNamed({{"cake", 3.0F}, {"bread", 1.0F}}));
    EXPECT_EQ(model.Solve(), kOk);
    EXPECT_EQ(model.Pairs(), (NamedCoefficients::Terms{{"bread", 0.0F}, {"cake", 4.0F}}));
}

// Again -------------------------------------------------------------------------------------------

TEST_F(Solve, ResultsStayUntilASolveOverwritesThem)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}, {2, 1.0F}}, 6.0F));
    model.Maximise({{1, 1.0F}});
    ASSERT_EQ(model.Solve(), kOk);
    EXPECT_EQ(model.Values(), (Floats{6, 0}));
    // The first variable is nonbasic now, and keeps what the earlier solve wrote.
    model.Maximise({{2, 1.0F}});
    ASSERT_EQ(model.Solve(), kOk);
    EXPECT_EQ(model.Values(), (Floats{6, 6}));
    model.Maximise({{3, 1.0F}});
    ASSERT_EQ(model.Solve(), kInvalidInput);
    EXPECT_EQ(model.Objective(), 6.0F);
    EXPECT_EQ(model.Values(), (Floats{6, 6}));
}

TEST_F(Solve, TheSameModelHasTheSamePivotsEachTime)
{
    const reference::Problem problem = {3, 2, {-1, -2, -3, -1, 1, 1}, {-4, -6, 9}, {-2, -3}};
    reference::CoreModel again(problem, allocator);
    const reference::Solution first = again.SolveMonitored();
    for (int i = 0; i != 5; ++i)
        EXPECT_EQ(Difference(first, again.SolveMonitored()), "");
    EXPECT_EQ(DifferenceOfResults(first, again.Solve()), "");
}

TEST_F(Solve, EditsBetweenSolvesTakeEffect)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}, {2, 1.0F}}, 6.0F));
    model.Maximise({{1, 1.0F}, {2, 1.0F}});
    ASSERT_EQ(model.Solve(), kOk);
    EXPECT_EQ(model.Objective(), 6.0F);
    ASSERT_TRUE(model.SetRow(2, {{2, 1.0F}}, 1.0F));
    ASSERT_TRUE(model.SetRow(3, {{1, 1.0F}}, 2.0F));
    ASSERT_EQ(model.Solve(), kOk);
    EXPECT_EQ(model.Objective(), 3.0F);
    EXPECT_EQ(model.Values(), (Floats{2, 1}));
}

TEST_F(Solve, TwoObjectsDoNotKnowOfEachOther)
{
    SmallModel other(2, allocator);
    for (SmallModel* const each : {&model, &other})
        ASSERT_TRUE(each->SetRow(1, {{1, 1.0F}}, each == &model ? 1.0F : 2.0F));
    for (SmallModel* const each : {&model, &other})
        each->Maximise({{1, 1.0F}});
    ASSERT_EQ(model.Solve(), kOk);
    ASSERT_EQ(other.Solve(), kOk);
    EXPECT_EQ(model.Objective(), 1.0F);
    EXPECT_EQ(other.Objective(), 2.0F);
}
}  // namespace
