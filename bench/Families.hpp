// The corpus' models of the benchmarks in vectors, dense and sparse.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "Nuv/Corpus/BenchmarkModels.hpp"

namespace bench
{
using Family = nuv::corpus::BenchmarkFamily;
using nuv::corpus::NameOf;

struct Instance
{
    Family family;
    std::size_t rows;
    std::size_t columns;
    /// rows × columns, row after row.
    std::vector<float> A;
    std::vector<float> b;
    std::vector<float> c;
};

/// The non-zeros of a matrix, row after row or column after column.
struct NonZeros
{
    /// Where each line starts, and one past the last.
    std::vector<int> starts;
    /// Positions within the line's other dimension, from 0.
    std::vector<int> indices;
    std::vector<double> values;
};

/// Finds the family of that name.
/// @return false when there is none.
bool FindFamily(std::string_view name, Family* family);

/// Makes an instance of exactly rows × columns; both are at least 2.
Instance MakeInstance(Family family, std::size_t rows, std::size_t columns, std::uint64_t seed);

NonZeros RowsOf(const Instance& instance);
NonZeros ColumnsOf(const Instance& instance);
}  // namespace bench
