#include "Nuv/Algebra/Singletons/SingletonOrder.hpp"

#include <algorithm>
#include <cstdint>
#include <numeric>

namespace nuv
{
namespace
{

/// Vectors along one direction and those across, each with the number of its entries that are left.
class Pattern
{
public:
    Pattern(SparseVectors<std::uint8_t> along, SparseVectors<std::uint8_t> across)
        : m_along(std::move(along)), m_across(std::move(across)), m_isLeft(m_across.Count(), true)
    {
        for (Index k = 0; k < m_along.Count(); ++k)
            m_count.push_back(static_cast<Index>(m_along.Indices(k).size()));
    }

    /// Takes vectors with one entry left, each with the vector across it, until there is none.
    template <class Take>
    void TakeSingletons(const Take& take)
    {
        std::vector<Index> singletons;  // and those that may become one
        for (Index k = m_along.Count(); k-- > 0;)
            singletons.push_back(k);
        while (!singletons.empty())
        {
            const Index k = singletons.back();
            singletons.pop_back();
            if (m_count[k] != 1)
                continue;  // has more, or was taken
            const auto indices = m_along.Indices(k);
            const Index at =
                *std::ranges::find_if(indices, [this](Index i) { return m_isLeft[i]; });
            take(at, k);
            m_isLeft[at] = false;
            for (const Index other : m_across.Indices(at))
            {
                if (--m_count[other] == 1)
                    singletons.push_back(other);
            }
        }
    }

private:
    SparseVectors<std::uint8_t> m_along;
    SparseVectors<std::uint8_t> m_across;
    std::vector<bool> m_isLeft;  ///< by vector across
    std::vector<Index> m_count;
};

}  // namespace

SingletonOrder FindSingletons(const SparseVectors<ExactNumber>& columns)
{
    const Index size = columns.Count();
    SingletonOrder order;
    SparseVectors<std::uint8_t> places;
    for (Index k = 0; k < size; ++k)
    {
        for (const auto [row, entry] : columns[k])
        {
            const bool isNew =
                places.index.size() == places.start.back() || places.index.back() != row;
            if (isNew && entry.mantissa != 0)
                places.Append(row, 1);  // same bits: that there is one is all
        }
        places.Close();
    }
    std::vector<bool> hasRow(size, true);
    std::vector<bool> hasColumn(size, true);
    Pattern(places, Transposed(places, size))
        .TakeSingletons(
            [&](Index row, Index column)
            {
                order.columnSingletons.push_back({row, column});
                hasRow[row] = false;
                hasColumn[column] = false;
            });
    // Of what is left alone.
    SparseVectors<std::uint8_t> left;
    for (Index k = 0; k < size; ++k)
    {
        for (const auto [row, entry] : places[k])
        {
            if (hasColumn[k] && hasRow[row])
                left.Append(row, entry);
        }
        left.Close();
    }
    Pattern(Transposed(left, size), left)
        .TakeSingletons(
            [&](Index column, Index row)
            {
                order.rowSingletons.push_back({row, column});
                hasRow[row] = false;
                hasColumn[column] = false;
            });
    for (Index k = 0; k < size; ++k)
    {
        if (hasRow[k])
            order.bumpRows.push_back(k);
        if (hasColumn[k])
            order.bumpColumns.push_back(k);
    }
    return order;
}

SparseVectors<ExactNumber> BumpOf(const SparseVectors<ExactNumber>& columns,
                                  const SingletonOrder& order)
{
    std::vector<Index> place(columns.Count(), kNoIndex);
    for (Index k = 0; k < order.bumpRows.size(); ++k)
        place[order.bumpRows[k]] = k;
    SparseVectors<ExactNumber> bump;
    for (const Index column : order.bumpColumns)
    {
        for (const auto [row, entry] : columns[column])
        {
            if (place[row] != kNoIndex)
                bump.Append(place[row], entry);
        }
        bump.Close();
    }
    return bump;
}

std::vector<Index> ColumnsByPivotRow(const SingletonOrder& order,
                                     const std::vector<Index>& bumpPosition)
{
    std::vector<Index> columns(order.columnSingletons.size() + order.rowSingletons.size() +
                               order.bumpRows.size());
    for (const auto* pivots : {&order.columnSingletons, &order.rowSingletons})
    {
        for (const auto [row, column] : *pivots)
            columns[row] = column;
    }
    for (Index k = 0; k < bumpPosition.size(); ++k)
        columns[order.bumpRows[bumpPosition[k]]] = order.bumpColumns[k];
    return columns;
}

}  // namespace nuv
