// Sums over the rows of A, π · A, that leave out rows whose price is 0: side by side for all
// columns that are not slacks. Not installed.
#ifndef NUV_UTILS_SIMPLEX_DENSEPRICING_H
#define NUV_UTILS_SIMPLEX_DENSEPRICING_H

#include "Nuv/Utils/Kernels/Kernels.h"
#include "Nuv/Utils/Simplex/StandardForm.h"
#include "Nuv/Utils/Memory/Workspace.h"

namespace nuv
{
struct DensePricing
{
    NuvUint n;
    /// By row of A: where its first n elements are read, and whether that is a copy with padding,
    /// which is made when the row is first summed.
    NuvFloat32** rows;      /// [m]
    bool* isCopied;         /// [m]
    NuvFloat32* rowBuffer;  /// [m × PaddedLength(n)], lent
    /// The rows with a price, and their prices.
    NuvFloat32** pricedRows;   /// [m]
    NuvFloat32* pricesOfRows;  /// [m]
};

void PlaceArrays(DensePricing* x, const StandardForm* form, WorkspaceLayout* layout);
void StartPricing(DensePricing* x, const StandardForm* form, NuvFloat32* rowBuffer);
/// sums [PaddedLength(n)] = prices · the first n columns, over the rows given.
void SumRows(DensePricing* x, const Kernels* kernels, const NuvFloat32* prices, const NuvUint* rows,
             NuvUint count, NuvFloat32* sums);
/// column [m] = column j, from 0.
void CopyColumn(const DensePricing* x, NuvUint m, NuvUint j, NuvFloat32* column);
}  // namespace nuv

#endif
