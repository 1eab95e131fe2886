// Seeded instances for the benchmarks: max cᵀx, A x ≤ b, x ≥ 0, each with a known optimum's
// existence built in, so that every contender has work to do and an answer to agree on.
//
// Invariant: a family, a shape and a seed give the same numbers on every machine, and every number
// is an integer that binary32 holds exactly, so that solvers in single and double precision are
// asked the same question.
#ifndef BENCH_FAMILIES_HPP
#define BENCH_FAMILIES_HPP

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace bench
{
enum class Family
{
    /// All data positive: few pivots for the size.
    Positive,
    /// Coefficients and costs of both signs under one budget row: many pivots for the size.
    MixedSigns,
    /// Rows of both directions around a point that satisfies them all.
    PhaseI,
    /// Workers and tasks, each at most once: two ones per column, degenerate throughout.
    Assignment,
    /// Supplies and demands along some of the possible routes, at the least cost: needs Phase I.
    Transport,
    /// A few products that share resources.
    ProductionMix,
    /// Nutrients that foods must reach at the least cost: every row needs Phase I.
    Diet,
    /// One coefficient in ten, under one budget row.
    Sparse,
    /// As MixedSigns, with right-hand sides that leave no ties.
    NonDegenerate
};

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

const char* NameOf(Family family);
/// Finds the family of that name.
/// @return false when there is none.
bool FindFamily(std::string_view name, Family* family);

/// Makes an instance of exactly rows × columns; both are at least 2.
Instance MakeInstance(Family family, std::size_t rows, std::size_t columns, std::uint64_t seed);

NonZeros RowsOf(const Instance& instance);
NonZeros ColumnsOf(const Instance& instance);
}  // namespace bench

#endif
