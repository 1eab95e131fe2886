/// Factors over each field: both solves, exchanges of columns, and what a singular matrix becomes.
#include "Nuv/Algebra/SparseLu.hpp"
#include "Nuv/Algebra/PrimeField.hpp"
#include "Nuv/Algebra/RationalField.hpp"
#include "Nuv/Algebra/RealField.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Random.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace nuv::test::sparse_lu
{
namespace
{

constexpr std::uint64_t kPrime = 4611686018427387847u;

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

/// A right side of few entries goes through the factors entry by entry, one of many by sums over
/// all: the solution for a dense one is the combination of those for unit vectors, residue for
/// residue.
TEST(SparseLu, SolvesDenseRightSidesAsTheSumOfSparseOnesModuloAPrime)
{
    const PrimeField field(kPrime);
    const auto combination = [&field](const SparseLu<PrimeField>& lu, auto solve,
                                      const std::vector<PrimeField::Value>& right)
    {
        std::vector<PrimeField::Value> sum(right.size(), field.Zero());
        for (std::size_t i = 0; i < right.size(); ++i)
        {
            std::vector<PrimeField::Value> unit(right.size(), field.Zero());
            unit[i] = field.One();
            (lu.*solve)(unit);
            for (std::size_t k = 0; k < right.size(); ++k)
                field.SubtractProduct(sum[k], field.Negated(unit[k]), right[i]);
        }
        return sum;
    };
    for (std::uint64_t seed = 1; seed <= ShareOf(60U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const Index size = static_cast<Index>(random.Between(5, 60));
        // Among them the largest residues, whose products carry the most.
        const auto draw = [&]() -> PrimeField::Value
        { return random.OneIn(2) ? kPrime - 1 : random.Next() % kPrime; };
        SparseLu<PrimeField> lu(field);
        std::vector<Index> position;
        (void)lu.Factorise(
            RandomMatrix<PrimeField::Value>(random, size, random.OneIn(2) ? 2 : 40, draw),
            position);
        for (int round = 0; round < 20; ++round)
        {
            std::vector<PrimeField::Value> right(size);
            for (PrimeField::Value& entry : right)
                entry = draw();
            std::vector<PrimeField::Value> solution = right;
            lu.SolveForward(solution);
            ASSERT_EQ(solution, combination(lu, &SparseLu<PrimeField>::SolveForward, right));
            solution = right;
            lu.SolveBackward(solution);
            ASSERT_EQ(solution, combination(lu, &SparseLu<PrimeField>::SolveBackward, right));
        }
    }
}

TEST(SparseLu, IsExactOverTheRationalsThroughUpdates)
{
    CheckExactly(RationalField{}, [](int number) { return Rational(number); });
}

/// After each of many exchanges the factors, however long their list of updates, solve for a column
/// of the matrix as it is then.
TEST(SparseLu, StaysAccurateInDoublesThroughManyUpdates)
{
    Random random(7);
    const Index size = 60;
    SparseVectors<double> columns =
        RandomMatrix<double>(random, size, 3, [&random] { return Draw(random); });
    SparseLu<RealField> lu;
    std::vector<Index> position;
    ASSERT_TRUE(lu.Factorise(columns, position).empty());
    std::vector<std::vector<double>> matrix(size, std::vector<double>(size, 0.0));
    for (Index k = 0; k < size; ++k)
    {
        for (const auto [row, entry] : columns[k])
            matrix[position[k]][row] = entry;
    }
    for (int exchange = 0; exchange < 50; ++exchange)
    {
        std::vector<double> entering(size, 0.0);
        for (int entry = 0; entry < 4; ++entry)
            entering[static_cast<std::size_t>(random.Between(0, size - 1))] = Draw(random);
        std::vector<double> solved = entering;
        lu.SolveForward(solved);
        Index leaving = 0;
        for (Index k = 0; k < size; ++k)
            leaving = std::fabs(solved[k]) > std::fabs(solved[leaving]) ? k : leaving;
        lu.Update(leaving, solved);
        matrix[leaving] = entering;
        std::vector<double> unit = entering;
        lu.SolveForward(unit);
        std::vector<double> dual(size, 0.0);
        dual[leaving] = 1.0;
        lu.SolveBackward(dual);
        for (Index k = 0; k < size; ++k)
        {
            ASSERT_NEAR(unit[k], k == leaving ? 1.0 : 0.0, 1e-7) << exchange;
            double sum = 0.0;
            for (Index i = 0; i < size; ++i)
                sum += matrix[k][i] * dual[i];
            ASSERT_NEAR(sum, k == leaving ? 1.0 : 0.0, 1e-7) << exchange;
        }
    }
    EXPECT_EQ(lu.Updates(), 50U);
}

/// The same dependent columns over each field: a, 2a, b, zero.
template <class Field, class Convert>
void CheckReplacement(const Field& field, Convert convert)
{
    SparseVectors<typename Field::Value> columns;
    columns.Append(0, convert(1));
    columns.Append(1, convert(2));
    columns.Close();
    columns.Append(0, convert(2));
    columns.Append(1, convert(4));
    columns.Close();
    columns.Append(2, convert(3));
    columns.Close();
    columns.Close();
    SparseLu<Field> lu(field);
    std::vector<Index> position;
    const auto replaced = lu.Factorise(columns, position);
    ASSERT_EQ(replaced.size(), 2U);
    EXPECT_EQ(position[2], 2U);
    EXPECT_EQ(replaced[1].column, 3U);
    // Whichever column of the first two stays, the logicals complete it to a basis of rows 0 and 1.
    EXPECT_NE(replaced[0].row, replaced[1].row);
    std::vector<typename Field::Value> right(4, field.Zero());
    right[3] = convert(5);
    lu.SolveForward(right);
    EXPECT_TRUE(right[3] == convert(-5));
}

TEST(SparseLu, ReplacesDependentColumnsOverEachField)
{
    const PrimeField primes(kPrime);
    CheckReplacement(RealField{}, [](int number) { return static_cast<double>(number); });
    CheckReplacement(primes, [&primes](int number) { return primes.FromSigned(number); });
    CheckReplacement(RationalField{}, [](int number) { return Rational(number); });
}

/// Two rows that agree to the last but one digit: in doubles nothing is left to pivot on, in exact
/// arithmetic the difference is as good a pivot as any.
TEST(SparseLu, IsSingularInDoublesWhereNothingButRoundingIsLeft)
{
    const double tiny = 0x1p-50;
    SparseVectors<double> columns;
    columns.Append(0, 1.0);
    columns.Append(1, 1.0);
    columns.Close();
    columns.Append(0, 1.0);
    columns.Append(1, 1.0 + tiny);
    columns.Close();
    std::vector<Index> position;
    SparseLu<RealField> doubles;
    EXPECT_EQ(doubles.Factorise(columns, position).size(), 1U);
    SparseLu<RationalField> rationals;
    const auto exact =
        Mapped<Rational>(columns, [](Index, Index, double entry) { return ToRational(entry); });
    EXPECT_TRUE(rationals.Factorise(exact, position).empty());
}

/// The square matrix of these rows.
SparseVectors<double> MatrixOf(const std::vector<std::vector<double>>& rows)
{
    SparseVectors<double> columns;
    for (std::size_t k = 0; k < rows.size(); ++k)
    {
        for (Index i = 0; i < rows.size(); ++i)
            if (rows[i][k] != 0.0)
                columns.Append(i, rows[i][k]);
        columns.Close();
    }
    return columns;
}

/// In a column, a row, or a block of their own: entries too small to pivot on make the matrix
/// singular, and logicals take the places of their columns.
TEST(SparseLu, DropsColumnsOfWhichNothingIsLargeEnough)
{
    const double tiny = 1e-11;
    const std::vector<std::vector<std::vector<double>>> matrices = {
        {{1, 0}, {0, tiny}},
        {{1, 1}, {tiny, 0}},
        {{2, 0, 0}, {0, tiny, 1}, {0, tiny, 1}},
        {{tiny, 1, 1}, {tiny, 1, 2}, {tiny, 2, 1}},
        {{tiny, 1, 1, 1}, {tiny, 1, 2, 0}, {tiny, 2, 1, 1}, {tiny, 0, 0, 0}},
    };
    for (const auto& rows : matrices)
    {
        SparseLu<RealField> lu;
        std::vector<Index> position;
        const auto replaced = lu.Factorise(MatrixOf(rows), position);
        ASSERT_FALSE(replaced.empty());
        // What stands in is the negative unit vector of its row.
        std::vector<double> right(rows.size(), 0.0);
        right[replaced.back().row] = 3.0;
        lu.SolveForward(right);
        EXPECT_EQ(right[position[replaced.back().column]], -3.0);
    }
}

/// Two rows with one entry each, in the same column: the second finds it taken.
TEST(SparseLu, TakesOneOfTwoRowsThatHaveOneEntryInTheSameColumn)
{
    SparseLu<RealField> lu;
    std::vector<Index> position;
    const auto replaced = lu.Factorise(MatrixOf({{5, 0, 0}, {7, 0, 0}, {1, 2, 3}}), position);
    EXPECT_EQ(replaced.size(), 1U);
    EXPECT_EQ(position[0], 0U);
}

TEST(SparseLu, TakesAStoredZeroForNoEntry)
{
    SparseVectors<double> columns;
    for (const double diagonal : {2.0, 4.0})
    {
        columns.Append(0, diagonal == 2.0 ? 2.0 : 0.0);
        columns.Append(1, diagonal == 2.0 ? 0.0 : 4.0);
        columns.Close();
    }
    SparseLu<RealField> lu;
    std::vector<Index> position;
    ASSERT_TRUE(lu.Factorise(columns, position).empty());
    std::vector<double> right{6.0, 8.0};
    lu.SolveForward(right);
    EXPECT_EQ(right, (std::vector<double>{3.0, 2.0}));
}

/// Long columns and longer rows, of which the search for a pivot looks at few.
TEST(SparseLu, SolvesExactlyWhereNoRowOrColumnIsShort)
{
    const PrimeField field(kPrime);
    Random random(3);
    constexpr Index kSize = 40;
    const auto columns = RandomMatrix<PrimeField::Value>(
        random, kSize, 12, [&] { return field.FromSigned(random.Between(1, 1000)); });
    for (const auto& matrix : {columns, Transposed(columns, kSize)})
    {
        SparseLu<PrimeField> lu(field);
        std::vector<Index> position;
        ASSERT_TRUE(lu.Factorise(matrix, position).empty());
        std::vector<PrimeField::Value> right(kSize, field.Zero());
        for (Index k = 0; k < kSize; ++k)
            for (const auto [row, entry] : matrix[k])
                right[row] = field.Sum(right[row],
                                       field.Product(entry, field.FromSigned(static_cast<int>(k))));
        lu.SolveForward(right);
        for (Index k = 0; k < kSize; ++k)
            EXPECT_TRUE(right[position[k]] == field.FromSigned(static_cast<int>(k)));
    }
}

/// 1e-16 is what cancellation leaves of 1: taken for zero it makes no solution large.
TEST(SparseLu, TakesWhatRoundingLeavesForZeroInDoubles)
{
    SparseLu<RealField> lu;
    std::vector<Index> position;
    ASSERT_TRUE(lu.Factorise(MatrixOf({{1e-9, 0}, {0, 1}}), position).empty());
    std::vector<double> right{1e-16, 1.0};
    lu.SolveForward(right);
    EXPECT_EQ(right, (std::vector<double>{0.0, 1.0}));
    // The exchanged column has no part in a right side that is zero there.
    lu.Update(0, {2.0, 1.0});
    right = {0.0, 5.0};
    lu.SolveForward(right);
    EXPECT_EQ(right, (std::vector<double>{0.0, 5.0}));
}

TEST(SparseLu, AnEmptyMatrixHasFactors)
{
    SparseLu<RealField> lu;
    std::vector<Index> position;
    EXPECT_TRUE(lu.Factorise({}, position).empty());
    std::vector<double> nothing;
    lu.SolveForward(nothing);
    lu.SolveBackward(nothing);
    EXPECT_TRUE(nothing.empty());
}

}  // namespace
}  // namespace nuv::test::sparse_lu
