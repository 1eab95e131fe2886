// The growable array: assignment and exchange between arrays, on one allocator and on two, for
// every instantiation.
#include "tests/core/containers/VectorSupport.hpp"

namespace
{
template <class Instantiation>
class VectorExchange : public VectorTest<Instantiation>
{
protected:
    TestAllocator elsewhere;
};

TYPED_TEST_SUITE(VectorExchange, VectorTypes);

// Assignment ---------------------------------------------------------------------------------

TYPED_TEST(VectorExchange, AssignToItselfChangesNothing)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator, {1, 2, 3});
    const auto before = vector.vector;
    const std::size_t requests = this->allocator.Requests();
    EXPECT_EQ(V::Assign(vector, vector), &vector.vector);
    EXPECT_EQ(vector->begin, before.begin);
    EXPECT_EQ(vector->end, before.end);
    EXPECT_EQ(vector->endBuf, before.endBuf);
    EXPECT_EQ(*vector, (Numbers{1, 2, 3}));
    EXPECT_EQ(this->allocator.Requests(), requests);
}

TYPED_TEST(VectorExchange, AssignWithinTheCapacityKeepsBlockAndAllocator)
{
    using V = TypeParam;
    const HeldVector<V> source(this->elsewhere, {7, 8, 9});
    for (const int size : {0, 1, 2, 3, 4, 5})
    {
        HeldVector<V> vector(this->allocator, {1, 2, 3, 4, 5});
        V::EraseRange(vector, vector->begin + size, vector->end);
        auto* const begin = vector->begin;
        EXPECT_EQ(V::Assign(vector, source), &vector.vector);
        EXPECT_EQ(*vector, (Numbers{7, 8, 9}));
        EXPECT_EQ(vector->begin, begin);
        EXPECT_EQ(vector.Capacity(), 5u);
        EXPECT_EQ(V::GetAllocator(vector), this->allocator.operator NuvAllocator*());
    }
    EXPECT_EQ(*source, (Numbers{7, 8, 9}));
}

TYPED_TEST(VectorExchange, AssignBeyondTheCapacityTakesExactlyTheSizeFromItsOwnAllocator)
{
    using V = TypeParam;
    HeldVector<V> source(this->elsewhere, {5, 6, 7, 8, 9});
    ASSERT_EQ(V::Reserve(source, 20), 1);
    for (const bool hasBlock : {false, true})
    {
        HeldVector<V> vector(this->allocator);
        ASSERT_TRUE(!hasBlock || V::Resize(vector, 4, ElementOf<V>(1)));
        EXPECT_EQ(V::Assign(vector, source), &vector.vector);
        EXPECT_EQ(*vector, (Numbers{5, 6, 7, 8, 9}));
        EXPECT_EQ(vector.Capacity(), 5u);
        EXPECT_EQ(V::GetAllocator(vector), this->allocator.operator NuvAllocator*());
        ExpectSound(vector.vector, this->allocator);
    }
}

TYPED_TEST(VectorExchange, AssignOfNothingEmptiesAndKeepsTheBlock)
{
    using V = TypeParam;
    const HeldVector<V> source(this->elsewhere);
    HeldVector<V> vector(this->allocator, {1, 2});
    auto* const begin = vector->begin;
    EXPECT_EQ(V::Assign(vector, source), &vector.vector);
    EXPECT_EQ(V::Empty(vector), 1);
    EXPECT_EQ(vector->begin, begin);
    EXPECT_EQ(vector.Capacity(), 2u);
}

// Exchange -----------------------------------------------------------------------------------

TYPED_TEST(VectorExchange, SwapOfTwoEmptyArraysLeavesBothTheirBlocks)
{
    using V = TypeParam;
    HeldVector<V> x(this->allocator, {1, 2});
    HeldVector<V> y(this->allocator);
    V::Clear(x);
    auto* const begin = x->begin;
    EXPECT_EQ(V::Swap(x, y), 1);
    EXPECT_EQ(x->begin, begin);
    EXPECT_EQ(y->begin, nullptr);
}

TYPED_TEST(VectorExchange, SwapOnOneAllocatorExchangesTheRecords)
{
    using V = TypeParam;
    HeldVector<V> x(this->allocator, {1, 2});
    HeldVector<V> y(this->allocator, {3, 4, 5});
    const auto formerX = x.vector;
    const auto formerY = y.vector;
    const std::size_t requests = this->allocator.Requests();
    EXPECT_EQ(V::Swap(x, y), 1);
    EXPECT_EQ(x->begin, formerY.begin);
    EXPECT_EQ(x->end, formerY.end);
    EXPECT_EQ(x->endBuf, formerY.endBuf);
    EXPECT_EQ(y->begin, formerX.begin);
    EXPECT_EQ(y->end, formerX.end);
    EXPECT_EQ(y->endBuf, formerX.endBuf);
    EXPECT_EQ(this->allocator.Requests(), requests);
}

TYPED_TEST(VectorExchange, SwapWithItselfChangesNothing)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator, {1, 2});
    auto* const begin = vector->begin;
    EXPECT_EQ(V::Swap(vector, vector), 1);
    EXPECT_EQ(vector->begin, begin);
    EXPECT_EQ(*vector, (Numbers{1, 2}));
}

// The first array is the longer one: its elements move to a new block, which the second one holds
// from then on although it came from the first one's allocator.
TYPED_TEST(VectorExchange, SwapOnTwoAllocatorsHandsTheSecondABlockOfTheFirstsAllocator)
{
    using V = TypeParam;
    for (const bool areEqual : {false, true})
    {
        HeldVector<V> x(this->allocator, {1, 2, 3});
        HeldVector<V> y(this->elsewhere, {7, 8});
        ASSERT_TRUE(!areEqual || V::PushBack(y, ElementOf<V>(9, this->elsewhere)));
        ASSERT_EQ(V::Reserve(x, 6), 1);
        const auto formerX = x.vector;
        const void* const formerBlockOfY = y->begin;
        EXPECT_EQ(V::Swap(x, y), 1);

        EXPECT_EQ(*x, areEqual ? (Numbers{7, 8, 9}) : (Numbers{7, 8}));
        EXPECT_EQ(x->begin, formerX.begin);
        EXPECT_EQ(x->endBuf, formerX.endBuf);
        EXPECT_EQ(V::GetAllocator(x), this->allocator.operator NuvAllocator*());

        EXPECT_EQ(*y, (Numbers{1, 2, 3}));
        EXPECT_EQ(y.Capacity(), 3u);
        EXPECT_EQ(V::GetAllocator(y), this->elsewhere.operator NuvAllocator*());
        ExpectSound(y.vector, this->allocator);
        EXPECT_FALSE(this->elsewhere.Owns(formerBlockOfY));

        // Given back to where it came from, as a caller has to who mixes allocators.
        y->allocator = this->allocator;
    }
}

TYPED_TEST(VectorExchange, SwapOnTwoAllocatorsGivesTheLongerSecondArrayTheFirstsElements)
{
    using V = TypeParam;
    HeldVector<V> x(this->allocator, {1, 2});
    HeldVector<V> y(this->elsewhere, {7, 8, 9});
    ASSERT_EQ(V::Reserve(y, 5), 1);
    const auto formerY = y.vector;
    const void* const formerBlockOfX = x->begin;
    EXPECT_EQ(V::Swap(x, y), 1);

    EXPECT_EQ(*x, (Numbers{7, 8, 9}));
    EXPECT_EQ(x.Capacity(), 3u);
    EXPECT_NE(x->begin, formerBlockOfX);
    EXPECT_FALSE(this->allocator.Owns(formerBlockOfX));
    EXPECT_EQ(V::GetAllocator(x), this->allocator.operator NuvAllocator*());
    ExpectSound(x.vector, this->allocator);

    EXPECT_EQ(*y, (Numbers{1, 2}));
    EXPECT_EQ(y->begin, formerY.begin);
    EXPECT_EQ(y->endBuf, formerY.endBuf);
    EXPECT_EQ(V::GetAllocator(y), this->elsewhere.operator NuvAllocator*());
    ExpectSound(y.vector, this->elsewhere);
}

TYPED_TEST(VectorExchange, SwapOnTwoAllocatorsWithAnEmptyArray)
{
    using V = TypeParam;
    HeldVector<V> x(this->allocator);
    HeldVector<V> y(this->elsewhere, {7, 8});
    EXPECT_EQ(V::Swap(x, y), 1);
    EXPECT_EQ(*x, (Numbers{7, 8}));
    EXPECT_EQ(*y, Numbers{});
    EXPECT_EQ(y.Capacity(), 2u);
    ExpectSound(x.vector, this->allocator);
    ExpectSound(y.vector, this->elsewhere);

    HeldVector<V> z(this->elsewhere);
    EXPECT_EQ(V::Swap(x, z), 1);
    EXPECT_EQ(*x, Numbers{});
    EXPECT_EQ(x.Capacity(), 2u);
    EXPECT_EQ(*z, (Numbers{7, 8}));
    ExpectSound(z.vector, this->allocator);
    EXPECT_EQ(this->elsewhere.NullsGivenBack(), 0u);
    z->allocator = this->allocator;
}

TYPED_TEST(VectorExchange, SwapOnTwoAllocatorsRefusedChangesNothing)
{
    using V = TypeParam;
    for (const bool isFirstLonger : {false, true})
    {
        HeldVector<V> x(this->allocator, {1, 2});
        HeldVector<V> y(this->elsewhere, {8});
        ASSERT_TRUE(isFirstLonger || V::Resize(y, 4, ElementOf<V>(8, this->elsewhere)));
        const auto formerX = x.vector;
        const auto formerY = y.vector;
        this->allocator.RefuseFrom(1);
        EXPECT_EQ(V::Swap(x, y), 0);
        this->allocator.RefuseNothing();
        EXPECT_EQ(x->begin, formerX.begin);
        EXPECT_EQ(x->end, formerX.end);
        EXPECT_EQ(y->begin, formerY.begin);
        EXPECT_EQ(y->end, formerY.end);
        EXPECT_EQ(*x, (Numbers{1, 2}));
        EXPECT_EQ(*y, isFirstLonger ? (Numbers{8}) : (Numbers{8, 8, 8, 8}));
    }
}

// Names and allocators -----------------------------------------------------------------------

TEST(VectorOfNames, CopiesLieOnTheAllocatorOfTheirSourcesNames)
{
    TestAllocator allocator;
    TestAllocator elsewhere;
    using V = NameAndFloatVector;
    HeldVector<V> vector(allocator);
    ASSERT_EQ(V::PushBack(vector, ElementOf<V>(1, elsewhere)), 1);
    EXPECT_TRUE(elsewhere.Owns(vector->begin->first.buf));
    ASSERT_EQ(V::Resize(vector, 3, vector->begin), 1);
    EXPECT_TRUE(elsewhere.Owns(vector->begin[2].first.buf));
    // Growing moves the names as they are.
    const void* const name = vector->begin->first.buf;
    ASSERT_EQ(V::Reserve(vector, 30), 1);
    EXPECT_EQ(vector->begin->first.buf, name);
}

TEST(VectorOfNames, AssignedNamesStayOnTheirAllocatorAndAppendedOnesFollowTheirSource)
{
    TestAllocator allocator;
    TestAllocator elsewhere;
    using V = NameAndFloatVector;
    HeldVector<V> source(elsewhere, {1, 2});
    HeldVector<V> vector(allocator, {10});
    ASSERT_EQ(V::Reserve(vector, 2), 1);
    EXPECT_EQ(V::Assign(vector, source), &vector.vector);
    EXPECT_TRUE(allocator.Owns(vector->begin[0].first.buf));
    EXPECT_TRUE(elsewhere.Owns(vector->begin[1].first.buf));
}
// In place, a new value is assigned to the element that stood there; behind the old end it is
// copied.
TEST(VectorOfNames, NamesInsertedWithRoomLieWhereTheElementsLayThatStoodThere)
{
    TestAllocator first;
    TestAllocator second;
    TestAllocator third;
    using V = NameAndFloatVector;
    for (const bool isRange : {false, true})
    {
        HeldVector<V> vector(first, {1});
        ASSERT_EQ(V::PushBack(vector, ElementOf<V>(2, second)), 1);
        ASSERT_EQ(V::Reserve(vector, 5), 1);
        const HeldVector<V> source(third, {7, 7, 7});
        if (isRange)
            ASSERT_EQ(V::InsertRange(vector, vector->begin, source.vector.begin, source.vector.end),
                      1);
        else
            ASSERT_EQ(V::InsertN(vector, vector->begin, 3, source.vector.begin), 1);
        EXPECT_EQ(*vector, (Numbers{7, 7, 7, 1, 2}));
        const TestAllocator* const owners[] = {&first, &second, &third, &first, &second};
        for (std::size_t i = 0; i != std::size(owners); ++i)
            EXPECT_TRUE(owners[i]->Owns(vector->begin[i].first.buf)) << i;
    }
    HeldVector<V> vector(first, {1});
    ASSERT_EQ(V::Reserve(vector, 3), 1);
    V::Insert(vector, vector->begin, ElementOf<V>(7, third));
    V::Insert(vector, vector->end, ElementOf<V>(8, third));
    EXPECT_EQ(*vector, (Numbers{7, 1, 8}));
    EXPECT_TRUE(first.Owns(vector->begin[0].first.buf));
    EXPECT_TRUE(third.Owns(vector->begin[2].first.buf));
}
}  // namespace
