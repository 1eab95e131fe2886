// The iteration that both phases share: price, choose the entering column, choose the leaving row,
// pivot. The steps carry the textbook's names (Chvátal, Linear Programming, chapter 7). What
// differs between the phases is passed in. Not installed.
//
// There are two roads to the same bits. The fast one (NuvBasisInverse.h, NuvReducedCosts.h) leaves
// out what is known to change nothing, which rests on all numbers being finite. The literal one
// (NuvLiteralRoad.h) evaluates the definition. A solve takes the literal road from where the fast
// one ends: from data that are not finite or not of the standard form, or from the first pivot at
// which a number on the way is not finite.
//
// Invariant between iterations: the inverse is that of the columns that `basic` labels; the costs
// and positions follow the labels.
#ifndef NUV_UTILS_SIMPLEX_ITERATION_H
#define NUV_UTILS_SIMPLEX_ITERATION_H

#include "Nuv/Utils/Simplex/BasisInversion.h"
#include "Nuv/Utils/Simplex/DenseIteration.h"
#include "Nuv/Utils/Simplex/Pricing.h"
#include "Nuv/Utils/Simplex/Phases.h"

namespace nuv
{
/// The nonbasic position that enters, and its reduced cost; 0 means that the basis is optimal.
struct Entering
{
    NuvUint position;
    NuvFloat32 reducedCost;
};

struct Iteration
{
    SolveWatch* watch;
    NuvUint phase;
    NuvAllocator* allocator;
    const Kernels* kernels;
    Workspace workspace;

    /// Rows, columns that are not slacks, and nonbasic positions.
    NuvUint m;
    NuvUint n;
    NuvUint width;
    /// m × (n + m); its columns have the labels from 1 on. Label 0 is the artificial variable's,
    /// whose column is −1 in every row.
    const NuvFloat32* A;
    /// By label from 1; null in Phase I, where the artificial variable costs −1 and no other any.
    const NuvFloat32* costs;

    /// Labels by basis row and by nonbasic position.
    NuvUint* basic;
    NuvUint* independent;
    /// The row where the artificial variable is basic, or m.
    NuvUint artificialRow;

    /// By basis row, padded with zeros as the inverse's columns are: costs, right-hand sides, and
    /// this iteration's prices, basic values, entering column, the same in terms of the basis, and
    /// ratios.
    NuvFloat32* basicCosts;
    NuvFloat32* b;
    NuvFloat32* prices;
    NuvFloat32* basicValues;
    NuvFloat32* column;
    NuvFloat32* direction;
    NuvFloat32* ratios;

    BasisInverse inverse;
    ReducedCosts reducedCosts;
    /// Room for the columns of an inversion, and later for the rows that pricing copies.
    NuvFloat32* copies;
    Elimination elimination;

    bool isLiteral;
    LiteralRoad literal;
};

/// The basis row that leaves, if there is one.
struct Leaving
{
    NuvUint row;
    bool exists;
};

/// The entry of A in the column of a label; m × n data in all, so that the index fits.
inline NuvFloat32 EntryOfA(const Iteration* it, NuvSizeT row, NuvUint label)
{
    return label == 0 ? -1.0F : it->A[row * (static_cast<NuvSizeT>(it->n) + it->m) + label - 1];
}

inline NuvFloat32 CostOf(const Iteration* it, NuvUint label)
{
    if (it->costs)
        return it->costs[label - 1];
    return label == 0 ? -1.0F : 0.0F;
}

/// The label of a row's slack variable.
inline NuvUint SlackOf(const Iteration* it, NuvUint row)
{
    return it->n + 1 + row;
}

/// Makes an iteration over lp's standard form; labels are the caller's to fill in.
/// @return false when storage is refused; EndIteration may be called all the same.
bool BeginIteration(Iteration* it, SolveWatch* watch, NuvUint phase, const NuvLinearProgramming* lp,
                    const StandardFormFacts* facts);
/// Finds the inverse and the prices of the first basis: that of the slacks in Phase I, that of the
/// labels in Phase II.
/// @return false when storage is refused.
bool EnterFirstBasis(Iteration* it, const StandardFormFacts* facts);
/// Gives back what the iteration holds.
void EndIteration(Iteration* it);

/// Finds the largest reduced cost c(j) − prices · A(j) and where it stands: Dantzig's rule; the
/// last one on ties, and a NaN is passed over.
Entering ChooseEntering(Iteration* it);
/// basicValues = inverse · b and, if there is an entering column, direction = inverse · column.
/// @return false when the literal road is to be taken, and the iteration to be begun again.
bool ComputeValuesAndDirection(Iteration* it, const Entering* entering);
/// The smallest ratio, the first one on ties; but the artificial variable, label 0, goes before
/// others of the same ratio.
Leaving ChooseLeaving(Iteration* it);
/// Tells the watch of the pivot that is about to be made.
/// @return false when the solve is to end.
bool IsGoingOn(const Iteration* it, NuvUint entering, NuvUint leaving);
/// Exchanges labels and costs between the entering position and the leaving row.
void Exchange(Iteration* it, NuvUint entering, NuvUint leaving);
/// Makes the pivot: exchanges, brings the inverse to the new basis in product form, and leaves its
/// blocks behind.
/// @return false when storage is refused; nothing is left behind then, and the iteration cannot go
/// on.
bool Pivot(Iteration* it, NuvUint entering, NuvUint leaving);
/// Goes on by the literal road from the inverse as it is.
/// @return false when storage is refused.
bool TakeLiteralRoad(Iteration* it);
}  // namespace nuv

#endif
