// Pricing: the reduced costs ĉ(j) = c(j) − π · A(j) of the nonbasic variables in the structured
// iteration, where A is finite and its last m columns are the identity. A slack's needs no product:
// it is its cost − its row's price. The others are sums over the rows of A (DensePricing.h), or
// over the non-zeros of each column where those are few (SparsePricing.h). Not installed.
//
// Invariant: a basic variable's cost here is −infinity, so that it is never chosen; its position is
// that of the time when it was nonbasic.
#ifndef NUV_UTILS_SIMPLEX_PRICING_H
#define NUV_UTILS_SIMPLEX_PRICING_H

#include "Nuv/Utils/Simplex/DensePricing.h"
#include "Nuv/Utils/Simplex/SparsePricing.h"

namespace nuv
{
struct Pricing
{
    const Kernels* kernels;
    const StandardForm* form;

    /// Arrays by column of A, each kind of columns with its padding.
    NuvSizeT firstSlack;      /// PaddedLength(n)
    NuvSizeT length;          /// firstSlack + PaddedLength(m)
    NuvFloat32* costs;        /// [length]
    NuvFloat32* sums;         /// [length] π · A(j)
    NuvFloat32* differences;  /// [length] the reduced costs
    NuvUint* positions;       /// [length] among the nonbasic variables, from 0

    bool isSparse;
    DensePricing dense;
    SparsePricing sparse;
};

/// Places the arrays for a standard form; `rowBuffer` of StartPricing is not among them.
void PlaceArrays(Pricing* x, const StandardForm* form, WorkspaceLayout* layout);
/// How many floats StartPricing must be lent.
NuvSizeT RowBufferLength(const Pricing* x);
/// Makes all variables basic, without a position.
void StartPricing(Pricing* x, NuvFloat32* rowBuffer);

/// Gives a label that has no place yet one among the basic variables.
/// @return false when it had one.
bool PlaceBasic(Pricing* x, NuvUint label);
/// The same among the nonbasic variables, with its cost.
bool PlaceNonbasic(Pricing* x, NuvUint label, NuvFloat32 cost, NuvUint position);
/// Makes the variable under `label` basic, or nonbasic at a position.
void MakeBasic(Pricing* x, NuvUint label);
void MakeNonbasic(Pricing* x, NuvUint label, NuvFloat32 cost, NuvUint position);

/// Forms all reduced costs from the prices [PaddedLength(m)]. `rows` lists every row with a price
/// other than 0, ascending; a row listed once is listed in all later calls, as its price is kept.
/// @return the largest if it is above 0, else 0, and the last of its positions.
Choice FindLargestReducedCost(Pricing* x, const NuvFloat32* prices, const NuvUint* rows,
                              NuvUint count);
/// column [length] = the column of A under `label`, from 1, with zeros for padding.
void CopyColumn(const Pricing* x, NuvUint label, NuvFloat32* column, NuvSizeT length);
}  // namespace nuv

#endif
