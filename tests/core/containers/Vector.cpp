// The growable array: construction, access, growth, insertion and removal, for every instantiation.
#include "tests/core/containers/VectorSupport.hpp"

namespace
{
template <class Instantiation>
class Vector : public VectorTest<Instantiation>
{
};

TYPED_TEST_SUITE(Vector, VectorTypes);

// Edge cases ------------------------------------------------------------------------------------

TYPED_TEST(Vector, PushBackOnAnEmptyArrayTakesRoomForTwoThenFourThenEight)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator);
    EXPECT_EQ(vector->begin, nullptr);
    const Numbers capacities = {2, 2, 4, 4, 8, 8, 8, 8, 16};
    Numbers pushed;
    for (const int capacity : capacities)
    {
        pushed.push_back(static_cast<int>(pushed.size()) + 10);
        EXPECT_EQ(V::PushBack(vector, ElementOf<V>(pushed.back())), 1);
        EXPECT_EQ(vector.Capacity(), static_cast<NuvSizeT>(capacity));
        EXPECT_EQ(*vector, pushed);
        ExpectSound(*vector.operator->(), this->allocator);
    }
}

TYPED_TEST(Vector, ReserveWithinTheCapacityChangesNothing)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator, {1, 2, 3});
    const auto before = vector.vector;
    const std::size_t requests = this->allocator.Requests();
    for (const NuvSizeT capacity : {0u, 1u, 3u})
    {
        EXPECT_EQ(V::Reserve(vector, capacity), 1);
        EXPECT_EQ(vector->begin, before.begin);
        EXPECT_EQ(vector->end, before.end);
        EXPECT_EQ(vector->endBuf, before.endBuf);
    }
    EXPECT_EQ(this->allocator.Requests(), requests);
}

TYPED_TEST(Vector, ResizeFromThreeToFiveReservesEightAndFillsTheNewPlaces)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator, {1, 2, 3});
    EXPECT_EQ(V::Resize(vector, 5, ElementOf<V>(7)), 1);
    EXPECT_EQ(vector.Capacity(), 8u);
    EXPECT_EQ(*vector, (Numbers{1, 2, 3, 7, 7}));
    EXPECT_EQ(V::Resize(vector, 1, ElementOf<V>(8)), 1);
    EXPECT_EQ(vector.Capacity(), 8u);
    EXPECT_EQ(*vector, (Numbers{1}));
    ExpectSound(vector.vector, this->allocator);
}

TYPED_TEST(Vector, EraseRangeReturnsItsLastPositionAsGiven)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator, {1, 2, 3, 4, 5});
    auto* const begin = V::Begin(vector);
    EXPECT_EQ(V::EraseRange(vector, begin + 1, begin + 1), begin + 1);
    EXPECT_EQ(V::EraseRange(vector, begin + 5, begin + 5), begin + 5);
    EXPECT_EQ(*vector, (Numbers{1, 2, 3, 4, 5}));
    EXPECT_EQ(V::EraseRange(vector, begin, begin + 2), begin + 2);
    EXPECT_EQ(*vector, (Numbers{3, 4, 5}));
    EXPECT_EQ(vector->begin, begin);
    EXPECT_EQ(vector.Capacity(), 5u);
}

TYPED_TEST(Vector, InsertNOfNoneReturnsTrueAndDoesNotTouchTheArray)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator, {1, 2});
    const auto before = vector.vector;
    EXPECT_EQ(V::InsertN(vector, vector->begin + 1, 0, ElementOf<V>(7)), 1);
    EXPECT_EQ(vector->begin, before.begin);
    EXPECT_EQ(vector->end, before.end);
    EXPECT_EQ(vector->endBuf, before.endBuf);
    EXPECT_EQ(*vector, (Numbers{1, 2}));
}

// Construction ----------------------------------------------------------------------------------

TYPED_TEST(Vector, ConstructDefaultHoldsNoBlock)
{
    using V = TypeParam;
    typename V::Container vector;
    EXPECT_EQ(V::ConstructDefault(&vector, this->allocator), &vector);
    EXPECT_EQ(V::GetAllocator(&vector), this->allocator.operator NuvAllocator*());
    EXPECT_EQ(vector.begin, nullptr);
    EXPECT_EQ(vector.end, nullptr);
    EXPECT_EQ(vector.endBuf, nullptr);
    EXPECT_EQ(V::Empty(&vector), 1);
    EXPECT_EQ(V::Size(&vector), 0u);
    EXPECT_EQ(V::Capacity(&vector), 0u);
    V::Destruct(&vector);
    EXPECT_EQ(this->allocator.Requests(), 0u);
    EXPECT_EQ(this->allocator.NullsGivenBack(), 0u);
}

TYPED_TEST(Vector, ConstructNMakesThatManyCopiesInABlockOfExactlyThatMany)
{
    using V = TypeParam;
    const ElementOf<V> element(7);
    typename V::Container vector;
    ASSERT_EQ(V::ConstructN(&vector, 3, element, this->allocator), &vector);
    EXPECT_EQ(NumbersOf(vector), (Numbers{7, 7, 7}));
    EXPECT_EQ(V::Capacity(&vector), 3u);
    EXPECT_EQ(V::GetAllocator(&vector), this->allocator.operator NuvAllocator*());
    ExpectSound(vector, this->allocator);
    V::Destruct(&vector);
}

TYPED_TEST(Vector, ConstructionsOfNothingHoldNoBlock)
{
    using V = TypeParam;
    const ElementOf<V> element(7);
    HeldVector<V> empty(this->allocator);
    typename V::Container vector;
    ASSERT_EQ(V::ConstructN(&vector, 0, element, this->allocator), &vector);
    EXPECT_EQ(vector.begin, nullptr);
    ASSERT_EQ(V::ConstructRange(&vector, element, element, this->allocator), &vector);
    EXPECT_EQ(vector.begin, nullptr);
    ASSERT_EQ(V::ConstructRange(&vector, nullptr, nullptr, this->allocator), &vector);
    EXPECT_EQ(vector.endBuf, nullptr);
    ASSERT_EQ(V::ConstructCopy(&vector, empty), &vector);
    EXPECT_EQ(vector.end, nullptr);
    EXPECT_EQ(this->allocator.Requests(), 0u);
}

TYPED_TEST(Vector, ConstructRangeCopiesInOrderOnTheGivenAllocator)
{
    using V = TypeParam;
    TestAllocator elsewhere;
    HeldVector<V> source(elsewhere, {1, 2, 3, 4});
    typename V::Container vector;
    ASSERT_EQ(V::ConstructRange(&vector, source->begin + 1, source->end, this->allocator), &vector);
    EXPECT_EQ(NumbersOf(vector), (Numbers{2, 3, 4}));
    EXPECT_EQ(V::Capacity(&vector), 3u);
    ExpectSound(vector, this->allocator);
    V::Destruct(&vector);
}

TYPED_TEST(Vector, ConstructCopyTakesTheSourcesAllocatorAndExactlyItsSize)
{
    using V = TypeParam;
    HeldVector<V> source(this->allocator, {1, 2, 3});
    ASSERT_EQ(V::Reserve(source, 10), 1);
    typename V::Container copy;
    ASSERT_EQ(V::ConstructCopy(&copy, source), &copy);
    EXPECT_EQ(V::GetAllocator(&copy), this->allocator.operator NuvAllocator*());
    EXPECT_EQ(NumbersOf(copy), (Numbers{1, 2, 3}));
    EXPECT_EQ(V::Capacity(&copy), 3u);
    EXPECT_NE(copy.begin, source->begin);
    V::PopBack(&copy);
    EXPECT_EQ(*source, (Numbers{1, 2, 3}));
    V::Destruct(&copy);
    EXPECT_EQ(*source, (Numbers{1, 2, 3}));
}

// Looking at it ---------------------------------------------------------------------------------

TYPED_TEST(Vector, PositionsAndElementsAreThoseOfTheBlock)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator, {4, 5, 6});
    ASSERT_EQ(V::Reserve(vector, 5), 1);
    auto* const begin = vector->begin;
    EXPECT_EQ(V::Begin(vector), begin);
    EXPECT_EQ(V::BeginConst(vector), begin);
    EXPECT_EQ(V::End(vector), begin + 3);
    EXPECT_EQ(V::EndConst(vector), begin + 3);
    EXPECT_EQ(V::RBegin(vector), begin + 3);
    EXPECT_EQ(V::RBeginConst(vector), begin + 3);
    EXPECT_EQ(V::REnd(vector), begin);
    EXPECT_EQ(V::REndConst(vector), begin);
    EXPECT_EQ(V::Front(vector), begin);
    EXPECT_EQ(V::FrontConst(vector), begin);
    EXPECT_EQ(V::Back(vector), begin + 2);
    EXPECT_EQ(V::BackConst(vector), begin + 2);
    EXPECT_EQ(V::At(vector, 1), begin + 1);
    EXPECT_EQ(V::AtConst(vector, 2), begin + 2);
    EXPECT_EQ(V::Size(vector), 3u);
    EXPECT_EQ(V::Capacity(vector), 5u);
    EXPECT_EQ(V::Empty(vector), 0);
}

TYPED_TEST(Vector, MaxSizeIsWhatThirtyTwoBitsOfBytesHold)
{
    EXPECT_EQ(TypeParam::MaxSize(), 4294967295u / sizeof(typename TypeParam::Element));
}

TEST(VectorSizes, MaxSizesAreThoseOfTheRecordsOn64Bits)
{
    EXPECT_EQ(IndexAndFloatVector::MaxSize(), 536870911u);
    EXPECT_EQ(NameAndFloatVector::MaxSize(), 107374182u);
    EXPECT_EQ(VariableBucketVector::MaxSize(), 268435455u);
    EXPECT_EQ(ConstraintBucketVector::MaxSize(), 268435455u);
}

TYPED_TEST(Vector, DumpChangesNothing)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator, {4, 5, 6});
    const auto before = vector.vector;
    V::Dump(vector, "vector", 4);
    EXPECT_EQ(vector->begin, before.begin);
    EXPECT_EQ(vector->end, before.end);
    EXPECT_EQ(vector->endBuf, before.endBuf);
    EXPECT_EQ(*vector, (Numbers{4, 5, 6}));
}

// Growth ----------------------------------------------------------------------------------------

TYPED_TEST(Vector, ReserveTakesExactlyWhatIsAskedFor)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator);
    EXPECT_EQ(V::Reserve(vector, 5), 1);
    EXPECT_EQ(vector.Capacity(), 5u);
    EXPECT_EQ(vector->begin, vector->end);
    for (int number = 1; number <= 3; ++number)
        ASSERT_EQ(V::PushBack(vector, ElementOf<V>(number)), 1);
    EXPECT_EQ(vector.Capacity(), 5u);
    EXPECT_EQ(V::Reserve(vector, 6), 1);
    EXPECT_EQ(vector.Capacity(), 6u);
    EXPECT_EQ(*vector, (Numbers{1, 2, 3}));
    ExpectSound(vector.vector, this->allocator);
}

TYPED_TEST(Vector, PushBackDoublesTheSizeOfAFullBlockOfAnyCapacity)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator, {1, 2, 3});
    EXPECT_EQ(V::PushBack(vector, ElementOf<V>(4)), 1);
    EXPECT_EQ(vector.Capacity(), 6u);
    EXPECT_EQ(*vector, (Numbers{1, 2, 3, 4}));
}

TYPED_TEST(Vector, ResizeReservesTheOldAndTheNewSizeTogether)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator);
    EXPECT_EQ(V::Resize(vector, 4, ElementOf<V>(1)), 1);
    EXPECT_EQ(vector.Capacity(), 4u);
    EXPECT_EQ(V::Resize(vector, 4, ElementOf<V>(2)), 1);
    EXPECT_EQ(vector.Capacity(), 4u);
    EXPECT_EQ(V::Resize(vector, 5, ElementOf<V>(3)), 1);
    EXPECT_EQ(vector.Capacity(), 9u);
    EXPECT_EQ(V::Resize(vector, 0, ElementOf<V>(4)), 1);
    EXPECT_EQ(vector.Capacity(), 9u);
    EXPECT_EQ(*vector, Numbers{});
    // The sum is reserved even where the new size alone would fit.
    EXPECT_EQ(V::Resize(vector, 5, ElementOf<V>(5)), 1);
    EXPECT_EQ(vector.Capacity(), 9u);
    EXPECT_EQ(V::Resize(vector, 6, ElementOf<V>(6)), 1);
    EXPECT_EQ(vector.Capacity(), 11u);
    EXPECT_EQ(*vector, (Numbers{5, 5, 5, 5, 5, 6}));
    ExpectSound(vector.vector, this->allocator);
}

// Counts that no memory holds -------------------------------------------------------------------

TYPED_TEST(Vector, CountsWhoseBytesDoNotFitInSixtyFourBitsAreRefusedWithoutARequest)
{
    using V = TypeParam;
    constexpr NuvSizeT kHuge = UINT64_MAX;
    const ElementOf<V> element(9);
    HeldVector<V> vector(this->allocator, {1, 2});
    const std::size_t requests = this->allocator.Requests();
    for (const NuvSizeT count : {kHuge, kHuge - 1, kHuge / sizeof(typename V::Element) + 1})
    {
        EXPECT_EQ(V::Reserve(vector, count), 0);
        EXPECT_EQ(V::Resize(vector, count, element), 0);
        EXPECT_EQ(V::InsertN(vector, vector->begin, count, element), 0);
        typename V::Container other;
        EXPECT_EQ(V::ConstructN(&other, count, element, this->allocator), nullptr);
    }
    EXPECT_EQ(this->allocator.Requests(), requests);
    EXPECT_EQ(*vector, (Numbers{1, 2}));
    EXPECT_EQ(vector.Capacity(), 2u);
}
}  // namespace
