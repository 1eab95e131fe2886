// The standard form: the model as dense matrices, one slack column per row. With n variables and m
// constraints, A is m × (n + m) with the identity in its last m columns, and the slack columns are
// the first basis.
#include "Nuv/Utils/Simplex/StandardForm.h"

#include <bit>

#include "Nuv/Templates/NuvStorage.hpp"
#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/NuvStdCLibInline.h"
#include "Nuv/Utils/Problem/Variables.h"

namespace nuv
{
namespace
{
/// Whether a matrix has storage of the shape, which a resize would leave as it is.
template <class Matrix>
bool HasShape(const Matrix* x, NuvUint rows, NuvUint columns)
{
    // same bits: a resize finds the same
    return x->nr == rows && x->nc == columns && x->data;
}

/// Sets the shapes; b and c start at zero, A with the identity of the slack columns.
/// @return false when storage is refused, a dimension is 0, or m × (n + m) does not fit 32 bits.
bool ResizeMatrices(NuvLinearProgramming* lp, NuvSizeT m)
{
    const NuvSizeT n = lp->numVars;
    const NuvSizeT columns = n + m;
    if (columns > UINT32_MAX || m * columns > UINT32_MAX)
        return false;
    const NuvUint rows = static_cast<NuvUint>(m);
    const NuvUint width = static_cast<NuvUint>(columns);
    if (!(HasShape(&lp->A, rows, width) || NuvMatrix_NuvFloat32Resize(&lp->A, rows, width)) ||
        !(HasShape(&lp->b, rows, 1) || NuvMatrix_NuvFloat32Resize(&lp->b, rows, 1)) ||
        !(HasShape(&lp->c, width, 1) || NuvMatrix_NuvFloat32Resize(&lp->c, width, 1)))
        return false;
    NuvMemZero(lp->A.data, m * columns * sizeof *lp->A.data);
    NuvMemZero(lp->b.data, m * sizeof *lp->b.data);
    NuvMemZero(lp->c.data, columns * sizeof *lp->c.data);
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

/// Stores a row whose terms are those of all n variables, in their order.
/// @return false when it is another one; then nothing is stored.
bool StoreDense(const NuvPair_NuvUint__NuvFloat32* terms, NuvFloat32* row, NuvUint n, Tally* tally)
{
    NuvUint differences = 0;
    for (NuvUint j = 0; j != n; ++j)
        differences |= terms[j].first ^ (j + 1);
    // same bits: single coefficients are stored in any order
    if (differences != 0)
        return false;
    NuvUint numInfinite = 0;
    for (NuvUint j = 0; j != n; ++j)
    {
        row[j] = terms[j].second;
        numInfinite |= IsFinite(terms[j].second) ? 0U : 1U;
    }
    tally->isFinite &= numInfinite == 0;
    return true;
}

bool StoreByIndex(const NuvVector_NuvPair_NuvUint__NuvFloat32* terms, NuvFloat32* row, NuvUint n,
                  Tally* tally)
{
    const NuvSizeT count = static_cast<NuvSizeT>(terms->end - terms->begin);
    tally->numCoefficients += count;
    // same bits: single coefficients are stored in any order
    if (count == n && n >= kFewestDense && StoreDense(terms->begin, row, n, tally))
        return true;
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

/// Makes a row per constraint, in the order of the map's entries.
bool StoreConstraints(NuvLinearProgramming* lp, Tally* tally)
{
    using Node = NuvListNode__NuvPair_NuvUint__NuvLinearProgrammingConstraint;
    const NuvUint n = lp->numVars;
    NuvFloat32* row = lp->A.data;
    NuvUint r = 0;
    const auto* const end = &lp->constraints.l.node;
    for (const auto* link = end->next.b; link != end; link = link->next.b)
    {
        const NuvLinearProgrammingConstraint* const constraint =
            &reinterpret_cast<const Node*>(link)->obj.second;
        const bool isStored =
            constraint->type == NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME
                ? StoreByName(lp, &constraint->u.variableCoefficientsByName, row, tally)
                : StoreByIndex(&constraint->u.variableCoefficientsByIndex, row, n, tally);
        if (!isStored)
            return false;
        lp->b.data[r++] = constraint->rhs;
        tally->isFinite &= IsFinite(constraint->rhs);
        row += lp->A.nc;
    }
    lp->numConstraints = r;
    return true;
}

/// Labels the slack columns as the basis and the variables as the rest.
bool StoreSlackBasis(NuvLinearProgramming* lp)
{
    const NuvUint m = lp->numConstraints;
    const NuvUint n = lp->numVars;
    if (!(HasShape(&lp->basic, 1, m) || NuvMatrix_NuvUintResize(&lp->basic, 1, m)) ||
        !(HasShape(&lp->independent, 1, n) || NuvMatrix_NuvUintResize(&lp->independent, 1, n)))
        return false;
    NuvUint* const independent = lp->independent.data;
    for (NuvUint j = 0; j != n; ++j)
        independent[j] = j + 1;
    NuvUint* const basic = lp->basic.data;
    for (NuvUint i = 0; i != m; ++i)
        basic[i] = n + 1 + i;
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

/// Whether each label stands once.
bool AreDistinct(const NuvLinearProgramming* lp)
{
    bool areDistinct = true;
    const auto labelAt = [&](NuvUint i)
    { return i < lp->basic.nc ? lp->basic.data[i] : lp->independent.data[i - lp->basic.nc]; };
    for (NuvUint i = 0; i != lp->A.nc; ++i)
        for (NuvUint k = 0; k != i; ++k)
            areDistinct &= labelAt(i) != labelAt(k);
    return areDistinct;
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
            static_cast<NuvSizeT>(lp->numVars) + lp->numConstraints,
            false};
}
}  // namespace

bool HasFirstLabels(const NuvLinearProgramming* lp)
{
    NuvUint differences = 0;
    for (NuvUint i = 0; i != lp->numConstraints; ++i)
        differences |= lp->basic.data[i] ^ (lp->numVars + 1 + i);
    for (NuvUint j = 0; j != lp->numVars; ++j)
        differences |= lp->independent.data[j] ^ (j + 1);
    return differences == 0;
}

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
    form->isOrdinary = tally.isFinite;
    form->maxNonzeros = maxNonzeros;
    form->hasFirstLabels = true;
    return true;
}

bool CanCountElements(const NuvLinearProgramming* lp, NuvSizeT numArtificial)
{
    const NuvSizeT m = lp->numConstraints;
    return m * (numArtificial + lp->numVars + m) <= UINT32_MAX;
}

bool ReadStandardForm(const NuvLinearProgramming* lp, NuvSizeT numArtificial, StandardForm* form)
{
    if (!CanCountElements(lp, numArtificial) || !HasStandardForm(lp))
        return false;
    *form = ViewOf(lp);
    form->hasFirstLabels = HasFirstLabels(lp);
    const NuvUint m = form->m;
    const NuvUint n = form->n;
    const NuvSizeT numColumns = static_cast<NuvSizeT>(n) + m;
    bool isKnown = AreFinite(form->A, m * numColumns) && AreFinite(form->b, m) &&
                   AreFinite(form->c, numColumns) &&
                   (form->hasFirstLabels || (numArtificial == 0 && AreDistinct(lp)));
    for (NuvUint i = 0; i != m; ++i)
    {
        const NuvFloat32* const row = RowOf(form, i);
        for (NuvUint j = 0; j != n; ++j)
            form->maxNonzeros += row[j] != 0.0F ? 1 : 0;
        for (NuvUint j = 0; j != m; ++j)
            isKnown &= row[n + j] == (i == j ? 1.0F : 0.0F);
        isKnown &= form->c[n + i] == 0.0F;
    }
    form->isOrdinary = isKnown;
    return true;
}
}  // namespace nuv

NuvBool NuvLinearProgrammingPrepareInputs_(NuvLinearProgramming* lp)
{
    nuv::StandardForm form;
    return nuv::PrepareInputs(lp, &form) ? NUV_TRUE : NUV_FALSE;
}
