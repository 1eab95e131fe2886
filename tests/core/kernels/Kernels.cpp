// The float loops of every instruction set that this machine has, compared bit by bit with plain
// loops over random, tied and special values, for every length that decides how they are taken.
#include <cfloat>
#include <cmath>
#include <limits>

#include "tests/core/kernels/KernelTest.hpp"

namespace
{
using KernelsAgainstPlainLoops = KernelTest;

INSTANTIATE_TEST_SUITE_P(Sets, KernelsAgainstPlainLoops, testing::ValuesIn(kAllSets));

// Tests of numbers, and choices
// -----------------------------------------------------------------------

bool AreFinite(const Floats& x)
{
    for (const float element : x)
        if (element - element != 0.0F)
            return false;
    return true;
}

TEST_P(KernelsAgainstPlainLoops, OneNumberThatIsNotFiniteIsFoundWhereverItStands)
{
    const float infinity = std::numeric_limits<float>::infinity();
    for (const std::size_t length : {std::size_t{0}, std::size_t{16}, std::size_t{80}})
        for (std::size_t place = 0; place <= length; ++place)
            for (const float odd : {infinity, -infinity, std::nanf(""), FLT_MAX, -0x1p-149F})
            {
                Floats x(length, 3.0F);
                if (place != length)
                    x[place] = odd;
                EXPECT_EQ(kernels->isFinite(x.data(), length), AreFinite(x)) << place;
            }
}

TEST_P(KernelsAgainstPlainLoops, AnEtaColumnIsTheNegatedMultipleAndToldWhenNotFinite)
{
    for (int i = 0; i != ShareOf(600); ++i)
    {
        Floats direction = Vector(Tiles(5), i % 2 == 0);
        const std::size_t row = random.Below(static_cast<unsigned>(direction.size()));
        direction[row] = Draw(i % 3 == 0);
        const float reciprocal = 1.0F / direction[row];
        Floats expected;
        for (const float element : direction)
            expected.push_back(0.0F - element * reciprocal);
        const bool isFinite = AreFinite(expected);
        expected[row] = 1.0F - (direction[row] - 1.0F) * reciprocal;
        Floats found(direction.size());
        EXPECT_EQ(kernels->formEta(direction.data(), static_cast<NuvUint>(row), found.data(),
                                   found.size()),
                  isFinite);
        EXPECT_TRUE(IsSame(expected, found));
    }
}

TEST_P(KernelsAgainstPlainLoops, TheLargestDifferenceAboveZeroIsTheLastOfEqualOnes)
{
    for (int i = 0; i != ShareOf(2000) && !HasFailure(); ++i)
    {
        const std::size_t length = Tiles(5);
        const Floats costs = Vector(length, i % 2 == 0);
        Floats sums = Vector(length, i % 2 == 0);
        // Every tenth time no difference is above 0, and some are 0.
        if (i % 10 == 1)
            for (std::size_t j = 0; j != length; ++j)
                sums[j] = costs[j] + (random.Chance(50) ? 1.0F : 0.0F);
        std::vector<std::uint32_t> numbers(length);
        for (auto& number : numbers)
            number = random.Below(1000);
        Floats expected;
        nuv::Choice best = {0.0F, 0};
        for (std::size_t j = 0; j != length; ++j)
        {
            const float difference = costs[j] - sums[j];
            expected.push_back(difference);
            if (difference > best.value)
                best = {difference, numbers[j]};
            else if (difference == best.value && best.value != 0.0F && numbers[j] > best.number)
                best.number = numbers[j];
        }
        Floats found(length);
        const nuv::Choice choice =
            kernels->findLargest(costs.data(), sums.data(), numbers.data(), found.data(), length);
        EXPECT_TRUE(IsSame(expected, found));
        EXPECT_TRUE(IsSame(best.value, choice.value));
        EXPECT_EQ(best.number, choice.number) << "case " << i;
    }
}

TEST_P(KernelsAgainstPlainLoops, TheSmallestRatioIsTheFirstOfEqualOnes)
{
    for (int i = 0; i != ShareOf(2000) && !HasFailure(); ++i)
    {
        const std::size_t length = Tiles(5);
        const Floats values = Vector(length, i % 2 == 0);
        // Every tenth time no direction is above 0.
        const Floats direction = i % 10 == 1 ? Floats(length, -1.0F) : Vector(length, i % 2 == 0);
        Floats expected;
        nuv::Choice best = {FLT_MAX, 0};
        for (std::size_t j = 0; j != length; ++j)
        {
            expected.push_back(direction[j] > 0.0F ? values[j] / direction[j] : FLT_MAX);
            if (expected[j] < best.value)
                best = {expected[j], static_cast<std::uint32_t>(j)};
        }
        Floats found(length);
        const nuv::Choice choice =
            kernels->findSmallestRatio(values.data(), direction.data(), found.data(), length);
        EXPECT_TRUE(IsSame(expected, found));
        // −0 and +0 are equal: either may be the one that was found.
        EXPECT_TRUE(IsSame(best.value, choice.value) || best.value == choice.value);
        EXPECT_EQ(best.number, choice.number) << "case " << i;
    }
}

// Matrices of any shape
// -------------------------------------------------------------------------------

TEST_P(KernelsAgainstPlainLoops, AProductSumsInIncreasingIndexOfTheInnerDimension)
{
    for (int i = 0; i != ShareOf(400) && !HasFailure(); ++i)
    {
        const std::size_t rows = random.Below(10);
        const std::size_t inner = random.Below(9);
        const std::size_t cols = random.Below(70);
        const Floats x = Vector(rows * inner, i % 2 == 0);
        const Floats y = Vector(inner * cols, i % 2 == 0);
        Floats expected;
        for (std::size_t r = 0; r != rows; ++r)
            for (std::size_t j = 0; j != cols; ++j)
            {
                float sum = 0.0F;
                for (std::size_t k = 0; k != inner; ++k)
                    sum = sum + x[r * inner + k] * y[k * cols + j];
                expected.push_back(sum);
            }
        Floats found(rows * cols, 9.0F);
        kernels->multiply(x.data(), y.data(), found.data(), rows, inner, cols);
        EXPECT_TRUE(IsSame(expected, found)) << rows << " x " << inner << " x " << cols;
    }
}

TEST_P(KernelsAgainstPlainLoops, RowsOfAnyLengthAreDividedAndSubtracted)
{
    for (std::size_t length = 0; length != 70; ++length)
        for (const bool isWild : {false, true})
        {
            const float factor = Draw(isWild);
            Floats quotient = Vector(length + 1, isWild);
            Floats difference = quotient;
            const Floats y = Vector(length + 1, isWild);
            Floats expectedQuotient = quotient;
            Floats expectedDifference = difference;
            for (std::size_t i = 0; i != length; ++i)
            {
                expectedQuotient[i] = quotient[i] / factor;
                expectedDifference[i] = difference[i] - y[i] * factor;
            }
            kernels->divide(quotient.data(), factor, length);
            kernels->subtractMultiple(difference.data(), y.data(), factor, length);
            EXPECT_TRUE(IsSame(expectedQuotient, quotient)) << length;
            EXPECT_TRUE(IsSame(expectedDifference, difference)) << length;
        }
}

TEST(KernelsOfTheMachine, AreTheLastOfThoseThatItHas)
{
    EXPECT_EQ(nuv::KernelsOf(InstructionSet::Plain), nuv::PlainKernels());
    EXPECT_NE(nuv::PlainKernels(), nullptr);
    const Kernels* widest = nullptr;
    for (const InstructionSet set : kAllSets)
        if (const Kernels* const kernels = nuv::KernelsOf(set))
        {
            EXPECT_NE(kernels, widest);
            widest = kernels;
        }
    EXPECT_EQ(nuv::KernelsOfThisMachine(), widest);
    if (nuv::BaselineKernels())
    {
        EXPECT_EQ(nuv::KernelsOf(InstructionSet::Baseline), nuv::BaselineKernels());
    }
#if defined(__GNUC__) && defined(__x86_64__)
    if (__builtin_cpu_supports("avx2"))
    {
        EXPECT_EQ(nuv::KernelsOf(InstructionSet::Avx2), nuv::Avx2Kernels());
    }
    if (__builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq") &&
        __builtin_cpu_supports("avx512vl"))
    {
        EXPECT_EQ(nuv::KernelsOf(InstructionSet::Avx512), nuv::Avx512Kernels());
    }
#endif
}
}  // namespace
