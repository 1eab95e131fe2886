/// Sparse vectors and matrices: what walking, turning and choosing give.
#include "Nuv/Algebra/SparseMatrix.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace nuv::test
{
namespace
{

/// Vectors {(2, 5), (0, 7)}, {}, {(1, 9)}.
SparseVectors<int> ThreeVectors()
{
    SparseVectors<int> vectors;
    vectors.Append(2, 5);
    vectors.Append(0, 7);
    vectors.Close();
    vectors.Close();
    vectors.Append(1, 9);
    vectors.Close();
    return vectors;
}

using Entries = std::vector<std::pair<Index, int>>;

Entries Walked(SparseView<int> view)
{
    Entries entries;
    for (const auto [index, value] : view)
        entries.emplace_back(index, value);
    EXPECT_EQ(view.size(), entries.size());
    EXPECT_EQ(view.empty(), entries.empty());
    return entries;
}

TEST(SparseVectors, AreWalkedInTheOrderOfTheirEntries)
{
    const SparseVectors<int> vectors = ThreeVectors();
    EXPECT_EQ(vectors.Count(), 3U);
    EXPECT_EQ(Walked(vectors[0]), (Entries{{2, 5}, {0, 7}}));
    EXPECT_EQ(Walked(vectors[1]), Entries{});
    EXPECT_EQ(Walked(vectors[2]), (Entries{{1, 9}}));
}

TEST(SparseVectors, TransposedHaveIncreasingIndices)
{
    const SparseVectors<int> turned = Transposed(ThreeVectors(), 4);
    EXPECT_EQ(turned.Count(), 4U);
    EXPECT_EQ(Walked(turned[0]), (Entries{{0, 7}}));
    EXPECT_EQ(Walked(turned[1]), (Entries{{2, 9}}));
    EXPECT_EQ(Walked(turned[2]), (Entries{{0, 5}}));
    EXPECT_EQ(Walked(turned[3]), Entries{});
    EXPECT_EQ(Walked(Transposed(turned, 3)[0]), (Entries{{0, 7}, {2, 5}}));
}

TEST(SparseVectors, MayBeSelectedMoreThanOnceAndLeftOut)
{
    const std::vector<Index> numbers = {2, kNoIndex, 0, 2};
    const SparseVectors<int> selected = Selected(ThreeVectors(), numbers);
    ASSERT_EQ(selected.Count(), 4U);
    EXPECT_EQ(Walked(selected[0]), (Entries{{1, 9}}));
    EXPECT_EQ(Walked(selected[1]), Entries{});
    EXPECT_EQ(Walked(selected[2]), (Entries{{2, 5}, {0, 7}}));
    EXPECT_EQ(Walked(selected[3]), (Entries{{1, 9}}));
}

TEST(SparseVectors, AreMappedEntryByEntry)
{
    const auto coded = [](Index vector, Index index, int value)
    { return static_cast<int>(100 * vector + 10 * index) + value; };
    const SparseVectors<int> mapped = Mapped<int>(ThreeVectors(), coded);
    EXPECT_EQ(Walked(mapped[0]), (Entries{{2, 25}, {0, 7}}));
    EXPECT_EQ(Walked(mapped[2]), (Entries{{1, 219}}));
}

TEST(SparseMatrix, HoldsTheSameEntriesBothWays)
{
    const auto byRows = SparseMatrix<int>::FromRows(ThreeVectors(), 4);
    EXPECT_EQ(byRows.EntryCount(), 3U);
    EXPECT_EQ(byRows.Rows().Count(), 3U);
    EXPECT_EQ(byRows.Columns().Count(), 4U);
    EXPECT_EQ(Walked(byRows.Row(0)), (Entries{{0, 7}, {2, 5}})) << "in order of columns";
    EXPECT_EQ(Walked(byRows.Column(1)), (Entries{{2, 9}}));
    const auto byColumns = SparseMatrix<int>::FromColumns(byRows.Columns(), 3);
    EXPECT_EQ(byColumns.Rows(), byRows.Rows());
}

TEST(SparseMatrix, MayHaveNoRowsOrColumns)
{
    const SparseMatrix<int> nothing;
    EXPECT_EQ(nothing.EntryCount(), 0U);
    SparseVectors<int> empty;
    empty.Close();
    empty.Close();
    const auto matrix = SparseMatrix<int>::FromRows(empty, 0);
    EXPECT_EQ(matrix.Rows().Count(), 2U);
    EXPECT_EQ(matrix.Columns().Count(), 0U);
}

}  // namespace
}  // namespace nuv::test
