// Long random sequences of a map's operations, compared after every step with a reference that
// knows the rules of order and nothing of links: one plain sequence of entries, and a number of
// buckets.
#include <random>

#include "tests/core/containers/UnorderedSupport.hpp"
#include "tests/support/Effort.hpp"

namespace
{
/// The rules: a bucket's entries stand together; a new one ends the run of its bucket, or the
/// sequence if it is the bucket's first; a duplicate stands before the first of its key; growth
/// takes the runs of equal keys in order, each before its bucket's earlier ones or, as the bucket's
/// first, to the end.
class Reference
{
public:
    struct Item
    {
        int key;
        int value;
        NuvSizeT hash;
        const void* node;
    };

    /// @return the place of the entry with that key, or of a new one, and whether it is new.
    std::pair<std::size_t, bool> Insert(int key, int value, NuvSizeT hash)
    {
        Grow(items.size() + 1);
        const std::size_t present = Find(key);
        if (present != items.size())
            return {present, false};
        std::size_t place = items.size();
        for (std::size_t i = 0; i != items.size(); ++i)
            if (BucketOf(items[i].hash) == BucketOf(hash))
                place = i + 1;
        Put(place, {key, value, hash, nullptr});
        return {place, true};
    }

    std::size_t InsertDuplicate(int key, int value, NuvSizeT hash)
    {
        const auto [place, isNew] = Insert(key, value, hash);
        if (!isNew)
            Put(place, {key, value, hash, nullptr});
        return place;
    }

    void Grow(NuvSizeT n)
    {
        if (n <= bucketCount)
            return;
        bucketCount =
            *std::lower_bound(std::begin(kAllowedBucketCounts), std::end(kAllowedBucketCounts), n);
        std::vector<Item> former;
        former.swap(items);
        for (std::size_t first = 0; first != former.size();)
        {
            std::size_t last = first;
            while (last != former.size() && former[last].key == former[first].key)
                ++last;
            std::size_t place = 0;
            while (place != items.size() &&
                   BucketOf(items[place].hash) != BucketOf(former[first].hash))
                ++place;
            for (; first != last; ++first)
                Put(place++, former[first]);
        }
    }

    /// @return the first place of that key, or the number of entries.
    std::size_t Find(int key) const
    {
        std::size_t place = 0;
        while (place != items.size() && items[place].key != key)
            ++place;
        return place;
    }

    NuvSizeT Count(int key) const
    {
        NuvSizeT count = 0;
        for (const Item& item : items)
            count += item.key == key;
        return count;
    }

    void Erase(std::size_t first, std::size_t last)
    {
        items.erase(At(first), At(last));
    }

    void EraseKey(int key)
    {
        std::erase_if(items, [key](const Item& item) { return item.key == key; });
    }

    /// (emptiest, fullest) bucket.
    std::pair<NuvSizeT, NuvSizeT> Loads() const
    {
        std::vector<NuvSizeT> loads(bucketCount);
        for (const Item& item : items)
            ++loads[BucketOf(item.hash)];
        return {*std::min_element(loads.begin(), loads.end()),
                *std::max_element(loads.begin(), loads.end())};
    }

    std::vector<Item> items;
    NuvSizeT bucketCount = 2;

private:
    std::vector<Item>::iterator At(std::size_t place)
    {
        return items.begin() + static_cast<std::ptrdiff_t>(place);
    }

    void Put(std::size_t place, const Item& item)
    {
        items.insert(At(place), item);
    }

    NuvSizeT BucketOf(NuvSizeT hash) const
    {
        return hash % bucketCount;
    }
};

/// A map and its reference, taken through the same steps.
template <class M>
class Pairing
{
public:
    Pairing(TestAllocator& nodes, TestAllocator& buckets, typename M::HashFunctionType hash,
            NuvUint seed)
        : map(nodes, buckets, hash), spare(nodes, buckets, hash), random(seed)
    {
    }

    /// One random step, of which most are insertions and erasures of one entry.
    void Step()
    {
        const int key = Below(kKeys);
        const int value = Below(100);
        const int choice = Below(20);
        if (choice < 6)
            Insert(key, value);
        else if (choice < 9)
            InsertDuplicate(key, value);
        else if (choice < 12)
            Erase();
        else if (choice < 14)
            EraseKey(key, Below(2) == 0);
        else if (choice == 14)
            EraseRange();
        else if (choice == 15)
            Resize(Below(50) == 0 ? 600 : Below(70));
        else if (choice == 16)
            Copy();
        else if (choice == 17)
            Assign();
        else if (choice == 18)
            Swap();
        else
            Clear();
    }

    /// The whole state: order, nodes, buckets, and what every lookup answers.
    void Compare()
    {
        map.ExpectSound();
        ASSERT_EQ(M::Size(map), reference.items.size());
        ASSERT_EQ(M::BucketCount(map), reference.bucketCount);
        const auto* link = M::BeginConst(map);
        for (const auto& item : reference.items)
        {
            const auto& entry = *M::List::ConstForwardKind::ContentOf(&link);
            ASSERT_EQ(NumberOf(entry.first), item.key);
            ASSERT_EQ(NumberOf(entry.second), item.value);
            ASSERT_EQ(link, item.node);
            link = link->next.b;
        }
        ASSERT_EQ(link, M::EndConst(map));
        typename M::Statistics statistics;
        M::GetStatistics(map, &statistics);
        EXPECT_EQ(std::make_pair(statistics.loadingMin, statistics.loadingMax), reference.Loads());
        CompareLookups(Below(kKeys));
    }

private:
    static constexpr int kKeys = 40;

    int Below(int n)
    {
        return static_cast<int>(random() % static_cast<unsigned>(n));
    }

    NuvSizeT HashOf(int key) const
    {
        const KeyOf<M> sample(key);
        return M::HashFunction(map)(sample);
    }

    /// The node of a place of the reference; the end after the last.
    typename M::Iterator NodeAt(std::size_t place)
    {
        auto node = M::Begin(map);
        for (; place != 0; --place)
            node = node->next.b;
        return node;
    }

    void CompareLookups(int key)
    {
        const KeyOf<M> sample(key);
        const std::size_t place = reference.Find(key);
        const NuvSizeT count = reference.Count(key);
        const auto range = M::EqualRange(map, sample);
        EXPECT_EQ(M::Find(map, sample), NodeAt(place));
        EXPECT_EQ(M::Count(map, sample), count);
        EXPECT_EQ(range.first, NodeAt(place));
        EXPECT_EQ(range.second, NodeAt(place + count));
    }

    void Insert(int key, int value)
    {
        const auto [place, isNew] = reference.Insert(key, value, HashOf(key));
        const auto result = M::Insert(map, Entry<M>(key, value, map.nodes));
        EXPECT_EQ(result.second, isNew);
        if (isNew)
            reference.items[place].node = result.first;
        EXPECT_EQ(result.first, reference.items[place].node);
    }

    void InsertDuplicate(int key, int value)
    {
        const std::size_t place = reference.InsertDuplicate(key, value, HashOf(key));
        reference.items[place].node = M::InsertDuplicate(map, Entry<M>(key, value, map.nodes));
    }

    void Erase()
    {
        if (reference.items.empty())
            return;
        const auto place = static_cast<std::size_t>(Below(static_cast<int>(M::Size(map))));
        const auto node = NodeAt(place);
        const auto following = node->next.b;
        EXPECT_EQ(M::Erase(map, node), following);
        reference.Erase(place, place + 1);
    }

    void EraseKey(int key, bool isOwnKey)
    {
        const NuvSizeT count = reference.Count(key);
        const auto own = map.Find(key);
        if (isOwnKey && count != 0)
            EXPECT_EQ(M::EraseKey(map, &M::List::ForwardKind::ContentOf(&own)->first), count);
        else
            EXPECT_EQ(M::EraseKey(map, KeyOf<M>(key)), count);
        reference.EraseKey(key);
    }

    void EraseRange()
    {
        const int size = static_cast<int>(M::Size(map));
        const auto first = static_cast<std::size_t>(Below(size + 1));
        const auto last = std::min(first + static_cast<std::size_t>(Below(4)), M::Size(map));
        const auto end = NodeAt(last);
        EXPECT_EQ(M::EraseRange(map, NodeAt(first), end), end);
        reference.Erase(first, last);
    }

    void Resize(int n)
    {
        EXPECT_EQ(M::Resize(map, static_cast<NuvSizeT>(n)), 1);
        reference.Grow(static_cast<NuvSizeT>(n));
    }

    /// The copy takes the map's place.
    void Copy()
    {
        typename M::Container copy;
        ASSERT_EQ(M::ConstructCopy(&copy, map), &copy);
        EXPECT_EQ(M::Swap(map, &copy), 1);
        M::Destruct(&copy);
        RenewNodes();
    }

    /// The spare map, whatever it holds from earlier, takes over.
    void Assign()
    {
        ASSERT_EQ(M::Assign(spare, map), &spare.map);
        EXPECT_EQ(M::Swap(map, spare), 1);
        RenewNodes();
    }

    void Swap()
    {
        EXPECT_EQ(M::Swap(map, spare), 1);
        spare.ExpectSound();
        EXPECT_EQ(M::Swap(spare, map), 1);
        spare.ExpectSound();
    }

    void Clear()
    {
        // Rarely, or no map would grow.
        if (Below(5) != 0)
            return;
        M::Clear(map);
        reference.items.clear();
    }

    void RenewNodes()
    {
        auto node = M::Begin(map);
        for (auto& item : reference.items)
        {
            item.node = node;
            node = node->next.b;
        }
    }

    HeldMap<M> map;
    HeldMap<M> spare;
    Reference reference;
    std::mt19937 random;
};

template <class Instantiation>
class UnorderedAgainstReference : public UnorderedTest<Instantiation>
{
protected:
    void Run(typename Instantiation::HashFunctionType hash, NuvUint firstSeed)
    {
        const NuvUint runs = ShareOf(8U);
        constexpr int kSteps = 400;
        for (NuvUint seed = firstSeed; seed != firstSeed + runs; ++seed)
        {
            Pairing<Instantiation> pairing(this->nodes, this->buckets, hash, seed);
            for (int step = 0; step != kSteps; ++step)
            {
                SCOPED_TRACE(::testing::Message() << "seed " << seed << ", step " << step);
                pairing.Step();
                pairing.Compare();
                if (::testing::Test::HasFailure())
                    return;
            }
        }
    }
};

TYPED_TEST_SUITE(UnorderedAgainstReference, MapTypes);

TYPED_TEST(UnorderedAgainstReference, WithTheMapsOwnHash)
{
    this->Run(kOwnHash<TypeParam>, 100);
}

TYPED_TEST(UnorderedAgainstReference, WithAHashThatTellsTheBucket)
{
    this->Run(NumberHash<typename TypeParam::Key>, 200);
}

TYPED_TEST(UnorderedAgainstReference, WithAHashThatIsTheSameForAll)
{
    this->Run(ConstantHash<typename TypeParam::Key>, 300);
}

TYPED_TEST(UnorderedAgainstReference, WithAHashThatLivesAboveThe32ndBit)
{
    this->Run(WideHash<typename TypeParam::Key>, 400);
}

// A bucket's run of thousands of entries, and every number of buckets on the way to them.
TYPED_TEST(UnorderedAgainstReference, GrowthToThousandsOfEntries)
{
    using M = TypeParam;
    HeldMap<M> map(this->nodes, this->buckets, NumberHash<typename M::Key>);
    Reference reference;
    std::vector<NuvSizeT> counts;
    for (int number = 1; number <= 2100; ++number)
    {
        const int key = number * 17;
        map.Insert(key);
        reference.Insert(key, key, static_cast<NuvSizeT>(key));
        if (counts.empty() || counts.back() != M::BucketCount(map))
            counts.push_back(M::BucketCount(map));
    }
    map.ExpectSound();
    EXPECT_EQ(counts,
              (std::vector<NuvSizeT>{2, 3, 7, 17, 31, 61, 127, 257, 509, 1021, 2053, 4093}));
    Entries expected;
    for (const auto& item : reference.items)
        expected.emplace_back(item.key, item.value);
    EXPECT_EQ(*map, expected);
}
}  // namespace
