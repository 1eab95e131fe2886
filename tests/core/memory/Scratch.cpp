// The scratch allocator: mark, solve, release. What a solve leaves goes back, what the model holds
// stays, and memory does not grow.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstddef>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "Nuv/Utils/NuvScratchAllocator.h"
#include "tests/support/SmallModel.hpp"
#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/RefusedAllocations.hpp"

using namespace reference;

namespace
{
using Floats = std::vector<float>;

constexpr auto kOk = NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;

const std::string kLongName = "a name that is much too long for anything but a block of its own";

class Scratch : public testing::Test
{
protected:
    Scratch()
    {
        NuvScratchAllocatorConstruct(&scratch, upstream);
    }

    ~Scratch() override
    {
        NuvScratchAllocatorDestruct(&scratch);
    }

    NuvAllocator* Blocks()
    {
        return NuvScratchAllocatorGetAllocator(&scratch);
    }

    std::size_t NumBlocks() const
    {
        return NuvScratchAllocatorGetNumBlocks(&scratch);
    }

    /// Solves and takes back what the solve left.
    NuvLinearProgrammingResultType SolveTidily(NuvLinearProgramming* lp)
    {
        const NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
        const NuvLinearProgrammingResultType result = NuvLinearProgrammingSolve(lp);
        NuvScratchAllocatorRelease(&scratch, mark, lp);
        return result;
    }

    TestAllocator upstream;
    NuvScratchAllocator scratch;
};

void EnterFactory(SmallModel* model)
{
    ASSERT_TRUE(model->Rename(1, kLongName));
    ASSERT_TRUE(model->SetNamedRow(1, {{kLongName, 1.0F}}, 4.0F));
    ASSERT_TRUE(model->SetRow(2, {{2, 2.0F}}, 12.0F));
    ASSERT_TRUE(model->SetRow(3, {{1, 3.0F}, {2, 2.0F}}, 18.0F));
    model->Maximise({{1, 3.0F}, {2, 5.0F}});
}

// Blocks ------------------------------------------------------------------------------------------

TEST_F(Scratch, ABlockComesFromUpstreamAndGoesBackThere)
{
    void* const memory = Blocks()->allocate(Blocks(), 100);
    ASSERT_NE(memory, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % alignof(std::max_align_t), 0U);
    EXPECT_EQ(NumBlocks(), 1U);
    EXPECT_EQ(upstream.LiveBlocks(), 1U);
    Blocks()->deallocate(Blocks(), memory, 100);
    EXPECT_EQ(NumBlocks(), 0U);
    EXPECT_EQ(upstream.LiveBlocks(), 0U);
}

TEST_F(Scratch, BlocksGoBackInAnyOrder)
{
    std::vector<void*> blocks;
    for (int i = 0; i != 9; ++i)
        blocks.push_back(Blocks()->allocate(Blocks(), 8));
    for (const int i : {4, 8, 0, 3, 5, 7, 1, 6, 2})
        Blocks()->deallocate(Blocks(), blocks[static_cast<std::size_t>(i)], 8);
    EXPECT_EQ(NumBlocks(), 0U);
    EXPECT_EQ(upstream.LiveBlocks(), 0U);
}

TEST_F(Scratch, ARefusalUpstreamIsARefusal)
{
    upstream.RefuseFrom(1);
    EXPECT_EQ(Blocks()->allocate(Blocks(), 8), nullptr);
    EXPECT_EQ(NumBlocks(), 0U);
}

TEST_F(Scratch, ASizeThatLeavesNoRoomForItsHeaderIsRefused)
{
    for (const NuvSizeT size : {UINT64_MAX, UINT64_MAX - 1, UINT64_MAX - 16})
        EXPECT_EQ(Blocks()->allocate(Blocks(), size), nullptr);
    EXPECT_EQ(upstream.Requests(), 0U);
    // The largest request is that of all bytes.
    upstream.RefuseFrom(1);
    NuvSizeT largest = 0;
    for (NuvSizeT size = UINT64_MAX - 200; size != UINT64_MAX; ++size)
    {
        EXPECT_EQ(Blocks()->allocate(Blocks(), size), nullptr);
        largest = upstream.LastRequest();
    }
    EXPECT_EQ(largest, UINT64_MAX);
}

TEST_F(Scratch, ABlockOfNoBytesIsABlock)
{
    void* const memory = Blocks()->allocate(Blocks(), 0);
    ASSERT_NE(memory, nullptr);
    EXPECT_EQ(NumBlocks(), 1U);
    Blocks()->deallocate(Blocks(), memory, 0);
    EXPECT_EQ(NumBlocks(), 0U);
}

TEST_F(Scratch, ANullGivenBackIsNothing)
{
    NuvAllocator* const allocator = NuvScratchAllocatorGetAllocator(&scratch);
    allocator->deallocate(allocator, nullptr, 0);
    EXPECT_EQ(NuvScratchAllocatorGetNumBlocks(&scratch), 0U);
}

// Large ones, small ones, and none at all; on the heap, which leaves untouched
// what nobody touches.
TEST_F(Scratch, BlocksOfAnySizeAfterAMarkAreReleased)
{
    NuvScratchAllocator large;
    NuvScratchAllocatorConstruct(&large, Heap());
    NuvAllocator* const blocks = NuvScratchAllocatorGetAllocator(&large);
    const NuvSizeT mark = NuvScratchAllocatorMark(&large);
    for (const NuvSizeT size :
         {NuvSizeT{0}, NuvSizeT{30} << 20U, NuvSizeT{9000}, NuvSizeT{70} << 20U})
    {
        char* const block = static_cast<char*>(blocks->allocate(blocks, size));
        ASSERT_NE(block, nullptr);
        if (size != 0)
            block[0] = block[size - 1] = 1;
    }
    EXPECT_EQ(NuvScratchAllocatorGetNumBlocks(&large), 4U);
    NuvScratchAllocatorRelease(&large, mark, nullptr);
    EXPECT_EQ(NuvScratchAllocatorGetNumBlocks(&large), 0U);
    NuvScratchAllocatorDestruct(&large);
}

TEST_F(Scratch, DestructGivesEverythingBack)
{
    for (int i = 0; i != 5; ++i)
        ASSERT_NE(Blocks()->allocate(Blocks(), 8), nullptr);
    NuvScratchAllocatorDestruct(&scratch);
    EXPECT_EQ(NumBlocks(), 0U);
    EXPECT_EQ(upstream.LiveBlocks(), 0U);
}

// Mark and release --------------------------------------------------------------------------------

TEST_F(Scratch, ReleaseTakesBackWhatIsYoungerThanTheMark)
{
    ASSERT_NE(Blocks()->allocate(Blocks(), 8), nullptr);
    const NuvSizeT first = NuvScratchAllocatorMark(&scratch);
    ASSERT_NE(Blocks()->allocate(Blocks(), 16), nullptr);
    const NuvSizeT second = NuvScratchAllocatorMark(&scratch);
    ASSERT_NE(Blocks()->allocate(Blocks(), 24), nullptr);
    NuvScratchAllocatorRelease(&scratch, second, nullptr);
    EXPECT_EQ(NumBlocks(), 2U);
    NuvScratchAllocatorRelease(&scratch, first, nullptr);
    EXPECT_EQ(NumBlocks(), 1U);
    NuvScratchAllocatorRelease(&scratch, first, nullptr);
    EXPECT_EQ(NumBlocks(), 1U);
}

TEST_F(Scratch, ReleaseOfNothingIsNothing)
{
    NuvScratchAllocatorRelease(&scratch, NuvScratchAllocatorMark(&scratch), nullptr);
    EXPECT_EQ(NumBlocks(), 0U);
}

TEST_F(Scratch, ReleaseOfLargeBlocksLeavesOlderOnes)
{
    void* const older = Blocks()->allocate(Blocks(), 8);
    const NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
    ASSERT_NE(Blocks()->allocate(Blocks(), 100000), nullptr);
    ASSERT_NE(Blocks()->allocate(Blocks(), 200000), nullptr);
    NuvScratchAllocatorRelease(&scratch, mark, nullptr);
    EXPECT_EQ(NumBlocks(), 1U);
    EXPECT_EQ(upstream.LiveBlocks(), 1U);
    Blocks()->deallocate(Blocks(), older, 8);
    EXPECT_EQ(upstream.LiveBlocks(), 0U);
}

TEST_F(Scratch, AnOlderBlockGoesBackAlsoWhereLaterOnesAreHeld)
{
    const NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
    ASSERT_NE(Blocks()->allocate(Blocks(), 8), nullptr);
    SmallModel model(2, Blocks());
    EnterFactory(&model);
    const std::size_t before = NumBlocks();
    NuvScratchAllocatorRelease(&scratch, mark, &model.lp);
    EXPECT_EQ(NumBlocks(), before - 1);
}

TEST_F(Scratch, AHoldLastsForOneRelease)
{
    ASSERT_NE(Blocks()->allocate(Blocks(), 8), nullptr);
    const NuvSizeT first = NuvScratchAllocatorMark(&scratch);
    SmallModel model(40, Blocks());
    for (NuvUint id = 1; id != 40; ++id)
        ASSERT_TRUE(model.SetRow(id, {{id, 1.0F}}, 1.0F));
    ASSERT_EQ(NuvLinearProgrammingPrepareInputs_(&model.lp), NUV_TRUE);
    NuvScratchAllocatorRelease(&scratch, first, &model.lp);
    // Now all are older than the mark, and nothing is younger.
    NuvScratchAllocatorRelease(&scratch, NuvScratchAllocatorMark(&scratch), &model.lp);
    EXPECT_GT(NumBlocks(), 1U);
    NuvScratchAllocatorRelease(&scratch, first, nullptr);
    EXPECT_EQ(NumBlocks(), 1U);
    NuvLinearProgrammingConstruct(&model.lp, 0, upstream);  // what it held is gone
}

TEST_F(Scratch, NothingOnAnotherAllocatorIsTouchedByARelease)
{
    TestAllocator other;
    SmallModel model(2, other);
    EnterFactory(&model);
    const NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
    ASSERT_NE(Blocks()->allocate(Blocks(), 100000), nullptr);
    NuvScratchAllocatorRelease(&scratch, mark, &model.lp);
    EXPECT_EQ(NumBlocks(), 0U);
    other.CheckGuards();
}

TEST_F(Scratch, AModelWithoutMatricesCanBeHeldBesideALargeBlock)
{
    SmallModel model(2, Blocks());
    const NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
    ASSERT_NE(Blocks()->allocate(Blocks(), 100000), nullptr);
    NuvScratchAllocatorRelease(&scratch, mark, &model.lp);
    EXPECT_EQ(model.Names(), (std::vector<std::string>{"X1", "X2"}));
    upstream.CheckGuards();
}

TEST_F(Scratch, SmallBlocksAfterAMarkDoNotOverlap)
{
    (void)NuvScratchAllocatorMark(&scratch);
    std::vector<unsigned char*> blocks;
    for (const NuvSizeT size : {0U, 0U, 1U, 15U, 16U, 17U, 0U, 31U, 33U})
    {
        blocks.push_back(static_cast<unsigned char*>(Blocks()->allocate(Blocks(), size)));
        std::memset(blocks.back(), static_cast<int>(size), static_cast<std::size_t>(size));
    }
    EXPECT_EQ(std::set<unsigned char*>(blocks.begin(), blocks.end()).size(), 9U);
    EXPECT_EQ(blocks[4][15], 16);
    EXPECT_EQ(blocks[5][16], 17);
    EXPECT_EQ(blocks[7][30], 31);
    for (unsigned char* const block : blocks)
        Blocks()->deallocate(Blocks(), block, 0);
    EXPECT_EQ(NumBlocks(), 0U);
    EXPECT_EQ(upstream.LiveBlocks(), 0U);
}

TEST_F(Scratch, AfterReleaseTheModelHoldsWhatItHeldAndReadsAsBefore)
{
    SmallModel model(2, Blocks());
    EnterFactory(&model);
    ASSERT_EQ(SolveTidily(&model.lp), kOk);
    EXPECT_EQ(model.Objective(), 36.0F);
    EXPECT_EQ(model.Values()[1], 6.0F);
    const std::size_t held = NumBlocks();
    ASSERT_EQ(SolveTidily(&model.lp), kOk);
    EXPECT_EQ(NumBlocks(), held);
    EXPECT_EQ(model.Names(), (std::vector<std::string>{kLongName, "X2"}));
    EXPECT_NE(model.Find(kLongName), nullptr);
}

// Phase I and Phase II with pivots: on any other allocator each leaves blocks.
TEST_F(Scratch, ASolveLeavesNothingOnItButWhatTheModelHolds)
{
    SmallModel model(2, Blocks());
    EnterFactory(&model);
    ASSERT_TRUE(model.SetRow(4, {{1, -1.0F}}, -1.0F));
    ASSERT_EQ(NuvLinearProgrammingPrepareInputs_(&model.lp), NUV_TRUE);
    const std::size_t held = NumBlocks();
    ASSERT_EQ(NuvLinearProgrammingSolve(&model.lp), kOk);
    EXPECT_EQ(model.Objective(), 36.0F);
    EXPECT_EQ(NumBlocks(), held);
}

TEST_F(Scratch, TheModelsBlocksAreAllThatStays)
{
    {
        SmallModel model(2, Blocks());
        EnterFactory(&model);
        ASSERT_EQ(SolveTidily(&model.lp), kOk);
    }
    EXPECT_EQ(NumBlocks(), 0U);
}

TEST_F(Scratch, AModelThatIsMadeAndEditedAfterTheMarkSurvivesWhole)
{
    const NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
    {
        SmallModel model(2, Blocks());
        EnterFactory(&model);
        for (NuvUint id = 4; id != 30; ++id)
            ASSERT_TRUE(id % 2 == 0 ? model.SetNamedRow(id, {{kLongName, 1.0F}, {"X2", 1.0F}}, 100)
                                    : model.SetRow(id, {{1, 1.0F}, {2, 1.0F}}, 100));
        ASSERT_TRUE(model.MaximiseNamed({{kLongName, 3.0F}, {"X2", 5.0F}}));
        ASSERT_EQ(NuvLinearProgrammingSolve(&model.lp), kOk);
        NuvScratchAllocatorRelease(&scratch, mark, &model.lp);
        upstream.CheckGuards();
        EXPECT_EQ(model.NumRows(), 29U);
        EXPECT_EQ(TermsOf(model.FindRow(4)->u.variableCoefficientsByName),
                  (NamedCoefficients::Terms{{kLongName, 1.0F}, {"X2", 1.0F}}));
        EXPECT_EQ(SolveTidily(&model.lp), kOk);
        EXPECT_EQ(model.Objective(), 36.0F);
    }
    EXPECT_EQ(NumBlocks(), 0U);
}

TEST_F(Scratch, EditsBetweenSolvesUnderOneMarkSurvive)
{
    SmallModel model(2, Blocks());
    EnterFactory(&model);
    const NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
    ASSERT_EQ(NuvLinearProgrammingSolve(&model.lp), kOk);
    ASSERT_TRUE(NuvLinearProgrammingSetNumVars(&model.lp, 3));
    ASSERT_TRUE(model.Rename(3, kLongName + " and one more"));
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}, {3, 1.0F}}, 4.0F));
    ASSERT_TRUE(NuvLinearProgrammingRemoveConstraint(&model.lp, 2));
    ASSERT_TRUE(model.SetNamedRow(9, {{kLongName + " and one more", 1.0F}}, 1.0F));
    ASSERT_TRUE(model.SetRow(8, {{2, 1.0F}}, 2.0F));
    model.Maximise({{1, 1.0F}, {2, 1.0F}, {3, 2.0F}});
    ASSERT_EQ(NuvLinearProgrammingSolve(&model.lp), kOk);
    const Floats values = model.Values();
    NuvScratchAllocatorRelease(&scratch, mark, &model.lp);
    EXPECT_EQ(model.Values(), values);
    EXPECT_EQ(SolveTidily(&model.lp), kOk);
    EXPECT_EQ(model.Values(), values);
    EXPECT_EQ(model.Names()[2], kLongName + " and one more");
}

TEST_F(Scratch, WhatAFailedSolveLeavesGoesBackToo)
{
    SmallModel model(1, Blocks());
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, 1.0F));
    ASSERT_TRUE(model.SetRow(2, {{1, -1.0F}}, -2.0F));
    model.Maximise({{1, 1.0F}});
    EXPECT_EQ(SolveTidily(&model.lp), NUV_LINEARPROGRAMMINGRESULTTYPE_Infeasible);
    const std::size_t held = NumBlocks();
    EXPECT_EQ(SolveTidily(&model.lp), NUV_LINEARPROGRAMMINGRESULTTYPE_Infeasible);
    EXPECT_EQ(NumBlocks(), held);
    model.Maximise({{2, 1.0F}});
    EXPECT_EQ(SolveTidily(&model.lp), NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput);
    EXPECT_LE(NumBlocks(), held);
}

TEST_F(Scratch, PartsOnOtherAllocatorsAreLeftAlone)
{
    TestAllocator other;
    SmallModel model(2, Blocks());
    EnterFactory(&model);
    NuvLinearProgrammingConstraint record;
    ASSERT_NE(NuvLinearProgrammingConstraintConstructIndex(
                  &record, IndexedCoefficients({{1, 2.0F}}), 30.0F, other),
              nullptr);
    const NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
    ASSERT_TRUE(NuvLinearProgrammingSetConstraint(&model.lp, 7, &record));
    NuvLinearProgrammingConstraintDestruct(&record);
    ASSERT_EQ(NuvLinearProgrammingSolve(&model.lp), kOk);
    NuvScratchAllocatorRelease(&scratch, mark, &model.lp);
    EXPECT_EQ(other.LiveBlocks(), 1U);
    EXPECT_EQ(model.FindRow(7)->rhs, 30.0F);
    EXPECT_EQ(SolveTidily(&model.lp), kOk);
}

TEST_F(Scratch, AMatrixGivenByHandSurvives)
{
    SmallModel model(2, Blocks());
    EnterFactory(&model);
    const NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
    NuvMatrix_NuvFloat32 x;
    NuvMatrix_NuvFloat32ConstructIdentity(&x, 4, Blocks());
    ASSERT_TRUE(NuvLinearProgrammingSetInput(&model.lp, &x, &x, &x));
    NuvScratchAllocatorRelease(&scratch, mark, &model.lp);
    EXPECT_EQ(NuvMatrix_NuvFloat32At(&model.lp.A, 3, 3), 1.0F);
    EXPECT_EQ(SolveTidily(&model.lp), kOk);
}

// Over time ---------------------------------------------------------------------------------------

TEST_F(Scratch, MemoryDoesNotGrowOverTenThousandSolves)
{
    SmallModel model(2, Blocks());
    EnterFactory(&model);
    ASSERT_EQ(SolveTidily(&model.lp), kOk);
    ASSERT_TRUE(model.SetRow(2, {{2, 2.0F}}, 12.0F));
    ASSERT_EQ(SolveTidily(&model.lp), kOk);
    const std::size_t held = NumBlocks();
    const NuvSizeT bytes = upstream.LiveBytes();
    const NuvSizeT peak = upstream.PeakBytes();
    for (int i = 0; i != 10000; ++i)
    {
        ASSERT_TRUE(i % 100 != 0 || model.SetRow(2, {{2, 2.0F}}, 12.0F));
        ASSERT_EQ(SolveTidily(&model.lp), kOk);
        ASSERT_EQ(NumBlocks(), held);
    }
    EXPECT_EQ(upstream.LiveBytes(), bytes);
    EXPECT_LE(upstream.PeakBytes(), peak);
    EXPECT_EQ(model.Objective(), 36.0F);
}

TEST_F(Scratch, SolvesHaveTheSameBitsAsOnAPlainAllocator)
{
    Random random(0x5C4A);
    TestAllocator plain;
    plain.AcceptLeftBlocks();
    for (int i = 0; i != 300; ++i)
    {
        const Family family =
            Families()[random.Below(static_cast<std::uint32_t>(Families().size()))];
        const Problem problem =
            MakeModel(family, 1 + random.Below(9), 1 + random.Below(9), random.Next());
        CoreModel expected(problem, plain);
        CoreModel found(problem, Blocks());
        const NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
        const Solution onScratch = found.SolveMonitored(100);
        NuvScratchAllocatorRelease(&scratch, mark, &found.lp);
        EXPECT_EQ(Difference(expected.SolveMonitored(100), onScratch), "") << NameOf(family);
        EXPECT_EQ(DifferenceOfResults(
                      onScratch,
                      found.Read(static_cast<NuvLinearProgrammingResultType>(onScratch.status))),
                  "");
    }
    EXPECT_EQ(NumBlocks(), 0U);
}

TEST(ScratchRefused, AModelCanBeReleasedAfterRefusals)
{
    ForEachRefusedAllocation(
        [](TestAllocator& upstream)
        {
            NuvScratchAllocator scratch;
            NuvScratchAllocatorConstruct(&scratch, upstream);
            NuvAllocator* const blocks = NuvScratchAllocatorGetAllocator(&scratch);
            NuvLinearProgramming lp;
            if (NuvLinearProgrammingConstruct(&lp, 2, blocks))
            {
                const NamedCoefficients named({{"X1", 1.0F}, {kLongName, 1.0F}});
                const IndexedCoefficients indexed({{1, 1.0F}, {2, 1.0F}});
                const NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
                (void)NuvLinearProgrammingSetVariableInfo(
                    &lp, 2, Name(kLongName), NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32);
                (void)NuvLinearProgrammingSetConstraintByName(&lp, 1, named, -1.0F);
                (void)NuvLinearProgrammingSetConstraintByIndex(&lp, 2, indexed, 4.0F);
                NuvLinearProgrammingSetObjectiveByIndex(&lp, indexed);
                (void)NuvLinearProgrammingSolve(&lp);
                NuvScratchAllocatorRelease(&scratch, mark, &lp);
                (void)NuvLinearProgrammingSolve(&lp);
                NuvLinearProgrammingDestruct(&lp);
            }
            NuvScratchAllocatorDestruct(&scratch);
        });
}
}  // namespace
