// The memory of a solve: a workspace in one block, which holds all arrays, and the retained blocks,
// which a solve leaves with the allocator by contract. Nothing is ever written to the latter, so
// that they cost no memory that is in use. Not installed.
#ifndef NUV_UTILS_MEMORY_WORKSPACE_H
#define NUV_UTILS_MEMORY_WORKSPACE_H

#include <stdint.h>

#include "Nuv/Utils/NuvAllocatorInline.h"

namespace nuv
{
/// Places arrays in a block, each on a cache line of its own. Without a block it only counts, so
/// that one function lays out a workspace and tells its size.
class WorkspaceLayout
{
public:
    explicit WorkspaceLayout(void* block)
        : base(static_cast<unsigned char*>(block)), isCounting(!block), size(0)
    {
        // same bits: a null block is at the beginning of a line
        if (!isCounting)
            base += (kLineSize - reinterpret_cast<uintptr_t>(block) % kLineSize) % kLineSize;
    }

    /// Arrays of `count` elements each.
    template <class... T>
    void Place(NuvSizeT count, T**... arrays)
    {
        (PlaceOne(count, arrays), ...);
    }

    /// What a block needs for all that was placed, wherever it begins.
    NuvSizeT BytesNeeded() const
    {
        return size + kLineSize;
    }

private:
    template <class T>
    void PlaceOne(NuvSizeT count, T** array)
    {
        // same bits: while the sizes are counted nobody reads the arrays, which are placed a second
        // time
        *array = isCounting ? nullptr : reinterpret_cast<T*>(base + size);
        size += (count * sizeof(T) + kLineSize - 1) / kLineSize * kLineSize;
    }

    static constexpr NuvSizeT kLineSize = 64;

    unsigned char* base;
    bool isCounting;
    NuvSizeT size;
};

/// A block that is freed as a whole.
struct Workspace
{
    NuvAllocator* allocator;
    void* block;
    NuvSizeT size;
};

/// @return false when the block is refused.
inline bool AllocateWorkspace(Workspace* workspace, NuvAllocator* allocator, NuvSizeT size)
{
    *workspace = {allocator, NuvAllocatorAllocate(allocator, size), size};
    return workspace->block != nullptr;
}

void FreeWorkspace(Workspace* workspace);

/// Allocates blocks of the sizes, which stay with the allocator for good; none from a scratch
/// allocator, whose owner would only take them back.
/// @return false when one is refused; none is left then.
bool AllocateRetained(NuvAllocator* allocator, const NuvSizeT* sizes, NuvSizeT count);
}  // namespace nuv

#endif
