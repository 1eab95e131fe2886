// Editing a model between construction and solve: names of variables, constraints under numbers,
// the objective, and whose memory the model keeps them in.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/SmallModel.hpp"

namespace
{
using Indexed = IndexedCoefficients::Terms;
using Named = NamedCoefficients::Terms;

constexpr auto kByName = NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME;
constexpr auto kByIndex = NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_INDEX;
constexpr auto kOk = NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;
constexpr auto kInvalidInput = NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;

const std::string kLongName = "a name that is much too long for anything but a block of its own";

class Editing : public testing::Test
{
protected:
    Editing()
    {
        allocator.AcceptLeftBlocks();
    }

    void ExpectRow(NuvUint id, const Indexed& terms, float rhs)
    {
        const NuvLinearProgrammingConstraint* const row = model.FindRow(id);
        ASSERT_NE(row, nullptr);
        ASSERT_EQ(row->type, kByIndex);
        EXPECT_EQ(TermsOf(row->u.variableCoefficientsByIndex), terms);
        EXPECT_EQ(row->rhs, rhs);
    }

    void ExpectRow(NuvUint id, const Named& terms, float rhs)
    {
        const NuvLinearProgrammingConstraint* const row = model.FindRow(id);
        ASSERT_NE(row, nullptr);
        ASSERT_EQ(row->type, kByName);
        EXPECT_EQ(TermsOf(row->u.variableCoefficientsByName), terms);
        EXPECT_EQ(row->rhs, rhs);
    }

    TestAllocator allocator;
    SmallModel model{3, allocator};
};

// Edge cases --------------------------------------------------------------------------------------

TEST_F(Editing, SetVariableInfoOfAnIndexThatIsNotThereIsRefused)
{
    for (const NuvUint index : {0U, 4U, 0xFFFFFFFFU})
        EXPECT_FALSE(model.Rename(index, "Y"));
    EXPECT_EQ(model.Names(), (std::vector<std::string>{"X1", "X2", "X3"}));
    EXPECT_EQ(model.NumVariables(), 3U);
}

TEST_F(Editing, ARenamedVariableIsFoundUnderItsNewNameAndStaysContinuous)
{
    for (const auto type :
         {NUV_LINEARPROGRAMMINGVARIABLETYPE_INTEGER, NUV_LINEARPROGRAMMINGVARIABLETYPE_BOOLEAN})
    {
        ASSERT_TRUE(model.Rename(2, "Y", type));
        ASSERT_NE(model.Find("Y"), nullptr);
        EXPECT_EQ(model.Find("Y")->index, 2U);
        EXPECT_EQ(TextOf(model.Find("Y")->name), "Y");
        EXPECT_EQ(model.Find("Y")->type, NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32);
        EXPECT_EQ(model.Find("X2"), nullptr);
        EXPECT_EQ(model.Names(), (std::vector<std::string>{"X1", "Y", "X3"}));
        EXPECT_EQ(model.NumVariables(), 3U);
    }
}

TEST_F(Editing, RenamingToAnotherVariablesNameFailsAndLosesTheVariable)
{
    EXPECT_FALSE(model.Rename(1, "X2"));
    EXPECT_EQ(model.Find("X1"), nullptr);
    EXPECT_EQ(model.Find("X2")->index, 2U);
    EXPECT_EQ(model.NumVariables(), 2U);
    EXPECT_EQ(model.Names(), (std::vector<std::string>{"X1", "X2", "X3"}));
    // No name leads to it any more, and an edit finds nothing to change.
    EXPECT_TRUE(model.Rename(1, "Z"));
    EXPECT_EQ(model.Find("Z"), nullptr);
    EXPECT_EQ(model.Names()[0], "X1");
    ASSERT_TRUE(model.SetNamedRow(1, {{"X1", 1.0F}}, 4.0F));
    EXPECT_EQ(model.Solve(), kInvalidInput);
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, 4.0F));
    model.Maximise({{1, 1.0F}});
    EXPECT_EQ(model.Solve(), kOk);
    EXPECT_EQ(model.Values()[0], 4.0F);
}

TEST_F(Editing, SettingAConstraintTwiceKeepsOneEntryAndTheSecondContent)
{
    ASSERT_TRUE(model.SetRow(5, {{1, 1.0F}}, 1.0F));
    ASSERT_TRUE(model.SetRow(5, {{2, 2.0F}, {3, 3.0F}}, 9.0F));
    EXPECT_EQ(model.NumRows(), 1U);
    ExpectRow(5, Indexed{{2, 2.0F}, {3, 3.0F}}, 9.0F);
}

TEST_F(Editing, ConstraintNumberZeroIsRefusedByEveryWay)
{
    EXPECT_FALSE(model.SetRow(0, {{1, 1.0F}}, 1.0F));
    EXPECT_FALSE(model.SetNamedRow(0, {{"X1", 1.0F}}, 1.0F));
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, 1.0F));
    EXPECT_EQ(NuvLinearProgrammingSetConstraint(&model.lp, 0, model.FindRow(1)), NUV_FALSE);
    EXPECT_EQ(model.NumRows(), 1U);
}

TEST_F(Editing, RemoveConstraintAnswersWhetherItWasThere)
{
    ASSERT_TRUE(model.SetRow(5, {{1, 1.0F}}, 1.0F));
    EXPECT_EQ(NuvLinearProgrammingRemoveConstraint(&model.lp, 4), NUV_FALSE);
    EXPECT_EQ(NuvLinearProgrammingRemoveConstraint(&model.lp, 0), NUV_FALSE);
    EXPECT_EQ(model.NumRows(), 1U);
    EXPECT_EQ(NuvLinearProgrammingRemoveConstraint(&model.lp, 5), NUV_TRUE);
    EXPECT_EQ(model.NumRows(), 0U);
    EXPECT_EQ(NuvLinearProgrammingRemoveConstraint(&model.lp, 5), NUV_FALSE);
}

TEST_F(Editing, AnObjectiveWithAnUnknownNameIsRefusedAndTheEarlierOneStays)
{
    ASSERT_TRUE(model.MaximiseNamed({{"X3", 2.0F}, {"X1", 1.0F}}));
    EXPECT_FALSE(model.MaximiseNamed({{"X2", 5.0F}, {"Y", 1.0F}}));
    EXPECT_EQ(TermsOf(model.lp.objective), (Indexed{{3, 2.0F}, {1, 1.0F}}));
}

TEST_F(Editing, TheObjectiveKeepsItsIndicesWhenAVariableIsRenamed)
{
    ASSERT_TRUE(model.MaximiseNamed({{"X2", 1.0F}}));
    ASSERT_TRUE(model.Rename(2, "Y"));
    ASSERT_TRUE(model.Rename(1, "X2"));
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}, {2, 1.0F}, {3, 1.0F}}, 4.0F));
    EXPECT_EQ(model.Solve(), kOk);
    EXPECT_EQ(model.Pairs(), (Named{{"X2", 0.0F}, {"Y", 4.0F}, {"X3", 0.0F}}));
}

// Names of variables ------------------------------------------------------------------------------

TEST_F(Editing, ANameCanBeGivenToTheVariableThatHasIt)
{
    EXPECT_TRUE(model.Rename(2, "X2"));
    EXPECT_EQ(model.Find("X2")->index, 2U);
    EXPECT_EQ(model.NumVariables(), 3U);
}

TEST_F(Editing, TheNamesThatTheModelStoresCanBeArguments)
{
    const NuvString* const ofRecord = &model.Find("X2")->name;
    EXPECT_EQ(NuvLinearProgrammingSetVariableInfo(&model.lp, 2, ofRecord,
                                                  NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32),
              NUV_TRUE);
    EXPECT_EQ(model.Find("X2")->index, 2U);
    const NuvString* const ofResult = &model.lp.variableValues.begin[2].first;
    EXPECT_EQ(NuvLinearProgrammingSetVariableInfo(&model.lp, 3, ofResult,
                                                  NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32),
              NUV_TRUE);
    EXPECT_EQ(model.Names(), (std::vector<std::string>{"X1", "X2", "X3"}));
    // The name of another variable, as it is stored, is taken.
    EXPECT_EQ(NuvLinearProgrammingSetVariableInfo(&model.lp, 1, &model.Find("X3")->name,
                                                  NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32),
              NUV_FALSE);
}

TEST_F(Editing, AVariableWithoutAResultPairIsLikeOneThatIsNotFound)
{
    NuvVector_NuvPair_NuvString__NuvFloat32PopBack(&model.lp.variableValues);
    EXPECT_TRUE(model.Rename(3, "Y"));
    EXPECT_EQ(model.Find("Y"), nullptr);
    EXPECT_NE(model.Find("X3"), nullptr);
}

TEST_F(Editing, ANewNameLiesOnTheModelsAllocator)
{
    {
        TestAllocator callers;
        const Name name(kLongName, callers);
        ASSERT_TRUE(NuvLinearProgrammingSetVariableInfo(&model.lp, 1, name,
                                                        NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32));
    }
    EXPECT_EQ(model.Find(kLongName)->index, 1U);
    EXPECT_EQ(model.Find(kLongName)->name.allocator, model.lp.alloc);
    EXPECT_EQ(model.lp.variableValues.begin[0].first.allocator, model.lp.alloc);
}

// Constraints -------------------------------------------------------------------------------------

TEST_F(Editing, ConstraintsOfBothKindsKeepTheirTermsInOrder)
{
    ASSERT_TRUE(model.SetRow(1, {{3, 1.0F}, {1, 2.0F}, {3, -0.0F}}, 4.0F));
    ASSERT_TRUE(model.SetNamedRow(2, {{"X2", 1.0F}, {"no such name", 2.0F}}, -5.0F));
    ASSERT_TRUE(model.SetRow(3, {}, 6.0F));
    ExpectRow(1, Indexed{{3, 1.0F}, {1, 2.0F}, {3, -0.0F}}, 4.0F);
    ExpectRow(2, Named{{"X2", 1.0F}, {"no such name", 2.0F}}, -5.0F);
    ExpectRow(3, Indexed{}, 6.0F);
}

TEST_F(Editing, ReplacementOfEitherKindByEitherReleasesTheOldList)
{
    const Named named = {{kLongName, 1.0F}, {"X2", 2.0F}};
    const Indexed indexed = {{1, 3.0F}, {2, 4.0F}, {3, 5.0F}};
    for (const bool wasNamed : {false, true})
        for (const bool isNamed : {false, true})
        {
            SmallModel fresh(3, allocator);
            ASSERT_TRUE(wasNamed ? fresh.SetNamedRow(1, named, 1.0F)
                                 : fresh.SetRow(1, indexed, 1.0F));
            const TestAllocator::Sizes before = allocator.LiveSizes();
            for (int i = 0; i != 3; ++i)
            {
                ASSERT_TRUE(isNamed ? fresh.SetNamedRow(1, named, 2.0F)
                                    : fresh.SetRow(1, indexed, 2.0F));
                ASSERT_TRUE(wasNamed ? fresh.SetNamedRow(1, named, 3.0F)
                                     : fresh.SetRow(1, indexed, 3.0F));
                EXPECT_EQ(allocator.LiveSizes(), before);
            }
            EXPECT_EQ(fresh.FindRow(1)->type, wasNamed ? kByName : kByIndex);
            EXPECT_EQ(fresh.FindRow(1)->rhs, 3.0F);
        }
}

TEST_F(Editing, ARowIsCopiedOnce)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, 1.0F));
    std::size_t requests = allocator.Requests();
    const NuvVector_NuvPair_NuvUint__NuvFloat32 list =
        model.FindRow(1)->u.variableCoefficientsByIndex;
    ASSERT_TRUE(NuvLinearProgrammingSetConstraintByIndex(&model.lp, 2, &list, 1.0F));
    EXPECT_EQ(allocator.Requests() - requests, 2U) << "the entry and its terms";
    requests = allocator.Requests();
    ASSERT_TRUE(NuvLinearProgrammingSetConstraintByIndex(&model.lp, 2, &list, 2.0F));
    EXPECT_EQ(allocator.Requests() - requests, 0U) << "the old terms' place is used again";
    EXPECT_EQ(model.FindRow(2)->rhs, 2.0F);
}

TEST_F(Editing, ReplacementKeepsTheRowOfTheConstraint)
{
    for (NuvUint id = 1; id <= 9; ++id)
        ASSERT_TRUE(model.SetRow(id, {{1, 1.0F}}, static_cast<float>(id)));
    ASSERT_EQ(NuvLinearProgrammingPrepareInputs_(&model.lp), NUV_TRUE);
    std::vector<float> sides = ElementsOf(model.lp.b);
    ASSERT_TRUE(model.SetNamedRow(4, {{"X2", 1.0F}}, 40.0F));
    std::replace(sides.begin(), sides.end(), 4.0F, 40.0F);
    ASSERT_EQ(NuvLinearProgrammingPrepareInputs_(&model.lp), NUV_TRUE);
    EXPECT_EQ(ElementsOf(model.lp.b), sides);
}

TEST_F(Editing, WhatTheWrappersStoreLiesOnTheModelsAllocatorAlone)
{
    {
        TestAllocator callers;
        const NamedCoefficients named({{kLongName, 1.0F}, {"X2", 2.0F}}, callers);
        const IndexedCoefficients indexed({{1, 3.0F}}, callers);
        const NuvLinearProgramming* const lp = &model.lp;
        const std::size_t requests = callers.Requests();
        ASSERT_TRUE(NuvLinearProgrammingSetConstraintByName(&model.lp, 1, named, 1.0F));
        ASSERT_TRUE(NuvLinearProgrammingSetConstraintByIndex(&model.lp, 2, indexed, 2.0F));
        // Replacement of both kinds by both kinds.
        ASSERT_TRUE(NuvLinearProgrammingSetConstraintByName(&model.lp, 2, named, 3.0F));
        ASSERT_TRUE(NuvLinearProgrammingSetConstraintByName(&model.lp, 2, named, 4.0F));
        ASSERT_TRUE(NuvLinearProgrammingSetConstraintByIndex(&model.lp, 1, indexed, 5.0F));
        ASSERT_TRUE(NuvLinearProgrammingSetConstraintByIndex(&model.lp, 1, indexed, 6.0F));
        NuvLinearProgrammingSetObjectiveByIndex(&model.lp, indexed);
        EXPECT_EQ(callers.Requests(), requests);
        EXPECT_EQ(lp->alloc, static_cast<NuvAllocator*>(allocator));
    }
    ExpectRow(1, Indexed{{1, 3.0F}}, 6.0F);
    ExpectRow(2, Named{{kLongName, 1.0F}, {"X2", 2.0F}}, 4.0F);
    EXPECT_EQ(TermsOf(model.lp.objective), (Indexed{{1, 3.0F}}));
    ASSERT_TRUE(model.Rename(3, kLongName));
    EXPECT_EQ(model.Solve(), kOk);
}

TEST_F(Editing, AConstraintCopiedFromARecordKeepsTheRecordsAllocator)
{
    TestAllocator callers;
    {
        NuvLinearProgrammingConstraint record;
        ASSERT_NE(NuvLinearProgrammingConstraintConstructIndex(
                      &record, IndexedCoefficients({{1, 2.0F}}), 3.0F, callers),
                  nullptr);
        SmallModel other(1, allocator);
        ASSERT_TRUE(NuvLinearProgrammingSetConstraint(&other.lp, 1, &record));
        EXPECT_EQ(callers.LiveBlocks(), 2U);
        NuvLinearProgrammingConstraintDestruct(&record);
        EXPECT_EQ(callers.LiveBlocks(), 1U);
        EXPECT_EQ(other.FindRow(1)->rhs, 3.0F);
    }
    EXPECT_EQ(callers.LiveBlocks(), 0U);
}

TEST_F(Editing, AStoredRecordCanReplaceItselfAndOthers)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 2.0F}}, 3.0F));
    ASSERT_TRUE(model.SetNamedRow(2, {{kLongName, 2.0F}}, 4.0F));
    for (const NuvUint id : {1U, 2U})
        EXPECT_EQ(NuvLinearProgrammingSetConstraint(&model.lp, id, model.FindRow(id)), NUV_TRUE);
    ExpectRow(1, Indexed{{1, 2.0F}}, 3.0F);
    ExpectRow(2, Named{{kLongName, 2.0F}}, 4.0F);
    EXPECT_EQ(NuvLinearProgrammingSetConstraint(&model.lp, 3, model.FindRow(2)), NUV_TRUE);
    EXPECT_EQ(NuvLinearProgrammingSetConstraint(&model.lp, 2, model.FindRow(1)), NUV_TRUE);
    EXPECT_EQ(NuvLinearProgrammingSetConstraint(&model.lp, 1, model.FindRow(3)), NUV_TRUE);
    ExpectRow(1, Named{{kLongName, 2.0F}}, 4.0F);
    ExpectRow(2, Indexed{{1, 2.0F}}, 3.0F);
}

TEST_F(Editing, TheListsThatTheModelStoresCanBeArguments)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 2.0F}, {2, 3.0F}}, 3.0F));
    ASSERT_TRUE(model.SetNamedRow(2, {{kLongName, 2.0F}}, 4.0F));
    EXPECT_TRUE(NuvLinearProgrammingSetConstraintByIndex(
        &model.lp, 1, &model.FindRow(1)->u.variableCoefficientsByIndex, 5.0F));
    ExpectRow(1, Indexed{{1, 2.0F}, {2, 3.0F}}, 5.0F);
    EXPECT_TRUE(NuvLinearProgrammingSetConstraintByName(
        &model.lp, 2, &model.FindRow(2)->u.variableCoefficientsByName, 6.0F));
    ExpectRow(2, Named{{kLongName, 2.0F}}, 6.0F);
    NuvLinearProgrammingSetObjectiveByIndex(&model.lp,
                                            &model.FindRow(1)->u.variableCoefficientsByIndex);
    NuvLinearProgrammingSetObjectiveByIndex(&model.lp, &model.lp.objective);
    EXPECT_EQ(TermsOf(model.lp.objective), (Indexed{{1, 2.0F}, {2, 3.0F}}));
    EXPECT_TRUE(NuvLinearProgrammingSetConstraintByIndex(&model.lp, 2, &model.lp.objective, 7.0F));
    ExpectRow(2, Indexed{{1, 2.0F}, {2, 3.0F}}, 7.0F);
    EXPECT_TRUE(
        NuvLinearProgrammingSetConstraintByName(&model.lp, 3, &model.lp.variableValues, 8.0F));
    ExpectRow(3, Named{{"X1", 0.0F}, {"X2", 0.0F}, {"X3", 0.0F}}, 8.0F);
    EXPECT_TRUE(NuvLinearProgrammingSetObjective(&model.lp, &model.lp.variableValues));
    EXPECT_EQ(TermsOf(model.lp.objective), (Indexed{{1, 0.0F}, {2, 0.0F}, {3, 0.0F}}));
}

TEST_F(Editing, NamesInConstraintsAreLookedUpAtTheSolve)
{
    ASSERT_TRUE(model.SetNamedRow(1, {{"Y", 2.0F}}, 4.0F));
    model.Maximise({{2, 1.0F}});
    EXPECT_EQ(model.Solve(), kInvalidInput);
    ASSERT_TRUE(model.Rename(2, "Y"));
    EXPECT_EQ(model.Solve(), kOk);
    EXPECT_EQ(model.Values(), (std::vector<float>{0, 2, 0}));
}

// The objective -----------------------------------------------------------------------------------

TEST_F(Editing, ObjectivesReplaceOneAnother)
{
    model.Maximise({{1, 1.0F}, {9, 2.0F}});
    EXPECT_EQ(TermsOf(model.lp.objective), (Indexed{{1, 1.0F}, {9, 2.0F}}));
    ASSERT_TRUE(model.MaximiseNamed({{"X2", 3.0F}, {"X2", 4.0F}}));
    EXPECT_EQ(TermsOf(model.lp.objective), (Indexed{{2, 3.0F}, {2, 4.0F}}));
    ASSERT_TRUE(model.MaximiseNamed({}));
    EXPECT_TRUE(TermsOf(model.lp.objective).empty());
    EXPECT_EQ(model.lp.objective.allocator, model.lp.alloc);
}

TEST_F(Editing, AnObjectiveByNamesLeavesNothingBehind)
{
    ASSERT_TRUE(model.MaximiseNamed({{"X1", 1.0F}, {"X2", 2.0F}, {"X3", 3.0F}}));
    const TestAllocator::Sizes before = allocator.LiveSizes();
    ASSERT_TRUE(model.MaximiseNamed({{"X1", 1.0F}, {"X2", 2.0F}, {"X3", 3.0F}}));
    EXPECT_FALSE(model.MaximiseNamed({{"X1", 1.0F}, {"no", 2.0F}}));
    EXPECT_EQ(allocator.LiveSizes(), before);
}
}  // namespace
