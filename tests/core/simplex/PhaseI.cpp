// Phase I: when it is needed, how the artificial variable comes in and goes out, what it hands over
// and how it ends where it cannot.
#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "tests/support/SmallModel.hpp"
#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/TestAllocator.hpp"

using namespace reference;

namespace
{
using Floats = std::vector<float>;
using Labels = std::vector<std::uint32_t>;

class PhaseI : public testing::Test
{
protected:
    PhaseI()
    {
        allocator.AcceptLeftBlocks();
    }

    Solution SolveFreely(const Problem& problem)
    {
        CoreModel model(problem, allocator);
        return model.SolveMonitored(100);
    }

    TestAllocator allocator;
};

Problem WithSides(const Floats& b)
{
    return {b.size(), 1, Floats(b.size(), -1.0F), b, {-1}};
}

// Edge cases --------------------------------------------------------------------------------------

TEST_F(PhaseI, TheArtificialVariableEntersForTheMostNegativeRow)
{
    const Solution solution = SolveFreely(WithSides({3, -1, -4}));
    ASSERT_FALSE(solution.pivots.empty());
    EXPECT_EQ(solution.pivots[0].phase, 1U);
    EXPECT_EQ(solution.pivots[0].entering, 0U);
    EXPECT_EQ(solution.pivots[0].leaving, 1U + 3U);
    EXPECT_EQ(solution.pivots[0].values, (Floats{3, -1, -4}));
}

TEST_F(PhaseI, AmongEqualMostNegativeRowsTheFirstLeaves)
{
    EXPECT_EQ(SolveFreely(WithSides({-2, -2})).pivots.at(0).leaving, 2U);
    EXPECT_EQ(SolveFreely(WithSides({5, -2, -2, -1})).pivots.at(0).leaving, 3U);
}

TEST_F(PhaseI, NegativeZerosDoNotAskForIt)
{
    const Solution solution = SolveFreely({2, 1, {1, 1}, {-0.0F, 3}, {1}});
    ASSERT_EQ(solution.pivots.size(), 1U);
    EXPECT_EQ(solution.pivots[0].phase, 2U);
}

TEST_F(PhaseI, ContradictingRowsAreInfeasible)
{
    TestAllocator own;
    own.AcceptLeftBlocks();
    CoreModel model({2, 1, {-1, 1}, {-2, 1}, {1}}, own);
    model.lp.objectiveValue = 7.0F;
    model.lp.variableValues.begin[0].second = 8.0F;
    const Solution solution = model.SolveMonitored();
    EXPECT_EQ(solution.status, Status::Infeasible);
    EXPECT_EQ(solution.objective, 7.0F);
    EXPECT_EQ(solution.values, Floats{8});
    for (const Pivot& pivot : solution.pivots)
        EXPECT_EQ(pivot.phase, 1U);
    EXPECT_EQ(ElementsOf(model.lp.basic), (Labels{2, 3}));
    EXPECT_EQ(ElementsOf(model.lp.independent), Labels{1});
}

TEST_F(PhaseI, ADirectRouteHandsOverAfterTwoPivots)
{
    // −x − 2y ≤ −4, x + y ≤ 9: y drives the artificial variable out of the first row.
    CoreModel model({2, 2, {-1, -2, 1, 1}, {-4, 9}, {0, 0}}, allocator);
    ASSERT_TRUE(NuvLinearProgrammingPrepareInputs_(&model.lp));
    EXPECT_EQ(NuvRevisedSimplexSolvePhaseI(&model.lp), NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    EXPECT_EQ(ElementsOf(model.lp.basic), (Labels{2, 4}));
    EXPECT_EQ(ElementsOf(model.lp.independent), (Labels{3, 1}));
    const Solution solution = SolveFreely({2, 2, {-1, -2, 1, 1}, {-4, 9}, {0, 0}});
    ASSERT_EQ(solution.pivots.size(), 2U);
    EXPECT_EQ(solution.pivots[1].entering, 2U);
    EXPECT_EQ(solution.pivots[1].leaving, 0U);
    EXPECT_EQ(solution.values, (Floats{0, 2}));
}

TEST_F(PhaseI, InATieTheArtificialVariableLeavesBeforeAnEarlierRow)
{
    // −x ≤ −2 and x ≤ 2: after the artificial variable came in for row 1, both rows stop x at 2.
    const Solution solution = SolveFreely({2, 1, {1, -1}, {2, -2}, {0}});
    ASSERT_EQ(solution.pivots.size(), 2U);
    EXPECT_EQ(solution.pivots[0].leaving, 3U);
    EXPECT_EQ(solution.pivots[1].basic, (Labels{2, 0}));
    EXPECT_EQ(solution.pivots[1].values, (Floats{4, 2}));
    EXPECT_EQ(solution.pivots[1].leaving, 0U);
    EXPECT_EQ(solution.status, Status::Ok);
}

// Ways out ----------------------------------------------------------------------------------------

TEST_F(PhaseI, OptimumBelowZeroByTheLeastIsInfeasible)
{
    EXPECT_EQ(SolveFreely({1, 1, {0}, {-1e-7F}, {1}}).status, Status::Infeasible);
    EXPECT_EQ(SolveFreely({1, 1, {0}, {-std::numeric_limits<float>::denorm_min()}, {1}}).status,
              Status::Infeasible);
}

TEST_F(PhaseI, ANaNObjectiveIsInfeasible)
{
    const float notANumber = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(SolveFreely({2, 1, {0, 0}, {-1, notANumber}, {1}}).status, Status::Infeasible);
}

TEST_F(PhaseI, InfiniteRatiosAreUnboundedAndPhaseIIDoesNotRun)
{
    CoreModel model({1, 1, {-1}, {-std::numeric_limits<float>::infinity()}, {1}}, allocator);
    model.lp.objectiveValue = 7.0F;
    const Solution solution = model.SolveMonitored();
    EXPECT_EQ(solution.status, Status::Unbounded);
    EXPECT_EQ(solution.objective, 7.0F);
    EXPECT_EQ(solution.pivots.size(), 1U);
}

TEST_F(PhaseI, AZeroOptimumWithTheArtificialVariableBasicGoesOnFromTheSlackBasis)
{
    // Half of 2⁻¹⁴⁹ rounds to 0, so that the artificial variable stays basic at 0.
    CoreModel model({2, 1, {-1, 1}, {-0x1p-149F, 0}, {-1}}, allocator);
    const Solution solution = model.SolveMonitored();
    EXPECT_EQ(solution.status, Status::Ok);
    ASSERT_EQ(solution.pivots.size(), 2U);
    for (const Pivot& pivot : solution.pivots)
        EXPECT_NE(pivot.leaving, 0U);
    EXPECT_EQ(ElementsOf(model.lp.basic), (Labels{2, 3}));
    EXPECT_EQ(ElementsOf(model.lp.independent), Labels{1});
}

TEST_F(PhaseI, TheLabelsAreHandedOverInTheirOrderWithoutTheArtificialVariable)
{
    const Problem problem = {3, 3, {-1, -1, 0, 0, -1, -1, 1, 1, 1}, {-2, -3, 9}, {-1, -2, -1}};
    CoreModel model(problem, allocator);
    StandardForm form = MakeStandardForm(problem);
    EnterStandardForm(&model.lp, form);
    Solution expected;
    SolvePhaseI(&form, &expected);
    ASSERT_EQ(expected.pivots.back().leaving, 0U);
    EXPECT_EQ(NuvRevisedSimplexSolvePhaseI(&model.lp), NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    EXPECT_EQ(ElementsOf(model.lp.basic), form.basic);
    EXPECT_EQ(ElementsOf(model.lp.independent), form.independent);
    EXPECT_EQ(model.lp.independent.nc, 3U);
}

TEST_F(PhaseI, CalledWithoutNeedItBringsTheArtificialVariableInAllTheSame)
{
    CoreModel model({1, 1, {1}, {2}, {1}}, allocator);
    ASSERT_TRUE(NuvLinearProgrammingPrepareInputs_(&model.lp));
    EXPECT_EQ(NuvRevisedSimplexIsPhaseIRequired(&model.lp), NUV_FALSE);
    // The slack leaves at −2 for the artificial variable, which stays at −2.
    StandardForm form = MakeStandardForm({1, 1, {1}, {2}, {1}});
    Solution expected;
    SolvePhaseI(&form, &expected);
    EXPECT_EQ(static_cast<int>(NuvRevisedSimplexSolvePhaseI(&model.lp)),
              static_cast<int>(expected.status));
    EXPECT_EQ(ElementsOf(model.lp.basic), form.basic);
}

// On its way a number becomes infinite, whose products with zeros are then no longer left out.
TEST_F(PhaseI, ANumberThatIsNotFiniteLeadsToTheDenseIteration)
{
    const Problem problem = MakeModel(Family::Overflowing, 34, 23, 8530921421783814847U);
    CoreModel model(problem, allocator);
    const Solution expected = reference::Solve(model.InRowOrder(), 200);
    EXPECT_EQ(expected.pivots.back().phase, 1U);
    EXPECT_EQ(Difference(expected, model.SolveMonitored(200)), "");
}

TEST_F(PhaseI, PivotsAreNumberedThroughBothPhases)
{
    const Solution solution = SolveFreely({2, 1, {-1, 1}, {-2, 5}, {1}});
    ASSERT_EQ(solution.pivots.size(), 3U);
    EXPECT_EQ(solution.pivots[1].phase, 1U);
    EXPECT_EQ(solution.pivots[2].phase, 2U);
    EXPECT_EQ(solution.values, Floats{5});
}
}  // namespace
