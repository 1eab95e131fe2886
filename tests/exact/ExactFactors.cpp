/// Exact solutions of linear systems, against a plainer evaluation.
#include "tests/support/Forms.hpp"

#include "Nuv/Algebra/DixonSolver.hpp"
#include "Nuv/Algebra/RationalField.hpp"
#include "Nuv/Algebra/RealField.hpp"
#include "Nuv/Algebra/SparseLu.hpp"
#include "Nuv/Exact/ExactFactors.hpp"
#include "tests/support/Effort.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <set>

namespace nuv::test
{
namespace
{

constexpr std::uint64_t kPrime = 4611686018427387847u;

double Draw(Random& random)
{
    return (random.OneIn(2) ? 1 : -1) * random.Between(1, 99) / 10.0;
}

/// A form whose columns 0 .. size-1 are a random matrix, to be factorised as a basis.
BoundedForm BasisForm(Random& random, Index size)
{
    std::vector<DenseRow> rows(size);
    for (Index i = 0; i < size; ++i)
    {
        rows[i].coefficients.assign(size, 0.0);
        rows[i].coefficients[(i + 1) % size] = Draw(random);
        for (int entry = 0; entry < 3; ++entry)
            rows[i].coefficients[static_cast<std::size_t>(
                random.Between(0, static_cast<int>(size) - 1))] = Draw(random) * 1.7;
    }
    return MakeForm(std::vector<double>(size, 0.0), rows);
}

TEST(DixonSolver, SolvesExactlyInBothReadingsAndBothDirections)
{
    SolveControl control;
    for (std::uint64_t seed = 1; seed <= ShareOf(60U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const Index size = static_cast<Index>(random.Between(1, 30));
        BoundedForm form = BasisForm(random, size);
        form.numbers = random.OneIn(2) ? CoefficientMeaning::StoredDouble
                                       : CoefficientMeaning::ShortestDecimal;
        const ExactForm exact(form);
        std::vector<Index> head(size);
        for (Index k = 0; k < size; ++k)
            head[k] = k;
        ExactFactors factors(exact);
        (void)factors.Factorise(head);
        ScaledVector right{std::vector<Integer>(size),
                           {random.Between(-70, 70), random.Between(-3, 3)}};
        for (Integer& entry : right.value)
            entry = random.Between(-1000, 1000);
        const Rational scale =
            Rational(PowerOf({std::max(right.scale.two, 0), std::max(right.scale.five, 0)}),
                     PowerOf({std::max(-right.scale.two, 0), std::max(-right.scale.five, 0)}));
        const auto entryOf = [&form](Index variable, Index row)
        {
            Rational found(0);
            form.VisitColumn(variable,
                             [&](Index at, double entry)
                             {
                                 if (at == row)
                                     found = ToRational(entry, form.numbers);
                             });
            return found;
        };
        ExactVector forward;
        ExactVector backward;
        ASSERT_TRUE(factors.SolveForward(right, forward, control));
        ASSERT_TRUE(factors.SolveBackward(right, backward, control));
        for (Index i = 0; i < size; ++i)
        {
            Rational row = 0;
            Rational column = 0;
            for (Index k = 0; k < size; ++k)
            {
                row += entryOf(head[k], i) * forward.At(k);
                column += entryOf(head[i], k) * backward.At(k);
            }
            ASSERT_EQ(row, Rational(right.value[i]) * scale);
            ASSERT_EQ(column, Rational(right.value[i]) * scale);
        }
    }
}

TEST(DixonSolver, TellsFractionsFromTheirResidues)
{
    const Integer modulus = Power(Integer(kPrime), 6);
    Random random(5);
    for (int round = 0; round < 500; ++round)
    {
        const Integer top = Integer(random.Next() >> 2) * random.Between(-1000, 1000);
        const Integer bottom = Integer(random.Next() >> random.Between(2, 60)) + 1;
        const Integer divisor = Gcd(top, bottom);
        // The inverse of the denominator by Fermat is not at hand modulo a prime power: lift it.
        const PrimeField field(kPrime);
        Integer inverse =
            field.ToSigned(field.Inverse(field.FromSigned((bottom % kPrime).ToWord())));
        for (int lift = 0; lift < 3; ++lift)
            inverse = ((2 - bottom * inverse) * inverse) % modulus;
        Integer numerator;
        Integer denominator;
        ASSERT_TRUE(ReconstructRational((top * inverse) % modulus, modulus, 60, 372, numerator,
                                        denominator));
        ASSERT_EQ(numerator, top / divisor);
        ASSERT_EQ(denominator, bottom / divisor);
    }
    Integer numerator;
    Integer denominator;
    // A residue of random digits is that of no small fraction.
    Integer residue(0);
    for (int digit = 0; digit < 6; ++digit)
        residue = residue * Integer(kPrime) + Integer(random.Next() >> 3);
    EXPECT_FALSE(ReconstructRational(residue, modulus, 60, 372, numerator, denominator));
    EXPECT_FALSE(ReconstructRational(residue, modulus, 60, 100, numerator, denominator))
        << "no denominator of so few bits";
}

TEST(DixonSolver, GivesUpWhenTimeIsUp)
{
    SolveLimits limits;
    limits.seconds = 0.0;
    SolveControl control(limits);
    Random random(11);
    const BoundedForm form = BasisForm(random, 60);
    const ExactForm exact(form);
    std::vector<Index> head(60);
    for (Index k = 0; k < 60; ++k)
        head[k] = k;
    ExactFactors factors(exact);
    (void)factors.Factorise(head);
    ScaledVector right{std::vector<Integer>(60, Integer(1)), {}};
    ExactVector solution;
    EXPECT_FALSE(factors.SolveForward(right, solution, control));
    // Or at any later question, between digits or between unknowns.
    bool isStopped = true;
    int last = 1;
    for (; isStopped; ++last)
    {
        int asked = 0;
        limits.seconds = 1e6;
        limits.keepGoing = [&](const Progress&) { return ++asked < last; };
        SolveControl asking(limits);
        isStopped = !factors.SolveForward(right, solution, asking);
        EXPECT_EQ(isStopped, asked == last);
    }
    EXPECT_GT(last, 10);
}

/// Each digit of a solution has some 62 bits, and a carry may run through all words of what is
/// left.
TEST(DixonSolver, TakesRightSidesOfManyWords)
{
    SolveControl control;
    for (unsigned power = 0; power <= 60; ++power)
    {
        SCOPED_TRACE(power);
        // x = -7^4p and 3 y - x = 1 - 2^14p
        const BoundedForm form = MakeForm({0, 0}, {{{1, 0}, {0, 0}}, {{-1, 3}, {0, 0}}});
        const ExactForm exact(form);
        std::vector<Index> head{0, 1};
        ExactFactors factors(exact);
        ASSERT_TRUE(factors.Factorise(head).empty());
        const Integer x = -Power(7, 4 * power);
        const Integer right = 1 - Power(2, 14 * power);
        ExactVector solution;
        ASSERT_TRUE(factors.SolveForward({{x, right}, {}}, solution, control));
        const Index first = head[0] == 0 ? 0 : 1;
        EXPECT_EQ(solution.At(first), Rational(x));
        EXPECT_EQ(solution.At(1 - first), Rational(x + right, 3));
    }
}

/// x1 = 3^117 / d1, x2 = x1 / d2 and so on to x6, and y such that one combination of all of them is
/// zero: that by which the solver guesses their common denominator, so that it learns of it from x6
/// at once.
TEST(DixonSolver, FindsADenominatorThatItsGuessDoesNotKnow)
{
    constexpr std::int64_t kDivisors[] = {4611686018427387701, 4611686018427387631,
                                          4611686018427387617, 4611686018427387559,
                                          4611686018427387511, 4611686018427387409};
    constexpr Index kChain = 6;
    const auto unit = [](std::int64_t mantissa) { return ExactNumber{mantissa, {}}; };
    std::int64_t coefficients[kChain + 1];
    std::uint64_t random = 0x9E3779B97F4A7C15u;
    for (std::int64_t& coefficient : coefficients)
    {
        random ^= random << 13;
        random ^= random >> 7;
        random ^= random << 17;
        coefficient = static_cast<std::int64_t>(random >> 61) + 1;
    }
    // By unknown x6 to x1 and y; by equation d6 x6 = x5 to d1 x1 = 3^117, and combination = 0.
    SparseVectors<ExactNumber> unknowns;
    for (Index k = 0; k <= kChain; ++k)
    {
        if (k > 0 && k < kChain)
            unknowns.Append(k - 1, unit(-1));
        if (k < kChain)
            unknowns.Append(k, unit(kDivisors[k]));
        unknowns.Append(kChain, unit(coefficients[k]));
        unknowns.Close();
    }
    const PrimeField field(kPrime);
    SparseLu<PrimeField> lu(field);
    std::vector<Index> position;
    const auto columns =
        Mapped<PrimeField::Value>(unknowns, [&](Index, Index, const ExactNumber& entry)
                                  { return field.FromSigned(entry.mantissa); });
    ASSERT_TRUE(lu.Factorise(columns, position).empty());
    ASSERT_EQ(position, (std::vector<Index>{0, 1, 2, 3, 4, 5, 6}));
    DixonSolver solver(unknowns, lu, DixonSolver::Side::Forward);
    ScaledVector right{std::vector<Integer>(kChain + 1), {}};
    right.value[kChain - 1] = Power(3, 117);
    ExactVector solution;
    ASSERT_TRUE(solver.Solve(right, solution, [] { return false; }));
    Rational expected = right.value[kChain - 1];
    Rational combination = 0;
    for (Index k = kChain; k-- > 0;)
    {
        expected /= Rational(Integer(kDivisors[k]));
        EXPECT_EQ(solution.At(k), expected);
        combination += expected * Rational(Integer(coefficients[k]));
    }
    EXPECT_EQ(solution.At(kChain), -combination / Rational(Integer(coefficients[kChain])));
}

/// The determinant 2^62 - 57 is the first of the primes: modulo it the matrix is singular.
TEST(ExactFactors, TakesAnotherPrimeWhereOneDividesTheDeterminant)
{
    SolveControl control;
    const BoundedForm form =
        MakeForm({0, 0}, {{{0x1p31, 1}, {0, 0}}, {{57, 0x1p31}, {0, 0}}, {{1, 0}, {0, 0}}});
    const ExactForm exact(form);
    std::vector<Index> head{0, 1, 4};
    ExactFactors factors(exact);
    EXPECT_TRUE(factors.Factorise(head).empty());
    EXPECT_EQ(std::set<Index>(head.begin(), head.end()), (std::set<Index>{0, 1, 4}));
    ExactVector solution;
    ASSERT_TRUE(
        factors.SolveForward({{Integer(1), Integer(0), Integer(0)}, {}}, solution, control));
    const auto second = std::ranges::find(head, Index{1}) - head.begin();
    EXPECT_EQ(solution.At(static_cast<Index>(second)), Rational(-57, Integer(kPrime)));
    // 1, 1 twice is singular modulo all of them.
    const BoundedForm twice = MakeForm({0, 0}, {{{1, 1}, {0, 0}}, {{1, 1}, {0, 0}}});
    const ExactForm singular(twice);
    std::vector<Index> both{0, 1};
    EXPECT_EQ(ExactFactors(singular).Factorise(both).size(), 1U);
}

}  // namespace
}  // namespace nuv::test
