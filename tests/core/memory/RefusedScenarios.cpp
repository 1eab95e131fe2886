// The life of a model from its construction to its end, edits and solves between, with every
// request in turn refused. Each model lives on a scratch allocator, which takes back what solves
// leave: in the end not a block is out.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Nuv/Utils/NuvScratchAllocator.h"
#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Names.hpp"
#include "tests/support/RefusedAllocations.hpp"

using namespace reference;

namespace
{
constexpr std::size_t kMaxPivots = 60;

/// A model on a scratch allocator over the test's.
struct Life
{
    explicit Life(TestAllocator& upstream)
    {
        NuvScratchAllocatorConstruct(&scratch, upstream);
    }

    ~Life()
    {
        NuvScratchAllocatorDestruct(&scratch);
    }

    Life(const Life&) = delete;
    Life& operator=(const Life&) = delete;

    NuvScratchAllocator scratch;
    NuvLinearProgramming lp;
};

/// What a life has shown: the answers of the edits, and the results of the solves.
struct Story
{
    std::vector<bool> edits;
    std::vector<Solution> solutions;
};

bool SetRow(NuvLinearProgramming* lp, const Problem& problem, std::size_t row, NuvUint number)
{
    IndexedCoefficients::Terms indexed;
    NamedCoefficients::Terms named;
    for (std::size_t j = 0; j != problem.columns; ++j)
    {
        const float coefficient = problem.A[row * problem.columns + j];
        indexed.push_back({static_cast<NuvUint>(j + 1), coefficient});
        named.push_back({j == 0 ? "first of all" : "X" + std::to_string(j + 1), coefficient});
    }
    const NuvBool isSet =
        row % 2 == 0 ? NuvLinearProgrammingSetConstraintByIndex(
                           lp, number, IndexedCoefficients(indexed), problem.b[row])
                     : NuvLinearProgrammingSetConstraintByName(lp, number, NamedCoefficients(named),
                                                               problem.b[row]);
    return isSet == NUV_TRUE;
}

/// Takes back all blocks that the model does not hold.
void ReleaseAllButTheModel(Life* life)
{
    NuvScratchAllocatorRelease(&life->scratch, 0, &life->lp);
}

/// Solves, and takes back what the solve leaves. Edits have left nothing.
Solution Solve(Life* life)
{
    Recorder recorder(kMaxPivots);
    const NuvSizeT held = NuvScratchAllocatorGetNumBlocks(&life->scratch);
    ReleaseAllButTheModel(life);
    EXPECT_EQ(NuvScratchAllocatorGetNumBlocks(&life->scratch), held);
    const auto result = NuvLinearProgrammingSolveMonitored(&life->lp, &recorder.monitor);
    ReleaseAllButTheModel(life);
    Solution solution;
    solution.status = static_cast<Status>(result);
    solution.objective = life->lp.objectiveValue;
    for (const auto* pair = life->lp.variableValues.begin; pair != life->lp.variableValues.end;
         ++pair)
        solution.values.push_back(pair->second);
    solution.pivots = recorder.pivots;
    return solution;
}

/// A constructed model is named, filled, solved, changed, and solved again.
void Live(Life* life, const Problem& problem, Story* story)
{
    NuvLinearProgramming* const lp = &life->lp;
    const auto note = [story](NuvBool answer) { story->edits.push_back(answer == NUV_TRUE); };
    note(NuvLinearProgrammingSetVariableInfo(lp, 1, Name("first of all"),
                                             NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32));
    for (std::size_t i = 0; i != problem.rows; ++i)
        story->edits.push_back(SetRow(lp, problem, i, static_cast<NuvUint>(i + 1)));
    IndexedCoefficients::Terms objective;
    for (std::size_t j = 0; j != problem.columns; ++j)
        objective.push_back({static_cast<NuvUint>(j + 1), problem.c[j]});
    NuvLinearProgrammingSetObjectiveByIndex(lp, IndexedCoefficients(objective));
    story->solutions.push_back(Solve(life));

    note(NuvLinearProgrammingRemoveConstraint(lp, 1));
    story->edits.push_back(SetRow(lp, problem, 0, 100));
    note(NuvLinearProgrammingSetObjective(lp, NamedCoefficients({{"first of all", 1.0F}})));
    story->solutions.push_back(Solve(life));
}

Story Live(const Problem& problem, TestAllocator& allocator)
{
    Life life(allocator);
    Story story;
    const bool isMade =
        NuvLinearProgrammingConstruct(&life.lp, static_cast<NuvUint>(problem.columns),
                                      &life.scratch.allocator) != nullptr;
    story.edits.push_back(isMade);
    if (isMade)
    {
        Live(&life, problem, &story);
        EXPECT_LE(NuvLinearProgrammingGetNumConstraints(&life.lp), problem.rows);
        EXPECT_LE(story.solutions[0].values.size(), problem.columns);
        NuvLinearProgrammingDestruct(&life.lp);
    }
    // Whatever were left now, no operation would have an account of.
    EXPECT_EQ(NuvScratchAllocatorGetNumBlocks(&life.scratch), 0U);
    return story;
}

void ExpectSame(const Story& expected, const Story& found)
{
    EXPECT_EQ(expected.edits, found.edits);
    ASSERT_EQ(expected.solutions.size(), found.solutions.size());
    for (std::size_t i = 0; i != expected.solutions.size(); ++i)
        EXPECT_EQ(Difference(expected.solutions[i], found.solutions[i]), "");
}

/// @return the number of runs with a request refused.
std::size_t Sweep(const Problem& problem)
{
    TestAllocator undisturbed;
    const Story expected = Live(problem, undisturbed);
    EXPECT_EQ(undisturbed.ZeroByteRequests(), 0U);
    std::size_t runs = 0;
    for (const Refusal mode : {Refusal::OnlyOne, Refusal::AllFromOneOn})
        runs += ForEachRefusedAllocation(mode,
                                         [&](TestAllocator& allocator)
                                         {
                                             const Story found = Live(problem, allocator);
                                             if (allocator.Refusals() == 0)
                                                 ExpectSame(expected, found);
                                             EXPECT_EQ(allocator.ZeroByteRequests(), 0U);
                                             EXPECT_EQ(allocator.NullsGivenBack(), 0U);
                                             // A second try, once memory is there.
                                             allocator.RefuseNothing();
                                             ExpectSame(expected, Live(problem, allocator));
                                         });
    return runs;
}

TEST(RefusedScenarios, LivesUnderRefusalsEndWithoutATraceAndCanBeLivedAgain)
{
    Random random(0x11FE);
    std::size_t runs = 0;
    for (const Family family : Families())
        for (std::size_t i = 0; i != ShareOf(8U); ++i)
        {
            const std::size_t size = 2 + i % 2;
            SCOPED_TRACE(testing::Message() << NameOf(family) << ' ' << size);
            runs += Sweep(MakeModel(family, size, size, random.Next()));
        }
    std::printf("%zu pairs of a life and a refused request\n", runs);
    EXPECT_GE(runs, ShareOf(10000U));
}
}  // namespace
