// The memory of a solve: one workspace, taken once and cut into arrays, and the blocks that a solve
// leaves with the allocator by contract. Nothing is ever written to the latter, so that they cost
// no memory that is in use. Not installed.
#ifndef NUV_UTILS_SIMPLEX_WORKSPACE_H
#define NUV_UTILS_SIMPLEX_WORKSPACE_H

#include <stdint.h>

#include "Nuv/Utils/NuvAllocatorInline.h"

namespace nuv
{
/// Cuts arrays out of a block, each on a cache line of its own. Without a block it only counts, so
/// that one function lays out a workspace and tells its size.
class Cutter
{
public:
    explicit Cutter(void* block)
        : base(static_cast<unsigned char*>(block)), isCounting(!block), size(0)
    {
        if (!isCounting)
            base += (lineSize - reinterpret_cast<uintptr_t>(block) % lineSize) % lineSize;
    }

    template <class T>
    void Take(T** array, NuvSizeT count)
    {
        *array = isCounting ? nullptr : reinterpret_cast<T*>(base + size);
        size += (count * sizeof(T) + lineSize - 1) / lineSize * lineSize;
    }

    /// What a block needs for all that was taken, wherever it begins.
    NuvSizeT BytesNeeded() const
    {
        return size + lineSize;
    }

private:
    static constexpr NuvSizeT lineSize = 64;

    unsigned char* base;
    bool isCounting;
    NuvSizeT size;
};

/// A block that is given back as a whole.
struct Workspace
{
    NuvAllocator* allocator;
    void* block;
    NuvSizeT size;
};

/// @return false when the block is refused.
inline bool TakeWorkspace(Workspace* workspace, NuvAllocator* allocator, NuvSizeT size)
{
    *workspace = {allocator, NuvAllocatorAllocate(allocator, size), size};
    return workspace->block != nullptr;
}

void GiveBack(Workspace* workspace);

/// Takes blocks of the sizes and leaves them with the allocator for good; none of a scratch
/// allocator, which would only give them back.
/// @return false when one is refused; none is left then.
bool LeaveBehind(NuvAllocator* allocator, const NuvSizeT* sizes, NuvSizeT count);
}  // namespace nuv

#endif
