// The standard form: the model as dense matrices, one slack column per row. With n variables and m
// constraints, A is m × (n + m) with the identity in its last m columns, and the slack columns are
// the first basis.
#include <bit>

#include "Nuv/Templates/NuvStorage.hpp"
#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Simplex/Phases.h"

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
    constexpr NuvUint exponent = 0x7F800000;
    return (std::bit_cast<NuvUint>(value) & exponent) != exponent;
}

/// What is known about the values stored so far.
struct Record
{
    bool isFinite;
    NuvSizeT numCoefficients;
};

/// Stores one coefficient in a row of n; a later one for the same variable replaces it.
bool StoreCoefficient(NuvFloat32* row, NuvUint n, NuvUint index, NuvFloat32 coefficient)
{
    if (index == 0 || index > n)
        return false;
    row[index - 1] = coefficient;
    return true;
}

bool StoreByIndex(const NuvVector_NuvPair_NuvUint__NuvFloat32* terms, NuvFloat32* row, NuvUint n,
                  Record* record)
{
    bool isFinite = true;
    for (const NuvPair_NuvUint__NuvFloat32* term = terms->begin; term != terms->end; ++term)
    {
        if (!StoreCoefficient(row, n, term->first, term->second))
            return false;
        isFinite &= IsFinite(term->second);
    }
    record->isFinite &= isFinite;
    record->numCoefficients += NuvVector_NuvPair_NuvUint__NuvFloat32Size(terms);
    return true;
}

bool StoreByName(const NuvLinearProgramming* lp,
                 const NuvVector_NuvPair_NuvString__NuvFloat32* terms, NuvFloat32* row,
                 Record* record)
{
    for (const NuvPair_NuvString__NuvFloat32* term = terms->begin; term != terms->end; ++term)
    {
        const NuvUnordered_NuvString__NuvLinearProgrammingVariableConstIterator found =
            NuvUnordered_NuvString__NuvLinearProgrammingVariableFindConst(&lp->variables,
                                                                          &term->first);
        if (found == NuvUnordered_NuvString__NuvLinearProgrammingVariableEndConst(&lp->variables))
            return false;
        const NuvLinearProgrammingVariable* const variable =
            &NuvList_NuvPair_NuvString__NuvLinearProgrammingVariableConstIteratorContentOf(&found)
                 ->second;
        if (!StoreCoefficient(row, lp->numVars, variable->index, term->second))
            return false;
        record->isFinite &= IsFinite(term->second);
        ++record->numCoefficients;
    }
    return true;
}

bool StoreConstraint(NuvLinearProgramming* lp, const NuvLinearProgrammingConstraint* constraint,
                     NuvSizeT r, Record* record)
{
    NuvFloat32* const row = RowOf(&lp->A, r);
    const NuvVector_NuvPair_NuvString__NuvFloat32* const named =
        NuvLinearProgrammingConstraintGetVariablesCoefficientsByName(constraint);
    const bool isStored =
        named ? StoreByName(lp, named, row, record)
              : StoreByIndex(
                    NuvLinearProgrammingConstraintGetVariablesCoefficientsByIndex(constraint), row,
                    lp->numVars, record);
    if (!isStored)
        return false;
    lp->b.data[r] = NuvLinearProgrammingConstraintGetRhs(constraint);
    record->isFinite &= IsFinite(lp->b.data[r]);
    return true;
}

/// Makes a row per constraint, in the order in which the map is walked.
bool StoreConstraints(NuvLinearProgramming* lp, Record* record)
{
    const NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraint* const entries =
        &lp->constraints.l;
    NuvUint r = 0;
    for (const auto* link = entries->node.next.b; link != &entries->node; link = link->next.b)
    {
        const NuvPair_NuvUint__NuvLinearProgrammingConstraint* const entry =
            NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraintConstIteratorContentOf(&link);
        if (!StoreConstraint(lp, &entry->second, r, record))
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
}  // namespace
}  // namespace nuv

bool nuv::PrepareInputs(NuvLinearProgramming* lp, StandardFormFacts* facts)
{
    const NuvSizeT m = NuvUnordered_NuvUint__NuvLinearProgrammingConstraintSize(&lp->constraints);
    Record record = {true, 0};
    if (!ResizeMatrices(lp, m) || !StoreConstraints(lp, &record))
        return false;
    facts->nonzeros = record.numCoefficients;
    if (!StoreByIndex(&lp->objective, lp->c.data, lp->numVars, &record) || !StoreSlackBasis(lp))
        return false;
    facts->isExact = record.isFinite;
    return true;
}

NuvBool NuvLinearProgrammingPrepareInputs_(NuvLinearProgramming* lp)
{
    nuv::StandardFormFacts facts;
    return nuv::PrepareInputs(lp, &facts) ? NUV_TRUE : NUV_FALSE;
}
