/// @file
/// The accessors of the two records, inline for a caller that includes this header.
#ifndef NUV_UTILS_NUVLINEARPROGRAMMINGINLINE_H
#define NUV_UTILS_NUVLINEARPROGRAMMINGINLINE_H

#include "Nuv/Utils/NuvLinearProgrammingRecords.h"

/// @return false when the allocator refuses; the name then stays.
NUV_INLINE NuvBool NuvLinearProgrammingVariableSetName(NuvLinearProgrammingVariable* variable,
                                                       const NuvString* name)
{
    return NuvStringAssign(&variable->name, name) ? NUV_TRUE : NUV_FALSE;
}

/// Records a type, which no solve reads.
NUV_INLINE void NuvLinearProgrammingVariableSetType(NuvLinearProgrammingVariable* variable,
                                                    NuvLinearProgrammingVariableType type)
{
    variable->type = type;
}

/// Sets the index, from 1; of the record alone, not of a model that holds it.
NUV_INLINE void NuvLinearProgrammingVariableSetIndex(NuvLinearProgrammingVariable* variable,
                                                     NuvUint index)
{
    variable->index = index;
}

/// @return the name; it is the variable's.
NUV_INLINE const NuvString*
NuvLinearProgrammingVariableGetName(const NuvLinearProgrammingVariable* variable)
{
    return &variable->name;
}

/// @return the type, as it was recorded.
NUV_INLINE NuvLinearProgrammingVariableType
NuvLinearProgrammingVariableGetType(const NuvLinearProgrammingVariable* variable)
{
    return variable->type;
}

/// @return the index, from 1.
NUV_INLINE NuvUint
NuvLinearProgrammingVariableGetIndex(const NuvLinearProgrammingVariable* variable)
{
    return variable->index;
}

/// @return how the constraint gives its variables.
NUV_INLINE NuvLinearProgrammingVariableAccessType
NuvLinearProgrammingConstraintGetVariableAccessType(const NuvLinearProgrammingConstraint* c)
{
    return c->type;
}

/// @return the coefficients, or null when the constraint names its variables.
NUV_INLINE const NuvVector_NuvPair_NuvUint__NuvFloat32*
NuvLinearProgrammingConstraintGetVariablesCoefficientsByIndex(
    const NuvLinearProgrammingConstraint* c)
{
    return c->type == NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_INDEX
               ? &c->u.variableCoefficientsByIndex
               : 0;
}

/// @return the coefficients, or null when the constraint gives its variables by index.
NUV_INLINE const NuvVector_NuvPair_NuvString__NuvFloat32*
NuvLinearProgrammingConstraintGetVariablesCoefficientsByName(
    const NuvLinearProgrammingConstraint* c)
{
    return c->type == NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME
               ? &c->u.variableCoefficientsByName
               : 0;
}

/// @return the right-hand side.
NUV_INLINE NuvFloat32 NuvLinearProgrammingConstraintGetRhs(const NuvLinearProgrammingConstraint* c)
{
    return c->rhs;
}

#endif
