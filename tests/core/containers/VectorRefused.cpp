// The growable array when the allocator refuses: every operation that takes a block or copies an
// element, every request of it, for every instantiation. What fails is compared field by field with
// what was there before; whatever is left can be walked and destructed.
#include "tests/core/containers/VectorSupport.hpp"

namespace
{
template <class Instantiation>
class VectorRefused : public ::testing::Test
{
};

TYPED_TEST_SUITE(VectorRefused, VectorTypes);

/// What the operations work on, made before anything is refused: an array of 1, 2, 3 with a given
/// room, and all copies of names taken from the same allocator.
template <class V>
struct Setting
{
    Setting(TestAllocator& allocator, NuvSizeT capacity)
        : Setting(allocator, capacity, allocator.Spare())
    {
    }

    Setting(TestAllocator& allocator, NuvSizeT capacity, const TestAllocator::Spared&)
        : vector(allocator, {1, 2, 3}), source(allocator, {7, 8}), element(9, allocator)
    {
        EXPECT_EQ(V::Reserve(vector, capacity), 1);
    }

    HeldVector<V> vector;
    HeldVector<V> source;
    ElementOf<V> element;
};

/// Runs `operation(Setting&)`, which answers whether it succeeded, with each of its requests
/// refused: it leaves `after`, or the array as it was, in the same block.
template <class V, class Operation>
void ExpectAllOrNothing(NuvSizeT capacity, const Numbers& after, Operation operation)
{
    ForEachRefusedAllocation(
        [&](TestAllocator& allocator)
        {
            Setting<V> on(allocator, capacity);
            const auto former = on.vector.vector;
            const bool isDone = operation(on);
            EXPECT_EQ(isDone, allocator.Refusals() == 0);
            if (isDone)
            {
                EXPECT_EQ(*on.vector, after);
            }
            else
            {
                EXPECT_EQ(*on.vector, (Numbers{1, 2, 3}));
                EXPECT_EQ(on.vector->begin, former.begin);
                EXPECT_EQ(on.vector->end, former.end);
                EXPECT_EQ(on.vector->endBuf, former.endBuf);
            }
            EXPECT_EQ(*on.source, (Numbers{7, 8}));
            ExpectSound(on.vector.vector, allocator);
            EXPECT_EQ(allocator.NullsGivenBack(), 0u);
        });
}

/// As above, in an array that needs a larger block and, where copies of the element take blocks, in
/// one that has the room.
template <class V, class Operation>
void ExpectAllOrNothingWithAndWithoutRoom(const Numbers& after, Operation operation)
{
    ExpectAllOrNothing<V>(3, after, operation);
    if (Numbered<typename V::Element>::kTakesBlocks)
        ExpectAllOrNothing<V>(8, after, operation);
}

TYPED_TEST(VectorRefused, ReserveFailsUnchanged)
{
    using V = TypeParam;
    ExpectAllOrNothing<V>(3, {1, 2, 3},
                          [](Setting<V>& on) { return V::Reserve(on.vector, 4) == 1; });
}

TYPED_TEST(VectorRefused, OnlyASizeThatIsANumberOfBytesIsAskedFor)
{
    using V = TypeParam;
    constexpr NuvSizeT kElementSize = sizeof(typename V::Element);
    TestAllocator allocator;
    HeldVector<V> vector(allocator);
    allocator.RefuseFrom(1);
    EXPECT_EQ(V::Reserve(vector, UINT64_MAX / kElementSize), 0);
    EXPECT_EQ(allocator.Requests(), 1u);
    EXPECT_EQ(allocator.LastRequest(), UINT64_MAX / kElementSize * kElementSize);
    EXPECT_EQ(V::Reserve(vector, UINT64_MAX / kElementSize + 1), 0);
    EXPECT_EQ(V::Reserve(vector, UINT64_MAX), 0);
    EXPECT_EQ(allocator.Requests(), 1u);
}

TYPED_TEST(VectorRefused, PushBackFailsUnchanged)
{
    using V = TypeParam;
    ExpectAllOrNothingWithAndWithoutRoom<V>({1, 2, 3, 9}, [](Setting<V>& on)
                                            { return V::PushBack(on.vector, on.element) == 1; });
}

TYPED_TEST(VectorRefused, InsertAnswersTheExceptionalIteratorAndFailsUnchanged)
{
    using V = TypeParam;
    ExpectAllOrNothingWithAndWithoutRoom<V>(
        {1, 9, 2, 3},
        [](Setting<V>& on)
        {
            auto* const at = V::Insert(on.vector, on.vector->begin + 1, on.element);
            EXPECT_EQ(V::ForwardKind::IsExceptional(&at), at == nullptr);
            return at == on.vector->begin + 1;
        });
    ExpectAllOrNothingWithAndWithoutRoom<V>(
        {1, 2, 3, 9},
        [](Setting<V>& on) { return V::Insert(on.vector, on.vector->end, on.element) != nullptr; });
}

TYPED_TEST(VectorRefused, InsertNFailsUnchanged)
{
    using V = TypeParam;
    for (const int place : {0, 2, 3})
    {
        Numbers after = {1, 2, 3};
        after.insert(after.begin() + place, 3, 9);
        ExpectAllOrNothingWithAndWithoutRoom<V>(
            after, [place](Setting<V>& on)
            { return V::InsertN(on.vector, on.vector->begin + place, 3, on.element) == 1; });
    }
}

TYPED_TEST(VectorRefused, InsertRangeFailsUnchanged)
{
    using V = TypeParam;
    for (const int place : {0, 2, 3})
    {
        Numbers after = {1, 2, 3};
        after.insert(after.begin() + place, {7, 8});
        ExpectAllOrNothingWithAndWithoutRoom<V>(
            after,
            [place](Setting<V>& on)
            {
                return V::InsertRange(on.vector, on.vector->begin + place, on.source->begin,
                                      on.source->end) == 1;
            });
    }
}

TYPED_TEST(VectorRefused, InsertRangeOfItsOwnElementsFailsUnchanged)
{
    using V = TypeParam;
    ExpectAllOrNothingWithAndWithoutRoom<V>({1, 1, 2, 3, 2, 3},
                                            [](Setting<V>& on) {
                                                return V::InsertRange(
                                                           on.vector, on.vector->begin + 1,
                                                           on.vector->begin, on.vector->end) == 1;
                                            });
}

// The room may be there afterwards, the elements are as they were.
TYPED_TEST(VectorRefused, ResizeFailsWithTheSameElements)
{
    using V = TypeParam;
    for (const NuvSizeT capacity : {3u, 8u})
    {
        if (capacity == 8 && !Numbered<typename V::Element>::kTakesBlocks)
            continue;
        ForEachRefusedAllocation(
            [&](TestAllocator& allocator)
            {
                Setting<V> on(allocator, capacity);
                const bool isDone = V::Resize(on.vector, 5, on.element) == 1;
                EXPECT_EQ(isDone, allocator.Refusals() == 0);
                EXPECT_EQ(*on.vector, isDone ? (Numbers{1, 2, 3, 9, 9}) : (Numbers{1, 2, 3}));
                EXPECT_TRUE(on.vector.Capacity() == capacity || on.vector.Capacity() == 8u);
                ExpectSound(on.vector.vector, allocator);
            });
    }
}

/// Runs `construct(Container*, TestAllocator&, Setting&)`: what fails is null and holds nothing.
template <class V, class Construct>
void ExpectMadeOrNothing(const Numbers& made, Construct construct)
{
    ForEachRefusedAllocation(
        [&](TestAllocator& allocator)
        {
            Setting<V> on(allocator, 3);
            const std::size_t blocks = allocator.LiveBlocks();
            typename V::Container vector;
            const auto* const result = construct(&vector, allocator, on);
            EXPECT_EQ(result != nullptr, allocator.Refusals() == 0);
            if (result)
            {
                EXPECT_EQ(result, &vector);
                EXPECT_EQ(NumbersOf(vector), made);
            }
            else
            {
                EXPECT_EQ(vector.begin, nullptr);
                EXPECT_EQ(allocator.LiveBlocks(), blocks);
            }
            ExpectSound(vector, allocator);
            V::Destruct(&vector);
            EXPECT_EQ(allocator.LiveBlocks(), blocks);
            EXPECT_EQ(allocator.NullsGivenBack(), 0u);
        });
}

TYPED_TEST(VectorRefused, ConstructionsAnswerNullAndHoldNothing)
{
    using V = TypeParam;
    ExpectMadeOrNothing<V>({9, 9, 9}, [](auto* x, TestAllocator& allocator, Setting<V>& on)
                           { return V::ConstructN(x, 3, on.element, allocator); });
    ExpectMadeOrNothing<V>(
        {2, 3}, [](auto* x, TestAllocator& allocator, Setting<V>& on)
        { return V::ConstructRange(x, on.vector->begin + 1, on.vector->end, allocator); });
    ExpectMadeOrNothing<V>({1, 2, 3}, [](auto* x, TestAllocator&, Setting<V>& on)
                           { return V::ConstructCopy(x, on.vector); });
}

TYPED_TEST(VectorRefused, AssignBeyondTheCapacityAnswersNullAndHoldsNothing)
{
    using V = TypeParam;
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            Setting<V> on(allocator, 3);
            const bool isDone = V::Assign(on.source, on.vector) != nullptr;
            EXPECT_EQ(isDone, allocator.Refusals() == 0);
            EXPECT_EQ(*on.source, isDone ? (Numbers{1, 2, 3}) : Numbers{});
            if (!isDone)
            {
                EXPECT_EQ(on.source->begin, nullptr);
                EXPECT_EQ(on.source->end, nullptr);
            }
            EXPECT_EQ(*on.vector, (Numbers{1, 2, 3}));
            ExpectSound(on.source.vector, allocator);
            // It can be filled again.
            const auto spared = allocator.Spare();
            EXPECT_EQ(V::PushBack(on.source, on.element), 1);
        });
}

TEST(VectorOfNamesRefused, AssignWithinTheCapacityAnswersNullAndHoldsNothing)
{
    using V = NameAndFloatVector;
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            Setting<V> on(allocator, 3);
            {
                const auto spared = allocator.Spare();
                ASSERT_EQ(V::Reserve(on.source, 3), 1);
                // Longer names than those that they are assigned to, so that each takes a block.
                const ElementOf<V> longer(1000, allocator);
                ASSERT_EQ(V::Resize(on.vector, 0, longer), 1);
                ASSERT_EQ(V::Resize(on.vector, 3, longer), 1);
            }
            const bool isDone = V::Assign(on.source, on.vector) != nullptr;
            EXPECT_EQ(isDone, allocator.Refusals() == 0);
            EXPECT_EQ(*on.source, isDone ? (Numbers{1000, 1000, 1000}) : Numbers{});
            ExpectSound(on.source.vector, allocator);
        });
}

TYPED_TEST(VectorRefused, SwapOnTwoAllocatorsFailsUnchanged)
{
    using V = TypeParam;
    TestAllocator elsewhere;
    ForEachRefusedAllocation(
        [&](TestAllocator& allocator)
        {
            Setting<V> on(allocator, 5);
            HeldVector<V> other(elsewhere, {4, 5, 6, 7});
            const bool isDone = V::Swap(on.vector, other) == 1;
            EXPECT_EQ(isDone, allocator.Refusals() == 0);
            EXPECT_EQ(*on.vector, isDone ? (Numbers{4, 5, 6, 7}) : (Numbers{1, 2, 3}));
            EXPECT_EQ(*other, isDone ? (Numbers{1, 2, 3}) : (Numbers{4, 5, 6, 7}));
            ExpectSound(on.vector.vector, allocator);
            ExpectSound(other.vector, elsewhere);
        });
}
}  // namespace
