// Two lists beside two arrays of the standard library, on one allocator, since spliced nodes keep
// theirs. A refused node is reported, and what was linked before stays; a refused copy inside an
// element is not reported and leaves a name empty. So after a refusal the list is what it says it
// is, if its links are sound; without one it is what the sequence of operations makes it.
#include "fuzz/Containers.hpp"
#include "tests/core/containers/ListSupport.hpp"

#include <algorithm>

namespace fuzz
{
namespace
{
template <class L>
class ListRun
{
public:
    using Element = typename L::Element;

    explicit ListRun(Input* bytes) : input(*bytes), x(allocator), y(allocator) {}

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
        const bool isRefused = step.End();
        if (isRefused)
        {
            wanted = *x;
            wantedOther = *y;
        }
        EXPECT_TRUE(isDone || isRefused) << "operation " << step.Operation();
        EXPECT_EQ(*x, wanted) << "operation " << step.Operation();
        EXPECT_EQ(*y, wantedOther) << "operation " << step.Operation();
        ExpectSound(x.list, allocator);
        ExpectSound(y.list, allocator);
        EXPECT_EQ(L::Size(x), wanted.size());
        EXPECT_EQ(L::Empty(x) == NUV_TRUE, wanted.empty());
    }

    bool Do(Step* step)
    {
        if (step->Operation() < 5)
            return Grow(step);
        if (step->Operation() < 10)
            return Shrink(step);
        if (step->Operation() < 12)
            return Splice(step->Operation() == 11);
        return Whole(step);
    }

    /// Places from the first element to the end, or to the last element.
    int Place(bool isEnd = true)
    {
        return input.Below(static_cast<int>(wanted.size()) + isEnd);
    }

    auto At(int place)
    {
        return wanted.begin() + place;
    }

    bool Grow(Step* step)
    {
        const int place = Place();
        const int number = input.Byte();
        if (wanted.size() > kMostElements)
            return true;
        if (step->Operation() == 4)
            return InsertRange(step, place, number);
        const Sample<Element> element(number, allocator);
        step->Begin();
        switch (step->Operation())
        {
        case 0:
            wanted.push_back(number);
            return L::PushBack(x, element) == NUV_TRUE;
        case 1:
            wanted.insert(wanted.begin(), number);
            return L::PushFront(x, element) == NUV_TRUE;
        case 2:
            wanted.insert(At(place), number);
            return L::Insert(x, x.Place(place), element) != nullptr;
        default:
            wanted.insert(At(place), static_cast<std::size_t>(number % 4), number);
            return L::InsertN(x, x.Place(place), static_cast<NuvSizeT>(number % 4), element) ==
                   NUV_TRUE;
        }
    }

    bool InsertRange(Step* step, int place, int choice)
    {
        const int size = static_cast<int>(wantedOther.size());
        const int first = choice % (size + 1);
        const int last = std::min(size, first + choice % 4);
        wanted.insert(At(place), wantedOther.begin() + first, wantedOther.begin() + last);
        step->Begin();
        return L::InsertRange(x, x.Place(place), y.Place(first), y.Place(last)) == NUV_TRUE;
    }

    bool Shrink(Step* step)
    {
        if (step->Operation() == 9)
            return Resize(step);
        if (wanted.empty())
            return true;
        const int place = Place(false);
        const int last = std::min(static_cast<int>(wanted.size()), place + place % 3);
        step->Begin();
        switch (step->Operation())
        {
        case 5:
            wanted.pop_back();
            L::PopBack(x);
            break;
        case 6:
            wanted.erase(wanted.begin());
            L::PopFront(x);
            break;
        case 7:
        {
            wanted.erase(At(place));
            const auto following = L::Erase(x, x.Place(place));
            EXPECT_EQ(following, x.Place(place));
            break;
        }
        default:
        {
            wanted.erase(At(place), At(last));
            const auto end = x.Place(last);
            EXPECT_EQ(L::EraseRange(x, x.Place(place), end), end);
        }
        }
        return true;
    }

    bool Resize(Step* step)
    {
        const int number = input.Byte();
        const Sample<Element> element(number, allocator);
        wanted.resize(static_cast<std::size_t>(number % 20), number);
        step->Begin();
        return L::Resize(x, static_cast<NuvSizeT>(number % 20), element) == NUV_TRUE;
    }

    /// Out of the other list or out of the list itself, where the place must not be inside.
    bool Splice(bool isOne)
    {
        const bool isOwn = input.Byte() % 2 == 1;
        Numbers& source = isOwn ? wanted : wantedOther;
        const int size = static_cast<int>(source.size());
        const int place = Place();
        const int first = input.Below(size + 1);
        const int last = std::min(size, first + (isOne ? 1 : input.Below(5)));
        if (first == last || wanted.size() > kMostElements ||
            (isOwn && place > first && place < last))
            return true;
        auto& from = isOwn ? x : y;
        if (isOne)
            L::SpliceOne(x, x.Place(place), from, from.Place(first));
        else
            L::Splice(x, x.Place(place), from, from.Place(first), from.Place(last));
        if (isOwn && (place == first || place == last))
            return true;
        const Numbers moved(source.begin() + first, source.begin() + last);
        source.erase(source.begin() + first, source.begin() + last);
        const int shift = isOwn && place >= last ? last - first : 0;
        wanted.insert(At(place - shift), moved.begin(), moved.end());
        return true;
    }

    bool Whole(Step* step)
    {
        step->Begin();
        switch (step->Operation())
        {
        case 12:
            wanted.clear();
            L::Clear(x);
            return true;
        case 13:
            std::swap(wanted, wantedOther);
            return L::Swap(x, y) == NUV_TRUE;
        case 14:
            wanted = wantedOther;
            return L::Assign(x, y) != nullptr;
        default:
            return Copy();
        }
    }

    bool Copy()
    {
        const std::size_t refusals = allocator.Refusals();
        typename L::Container copy;
        const bool isMade = L::ConstructCopy(&copy, x) != nullptr;
        ExpectSound(copy, allocator);
        EXPECT_EQ(NumbersOf(copy).size(), isMade ? wanted.size() : 0);
        if (allocator.Refusals() == refusals)
        {
            EXPECT_EQ(NumbersOf(copy), wanted);
        }
        L::Destruct(&copy);
        return isMade;
    }

    Input& input;
    TestAllocator allocator;
    HeldList<L> x;
    HeldList<L> y;
    Numbers wanted;
    Numbers wantedOther;
};
}  // namespace

void RunListSteps(Input* input, bool hasNames)
{
    if (hasNames)
        ListRun<VariableList>(input).Run();
    else
        ListRun<ConstraintList>(input).Run();
}
}  // namespace fuzz
