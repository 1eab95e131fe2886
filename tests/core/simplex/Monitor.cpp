// The monitored solve: what the callback is told, how it ends a solve, and that it changes nothing.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "Nuv/Utils/NuvPivotLimit.h"
#include "tests/support/SmallModel.hpp"
#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/TestAllocator.hpp"

using namespace reference;

namespace
{
using Floats = std::vector<float>;
using Labels = std::vector<std::uint32_t>;

/// Needs both phases: three pivots.
const Problem& TwoPhases()
{
    static const Problem kProblem = {2, 1, {-1, 1}, {-2, 5}, {1}};
    return kProblem;
}

class Monitor : public testing::Test
{
protected:
    Monitor()
    {
        allocator.AcceptLeftBlocks();
    }

    TestAllocator allocator;
};

TEST_F(Monitor, IsToldOfEachPivotBeforeItIsMade)
{
    CoreModel model(TwoPhases(), allocator);
    const Solution solution = model.SolveMonitored();
    ASSERT_EQ(solution.pivots.size(), 3U);
    EXPECT_EQ(solution.pivots[0].phase, 1U);
    EXPECT_EQ(solution.pivots[0].entering, 0U);
    EXPECT_EQ(solution.pivots[0].leaving, 2U);
    EXPECT_EQ(solution.pivots[0].basic, (Labels{2, 3}));
    EXPECT_EQ(solution.pivots[0].values, (Floats{-2, 5}));
    EXPECT_EQ(solution.pivots[1].entering, 1U);
    EXPECT_EQ(solution.pivots[1].leaving, 0U);
    EXPECT_EQ(solution.pivots[1].basic, (Labels{0, 3}));
    EXPECT_EQ(solution.pivots[1].values, (Floats{2, 7}));
    EXPECT_EQ(solution.pivots[2].phase, 2U);
    EXPECT_EQ(solution.pivots[2].entering, 2U);
    EXPECT_EQ(solution.pivots[2].leaving, 3U);
    EXPECT_EQ(solution.pivots[2].basic, (Labels{1, 3}));
    EXPECT_EQ(solution.pivots[2].values, (Floats{2, 3}));
}

TEST_F(Monitor, PivotsAreNumberedFromOneThroughBothPhases)
{
    CoreModel model(TwoPhases(), allocator);
    Recorder recorder;
    EXPECT_EQ(NuvLinearProgrammingSolveMonitored(&model.lp, &recorder.monitor),
              NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    EXPECT_EQ(recorder.pivots.size(), 3U);
    EXPECT_TRUE(recorder.isNumberedInOrder);
}

TEST_F(Monitor, EndsTheSolveAtAnyPivotAndLeavesTheResultsOfTheEarlierOne)
{
    CoreModel model(TwoPhases(), allocator);
    for (std::size_t limit = 0; limit != 3; ++limit)
    {
        model.lp.objectiveValue = 7.0F;
        model.lp.variableValues.begin[0].second = 8.0F;
        const Solution solution = model.SolveMonitored(limit);
        EXPECT_EQ(solution.status, Status::Stopped);
        EXPECT_EQ(solution.pivots.size(), limit);
        EXPECT_EQ(solution.objective, 7.0F);
        EXPECT_EQ(solution.values, Floats{8});
    }
    EXPECT_EQ(model.SolveMonitored(3).status, Status::Ok);
}

TEST_F(Monitor, IsNotAskedWhereNoPivotIsMade)
{
    for (const Problem& problem :
         {Problem{1, 1, {1}, {1}, {-1}}, Problem{1, 1, {-1}, {1}, {1}}, Problem{0, 1, {}, {}, {1}}})
    {
        CoreModel model(problem, allocator);
        const Solution solution = model.SolveMonitored(0);
        EXPECT_NE(solution.status, Status::Stopped);
        EXPECT_TRUE(solution.pivots.empty());
    }
}

TEST_F(Monitor, NoMonitorIsAPlainSolve)
{
    CoreModel model(TwoPhases(), allocator);
    EXPECT_EQ(NuvLinearProgrammingSolveMonitored(&model.lp, nullptr),
              NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    EXPECT_EQ(model.lp.objectiveValue, 5.0F);
}

TEST_F(Monitor, AStoppedSolveCanBeMadeAgainToTheSameBits)
{
    Random random(0x5709);
    for (int i = 0; i != 200; ++i)
    {
        const Family family =
            Families()[random.Below(static_cast<std::uint32_t>(Families().size()))];
        const Problem problem =
            MakeModel(family, 1 + random.Below(8), 1 + random.Below(8), random.Next());
        CoreModel stopped(problem, allocator);
        CoreModel undisturbed(problem, allocator);
        (void)stopped.SolveMonitored(random.Below(6));
        // A run that the first call finished has written its values.
        for (auto* value = stopped.lp.variableValues.begin; value != stopped.lp.variableValues.end;
             ++value)
            value->second = 0.0F;
        stopped.lp.objectiveValue = 0.0F;
        EXPECT_EQ(Difference(undisturbed.SolveMonitored(100), stopped.SolveMonitored(100)), "")
            << NameOf(family);
    }
}

/// Reads the model's record from within the callback.
struct Onlooker
{
    explicit Onlooker(const NuvLinearProgramming* watched) : monitor{Look, this}, lp(watched) {}

    Onlooker(const Onlooker&) = delete;
    Onlooker& operator=(const Onlooker&) = delete;

    static NuvBool Look(NuvLinearProgrammingMonitor* monitor,
                        const NuvLinearProgrammingPivot* pivot)
    {
        auto* const self = static_cast<Onlooker*>(monitor->userData);
        self->sawStandardForm = self->sawStandardForm && self->lp->A.nr == pivot->numBasic &&
                                self->lp->b.data != nullptr;
        return NUV_TRUE;
    }

    NuvLinearProgrammingMonitor monitor;
    const NuvLinearProgramming* lp;
    bool sawStandardForm = true;
};

TEST_F(Monitor, TheStandardFormCanBeReadFromTheCallback)
{
    CoreModel model(TwoPhases(), allocator);
    Onlooker onlooker(&model.lp);
    EXPECT_EQ(NuvLinearProgrammingSolveMonitored(&model.lp, &onlooker.monitor),
              NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    EXPECT_TRUE(onlooker.sawStandardForm);
}

/// Solves another model from within the callback.
struct Nested
{
    explicit Nested(NuvLinearProgramming* other) : monitor{SolveOther, this}, inner(other) {}

    Nested(const Nested&) = delete;
    Nested& operator=(const Nested&) = delete;

    static NuvBool SolveOther(NuvLinearProgrammingMonitor* monitor,
                              const NuvLinearProgrammingPivot*)
    {
        auto* const self = static_cast<Nested*>(monitor->userData);
        return NuvLinearProgrammingSolve(self->inner) == NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;
    }

    NuvLinearProgrammingMonitor monitor;
    NuvLinearProgramming* inner;
};

TEST_F(Monitor, AnotherModelCanBeSolvedFromTheCallback)
{
    CoreModel outer(TwoPhases(), allocator);
    CoreModel inner({3, 2, {1, 0, 0, 2, 3, 2}, {4, 12, 18}, {3, 5}}, allocator);
    Nested nested(&inner.lp);
    EXPECT_EQ(NuvLinearProgrammingSolveMonitored(&outer.lp, &nested.monitor),
              NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    EXPECT_EQ(outer.lp.objectiveValue, 5.0F);
    EXPECT_EQ(inner.lp.objectiveValue, 36.0F);
}

// The ready monitor ------------------------------------------------------------------------------

TEST_F(Monitor, PivotLimitEndsASolveThatMakesOneMore)
{
    CoreModel model(TwoPhases(), allocator);
    NuvPivotLimit limit;
    NuvLinearProgrammingMonitor* const monitor = NuvPivotLimitConstruct(&limit, 3);
    EXPECT_EQ(NuvLinearProgrammingSolveMonitored(&model.lp, monitor),
              NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    EXPECT_EQ(limit.pivots, 3U);
    (void)NuvPivotLimitConstruct(&limit, 2);
    EXPECT_EQ(NuvLinearProgrammingSolveMonitored(&model.lp, monitor),
              NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped);
    EXPECT_EQ(limit.pivots, 2U);
    EXPECT_FALSE(limit.hasCycled);
}

/// Chvátal's model, which goes round in six pivots (Linear Programming, chapter 3).
TEST_F(Monitor, PivotLimitFindsACircleSoon)
{
    CoreModel cycling(
        {2, 4, {0.5F, -5.5F, -2.5F, 9, 0.5F, -1.5F, -0.5F, 1}, {0, 0}, {10, -57, -9, -24}},
        allocator);
    NuvPivotLimit limit;
    NuvLinearProgrammingMonitor* const monitor = NuvPivotLimitConstruct(&limit, 100000);
    EXPECT_EQ(NuvLinearProgrammingSolveMonitored(&cycling.lp, monitor),
              NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped);
    EXPECT_TRUE(limit.hasCycled);
    EXPECT_LT(limit.pivots, 200U);
    // The next solve begins anew.
    CoreModel other(TwoPhases(), allocator);
    EXPECT_EQ(NuvLinearProgrammingSolveMonitored(&other.lp, monitor),
              NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    EXPECT_FALSE(limit.hasCycled);
    EXPECT_EQ(limit.pivots, 3U);
}
}  // namespace
