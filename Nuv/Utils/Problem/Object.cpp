// The problem object. Invariant: `variables` holds an entry per index 1..numVars, whose key is the
// name in its record, and `variableValues` the pairs (name, value) by index; either may hold fewer
// after refused memory.
#include "Nuv/Utils/NuvLinearProgramming.h"

namespace nuv
{
namespace
{
/// The default name of a variable, "X1", "X2", …, in memory of its own.
class DefaultName
{
public:
    explicit DefaultName(NuvUint index) : first(text + sizeof text - 1)
    {
        *first = '\0';
        for (; index != 0; index /= 10)
            *--first = static_cast<char>('0' + index % 10);
        *--first = 'X';
    }

    /// The name as a string without a block, whose copies lie on `alloc`.
    NuvString Borrow(NuvAllocator* alloc) const
    {
        return {alloc, first, static_cast<NuvSizeT>(text + sizeof text - 1 - first), 0};
    }

private:
    char text[12] = {};  // X, ten digits at most, and the end
    char* first;
};

/// Enters (name, {continuous, index, name}); everything lies on the allocator of `name`, which is
/// lp's.
/// @return false when the name is taken or any part of the entry is refused; nothing is entered
/// then.
bool InsertVariable(NuvLinearProgramming* lp, NuvUint index, const NuvString* name)
{
    // The pair borrows the name's bits: the map copies them, and nothing here destructs them.
    const NuvPair_NuvString__NuvLinearProgrammingVariable entry = {
        *name, {NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32, index, *name}};
    const NuvUnordered_NuvString__NuvLinearProgrammingVariableInsertResult inserted =
        NuvUnordered_NuvString__NuvLinearProgrammingVariableInsert(&lp->variables, &entry);
    if (!inserted.second)
        return false;
    // The map does not report a copy that failed inside, which is empty; a variable without its
    // name must not stay.
    const NuvPair_NuvString__NuvLinearProgrammingVariable* const stored =
        NuvList_NuvPair_NuvString__NuvLinearProgrammingVariableIteratorContentOf(&inserted.first);
    if (stored->first.size == name->size && stored->second.name.size == name->size)
        return true;
    NuvUnordered_NuvString__NuvLinearProgrammingVariableErase(&lp->variables, inserted.first);
    return false;
}

/// Makes the variables 1..numVars under their default names.
/// @return false when an entry is refused; the earlier ones are then there.
bool AppendVariables(NuvLinearProgramming* lp)
{
    (void)NuvVector_NuvPair_NuvString__NuvFloat32Reserve(&lp->variableValues,
                                                         lp->numVars);  // unreported by contract
    // Counted by what is left, so that the largest NuvUint ends the loop too.
    for (NuvUint left = lp->numVars, index = 1; left != 0; --left, ++index)
    {
        const DefaultName name(index);
        const NuvPair_NuvString__NuvFloat32 value = {name.Borrow(lp->alloc), 0.0F};
        if (!InsertVariable(lp, index, &value.first))
            return false;
        (void)NuvVector_NuvPair_NuvString__NuvFloat32PushBack(&lp->variableValues,
                                                              &value);  // unreported by contract
    }
    return true;
}

void DestructMatrices(NuvLinearProgramming* lp)
{
    NuvMatrix_NuvUintDestruct(&lp->independent);
    NuvMatrix_NuvUintDestruct(&lp->basic);
    NuvMatrix_NuvFloat32Destruct(&lp->c);
    NuvMatrix_NuvFloat32Destruct(&lp->b);
    NuvMatrix_NuvFloat32Destruct(&lp->A);
}

bool ConstructMaps(NuvLinearProgramming* lp, NuvAllocator* alloc)
{
    if (!NuvUnordered_NuvString__NuvLinearProgrammingVariableConstruct(
            // same bits: no and one bucket asked for make two
            &lp->variables, NuvStringHash, 0, alloc, alloc))
        return false;
    if (NuvUnordered_NuvUint__NuvLinearProgrammingConstraintConstruct(
            // same bits: no and one bucket asked for make two
            &lp->constraints, NuvConstraintIdHash, 0, alloc, alloc))
        return true;
    NuvUnordered_NuvString__NuvLinearProgrammingVariableDestruct(&lp->variables);
    return false;
}

/// Finds a matrix's copy before its former content goes: the source may be one of lp's own
/// matrices.
NuvMatrix_NuvFloat32 CopyOf(const NuvMatrix_NuvFloat32* source)
{
    NuvMatrix_NuvFloat32 copy;
    (void)NuvMatrix_NuvFloat32ConstructCopy(&copy, source);  // unreported by contract
    return copy;
}

void Replace(NuvMatrix_NuvFloat32* x, const NuvMatrix_NuvFloat32* copy)
{
    NuvMatrix_NuvFloat32Destruct(x);
    *x = *copy;
}
}  // namespace
}  // namespace nuv

NuvLinearProgramming* NuvLinearProgrammingConstructDefault(NuvLinearProgramming* lp,
                                                           NuvAllocator* alloc)
{
    lp->alloc = alloc;
    lp->numVars = 0;
    lp->numConstraints = 0;
    lp->objectiveValue = 0.0F;
    NuvMatrix_NuvFloat32ConstructDefault(&lp->A, alloc);
    NuvMatrix_NuvFloat32ConstructDefault(&lp->b, alloc);
    NuvMatrix_NuvFloat32ConstructDefault(&lp->c, alloc);
    NuvMatrix_NuvUintConstructDefault(&lp->basic, alloc);
    NuvMatrix_NuvUintConstructDefault(&lp->independent, alloc);
    NuvVector_NuvPair_NuvUint__NuvFloat32ConstructDefault(&lp->objective, alloc);
    NuvVector_NuvPair_NuvString__NuvFloat32ConstructDefault(&lp->variableValues, alloc);
    return nuv::ConstructMaps(lp, alloc) ? lp : nullptr;
}

NuvLinearProgramming* NuvLinearProgrammingConstruct(NuvLinearProgramming* lp, NuvUint numVars,
                                                    NuvAllocator* alloc)
{
    if (!NuvLinearProgrammingConstructDefault(lp, alloc))
        return nullptr;
    lp->numVars = numVars;
    if (nuv::AppendVariables(lp))
        return lp;
    NuvLinearProgrammingDestruct(lp);
    return nullptr;
}

void NuvLinearProgrammingDestruct(NuvLinearProgramming* lp)
{
    NuvVector_NuvPair_NuvString__NuvFloat32Destruct(&lp->variableValues);
    NuvVector_NuvPair_NuvUint__NuvFloat32Destruct(&lp->objective);
    NuvUnordered_NuvUint__NuvLinearProgrammingConstraintDestruct(&lp->constraints);
    NuvUnordered_NuvString__NuvLinearProgrammingVariableDestruct(&lp->variables);
    nuv::DestructMatrices(lp);
    lp->alloc = nullptr;
    lp->numVars = 0;
    lp->numConstraints = 0;
}

NuvBool NuvLinearProgrammingSetNumVars(NuvLinearProgramming* lp, NuvUint numVars)
{
    NuvUnordered_NuvString__NuvLinearProgrammingVariableClear(&lp->variables);
    NuvVector_NuvPair_NuvString__NuvFloat32Clear(&lp->variableValues);
    lp->numVars = numVars;
    return nuv::AppendVariables(lp) ? NUV_TRUE : NUV_FALSE;
}

NuvUint NuvLinearProgrammingGetNumVars(const NuvLinearProgramming* lp)
{
    return lp->numVars;
}

NuvUint NuvLinearProgrammingGetNumConstraints(const NuvLinearProgramming* lp)
{
    return static_cast<NuvUint>(
        NuvUnordered_NuvUint__NuvLinearProgrammingConstraintSize(&lp->constraints));
}

NuvBool NuvLinearProgrammingSetInput(NuvLinearProgramming* lp, const NuvMatrix_NuvFloat32* A,
                                     const NuvMatrix_NuvFloat32* b, const NuvMatrix_NuvFloat32* c)
{
    // same bits: a place more is not used
    const NuvMatrix_NuvFloat32 copies[3] = {nuv::CopyOf(A), nuv::CopyOf(b), nuv::CopyOf(c)};
    nuv::Replace(&lp->A, &copies[0]);
    nuv::Replace(&lp->b, &copies[1]);
    nuv::Replace(&lp->c, &copies[2]);
    return NUV_TRUE;
}

NuvFloat32 NuvLinearProgrammingGetObjectiveValue(const NuvLinearProgramming* lp)
{
    return lp->objectiveValue;
}

const NuvVector_NuvPair_NuvString__NuvFloat32*
NuvLinearProgrammingGetVariableValues(const NuvLinearProgramming* lp)
{
    return &lp->variableValues;
}

NuvSizeT NuvConstraintIdHash(const NuvUint* constraintId)
{
    return *constraintId;
}
