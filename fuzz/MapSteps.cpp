// Two maps beside two of the standard library that keep, for each key, its values in order. After a
// refusal the map is what it says it is, if it is sound, and entries whose key was not copied are
// taken out; without one it is what the sequence of operations makes it.
#include "fuzz/Containers.hpp"
#include "tests/core/containers/UnorderedSupport.hpp"

#include <algorithm>
#include <map>

namespace fuzz
{
namespace
{
constexpr int kKeys = 12;

template <class M>
class MapRun
{
public:
    using Wanted = std::map<int, std::vector<int>>;

    MapRun(Input* bytes, typename M::HashFunctionType hash)
        : input(*bytes), x(allocator, allocator, hash), y(allocator, allocator, hash)
    {
    }

    void Run()
    {
        for (int steps = 0; steps != kMostSteps && !input.IsEmpty(); ++steps)
            Take();
    }

private:
    void Take()
    {
        Step step(&input, &allocator);
        const bool isDone = Do(&step);
        if (step.End())
            AcceptWhatIsThere(isDone, step.Operation() == 14);
        else
            EXPECT_TRUE(isDone) << "operation " << step.Operation();
        EXPECT_EQ(ContentOf(x.map), wanted) << "operation " << step.Operation();
        EXPECT_EQ(ContentOf(y.map), wantedOther) << "operation " << step.Operation();
        x.ExpectSound();
        y.ExpectSound();
        ExpectLookups(input.Below(kKeys));
    }

    static Wanted ContentOf(const typename M::Container& map)
    {
        Wanted content;
        for (const auto& [key, value] : EntriesOf(map))
            content[key].push_back(value);
        return content;
    }

    /// A map without its table finds nothing until an insertion makes a new one, and an entry
    /// without its key is found by its place alone. After an assignment some entries may have
    /// kept their former keys, so that equal ones need not stand together: such a map is emptied.
    void AcceptWhatIsThere(bool isDone, bool isAssignment)
    {
        if (isAssignment)
            M::Clear(x);
        if (!isDone)
        {
            const bool isGrown = M::Resize(x, M::Size(x) + 1) == NUV_TRUE;
            EXPECT_TRUE(isGrown);
        }
        for (auto at = M::Begin(x); at != M::End(x);)
        {
            const auto& entry = *M::List::ForwardKind::ContentOf(&at);
            if (NumberOf(entry.first) == kNoNumber)
                at = M::Erase(x, at);
            else
                M::List::ForwardKind::Increment(&at);
        }
        wanted = ContentOf(x.map);
        wantedOther = ContentOf(y.map);
    }

    void ExpectLookups(int key)
    {
        const KeyOf<M> sample(key);
        const auto found = wanted.find(key);
        const NuvSizeT count = found == wanted.end() ? 0 : found->second.size();
        EXPECT_EQ(M::Count(x, sample), count);
        auto range = M::EqualRange(x, sample);
        EXPECT_EQ(M::Find(x, sample), range.first);
        NuvSizeT length = 0;
        for (; range.first != range.second; M::List::ForwardKind::Increment(&range.first))
        {
            EXPECT_EQ(NumberOf(M::List::ForwardKind::ContentOf(&range.first)->first), key);
            ++length;
        }
        EXPECT_EQ(length, count);
    }

    bool Do(Step* step)
    {
        if (step->Operation() < 5)
            return Grow(step);
        if (step->Operation() < 11)
            return Shrink(step);
        return Whole(step);
    }

    bool Grow(Step* step)
    {
        const int byte = input.Byte();
        const int key = byte % kKeys;
        const Entry<M> entry(key, byte, allocator);
        if (M::Size(x) > kMostElements)
            return true;
        step->Begin();
        std::vector<int>& values = wanted[key];
        if (step->Operation() >= 3)
        {
            values.insert(values.begin(), byte);
            return M::InsertDuplicate(x, entry) != nullptr;
        }
        const bool isNew = values.empty();
        if (isNew)
            values.push_back(byte);
        const auto result = M::Insert(x, entry);
        if (!result.first)
            return false;
        EXPECT_EQ(result.second == NUV_TRUE, isNew);
        return true;
    }

    typename M::Iterator At(int place)
    {
        auto at = M::Begin(x);
        for (; place != 0; --place)
            M::List::ForwardKind::Increment(&at);
        return at;
    }

    /// Takes entries number first to last, in the map's own order, out of what is wanted.
    void Forget(int first, int last)
    {
        Entries entries = EntriesOf(x.map);
        entries.erase(entries.begin() + first, entries.begin() + last);
        wanted.clear();
        for (const auto& [key, value] : entries)
            wanted[key].push_back(value);
    }

    bool Shrink(Step* step)
    {
        const int size = static_cast<int>(M::Size(x));
        const int key = input.Below(kKeys);
        const int place = input.Below(size + 1);
        step->Begin();
        if (step->Operation() == 5)
        {
            const auto found = wanted.find(key);
            const NuvSizeT count = found == wanted.end() ? 0 : found->second.size();
            wanted.erase(key);
            EXPECT_EQ(M::EraseKey(x, KeyOf<M>(key)), count);
            return true;
        }
        if (place == size)
            return true;
        const auto at = At(place);
        if (step->Operation() == 6)
        {
            // By the key of the very entry.
            const auto& own = M::List::ForwardKind::ContentOf(&at)->first;
            const int number = NumberOf(own);
            EXPECT_EQ(M::EraseKey(x, &own), wanted[number].size());
            wanted.erase(number);
            return true;
        }
        const int last = step->Operation() < 9 ? place + 1 : std::min(size, place + key);
        Forget(place, last);
        const auto end = At(last);
        EXPECT_EQ(step->Operation() < 9 ? M::Erase(x, at) : M::EraseRange(x, at, end), end);
        return true;
    }

    bool Whole(Step* step)
    {
        const int n = input.Byte();
        step->Begin();
        switch (step->Operation())
        {
        case 11:
            return M::Resize(x, static_cast<NuvSizeT>(n)) == NUV_TRUE;
        case 12:
            wanted.clear();
            M::Clear(x);
            return true;
        case 13:
            std::swap(wanted, wantedOther);
            return M::Swap(x, y) == NUV_TRUE;
        case 14:
            wanted = wantedOther;
            return M::Assign(x, y) != nullptr;
        default:
            return Copy();
        }
    }

    bool Copy()
    {
        const std::size_t refusals = allocator.Refusals();
        typename M::Container copy;
        const bool isMade = M::ConstructCopy(&copy, x) != nullptr;
        if (isMade && allocator.Refusals() == refusals)
        {
            EXPECT_EQ(EntriesOf(copy), *x);
        }
        M::Destruct(&copy);
        return true;
    }

    Input& input;
    TestAllocator allocator;
    HeldMap<M> x;
    HeldMap<M> y;
    Wanted wanted;
    Wanted wantedOther;
};

template <class M>
void Run(Input* input)
{
    using Key = typename M::Key;
    const typename M::HashFunctionType hashes[] = {kOwnHash<M>, NumberHash<Key>, ConstantHash<Key>,
                                                   WideHash<Key>};
    MapRun<M>(input, hashes[input->Below(4)]).Run();
}
}  // namespace

void RunMapSteps(Input* input, bool hasNames)
{
    if (hasNames)
        Run<VariableMap>(input);
    else
        Run<ConstraintMap>(input);
}
}  // namespace fuzz
