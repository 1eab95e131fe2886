// The order of a map's entries, which is contract: the rows of a model stand in it. Insertion,
// growth and removal by hand, with a hash that tells each key's bucket.
#include "tests/core/containers/UnorderedSupport.hpp"

namespace
{
template <class Instantiation>
class UnorderedOrder : public UnorderedTest<Instantiation>
{
};

TYPED_TEST_SUITE(UnorderedOrder, MapTypes);

// Insertion ----------------------------------------------------------------------------------

TYPED_TEST(UnorderedOrder, ANewEntryEndsItsBucketsRunAndAnEmptyBucketsFirstEndsTheList)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, NumberHash<typename M::Key>, {1, 2, 3, 4});
    ASSERT_EQ(M::BucketCount(map), 7u);
    EXPECT_EQ(*map, Plain({1, 2, 3, 4}));
    map.Insert(8);
    EXPECT_EQ(*map, Plain({1, 8, 2, 3, 4}));
    map.Insert(15);
    EXPECT_EQ(*map, Plain({1, 8, 15, 2, 3, 4}));
    map.Insert(11);
    EXPECT_EQ(*map, Plain({1, 8, 15, 2, 3, 4, 11}));
    map.ExpectSound();
}

TYPED_TEST(UnorderedOrder, GrowthTurnsTheRunsOfANewBucketAround)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, NumberHash<typename M::Key>, {1, 18, 35, 2, 52});
    ASSERT_EQ(M::BucketCount(map), 7u);
    EXPECT_EQ(*map, Plain({1, 18, 35, 2, 52}));
    const auto nodeOf18 = map.Find(18);
    EXPECT_EQ(M::Resize(map, 8), 1);
    EXPECT_EQ(M::BucketCount(map), 17u);
    // 1, 18, 35 and 52 share a bucket now; 2 stands behind it, where its bucket began.
    EXPECT_EQ(*map, Plain({52, 35, 18, 1, 2}));
    EXPECT_EQ(map.Find(18), nodeOf18);
    map.ExpectSound();
}

TYPED_TEST(UnorderedOrder, AnInsertionThatFindsItsKeyGrowsTheTableAllTheSame)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, NumberHash<typename M::Key>, {1, 2});
    ASSERT_EQ(M::BucketCount(map), 2u);
    EXPECT_EQ(map.Insert(2), 0);
    EXPECT_EQ(M::BucketCount(map), 3u);
    EXPECT_EQ(*map, Plain({1, 2}));
    map.ExpectSound();
}

TYPED_TEST(UnorderedOrder, DuplicatesGrowTheTableAsOtherEntriesDo)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets);
    for (const NuvSizeT expected : {2u, 2u, 3u, 7u, 7u, 7u, 7u, 17u})
    {
        EXPECT_NE(M::InsertDuplicate(map, Entry<M>(1, 1)), nullptr);
        EXPECT_EQ(M::BucketCount(map), expected);
    }
    map.ExpectSound();
}

TYPED_TEST(UnorderedOrder, ResizeToWhatIsThereChangesNothing)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, ConstantHash<typename M::Key>, {1, 2, 3, 4});
    const Entries before = *map;
    const std::size_t requests = this->buckets.Requests();
    for (const NuvSizeT n : {0u, 4u, 7u})
        EXPECT_EQ(M::Resize(map, n), 1);
    EXPECT_EQ(*map, before);
    EXPECT_EQ(this->buckets.Requests(), requests);
}

TYPED_TEST(UnorderedOrder, ARefusedGrowthLeavesTheEntryInTheSmallerTable)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, NumberHash<typename M::Key>, {1, 2});
    this->buckets.RefuseFrom(1);
    for (const int number : {3, 4, 5})
    {
        EXPECT_EQ(map.Insert(number), 1);
        map.ExpectSound();
    }
    EXPECT_EQ(M::BucketCount(map), 2u);
    EXPECT_EQ(*map, Plain({1, 3, 5, 2, 4}));
    this->buckets.RefuseNothing();
    EXPECT_EQ(map.Insert(6), 1);
    EXPECT_EQ(M::BucketCount(map), 7u);
    EXPECT_EQ(*map, Plain({1, 3, 5, 2, 4, 6}));
    map.ExpectSound();
}

// Equal keys ---------------------------------------------------------------------------------

TYPED_TEST(UnorderedOrder, ADuplicateStandsBeforeTheFirstOfItsKey)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, NumberHash<typename M::Key>);
    // Seven buckets, so that 1, 8 and 15 share one.
    ASSERT_EQ(M::Resize(map, 7), 1);
    for (const int number : {1, 8, 2})
        EXPECT_EQ(map.Insert(number), 1);
    const auto first = map.Find(8);
    const auto duplicate = M::InsertDuplicate(map, Entry<M>(8, 30));
    EXPECT_EQ(duplicate->next.b, first);
    EXPECT_EQ(*map, (Entries{{1, 1}, {8, 30}, {8, 8}, {2, 2}}));
    M::InsertDuplicate(map, Entry<M>(1, 40));
    EXPECT_EQ(*map, (Entries{{1, 40}, {1, 1}, {8, 30}, {8, 8}, {2, 2}}));
    M::InsertDuplicate(map, Entry<M>(15, 50));
    EXPECT_EQ(*map, (Entries{{1, 40}, {1, 1}, {8, 30}, {8, 8}, {15, 50}, {2, 2}}));
    M::InsertDuplicate(map, Entry<M>(3, 60));
    EXPECT_EQ(*map, (Entries{{1, 40}, {1, 1}, {8, 30}, {8, 8}, {15, 50}, {2, 2}, {3, 60}}));
    EXPECT_EQ(M::Size(map), 7u);
    map.ExpectSound();

    const auto range = M::EqualRange(map, KeyOf<M>(8));
    EXPECT_EQ(range.first, duplicate);
    EXPECT_EQ(range.second, map.Find(15));
    EXPECT_EQ(M::Count(map, KeyOf<M>(8)), 2u);
    EXPECT_EQ(M::Find(map, KeyOf<M>(8)), duplicate);
    const auto result = M::Insert(map, Entry<M>(8, 70));
    EXPECT_EQ(result.first, duplicate);
    EXPECT_EQ(result.second, 0);
}

TYPED_TEST(UnorderedOrder, GrowthKeepsEqualKeysTogetherAndInOrder)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, NumberHash<typename M::Key>, {1, 18});
    M::InsertDuplicate(map, Entry<M>(1, 30));
    M::InsertDuplicate(map, Entry<M>(18, 40));
    ASSERT_EQ(M::Resize(map, 17), 1);
    EXPECT_EQ(*map, (Entries{{18, 40}, {18, 18}, {1, 30}, {1, 1}}));
    map.ExpectSound();
}

TYPED_TEST(UnorderedOrder, ARangeOfEqualKeysMayEndAtTheEnd)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, kOwnHash<M>);
    for (const int value : {1, 2, 3})
        M::InsertDuplicate(map, Entry<M>(5, value));
    EXPECT_EQ(*map, (Entries{{5, 3}, {5, 2}, {5, 1}}));
    EXPECT_EQ(M::Count(map, KeyOf<M>(5)), 3u);
    EXPECT_EQ(M::EqualRange(map, KeyOf<M>(5)).second, M::End(map));
    EXPECT_EQ(M::EqualRangeConst(map, KeyOf<M>(5)).second, M::EndConst(map));
}

// Removal ------------------------------------------------------------------------------------

TYPED_TEST(UnorderedOrder, EraseReturnsTheFollowingEntryAndCorrectsTheBucket)
{
    using M = TypeParam;
    const Entries all = Plain({1, 8, 15, 2, 3, 4});
    for (int place = 0; place < 6; ++place)
    {
        HeldMap<M> map(this->nodes, this->buckets, NumberHash<typename M::Key>,
                       {1, 2, 3, 4, 8, 15});
        ASSERT_EQ(*map, all);
        auto position = M::Begin(map);
        for (int i = 0; i < place; ++i)
            position = position->next.b;
        const auto following = position->next.b;
        EXPECT_EQ(M::Erase(map, position), following);
        Entries expected = all;
        expected.erase(expected.begin() + place);
        EXPECT_EQ(*map, expected);
        EXPECT_EQ(M::Size(map), 5u);
        EXPECT_EQ(M::BucketCount(map), 7u);
        map.ExpectSound();
    }
}

TYPED_TEST(UnorderedOrder, EraseRangeReturnsItsLastPosition)
{
    using M = TypeParam;
    const Entries all = Plain({1, 8, 15, 2, 3, 4});
    for (int first = 0; first <= 6; ++first)
        for (int last = first; last <= 6; ++last)
        {
            HeldMap<M> map(this->nodes, this->buckets, NumberHash<typename M::Key>,
                           {1, 2, 3, 4, 8, 15});
            auto from = M::Begin(map);
            for (int i = 0; i < first; ++i)
                from = from->next.b;
            auto to = from;
            for (int i = first; i < last; ++i)
                to = to->next.b;
            EXPECT_EQ(M::EraseRange(map, from, to), to);
            Entries expected = all;
            expected.erase(expected.begin() + first, expected.begin() + last);
            EXPECT_EQ(*map, expected);
            map.ExpectSound();
        }
}

TYPED_TEST(UnorderedOrder, EraseKeyRemovesAllOfItsKeyAndCountsThem)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, ConstantHash<typename M::Key>, {1, 2, 3});
    M::InsertDuplicate(map, Entry<M>(2, 30));
    M::InsertDuplicate(map, Entry<M>(2, 40));
    EXPECT_EQ(M::EraseKey(map, KeyOf<M>(4)), 0u);
    EXPECT_EQ(M::EraseKey(map, KeyOf<M>(2)), 3u);
    EXPECT_EQ(M::Size(map), 2u);
    EXPECT_EQ(M::Count(map, KeyOf<M>(2)), 0u);
    map.ExpectSound();
    EXPECT_EQ(M::EraseKey(map, KeyOf<M>(1)), 1u);
    EXPECT_EQ(*map, Plain({3}));
    EXPECT_EQ(M::EraseKey(map, KeyOf<M>(3)), 1u);
    EXPECT_EQ(M::EraseKey(map, KeyOf<M>(3)), 0u);
    EXPECT_EQ(M::Empty(map), 1);
    map.ExpectSound();
}

TYPED_TEST(UnorderedOrder, EraseKeyTakesAnEntrysOwnKey)
{
    using M = TypeParam;
    for (int own = 0; own < 3; ++own)
    {
        HeldMap<M> map(this->nodes, this->buckets, kOwnHash<M>, {1, 3});
        for (const int value : {10, 20, 30})
            M::InsertDuplicate(map, Entry<M>(2, value));
        auto position = map.Find(2);
        for (int i = 0; i < own; ++i)
            position = position->next.b;
        EXPECT_EQ(M::EraseKey(map, &M::List::ForwardKind::ContentOf(&position)->first), 3u);
        EXPECT_EQ(M::Size(map), 2u);
        EXPECT_EQ(map.Find(2), M::End(map));
        map.ExpectSound();
    }
}

TYPED_TEST(UnorderedOrder, InsertTakesAnEntryOfTheMapItself)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, kOwnHash<M>, {1, 2});
    const auto first = map.Find(1);
    const auto result = M::Insert(map, M::List::ForwardKind::ContentOf(&first));
    EXPECT_EQ(result.first, first);
    EXPECT_EQ(result.second, 0);
    const auto duplicate = M::InsertDuplicate(map, M::List::ForwardKind::ContentOf(&first));
    EXPECT_EQ(duplicate->next.b, first);
    EXPECT_EQ(M::Count(map, KeyOf<M>(1)), 2u);
    map.ExpectSound();
}

TYPED_TEST(UnorderedOrder, ClearKeepsTheBuckets)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, kOwnHash<M>, {1, 2, 3, 4});
    const auto* const table = map.map.v.begin;
    const std::size_t requests = this->buckets.Requests();
    for (int round = 0; round < 2; ++round)
    {
        M::Clear(map);
        EXPECT_EQ(M::Empty(map), 1);
        EXPECT_EQ(M::Size(map), 0u);
        EXPECT_EQ(M::BucketCount(map), 7u);
        EXPECT_EQ(map.map.v.begin, table);
        EXPECT_EQ(this->nodes.LiveBlocks(), 0u);
        map.ExpectSound();
    }
    EXPECT_EQ(this->buckets.Requests(), requests);
    EXPECT_EQ(map.Insert(5), 1);
    EXPECT_EQ(*map, Plain({5}));
}
}  // namespace
