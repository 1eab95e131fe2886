// A solved model of the corpus once more, in a batch.
#pragma once

#include "Nuv/SelfTest/SelfTest.hpp"
#include "Nuv/Utils/NuvLinearProgramming.h"

namespace nuv::selftest
{
/// What the solve told besides what stands in the model.
struct Solved
{
    uint32_t status;
    uint32_t pivots;
    /// Phase, entering and leaving label of each pivot.
    const uint32_t* labels;
    uint32_t maxPivots;
};

/// @return whether two copies of the solved model, side by side in a batch, give the same verdict,
/// pivots, objective and values as the model has; a model that cannot be solved has no batch.
bool IsSameInBatch(const NuvLinearProgramming* lp, const Solved& solved, Loops loops);
}  // namespace nuv::selftest
