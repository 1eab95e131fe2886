// The hash map: copies, assignment and exchange, for every instantiation.
#include "tests/core/containers/UnorderedSupport.hpp"

namespace
{
template <class Instantiation>
class UnorderedExchange : public UnorderedTest<Instantiation>
{
protected:
    TestAllocator otherNodes;
    TestAllocator otherBuckets;
};

TYPED_TEST_SUITE(UnorderedExchange, MapTypes);

// Copies -------------------------------------------------------------------------------------

TYPED_TEST(UnorderedExchange, ACopyHasTheOrderTheBucketsTheHashAndTheAllocatorsOfItsSource)
{
    using M = TypeParam;
    for (const auto hash :
         {kOwnHash<M>, &ConstantHash<typename M::Key>, &NumberHash<typename M::Key>})
    {
        HeldMap<M> source(this->nodes, this->buckets, hash, {5, 1, 22, 8, 15, 2, 0});
        M::InsertDuplicate(source, Entry<M>(8, 30, this->nodes));
        ASSERT_EQ(M::Resize(source, 32), 1);
        typename M::Container copy;
        ASSERT_EQ(M::ConstructCopy(&copy, source), &copy);
        EXPECT_EQ(EntriesOf(copy), *source);
        EXPECT_EQ(M::BucketCount(&copy), 61u);
        EXPECT_EQ(M::HashFunction(&copy), hash);
        EXPECT_EQ(M::GetNodeAllocator(&copy), this->nodes.operator NuvAllocator*());
        EXPECT_EQ(M::GetBucketAllocator(&copy), this->buckets.operator NuvAllocator*());
        Soundness<M>(copy, this->nodes, this->buckets);

        const Entries before = *source;
        EXPECT_EQ(M::EraseKey(&copy, KeyOf<M>(8)), 2u);
        EXPECT_EQ(M::Insert(&copy, Entry<M>(40, 40, this->nodes)).second, 1);
        EXPECT_EQ(*source, before);
        source.ExpectSound();
        M::Destruct(&copy);
        EXPECT_EQ(*source, before);
    }
}

TYPED_TEST(UnorderedExchange, ACopyOfAnEmptyMapIsEmpty)
{
    using M = TypeParam;
    const HeldMap<M> source(this->nodes, this->buckets);
    typename M::Container copy;
    ASSERT_EQ(M::ConstructCopy(&copy, source), &copy);
    EXPECT_EQ(M::Empty(&copy), 1);
    EXPECT_EQ(M::BucketCount(&copy), 2u);
    EXPECT_EQ(M::Find(&copy, KeyOf<M>(1)), M::End(&copy));
    Soundness<M>(copy, this->nodes, this->buckets);
    M::Destruct(&copy);
}

// Assignment ---------------------------------------------------------------------------------

TYPED_TEST(UnorderedExchange, AssignToItselfChangesNothing)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, kOwnHash<M>, {1, 2, 3});
    const Entries before = *map;
    const std::size_t requests = this->nodes.Requests();
    EXPECT_EQ(M::Assign(map, map), &map.map);
    EXPECT_EQ(*map, before);
    EXPECT_EQ(this->nodes.Requests(), requests);
    map.ExpectSound();
}

TYPED_TEST(UnorderedExchange, AssignKeepsItsAllocatorsAndTakesAllElse)
{
    using M = TypeParam;
    const auto hash = NumberHash<typename M::Key>;
    const std::initializer_list<int> contents[] = {
        {}, {1}, {1, 2, 3}, {9, 8, 7, 6, 5, 4, 3, 2, 1, 0, 11, 12, 13, 14, 15, 16, 17, 18}};
    for (const auto& from : contents)
        for (const auto& to : contents)
        {
            HeldMap<M> source(this->otherNodes, this->otherBuckets, hash, from);
            HeldMap<M> map(this->nodes, this->buckets, kOwnHash<M>, to);
            EXPECT_EQ(M::Assign(map, source), &map.map);
            EXPECT_EQ(*map, *source);
            EXPECT_EQ(M::BucketCount(map), M::BucketCount(source));
            EXPECT_EQ(M::HashFunction(map), typename M::HashFunctionType(hash));
            EXPECT_EQ(M::GetNodeAllocator(map), this->nodes.operator NuvAllocator*());
            EXPECT_EQ(M::GetBucketAllocator(map), this->buckets.operator NuvAllocator*());
            map.ExpectSound();
            source.ExpectSound();
            for (const int number : from)
                EXPECT_NE(map.Find(number), M::End(map));
            EXPECT_EQ(map.Insert(100), 1);
            map.ExpectSound();
        }
}

// Exchange -----------------------------------------------------------------------------------

TYPED_TEST(UnorderedExchange, SwapExchangesEntriesBucketsAndHashWhicheverIsEmpty)
{
    using M = TypeParam;
    const auto hash = NumberHash<typename M::Key>;
    const std::initializer_list<int> contents[] = {{}, {1, 2}, {9, 8, 7, 6, 5, 4, 3}};
    for (const auto& first : contents)
        for (const auto& second : contents)
        {
            HeldMap<M> x(this->nodes, this->buckets, kOwnHash<M>, first);
            HeldMap<M> y(this->nodes, this->buckets, hash, second);
            const Entries entriesOfX = *x;
            const Entries entriesOfY = *y;
            const NuvSizeT bucketsOfX = M::BucketCount(x);
            const NuvSizeT bucketsOfY = M::BucketCount(y);
            const auto* const firstOfX = first.size() ? M::Begin(x) : M::End(y);
            const std::size_t requests = this->nodes.Requests() + this->buckets.Requests();
            EXPECT_EQ(M::Swap(x, y), 1);
            EXPECT_EQ(*x, entriesOfY);
            EXPECT_EQ(*y, entriesOfX);
            EXPECT_EQ(M::BucketCount(x), bucketsOfY);
            EXPECT_EQ(M::BucketCount(y), bucketsOfX);
            EXPECT_EQ(M::HashFunction(x), typename M::HashFunctionType(hash));
            EXPECT_EQ(M::HashFunction(y), kOwnHash<M>);
            EXPECT_EQ(M::Begin(y), firstOfX);
            EXPECT_EQ(this->nodes.Requests() + this->buckets.Requests(), requests);
            x.ExpectSound();
            y.ExpectSound();
        }
}

TYPED_TEST(UnorderedExchange, SwapWithItselfChangesNothing)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, kOwnHash<M>, {1, 2, 3});
    const Entries before = *map;
    EXPECT_EQ(M::Swap(map, map), 1);
    EXPECT_EQ(*map, before);
    map.ExpectSound();
}
}  // namespace
