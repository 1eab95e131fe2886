// Two growable arrays beside two of the standard library. An operation that reports a failure has
// left the array as it was, but for an assignment, which has left it empty; one that cannot fail
// does not.
#include "fuzz/Containers.hpp"
#include "tests/core/containers/VectorSupport.hpp"

#include <algorithm>
#include <functional>

namespace fuzz
{
namespace
{
template <class V>
class VectorRun
{
public:
    using Element = typename V::Element;
    using Source = const Element*;

    explicit VectorRun(Input* bytes) : input(*bytes), x(allocator), y(allocator) {}

    void Run()
    {
        for (int steps = 0; steps != kMostSteps && !input.IsEmpty(); ++steps)
            Take();
    }

private:
    void Take()
    {
        Step step(&input, &allocator);
        const Numbers before = wanted;
        const bool isAssignment = step.Operation() == 12;
        const bool isDone = Do(&step);
        const bool isRefused = step.End();
        if (!isDone)
        {
            EXPECT_TRUE(isRefused) << "operation " << step.Operation();
            wanted = isAssignment ? Numbers() : before;
        }
        EXPECT_EQ(*x, wanted) << "operation " << step.Operation();
        EXPECT_EQ(*y, wantedOther);
        ExpectSound(x.vector, allocator);
        ExpectSound(y.vector, allocator);
        EXPECT_EQ(V::Size(x), wanted.size());
        EXPECT_EQ(V::Empty(x) == NUV_TRUE, wanted.empty());
    }

    bool Do(Step* step)
    {
        switch (step->Operation())
        {
        case 0:
        case 1:
        case 2:
        case 3:
        case 4:
            return Grow(step);
        case 5:
        case 6:
        case 7:
        case 8:
            return Shrink(step);
        default:
            return Whole(step);
        }
    }

    std::size_t Place(bool isEnd = true)
    {
        return static_cast<std::size_t>(input.Below(static_cast<int>(wanted.size()) + isEnd));
    }

    auto At(std::size_t place)
    {
        return wanted.begin() + static_cast<std::ptrdiff_t>(place);
    }

    typename V::Iterator Position(std::size_t place)
    {
        return x->begin + place;
    }

    /// Does `body(source, number)` with a new element, or with one of the array's own.
    bool WithElement(Step* step, const std::function<bool(Source, int)>& body)
    {
        const int choice = input.Byte();
        if (choice % 2 == 1 && !wanted.empty())
        {
            const std::size_t own = static_cast<std::size_t>(choice / 2) % wanted.size();
            step->Begin();
            return body(x->begin + own, wanted[own]);
        }
        // Made before anything is refused.
        const Sample<Element> element(choice / 2, allocator);
        step->Begin();
        return body(element, choice / 2);
    }

    bool Grow(Step* step)
    {
        const std::size_t place = Place();
        if (wanted.size() > kMostElements)
            return true;
        switch (step->Operation())
        {
        case 0:
        case 1:
            return WithElement(step,
                               [&](Source source, int number)
                               {
                                   wanted.push_back(number);
                                   return V::PushBack(x, source) == NUV_TRUE;
                               });
        case 2:
            return WithElement(step,
                               [&](Source source, int number)
                               {
                                   wanted.insert(At(place), number);
                                   const auto found = V::Insert(x, Position(place), source);
                                   return found && found == Position(place);
                               });
        case 3:
            return WithElement(step,
                               [&](Source source, int number)
                               {
                                   const std::size_t n = place % 4;
                                   wanted.insert(At(place), n, number);
                                   return V::InsertN(x, Position(place), n, source) == NUV_TRUE;
                               });
        default:
            return InsertRange(step, place);
        }
    }

    /// From the other array, or from the array itself.
    bool InsertRange(Step* step, std::size_t place)
    {
        const bool isOwn = input.Byte() % 2 == 1;
        const Numbers source = isOwn ? wanted : wantedOther;
        const std::size_t first =
            static_cast<std::size_t>(input.Below(static_cast<int>(source.size()) + 1));
        const std::size_t last = std::min(source.size(), first + place % 5);
        const auto from = source.begin() + static_cast<std::ptrdiff_t>(first);
        wanted.insert(At(place), from, from + static_cast<std::ptrdiff_t>(last - first));
        const Element* const begin = isOwn ? x->begin : y->begin;
        step->Begin();
        return V::InsertRange(x, Position(place), begin + first, begin + last) == NUV_TRUE;
    }

    bool Shrink(Step* step)
    {
        if (step->Operation() == 8)
            return WithElement(step,
                               [&](Source source, int number)
                               {
                                   const std::size_t n = static_cast<std::size_t>(input.Below(24));
                                   wanted.resize(n, number);
                                   return V::Resize(x, n, source) == NUV_TRUE;
                               });
        if (wanted.empty())
            return true;
        const std::size_t place = Place(false);
        const std::size_t last = std::min(wanted.size(), place + place % 3);
        step->Begin();
        switch (step->Operation())
        {
        case 5:
            wanted.pop_back();
            V::PopBack(x);
            break;
        case 6:
            wanted.erase(At(place));
            EXPECT_EQ(V::Erase(x, Position(place)), Position(place));
            break;
        default:
            wanted.erase(At(place), At(last));
            EXPECT_EQ(V::EraseRange(x, Position(place), Position(last)), Position(last));
        }
        return true;
    }

    bool Whole(Step* step)
    {
        const std::size_t n = static_cast<std::size_t>(input.Below(60));
        step->Begin();
        switch (step->Operation())
        {
        case 9:
            return V::Reserve(x, n) == NUV_TRUE;
        case 10:
            wanted.clear();
            V::Clear(x);
            return true;
        case 11:
            std::swap(wanted, wantedOther);
            return V::Swap(x, y) == NUV_TRUE;
        case 12:
            wanted = wantedOther;
            return V::Assign(x, y) != nullptr;
        case 13:
            return V::Assign(x, x) != nullptr;
        case 14:
            return Copy(n % 2 == 0);
        default:
            return V::Swap(x, x) == NUV_TRUE;
        }
    }

    /// A copy in an array of its own, which is empty if it failed.
    bool Copy(bool isRange)
    {
        typename V::Container copy;
        const bool isMade = isRange
                                ? V::ConstructRange(&copy, x->begin, x->end, allocator) != nullptr
                                : V::ConstructCopy(&copy, x) != nullptr;
        EXPECT_EQ(NumbersOf(copy), isMade ? wanted : Numbers());
        V::Destruct(&copy);
        return isMade;
    }

    Input& input;
    TestAllocator allocator;
    HeldVector<V> x;
    HeldVector<V> y;
    Numbers wanted;
    Numbers wantedOther;
};
}  // namespace

void RunVectorSteps(Input* input, bool hasNames)
{
    if (hasNames)
        VectorRun<NameAndFloatVector>(input).Run();
    else
        VectorRun<IndexAndFloatVector>(input).Run();
}
}  // namespace fuzz
