/// @file
/// The byte operations that the library takes from the C library. A count of zero is allowed with
/// any pointers.
#ifndef NUV_UTILS_NUVSTDCLIBINLINE_H
#define NUV_UTILS_NUVSTDCLIBINLINE_H

#include <string.h>

#include "Nuv/Utils/NuvTypes.h"

/// Copies `size` bytes between blocks that do not overlap.
static inline void NuvMemCopy(void* destination, const void* source, NuvSizeT size)
{
    // same bits: no bytes, nothing to do, whatever the pointers
    if (size != 0)
        memcpy(destination, source, (size_t)size);
}

/// Like NuvMemCopy, for blocks that may overlap.
static inline void NuvMemMove(void* destination, const void* source, NuvSizeT size)
{
    // same bits: no bytes, nothing to do, whatever the pointers
    if (size != 0)
        memmove(destination, source, (size_t)size);
}

/// @return whether the first `size` bytes of both are the same.
static inline NuvBool NuvMemEqual(const void* x, const void* y, NuvSizeT size)
{
    // same bits: no bytes, nothing to do, whatever the pointers
    return size == 0 || memcmp(x, y, (size_t)size) == 0 ? NUV_TRUE : NUV_FALSE;
}

/// Makes `size` bytes 0.
static inline void NuvMemZero(void* memory, NuvSizeT size)
{
    // same bits: no bytes, nothing to do, whatever the pointers
    if (size != 0)
        memset(memory, 0, (size_t)size);
}

#endif
