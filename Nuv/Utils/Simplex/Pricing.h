// The reduced costs of the nonbasic variables on the fast road, where A is finite and its last m
// columns are the identity. A slack's needs no product: it is its cost − its row's price. The
// others are sums over the rows of A, without the rows whose price is 0, or over the non-zeros of
// each column where those are few. Not installed.
//
// Invariant: a basic variable's cost here is −infinity, so that it is never chosen. Positions are
// counted from 1; 0 is none.
#ifndef NUV_UTILS_SIMPLEX_PRICING_H
#define NUV_UTILS_SIMPLEX_PRICING_H

#include "Nuv/Utils/Kernels/Kernels.h"
#include "Nuv/Utils/Simplex/Workspace.h"

namespace nuv
{
/// The non-zeros of A's first columns, column after column, and where they stand, row after row.
struct SparseColumns
{
    NuvUint* starts;
    NuvUint* rows;
    NuvFloat32* elements;

    NuvUint* rowStarts;
    NuvUint* columns;

    /// The prices that the sums were formed with.
    NuvFloat32* prices;
    NuvUint* changedRows;
    /// By column, in which turn its sum was last formed; and this turn.
    NuvUint* turns;
    NuvUint turn;
};

struct ReducedCosts
{
    const Kernels* kernels;
    const NuvFloat32* A;
    NuvUint m;
    NuvUint n;
    NuvSizeT numColumns;

    /// Arrays by column of A, each kind of columns with its padding: the costs, what is subtracted
    /// from them, the reduced costs, and where the variables stand.
    NuvSizeT firstSlack;
    NuvSizeT length;
    NuvFloat32* costs;
    NuvFloat32* sums;
    NuvFloat32* differences;
    NuvUint* positions;

    bool isSparse;
    SparseColumns sparse;
    /// By row of A: where it is read, and whether that is a copy with padding, which is made when
    /// the row is first summed.
    NuvFloat32** rows;
    bool* isCopied;
    NuvFloat32* copies;
    NuvFloat32** vectors;
    NuvFloat32* multipliers;
};

/// Whether a matrix with so many non-zeros is cheaper column by column.
bool IsSparse(NuvSizeT m, NuvSizeT n, NuvSizeT nonzeros);
/// Takes the arrays; `copies` is room for m × PaddedLength(n) floats that is not needed when
/// sparse.
void LayOut(ReducedCosts* x, NuvUint m, NuvUint n, NuvSizeT nonzeros, Cutter* cutter);
/// Makes all variables basic, and reads the non-zeros when they are few.
void BeginReducedCosts(ReducedCosts* x, NuvFloat32* copies);

/// Notes that a label has its place.
/// @return false when it had one before.
bool MarkPlaced(ReducedCosts* x, NuvUint label);
/// Makes the variable under `label`, from 1, basic, or nonbasic at a position counted from 0.
void MakeBasic(ReducedCosts* x, NuvUint label);
void MakeNonbasic(ReducedCosts* x, NuvUint label, NuvFloat32 cost, NuvUint position);

/// The sums of the slacks: the prices of the rows, for the caller to write.
NuvFloat32* PricesOf(ReducedCosts* x);
/// Forms all reduced costs from the prices, of which all but those of the rows given are 0. The
/// rows increase, and stay among those that are given later.
/// @return the largest if it is above 0, else 0, and the last of its positions, counted from 1.
Choice FindLargestReducedCost(ReducedCosts* x, const NuvUint* rows, NuvUint count);
/// column = the column of A under `label`; padding is left as it is, which is zero.
void CopyColumn(const ReducedCosts* x, NuvUint label, NuvFloat32* column, NuvSizeT length);
}  // namespace nuv

#endif
