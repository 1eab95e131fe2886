/// @file
/// The caller's source of memory. Every object of the library takes all its storage from the
/// allocator it was built with, and gives each block back with exactly the byte count that it asked
/// for.
#ifndef NUV_UTILS_NUVALLOCATOR_H
#define NUV_UTILS_NUVALLOCATOR_H

#include "Nuv/Utils/NuvTypes.h"

typedef struct NuvAllocator NuvAllocator;

/// Two functions of the caller's, and room for what they need to know.
struct NuvAllocator
{
    /// Answers a block of that many bytes, aligned for any scalar type, or null to refuse.
    void* (*allocate)(NuvAllocator* allocator, NuvSizeT size);
    /// Takes back a block with the size that was asked for.
    void (*deallocate)(NuvAllocator* allocator, void* memory, NuvSizeT size);
    /// The caller's own; the library does not read it.
    NuvSizeT maxSize;
    /// The caller's own; the library does not read it.
    void* userData;
};

#endif
