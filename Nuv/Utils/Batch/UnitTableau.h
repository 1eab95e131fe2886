// The simplex method on a tableau of integers, for problems whose pivots are all 1, as those of
// assignments, flows and coverings mostly are. Not installed.
//
// Exactness: A, b and c are integers. As long as all pivots are 1 the inverse is of integers as
// well, and so is all that the definition computes. Let β be the largest entry of the inverses, α
// the largest sum of the magnitudes of a column of A, and at least 1. Then no sum or product of the
// definition, in whatever order, is above
//
//     4 β α Σ|c|     of prices, reduced costs and their changes,
//     2 β α          of directions and of the inverse,
//     2 β Σ|b|       of the basic values.
//
// While these are at most 2^24 nothing is ever rounded: the tableau has the numbers of the
// definition, and therefore makes its choices. The signs of zeros do not show, as in LaneStep.inl.
// An entry of an inverse is one of the tableau's or of a unit vector's, so that the tableau's own
// largest entry will do for β. Where it is too large, or a pivot is not 1, the problem is begun
// again by other means. The objective is the only sum that may be rounded: it is formed as defined.
#ifndef NUV_UTILS_BATCH_UNITTABLEAU_H
#define NUV_UTILS_BATCH_UNITTABLEAU_H

#include "Nuv/Utils/Batch/BatchProblem.h"
#include "Nuv/Utils/Memory/Workspace.h"

namespace nuv
{
/// A problem in a tableau: a column for each nonbasic variable, by its position, a row for each
/// basic one. Lines are of whole tiles; padding is 0.
struct UnitTableau
{
    NuvUint m;  /// at most kMaxUnitRows
    NuvUint n;
    NuvSizeT rowLength;
    NuvSizeT columnLength;
    NuvUint pivotLimit;
    NuvUint pivots;
    /// The largest magnitude that was formed, and how large it may be.
    NuvFloat32 largest;
    NuvFloat32 most;
    BatchTrace* trace;
    NuvSizeT problem;
    NuvFloat32* rows;    /// [m × rowLength]
    NuvFloat32* costs;   /// [rowLength] the reduced costs
    NuvUint* positions;  /// [rowLength] the labels of the nonbasic variables
    NuvUint* patterns;   /// [rowLength / 32 × columnLength] by 32 columns: where rows are not ±0
    NuvFloat32* values;  /// [columnLength]
    NuvFloat32* direction;  /// [columnLength]
    NuvUint* basic;         /// [columnLength] labels
    NuvFloat32* prices;     /// [columnLength]
};

inline constexpr NuvUint kMaxUnitRows = 64;

enum class UnitEnd : NuvUint
{
    None,
    /// The tableau is not sure to have the definition's numbers.
    NotExact,
    Optimal,
    Unbounded,
    Stopped
};

struct UnitLoops
{
    void (*start)(UnitTableau* x, const BatchData* data);
    /// Makes a pivot, or says why there is none.
    UnitEnd (*step)(UnitTableau* x);
};

/// What the sources that are compiled for one instruction set each offer: null where they were not.
const UnitLoops* PlainUnitLoops();
const UnitLoops* BaselineUnitLoops();
const UnitLoops* Avx2UnitLoops();
const UnitLoops* Avx512UnitLoops();

struct SingleSolve;
inline constexpr NuvSizeT kUnitTurns = 2;

/// Whether the coefficients of a problem are 0, 1 and −1, so that its pivots may well be 1.
bool HasUnitCoefficients(const NuvLinearProgrammingBatch* batch, NuvSizeT problem);

void PlaceArrays(UnitTableau* x, const NuvLinearProgrammingBatch* batch, WorkspaceLayout* layout);
/// Solves the problems from `first` to before `last`, those that are not exact by `single`.
/// @return where it was given up, as too many were not, or `last`.
NuvSizeT SolveRange(UnitTableau* turns, const UnitLoops* loops, SingleSolve* single, NuvSizeT first,
                    NuvSizeT last);
}  // namespace nuv

#endif
