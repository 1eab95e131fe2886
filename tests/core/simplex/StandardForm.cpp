// The standard form that a solve starts from: shapes, slack columns, labels, the order of the rows,
// and every model that has none.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

#include "tests/support/SmallModel.hpp"
#include "tests/support/RefusedAllocations.hpp"

namespace standard_form
{
using Floats = std::vector<float>;
using Uints = std::vector<NuvUint>;

constexpr auto kOk = NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;
constexpr auto kInvalidInput = NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput;

class StandardForm : public testing::Test
{
protected:
    StandardForm()
    {
        allocator.AcceptLeftBlocks();
    }

    bool Prepare()
    {
        return NuvLinearProgrammingPrepareInputs_(&model.lp) == NUV_TRUE;
    }

    TestAllocator allocator;
    SmallModel model{2, allocator};
};

// Edge cases --------------------------------------------------------------------------------------

TEST_F(StandardForm, AModelWithoutConstraintsIsInvalid)
{
    model.Maximise({{1, 1.0F}});
    EXPECT_EQ(model.Solve(), kInvalidInput);
}

TEST_F(StandardForm, AModelWithoutVariablesIsInvalid)
{
    SmallModel rows(0, allocator);
    ASSERT_TRUE(rows.SetRow(1, {}, 1.0F));
    EXPECT_EQ(rows.Solve(), kInvalidInput);
    EXPECT_EQ(rows.lp.A.nr, 1U);
    EXPECT_EQ(rows.lp.A.nc, 1U);
    EXPECT_EQ(ElementsOf(rows.lp.A), Floats{1});
    EXPECT_EQ(rows.lp.basic.nc, 1U);
    SmallModel nothing(0, allocator);
    EXPECT_EQ(nothing.Solve(), kInvalidInput);
}

TEST_F(StandardForm, OnlyARightHandSideBelowZeroAsksForPhaseI)
{
    for (const float rhs : {0.0F, -0.0F, 1.0F, std::numeric_limits<float>::quiet_NaN()})
    {
        ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, rhs));
        ASSERT_TRUE(Prepare());
        EXPECT_EQ(NuvRevisedSimplexIsPhaseIRequired(&model.lp), NUV_FALSE) << rhs;
    }
    for (const float rhs : {-1.0F, -std::numeric_limits<float>::denorm_min(),
                            -std::numeric_limits<float>::infinity()})
    {
        ASSERT_TRUE(model.SetRow(2, {{1, 1.0F}}, rhs));
        ASSERT_TRUE(Prepare());
        EXPECT_EQ(NuvRevisedSimplexIsPhaseIRequired(&model.lp), NUV_TRUE) << rhs;
    }
}

TEST_F(StandardForm, AnUnknownNameIsInvalid)
{
    ASSERT_TRUE(model.SetNamedRow(1, {{"X1", 1.0F}, {"Y", 1.0F}}, 1.0F));
    EXPECT_EQ(model.Solve(), kInvalidInput);
    ASSERT_TRUE(model.Rename(2, "Y"));
    EXPECT_EQ(model.Solve(), kOk);
}

TEST_F(StandardForm, AnObjectiveIndexIsValidUpToTheNumberOfVariables)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}, {2, 1.0F}}, 1.0F));
    model.Maximise({{3, 1.0F}});
    EXPECT_EQ(model.Solve(), kInvalidInput);
    model.Maximise({{2, 1.0F}});
    EXPECT_EQ(model.Solve(), kOk);
}

TEST_F(StandardForm, RowsFollowTheWalkOfTheMapWhateverTheirNumbers)
{
    for (const NuvUint id : {90U, 7U, 1000003U, 2U, 41U, 8U})
        ASSERT_TRUE(model.SetRow(id, {{1, 1.0F}}, static_cast<float>(id)));
    const auto walk = [this]
    {
        Floats sides;
        auto* const map = &model.lp.constraints;
        auto it = NuvUnordered_NuvUint__NuvLinearProgrammingConstraintBegin(map);
        const auto end = NuvUnordered_NuvUint__NuvLinearProgrammingConstraintEnd(map);
        for (; it != end;
             NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraintIteratorIncrement(&it))
            sides.push_back(static_cast<float>(
                NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraintIteratorContentOf(&it)
                    ->first));
        return sides;
    };
    ASSERT_TRUE(Prepare());
    EXPECT_EQ(ElementsOf(model.lp.b), walk());
    Floats sides = walk();
    ASSERT_TRUE(model.SetRow(2, {{2, 1.0F}}, 2.0F));
    ASSERT_TRUE(Prepare());
    EXPECT_EQ(ElementsOf(model.lp.b), sides);
    ASSERT_TRUE(NuvLinearProgrammingRemoveConstraint(&model.lp, 7));
    std::erase(sides, 7.0F);
    ASSERT_TRUE(Prepare());
    EXPECT_EQ(ElementsOf(model.lp.b), sides);
}

TEST_F(StandardForm, TheLastOfTwoCoefficientsForAVariableCounts)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 5.0F}, {2, 1.0F}, {1, 2.0F}}, 1.0F));
    ASSERT_TRUE(model.SetNamedRow(2, {{"X2", 5.0F}, {"X2", 3.0F}}, 1.0F));
    model.Maximise({{2, 7.0F}, {2, 8.0F}});
    ASSERT_TRUE(Prepare());
    EXPECT_EQ(ElementsOf(model.lp.c), (Floats{0, 8, 0, 0}));
    const bool isFirst = model.lp.A.data[0] == 2.0F;
    EXPECT_EQ(ElementsOf(model.lp.A),
              isFirst ? (Floats{2, 1, 1, 0, 0, 3, 0, 1}) : (Floats{0, 3, 1, 0, 2, 1, 0, 1}));
}

TEST_F(StandardForm, AnIndexThatLoweredCountsLeaveOutsideIsInvalid)
{
    ASSERT_TRUE(model.SetRow(1, {{2, 1.0F}}, 1.0F));
    EXPECT_EQ(model.Solve(), kOk);
    ASSERT_TRUE(NuvLinearProgrammingSetNumVars(&model.lp, 1));
    EXPECT_EQ(model.Solve(), kInvalidInput);
    ASSERT_TRUE(NuvLinearProgrammingSetNumVars(&model.lp, 2));
    EXPECT_EQ(model.Solve(), kOk);
}

// The matrices ------------------------------------------------------------------------------------

TEST_F(StandardForm, HasASlackColumnPerRowAndTheSlacksAsItsBasis)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 2.0F}, {2, -3.0F}}, 4.0F));
    model.Maximise({{2, -0.0F}, {1, 6.0F}});
    ASSERT_TRUE(Prepare());
    EXPECT_EQ(model.lp.numConstraints, 1U);
    EXPECT_EQ(model.lp.A.nr, 1U);
    EXPECT_EQ(model.lp.A.nc, 3U);
    EXPECT_EQ(ElementsOf(model.lp.A), (Floats{2, -3, 1}));
    EXPECT_EQ(model.lp.b.nc, 1U);
    EXPECT_EQ(ElementsOf(model.lp.b), Floats{4});
    EXPECT_EQ(model.lp.c.nc, 1U);
    EXPECT_EQ(ElementsOf(model.lp.c), (Floats{6, 0, 0}));
    EXPECT_TRUE(std::signbit(model.lp.c.data[1]));
    EXPECT_EQ(model.lp.basic.nr, 1U);
    EXPECT_EQ(ElementsOf(model.lp.basic), Uints{3});
    EXPECT_EQ(model.lp.independent.nr, 1U);
    EXPECT_EQ(ElementsOf(model.lp.independent), (Uints{1, 2}));
}

TEST_F(StandardForm, IsBuiltAnewByEachSolve)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 2.0F}, {2, 5.0F}}, 4.0F));
    model.Maximise({{1, 6.0F}});
    ASSERT_EQ(model.Solve(), kOk);
    EXPECT_EQ(model.Objective(), 12.0F);
    for (float* const element : {model.lp.A.data, model.lp.b.data, model.lp.c.data})
        *element = 99.0F;
    model.lp.basic.data[0] = 1;
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, 4.0F));
    ASSERT_EQ(model.Solve(), kOk);
    EXPECT_EQ(model.Objective(), 24.0F);
    EXPECT_EQ(ElementsOf(model.lp.A), (Floats{1, 0, 1}));
}

TEST_F(StandardForm, NamesAndIndicesMakeTheSameRow)
{
    ASSERT_TRUE(model.Rename(1, "bread"));
    ASSERT_TRUE(model.SetNamedRow(1, {{"X2", 2.0F}, {"bread", 1.0F}}, 4.0F));
    ASSERT_TRUE(Prepare());
    const Floats named = ElementsOf(model.lp.A);
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}, {2, 2.0F}}, 4.0F));
    ASSERT_TRUE(Prepare());
    EXPECT_EQ(ElementsOf(model.lp.A), named);
}

TEST_F(StandardForm, GrowsWithManyConstraints)
{
    SmallModel tall(3, allocator);
    for (NuvUint id = 1; id <= 50; ++id)
        ASSERT_TRUE(tall.SetRow(id * 17, {{1 + id % 3, 1.0F}}, 1.0F));
    ASSERT_TRUE(NuvLinearProgrammingPrepareInputs_(&tall.lp));
    EXPECT_EQ(tall.lp.numConstraints, 50U);
    for (NuvUint r = 0; r != 50; ++r)
        for (NuvUint j = 0; j != 50; ++j)
            EXPECT_EQ(NuvMatrix_NuvFloat32At(&tall.lp.A, r, 3 + j), r == j ? 1.0F : 0.0F);
    EXPECT_EQ(tall.lp.basic.data[0], 4U);
    EXPECT_EQ(tall.lp.basic.data[49], 53U);
}

// Models without one ------------------------------------------------------------------------------

TEST_F(StandardForm, IndexZeroIsInvalidInConstraintsAndInTheObjective)
{
    ASSERT_TRUE(model.SetRow(1, {{0, 1.0F}}, 1.0F));
    EXPECT_EQ(model.Solve(), kInvalidInput);
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, 1.0F));
    model.Maximise({{1, 1.0F}, {0, 1.0F}});
    EXPECT_EQ(model.Solve(), kInvalidInput);
    allocator.CheckGuards();
}

TEST_F(StandardForm, IndicesBeyondTheVariablesAreInvalidInConstraints)
{
    for (const NuvUint index : {3U, 4U, 0x80000000U, 0xFFFFFFFFU})
    {
        ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}, {index, 1.0F}}, 1.0F));
        EXPECT_EQ(model.Solve(), kInvalidInput);
    }
    ASSERT_TRUE(model.SetRow(1, {{2, 1.0F}}, 1.0F));
    EXPECT_EQ(model.Solve(), kOk);
}

TEST_F(StandardForm, ANamedVariableWhoseRecordHasAForeignIndexIsInvalid)
{
    ASSERT_TRUE(model.SetNamedRow(1, {{"X2", 1.0F}}, 1.0F));
    for (const NuvUint index : {0U, 3U, 0xFFFFFFFFU})
    {
        const_cast<NuvLinearProgrammingVariable*>(model.Find("X2"))->index = index;
        EXPECT_EQ(model.Solve(), kInvalidInput);
    }
}

TEST_F(StandardForm, AFailureKeepsTheResultsAndStopsWhereItIs)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, 4.0F));
    model.Maximise({{1, 2.0F}});
    ASSERT_EQ(model.Solve(), kOk);
    ASSERT_TRUE(model.SetRow(1, {{1, 3.0F}, {3, 1.0F}}, 5.0F));
    model.Maximise({{2, 7.0F}});
    model.lp.numConstraints = 77;
    EXPECT_EQ(model.Solve(), kInvalidInput);
    EXPECT_EQ(model.Objective(), 8.0F);
    EXPECT_EQ(model.Values(), (Floats{4, 0}));
    // The row is filled up to the index that does not exist; its right-hand side is not reached.
    EXPECT_EQ(model.lp.numConstraints, 77U);
    EXPECT_EQ(ElementsOf(model.lp.A), (Floats{3, 0, 1}));
    EXPECT_EQ(ElementsOf(model.lp.b), Floats{0});
    EXPECT_EQ(ElementsOf(model.lp.c), (Floats{0, 0, 0}));
}

TEST_F(StandardForm, AFailureInTheObjectiveComesAfterTheRows)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 3.0F}}, 5.0F));
    model.Maximise({{2, 7.0F}, {3, 1.0F}});
    EXPECT_FALSE(Prepare());
    EXPECT_EQ(model.lp.numConstraints, 1U);
    EXPECT_EQ(ElementsOf(model.lp.b), Floats{5});
    EXPECT_EQ(ElementsOf(model.lp.c), (Floats{0, 7, 0}));
}

TEST_F(StandardForm, ShapesWhoseElementCountWrapsAreInvalid)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, 1.0F));
    ASSERT_TRUE(model.SetRow(2, {{1, 1.0F}}, 1.0F));
    // 2 × (n + 2) is 2³² or a little more; 1 × ... would not be refused for its size.
    for (const NuvUint numVars :
         {0x7FFFFFFEU, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFDU, 0xFFFFFFFEU, 0xFFFFFFFFU})
    {
        model.lp.numVars = numVars;
        allocator.RefuseFrom(1);
        EXPECT_EQ(model.Solve(), kInvalidInput) << numVars;
        EXPECT_EQ(allocator.Refusals(), 0U) << "a block was asked for";
        allocator.RefuseNothing();
    }
    model.lp.numVars = 2;
    EXPECT_EQ(model.Solve(), kOk);
}

TEST_F(StandardForm, PhasesOnVariablesThatTheFormDoesNotHaveAreInvalid)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, -1.0F));
    ASSERT_TRUE(Prepare());
    for (const NuvUint numVars : {0U, 1U, 3U, 0xFFFFFFFFU})
    {
        model.lp.numVars = numVars;
        EXPECT_EQ(NuvRevisedSimplexSolvePhaseI(&model.lp), kInvalidInput);
        EXPECT_EQ(NuvRevisedSimplexSolvePhaseII(&model.lp), kInvalidInput);
    }
    model.lp.numVars = 2;
}

/// Grants what is small, refuses the rest, and notes every size.
struct SmallAllocator
{
    NuvAllocator allocator = {[](NuvAllocator* self, NuvSizeT size) -> void*
                              {
                                  static_cast<SmallAllocator*>(self->userData)->sizes.insert(size);
                                  return size <= NuvSizeT{1} << 20U
                                             ? std::malloc(static_cast<std::size_t>(size))
                                             : nullptr;
                              },
                              [](NuvAllocator*, void* memory, NuvSizeT) { std::free(memory); }, 0,
                              this};
    TestAllocator::Sizes sizes;
};

TEST(StandardFormLimits, AShapeThatOnlyTheArtificialColumnMakesWrapIsInvalidInPhaseI)
{
    // 65535 × (2 + 65535) is 2³² − 1; with the artificial column the product wraps to 65534. The
    // 17 GB of A are never reached, so that they need not be there.
    const NuvUint m = 65535;
    const NuvUint n = 2;
    SmallAllocator small;
    float unreached = 0.0F;
    NuvLinearProgramming lp;
    ASSERT_NE(NuvLinearProgrammingConstruct(&lp, n, &small.allocator), nullptr);
    lp.numConstraints = m;
    lp.A = {&small.allocator, m, n + m, &unreached};
    ASSERT_NE(NuvMatrix_NuvFloat32Resize(&lp.b, m, 1), nullptr);
    ASSERT_NE(NuvMatrix_NuvFloat32Resize(&lp.c, n + m, 1), nullptr);
    ASSERT_NE(NuvMatrix_NuvUintResize(&lp.basic, 1, m), nullptr);
    ASSERT_NE(NuvMatrix_NuvUintResize(&lp.independent, 1, n), nullptr);
    for (NuvUint i = 0; i != m; ++i)
    {
        lp.b.data[i] = -1.0F;
        lp.basic.data[i] = n + 1 + i;
    }
    for (NuvUint j = 0; j != n; ++j)
        lp.independent.data[j] = j + 1;
    EXPECT_EQ(NuvRevisedSimplexSolvePhaseI(&lp), kInvalidInput);
    EXPECT_EQ(small.sizes.count(65534 * 4), 0U) << "a block too short for its shape";
    NuvMatrix_NuvFloat32ConstructDefault(&lp.A, &small.allocator);
    NuvLinearProgrammingDestruct(&lp);
}

TEST_F(StandardForm, AHugeShapeThatFitsIsAskedForAndItsRefusalIsInvalid)
{
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, 1.0F));
    model.lp.numVars = 0xFFFFFFFEU;
    allocator.RefuseFrom(1);
    EXPECT_EQ(model.Solve(), kInvalidInput);
    EXPECT_EQ(allocator.Refusals(), 1U);
    allocator.RefuseNothing();
    model.lp.numVars = 2;
    EXPECT_EQ(model.Solve(), kOk);
}

TEST(StandardFormLimits, MoreConstraintsThan32BitsCountAreRefused)
{
    TestAllocator allocator;
    SmallModel model(1, allocator);
    ASSERT_TRUE(model.SetRow(1, {{1, 1.0F}}, 1.0F));
    NuvSizeT* const size = &model.lp.constraints.size;
    for (const NuvSizeT count : {NuvSizeT{0x100000000}, NuvSizeT{0xFFFFFFFF}, NuvSizeT{0x10000}})
    {
        *size = count;
        EXPECT_FALSE(NuvLinearProgrammingPrepareInputs_(&model.lp));
        EXPECT_EQ(model.lp.A.data, nullptr);
    }
    *size = 1;
    EXPECT_TRUE(NuvLinearProgrammingPrepareInputs_(&model.lp));
}
}  // namespace standard_form
