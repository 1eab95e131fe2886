// The four kinds of iterators of the growable array, for every instantiation. What all kinds do is
// written once, in terms of the walk from the first to the last element of that kind.
#include <utility>

#include "tests/core/containers/VectorSupport.hpp"

namespace
{
template <class KindOfVector>
class VectorIterator : public ::testing::Test
{
protected:
    using Vector = typename KindOfVector::Container;
    using Position = typename KindOfVector::Kind::Position;

    /// The position that `n` steps from the first lead to, by the definition of the kind.
    Position Place(std::ptrdiff_t n)
    {
        return KindOfVector::Kind::isReverse ? vector->end - n : vector->begin + n;
    }

    /// The number of the element that `n` steps from the first lead to.
    static int NumberAt(int n)
    {
        return KindOfVector::Kind::isReverse ? kCount - n : n + 1;
    }

    static constexpr int kCount = 5;
    TestAllocator allocator;
    HeldVector<Vector> vector{allocator, {1, 2, 3, 4, 5}};
};

TYPED_TEST_SUITE(VectorIterator, VectorIteratorTypes);

// Edge cases ---------------------------------------------------------------------------------

TYPED_TEST(VectorIterator, IsExceptionalExactlyForNull)
{
    using Kind = typename TypeParam::Kind;
    auto position = this->Place(0);
    EXPECT_EQ(Kind::IsExceptional(&position), 0);
    EXPECT_EQ(Kind::ConstructExceptional(&position), &position);
    EXPECT_EQ(position, nullptr);
    EXPECT_EQ(Kind::IsExceptional(&position), 1);
}

TYPED_TEST(VectorIterator, TheWalkVisitsTheElementsInTheOrderOfItsKind)
{
    using Kind = typename TypeParam::Kind;
    using V = typename TypeParam::Container;
    auto position = this->Place(0);
    const auto end = this->Place(this->kCount);
    if (Kind::isReverse)
    {
        EXPECT_EQ(position, V::RBegin(this->vector));
        EXPECT_EQ(position, V::RBeginConst(this->vector));
        EXPECT_EQ(end, V::REnd(this->vector));
        EXPECT_EQ(Kind::ContentOf(&position), V::Back(this->vector));
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

// Steps --------------------------------------------------------------------------------------

TYPED_TEST(VectorIterator, StepsOfAnyLengthCountInTheDirectionOfTheWalk)
{
    using Kind = typename TypeParam::Kind;
    using Distance = typename Kind::DifferenceType;
    for (Distance from = 0; from <= this->kCount; ++from)
        for (Distance to = 0; to <= this->kCount; ++to)
        {
            const auto first = this->Place(from);
            const auto second = this->Place(to);
            const Distance step = to - from;
            EXPECT_EQ(Kind::Add(&first, step), second);
            EXPECT_EQ(Kind::Subtract(&second, &first), step);
            EXPECT_EQ(Kind::Less(&first, &second), from < to);
            EXPECT_EQ(Kind::Equal(&first, &second), from == to);
            auto position = first;
            Kind::IncrementN(&position, step);
            EXPECT_EQ(position, second);
            Kind::DecrementN(&position, step);
            EXPECT_EQ(position, first);
            if (to == this->kCount)
                continue;
            EXPECT_EQ(NumberOf(*Kind::At(&first, step)), this->NumberAt(static_cast<int>(to)));
        }
}

TYPED_TEST(VectorIterator, CopiesAssignsAndExchangesThePosition)
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

TYPED_TEST(VectorIterator, GivesReadOnlyElementsForTheReadOnlyKinds)
{
    using Kind = typename TypeParam::Kind;
    using Element = typename TypeParam::Container::Element;
    using Content = std::remove_pointer_t<decltype(Kind::ContentOf(nullptr))>;
    static_assert(std::is_same_v<Content*, typename Kind::Position>);
    static_assert(std::is_same_v<Content*, decltype(Kind::At(nullptr, 0))>);
    static_assert(std::is_same_v<const Element*, decltype(Kind::ContentOfConst(nullptr))>);
    static_assert(std::is_same_v<std::remove_const_t<Content>, Element>);
    static_assert(std::is_same_v<typename Kind::DifferenceType, NuvDistanceT>);
    const bool isConst = std::is_same_v<Kind, typename TypeParam::Container::ConstForwardKind> ||
                         std::is_same_v<Kind, typename TypeParam::Container::ConstReverseKind>;
    EXPECT_EQ(std::is_const_v<Content>, isConst);
}
}  // namespace
