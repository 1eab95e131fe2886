// The standard form: the model as dense matrices, one slack column per row. With n variables and m
// constraints, A is m × (n + m) with the identity in its last m columns, and the slack columns are
// the first basis.
#include "Nuv/Utils/Simplex/StandardForm.h"

#include <bit>

#include "Nuv/Templates/NuvStorage.hpp"
#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Problem/Variables.h"

namespace nuv
{
namespace
{
/// Sets the shapes; b and c start at zero, A with the identity of the slack columns.
/// @return false when storage is refused, a dimension is 0, or m × (n + m) does not fit 32 bits.
bool ResizeMatrices(NuvLinearProgramming* lp, NuvSizeT m)
{
    const NuvSizeT n = lp->numVars;
    const NuvSizeT columns = n + m;
    if (columns > UINT32_MAX || m * columns > UINT32_MAX)
        return false;
    const NuvUint rows = static_cast<NuvUint>(m);
    if (!NuvMatrix_NuvFloat32Resize(&lp->A, rows, static_cast<NuvUint>(columns)) ||
        !NuvMatrix_NuvFloat32Resize(&lp->b, rows, 1) ||
        !NuvMatrix_NuvFloat32Resize(&lp->c, static_cast<NuvUint>(columns), 1))
        return false;
    NuvMatrix_NuvFloat32Reset(&lp->A);
    NuvMatrix_NuvFloat32Reset(&lp->b);
    NuvMatrix_NuvFloat32Reset(&lp->c);
    for (NuvSizeT r = 0; r != m; ++r)
        RowOf(&lp->A, r)[n + r] = 1.0F;
    return true;
}

bool IsFinite(NuvFloat32 value)
{
    constexpr NuvUint kExponent = 0x7F800000;
    return (std::bit_cast<NuvUint>(value) & kExponent) != kExponent;
}

/// What is known of the numbers stored so far.
struct Tally
{
    bool isFinite;
    NuvSizeT numCoefficients;
};

/// Stores one coefficient in a row of n; a later one for the same variable replaces it.
bool StoreCoefficient(NuvFloat32* row, NuvUint n, NuvUint index, NuvFloat32 coefficient)
{
    // 0 becomes the largest number of all.
    const NuvUint column = index - 1;
    if (column >= n)
        return false;
    row[column] = coefficient;
    return true;
}

/// With fewer terms there is nothing to gain by looking at all of them first.
constexpr NuvUint kFewestDense = 16;

/// Whether the terms are those of all n variables, in their order: a dense row.
bool AreAllInOrder(const NuvPair_NuvUint__NuvFloat32* terms, NuvSizeT count, NuvUint n)
{
    // same bits: single coefficients are stored in any order
    if (count != n || n < kFewestDense)
        return false;
    NuvUint differences = 0;
    for (NuvUint j = 0; j != n; ++j)
        differences |= terms[j].first ^ (j + 1);
    return differences == 0;
}

/// Stores a dense row.
/// @return whether it is finite.
bool StoreAll(const NuvPair_NuvUint__NuvFloat32* terms, NuvFloat32* row, NuvUint n)
{
    NuvUint numInfinite = 0;
    for (NuvUint j = 0; j != n; ++j)
    {
        row[j] = terms[j].second;
        numInfinite |= IsFinite(terms[j].second) ? 0U : 1U;
    }
    return numInfinite == 0;
}

bool StoreByIndex(const NuvVector_NuvPair_NuvUint__NuvFloat32* terms, NuvFloat32* row, NuvUint n,
                  Tally* tally)
{
    const NuvSizeT count = static_cast<NuvSizeT>(terms->end - terms->begin);
    tally->numCoefficients += count;
    if (AreAllInOrder(terms->begin, count, n))
    {
        tally->isFinite &= StoreAll(terms->begin, row, n);
        return true;
    }
    // A sum of numbers times 0: a NaN where one is not finite.
    NuvFloat32 doubt = 0.0F;
    for (const NuvPair_NuvUint__NuvFloat32* term = terms->begin; term != terms->end; ++term)
    {
        if (!StoreCoefficient(row, n, term->first, term->second))
            return false;
        doubt = doubt + term->second * 0.0F;
    }
    tally->isFinite &= doubt == 0.0F;
    return true;
}

bool StoreByName(const NuvLinearProgramming* lp,
                 const NuvVector_NuvPair_NuvString__NuvFloat32* terms, NuvFloat32* row,
                 Tally* tally)
{
    for (const NuvPair_NuvString__NuvFloat32* term = terms->begin; term != terms->end; ++term)
    {
        const NuvLinearProgrammingVariable* const variable = FindVariable(lp, &term->first);
        if (!variable)
            return false;
        if (!StoreCoefficient(row, lp->numVars, variable->index, term->second))
            return false;
        tally->isFinite &= IsFinite(term->second);
        ++tally->numCoefficients;
    }
    return true;
}

bool StoreConstraint(NuvLinearProgramming* lp, const NuvLinearProgrammingConstraint* constraint,
                     NuvSizeT r, Tally* tally)
{
    NuvFloat32* const row = RowOf(&lp->A, r);
    const NuvVector_NuvPair_NuvString__NuvFloat32* const named =
        NuvLinearProgrammingConstraintGetVariablesCoefficientsByName(constraint);
    const bool isStored =
        named ? StoreByName(lp, named, row, tally)
              : StoreByIndex(
                    NuvLinearProgrammingConstraintGetVariablesCoefficientsByIndex(constraint), row,
                    lp->numVars, tally);
    if (!isStored)
        return false;
    lp->b.data[r] = NuvLinearProgrammingConstraintGetRhs(constraint);
    tally->isFinite &= IsFinite(lp->b.data[r]);
    return true;
}

/// Makes a row per constraint, in the order of the map's entries.
bool StoreConstraints(NuvLinearProgramming* lp, Tally* tally)
{
    const NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraint* const entries =
        &lp->constraints.l;
    NuvUint r = 0;
    for (const auto* link = entries->node.next.b; link != &entries->node; link = link->next.b)
    {
        const NuvPair_NuvUint__NuvLinearProgrammingConstraint* const entry =
            NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraintConstIteratorContentOf(&link);
        if (!StoreConstraint(lp, &entry->second, r, tally))
            return false;
        ++r;
    }
    lp->numConstraints = r;
    return true;
}

/// Labels the slack columns as the basis and the variables as the rest.
bool StoreSlackBasis(NuvLinearProgramming* lp)
{
    if (!NuvMatrix_NuvUintResize(&lp->basic, 1, lp->numConstraints) ||
        !NuvMatrix_NuvUintResize(&lp->independent, 1, lp->numVars))
        return false;
    for (NuvUint i = 0; i != lp->numVars; ++i)
        lp->independent.data[i] = i + 1;
    for (NuvUint i = 0; i != lp->numConstraints; ++i)
        lp->basic.data[i] = lp->numVars + 1 + i;
    return true;
}
bool AreLabelsIn(const NuvMatrix_NuvUint* labels, NuvUint columns)
{
    for (NuvUint i = 0; i != labels->nc; ++i)
        if (labels->data[i] == kArtificialLabel || labels->data[i] > columns)
            return false;
    return true;
}

/// Whether lp's matrices are of one standard form, so that the phases may read them.
bool HasStandardForm(const NuvLinearProgramming* lp)
{
    const NuvSizeT m = lp->numConstraints;
    const NuvSizeT n = lp->numVars;
    if (m == 0 || n == 0)
        return false;
    const bool hasShapes = lp->A.nr == m && lp->A.nc == n + m && lp->b.nr == m && lp->b.nc == 1 &&
                           lp->c.nr == n + m && lp->c.nc == 1 && lp->basic.nr == 1 &&
                           lp->basic.nc == m && lp->independent.nr == 1 && lp->independent.nc == n;
    return hasShapes && lp->A.data && lp->b.data && lp->c.data && lp->basic.data &&
           lp->independent.data && AreLabelsIn(&lp->basic, lp->A.nc) &&
           AreLabelsIn(&lp->independent, lp->A.nc);
}

bool AreFinite(const NuvFloat32* x, NuvSizeT count)
{
    // same bits: the dense iteration, which this leads to, has the bits of the definition
    bool areFinite = true;
    for (NuvSizeT i = 0; i != count; ++i)
        areFinite &= IsFinite(x[i]);
    return areFinite;
}

StandardForm ViewOf(const NuvLinearProgramming* lp)
{
    return {lp->numConstraints,
            lp->numVars,
            lp->A.data,
            lp->b.data,
            lp->c.data,
            false,
            0,
            static_cast<NuvSizeT>(lp->numVars) + lp->numConstraints};
}
}  // namespace

bool PrepareInputs(NuvLinearProgramming* lp, StandardForm* form)
{
    const NuvSizeT m = NuvUnordered_NuvUint__NuvLinearProgrammingConstraintSize(&lp->constraints);
    Tally tally = {true, 0};
    if (!ResizeMatrices(lp, m) || !StoreConstraints(lp, &tally))
        return false;
    const NuvSizeT maxNonzeros = tally.numCoefficients;
    // same bits: a failed preparation answers false on both ways, and its facts are not used
    if (!StoreByIndex(&lp->objective, lp->c.data, lp->numVars, &tally) || !StoreSlackBasis(lp))
        return false;
    *form = ViewOf(lp);
    form->isFiniteWithUnitSlacks = tally.isFinite;
    form->maxNonzeros = maxNonzeros;
    return true;
}

bool CanCountElements(const NuvLinearProgramming* lp, NuvSizeT numArtificial)
{
    const NuvSizeT m = lp->numConstraints;
    return m * (numArtificial + lp->numVars + m) <= UINT32_MAX;
}

bool ReadStandardForm(const NuvLinearProgramming* lp, StandardForm* form)
{
    if (!HasStandardForm(lp))
        return false;
    *form = ViewOf(lp);
    const NuvUint m = form->m;
    const NuvUint n = form->n;
    const NuvSizeT numColumns = static_cast<NuvSizeT>(n) + m;
    bool isKnown = AreFinite(form->A, m * numColumns) && AreFinite(form->b, m) &&
                   AreFinite(form->c, numColumns);
    for (NuvUint i = 0; i != m; ++i)
    {
        const NuvFloat32* const row = RowOf(form, i);
        for (NuvUint j = 0; j != n; ++j)
            form->maxNonzeros += row[j] != 0.0F ? 1 : 0;
        for (NuvUint j = 0; j != m; ++j)
            isKnown &= row[n + j] == (i == j ? 1.0F : 0.0F);
        isKnown &= form->c[n + i] == 0.0F;
    }
    form->isFiniteWithUnitSlacks = isKnown;
    return true;
}
}  // namespace nuv

NuvBool NuvLinearProgrammingPrepareInputs_(NuvLinearProgramming* lp)
{
    nuv::StandardForm form;
    return nuv::PrepareInputs(lp, &form) ? NUV_TRUE : NUV_FALSE;
}
