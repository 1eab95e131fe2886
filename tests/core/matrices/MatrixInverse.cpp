// The inverse by Gauss-Jordan elimination with partial pivoting: verdicts, pivot choice, what it
// leaves in the result and with the allocator.
#include "tests/core/matrices/MatrixOperations.hpp"

#include <cmath>
#include <limits>

namespace
{
using Floats = std::vector<float>;

class MatrixInverse : public testing::Test
{
protected:
    NuvBool Invert(Held<FloatMatrix>* x, Held<FloatMatrix>* result)
    {
        return NuvMatrix_NuvFloat32Inverse(x->get(), result->get());
    }

    TestAllocator allocator;
};

// Edge cases --------------------------------------------------------------------------------------

TEST_F(MatrixInverse, TheIdentityIsItsOwnInverse)
{
    Held<FloatMatrix> x(allocator, 3, 3, {1, 0, 0, 0, 1, 0, 0, 0, 1});
    Held<FloatMatrix> result(allocator);
    EXPECT_EQ(Invert(&x, &result), NUV_TRUE);
    EXPECT_EQ(NuvMatrix_NuvFloat32Equal(x.get(), result.get()), NUV_TRUE);
}

TEST_F(MatrixInverse, APermutationNeedsTheRowExchange)
{
    Held<FloatMatrix> x(allocator, 2, 2, {0, 1, 1, 0});
    Held<FloatMatrix> result(allocator);
    EXPECT_EQ(Invert(&x, &result), NUV_TRUE);
    EXPECT_EQ(result.Elements(), (Floats{0, 1, 1, 0}));
}

TEST_F(MatrixInverse, AColumnThatIsZeroFromItsPivotRowDownMakesTheMatrixSingular)
{
    Held<FloatMatrix> x(allocator, 3, 3, {1, 2, 3, 2, 4, 7, 3, 6, 8});
    Held<FloatMatrix> result(allocator);
    EXPECT_EQ(Invert(&x, &result), NUV_FALSE);
    EXPECT_TRUE(result.HasShape(3, 3));
}

TEST_F(MatrixInverse, ASingularMatrixLeavesThePartiallyReducedIdentity)
{
    Held<FloatMatrix> x(allocator, 2, 2, {2, 4, 1, 2});
    Held<FloatMatrix> result(allocator);
    EXPECT_EQ(Invert(&x, &result), NUV_FALSE);
    EXPECT_EQ(result.Elements(), (Floats{0.5F, 0, -0.5F, 1}));
    EXPECT_EQ(allocator.LiveBlocks(), 2U);
}

TEST_F(MatrixInverse, ATinyPivotIsAccepted)
{
    Held<FloatMatrix> x(allocator, 1, 1, {0});
    x.matrix.data[0] = 1e-30F;
    Held<FloatMatrix> result(allocator);
    EXPECT_EQ(Invert(&x, &result), NUV_TRUE);
    EXPECT_EQ(result.matrix.data[0], 1.0F / 1e-30F);
    x.matrix.data[0] = std::numeric_limits<float>::denorm_min();
    EXPECT_EQ(Invert(&x, &result), NUV_TRUE);
    EXPECT_TRUE(std::isinf(result.matrix.data[0]));
}

TEST_F(MatrixInverse, BothZerosAreSingular)
{
    for (const float zero : {0.0F, -0.0F})
    {
        Held<FloatMatrix> x(allocator, 1, 1, {0});
        x.matrix.data[0] = zero;
        Held<FloatMatrix> result(allocator);
        EXPECT_EQ(Invert(&x, &result), NUV_FALSE);
        EXPECT_EQ(result.Elements(), (Floats{1}));
    }
}

TEST_F(MatrixInverse, AmongEqualMagnitudesOfOppositeSignTheUpperRowIsThePivot)
{
    // Singular after the first column, so that the result still shows which row was moved up.
    Held<FloatMatrix> x(allocator, 3, 3, {0, 0, 0, -2, 0, 0, 2, 0, 0});
    Held<FloatMatrix> result(allocator);
    EXPECT_EQ(Invert(&x, &result), NUV_FALSE);
    EXPECT_EQ(result.Elements(), (Floats{0, -0.5F, 0, 1, 0, 0, 0, 1, 1}));
}

TEST_F(MatrixInverse, AmongEqualMagnitudesTheDiagonalIsThePivot)
{
    Held<FloatMatrix> x(allocator, 2, 2, {1, 0, -1, 0});
    Held<FloatMatrix> result(allocator);
    EXPECT_EQ(Invert(&x, &result), NUV_FALSE);
    EXPECT_EQ(result.Elements(), (Floats{1, 0, 1, 1}));
}

TEST_F(MatrixInverse, InPlaceReplacesTheMatrix)
{
    Held<FloatMatrix> x(allocator, 2, 2, {2, 1, 1, 1});
    EXPECT_EQ(Invert(&x, &x), NUV_TRUE);
    EXPECT_EQ(x.Elements(), (Floats{1, -1, -1, 2}));
    EXPECT_EQ(allocator.LiveBlocks(), 1U);
}

TEST_F(MatrixInverse, AMatrixThatIsNotSquareIsRefusedAndItsCopyStaysBehind)
{
    allocator.AcceptLeftBlocks();
    Held<FloatMatrix> x(allocator, 2, 3, {1, 2, 3, 4, 5, 6});
    Held<FloatMatrix> result(allocator, 1, 1, {9});
    const TestAllocator::Sizes before = allocator.LiveSizes();
    EXPECT_EQ(Invert(&x, &result), NUV_FALSE);
    EXPECT_TRUE(result.HasShape(1, 1));
    EXPECT_EQ(result.Elements(), (Floats{9}));
    TestAllocator::Sizes after = before;
    after.insert(24);
    EXPECT_EQ(allocator.LiveSizes(), after);
}

// Verdicts and storage ----------------------------------------------------------------------------

TEST_F(MatrixInverse, AnEmptyMatrixIsRefusedWithoutABlock)
{
    Held<FloatMatrix> x(allocator);
    Held<FloatMatrix> result(allocator, 1, 1, {9});
    EXPECT_EQ(Invert(&x, &result), NUV_FALSE);
    EXPECT_EQ(result.Elements(), (Floats{9}));
    EXPECT_EQ(allocator.Requests(), 1U);
}

TEST_F(MatrixInverse, TakesOneBlockAndGivesItBack)
{
    Held<FloatMatrix> x(allocator, 2, 2, {2, 0, 0, 4});
    Held<FloatMatrix> result(allocator, 2, 2, {0, 0, 0, 0});
    EXPECT_EQ(Invert(&x, &result), NUV_TRUE);
    EXPECT_EQ(result.Elements(), (Floats{0.5F, 0, 0, 0.25F}));
    EXPECT_EQ(x.Elements(), (Floats{2, 0, 0, 4}));
    EXPECT_EQ(allocator.Requests(), 3U);
    EXPECT_EQ(allocator.LiveBlocks(), 2U);
}

TEST_F(MatrixInverse, ThePivotRowIsDividedAndNotMultipliedByAReciprocal)
{
    // 5 / 3 and 5 · fl(1 / 3) differ in the last bit.
    Held<FloatMatrix> x(allocator, 2, 2, {3, 5, 0, 1});
    Held<FloatMatrix> result(allocator);
    EXPECT_EQ(Invert(&x, &result), NUV_TRUE);
    EXPECT_NE(5.0F / 3.0F, 5.0F * (1.0F / 3.0F));
    EXPECT_EQ(result.matrix.data[1], -(5.0F / 3.0F));
}

TEST_F(MatrixInverse, ANaNIsNotChosenOverAnEarlierZero)
{
    Held<FloatMatrix> x(allocator, 2, 2, {0, 1, 0, 1});
    x.matrix.data[2] = std::numeric_limits<float>::quiet_NaN();
    Held<FloatMatrix> result(allocator);
    EXPECT_EQ(Invert(&x, &result), NUV_FALSE);
    EXPECT_EQ(result.Elements(), (Floats{1, 0, 0, 1}));
}

TEST_F(MatrixInverse, ANaNOnTheDiagonalStaysThePivotAndTheEliminationGoesOn)
{
    Held<FloatMatrix> x(allocator, 2, 2, {0, 0, 5, 1});
    x.matrix.data[0] = std::numeric_limits<float>::quiet_NaN();
    Held<FloatMatrix> result(allocator);
    EXPECT_EQ(Invert(&x, &result), NUV_TRUE);
    EXPECT_TRUE(std::isnan(result.matrix.data[0]));
}
}  // namespace
