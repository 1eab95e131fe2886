// What the tests of the maps share: a map that a test holds, its entries as pairs of numbers, hash
// functions that collide in different ways, and the invariant.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <utility>
#include <vector>

#include "tests/support/Elements.hpp"
#include "tests/support/Instantiations.hpp"
#include "tests/support/RefusedAllocations.hpp"
#include "tests/support/TestAllocator.hpp"

/// (number of the key, number of the value), in the order of the map's list.
using Entries = std::vector<std::pair<int, int>>;

/// The numbers of buckets that a map may have.
inline constexpr NuvSizeT kAllowedBucketCounts[] = {
    2,        3,        7,         17,        31,        61,         127,        257,
    509,      1021,     2053,      4093,      8191,      16381,      32771,      65537,
    131071,   262147,   524287,    1048573,   2097143,   4194301,    8388617,    16777213,
    33554467, 67108859, 134217757, 268435459, 536870909, 1073741827, 2147483647, 4294967291};

/// The hash that the model uses for keys of this type.
template <class Key>
inline constexpr NuvSizeT (*hashOf)(const Key*) = nullptr;

template <>
inline constexpr NuvSizeT (*hashOf<NuvString>)(const NuvString*) = NuvStringHash;

template <>
inline constexpr NuvSizeT (*hashOf<NuvUint>)(const NuvUint*) = NuvConstraintIdHash;

template <class M>
inline constexpr typename M::HashFunctionType kOwnHash = hashOf<typename M::Key>;

/// All keys meet in one bucket.
template <class Key>
NuvSizeT ConstantHash(const Key*)
{
    return 6;
}

/// The number of the key: a test can tell its bucket.
template <class Key>
NuvSizeT NumberHash(const Key* key)
{
    return static_cast<NuvSizeT>(Numbered<Key>::NumberOf(*key));
}

/// Four values beyond 32 bits, which a remainder of the lower half would take for one.
template <class Key>
NuvSizeT WideHash(const Key* key)
{
    return (NumberHash(key) % 4 + 1) << 32;
}

/// A key for the length of a scope.
template <class M>
using KeyOf = Sample<typename M::Key>;

/// An entry with numbers of its own for key and value.
template <class M>
class Entry
{
public:
    Entry(int key, int number, NuvAllocator* allocator = Heap())
    {
        if (!Numbered<typename M::Key>::Make(&value.first, key, allocator) ||
            !Numbered<typename M::Value>::Make(&value.second, number, allocator))
            ADD_FAILURE() << "no room for entry number " << key;
    }

    ~Entry()
    {
        Numbered<typename M::Element>::Destruct(&value);
    }

    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;

    operator const typename M::Element *() const
    {
        return &value;
    }

    typename M::Element value;
};

template <class Map>
Entries EntriesOf(const Map& x)
{
    Entries entries;
    for (auto link = x.l.node.next; link.b != &x.l.node; link = link.b->next)
        entries.emplace_back(NumberOf(link.n->obj.first), NumberOf(link.n->obj.second));
    return entries;
}

/// The list is a ring of blocks of the node's size, as long as `size`; every bucket's run is
/// contiguous, of its length, and of its keys; equal keys stand together; an empty bucket's `first`
/// is the end.
template <class M>
class Soundness
{
public:
    using Map = typename M::Container;
    using Link = typename M::List::Link;
    using Bucket = typename M::Bucket;

    Soundness(const Map& x, const TestAllocator& nodes, const TestAllocator& buckets)
        : map(x), end(&x.l.node)
    {
        ExpectRing(nodes);
        if (::testing::Test::HasFatalFailure())
            return;
        if (M::BucketCount(&x) != 0)
        {
            EXPECT_EQ(buckets.SizeOf(x.v.begin),
                      static_cast<NuvSizeT>(x.v.endBuf - x.v.begin) * sizeof(Bucket));
            EXPECT_TRUE(std::count(std::begin(kAllowedBucketCounts), std::end(kAllowedBucketCounts),
                                   M::BucketCount(&x)));
        }
        NuvSizeT sum = 0;
        for (const Bucket* bucket = x.v.begin; bucket != x.v.end; ++bucket)
        {
            ExpectRun(*bucket);
            sum += bucket->count;
        }
        if (M::BucketCount(&x) != 0)
        {
            EXPECT_EQ(sum, x.size);
        }
        ExpectEqualKeysTogether();
    }

private:
    void ExpectRing(const TestAllocator& nodes) const
    {
        NuvSizeT length = 0;
        for (const Link* link = end->next.b; link != end; link = link->next.b, ++length)
        {
            ASSERT_EQ(link->prev.b->next.b, link);
            ASSERT_EQ(nodes.SizeOf(link), M::GetNodeSize());
        }
        ASSERT_EQ(end->prev.b->next.b, end);
        EXPECT_EQ(length, map.size);
        nodes.CheckGuards();
    }

    void ExpectRun(const Bucket& bucket) const
    {
        if (bucket.count == 0)
        {
            EXPECT_EQ(bucket.first, end);
            return;
        }
        const Link* link = bucket.first;
        for (NuvSizeT i = 0; i != bucket.count; ++i, link = link->next.b)
        {
            ASSERT_NE(link, end);
            EXPECT_EQ(&BucketOf(link), &bucket);
        }
    }

    void ExpectEqualKeysTogether() const
    {
        std::vector<int> seen;
        const Link* link = end->next.b;
        while (link != end)
        {
            const int key = KeyNumber(link);
            EXPECT_EQ(std::count(seen.begin(), seen.end(), key), 0) << "key " << key;
            seen.push_back(key);
            while (link != end && KeyNumber(link) == key)
                link = link->next.b;
        }
    }

    static int KeyNumber(const Link* link)
    {
        return NumberOf(M::List::ConstForwardKind::ContentOf(&link)->first);
    }

    const Bucket& BucketOf(const Link* link) const
    {
        const NuvSizeT hash = map.hash(&M::List::ConstForwardKind::ContentOf(&link)->first);
        return map.v.begin[hash % M::BucketCount(&map)];
    }

    const Map& map;
    const Link* end;
};

/// A map for the length of a scope, its nodes and its buckets on an allocator each; it converts to
/// the pointer of a call.
template <class M>
class HeldMap
{
public:
    using Container = typename M::Container;
    using Hash = typename M::HashFunctionType;

    HeldMap(TestAllocator& allocatorOfNodes, TestAllocator& allocatorOfBuckets,
            Hash hash = kOwnHash<M>, std::initializer_list<int> numbers = {})
        : nodes(allocatorOfNodes), buckets(allocatorOfBuckets)
    {
        EXPECT_EQ(M::Construct(&map, hash, 0, buckets, nodes), &map);
        for (const int number : numbers)
            EXPECT_EQ(Insert(number), 1) << number;
    }

    ~HeldMap()
    {
        M::Destruct(&map);
    }

    HeldMap(const HeldMap&) = delete;
    HeldMap& operator=(const HeldMap&) = delete;

    operator Container*()
    {
        return &map;
    }

    operator const Container*() const
    {
        return &map;
    }

    Entries operator*() const
    {
        return EntriesOf(map);
    }

    /// @return whether entry (number, number) is new.
    NuvBool Insert(int number)
    {
        return M::Insert(&map, Entry<M>(number, number, nodes)).second;
    }

    typename M::Iterator Find(int key)
    {
        return M::Find(&map, KeyOf<M>(key));
    }

    void ExpectSound() const
    {
        Soundness<M>(map, nodes, buckets);
    }

    Container map;
    TestAllocator& nodes;
    TestAllocator& buckets;
};

/// The entries (n, n).
inline Entries Plain(std::initializer_list<int> numbers)
{
    Entries entries;
    for (const int number : numbers)
        entries.emplace_back(number, number);
    return entries;
}

template <class Instantiation>
class UnorderedTest : public ::testing::Test
{
protected:
    TestAllocator nodes;
    TestAllocator buckets;
};
