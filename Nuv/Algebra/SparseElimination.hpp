/// The elimination behind the LU factors: Gaussian elimination of a sparse matrix. Columns, then
/// rows, of one entry are pivots that change nothing else and are taken from flat arrays; what is
/// left, the nucleus, goes by Markowitz pivoting (Markowitz 1957; the search over few short rows
/// and columns is Zlatev's). Invariant: the nucleus is held twice, values by columns and the mere
/// pattern by rows, and each unfinished row and column is in the list of its count.
#pragma once

#include "Nuv/Algebra/SparseMatrix.hpp"

#include <limits>
#include <vector>

namespace nuv
{

/// Rows or columns grouped by their number of entries, in doubly linked lists.
class CountLists
{
public:
    CountLists() = default;
    explicit CountLists(Index size)
        : m_head(std::size_t{size} + 1, kNoIndex),  // same bits (-> 2): a list that stays empty
          m_next(size, kNoIndex),
          m_previous(size, kNoIndex),
          m_count(size, kNoIndex)
    {
    }
    [[nodiscard]] Index First(Index count) const noexcept
    {
        return m_head[count];
    }
    [[nodiscard]] Index Next(Index item) const noexcept
    {
        return m_next[item];
    }
    void Remove(Index item) noexcept
    {
        if (m_count[item] == kNoIndex)
            return;
        if (m_previous[item] != kNoIndex)
            m_next[m_previous[item]] = m_next[item];
        else
            m_head[m_count[item]] = m_next[item];
        if (m_next[item] != kNoIndex)
            m_previous[m_next[item]] = m_previous[item];
        m_count[item] = kNoIndex;
    }
    void Place(Index item, std::size_t count) noexcept
    {
        if (m_count[item] == count)
            return;
        Remove(item);
        m_count[item] = static_cast<Index>(count);
        m_previous[item] = kNoIndex;
        m_next[item] = m_head[count];
        if (m_next[item] != kNoIndex)
            m_previous[m_next[item]] = item;
        m_head[count] = item;
    }

private:
    std::vector<Index> m_head;
    std::vector<Index> m_next;
    std::vector<Index> m_previous;
    std::vector<Index> m_count;
};

/// A column that had no pivot, and the row whose logical (minus the unit vector) takes its place.
struct Replacement
{
    Index column;
    Index row;
};

template <class Field>
class SparseElimination
{
public:
    using Value = typename Field::Value;

    /// Refers to both.
    SparseElimination(const Field& field, const SparseVectors<Value>& columns);

    /// Eliminates until no pivot is left.
    void Run();

    // What has been eliminated, one step per pivot: its row, column and value, the multipliers by
    // row, and the rest of the pivot row by column.
    std::vector<Index> pivotRow;
    std::vector<Index> pivotColumn;
    std::vector<Value> pivotValue;
    SparseVectors<Value> lower;
    SparseVectors<Value> upper;

    /// Gives each column without a pivot the next row without one, and writes that row to
    /// `position`.
    [[nodiscard]] std::vector<Replacement> PairLeftovers(std::vector<Index>& position) const;

private:
    struct Entry
    {
        Index row;
        Value value;
    };
    struct Pivot
    {
        Index row = kNoIndex;
        Index column = kNoIndex;
        double cost = std::numeric_limits<double>::infinity();
    };

    void TakeSingletonColumns();
    void TakeSingletonRows();
    void NotePivot(Index row, Index column, const Value& value);
    void LoadNucleus();
    [[nodiscard]] Pivot FindPivot();
    void ConsiderColumn(Index column, Pivot& best);
    void ConsiderRow(Index row, Pivot& best);
    void Eliminate(Index row, Index column);
    void TakePivotColumn(Index row, Index column);
    void UpdateColumn(Index column, const Value& factor);
    [[nodiscard]] Value TakeEntry(Index row, Index column);
    [[nodiscard]] bool IsLargeEnough(Index column, const Value& value);
    void DropColumn(Index column);
    [[nodiscard]] double LargestOf(Index column);
    void ForgetInRow(Index row, Index column) noexcept;

    const Field& m_field;
    Index m_size;
    const SparseVectors<Value>& m_matrix;
    // While singletons are taken: the matrix by rows, how many active entries are left, and which
    // rows and columns have pivoted.
    SparseVectors<Value> m_byRow;
    std::vector<Index> m_columnLeft;
    std::vector<Index> m_rowLeft;
    std::vector<bool> m_columnDone;
    std::vector<bool> m_rowDone;
    std::vector<std::vector<Entry>> m_columns;
    std::vector<std::vector<Index>> m_rows;
    // Largest magnitude of a column, negative where it is not known; of no use to an exact field.
    std::vector<double> m_largest;
    CountLists m_columnCounts;
    CountLists m_rowCounts;
    // The multipliers of the current pivot: their rows, their values by row, and a stamp per row
    // that tells which of them the column being updated already holds.
    std::vector<Index> m_multiplierRows;
    std::vector<Value> m_multiplier;
    std::vector<Index> m_stamp;
    Index m_currentStamp = 0;  // same bits: the first column has the next one
};

}  // namespace nuv
