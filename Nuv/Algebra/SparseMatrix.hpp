/// Sparse matrices as lists of sparse vectors, the columns or the rows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace nuv
{

using Index = std::uint32_t;
inline constexpr Index kNoIndex = std::numeric_limits<Index>::max();

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
        for (std::size_t at = vectors.start[k]; at < vectors.start[k + 1]; ++at)
        {
            const std::size_t to = next[vectors.index[at]]++;
            result.index[to] = k;
            result.value[to] = vectors.value[at];
        }
    }
    return result;
}

}  // namespace nuv
