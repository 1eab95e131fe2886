// Long random sequences of edits on one model of the library, beside the plain model.
#pragma once

#include <cstdint>
#include <string>

#include "Nuv/Utils/NuvAllocator.h"

namespace reference
{
/// Renames variables, sets, replaces and removes rows, sets objectives and now and then replaces
/// all variables, `steps` times, on a model of some 150 variables and 250 rows. What a step touched
/// is compared after it, the whole model and its standard form every 1000 steps.
/// @return the first difference, or "".
std::string EditAtRandom(std::uint64_t steps, std::uint64_t seed, NuvAllocator* allocator);
}  // namespace reference
