// The two records of a model. A record whose copy was refused is empty and may be destructed.
#define NUV_EMIT_INLINE
#include "Nuv/Utils/NuvLinearProgrammingRecords.h"

#include "Nuv/Utils/NuvLinearProgrammingInline.h"

namespace nuv
{
namespace
{
/// Copies coefficients with all their names onto one allocator, whichever allocators the names of
/// `y` are on.
bool ConstructOn(NuvVector_NuvPair_NuvString__NuvFloat32* x,
                 const NuvVector_NuvPair_NuvString__NuvFloat32* y, NuvAllocator* alloc)
{
    NuvVector_NuvPair_NuvString__NuvFloat32ConstructDefault(x, alloc);
    if (!NuvVector_NuvPair_NuvString__NuvFloat32Reserve(
            x, NuvVector_NuvPair_NuvString__NuvFloat32Size(y)))
        return false;
    for (const NuvPair_NuvString__NuvFloat32* pair = y->begin; pair != y->end; ++pair)
    {
        NuvStringConstructDefault(&x->end->first, alloc);
        if (!NuvStringAssign(&x->end->first, &pair->first))
        {
            NuvVector_NuvPair_NuvString__NuvFloat32Destruct(x);
            return false;
        }
        x->end->second = pair->second;
        ++x->end;
    }
    return true;
}

bool ConstructOn(NuvVector_NuvPair_NuvUint__NuvFloat32* x,
                 const NuvVector_NuvPair_NuvUint__NuvFloat32* y, NuvAllocator* alloc)
{
    return NuvVector_NuvPair_NuvUint__NuvFloat32ConstructRange(x, y->begin, y->end, alloc) !=
           nullptr;
}

/// Makes the rest of a constraint whose type is set, `x` being its coefficients.
template <class Coefficients>
NuvLinearProgrammingConstraint* ConstructWith(NuvLinearProgrammingConstraint* constraint,
                                              Coefficients* x, const Coefficients* y,
                                              NuvFloat32 rhs, NuvAllocator* alloc)
{
    const bool isCopied = ConstructOn(x, y, alloc);
    constraint->rhs = isCopied ? rhs : 0.0F;
    return isCopied ? constraint : nullptr;
}

/// Takes the coefficients of `y` by index, reusing those of `x` if it has the same kind.
bool AssignByIndex(NuvLinearProgrammingConstraint* x, const NuvLinearProgrammingConstraint* y)
{
    if (x->type == NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME)
    {
        NuvAllocator* const alloc = x->u.variableCoefficientsByName.allocator;
        NuvLinearProgrammingConstraintDestruct(x);
        x->type = NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_INDEX;
        NuvVector_NuvPair_NuvUint__NuvFloat32ConstructDefault(&x->u.variableCoefficientsByIndex,
                                                              alloc);
    }
    return NuvVector_NuvPair_NuvUint__NuvFloat32Assign(
               &x->u.variableCoefficientsByIndex, &y->u.variableCoefficientsByIndex) != nullptr;
}

bool AssignByName(NuvLinearProgrammingConstraint* x, const NuvLinearProgrammingConstraint* y)
{
    NuvLinearProgrammingConstraintDestruct(x);
    x->type = NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME;
    return NuvVector_NuvPair_NuvString__NuvFloat32ConstructCopy(
               &x->u.variableCoefficientsByName, &y->u.variableCoefficientsByName) != nullptr;
}
}  // namespace
}  // namespace nuv

NuvLinearProgrammingVariable*
NuvLinearProgrammingVariableConstructDefault(NuvLinearProgrammingVariable* variable,
                                             NuvAllocator* alloc)
{
    variable->type = NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32;
    variable->index = 0;
    NuvStringConstructDefault(&variable->name, alloc);
    return variable;
}

NuvLinearProgrammingVariable*
NuvLinearProgrammingVariableConstruct(NuvLinearProgrammingVariable* variable,
                                      NuvLinearProgrammingVariableType type, NuvUint index,
                                      const NuvString* name, NuvAllocator* alloc)
{
    variable->type = type;
    variable->index = index;
    NuvStringConstructDefault(&variable->name, alloc);
    return NuvStringAssign(&variable->name, name) ? variable : nullptr;
}

NuvLinearProgrammingVariable*
NuvLinearProgrammingVariableConstructCopy(NuvLinearProgrammingVariable* x,
                                          const NuvLinearProgrammingVariable* y)
{
    x->type = y->type;
    x->index = y->index;
    return NuvStringConstructCopy(&x->name, &y->name) ? x : nullptr;
}

NuvLinearProgrammingVariable*
NuvLinearProgrammingVariableAssign(NuvLinearProgrammingVariable* x,
                                   const NuvLinearProgrammingVariable* y)
{
    x->type = y->type;
    x->index = y->index;
    return NuvStringAssign(&x->name, &y->name) ? x : nullptr;
}

void NuvLinearProgrammingVariableDestruct(NuvLinearProgrammingVariable* variable)
{
    NuvStringDestruct(&variable->name);
}

NuvBool NuvLinearProgrammingVariableEqual(const NuvLinearProgrammingVariable* x,
                                          const NuvLinearProgrammingVariable* y)
{
    if (x->type != y->type || x->index != y->index)
        return NUV_FALSE;
    return NuvStringEqual(&x->name, &y->name);
}

NuvBool NuvLinearProgrammingVariableLess(const NuvLinearProgrammingVariable*,
                                         const NuvLinearProgrammingVariable*)
{
    return NUV_FALSE;
}

NuvLinearProgrammingConstraint* NuvLinearProgrammingConstraintConstruct(
    NuvLinearProgrammingConstraint* constraint,
    const NuvVector_NuvPair_NuvString__NuvFloat32* variableCoefficients, NuvFloat32 rhs,
    NuvAllocator* alloc)
{
    constraint->type = NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME;
    return nuv::ConstructWith(constraint, &constraint->u.variableCoefficientsByName,
                              variableCoefficients, rhs, alloc);
}

NuvLinearProgrammingConstraint* NuvLinearProgrammingConstraintConstructIndex(
    NuvLinearProgrammingConstraint* constraint,
    const NuvVector_NuvPair_NuvUint__NuvFloat32* variableCoefficients, NuvFloat32 rhs,
    NuvAllocator* alloc)
{
    constraint->type = NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_INDEX;
    return nuv::ConstructWith(constraint, &constraint->u.variableCoefficientsByIndex,
                              variableCoefficients, rhs, alloc);
}

NuvLinearProgrammingConstraint*
NuvLinearProgrammingConstraintConstructCopy(NuvLinearProgrammingConstraint* x,
                                            const NuvLinearProgrammingConstraint* y)
{
    x->type = y->type;
    x->rhs = 0.0F;
    const bool isCopied =
        y->type == NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME
            ? NuvVector_NuvPair_NuvString__NuvFloat32ConstructCopy(
                  &x->u.variableCoefficientsByName, &y->u.variableCoefficientsByName) != nullptr
            : NuvVector_NuvPair_NuvUint__NuvFloat32ConstructCopy(
                  &x->u.variableCoefficientsByIndex, &y->u.variableCoefficientsByIndex) != nullptr;
    if (!isCopied)
        return nullptr;
    x->rhs = y->rhs;
    return x;
}

NuvLinearProgrammingConstraint*
NuvLinearProgrammingConstraintAssign(NuvLinearProgrammingConstraint* x,
                                     const NuvLinearProgrammingConstraint* y)
{
    if (x == y)
        return x;
    const bool isAssigned = y->type == NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME
                                ? nuv::AssignByName(x, y)
                                : nuv::AssignByIndex(x, y);
    if (!isAssigned)
        return nullptr;
    x->rhs = y->rhs;
    return x;
}

void NuvLinearProgrammingConstraintDestruct(NuvLinearProgrammingConstraint* constraint)
{
    if (constraint->type == NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME)
        NuvVector_NuvPair_NuvString__NuvFloat32Destruct(&constraint->u.variableCoefficientsByName);
    else
        NuvVector_NuvPair_NuvUint__NuvFloat32Destruct(&constraint->u.variableCoefficientsByIndex);
}

NuvBool NuvLinearProgrammingConstraintEqual(const NuvLinearProgrammingConstraint*,
                                            const NuvLinearProgrammingConstraint*)
{
    return NUV_FALSE;
}

NuvBool NuvLinearProgrammingConstraintLess(const NuvLinearProgrammingConstraint*,
                                           const NuvLinearProgrammingConstraint*)
{
    return NUV_FALSE;
}
