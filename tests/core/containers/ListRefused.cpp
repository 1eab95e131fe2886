// The list when the allocator refuses: every operation that takes a node, every request of it, for
// every instantiation. A refused node is reported; a copy that is refused inside an element is not,
// and its node is linked all the same.
#include "tests/core/containers/ListSupport.hpp"

namespace
{
template <class Instantiation>
class ListRefused : public ::testing::Test
{
};

TYPED_TEST_SUITE(ListRefused, ListTypes);

/// What the operations work on, made before anything is refused. The elements' copies lie on a heap
/// that refuses nothing, so that the requests are those for nodes; or on the allocator itself.
template <class L>
struct Setting
{
    Setting(TestAllocator& allocator, bool copiesAreRefused)
        : Setting(allocator, copiesAreRefused ? static_cast<NuvAllocator*>(allocator) : Heap(),
                  allocator.Spare())
    {
    }

    Setting(TestAllocator& allocator, NuvAllocator* names, const TestAllocator::Spared&)
        : list(allocator), source(allocator), element(9, names)
    {
        for (const int number : {1, 2, 3})
            EXPECT_EQ(L::PushBack(list, ElementOf<L>(number, names)), 1);
        for (const int number : {6, 7, 8, 9, 10})
            EXPECT_EQ(L::PushBack(source, ElementOf<L>(number, names)), 1);
    }

    HeldList<L> list;
    HeldList<L> source;
    ElementOf<L> element;
};

/// Whether `numbers` is `before` with some of `inserted` at `place`, from the front on: what an
/// insertion leaves that was refused underway.
bool IsPartlyInserted(const Numbers& numbers, const Numbers& before, int place,
                      const Numbers& inserted)
{
    const auto count = static_cast<std::ptrdiff_t>(numbers.size() - before.size());
    if (numbers.size() < before.size() || count > static_cast<std::ptrdiff_t>(inserted.size()))
        return false;
    Numbers expected = before;
    expected.insert(expected.begin() + place, inserted.begin(), inserted.begin() + count);
    return numbers == expected;
}

TYPED_TEST(ListRefused, OneNodeIsThereOrNot)
{
    using L = TypeParam;
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            Setting<L> on(allocator, false);
            Numbers expected = {1, 2, 3};
            std::size_t refusals = 0;
            const auto isDone = [&]
            {
                const std::size_t before = refusals;
                refusals = allocator.Refusals();
                return refusals == before;
            };
            const auto at = L::Insert(on.list, on.list.Place(1), on.element);
            EXPECT_EQ(at != nullptr, isDone());
            EXPECT_EQ(L::ForwardKind::IsExceptional(&at), at == nullptr);
            if (at)
                expected.insert(expected.begin() + 1, 9);
            const bool isPushedBack = L::PushBack(on.list, on.element) == 1;
            EXPECT_EQ(isPushedBack, isDone());
            if (isPushedBack)
                expected.push_back(9);
            const bool isPushedFront = L::PushFront(on.list, on.element) == 1;
            EXPECT_EQ(isPushedFront, isDone());
            if (isPushedFront)
                expected.insert(expected.begin(), 9);
            EXPECT_EQ(*on.list, expected);
            ExpectSound(on.list.list, allocator);
        });
}

TYPED_TEST(ListRefused, SeveralNodesStayAsFarAsTheyWent)
{
    using L = TypeParam;
    const Numbers before = {1, 2, 3};
    ForEachRefusedAllocation(
        [&](TestAllocator& allocator)
        {
            Setting<L> on(allocator, false);
            const bool isDone = L::InsertN(on.list, on.list.Place(1), 4, on.element) == 1;
            EXPECT_EQ(isDone, allocator.Refusals() == 0);
            EXPECT_EQ(isDone, L::Size(on.list) == 7u);
            EXPECT_TRUE(IsPartlyInserted(*on.list, before, 1, {9, 9, 9, 9}));
            ExpectSound(on.list.list, allocator);
        });
    ForEachRefusedAllocation(
        [&](TestAllocator& allocator)
        {
            Setting<L> on(allocator, false);
            const bool isDone = L::InsertRange(on.list, on.list.Place(2), L::Begin(on.source),
                                               L::End(on.source)) == 1;
            EXPECT_EQ(isDone, allocator.Refusals() == 0);
            EXPECT_EQ(isDone, L::Size(on.list) == 8u);
            EXPECT_TRUE(IsPartlyInserted(*on.list, before, 2, {6, 7, 8, 9, 10}));
            ExpectSound(on.list.list, allocator);
        });
    ForEachRefusedAllocation(
        [&](TestAllocator& allocator)
        {
            Setting<L> on(allocator, false);
            const bool isDone = L::Resize(on.list, 6, on.element) == 1;
            EXPECT_EQ(isDone, allocator.Refusals() == 0);
            EXPECT_EQ(isDone, L::Size(on.list) == 6u);
            EXPECT_TRUE(IsPartlyInserted(*on.list, before, 3, {9, 9, 9}));
            ExpectSound(on.list.list, allocator);
        });
}

/// The n-th node is refused: exactly n - 1 were made before it.
TYPED_TEST(ListRefused, InsertionsStopAtTheRefusedNode)
{
    using L = TypeParam;
    for (std::size_t n = 1; n <= 4; ++n)
    {
        TestAllocator allocator;
        Setting<L> on(allocator, false);
        allocator.RefuseOnly(n);
        EXPECT_EQ(L::InsertN(on.list, L::End(on.list), 4, on.element), 0);
        EXPECT_EQ(L::Size(on.list), 3 + n - 1);
        allocator.RefuseOnly(n);
        EXPECT_EQ(L::Resize(on.source, 9, on.element), 0);
        EXPECT_EQ(L::Size(on.source), 5 + n - 1);
    }
}

/// Runs `construct(Container*, TestAllocator&, Setting&)`: what fails is null, empty, and leaves no
/// block.
template <class L, class Construct>
void ExpectMadeOrNothing(const Numbers& made, Construct construct)
{
    ForEachRefusedAllocation(
        [&](TestAllocator& allocator)
        {
            Setting<L> on(allocator, false);
            const std::size_t blocks = allocator.LiveBlocks();
            typename L::Container list;
            const auto* const result = construct(&list, allocator, on);
            EXPECT_EQ(result, allocator.Refusals() == 0 ? &list : nullptr);
            EXPECT_EQ(NumbersOf(list), result ? made : Numbers{});
            if (!result)
            {
                EXPECT_EQ(allocator.LiveBlocks(), blocks);
            }
            ExpectSound(list, allocator);
            L::Destruct(&list);
            EXPECT_EQ(allocator.LiveBlocks(), blocks);
        });
}

TYPED_TEST(ListRefused, ConstructionsAnswerNullAndHoldNothing)
{
    using L = TypeParam;
    ExpectMadeOrNothing<L>({9, 9, 9}, [](auto* x, TestAllocator& allocator, Setting<L>& on)
                           { return L::ConstructN(x, 3, on.element, allocator); });
    ExpectMadeOrNothing<L>(
        {6, 7, 8, 9, 10}, [](auto* x, TestAllocator& allocator, Setting<L>& on)
        { return L::ConstructRange(x, L::Begin(on.source), L::End(on.source), allocator); });
    ExpectMadeOrNothing<L>({1, 2, 3}, [](auto* x, TestAllocator&, Setting<L>& on)
                           { return L::ConstructCopy(x, on.list); });
}

TYPED_TEST(ListRefused, CreateNodeAnswersNull)
{
    using L = TypeParam;
    TestAllocator allocator;
    Setting<L> on(allocator, false);
    const std::size_t requests = allocator.Requests();
    allocator.RefuseFrom(1);
    EXPECT_EQ(L::CreateNode_(on.list, on.element), nullptr);
    // No copy is made for a node that is not there.
    EXPECT_EQ(allocator.Requests(), requests + 1);
    EXPECT_EQ(*on.list, (Numbers{1, 2, 3}));
}

TYPED_TEST(ListRefused, AssignAnswersNullAndKeepsWhatWasAppended)
{
    using L = TypeParam;
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            Setting<L> on(allocator, false);
            {
                // Empty, so that the names of the assigned elements lie with their sources too.
                const auto spared = allocator.Spare();
                L::Clear(on.list);
            }
            const auto* const result = L::Assign(on.list, on.source);
            EXPECT_EQ(result, allocator.Refusals() == 0 ? &on.list.list : nullptr);
            EXPECT_EQ(result != nullptr, L::Size(on.list) == 5u);
            EXPECT_TRUE(IsPartlyInserted(*on.list, {}, 0, {6, 7, 8, 9, 10}));
            ExpectSound(on.list.list, allocator);
        });
}

/// Copies inside the elements are refused as well as nodes: the results speak of the nodes alone,
/// and the list can be walked and destructed.
TYPED_TEST(ListRefused, CopiesInsideElementsAreUnreportedAndTheNodesLinked)
{
    using L = TypeParam;
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            Setting<L> on(allocator, true);
            const NuvSizeT size = L::Size(on.list);
            const bool isDone = L::InsertRange(on.list, on.list.Place(1), L::Begin(on.source),
                                               L::End(on.source)) == 1;
            EXPECT_EQ(isDone, L::Size(on.list) == size + 5);
            ExpectSound(on.list.list, allocator);
            const bool isAssigned = L::Assign(on.list, on.source) != nullptr;
            EXPECT_EQ(isAssigned, L::Size(on.list) == 5u);
            ExpectSound(on.list.list, allocator);
            if (allocator.Refusals() == 0)
            {
                EXPECT_EQ(*on.list, (Numbers{6, 7, 8, 9, 10}));
            }
        });
}

TEST(ListOfVariablesRefused, ANodeWhoseNamesWereRefusedHasEmptyNames)
{
    using L = VariableList;
    TestAllocator allocator;
    Setting<L> on(allocator, true);
    // The node, then the key, then the variable's own name.
    allocator.RefuseOnly(2);
    ASSERT_EQ(L::PushBack(on.list, on.element), 1);
    EXPECT_EQ(TextOf(L::Back(on.list)->first), "");
    EXPECT_EQ(NumberOf(L::Back(on.list)->second), 9);
    allocator.RefuseOnly(3);
    ASSERT_EQ(L::PushBack(on.list, on.element), 1);
    EXPECT_EQ(NumberOf(L::Back(on.list)->first), 9);
    EXPECT_EQ(TextOf(L::Back(on.list)->second.name), "");
    EXPECT_EQ(L::Back(on.list)->second.index, 9u);
    EXPECT_EQ(L::Size(on.list), 5u);
}

// The element's assignment assigns both fields, whatever becomes of the first.
TEST(ListOfVariablesRefused, AssignOfARefusedKeyAssignsTheVariableAllTheSame)
{
    using L = VariableList;
    TestAllocator allocator;
    HeldList<L> list(allocator, {1});
    HeldList<L> source(allocator, {1000});
    allocator.RefuseOnly(1);
    EXPECT_EQ(L::Assign(list, source), &list.list);
    EXPECT_EQ(NumberOf(L::Front(list)->first), 1);
    EXPECT_EQ(NumberOf(L::Front(list)->second), 1000);
}
}  // namespace
