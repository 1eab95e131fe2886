// Pricing: the reduced costs ĉ(j) = c(j) − π · A(j) of the nonbasic variables in the structured
// iteration, where A is finite and its last m columns are the identity. A slack's needs no product:
// it is its cost − its row's price. The others are sums over the rows of A (DensePricing.h), or
// over the non-zeros of each column where those are few (SparsePricing.h). Not installed.
//
#ifndef NUV_UTILS_SIMPLEX_PRICING_H
#define NUV_UTILS_SIMPLEX_PRICING_H

#include "Nuv/Utils/Simplex/DensePricing.h"
#include "Nuv/Utils/Simplex/Iteration.h"
#include "Nuv/Utils/Simplex/SparsePricing.h"

namespace nuv
{
struct Pricing
{
    NuvFloat32* sums;         /// [length] π · A(j)
    NuvFloat32* differences;  /// [length] the reduced costs
    bool isSparse;
    DensePricing dense;
    SparsePricing sparse;
};

/// Places the arrays; `rowBuffer` of StartPricing is not among them.
void PlaceArrays(Pricing* x, const Iteration* it, WorkspaceLayout* layout);
/// How many floats StartPricing must be lent.
NuvSizeT RowBufferLength(const Pricing* x, const Iteration* it);
void StartPricing(Pricing* x, const StandardForm* form, NuvFloat32* rowBuffer);

/// Forms all reduced costs from the prices. `rows` lists every row with a price other than 0,
/// ascending; a row listed once is listed in all later calls, as its price is kept.
/// @return the largest if it is above 0, else 0, and the last of its positions.
Choice FindLargestReducedCost(Pricing* x, const Iteration* it, const NuvUint* rows, NuvUint count);
/// column [stride] = the column of A under `label`, from 1, with zeros for padding.
void CopyColumn(const Pricing* x, const Iteration* it, NuvUint label, NuvFloat32* column);
}  // namespace nuv

#endif
