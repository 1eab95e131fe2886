// Edits without memory: each gives the promised answer, goes in whole or empty or not at all, and
// leaves a model that can be edited and solved.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/SmallModel.hpp"
#include "tests/support/RefusedAllocations.hpp"

namespace editing_refused
{
using Indexed = IndexedCoefficients::Terms;

constexpr auto kByName = NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME;
constexpr auto kByIndex = NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_INDEX;
constexpr auto kOk = NUV_LINEARPROGRAMMINGRESULTTYPE_Ok;

const std::string kLongName = "a name that is much too long for anything but a block of its own";

/// Makes a model of two variables and one constraint of each kind while nothing is refused.
std::unique_ptr<SmallModel> Prepared(TestAllocator* allocator)
{
    const auto spared = allocator->Spare();
    auto model = std::make_unique<SmallModel>(2, *allocator);
    EXPECT_TRUE(model->SetRow(1, {{1, 2.0F}}, 3.0F));
    EXPECT_TRUE(model->SetNamedRow(2, {{"X2", 2.0F}}, 4.0F));
    model->Maximise({{1, 1.0F}, {2, 1.0F}});
    return model;
}

/// Expects that the model is whole: it can be given every part anew, and then solves.
void ExpectUsable(SmallModel* model, TestAllocator* allocator)
{
    allocator->AcceptLeftBlocks();
    allocator->RefuseNothing();
    ASSERT_TRUE(NuvLinearProgrammingSetNumVars(&model->lp, 2));
    ASSERT_TRUE(model->SetRow(1, {{1, 2.0F}}, 3.0F));
    ASSERT_TRUE(model->SetNamedRow(2, {{"X2", 2.0F}}, 4.0F));
    (void)NuvLinearProgrammingRemoveConstraint(&model->lp, 3);
    model->Maximise({{1, 1.0F}, {2, 1.0F}});
    EXPECT_EQ(model->Solve(), kOk);
    EXPECT_EQ(model->Values(), (std::vector<float>{1.5F, 2}));
}

/// Sets constraint 3 to 1, or replaces constraint 1 or 2, while requests are refused.
struct RefusedRow
{
    NuvUint id;
    bool isNamed;
};

void SetRowDespiteRefusals(const RefusedRow& row, TestAllocator& allocator)
{
    const auto model = Prepared(&allocator);
    const NuvLinearProgrammingConstraint* const former = model->FindRow(row.id);
    const float formerRhs = former ? former->rhs : 0.0F;
    const bool isSet = row.isNamed
                           ? model->SetNamedRow(row.id, {{kLongName, 1.0F}, {"X1", 1.0F}}, 9)
                           : model->SetRow(row.id, {{1, 1.0F}, {2, 1.0F}}, 9);
    EXPECT_TRUE(isSet || (!former && allocator.Refusals() != 0));
    EXPECT_EQ(model->NumRows(), isSet && !former ? 3U : 2U);
    if (isSet)
    {
        const NuvLinearProgrammingConstraint* const stored = model->FindRow(row.id);
        ASSERT_NE(stored, nullptr);
        EXPECT_EQ(stored->type, row.isNamed ? kByName : kByIndex);
        const std::size_t terms = row.isNamed
                                      ? TermsOf(stored->u.variableCoefficientsByName).size()
                                      : TermsOf(stored->u.variableCoefficientsByIndex).size();
        // All of it, or an empty row that keeps the old right-hand side.
        EXPECT_TRUE((terms == 2 && stored->rhs == 9.0F) ||
                    (terms == 0 && stored->rhs == formerRhs && allocator.Refusals() != 0));
    }
    ExpectUsable(model.get(), &allocator);
}

TEST(EditingRefused, AConstraintGoesInWholeOrEmptyOrNotAtAll)
{
    for (const NuvUint id : {1U, 2U, 3U})
        for (const bool isNamed : {false, true})
        {
            SCOPED_TRACE(testing::Message() << "row " << id << (isNamed ? " by name" : ""));
            ForEachRefusedAllocation(
                [&](TestAllocator& allocator) {
                    SetRowDespiteRefusals({id, isNamed}, allocator);
                });
        }
}

TEST(EditingRefused, ARecordGoesInWholeOrEmptyOrNotAtAll)
{
    for (const NuvUint from : {1U, 2U})
        for (const NuvUint to : {1U, 2U, 3U})
            ForEachRefusedAllocation(
                Refusal::OnlyOne,
                [&](TestAllocator& allocator)
                {
                    const auto model = Prepared(&allocator);
                    const bool isSet = NuvLinearProgrammingSetConstraint(
                                           &model->lp, to, model->FindRow(from)) == NUV_TRUE;
                    EXPECT_TRUE(isSet || (to == 3 && allocator.Refusals() != 0));
                    EXPECT_EQ(model->NumRows(), to == 3 && isSet ? 3U : 2U);
                    ExpectUsable(model.get(), &allocator);
                });
}

TEST(EditingRefused, ANameIsGivenOrTheModelStaysUsable)
{
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            const auto model = Prepared(&allocator);
            const bool isRenamed = model->Rename(2, kLongName);
            EXPECT_TRUE(isRenamed || allocator.Refusals() != 0);
            const NuvLinearProgrammingVariable* const renamed = model->Find(kLongName);
            EXPECT_TRUE(renamed != nullptr || allocator.Refusals() != 0);
            EXPECT_TRUE(!renamed || renamed->index == 2);
            EXPECT_EQ(model->Find("X1")->index, 1U);
            EXPECT_EQ(model->Pairs().size(), 2U);
            ExpectUsable(model.get(), &allocator);
        });
}

TEST(EditingRefused, ANameThatFindsNoRoomChangesNothing)
{
    TestAllocator allocator;
    const auto model = Prepared(&allocator);
    allocator.RefuseOnly(1);
    EXPECT_FALSE(model->Rename(2, kLongName));
    EXPECT_EQ(model->Names(), (std::vector<std::string>{"X1", "X2"}));
    ASSERT_NE(model->Find("X2"), nullptr);
    EXPECT_EQ(model->Find("X2")->index, 2U);
    EXPECT_EQ(model->Find(""), nullptr);
}

TEST(EditingRefused, AnObjectiveLosesTermsAtMost)
{
    for (const bool isNamed : {false, true})
        ForEachRefusedAllocation(
            [&](TestAllocator& allocator)
            {
                const auto model = Prepared(&allocator);
                const Indexed whole = {{2, 5.0F}, {1, 6.0F}, {2, 7.0F}};
                if (isNamed)
                    EXPECT_TRUE(model->MaximiseNamed({{"X2", 5.0F}, {"X1", 6.0F}, {"X2", 7.0F}}));
                else
                    model->Maximise(whole);
                const Indexed found = TermsOf(model->lp.objective);
                EXPECT_TRUE(found == whole || allocator.Refusals() != 0);
                for (const auto& term : found)
                    EXPECT_NE(std::find(whole.begin(), whole.end(), term), whole.end());
                ExpectUsable(model.get(), &allocator);
            });
}

TEST(EditingRefused, AnObjectOfNoVariablesIsMadeOrHoldsNothing)
{
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            NuvLinearProgramming lp;
            const bool isMade = NuvLinearProgrammingConstructDefault(&lp, allocator) == &lp;
            EXPECT_EQ(isMade, allocator.Refusals() == 0);
            if (isMade)
                NuvLinearProgrammingDestruct(&lp);
            EXPECT_EQ(allocator.LiveBlocks(), 0U);
        });
}

/// Either the elements or no storage, in the shape of the source.
void ExpectWholeOrUnstored(const NuvMatrix_NuvFloat32& expected, const NuvMatrix_NuvFloat32& found)
{
    EXPECT_EQ(found.nr, expected.nr);
    EXPECT_EQ(found.nc, expected.nc);
    if (found.data)
    {
        EXPECT_TRUE(NuvMatrix_NuvFloat32Equal(&found, &expected));
    }
}

TEST(EditingRefused, MatricesGoInWholeOrWithoutStorageAndNothingOfThemIsLost)
{
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            const auto model = Prepared(&allocator);
            NuvMatrix_NuvFloat32 matrix;
            {
                const auto spared = allocator.Spare();
                ASSERT_TRUE(NuvMatrix_NuvFloat32ConstructIdentity(&matrix, 3, allocator));
            }
            EXPECT_TRUE(NuvLinearProgrammingSetInput(&model->lp, &matrix, &matrix, &matrix));
            std::size_t stored = 0;
            for (const auto* const x : {&model->lp.A, &model->lp.b, &model->lp.c})
            {
                ExpectWholeOrUnstored(matrix, *x);
                stored += x->data ? 1 : 0;
            }
            EXPECT_EQ(stored, 3 - allocator.Refusals());
            allocator.RefuseNothing();
            EXPECT_TRUE(NuvLinearProgrammingSetInput(&model->lp, &matrix, &matrix, &matrix));
            for (const auto* const x : {&model->lp.A, &model->lp.b, &model->lp.c})
                EXPECT_TRUE(NuvMatrix_NuvFloat32Equal(x, &matrix));
            NuvMatrix_NuvFloat32Destruct(&matrix);
            ExpectUsable(model.get(), &allocator);
        });
}

TEST(EditingRefused, RemovalAsksForNothing)
{
    TestAllocator allocator;
    const auto model = Prepared(&allocator);
    allocator.RefuseFrom(1);
    EXPECT_TRUE(NuvLinearProgrammingRemoveConstraint(&model->lp, 1));
    EXPECT_TRUE(NuvLinearProgrammingRemoveConstraint(&model->lp, 2));
    EXPECT_EQ(allocator.Refusals(), 0U);
}
}  // namespace editing_refused
