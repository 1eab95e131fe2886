// The watching allocator, watched: each misuse that it is there for fails a test.
#include "tests/support/TestAllocator.hpp"

#include <gtest/gtest-spi.h>

#include "tests/support/RefusedAllocations.hpp"

namespace
{
char* Take(NuvAllocator* allocator, NuvSizeT size)
{
    return static_cast<char*>(allocator->allocate(allocator, size));
}

void GiveBack(NuvAllocator* allocator, void* memory, NuvSizeT size)
{
    allocator->deallocate(allocator, memory, size);
}

TEST(TestAllocator, CountsWhatIsOut)
{
    TestAllocator allocator;
    char* const ten = Take(allocator, 10);
    char* const none = Take(allocator, 0);
    char* const twenty = Take(allocator, 20);
    EXPECT_EQ(allocator.LiveBlocks(), 3u);
    EXPECT_EQ(allocator.LiveBytes(), 30u);
    EXPECT_EQ(allocator.LiveSizes(), (TestAllocator::Sizes{0, 10, 20}));
    EXPECT_EQ(allocator.ZeroByteRequests(), 1u);
    EXPECT_EQ(allocator.LastRequest(), 20u);
    EXPECT_TRUE(allocator.Owns(ten));
    EXPECT_EQ(allocator.SizeOf(ten), 10u);
    GiveBack(allocator, ten, 10);
    EXPECT_FALSE(allocator.Owns(ten));
    EXPECT_EQ(allocator.LiveBytes(), 20u);
    EXPECT_EQ(allocator.PeakBytes(), 30u);
    EXPECT_EQ(allocator.Requests(), 3u);
    GiveBack(allocator, nullptr, 0);
    EXPECT_EQ(allocator.NullsGivenBack(), 1u);
    GiveBack(allocator, none, 0);
    GiveBack(allocator, twenty, 20);
}

TEST(TestAllocator, RefusesTheRequestsThatItIsToldTo)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    allocator.RefuseOnly(2);
    EXPECT_NE(Take(allocator, 1), nullptr);
    EXPECT_EQ(Take(allocator, 1), nullptr);
    EXPECT_NE(Take(allocator, 1), nullptr);
    allocator.RefuseFrom(2);
    {
        const auto spared = allocator.Spare();
        EXPECT_NE(Take(allocator, 1), nullptr);
        EXPECT_NE(Take(allocator, 1), nullptr);
    }
    EXPECT_NE(Take(allocator, 1), nullptr);
    EXPECT_EQ(Take(allocator, 1), nullptr);
    EXPECT_EQ(Take(allocator, 1), nullptr);
    allocator.RefuseNothing();
    EXPECT_NE(Take(allocator, 1), nullptr);
    EXPECT_EQ(allocator.Refusals(), 3u);
}

TEST(TestAllocator, NoticesAnotherSize)
{
    TestAllocator allocator;
    char* const block = Take(allocator, 5);
    EXPECT_NONFATAL_FAILURE(GiveBack(allocator, block, 6), "5 bytes was given back as 6");
}

TEST(TestAllocator, NoticesABlockThatIsNotItsOwn)
{
    TestAllocator allocator;
    TestAllocator other;
    char* const block = Take(other, 5);
    EXPECT_NONFATAL_FAILURE(GiveBack(allocator, block, 5), "no live block of this allocator");
    GiveBack(other, block, 5);
    EXPECT_NONFATAL_FAILURE(GiveBack(other, block, 5), "no live block of this allocator");
    EXPECT_NONFATAL_FAILURE(GiveBack(other, nullptr, 5), "no live block of this allocator");
}

TEST(TestAllocator, NoticesBytesWrittenOutside)
{
    TestAllocator allocator;
    char* const block = Take(allocator, 5);
    block[5] = 0;
    EXPECT_NONFATAL_FAILURE(allocator.CheckGuards(), "behind a block of 5 bytes");
    EXPECT_NONFATAL_FAILURE(GiveBack(allocator, block, 5), "behind a block of 5 bytes");
    char* const next = Take(allocator, 5);
    next[-1] = 0;
    EXPECT_NONFATAL_FAILURE(GiveBack(allocator, next, 5), "before a block of 5 bytes");
}

TEST(TestAllocator, NoticesBlocksThatAreLeft)
{
    auto* const allocator = new TestAllocator;
    (void)Take(*allocator, 5);
    (void)Take(*allocator, 7);
    EXPECT_NONFATAL_FAILURE(delete allocator, "2 of 5 7 bytes");
}

TEST(RefusedAllocations, EveryRequestHasItsTurnInBothModes)
{
    std::multiset<std::size_t> granted;
    ForEachRefusedAllocation(
        [&granted](TestAllocator& allocator)
        {
            std::size_t count = 0;
            for (int i = 0; i < 3; ++i)
                if (char* const block = Take(allocator, 4))
                {
                    GiveBack(allocator, block, 4);
                    ++count;
                }
            granted.insert(count);
        });
    // Alone: two of three are granted three times. With all later ones: none, one, two.
    EXPECT_EQ(granted, (std::multiset<std::size_t>{0, 1, 2, 2, 2, 2, 3, 3}));
}

TEST(RefusedAllocations, ABodyWithoutARequestFails)
{
    EXPECT_NONFATAL_FAILURE(ForEachRefusedAllocation(Refusal::OnlyOne, [](TestAllocator&)
                                                     { ADD_FAILURE() << "looked at"; }),
                            "looked at");
    ::testing::TestPartResultArray failures;
    {
        const ::testing::ScopedFakeTestPartResultReporter reporter(
            ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
        ForEachRefusedAllocation([](TestAllocator&) {});
    }
    ASSERT_EQ(failures.size(), 2);
    EXPECT_NE(std::string(failures.GetTestPartResult(0).message()).find("no request could be"),
              std::string::npos);
}
}  // namespace
