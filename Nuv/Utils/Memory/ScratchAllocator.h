// What the solver asks of an allocator. Not installed.
#ifndef NUV_UTILS_MEMORY_SCRATCHALLOCATOR_H
#define NUV_UTILS_MEMORY_SCRATCHALLOCATOR_H

#include "Nuv/Utils/NuvAllocator.h"

namespace nuv
{
/// Whether this is the allocator of a NuvScratchAllocator, whose owner takes back what a solve
/// leaves.
bool IsScratchAllocator(const NuvAllocator* allocator);
}  // namespace nuv

#endif
