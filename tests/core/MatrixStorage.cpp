// The dense matrix as a holder of elements: construction, copying, resizing, exchange, comparison.
// Every test runs for both element types, and gives back every block with its exact size.
#include "tests/core/MatrixOperations.hpp"

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace
{
/// Notes what is given back, and gives nothing.
struct NotingAllocator
{
    NuvAllocator allocator = {
        nullptr,
        [](NuvAllocator* self, void* memory, NuvSizeT size) {
            static_cast<NotingAllocator*>(self->userData)->returns.push_back({memory, size});
        },
        0, this};
    std::vector<std::pair<void*, NuvSizeT>> returns;
};
}  // namespace

template <class Operations>
class Matrix : public ::testing::Test
{
protected:
    using Type = typename Operations::Matrix;
    using Element = typename Operations::Element;

    TestAllocator blocks;
    NuvAllocator* const allocator = blocks;
};
TYPED_TEST_SUITE(Matrix, MatrixTypes);

// Edge cases
// ---------------------------------------------------------------------------------------

TYPED_TEST(Matrix, ConstructOfNoRowsAndNoColumnsSucceedsWithoutABlock)
{
    typename TypeParam::Matrix x;
    EXPECT_EQ(TypeParam::Construct(&x, 0, 0, this->allocator), &x);
    EXPECT_EQ(x.nr, 0U);
    EXPECT_EQ(x.nc, 0U);
    EXPECT_EQ(x.data, nullptr);
    EXPECT_EQ(x.allocator, this->allocator);
    EXPECT_EQ(this->blocks.Requests(), 0U);
}

TYPED_TEST(Matrix, ConstructWithOneZeroDimensionIsRefusedAndLeavesTheRecordUntouched)
{
    for (const bool isRowless : {false, true})
    {
        typename TypeParam::Matrix x;
        std::memset(&x, 0x5A, sizeof x);
        const typename TypeParam::Matrix before = x;
        EXPECT_EQ(TypeParam::Construct(&x, isRowless ? 0 : 3, isRowless ? 3 : 0, this->allocator),
                  nullptr);
        EXPECT_EQ(std::memcmp(&x, &before, sizeof x), 0);
    }
    EXPECT_EQ(this->blocks.Requests(), 0U);
}

TYPED_TEST(Matrix, ConstructIdentityOfDimensionZeroIsRefusedAndLeavesTheRecordUntouched)
{
    typename TypeParam::Matrix x;
    std::memset(&x, 0x5A, sizeof x);
    const typename TypeParam::Matrix before = x;
    EXPECT_EQ(TypeParam::ConstructIdentity(&x, 0, this->allocator), nullptr);
    EXPECT_EQ(std::memcmp(&x, &before, sizeof x), 0);
}

TYPED_TEST(Matrix, ResizeToTheSameShapeKeepsEveryElement)
{
    Held<TypeParam> x(this->allocator, 2, 3, {1, 2, 3, 4, 5, 6});
    const auto* const block = x.matrix.data;
    EXPECT_EQ(TypeParam::Resize(x.get(), 2, 3), x.get());
    EXPECT_EQ(x.matrix.data, block);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(this->blocks.Requests(), 1U);
}

TYPED_TEST(Matrix, DestructOfAnEmptyMatrixGivesNothingBackAndKeepsTheAllocator)
{
    NotingAllocator noting;
    typename TypeParam::Matrix x;
    TypeParam::ConstructDefault(&x, &noting.allocator);
    TypeParam::Destruct(&x);
    EXPECT_TRUE(noting.returns.empty());
    EXPECT_EQ(TypeParam::GetAllocator(&x), &noting.allocator);
}

TYPED_TEST(Matrix, AssignToItselfChangesNothing)
{
    Held<TypeParam> x(this->allocator, 1, 3, {7, 8, 9});
    const auto* const block = x.matrix.data;
    EXPECT_EQ(TypeParam::Assign(x.get(), x.get()), x.get());
    EXPECT_EQ(x.matrix.data, block);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({7, 8, 9}));
}

TYPED_TEST(Matrix, ConstructCopyRangeOfNoRowsButTwoColumnsHasNoBlock)
{
    Held<TypeParam> y(this->allocator, 2, 2, {1, 2, 3, 4});
    typename TypeParam::Matrix x;
    EXPECT_EQ(TypeParam::ConstructCopyRange(&x, y.get(), 1, 0, 0, 2, nullptr), &x);
    EXPECT_EQ(x.nr, 0U);
    EXPECT_EQ(x.nc, 2U);
    EXPECT_EQ(x.data, nullptr);
    EXPECT_EQ(this->blocks.Requests(), 1U);
}

TEST(FloatMatrixEqual, ZerosOfDifferentSignDiffer)
{
    TestAllocator allocator;
    Held<FloatMatrix> x(allocator, 1, 1, {0});
    Held<FloatMatrix> y(allocator, 1, 1, {0});
    EXPECT_TRUE(NuvMatrix_NuvFloat32Equal(x.get(), y.get()));
    y.matrix.data[0] = -0.0F;
    EXPECT_FALSE(NuvMatrix_NuvFloat32Equal(x.get(), y.get()));
}

TEST(FloatMatrixEqual, TheSameNaNPatternIsEqualAndAnotherIsNot)
{
    TestAllocator allocator;
    Held<FloatMatrix> x(allocator, 1, 1, {0});
    Held<FloatMatrix> y(allocator, 1, 1, {0});
    const std::uint32_t pattern = 0x7FC00001U;
    const std::uint32_t other = 0x7FC00002U;
    std::memcpy(x.matrix.data, &pattern, sizeof pattern);
    std::memcpy(y.matrix.data, &pattern, sizeof pattern);
    EXPECT_TRUE(NuvMatrix_NuvFloat32Equal(x.get(), y.get()));
    std::memcpy(y.matrix.data, &other, sizeof other);
    EXPECT_FALSE(NuvMatrix_NuvFloat32Equal(x.get(), y.get()));
}

TYPED_TEST(Matrix, NoMatrixIsLessThanAnyOther)
{
    Held<TypeParam> x(this->allocator, 1, 2, {1, 2});
    Held<TypeParam> y(this->allocator, 1, 2, {3, 4});
    EXPECT_FALSE(TypeParam::Less(x.get(), x.get()));
    EXPECT_FALSE(TypeParam::Less(x.get(), y.get()));
    EXPECT_FALSE(TypeParam::Less(y.get(), x.get()));
}

TYPED_TEST(Matrix, SwapRowOfARowWithItselfAnswersTrueAndChangesNothing)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    EXPECT_EQ(TypeParam::SwapRow(x.get(), x.get(), 1, 1), NUV_TRUE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 3, 4}));
}

// Construction
// -------------------------------------------------------------------------------------

TYPED_TEST(Matrix, ConstructDefaultIsEmpty)
{
    typename TypeParam::Matrix x;
    EXPECT_EQ(TypeParam::ConstructDefault(&x, this->allocator), &x);
    EXPECT_EQ(TypeParam::GetNumRows(&x), 0U);
    EXPECT_EQ(TypeParam::GetNumColumns(&x), 0U);
    EXPECT_EQ(x.data, nullptr);
    EXPECT_EQ(TypeParam::GetAllocator(&x), this->allocator);
}

TYPED_TEST(Matrix, ConstructTakesOneBlockOfExactlyItsElements)
{
    typename TypeParam::Matrix x;
    EXPECT_EQ(TypeParam::Construct(&x, 3, 5, this->allocator), &x);
    EXPECT_EQ(TypeParam::GetNumRows(&x), 3U);
    EXPECT_EQ(TypeParam::GetNumColumns(&x), 5U);
    EXPECT_EQ(this->blocks.LiveSizes(), (TestAllocator::Sizes{60}));
    TypeParam::Destruct(&x);
    EXPECT_EQ(x.nr, 0U);
    EXPECT_EQ(x.nc, 0U);
    EXPECT_EQ(x.data, nullptr);
    EXPECT_EQ(x.allocator, this->allocator);
    EXPECT_EQ(this->blocks.LiveBlocks(), 0U);
}

TYPED_TEST(Matrix, ConstructFormsTheElementCountIn32Bits)
{
    typename TypeParam::Matrix x;
    EXPECT_EQ(TypeParam::Construct(&x, 0x10000, 0x10001, this->allocator), &x);
    EXPECT_EQ(this->blocks.LiveSizes(), (TestAllocator::Sizes{0x10000 * 4}));
    TypeParam::Destruct(&x);
    EXPECT_EQ(this->blocks.LiveBlocks(), 0U);
}

TYPED_TEST(Matrix, AnIdentityWhoseElementCountWrapsWritesNoFurtherThanItsBlock)
{
    typename TypeParam::Matrix x;
    (void)TypeParam::ConstructIdentity(&x, 0x10001, this->allocator);
    EXPECT_EQ(this->blocks.LiveSizes(), (TestAllocator::Sizes{0x20001 * 4}));
    TypeParam::Destruct(&x);
}

TYPED_TEST(Matrix, ConstructIdentityHasOnesOnItsDiagonal)
{
    typename TypeParam::Matrix x;
    EXPECT_EQ(TypeParam::ConstructIdentity(&x, 3, this->allocator), &x);
    for (NuvUint i = 0; i != 3; ++i)
        for (NuvUint j = 0; j != 3; ++j)
            EXPECT_EQ(TypeParam::At(&x, i, j), typename TypeParam::Element(i == j ? 1 : 0));
    TypeParam::Destruct(&x);
}

TYPED_TEST(Matrix, ConstructCopyTakesTheAllocatorOfItsSource)
{
    Held<TypeParam> y(this->allocator, 2, 2, {1, 2, 3, 4});
    typename TypeParam::Matrix x;
    EXPECT_EQ(TypeParam::ConstructCopy(&x, y.get()), &x);
    EXPECT_EQ(x.allocator, this->allocator);
    EXPECT_NE(x.data, y.matrix.data);
    EXPECT_EQ(TypeParam::Equal(&x, y.get()), NUV_TRUE);
    TypeParam::Destruct(&x);
}

TYPED_TEST(Matrix, ConstructCopyOfAnEmptyMatrixTakesNoBlock)
{
    Held<TypeParam> y(this->allocator);
    typename TypeParam::Matrix x;
    EXPECT_EQ(TypeParam::ConstructCopy(&x, y.get()), &x);
    EXPECT_EQ(x.data, nullptr);
    EXPECT_EQ(this->blocks.Requests(), 0U);
}

TYPED_TEST(Matrix, ConstructCopyRangeTakesABlockOfItsSourceOnTheSourcesAllocator)
{
    TestAllocator ignored;
    Held<TypeParam> y(this->allocator, 3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
    typename TypeParam::Matrix x;
    EXPECT_EQ(TypeParam::ConstructCopyRange(&x, y.get(), 1, 1, 2, 2, ignored), &x);
    EXPECT_EQ(x.allocator, this->allocator);
    EXPECT_EQ(ignored.Requests(), 0U);
    EXPECT_EQ(TypeParam::At(&x, 0, 0), typename TypeParam::Element(5));
    EXPECT_EQ(TypeParam::At(&x, 0, 1), typename TypeParam::Element(6));
    EXPECT_EQ(TypeParam::At(&x, 1, 0), typename TypeParam::Element(8));
    EXPECT_EQ(TypeParam::At(&x, 1, 1), typename TypeParam::Element(9));
    TypeParam::Destruct(&x);
}

TYPED_TEST(Matrix, ConstructCopyRangeOfRowsWithoutColumnsAsksForABlockOfNoBytes)
{
    Held<TypeParam> y(this->allocator, 3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
    typename TypeParam::Matrix x;
    EXPECT_EQ(TypeParam::ConstructCopyRange(&x, y.get(), 0, 3, 3, 0, nullptr), &x);
    EXPECT_EQ(x.nr, 3U);
    EXPECT_EQ(x.nc, 0U);
    EXPECT_EQ(this->blocks.LiveSizes(), (TestAllocator::Sizes{0, 36}));
    TypeParam::Destruct(&x);
    EXPECT_EQ(this->blocks.LiveSizes(), (TestAllocator::Sizes{36}));
}

TYPED_TEST(Matrix, ConstructCopyRangeBeyondItsSourceIsRefusedAlsoWhereTheSumsWrap)
{
    Held<TypeParam> y(this->allocator, 2, 2, {1, 2, 3, 4});
    const NuvUint ranges[][4] = {
        {0, 0, 3, 1},          {0, 0, 1, 3},          {2, 0, 1, 1},
        {0, 2, 1, 1},          {0xFFFFFFFF, 0, 1, 1}, {0, 0xFFFFFFFF, 1, 1},
        {0xFFFFFFFF, 0, 2, 2}, {1, 0, 0xFFFFFFFF, 1}, {0, 1, 1, 0xFFFFFFFF}};
    for (const auto& range : ranges)
    {
        typename TypeParam::Matrix x;
        std::memset(&x, 0x5A, sizeof x);
        const typename TypeParam::Matrix before = x;
        EXPECT_EQ(TypeParam::ConstructCopyRange(&x, y.get(), range[0], range[1], range[2], range[3],
                                                nullptr),
                  nullptr);
        EXPECT_EQ(std::memcmp(&x, &before, sizeof x), 0);
    }
    EXPECT_EQ(this->blocks.Requests(), 1U);
}

TYPED_TEST(Matrix, ResetMakesEveryBitZero)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    TypeParam::Reset(x.get());
    const unsigned char zeros[16] = {};
    EXPECT_EQ(std::memcmp(x.matrix.data, zeros, sizeof zeros), 0);
    Held<TypeParam> empty(this->allocator);
    TypeParam::Reset(empty.get());
}

// Assignment and copies of blocks
// --------------------------------------------------------------------

TYPED_TEST(Matrix, AssignOfTheSameShapeReusesTheBlockAndTakesTheAllocator)
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

TYPED_TEST(Matrix, AssignOfAnotherShapeReplacesTheBlock)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> y(this->allocator, 1, 3, {5, 6, 7});
    EXPECT_EQ(TypeParam::Assign(x.get(), y.get()), x.get());
    EXPECT_TRUE(x.HasShape(1, 3));
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({5, 6, 7}));
    EXPECT_EQ(this->blocks.LiveSizes(), (TestAllocator::Sizes{12, 12}));
}

TYPED_TEST(Matrix, AssignOfAnEmptyMatrixGivesTheBlockBack)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> y(this->allocator);
    EXPECT_EQ(TypeParam::Assign(x.get(), y.get()), x.get());
    EXPECT_TRUE(x.HasShape(0, 0));
    EXPECT_EQ(x.matrix.data, nullptr);
    EXPECT_EQ(this->blocks.LiveBlocks(), 0U);
}

TYPED_TEST(Matrix, AssignReturnsTheOldBlockThroughTheNewAllocatorAndNothingAsNullAndZero)
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

TYPED_TEST(Matrix, CopyRangeWritesIntoTheBlockOfTheDestinationAlone)
{
    Held<TypeParam> x(this->allocator, 3, 3, {0, 0, 0, 0, 0, 0, 0, 0, 0});
    Held<TypeParam> y(this->allocator, 2, 3, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(TypeParam::CopyRange(x.get(), y.get(), 1, 0, 0, 1, 2, 2), x.get());
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({0, 0, 0, 2, 3, 0, 5, 6, 0}));
    EXPECT_EQ(this->blocks.Requests(), 2U);
}

TYPED_TEST(Matrix, CopyRangeOfOverlappingBlocksGoesForwardElementByElement)
{
    Held<TypeParam> x(this->allocator, 1, 4, {1, 2, 3, 4});
    EXPECT_EQ(TypeParam::CopyRange(x.get(), x.get(), 0, 1, 0, 0, 1, 3), x.get());
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 1, 1, 1}));
    Held<TypeParam> y(this->allocator, 3, 2, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(TypeParam::CopyRange(y.get(), y.get(), 1, 0, 0, 0, 2, 2), y.get());
    EXPECT_EQ(y.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 1, 2, 1, 2}));
}

TYPED_TEST(Matrix, CopyRangeBeyondEitherMatrixIsRefusedAlsoWhereTheSumsWrap)
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

TYPED_TEST(Matrix, CopyRangeOfNothingAnswersTheDestination)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> empty(this->allocator);
    EXPECT_EQ(TypeParam::CopyRange(x.get(), empty.get(), 2, 2, 0, 0, 0, 0), x.get());
    EXPECT_EQ(TypeParam::CopyRange(empty.get(), x.get(), 0, 0, 2, 2, 0, 0), empty.get());
    EXPECT_EQ(TypeParam::CopyRange(x.get(), x.get(), 0, 0, 0, 1, 2, 0), x.get());
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 3, 4}));
}

TYPED_TEST(Matrix, ResizeReplacesTheBlock)
{
    Held<TypeParam> x(this->allocator, 2, 3, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(TypeParam::Resize(x.get(), 3, 2), x.get());
    EXPECT_TRUE(x.HasShape(3, 2));
    EXPECT_EQ(this->blocks.Requests(), 2U);
    EXPECT_EQ(TypeParam::Resize(x.get(), 0, 0), x.get());
    EXPECT_EQ(x.matrix.data, nullptr);
    EXPECT_EQ(this->blocks.LiveBlocks(), 0U);
}

TYPED_TEST(Matrix, ResizeWithOneZeroDimensionIsRefusedAndChangesNothing)
{
    Held<TypeParam> x(this->allocator, 2, 1, {1, 2});
    EXPECT_EQ(TypeParam::Resize(x.get(), 0, 1), nullptr);
    EXPECT_EQ(TypeParam::Resize(x.get(), 2, 0), nullptr);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2}));
}

// Exchange
// -----------------------------------------------------------------------------------------

TYPED_TEST(Matrix, SwapExchangesElementsAndAllocatorsButNotBlocks)
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

TYPED_TEST(Matrix, SwapOfDifferentShapesIsRefused)
{
    Held<TypeParam> x(this->allocator, 1, 2, {1, 2});
    Held<TypeParam> y(this->allocator, 2, 1, {3, 4});
    EXPECT_EQ(TypeParam::Swap(x.get(), y.get()), NUV_FALSE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2}));
    EXPECT_EQ(y.Elements(), ElementsOf<typename TypeParam::Element>({3, 4}));
}

TYPED_TEST(Matrix, SwapOfAMatrixWithItselfAndOfEmptyOnesChangesNothing)
{
    Held<TypeParam> x(this->allocator, 1, 2, {1, 2});
    EXPECT_EQ(TypeParam::Swap(x.get(), x.get()), NUV_TRUE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2}));
    Held<TypeParam> empty(this->allocator);
    Held<TypeParam> other(this->allocator);
    EXPECT_EQ(TypeParam::Swap(empty.get(), other.get()), NUV_TRUE);
    EXPECT_TRUE(empty.HasShape(0, 0));
}

TYPED_TEST(Matrix, SwapRowExchangesRowsOfTwoMatricesOfTheSameWidth)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> y(this->allocator, 1, 2, {5, 6});
    EXPECT_EQ(TypeParam::SwapRow(x.get(), y.get(), 1, 0), NUV_TRUE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 5, 6}));
    EXPECT_EQ(y.Elements(), ElementsOf<typename TypeParam::Element>({3, 4}));
    EXPECT_EQ(TypeParam::SwapRow(x.get(), x.get(), 0, 1), NUV_TRUE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({5, 6, 1, 2}));
}

TYPED_TEST(Matrix, SwapRowIsRefusedForAnotherWidthOrARowThatIsNotThere)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> y(this->allocator, 2, 1, {5, 6});
    EXPECT_EQ(TypeParam::SwapRow(x.get(), y.get(), 0, 0), NUV_FALSE);
    EXPECT_EQ(TypeParam::SwapRow(x.get(), x.get(), 2, 0), NUV_FALSE);
    EXPECT_EQ(TypeParam::SwapRow(x.get(), x.get(), 0, 2), NUV_FALSE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 3, 4}));
}

TYPED_TEST(Matrix, SwapRowOfRowsWithoutColumnsAnswersTrue)
{
    typename TypeParam::Matrix x = {this->allocator, 2, 0, nullptr};
    EXPECT_EQ(TypeParam::SwapRow(&x, &x, 0, 1), NUV_TRUE);
}

TYPED_TEST(Matrix, SwapColumnExchangesColumnsOfTwoMatricesOfTheSameHeight)
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

TYPED_TEST(Matrix, SwapColumnIsRefusedForAnotherHeightOrAColumnThatIsNotThere)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> y(this->allocator, 1, 2, {5, 6});
    EXPECT_EQ(TypeParam::SwapColumn(x.get(), y.get(), 0, 0), NUV_FALSE);
    EXPECT_EQ(TypeParam::SwapColumn(x.get(), x.get(), 2, 0), NUV_FALSE);
    EXPECT_EQ(TypeParam::SwapColumn(x.get(), x.get(), 0, 2), NUV_FALSE);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 3, 4}));
}

// Elements and comparison
// ----------------------------------------------------------------------------

TYPED_TEST(Matrix, ElementsStandRowAfterRow)
{
    Held<TypeParam> x(this->allocator, 2, 3, {0, 0, 0, 0, 0, 0});
    TypeParam::SetVal(x.get(), 1, 2, typename TypeParam::Element(7));
    TypeParam::SetVal(x.get(), 0, 1, typename TypeParam::Element(5));
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({0, 5, 0, 0, 0, 7}));
    EXPECT_EQ(TypeParam::At(x.get(), 1, 2), typename TypeParam::Element(7));
}

TYPED_TEST(Matrix, EqualComparesShapesAndBytes)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> same(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> wide(this->allocator, 1, 4, {1, 2, 3, 4});
    Held<TypeParam> other(this->allocator, 2, 2, {1, 2, 3, 5});
    EXPECT_EQ(TypeParam::Equal(x.get(), same.get()), NUV_TRUE);
    EXPECT_EQ(TypeParam::Equal(x.get(), wide.get()), NUV_FALSE);
    EXPECT_EQ(TypeParam::Equal(x.get(), other.get()), NUV_FALSE);
    Held<TypeParam> empty(this->allocator);
    EXPECT_EQ(TypeParam::Equal(empty.get(), empty.get()), NUV_TRUE);
}

TYPED_TEST(Matrix, DumpTakesAnyArgumentsAndDoesNothing)
{
    Held<TypeParam> x(this->allocator, 1, 1, {1});
    TypeParam::Dump(x.get(), "x", 3);
    TypeParam::Dump(nullptr, nullptr, 0);
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1}));
}
