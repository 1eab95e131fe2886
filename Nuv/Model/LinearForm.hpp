/// The computational form of a linear program, which every solving stage works on:
///
///     minimise  cost . x + constant
///     subject to  rowLower <= A x <= rowUpper,  columnLower <= x <= columnUpper,
///
/// with A sparse and all numbers doubles; a bound may be infinite. Row i has a logical variable of
/// index columns + i whose value is the row's activity, so that the rows read A x - r = 0 and all
/// restrictions are bounds on columns + rows variables. The logical's column of the matrix is minus
/// the unit vector. Invariant: byColumn and byRow hold the same entries, each at most once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
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

/// What a double of the form stands for in exact arithmetic.
enum class Numbers : std::uint8_t
{
    AsStored,   ///< itself: 0.1 is 3602879701896397 / 2^55
    AsWritten,  ///< the shortest decimal that reads back to it: 0.1 is 1/10
};

struct LinearForm
{
    Index rows = 0;
    Index columns = 0;
    Numbers numbers = Numbers::AsStored;
    double constant = 0.0;
    std::vector<double> cost;
    std::vector<double> columnLower;
    std::vector<double> columnUpper;
    std::vector<double> rowLower;
    std::vector<double> rowUpper;
    SparseVectors<double> byColumn;
    SparseVectors<double> byRow;

    [[nodiscard]] Index Variables() const noexcept
    {
        return rows + columns;
    }
    [[nodiscard]] bool IsLogical(Index variable) const noexcept
    {
        return variable >= columns;
    }
    [[nodiscard]] double Lower(Index variable) const noexcept
    {
        return variable < columns ? columnLower[variable] : rowLower[variable - columns];
    }
    [[nodiscard]] double Upper(Index variable) const noexcept
    {
        return variable < columns ? columnUpper[variable] : rowUpper[variable - columns];
    }
    [[nodiscard]] double Cost(Index variable) const noexcept
    {
        return variable < columns ? cost[variable] : 0.0;
    }

    /// Whether some lower bound is above its upper one, which no point satisfies.
    [[nodiscard]] bool Contradicts() const noexcept
    {
        for (Index v = 0; v < Variables(); ++v)
            if (Lower(v) > Upper(v))
                return true;
        return false;
    }

    /// @return what is wrong with the data, empty if nothing is: array lengths, an index out of
    /// range or out of order in byColumn, byRow that is not byColumn transposed, a number that is
    /// NaN, an infinite coefficient, a lower bound of +infinity or an upper one of -infinity.
    [[nodiscard]] std::string Defect() const;
};

}  // namespace nuv
