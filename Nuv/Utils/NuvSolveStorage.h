// The memory of a solve: one workspace, taken once and cut into arrays, and the blocks that a solve
// leaves with the allocator by contract. Nothing is ever written to the latter, so that they cost
// no memory that is in use. Not installed.
#ifndef NUV_UTILS_NUVSOLVESTORAGE_H
#define NUV_UTILS_NUVSOLVESTORAGE_H

#include <stdint.h>

#include "Nuv/Utils/NuvAllocatorInline.h"

namespace nuv
{
/// Cuts arrays out of a block, each on a cache line of its own. Without a block it only counts, so
/// that one function lays out a workspace and tells its size.
class Cutter
{
public:
    explicit Cutter(void* block) : position(reinterpret_cast<uintptr_t>(block)), size(0)
    {
        if (block)
            position = (position + lineSize - 1) / lineSize * lineSize;
    }

    template <class T>
    void Take(T** array, NuvSizeT count)
    {
        *array = reinterpret_cast<T*>(position);
        const NuvSizeT bytes = (count * sizeof(T) + lineSize - 1) / lineSize * lineSize;
        position += static_cast<uintptr_t>(bytes);
        size += bytes;
    }

    /// What a block needs for all that was taken, wherever it begins.
    NuvSizeT BytesNeeded() const
    {
        return size + lineSize;
    }

private:
    static constexpr NuvSizeT lineSize = 64;

    uintptr_t position;
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
bool TakeWorkspace(Workspace* workspace, NuvAllocator* allocator, NuvSizeT size);
void GiveBack(Workspace* workspace);

/// Takes blocks of the sizes and leaves them with the allocator for good.
/// @return false when one is refused; none is left then.
bool LeaveBehind(NuvAllocator* allocator, const NuvSizeT* sizes, NuvSizeT count);
}  // namespace nuv

#endif
