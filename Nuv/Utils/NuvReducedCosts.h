// The reduced costs of the nonbasic variables on the fast road, where A is finite and its last m
// columns are the identity. A slack's needs no product: it is its cost − its row's price. The
// others are sums over the rows of A, without the rows whose price is 0, or over the non-zeros of
// each column where those are few. Not installed.
//
// Invariant: a basic variable's cost here is −infinity, so that it is never chosen. Positions are
// counted from 1; 0 is none.
#ifndef NUV_UTILS_NUVREDUCEDCOSTS_H
#define NUV_UTILS_NUVREDUCEDCOSTS_H

#include "Nuv/Utils/NuvKernels.h"
#include "Nuv/Utils/NuvSolveStorage.h"

namespace nuv
{
/// What the reduced costs are formed from, and where the variables stand: arrays by column of A, or
/// by slack.
struct NonbasicCosts
{
    NuvSizeT length;
    NuvFloat32* costs;
    NuvFloat32* reducedCosts;
    NuvUint* positions;
};

/// The non-zeros of A's first columns, column after column.
struct SparseColumns
{
    NuvUint* starts;
    NuvUint* rows;
    NuvFloat32* elements;
};

struct ReducedCosts
{
    const Kernels* kernels;
    const NuvFloat32* A;
    NuvUint m;
    NuvUint n;
    NuvSizeT numColumns;

    NonbasicCosts structurals;
    NonbasicCosts slacks;
    NuvFloat32* sums;

    bool isSparse;
    SparseColumns sparse;
    /// By row: where it is read. Copies with padding are made of rows that are needed.
    const NuvFloat32** rows;
    NuvFloat32* copies;
    const NuvFloat32** vectors;
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

/// Forms all reduced costs from the prices of the rows.
/// @return the largest if it is above 0, else 0; `position` is then the last of its positions.
NuvFloat32 FindLargestReducedCost(ReducedCosts* x, const NuvFloat32* prices, NuvUint* position);
/// column = the column of A under `label`, with zeros for padding.
void CopyColumn(const ReducedCosts* x, NuvUint label, NuvFloat32* column, NuvSizeT length);
}  // namespace nuv

#endif
