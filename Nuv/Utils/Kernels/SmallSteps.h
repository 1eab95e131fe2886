// What the steps for few rows read and write: the inverse as a dense matrix, by columns, and by
// rows as well once many of them change at a time, and A with padded rows. Lines are of whole
// tiles; padding is zero, in A anything.
#ifndef NUV_UTILS_KERNELS_SMALLSTEPS_H
#define NUV_UTILS_KERNELS_SMALLSTEPS_H

#include <stdint.h>

#include "Nuv/Utils/NuvTypes.h"

namespace nuv
{
/// A bit per row.
using RowBits = uint64_t;
/// In vectors of words a half of them stands at a time.
inline constexpr NuvSizeT kHalfBits = 32;

struct SmallState
{
    /// At most as many rows as there are bits.
    NuvSizeT m;
    NuvSizeT stride;      // of the lines of the inverse
    NuvFloat32* rows;     // [m × stride] if it has rows
    NuvFloat32* columns;  // [m × stride]
    NuvUint* patterns;    // [2 × stride] without rows, by row: columns 0 to 31, then the others,
                          // where it may be other than ±0
    bool hasRows;
    const NuvFloat32* b;      // [stride]
    NuvFloat32* basicCosts;   // [stride]
    NuvFloat32* prices;       // [stride]
    NuvFloat32* values;       // [stride]
    NuvFloat32* eta;          // [stride]
    NuvFloat32* multipliers;  // [stride] the former row that leaves
    NuvFloat32* A;            // [m × lengthOfA] the columns that are not slacks
    NuvSizeT lengthOfA;       // of a row
    NuvUint* nonzerosOfA;     // [2 × lengthOfA] of the columns, rows 0 to 31, then the others
    NuvFloat32* costs;        // [lengthOfA + stride] −infinity of basic ones and of padding
    NuvUint* positions;       // [lengthOfA + stride] among the nonbasic variables
    NuvFloat32* differences;  // [lengthOfA + stride] the reduced costs
    NuvFloat32* direction;    // [stride]
    NuvFloat32* ratios;       // [stride]
    RowBits nonzeroPrices;
    // The entering column: its elements are so far apart, and no others are needed than these.
    const NuvFloat32* enteringColumn;
    NuvSizeT stepOfColumn;
    RowBits nonzerosOfColumn;
};

/// What a state starts from: a standard form, and where in the order of the nonbasic variables its
/// first one stands.
struct SmallStart
{
    const NuvFloat32* A;  // row after row
    NuvSizeT rowLength;
    const NuvFloat32* c;  // [n] or null: all 0
    NuvUint n;
    NuvUint firstPosition;
};
}  // namespace nuv

#endif
