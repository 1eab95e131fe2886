// The inverse of the basis on the fast road: exact to the bit as long as all of it is finite, at a
// cost that follows the work done. It is kept column by column, and only the columns that differ
// from unit vectors are kept: at the slack basis none, after a pivot in row r also column r. The
// rows whose basic variables have a cost are kept a second time as rows, because prices are sums
// over rows. A pivot brings the rows up to date at once and the columns when they are next walked.
//
// Invariant: a column of the inverse is `columns` + slot · stride, once the pending update is added
// to it, or a unit vector; no entry is −0 where that could show. Rows of padding are zero. Not
// installed.
//
// Why signs of zeros do not show: entries of the inverse only ever enter sums that start at +0, and
// +0 + (±0) = +0. Why finite is enough to leave products out: 0 · x = ±0 for finite x alone.
#ifndef NUV_UTILS_NUVBASISINVERSE_H
#define NUV_UTILS_NUVBASISINVERSE_H

#include "Nuv/Utils/NuvKernels.h"
#include "Nuv/Utils/NuvSolveStorage.h"

namespace nuv
{
/// A row of the inverse whose basic variable has a cost: its entries by slot.
struct PricedRow
{
    NuvUint row;
    NuvFloat32 cost;
    NuvFloat32* entries;
};

struct BasisInverse
{
    const Kernels* kernels;
    NuvUint m;
    /// The length of arrays of m elements with their padding.
    NuvSizeT stride;

    /// The stored columns in the order in which they came: a column's slot and a slot's column.
    NuvUint numStored;
    NuvUint* slotOf;
    NuvUint* columnOf;
    /// By tile of columns, a bit for each that is stored.
    NuvUint* stored;
    NuvFloat32* columns;

    /// The priced rows in increasing row, and the memory for more of them.
    NuvUint numPriced;
    PricedRow* priced;
    NuvUint numSpare;
    NuvFloat32** spare;
    NuvFloat32* rows;

    /// The pending update: column += multipliers[slot] · eta.
    bool isPending;
    NuvFloat32* eta;
    NuvFloat32* multipliers;

    /// A tile of the identity, and room for lists of what is walked.
    NuvFloat32* unitTile;
    NuvFloat32** vectors;
    NuvFloat32* weights;
    NuvFloat32* etaOfPriced;
    NuvFloat32* pricesBySlot;
};

/// The length of an array of `count` floats that is walked tile by tile: an odd number of tiles, so
/// that neighbouring columns of one row do not compete for the same lines of a cache.
NuvSizeT PaddedLength(NuvSizeT count);

/// Takes the arrays of an inverse of dimension m, of which `maxPriced` rows may have a cost.
void LayOut(BasisInverse* inverse, NuvUint m, NuvUint maxPriced, Cutter* cutter);
/// Makes it the identity.
void SetToIdentity(BasisInverse* inverse);
/// Stores a column that was a unit vector.
/// @return the column, for the caller to change.
NuvFloat32* StoreColumn(BasisInverse* inverse, NuvUint column);
/// @return an entry, with no update pending.
NuvFloat32 EntryOf(const BasisInverse* inverse, NuvUint row, NuvUint column);

/// Tells the cost of the variable that is basic in a row, after the row's update or before any.
void SetCost(BasisInverse* inverse, NuvUint row, NuvFloat32 cost);
/// prices = costs · inverse.
void ComputePrices(BasisInverse* inverse, NuvFloat32* prices);

/// resultX = inverse · x and, unless y is null, resultY = inverse · y, in one walk that also adds
/// the pending update to the columns.
void MultiplyByInverse(BasisInverse* inverse, const NuvFloat32* x, NuvFloat32* resultX,
                       const NuvFloat32* y, NuvFloat32* resultY);
/// Prepares eta for a pivot in `row` on the direction.
/// @return false when eta is not finite, as for a pivot without a finite reciprocal.
bool FormEta(BasisInverse* inverse, const NuvFloat32* direction, NuvUint row);
/// Makes the update of the eta formed last the pending one, and brings the priced rows and the
/// prices up to date; `cost` is that of the entering variable.
void Update(BasisInverse* inverse, NuvUint row, NuvFloat32 cost, NuvFloat32* prices);
}  // namespace nuv

#endif
