/// Markowitz's pivots one by one: find, take the pivot column out, update the columns of its row.
#include "Nuv/Algebra/SparseElimination.hpp"

#include "Nuv/Algebra/PrimeField.hpp"
#include "Nuv/Algebra/RationalField.hpp"
#include "Nuv/Algebra/RealField.hpp"

#include <algorithm>
#include <utility>

namespace nuv
{

template <class Field>
SparseElimination<Field>::SparseElimination(const Field& field, const SparseVectors<Value>& columns)
    : m_field(field),
      m_size(columns.Count()),
      m_matrix(columns),
      m_byRow(Transposed(columns, m_size)),
      m_columnLeft(m_size),
      m_rowLeft(m_size),
      m_columnDone(m_size, false),
      m_rowDone(m_size, false)
{
    for (Index k = 0; k < m_size; ++k)
    {
        m_columnLeft[k] = static_cast<Index>(columns[k].size());
        m_rowLeft[k] = static_cast<Index>(m_byRow[k].size());
    }
    pivotRow.reserve(m_size);
    pivotColumn.reserve(m_size);
    pivotValue.reserve(m_size);
    lower.start.reserve(std::size_t{m_size} + 1);
    upper.start.reserve(std::size_t{m_size} + 1);
    upper.index.reserve(columns.index.size());
    upper.value.reserve(columns.index.size());
}

template <class Field>
void SparseElimination<Field>::Run()
{
    TakeSingletonColumns();
    TakeSingletonRows();
    if (pivotRow.size() == m_size)  // same bits (never): a nucleus of no rows
        return;
    LoadNucleus();
    for (Pivot pivot = FindPivot(); pivot.row != kNoIndex; pivot = FindPivot())
        Eliminate(pivot.row, pivot.column);
}

template <class Field>
void SparseElimination<Field>::NotePivot(Index row, Index column, const Value& value)
{
    pivotRow.push_back(row);
    pivotColumn.push_back(column);
    pivotValue.push_back(value);
    m_rowDone[row] = true;
    m_columnDone[column] = true;
}

/// A column with one entry left in active rows pivots there without multipliers, and its row leaves
/// the other columns. Columns that come down to one entry by that follow. The rows that are left
/// have lost no entry: all other entries of a column that pivots are in rows that did before.
template <class Field>
void SparseElimination<Field>::TakeSingletonColumns()
{
    std::vector<Index> queue;
    for (Index column = 0; column < m_size; ++column)
    {
        if (m_columnLeft[column] == 1)
            queue.push_back(column);
    }
    for (std::size_t next = 0; next < queue.size(); ++next)
    {
        const Index column = queue[next];
        Index row = kNoIndex;
        const Value* pivot = nullptr;
        for (const auto [at, value] : m_matrix[column])
        {
            if (m_rowDone[at])
                continue;
            row = at;
            pivot = &value;
        }
        // Another singleton of the same row came first, or the entry is too small: the nucleus
        // finds a pivot for this column or drops it.
        if (row == kNoIndex || !m_field.MayPivot(*pivot))
            continue;
        NotePivot(row, column, *pivot);
        for (const auto [other, value] : m_byRow[row])
        {
            if (m_columnDone[other])
                continue;
            upper.Append(other, value);
            if (--m_columnLeft[other] == 1)
                queue.push_back(other);
        }
        upper.Close();
        lower.Close();
    }
}

/// A row with one entry left in active columns pivots there: the other entries of the column become
/// multipliers, which find nothing to change in other columns.
template <class Field>
void SparseElimination<Field>::TakeSingletonRows()
{
    std::vector<Index> queue;
    for (Index row = 0; row < m_size; ++row)
    {
        if (m_rowLeft[row] == 1)
            queue.push_back(row);
    }
    for (std::size_t next = 0; next < queue.size(); ++next)
    {
        const Index row = queue[next];
        Index column = kNoIndex;
        const Value* pivot = nullptr;
        for (const auto [at, value] : m_byRow[row])
        {
            if (m_columnDone[at])
                continue;
            column = at;
            pivot = &value;
        }
        if (column == kNoIndex || !m_field.MayPivot(*pivot))
            continue;
        const Value inverse = m_field.Inverse(*pivot);
        NotePivot(row, column, *pivot);
        for (const auto [other, value] : m_matrix[column])
        {
            if (m_rowDone[other])
                continue;
            lower.Append(other, m_field.Product(value, inverse));
            if (--m_rowLeft[other] == 1)
                queue.push_back(other);
        }
        upper.Close();
        lower.Close();
    }
}

template <class Field>
void SparseElimination<Field>::LoadNucleus()
{
    m_columns.resize(m_size);
    m_rows.resize(m_size);
    m_largest.assign(m_size, -1.0);
    m_columnCounts = CountLists(m_size);
    m_rowCounts = CountLists(m_size);
    m_multiplier.assign(m_size, m_field.Zero());
    m_stamp.assign(m_size, 0);
    // same bits (always): room alone
    for (Index row = 0; row < m_size; ++row)
    {
        if (!m_rowDone[row])  // same bits: of no use for the others
            m_rows[row].reserve(m_rowLeft[row]);
    }
    for (Index column = 0; column < m_size; ++column)
    {
        if (m_columnDone[column])
            continue;
        m_columns[column].reserve(m_columnLeft[column]);
        for (const auto [row, value] : m_matrix[column])
        {
            if (m_rowDone[row] || m_field.IsZero(value))
                continue;
            m_columns[column].push_back({row, value});
            m_rows[row].push_back(column);
        }
    }
    // Those that have pivoted are empty here, and nobody asks for these.
    for (Index k = 0; k < m_size; ++k)
    {
        m_columnCounts.Place(k, m_columns[k].size());
        m_rowCounts.Place(k, m_rows[k].size());
    }
}

/// Looks at rows and columns from the shortest on and stops when nothing cheaper can follow, or
/// after a few that offered a pivot: the rest of the search seldom pays.
template <class Field>
typename SparseElimination<Field>::Pivot SparseElimination<Field>::FindPivot()
{
    constexpr int kLooks = 4;
    Pivot best;
    int looks = 0;
    for (Index count = 1; count <= m_size; ++count)
    {
        const double shorter = static_cast<double>(count) - 1.0;
        for (Index column = m_columnCounts.First(count); column != kNoIndex;)
        {
            const Index next = m_columnCounts.Next(column);
            ConsiderColumn(column, best);
            // same bits (in RationalField, in PrimeField): what comes later is no cheaper
            if (best.cost <= shorter * shorter || (best.row != kNoIndex && ++looks >= kLooks))
                return best;
            column = next;
        }
        for (Index row = m_rowCounts.First(count); row != kNoIndex; row = m_rowCounts.Next(row))
        {
            ConsiderRow(row, best);
            if (best.cost <= shorter * (shorter + 1.0) ||
                (best.row != kNoIndex && ++looks >= kLooks))
                return best;
        }
    }
    return best;
}

template <class Field>
void SparseElimination<Field>::ConsiderColumn(Index column, Pivot& best)
{
    if constexpr (!Field::kIsExact)
    {
        if (!m_field.MayPivot(LargestOf(column)))
        {
            DropColumn(column);
            return;
        }
    }
    const double others = static_cast<double>(m_columns[column].size() - 1);
    for (const Entry& entry : m_columns[column])
    {
        const double cost = others * static_cast<double>(m_rows[entry.row].size() - 1);
        if (cost < best.cost && IsLargeEnough(column, entry.value))
            best = {entry.row, column, cost};
    }
}

template <class Field>
void SparseElimination<Field>::ConsiderRow(Index row, Pivot& best)
{
    const double others = static_cast<double>(m_rows[row].size() - 1);
    for (const Index column : m_rows[row])
    {
        const double cost = others * static_cast<double>(m_columns[column].size() - 1);
        if (cost >= best.cost)
            continue;
        if constexpr (!Field::kIsExact)
        {
            const auto entry = std::find_if(m_columns[column].begin(), m_columns[column].end(),
                                            [row](const Entry& e) { return e.row == row; });
            if (!m_field.MayPivot(LargestOf(column)) || !IsLargeEnough(column, entry->value))
                continue;
        }
        best = {row, column, cost};
    }
}

template <class Field>
void SparseElimination<Field>::Eliminate(Index row, Index column)
{
    TakePivotColumn(row, column);
    for (const Index other : m_rows[row])
    {
        if (other == column)
            continue;
        const Value factor = TakeEntry(row, other);
        // same bits: without multipliers nothing changes
        if (!m_multiplierRows.empty())
            UpdateColumn(other, factor);
        m_columnCounts.Place(other, m_columns[other].size());
        upper.Append(other, factor);
    }
    upper.Close();
    m_rows[row].clear();
    m_rowCounts.Remove(row);
    for (const Index eliminated : m_multiplierRows)
    {
        m_rowCounts.Place(eliminated, m_rows[eliminated].size());
        m_multiplier[eliminated] = m_field.Zero();
    }
}

/// Turns the pivot column into multipliers and takes it out of the active part.
template <class Field>
void SparseElimination<Field>::TakePivotColumn(Index row, Index column)
{
    const Value value = TakeEntry(row, column);
    const Value inverse = m_field.Inverse(value);
    m_multiplierRows.clear();
    for (const Entry& entry : m_columns[column])
    {
        m_multiplierRows.push_back(entry.row);
        m_multiplier[entry.row] = m_field.Product(entry.value, inverse);
        lower.Append(entry.row, m_multiplier[entry.row]);
        ForgetInRow(entry.row, column);
    }
    lower.Close();
    m_columns[column].clear();
    m_columnCounts.Remove(column);
    pivotRow.push_back(row);
    pivotColumn.push_back(column);
    pivotValue.push_back(value);
}

template <class Field>
void SparseElimination<Field>::UpdateColumn(Index column, const Value& factor)
{
    ++m_currentStamp;  // same bits (-> --): what counts is that it is another one
    std::vector<Entry>& entries = m_columns[column];
    for (std::size_t at = 0; at < entries.size();)
    {
        const Index row = entries[at].row;
        // same bits (always, never): a multiple of 0 is subtracted
        if (m_field.IsZero(m_multiplier[row]))
        {
            ++at;
            continue;
        }
        m_stamp[row] = m_currentStamp;
        m_field.SubtractProduct(entries[at].value, m_multiplier[row], factor);
        if (m_field.Negligible(entries[at].value))
        {
            ForgetInRow(row, column);
            entries[at] = std::move(entries.back());
            entries.pop_back();
        }
        else
        {
            ++at;
        }
    }
    for (const Index row : m_multiplierRows)
    {
        if (m_stamp[row] == m_currentStamp)
            continue;
        entries.push_back({row, m_field.Negated(m_field.Product(m_multiplier[row], factor))});
        m_rows[row].push_back(column);
    }
    m_largest[column] = -1.0;
}

/// Takes an entry out of its column, not out of its row.
template <class Field>
typename SparseElimination<Field>::Value SparseElimination<Field>::TakeEntry(Index row,
                                                                             Index column)
{
    std::vector<Entry>& entries = m_columns[column];
    const auto entry = std::find_if(entries.begin(), entries.end(),
                                    [row](const Entry& e) { return e.row == row; });
    Value value = std::move(entry->value);
    *entry = std::move(entries.back());
    entries.pop_back();
    m_largest[column] = -1.0;
    return value;
}

/// Every entry of an exact field is as good as another.
template <class Field>
bool SparseElimination<Field>::IsLargeEnough([[maybe_unused]] Index column,
                                             [[maybe_unused]] const Value& value)
{
    if constexpr (Field::kIsExact)
        return true;
    else
        return m_field.Magnitude(value) >= Field::kThreshold * LargestOf(column);
}

/// Gives a column up: nothing in it is large enough to pivot, as in an exact field is no column.
template <class Field>
void SparseElimination<Field>::DropColumn([[maybe_unused]] Index column)
{
    if constexpr (!Field::kIsExact)
    {
        for (const Entry& entry : m_columns[column])
        {
            ForgetInRow(entry.row, column);
            m_rowCounts.Place(entry.row, m_rows[entry.row].size());
        }
        m_columns[column].clear();
        m_columnCounts.Remove(column);
    }
}

template <class Field>
double SparseElimination<Field>::LargestOf(Index column)
{
    double& largest = m_largest[column];
    if constexpr (!Field::kIsExact)
    {
        // same bits (always, -> <=, -> 1.0F): computed again it is the same
        if (largest < 0.0)
        {
            largest = 0.0;
            for (const Entry& entry : m_columns[column])
                largest = std::max(largest, m_field.Magnitude(entry.value));
        }
    }
    return largest;
}

template <class Field>
void SparseElimination<Field>::ForgetInRow(Index row, Index column) noexcept
{
    std::vector<Index>& columns = m_rows[row];
    *std::find(columns.begin(), columns.end(), column) = columns.back();
    columns.pop_back();
}

template <class Field>
std::vector<Replacement> SparseElimination<Field>::PairLeftovers(std::vector<Index>& position) const
{
    std::vector<bool> isTaken(position.size(), false);
    for (const Index row : pivotRow)
        isTaken[row] = true;
    std::vector<Replacement> replacements;
    Index row = 0;
    for (Index column = 0; column < position.size(); ++column)
    {
        if (position[column] != kNoIndex)
            continue;
        while (isTaken[row])
            ++row;
        isTaken[row] = true;
        position[column] = row;
        replacements.push_back({column, row});
    }
    return replacements;
}

template class SparseElimination<RealField>;
template class SparseElimination<PrimeField>;
template class SparseElimination<RationalField>;

}  // namespace nuv
