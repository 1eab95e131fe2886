// Strings and the two records of a model as elements of containers.
#pragma once

#include "Nuv/Templates/NuvElement.hpp"
#include "Nuv/Utils/NuvLinearProgrammingRecords.h"

template <>
struct nuv::Element<NuvString>
{
    static bool Construct(NuvString* x, const NuvString* y)
    {
        return NuvStringConstructCopy(x, y) != nullptr;
    }

    static bool ConstructInPlaceOf(NuvString* x, const NuvString* former, const NuvString* y)
    {
        return NuvStringAssign(NuvStringConstructDefault(x, former->allocator), y) != nullptr;
    }

    static bool Assign(NuvString* x, const NuvString* y)
    {
        return NuvStringAssign(x, y) != nullptr;
    }

    static void Destruct(NuvString* x)
    {
        NuvStringDestruct(x);
    }

    static bool Equal(const NuvString* x, const NuvString* y)
    {
        return NuvStringEqual(x, y) != NUV_FALSE;
    }
};

template <>
struct nuv::Element<NuvLinearProgrammingVariable>
{
    static bool Construct(NuvLinearProgrammingVariable* x, const NuvLinearProgrammingVariable* y)
    {
        return NuvLinearProgrammingVariableConstructCopy(x, y) != nullptr;
    }

    static bool ConstructInPlaceOf(NuvLinearProgrammingVariable* x,
                                   const NuvLinearProgrammingVariable* former,
                                   const NuvLinearProgrammingVariable* y)
    {
        return NuvLinearProgrammingVariableConstruct(x, y->type, y->index, &y->name,
                                                     former->name.allocator) != nullptr;
    }

    static bool Assign(NuvLinearProgrammingVariable* x, const NuvLinearProgrammingVariable* y)
    {
        // same bits: nobody asks whether the copy of a record inside a pair succeeded
        return NuvLinearProgrammingVariableAssign(x, y) != nullptr;
    }

    static void Destruct(NuvLinearProgrammingVariable* x)
    {
        NuvLinearProgrammingVariableDestruct(x);
    }
};

template <>
struct nuv::Element<NuvLinearProgrammingConstraint>
{
    static bool Construct(NuvLinearProgrammingConstraint* x,
                          const NuvLinearProgrammingConstraint* y)
    {
        return NuvLinearProgrammingConstraintConstructCopy(x, y) != nullptr;
    }

    static bool ConstructInPlaceOf(NuvLinearProgrammingConstraint* x,
                                   const NuvLinearProgrammingConstraint*,
                                   const NuvLinearProgrammingConstraint* y)
    {
        return NuvLinearProgrammingConstraintConstructCopy(x, y) != nullptr;
    }

    static bool Assign(NuvLinearProgrammingConstraint* x, const NuvLinearProgrammingConstraint* y)
    {
        // same bits: nobody asks whether the copy of a record inside a pair succeeded
        return NuvLinearProgrammingConstraintAssign(x, y) != nullptr;
    }

    static void Destruct(NuvLinearProgrammingConstraint* x)
    {
        NuvLinearProgrammingConstraintDestruct(x);
    }
};
