/// A sparse matrix by its rows from one by its columns, and the other way round.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace nuv
{

/// Vector k is [starts[k], starts[k + 1]) of `indices` and `values`.
struct CompressedVectors
{
    std::vector<std::size_t> starts;
    std::vector<std::uint32_t> indices;
    std::vector<double> values;
};

/// The same entries by their other index, which is below `count`. A counting sort: within each
/// vector of the result the indices increase.
[[nodiscard]] inline CompressedVectors Transposed(std::span<const std::size_t> starts,
                                                  std::span<const std::uint32_t> indices,
                                                  std::span<const double> values,
                                                  std::uint32_t count)
{
    CompressedVectors result{std::vector<std::size_t>(std::size_t{count} + 1),
                             std::vector<std::uint32_t>(indices.size()),
                             std::vector<double>(indices.size())};
    for (const std::uint32_t index : indices)
        ++result.starts[index + 1];
    for (std::size_t k = 1; k < result.starts.size(); ++k)
        result.starts[k] += result.starts[k - 1];
    std::vector<std::size_t> next(result.starts.begin(), result.starts.end() - 1);
    for (std::size_t k = 0; k + 1 < starts.size(); ++k)
    {
        for (std::size_t at = starts[k]; at < starts[k + 1]; ++at)
        {
            const std::size_t to = next[indices[at]]++;
            result.indices[to] = static_cast<std::uint32_t>(k);
            result.values[to] = values[at];
        }
    }
    return result;
}

}  // namespace nuv
