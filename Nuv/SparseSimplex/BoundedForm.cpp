/// The checks that let every stage behind this trust its input.
#include "Nuv/SparseSimplex/BoundedForm.hpp"

#include <cmath>

namespace nuv
{
namespace
{

bool AllFinite(const std::vector<double>& values)
{
    for (const double value : values)
    {
        if (!std::isfinite(value))
            return false;
    }
    return true;
}

/// Comparisons with NaN are false, so one test per bound refuses it too.
bool BoundsAreUsable(const std::vector<double>& lower, const std::vector<double>& upper)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (std::size_t k = 0; k < lower.size(); ++k)
    {
        if (!(lower[k] < infinity) || !(upper[k] > -infinity))
            return false;
    }
    return true;
}

bool EntriesAreOrdered(const SparseVectors<double>& vectors, Index count, Index length)
{
    if (vectors.start.size() != std::size_t{count} + 1 || vectors.start.front() != 0 ||
        vectors.start.back() != vectors.index.size() ||
        vectors.index.size() != vectors.value.size())
        return false;
    for (Index k = 0; k < count; ++k)
    {
        if (vectors.start[k] > vectors.start[k + 1])
            return false;
    }
    for (Index k = 0; k < count; ++k)
    {
        const std::span<const Index> indices = vectors.Indices(k);
        for (std::size_t at = 0; at < indices.size(); ++at)
        {
            if (indices[at] >= length || (at > 0 && indices[at] <= indices[at - 1]))
                return false;
        }
    }
    return true;
}

}  // namespace

std::string BoundedForm::Defect() const
{
    if (std::size_t{rows} + columns >= kNoIndex)
        return "too many rows and columns";
    if (cost.size() != columns || columnLower.size() != columns || columnUpper.size() != columns)
        return "column arrays of the wrong length";
    if (rowLower.size() != rows || rowUpper.size() != rows)
        return "row arrays of the wrong length";
    if (!EntriesAreOrdered(byColumn, columns, rows))
        return "matrix entries out of range or out of order";
    const SparseVectors<double> transposed = Transposed(byColumn, rows);
    if (transposed.start != byRow.start || transposed.index != byRow.index ||
        transposed.value != byRow.value)
        return "rows and columns of the matrix disagree";
    if (!std::isfinite(constant) || !AllFinite(cost) || !AllFinite(byColumn.value))
        return "a coefficient is not finite";
    if (!BoundsAreUsable(columnLower, columnUpper) || !BoundsAreUsable(rowLower, rowUpper))
        return "a bound is NaN or infinite on the wrong side";
    return {};
}

}  // namespace nuv
