// The inverse of the basis on the fast road: exact to the bit as long as all of it is finite, at a
// cost that follows the work done. It is kept column by column, and only columns that differ from
// unit vectors are kept: at the slack basis none, after a pivot in row r also column r. The rows
// whose basic variables have a cost are kept a second time as rows, because prices are sums over
// rows. A pivot brings the rows up to date at once and the columns when they are next walked.
//
// Invariant: a column of the inverse is its stored elements + its multiplier · eta while an update
// is pending, or a unit vector where none are stored. Padding is zero. Not installed.
//
// Why signs of zeros do not show: entries of the inverse only ever enter sums that start at +0, and
// +0 + (±0) = +0. Why finite is enough to leave products out: 0 · x = ±0 for finite x alone.
#ifndef NUV_UTILS_SIMPLEX_BASISINVERSE_H
#define NUV_UTILS_SIMPLEX_BASISINVERSE_H

#include "Nuv/Utils/Kernels/Kernels.h"
#include "Nuv/Utils/Simplex/Workspace.h"

namespace nuv
{
/// The rows of the inverse whose basic variables have a cost, in increasing row: parallel arrays.
/// Entries are by slot, the order in which the columns came to be stored.
struct PricedRows
{
    NuvUint count;
    NuvUint* rows;
    NuvFloat32* costs;
    NuvFloat32** entries;
    /// eta at these rows.
    NuvFloat32* eta;
    /// Room for more of them.
    NuvUint numSpare;
    NuvFloat32** spare;
    NuvFloat32* room;
};

struct BasisInverse
{
    const Kernels* kernels;
    NuvUint m;
    /// The length of arrays of m elements with their padding.
    NuvSizeT stride;
    /// The right-hand sides, padded.
    const NuvFloat32* b;

    /// By number: where the elements of a stored column are, or null for a unit column.
    NuvFloat32** columns;
    NuvUint numStored;
    NuvUint* columnOfSlot;
    NuvFloat32* room;
    PricedRows priced;

    /// The stored columns by increasing number: their elements, numbers, slots and elements of b;
    /// and the elements of b that belong to unit columns.
    NuvFloat32** elements;
    NuvUint* numbers;
    NuvUint* slots;
    NuvFloat32* storedB;
    NuvFloat32* unitB;
    /// The elements of the other vector that is multiplied, by stored column.
    NuvFloat32* storedVector;

    /// The pending update; multipliers by stored column, and again by slot.
    bool isPending;
    NuvUint pivotRow;
    NuvFloat32* eta;
    NuvFloat32* multipliers;
    NuvFloat32* multipliersBySlot;
    NuvFloat32* pricesBySlot;
};

/// The length of an array of `count` floats that is walked tile by tile; never a multiple of a
/// kilobyte, so that the same rows of neighbouring columns do not compete for the same lines of a
/// cache.
NuvSizeT PaddedLength(NuvSizeT count);

/// Takes the arrays of an inverse of dimension m, of which `maxPriced` rows may have a cost.
void LayOut(BasisInverse* x, NuvUint m, NuvUint maxPriced, Cutter* cutter);
/// Makes it the identity, for the right-hand sides that `b` points to.
void SetToIdentity(BasisInverse* x);
/// Stores a column that was a unit vector.
/// @return the column, for the caller to change.
NuvFloat32* StoreColumn(BasisInverse* x, NuvUint column);
/// @return an entry, with no update pending.
NuvFloat32 EntryOf(const BasisInverse* x, NuvUint row, NuvUint column);

/// Tells the cost of the variable that is basic in a row, before any update.
void SetCost(BasisInverse* x, NuvUint row, NuvFloat32 cost);
/// prices = costs · inverse, before any update.
void ComputePrices(BasisInverse* x, NuvFloat32* prices);

/// values = inverse · b and, unless vector is null, result = inverse · vector, in one pass that
/// also adds the pending update to the columns. `vector` is destroyed.
void MultiplyByInverse(BasisInverse* x, NuvFloat32* values, NuvFloat32* vector, NuvFloat32* result);
/// Prepares eta for a pivot in `row` on the direction.
/// @return false when eta is not finite, as for a pivot without a finite reciprocal.
bool FormEta(BasisInverse* x, const NuvFloat32* direction, NuvUint row);
/// Makes the update of the eta formed last the pending one, and brings the priced rows and the
/// prices up to date; `cost` is that of the entering variable.
void Update(BasisInverse* x, NuvUint row, NuvFloat32 cost, NuvFloat32* prices);
}  // namespace nuv

#endif
