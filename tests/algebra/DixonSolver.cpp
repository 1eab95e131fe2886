/// Solutions by p-adic lifting: whatever is guessed of their denominator, and however long the
/// numbers are, the same fractions come out, and they satisfy the system.
#include "Nuv/Algebra/DixonSolver.hpp"
#include "Nuv/Algebra/Lifting/Residues.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Random.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace nuv::test
{
namespace
{

constexpr std::uint64_t kPrime = 4611686018427387847u;

struct System
{
    SparseVectors<ExactNumber> unknowns;
    SparseLu<PrimeField> factors{PrimeField(kPrime)};
    bool isRegular = false;
};

ExactNumber DrawEntry(Random& random, int longest, int widest)
{
    const std::int64_t magnitude =
        static_cast<std::int64_t>(random.Next() >> (64 - random.Between(1, longest))) | 1;
    return {random.OneIn(2) ? magnitude : -magnitude,
            {random.Between(-widest, widest), random.Between(-widest / 4, widest / 4)}};
}

/// Unknown k stands in equation k, so that its position is known, and in up to three others. The
/// entries have up to `longest` bits and scales up to `widest`.
System RandomSystem(Random& random, Index size, int longest, int widest)
{
    System system;
    const PrimeField& field = system.factors.GetField();
    SparseVectors<PrimeField::Value> residues;
    for (Index k = 0; k < size; ++k)
    {
        std::vector<bool> taken(size, false);
        taken[k] = true;
        for (int entry = 0; entry < 3; ++entry)
            taken[static_cast<std::size_t>(random.Between(0, static_cast<int>(size) - 1))] = true;
        for (Index i = 0; i < size; ++i)
        {
            if (!taken[i])
                continue;
            const ExactNumber entry = DrawEntry(random, longest, widest);
            system.unknowns.Append(i, entry);
            residues.Append(
                i, field.Product(field.FromSigned(entry.mantissa), field.PowerOf(entry.scale)));
        }
        system.unknowns.Close();
        residues.Close();
    }
    std::vector<Index> position;
    system.isRegular = system.factors.Factorise(residues, position).empty();
    // Numbered as the factors number them.
    std::vector<Index> unknownAt(size);
    for (Index k = 0; k < size; ++k)
        unknownAt[position[k]] = k;
    system.unknowns = Selected(system.unknowns, unknownAt);
    return system;
}

ScaledVector RandomRightSide(Random& random, Index size)
{
    ScaledVector right{std::vector<Integer>(size), {random.Between(-9, 9), 0}, 1};
    const unsigned longest = random.OneIn(3) ? 400 : 8;
    for (Integer& entry : right.value)
    {
        if (!random.OneIn(3))
            entry = Power(2, static_cast<unsigned>(random.Between(0, static_cast<int>(longest)))) *
                    random.Between(-999, 999);
    }
    right.divisor = random.Between(1, 12);
    return right;
}

Rational Value(const ExactNumber& number)
{
    const Scale up{std::max(number.scale.two, 0), std::max(number.scale.five, 0)};
    return Rational(PowerOf(up) * number.mantissa, PowerOf(up - number.scale));
}

void ExpectSolves(const System& system, const ScaledVector& right, const ExactVector& solution)
{
    std::vector<Rational> sums(right.value.size());
    for (Index k = 0; k < sums.size(); ++k)
    {
        for (const auto [equation, entry] : system.unknowns[k])
            sums[equation] += Value(entry) * solution.At(k);
    }
    for (std::size_t i = 0; i < sums.size(); ++i)
        ASSERT_EQ(sums[i], Rational(right.value[i], right.divisor) * Value({1, right.scale}));
}

/// A multiple or a divisor of the denominator, or a number that has nothing to do with it.
Integer Guess(Random& random, const Integer& denominator)
{
    const std::int64_t factor = random.Between(2, 9999);
    switch (random.Between(0, 3))
    {
    case 0:
        return denominator * factor;
    case 1:
        return denominator / Gcd(denominator, Power(2, 70) * 9);
    case 2:
        return denominator * Power(3, 300) * factor;
    default:
        return Power(7, static_cast<unsigned>(random.Between(1, 400)));
    }
}

TEST(DixonSolver, FindsTheSameFractionsFromAnyGuessAtTheirDenominator)
{
    const auto never = [] { return false; };
    const auto cases = ShareOf(std::uint64_t{3000});
    for (std::uint64_t seed = 1; seed <= cases; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const auto size = static_cast<Index>(random.Between(1, 14));
        // Sums of a row that fit one word, and that do not.
        const bool isShort = random.OneIn(2);
        const System system =
            RandomSystem(random, size, isShort ? 20 : 53, isShort ? 8 : random.Between(0, 60));
        if (!system.isRegular)
            continue;
        const ScaledVector right = RandomRightSide(random, size);
        ExactVector plain;
        DixonSolver solver(system.unknowns, system.factors, DixonSolver::Side::Forward);
        ASSERT_TRUE(solver.Solve(right, plain, never));
        ASSERT_NO_FATAL_FAILURE(ExpectSolves(system, right, plain));
        for (int guess = 0; guess < 3; ++guess)
        {
            DixonSolver guessing(system.unknowns, system.factors, DixonSolver::Side::Forward);
            if (guess != 0)  // else of the last solution
                guessing.ExpectDenominator(Guess(random, solver.Denominator()));
            else
                guessing.ExpectDenominator(solver.Denominator());
            ExactVector again;
            ASSERT_TRUE(guessing.Solve(right, again, never));
            ASSERT_EQ(again.denominator, plain.denominator);
            ASSERT_EQ(again.numerator, plain.numerator);
        }
    }
}

/// Coefficients and right sides whose bits just fill a word, or two, or do not, of either sign:
/// sums of rows of 61 to 67 bits, with a power of two in one coefficient and with a power of five.
TEST(DixonSolver, IsRightWhereNumbersFillTheirWords)
{
    const auto never = [] { return false; };
    for (int bits = 55; bits <= 66; ++bits)
    {
        const std::int64_t most = (std::int64_t{1} << std::min(bits, 62)) - 1;
        for (const ExactNumber& large :
             {ExactNumber{most, {std::max(bits - 62, 0), 0}}, ExactNumber{-3, {bits - 2, 0}},
              ExactNumber{-1, {0, bits / 2}}})
        {
            System system;
            const std::vector<std::vector<ExactNumber>> columns = {{large, {1, {}}},
                                                                   {{-1, {1, 0}}, {5, {}}}};
            for (const auto& column : columns)
            {
                for (Index i = 0; i < 2; ++i)
                    system.unknowns.Append(i, column[i]);
                system.unknowns.Close();
            }
            std::vector<Index> position;
            ASSERT_TRUE(
                system.factors
                    .Factorise(Residues(system.unknowns, system.factors.GetField()), position)
                    .empty());
            system.unknowns =
                Selected(system.unknowns,
                         position[0] == 0 ? std::vector<Index>{0, 1} : std::vector<Index>{1, 0});
            DixonSolver solver(system.unknowns, system.factors, DixonSolver::Side::Forward);
            for (const unsigned power : {0U, 61U, 62U, 63U, 64U, 65U, 127U, 128U, 129U})
            {
                SCOPED_TRACE(std::to_string(bits) + " and " + std::to_string(power));
                const Integer edge = Power(Integer(2), power);
                for (const Integer& side : {edge, edge - 1, -edge, -edge - 1})
                {
                    const ScaledVector right{{side, Integer(3) - side}, {}, 1};
                    ExactVector solution;
                    ASSERT_TRUE(solver.Solve(right, solution, never));
                    ASSERT_NO_FATAL_FAILURE(ExpectSolves(system, right, solution));
                }
            }
        }
    }
}

/// More digits than are multiplied one by one, and less than it takes to be asked whether to stop.
TEST(DixonSolver, TakesLongNumbersAndStops)
{
    Random random(7);
    const System system = RandomSystem(random, 3, 20, 4);
    ASSERT_TRUE(system.isRegular);
    ScaledVector right{std::vector<Integer>(3), {}, 1};
    for (Integer& entry : right.value)
        entry = Power(3, 6000) * random.Between(1, 99) + random.Between(1, 99);
    DixonSolver solver(system.unknowns, system.factors, DixonSolver::Side::Forward);
    ExactVector solution;
    EXPECT_FALSE(solver.Solve(right, solution, [] { return true; }));
    for (int round = 0; round < 2; ++round)  // the second knows the denominator
    {
        ASSERT_TRUE(solver.Solve(right, solution, [] { return false; }));
        ASSERT_NO_FATAL_FAILURE(ExpectSolves(system, right, solution));
        EXPECT_GT(solver.Steps(), 128U);
    }
}

TEST(DixonSolver, TakesHalfOfTheDigitsFromARightGuess)
{
    const auto never = [] { return false; };
    Random random(3);
    constexpr Index kSize = 120;
    const System system = RandomSystem(random, kSize, 40, 4);
    ASSERT_TRUE(system.isRegular);
    ScaledVector right{std::vector<Integer>(kSize), {}, 1};
    for (Integer& entry : right.value)
        entry = random.Between(-99, 99);
    DixonSolver solver(system.unknowns, system.factors, DixonSolver::Side::Forward);
    ExactVector solution;
    ASSERT_TRUE(solver.Solve(right, solution, never));
    const std::size_t first = solver.Steps();
    ASSERT_TRUE(solver.Solve(right, solution, never));
    EXPECT_GT(first, 100U);
    EXPECT_LT(solver.Steps(), first * 6 / 10);
}

}  // namespace
}  // namespace nuv::test
