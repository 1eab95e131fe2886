// The two records of a model when the allocator refuses: a record whose copy was refused is empty,
// and can be destructed.
#include <memory>
#include <type_traits>

#include "tests/core/problem/RecordsSupport.hpp"

namespace
{
TEST(VariableRefused, ConstructionsAnswerNullAndCanBeDestructed)
{
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            Variable x;
            const bool isMade = NuvLinearProgrammingVariableConstruct(
                                    &x, kInteger, 7, Name("profit"), allocator) == &x;
            EXPECT_EQ(isMade, allocator.Refusals() == 0);
            EXPECT_EQ(TextOf(x.name), isMade ? "profit" : "");
            const std::size_t refusals = allocator.Refusals();
            Variable copy;
            const bool isCopied = NuvLinearProgrammingVariableConstructCopy(&copy, &x) == &copy;
            EXPECT_EQ(isCopied, allocator.Refusals() == refusals);
            EXPECT_EQ(NuvLinearProgrammingVariableEqual(&copy, &x), isCopied);
            NuvLinearProgrammingVariableDestruct(&copy);
            NuvLinearProgrammingVariableDestruct(&x);
        });
}

TEST(VariableRefused, ConstructDefaultNeedsNoMemory)
{
    TestAllocator allocator;
    allocator.RefuseFrom(1);
    Variable x;
    EXPECT_EQ(NuvLinearProgrammingVariableConstructDefault(&x, allocator), &x);
    NuvLinearProgrammingVariableDestruct(&x);
}

TEST(VariableRefused, AssignAndSetNameKeepTheName)
{
    TestAllocator allocator;
    HeldVariable x(allocator, kContinuous, 1, "a");
    const HeldVariable source(Heap(), kInteger, 7, "a longer name");
    allocator.RefuseFrom(1);
    EXPECT_EQ(NuvLinearProgrammingVariableAssign(&x.record, &source.record), nullptr);
    EXPECT_EQ(TextOf(x.record.name), "a");
    EXPECT_EQ(NuvLinearProgrammingVariableSetName(&x.record, &source.record.name), 0);
    EXPECT_EQ(TextOf(x.record.name), "a");
}

TEST(ConstraintRefused, ConstructionsAnswerNullAndAreEmptyRows)
{
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            const auto expectMadeOrEmpty =
                [](const Constraint* result, Constraint& x, bool isRefused, const auto& terms)
            {
                EXPECT_EQ(result, isRefused ? nullptr : &x);
                if (isRefused)
                    ExpectHolds(x, std::decay_t<decltype(terms)>{}, 0.0F);
                else
                    ExpectHolds(x, terms, 4.0F);
            };
            std::size_t refusals = 0;
            const auto isRefused = [&]
            {
                const std::size_t before = refusals;
                refusals = allocator.Refusals();
                return refusals != before;
            };
            Constraint x;
            const auto* result = NuvLinearProgrammingConstraintConstruct(
                &x, NamedCoefficients(kNamed), 4.0F, allocator);
            expectMadeOrEmpty(result, x, isRefused(), kNamed);
            NuvLinearProgrammingConstraintDestruct(&x);
            result = NuvLinearProgrammingConstraintConstructIndex(&x, IndexedCoefficients(kIndexed),
                                                                  4.0F, allocator);
            expectMadeOrEmpty(result, x, isRefused(), kIndexed);
            NuvLinearProgrammingConstraintDestruct(&x);
            EXPECT_EQ(allocator.LiveBlocks(), 0u);
        });
}

template <class Terms>
void ExpectCopyMadeOrEmpty(const Terms& terms)
{
    ForEachRefusedAllocation(
        [&terms](TestAllocator& allocator)
        {
            const auto source = [&]
            {
                const auto spared = allocator.Spare();
                return std::make_unique<HeldConstraint>(allocator, terms, 4.0F);
            }();
            Constraint x;
            const auto* const result =
                NuvLinearProgrammingConstraintConstructCopy(&x, &source->record);
            EXPECT_EQ(result, allocator.Refusals() == 0 ? &x : nullptr);
            if (result)
                ExpectHolds(x, terms, 4.0F);
            else
                ExpectHolds(x, Terms{}, 0.0F);
            NuvLinearProgrammingConstraintDestruct(&x);
            ExpectHolds(source->record, terms, 4.0F);
        });
}

TEST(ConstraintRefused, CopiesAnswerNullAndAreEmptyRows)
{
    ExpectCopyMadeOrEmpty(kNamed);
    ExpectCopyMadeOrEmpty(kIndexed);
}

template <class Old, class New>
void ExpectAssignedOrEmpty(const Old& old, const New& terms)
{
    ForEachRefusedAllocation(
        [&](TestAllocator& allocator)
        {
            const auto made = [&allocator](const auto& from, NuvFloat32 rhs)
            {
                const auto spared = allocator.Spare();
                return std::make_unique<HeldConstraint>(allocator, from, rhs);
            };
            const auto x = made(old, 1.0F);
            const auto source = made(terms, 4.0F);
            const auto* const result =
                NuvLinearProgrammingConstraintAssign(&x->record, &source->record);
            EXPECT_EQ(result, allocator.Refusals() == 0 ? &x->record : nullptr);
            if (result)
                ExpectHolds(x->record, terms, 4.0F);
            else
                ExpectHolds(x->record, New{}, 1.0F);
            ExpectHolds(source->record, terms, 4.0F);
        });
}

// A record that is replaced keeps its old right-hand side.
TEST(ConstraintRefused, AssignAnswersNullAndLeavesAnEmptyRow)
{
    const NamedTerms oldNames = {{"old", 1.0F}};
    const IndexedTerms oldIndices = {{9, 1.0F}};
    ExpectAssignedOrEmpty(oldNames, kNamed);
    ExpectAssignedOrEmpty(oldIndices, kNamed);
    ExpectAssignedOrEmpty(oldNames, kIndexed);
    ExpectAssignedOrEmpty(oldIndices, kIndexed);
}
}  // namespace
