// The update of the basis inverse by one pivot in product form. Its bits over random and special
// values are compared in MatrixAgainstNaive.cpp.
#include <gtest/gtest.h>

#include <cmath>

#include "Nuv/Utils/Simplex/DenseIteration.h"
#include "tests/core/matrices/MatrixOperations.hpp"
#include "tests/support/RefusedAllocations.hpp"

namespace
{
using Floats = std::vector<float>;

class BasisUpdate : public testing::Test
{
protected:
    BasisUpdate()
    {
        allocator.AcceptLeftBlocks();
    }

    void Update(Held<FloatMatrix>* A, Held<FloatMatrix>* inverse, NuvUint k, NuvUint i)
    {
        EXPECT_EQ(
            NuvRevisedSimplexAlogirthmBasisUpdate(A->get(), inverse->get(), k, i, i, result.get()),
            NUV_TRUE);
    }

    TestAllocator allocator;
    Held<FloatMatrix> result{allocator};
};

// Edge cases --------------------------------------------------------------------------------------

TEST_F(BasisUpdate, OfOneRowIsTheReciprocalUpToRounding)
{
    for (const float pivot : {2.0F, 3.0F, 7.0F, 0.1F, 1e-20F})
    {
        Held<FloatMatrix> A(allocator, 1, 1, {0});
        A.matrix.data[0] = pivot;
        Held<FloatMatrix> inverse(allocator, 1, 1, {1});
        Update(&A, &inverse, 0, 0);
        const float reciprocal = 1.0F / pivot;
        EXPECT_EQ(result.matrix.data[0], 1.0F - (pivot - 1.0F) * reciprocal);
    }
}

TEST_F(BasisUpdate, OfTheIdentityIsTheInverseEtaMatrix)
{
    Held<FloatMatrix> A(allocator, 2, 3, {9, 2, 9, 9, 4, 9});
    Held<FloatMatrix> inverse(allocator, 2, 2, {1, 0, 0, 1});
    Update(&A, &inverse, 1, 0);
    EXPECT_EQ(result.Elements(), (Floats{0.5F, 0, -2, 1}));
}

TEST_F(BasisUpdate, LeavesItsOperandsAlone)
{
    Held<FloatMatrix> A(allocator, 2, 1, {2, 0});
    Held<FloatMatrix> inverse(allocator, 2, 2, {1, 2, 3, 4});
    Update(&A, &inverse, 0, 0);
    EXPECT_EQ(A.Elements(), (Floats{2, 0}));
    EXPECT_EQ(inverse.Elements(), (Floats{1, 2, 3, 4}));
    EXPECT_EQ(result.Elements(), (Floats{0.5F, 1, 0, -2}));
}

// The rounding ------------------------------------------------------------------------------------

TEST_F(BasisUpdate, MultipliesByTheReciprocalAndDoesNotDivide)
{
    // Row 0 of the eta column is 0 − 5 · fl(1 / 3), which is not −5 / 3.
    Held<FloatMatrix> A(allocator, 2, 1, {5, 3});
    Held<FloatMatrix> inverse(allocator, 2, 2, {1, 0, 0, 1});
    Update(&A, &inverse, 0, 1);
    ASSERT_NE(5.0F * (1.0F / 3.0F), 5.0F / 3.0F);
    EXPECT_EQ(result.matrix.data[1], -(5.0F * (1.0F / 3.0F)));
    EXPECT_EQ(result.matrix.data[3], 1.0F - 2.0F * (1.0F / 3.0F));
}

TEST_F(BasisUpdate, APivotOfZeroFillsTheResultWithInfinitiesAndNaNs)
{
    Held<FloatMatrix> A(allocator, 2, 1, {1, 0});
    Held<FloatMatrix> inverse(allocator, 2, 2, {1, 0, 0, 1});
    Update(&A, &inverse, 0, 1);
    for (const float element : result.Elements())
        EXPECT_FALSE(std::isfinite(element));
}

TEST_F(BasisUpdate, APivotWithoutAReciprocalIsCarriedOn)
{
    Held<FloatMatrix> A(allocator, 1, 1, {0});
    A.matrix.data[0] = 0x1p-130F;
    Held<FloatMatrix> inverse(allocator, 1, 1, {1});
    Update(&A, &inverse, 0, 0);
    EXPECT_TRUE(std::isinf(result.matrix.data[0]));
}

// Storage -----------------------------------------------------------------------------------------

TEST_F(BasisUpdate, WithoutMemoryReadsNothingAndAnswersFalse)
{
    ForEachRefusedAllocation(
        [](TestAllocator& refusing)
        {
            refusing.AcceptLeftBlocks();
            NuvMatrix_NuvFloat32 A;
            NuvMatrix_NuvFloat32 inverse;
            NuvMatrix_NuvFloat32 updated;
            {
                const auto spared = refusing.Spare();
                NuvMatrix_NuvFloat32ConstructIdentity(&A, 3, refusing);
                NuvMatrix_NuvFloat32ConstructIdentity(&inverse, 3, refusing);
                NuvMatrix_NuvFloat32ConstructIdentity(&updated, 3, refusing);
            }
            NuvMatrix_NuvFloat32SetVal(&A, 0, 1, 4.0F);
            const bool isUpdated =
                NuvRevisedSimplexAlogirthmBasisUpdate(&A, &inverse, 1, 1, 0, &updated) == NUV_TRUE;
            EXPECT_EQ(isUpdated, refusing.Refusals() == 0);
            EXPECT_EQ(NuvMatrix_NuvFloat32At(&updated, 0, 1), isUpdated ? -4.0F : 0.0F);
            for (NuvMatrix_NuvFloat32* const x : {&A, &inverse, &updated})
                NuvMatrix_NuvFloat32Destruct(x);
            EXPECT_EQ(refusing.LiveSizes(),
                      isUpdated ? TestAllocator::Sizes{36} : TestAllocator::Sizes{});
        });
}

TEST_F(BasisUpdate, AResultWithoutMemoryAnswersFalseAndLeavesNothing)
{
    Held<FloatMatrix> A(allocator, 2, 2, {1, 0, 0, 1});
    TestAllocator refusing;
    Held<FloatMatrix> refused(refusing);
    refusing.RefuseFrom(1);
    EXPECT_EQ(NuvRevisedSimplexAlogirthmBasisUpdate(A.get(), A.get(), 0, 0, 0, refused.get()),
              NUV_FALSE);
    EXPECT_EQ(allocator.LiveBlocks(), 1U);
}

TEST_F(BasisUpdate, WhatHasNoPlaceOrNoStorageIsNotReadAndAnswersFalse)
{
    Held<FloatMatrix> A(allocator, 2, 3, {1, 2, 3, 4, 5, 6});
    Held<FloatMatrix> inverse(allocator, 2, 2, {1, 0, 0, 1});
    Held<FloatMatrix> larger(allocator, 3, 3, {1, 0, 0, 0, 1, 0, 0, 0, 1});
    NuvMatrix_NuvFloat32 none = {allocator, 2, 2, nullptr};
    const auto isUpdated = [&](const NuvMatrix_NuvFloat32* basis, const NuvMatrix_NuvFloat32* inv,
                               NuvUint k, NuvUint i) {
        return NuvRevisedSimplexAlogirthmBasisUpdate(basis, inv, k, i, 0, result.get()) == NUV_TRUE;
    };
    const std::size_t blocks = allocator.LiveBlocks();
    EXPECT_FALSE(isUpdated(&none, inverse.get(), 0, 0));
    EXPECT_FALSE(isUpdated(A.get(), &none, 0, 0));
    EXPECT_FALSE(isUpdated(A.get(), A.get(), 0, 0));
    EXPECT_FALSE(isUpdated(A.get(), inverse.get(), 3, 0));
    EXPECT_FALSE(isUpdated(A.get(), inverse.get(), 0, 2));
    EXPECT_FALSE(isUpdated(A.get(), larger.get(), 0, 0));
    EXPECT_EQ(allocator.LiveBlocks(), blocks);
    EXPECT_TRUE(isUpdated(A.get(), inverse.get(), 2, 1));
    EXPECT_TRUE(isUpdated(larger.get(), inverse.get(), 2, 1));
}

TEST_F(BasisUpdate, AResultWithoutAShapeGetsOne)
{
    Held<FloatMatrix> A(allocator, 3, 3, {1, 0, 0, 0, 1, 0, 0, 0, 1});
    Update(&A, &A, 2, 2);
    EXPECT_TRUE(result.HasShape(3, 3));
    EXPECT_EQ(result.Elements(), A.Elements());
}
}  // namespace
