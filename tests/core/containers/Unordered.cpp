// The hash map: construction, lookup, insertion, removal and growth, for every instantiation.
#include "tests/core/containers/UnorderedSupport.hpp"

namespace
{
template <class Instantiation>
class Unordered : public UnorderedTest<Instantiation>
{
};

TYPED_TEST_SUITE(Unordered, MapTypes);

// Edge cases ---------------------------------------------------------------------------------

TYPED_TEST(Unordered, ABucketCountOfZeroIsTwoAndGrowsToThreeSevenSeventeen)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets);
    EXPECT_EQ(M::BucketCount(map), 2u);
    const NuvSizeT counts[] = {2, 2, 3, 7, 7, 7, 7, 17, 17};
    int number = 0;
    for (const NuvSizeT count : counts)
    {
        EXPECT_EQ(map.Insert(++number), 1);
        EXPECT_EQ(M::BucketCount(map), count);
        EXPECT_EQ(M::Size(map), static_cast<NuvSizeT>(number));
        map.ExpectSound();
    }
}

TYPED_TEST(Unordered, InsertOfAPresentKeyReturnsItsEntryAndFalse)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, kOwnHash<M>, {1, 2, 3});
    const auto present = map.Find(2);
    const std::size_t requests = this->nodes.Requests();
    const Entry<M> other(2, 9);
    const auto result = M::Insert(map, other);
    EXPECT_EQ(result.first, present);
    EXPECT_EQ(result.second, 0);
    EXPECT_EQ(M::Size(map), 3u);
    EXPECT_EQ(NumberOf(M::List::ForwardKind::ContentOf(&present)->second), 2);
    EXPECT_EQ(this->nodes.Requests(), requests);
    map.ExpectSound();
}

TYPED_TEST(Unordered, EveryBucketsRunIsContiguousAfterInsertionsAndErasures)
{
    using M = TypeParam;
    for (const auto hash : {kOwnHash<M>, &ConstantHash<typename M::Key>,
                            &NumberHash<typename M::Key>, &WideHash<typename M::Key>})
    {
        HeldMap<M> map(this->nodes, this->buckets, hash);
        for (int number = 0; number < 40; ++number)
        {
            EXPECT_EQ(map.Insert(number * 7 % 40), 1);
            map.ExpectSound();
        }
        for (int number = 0; number < 40; number += 3)
        {
            EXPECT_EQ(M::EraseKey(map, KeyOf<M>(number)), 1u);
            map.ExpectSound();
            if (number + 1 < 40)
                M::Erase(map, map.Find(number + 1));
            map.ExpectSound();
        }
        EXPECT_EQ(M::Size(map), 13u);
    }
}

TYPED_TEST(Unordered, StatisticsOfOneEntryInTwoBucketsAreZeroAndOne)
{
    using M = TypeParam;
    const HeldMap<M> map(this->nodes, this->buckets, kOwnHash<M>, {1});
    ASSERT_EQ(M::BucketCount(map), 2u);
    typename M::Statistics statistics;
    M::GetStatistics(map, &statistics);
    EXPECT_EQ(statistics.loadingMin, 0u);
    EXPECT_EQ(statistics.loadingMax, 1u);
}

TYPED_TEST(Unordered, EraseRangeOfNothingReturnsItsPosition)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, kOwnHash<M>, {1, 2, 3});
    const Entries before = *map;
    for (const auto position : {M::Begin(map), map.Find(2), M::End(map)})
    {
        EXPECT_EQ(M::EraseRange(map, position, position), position);
        EXPECT_EQ(*map, before);
    }
}

TYPED_TEST(Unordered, SwapOfMapsOnDifferentAllocatorsReturnsFalseAndLeavesBoth)
{
    using M = TypeParam;
    TestAllocator elsewhere;
    for (const bool haveOtherNodes : {false, true})
    {
        HeldMap<M> x(this->nodes, this->buckets, kOwnHash<M>, {1, 2, 3});
        HeldMap<M> y(haveOtherNodes ? elsewhere : this->nodes,
                     haveOtherNodes ? this->buckets : elsewhere, kOwnHash<M>, {4});
        const Entries entriesOfX = *x;
        EXPECT_EQ(M::Swap(x, y), 0);
        EXPECT_EQ(M::Swap(y, x), 0);
        EXPECT_EQ(*x, entriesOfX);
        EXPECT_EQ(*y, Plain({4}));
        x.ExpectSound();
        y.ExpectSound();
    }
}

TYPED_TEST(Unordered, MaxSizeIsTheSameForAll)
{
    using M = TypeParam;
    const HeldMap<M> map(this->nodes, this->buckets);
    EXPECT_EQ(M::MaxSize(map), 268435455u);
}

// Construction -------------------------------------------------------------------------------

TYPED_TEST(Unordered, ConstructTakesTheSmallestAllowedBucketCount)
{
    using M = TypeParam;
    const std::pair<NuvSizeT, NuvSizeT> requested[] = {
        {0, 2},   {1, 2},   {2, 2},   {3, 3},   {4, 7},     {7, 7},      {8, 17},
        {17, 17}, {18, 31}, {31, 31}, {32, 61}, {500, 509}, {1022, 2053}};
    for (const auto& [request, count] : requested)
    {
        typename M::Container map;
        ASSERT_EQ(M::Construct(&map, kOwnHash<M>, request, this->buckets, this->nodes), &map);
        EXPECT_EQ(M::BucketCount(&map), count);
        EXPECT_EQ(this->buckets.LiveSizes(),
                  (TestAllocator::Sizes{count * sizeof(typename M::Bucket)}));
        EXPECT_EQ(M::Size(&map), 0u);
        EXPECT_EQ(M::Empty(&map), 1);
        EXPECT_EQ(M::Begin(&map), M::End(&map));
        EXPECT_EQ(M::HashFunction(&map), kOwnHash<M>);
        EXPECT_EQ(M::GetBucketAllocator(&map), this->buckets.operator NuvAllocator*());
        EXPECT_EQ(M::GetNodeAllocator(&map), this->nodes.operator NuvAllocator*());
        Soundness<M>(map, this->nodes, this->buckets);
        M::Destruct(&map);
        EXPECT_EQ(this->buckets.LiveBlocks(), 0u);
    }
    EXPECT_EQ(this->nodes.Requests(), 0u);
}

// The table is too large to be had: what is asked for tells its size.
TYPED_TEST(Unordered, BucketCountsFollowTheWholeTable)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets);
    const auto expectAskedFor = [&](NuvSizeT n, NuvSizeT count)
    {
        this->buckets.RefuseFrom(1);
        EXPECT_EQ(M::Resize(map, n), 0);
        EXPECT_EQ(this->buckets.LastRequest(), count * sizeof(typename M::Bucket)) << n;
        typename M::Container other;
        EXPECT_EQ(M::Construct(&other, kOwnHash<M>, n, this->buckets, this->nodes), nullptr);
        EXPECT_EQ(this->buckets.LastRequest(), count * sizeof(typename M::Bucket)) << n;
        this->buckets.RefuseNothing();
    };
    for (std::size_t i = 1; i < std::size(kAllowedBucketCounts); ++i)
    {
        expectAskedFor(kAllowedBucketCounts[i - 1] + 1, kAllowedBucketCounts[i]);
        expectAskedFor(kAllowedBucketCounts[i], kAllowedBucketCounts[i]);
    }
    EXPECT_EQ(M::BucketCount(map), 2u);
}

TYPED_TEST(Unordered, MoreBucketsThanTheTableHasAreRefusedWithoutARequest)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, kOwnHash<M>, {1, 2});
    const std::size_t requests = this->buckets.Requests();
    for (const NuvSizeT n : {NuvSizeT{4294967292}, NuvSizeT{1} << 40, UINT64_MAX})
    {
        EXPECT_EQ(M::Resize(map, n), 0);
        typename M::Container other;
        EXPECT_EQ(M::Construct(&other, kOwnHash<M>, n, this->buckets, this->nodes), nullptr);
    }
    EXPECT_EQ(this->buckets.Requests(), requests);
    EXPECT_EQ(*map, Plain({1, 2}));
}

TYPED_TEST(Unordered, DestructGivesNodesAndBucketsBackWhereTheyCameFrom)
{
    using M = TypeParam;
    {
        const HeldMap<M> map(this->nodes, this->buckets, kOwnHash<M>, {1, 2, 3, 4});
        EXPECT_GE(this->nodes.LiveBlocks(), 4u);
        EXPECT_EQ(this->buckets.LiveBlocks(), 1u);
    }
    EXPECT_EQ(this->nodes.LiveBlocks(), 0u);
    EXPECT_EQ(this->buckets.LiveBlocks(), 0u);
    EXPECT_EQ(this->buckets.NullsGivenBack(), 0u);
}

// Looking at it ------------------------------------------------------------------------------

TYPED_TEST(Unordered, PositionsAreThoseOfTheList)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, kOwnHash<M>, {1, 2, 3});
    EXPECT_EQ(M::Begin(map), map.map.l.node.next.b);
    EXPECT_EQ(M::BeginConst(map), map.map.l.node.next.b);
    EXPECT_EQ(M::End(map), &map.map.l.node);
    EXPECT_EQ(M::EndConst(map), &map.map.l.node);
    EXPECT_EQ(M::Empty(map), 0);
    EXPECT_EQ(M::Size(map), 3u);
    EXPECT_EQ(M::GetNodeSize(), M::List::GetNodeSize());
}

TYPED_TEST(Unordered, DumpChangesNothing)
{
    using M = TypeParam;
    const HeldMap<M> map(this->nodes, this->buckets, kOwnHash<M>, {1, 2, 3});
    const Entries before = *map;
    M::Dump(map, "map", 4);
    EXPECT_EQ(*map, before);
    map.ExpectSound();
}

TYPED_TEST(Unordered, LookupsFindWhatIsThereAndTheEndForTheRest)
{
    using M = TypeParam;
    for (const auto hash : {kOwnHash<M>, &ConstantHash<typename M::Key>})
    {
        HeldMap<M> map(this->nodes, this->buckets, hash, {1, 3, 5, 7, 9});
        const auto end = M::End(map);
        for (int number = 0; number <= 10; ++number)
        {
            const KeyOf<M> key(number);
            const auto at = M::Find(map, key);
            const auto range = M::EqualRange(map, key);
            const auto constRange = M::EqualRangeConst(map, key);
            EXPECT_EQ(M::FindConst(map, key), at);
            EXPECT_EQ(range.first, at);
            EXPECT_EQ(constRange.first, at);
            EXPECT_EQ(constRange.second, range.second);
            EXPECT_EQ(M::Count(map, key), static_cast<NuvSizeT>(number % 2));
            EXPECT_EQ(at == end, number % 2 == 0);
            EXPECT_EQ(range.second, at == end ? end : at->next.b);
            if (at != end)
            {
                EXPECT_EQ(NumberOf(*M::List::ForwardKind::ContentOf(&at)), number);
            }
        }
    }
}

TYPED_TEST(Unordered, StatisticsAreTheShortestAndTheLongestRun)
{
    using M = TypeParam;
    typename M::Statistics statistics;
    HeldMap<M> map(this->nodes, this->buckets, NumberHash<typename M::Key>);
    M::GetStatistics(map, &statistics);
    EXPECT_EQ(statistics.loadingMin, 0u);
    EXPECT_EQ(statistics.loadingMax, 0u);
    // Of three buckets: 0, 3 and 6 in the first, 1 and 4 in the second, 2 in the third.
    this->buckets.RefuseFrom(2);
    for (const int number : {0, 1, 2, 3, 4, 6})
        EXPECT_EQ(map.Insert(number), 1);
    this->buckets.RefuseNothing();
    ASSERT_EQ(M::BucketCount(map), 3u);
    M::GetStatistics(map, &statistics);
    EXPECT_EQ(statistics.loadingMin, 1u);
    EXPECT_EQ(statistics.loadingMax, 3u);
}

// Buckets ------------------------------------------------------------------------------------

TYPED_TEST(Unordered, BucketsAreCopiedAsTheyAreAndOrderedByCountAlone)
{
    using M = TypeParam;
    const Sample<typename M::Bucket> one(1);
    typename M::Bucket x;
    EXPECT_EQ(M::BucketConstructCopy(&x, one), &x);
    EXPECT_EQ(NumberOf(x), 1);
    EXPECT_EQ(M::BucketEqual(&x, one), 1);
    EXPECT_EQ(M::BucketLess(&x, one), 0);

    typename M::Bucket otherCount = x;
    otherCount.count = 2;
    EXPECT_EQ(M::BucketEqual(&x, &otherCount), 0);
    EXPECT_EQ(M::BucketLess(&x, &otherCount), 1);
    EXPECT_EQ(M::BucketLess(&otherCount, &x), 0);

    typename M::Bucket otherFirst = *Sample<typename M::Bucket>(8);
    otherFirst.count = x.count;
    EXPECT_EQ(M::BucketEqual(&x, &otherFirst), 0);
    EXPECT_EQ(M::BucketLess(&x, &otherFirst), 0);
    EXPECT_EQ(M::BucketLess(&otherFirst, &x), 0);

    EXPECT_EQ(M::BucketAssign(&x, &otherCount), &x);
    EXPECT_EQ(M::BucketEqual(&x, &otherCount), 1);
    M::BucketDestruct(&x);
    EXPECT_EQ(M::BucketEqual(&x, &otherCount), 1);
}

TEST(ConstraintIdHash, IsTheNumberItself)
{
    for (const NuvUint number : {0u, 1u, 2147483648u, 4294967295u})
        EXPECT_EQ(NuvConstraintIdHash(&number), number);
}
}  // namespace
