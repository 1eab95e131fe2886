// The interface of a batch: shapes, strides, answers that are not asked for, ranges and limits.
#include <gtest/gtest.h>

#include <cfloat>
#include <memory>
#include <vector>

#include "Nuv/Utils/NuvLinearProgrammingBatch.h"

namespace
{
/// max x + y with x ≤ side, y ≤ 2 and x + y ≤ 3, for sides 1, 2, 3, ...
struct Sides
{
    explicit Sides(std::size_t problems) : count(problems)
    {
        for (std::size_t k = 0; k != count; ++k)
            b.insert(b.end(), {static_cast<float>(k + 1), 2.0F, 3.0F});
        verdicts.assign(count, 99);
        objectives.assign(count, -1.0F);
        values.assign(2 * count, -1.0F);
        pivots.assign(count, 99);
        bases.assign(3 * count, 99);
        prices.assign(3 * count, -1.0F);
    }

    NuvLinearProgrammingBatch Batch()
    {
        NuvLinearProgrammingBatch batch = {};
        batch.numVars = 2;
        batch.numConstraints = 3;
        batch.count = count;
        batch.A = A;
        batch.b = b.data();
        batch.strideB = 3;
        batch.c = c;
        batch.verdicts = verdicts.data();
        batch.objectives = objectives.data();
        batch.values = values.data();
        batch.pivots = pivots.data();
        batch.bases = bases.data();
        batch.prices = prices.data();
        return batch;
    }

    std::size_t count;
    float A[6] = {1, 0, 0, 1, 1, 1};
    float c[2] = {2, 1};
    std::vector<float> b;
    std::vector<NuvUint> verdicts;
    std::vector<float> objectives;
    std::vector<float> values;
    std::vector<NuvUint> pivots;
    std::vector<NuvUint> bases;
    std::vector<float> prices;
};

std::unique_ptr<char[]> WorkspaceFor(const NuvLinearProgrammingBatch& batch)
{
    return std::make_unique<char[]>(NuvLinearProgrammingBatchWorkspaceSize(&batch));
}

TEST(Batch, AnswersEachProblem)
{
    Sides sides(20);
    const NuvLinearProgrammingBatch batch = sides.Batch();
    ASSERT_TRUE(NuvLinearProgrammingBatchSolve(&batch, WorkspaceFor(batch).get()));
    EXPECT_EQ(sides.verdicts, std::vector<NuvUint>(20, NUV_LINEARPROGRAMMINGRESULTTYPE_Ok));
    EXPECT_EQ(sides.objectives[0], 4.0F);
    EXPECT_EQ(sides.objectives[1], 5.0F);
    for (std::size_t k = 2; k != 20; ++k)
        EXPECT_EQ(sides.objectives[k], 6.0F);
    EXPECT_EQ(sides.values[2], 2.0F);
    EXPECT_EQ(sides.values[3], 1.0F);
    EXPECT_EQ(sides.pivots[1], 2U);
    EXPECT_EQ(std::vector<NuvUint>(sides.bases.begin() + 3, sides.bases.begin() + 6),
              (std::vector<NuvUint>{1, 4, 2}));
    EXPECT_EQ(std::vector<float>(sides.prices.begin() + 3, sides.prices.begin() + 6),
              (std::vector<float>{1, 0, 1}));
}

TEST(Batch, RangeWritesItsOwnAnswersAlone)
{
    Sides sides(40);
    const NuvLinearProgrammingBatch batch = sides.Batch();
    const auto workspace = WorkspaceFor(batch);
    ASSERT_TRUE(NuvLinearProgrammingBatchSolveRange(&batch, 3, 25, workspace.get()));
    for (std::size_t k = 0; k != 40; ++k)
    {
        const bool isIn = k >= 3 && k < 25;
        EXPECT_EQ(sides.verdicts[k], isIn ? 0U : 99U) << k;
        EXPECT_EQ(sides.values[2 * k] == -1.0F, !isIn) << k;
        EXPECT_EQ(sides.bases[3 * k + 2] == 99U, !isIn) << k;
    }
    ASSERT_TRUE(NuvLinearProgrammingBatchSolveRange(&batch, 7, 7, workspace.get()));
}

TEST(Batch, AnswersThatAreNotAskedForAreNotWritten)
{
    Sides sides(5);
    NuvLinearProgrammingBatch batch = sides.Batch();
    batch.verdicts = nullptr;
    batch.values = nullptr;
    batch.pivots = nullptr;
    batch.bases = nullptr;
    batch.prices = nullptr;
    ASSERT_TRUE(NuvLinearProgrammingBatchSolve(&batch, WorkspaceFor(batch).get()));
    EXPECT_EQ(sides.objectives, (std::vector<float>{4, 5, 6, 6, 6}));
}

TEST(Batch, MatricesOfTheirOwnGiveWhatASharedOneGives)
{
    Sides shared(30);
    Sides own(30);
    NuvLinearProgrammingBatch batch = shared.Batch();
    ASSERT_TRUE(NuvLinearProgrammingBatchSolve(&batch, WorkspaceFor(batch).get()));
    std::vector<float> A;
    std::vector<float> c;
    for (int k = 0; k != 30; ++k)
    {
        A.insert(A.end(), own.A, own.A + 6);
        c.insert(c.end(), own.c, own.c + 2);
    }
    batch = own.Batch();
    batch.A = A.data();
    batch.strideA = 6;
    batch.c = c.data();
    batch.strideC = 2;
    ASSERT_TRUE(NuvLinearProgrammingBatchSolve(&batch, WorkspaceFor(batch).get()));
    EXPECT_EQ(shared.values, own.values);
    EXPECT_EQ(shared.bases, own.bases);
    EXPECT_EQ(shared.prices, own.prices);
}

TEST(Batch, PivotLimitStopsAProblemAndNoOther)
{
    Sides sides(30);
    NuvLinearProgrammingBatch batch = sides.Batch();
    batch.pivotLimit = 1;
    ASSERT_TRUE(NuvLinearProgrammingBatchSolve(&batch, WorkspaceFor(batch).get()));
    // x alone is best where its side allows more than 3; at 3 the tie costs a second pivot.
    for (std::size_t k = 0; k != 30; ++k)
    {
        const bool isStopped = k < 3;
        EXPECT_EQ(sides.verdicts[k] == NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped, isStopped) << k;
        EXPECT_EQ(sides.pivots[k], 1U);
        EXPECT_EQ(sides.objectives[k], isStopped ? 0.0F : 6.0F);
        EXPECT_EQ(sides.values[2 * k], isStopped ? 0.0F : 3.0F);
        EXPECT_EQ(sides.bases[3 * k], isStopped ? 0U : 3U);
    }
}

TEST(Batch, VerdictsStandSideBySide)
{
    // max x with −x ≤ −1 and a · x ≤ side: an optimum, no bound, no point.
    const float A[] = {-1, 1, -1, -1, -1, 1};
    const float b[] = {-1, 3, -1, 3, -1, 0.5F};
    const float c[] = {1};
    NuvUint verdicts[3];
    float objectives[3];
    NuvUint bases[6];
    NuvLinearProgrammingBatch batch = {};
    batch.numVars = 1;
    batch.numConstraints = 2;
    batch.count = 3;
    batch.A = A;
    batch.strideA = 2;
    batch.b = b;
    batch.strideB = 2;
    batch.c = c;
    batch.verdicts = verdicts;
    batch.objectives = objectives;
    batch.bases = bases;
    ASSERT_TRUE(NuvLinearProgrammingBatchSolve(&batch, WorkspaceFor(batch).get()));
    EXPECT_EQ(verdicts[0], NUV_LINEARPROGRAMMINGRESULTTYPE_Ok);
    EXPECT_EQ(objectives[0], 3.0F);
    EXPECT_EQ(verdicts[1], NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded);
    EXPECT_EQ(objectives[1], FLT_MAX);
    EXPECT_EQ(verdicts[2], NUV_LINEARPROGRAMMINGRESULTTYPE_Infeasible);
    EXPECT_EQ(objectives[2], 0.0F);
    EXPECT_EQ(bases[4], 0U);
}

TEST(Batch, ShapeWithoutRowsOrVariablesOrTooLargeIsRefused)
{
    NuvLinearProgrammingBatch batch = {};
    batch.numVars = 1;
    EXPECT_EQ(NuvLinearProgrammingBatchWorkspaceSize(&batch), 0U);
    EXPECT_FALSE(NuvLinearProgrammingBatchSolve(&batch, nullptr));
    batch.numVars = 0;
    batch.numConstraints = 1;
    EXPECT_FALSE(NuvLinearProgrammingBatchSolve(&batch, nullptr));
    batch.numVars = 65536;
    batch.numConstraints = 65536;
    EXPECT_EQ(NuvLinearProgrammingBatchWorkspaceSize(&batch), 0U);
    EXPECT_FALSE(NuvLinearProgrammingBatchSolveRange(&batch, 0, 0, nullptr));
}
}  // namespace
