// Matrices whose storage was refused: each operation answers as promised, never reads or writes
// through null, and a matrix without storage gets some when it is asked again.
#include "tests/core/matrices/MatrixOperations.hpp"

#include "tests/support/RefusedAllocations.hpp"

template <class Operations>
class MatrixRefused : public ::testing::Test
{
protected:
    using Type = typename Operations::Matrix;

    /// Expects the shape of a matrix whose storage was refused.
    static void ExpectWithoutStorage(const Type& x, NuvUint rows, NuvUint columns)
    {
        EXPECT_EQ(x.nr, rows);
        EXPECT_EQ(x.nc, columns);
        EXPECT_EQ(x.data, nullptr);
    }

    TestAllocator blocks;
    NuvAllocator* const allocator = blocks;
};
TYPED_TEST_SUITE(MatrixRefused, MatrixTypes);

TYPED_TEST(MatrixRefused, ConstructKeepsTheShapeAndResizeToItAsksAgain)
{
    typename TypeParam::Matrix x;
    this->blocks.RefuseOnly(1);
    EXPECT_EQ(TypeParam::Construct(&x, 2, 3, this->allocator), nullptr);
    this->ExpectWithoutStorage(x, 2, 3);
    EXPECT_EQ(TypeParam::Resize(&x, 2, 3), &x);
    EXPECT_EQ(this->blocks.LiveSizes(), (TestAllocator::Sizes{24}));
    TypeParam::Destruct(&x);
}

TYPED_TEST(MatrixRefused, ConstructionsAnswerNullWithTheShapeRecorded)
{
    Held<TypeParam> y(this->allocator, 2, 2, {1, 2, 3, 4});
    this->blocks.RefuseFrom(1);
    typename TypeParam::Matrix x;
    EXPECT_EQ(TypeParam::ConstructIdentity(&x, 3, this->allocator), nullptr);
    this->ExpectWithoutStorage(x, 3, 3);
    TypeParam::Destruct(&x);
    EXPECT_EQ(TypeParam::ConstructCopy(&x, y.get()), nullptr);
    this->ExpectWithoutStorage(x, 2, 2);
    TypeParam::Destruct(&x);
    EXPECT_EQ(TypeParam::ConstructCopyRange(&x, y.get(), 0, 1, 2, 1, nullptr), nullptr);
    this->ExpectWithoutStorage(x, 2, 1);
    TypeParam::Destruct(&x);
    this->ExpectWithoutStorage(x, 0, 0);
}

TYPED_TEST(MatrixRefused, ACopyRangeWithoutColumnsReportsARefusedBlockOfNoBytes)
{
    Held<TypeParam> y(this->allocator, 2, 2, {1, 2, 3, 4});
    this->blocks.RefuseFrom(1);
    typename TypeParam::Matrix x;
    EXPECT_EQ(TypeParam::ConstructCopyRange(&x, y.get(), 0, 0, 2, 0, nullptr), nullptr);
    TypeParam::Destruct(&x);
}

TYPED_TEST(MatrixRefused, AssignAndResizeGiveTheOldBlockBackAndKeepTheNewShape)
{
    for (const bool isAssigned : {false, true})
    {
        Held<TypeParam> x(this->allocator, 1, 2, {1, 2});
        Held<TypeParam> y(this->allocator, 2, 2, {3, 4, 5, 6});
        this->blocks.RefuseOnly(1);
        EXPECT_EQ(isAssigned ? TypeParam::Assign(x.get(), y.get())
                             : TypeParam::Resize(x.get(), 2, 2),
                  nullptr);
        this->ExpectWithoutStorage(x.matrix, 2, 2);
        EXPECT_EQ(this->blocks.LiveBlocks(), 1U);
        EXPECT_EQ(this->blocks.NullsGivenBack(), 0U);
        EXPECT_EQ(TypeParam::Assign(x.get(), y.get()), x.get());
        EXPECT_EQ(TypeParam::Equal(x.get(), y.get()), NUV_TRUE);
        // From a shape without storage to another one.
        Held<TypeParam> wide(this->allocator, 1, 3, {7, 8, 9});
        this->blocks.RefuseOnly(1);
        EXPECT_EQ(TypeParam::Resize(x.get(), 3, 3), nullptr);
        EXPECT_EQ(TypeParam::Assign(x.get(), wide.get()), x.get());
        EXPECT_EQ(TypeParam::Equal(x.get(), wide.get()), NUV_TRUE);
    }
}

TYPED_TEST(MatrixRefused, AResultThatIsRefusedStaysWithoutStorageAndTheAnswerIsTrue)
{
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> sum(this->allocator);
    Held<TypeParam> product(this->allocator, 1, 1, {9});
    Held<TypeParam> multiple(this->allocator);
    Held<TypeParam> transposed(this->allocator);
    this->blocks.RefuseFrom(1);
    EXPECT_EQ(TypeParam::Add(x.get(), x.get(), sum.get()), NUV_TRUE);
    EXPECT_EQ(TypeParam::Multiply(x.get(), x.get(), product.get()), NUV_TRUE);
    EXPECT_EQ(TypeParam::MultiplyScalar(x.get(), typename TypeParam::Element(2), multiple.get()),
              NUV_TRUE);
    EXPECT_EQ(TypeParam::Transpose(x.get(), transposed.get()), NUV_TRUE);
    for (const auto* result : {sum.get(), product.get(), multiple.get(), transposed.get()})
        this->ExpectWithoutStorage(*result, 2, 2);
    EXPECT_EQ(this->blocks.LiveBlocks(), 1U);
}

TYPED_TEST(MatrixRefused, OperandsWithoutStorageAreNotRead)
{
    typename TypeParam::Matrix none = {this->allocator, 2, 2, nullptr};
    Held<TypeParam> x(this->allocator, 2, 2, {1, 2, 3, 4});
    Held<TypeParam> result(this->allocator, 2, 2, {9, 9, 9, 9});
    EXPECT_EQ(TypeParam::Add(&none, x.get(), result.get()), NUV_TRUE);
    EXPECT_EQ(TypeParam::Add(x.get(), &none, result.get()), NUV_TRUE);
    EXPECT_EQ(TypeParam::Multiply(&none, x.get(), result.get()), NUV_TRUE);
    EXPECT_EQ(TypeParam::Multiply(x.get(), &none, result.get()), NUV_TRUE);
    EXPECT_EQ(TypeParam::MultiplyScalar(&none, typename TypeParam::Element(2), result.get()),
              NUV_TRUE);
    EXPECT_EQ(TypeParam::Transpose(&none, result.get()), NUV_TRUE);
    EXPECT_EQ(TypeParam::SwapRow(x.get(), &none, 0, 0), NUV_TRUE);
    EXPECT_EQ(TypeParam::SwapRow(&none, x.get(), 0, 0), NUV_TRUE);
    EXPECT_EQ(TypeParam::SwapColumn(&none, x.get(), 0, 0), NUV_TRUE);
    EXPECT_EQ(TypeParam::SwapColumn(x.get(), &none, 0, 0), NUV_TRUE);
    EXPECT_EQ(TypeParam::CopyRange(x.get(), &none, 0, 0, 0, 0, 1, 1), x.get());
    EXPECT_EQ(TypeParam::CopyRange(&none, x.get(), 0, 0, 0, 0, 1, 1), &none);
    EXPECT_EQ(TypeParam::Equal(x.get(), &none), NUV_FALSE);
    EXPECT_EQ(TypeParam::Equal(&none, x.get()), NUV_FALSE);
    EXPECT_EQ(TypeParam::Equal(&none, &none), NUV_TRUE);
    TypeParam::Reset(&none);
    TypeParam::SetVal(&none, 1, 1, typename TypeParam::Element(5));
    EXPECT_EQ(TypeParam::At(&none, 1, 1), typename TypeParam::Element(0));
    EXPECT_EQ(x.Elements(), ElementsOf<typename TypeParam::Element>({1, 2, 3, 4}));
    EXPECT_EQ(TypeParam::Assign(&none, &none), &none);
    typename TypeParam::Matrix copy;
    EXPECT_EQ(TypeParam::ConstructCopy(&copy, &none), nullptr);
    EXPECT_EQ(TypeParam::ConstructCopyRange(&copy, &none, 0, 0, 1, 1, nullptr), nullptr);
    EXPECT_EQ(copy.data, nullptr);
    // Of no columns there is nothing to read.
    EXPECT_EQ(TypeParam::ConstructCopyRange(&copy, &none, 0, 0, 2, 0, nullptr), &copy);
    TypeParam::Destruct(&copy);
}

TYPED_TEST(MatrixRefused, ASwapThatFindsNoRoomForItsCopyKeepsBothMatricesWhole)
{
    Held<TypeParam> x(this->allocator, 1, 2, {1, 2});
    Held<TypeParam> y(this->allocator, 1, 2, {3, 4});
    this->blocks.RefuseOnly(1);
    EXPECT_EQ(TypeParam::Swap(x.get(), y.get()), NUV_TRUE);
    EXPECT_TRUE(x.HasShape(1, 2));
    EXPECT_TRUE(y.HasShape(1, 2));
    EXPECT_NE(x.matrix.data, nullptr);
    EXPECT_NE(y.matrix.data, nullptr);
    EXPECT_EQ(this->blocks.LiveBlocks(), 2U);
}

TEST(FloatMatrixRefused, ADifferenceWithoutOperandsOrRoomIsNotFormed)
{
    TestAllocator allocator;
    NuvMatrix_NuvFloat32 none = {allocator, 2, 2, nullptr};
    Held<FloatMatrix> x(allocator, 2, 2, {1, 2, 3, 4});
    Held<FloatMatrix> result(allocator, 2, 2, {9, 9, 9, 9});
    EXPECT_EQ(NuvMatrix_NuvFloat32Subtract(&none, x.get(), result.get()), NUV_TRUE);
    EXPECT_EQ(NuvMatrix_NuvFloat32Subtract(x.get(), &none, result.get()), NUV_TRUE);
    EXPECT_EQ(result.Elements(), (std::vector<float>{9, 9, 9, 9}));
    Held<FloatMatrix> refused(allocator);
    allocator.RefuseFrom(1);
    EXPECT_EQ(NuvMatrix_NuvFloat32Subtract(x.get(), x.get(), refused.get()), NUV_TRUE);
    EXPECT_EQ(refused.matrix.data, nullptr);
}

TEST(FloatMatrixRefused, AnInverseWithoutRoomAnswersFalseAndGivesItsCopyBack)
{
    ForEachRefusedAllocation(
        [](TestAllocator& allocator)
        {
            NuvMatrix_NuvFloat32 x;
            NuvMatrix_NuvFloat32 result;
            {
                const auto spared = allocator.Spare();
                NuvMatrix_NuvFloat32ConstructIdentity(&x, 3, allocator);
            }
            NuvMatrix_NuvFloat32ConstructDefault(&result, allocator);
            const bool isInverted = NuvMatrix_NuvFloat32Inverse(&x, &result) == NUV_TRUE;
            EXPECT_EQ(isInverted, allocator.Refusals() == 0);
            EXPECT_EQ(isInverted, NuvMatrix_NuvFloat32Equal(&x, &result) == NUV_TRUE);
            allocator.RefuseNothing();
            EXPECT_EQ(NuvMatrix_NuvFloat32Inverse(&x, &result), NUV_TRUE);
            EXPECT_EQ(NuvMatrix_NuvFloat32Equal(&x, &result), NUV_TRUE);
            EXPECT_EQ(allocator.LiveBlocks(), 2U);
            NuvMatrix_NuvFloat32Destruct(&x);
            NuvMatrix_NuvFloat32Destruct(&result);
        });
}

TEST(FloatMatrixRefused, AnInverseInPlaceWithoutRoomKeepsTheMatrix)
{
    TestAllocator allocator;
    Held<FloatMatrix> x(allocator, 2, 2, {2, 0, 0, 4});
    allocator.RefuseFrom(1);
    EXPECT_EQ(NuvMatrix_NuvFloat32Inverse(x.get(), x.get()), NUV_FALSE);
    EXPECT_EQ(x.Elements(), (std::vector<float>{2, 0, 0, 4}));
}

TEST(FloatMatrixRefused, AnInverseThatIsNotSquareAndFindsNoRoomLeavesNothing)
{
    TestAllocator allocator;
    Held<FloatMatrix> x(allocator, 1, 2, {2, 4});
    Held<FloatMatrix> result(allocator);
    allocator.RefuseFrom(1);
    EXPECT_EQ(NuvMatrix_NuvFloat32Inverse(x.get(), result.get()), NUV_FALSE);
    EXPECT_EQ(allocator.LiveBlocks(), 1U);
}

/// Shapes whose element count wraps to a small number: the block is small, and no operation may
/// write where the shape says.
TYPED_TEST(MatrixRefused, AShapeWhoseElementCountWrapsIsNeverWalkedByItsShape)
{
    typename TypeParam::Matrix x;
    ASSERT_EQ(TypeParam::Construct(&x, 0x10000, 0x10001, this->allocator), &x);
    TypeParam::Reset(&x);
    Held<TypeParam> small(this->allocator, 1, 1, {3});
    EXPECT_EQ(TypeParam::CopyRange(small.get(), &x, 0, 0, 0xFFFF, 0x10000, 1, 1), small.get());
    EXPECT_EQ(TypeParam::CopyRange(&x, small.get(), 0xFFFF, 0x10000, 0, 0, 1, 1), &x);
    EXPECT_EQ(TypeParam::SwapRow(&x, &x, 0, 0xFFFF), NUV_TRUE);
    EXPECT_EQ(TypeParam::SwapColumn(&x, &x, 0, 0x10000), NUV_TRUE);
    Held<TypeParam> result(this->allocator);
    EXPECT_EQ(TypeParam::Add(&x, &x, result.get()), NUV_TRUE);
    EXPECT_EQ(TypeParam::MultiplyScalar(&x, typename TypeParam::Element(2), result.get()),
              NUV_TRUE);
    Held<TypeParam> transposed(this->allocator);
    EXPECT_EQ(TypeParam::Transpose(&x, transposed.get()), NUV_TRUE);
    Held<TypeParam> product(this->allocator);
    EXPECT_EQ(TypeParam::Multiply(&x, transposed.get(), product.get()), NUV_TRUE);
    this->blocks.CheckGuards();
    TypeParam::Destruct(&x);
}
