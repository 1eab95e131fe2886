// Products, inverses and basis updates compared with naive loops, bit for bit, over random,
// structured and special values. NaNs compare as NaNs.
#include "tests/core/matrices/MatrixOperations.hpp"

#include <algorithm>
#include <string>

#include "Nuv/Utils/Simplex/DenseIteration.h"
#include "tests/reference/CoreSolve.hpp"
#include "tests/reference/RandomModels.hpp"
#include "tests/support/Effort.hpp"

using reference::Random;

namespace
{
/// How the elements of a random matrix are drawn.
enum class Values
{
    Ordinary,
    SmallIntegers,
    MostlyZeros,
    WideExponents,
    Special,
    AnyBits
};

constexpr Values kAllValues[] = {Values::Ordinary,      Values::SmallIntegers, Values::MostlyZeros,
                                 Values::WideExponents, Values::Special,       Values::AnyBits};

float Draw(Values values, Random* random)
{
    switch (values)
    {
    case Values::Ordinary:
        return random->Symmetric(10.0F);
    case Values::SmallIntegers:
        return static_cast<float>(random->Between(-2, 2));
    case Values::MostlyZeros:
        if (random->Chance(80))
            return random->Chance(50) ? 0.0F : -0.0F;
        return random->Symmetric(3.0F);
    case Values::WideExponents:
    {
        const float finite = random->AnyBits();
        return finite - finite == 0.0F ? finite : 1.0F;
    }
    case Values::Special:
        return random->Chance(40) ? reference::SpecialValue(random) : random->Symmetric(4.0F);
    default:
        return random->AnyBits();
    }
}

reference::Matrix RandomMatrix(std::size_t rows, std::size_t columns, Values values, Random* random)
{
    reference::Matrix x(rows, columns);
    for (float& element : x.elements)
        element = Draw(values, random);
    return x;
}

/// The identity but for a few entries, as a basis inverse is after a few pivots.
reference::Matrix NearIdentity(std::size_t dimension, Values values, Random* random)
{
    reference::Matrix x = reference::Identity(dimension);
    const std::size_t column = random->Below(static_cast<std::uint32_t>(dimension));
    for (std::size_t i = 0; i < dimension; ++i)
        x.at(i, column) = Draw(values, random);
    return x;
}

/// The library's matrix with the elements of `from`, for the length of a scope.
class Copied
{
public:
    Copied(const reference::Matrix& from, NuvAllocator* allocator)
    {
        NuvMatrix_NuvFloat32Construct(&matrix, static_cast<NuvUint>(from.rows),
                                      static_cast<NuvUint>(from.columns), allocator);
        std::copy(from.elements.begin(), from.elements.end(), matrix.data);
    }

    ~Copied()
    {
        NuvMatrix_NuvFloat32Destruct(&matrix);
    }

    Copied(const Copied&) = delete;
    Copied& operator=(const Copied&) = delete;

    NuvMatrix_NuvFloat32 matrix;
};

class AgainstNaive : public testing::TestWithParam<Values>
{
protected:
    std::size_t Size(std::uint32_t limit)
    {
        return 1 + random.Below(limit);
    }

    TestAllocator allocator;
    Random random{0xC0FFEE + static_cast<std::uint64_t>(GetParam())};
};

void ExpectSame(const reference::Matrix& expected, const NuvMatrix_NuvFloat32& found)
{
    EXPECT_EQ(Difference(expected, found), "");
}

TEST_P(AgainstNaive, MultiplyHasTheSameBits)
{
    for (int i = 0; i < ShareOf(3000) && !HasFailure(); ++i)
    {
        const std::size_t rows = Size(i % 10 == 0 ? 70 : 12);
        const std::size_t inner = Size(i % 10 == 0 ? 70 : 12);
        const std::size_t columns = Size(i % 10 == 0 ? 70 : 12);
        SCOPED_TRACE(testing::Message()
                     << "case " << i << ": " << rows << " x " << inner << " x " << columns);
        const reference::Matrix x = RandomMatrix(rows, inner, GetParam(), &random);
        const reference::Matrix y = RandomMatrix(inner, columns, GetParam(), &random);
        Copied coreX(x, allocator);
        Copied coreY(y, allocator);
        Held<FloatMatrix> result(allocator);
        NuvMatrix_NuvFloat32Multiply(&coreX.matrix, &coreY.matrix, result.get());
        ExpectSame(reference::Multiply(x, y), result.matrix);
    }
}

TEST_P(AgainstNaive, ElementwiseOperationsHaveTheSameBits)
{
    for (int i = 0; i < ShareOf(300) && !HasFailure(); ++i)
    {
        SCOPED_TRACE(testing::Message() << "case " << i);
        const reference::Matrix x = RandomMatrix(Size(20), Size(20), GetParam(), &random);
        const reference::Matrix y = RandomMatrix(x.rows, x.columns, GetParam(), &random);
        const float factor = Draw(GetParam(), &random);
        Copied coreX(x, allocator);
        Copied coreY(y, allocator);
        Held<FloatMatrix> result(allocator);
        NuvMatrix_NuvFloat32Subtract(&coreX.matrix, &coreY.matrix, result.get());
        ExpectSame(reference::Subtract(x, y), result.matrix);
        NuvMatrix_NuvFloat32MultiplyScalar(&coreX.matrix, factor, result.get());
        ExpectSame(reference::MultiplyScalar(x, factor), result.matrix);
        NuvMatrix_NuvFloat32Add(&coreX.matrix, &coreY.matrix, result.get());
        for (std::size_t e = 0; e < x.elements.size(); ++e)
            EXPECT_TRUE(reference::IsSame(x.elements[e] + y.elements[e], result.matrix.data[e]));
        NuvMatrix_NuvFloat32Transpose(&coreX.matrix, result.get());
        ExpectSame(reference::Transpose(x), result.matrix);
    }
}

TEST_P(AgainstNaive, InverseHasTheSameBitsAlsoWhereItIsSingular)
{
    int inverted = 0;
    for (int i = 0; i < ShareOf(3000) && !HasFailure(); ++i)
    {
        const std::size_t n = Size(i % 20 == 0 ? 50 : 9);
        SCOPED_TRACE(testing::Message() << "case " << i << ": " << n << " x " << n);
        const reference::Matrix x = random.Chance(25) ? NearIdentity(n, GetParam(), &random)
                                                      : RandomMatrix(n, n, GetParam(), &random);
        const reference::Inverse expected = reference::Invert(x);
        Copied coreX(x, allocator);
        Held<FloatMatrix> result(allocator);
        EXPECT_EQ(NuvMatrix_NuvFloat32Inverse(&coreX.matrix, result.get()),
                  expected.exists ? NUV_TRUE : NUV_FALSE);
        ExpectSame(expected.matrix, result.matrix);
        ExpectSame(x, coreX.matrix);
        inverted += expected.exists ? 1 : 0;
        NuvMatrix_NuvFloat32Inverse(&coreX.matrix, &coreX.matrix);
        ExpectSame(expected.matrix, coreX.matrix);
    }
    EXPECT_GT(inverted, ShareOf(100));
}

TEST_P(AgainstNaive, BasisUpdateHasTheSameBits)
{
    allocator.AcceptLeftBlocks();
    for (int i = 0; i < ShareOf(3000) && !HasFailure(); ++i)
    {
        const std::size_t m = Size(i % 20 == 0 ? 60 : 10);
        const std::size_t columns = Size(10);
        SCOPED_TRACE(testing::Message() << "case " << i << ": " << m << " rows");
        const reference::Matrix A = RandomMatrix(m, columns, GetParam(), &random);
        const Values ofInverse = random.Chance(50) ? GetParam() : Values::MostlyZeros;
        const reference::Matrix inverse = random.Chance(50)
                                              ? NearIdentity(m, ofInverse, &random)
                                              : RandomMatrix(m, m, ofInverse, &random);
        const std::uint32_t k = random.Below(static_cast<std::uint32_t>(columns));
        const std::uint32_t row = random.Below(static_cast<std::uint32_t>(m));
        Copied coreA(A, allocator);
        Copied coreInverse(inverse, allocator);
        Held<FloatMatrix> result(allocator);
        NuvRevisedSimplexAlogirthmBasisUpdate(&coreA.matrix, &coreInverse.matrix, k, row,
                                              random.Below(7), result.get());
        ExpectSame(reference::UpdateBasis(A, inverse, k, row), result.matrix);
        ExpectSame(inverse, coreInverse.matrix);
    }
}

/// One value that is not finite, in an otherwise ordinary update: the evaluation for finite data
/// must not be used for it.
TEST_P(AgainstNaive, BasisUpdateWithOneOddValueHasTheSameBits)
{
    allocator.AcceptLeftBlocks();
    for (int i = 0; i < ShareOf(1000) && !HasFailure(); ++i)
    {
        const std::size_t m = Size(8);
        SCOPED_TRACE(testing::Message() << "case " << i << ": " << m << " rows");
        reference::Matrix A = RandomMatrix(m, 3, Values::MostlyZeros, &random);
        reference::Matrix inverse = RandomMatrix(m, m, Values::MostlyZeros, &random);
        std::vector<float>& target = random.Chance(50) ? A.elements : inverse.elements;
        target[random.Below(static_cast<std::uint32_t>(target.size()))] = Draw(GetParam(), &random);
        const std::uint32_t row = random.Below(static_cast<std::uint32_t>(m));
        Copied coreA(A, allocator);
        Copied coreInverse(inverse, allocator);
        Held<FloatMatrix> result(allocator);
        NuvRevisedSimplexAlogirthmBasisUpdate(&coreA.matrix, &coreInverse.matrix, 1, row, 0,
                                              result.get());
        ExpectSame(reference::UpdateBasis(A, inverse, 1, row), result.matrix);
    }
}

std::string NameOfValues(const testing::TestParamInfo<Values>& values)
{
    static const std::string kNames[] = {"Ordinary",      "SmallIntegers", "MostlyZeros",
                                         "WideExponents", "Special",       "AnyBits"};
    return kNames[static_cast<int>(values.param)];
}

INSTANTIATE_TEST_SUITE_P(AllValues, AgainstNaive, testing::ValuesIn(kAllValues), NameOfValues);
}  // namespace
