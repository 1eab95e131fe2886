// Sums over the non-zeros of each column of A, of which only those are formed anew in which a price
// has changed. Not installed.
#ifndef NUV_UTILS_SIMPLEX_SPARSEPRICING_H
#define NUV_UTILS_SIMPLEX_SPARSEPRICING_H

#include "Nuv/Utils/Kernels/Kernels.h"
#include "Nuv/Utils/Simplex/StandardForm.h"
#include "Nuv/Utils/Memory/Workspace.h"

namespace nuv
{
/// The non-zeros of A's first n columns, column after column, and where they stand, row after row.
struct SparsePricing
{
    NuvUint m;
    NuvUint n;
    NuvUint* starts;       /// [n + 1]
    NuvUint* rows;         /// [maxNonzeros]
    NuvFloat32* elements;  /// [maxNonzeros]

    NuvUint* rowStarts;  /// [m + 1]
    NuvUint* columns;    /// [maxNonzeros]

    /// The prices that the sums were formed with, and the rows in which the new ones differ.
    NuvFloat32* prices;    /// [m]
    NuvUint* changedRows;  /// [m]
    /// By column, the visit in which its sum was last formed; and this visit.
    NuvUint* visits;  /// [n]
    NuvUint visit;
};

/// Whether A has so few non-zeros that its columns are cheaper than its rows.
bool IsSparse(const StandardForm* form);
void PlaceArrays(SparsePricing* x, const StandardForm* form, WorkspaceLayout* layout);
/// Reads the non-zeros.
void StartPricing(SparsePricing* x, const StandardForm* form);
/// Brings the sums [n], π · A(j), up to date, of which all were last formed here, or are 0. `rows`
/// lists those whose price is not 0, or was not.
void SumColumns(SparsePricing* x, const NuvFloat32* prices, const NuvUint* rows, NuvUint count,
                NuvFloat32* sums);
/// Writes the non-zeros of column j, from 0, into a column of zeros.
void CopyColumn(const SparsePricing* x, NuvUint j, NuvFloat32* column);
}  // namespace nuv

#endif
