// The rows of a model, as its map of constraints holds them.
#pragma once

#include "Nuv/Utils/NuvLinearProgramming.h"

/// The constraint under a number, or null.
inline const NuvLinearProgrammingConstraint* FindRow(const NuvLinearProgramming& lp, NuvUint id)
{
    const auto found =
        NuvUnordered_NuvUint__NuvLinearProgrammingConstraintFindConst(&lp.constraints, &id);
    if (found == NuvUnordered_NuvUint__NuvLinearProgrammingConstraintEndConst(&lp.constraints))
        return nullptr;
    return &NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraintConstIteratorContentOf(&found)
                ->second;
}
