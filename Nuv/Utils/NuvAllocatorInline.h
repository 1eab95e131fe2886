/// @file
/// The two calls to an allocator.
#ifndef NUV_UTILS_NUVALLOCATORINLINE_H
#define NUV_UTILS_NUVALLOCATORINLINE_H

#include "Nuv/Utils/NuvAllocator.h"

/// @return `size` bytes, or null when the allocator refuses.
static inline void* NuvAllocatorAllocate(NuvAllocator* allocator, NuvSizeT size)
{
    return allocator->allocate(allocator, size);
}

/// Gives a block back, with the `size` that was asked for.
static inline void NuvAllocatorDeallocate(NuvAllocator* allocator, void* memory, NuvSizeT size)
{
    allocator->deallocate(allocator, memory, size);
}

#endif
