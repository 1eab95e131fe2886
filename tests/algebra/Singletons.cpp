/// Systems of which singletons are substituted: which they are, and that the same fractions come
/// out as from lifting the whole.
#include "Nuv/Algebra/Lifting/Residues.hpp"
#include "Nuv/Algebra/Singletons/PeeledSolver.hpp"
#include "Nuv/Algebra/Singletons/SingletonOrder.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Random.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace nuv::test::singletons
{
namespace
{

constexpr std::uint64_t kPrime = 4611686018427387847u;

SparseVectors<ExactNumber> Matrix(const std::vector<std::vector<int>>& columns)
{
    SparseVectors<ExactNumber> matrix;
    for (const std::vector<int>& column : columns)
    {
        for (Index i = 0; i < column.size(); ++i)
        {
            if (column[i] != 0)
                matrix.Append(i, {column[i], {}});
        }
        matrix.Close();
    }
    return matrix;
}

TEST(SingletonOrder, FindsColumnsThenRowsAndLeavesTheBump)
{
    // Column 1 has one entry, and column 0 then too; of what is left row 3 has one.
    const SingletonOrder order = FindSingletons(Matrix(
        {{2, 3, 0, 0, 0}, {5, 0, 0, 0, 0}, {1, 1, 1, 0, 1}, {1, 0, 1, 0, 2}, {1, 1, 1, 1, 1}}));
    ASSERT_EQ(order.columnSingletons.size(), 2U);
    EXPECT_EQ(order.columnSingletons[0].column, 1U);
    EXPECT_EQ(order.columnSingletons[0].row, 0U);
    EXPECT_EQ(order.columnSingletons[1].column, 0U);
    EXPECT_EQ(order.columnSingletons[1].row, 1U);
    ASSERT_EQ(order.rowSingletons.size(), 1U);
    EXPECT_EQ(order.rowSingletons[0].row, 3U);
    EXPECT_EQ(order.rowSingletons[0].column, 4U);
    EXPECT_EQ(order.bumpRows, (std::vector<Index>{2, 4}));
    EXPECT_EQ(order.bumpColumns, (std::vector<Index>{2, 3}));
}

TEST(SingletonOrder, LeavesWhatCannotPivot)
{
    // Two columns with one entry in the same row, an empty one, a zero that is stored.
    SparseVectors<ExactNumber> columns;
    columns.Append(0, {1, {}});
    columns.Close();
    columns.Append(0, {3, {}});
    columns.Append(1, {0, {}});
    columns.Close();
    columns.Close();
    const SingletonOrder order = FindSingletons(columns);
    EXPECT_EQ(order.columnSingletons.size(), 1U);
    EXPECT_TRUE(order.rowSingletons.empty());
    EXPECT_EQ(order.bumpRows, (std::vector<Index>{1, 2}));
    EXPECT_EQ(order.bumpColumns.size(), 2U);
}

TEST(SingletonOrder, CountsANumberInTwoPartsOnce)
{
    SparseVectors<ExactNumber> columns;
    columns.Append(1, {1, {}});
    columns.Append(1, {1, {62, 0}});
    columns.Close();
    columns.Append(0, {1, {}});
    columns.Append(1, {1, {}});
    columns.Close();
    const SingletonOrder order = FindSingletons(columns);
    ASSERT_EQ(order.columnSingletons.size(), 2U);
    EXPECT_EQ(order.columnSingletons[0].row, 1U);
    EXPECT_EQ(order.columnSingletons[1].row, 0U);
    EXPECT_TRUE(order.bumpColumns.empty());
}

ExactNumber DrawEntry(Random& random, bool isLong)
{
    const std::int64_t magnitude =
        isLong ? static_cast<std::int64_t>(random.Next() >> 11) | 1 : 2 * random.Between(0, 9) + 1;
    const int five = random.OneIn(2) ? 0 : random.Between(-3, 2);
    return {random.OneIn(2) ? magnitude : -magnitude, {random.Between(-4, 3), five}};
}

/// Columns and rows of one entry around a bump, shuffled; now and then a number in two parts.
SparseVectors<ExactNumber> RandomMatrix(Random& random, Index size)
{
    const Index bumpBegin = static_cast<Index>(random.Between(0, static_cast<int>(size)));
    const Index bumpEnd =
        bumpBegin + static_cast<Index>(random.Between(0, static_cast<int>(size - bumpBegin)));
    std::vector<Index> rowAt(size);
    std::vector<Index> columnAt(size);
    std::iota(rowAt.begin(), rowAt.end(), Index{0});
    std::iota(columnAt.begin(), columnAt.end(), Index{0});
    for (Index k = size; k-- > 1;)
    {
        std::swap(rowAt[k],
                  rowAt[static_cast<std::size_t>(random.Between(0, static_cast<int>(k)))]);
        std::swap(columnAt[k],
                  columnAt[static_cast<std::size_t>(random.Between(0, static_cast<int>(k)))]);
    }
    std::vector<std::vector<Index>> rows(size);
    for (Index k = 0; k < size; ++k)
    {
        // Upper triangular but for the bump.
        const Index end = k >= bumpBegin && k < bumpEnd ? bumpEnd : k + 1;
        for (Index i = 0; i < end; ++i)
        {
            if (i == k || random.OneIn(3))
                rows[columnAt[k]].push_back(rowAt[i]);
        }
    }
    SparseVectors<ExactNumber> columns;
    for (std::vector<Index>& column : rows)
    {
        std::ranges::sort(column);
        for (const Index row : column)
        {
            const ExactNumber entry = DrawEntry(random, random.OneIn(8));
            columns.Append(row, entry);
            if (random.OneIn(20))
                columns.Append(row, {entry.mantissa, {entry.scale.two + 62, entry.scale.five}});
        }
        columns.Close();
    }
    return columns;
}

/// The matrix with its columns by position, peeled, and the factors of its bump.
struct Peeled
{
    PeeledMatrix matrix;
    SparseLu<PrimeField> factors{PrimeField(kPrime)};
    bool isRegular = false;
};

Peeled Peel(const SparseVectors<ExactNumber>& columns)
{
    Peeled peeled;
    const SingletonOrder order = FindSingletons(columns);
    std::vector<Index> position;
    const auto bump = Residues(BumpOf(columns, order), peeled.factors.GetField());
    peeled.isRegular = peeled.factors.Factorise(bump, position).empty();
    peeled.matrix = PeeledMatrix(Selected(columns, ColumnsByPivotRow(order, position)), order);
    return peeled;
}

/// The same matrix as one bump.
Peeled Whole(const SparseVectors<ExactNumber>& columns)
{
    Peeled whole;
    std::vector<Index> position;
    whole.isRegular =
        whole.factors.Factorise(Residues(columns, whole.factors.GetField()), position).empty();
    whole.matrix.bump.resize(columns.Count());
    std::iota(whole.matrix.bump.begin(), whole.matrix.bump.end(), Index{0});
    std::vector<Index> columnAt(columns.Count());
    for (Index k = 0; k < position.size(); ++k)
        columnAt[position[k]] = k;
    whole.matrix.columns = Selected(columns, columnAt);
    return whole;
}

Rational Value(const ExactNumber& number)
{
    const Scale up{std::max(number.scale.two, 0), std::max(number.scale.five, 0)};
    return Rational(PowerOf(up) * number.mantissa, PowerOf(up - number.scale));
}

void ExpectSolves(const PeeledMatrix& matrix, DixonSolver::Side side, const ScaledVector& right,
                  const ExactVector& solution)
{
    std::vector<Rational> sums(right.value.size());
    for (Index k = 0; k < sums.size(); ++k)
    {
        for (const auto [row, entry] : matrix.columns[k])
        {
            if (side == DixonSolver::Side::Forward)
                sums[row] += Value(entry) * solution.At(k);
            else
                sums[k] += Value(entry) * solution.At(row);
        }
    }
    for (std::size_t i = 0; i < sums.size(); ++i)
        ASSERT_EQ(sums[i], Rational(right.value[i], right.divisor) * Value({1, right.scale}));
}

TEST(PeeledSolver, FindsWhatLiftingTheWholeFinds)
{
    const auto never = [] { return false; };
    const auto cases = ShareOf(std::uint64_t{4000});
    for (std::uint64_t seed = 1; seed <= cases; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const auto size = static_cast<Index>(random.Between(1, 16));
        const SparseVectors<ExactNumber> columns = RandomMatrix(random, size);
        const Peeled peeled = Peel(columns);
        const Peeled whole = Whole(columns);
        ASSERT_EQ(peeled.isRegular, whole.isRegular);
        if (!peeled.isRegular)
            continue;
        for (const DixonSolver::Side side :
             {DixonSolver::Side::Forward, DixonSolver::Side::Backward})
        {
            PeeledSolver solver(peeled.matrix, peeled.factors, side);
            PeeledSolver plain(whole.matrix, whole.factors, side);
            for (int round = 0; round < 2; ++round)
            {
                ScaledVector right{std::vector<Integer>(size),
                                   {random.Between(-9, 9), random.Between(-2, 2)},
                                   random.Between(1, 12)};
                for (Integer& entry : right.value)
                    entry = random.OneIn(3) ? 0 : random.Between(-999, 999);
                ExactVector solution;
                ASSERT_TRUE(solver.Solve(right, solution, never));
                ASSERT_NO_FATAL_FAILURE(ExpectSolves(peeled.matrix, side, right, solution));
                if (side != DixonSolver::Side::Forward)
                    continue;
                // Of the whole the unknowns have other positions, but the columns are the same.
                ExactVector other;
                ASSERT_TRUE(plain.Solve(right, other, never));
                ASSERT_NO_FATAL_FAILURE(ExpectSolves(whole.matrix, side, right, other));
            }
        }
    }
}

TEST(PeeledSolver, AsksWhetherToStopBetweenSubstitutions)
{
    // Column singletons alone: a slack for each row.
    constexpr Index kSize = 600;
    PeeledMatrix matrix;
    for (Index k = 0; k < kSize; ++k)
    {
        matrix.columns.Append(k, {-1, {}});
        matrix.columns.Close();
        matrix.columnSingletons.push_back(k);
    }
    SparseLu<PrimeField> factors{PrimeField(kPrime)};
    std::vector<Index> position;
    (void)factors.Factorise({}, position);
    PeeledSolver solver(matrix, factors, DixonSolver::Side::Forward);
    const ScaledVector right{std::vector<Integer>(kSize, Integer(7)), {}, 1};
    ExactVector solution;
    int asked = 0;
    EXPECT_FALSE(solver.Solve(right, solution, [&asked] { return ++asked == 2; }));
    EXPECT_TRUE(solver.Solve(right, solution, [] { return false; }));
    EXPECT_EQ(solution.At(kSize - 1), -7);
}

}  // namespace
}  // namespace nuv::test::singletons
