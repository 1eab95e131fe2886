/// The elimination against its rule written down literally: which pivot comes next, and bit for bit
/// what each leaves.
#include "Nuv/Algebra/SparseElimination.hpp"
#include "Nuv/Algebra/PrimeField.hpp"
#include "Nuv/Algebra/RationalField.hpp"
#include "Nuv/Algebra/RealField.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Random.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace nuv::test
{
namespace
{

constexpr std::uint64_t kPrime = 4611686018427387847u;

/// Singleton columns, then singleton rows, in the order in which they come to be; then by
/// Markowitz's cost among the columns and rows of the fewest entries, of as many the last to come
/// to that number first. All is searched and counted anew for each step.
template <class Field>
class LiteralElimination
{
public:
    using Value = typename Field::Value;

    LiteralElimination(const Field& field, const SparseVectors<Value>& matrix)
        : m_field(field),
          m_size(matrix.Count()),
          m_matrix(matrix),
          m_rowDone(m_size, false),
          m_columnDone(m_size, false),
          m_columns(m_size),
          m_rows(m_size),
          m_columnSince(m_size),
          m_rowSince(m_size)
    {
        TakeSingletons(matrix, Transposed(matrix, m_size), m_rowDone, m_columnDone, false);
        TakeSingletons(Transposed(matrix, m_size), matrix, m_columnDone, m_rowDone, true);
        LoadNucleus();
        while (FindPivot())
            Eliminate(m_row, m_column);
    }

    std::vector<Index> pivotRow;
    std::vector<Index> pivotColumn;
    std::vector<Value> pivotValue;
    SparseVectors<Value> lower;
    SparseVectors<Value> upper;

private:
    struct Entry
    {
        Index row;
        Value value;
    };
    /// When a row or a column came to its number of entries; none has been taken.
    struct Since
    {
        std::size_t count = 0;
        int time = 0;
    };

    /// Vectors with one entry left `across`, each taken with that. Of rows the others of the column
    /// become multipliers.
    void TakeSingletons(const SparseVectors<Value>& vectors, const SparseVectors<Value>& across,
                        std::vector<bool>& acrossDone, std::vector<bool>& done, bool isOfRows)
    {
        const auto left = [&](Index k) {
            return std::ranges::count_if(vectors.Indices(k),
                                         [&](Index at) { return !acrossDone[at]; });
        };
        std::vector<Index> queue;
        for (Index k = 0; k < m_size; ++k)
        {
            if (!done[k] && left(k) == 1)
                queue.push_back(k);
        }
        for (std::size_t next = 0; next < queue.size(); ++next)
        {
            const Index k = queue[next];
            for (const auto [at, value] : vectors[k])
            {
                if (acrossDone[at] || !m_field.MayPivot(value))
                    continue;
                acrossDone[at] = true;
                done[k] = true;
                Note(isOfRows ? k : at, isOfRows ? at : k, value);
                for (const auto [other, entry] : across[at])
                {
                    if (done[other])
                        continue;
                    if (isOfRows)
                        lower.Append(other, m_field.Product(entry, m_field.Inverse(value)));
                    else
                        upper.Append(other, entry);
                    if (left(other) == 1)
                        queue.push_back(other);
                }
                lower.Close();
                upper.Close();
                break;
            }
        }
    }

    void Note(Index row, Index column, const Value& value)
    {
        pivotRow.push_back(row);
        pivotColumn.push_back(column);
        pivotValue.push_back(value);
    }

    void LoadNucleus()
    {
        for (Index column = 0; column < m_size; ++column)
        {
            for (const auto [row, value] : m_matrix[column])
            {
                if (m_columnDone[column] || m_rowDone[row] || m_field.IsZero(value))
                    continue;
                m_columns[column].push_back({row, value});
                m_rows[row].push_back(column);
            }
        }
        for (Index k = 0; k < m_size; ++k)
        {
            Recount(m_columnSince[k], m_columns[k].size());
            Recount(m_rowSince[k], m_rows[k].size());
        }
    }

    void Recount(Since& since, std::size_t count)
    {
        if (since.count != count)
            since = {count, ++m_time};
    }

    /// Those of so many entries, the last to come to it first.
    static std::vector<Index> Of(const std::vector<Since>& since, std::size_t count)
    {
        std::vector<Index> items;
        for (Index k = 0; k < since.size(); ++k)
        {
            if (since[k].count == count)
                items.push_back(k);
        }
        std::ranges::sort(items, [&](Index x, Index y) { return since[x].time > since[y].time; });
        return items;
    }

    /// In doubles, how large the largest entry is; in an exact field all are as good.
    [[nodiscard]] double Largest(Index column) const
    {
        double largest = 0.0;
        for (const Entry& entry : m_columns[column])
            largest = std::max(largest, Magnitude(entry.value));
        return largest;
    }
    static double Magnitude(const Value& value)
    {
        if constexpr (Field::kIsExact)
            return 1.0;
        else
            return std::fabs(value);
    }

    [[nodiscard]] double Cost(Index row, Index column) const
    {
        return (static_cast<double>(m_columns[column].size()) - 1.0) *
               (static_cast<double>(m_rows[row].size()) - 1.0);
    }

    void Consider(Index row, Index column, const Value& value)
    {
        if (Cost(row, column) >= m_cost || Largest(column) < 1e-10 ||
            Magnitude(value) < 0.1 * Largest(column))
            return;
        m_row = row;
        m_column = column;
        m_cost = Cost(row, column);
    }

    /// Four rows or columns are looked at from the first pivot on.
    bool FindPivot()
    {
        m_cost = std::numeric_limits<double>::infinity();
        int looks = 0;
        const auto isEnough = [&](double least)
        { return m_cost <= least || (m_cost < 1e300 && ++looks == 4); };
        for (std::size_t count = 1; count <= m_size; ++count)
        {
            const auto others = static_cast<double>(count) - 1.0;
            for (const Index column : Of(m_columnSince, count))
            {
                for (const Entry& entry : m_columns[column])
                    Consider(entry.row, column, entry.value);
                if (Largest(column) < 1e-10)
                    Drop(column);
                if (isEnough(others * others))
                    return true;
            }
            for (const Index row : Of(m_rowSince, count))
            {
                for (const Index column : m_rows[row])
                    Consider(row, column, *Find(row, column));
                if (isEnough(others * (others + 1.0)))
                    return true;
            }
        }
        return m_cost < 1e300;
    }

    Value* Find(Index row, Index column)
    {
        for (Entry& entry : m_columns[column])
        {
            if (entry.row == row)
                return &entry.value;
        }
        return nullptr;
    }

    template <class Item>
    static void Erase(std::vector<Item>& items, std::size_t at)
    {
        items[at] = items.back();
        items.pop_back();
    }

    void Forget(Index row, Index column)
    {
        std::vector<Index>& columns = m_rows[row];
        Erase(columns,
              static_cast<std::size_t>(std::ranges::find(columns, column) - columns.begin()));
    }

    Value Take(Index row, Index column)
    {
        const Value value = *Find(row, column);
        for (std::size_t at = 0; at < m_columns[column].size(); ++at)
        {
            if (m_columns[column][at].row == row)
                Erase(m_columns[column], at);
        }
        return value;
    }

    void Drop(Index column)
    {
        for (const Entry& entry : m_columns[column])
        {
            Forget(entry.row, column);
            Recount(m_rowSince[entry.row], m_rows[entry.row].size());
        }
        m_columns[column].clear();
        m_columnSince[column].count = 0;
    }

    void Eliminate(Index row, Index column)
    {
        const Value pivot = Take(row, column);
        std::vector<Entry> multipliers = m_columns[column];
        Note(row, column, pivot);
        for (Entry& entry : multipliers)
        {
            entry.value = m_field.Product(entry.value, m_field.Inverse(pivot));
            lower.Append(entry.row, entry.value);
            Forget(entry.row, column);
        }
        lower.Close();
        m_columns[column].clear();
        m_columnSince[column].count = 0;
        const std::vector<Index> others = m_rows[row];
        for (const Index other : others)
        {
            if (other == column)
                continue;
            const Value factor = Take(row, other);
            upper.Append(other, factor);
            Update(other, factor, multipliers);
            Recount(m_columnSince[other], m_columns[other].size());
        }
        upper.Close();
        m_rows[row].clear();
        m_rowSince[row].count = 0;
        for (const Entry& entry : multipliers)
            Recount(m_rowSince[entry.row], m_rows[entry.row].size());
    }

    /// What is there already changes first, and what is left of it next to nothing goes; then comes
    /// what is new.
    void Update(Index column, const Value& factor, const std::vector<Entry>& multipliers)
    {
        const auto multiplier = [&](Index row) {
            return std::ranges::find_if(multipliers,
                                        [row](const Entry& e) { return e.row == row; });
        };
        std::vector<Entry>& entries = m_columns[column];
        std::vector<Index> held;
        for (std::size_t at = 0; at < entries.size();)
        {
            const Index row = entries[at].row;
            const auto with = multiplier(row);
            if (with != multipliers.end())
            {
                held.push_back(row);
                m_field.SubtractProduct(entries[at].value, with->value, factor);
                if (m_field.Negligible(entries[at].value))
                {
                    Forget(row, column);
                    Erase(entries, at);
                    continue;
                }
            }
            ++at;
        }
        for (const Entry& with : multipliers)
        {
            if (std::ranges::find(held, with.row) != held.end())
                continue;
            entries.push_back({with.row, m_field.Negated(m_field.Product(with.value, factor))});
            m_rows[with.row].push_back(column);
        }
    }

    const Field& m_field;
    Index m_size;
    const SparseVectors<Value>& m_matrix;
    std::vector<bool> m_rowDone;
    std::vector<bool> m_columnDone;
    std::vector<std::vector<Entry>> m_columns;
    std::vector<std::vector<Index>> m_rows;
    std::vector<Since> m_columnSince;
    std::vector<Since> m_rowSince;
    int m_time = 0;
    Index m_row = 0;
    Index m_column = 0;
    double m_cost = 0.0;
};

/// Of any density, most of them with singletons, some with stored zeros, some singular, and each
/// with a few numbers only, so that rows and columns cancel; now and then columns of number 7
/// alone.
template <class Field, class Convert>
void ExpectSame(const Field& field, int cases, const Convert& convert)
{
    using Value = typename Field::Value;
    for (int seed = 1; seed <= cases; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(static_cast<std::uint64_t>(seed));
        const auto size = static_cast<Index>(random.Between(1, 18));
        const int sparsity = random.Between(1, 8);
        const int kinds = random.OneIn(2) ? 2 : 9;
        const int alike = random.OneIn(4) ? 2 : 15;
        SparseVectors<Value> matrix;
        for (Index column = 0; column < size; ++column)
        {
            const int only = random.OneIn(alike) ? 7 : -1;
            for (Index row = 0; row < size; ++row)
            {
                if (row != column && !random.OneIn(sparsity))
                    continue;
                if (!random.OneIn(12))
                    matrix.Append(row, convert(only < 0 ? random.Between(0, kinds) : only));
            }
            matrix.Close();
        }
        const LiteralElimination<Field> literal(field, matrix);
        SparseElimination<Field> elimination(field, matrix);
        elimination.Run();
        ASSERT_EQ(elimination.pivotRow, literal.pivotRow);
        ASSERT_EQ(elimination.pivotColumn, literal.pivotColumn);
        ASSERT_EQ(elimination.pivotValue, literal.pivotValue);
        ASSERT_EQ(elimination.lower, literal.lower);
        ASSERT_EQ(elimination.upper, literal.upper);
    }
}

/// Among the numbers are some too small to pivot on, and some a tenth of others.
TEST(SparseElimination, GoesByItsRuleInDoubles)
{
    ExpectSame(RealField{}, ShareOf(1500),
               [](int kind)
               {
                   constexpr double kNumbers[] = {1.0,  -1.0, 2.0,   0.5,  10.0,
                                                  0.15, -3.0, 1e-11, 0.25, 0.0};
                   return kNumbers[kind];
               });
}

TEST(SparseElimination, GoesByItsRuleModuloAPrime)
{
    const PrimeField field(kPrime);
    ExpectSame(field, ShareOf(800), [&](int kind) { return field.FromSigned(kind - 2); });
}

TEST(SparseElimination, GoesByItsRuleOverTheRationals)
{
    ExpectSame(RationalField{}, ShareOf(300), [](int kind) { return Rational(kind - 2); });
}

}  // namespace
}  // namespace nuv::test
