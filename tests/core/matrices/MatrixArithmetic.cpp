// Sums, products and transposes of matrices, for both element types: shapes, aliases, and results
// that can be told by hand. The bits of float products are compared in MatrixAgainstNaive.cpp.
#include "tests/core/matrices/MatrixOperations.hpp"

#include <cmath>
#include <cstdint>

template <class Operations>
class MatrixArithmetic : public ::testing::Test
{
protected:
    TestAllocator blocks;
    NuvAllocator* const allocator = blocks;
};
TYPED_TEST_SUITE(MatrixArithmetic, MatrixTypes);

// Edge cases --------------------------------------------------------------------------------------

TYPED_TEST(MatrixArithmetic, MultiplyShapesAnEmptyResult)
{
    Held<TypeParam> x(this->allocator, 2, 3, {1, 2, 3, 4, 5, 6});
    Held<TypeParam> y(this->allocator, 3, 1, {1, 10, 100});
    Held<TypeParam> result(this->allocator);
    EXPECT_EQ(TypeParam::Multiply(x.get(), y.get(), result.get()), NUV_TRUE);
    EXPECT_TRUE(result.HasShape(2, 1));
    EXPECT_EQ(result.Elements(), ElementsOf<typename TypeParam::Element>({321, 654}));
}

TYPED_TEST(MatrixArithmetic, MultiplyByAMatrixWithoutColumnsAsksForNothing)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    typename TypeParam::Matrix narrow;
    ASSERT_EQ(TypeParam::ConstructCopyRange(&narrow, x.get(), 0, 0, 2, 0, nullptr), &narrow);
    Held<TypeParam> result(this->allocator, 1, 1, {9});
    EXPECT_EQ(TypeParam::Multiply(x.get(), &narrow, result.get()), NUV_TRUE);
    // No matrix can be given a shape of rows without columns.
    EXPECT_EQ(result.Elements(), ElementsOf<typename TypeParam::Element>({9}));
    TypeParam::Destruct(&narrow);
}

TYPED_TEST(MatrixArithmetic, MultiplyOfShapesThatDoNotMatchLeavesTheResultAsItWas)
{
    Held<TypeParam> x(this->allocator, 2, 3, {1, 2, 3, 4, 5, 6});
    Held<TypeParam> result(this->allocator, 1, 2, {8, 9});
    EXPECT_EQ(TypeParam::Multiply(x.get(), x.get(), result.get()), NUV_FALSE);
    EXPECT_TRUE(result.HasShape(1, 2));
    EXPECT_EQ(result.Elements(), ElementsOf<typename TypeParam::Element>({8, 9}));
}

TYPED_TEST(MatrixArithmetic, AddOfEmptyMatricesLeavesTheResultEmpty)
{
    Held<TypeParam> x(this->allocator);
    Held<TypeParam> result(this->allocator, 1, 2, {8, 9});
    EXPECT_EQ(TypeParam::Add(x.get(), x.get(), result.get()), NUV_TRUE);
    EXPECT_TRUE(result.HasShape(0, 0));
    EXPECT_EQ(this->blocks.LiveBlocks(), 0U);
}

TYPED_TEST(MatrixArithmetic, TransposeOfARowIsAColumnInTheSameOrder)
{
    Held<TypeParam> x(this->allocator, 1, 4, {1, 2, 3, 4});
    Held<TypeParam> result(this->allocator);
    EXPECT_EQ(TypeParam::Transpose(x.get(), result.get()), NUV_TRUE);
    EXPECT_TRUE(result.HasShape(4, 1));
    EXPECT_EQ(result.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 3, 4}));
}

TEST(FloatMatrixArithmetic, SubtractInPlaceReplacesItsFirstOperand)
{
    TestAllocator allocator;
    Held<FloatMatrix> x(allocator, 1, 3, {5, 7, 9});
    Held<FloatMatrix> y(allocator, 1, 3, {1, 2, 3});
    EXPECT_EQ(NuvMatrix_NuvFloat32Subtract(x.get(), y.get(), x.get()), NUV_TRUE);
    EXPECT_EQ(x.Elements(), (std::vector<float>{4, 5, 6}));
    EXPECT_EQ(NuvMatrix_NuvFloat32Subtract(x.get(), y.get(), y.get()), NUV_TRUE);
    EXPECT_EQ(y.Elements(), (std::vector<float>{3, 3, 3}));
}

TEST(FloatMatrixArithmetic, MultiplyScalarByMinusOneFlipsTheSignOfZeros)
{
    TestAllocator allocator;
    Held<FloatMatrix> x(allocator, 1, 2, {0, 3});
    Held<FloatMatrix> result(allocator);
    EXPECT_EQ(NuvMatrix_NuvFloat32MultiplyScalar(x.get(), -1.0F, result.get()), NUV_TRUE);
    EXPECT_TRUE(std::signbit(result.matrix.data[0]));
    EXPECT_EQ(result.matrix.data[1], -3.0F);
}

// Sums and multiples ------------------------------------------------------------------------------

TYPED_TEST(MatrixArithmetic, AddAddsElementByElementAlsoInPlace)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> y(this->allocator, 2, 2, {10, 20, 30, 40});
    Held<TypeParam> result(this->allocator);
    EXPECT_EQ(TypeParam::Add(x.get(), y.get(), result.get()), NUV_TRUE);
    EXPECT_EQ(result.Elements(), ElementsOf<typename TypeParam::Element>({11, 22, 33, 44}));
    EXPECT_EQ(TypeParam::Add(x.get(), y.get(), y.get()), NUV_TRUE);
    EXPECT_EQ(y.Elements(), ElementsOf<typename TypeParam::Element>({11, 22, 33, 44}));
    EXPECT_EQ(TypeParam::Add(x.get(), x.get(), x.get()), NUV_TRUE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({2, 4, 6, 8}));
}

TYPED_TEST(MatrixArithmetic, AddOfDifferentShapesLeavesTheResultAsItWas)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> y(this->allocator, 1, 4, {1, 2, 3, 4});
    Held<TypeParam> result(this->allocator, 1, 1, {9});
    Held<TypeParam> wider(this->allocator, 2, 3, {1, 2, 3, 4, 5, 6});
    for (const auto* other : {y.get(), wider.get()})
        EXPECT_EQ(TypeParam::Add(x.get(), other, result.get()), NUV_FALSE);
    EXPECT_EQ(result.Elements(), ElementsOf<typename TypeParam::Element>({9}));
}

TEST(FloatMatrixArithmetic, SubtractOfDifferentShapesLeavesTheResultAsItWas)
{
    TestAllocator allocator;
    Held<FloatMatrix> x(allocator, 2, 2, {1, 2, 3, 4});
    Held<FloatMatrix> y(allocator, 4, 1, {1, 2, 3, 4});
    Held<FloatMatrix> result(allocator, 1, 1, {9});
    Held<FloatMatrix> wider(allocator, 2, 3, {1, 2, 3, 4, 5, 6});
    for (const auto* other : {y.get(), wider.get()})
        EXPECT_EQ(NuvMatrix_NuvFloat32Subtract(x.get(), other, result.get()), NUV_FALSE);
    EXPECT_EQ(result.Elements(), (std::vector<float>{9}));
}

TYPED_TEST(MatrixArithmetic, MultiplyScalarMultipliesEachElementAlsoInPlace)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> result(this->allocator);
    EXPECT_EQ(TypeParam::MultiplyScalar(x.get(), typename TypeParam::Element(3), result.get()),
              NUV_TRUE);
    EXPECT_TRUE(result.HasShape(2, 2));
    EXPECT_EQ(result.Elements(), ElementsOf<typename TypeParam::Element>({3, 6, 9, 12}));
    EXPECT_EQ(TypeParam::MultiplyScalar(x.get(), typename TypeParam::Element(2), x.get()),
              NUV_TRUE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({2, 4, 6, 8}));
}

TYPED_TEST(MatrixArithmetic, OperationsOnEmptyMatricesAnswerTrueAndEmptyTheResult)
{
    Held<TypeParam> x(this->allocator);
    Held<TypeParam> product(this->allocator, 1, 1, {9});
    EXPECT_EQ(TypeParam::Multiply(x.get(), x.get(), product.get()), NUV_TRUE);
    EXPECT_TRUE(product.HasShape(0, 0));
    Held<TypeParam> multiple(this->allocator, 1, 1, {9});
    EXPECT_EQ(TypeParam::MultiplyScalar(x.get(), typename TypeParam::Element(2), multiple.get()),
              NUV_TRUE);
    EXPECT_TRUE(multiple.HasShape(0, 0));
    Held<TypeParam> transposed(this->allocator, 1, 1, {9});
    EXPECT_EQ(TypeParam::Transpose(x.get(), transposed.get()), NUV_TRUE);
    EXPECT_TRUE(transposed.HasShape(0, 0));
    EXPECT_EQ(this->blocks.LiveBlocks(), 0U);
}

TYPED_TEST(MatrixArithmetic, AResultOfTheRightShapeKeepsItsBlock)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> result(this->allocator, 2, 2, {9, 9, 9, 9});
    const auto* const block = result.matrix.data;
    EXPECT_EQ(TypeParam::Add(x.get(), x.get(), result.get()), NUV_TRUE);
    EXPECT_EQ(TypeParam::Multiply(x.get(), x.get(), result.get()), NUV_TRUE);
    EXPECT_EQ(result.Elements(), ElementsOf<typename TypeParam::Element>({7, 10, 15, 22}));
    EXPECT_EQ(TypeParam::MultiplyScalar(x.get(), typename TypeParam::Element(2), result.get()),
              NUV_TRUE);
    EXPECT_EQ(TypeParam::Transpose(x.get(), result.get()), NUV_TRUE);
    EXPECT_EQ(result.matrix.data, block);
    EXPECT_EQ(this->blocks.Requests(), 2U);
}

// Products ----------------------------------------------------------------------------------------

TYPED_TEST(MatrixArithmetic, MultiplyOverwritesWhatTheResultHeld)
{
    Held<TypeParam> x(this->allocator, 1, 2, {1, 1});
    Held<TypeParam> y(this->allocator, 2, 1, {2, 3});
    Held<TypeParam> result(this->allocator, 1, 1, {100});
    EXPECT_EQ(TypeParam::Multiply(x.get(), y.get(), result.get()), NUV_TRUE);
    EXPECT_EQ(result.Elements(), ElementsOf<typename TypeParam::Element>({5}));
}

TYPED_TEST(MatrixArithmetic, MultiplyOfOneMatrixWithItselfIsItsSquare)
{
    Held<TypeParam> x(this->allocator, 2, 2, {0, 1, 2, 3});
    Held<TypeParam> result(this->allocator);
    EXPECT_EQ(TypeParam::Multiply(x.get(), x.get(), result.get()), NUV_TRUE);
    EXPECT_EQ(result.Elements(), ElementsOf<typename TypeParam::Element>({2, 3, 6, 11}));
}

TYPED_TEST(MatrixArithmetic, ProductsOverNoColumnsAreZero)
{
    typename TypeParam::Matrix tall = {this->allocator, 2, 0, nullptr};
    typename TypeParam::Matrix wide = {this->allocator, 0, 3, nullptr};
    Held<TypeParam> result(this->allocator, 2, 3, {9, 9, 9, 9, 9, 9});
    EXPECT_EQ(TypeParam::Multiply(&tall, &wide, result.get()), NUV_TRUE);
    EXPECT_EQ(result.Elements(), ElementsOf<typename TypeParam::Element>({0, 0, 0, 0, 0, 0}));
}

TYPED_TEST(MatrixArithmetic, AResultWithOneZeroDimensionLeavesTheTargetAsItIs)
{
    typename TypeParam::Matrix rowless = {this->allocator, 0, 2, nullptr};
    Held<TypeParam> y(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> result(this->allocator, 1, 1, {9});
    EXPECT_EQ(TypeParam::Multiply(&rowless, y.get(), result.get()), NUV_TRUE);
    EXPECT_EQ(TypeParam::Add(&rowless, &rowless, result.get()), NUV_TRUE);
    EXPECT_EQ(TypeParam::Transpose(&rowless, result.get()), NUV_TRUE);
    EXPECT_TRUE(result.HasShape(1, 1));
    EXPECT_EQ(result.Elements(), ElementsOf<typename TypeParam::Element>({9}));
}

TEST(UintMatrixArithmetic, AllArithmeticWraps)
{
    TestAllocator allocator;
    Held<UintMatrix> x(allocator, 1, 2, {-1, -2});
    Held<UintMatrix> y(allocator, 2, 1, {-1, 2});
    Held<UintMatrix> result(allocator);
    EXPECT_EQ(NuvMatrix_NuvUintMultiply(x.get(), y.get(), result.get()), NUV_TRUE);
    EXPECT_EQ(result.Elements(), (std::vector<NuvUint>{0xFFFFFFFDU}));
    EXPECT_EQ(NuvMatrix_NuvUintAdd(x.get(), x.get(), result.get()), NUV_TRUE);
    EXPECT_EQ(result.Elements(), (std::vector<NuvUint>{0xFFFFFFFEU, 0xFFFFFFFCU}));
    EXPECT_EQ(NuvMatrix_NuvUintMultiplyScalar(x.get(), 0xFFFFFFFFU, result.get()), NUV_TRUE);
    EXPECT_EQ(result.Elements(), (std::vector<NuvUint>{1, 2}));
}

TEST(FloatMatrixArithmetic, MultiplyRoundsEachProductAndAddsInIncreasingIndex)
{
    TestAllocator allocator;
    // 2^24 swallows a 1 that comes after it, but not two that came before it; and (1 + 2^-12)²
    // rounds away its 2^-24, which a fused multiply-add would keep.
    Held<FloatMatrix> ones(allocator, 3, 1, {1, 1, 1});
    Held<FloatMatrix> up(allocator, 1, 3, {1, 1, 1 << 24});
    Held<FloatMatrix> down(allocator, 1, 3, {1 << 24, 1, 1});
    Held<FloatMatrix> result(allocator);
    NuvMatrix_NuvFloat32Multiply(up.get(), ones.get(), result.get());
    EXPECT_EQ(result.matrix.data[0], 16777218.0F);
    NuvMatrix_NuvFloat32Multiply(down.get(), ones.get(), result.get());
    EXPECT_EQ(result.matrix.data[0], 16777216.0F);

    const float x = 1.0F + 0x1p-12F;
    Held<FloatMatrix> row(allocator, 1, 2, {-1, 0});
    Held<FloatMatrix> column(allocator, 2, 1, {0, 0});
    column.matrix.data[0] = 1.0F + 0x1p-11F;
    row.matrix.data[1] = x;
    column.matrix.data[1] = x;
    NuvMatrix_NuvFloat32Multiply(row.get(), column.get(), result.get());
    EXPECT_EQ(result.matrix.data[0], 0.0F);
}

TYPED_TEST(MatrixArithmetic, TransposeOfARectangleExchangesRowsAndColumns)
{
    Held<TypeParam> x(this->allocator, 2, 3, {1, 2, 3, 4, 5, 6});
    Held<TypeParam> result(this->allocator, 2, 3, {9, 9, 9, 9, 9, 9});
    EXPECT_EQ(TypeParam::Transpose(x.get(), result.get()), NUV_TRUE);
    EXPECT_TRUE(result.HasShape(3, 2));
    EXPECT_EQ(result.Elements(), ElementsOf<typename TypeParam::Element>({1, 4, 2, 5, 3, 6}));
}
