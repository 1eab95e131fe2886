// The four kinds of iterators of the list, for every instantiation.
#include <functional>

#include "tests/core/containers/ListSupport.hpp"

namespace
{
template <class KindOfList>
class ListIterator : public ::testing::Test
{
protected:
    using List = typename KindOfList::Container;
    using Position = typename KindOfList::Kind::Position;

    /// The position that `n` steps from the first lead to, by the definition of the kind: a reverse
    /// one holds the node after the one that it denotes.
    Position Place(int n)
    {
        return KindOfList::Kind::isReverse ? list.Place(kCount - n) : list.Place(n);
    }

    /// The number of the element that `n` steps from the first lead to.
    static int NumberAt(int n)
    {
        return KindOfList::Kind::isReverse ? kCount - n : n + 1;
    }

    static constexpr int kCount = 5;
    TestAllocator allocator;
    HeldList<List> list{allocator, {1, 2, 3, 4, 5}};
};

TYPED_TEST_SUITE(ListIterator, ListIteratorTypes);

// Edge cases ---------------------------------------------------------------------------------

TYPED_TEST(ListIterator, TheWalkVisitsTheElementsInTheOrderOfItsKind)
{
    using Kind = typename TypeParam::Kind;
    using L = typename TypeParam::Container;
    auto position = this->Place(0);
    const auto end = this->Place(this->kCount);
    if (Kind::isReverse)
    {
        EXPECT_EQ(position, L::RBegin(this->list));
        EXPECT_EQ(end, L::REnd(this->list));
        EXPECT_EQ(Kind::ContentOf(&position), L::Back(this->list));
    }
    else
    {
        EXPECT_EQ(position, L::Begin(this->list));
        EXPECT_EQ(end, L::End(this->list));
        EXPECT_EQ(Kind::ContentOf(&position), L::Front(this->list));
    }
    for (int n = 0; n < this->kCount; ++n)
    {
        EXPECT_EQ(Kind::Equal(&position, &end), 0);
        EXPECT_EQ(NumberOf(*Kind::ContentOf(&position)), this->NumberAt(n));
        EXPECT_EQ(Kind::ContentOfConst(&position), Kind::ContentOf(&position));
        Kind::Increment(&position);
        EXPECT_EQ(position, this->Place(n + 1));
    }
    EXPECT_EQ(Kind::Equal(&position, &end), 1);
    for (int n = this->kCount; n > 0; --n)
    {
        Kind::Decrement(&position);
        EXPECT_EQ(position, this->Place(n - 1));
    }
}

TYPED_TEST(ListIterator, IsExceptionalExactlyForNull)
{
    using Kind = typename TypeParam::Kind;
    auto position = this->Place(0);
    EXPECT_EQ(Kind::IsExceptional(&position), 0);
    EXPECT_EQ(Kind::ConstructExceptional(&position), &position);
    EXPECT_EQ(position, nullptr);
    EXPECT_EQ(Kind::IsExceptional(&position), 1);
    position = this->Place(1);
    EXPECT_EQ(Kind::Construct(&position), &position);
    EXPECT_EQ(position, nullptr);
}

// Positions ----------------------------------------------------------------------------------

TYPED_TEST(ListIterator, LessOrdersAddressesAndNotPlaces)
{
    using Kind = typename TypeParam::Kind;
    for (int from = 0; from <= this->kCount; ++from)
        for (int to = 0; to <= this->kCount; ++to)
        {
            const auto first = this->Place(from);
            const auto second = this->Place(to);
            EXPECT_EQ(Kind::Less(&first, &second), std::less<const void*>()(first, second));
            EXPECT_EQ(Kind::Equal(&first, &second), from == to);
        }
}

TYPED_TEST(ListIterator, CopiesAssignsAndExchangesThePosition)
{
    using Kind = typename TypeParam::Kind;
    const auto first = this->Place(0);
    const auto second = this->Place(2);
    typename Kind::Position x;
    typename Kind::Position y;
    EXPECT_EQ(Kind::ConstructCopy(&x, &first), &x);
    EXPECT_EQ(x, first);
    EXPECT_EQ(Kind::Assign(&x, &second), &x);
    EXPECT_EQ(x, second);
    Kind::ConstructCopy(&y, &first);
    EXPECT_EQ(Kind::Swap(&x, &y), 1);
    EXPECT_EQ(x, first);
    EXPECT_EQ(y, second);
    EXPECT_EQ(Kind::Swap(&x, &x), 1);
    EXPECT_EQ(x, first);
    EXPECT_EQ(Kind::Assign(&x, &x), &x);
    EXPECT_EQ(x, first);
    Kind::Destruct(&x);
    EXPECT_EQ(x, first);
}

TYPED_TEST(ListIterator, GivesReadOnlyElementsForTheReadOnlyKinds)
{
    using Kind = typename TypeParam::Kind;
    using Element = typename TypeParam::Container::Element;
    using Link = std::remove_pointer_t<typename Kind::Position>;
    using Content = std::remove_pointer_t<decltype(Kind::ContentOf(nullptr))>;
    static_assert(std::is_const_v<Content> == std::is_const_v<Link>);
    static_assert(std::is_same_v<const Element*, decltype(Kind::ContentOfConst(nullptr))>);
    EXPECT_TRUE((std::is_same_v<std::remove_const_t<Content>, Element>));
}
}  // namespace
