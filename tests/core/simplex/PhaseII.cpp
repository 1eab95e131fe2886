// Phase II by itself and in a solve: pricing, the entering column, the ratio test, the pivots and
// what is written at the end.
#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <limits>
#include <string>
#include <vector>

#include "tests/reference/CoreSolve.hpp"
#include "tests/support/TestAllocator.hpp"

using namespace reference;

namespace
{
using Floats = std::vector<float>;
using Labels = std::vector<std::uint32_t>;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();

/// Solves on an allocator of its own.
Solution SolveFreely(const Problem& problem, std::size_t maxPivots = kUnlimited)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    CoreModel model(problem, allocator);
    return model.SolveMonitored(maxPivots);
}

/// One row that bounds every variable from above, so that the first pivot shows what entered.
Problem WithCosts(const Floats& costs)
{
    Problem problem = {1, costs.size(), Floats(costs.size(), 1.0F), {1}, costs};
    return problem;
}

// Edge cases --------------------------------------------------------------------------------------

TEST(PhaseII, WithoutAPositiveReducedCostThereIsNoPivotAndNoValueIsWritten)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    CoreModel model({2, 2, {1, 1, 1, 2}, {4, 6}, {-1, 0}}, allocator);
    model.lp.variableValues.begin[0].second = 5.0F;
    model.lp.variableValues.begin[1].second = 6.0F;
    const Solution solution = model.SolveMonitored();
    EXPECT_EQ(solution.status, Status::Ok);
    EXPECT_TRUE(solution.pivots.empty());
    EXPECT_EQ(BitsOf(solution.objective), BitsOf(0.0F));
    EXPECT_EQ(solution.values, (Floats{5, 6}));
}

TEST(PhaseII, AmongEqualLargestReducedCostsTheLastEnters)
{
    EXPECT_EQ(SolveFreely(WithCosts({3, 5, 5})).pivots.at(0).entering, 3U);
    EXPECT_EQ(SolveFreely(WithCosts({5, 5, 3})).pivots.at(0).entering, 2U);
    EXPECT_EQ(SolveFreely(WithCosts({1, 1, 1, 1})).pivots.at(0).entering, 4U);
}

TEST(PhaseII, AReducedCostOfZeroDoesNotEnter)
{
    const Solution solution = SolveFreely(WithCosts({-1, 0, -2}));
    EXPECT_EQ(solution.status, Status::Ok);
    EXPECT_TRUE(solution.pivots.empty());
}

TEST(PhaseII, AmongEqualSmallestRatiosTheFirstRowLeaves)
{
    const Solution solution = SolveFreely({3, 1, {1, 2, 1}, {4, 4, 2}, {1}});
    ASSERT_EQ(solution.pivots.size(), 1U);
    EXPECT_EQ(solution.pivots[0].leaving, 3U);
    EXPECT_EQ(solution.values, Floats{2});
}

TEST(PhaseII, AColumnThatNoRowBoundsEndsUnboundedAndKeepsTheValues)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    CoreModel model({2, 2, {-1, 1, 0, 1}, {4, 6}, {1, 0}}, allocator);
    model.lp.variableValues.begin[0].second = 5.0F;
    const Solution solution = model.SolveMonitored();
    EXPECT_EQ(solution.status, Status::Unbounded);
    EXPECT_EQ(BitsOf(solution.objective), BitsOf(FLT_MAX));
    EXPECT_EQ(solution.values, (Floats{5, 0}));
    EXPECT_TRUE(solution.pivots.empty());
}

TEST(PhaseII, ACycleIsNotStopped)
{
    // Chvátal, Linear Programming, chapter 3, but in the order in which the last of equal largest
    // and the first of equal smallest keep to the cycle; all numbers are exact.
    const Problem problem = {3,
                             4,
                             {0.5F, -5.5F, -2.5F, 9, 0.5F, -1.5F, -0.5F, 1, 1, 0, 0, 0},
                             {0, 0, 1},
                             {10, -57, -9, -24}};
    const Solution solution = SolveFreely(problem, 600);
    EXPECT_EQ(solution.status, Status::Stopped);
    ASSERT_EQ(solution.pivots.size(), 600U);
    for (std::size_t i = 6; i != 600; ++i)
    {
        EXPECT_EQ(solution.pivots[i].entering, solution.pivots[i - 6].entering);
        EXPECT_EQ(solution.pivots[i].basic, solution.pivots[i - 6].basic);
    }
}

TEST(PhaseII, TheTextbooksModelTakesTwoPivotsToItsExactBits)
{
    const Solution solution = SolveFreely({3, 2, {1, 0, 0, 2, 3, 2}, {4, 12, 18}, {3, 5}});
    EXPECT_EQ(solution.status, Status::Ok);
    ASSERT_EQ(solution.pivots.size(), 2U);
    EXPECT_EQ(solution.pivots[0].entering, 2U);
    EXPECT_EQ(solution.pivots[0].leaving, 4U);
    EXPECT_EQ(solution.pivots[0].basic, (Labels{3, 4, 5}));
    EXPECT_EQ(solution.pivots[0].values, (Floats{4, 12, 18}));
    EXPECT_EQ(solution.pivots[1].entering, 1U);
    EXPECT_EQ(solution.pivots[1].leaving, 5U);
    EXPECT_EQ(solution.pivots[1].basic, (Labels{3, 2, 5}));
    EXPECT_EQ(solution.pivots[1].values, (Floats{4, 6, 6}));
    EXPECT_EQ(BitsOf(solution.objective), BitsOf(36.0F));
    EXPECT_EQ(std::bit_cast<std::uint32_t>(solution.values.at(0)), 0x3FFFFFFEU);
    EXPECT_EQ(BitsOf(solution.values.at(1)), BitsOf(6.0F));
}

// Choices -----------------------------------------------------------------------------------------

TEST(PhaseII, TheSmallestReducedCostAboveZeroStillEnters)
{
    EXPECT_EQ(SolveFreely(WithCosts({1e-30F})).pivots.size(), 1U);
    EXPECT_EQ(SolveFreely(WithCosts({std::numeric_limits<float>::denorm_min()})).pivots.size(), 1U);
    EXPECT_TRUE(SolveFreely(WithCosts({-0.0F})).pivots.empty());
}

TEST(PhaseII, ANaNReducedCostIsPassedOver)
{
    EXPECT_EQ(SolveFreely(WithCosts({2, kNotANumber, 1})).pivots.at(0).entering, 1U);
    const Solution solution = SolveFreely(WithCosts({kNotANumber}));
    EXPECT_EQ(solution.status, Status::Ok);
    EXPECT_TRUE(solution.pivots.empty());
}

TEST(PhaseII, ADegenerateRowLeavesLikeAnyOther)
{
    const Solution solution = SolveFreely({2, 1, {1, 1}, {5, 0}, {1}});
    ASSERT_EQ(solution.pivots.size(), 1U);
    EXPECT_EQ(solution.pivots[0].leaving, 3U);
    EXPECT_EQ(solution.values, Floats{0});
}

TEST(PhaseII, RatiosOfTheLargestNumberOrInfinityBoundNothing)
{
    for (const float rhs : {FLT_MAX, kInfinity})
    {
        const Solution solution = SolveFreely({1, 1, {1}, {rhs}, {1}});
        EXPECT_EQ(solution.status, Status::Unbounded) << rhs;
        EXPECT_EQ(BitsOf(solution.objective), BitsOf(FLT_MAX));
    }
    const float below = std::bit_cast<float>(0x7F7FFFFEU);
    EXPECT_EQ(SolveFreely({1, 1, {1}, {below}, {1}}).status, Status::Ok);
}

TEST(PhaseII, ANaNRightHandSideReachesEveryRowAndNaNRatiosBoundNothing)
{
    // 0 · NaN is NaN in the row of the other right-hand side too.
    const Solution solution = SolveFreely({2, 1, {1, 1}, {kNotANumber, 3}, {1}});
    EXPECT_EQ(solution.status, Status::Unbounded);
    EXPECT_TRUE(solution.pivots.empty());
}

TEST(PhaseII, AnInfiniteRightHandSideMakesTheOtherRowsNaN)
{
    const Solution solution = SolveFreely({2, 1, {1, 1}, {kInfinity, 3}, {1}});
    EXPECT_EQ(solution.status, Status::Unbounded);
    EXPECT_TRUE(solution.pivots.empty());
}

// What is written ---------------------------------------------------------------------------------

TEST(PhaseII, ANonbasicVariableKeepsTheValueThatStoodThere)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    CoreModel model({1, 2, {1, 1}, {4}, {1, 2}}, allocator);
    model.lp.variableValues.begin[0].second = 9.0F;
    const Solution solution = model.SolveMonitored();
    EXPECT_EQ(solution.values, (Floats{9, 4}));
}

TEST(PhaseII, ResultsShorterThanTheVariablesAreWrittenAsFarAsTheyGo)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    CoreModel model({1, 2, {1, 1}, {4}, {1, 2}}, allocator);
    // In a block of exactly one pair, whose guards show a write behind it.
    NuvVector_NuvPair_NuvString__NuvFloat32PopBack(&model.lp.variableValues);
    NuvVector_NuvPair_NuvString__NuvFloat32 shorter;
    ASSERT_NE(
        NuvVector_NuvPair_NuvString__NuvFloat32ConstructCopy(&shorter, &model.lp.variableValues),
        nullptr);
    NuvVector_NuvPair_NuvString__NuvFloat32Destruct(&model.lp.variableValues);
    model.lp.variableValues = shorter;
    const Solution solution = model.SolveMonitored();
    allocator.CheckGuards();
    EXPECT_EQ(solution.status, Status::Ok);
    EXPECT_EQ(solution.objective, 8.0F);
    EXPECT_EQ(solution.values, Floats{0});
}

TEST(PhaseII, TheLabelsOfTheRecordStayAsTheyWere)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    CoreModel model({3, 2, {1, 0, 0, 2, 3, 2}, {4, 12, 18}, {3, 5}}, allocator);
    EXPECT_EQ(model.Solve().status, Status::Ok);
    EXPECT_EQ(Labels(model.lp.basic.data, model.lp.basic.data + 3), (Labels{3, 4, 5}));
    EXPECT_EQ(Labels(model.lp.independent.data, model.lp.independent.data + 2), (Labels{1, 2}));
}

TEST(PhaseII, StartsFromTheBasisThatTheRecordHolds)
{
    // The basis {x, slack 2} of the textbook's model, from which one pivot is left.
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    const Problem problem = {2, 2, {1, 1, 0, 1}, {4, 3}, {2, 3}};
    CoreModel model(problem, allocator);
    StandardForm form = MakeStandardForm(problem);
    form.basic = {1, 2};
    form.independent = {4, 3};
    EnterStandardForm(&model.lp, form);
    EXPECT_EQ(NuvRevisedSimplexSolvePhaseII(&model.lp), NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    EXPECT_EQ(model.lp.objectiveValue, 11.0F);
    EXPECT_EQ(model.Read(NUV_LINEARPROGRAMMINGRESULTTYPE_Ok).values, (Floats{1, 3}));
    EXPECT_EQ(Labels(model.lp.basic.data, model.lp.basic.data + 2), (Labels{1, 2}));
}

TEST(PhaseII, IteratesFromAnInfeasibleStartAllTheSame)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    const Problem problem = {1, 1, {1}, {-2}, {1}};
    CoreModel model(problem, allocator);
    ASSERT_TRUE(NuvLinearProgrammingPrepareInputs_(&model.lp));
    EXPECT_EQ(NuvRevisedSimplexSolvePhaseII(&model.lp), NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    EXPECT_EQ(model.lp.objectiveValue, -2.0F);
    EXPECT_EQ(model.Read(NUV_LINEARPROGRAMMINGRESULTTYPE_Ok).values, Floats{-2});
}

/// Leaves a matrix its shape alone, as after a refused block.
void Unstore(auto* matrix)
{
    NuvAllocatorDeallocate(matrix->allocator, matrix->data,
                           NuvSizeT{matrix->nr} * matrix->nc * sizeof *matrix->data);
    matrix->data = nullptr;
}

TEST(PhaseII, AnObjectWithoutAMatchingStandardFormIsInvalid)
{
    TestAllocator allocator;
    const Problem problem = {2, 2, {1, 1, 0, 1}, {4, 3}, {2, 3}};
    const auto expectInvalid = [&](const auto& spoil)
    {
        CoreModel model(problem, allocator);
        ASSERT_TRUE(NuvLinearProgrammingPrepareInputs_(&model.lp));
        spoil(&model.lp);
        EXPECT_EQ(NuvRevisedSimplexSolvePhaseII(&model.lp),
                  NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput);
        EXPECT_EQ(NuvRevisedSimplexSolvePhaseI(&model.lp),
                  NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput);
        EXPECT_EQ(model.lp.objectiveValue, 0.0F);
    };
    // A shape that differs in rows alone, in columns alone, or has no storage.
    expectInvalid([](NuvLinearProgramming* lp) { NuvMatrix_NuvFloat32Destruct(&lp->A); });
    expectInvalid([](NuvLinearProgramming* lp) { NuvMatrix_NuvFloat32Resize(&lp->A, 1, 4); });
    expectInvalid([](NuvLinearProgramming* lp) { NuvMatrix_NuvFloat32Resize(&lp->A, 2, 5); });
    expectInvalid([](NuvLinearProgramming* lp) { NuvMatrix_NuvFloat32Resize(&lp->b, 1, 2); });
    expectInvalid([](NuvLinearProgramming* lp) { NuvMatrix_NuvFloat32Resize(&lp->b, 2, 2); });
    expectInvalid([](NuvLinearProgramming* lp) { NuvMatrix_NuvFloat32Resize(&lp->c, 3, 1); });
    expectInvalid([](NuvLinearProgramming* lp) { NuvMatrix_NuvFloat32Resize(&lp->c, 4, 2); });
    expectInvalid([](NuvLinearProgramming* lp) { NuvMatrix_NuvUintDestruct(&lp->basic); });
    expectInvalid([](NuvLinearProgramming* lp) { NuvMatrix_NuvUintResize(&lp->basic, 1, 1); });
    expectInvalid([](NuvLinearProgramming* lp) { NuvMatrix_NuvUintResize(&lp->basic, 2, 2); });
    expectInvalid([](NuvLinearProgramming* lp)
                  { NuvMatrix_NuvUintResize(&lp->independent, 1, 1); });
    expectInvalid([](NuvLinearProgramming* lp)
                  { NuvMatrix_NuvUintResize(&lp->independent, 2, 2); });
    // The same with elements that would do.
    expectInvalid(
        [](NuvLinearProgramming* lp)
        {
            NuvMatrix_NuvFloat32Resize(&lp->c, 4, 2);
            NuvMatrix_NuvFloat32Reset(&lp->c);
        });
    expectInvalid(
        [](NuvLinearProgramming* lp)
        {
            NuvMatrix_NuvFloat32Resize(&lp->b, 2, 2);
            NuvMatrix_NuvFloat32Reset(&lp->b);
        });
    expectInvalid(
        [](NuvLinearProgramming* lp)
        {
            NuvMatrix_NuvUintResize(&lp->basic, 2, 2);
            for (NuvUint i = 0; i != 4; ++i)
                lp->basic.data[i] = 3 + i % 2;
        });
    expectInvalid(
        [](NuvLinearProgramming* lp)
        {
            NuvMatrix_NuvUintResize(&lp->independent, 2, 2);
            for (NuvUint i = 0; i != 4; ++i)
                lp->independent.data[i] = 1 + i % 2;
        });
    for (const auto matrix :
         {&NuvLinearProgramming::A, &NuvLinearProgramming::b, &NuvLinearProgramming::c})
        expectInvalid([matrix](NuvLinearProgramming* lp) { Unstore(&(lp->*matrix)); });
    for (const auto matrix : {&NuvLinearProgramming::basic, &NuvLinearProgramming::independent})
        expectInvalid([matrix](NuvLinearProgramming* lp) { Unstore(&(lp->*matrix)); });
    expectInvalid([](NuvLinearProgramming* lp) { lp->basic.data[1] = 5; });
    expectInvalid([](NuvLinearProgramming* lp) { lp->basic.data[0] = 0; });
    expectInvalid([](NuvLinearProgramming* lp) { lp->independent.data[0] = 0; });
    expectInvalid([](NuvLinearProgramming* lp) { lp->independent.data[1] = 5; });
    expectInvalid([](NuvLinearProgramming* lp) { lp->independent.data[1] = 0xFFFFFFFFU; });
    expectInvalid([](NuvLinearProgramming* lp) { lp->numConstraints = 3; });
    expectInvalid([](NuvLinearProgramming* lp) { lp->numConstraints = 0; });
    expectInvalid([](NuvLinearProgramming* lp) { lp->numVars = 0; });
    // As many elements as 32 bits cannot count.
    expectInvalid([](NuvLinearProgramming* lp) { lp->numVars = 0xFFFFFFFFU; });
    CoreModel unprepared(problem, allocator);
    EXPECT_EQ(NuvRevisedSimplexSolvePhaseII(&unprepared.lp),
              NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput);
    EXPECT_EQ(NuvRevisedSimplexIsPhaseIRequired(&unprepared.lp), NUV_FALSE);
}

TEST(PhaseII, TheTestForPhaseIReadsNoRowThatIsNotThere)
{
    TestAllocator allocator;
    CoreModel model({1, 1, {1}, {-2}, {1}}, allocator);
    ASSERT_TRUE(NuvLinearProgrammingPrepareInputs_(&model.lp));
    EXPECT_EQ(NuvRevisedSimplexIsPhaseIRequired(&model.lp), NUV_TRUE);
    model.lp.numConstraints = 2;
    EXPECT_EQ(NuvRevisedSimplexIsPhaseIRequired(&model.lp), NUV_FALSE);
}
}  // namespace
