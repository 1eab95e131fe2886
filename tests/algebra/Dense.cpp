/// Arithmetic in machine words and the exact solution of bordered systems, against integers of any
/// size.
#include "Nuv/Algebra/Dense/BorderedSystem.hpp"
#include "Nuv/Algebra/Dense/WordQuotient.hpp"
#include "Nuv/Algebra/Rational.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Random.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <vector>

namespace nuv::test
{
namespace
{

/// Of any length up to the width, with zeros at the end more often than chance has them.
std::vector<Word> Draw(Random& random, unsigned width)
{
    std::vector<Word> words(width, 0);
    const int bits = random.Between(0, static_cast<int>(64 * width) - 2);
    for (unsigned k = 0; 64 * static_cast<int>(k) < bits; ++k)
        words[k] = random.Next() >> (bits - 64 * static_cast<int>(k) < 64 ? 64 - bits % 64 : 0);
    if (random.OneIn(3))
        words[0] = 0;
    if (random.OneIn(2))
        NegateWords(words.data(), width);
    return words;
}

Integer NumberOf(const std::vector<Word>& words)
{
    return ToInteger(words.data(), static_cast<unsigned>(words.size()));
}

TEST(Words, AreIntegersModuloTheirWidth)
{
    Random random(1);
    for (int round = 0; round < ShareOf(20000); ++round)
    {
        const auto width = static_cast<unsigned>(random.Between(1, 4));
        const std::vector<Word> x = Draw(random, width);
        const std::vector<Word> y = Draw(random, width);
        const unsigned wide = 2 * width + 1;
        std::vector<Word> longX(wide);
        std::vector<Word> longY(wide);
        CopyWords(x.data(), width, longX.data(), wide);
        CopyWords(y.data(), width, longY.data(), wide);
        ASSERT_EQ(NumberOf(longX), NumberOf(x));
        ASSERT_EQ(SignOf(x.data(), width), NumberOf(x).Sign());
        ASSERT_EQ(CompareWords(x.data(), y.data(), width) < 0, NumberOf(x) < NumberOf(y));
        ASSERT_EQ(CompareWords(x.data(), y.data(), width) == 0, NumberOf(x) == NumberOf(y));
        const Integer magnitude = Abs(NumberOf(x));
        const bool isMore =
            SignOf(x.data(), width) < 0 && TrailingZeros(magnitude) + 1 != BitLength(magnitude);
        ASSERT_EQ(BitLength(x.data(), width), BitLength(magnitude) + (isMore ? 1 : 0));

        std::vector<Word> product(wide, 0);
        AddProduct(product.data(), longX.data(), longY.data(), wide);
        ASSERT_EQ(NumberOf(product), NumberOf(x) * NumberOf(y));
        std::vector<Word> sum = product;
        SubtractProduct(sum.data(), longX.data(), 12345, wide);
        ASSERT_EQ(NumberOf(sum), NumberOf(x) * NumberOf(y) - NumberOf(x) * Integer(12345));
        if (NumberOf(y) == 0)
            continue;
        // The quotient by the odd part, after the shift by the other.
        const unsigned shift = TrailingZeros(longY.data());
        ASSERT_EQ(shift, TrailingZeros(NumberOf(y)));
        ShiftRight(product.data(), wide, shift);
        ShiftRight(longY.data(), wide, shift);
        ASSERT_EQ(NumberOf(longY) * (Integer(1) << shift), NumberOf(y));
        DivideExactly(product.data(), longY.data(), InverseOf(longY[0]), wide);
        ASSERT_EQ(NumberOf(product), NumberOf(x));
    }
}

TEST(Words, RoundQuotientsAsIntegersDo)
{
    Random random(2);
    for (int round = 0; round < ShareOf(20000); ++round)
    {
        const auto width = static_cast<unsigned>(random.Between(1, 5));
        const std::vector<Word> numerator = Draw(random, width);
        std::vector<Word> denominator = Draw(random, 3);
        if (NumberOf(denominator) < 0)
            NegateWords(denominator.data(), 3);
        denominator[0] |= 1;
        // Now and then by far more than the words have room for, or out of a double's range.
        const int most = random.OneIn(20) ? 2500 : 30;
        const Scale scale{random.Between(-most, most), random.Between(-most, most)};
        const Integer top =
            NumberOf(numerator) * PowerOf({std::max(scale.two, 0), std::max(scale.five, 0)});
        const Integer bottom =
            NumberOf(denominator) * PowerOf({std::max(-scale.two, 0), std::max(-scale.five, 0)});
        ASSERT_EQ(QuotientToDouble(numerator.data(), width, denominator.data(), 3, scale),
                  QuotientToDouble(top, bottom))
            << round;
    }
}

/// The words that lead are equal, or next to each other, and more is below: the quotient is as
/// close to 1 as the first 64 bits of it tell.
TEST(Words, RoundQuotientsNextToOne)
{
    const Word most = ~Word{0};
    const std::vector<std::vector<Word>> numbers = {
        {1, 0, 1, 0}, {3, 0, 1, 0}, {1, most - 1, 0, 0}, {1, most, 0, 0}, {most, most, 0, 0}};
    for (const std::vector<Word>& top : numbers)
        for (const std::vector<Word>& bottom : numbers)
            EXPECT_EQ(QuotientToDouble(top.data(), 4, bottom.data(), 4, {}),
                      QuotientToDouble(NumberOf(top), NumberOf(bottom)));
}

/// Half way between two doubles, a little below, and a little above.
TEST(Words, RoundHalvesToEven)
{
    for (const Word factor : {Word{1} << 20, ~Word{0} / 3})
    {
        for (const int offset : {-1, 0, 1})
        {
            const Word half = (Word{1} << 53) + 1;
            std::vector<Word> numerator(3, 0);
            AddProduct(numerator.data(), std::vector<Word>{half, 0, 0}.data(), factor, 3);
            numerator[0] += static_cast<Word>(offset);
            const std::vector<Word> denominator{factor, 0};
            EXPECT_EQ(QuotientToDouble(numerator.data(), 3, denominator.data(), 2, {}),
                      offset > 0 ? 0x1p53 + 2 : 0x1p53);
        }
    }
}

/// Half way between two doubles by what leads, but for a last bit of either number far below.
TEST(Words, RoundHalvesByWhatIsFarBelow)
{
    Random random(5);
    for (int round = 0; round < 200; ++round)
    {
        const Integer half = (Integer(random.Next() >> 12) + Power(2, 52)) * 2 + 1;
        const Integer factor = random.Between(1, 1000);
        const Integer top = (half * factor << 100) + (random.OneIn(2) ? 1 : 0);
        const Integer bottom = (factor << 100) + (random.OneIn(2) ? 1 : 0);
        const auto words = [](Integer number)
        {
            std::vector<Word> result;
            for (int k = 0; k < 4; ++k, number >>= 64)
                result.push_back(number.LowWord());
            return result;
        };
        EXPECT_EQ(QuotientToDouble(words(top).data(), 4, words(bottom).data(), 4, {}),
                  QuotientToDouble(top, bottom));
    }
}

/// M x = denominator * r and y M = denominator * c, by multiplying out.
void ExpectSolved(const BorderedSystem& system, unsigned order,
                  const std::vector<std::vector<Integer>>& given)
{
    const unsigned width = system.Width();
    const Integer denominator = ToInteger(system.Denominator(), width);
    ASSERT_GT(denominator, 0);
    for (unsigned i = 0; i < order; ++i)
    {
        Integer row(0);
        Integer column(0);
        for (unsigned j = 0; j < order; ++j)
        {
            row.AddProduct(given[i][j], ToInteger(system.X(j), width));
            column.AddProduct(given[j][i], ToInteger(system.Y(j), width));
        }
        ASSERT_EQ(row, given[i][order] * denominator);
        ASSERT_EQ(column, given[order][i] * denominator);
    }
}

TEST(BorderedSystem, SolvesBothWays)
{
    Random random(3);
    BorderedSystem system;
    int solved = 0;
    for (int round = 0; round < ShareOf(4000); ++round)
    {
        const auto order = static_cast<unsigned>(random.Between(0, 8));
        const int bits = random.Between(1, 120);
        const int zeros = random.Between(1, 4);
        system.Begin(order);
        std::vector given(order + 1, std::vector<Integer>(order + 1));
        for (unsigned i = 0; i <= order; ++i)
        {
            for (unsigned j = 0; j <= order; ++j)
            {
                std::vector<Word> words(BorderedSystem::kEntryWidth, 0);
                if (zeros < 2 || !random.OneIn(zeros))
                {
                    words[0] = random.Next();
                    words[1] = random.Next();
                    ShiftRight(words.data(), 3, static_cast<unsigned>(128 - bits));
                    words[2] = 0;
                }
                // Powers of two in the pivots.
                if (random.OneIn(8))
                    words[0] = 0;
                if (random.OneIn(2))
                    NegateWords(words.data(), BorderedSystem::kEntryWidth);
                std::copy(words.begin(), words.end(), system.Entry(i, j));
                given[i][j] = NumberOf(words);
            }
        }
        if (!system.Solve())
            continue;
        ++solved;
        ExpectSolved(system, order, given);
    }
    EXPECT_GT(solved, ShareOf(4000) / 2);
}

/// Small numbers times one power of two, which the pivots have as often as there are rows: most of
/// their words are zeros, or shifted out.
TEST(BorderedSystem, DividesByPivotsOfLongPowersOfTwo)
{
    Random random(6);
    BorderedSystem system;
    int solved = 0;
    for (const unsigned twos : {1u, 31u, 60u, 63u, 64u, 65u, 100u, 127u, 128u, 150u})
    {
        for (int round = 0; round < 40; ++round)
        {
            const auto order = static_cast<unsigned>(random.Between(1, 6));
            system.Begin(order);
            std::vector given(order + 1, std::vector<Integer>(order + 1));
            for (unsigned i = 0; i <= order; ++i)
            {
                for (unsigned j = 0; j <= order; ++j)
                {
                    const int number = random.Between(-3, 3);
                    given[i][j] = Integer(number) * Power(Integer(2), twos);
                    Word* const entry = system.Entry(i, j);
                    entry[twos / 64] = static_cast<Word>(std::abs(number)) << twos % 64;
                    if (twos % 64 > 61)
                        entry[twos / 64 + 1] =
                            static_cast<Word>(std::abs(number)) >> (64 - twos % 64);
                    if (number < 0)
                        NegateWords(entry, BorderedSystem::kEntryWidth);
                    ASSERT_EQ(ToInteger(entry, BorderedSystem::kEntryWidth), given[i][j]);
                }
            }
            if (!system.Solve())
                continue;
            ++solved;
            ASSERT_NO_FATAL_FAILURE(ExpectSolved(system, order, given));
        }
    }
    EXPECT_GT(solved, 100);
}

/// Sylvester's matrix of order 8 has the largest determinant that entries up to 2^31 - 1 allow, 12
/// bits more than the product of its rows' largest numbers, which ends at the end of a word.
TEST(BorderedSystem, HasRoomForTheLargestDeterminant)
{
    constexpr unsigned kOrder = 8;
    const std::int64_t most = 0x7FFFFFFF;
    BorderedSystem system;
    system.Begin(kOrder);
    std::vector given(kOrder + 1, std::vector<Integer>(kOrder + 1));
    for (unsigned i = 0; i <= kOrder; ++i)
    {
        for (unsigned j = 0; j <= kOrder; ++j)
        {
            const bool isNegative = i < kOrder && j < kOrder && std::popcount(i & j) % 2 != 0;
            given[i][j] = isNegative ? -most : most;
            *system.Entry(i, j) = static_cast<Word>(most);
            if (isNegative)
                NegateWords(system.Entry(i, j), BorderedSystem::kEntryWidth);
        }
    }
    ASSERT_TRUE(system.Solve());
    ExpectSolved(system, kOrder, given);
    Integer determinant = Power(Integer(most), kOrder);
    EXPECT_EQ(ToInteger(system.Denominator(), system.Width()), determinant << 12);
}

/// A row that others add up to, and costs that are no row of the matrix. The same object solves
/// systems before and between, so that numbers of these lie about.
TEST(BorderedSystem, RefusesASingularMatrixWhateverItsCostsAre)
{
    Random random(7);
    BorderedSystem system;
    for (int round = 0; round < ShareOf(2000); ++round)
    {
        const auto order = static_cast<unsigned>(random.Between(1, 7));
        const auto dependent =
            static_cast<unsigned>(random.Between(0, static_cast<int>(order) - 1));
        const int bits = random.Between(1, 62);
        const auto fill = [&](bool isSingular)
        {
            system.Begin(order);
            for (unsigned j = 0; j <= order; ++j)
            {
                std::vector<Word> sum(BorderedSystem::kEntryWidth, 0);
                for (unsigned i = 0; i <= order; ++i)
                {
                    if (i == dependent && isSingular)
                        continue;
                    Word* const entry = system.Entry(i, j);
                    *entry = random.Next() >> (64 - bits);
                    if (random.OneIn(2))
                        NegateWords(entry, BorderedSystem::kEntryWidth);
                    if (i < order && i % 2 == 0)
                        AddProduct(sum.data(), entry, Word{i + 1}, BorderedSystem::kEntryWidth);
                }
                if (isSingular)
                    std::copy(sum.begin(), sum.end(), system.Entry(dependent, j));
            }
        };
        fill(false);
        (void)system.Solve();
        fill(true);
        ASSERT_FALSE(system.Solve()) << round;
    }
}

TEST(BorderedSystem, RefusesSingularMatricesAndLongNumbers)
{
    BorderedSystem system;
    const auto fill = [&](unsigned order, Word diagonal, unsigned at)
    {
        system.Begin(order);
        for (unsigned k = 0; k <= order; ++k)
            system.Entry(k, k)[at] = diagonal;
    };
    fill(2, 3, 0);
    EXPECT_TRUE(system.Solve());
    system.Begin(2);
    for (unsigned k = 0; k < 4; ++k)
        *system.Entry(k / 2, k % 2) = 1;
    EXPECT_FALSE(system.Solve()) << "two equal rows";
    system.Begin(3);
    *system.Entry(0, 0) = 1;
    EXPECT_FALSE(system.Solve()) << "a column of zeros";
    // 25 numbers of 180 bits do not fit into 64 words, and pivots of 2^180 not into those that
    // their order needs.
    fill(25, 1, 3);
    EXPECT_FALSE(system.Solve());
    for (const unsigned order : {1u, 3u})
    {
        fill(order, Word{1} << 52, 2);
        EXPECT_FALSE(system.Solve()) << order;
    }
}

}  // namespace
}  // namespace nuv::test
