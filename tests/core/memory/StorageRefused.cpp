// Solves that run out of memory, for every n-th request, once and from then on: with and without
// Phase I, under a monitor, and step by step. No crash, InvalidInput, earlier results untouched,
// never more left behind than finished stages leave, and the same bits once memory is there.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/RefusedAllocations.hpp"

using namespace reference;

namespace
{
/// Models that between them end in every way that a solve can end.
const std::vector<Problem>& Problems()
{
    static const std::vector<Problem> kAll = {
        {3, 2, {1, 0, 0, 2, 3, 2}, {4, 12, 18}, {3, 5}},
        {3, 2, {-1, -2, -3, -1, 1, 1}, {-4, -6, 9}, {-2, -3}},
        {2, 1, {-1, 1}, {-2, 1}, {1}},
        {2, 2, {1, -1, -1, 0}, {3, 2}, {2, 1}},
        {1, 1, {-1}, {-1e-30F}, {1}},
        {2, 1, {-1, 1}, {-0x1p-149F, 0}, {-1}},
        // Unbounded in Phase I, and numbers that end in Phase II and in Phase I.
        {1, 1, {-0x1p-149F}, {-1}, {1}},
        {2,
         3,
         {-0x1p-66F, 0x1p-63F, 0x1p+36F, 0, 0, 0x1p-85F},
         {0x1p+14F, 0},
         {0x1p-79F, 0x1p-77F, 0x1p+21F}},
        {3, 2, {0, 1, 1, 0, 1, -1}, {0x1.fffffep+127F, 0, -0x1.8p+127F}, {1, 1}},
        MakeModel(Family::NeedsPhaseI, 4, 5, 11)};
    return kAll;
}

/// Marks the results, so that a solve that touches them is seen.
Solution MarkResults(CoreModel* model)
{
    model->lp.objectiveValue = -77.0F;
    auto* const values = &model->lp.variableValues;
    for (auto* value = values->begin; value != values->end; ++value)
        value->second = 1000.0F;
    return model->Read(NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput);
}

/// A solve from marked results that nothing disturbs, and what it leaves.
struct Undisturbed
{
    explicit Undisturbed(const Problem& problem)
    {
        TestAllocator allocator;
        allocator.AcceptLeftBlocks();
        {
            CoreModel model(problem, allocator);
            (void)MarkResults(&model);
            solution = model.SolveMonitored();
        }
        left = allocator.LiveSizes();
    }

    Solution solution;
    TestAllocator::Sizes left;
};

TestAllocator::Sizes Without(const TestAllocator::Sizes& whole, const TestAllocator::Sizes& part)
{
    TestAllocator::Sizes rest;
    std::set_difference(whole.begin(), whole.end(), part.begin(), part.end(),
                        std::inserter(rest, rest.end()));
    return rest;
}

/// Of the blocks that are left after a refused solve and an undisturbed one of the same model, the
/// second one's are known; the rest is the first one's, and must be part of what finished stages
/// leave: five blocks a pivot, the eight of the set-up of Phase I, and one of its optimum.
void ExpectNoMoreThanStagesLeave(const TestAllocator::Sizes& left, const Undisturbed& undisturbed,
                                 std::size_t pivots)
{
    EXPECT_TRUE(Without(undisturbed.left, left).empty());
    const TestAllocator::Sizes first = Without(left, undisturbed.left);
    EXPECT_TRUE(Without(first, undisturbed.left).empty());
    const bool hasPhaseI =
        !undisturbed.solution.pivots.empty() && undisturbed.solution.pivots[0].phase == 1;
    EXPECT_LE(first.size(), 5 * pivots + (hasPhaseI ? 9 : 0));
}

std::unique_ptr<CoreModel> EnterWithoutRefusals(const Problem& problem, TestAllocator* allocator)
{
    const auto spared = allocator->Spare();
    return std::make_unique<CoreModel>(problem, *allocator);
}

/// Solves while a request is refused, and then again without refusals.
void SolveTwice(const Problem& problem, const Undisturbed& undisturbed, bool isMonitored,
                TestAllocator& allocator)
{
    allocator.AcceptLeftBlocks();
    std::unique_ptr<CoreModel> model = EnterWithoutRefusals(problem, &allocator);
    const Solution marked = MarkResults(model.get());
    const Solution found = isMonitored ? model->SolveMonitored() : model->Solve();
    const bool isRefused = allocator.Refusals() != 0;
    allocator.RefuseNothing();
    EXPECT_EQ(DifferenceOfResults(isRefused ? marked : undisturbed.solution, found), "");

    (void)MarkResults(model.get());
    EXPECT_EQ(Difference(undisturbed.solution, model->SolveMonitored()), "");
    model.reset();
    if (isRefused)
        ExpectNoMoreThanStagesLeave(allocator.LiveSizes(), undisturbed,
                                    isMonitored ? found.pivots.size()
                                                : undisturbed.solution.pivots.size());
}

TEST(StorageRefused, ASolveEndsInInvalidInputAndCanBeMadeAgain)
{
    for (const Problem& problem : Problems())
    {
        const Undisturbed undisturbed(problem);
        for (const bool isMonitored : {false, true})
            ForEachRefusedAllocation([&](TestAllocator& allocator)
                                     { SolveTwice(problem, undisturbed, isMonitored, allocator); });
    }
}

TEST(StorageRefused, AModelCanBeDestructedAfterARefusedSolve)
{
    for (const Problem& problem : Problems())
        ForEachRefusedAllocation(
            [&](TestAllocator& allocator)
            {
                allocator.AcceptLeftBlocks();
                const auto model = EnterWithoutRefusals(problem, &allocator);
                (void)NuvLinearProgrammingSolve(&model->lp);
            });
}

TEST(StorageRefused, AStandardFormIsRefusedWithoutATraceAndCanBePreparedAgain)
{
    const Problem& problem = Problems()[1];
    const StandardForm expected = MakeStandardForm(problem);
    ForEachRefusedAllocation(
        [&](TestAllocator& allocator)
        {
            const auto model = EnterWithoutRefusals(problem, &allocator);
            const Solution marked = MarkResults(model.get());
            const bool isPrepared = NuvLinearProgrammingPrepareInputs_(&model->lp) == NUV_TRUE;
            EXPECT_EQ(isPrepared, allocator.Refusals() == 0);
            EXPECT_EQ(DifferenceOfResults(
                          marked,
                          model->Read(static_cast<NuvLinearProgrammingResultType>(marked.status))),
                      "");
            allocator.RefuseNothing();
            EXPECT_EQ(NuvLinearProgrammingPrepareInputs_(&model->lp), NUV_TRUE);
            EXPECT_EQ(Difference(expected.A, model->lp.A), "");
            EXPECT_EQ(Difference(expected.b, model->lp.b), "");
            EXPECT_EQ(Difference(expected.c, model->lp.c), "");
        });
}

/// A random model of the family, solved with each request refused, unless its solve goes on and on.
void SweepRandomModel(Family family, Random* random)
{
    const Problem problem = MakeModel(family, 3, 3, random->Next());
    SCOPED_TRACE(NameOf(family));
    if (Solve(problem, 30).status == Status::Stopped)
        return;
    const Undisturbed undisturbed(problem);
    ForEachRefusedAllocation([&](TestAllocator& allocator)
                             { SolveTwice(problem, undisturbed, true, allocator); });
}

// Numbers that stop being finite on the way: the solve asks for other storage then.
TEST(StorageRefused, ModelsThatOverflowOnTheWaySurvive)
{
    Random random(0x0F10);
    for (const Family family : Families())
        for (int i = 0; !IsTame(family) && i != ShareOf(8); ++i)
            SweepRandomModel(family, &random);
}

using Phase = NuvLinearProgrammingResultType (*)(NuvLinearProgramming*);

/// Runs a phase by itself from a prepared form, refused and then not.
void RunPhaseTwice(const Problem& problem, Phase phase, TestAllocator& allocator)
{
    allocator.AcceptLeftBlocks();
    const auto model = EnterWithoutRefusals(problem, &allocator);
    StandardForm form = MakeStandardForm(problem);
    {
        const auto spared = allocator.Spare();
        EnterStandardForm(&model->lp, form);
    }
    const Solution marked = MarkResults(model.get());
    const Solution found = model->Read(phase(&model->lp));
    if (allocator.Refusals() != 0)
    {
        EXPECT_EQ(DifferenceOfResults(marked, found), "");
        EXPECT_TRUE(std::equal(form.basic.begin(), form.basic.end(), model->lp.basic.data));
    }
    else
        EXPECT_NE(found.status, Status::InvalidInput);
    allocator.RefuseNothing();
    EnterStandardForm(&model->lp, form);
    EXPECT_NE(phase(&model->lp), NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput);
}

TEST(StorageRefused, ThePhasesByThemselvesEndInInvalidInput)
{
    for (const Problem& problem : Problems())
        for (const Phase phase : {NuvRevisedSimplexSolvePhaseI, NuvRevisedSimplexSolvePhaseII})
            ForEachRefusedAllocation([&](TestAllocator& allocator)
                                     { RunPhaseTwice(problem, phase, allocator); });
}

TEST(StorageRefused, RandomModelsOfAllFamiliesSurvive)
{
    Random random(0x4EF);
    for (const Family family : Families())
        SweepRandomModel(family, &random);
}
}  // namespace
