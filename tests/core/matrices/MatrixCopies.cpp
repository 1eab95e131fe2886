// Elements on their way from matrix to matrix: assignment, copies of blocks, resizing, exchange.
// Every test runs for both element types, and gives back every block with its exact size.
#include "tests/core/matrices/MatrixOperations.hpp"

#include <utility>
#include <vector>

template <class Operations>
class MatrixCopies : public ::testing::Test
{
protected:
    using Type = typename Operations::Matrix;
    using Element = typename Operations::Element;

    TestAllocator blocks;
    NuvAllocator* const allocator = blocks;
};
TYPED_TEST_SUITE(MatrixCopies, MatrixTypes);

// Assignment and copies of blocks -----------------------------------------------------------------

TYPED_TEST(MatrixCopies, AssignOfTheSameShapeReusesTheBlockAndTakesTheAllocator)
{
    TestAllocator other;
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> y(other, 2, 2, {5, 6, 7, 8});
    const auto* const block = x.matrix.data;
    EXPECT_EQ(TypeParam::Assign(x.get(), y.get()), x.get());
    EXPECT_EQ(x.matrix.data, block);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({5, 6, 7, 8}));
    EXPECT_EQ(x.matrix.allocator, static_cast<NuvAllocator*>(other));
    x.matrix.allocator = this->allocator;
}

TYPED_TEST(MatrixCopies, AssignOfAnotherShapeReplacesTheBlock)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> y(this->allocator, 1, 3, {5, 6, 7});
    EXPECT_EQ(TypeParam::Assign(x.get(), y.get()), x.get());
    EXPECT_TRUE(x.HasShape(1, 3));
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({5, 6, 7}));
    EXPECT_EQ(this->blocks.LiveSizes(), (TestAllocator::Sizes{12, 12}));
}

TYPED_TEST(MatrixCopies, AssignOfAnEmptyMatrixGivesTheBlockBack)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> y(this->allocator);
    EXPECT_EQ(TypeParam::Assign(x.get(), y.get()), x.get());
    EXPECT_TRUE(x.HasShape(0, 0));
    EXPECT_EQ(x.matrix.data, nullptr);
    EXPECT_EQ(this->blocks.LiveBlocks(), 0U);
}

TYPED_TEST(MatrixCopies, AssignReturnsTheOldBlockThroughTheNewAllocatorAndNothingAsNullAndZero)
{
    NotingAllocator noting;
    typename TypeParam::Element element[2] = {1, 2};
    typename TypeParam::Matrix x = {nullptr, 1, 2, element};
    const typename TypeParam::Matrix y = {&noting.allocator, 0, 0, nullptr};
    EXPECT_EQ(TypeParam::Assign(&x, &y), &x);
    EXPECT_EQ(x.allocator, &noting.allocator);
    ASSERT_EQ(noting.returns.size(), 1U);
    EXPECT_EQ(noting.returns[0], (std::pair<void*, NuvSizeT>{element, 8}));

    typename TypeParam::Matrix empty = {nullptr, 0, 0, nullptr};
    const typename TypeParam::Matrix rowless = {&noting.allocator, 0, 2, nullptr};
    EXPECT_EQ(TypeParam::Assign(&empty, &rowless), &empty);
    EXPECT_EQ(empty.nc, 2U);
    ASSERT_EQ(noting.returns.size(), 2U);
    EXPECT_EQ(noting.returns[1], (std::pair<void*, NuvSizeT>{nullptr, 0}));
}

TYPED_TEST(MatrixCopies, CopyRangeWritesIntoTheBlockOfTheDestinationAlone)
{
    Held<TypeParam> x(this->allocator, 3, 3, {0, 0, 0, 0, 0, 0, 0, 0, 0});
    Held<TypeParam> y(this->allocator, 2, 3, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(TypeParam::CopyRange(x.get(), y.get(), 1, 0, 0, 1, 2, 2), x.get());
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({0, 0, 0, 2, 3, 0, 5, 6, 0}));
    EXPECT_EQ(this->blocks.Requests(), 2U);
}

TYPED_TEST(MatrixCopies, CopyRangeOfOverlappingBlocksGoesForwardElementByElement)
{
    Held<TypeParam> x(this->allocator, 1, 4, {1, 2, 3, 4});
    EXPECT_EQ(TypeParam::CopyRange(x.get(), x.get(), 0, 1, 0, 0, 1, 3), x.get());
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 1, 1, 1}));
    Held<TypeParam> y(this->allocator, 3, 2, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(TypeParam::CopyRange(y.get(), y.get(), 1, 0, 0, 0, 2, 2), y.get());
    EXPECT_EQ(y.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 1, 2, 1, 2}));
}

TYPED_TEST(MatrixCopies, CopyRangeBeyondEitherMatrixIsRefusedAlsoWhereTheSumsWrap)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> y(this->allocator, 3, 3, {9, 9, 9, 9, 9, 9, 9, 9, 9});
    const NuvUint ranges[][6] = {{0, 0, 0, 0, 3, 1},
                                 {0, 0, 0, 0, 1, 3},
                                 {2, 0, 0, 0, 1, 1},
                                 {0, 2, 0, 0, 1, 1},
                                 {0, 0, 3, 0, 1, 1},
                                 {0, 0, 0, 3, 1, 1},
                                 {0xFFFFFFFF, 0, 0, 0, 1, 1},
                                 {0, 0xFFFFFFFF, 0, 0, 1, 1},
                                 {0, 0, 0xFFFFFFFF, 0, 1, 1},
                                 {0, 0, 0, 0xFFFFFFFF, 1, 1},
                                 {1, 1, 1, 1, 0xFFFFFFFF, 0xFFFFFFFF}};
    for (const auto& r : ranges)
        EXPECT_EQ(TypeParam::CopyRange(x.get(), y.get(), r[0], r[1], r[2], r[3], r[4], r[5]),
                  nullptr);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 3, 4}));
}

TYPED_TEST(MatrixCopies, CopyRangeOfNothingAnswersTheDestination)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> empty(this->allocator);
    EXPECT_EQ(TypeParam::CopyRange(x.get(), empty.get(), 2, 2, 0, 0, 0, 0), x.get());
    EXPECT_EQ(TypeParam::CopyRange(empty.get(), x.get(), 0, 0, 2, 2, 0, 0), empty.get());
    EXPECT_EQ(TypeParam::CopyRange(x.get(), x.get(), 0, 0, 0, 1, 2, 0), x.get());
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 3, 4}));
}

TYPED_TEST(MatrixCopies, ResizeReplacesTheBlock)
{
    Held<TypeParam> x(this->allocator, 2, 3, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(TypeParam::Resize(x.get(), 3, 2), x.get());
    EXPECT_TRUE(x.HasShape(3, 2));
    EXPECT_EQ(this->blocks.Requests(), 2U);
    EXPECT_EQ(TypeParam::Resize(x.get(), 0, 0), x.get());
    EXPECT_EQ(x.matrix.data, nullptr);
    EXPECT_EQ(this->blocks.LiveBlocks(), 0U);
}

TYPED_TEST(MatrixCopies, ResizeWithOneZeroDimensionIsRefusedAndChangesNothing)
{
    Held<TypeParam> x(this->allocator, 2, 1, {1, 2});
    EXPECT_EQ(TypeParam::Resize(x.get(), 0, 1), nullptr);
    EXPECT_EQ(TypeParam::Resize(x.get(), 2, 0), nullptr);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2}));
}

// Exchange ----------------------------------------------------------------------------------------

TYPED_TEST(MatrixCopies, SwapExchangesElementsAndAllocatorsButNotBlocks)
{
    TestAllocator other;
    Held<TypeParam> x(this->allocator, 1, 2, {1, 2});
    Held<TypeParam> y(other, 1, 2, {3, 4});
    const auto* const blockOfX = x.matrix.data;
    EXPECT_EQ(TypeParam::Swap(x.get(), y.get()), NUV_TRUE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({3, 4}));
    EXPECT_EQ(y.Elements(), ElementsOf<typename TypeParam::Element>({1, 2}));
    EXPECT_EQ(x.matrix.data, blockOfX);
    EXPECT_EQ(x.matrix.allocator, static_cast<NuvAllocator*>(other));
    EXPECT_EQ(y.matrix.allocator, this->allocator);
    x.matrix.allocator = this->allocator;
    y.matrix.allocator = other;
}

TYPED_TEST(MatrixCopies, SwapOfDifferentShapesIsRefused)
{
    Held<TypeParam> x(this->allocator, 1, 2, {1, 2});
    Held<TypeParam> y(this->allocator, 2, 1, {3, 4});
    Held<TypeParam> wider(this->allocator, 1, 3, {5, 6, 7});
    for (auto* other : {y.get(), wider.get()})
        EXPECT_EQ(TypeParam::Swap(x.get(), other), NUV_FALSE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2}));
    EXPECT_EQ(y.Elements(), ElementsOf<typename TypeParam::Element>({3, 4}));
}

TYPED_TEST(MatrixCopies, SwapOfAMatrixWithItselfAndOfEmptyOnesChangesNothing)
{
    Held<TypeParam> x(this->allocator, 1, 2, {1, 2});
    EXPECT_EQ(TypeParam::Swap(x.get(), x.get()), NUV_TRUE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2}));
    Held<TypeParam> empty(this->allocator);
    Held<TypeParam> other(this->allocator);
    EXPECT_EQ(TypeParam::Swap(empty.get(), other.get()), NUV_TRUE);
    EXPECT_TRUE(empty.HasShape(0, 0));
}

TYPED_TEST(MatrixCopies, SwapRowExchangesRowsOfTwoMatricesOfTheSameWidth)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> y(this->allocator, 1, 2, {5, 6});
    EXPECT_EQ(TypeParam::SwapRow(x.get(), y.get(), 1, 0), NUV_TRUE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 5, 6}));
    EXPECT_EQ(y.Elements(), ElementsOf<typename TypeParam::Element>({3, 4}));
    EXPECT_EQ(TypeParam::SwapRow(x.get(), x.get(), 0, 1), NUV_TRUE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({5, 6, 1, 2}));
}

TYPED_TEST(MatrixCopies, SwapRowIsRefusedForAnotherWidthOrARowThatIsNotThere)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> y(this->allocator, 2, 1, {5, 6});
    EXPECT_EQ(TypeParam::SwapRow(x.get(), y.get(), 0, 0), NUV_FALSE);
    EXPECT_EQ(TypeParam::SwapRow(x.get(), x.get(), 2, 0), NUV_FALSE);
    EXPECT_EQ(TypeParam::SwapRow(x.get(), x.get(), 0, 2), NUV_FALSE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 3, 4}));
}

TYPED_TEST(MatrixCopies, SwapRowOfRowsWithoutColumnsAnswersTrue)
{
    typename TypeParam::Matrix x = {this->allocator, 2, 0, nullptr};
    EXPECT_EQ(TypeParam::SwapRow(&x, &x, 0, 1), NUV_TRUE);
}

TYPED_TEST(MatrixCopies, SwapColumnExchangesColumnsOfTwoMatricesOfTheSameHeight)
{
    Held<TypeParam> x(this->allocator, 2, 3, {1, 2, 3, 4, 5, 6});
    Held<TypeParam> y(this->allocator, 2, 1, {7, 8});
    EXPECT_EQ(TypeParam::SwapColumn(x.get(), y.get(), 1, 0), NUV_TRUE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 7, 3, 4, 8, 6}));
    EXPECT_EQ(y.Elements(), ElementsOf<typename TypeParam::Element>({2, 5}));
    EXPECT_EQ(TypeParam::SwapColumn(x.get(), x.get(), 0, 2), NUV_TRUE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({3, 7, 1, 6, 8, 4}));
    EXPECT_EQ(TypeParam::SwapColumn(x.get(), x.get(), 1, 1), NUV_TRUE);
}

TYPED_TEST(MatrixCopies, SwapColumnIsRefusedForAnotherHeightOrAColumnThatIsNotThere)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> y(this->allocator, 1, 2, {5, 6});
    EXPECT_EQ(TypeParam::SwapColumn(x.get(), y.get(), 0, 0), NUV_FALSE);
    EXPECT_EQ(TypeParam::SwapColumn(x.get(), x.get(), 2, 0), NUV_FALSE);
    EXPECT_EQ(TypeParam::SwapColumn(x.get(), x.get(), 0, 2), NUV_FALSE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 3, 4}));
}
