/// Factors of a basis in doubles: both solves against the matrix, through many exchanges of
/// columns, whether the right side is sparse or not, and what a singular matrix becomes.
#include "Nuv/SparseSimplex/Factors/BasisLu.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Random.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace nuv::test
{
namespace
{

using Column = std::vector<double>;

double Draw(Random& random)
{
    return (random.OneIn(2) ? 1 : -1) * random.Between(1, 99) / 10.0;
}

/// A few entries besides a large one at `diagonal`.
Column RandomColumn(Random& random, Index size, Index diagonal, int entries)
{
    Column column(size, 0.0);
    for (int entry = 0; entry < entries; ++entry)
        column[static_cast<Index>(random.Between(0, static_cast<int>(size) - 1))] = Draw(random);
    column[diagonal] = 20.0 + Draw(random);
    return column;
}

SparseVectors<double> Sparse(const std::vector<Column>& columns)
{
    SparseVectors<double> sparse;
    for (const Column& column : columns)
    {
        for (Index i = 0; i < column.size(); ++i)
        {
            if (column[i] != 0.0)
                sparse.Append(i, column[i]);
        }
        sparse.Close();
    }
    return sparse;
}

WorkVector Listed(const Column& entries)
{
    WorkVector vector;
    vector.Reset(static_cast<Index>(entries.size()));
    for (Index i = 0; i < entries.size(); ++i)
    {
        if (entries[i] != 0.0)
            vector.Set(i, entries[i]);
    }
    return vector;
}

/// Each nonzero is listed, and none twice.
void ExpectListed(const WorkVector& vector)
{
    std::vector<int> times(vector.value.size(), 0);
    for (const Index at : vector.touched)
        ++times[at];
    for (Index i = 0; i < vector.value.size(); ++i)
    {
        EXPECT_LE(times[i], 1);
        EXPECT_TRUE(times[i] == 1 || vector.value[i] == 0.0) << i;
    }
}

/// A matrix by the column at each position, and its factors.
struct Factorised
{
    explicit Factorised(std::vector<Column> given)
    {
        std::vector<Index> position;
        replaced = lu.Factorise(Sparse(given), position);
        columns.resize(given.size());
        for (Index k = 0; k < given.size(); ++k)
            columns[position[k]] = std::move(given[k]);
        for (const auto& [column, row] : replaced)
        {
            columns[row].assign(columns.size(), 0.0);
            columns[row][row] = -1.0;
        }
    }
    void ExpectSolves(const Column& right, double tolerance)
    {
        WorkVector forward = Listed(right);
        lu.SolveForward(forward);
        ExpectListed(forward);
        Column rest = right;
        for (Index k = 0; k < columns.size(); ++k)
        {
            for (Index i = 0; i < columns.size(); ++i)
                rest[i] -= forward.value[k] * columns[k][i];
        }
        for (const double left : rest)
            EXPECT_NEAR(left, 0.0, tolerance);
        WorkVector backward = Listed(right);
        lu.SolveBackward(backward);
        ExpectListed(backward);
        for (Index k = 0; k < columns.size(); ++k)
        {
            double left = right[k];
            for (Index i = 0; i < columns.size(); ++i)
                left -= columns[k][i] * backward.value[i];
            EXPECT_NEAR(left, 0.0, tolerance);
        }
    }
    /// A column whose large entry is where that of the one at the position is, so that the matrix
    /// stays regular.
    [[nodiscard]] Column LikeThatAt(Index position, Random& random) const
    {
        const auto largest = std::ranges::max_element(columns[position]);
        return RandomColumn(random, static_cast<Index>(columns.size()),
                            static_cast<Index>(largest - columns[position].begin()), 3);
    }
    /// @return by how much the update's two pivots disagree.
    double Exchange(Index position, Column column)
    {
        WorkVector solved = Listed(column);
        lu.SolveEntering(solved);
        columns[position] = std::move(column);
        return lu.Update(position, solved.value[position]);
    }

    BasisLu lu;
    std::vector<Column> columns;
    std::vector<Replacement> replaced;
};

std::vector<Column> RandomColumns(Random& random, Index size, int entries)
{
    std::vector<Column> columns;
    for (Index k = 0; k < size; ++k)
        columns.push_back(RandomColumn(random, size, k, entries));
    std::reverse(columns.begin(), columns.end());
    return columns;
}

TEST(BasisLu, SolvesBothSidesThroughManyUpdates)
{
    for (std::uint64_t seed = 1; seed <= ShareOf(20U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const Index size = static_cast<Index>(random.Between(1, 60));
        Factorised matrix(RandomColumns(random, size, random.Between(0, 4)));
        ASSERT_TRUE(matrix.replaced.empty());
        for (int exchange = 0; exchange < 60; ++exchange)
        {
            Column right(size, 0.0);
            for (double& entry : right)
                entry = random.OneIn(3) ? Draw(random) : 0.0;
            matrix.ExpectSolves(right, 1e-8);
            const Index position =
                static_cast<Index>(random.Between(0, static_cast<int>(size) - 1));
            EXPECT_LT(matrix.Exchange(position, matrix.LikeThatAt(position, random)), 1e-9);
        }
        EXPECT_EQ(matrix.lu.Updates(), 60U);
    }
}

/// One unit vector in a chain of hundreds reaches few places at one end and all at the other.
TEST(BasisLu, ASparseRightSideIsSolvedAsAnyOther)
{
    const Index size = 300;
    std::vector<Column> columns(size, Column(size, 0.0));
    for (Index k = 0; k < size; ++k)
    {
        columns[k][k] = 2.0;
        if (k + 1 < size)
            columns[k][k + 1] = 1.0;
    }
    Factorised matrix(columns);
    for (const Index at : {Index{0}, Index{5}, Index{150}, Index{299}})
    {
        Column unit(size, 0.0);
        unit[at] = 1.0;
        matrix.ExpectSolves(unit, 1e-12);
    }
    Column closing(size, 0.0);
    closing[0] = 1.0;
    closing[299] = 3.0;
    matrix.Exchange(299, closing);
    Column unit(size, 0.0);
    unit[298] = 1.0;
    matrix.ExpectSolves(unit, 1e-12);
    WorkVector row;
    matrix.lu.SolveUnitBackward(298, row);
    WorkVector same = Listed(unit);
    matrix.lu.SolveBackward(same);
    EXPECT_EQ(row.value, same.value);
}

/// What SolveUnitBackward leaves for the update is what the update would compute.
TEST(BasisLu, UpdatesAlikeWithAndWithoutTheRowOfTheInverse)
{
    Random random(7);
    const std::vector<Column> columns = RandomColumns(random, 40, 3);
    Factorised one(columns);
    Factorised other(columns);
    for (Index position = 0; position < 20; ++position)
    {
        const Column entering = one.LikeThatAt(position, random);
        WorkVector row;
        one.lu.SolveUnitBackward(position, row);
        (void)one.Exchange(position, entering);
        (void)other.Exchange(position, entering);
    }
    WorkVector first = Listed(Column(40, 1.0));
    WorkVector second = first;
    one.lu.SolveForward(first);
    other.lu.SolveForward(second);
    EXPECT_EQ(first.value, second.value);
    EXPECT_EQ(one.lu.UpdateEntries(), other.lu.UpdateEntries());
}

TEST(BasisLu, SaysHowFarAPivotIsFromTheOneGiven)
{
    Random random(3);
    Factorised matrix(RandomColumns(random, 10, 2));
    WorkVector solved = Listed(matrix.LikeThatAt(4, random));
    matrix.lu.SolveEntering(solved);
    EXPECT_NEAR(matrix.lu.Update(4, solved.value[4] * 1.5), 1.0 / 3.0, 1e-9);
}

TEST(BasisLu, ReplacesColumnsThatDependOnOthers)
{
    for (std::uint64_t seed = 1; seed <= ShareOf(20U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const Index size = static_cast<Index>(random.Between(4, 30));
        std::vector<Column> columns = RandomColumns(random, size, 2);
        columns[1] = columns[3];
        columns[2].assign(size, 0.0);
        Factorised matrix(columns);
        EXPECT_EQ(matrix.replaced.size(), 2U);
        matrix.ExpectSolves(Column(size, 1.0), 1e-8);
    }
}

}  // namespace
}  // namespace nuv::test
