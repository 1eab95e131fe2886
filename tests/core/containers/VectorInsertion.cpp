// The growable array: insertion and removal, and the array's own elements as arguments, for every
// instantiation.
#include "tests/core/containers/VectorSupport.hpp"

namespace
{
template <class Instantiation>
class VectorInsertion : public VectorTest<Instantiation>
{
};

TYPED_TEST_SUITE(VectorInsertion, VectorTypes);

TYPED_TEST(VectorInsertion, ResizeCopiesAnElementThatLiesBeforeOrBehindTheArray)
{
    using V = TypeParam;
    // Of two arrays, one lies before the other.
    for (const bool isFirst : {false, true})
    {
        HeldVector<V> one(this->allocator, {1, 2});
        HeldVector<V> other(this->allocator, {3, 4});
        HeldVector<V>& grown = isFirst ? one : other;
        EXPECT_EQ(V::Resize(grown, 5, (isFirst ? other : one)->begin), 1);
        EXPECT_EQ(*grown, isFirst ? (Numbers{1, 2, 3, 3, 3}) : (Numbers{3, 4, 1, 1, 1}));
    }
}

TYPED_TEST(VectorInsertion, ResizeCopiesAnElementThatStandsWhereTheArrayEnds)
{
    using V = TypeParam;
    using Element = typename V::Element;
    // A block of two elements, and directly behind it one that is not the array's.
    alignas(Element) unsigned char memory[3 * sizeof(Element)];
    Element* const elements = reinterpret_cast<Element*>(memory);
    for (int i = 0; i != 3; ++i)
        ASSERT_TRUE(Numbered<Element>::Make(elements + i, i + 1, this->allocator));
    NuvAllocator leaving = {[](NuvAllocator*, NuvSizeT size)
                            { return Heap()->allocate(Heap(), size); },
                            [](NuvAllocator*, void*, NuvSizeT) {}, UINT64_MAX, nullptr};
    typename V::Container vector;
    V::ConstructDefault(&vector, &leaving);
    vector.begin = elements;
    vector.end = vector.endBuf = elements + 2;
    EXPECT_EQ(V::Resize(&vector, 4, elements + 2), 1);
    EXPECT_EQ(NumbersOf(vector), (Numbers{1, 2, 3, 3}));
    vector.allocator = Heap();
    V::Destruct(&vector);
    Numbered<Element>::Destruct(elements + 2);
}

TYPED_TEST(VectorInsertion, ResizeAsksForRoomForTheOldAndTheNewElementsTogether)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator, {1, 2});
    ASSERT_EQ(V::Reserve(vector, 5), 1);
    const auto* const begin = vector->begin;
    EXPECT_EQ(V::Resize(vector, 3, ElementOf<V>(3)), 1);
    EXPECT_EQ(vector->begin, begin);
    EXPECT_EQ(V::Resize(vector, 4, ElementOf<V>(4)), 1);
    EXPECT_EQ(vector.Capacity(), 7u);
    EXPECT_EQ(*vector, (Numbers{1, 2, 3, 4}));
}

TYPED_TEST(VectorInsertion, InsertGrowsAsPushBackDoes)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator);
    auto* position = V::Insert(vector, vector->begin, ElementOf<V>(3));
    EXPECT_EQ(position, vector->begin);
    EXPECT_EQ(vector.Capacity(), 2u);
    position = V::Insert(vector, vector->begin, ElementOf<V>(1));
    EXPECT_EQ(position, vector->begin);
    position = V::Insert(vector, vector->begin + 1, ElementOf<V>(2));
    EXPECT_EQ(position, vector->begin + 1);
    EXPECT_EQ(vector.Capacity(), 4u);
    EXPECT_EQ(*vector, (Numbers{1, 2, 3}));
    position = V::Insert(vector, vector->end, ElementOf<V>(4));
    EXPECT_EQ(position, vector->end - 1);
    EXPECT_EQ(vector.Capacity(), 4u);
    position = V::Insert(vector, vector->end, ElementOf<V>(5));
    EXPECT_EQ(position, vector->end - 1);
    EXPECT_EQ(vector.Capacity(), 8u);
    EXPECT_EQ(*vector, (Numbers{1, 2, 3, 4, 5}));
    ExpectSound(vector.vector, this->allocator);
}

TYPED_TEST(VectorInsertion, InsertWithRoomMovesTheTailUpInItsBlock)
{
    using V = TypeParam;
    for (std::ptrdiff_t place = 0; place <= 4; ++place)
    {
        HeldVector<V> vector(this->allocator, {1, 2, 3, 4});
        ASSERT_EQ(V::Reserve(vector, 5), 1);
        auto* const begin = vector->begin;
        EXPECT_EQ(V::Insert(vector, begin + place, ElementOf<V>(9)), begin + place);
        Numbers expected = {1, 2, 3, 4};
        expected.insert(expected.begin() + place, 9);
        EXPECT_EQ(*vector, expected);
        EXPECT_EQ(vector->begin, begin);
        EXPECT_EQ(vector.Capacity(), 5u);
    }
}

TYPED_TEST(VectorInsertion, InsertNTakesTheLargerOfTheNeedAndTwiceTheCapacity)
{
    using V = TypeParam;
    HeldVector<V> small(this->allocator, {1, 2, 3, 4});
    EXPECT_EQ(V::InsertN(small, small->begin + 2, 2, ElementOf<V>(9)), 1);
    EXPECT_EQ(small.Capacity(), 8u);
    EXPECT_EQ(*small, (Numbers{1, 2, 9, 9, 3, 4}));

    HeldVector<V> large(this->allocator, {1, 2, 3, 4});
    EXPECT_EQ(V::InsertN(large, large->begin, 7, ElementOf<V>(9)), 1);
    EXPECT_EQ(large.Capacity(), 11u);
    EXPECT_EQ(*large, (Numbers{9, 9, 9, 9, 9, 9, 9, 1, 2, 3, 4}));

    HeldVector<V> none(this->allocator);
    EXPECT_EQ(V::InsertN(none, none->begin, 3, ElementOf<V>(9)), 1);
    EXPECT_EQ(none.Capacity(), 6u);
    EXPECT_EQ(*none, (Numbers{9, 9, 9}));
    ExpectSound(none.vector, this->allocator);
}

TYPED_TEST(VectorInsertion, InsertRangeGrowsAsInsertNDoes)
{
    using V = TypeParam;
    HeldVector<V> source(this->allocator, {7, 8, 9});
    HeldVector<V> small(this->allocator, {1, 2, 3, 4});
    EXPECT_EQ(V::InsertRange(small, small->begin + 4, source->begin, source->end), 1);
    EXPECT_EQ(small.Capacity(), 8u);
    EXPECT_EQ(*small, (Numbers{1, 2, 3, 4, 7, 8, 9}));

    HeldVector<V> large(this->allocator, {1});
    EXPECT_EQ(V::InsertRange(large, large->begin, source->begin, source->end), 1);
    EXPECT_EQ(large.Capacity(), 4u);
    EXPECT_EQ(*large, (Numbers{7, 8, 9, 1}));

    HeldVector<V> none(this->allocator);
    EXPECT_EQ(V::InsertRange(none, none->begin, source->begin, source->begin + 2), 1);
    EXPECT_EQ(none.Capacity(), 4u);
    EXPECT_EQ(*none, (Numbers{7, 8}));
}

TYPED_TEST(VectorInsertion, InsertRangeOfNothingChangesNothing)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator, {1, 2});
    const std::size_t requests = this->allocator.Requests();
    EXPECT_EQ(V::InsertRange(vector, vector->begin + 1, vector->begin, vector->begin), 1);
    EXPECT_EQ(V::InsertRange(vector, vector->begin + 1, nullptr, nullptr), 1);
    EXPECT_EQ(*vector, (Numbers{1, 2}));
    EXPECT_EQ(this->allocator.Requests(), requests);
}

// Every way in which new elements, moved elements and the old end can overlap.
TYPED_TEST(VectorInsertion, InsertionsWithRoomStayInTheBlockWhateverThePlaceAndTheCount)
{
    using V = TypeParam;
    HeldVector<V> source(this->allocator, {11, 12, 13, 14, 15, 16});
    for (std::ptrdiff_t place = 0; place <= 4; ++place)
        for (std::ptrdiff_t count = 1; count <= 6; ++count)
        {
            SCOPED_TRACE(::testing::Message() << count << " at " << place);
            HeldVector<V> copies(this->allocator, {1, 2, 3, 4});
            HeldVector<V> range(this->allocator, {1, 2, 3, 4});
            ASSERT_EQ(V::Reserve(copies, 10), 1);
            ASSERT_EQ(V::Reserve(range, 10), 1);
            const void* const blockOfCopies = copies->begin;
            const void* const blockOfRange = range->begin;
            EXPECT_EQ(V::InsertN(copies, copies->begin + place, static_cast<NuvSizeT>(count),
                                 ElementOf<V>(9)),
                      1);
            EXPECT_EQ(
                V::InsertRange(range, range->begin + place, source->begin, source->begin + count),
                1);
            Numbers expected = {1, 2, 3, 4};
            expected.insert(expected.begin() + place, static_cast<std::size_t>(count), 9);
            EXPECT_EQ(*copies, expected);
            for (std::ptrdiff_t i = 0; i < count; ++i)
                expected[static_cast<std::size_t>(place + i)] = 11 + static_cast<int>(i);
            EXPECT_EQ(*range, expected);
            EXPECT_EQ(copies->begin, blockOfCopies);
            EXPECT_EQ(range->begin, blockOfRange);
        }
    EXPECT_EQ(*source, (Numbers{11, 12, 13, 14, 15, 16}));
}
// Removal ---------------------------------------------------------------------------------------

TYPED_TEST(VectorInsertion, EraseReturnsItsPositionWhereTheNextElementStandsNow)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator, {1, 2, 3});
    auto* const begin = vector->begin;
    EXPECT_EQ(V::Erase(vector, begin + 1), begin + 1);
    EXPECT_EQ(*vector, (Numbers{1, 3}));
    EXPECT_EQ(V::Erase(vector, begin + 1), begin + 1);
    EXPECT_EQ(begin + 1, V::End(vector));
    EXPECT_EQ(V::Erase(vector, begin), begin);
    EXPECT_EQ(V::Empty(vector), 1);
    EXPECT_EQ(vector.Capacity(), 3u);
}

TYPED_TEST(VectorInsertion, EraseRangeClosesTheGapWhereverItIs)
{
    using V = TypeParam;
    for (std::ptrdiff_t first = 0; first <= 5; ++first)
        for (std::ptrdiff_t last = first; last <= 5; ++last)
        {
            HeldVector<V> vector(this->allocator, {1, 2, 3, 4, 5});
            auto* const begin = vector->begin;
            EXPECT_EQ(V::EraseRange(vector, begin + first, begin + last), begin + last);
            Numbers expected = {1, 2, 3, 4, 5};
            expected.erase(expected.begin() + first, expected.begin() + last);
            EXPECT_EQ(*vector, expected);
            EXPECT_EQ(vector->begin, begin);
        }
}

TYPED_TEST(VectorInsertion, PopBackAndClearKeepTheBlock)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator, {1, 2, 3});
    auto* const begin = vector->begin;
    V::PopBack(vector);
    EXPECT_EQ(*vector, (Numbers{1, 2}));
    V::Clear(vector);
    EXPECT_EQ(V::Empty(vector), 1);
    EXPECT_EQ(vector->begin, begin);
    EXPECT_EQ(vector.Capacity(), 3u);
    EXPECT_EQ(this->allocator.LiveBlocks(), 1u);
    V::Clear(vector);
    EXPECT_EQ(vector->begin, begin);
}

TYPED_TEST(VectorInsertion, ClearOfAnArrayWithoutABlockDoesNothing)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator);
    V::Clear(vector);
    EXPECT_EQ(vector->begin, nullptr);
    EXPECT_EQ(V::Empty(vector), 1);
}

TYPED_TEST(VectorInsertion, DestructGivesEverythingBack)
{
    using V = TypeParam;
    {
        HeldVector<V> vector(this->allocator, {1, 2, 3});
        EXPECT_GE(this->allocator.LiveBlocks(), 1u);
    }
    EXPECT_EQ(this->allocator.LiveBlocks(), 0u);
    EXPECT_EQ(this->allocator.NullsGivenBack(), 0u);
}

// The array's own elements as arguments ---------------------------------------------------------

TYPED_TEST(VectorInsertion, PushBackTakesItsOwnElementWithAndWithoutGrowth)
{
    using V = TypeParam;
    HeldVector<V> vector(this->allocator, {1, 2});
    EXPECT_EQ(V::PushBack(vector, vector->begin), 1);
    EXPECT_EQ(V::PushBack(vector, vector->begin + 1), 1);
    EXPECT_EQ(V::PushBack(vector, vector->begin + 2), 1);
    EXPECT_EQ(*vector, (Numbers{1, 2, 1, 2, 1}));
}

TYPED_TEST(VectorInsertion, InsertTakesItsOwnElementWithAndWithoutGrowth)
{
    using V = TypeParam;
    for (const NuvSizeT capacity : {4u, 5u})
        for (std::ptrdiff_t place = 0; place <= 4; ++place)
            for (std::ptrdiff_t own = 0; own < 4; ++own)
            {
                SCOPED_TRACE(::testing::Message() << own << " to " << place << " of " << capacity);
                HeldVector<V> vector(this->allocator, {1, 2, 3, 4});
                ASSERT_EQ(V::Reserve(vector, capacity), 1);
                auto* const at = V::Insert(vector, vector->begin + place, vector->begin + own);
                EXPECT_EQ(at, vector->begin + place);
                Numbers expected = {1, 2, 3, 4};
                expected.insert(expected.begin() + place, static_cast<int>(own) + 1);
                EXPECT_EQ(*vector, expected);
            }
}

TYPED_TEST(VectorInsertion, InsertNTakesItsOwnElementWithAndWithoutGrowth)
{
    using V = TypeParam;
    for (const NuvSizeT capacity : {4u, 8u})
        for (std::ptrdiff_t place = 0; place <= 4; ++place)
            for (std::ptrdiff_t own = 0; own < 4; ++own)
            {
                SCOPED_TRACE(::testing::Message() << own << " to " << place << " of " << capacity);
                HeldVector<V> vector(this->allocator, {1, 2, 3, 4});
                ASSERT_EQ(V::Reserve(vector, capacity), 1);
                EXPECT_EQ(V::InsertN(vector, vector->begin + place, 3, vector->begin + own), 1);
                Numbers expected = {1, 2, 3, 4};
                expected.insert(expected.begin() + place, 3, static_cast<int>(own) + 1);
                EXPECT_EQ(*vector, expected);
            }
}

TYPED_TEST(VectorInsertion, InsertRangeTakesItsOwnElementsWithAndWithoutGrowth)
{
    using V = TypeParam;
    for (const NuvSizeT capacity : {4u, 8u})
        for (std::ptrdiff_t place = 0; place <= 4; ++place)
            for (std::ptrdiff_t own = 0; own < 4; ++own)
            {
                SCOPED_TRACE(::testing::Message() << own << " to " << place << " of " << capacity);
                HeldVector<V> vector(this->allocator, {1, 2, 3, 4});
                ASSERT_EQ(V::Reserve(vector, capacity), 1);
                EXPECT_EQ(
                    V::InsertRange(vector, vector->begin + place, vector->begin + own, vector->end),
                    1);
                Numbers expected = {1, 2, 3, 4};
                const Numbers range(expected.begin() + own, expected.end());
                expected.insert(expected.begin() + place, range.begin(), range.end());
                EXPECT_EQ(*vector, expected);
            }
}

TYPED_TEST(VectorInsertion, ResizeTakesItsOwnElementWithAndWithoutGrowth)
{
    using V = TypeParam;
    for (const NuvSizeT capacity : {3u, 8u})
        for (std::ptrdiff_t own = 0; own < 3; ++own)
        {
            HeldVector<V> vector(this->allocator, {1, 2, 3});
            ASSERT_EQ(V::Reserve(vector, capacity), 1);
            EXPECT_EQ(V::Resize(vector, 5, vector->begin + own), 1);
            const int number = static_cast<int>(own) + 1;
            EXPECT_EQ(*vector, (Numbers{1, 2, 3, number, number}));
        }
}

}  // namespace
