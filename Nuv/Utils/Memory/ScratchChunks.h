// Where the scratch allocator keeps blocks that are not expected to stay: one behind the other in
// chunks from upstream, so that taking one costs a few instructions. Not installed.
#ifndef NUV_UTILS_MEMORY_SCRATCHCHUNKS_H
#define NUV_UTILS_MEMORY_SCRATCHCHUNKS_H

#include <stdint.h>

#include "Nuv/Utils/NuvScratchAllocator.h"

namespace nuv
{
/// Takes a block whose size leaves room for rounding up.
/// @return a block, or null when the block is too large for a chunk, or the chunk is refused.
void* TakeFromChunk(NuvScratchAllocator* x, NuvSizeT size);

/// @return false when the block is in no chunk.
bool GiveBackToChunk(NuvScratchAllocator* x, const void* memory);

/// Where all chunks lie: from `first` to before `end`, and much else between them.
struct ChunkRange
{
    uintptr_t first;
    uintptr_t end;
};

ChunkRange RangeOfChunks(const NuvScratchAllocator* x);

inline bool IsInRange(const ChunkRange& range, const void* memory)
{
    const uintptr_t at = reinterpret_cast<uintptr_t>(memory);
    return at >= range.first && at < range.end;
}

/// Protects a block from the next release.
/// @return false when the block is in no chunk.
bool HoldInChunk(const NuvScratchAllocator* x, const void* memory);

/// Gives back the blocks younger than `mark` that are not held, and lets go of the others.
void ReleaseInChunks(NuvScratchAllocator* x, NuvSizeT mark);
}  // namespace nuv

#endif
