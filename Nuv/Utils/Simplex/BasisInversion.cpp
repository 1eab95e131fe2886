// Gauss-Jordan elimination column by column. What a step does to a column depends on the step's
// pivot column alone, so each column may go through all steps by itself: the columns of the basis
// to find the steps, then the columns of the identity. The elements see the same operations in the
// same order as in the dense elimination.
//
// Exactness: a step whose element at the pivot's position is 0 subtracts ±0 from finite numbers,
// which changes nothing but signs of zeros, and those do not show (see BasisInverse.h). So it
// may be skipped, and a unit column whose 1 is not met stays one. That all numbers are finite is
// tested on the multipliers of each step and on the result: a number that is not finite never
// becomes finite again.
#include "Nuv/Utils/Simplex/BasisInversion.h"

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Kernels/Switches.h"
#include "Nuv/Utils/Kernels/DenseAlgebra.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
/// Takes a column through one step.
void Apply(const EliminationStep* step, const Kernels* kernels, NuvFloat32* x, NuvSizeT length)
{
    const NuvFloat32 element = x[step->exchanged] / step->pivot;
    x[step->exchanged] = x[step->position];
    x[step->position] = element;
    // same bits: a multiple of ±0 changes finite numbers in signs of zeros alone, which do not
    // show; what is not finite stays so, and is found later
    if (element != 0.0F && step->multipliers)
        kernels->subtractMultiple(x, step->multipliers, element, length);
}

void ApplyFrom(const Elimination* elimination, NuvUint first, const Kernels* kernels, NuvFloat32* x,
               NuvSizeT length)
{
    for (NuvUint k = first; k != elimination->numSteps; ++k)
        Apply(elimination->steps + k, kernels, x, length);
}

/// Follows the 1 of a unit column through the exchanges of rows, until a step has it for its pivot.
/// @return that step, or the number of steps when there is none; `row` is then that of the 1.
NuvUint FollowUnit(const Elimination* elimination, NuvUint* row)
{
    NuvUint k = 0;
    // same bits: a unit column, followed through the exchanges or through all steps, has the same
    // elements but for signs of zeros, which do not show
    for (; k != elimination->numSteps; ++k)
    {
        const EliminationStep* const step = elimination->steps + k;
        // same bits: a unit column, followed through the exchanges or through all steps, has the
        // same elements but for signs of zeros, which do not show
        if (*row == step->exchanged)
            break;
        if (*row == step->position)
            *row = step->exchanged;
    }
    return k;
}

void FillUnit(NuvFloat32* x, NuvUint row, NuvSizeT length)
{
    NuvMemZero(x, length * sizeof *x);
    x[row] = 1.0F;
}

enum class Found
{
    Step,
    Singular,
    NotFinite
};

/// Makes the step of a basis column that has gone through the earlier ones.
Found AppendStep(Elimination* elimination, const BasisInverse* inverse, NuvFloat32* x,
                 NuvUint position)
{
    if (!inverse->kernels->isFinite(x, inverse->stride))
        return Found::NotFinite;
    const NuvUint pivotRow = static_cast<NuvUint>(FindPivotRow(x, 1, position, inverse->m));
    const NuvFloat32 pivot = x[pivotRow];
    // same bits: a pivot out of a finite column is no NaN; a division by 0 makes numbers that are
    // not finite, and these lead to the dense iteration
    if (pivot == 0.0F)
        return Found::Singular;
    x[pivotRow] = x[position];
    x[position] = 0.0F;
    elimination->steps[elimination->numSteps++] = {position, pivotRow, pivot, x};
    ++elimination->numMultipliers;
    return Found::Step;
}

/// The column of a slack variable: mostly a unit column that makes no work.
Found EliminateSlack(Elimination* elimination, const BasisInverse* inverse, NuvUint slack,
                     NuvUint position)
{
    NuvUint row = slack;
    const NuvUint first = FollowUnit(elimination, &row);
    // same bits: a unit column, followed through the exchanges or through all steps, has the same
    // elements but for signs of zeros, which do not show
    if (first != elimination->numSteps)
    {
        NuvFloat32* const x =
            elimination->multipliers + elimination->numMultipliers * inverse->stride;
        FillUnit(x, row, inverse->stride);
        ApplyFrom(elimination, first, inverse->kernels, x, inverse->stride);
        return AppendStep(elimination, inverse, x, position);
    }
    // same bits: only a label that stands twice leads here, and such labels take the dense
    // iteration
    if (row < position)
        return Found::Singular;
    // same bits: exchanging a row with itself without multipliers changes nothing
    if (row > position)
        elimination->steps[elimination->numSteps++] = {position, row, 1.0F, nullptr};
    return Found::Step;
}

Found EliminateColumn(Elimination* elimination, const BasisInverse* inverse,
                      const StandardForm* form, NuvUint label, NuvUint position)
{
    if (label > form->n)
        return EliminateSlack(elimination, inverse, label - form->n - 1, position);
    NuvFloat32* const x = elimination->multipliers + elimination->numMultipliers * inverse->stride;
    for (NuvUint i = 0; i != inverse->m; ++i)
        x[i] = ElementOf(form, i, label);
    NuvMemZero(x + inverse->m, (inverse->stride - inverse->m) * sizeof *x);
    ApplyFrom(elimination, 0, inverse->kernels, x, inverse->stride);
    return AppendStep(elimination, inverse, x, position);
}

/// Takes the columns of the identity through all steps.
/// @return whether they are finite.
bool EliminateIdentity(const Elimination* elimination, BasisInverse* inverse)
{
    for (NuvUint column = 0; column != inverse->m; ++column)
    {
        NuvUint row = column;
        const NuvUint first = FollowUnit(elimination, &row);
        // same bits: a unit column, followed through the exchanges or through all steps, has the
        // same elements but for signs of zeros, which do not show
        if (first == elimination->numSteps && row == column)
            continue;
        NuvFloat32* const x = StoreColumn(inverse, column);
        FillUnit(x, row, inverse->stride);
        ApplyFrom(elimination, first, inverse->kernels, x, inverse->stride);
        if (!inverse->kernels->isFinite(x, inverse->stride))
            return false;
    }
    return true;
}
}  // namespace

bool Invert(BasisInverse* inverse, const StandardForm* form, const NuvUint* labels,
            const NuvFloat32* b, Elimination* elimination)
{
#ifdef NUV_SWITCHES
    if (!switches.columnInversion)
        return InvertDensely(inverse, form, labels, b);
#endif
    SetToIdentity(inverse, b);
    elimination->numSteps = 0;
    elimination->numMultipliers = 0;
    for (NuvUint position = 0; position != inverse->m; ++position)
    {
        const Found found = EliminateColumn(elimination, inverse, form, labels[position], position);
        if (found == Found::NotFinite)
            return false;
        if (found == Found::Singular)
            break;
    }
    return EliminateIdentity(elimination, inverse);
}
}  // namespace nuv
