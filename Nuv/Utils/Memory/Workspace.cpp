// The workspace and the retained blocks.
#include "Nuv/Utils/Memory/Workspace.h"

#include "Nuv/Utils/Kernels/Assert.h"
#include "Nuv/Utils/Memory/ScratchAllocator.h"

namespace nuv
{
namespace
{
/// As many as the end of Phase I retains.
// same bits: a place more is not used
constexpr NuvSizeT kMaxBlocks = 12;
}  // namespace

void FreeWorkspace(Workspace* workspace)
{
    NuvAllocatorDeallocate(workspace->allocator, workspace->block, workspace->size);
}

bool AllocateRetained(NuvAllocator* allocator, const NuvSizeT* sizes, NuvSizeT count)
{
    if (IsScratchAllocator(allocator))
        return true;
    NUV_ASSERT(count <= kMaxBlocks);
    void* blocks[kMaxBlocks];
    for (NuvSizeT taken = 0; taken != count; ++taken)
    {
        blocks[taken] = NuvAllocatorAllocate(allocator, sizes[taken]);
        if (blocks[taken])
            continue;
        while (taken != 0)
        {
            --taken;
            NuvAllocatorDeallocate(allocator, blocks[taken], sizes[taken]);
        }
        return false;
    }
    return true;
}
}  // namespace nuv
