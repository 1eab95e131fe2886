// The hash map when the allocator refuses: every operation that takes a node or a table, every
// request of it, for every instantiation. Nodes and tables come from an allocator each where a test
// is about one of them.
#include <memory>
#include <vector>

#include "tests/core/containers/UnorderedSupport.hpp"

namespace
{
template <class Instantiation>
class UnorderedRefused : public ::testing::Test
{
};

TYPED_TEST_SUITE(UnorderedRefused, MapTypes);

/// A map, made before anything is refused; all that it takes later comes from the allocator that
/// refuses, copies of names too.
template <class M>
std::unique_ptr<HeldMap<M>> Made(TestAllocator& allocator, std::initializer_list<int> numbers)
{
    const auto spared = allocator.Spare();
    return std::make_unique<HeldMap<M>>(allocator, allocator, kOwnHash<M>, numbers);
}

template <class M>
std::unique_ptr<Entry<M>> MadeEntry(TestAllocator& allocator, int key, int value)
{
    const auto spared = allocator.Spare();
    return std::make_unique<Entry<M>>(key, value, allocator);
}

/// Every entry is reached by a walk and found by its own key, whatever became of the key.
template <class M>
void ExpectEveryEntryFound(typename M::Container* map)
{
    NuvSizeT length = 0;
    for (auto link = M::Begin(map); link != M::End(map); link = link->next.b, ++length)
    {
        const auto& key = M::List::ForwardKind::ContentOf(&link)->first;
        EXPECT_NE(M::Find(map, &key), M::End(map));
        EXPECT_GE(M::Count(map, &key), 1u);
    }
    EXPECT_EQ(length, M::Size(map));
}

TYPED_TEST(UnorderedRefused, ConstructAnswersNullAndHoldsNothing)
{
    using M = TypeParam;
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            typename M::Container map;
            const auto* const result = M::Construct(&map, kOwnHash<M>, 5, allocator, allocator);
            EXPECT_EQ(result, allocator.Refusals() == 0 ? &map : nullptr);
            if (!result)
            {
                EXPECT_EQ(allocator.LiveBlocks(), 0u);
            }
            M::Destruct(&map);
            EXPECT_EQ(map.size, 0u);
            EXPECT_EQ(allocator.LiveBlocks(), 0u);
            EXPECT_EQ(allocator.NullsGivenBack(), 0u);
        });
}

TYPED_TEST(UnorderedRefused, ResizeAnswersFalseAndChangesNothing)
{
    using M = TypeParam;
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            const auto map = Made<M>(allocator, {1, 2, 3, 4});
            const Entries before = **map;
            const void* const table = map->map.v.begin;
            const bool isDone = M::Resize(*map, 8) == 1;
            EXPECT_EQ(isDone, allocator.Refusals() == 0);
            EXPECT_EQ(M::BucketCount(*map), isDone ? 17u : 7u);
            if (!isDone)
            {
                EXPECT_EQ(**map, before);
                EXPECT_EQ(map->map.v.begin, table);
            }
            map->ExpectSound();
        });
}

// Of the requests of an insertion that grows, the table's is passed over, the node's is reported,
// and those inside the entry's copy go unnoticed.
TYPED_TEST(UnorderedRefused, InsertAnswersTheExceptionalIteratorAndFalseForARefusedNode)
{
    using M = TypeParam;
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            const auto map = Made<M>(allocator, {1, 2, 3});
            const auto entry = MadeEntry<M>(allocator, 4, 4);
            const auto result = M::Insert(*map, *entry);
            EXPECT_EQ(result.second, result.first != nullptr);
            EXPECT_EQ(M::Size(*map), result.first ? 4u : 3u);
            for (const int number : {1, 2, 3})
                EXPECT_NE(map->Find(number), M::End(*map));
            if (allocator.Refusals() == 0)
            {
                EXPECT_EQ(map->Find(4), result.first);
                EXPECT_EQ(M::BucketCount(*map), 7u);
            }
            ExpectEveryEntryFound<M>(*map);
            map->ExpectSound();
        });
}

TYPED_TEST(UnorderedRefused, InsertDuplicateAnswersTheExceptionalIteratorForARefusedNode)
{
    using M = TypeParam;
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            const auto map = Made<M>(allocator, {1, 2, 3});
            const auto entry = MadeEntry<M>(allocator, 2, 4);
            const auto node = M::InsertDuplicate(*map, *entry);
            EXPECT_EQ(M::Size(*map), node ? 4u : 3u);
            if (allocator.Refusals() == 0)
            {
                EXPECT_EQ(map->Find(2), node);
                EXPECT_EQ(M::Count(*map, KeyOf<M>(2)), 2u);
            }
            ExpectEveryEntryFound<M>(*map);
            map->ExpectSound();
        });
}

TYPED_TEST(UnorderedRefused, ARefusedNodeLeavesTheEntriesAsTheyWere)
{
    using M = TypeParam;
    TestAllocator nodes;
    TestAllocator buckets;
    HeldMap<M> map(nodes, buckets, kOwnHash<M>, {1, 2, 3, 4});
    const Entries before = *map;
    nodes.RefuseFrom(1);
    const auto result = M::Insert(map, Entry<M>(5, 5));
    EXPECT_EQ(result.first, nullptr);
    EXPECT_EQ(result.second, 0);
    EXPECT_EQ(M::InsertDuplicate(map, Entry<M>(1, 5)), nullptr);
    EXPECT_EQ(*map, before);
    map.ExpectSound();
    // A present key needs no node.
    EXPECT_EQ(M::Insert(map, Entry<M>(2, 9)).first, map.Find(2));
}

TYPED_TEST(UnorderedRefused, AnEntryWhoseCopyWasRefusedCanBeErased)
{
    using M = TypeParam;
    for (const bool byKey : {false, true})
        ForEachRefusedAllocation(
            [byKey](TestAllocator& allocator)
            {
                const auto map = Made<M>(allocator, {1, 2, 3, 5, 6, 7});
                const auto entry = MadeEntry<M>(allocator, 4, 4);
                const auto result = M::Insert(*map, *entry);
                if (!result.first)
                    return;
                if (byKey)
                {
                    EXPECT_EQ(
                        M::EraseKey(*map, &M::List::ForwardKind::ContentOf(&result.first)->first),
                        1u);
                }
                else
                {
                    const auto following = result.first->next.b;
                    EXPECT_EQ(M::Erase(*map, result.first), following);
                }
                EXPECT_EQ(M::Size(*map), 6u);
                map->ExpectSound();
                for (const int number : {1, 2, 3, 5, 6, 7})
                    EXPECT_NE(map->Find(number), M::End(*map));
            });
}

TEST(UnorderedByNameRefused, SeveralEntriesWithoutTheirNamesStayTogetherThroughGrowth)
{
    using M = VariableMap;
    TestAllocator nodes;
    TestAllocator buckets;
    HeldMap<M> map(nodes, buckets, kOwnHash<M>);
    for (int number = 1; number <= 40; ++number)
    {
        const Entry<M> entry(number, number, nodes);
        // Of every third entry the copy of the key is refused: the request after the node's.
        if (number % 3 == 0)
            nodes.RefuseOnly(2);
        EXPECT_NE(M::Insert(map, entry).first, nullptr);
        nodes.RefuseNothing();
        map.ExpectSound();
    }
    EXPECT_EQ(M::Size(map), 40u);
    EXPECT_EQ(M::Count(map, Name("")), 13u);
    EXPECT_EQ(M::EraseKey(map, Name("")), 13u);
    EXPECT_EQ(M::Size(map), 27u);
    map.ExpectSound();
}

// Copies -------------------------------------------------------------------------------------

TYPED_TEST(UnorderedRefused, ConstructCopyOfARefusedNodeAnswersNullAndHoldsNothing)
{
    using M = TypeParam;
    TestAllocator buckets;
    ForEachRefusedAllocation(
        [&](TestAllocator& allocator)
        {
            const auto source = [&]
            {
                const auto spared = allocator.Spare();
                auto map = std::make_unique<HeldMap<M>>(allocator, buckets, kOwnHash<M>);
                // The names lie elsewhere: only nodes are asked for.
                for (const int number : {1, 2, 3, 4})
                    M::Insert(*map, Entry<M>(number, number));
                return map;
            }();
            const std::size_t blocks = allocator.LiveBlocks();
            typename M::Container copy;
            const auto* const result = M::ConstructCopy(&copy, *source);
            EXPECT_EQ(result, allocator.Refusals() == 0 ? &copy : nullptr);
            EXPECT_EQ(EntriesOf(copy), result ? **source : Entries{});
            if (!result)
            {
                EXPECT_EQ(M::Size(&copy), 0u);
                EXPECT_EQ(allocator.LiveBlocks(), blocks);
                EXPECT_EQ(buckets.LiveBlocks(), 1u);
            }
            M::Destruct(&copy);
            EXPECT_EQ(allocator.LiveBlocks(), blocks);
        });
}

TYPED_TEST(UnorderedRefused, ConstructCopyOfARefusedTableAnswersNullAndLeavesItsEntriesInTheList)
{
    using M = TypeParam;
    TestAllocator nodes;
    TestAllocator buckets;
    HeldMap<M> source(nodes, buckets, kOwnHash<M>, {1, 2, 3, 4});
    const std::size_t blocks = nodes.LiveBlocks();
    buckets.RefuseFrom(1);
    typename M::Container copy;
    EXPECT_EQ(M::ConstructCopy(&copy, source), nullptr);
    EXPECT_EQ(EntriesOf(copy), *source);
    EXPECT_EQ(nodes.LiveBlocks(), 2 * blocks);
    EXPECT_EQ(buckets.LiveBlocks(), 1u);
    // Released by hand, as a list.
    M::List::Destruct(&copy.l);
    EXPECT_EQ(nodes.LiveBlocks(), blocks);
    EXPECT_EQ(*source, EntriesOf(source.map));
    source.ExpectSound();
}

TYPED_TEST(UnorderedRefused, ConstructCopyUnderAnyRefusalCanBeDestructed)
{
    using M = TypeParam;
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            const auto source = Made<M>(allocator, {1, 2, 3, 4});
            const Entries before = **source;
            const std::size_t blocks = allocator.LiveBlocks();
            typename M::Container copy;
            const auto* const result = M::ConstructCopy(&copy, *source);
            if (result)
            {
                EXPECT_EQ(M::Size(&copy), 4u);
                ExpectEveryEntryFound<M>(&copy);
            }
            else
            {
                EXPECT_GT(allocator.Refusals(), 0u);
            }
            M::Destruct(&copy);
            EXPECT_EQ(allocator.LiveBlocks(), blocks);
            EXPECT_EQ(**source, before);
        });
}

// The copies of some entries lose their keys and meet in the bucket of the empty one; entries of
// other buckets stood between them.
TEST(UnorderedByNameRefused, EntriesThatLostTheirKeysComeTogetherInACopy)
{
    using M = VariableMap;
    TestAllocator names;
    TestAllocator nodes;
    HeldMap<M> source(nodes, nodes, kOwnHash<M>);
    for (int number = 1; number <= 12; ++number)
        M::Insert(source, Entry<M>(number, number, number % 3 == 1 ? names : Heap()));
    names.RefuseFrom(1);
    typename M::Container copy;
    ASSERT_EQ(M::ConstructCopy(&copy, source), &copy);
    EXPECT_EQ(M::Size(&copy), 12u);
    EXPECT_EQ(M::Count(&copy, Name("")), 4u);
    ExpectEveryEntryFound<M>(&copy);
    Soundness<M>(copy, nodes, nodes);
    // They stand in the order of the source.
    std::vector<int> expected;
    for (const auto& [key, value] : *source)
        if (key % 3 == 1)
            expected.push_back(value);
    std::vector<int> found;
    const auto range = M::EqualRange(&copy, Name(""));
    for (auto link = range.first; link != range.second; link = link->next.b)
        found.push_back(static_cast<int>(M::List::ForwardKind::ContentOf(&link)->second.index));
    EXPECT_EQ(found, expected);
    EXPECT_EQ(M::EraseKey(&copy, Name("")), 4u);
    EXPECT_EQ(M::Size(&copy), 8u);
    Soundness<M>(copy, nodes, nodes);
    M::Destruct(&copy);
}

// Assignment ---------------------------------------------------------------------------------

TYPED_TEST(UnorderedRefused, AssignAnswersNullAndLeavesAMapThatServesAgain)
{
    using M = TypeParam;
    for (const bool isLonger : {false, true})
        ForEachRefusedAllocation(
            [isLonger](TestAllocator& allocator)
            {
                const auto map = isLonger ? Made<M>(allocator, {11, 12, 13, 14, 15, 16, 17, 18})
                                          : Made<M>(allocator, {11});
                const auto source = Made<M>(allocator, {1001, 1002, 1003, 1004});
                const Entries before = **source;
                const auto* const result = M::Assign(*map, *source);
                if (allocator.Refusals() == 0)
                {
                    EXPECT_EQ(result, &map->map);
                    EXPECT_EQ(**map, before);
                }
                if (result)
                {
                    ExpectEveryEntryFound<M>(*map);
                }
                else
                {
                    // It can be walked, finds nothing without a table, and gets one with the next
                    // entry.
                    EXPECT_EQ(EntriesOf(map->map).size(), M::Size(*map));
                    EXPECT_EQ(M::BucketCount(*map), 0u);
                    const NuvSizeT size = M::Size(*map);
                    EXPECT_EQ(map->Find(1001), M::End(*map));
                    EXPECT_EQ(M::Count(*map, KeyOf<M>(1001)), 0u);
                    EXPECT_EQ(M::EraseKey(*map, KeyOf<M>(1001)), 0u);
                    EXPECT_EQ(M::EqualRange(*map, KeyOf<M>(1001)).second, M::End(*map));
                    const auto spared = allocator.Spare();
                    EXPECT_EQ(map->Insert(5), 1);
                    EXPECT_EQ(M::Size(*map), size + 1);
                    ExpectEveryEntryFound<M>(*map);
                    map->ExpectSound();
                    EXPECT_EQ(M::Assign(*map, *source), &map->map);
                    EXPECT_EQ(**map, before);
                }
                map->ExpectSound();
                EXPECT_EQ(**source, before);
                source->ExpectSound();
            });
}

/// A map that is to be assigned another, all of whose memory is another allocator's.
template <class M>
struct Assignment
{
    TestAllocator nodes;
    TestAllocator buckets;
    TestAllocator elsewhere;
    HeldMap<M> map{nodes, buckets, kOwnHash<M>, {1}};
    HeldMap<M> source{elsewhere, elsewhere, kOwnHash<M>, {1, 2, 3, 4}};
};

TYPED_TEST(UnorderedRefused, AssignAnswersNullForARefusedNode)
{
    using M = TypeParam;
    Assignment<M> assignment;
    auto& [nodes, buckets, elsewhere, map, source] = assignment;
    nodes.RefuseFrom(3);
    EXPECT_EQ(M::Assign(map, source), nullptr);
    EXPECT_EQ(M::Size(map), EntriesOf(map.map).size());
    EXPECT_LT(M::Size(map), 4u);
    EXPECT_EQ(M::BucketCount(map), 0u);
    EXPECT_EQ(buckets.LiveBlocks(), 0u);
}

TEST(UnorderedByNameRefused, WithoutATableNotEvenTheEmptyNameIsFound)
{
    using M = VariableMap;
    TestAllocator nodes;
    TestAllocator buckets;
    HeldMap<M> map(nodes, buckets, kOwnHash<M>);
    const HeldMap<M> source(nodes, nodes, kOwnHash<M>, {1, 2, 3, 4});
    buckets.RefuseFrom(1);
    ASSERT_EQ(M::Assign(map, source), nullptr);
    ASSERT_EQ(M::BucketCount(map), 0u);
    EXPECT_EQ(M::EqualRange(map, Name("")).second, M::End(map));
    EXPECT_EQ(M::EqualRangeConst(map, Name("")).second, M::EndConst(map));
    EXPECT_EQ(M::Count(map, Name("")), 0u);
}

TYPED_TEST(UnorderedRefused, AMapWithoutATableAnswersAsAnEmptyOneAndCanBeEmptied)
{
    using M = TypeParam;
    Assignment<M> assignment;
    auto& [nodes, buckets, elsewhere, map, source] = assignment;
    HeldMap<M> other(nodes, buckets, kOwnHash<M>, {7});
    buckets.RefuseFrom(1);
    ASSERT_EQ(M::Assign(map, source), nullptr);
    ASSERT_EQ(M::BucketCount(map), 0u);
    EXPECT_EQ(*map, *source);
    const auto result = M::Insert(map, Entry<M>(9, 9));
    EXPECT_EQ(result.first, nullptr);
    EXPECT_EQ(result.second, 0);
    EXPECT_EQ(M::InsertDuplicate(map, Entry<M>(9, 9)), nullptr);
    EXPECT_EQ(*map, *source);

    EXPECT_EQ(M::Swap(map, other), 1);
    EXPECT_EQ(*map, Plain({7}));
    map.ExpectSound();
    EXPECT_EQ(M::Swap(map, other), 1);
    other.ExpectSound();
    typename M::Statistics statistics;
    M::GetStatistics(map, &statistics);
    EXPECT_EQ(statistics.loadingMin, UINT64_MAX);
    EXPECT_EQ(statistics.loadingMax, 0u);

    const auto following = M::Erase(map, M::Begin(map));
    EXPECT_EQ(following, M::Begin(map));
    EXPECT_EQ(M::Size(map), 3u);
    M::Clear(map);
    EXPECT_EQ(M::Empty(map), 1);
    EXPECT_EQ(M::BucketCount(map), 0u);
    buckets.RefuseNothing();
    EXPECT_EQ(map.Insert(5), 1);
    EXPECT_EQ(M::BucketCount(map), 2u);
    map.ExpectSound();
}
}  // namespace
