// The list: construction, access, insertion, removal and assignment, for every instantiation.
#include "tests/core/containers/ListSupport.hpp"

namespace
{
template <class Instantiation>
class List : public ListTest<Instantiation>
{
protected:
    TestAllocator elsewhere;
};

TYPED_TEST_SUITE(List, ListTypes);

// Edge cases ---------------------------------------------------------------------------------

TYPED_TEST(List, ConstructDefaultIsEmpty)
{
    using L = TypeParam;
    typename L::Container list;
    EXPECT_EQ(L::ConstructDefault(&list, this->allocator), &list);
    EXPECT_EQ(L::Empty(&list), 1);
    EXPECT_EQ(L::Begin(&list), L::End(&list));
    EXPECT_EQ(L::Size(&list), 0u);
    EXPECT_EQ(list.node.prev.b, &list.node);
    EXPECT_EQ(list.node.next.b, &list.node);
    EXPECT_EQ(L::GetAllocator(&list), this->allocator.operator NuvAllocator*());
    L::Destruct(&list);
    EXPECT_EQ(this->allocator.Requests(), 0u);
}

TYPED_TEST(List, InsertAtEndAppendsAtBeginPrependsAndReturnsTheNewNode)
{
    using L = TypeParam;
    HeldList<L> list(this->allocator);
    const auto middle = L::Insert(list, L::End(list), ElementOf<L>(5));
    EXPECT_EQ(middle, list.Place(0));
    const auto last = L::Insert(list, L::End(list), ElementOf<L>(6));
    EXPECT_EQ(last, list.Place(1));
    const auto first = L::Insert(list, L::Begin(list), ElementOf<L>(4));
    EXPECT_EQ(first, list.Place(0));
    EXPECT_EQ(*list, (Numbers{4, 5, 6}));
    ExpectSound(list.list, this->allocator);
}

TYPED_TEST(List, AssignToItselfReturnsItUnchanged)
{
    using L = TypeParam;
    HeldList<L> list(this->allocator, {1, 2, 3});
    const auto first = list.Place(0);
    const std::size_t requests = this->allocator.Requests();
    EXPECT_EQ(L::Assign(list, list), &list.list);
    EXPECT_EQ(*list, (Numbers{1, 2, 3}));
    EXPECT_EQ(list.Place(0), first);
    EXPECT_EQ(this->allocator.Requests(), requests);
}

TYPED_TEST(List, ResizeToTheSizeChangesNothingAndToZeroEmpties)
{
    using L = TypeParam;
    HeldList<L> list(this->allocator, {1, 2, 3});
    const std::size_t requests = this->allocator.Requests();
    EXPECT_EQ(L::Resize(list, 3, ElementOf<L>(9)), 1);
    EXPECT_EQ(*list, (Numbers{1, 2, 3}));
    EXPECT_EQ(L::Resize(list, 0, ElementOf<L>(9)), 1);
    EXPECT_EQ(L::Empty(list), 1);
    EXPECT_EQ(L::Resize(list, 0, ElementOf<L>(9)), 1);
    EXPECT_EQ(this->allocator.Requests(), requests);
    EXPECT_EQ(this->allocator.LiveBlocks(), 0u);
}

TYPED_TEST(List, SpliceOneOfTheNodeJustBeforeThePositionLeavesTheListUnchanged)
{
    using L = TypeParam;
    HeldList<L> list(this->allocator, {1, 2, 3});
    for (int place = 0; place < 3; ++place)
    {
        L::SpliceOne(list, list.Place(place + 1), list, list.Place(place));
        EXPECT_EQ(*list, (Numbers{1, 2, 3}));
        ExpectSound(list.list, this->allocator);
    }
}

// Construction -------------------------------------------------------------------------------

TYPED_TEST(List, ConstructNMakesThatManyCopies)
{
    using L = TypeParam;
    for (const int count : {0, 1, 3})
    {
        typename L::Container list;
        ASSERT_EQ(
            L::ConstructN(&list, static_cast<NuvSizeT>(count), ElementOf<L>(7), this->allocator),
            &list);
        EXPECT_EQ(NumbersOf(list), Numbers(static_cast<std::size_t>(count), 7));
        EXPECT_EQ(L::GetAllocator(&list), this->allocator.operator NuvAllocator*());
        ExpectSound(list, this->allocator);
        L::Destruct(&list);
        EXPECT_EQ(this->allocator.LiveBlocks(), 0u);
    }
}

TYPED_TEST(List, ConstructRangeCopiesInOrderOntoTheGivenAllocator)
{
    using L = TypeParam;
    HeldList<L> source(this->elsewhere, {1, 2, 3, 4});
    for (int first = 0; first <= 4; ++first)
        for (int last = first; last <= 4; ++last)
        {
            typename L::Container list;
            ASSERT_EQ(
                L::ConstructRange(&list, source.Place(first), source.Place(last), this->allocator),
                &list);
            const Numbers all = {1, 2, 3, 4};
            EXPECT_EQ(NumbersOf(list), Numbers(all.begin() + first, all.begin() + last));
            ExpectSound(list, this->allocator);
            L::Destruct(&list);
        }
}

TYPED_TEST(List, ConstructCopyTakesTheSourcesAllocator)
{
    using L = TypeParam;
    HeldList<L> source(this->allocator, {1, 2, 3});
    typename L::Container copy;
    ASSERT_EQ(L::ConstructCopy(&copy, source), &copy);
    EXPECT_EQ(L::GetAllocator(&copy), this->allocator.operator NuvAllocator*());
    EXPECT_EQ(NumbersOf(copy), (Numbers{1, 2, 3}));
    ExpectSound(copy, this->allocator);
    L::PopFront(&copy);
    EXPECT_EQ(*source, (Numbers{1, 2, 3}));
    L::Destruct(&copy);
    EXPECT_EQ(*source, (Numbers{1, 2, 3}));

    const HeldList<L> empty(this->allocator);
    ASSERT_EQ(L::ConstructCopy(&copy, empty), &copy);
    EXPECT_EQ(L::Empty(&copy), 1);
    L::Destruct(&copy);
}

TYPED_TEST(List, DestructFreesEveryNodeAndItsElement)
{
    using L = TypeParam;
    {
        const HeldList<L> list(this->allocator, {1, 2, 3});
        EXPECT_GE(this->allocator.LiveBlocks(), 3u);
    }
    EXPECT_EQ(this->allocator.LiveBlocks(), 0u);
}

// Looking at it ------------------------------------------------------------------------------

TYPED_TEST(List, PositionsAndElementsAreThoseOfTheRing)
{
    using L = TypeParam;
    HeldList<L> list(this->allocator, {4, 5, 6});
    auto* const sentinel = &list.list.node;
    EXPECT_EQ(L::Begin(list), sentinel->next.b);
    EXPECT_EQ(L::BeginConst(list), sentinel->next.b);
    EXPECT_EQ(L::End(list), sentinel);
    EXPECT_EQ(L::EndConst(list), sentinel);
    EXPECT_EQ(L::RBegin(list), sentinel);
    EXPECT_EQ(L::RBeginConst(list), sentinel);
    EXPECT_EQ(L::REnd(list), sentinel->next.b);
    EXPECT_EQ(L::REndConst(list), sentinel->next.b);
    EXPECT_EQ(L::Front(list), &sentinel->next.n->obj);
    EXPECT_EQ(L::FrontConst(list), &sentinel->next.n->obj);
    EXPECT_EQ(L::Back(list), &sentinel->prev.n->obj);
    EXPECT_EQ(L::BackConst(list), &sentinel->prev.n->obj);
    EXPECT_EQ(NumberOf(*L::Front(list)), 4);
    EXPECT_EQ(NumberOf(*L::Back(list)), 6);
    EXPECT_EQ(L::Size(list), 3u);
    EXPECT_EQ(L::Empty(list), 0);
    EXPECT_EQ(L::MaxSize(list), 18446744073709551615u);
    EXPECT_EQ(L::GetNodeSize(), sizeof(typename L::Node));
}

TYPED_TEST(List, DumpChangesNothing)
{
    using L = TypeParam;
    const HeldList<L> list(this->allocator, {4, 5, 6});
    L::Dump(list, "list", 4);
    EXPECT_EQ(*list, (Numbers{4, 5, 6}));
    ExpectSound(list.list, this->allocator);
}

// Insertion and removal ----------------------------------------------------------------------

TYPED_TEST(List, EveryNodeIsOneBlockOfTheNodeSize)
{
    using L = TypeParam;
    HeldList<L> list(this->allocator);
    const ElementOf<L> element(6);
    ASSERT_EQ(L::PushBack(list, element), 1);
    EXPECT_EQ(this->allocator.LiveSizes(), (TestAllocator::Sizes{L::GetNodeSize()}));
    ASSERT_EQ(L::PushFront(list, element), 1);
    EXPECT_EQ(this->allocator.LiveSizes(),
              (TestAllocator::Sizes{L::GetNodeSize(), L::GetNodeSize()}));
}

TYPED_TEST(List, PushAndPopAtBothEnds)
{
    using L = TypeParam;
    HeldList<L> list(this->allocator);
    EXPECT_EQ(L::PushBack(list, ElementOf<L>(2)), 1);
    EXPECT_EQ(L::PushFront(list, ElementOf<L>(1)), 1);
    EXPECT_EQ(L::PushBack(list, ElementOf<L>(3)), 1);
    EXPECT_EQ(*list, (Numbers{1, 2, 3}));
    L::PopFront(list);
    EXPECT_EQ(*list, (Numbers{2, 3}));
    L::PopBack(list);
    EXPECT_EQ(*list, (Numbers{2}));
    L::PopBack(list);
    EXPECT_EQ(L::Empty(list), 1);
    ExpectSound(list.list, this->allocator);
}

TYPED_TEST(List, InsertionsAtEveryPlaceStandBeforeIt)
{
    using L = TypeParam;
    HeldList<L> source(this->allocator, {7, 8});
    for (int place = 0; place <= 3; ++place)
    {
        Numbers expected = {1, 2, 3};
        HeldList<L> one(this->allocator, {1, 2, 3});
        HeldList<L> copies(this->allocator, {1, 2, 3});
        HeldList<L> range(this->allocator, {1, 2, 3});
        const auto following = one.Place(place);
        const auto at = L::Insert(one, following, ElementOf<L>(9));
        EXPECT_EQ(at->next.b, following);
        expected.insert(expected.begin() + place, 9);
        EXPECT_EQ(*one, expected);
        EXPECT_EQ(L::InsertN(copies, copies.Place(place), 2, ElementOf<L>(9)), 1);
        expected.insert(expected.begin() + place, 9);
        EXPECT_EQ(*copies, expected);
        EXPECT_EQ(L::InsertRange(range, range.Place(place), source.Place(0), L::End(source)), 1);
        expected[static_cast<std::size_t>(place)] = 7;
        expected[static_cast<std::size_t>(place) + 1] = 8;
        EXPECT_EQ(*range, expected);
        ExpectSound(range.list, this->allocator);
    }
}

TYPED_TEST(List, InsertionsOfNothingReturnTrueAtOnce)
{
    using L = TypeParam;
    HeldList<L> list(this->allocator, {1, 2});
    const std::size_t requests = this->allocator.Requests();
    EXPECT_EQ(L::InsertN(list, list.Place(1), 0, ElementOf<L>(9)), 1);
    EXPECT_EQ(L::InsertRange(list, list.Place(1), list.Place(0), list.Place(0)), 1);
    EXPECT_EQ(*list, (Numbers{1, 2}));
    EXPECT_EQ(this->allocator.Requests(), requests);
}

TYPED_TEST(List, EraseReturnsTheNodeThatFollowed)
{
    using L = TypeParam;
    for (int place = 0; place < 3; ++place)
    {
        HeldList<L> list(this->allocator, {1, 2, 3});
        const auto following = list.Place(place + 1);
        EXPECT_EQ(L::Erase(list, list.Place(place)), following);
        Numbers expected = {1, 2, 3};
        expected.erase(expected.begin() + place);
        EXPECT_EQ(*list, expected);
        ExpectSound(list.list, this->allocator);
    }
}

TYPED_TEST(List, EraseRangeReturnsItsLastPosition)
{
    using L = TypeParam;
    for (int first = 0; first <= 3; ++first)
        for (int last = first; last <= 3; ++last)
        {
            HeldList<L> list(this->allocator, {1, 2, 3});
            const auto end = list.Place(last);
            EXPECT_EQ(L::EraseRange(list, list.Place(first), end), end);
            Numbers expected = {1, 2, 3};
            expected.erase(expected.begin() + first, expected.begin() + last);
            EXPECT_EQ(*list, expected);
            ExpectSound(list.list, this->allocator);
        }
}

TYPED_TEST(List, ClearErasesEveryNode)
{
    using L = TypeParam;
    HeldList<L> list(this->allocator, {1, 2, 3});
    for (int round = 0; round < 2; ++round)
    {
        L::Clear(list);
        EXPECT_EQ(L::Empty(list), 1);
        EXPECT_EQ(list.list.node.prev.b, &list.list.node);
        EXPECT_EQ(this->allocator.LiveBlocks(), 0u);
    }
}

TYPED_TEST(List, ResizeAppendsCopiesOrErasesFromThePositionOn)
{
    using L = TypeParam;
    HeldList<L> list(this->allocator, {1, 2, 3});
    const auto first = list.Place(0);
    EXPECT_EQ(L::Resize(list, 5, ElementOf<L>(9)), 1);
    EXPECT_EQ(*list, (Numbers{1, 2, 3, 9, 9}));
    EXPECT_EQ(L::Resize(list, 2, ElementOf<L>(8)), 1);
    EXPECT_EQ(*list, (Numbers{1, 2}));
    EXPECT_EQ(list.Place(0), first);
    ExpectSound(list.list, this->allocator);
}

// The list's own elements as arguments -------------------------------------------------------

TYPED_TEST(List, TakesItsOwnElements)
{
    using L = TypeParam;
    HeldList<L> list(this->allocator, {1, 2});
    EXPECT_EQ(L::PushBack(list, L::Front(list)), 1);
    EXPECT_EQ(L::PushFront(list, list.At(1)), 1);
    EXPECT_EQ(*list, (Numbers{2, 1, 2, 1}));
    EXPECT_NE(L::Insert(list, list.Place(1), L::Back(list)), nullptr);
    EXPECT_EQ(*list, (Numbers{2, 1, 1, 2, 1}));
    EXPECT_EQ(L::InsertN(list, list.Place(0), 2, L::Back(list)), 1);
    EXPECT_EQ(*list, (Numbers{1, 1, 2, 1, 1, 2, 1}));
    EXPECT_EQ(L::Resize(list, 8, list.At(2)), 1);
    EXPECT_EQ(*list, (Numbers{1, 1, 2, 1, 1, 2, 1, 2}));
    EXPECT_EQ(L::Resize(list, 2, L::Back(list)), 1);
    EXPECT_EQ(*list, (Numbers{1, 1}));
}

TYPED_TEST(List, InsertRangeTakesItsOwnElementsWhereverThePositionIs)
{
    using L = TypeParam;
    for (int first = 0; first <= 3; ++first)
        for (int last = first; last <= 3; ++last)
            for (int place = 0; place <= 3; ++place)
            {
                HeldList<L> list(this->allocator, {1, 2, 3});
                EXPECT_EQ(
                    L::InsertRange(list, list.Place(place), list.Place(first), list.Place(last)),
                    1);
                const Numbers all = {1, 2, 3};
                Numbers expected = all;
                expected.insert(expected.begin() + place, all.begin() + first, all.begin() + last);
                EXPECT_EQ(*list, expected);
                ExpectSound(list.list, this->allocator);
            }
}

// Assignment ---------------------------------------------------------------------------------

TYPED_TEST(List, AssignKeepsTheNodesThatItHas)
{
    using L = TypeParam;
    HeldList<L> source(this->elsewhere, {7, 8, 9});
    for (const int size : {0, 1, 2, 3, 4, 5})
    {
        HeldList<L> list(this->allocator, {1, 2, 3, 4, 5});
        ASSERT_EQ(L::Resize(list, static_cast<NuvSizeT>(size), ElementOf<L>(0)), 1);
        std::vector<const void*> nodes;
        for (int place = 0; place < size && place < 3; ++place)
            nodes.push_back(list.Place(place));
        EXPECT_EQ(L::Assign(list, source), &list.list);
        EXPECT_EQ(*list, (Numbers{7, 8, 9}));
        for (std::size_t place = 0; place < nodes.size(); ++place)
            EXPECT_EQ(list.Place(static_cast<int>(place)), nodes[place]);
        EXPECT_EQ(L::GetAllocator(list), this->allocator.operator NuvAllocator*());
        ExpectSound(list.list, this->allocator);
    }
    EXPECT_EQ(*source, (Numbers{7, 8, 9}));
}

TYPED_TEST(List, AssignOfAnEmptyListEmpties)
{
    using L = TypeParam;
    const HeldList<L> source(this->elsewhere);
    HeldList<L> list(this->allocator, {1, 2});
    EXPECT_EQ(L::Assign(list, source), &list.list);
    EXPECT_EQ(L::Empty(list), 1);
    EXPECT_EQ(this->allocator.LiveBlocks(), 0u);
}
}  // namespace
