// Taking and leaving blocks.
#include "Nuv/Utils/Simplex/Workspace.h"

#include "Nuv/Utils/Kernels/Switches.h"

namespace nuv
{
namespace
{
/// As many as the end of Phase I leaves.
constexpr NuvSizeT maxBlocks = 12;
}  // namespace

void GiveBack(Workspace* workspace)
{
    if (workspace->block)
        NuvAllocatorDeallocate(workspace->allocator, workspace->block, workspace->size);
    workspace->block = nullptr;
}

bool LeaveBehind(NuvAllocator* allocator, const NuvSizeT* sizes, NuvSizeT count)
{
    if (!switches.retainedOnScratch)
        return true;
    void* blocks[maxBlocks];
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
