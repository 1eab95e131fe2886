// The dense matrix as a holder of elements: construction, destruction, access, comparison.
// Every test runs for both element types, and gives back every block with its exact size.
#include "tests/core/matrices/MatrixOperations.hpp"

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

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

// Edge cases --------------------------------------------------------------------------------------

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

TYPED_TEST(Matrix, ResizeOfAnEmptyMatrixToNothingAsksForNothing)
{
    Held<TypeParam> x(this->allocator);
    EXPECT_EQ(TypeParam::Resize(x.get(), 0, 0), x.get());
    EXPECT_TRUE(x.HasShape(0, 0));
    EXPECT_EQ(this->blocks.Requests(), 0U);
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

// Construction ------------------------------------------------------------------------------------

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
    typename TypeParam::Matrix copy;
    EXPECT_EQ(TypeParam::ConstructCopy(&copy, &x), &copy);
    EXPECT_EQ(TypeParam::Equal(&copy, &x), NUV_TRUE);
    EXPECT_EQ(this->blocks.LiveSizes(), (TestAllocator::Sizes{0, 0, 36}));
    TypeParam::Destruct(&copy);
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

// Elements and comparison -------------------------------------------------------------------------

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
    Held<TypeParam> wider(this->allocator, 2, 3, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(TypeParam::Equal(x.get(), wide.get()), NUV_FALSE);
    EXPECT_EQ(TypeParam::Equal(x.get(), wider.get()), NUV_FALSE);
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
