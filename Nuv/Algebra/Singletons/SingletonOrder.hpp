/// What of a sparse square matrix needs no elimination (Orchard-Hays 1968; Maros 2003, section
/// 8.1): a column with one entry left pivots there and takes its row away, again and again, then a
/// row with one entry left its column. Neither changes an entry of what remains, the bump:
///
///     U  X  Y     columns of column singletons, of the bump, of row singletons,
///     0  M  Z     U and L triangular in the order in which they were found.
///     0  0  L
#pragma once

#include "Nuv/Algebra/ExactNumber.hpp"
#include "Nuv/Algebra/SparseMatrix.hpp"

#include <vector>

namespace nuv
{

struct SingletonOrder
{
    struct Pivot
    {
        Index row;
        Index column;
    };
    std::vector<Pivot> columnSingletons;  ///< as they were found, and so those of rows
    std::vector<Pivot> rowSingletons;
    std::vector<Index> bumpRows;  ///< increasing
    std::vector<Index> bumpColumns;
};

/// Of as many columns as rows; entries at one place follow each other and are one.
[[nodiscard]] SingletonOrder FindSingletons(const SparseVectors<ExactNumber>& columns);

/// The columns of the bump, rows numbered as in `bumpRows`.
[[nodiscard]] SparseVectors<ExactNumber> BumpOf(const SparseVectors<ExactNumber>& columns,
                                                const SingletonOrder& order);

/// By row, the column that pivots there; column k of the bump does so in its row bumpPosition[k].
[[nodiscard]] std::vector<Index> ColumnsByPivotRow(const SingletonOrder& order,
                                                   const std::vector<Index>& bumpPosition);

}  // namespace nuv
