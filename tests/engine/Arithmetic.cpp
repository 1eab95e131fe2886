/// The exact numbers and the factorisations, each against a plainer evaluation.
#include "tests/engine/Forms.hpp"

#include "Nuv/Algebra/DixonSolver.hpp"
#include "Nuv/Algebra/RationalField.hpp"
#include "Nuv/Algebra/RealField.hpp"
#include "Nuv/Algebra/SparseLu.hpp"
#include "Nuv/Exact/ExactFactors.hpp"
#include "tests/support/Effort.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdlib>

namespace nuv::test
{
namespace
{

constexpr std::uint64_t kPrime = 4611686018427387847u;

TEST(Rational, TakesDoublesApartExactly)
{
    for (const double value : {0.0, 1.0, -1.0, 0.1, 1e300, -1e-300, 5e-324, 1.7976931348623157e308})
    {
        const ExactNumber number = TakeApart(value, Numbers::AsStored);
        EXPECT_EQ(std::ldexp(static_cast<double>(number.mantissa), number.scale.two), value);
        EXPECT_EQ(number.scale.five, 0);
        EXPECT_TRUE(value == 0.0 || (number.mantissa & 1) != 0);
        EXPECT_EQ(ToDouble(ToRational(value)), value);
    }
}

TEST(Rational, ReadsDoublesAsTheirShortestDecimal)
{
    const auto written = [](double value)
    { return ToString(ToRational(value, Numbers::AsWritten)); };
    EXPECT_EQ(written(0.1), "1/10");
    EXPECT_EQ(written(-0.75), "-3/4");
    EXPECT_EQ(written(1e22), "10000000000000000000000");
    EXPECT_EQ(written(120.0), "120");
    EXPECT_EQ(written(0.33333334), "16666667/50000000");
    EXPECT_EQ(written(-2.5e-7), "-1/4000000");
    EXPECT_EQ(written(123456789.123456), "1929012330054/15625");
    EXPECT_EQ(written(0.0), "0");
    EXPECT_EQ(written(-0.0), "0");
}

TEST(Rational, RoundsToTheNearestDoubleTiesToEven)
{
    const Rational unit = Rational(1, Integer(1) << 53);  // half a unit in the last place of 1
    EXPECT_EQ(ToDouble(1 + unit), 1.0);
    EXPECT_EQ(ToDouble(1 + 3 * unit), 1.0 + 0x1p-51);
    EXPECT_EQ(ToDouble(1 + unit + Rational(1, Integer(1) << 300)), 1.0 + 0x1p-52);
    EXPECT_EQ(ToDouble(-1 - unit - Rational(1, Integer(1) << 300)), -1.0 - 0x1p-52);
    EXPECT_EQ(ToDouble(Rational(1, 3)), 1.0 / 3.0);
    EXPECT_EQ(ToDouble(Rational(Integer(1) << 1024)), kInf);
    EXPECT_EQ(ToDouble(Rational(1, Integer(1) << 1074)), 0x1p-1074);
    EXPECT_EQ(ToDouble(Rational(1, Integer(1) << 1075)), 0.0);
    EXPECT_EQ(ToDouble(Rational(3, Integer(1) << 1076)), 0x1p-1074);
    EXPECT_EQ(ToDouble(Rational(1, Integer(1) << 5000)), 0.0);
}

/// The quotient of two integers below 2^53 is rounded correctly by the machine's own division.
TEST(Rational, RoundsAsTheMachineDivides)
{
    Random random(1);
    for (int round = 0; round < ShareOf(20000); ++round)
    {
        const std::int64_t top = static_cast<std::int64_t>(random.Next() >> random.Between(11, 60));
        const std::int64_t bottom =
            static_cast<std::int64_t>(random.Next() >> random.Between(11, 60)) + 1;
        ASSERT_EQ(ToDouble(Rational(top, bottom)),
                  static_cast<double>(top) / static_cast<double>(bottom))
            << top << "/" << bottom;
    }
}

TEST(Rational, PrintsDecimalsRounded)
{
    EXPECT_EQ(ToDecimal(Rational(1, 3), 5), "3.3333e-1");
    EXPECT_EQ(ToDecimal(Rational(-2, 3), 5), "-6.6667e-1");
    EXPECT_EQ(ToDecimal(Rational(99999), 3), "1.00e5");
    EXPECT_EQ(ToDecimal(Rational(0), 3), "0");
    EXPECT_EQ(ToDecimal(Rational(7), 1), "7e0");
    EXPECT_EQ(ToDecimal(Rational(1000), 2), "1.0e3");
}

TEST(PrimeField, AgreesWithIntegersModuloThePrime)
{
    const PrimeField field(kPrime);
    const Integer prime(kPrime);
    Random random(2);
    for (int round = 0; round < ShareOf(5000); ++round)
    {
        const std::int64_t a = static_cast<std::int64_t>(random.Next());
        const std::int64_t b = static_cast<std::int64_t>(random.Next() >> random.Between(0, 60));
        const PrimeField::Value x = field.FromSigned(a);
        const PrimeField::Value y = field.FromSigned(b);
        Integer expected = (Integer(a) * Integer(b)) % prime;
        if (expected * 2 > prime)
            expected -= prime;
        if (expected * 2 < -prime)
            expected += prime;
        ASSERT_EQ(Integer(field.ToSigned(field.Product(x, y))), expected);
        PrimeField::Value difference = x;
        field.SubtractProduct(difference, y, field.One());
        ASSERT_EQ(field.Sum(difference, y), x);
        if (x != 0)
        {
            ASSERT_EQ(field.Product(x, field.Inverse(x)), field.One());
        }
    }
    EXPECT_EQ(field.ToSigned(field.PowerOf({3, 2})), 200);
    EXPECT_EQ(field.Product(field.PowerOf({-7, -3}), field.PowerOf({7, 3})), field.One());
}

/// A random sparse matrix with a given number of entries per column besides the diagonal.
template <class Value, class Draw>
SparseVectors<Value> RandomMatrix(Random& random, Index size, int entries, Draw draw)
{
    SparseVectors<Value> columns;
    std::vector<Index> order(size);
    for (Index k = 0; k < size; ++k)
        order[k] = k;
    for (Index k = size; k-- > 1;)
        std::swap(order[k],
                  order[static_cast<std::size_t>(random.Between(0, static_cast<int>(k)))]);
    for (Index k = 0; k < size; ++k)
    {
        std::vector<bool> taken(size, false);
        taken[order[k]] = true;
        for (int entry = 0; entry < entries; ++entry)
            taken[static_cast<std::size_t>(random.Between(0, static_cast<int>(size) - 1))] = true;
        for (Index i = 0; i < size; ++i)
        {
            if (taken[i])
                columns.Append(i, draw());
        }
        columns.Close();
    }
    return columns;
}

double Draw(Random& random)
{
    return (random.OneIn(2) ? 1 : -1) * random.Between(1, 99) / 10.0;
}

TEST(SparseLu, SolvesBothSidesToRoundingInDoubles)
{
    for (std::uint64_t seed = 1; seed <= ShareOf(40U); ++seed)
    {
        Random random(seed);
        const Index size = static_cast<Index>(random.Between(1, 120));
        SparseVectors<double> columns =
            RandomMatrix<double>(random, size, 3, [&random] { return Draw(random); });
        // A strong diagonal keeps the condition harmless, so that the residual is a fair measure.
        SparseLu<RealField> lu;
        std::vector<Index> position;
        ASSERT_TRUE(lu.Factorise(columns, position).empty());
        std::vector<double> expected(size);
        for (double& entry : expected)
            entry = Draw(random);
        std::vector<double> right(size, 0.0);
        for (Index k = 0; k < size; ++k)
        {
            for (const auto [row, entry] : columns[k])
                right[row] += entry * expected[k];
        }
        std::vector<double> solution = right;
        lu.SolveForward(solution);
        std::vector<double> residual = right;
        for (Index k = 0; k < size; ++k)
        {
            for (const auto [row, entry] : columns[k])
                residual[row] -= entry * solution[position[k]];
        }
        double largest = 0.0;
        for (const double entry : solution)
            largest = std::max(largest, std::fabs(entry));
        for (const double entry : residual)
            ASSERT_NEAR(entry, 0.0, 1e-11 * (1.0 + largest)) << seed;
    }
}

/// Solves, exchanges columns, solves again: everything exact, compared with zero.
template <class Field, class Convert>
void CheckExactly(const Field& field, Convert convert)
{
    using Value = typename Field::Value;
    for (std::uint64_t seed = 1; seed <= ShareOf(25U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const Index size = static_cast<Index>(random.Between(1, 14));
        const auto draw = [&]
        { return convert(random.Between(1, 9) * (random.OneIn(2) ? 1 : -1)); };
        const SparseVectors<Value> columns = RandomMatrix<Value>(random, size, 2, draw);
        SparseLu<Field> lu(field);
        std::vector<Index> position;
        const auto replaced = lu.Factorise(columns, position);
        // The matrix by position, with the logicals that took over.
        std::vector<std::vector<Value>> matrix(size, std::vector<Value>(size, field.Zero()));
        for (Index k = 0; k < size; ++k)
        {
            for (const auto [row, entry] : columns[k])
                matrix[position[k]][row] = entry;
        }
        for (const auto& replacement : replaced)
        {
            matrix[replacement.row].assign(size, field.Zero());
            matrix[replacement.row][replacement.row] = field.MinusOne();
        }
        for (int exchange = 0; exchange < 6; ++exchange)
        {
            std::vector<Value> right(size, field.Zero());
            for (Value& entry : right)
                entry = draw();
            std::vector<Value> forward = right;
            lu.SolveForward(forward);
            std::vector<Value> backward = right;
            lu.SolveBackward(backward);
            for (Index i = 0; i < size; ++i)
            {
                Value rowSum = right[i];
                Value columnSum = right[i];
                for (Index k = 0; k < size; ++k)
                {
                    field.SubtractProduct(rowSum, matrix[k][i], forward[k]);
                    field.SubtractProduct(columnSum, matrix[i][k], backward[k]);
                }
                ASSERT_TRUE(field.IsZero(rowSum));
                ASSERT_TRUE(field.IsZero(columnSum));
            }
            const Index leaving = static_cast<Index>(random.Between(0, static_cast<int>(size) - 1));
            if (field.IsZero(forward[leaving]))
                continue;
            lu.Update(leaving, forward);
            matrix[leaving] = right;
        }
    }
}

TEST(SparseLu, IsExactOverThePrimeFieldThroughUpdates)
{
    const PrimeField field(kPrime);
    CheckExactly(field, [&field](int number) { return field.FromSigned(number); });
}

TEST(SparseLu, IsExactOverTheRationalsThroughUpdates)
{
    CheckExactly(RationalField{}, [](int number) { return Rational(number); });
}

TEST(SparseLu, ReplacesDependentColumnsByLogicals)
{
    // Columns: a, 2a, b, zero.
    SparseVectors<double> columns;
    columns.Append(0, 1.0);
    columns.Append(1, 2.0);
    columns.Close();
    columns.Append(0, 2.0);
    columns.Append(1, 4.0);
    columns.Close();
    columns.Append(2, 3.0);
    columns.Close();
    columns.Close();
    SparseLu<RealField> lu;
    std::vector<Index> position;
    const auto replaced = lu.Factorise(columns, position);
    ASSERT_EQ(replaced.size(), 2u);
    std::vector<bool> rows(4, false);
    for (const Index row : position)
        rows[row] = true;
    EXPECT_EQ(rows, std::vector<bool>(4, true));
    EXPECT_EQ(replaced[1].column, 3u);
    EXPECT_EQ(position[2], 2u);
    // Row 3 has no entry at all, so its logical must be among the replacements.
    std::vector<double> right = {0, 0, 0, 5};
    lu.SolveForward(right);
    EXPECT_EQ(right[3], -5.0);
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

TEST(PadicLifting, SolvesExactlyInBothReadingsAndBothDirections)
{
    Limits limits;
    Watch watch(limits);
    for (std::uint64_t seed = 1; seed <= ShareOf(60U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const Index size = static_cast<Index>(random.Between(1, 30));
        BoundedForm form = BasisForm(random, size);
        form.numbers = random.OneIn(2) ? Numbers::AsStored : Numbers::AsWritten;
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
        ASSERT_TRUE(factors.SolveForward(right, forward, watch));
        ASSERT_TRUE(factors.SolveBackward(right, backward, watch));
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

TEST(PadicLifting, TellsFractionsFromTheirResidues)
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
        ASSERT_TRUE(ReconstructFraction((top * inverse) % modulus, modulus, 60, 372, numerator,
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
    EXPECT_FALSE(ReconstructFraction(residue, modulus, 60, 372, numerator, denominator));
}

TEST(PadicLifting, GivesUpWhenTimeIsUp)
{
    Limits limits;
    limits.seconds = 0.0;
    Watch watch(limits);
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
    EXPECT_FALSE(factors.SolveForward(right, solution, watch));
}

}  // namespace
}  // namespace nuv::test
