// The pair, for every instantiation: what it copies, where to, and what it leaves when memory is
// refused.
#include <memory>

#include "tests/support/Elements.hpp"
#include "tests/support/Instantiations.hpp"
#include "tests/support/RefusedAllocations.hpp"
#include "tests/support/TestAllocator.hpp"

namespace
{
template <class P>
using ElementOf = Sample<typename P::Element>;

template <class Instantiation>
class Pair : public ::testing::Test
{
};

TYPED_TEST_SUITE(Pair, PairTypes);

// Edge cases ---------------------------------------------------------------------------------

TYPED_TEST(Pair, SwapExchangesBothFieldsAndReturnsTrue)
{
    using P = TypeParam;
    TestAllocator allocator;
    ElementOf<P> x(4, allocator);
    ElementOf<P> y(7, allocator);
    EXPECT_EQ(P::Swap(&x.value, &y.value), 1);
    EXPECT_EQ(NumberOf(x.value), 7);
    EXPECT_EQ(NumberOf(y.value), 4);
    EXPECT_EQ(P::Swap(&x.value, &y.value), 1);
    EXPECT_EQ(NumberOf(x.value), 4);
    EXPECT_EQ(NumberOf(y.value), 7);
}

TYPED_TEST(Pair, ConstructWithARefusedCopyAnswersNullAndLeavesNothingToDestroy)
{
    using P = TypeParam;
    for (const int number : {6, 7})
    {
        const auto body = [number](TestAllocator& allocator)
        {
            const auto source = [&]
            {
                const auto spared = allocator.Spare();
                return std::make_unique<ElementOf<P>>(number, allocator);
            }();
            const std::size_t blocks = allocator.LiveBlocks();
            typename P::Element pair;
            const bool isMade =
                P::Construct(&pair, &source->value.first, &source->value.second) == &pair;
            EXPECT_EQ(isMade, allocator.Refusals() == 0);
            if (isMade)
            {
                EXPECT_EQ(NumberOf(pair), number);
                P::Destruct(&pair);
            }
            EXPECT_EQ(allocator.LiveBlocks(), blocks);
        };
        if (Numbered<typename P::Element>::kTakesBlocks)
        {
            ForEachRefusedAllocation(body);
        }
        else
        {
            TestAllocator allocator;
            allocator.RefuseFrom(1);
            body(allocator);
            EXPECT_EQ(allocator.Requests(), 0u);
        }
    }
}

TYPED_TEST(Pair, SwapWithItselfChangesNothing)
{
    using P = TypeParam;
    TestAllocator allocator;
    for (const int number : {6, 7})
    {
        ElementOf<P> pair(number, allocator);
        const std::size_t requests = allocator.Requests();
        EXPECT_EQ(P::Swap(&pair.value, &pair.value), 1);
        EXPECT_EQ(NumberOf(pair.value), number);
        EXPECT_EQ(allocator.Requests(), requests);
    }
}

// Copies -------------------------------------------------------------------------------------

TYPED_TEST(Pair, ConstructCopiesBothFieldsOnTheAllocatorsOfTheirSources)
{
    using P = TypeParam;
    TestAllocator allocator;
    for (const int number : {6, 7})
    {
        typename P::Element pair;
        {
            const ElementOf<P> first(number, allocator);
            const ElementOf<P> second(number, allocator);
            EXPECT_EQ(P::Construct(&pair, &first.value.first, &second.value.second), &pair);
        }
        EXPECT_EQ(NumberOf(pair), number);
        P::Destruct(&pair);
        EXPECT_EQ(allocator.LiveBlocks(), 0u);
    }
}

TYPED_TEST(Pair, ConstructCopyIsIndependentOfItsSource)
{
    using P = TypeParam;
    TestAllocator allocator;
    for (const int number : {6, 7})
    {
        typename P::Element pair;
        {
            const ElementOf<P> source(number, allocator);
            EXPECT_EQ(P::ConstructCopy(&pair, source), &pair);
        }
        EXPECT_EQ(NumberOf(pair), number);
        P::Destruct(&pair);
        EXPECT_EQ(allocator.LiveBlocks(), 0u);
    }
}

TYPED_TEST(Pair, AssignGivesBothFieldsOfAnyOtherPair)
{
    using P = TypeParam;
    TestAllocator allocator;
    TestAllocator elsewhere;
    for (const int to : {2, 3, 1000, 1001})
        for (const int from : {4, 5, 2000, 2001})
        {
            ElementOf<P> pair(to, allocator);
            const ElementOf<P> source(from, elsewhere);
            EXPECT_EQ(P::Assign(&pair.value, source), &pair.value);
            EXPECT_EQ(NumberOf(pair.value), from);
            EXPECT_EQ(NumberOf(source.value), from);
        }
    EXPECT_EQ(allocator.LiveBlocks(), 0u);
    EXPECT_EQ(elsewhere.LiveBlocks(), 0u);
}

TYPED_TEST(Pair, AssignToItselfChangesNothing)
{
    using P = TypeParam;
    TestAllocator allocator;
    for (const int number : {6, 7})
    {
        ElementOf<P> pair(number, allocator);
        EXPECT_EQ(P::Assign(&pair.value, &pair.value), &pair.value);
        EXPECT_EQ(NumberOf(pair.value), number);
    }
}

TYPED_TEST(Pair, SwapOfEveryTwoKindsOnTwoAllocators)
{
    using P = TypeParam;
    TestAllocator allocator;
    TestAllocator elsewhere;
    for (const int to : {2, 1001})
        for (const int from : {1000, 5})
        {
            ElementOf<P> x(to, allocator);
            ElementOf<P> y(from, elsewhere);
            EXPECT_EQ(P::Swap(&x.value, &y.value), 1);
            EXPECT_EQ(NumberOf(x.value), from);
            EXPECT_EQ(NumberOf(y.value), to);
        }
}

template <class Instantiation>
class PairOfNames : public ::testing::Test
{
};

using PairOfNamesTypes = ::testing::Types<NameAndFloatPair, NameAndVariablePair>;
TYPED_TEST_SUITE(PairOfNames, PairOfNamesTypes);

TYPED_TEST(PairOfNames, AssignAndSwapKeepEachNameOnItsAllocator)
{
    using P = TypeParam;
    TestAllocator allocator;
    TestAllocator elsewhere;
    ElementOf<P> x(2, allocator);
    ElementOf<P> y(3000, elsewhere);
    const auto expectOwnAllocators = [&]
    {
        EXPECT_TRUE(allocator.Owns(x.value.first.buf));
        EXPECT_TRUE(elsewhere.Owns(y.value.first.buf));
        EXPECT_EQ(x.value.first.allocator, allocator.operator NuvAllocator*());
        EXPECT_EQ(y.value.first.allocator, elsewhere.operator NuvAllocator*());
    };
    P::Swap(&x.value, &y.value);
    expectOwnAllocators();
    P::Assign(&x.value, &y.value);
    expectOwnAllocators();
}

// Refused memory -----------------------------------------------------------------------------

template <class Instantiation>
class PairRefused : public ::testing::Test
{
};

using PairRefusedTypes =
    ::testing::Types<NameAndFloatPair, NameAndVariablePair, NumberAndConstraintPair>;
TYPED_TEST_SUITE(PairRefused, PairRefusedTypes);

TYPED_TEST(PairRefused, ConstructCopyReportsNothingAndCanBeDestructed)
{
    using P = TypeParam;
    for (const int number : {6, 7})
        ForEachRefusedAllocation(
            [number](TestAllocator& allocator)
            {
                const auto source = [&]
                {
                    const auto spared = allocator.Spare();
                    return std::make_unique<ElementOf<P>>(number, allocator);
                }();
                typename P::Element pair;
                EXPECT_EQ(P::ConstructCopy(&pair, *source), &pair);
                EXPECT_EQ(NumberOf(pair) == number, allocator.Refusals() == 0);
                P::Destruct(&pair);
                EXPECT_EQ(NumberOf(source->value), number);
            });
}

TYPED_TEST(PairRefused, AssignAndSwapReportNothingAndBothCanBeDestructed)
{
    using P = TypeParam;
    for (const int to : {2, 1001})
        for (const int from : {2000, 2001})
            ForEachRefusedAllocation(
                [to, from](TestAllocator& allocator)
                {
                    const auto made = [&allocator](int number)
                    {
                        const auto spared = allocator.Spare();
                        return std::make_unique<ElementOf<P>>(number, allocator);
                    };
                    const auto x = made(to);
                    const auto y = made(from);
                    EXPECT_EQ(P::Assign(&x->value, *y), &x->value);
                    EXPECT_EQ(NumberOf(y->value), from);
                    const auto z = made(to);
                    EXPECT_EQ(P::Swap(&y->value, &z->value), 1);
                    if (allocator.Refusals() == 0)
                    {
                        EXPECT_EQ(NumberOf(x->value), from);
                        EXPECT_EQ(NumberOf(y->value), to);
                        EXPECT_EQ(NumberOf(z->value), from);
                    }
                    allocator.CheckGuards();
                });
}

// A refused name keeps its value; the other field is assigned all the same.
TEST(PairOfNameAndFloatRefused, AssignKeepsTheNameAndAssignsTheFloat)
{
    TestAllocator allocator;
    ElementOf<NameAndFloatPair> pair(1, allocator);
    const ElementOf<NameAndFloatPair> source(1000);
    allocator.RefuseFrom(1);
    EXPECT_EQ(NameAndFloatPair::Assign(&pair.value, source), &pair.value);
    EXPECT_EQ(TextOf(pair.value.first), "number 1");
    EXPECT_EQ(pair.value.second, 1000.0F);
}
}  // namespace
