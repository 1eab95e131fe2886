// Inverting a basis from its columns, with the bits of Gauss-Jordan elimination with partial
// pivoting on the dense matrix. Not installed.
#ifndef NUV_UTILS_SIMPLEX_BASISINVERSION_H
#define NUV_UTILS_SIMPLEX_BASISINVERSION_H

#include "Nuv/Utils/Simplex/BasisInverse.h"
#include "Nuv/Utils/Simplex/StandardForm.h"

namespace nuv
{
/// One step of the elimination, as it acts on any column: rows `position` and `exchanged` change
/// places, the element at `position` is divided by `pivot`, and its multiples are subtracted from
/// all others. The multipliers are null when all of them are 0.
struct EliminationStep
{
    NuvUint position;
    NuvUint exchanged;
    NuvFloat32 pivot;
    const NuvFloat32* multipliers;  /// [stride]
};

struct Elimination
{
    NuvUint numSteps;
    EliminationStep* steps;  /// [m]
    NuvUint numMultipliers;
    NuvFloat32* multipliers;  /// [m × stride], `stride` for each step that has some
};

/// Sets the inverse to that of the basis columns, whose labels are given, for the right-hand sides
/// b [stride]; when the basis is singular, to what the elimination has made of the identity by
/// then.
/// @return false when a number on the way was not finite; the inverse is then of no use.
bool Invert(BasisInverse* inverse, const StandardForm* form, const NuvUint* labels,
            const NuvFloat32* b, Elimination* elimination);
#ifdef NUV_SWITCHES
/// The same by rows of a dense matrix, for the benchmark, which defines it.
bool InvertDensely(BasisInverse* inverse, const StandardForm* form, const NuvUint* labels,
                   const NuvFloat32* b);
#endif
}  // namespace nuv

#endif
