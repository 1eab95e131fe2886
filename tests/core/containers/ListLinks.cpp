// The list's links: what moves nodes without copying them, for every instantiation.
#include <algorithm>

#include "tests/core/containers/ListSupport.hpp"

namespace
{
template <class Instantiation>
class ListLinks : public ListTest<Instantiation>
{
protected:
    TestAllocator elsewhere;
};

TYPED_TEST_SUITE(ListLinks, ListTypes);

// Nodes by hand ------------------------------------------------------------------------------

TYPED_TEST(ListLinks, CreateHookAndUnhookANode)
{
    using L = TypeParam;
    HeldList<L> list(this->allocator, {1, 3});
    auto* const node = L::CreateNode_(list, ElementOf<L>(2));
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(this->allocator.SizeOf(node), L::GetNodeSize());
    EXPECT_EQ(NumberOf(node->obj), 2);
    EXPECT_EQ(*list, (Numbers{1, 3}));

    const auto before = list.Place(0);
    const auto after = list.Place(1);
    L::HookNode_(&node->b, after);
    EXPECT_EQ(*list, (Numbers{1, 2, 3}));
    ExpectSound(list.list, this->allocator);

    L::UnhookNode_(&node->b);
    EXPECT_EQ(*list, (Numbers{1, 3}));
    EXPECT_EQ(node->b.prev.b, before);
    EXPECT_EQ(node->b.next.b, after);
    ExpectSound(list.list, this->allocator);

    L::HookNode_(&node->b, L::End(list));
    EXPECT_EQ(*list, (Numbers{1, 3, 2}));
}

// Splicing -----------------------------------------------------------------------------------

TYPED_TEST(ListLinks, SpliceMovesEveryRangeToEveryPlaceOfAnotherList)
{
    using L = TypeParam;
    for (int first = 0; first <= 3; ++first)
        for (int last = first; last <= 3; ++last)
            for (int place = 0; place <= 2; ++place)
            {
                HeldList<L> source(this->allocator, {1, 2, 3});
                HeldList<L> list(this->allocator, {8, 9});
                const std::size_t requests = this->allocator.Requests();
                const auto moved = source.Place(first);
                L::Splice(list, list.Place(place), source, moved, source.Place(last));
                Numbers left = {1, 2, 3};
                Numbers joined = {8, 9};
                joined.insert(joined.begin() + place, left.begin() + first, left.begin() + last);
                left.erase(left.begin() + first, left.begin() + last);
                EXPECT_EQ(*source, left);
                EXPECT_EQ(*list, joined);
                if (first != last)
                {
                    EXPECT_EQ(list.Place(place), moved);
                }
                EXPECT_EQ(this->allocator.Requests(), requests);
                ExpectSound(source.list, this->allocator);
                ExpectSound(list.list, this->allocator);
            }
}

TYPED_TEST(ListLinks, SpliceIntoAnEmptyListAndFromAListThatIsEmptyThen)
{
    using L = TypeParam;
    HeldList<L> source(this->allocator, {1, 2});
    HeldList<L> list(this->allocator);
    L::Splice(list, L::End(list), source, L::Begin(source), L::End(source));
    EXPECT_EQ(L::Empty(source), 1);
    EXPECT_EQ(*list, (Numbers{1, 2}));
    L::Splice(source, L::Begin(source), list, L::Begin(list), L::End(list));
    EXPECT_EQ(L::Empty(list), 1);
    EXPECT_EQ(*source, (Numbers{1, 2}));
    ExpectSound(source.list, this->allocator);
    ExpectSound(list.list, this->allocator);
}

// `pos` outside the range, or one of its two ends, where nothing happens.
TYPED_TEST(ListLinks, SpliceWithinOneListRotates)
{
    using L = TypeParam;
    constexpr int kSize = 4;
    for (int first = 0; first <= kSize; ++first)
        for (int last = first; last <= kSize; ++last)
            for (int place = 0; place <= kSize; ++place)
            {
                if (place > first && place < last)
                    continue;
                SCOPED_TRACE(::testing::Message()
                             << first << " to " << last << " before " << place);
                HeldList<L> list(this->allocator, {1, 2, 3, 4});
                L::Splice(list, list.Place(place), list, list.Place(first), list.Place(last));
                Numbers expected = {1, 2, 3, 4};
                const auto begin = expected.begin();
                if (place >= last)
                    std::rotate(begin + first, begin + last, begin + place);
                else
                    std::rotate(begin + place, begin + first, begin + last);
                EXPECT_EQ(*list, expected);
                ExpectSound(list.list, this->allocator);
            }
}

TYPED_TEST(ListLinks, SpliceOneMovesEachNodeToEachPlace)
{
    using L = TypeParam;
    constexpr int kSize = 4;
    for (int from = 0; from < kSize; ++from)
        for (int place = 0; place <= kSize; ++place)
        {
            HeldList<L> list(this->allocator, {1, 2, 3, 4});
            HeldList<L> other(this->allocator, {5, 6, 7, 8});
            L::SpliceOne(list, list.Place(place), list, list.Place(from));
            Numbers expected = {1, 2, 3, 4};
            const auto begin = expected.begin();
            if (place > from)
                std::rotate(begin + from, begin + from + 1, begin + place);
            else
                std::rotate(begin + place, begin + from, begin + from + 1);
            EXPECT_EQ(*list, expected);

            const int moved = expected[static_cast<std::size_t>(from)];
            L::SpliceOne(other, other.Place(place), list, list.Place(from));
            expected.erase(expected.begin() + from);
            EXPECT_EQ(*list, expected);
            Numbers joined = {5, 6, 7, 8};
            joined.insert(joined.begin() + place, moved);
            EXPECT_EQ(*other, joined);
            ExpectSound(list.list, this->allocator);
            ExpectSound(other.list, this->allocator);
        }
}

TYPED_TEST(ListLinks, SpliceOneOfALinkThatIsAloneDoesNothing)
{
    using L = TypeParam;
    HeldList<L> list(this->allocator, {1, 2});
    HeldList<L> empty(this->allocator);
    L::SpliceOne(list, list.Place(1), empty, L::End(empty));
    EXPECT_EQ(*list, (Numbers{1, 2}));
    EXPECT_EQ(L::Empty(empty), 1);
}

// Exchange -----------------------------------------------------------------------------------

TYPED_TEST(ListLinks, SwapExchangesRingsAndAllocatorsWhicheverIsEmpty)
{
    using L = TypeParam;
    for (const bool hasX : {false, true})
        for (const bool hasY : {false, true})
        {
            HeldList<L> x(this->allocator);
            HeldList<L> y(this->elsewhere);
            const ElementOf<L> mine(4, this->allocator);
            const ElementOf<L> others(6, this->elsewhere);
            ASSERT_EQ(L::Resize(x, hasX ? 2 : 0, mine), 1);
            ASSERT_EQ(L::Resize(y, hasY ? 3 : 0, others), 1);
            const Numbers formerX = *x;
            const Numbers formerY = *y;
            EXPECT_EQ(L::Swap(x, y), 1);
            EXPECT_EQ(*x, formerY);
            EXPECT_EQ(*y, formerX);
            EXPECT_EQ(L::GetAllocator(x), this->elsewhere.operator NuvAllocator*());
            EXPECT_EQ(L::GetAllocator(y), this->allocator.operator NuvAllocator*());
            ExpectSound(x.list, this->elsewhere);
            ExpectSound(y.list, this->allocator);
        }
}

TYPED_TEST(ListLinks, SwapWithItselfChangesNothing)
{
    using L = TypeParam;
    HeldList<L> list(this->allocator, {1, 2});
    HeldList<L> empty(this->allocator);
    EXPECT_EQ(L::Swap(list, list), 1);
    EXPECT_EQ(*list, (Numbers{1, 2}));
    ExpectSound(list.list, this->allocator);
    EXPECT_EQ(L::Swap(empty, empty), 1);
    EXPECT_EQ(L::Empty(empty), 1);
    ExpectSound(empty.list, this->allocator);
}
}  // namespace
