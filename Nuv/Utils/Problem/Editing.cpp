// Editing the model between construction and solve. Everything that the model keeps lies on lp's
// allocator, but for what NuvLinearProgrammingSetConstraint copies from a record of the caller's
// making.
#include "Nuv/Utils/NuvLinearProgramming.h"
#include "Nuv/Utils/Problem/Variables.h"

namespace nuv
{
namespace
{
NuvVector_NuvPair_NuvString__NuvFloat32* ValuesOf(NuvLinearProgramming* lp)
{
    return &lp->variableValues;
}

/// The variable's present entry, or the end when it has no value pair or its name is not in the
/// map.
NuvUnordered_NuvString__NuvLinearProgrammingVariableIterator FindEntry(NuvLinearProgramming* lp,
                                                                       NuvUint variableIndex)
{
    if (variableIndex > NuvVector_NuvPair_NuvString__NuvFloat32Size(ValuesOf(lp)))
        return NuvUnordered_NuvString__NuvLinearProgrammingVariableEnd(&lp->variables);
    const NuvPair_NuvString__NuvFloat32* const value =
        NuvVector_NuvPair_NuvString__NuvFloat32At(ValuesOf(lp), variableIndex - 1);
    return NuvUnordered_NuvString__NuvLinearProgrammingVariableFind(&lp->variables, &value->first);
}

/// Puts the entry for `variableIndex` at `former` under another name, which is on lp's allocator.
bool Rename(NuvLinearProgramming* lp,
            NuvUnordered_NuvString__NuvLinearProgrammingVariableIterator former,
            NuvUint variableIndex, const NuvString* name)
{
    NuvUnordered_NuvString__NuvLinearProgrammingVariableErase(&lp->variables, former);
    // The pair borrows the name's bits: the map copies them, and nothing here destructs them.
    const NuvPair_NuvString__NuvLinearProgrammingVariable entry = {
        *name, {NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32, variableIndex, *name}};
    if (!NuvUnordered_NuvString__NuvLinearProgrammingVariableInsert(&lp->variables, &entry).second)
        return false;
    // A refused assignment leaves the old name in the results, unreported by contract.
    (void)NuvStringAssign(
        &NuvVector_NuvPair_NuvString__NuvFloat32At(ValuesOf(lp), variableIndex - 1)->first, name);
    return true;
}

/// Copies `constraint` into the map under a new number.
/// @return the copy, or null when the entry is refused.
NuvLinearProgrammingConstraint* InsertConstraint(NuvLinearProgramming* lp, NuvUint constraintId,
                                                 const NuvLinearProgrammingConstraint* constraint)
{
    // The pair borrows the constraint's bits: the map copies them, and nothing here destructs them.
    const NuvPair_NuvUint__NuvLinearProgrammingConstraint entry = {constraintId, *constraint};
    const NuvUnordered_NuvUint__NuvLinearProgrammingConstraintInsertResult inserted =
        NuvUnordered_NuvUint__NuvLinearProgrammingConstraintInsert(&lp->constraints, &entry);
    if (!inserted.second)
        return nullptr;
    return &NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraintIteratorContentOf(
                &inserted.first)
                ->second;
}

/// @return a place for a new constraint, or null when the entry is refused.
NuvLinearProgrammingConstraint* InsertEmptyConstraint(NuvLinearProgramming* lp,
                                                      NuvUint constraintId)
{
    NuvLinearProgrammingConstraint empty;
    empty.type = NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_INDEX;
    NuvVector_NuvPair_NuvUint__NuvFloat32ConstructDefault(&empty.u.variableCoefficientsByIndex,
                                                          lp->alloc);
    empty.rhs = 0.0F;
    return InsertConstraint(lp, constraintId, &empty);
}

/// @return the constraint of that number, or null when there is none.
NuvLinearProgrammingConstraint* FindConstraint(NuvLinearProgramming* lp, NuvUint constraintId)
{
    const NuvUnordered_NuvUint__NuvLinearProgrammingConstraintIterator found =
        NuvUnordered_NuvUint__NuvLinearProgrammingConstraintFind(&lp->constraints, &constraintId);
    if (found == NuvUnordered_NuvUint__NuvLinearProgrammingConstraintEnd(&lp->constraints))
        return nullptr;
    return &NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraintIteratorContentOf(&found)
                ->second;
}

/// Finds the index of each name and appends (index, coefficient); an append that is refused is
/// skipped, by contract.
bool ResolveNames(NuvLinearProgramming* lp, const NuvVector_NuvPair_NuvString__NuvFloat32* named,
                  NuvVector_NuvPair_NuvUint__NuvFloat32* indexed)
{
    for (const NuvPair_NuvString__NuvFloat32* pair = named->begin; pair != named->end; ++pair)
    {
        const NuvLinearProgrammingVariable* const variable = FindVariable(lp, &pair->first);
        if (!variable)
            return false;
        const NuvPair_NuvUint__NuvFloat32 term = {variable->index, pair->second};
        (void)NuvVector_NuvPair_NuvUint__NuvFloat32PushBack(indexed, &term);
    }
    return true;
}

/// Puts a constraint that was made for this in the place of `former`, or under its number when that
/// is null: the record moves there bit by bit. One whose coefficients were refused is an empty row
/// and goes in with the former right-hand side, unreported by contract.
NuvBool PlaceConstraint(NuvLinearProgramming* lp, NuvUint constraintId,
                        NuvLinearProgrammingConstraint* former,
                        NuvLinearProgrammingConstraint* constraint, bool isMade)
{
    if (!isMade)
        constraint->rhs = former ? former->rhs : 0.0F;
    NuvLinearProgrammingConstraint* const place =
        former ? former : InsertEmptyConstraint(lp, constraintId);
    NuvLinearProgrammingConstraintDestruct(place ? place : constraint);
    if (!place)
        return NUV_FALSE;
    *place = *constraint;
    return NUV_TRUE;
}
}  // namespace

const NuvLinearProgrammingVariable* FindVariable(const NuvLinearProgramming* lp,
                                                 const NuvString* name)
{
    const NuvUnordered_NuvString__NuvLinearProgrammingVariableConstIterator found =
        NuvUnordered_NuvString__NuvLinearProgrammingVariableFindConst(&lp->variables, name);
    if (found == NuvUnordered_NuvString__NuvLinearProgrammingVariableEndConst(&lp->variables))
        return nullptr;
    return &NuvList_NuvPair_NuvString__NuvLinearProgrammingVariableConstIteratorContentOf(&found)
                ->second;
}
}  // namespace nuv

NuvBool NuvLinearProgrammingSetVariableInfo(NuvLinearProgramming* lp, NuvUint variableIndex,
                                            const NuvString* name, NuvLinearProgrammingVariableType)
{
    if (variableIndex == 0 || variableIndex > lp->numVars)
        return NUV_FALSE;
    const NuvUnordered_NuvString__NuvLinearProgrammingVariableIterator former =
        nuv::FindEntry(lp, variableIndex);
    if (former == NuvUnordered_NuvString__NuvLinearProgrammingVariableEnd(&lp->variables))
        return NUV_TRUE;
    // `name` may be the one stored in the entry that goes.
    NuvString copy;
    NuvStringConstructDefault(&copy, lp->alloc);
    const bool isRenamed =
        NuvStringAssign(&copy, name) && nuv::Rename(lp, former, variableIndex, &copy);
    NuvStringDestruct(&copy);
    return isRenamed ? NUV_TRUE : NUV_FALSE;
}

NuvBool NuvLinearProgrammingSetConstraint(NuvLinearProgramming* lp, NuvUint constraintId,
                                          const NuvLinearProgrammingConstraint* constraint)
{
    if (constraintId == 0)
        return NUV_FALSE;
    NuvLinearProgrammingConstraint* const stored = nuv::FindConstraint(lp, constraintId);
    if (!stored)
        return nuv::InsertConstraint(lp, constraintId, constraint) ? NUV_TRUE : NUV_FALSE;
    (void)NuvLinearProgrammingConstraintAssign(stored, constraint);  // unreported by contract
    return NUV_TRUE;
}

NuvBool NuvLinearProgrammingSetConstraintByName(
    NuvLinearProgramming* lp, NuvUint constraintId,
    const NuvVector_NuvPair_NuvString__NuvFloat32* constraintValues, NuvFloat32 rhs)
{
    if (constraintId == 0)
        return NUV_FALSE;
    NuvLinearProgrammingConstraint constraint;
    const bool isMade = NuvLinearProgrammingConstraintConstruct(&constraint, constraintValues, rhs,
                                                                lp->alloc) != nullptr;
    return nuv::PlaceConstraint(lp, constraintId, nuv::FindConstraint(lp, constraintId),
                                &constraint, isMade);
}

NuvBool NuvLinearProgrammingSetConstraintByIndex(
    NuvLinearProgramming* lp, NuvUint constraintId,
    const NuvVector_NuvPair_NuvUint__NuvFloat32* constraintValues, NuvFloat32 rhs)
{
    if (constraintId == 0)
        return NUV_FALSE;
    NuvLinearProgrammingConstraint constraint;
    if (NuvLinearProgrammingConstraint* const former = nuv::FindConstraint(lp, constraintId))
    {
        // Read where it is: the former coefficients by index may be `constraintValues` itself.
        constraint.type = NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_INDEX;
        constraint.u.variableCoefficientsByIndex = *constraintValues;
        constraint.rhs = rhs;
        (void)NuvLinearProgrammingConstraintAssign(former, &constraint);  // unreported by contract
        return NUV_TRUE;
    }
    const bool isMade = NuvLinearProgrammingConstraintConstructIndex(&constraint, constraintValues,
                                                                     rhs, lp->alloc) != nullptr;
    return nuv::PlaceConstraint(lp, constraintId, nullptr, &constraint, isMade);
}

NuvBool NuvLinearProgrammingRemoveConstraint(NuvLinearProgramming* lp, NuvUint constraintId)
{
    return NuvUnordered_NuvUint__NuvLinearProgrammingConstraintEraseKey(&lp->constraints,
                                                                        &constraintId) != 0
               ? NUV_TRUE
               : NUV_FALSE;
}

NuvBool
NuvLinearProgrammingSetObjective(NuvLinearProgramming* lp,
                                 const NuvVector_NuvPair_NuvString__NuvFloat32* objectiveValues)
{
    NuvVector_NuvPair_NuvUint__NuvFloat32 resolved;
    NuvVector_NuvPair_NuvUint__NuvFloat32ConstructDefault(&resolved, lp->alloc);
    const bool isKnown = nuv::ResolveNames(lp, objectiveValues, &resolved);
    if (isKnown)
        (void)NuvVector_NuvPair_NuvUint__NuvFloat32Assign(&lp->objective,
                                                          &resolved);  // unreported by contract
    NuvVector_NuvPair_NuvUint__NuvFloat32Destruct(&resolved);
    return isKnown ? NUV_TRUE : NUV_FALSE;
}

void NuvLinearProgrammingSetObjectiveByIndex(
    NuvLinearProgramming* lp, const NuvVector_NuvPair_NuvUint__NuvFloat32* objectiveValues)
{
    (void)NuvVector_NuvPair_NuvUint__NuvFloat32Assign(&lp->objective,
                                                      objectiveValues);  // unreported by contract
}
