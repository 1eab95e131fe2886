// The two records of a model, the variable and the constraint.
#include <memory>

#include "tests/core/problem/RecordsSupport.hpp"

namespace
{
// Edge cases ---------------------------------------------------------------------------------

TEST(Variable, EqualWhenTypeIndexAndNameAre)
{
    TestAllocator allocator;
    TestAllocator elsewhere;
    const HeldVariable x(allocator, kInteger, 3, "profit");
    const HeldVariable same(elsewhere, kInteger, 3, "profit");
    const HeldVariable otherType(allocator, kBoolean, 3, "profit");
    const HeldVariable otherIndex(allocator, kInteger, 4, "profit");
    const HeldVariable otherName(allocator, kInteger, 3, "profits");
    EXPECT_EQ(NuvLinearProgrammingVariableEqual(&x.record, &x.record), 1);
    EXPECT_EQ(NuvLinearProgrammingVariableEqual(&x.record, &same.record), 1);
    for (const auto* const other : {&otherType, &otherIndex, &otherName})
    {
        EXPECT_EQ(NuvLinearProgrammingVariableEqual(&x.record, &other->record), 0);
        EXPECT_EQ(NuvLinearProgrammingVariableEqual(&other->record, &x.record), 0);
    }
}

TEST(Constraint, IsNotEvenEqualToItself)
{
    TestAllocator allocator;
    const HeldConstraint byIndex(allocator, kIndexed, 4.0F);
    const HeldConstraint byName(allocator, kNamed, 4.0F);
    for (const auto* const x : {&byIndex, &byName})
        for (const auto* const y : {&byIndex, &byName})
            EXPECT_EQ(NuvLinearProgrammingConstraintEqual(&x->record, &y->record), 0);
}

TEST(Records, HaveNoOrder)
{
    TestAllocator allocator;
    const HeldVariable x(allocator, kContinuous, 1, "a");
    const HeldVariable y(allocator, kInteger, 2, "b");
    EXPECT_EQ(NuvLinearProgrammingVariableLess(&x.record, &y.record), 0);
    EXPECT_EQ(NuvLinearProgrammingVariableLess(&y.record, &x.record), 0);
    EXPECT_EQ(NuvLinearProgrammingVariableLess(&x.record, &x.record), 0);
    const HeldConstraint c(allocator, kIndexed, 1.0F);
    const HeldConstraint d(allocator, kNamed, 2.0F);
    EXPECT_EQ(NuvLinearProgrammingConstraintLess(&c.record, &d.record), 0);
    EXPECT_EQ(NuvLinearProgrammingConstraintLess(&d.record, &c.record), 0);
    EXPECT_EQ(NuvLinearProgrammingConstraintLess(&c.record, &c.record), 0);
}

TEST(Constraint, AnswersTheArrayOfItsKindAndNullForTheOther)
{
    TestAllocator allocator;
    const HeldConstraint byName(allocator, kNamed, 4.0F);
    ExpectHolds(byName.record, kNamed, 4.0F);
    const HeldConstraint byIndex(allocator, kIndexed, -1.0F);
    ExpectHolds(byIndex.record, kIndexed, -1.0F);
}

TEST(Constraint, ACopyByNameIsIndependent)
{
    TestAllocator allocator;
    const HeldConstraint source(allocator, kNamed, 4.0F);
    Constraint copy;
    ASSERT_EQ(NuvLinearProgrammingConstraintConstructCopy(&copy, &source.record), &copy);
    ExpectHolds(copy, kNamed, 4.0F);
    auto& array = copy.u.variableCoefficientsByName;
    array.begin->first.buf[0] = 'Y';
    array.begin->second = 7.0F;
    NuvVector_NuvPair_NuvString__NuvFloat32PopBack(&array);
    copy.rhs = 9.0F;
    ExpectHolds(source.record, kNamed, 4.0F);
    NuvLinearProgrammingConstraintDestruct(&copy);
    ExpectHolds(source.record, kNamed, 4.0F);
}

// The variable -------------------------------------------------------------------------------

TEST(Variable, ConstructDefaultIsContinuousWithoutIndexAndName)
{
    TestAllocator allocator;
    Variable x;
    ASSERT_EQ(NuvLinearProgrammingVariableConstructDefault(&x, allocator), &x);
    EXPECT_EQ(NuvLinearProgrammingVariableGetType(&x), kContinuous);
    EXPECT_EQ(NuvLinearProgrammingVariableGetIndex(&x), 0u);
    EXPECT_EQ(TextOf(NuvLinearProgrammingVariableGetName(&x)), "");
    EXPECT_EQ(x.name.allocator, allocator.operator NuvAllocator*());
    NuvLinearProgrammingVariableDestruct(&x);
}

TEST(Variable, ConstructCopiesTheNameOntoTheGivenAllocator)
{
    TestAllocator allocator;
    TestAllocator elsewhere;
    const Name name("profit", elsewhere);
    Variable x;
    ASSERT_EQ(NuvLinearProgrammingVariableConstruct(&x, kBoolean, 7, name, allocator), &x);
    EXPECT_EQ(NuvLinearProgrammingVariableGetType(&x), kBoolean);
    EXPECT_EQ(NuvLinearProgrammingVariableGetIndex(&x), 7u);
    EXPECT_EQ(NuvLinearProgrammingVariableGetName(&x), &x.name);
    EXPECT_EQ(TextOf(x.name), "profit");
    EXPECT_TRUE(allocator.Owns(x.name.buf));
    NuvLinearProgrammingVariableDestruct(&x);
    EXPECT_EQ(allocator.LiveBlocks(), 0u);
}

TEST(Variable, ConstructCopyTakesTheSourcesAllocator)
{
    TestAllocator allocator;
    const HeldVariable source(allocator, kInteger, 7, "profit");
    Variable x;
    ASSERT_EQ(NuvLinearProgrammingVariableConstructCopy(&x, &source.record), &x);
    EXPECT_EQ(NuvLinearProgrammingVariableEqual(&x, &source.record), 1);
    EXPECT_TRUE(allocator.Owns(x.name.buf));
    EXPECT_NE(x.name.buf, source.record.name.buf);
    NuvLinearProgrammingVariableDestruct(&x);
}

TEST(Variable, AssignKeepsItsAllocator)
{
    TestAllocator allocator;
    TestAllocator elsewhere;
    HeldVariable x(allocator, kContinuous, 1, "a");
    const HeldVariable source(elsewhere, kInteger, 7, "a longer name");
    EXPECT_EQ(NuvLinearProgrammingVariableAssign(&x.record, &source.record), &x.record);
    EXPECT_EQ(NuvLinearProgrammingVariableEqual(&x.record, &source.record), 1);
    EXPECT_TRUE(allocator.Owns(x.record.name.buf));
    EXPECT_EQ(NuvLinearProgrammingVariableAssign(&x.record, &x.record), &x.record);
    EXPECT_EQ(NuvLinearProgrammingVariableEqual(&x.record, &source.record), 1);
}

TEST(Variable, SettersStoreTheirField)
{
    TestAllocator allocator;
    HeldVariable x(allocator, kContinuous, 1, "a");
    const HeldVariable expected(allocator, kBoolean, 4294967295u, "another name");
    EXPECT_EQ(NuvLinearProgrammingVariableSetName(&x.record, Name("another name")), 1);
    NuvLinearProgrammingVariableSetType(&x.record, kBoolean);
    NuvLinearProgrammingVariableSetIndex(&x.record, 4294967295u);
    EXPECT_EQ(NuvLinearProgrammingVariableEqual(&x.record, &expected.record), 1);
    EXPECT_EQ(NuvLinearProgrammingVariableSetName(&x.record,
                                                  NuvLinearProgrammingVariableGetName(&x.record)),
              1);
    EXPECT_EQ(NuvLinearProgrammingVariableEqual(&x.record, &expected.record), 1);
}

// The constraint -----------------------------------------------------------------------------

TEST(Constraint, ConstructionsPutEverythingOnTheGivenAllocator)
{
    TestAllocator allocator;
    TestAllocator elsewhere;
    Constraint byName;
    Constraint byIndex;
    {
        const NamedCoefficients names(kNamed, elsewhere);
        const IndexedCoefficients indices(kIndexed, elsewhere);
        NuvLinearProgrammingConstraintConstruct(&byName, names, 4.0F, allocator);
        NuvLinearProgrammingConstraintConstructIndex(&byIndex, indices, 5.0F, allocator);
    }
    EXPECT_EQ(elsewhere.LiveBlocks(), 0u);
    ExpectHolds(byName, kNamed, 4.0F);
    ExpectHolds(byIndex, kIndexed, 5.0F);
    // The two arrays, and the two names that are not empty.
    EXPECT_EQ(allocator.LiveBlocks(), 4u);
    for (const auto& pair : {byName.u.variableCoefficientsByName.begin[0],
                             byName.u.variableCoefficientsByName.begin[2]})
        EXPECT_EQ(pair.first.allocator, allocator.operator NuvAllocator*());
    NuvLinearProgrammingConstraintDestruct(&byName);
    NuvLinearProgrammingConstraintDestruct(&byIndex);
    EXPECT_EQ(allocator.LiveBlocks(), 0u);
}

TEST(Constraint, MayHaveNoCoefficients)
{
    TestAllocator allocator;
    const HeldConstraint byName(allocator, NamedTerms{}, 4.0F);
    const HeldConstraint byIndex(allocator, IndexedTerms{}, 5.0F);
    ExpectHolds(byName.record, NamedTerms{}, 4.0F);
    ExpectHolds(byIndex.record, IndexedTerms{}, 5.0F);
    EXPECT_EQ(allocator.LiveBlocks(), 0u);
}

TEST(Constraint, ConstructCopyTakesTheSourcesAllocator)
{
    TestAllocator allocator;
    const HeldConstraint source(allocator, kIndexed, 4.0F);
    Constraint copy;
    ASSERT_EQ(NuvLinearProgrammingConstraintConstructCopy(&copy, &source.record), &copy);
    ExpectHolds(copy, kIndexed, 4.0F);
    EXPECT_EQ(copy.u.variableCoefficientsByIndex.allocator, allocator.operator NuvAllocator*());
    EXPECT_NE(copy.u.variableCoefficientsByIndex.begin,
              source.record.u.variableCoefficientsByIndex.begin);
    NuvLinearProgrammingConstraintDestruct(&copy);
}

TEST(Constraint, AssignReplacesEitherKindByEitherAndReleasesTheOld)
{
    TestAllocator allocator;
    TestAllocator elsewhere;
    const HeldConstraint byName(elsewhere, kNamed, 8.0F);
    const HeldConstraint byIndex(elsewhere, kIndexed, 9.0F);
    for (const bool isByName : {false, true})
    {
        const auto made = [&]
        {
            return isByName
                       ? std::make_unique<HeldConstraint>(allocator, NamedTerms{{"old", 1.0F}},
                                                          1.0F)
                       : std::make_unique<HeldConstraint>(allocator, IndexedTerms{{9, 1.0F}}, 1.0F);
        };
        const auto x = made();
        EXPECT_EQ(NuvLinearProgrammingConstraintAssign(&x->record, &byName.record), &x->record);
        ExpectHolds(x->record, kNamed, 8.0F);
        const auto y = made();
        EXPECT_EQ(NuvLinearProgrammingConstraintAssign(&y->record, &byIndex.record), &y->record);
        ExpectHolds(y->record, kIndexed, 9.0F);
    }
    ExpectHolds(byName.record, kNamed, 8.0F);
    ExpectHolds(byIndex.record, kIndexed, 9.0F);
    EXPECT_EQ(allocator.LiveBlocks(), 0u);
}

TEST(Constraint, AssignByIndexReusesARoomThatIsLargeEnough)
{
    TestAllocator allocator;
    HeldConstraint x(allocator, IndexedTerms{{4, 1.0F}, {5, 2.0F}, {6, 3.0F}}, 1.0F);
    const HeldConstraint source(Heap(), IndexedTerms{{7, 4.0F}, {8, 5.0F}}, 9.0F);
    const auto* const room = x.record.u.variableCoefficientsByIndex.begin;
    EXPECT_EQ(NuvLinearProgrammingConstraintAssign(&x.record, &source.record), &x.record);
    ExpectHolds(x.record, IndexedTerms{{7, 4.0F}, {8, 5.0F}}, 9.0F);
    EXPECT_EQ(x.record.u.variableCoefficientsByIndex.begin, room);
    EXPECT_EQ(allocator.Requests(), 1u);
}

TEST(Constraint, AssignToItselfChangesNothing)
{
    TestAllocator allocator;
    HeldConstraint byName(allocator, kNamed, 8.0F);
    HeldConstraint byIndex(allocator, kIndexed, 9.0F);
    EXPECT_EQ(NuvLinearProgrammingConstraintAssign(&byName.record, &byName.record), &byName.record);
    ExpectHolds(byName.record, kNamed, 8.0F);
    EXPECT_EQ(NuvLinearProgrammingConstraintAssign(&byIndex.record, &byIndex.record),
              &byIndex.record);
    ExpectHolds(byIndex.record, kIndexed, 9.0F);
}
}  // namespace
