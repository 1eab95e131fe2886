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

constexpr auto ok = NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;

const std::string longName = "a name that is much too long for anything but a block of its own";

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

/// Cuts blocks out of one, each above the one before or each below it; what comes back is spoilt.
class Arena
{
public:
    explicit Arena(bool rising)
        : callbacks{Allocate, Deallocate, UINT64_MAX, this}, memory(1U << 19U), isRising(rising)
    {
    }

    operator NuvAllocator*()
    {
        return &callbacks;
    }

    /// How many blocks of the size of a chunk have been taken.
    std::size_t NumLargeBlocks() const
    {
        return numLarge;
    }

private:
    static void* Allocate(NuvAllocator* allocator, NuvSizeT size)
    {
        Arena& self = *static_cast<Arena*>(allocator->userData);
        const std::size_t units =
            (static_cast<std::size_t>(size) + sizeof(Unit) - 1) / sizeof(Unit);
        if (units > self.memory.size() - self.used)
            return nullptr;
        self.used += units;
        self.numLarge += size >= 8192;
        const std::size_t first =
            self.isRising ? self.used - units : self.memory.size() - self.used;
        return &self.memory[first];
    }

    static void Deallocate(NuvAllocator*, void* memory, NuvSizeT size)
    {
        std::memset(memory, 0xFE, static_cast<std::size_t>(size));
    }

    using Unit = std::max_align_t;

    NuvAllocator callbacks;
    std::vector<Unit> memory;
    bool isRising;
    std::size_t used = 0;
    std::size_t numLarge = 0;
};

void EnterFactory(SmallModel* model)
{
    ASSERT_TRUE(model->Rename(1, longName));
    ASSERT_TRUE(model->SetNamedRow(1, {{longName, 1.0F}}, 4.0F));
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

// Larger ones than a chunk, ones that fill it, and none at all; on the heap, which leaves untouched
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

TEST_F(Scratch, AChunkGoesBackWithItsLastBlock)
{
    (void)NuvScratchAllocatorMark(&scratch);
    void* const first = Blocks()->allocate(Blocks(), 8);
    void* const second = Blocks()->allocate(Blocks(), 8);
    const std::size_t chunk = upstream.LiveBlocks();
    Blocks()->deallocate(Blocks(), second, 8);
    EXPECT_EQ(upstream.LiveBlocks(), chunk);
    Blocks()->deallocate(Blocks(), first, 8);
    EXPECT_EQ(upstream.LiveBlocks(), 0U);
}

TEST_F(Scratch, TheFirstBlockOfAChunkGoesBackAlsoWhereLaterOnesAreHeld)
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
    // An older block in the same chunk, so that the chunk does not go back as a whole.
    (void)NuvScratchAllocatorMark(&scratch);
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

/// Counts what is asked of the heap, which leaves untouched what nobody touches.
struct CountingHeap
{
    NuvAllocator allocator = {[](NuvAllocator* self, NuvSizeT size)
                              {
                                  CountingHeap* const x =
                                      static_cast<CountingHeap*>(self->userData);
                                  ++x->requests;
                                  x->largest = size > x->largest ? size : x->largest;
                                  return Heap()->allocate(Heap(), size);
                              },
                              [](NuvAllocator*, void* memory, NuvSizeT size)
                              { Heap()->deallocate(Heap(), memory, size); },
                              UINT64_MAX, this};
    std::size_t requests = 0;
    NuvSizeT largest = 0;
};

/// A scratch allocator on such a heap, marked; what is taken is released at the end.
struct MarkedScratch
{
    MarkedScratch()
    {
        NuvScratchAllocatorConstruct(&scratch, &heap.allocator);
        mark = NuvScratchAllocatorMark(&scratch);
    }

    ~MarkedScratch()
    {
        NuvScratchAllocatorRelease(&scratch, mark, nullptr);
        NuvScratchAllocatorDestruct(&scratch);
    }

    /// Takes so many blocks of a size.
    void Take(int count, NuvSizeT size)
    {
        NuvAllocator* const blocks = NuvScratchAllocatorGetAllocator(&scratch);
        for (int i = 0; i != count; ++i)
            ASSERT_NE(blocks->allocate(blocks, size), nullptr);
    }

    CountingHeap heap;
    NuvScratchAllocator scratch;
    NuvSizeT mark = 0;
};

// What is known of the first chunk: 8 KiB, at least four blocks, and 64 records.
TEST(ScratchChunks, TheFirstTakesFourBlocksOfAQuarterOfIt)
{
    CountingHeap heap;
    NuvScratchAllocator scratch;
    NuvScratchAllocatorConstruct(&scratch, &heap.allocator);
    NuvAllocator* const blocks = NuvScratchAllocatorGetAllocator(&scratch);
    const auto take = [&](NuvSizeT size)
    {
        const std::size_t before = heap.requests;
        void* const block = blocks->allocate(blocks, size);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0U);
        std::memset(block, 1, static_cast<std::size_t>(size));
        return heap.requests - before;
    };
    NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
    EXPECT_EQ(take(2049), 1U);  // by itself
    EXPECT_EQ(take(2048), 2U);  // a chunk with its records
    EXPECT_EQ(heap.largest, 8192U);
    for (int i = 0; i != 3; ++i)
        EXPECT_EQ(take(2048), 0U);
    EXPECT_NE(take(1), 0U);
    NuvScratchAllocatorRelease(&scratch, mark, nullptr);
    mark = NuvScratchAllocatorMark(&scratch);
    EXPECT_EQ(take(0), 2U);
    for (int i = 1; i != 64; ++i)
        EXPECT_EQ(take(i % 2 == 0 ? 0U : 17U), 0U);
    EXPECT_EQ(take(0), 2U);
    NuvScratchAllocatorRelease(&scratch, mark, nullptr);
    mark = NuvScratchAllocatorMark(&scratch);
    EXPECT_EQ(take(100005), 1U);
    EXPECT_EQ(take(8), 2U);
    EXPECT_EQ(heap.largest, 300000U);
    NuvScratchAllocatorRelease(&scratch, mark, nullptr);
    NuvScratchAllocatorDestruct(&scratch);
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

TEST_F(Scratch, DestructGivesTheFirstBlockBackAlsoOutOfAChunk)
{
    (void)NuvScratchAllocatorMark(&scratch);
    ASSERT_NE(Blocks()->allocate(Blocks(), 8), nullptr);
    NuvScratchAllocatorDestruct(&scratch);
    EXPECT_EQ(upstream.LiveBlocks(), 0U);
}

// Each chunk is larger than all before it together, up to 64 MiB, and comes with its records.
TEST(ScratchChunks, TheirNumberGrowsWithTheLogarithmOfWhatIsTaken)
{
    MarkedScratch scratch;
    scratch.Take(1000, 1000);
    EXPECT_LE(scratch.heap.requests, 2U * 6U);
    scratch.Take(100, NuvSizeT{1} << 20U);
    EXPECT_EQ(scratch.heap.largest, NuvSizeT{1} << 26U);
}

// Records are as many as small blocks need.
TEST(ScratchChunks, TheirNumberGrowsWithTheLogarithmOfTheNumberOfSmallBlocks)
{
    MarkedScratch scratch;
    scratch.Take(20000, 16);
    EXPECT_LE(scratch.heap.requests, 2U * 6U);
}

TEST(ScratchChunks, NoneIsOfASizeThatTheCLibraryWouldGiveBackToTheSystem)
{
    constexpr NuvSizeT small = 40960;
    constexpr NuvSizeT medium = 262144;
    for (const NuvSizeT before : {small / 3, small / 3 + 16, medium / 3 - 16, medium / 3 + 16})
    {
        MarkedScratch scratch;
        scratch.Take(1, before);
        scratch.Take(1, 8);
        const NuvSizeT largest = scratch.heap.largest;
        EXPECT_TRUE(largest <= small || largest >= medium) << largest;
        EXPECT_LE(largest, 3 * before > medium ? 3 * before : medium);
    }
}

// Chunks lie anywhere: the newer below the older, or above it.
TEST(ScratchChunks, WhatAModelHoldsSurvivesWhereverItsChunksLie)
{
    for (const bool isRising : {true, false})
    {
        Arena arena(isRising);
        NuvScratchAllocator scratch;
        NuvScratchAllocatorConstruct(&scratch, arena);
        NuvAllocator* const blocks = NuvScratchAllocatorGetAllocator(&scratch);
        {
            const NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
            SmallModel model(2, blocks);
            EnterFactory(&model);
            // Its copies are too large for a chunk at first: they come to lie between two.
            const std::string largeName(200000, 'x');
            ASSERT_TRUE(model.Rename(2, largeName));
            for (NuvUint id = 4; id != 40; ++id)
                ASSERT_TRUE(model.SetNamedRow(id, {{longName, 1.0F}, {"x", 1.0F}}, 100));
            for (NuvUint id = 4; id != 40; ++id)
                ASSERT_TRUE(model.SetNamedRow(id, {{longName, 1.0F}}, 100));
            ASSERT_EQ(NuvLinearProgrammingSolve(&model.lp), ok);
            ASSERT_GE(arena.NumLargeBlocks(), 4U);
            NuvScratchAllocatorRelease(&scratch, mark, &model.lp);
            EXPECT_EQ(model.NumRows(), 39U);
            EXPECT_EQ(TermsOf(model.FindRow(39)->u.variableCoefficientsByName),
                      (NamedCoefficients::Terms{{longName, 1.0F}}));
            EXPECT_EQ(model.Names(), (std::vector<std::string>{longName, largeName}));
            EXPECT_EQ(NuvLinearProgrammingSolve(&model.lp), ok);
            EXPECT_EQ(model.Objective(), 36.0F);
        }
        NuvScratchAllocatorDestruct(&scratch);
    }
}

TEST_F(Scratch, AfterReleaseTheModelHoldsWhatItHeldAndReadsAsBefore)
{
    SmallModel model(2, Blocks());
    EnterFactory(&model);
    ASSERT_EQ(SolveTidily(&model.lp), ok);
    EXPECT_EQ(model.Objective(), 36.0F);
    EXPECT_EQ(model.Values()[1], 6.0F);
    const std::size_t held = NumBlocks();
    ASSERT_EQ(SolveTidily(&model.lp), ok);
    EXPECT_EQ(NumBlocks(), held);
    EXPECT_EQ(model.Names(), (std::vector<std::string>{longName, "X2"}));
    EXPECT_NE(model.Find(longName), nullptr);
}

TEST_F(Scratch, TheModelsBlocksAreAllThatStays)
{
    {
        SmallModel model(2, Blocks());
        EnterFactory(&model);
        ASSERT_EQ(SolveTidily(&model.lp), ok);
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
            ASSERT_TRUE(id % 2 == 0 ? model.SetNamedRow(id, {{longName, 1.0F}, {"X2", 1.0F}}, 100)
                                    : model.SetRow(id, {{1, 1.0F}, {2, 1.0F}}, 100));
        ASSERT_TRUE(model.MaximiseNamed({{longName, 3.0F}, {"X2", 5.0F}}));
        ASSERT_EQ(NuvLinearProgrammingSolve(&model.lp), ok);
        NuvScratchAllocatorRelease(&scratch, mark, &model.lp);
        upstream.CheckGuards();
        EXPECT_EQ(model.NumRows(), 29U);
        EXPECT_EQ(TermsOf(model.FindRow(4)->u.variableCoefficientsByName),
                  (NamedCoefficients::Terms{{longName, 1.0F}, {"X2", 1.0F}}));
        EXPECT_EQ(SolveTidily(&model.lp), ok);
        EXPECT_EQ(model.Objective(), 36.0F);
    }
    EXPECT_EQ(NumBlocks(), 0U);
}

TEST_F(Scratch, EditsBetweenSolvesUnderOneMarkSurvive)
{
    SmallModel model(2, Blocks());
    EnterFactory(&model);
    const NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
    ASSERT_EQ(NuvLinearProgrammingSolve(&model.lp), ok);
    ASSERT_TRUE(NuvLinearProgrammingSetNumVars(&model.lp, 3));
    ASSERT_TRUE(model.Rename(3, longName + " and one more"));
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}, {3, 1.0F}}, 4.0F));
    ASSERT_TRUE(NuvLinearProgrammingRemoveConstraint(&model.lp, 2));
    ASSERT_TRUE(model.SetNamedRow(9, {{longName + " and one more", 1.0F}}, 1.0F));
    ASSERT_TRUE(model.SetRow(8, {{2, 1.0F}}, 2.0F));
    model.Maximise({{1, 1.0F}, {2, 1.0F}, {3, 2.0F}});
    ASSERT_EQ(NuvLinearProgrammingSolve(&model.lp), ok);
    const Floats values = model.Values();
    NuvScratchAllocatorRelease(&scratch, mark, &model.lp);
    EXPECT_EQ(model.Values(), values);
    EXPECT_EQ(SolveTidily(&model.lp), ok);
    EXPECT_EQ(model.Values(), values);
    EXPECT_EQ(model.Names()[2], longName + " and one more");
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
    ASSERT_EQ(NuvLinearProgrammingSolve(&model.lp), ok);
    NuvScratchAllocatorRelease(&scratch, mark, &model.lp);
    EXPECT_EQ(other.LiveBlocks(), 1U);
    EXPECT_EQ(model.FindRow(7)->rhs, 30.0F);
    EXPECT_EQ(SolveTidily(&model.lp), ok);
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
    EXPECT_EQ(SolveTidily(&model.lp), ok);
}

// Over time ---------------------------------------------------------------------------------------

TEST_F(Scratch, MemoryDoesNotGrowOverTenThousandSolves)
{
    SmallModel model(2, Blocks());
    EnterFactory(&model);
    ASSERT_EQ(SolveTidily(&model.lp), ok);
    ASSERT_TRUE(model.SetRow(2, {{2, 2.0F}}, 12.0F));
    ASSERT_EQ(SolveTidily(&model.lp), ok);
    const std::size_t held = NumBlocks();
    const NuvSizeT bytes = upstream.LiveBytes();
    const NuvSizeT peak = upstream.PeakBytes();
    for (int i = 0; i != 10000; ++i)
    {
        ASSERT_TRUE(i % 100 != 0 || model.SetRow(2, {{2, 2.0F}}, 12.0F));
        ASSERT_EQ(SolveTidily(&model.lp), ok);
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
                const NamedCoefficients named({{"X1", 1.0F}, {longName, 1.0F}});
                const IndexedCoefficients indexed({{1, 1.0F}, {2, 1.0F}});
                const NuvSizeT mark = NuvScratchAllocatorMark(&scratch);
                (void)NuvLinearProgrammingSetVariableInfo(
                    &lp, 2, Name(longName), NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32);
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
