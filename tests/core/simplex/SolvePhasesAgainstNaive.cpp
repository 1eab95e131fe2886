// The two phases by themselves, compared with the naive evaluation bit for bit: from any labels,
// and on standard forms that no preparation would make.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/TestAllocator.hpp"

using namespace reference;

namespace solve_phases
{
// The phases have no monitor of their own, so that a model on which the yardstick is not done by
// then is passed over.
constexpr std::size_t kPivotLimit = 200;

// A phase that does not end where it should runs out of memory instead.
constexpr std::size_t kRequestLimit = 20000;

using Phase = NuvLinearProgrammingResultType (*)(NuvLinearProgramming*);

/// Another basis: any m of the columns in any order.
void ShuffleLabels(StandardForm* form, Random* random)
{
    std::vector<std::uint32_t> labels = form->basic;
    labels.insert(labels.end(), form->independent.begin(), form->independent.end());
    for (std::uint32_t i = static_cast<std::uint32_t>(labels.size()) - 1; i > 0; --i)
        std::swap(labels[i], labels[random->Below(i + 1)]);
    const auto middle = labels.begin() + static_cast<std::ptrdiff_t>(form->basic.size());
    form->basic.assign(labels.begin(), middle);
    form->independent.assign(middle, labels.end());
}

/// Labels that are no basis: some of them twice, others nowhere.
void RepeatLabels(StandardForm* form, Random* random)
{
    const auto columns = static_cast<std::uint32_t>(form->A.columns);
    for (std::vector<std::uint32_t>* const labels : {&form->basic, &form->independent})
        for (std::uint32_t& label : *labels)
            if (random->Chance(30))
                label = 1 + random->Below(columns);
}

/// Slack columns that are not those of an identity, and slacks that cost something.
void SpoilSlacks(StandardForm* form, Random* random)
{
    const std::size_t n = form->independent.size();
    for (std::size_t i = 0; i < form->A.rows; ++i)
        for (std::size_t j = n; j < form->A.columns; ++j)
            if (random->Chance(20))
                form->A.at(i, j) = random->Symmetric(2.0F);
    for (std::size_t j = n; j < form->c.rows; ++j)
        if (random->Chance(20))
            form->c.at(j, 0) = random->Symmetric(2.0F);
}

StandardForm MakeForm(Family family, Random* random)
{
    const std::size_t rows = 1 + random->Below(12);
    const std::size_t columns = 1 + random->Below(12);
    return MakeStandardForm(MakeModel(family, rows, columns, random->Next()));
}

/// Runs one phase on both sides.
void CompareFrom(const StandardForm& form, Phase phase)
{
    const bool isPhaseI = phase == NuvRevisedSimplexSolvePhaseI;
    StandardForm after = form;
    Solution expected;
    expected.values.assign(form.independent.size(), 0.0F);
    if (isPhaseI)
        SolvePhaseI(&after, &expected, kPivotLimit);
    else
        SolvePhaseII(form, &expected, kPivotLimit);
    if (expected.status == Status::Stopped)
        return;
    TestAllocator allocator;
    allocator.AcceptLeftBlocks();
    Problem empty;
    empty.columns = form.independent.size();
    empty.c.assign(empty.columns, 0.0F);
    CoreModel model(empty, allocator);
    EnterStandardForm(&model.lp, form);
    allocator.RefuseFrom(kRequestLimit);
    EXPECT_EQ(DifferenceOfResults(expected, model.Read(phase(&model.lp))), "");
    EXPECT_TRUE(std::equal(after.basic.begin(), after.basic.end(), model.lp.basic.data));
    EXPECT_TRUE(
        std::equal(after.independent.begin(), after.independent.end(), model.lp.independent.data));
    EXPECT_EQ(Difference(form.A, model.lp.A), "");
}

class SolvePhasesAgainstNaive : public testing::TestWithParam<Family>
{
protected:
    /// Both phases on 300 forms of the family, each changed by `change`.
    void Compare(void (*change)(StandardForm*, Random*))
    {
        Random random(0x9A5E + static_cast<std::uint64_t>(GetParam()));
        for (int i = 0; i < ShareOf(300) && !HasFailure(); ++i)
        {
            SCOPED_TRACE(testing::Message() << "form " << i);
            StandardForm form = MakeForm(GetParam(), &random);
            change(&form, &random);
            CompareFrom(form, NuvRevisedSimplexSolvePhaseI);
            CompareFrom(form, NuvRevisedSimplexSolvePhaseII);
        }
    }
};

TEST_P(SolvePhasesAgainstNaive, FromTheSlackBasis)
{
    Compare([](StandardForm*, Random*) {});
}

TEST_P(SolvePhasesAgainstNaive, FromAnyBasis)
{
    Compare(ShuffleLabels);
}

TEST_P(SolvePhasesAgainstNaive, FromLabelsThatAreNoBasis)
{
    Compare(RepeatLabels);
}

TEST_P(SolvePhasesAgainstNaive, WithSlackColumnsOfAnyKind)
{
    Compare(SpoilSlacks);
}

TEST_P(SolvePhasesAgainstNaive, WithSlackColumnsOfAnyKindFromAnyBasis)
{
    Compare(
        [](StandardForm* form, Random* random)
        {
            SpoilSlacks(form, random);
            ShuffleLabels(form, random);
        });
}

/// Phase I after Phase I, from the labels that it handed over itself.
TEST_P(SolvePhasesAgainstNaive, FromTheLabelsThatPhaseIHandedOver)
{
    Compare(
        [](StandardForm* form, Random*)
        {
            Solution solution;
            SolvePhaseI(form, &solution, kPivotLimit);
        });
}

// The elimination ends at a zero column; the columns of the identity behind it stay as they are.
TEST(SolvePhasesAgainstNaiveLarge, FromASingularBasisOfManyRowsWhoseLastColumnsHaveCosts)
{
    Problem problem = {
        140, 3, std::vector<float>(420, 0.0F), std::vector<float>(140, 3.0F), {2, 3, 4}};
    for (const std::size_t row : {5U, 40U, 133U, 139U})
        for (const std::size_t column : {1U, 2U})
            problem.A[3 * row + column] = static_cast<float>(row + column);
    StandardForm form = MakeStandardForm(problem);
    std::swap(form.basic[20], form.independent[0]);
    std::swap(form.basic[133], form.independent[1]);
    CompareFrom(form, NuvRevisedSimplexSolvePhaseI);
    CompareFrom(form, NuvRevisedSimplexSolvePhaseII);
}

// Every column of the inverse is stored, or the first ones are, and each pivot changes the columns
// of one tile alone.
TEST(SolvePhasesAgainstNaiveLarge, FromADiagonalBasis)
{
    const std::size_t m = 144;
    Problem problem = {m, m, std::vector<float>(m * m, 0.0F), std::vector<float>(m), {}};
    for (std::size_t i = 0; i != m; ++i)
    {
        problem.A[i * m + i] = 3.0F;
        problem.b[i] = static_cast<float>(i + 1);
        problem.c.push_back(i % 18 == 5 ? -2.0F : 3.0F);
    }
    for (const std::size_t structural : {m, std::size_t{20}})
    {
        StandardForm form = MakeStandardForm(problem);
        std::swap_ranges(form.basic.begin(),
                         form.basic.begin() + static_cast<std::ptrdiff_t>(structural),
                         form.independent.begin());
        CompareFrom(form, NuvRevisedSimplexSolvePhaseII);
    }
}

// Where a pivot d is so large that d − 1 is d, its row of the inverse becomes zero, and with it the
// value of the variable that enters.
TEST(SolvePhasesAgainstNaiveLarge, WithPivotsWhoseRowsVanish)
{
    const std::size_t m = 90;
    Problem problem = {m, m, std::vector<float>(m * m, 0.0F), std::vector<float>(m, 5.0F), {}};
    for (std::size_t i = 0; i != m; ++i)
    {
        problem.A[i * m + i] = i % 7 == 3 ? 0x1p26F : 2.0F;
        problem.c.push_back(static_cast<float>(1 + i % 11));
    }
    CompareFrom(MakeStandardForm(problem), NuvRevisedSimplexSolvePhaseII);
}

std::string NameOfFamily(const testing::TestParamInfo<Family>& family)
{
    return NameOf(family.param);
}

INSTANTIATE_TEST_SUITE_P(Families, SolvePhasesAgainstNaive, testing::ValuesIn(Families()),
                         NameOfFamily);
}  // namespace solve_phases
