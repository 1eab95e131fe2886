/// Sparse matrices as lists of sparse vectors: the columns, the rows, or both. A sparse vector is
/// walked as `for (const auto [i, a] : matrix.Column(j))`, i being the row and a the entry.
#pragma once

#include "Nuv/Algebra/Index.hpp"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace nuv
{

/// One entry of a sparse vector, seen where it is stored.
template <class Value>
struct SparseEntry
{
    Index index;
    const Value& value;
};

/// The entries of one sparse vector, in the order in which they are stored.
template <class Value>
class SparseView
{
public:
    class Iterator
    {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = SparseEntry<Value>;
        using difference_type = std::ptrdiff_t;

        Iterator() = default;
        Iterator(const Index* index, const Value* value) noexcept : m_index(index), m_value(value)
        {
        }
        SparseEntry<Value> operator*() const noexcept
        {
            return {*m_index, *m_value};
        }
        Iterator& operator++() noexcept
        {
            ++m_index;
            ++m_value;
            return *this;
        }
        Iterator operator++(int) noexcept
        {
            const Iterator before = *this;
            ++*this;
            return before;
        }
        /// The two pointers move together, so one of them tells where the iterator is.
        bool operator==(const Iterator& other) const noexcept
        {
            return m_index == other.m_index;
        }

    private:
        const Index* m_index = nullptr;
        const Value* m_value = nullptr;
    };

    SparseView(std::span<const Index> indices, std::span<const Value> values) noexcept
        : m_indices(indices), m_values(values)
    {
    }
    [[nodiscard]] Iterator begin() const noexcept
    {
        return {m_indices.data(), m_values.data()};
    }
    [[nodiscard]] Iterator end() const noexcept
    {
        return {m_indices.data() + m_indices.size(), nullptr};
    }
    [[nodiscard]] std::size_t size() const noexcept
    {
        return m_indices.size();
    }
    [[nodiscard]] bool empty() const noexcept
    {
        return m_indices.empty();
    }

private:
    std::span<const Index> m_indices;
    std::span<const Value> m_values;
};

/// Sparse vectors laid end to end; vector k is [start[k], start[k + 1]) of `index` and `value`.
template <class Value>
struct SparseVectors
{
    std::vector<std::size_t> start{0};
    std::vector<Index> index;
    std::vector<Value> value;

    [[nodiscard]] Index Count() const noexcept
    {
        return static_cast<Index>(start.size() - 1);
    }
    [[nodiscard]] std::span<const Index> Indices(Index k) const noexcept
    {
        return std::span(index).subspan(start[k], start[k + 1] - start[k]);
    }
    [[nodiscard]] std::span<const Value> Values(Index k) const noexcept
    {
        return std::span(value).subspan(start[k], start[k + 1] - start[k]);
    }
    [[nodiscard]] SparseView<Value> operator[](Index k) const noexcept
    {
        return {Indices(k), Values(k)};
    }
    void Append(Index at, const Value& entry)
    {
        index.push_back(at);
        value.push_back(entry);
    }
    /// Ends the vector that the entries appended last belong to.
    void Close()
    {
        start.push_back(index.size());
    }
    void Clear()
    {
        start.assign(1, 0);
        index.clear();
        value.clear();
    }
    bool operator==(const SparseVectors&) const = default;
};

/// The same entries seen along the other direction, `count` vectors of them, indices increasing.
template <class Value>
SparseVectors<Value> Transposed(const SparseVectors<Value>& vectors, Index count)
{
    SparseVectors<Value> result;
    result.start.assign(std::size_t{count} + 1, 0);
    for (const Index at : vectors.index)
        ++result.start[std::size_t{at} + 1];
    for (std::size_t k = 0; k < count; ++k)
        result.start[k + 1] += result.start[k];
    std::vector<std::size_t> next(result.start.begin(), result.start.end() - 1);
    result.index.resize(vectors.index.size());
    result.value.resize(vectors.index.size());
    for (Index k = 0; k < vectors.Count(); ++k)
    {
        for (const auto [at, entry] : vectors[k])
        {
            const std::size_t to = next[at]++;
            result.index[to] = k;
            result.value[to] = entry;
        }
    }
    return result;
}

/// The vectors of these numbers in the order of the list; kNoIndex stands for one without entries.
template <class Value>
SparseVectors<Value> Selected(const SparseVectors<Value>& vectors, std::span<const Index> numbers)
{
    SparseVectors<Value> result;
    result.start.reserve(numbers.size() + 1);
    for (const Index k : numbers)
    {
        if (k != kNoIndex)
        {
            const std::span<const Index> indices = vectors.Indices(k);
            const std::span<const Value> values = vectors.Values(k);
            result.index.insert(result.index.end(), indices.begin(), indices.end());
            result.value.insert(result.value.end(), values.begin(), values.end());
        }
        result.Close();
    }
    return result;
}

/// The same pattern with other values: transform(index, value) of every entry of vector k.
template <class Result, class Value, class Transform>
SparseVectors<Result> Mapped(const SparseVectors<Value>& vectors, const Transform& transform)
{
    SparseVectors<Result> result;
    result.start = vectors.start;
    result.index = vectors.index;
    result.value.reserve(vectors.value.size());
    for (Index k = 0; k < vectors.Count(); ++k)
    {
        for (const auto [at, entry] : vectors[k])
            result.value.push_back(transform(k, at, entry));
    }
    return result;
}

/// A matrix that can be walked both ways. Invariant: its columns and its rows hold the same
/// entries.
template <class Value>
class SparseMatrix
{
public:
    SparseMatrix() = default;

    [[nodiscard]] static SparseMatrix FromColumns(SparseVectors<Value> columns, Index rows)
    {
        SparseMatrix matrix;
        matrix.m_rows = Transposed(columns, rows);
        matrix.m_columns = std::move(columns);
        return matrix;
    }
    [[nodiscard]] static SparseMatrix FromRows(const SparseVectors<Value>& rows, Index columns)
    {
        // Transposed twice, each row is in increasing order of columns.
        return FromColumns(Transposed(rows, columns), rows.Count());
    }

    [[nodiscard]] SparseView<Value> Column(Index j) const noexcept
    {
        return m_columns[j];
    }
    [[nodiscard]] SparseView<Value> Row(Index i) const noexcept
    {
        return m_rows[i];
    }
    [[nodiscard]] const SparseVectors<Value>& Columns() const noexcept
    {
        return m_columns;
    }
    [[nodiscard]] const SparseVectors<Value>& Rows() const noexcept
    {
        return m_rows;
    }
    [[nodiscard]] std::size_t EntryCount() const noexcept
    {
        return m_columns.index.size();
    }

private:
    SparseVectors<Value> m_columns;
    SparseVectors<Value> m_rows;
};

}  // namespace nuv
