/// The ratio test of the dual simplex by itself, on logicals whose row of the tableau is given.
#include "Nuv/SparseSimplex/DualRatioTest.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace nuv::test
{
namespace
{

struct Nonbasic
{
    double pivot;
    double reduced;
    double width;  ///< of its bounds, from 0 on
    BasisStatus status = BasisStatus::AtLower;
};

struct RatioTest
{
    RatioTest(const std::vector<Nonbasic>& nonbasic, double violation)
        : form(MakeForm(std::vector<double>(nonbasic.size(), 0.0), {})),
          scaled(form),
          state(scaled, SlackBasis(form)),
          test(state)
    {
        row.Reset(form.columns);
        for (Index v = 0; v < nonbasic.size(); ++v)
        {
            state.lower[v] = 0.0;
            state.upper[v] = nonbasic[v].width;
            state.reduced[v] = nonbasic[v].reduced;
            state.status[v] = nonbasic[v].status;
            state.SetToBound(v);
            row.Set(v, nonbasic[v].pivot);
        }
        entering = test.Choose(row, 1.0, violation);
    }

    BoundedForm form;
    ScaledForm scaled;
    SimplexState state;
    DualRatioTest test;
    WorkVector row;
    Index entering = kNoIndex;
};

TEST(DualRatioTest, TakesTheFirstThatHasNowhereToGo)
{
    const RatioTest run({{1, 3, kInf}, {1, 2, kInf}, {1, 4, kInf}}, 10);
    EXPECT_EQ(run.entering, 1U);
    EXPECT_TRUE(run.test.Flips().empty());
}

/// Of the violation of 10, the two boxed ones take 2 and 3 times 2; the next one is more than what
/// is left.
TEST(DualRatioTest, PassesBoxedVariablesWhileViolationIsLeft)
{
    const RatioTest run({{1, 3, 2}, {2, 8, 3}, {1, 5, 9}, {1, 7, kInf}}, 10);
    EXPECT_EQ(run.entering, 2U);
    EXPECT_EQ(run.test.Flips(), (std::vector<Index>{0, 1}));
}

TEST(DualRatioTest, StopsAtABoxedVariableThatTakesAllOfIt)
{
    const RatioTest run({{1, 3, 11}, {1, 4, kInf}}, 10);
    EXPECT_EQ(run.entering, 0U);
    EXPECT_TRUE(run.test.Flips().empty());
}

TEST(DualRatioTest, AmongTiesTakesTheLargestPivot)
{
    const RatioTest run({{1, 2, kInf}, {4, 8, kInf}, {3, 6, kInf}}, 1);
    EXPECT_EQ(run.entering, 1U);
}

/// A pivot of a ten-thousandth where one of one is to be had a little earlier.
TEST(DualRatioTest, DoesNotGoOnToAPivotThatIsTooSmall)
{
    const RatioTest run({{1, 3, 2}, {1e-4, 4e-4, kInf}}, 10);
    EXPECT_EQ(run.entering, 0U);
    EXPECT_TRUE(run.test.Flips().empty());
}

TEST(DualRatioTest, LeavesOutWhatMovesTheWrongWay)
{
    EXPECT_EQ(RatioTest({{-1, 3, kInf}, {1, -5, 4, BasisStatus::AtUpper}}, 1).entering, kNoIndex);
    EXPECT_EQ(RatioTest({{-1, 3, kInf}, {-1, -5, 4, BasisStatus::AtUpper}}, 1).entering, 1U);
    EXPECT_EQ(RatioTest({{-1, 0, kInf, BasisStatus::Free}}, 1).entering, 0U);
    EXPECT_EQ(RatioTest({{1, 0, 0}}, 1).entering, kNoIndex) << "a fixed variable";
    EXPECT_EQ(RatioTest({{1, 0, kInf, BasisStatus::Basic}}, 1).entering, kNoIndex);
}

/// Such quotients are rounded down, and the tolerance is too small to make up for it.
TEST(DualRatioTest, EndsHoweverQuotientsAreRounded)
{
    for (double pivot = 1.0; pivot < 50.0; ++pivot)
    {
        const double distance = std::nextafter(1e18, 2e18);
        EXPECT_EQ(RatioTest({{pivot, distance, 1e-30}, {1, 1e19, kInf}}, 1).entering, 1U) << pivot;
    }
}

TEST(DualRatioTest, LeavesOutWhatIsNoNumber)
{
    constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(RatioTest({{1, kNotANumber, 1}, {1, 3, kInf}}, 1).entering, 1U);
    EXPECT_EQ(RatioTest({{1, kInf, 1}, {kInf, 1, 1}, {1, 3, kInf}}, 1).entering, 2U);
    EXPECT_EQ(RatioTest({{1, 3, kInf}}, kNotANumber).entering, 0U);
}

}  // namespace
}  // namespace nuv::test
