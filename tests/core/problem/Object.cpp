// The problem object: construction, variables and their default names, getters, a standard form
// given by hand, destruction.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/SmallModel.hpp"
#include "tests/support/RefusedAllocations.hpp"

namespace
{
using Names = std::vector<std::string>;

constexpr auto kContinuous = NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32;

/// Expects the variables 1..n under their default names, and nothing else.
void ExpectDefaultVariables(const SmallModel& model, NuvUint n)
{
    EXPECT_EQ(NuvLinearProgrammingGetNumVars(&model.lp), n);
    EXPECT_EQ(model.NumVariables(), n);
    const NamedCoefficients::Terms pairs = model.Pairs();
    ASSERT_EQ(pairs.size(), n);
    for (NuvUint i = 1; i <= n; ++i)
    {
        const std::string name = "X" + std::to_string(i);
        EXPECT_EQ(pairs[i - 1], (std::pair<std::string, float>{name, 0.0F}));
        const NuvLinearProgrammingVariable* const variable = model.Find(name);
        ASSERT_NE(variable, nullptr) << name;
        EXPECT_EQ(variable->index, i);
        EXPECT_EQ(variable->type, kContinuous);
        EXPECT_EQ(TextOf(variable->name), name);
    }
}

// Edge cases --------------------------------------------------------------------------------------

TEST(Object, ConstructWithoutVariablesIsEmpty)
{
    TestAllocator allocator;
    SmallModel model(0, allocator);
    EXPECT_EQ(NuvLinearProgrammingGetNumVars(&model.lp), 0U);
    EXPECT_EQ(model.NumVariables(), 0U);
    EXPECT_TRUE(model.Pairs().empty());
}

TEST(Object, NamesOfManyDigitsAreAsWritten)
{
    TestAllocator allocator;
    SmallModel model(1200, allocator);
    ExpectDefaultVariables(model, 1200);
}

TEST(Object, AVariableTakesItsEntryAndThreeNamesAndNothingBesides)
{
    TestAllocator allocator;
    SmallModel few(61, allocator);
    const std::size_t blocks = allocator.LiveBlocks();
    const std::size_t requests = allocator.Requests();
    // Both maps grow to 61 buckets alike, so that the variables are all that differs.
    SmallModel fewer(32, allocator);
    EXPECT_EQ(blocks - (allocator.LiveBlocks() - blocks), 4U * (61 - 32));
    EXPECT_EQ(requests - (allocator.Requests() - requests), 4U * (61 - 32));
}

TEST(Object, ConstructOfThreeVariablesNamesThemFromX1)
{
    TestAllocator allocator;
    SmallModel model(3, allocator);
    ExpectDefaultVariables(model, 3);
    EXPECT_EQ(model.Find("X0"), nullptr);
}

TEST(Object, SetNumVarsRestoresTheDefaultNames)
{
    TestAllocator allocator;
    SmallModel model(2, allocator);
    ASSERT_TRUE(model.Rename(2, "Y"));
    EXPECT_EQ(NuvLinearProgrammingSetNumVars(&model.lp, 2), NUV_TRUE);
    ExpectDefaultVariables(model, 2);
    EXPECT_EQ(model.Find("Y"), nullptr);
}

TEST(Object, SetNumVarsToZeroEmptiesTheVariables)
{
    TestAllocator allocator;
    SmallModel model(3, allocator);
    EXPECT_EQ(NuvLinearProgrammingSetNumVars(&model.lp, 0), NUV_TRUE);
    ExpectDefaultVariables(model, 0);
}

TEST(Object, GetNumConstraintsCountsWhatWasEnteredAlsoBeforeASolve)
{
    TestAllocator allocator;
    SmallModel model(1, allocator);
    EXPECT_EQ(model.NumRows(), 0U);
    ASSERT_TRUE(model.SetRow(7, {{1, 1.0F}}, 1.0F));
    ASSERT_TRUE(model.SetRow(3, {{1, 1.0F}}, 2.0F));
    EXPECT_EQ(model.NumRows(), 2U);
    model.lp.numConstraints = 99;
    EXPECT_EQ(model.NumRows(), 2U);
}

TEST(Object, DestructOfMatricesThatWereNeverFilledGivesNothingBackForThem)
{
    TestAllocator allocator;
    NuvLinearProgramming lp;
    ASSERT_EQ(NuvLinearProgrammingConstructDefault(&lp, allocator), &lp);
    NuvAllocator refusing = {nullptr,
                             [](NuvAllocator*, void*, NuvSizeT size)
                             { ADD_FAILURE() << size << " bytes given back for a matrix"; },
                             0, nullptr};
    for (NuvMatrix_NuvFloat32* const x : {&lp.A, &lp.b, &lp.c})
        x->allocator = &refusing;
    lp.basic.allocator = &refusing;
    lp.independent.allocator = &refusing;
    NuvLinearProgrammingDestruct(&lp);
}

// Construction and destruction --------------------------------------------------------------------

TEST(Object, ConstructDefaultHoldsNothingButItsTwoTables)
{
    TestAllocator allocator;
    NuvLinearProgramming lp;
    ASSERT_EQ(NuvLinearProgrammingConstructDefault(&lp, allocator), &lp);
    EXPECT_EQ(lp.alloc, static_cast<NuvAllocator*>(allocator));
    EXPECT_EQ(lp.numVars, 0U);
    EXPECT_EQ(lp.numConstraints, 0U);
    for (const NuvMatrix_NuvFloat32* const x : {&lp.A, &lp.b, &lp.c})
    {
        EXPECT_EQ(x->allocator, lp.alloc);
        EXPECT_EQ(x->nr, 0U);
        EXPECT_EQ(x->nc, 0U);
        EXPECT_EQ(x->data, nullptr);
    }
    for (const NuvMatrix_NuvUint* const x : {&lp.basic, &lp.independent})
    {
        EXPECT_EQ(x->allocator, lp.alloc);
        EXPECT_EQ(x->nr, 0U);
        EXPECT_EQ(x->nc, 0U);
        EXPECT_EQ(x->data, nullptr);
    }
    EXPECT_EQ(lp.variables.hash, NuvStringHash);
    EXPECT_EQ(lp.constraints.hash, NuvConstraintIdHash);
    EXPECT_EQ(lp.objective.allocator, lp.alloc);
    EXPECT_EQ(lp.objective.begin, nullptr);
    EXPECT_EQ(lp.variableValues.allocator, lp.alloc);
    EXPECT_EQ(lp.variableValues.begin, nullptr);
    EXPECT_EQ(allocator.LiveBlocks(), 2U);
    NuvLinearProgrammingDestruct(&lp);
    EXPECT_EQ(allocator.LiveBlocks(), 0U);
}

TEST(Object, ConstructReservesTheResultsExactly)
{
    TestAllocator allocator;
    SmallModel model(5, allocator);
    EXPECT_EQ(NuvVector_NuvPair_NuvString__NuvFloat32Capacity(&model.lp.variableValues), 5U);
}

TEST(Object, DestructLeavesARecordThatCanBeConstructedAgain)
{
    TestAllocator allocator;
    NuvLinearProgramming lp;
    ASSERT_NE(NuvLinearProgrammingConstruct(&lp, 2, allocator), nullptr);
    NuvLinearProgrammingDestruct(&lp);
    EXPECT_EQ(lp.alloc, nullptr);
    EXPECT_EQ(lp.numVars, 0U);
    EXPECT_EQ(lp.numConstraints, 0U);
    EXPECT_EQ(lp.A.data, nullptr);
    EXPECT_EQ(lp.A.nr, 0U);
    EXPECT_EQ(allocator.LiveBlocks(), 0U);
    ASSERT_NE(NuvLinearProgrammingConstruct(&lp, 1, allocator), nullptr);
    NuvLinearProgrammingDestruct(&lp);
}

TEST(Object, ConstructOverGarbageReadsNothingOfIt)
{
    TestAllocator allocator;
    NuvLinearProgramming lp;
    std::memset(&lp, 0xA5, sizeof lp);
    ASSERT_NE(NuvLinearProgrammingConstruct(&lp, 3, allocator), nullptr);
    EXPECT_EQ(NuvLinearProgrammingGetNumConstraints(&lp), 0U);
    NuvLinearProgrammingDestruct(&lp);
}

TEST(Object, EveryBlockOfAModelThatWasSolvedIsItsOwnOrLeftByTheSolve)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    std::size_t left = 0;
    {
        SmallModel model(2, allocator);
        ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}, {2, 1.0F}}, 4.0F));
        model.Maximise({{1, 1.0F}});
        const std::size_t before = allocator.LiveBlocks();
        ASSERT_EQ(model.Solve(), NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
        left = allocator.LiveBlocks() - before;
    }
    // Five matrices are the model's own; a pivot leaves five blocks and the optimum two.
    EXPECT_EQ(left, 5U + 7U);
    EXPECT_EQ(allocator.LiveBlocks(), 7U);
}

// The record --------------------------------------------------------------------------------------

TEST(Object, TheFieldsStandInTheirOrder)
{
    const std::size_t offsets[] = {offsetof(NuvLinearProgramming, alloc),
                                   offsetof(NuvLinearProgramming, numVars),
                                   offsetof(NuvLinearProgramming, numConstraints),
                                   offsetof(NuvLinearProgramming, A),
                                   offsetof(NuvLinearProgramming, b),
                                   offsetof(NuvLinearProgramming, c),
                                   offsetof(NuvLinearProgramming, basic),
                                   offsetof(NuvLinearProgramming, independent),
                                   offsetof(NuvLinearProgramming, variables),
                                   offsetof(NuvLinearProgramming, constraints),
                                   offsetof(NuvLinearProgramming, objective),
                                   offsetof(NuvLinearProgramming, variableValues),
                                   offsetof(NuvLinearProgramming, objectiveValue)};
    EXPECT_TRUE(std::is_sorted(std::begin(offsets), std::end(offsets)));
    EXPECT_EQ(offsets[0], 0U);
}

TEST(Object, TheHashOfAConstraintIsItsNumber)
{
    for (const NuvUint id : {0U, 1U, 12345U, 0xFFFFFFFFU})
        EXPECT_EQ(NuvConstraintIdHash(&id), NuvSizeT{id});
}

// SetNumVars --------------------------------------------------------------------------------------

TEST(Object, SetNumVarsRaisesAndLowersTheCount)
{
    TestAllocator allocator;
    SmallModel model(1, allocator);
    for (const NuvUint n : {40U, 3U, 0U, 7U})
    {
        EXPECT_EQ(NuvLinearProgrammingSetNumVars(&model.lp, n), NUV_TRUE);
        ExpectDefaultVariables(model, n);
    }
}

TEST(Object, SetNumVarsForgetsValuesAndKeepsConstraintsAndObjective)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    SmallModel model(2, allocator);
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}, {2, 1.0F}}, 4.0F));
    model.Maximise({{2, 3.0F}});
    ASSERT_EQ(model.Solve(), NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    EXPECT_EQ(model.Values(), (std::vector<float>{0, 4}));
    const float* const matrix = model.lp.A.data;
    ASSERT_EQ(NuvLinearProgrammingSetNumVars(&model.lp, 3), NUV_TRUE);
    ExpectDefaultVariables(model, 3);
    EXPECT_EQ(model.NumRows(), 1U);
    EXPECT_EQ(model.Objective(), 12.0F);
    EXPECT_EQ(model.lp.A.data, matrix);
    EXPECT_EQ(TermsOf(model.lp.objective), (IndexedCoefficients::Terms{{2, 3.0F}}));
    EXPECT_EQ(model.Solve(), NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    EXPECT_EQ(model.Values(), (std::vector<float>{0, 4, 0}));
}

TEST(Object, SetNumVarsKeepsTheRoomOfTheResults)
{
    TestAllocator allocator;
    SmallModel model(8, allocator);
    ASSERT_EQ(NuvLinearProgrammingSetNumVars(&model.lp, 2), NUV_TRUE);
    EXPECT_EQ(NuvVector_NuvPair_NuvString__NuvFloat32Capacity(&model.lp.variableValues), 8U);
}

// SetInput ----------------------------------------------------------------------------------------

/// Three small matrices on an allocator, for the length of a scope.
struct Inputs
{
    explicit Inputs(NuvAllocator* allocator)
    {
        NuvMatrix_NuvFloat32ConstructIdentity(&A, 2, allocator);
        NuvMatrix_NuvFloat32ConstructIdentity(&b, 1, allocator);
        NuvMatrix_NuvFloat32ConstructIdentity(&c, 3, allocator);
    }

    ~Inputs()
    {
        for (NuvMatrix_NuvFloat32* const x : {&A, &b, &c})
            NuvMatrix_NuvFloat32Destruct(x);
    }

    Inputs(const Inputs&) = delete;
    Inputs& operator=(const Inputs&) = delete;

    NuvMatrix_NuvFloat32 A;
    NuvMatrix_NuvFloat32 b;
    NuvMatrix_NuvFloat32 c;
};

TEST(Object, SetInputCopiesTheMatricesAndGivesTheFormerOnesBack)
{
    TestAllocator allocator;
    const Inputs inputs(allocator);
    SmallModel model(1, allocator);
    for (int i = 0; i != 2; ++i)
    {
        EXPECT_EQ(NuvLinearProgrammingSetInput(&model.lp, &inputs.A, &inputs.b, &inputs.c),
                  NUV_TRUE);
        EXPECT_TRUE(NuvMatrix_NuvFloat32Equal(&model.lp.A, &inputs.A));
        EXPECT_TRUE(NuvMatrix_NuvFloat32Equal(&model.lp.b, &inputs.b));
        EXPECT_TRUE(NuvMatrix_NuvFloat32Equal(&model.lp.c, &inputs.c));
        EXPECT_NE(model.lp.A.data, inputs.A.data);
    }
}

TEST(Object, SetInputTakesTheObjectsOwnMatricesInAnyOrder)
{
    TestAllocator allocator;
    const Inputs inputs(allocator);
    SmallModel model(1, allocator);
    ASSERT_TRUE(NuvLinearProgrammingSetInput(&model.lp, &inputs.A, &inputs.b, &inputs.c));
    EXPECT_EQ(NuvLinearProgrammingSetInput(&model.lp, &model.lp.A, &model.lp.b, &model.lp.c),
              NUV_TRUE);
    EXPECT_TRUE(NuvMatrix_NuvFloat32Equal(&model.lp.A, &inputs.A));
    EXPECT_EQ(NuvLinearProgrammingSetInput(&model.lp, &model.lp.c, &model.lp.A, &model.lp.b),
              NUV_TRUE);
    EXPECT_TRUE(NuvMatrix_NuvFloat32Equal(&model.lp.A, &inputs.c));
    EXPECT_TRUE(NuvMatrix_NuvFloat32Equal(&model.lp.b, &inputs.A));
    EXPECT_TRUE(NuvMatrix_NuvFloat32Equal(&model.lp.c, &inputs.b));
}

TEST(Object, SetInputDoesNotReachTheSolve)
{
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    const Inputs inputs(allocator);
    SmallModel model(1, allocator);
    ASSERT_TRUE(model.SetRow(1, {{1, 2.0F}}, 4.0F));
    model.Maximise({{1, 1.0F}});
    ASSERT_TRUE(NuvLinearProgrammingSetInput(&model.lp, &inputs.A, &inputs.b, &inputs.c));
    EXPECT_EQ(model.Solve(), NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    EXPECT_EQ(model.Values(), (std::vector<float>{2}));
}

TEST(Object, SetInputAnswersTrueWithoutMemoryAndTheObjectCanStillBeSolved)
{
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            allocator.AcceptLeftBlocks();
            auto spared = std::make_unique<TestAllocator::Spared>(allocator);
            const Inputs inputs(allocator);
            SmallModel model(1, allocator);
            ASSERT_TRUE(model.SetRow(1, {{1, 2.0F}}, 4.0F));
            model.Maximise({{1, 1.0F}});
            const std::size_t before = allocator.LiveBlocks();
            spared.reset();
            EXPECT_EQ(NuvLinearProgrammingSetInput(&model.lp, &inputs.A, &inputs.b, &inputs.c),
                      NUV_TRUE);
            EXPECT_LE(allocator.LiveBlocks(), before + 3);
            allocator.RefuseNothing();
            EXPECT_EQ(model.Solve(), NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
            EXPECT_EQ(model.Values(), (std::vector<float>{2}));
        });
}

// Refused memory ----------------------------------------------------------------------------------

TEST(Object, ConstructDefaultWithoutMemoryAnswersNullAndHoldsNothing)
{
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            NuvLinearProgramming lp;
            const bool isConstructed = NuvLinearProgrammingConstructDefault(&lp, allocator) == &lp;
            EXPECT_EQ(isConstructed, allocator.Refusals() == 0);
            if (isConstructed)
                NuvLinearProgrammingDestruct(&lp);
            EXPECT_EQ(allocator.LiveBlocks(), 0U);
        });
}

TEST(Object, ConstructWithoutMemoryAnswersNullAndHoldsNothingOrLacksResultsAlone)
{
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            NuvLinearProgramming lp;
            if (!NuvLinearProgrammingConstruct(&lp, 4, allocator))
            {
                EXPECT_NE(allocator.Refusals(), 0U);
                EXPECT_EQ(allocator.LiveBlocks(), 0U);
                return;
            }
            EXPECT_EQ(lp.numVars, 4U);
            EXPECT_EQ(NuvUnordered_NuvString__NuvLinearProgrammingVariableSize(&lp.variables), 4U);
            for (const char* const name : {"X1", "X2", "X3", "X4"})
            {
                const auto found = NuvUnordered_NuvString__NuvLinearProgrammingVariableFind(
                    &lp.variables, Name(name));
                ASSERT_NE(found,
                          NuvUnordered_NuvString__NuvLinearProgrammingVariableEnd(&lp.variables));
                EXPECT_EQ(
                    TextOf(NuvList_NuvPair_NuvString__NuvLinearProgrammingVariableIteratorContentOf(
                               &found)
                               ->second.name),
                    name);
            }
            const NuvSizeT results =
                NuvVector_NuvPair_NuvString__NuvFloat32Size(&lp.variableValues);
            EXPECT_LE(results, 4U);
            EXPECT_TRUE(results == 4U || allocator.Refusals() != 0);
            NuvLinearProgrammingDestruct(&lp);
        });
}

TEST(Object, SetNumVarsWithoutMemoryKeepsTheFirstVariablesAndCanBeCalledAgain)
{
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            auto spared = std::make_unique<TestAllocator::Spared>(allocator);
            SmallModel model(3, allocator);
            ASSERT_TRUE(model.Rename(1, "a name that is long enough for a block of its own"));
            spared.reset();
            const bool isSet = NuvLinearProgrammingSetNumVars(&model.lp, 5) == NUV_TRUE;
            EXPECT_EQ(model.lp.numVars, 5U);
            EXPECT_TRUE(isSet || allocator.Refusals() != 0);
            EXPECT_EQ(isSet, model.NumVariables() == 5U);
            for (NuvUint i = 1; i <= model.NumVariables(); ++i)
                EXPECT_NE(model.Find("X" + std::to_string(i)), nullptr);
            allocator.RefuseNothing();
            EXPECT_EQ(NuvLinearProgrammingSetNumVars(&model.lp, 5), NUV_TRUE);
            ExpectDefaultVariables(model, 5);
        });
}
}  // namespace
