// The inverse of the basis in the structured iteration: exact to the bit as long as all of it is
// finite, at a cost that follows the work done. It is kept column by column, and only columns that
// differ from unit vectors are kept: at the slack basis none, after a pivot in row r also column r.
// The rows whose basic variables have a cost are kept a second time as rows, because the simplex
// multipliers (the prices) are sums over rows. A pivot brings these rows up to date at once and the
// columns when they are next multiplied.
//
// Invariant: a column of the inverse is its stored elements + its multiplier · eta while an update
// is pending, or a unit vector where none are stored. Padding is zero. Not installed.
//
// Why signs of zeros do not show: entries of the inverse only ever enter sums that start at +0, and
// +0 + (±0) = +0. Why finite is enough to leave products out: 0 · x = ±0 for finite x alone.
#ifndef NUV_UTILS_SIMPLEX_BASISINVERSE_H
#define NUV_UTILS_SIMPLEX_BASISINVERSE_H

#include "Nuv/Utils/Kernels/Kernels.h"
#include "Nuv/Utils/Memory/Workspace.h"

namespace nuv
{
/// The rows of the inverse whose basic variables have a cost other than 0, in increasing row:
/// parallel arrays. Entries are by slot, the order in which the columns came to be stored.
struct CostedRows
{
    NuvUint count;
    NuvUint capacity;
    NuvUint* rows;         /// [capacity]
    NuvFloat32* costs;     /// [capacity]
    NuvFloat32** entries;  /// [capacity], each [stride]; those from `count` on are free
    NuvFloat32* eta;       /// [capacity], eta at these rows
    NuvFloat32* storage;   /// [capacity × stride]
};

struct BasisInverse
{
    const Kernels* kernels;
    NuvUint m;
    /// PaddedLength(m).
    NuvSizeT stride;

    NuvUint numStored;
    NuvFloat32** columns;   /// [m] by column: its elements, [stride], or null for a unit vector
    NuvUint* columnOfSlot;  /// [m]
    NuvFloat32* storage;    /// [m × stride] by slot: the elements
    CostedRows costed;

    /// The stored columns by increasing number.
    NuvFloat32** elements;     /// [m], each [stride]
    NuvUint* numbers;          /// [m]
    NuvUint* slots;            /// [m]
    NuvFloat32* storedB;       /// [m] the elements of b in their rows
    NuvFloat32* storedVector;  /// [m] the same of the other vector that is multiplied
    /// b without the elements of stored columns.
    NuvFloat32* unitB;  /// [stride]

    /// The pending update.
    bool isPending;
    NuvFloat32* eta;                /// [stride]
    NuvFloat32* multipliers;        /// [m] by stored column
    NuvFloat32* multipliersBySlot;  /// [stride]
    NuvFloat32* pricesBySlot;       /// [stride]
};

/// Places the arrays of an inverse of dimension m, of which `maxCosted` rows may have a cost.
void PlaceArrays(BasisInverse* x, NuvUint m, NuvUint maxCosted, WorkspaceLayout* layout);
/// Makes it the identity, for the right-hand sides b [stride].
void SetToIdentity(BasisInverse* x, const NuvFloat32* b);
/// Stores a column that was a unit vector.
/// @return the column, [stride], for the caller to change.
NuvFloat32* StoreColumn(BasisInverse* x, NuvUint column);
/// @return an entry; no update may be pending.
NuvFloat32 EntryOf(const BasisInverse* x, NuvUint row, NuvUint column);

/// Tells the cost of the variable that is basic in a row, before any update.
void SetCost(BasisInverse* x, NuvUint row, NuvFloat32 cost);
/// prices [stride] = c_B · inverse, before any update. From here on no unit column has a price.
void ComputePrices(BasisInverse* x, NuvFloat32* prices);

/// values [stride] = inverse · b and, unless vector is null, result [stride] = inverse · vector, in
/// one pass that also adds the pending update to the columns. `vector` [stride] is destroyed.
void MultiplyByInverse(BasisInverse* x, NuvFloat32* values, NuvFloat32* vector, NuvFloat32* result);
/// Forms eta for a pivot in `row` on the direction [stride].
/// @return false when eta is not finite, as for a pivot without a finite reciprocal.
bool FormEta(BasisInverse* x, const NuvFloat32* direction, NuvUint row);
/// Makes the update by the eta formed last the pending one, and brings the costed rows and the
/// prices [stride] up to date; `cost` is that of the entering variable.
void Update(BasisInverse* x, NuvUint row, NuvFloat32 cost, NuvFloat32* prices);
}  // namespace nuv

#endif
