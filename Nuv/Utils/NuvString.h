/// @file
/// The string of names: bytes of any value, counted, and followed by a NUL. An empty string holds
/// no block, so that making one cannot fail; a string whose construction failed is empty and may be
/// read and destructed.
#ifndef NUV_UTILS_NUVSTRING_H
#define NUV_UTILS_NUVSTRING_H

#include "Nuv/Utils/NuvAllocator.h"

typedef struct NuvString NuvString;

/// The string's record.
struct NuvString
{
    /// Of the block.
    NuvAllocator* allocator;
    /// The characters and a NUL. Read only while `capacity` is 0.
    char* buf;
    /// Characters, without the NUL.
    NuvSizeT size;
    /// Characters that fit without growing, without the NUL.
    NuvSizeT capacity;
};

/// Makes an empty string on `allocator`.
/// @return `x`.
NUV_API NuvString* NuvStringConstructDefault(NuvString* x, NuvAllocator* allocator);

/// Makes a copy of `y` on the allocator of `y`.
/// @return `x`, or null when the allocator refuses; `x` is then empty.
NUV_API NuvString* NuvStringConstructCopy(NuvString* x, const NuvString* y);

/// Makes the string that printf would write for `format`.
/// @return `x`, or null when the allocator refuses or the format is faulty; `x` is then empty.
NUV_API NuvString* NuvStringConstructFormatted(NuvString* x, NuvAllocator* allocator,
                                               const char* format, ...);

/// Gives `x` the characters of `y`; `x` keeps its allocator.
/// @return `x`, or null when the allocator refuses; `x` then keeps its value.
NUV_API NuvString* NuvStringAssign(NuvString* x, const NuvString* y);

/// @return whether both hold the same characters.
NUV_API NuvBool NuvStringEqual(const NuvString* x, const NuvString* y);

/// @return the FNV-1a hash, 64 bits wide, of the characters (Fowler, Noll, Vo).
NUV_API NuvSizeT NuvStringHash(const NuvString* x);

/// Gives the block back; `x` is then an empty string on the same allocator.
NUV_API void NuvStringDestruct(NuvString* x);

#endif
