/// @file
/// An allocator over the caller's allocator that can take back what was taken since some moment:
/// mark, solve, release. Every block is known to it, so that nothing is ever lost. The blocks that
/// a solve would only leave behind are not even taken from it.
#ifndef NUV_UTILS_NUVSCRATCHALLOCATOR_H
#define NUV_UTILS_NUVSCRATCHALLOCATOR_H

#include "Nuv/Utils/NuvLinearProgramming.h"

typedef struct NuvScratchAllocator NuvScratchAllocator;
/// What precedes each block that is out.
typedef struct NuvScratchBlock NuvScratchBlock;

/// Must stay where it was constructed while blocks are out.
struct NuvScratchAllocator
{
    /// What to build objects on.
    NuvAllocator allocator;
    /// Where the memory comes from; borrowed.
    NuvAllocator* upstream;
    /// The blocks that are out, the newest first.
    NuvScratchBlock* newest;
    /// How many blocks have ever been taken.
    NuvSizeT taken;
    /// How many blocks are out.
    NuvSizeT numBlocks;
};

/// Makes an allocator without blocks.
/// @return `x`.
NUV_API NuvScratchAllocator* NuvScratchAllocatorConstruct(NuvScratchAllocator* x,
                                                          NuvAllocator* upstream);

/// Gives every block that is still out back upstream.
NUV_API void NuvScratchAllocatorDestruct(NuvScratchAllocator* x);

/// @return the allocator to build a model on.
NUV_API NuvAllocator* NuvScratchAllocatorGetAllocator(NuvScratchAllocator* x);

/// @return the number of blocks that are out.
NUV_API NuvSizeT NuvScratchAllocatorGetNumBlocks(const NuvScratchAllocator* x);

/// @return a mark: blocks taken from now on are younger.
NUV_API NuvSizeT NuvScratchAllocatorMark(NuvScratchAllocator* x);

/// Gives back the blocks taken since `mark`, except those that `lp` holds. A null `lp` holds none.
/// Blocks taken since then for other objects are given back too: build those before the mark, or on
/// another allocator.
NUV_API void NuvScratchAllocatorRelease(NuvScratchAllocator* x, NuvSizeT mark,
                                        const NuvLinearProgramming* lp);

#endif
