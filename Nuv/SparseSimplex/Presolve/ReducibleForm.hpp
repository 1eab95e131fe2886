/// A bounded form that loses rows and columns one by one. Columns and rows keep their numbers;
/// those that are gone stay in the lists of entries and are skipped, so that taking one out costs
/// no search.
#pragma once

#include "Nuv/SparseSimplex/BoundedForm.hpp"
#include "Nuv/SparseSimplex/Factors/EditableVectors.hpp"
#include "Nuv/SparseSimplex/Presolve/Removal.hpp"

#include <cstdint>
#include <vector>

namespace nuv::presolve
{

/// Two numbers that differ by no more than this share of their size (and of one) are taken for the
/// same: decimals are not doubles, and bounds are computed.
inline constexpr double kSame = 1e-9;

[[nodiscard]] double Margin(double number) noexcept;

/// The sum, or zero where nothing but rounding is left of it.
[[nodiscard]] double Sum(double number, double change) noexcept;

/// The least and the largest sum that a row can have within the bounds of its columns.
struct ActivityRange
{
    double least = 0.0;    ///< of the finite terms
    double largest = 0.0;  ///< of the finite terms
    Index leastInfinite = 0;
    Index largestInfinite = 0;

    [[nodiscard]] double Least() const noexcept
    {
        return leastInfinite == 0 ? least : -kInfinity;
    }
    [[nodiscard]] double Largest() const noexcept
    {
        return largestInfinite == 0 ? largest : kInfinity;
    }
};

/// Numbers that wait to be looked at, each once.
class Worklist
{
public:
    explicit Worklist(Index count);
    void Note(Index number);
    /// Everything noted, which is forgotten.
    [[nodiscard]] std::vector<Index> Take();
    [[nodiscard]] bool Empty() const noexcept
    {
        return m_list.empty();
    }

private:
    std::vector<Index> m_list;
    std::vector<bool> m_noted;
};

class ReducibleForm
{
public:
    explicit ReducibleForm(const BoundedForm& form);

    Index rows;
    Index columns;
    double constant = 0.0;  ///< what the objective has lost to columns that are gone
    std::vector<double> cost;
    std::vector<double> lower;
    std::vector<double> upper;
    std::vector<double> rowLower;
    std::vector<double> rowUpper;
    /// How many entries are present.
    std::vector<Index> rowCount;
    std::vector<Index> columnCount;
    Worklist rowsNoted;
    Worklist columnsNoted;
    /// Infeasible or unbounded, as far as doubles tell: there is nothing to gain here then.
    bool contradiction = false;

    [[nodiscard]] bool HasRow(Index row) const noexcept
    {
        return !m_rowGone[row];
    }
    [[nodiscard]] bool HasColumn(Index column) const noexcept
    {
        return !m_columnGone[column];
    }
    [[nodiscard]] bool IsEquation(Index row) const noexcept
    {
        return rowLower[row] == rowUpper[row];
    }

    /// Calls visit(column, entry) for each entry present in a row, visit(row, entry) for a
    /// column's.
    template <class Visit>
    void VisitRow(Index row, const Visit& visit)
    {
        m_work += m_byRow.Indices(row).size();
        for (const auto [column, entry] : m_byRow[row])
        {
            // same bits (in MoveCost): nobody asks what a column that is gone costs
            if (!m_columnGone[column])
                visit(column, entry);
        }
    }
    template <class Visit>
    void VisitColumn(Index column, const Visit& visit)
    {
        m_work += m_byColumn.Indices(column).size();
        for (const auto [row, entry] : m_byColumn[column])
        {
            if (!m_rowGone[row])
                visit(row, entry);
        }
    }

    /// Where the entry stands that is alone in its row or column, and what it is.
    struct OnlyEntry
    {
        Index at = kNoIndex;
        double value = 0.0;  // same bits: there is one
    };
    [[nodiscard]] OnlyEntry OnlyEntryOfRow(Index row);
    [[nodiscard]] OnlyEntry OnlyEntryOfColumn(Index column);

    void SetBounds(Index column, double newLower, double newUpper);
    void SetSides(Index row, double newLower, double newUpper);
    void RemoveRow(Index row);
    void RemoveColumn(Index column);
    /// Adds to the entry of a row and a column that are present, which is taken out if nothing but
    /// rounding is left of it.
    void AddToEntry(Index row, Index column, double change);

    [[nodiscard]] const ActivityRange& ActivityOf(Index row);
    /// Of the row without one column, whose entry it is: the least and the largest sum.
    [[nodiscard]] double LeastWithout(Index row, Index column, double entry);
    [[nodiscard]] double LargestWithout(Index row, Index column, double entry);

    /// The entries present in a row or a column but for one number, kept for an inverse.
    Index KeepRow(Index row, Index without = kNoIndex);
    Index KeepColumn(Index column, Index without = kNoIndex);
    void Note(const Removal& removal)
    {
        m_removals.push_back(removal);
    }

    /// Whether so much was looked at that more would not pay.
    [[nodiscard]] bool IsTired() const noexcept
    {
        return m_work > m_mostWork;
    }
    [[nodiscard]] const std::vector<Removal>& Removals() const noexcept
    {
        return m_removals;
    }
    [[nodiscard]] const SparseVectors<double>& Kept() const noexcept
    {
        return m_kept;
    }

private:
    void ForgetActivities(Index column);
    void RemoveEntry(Index row, Index column);

    EditableVectors m_byRow;
    EditableVectors m_byColumn;
    std::vector<bool> m_rowGone;
    std::vector<bool> m_columnGone;
    std::vector<ActivityRange> m_activity;
    std::vector<bool> m_activityKnown;
    std::vector<Removal> m_removals;
    SparseVectors<double> m_kept;
    std::uint64_t m_work = 0;
    std::uint64_t m_mostWork;
};

}  // namespace nuv::presolve
