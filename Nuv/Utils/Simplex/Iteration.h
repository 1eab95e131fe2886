// One iteration of the revised simplex method: what both kinds of it read and write, and the steps
// that are the same in both. The steps carry the textbook's names (Chvátal, Linear Programming,
// chapter 7). Not installed.
//
// There are two kinds, with the same bits. DenseIteration.h evaluates the definition, for any
// numbers: read it first. StructuredIteration.h leaves out what is known to change nothing, which
// rests on all numbers being finite; at the first number that is not, the dense one takes over.
//
// Words and their bases:
//     label      names a variable: 1 to n + m by its column of A, the slacks' from n + 1; 0 is the
//                artificial variable of Phase I
//     row        of A and of the basis, from 0; a basic variable belongs to a row
//     position   among the nonbasic variables, from 0; a nonbasic variable belongs to a position
//     column     of A or of the inverse, from 0
//     slot       the place of a column of the inverse in the order of storing, from 0
//     price      of a row: π(i), its simplex multiplier or dual value
#ifndef NUV_UTILS_SIMPLEX_ITERATION_H
#define NUV_UTILS_SIMPLEX_ITERATION_H

#include "Nuv/Utils/Simplex/SolveContext.h"
#include "Nuv/Utils/Simplex/StandardForm.h"
#include "Nuv/Utils/Memory/Workspace.h"

namespace nuv
{
enum class Phase
{
    I = 1,
    II = 2
};

/// Arrays by row are padded with zeros to `stride`.
struct Iteration
{
    SolveContext* context;
    const StandardForm* form;
    const Kernels* kernels;
    NuvAllocator* allocator;
    Phase phase;

    NuvUint m;
    /// PaddedLength(m).
    NuvSizeT stride;
    /// n, and in Phase I one more.
    NuvUint numNonbasic;

    NuvUint* basic;     /// [m] labels by row
    NuvUint* nonbasic;  /// [numNonbasic] labels by position
    /// The row where the artificial variable is basic, or m.
    NuvUint artificialRow;
    /// Whether a pivot was made in this phase.
    bool hasPivoted;

    /// By column of A, the slacks' behind the padding of the others: the costs and positions of
    /// nonbasic variables. The cost of a basic one and of padding is −infinity, so that it is never
    /// chosen. Not of use in the dense iteration.
    NuvSizeT firstSlack;  /// PaddedLength(n)
    NuvSizeT length;      /// firstSlack + stride
    NuvFloat32* costs;    /// [length]
    NuvUint* positions;   /// [length]

    NuvFloat32* basicCosts;      /// [stride] c_B
    NuvFloat32* b;               /// [stride]
    NuvFloat32* prices;          /// [stride] π = c_B · B⁻¹
    NuvFloat32* basicValues;     /// [stride] B⁻¹ · b
    NuvFloat32* enteringColumn;  /// [stride] A(j)
    NuvFloat32* direction;       /// [stride] d = B⁻¹ · A(j)
    NuvFloat32* ratios;          /// [stride] basicValues / d
};

/// The nonbasic position that enters, and its reduced cost; 0 means that the basis is optimal.
struct Entering
{
    NuvUint position;
    NuvFloat32 reducedCost;
};

/// The basis row that leaves, if there is one.
struct Leaving
{
    NuvUint row;
    bool exists;
};

/// Phase I maximises −x₀; nothing else has a cost there.
inline NuvFloat32 CostOf(const Iteration* it, NuvUint label)
{
    if (it->phase == Phase::II)
        return it->form->c[label - 1];
    return label == kArtificialLabel ? -1.0F : 0.0F;
}

/// The place of a label, which is not the artificial variable's, in arrays by column.
inline NuvSizeT IndexOf(const Iteration* it, NuvUint label)
{
    const NuvUint n = it->form->n;
    return label <= n ? label - 1 : it->firstSlack + (label - n - 1);
}

/// Fixes the dimensions and places the arrays.
void PlaceArrays(Iteration* it, SolveContext* context, const StandardForm* form, Phase phase,
                 WorkspaceLayout* layout);
/// Takes the labels and the right-hand sides of lp's standard form; the costs follow the labels.
void Initialise(Iteration* it, const NuvLinearProgramming* lp);

/// Lays down the costs and positions of the labels.
void PlaceLabels(Iteration* it);

/// The ratio test: the smallest ratio, the first one on ties; but the artificial variable goes
/// before others of the same ratio.
Leaving ChooseLeaving(Iteration* it);
/// The same when the smallest ratio is found.
Leaving LeavingOf(const Iteration* it, const Choice* smallest);
/// The row of the smallest basic value, the first one on ties: what leaves for the artificial
/// variable.
Leaving ChooseMostNegative(const Iteration* it);
/// Counts the pivot that is about to be made, and tells the monitor.
/// @return false when the solve is to end.
bool ReportPivot(const Iteration* it, const Entering* entering, const Leaving* leaving);
/// Exchanges labels and costs between the entering position and the leaving row.
void ExchangeLabels(Iteration* it, NuvUint position, NuvUint row);
/// π · b: what the basis is worth.
NuvFloat32 ComputeObjective(const Iteration* it);
}  // namespace nuv

#endif
