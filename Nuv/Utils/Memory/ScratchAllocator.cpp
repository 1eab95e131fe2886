// The scratch allocator. Each block comes from upstream with a header that links it into a list,
// newest first. Invariant: the list holds exactly the blocks that are out, and their numbers fall
// along it.
#include "Nuv/Utils/Memory/ScratchAllocator.h"

#include <stddef.h>

#include <initializer_list>

#include "Nuv/Utils/NuvScratchAllocator.h"

struct alignas(max_align_t) NuvScratchBlock
{
    NuvScratchBlock* newer;
    NuvScratchBlock* older;
    /// The bytes behind the header.
    NuvSizeT size;
    /// Counts the blocks ever taken, from 1.
    NuvSizeT number;
    bool isPinned;
};

namespace nuv
{
namespace
{
NuvScratchAllocator* ScratchOf(NuvAllocator* allocator)
{
    return static_cast<NuvScratchAllocator*>(allocator->userData);
}

void* MemoryOf(NuvScratchBlock* block)
{
    return block + 1;
}

NuvScratchBlock* BlockOf(void* memory)
{
    return static_cast<NuvScratchBlock*>(memory) - 1;
}

void* AllocateScratch(NuvAllocator* allocator, NuvSizeT size)
{
    NuvScratchAllocator* const x = ScratchOf(allocator);
    if (size > UINT64_MAX - sizeof(NuvScratchBlock))
        return nullptr;
    NuvScratchBlock* const block = static_cast<NuvScratchBlock*>(
        NuvAllocatorAllocate(x->upstream, size + sizeof(NuvScratchBlock)));
    if (!block)
        return nullptr;
    *block = {nullptr, x->newest, size, ++x->taken, false};
    if (x->newest)
        x->newest->newer = block;
    x->newest = block;
    ++x->numBlocks;
    return MemoryOf(block);
}

void ReleaseScratch(NuvScratchAllocator* x, NuvScratchBlock* block)
{
    (block->newer ? block->newer->older : x->newest) = block->older;
    if (block->older)
        block->older->newer = block->newer;
    --x->numBlocks;
    NuvAllocatorDeallocate(x->upstream, block, block->size + sizeof(NuvScratchBlock));
}

void DeallocateScratch(NuvAllocator* allocator, void* memory, NuvSizeT)
{
    if (memory)
        ReleaseScratch(ScratchOf(allocator), BlockOf(memory));
}

bool HasYounger(const NuvScratchAllocator* x, NuvSizeT mark)
{
    // same bits: without a younger block the walk ends at once, and no older block is pinned
    return x->newest && x->newest->number > mark;
}

/// Pins the blocks of one object after another that come from this allocator.
class Pinning
{
public:
    explicit Pinning(const NuvScratchAllocator* x) : scratch(x) {}

    void PinModel(const NuvLinearProgramming* lp) const
    {
        for (const NuvMatrix_NuvFloat32* const x : {&lp->A, &lp->b, &lp->c})
            PinBlock(x->allocator, x->data);
        for (const NuvMatrix_NuvUint* const x : {&lp->basic, &lp->independent})
            PinBlock(x->allocator, x->data);
        PinBlock(lp->objective.allocator, lp->objective.begin);
        PinArray(&lp->variableValues);
        PinVariables(&lp->variables);
        PinConstraints(&lp->constraints);
    }

private:
    void PinBlock(const NuvAllocator* allocator, void* memory) const
    {
        if (allocator == &scratch->allocator && memory)
            BlockOf(memory)->isPinned = true;
    }

    void PinString(const NuvString* x) const
    {
        if (x->capacity != 0)
            PinBlock(x->allocator, x->buf);
    }

    void PinArray(const NuvVector_NuvPair_NuvString__NuvFloat32* x) const
    {
        PinBlock(x->allocator, x->begin);
        for (const NuvPair_NuvString__NuvFloat32* pair = x->begin; pair != x->end; ++pair)
            PinString(&pair->first);
    }

    void PinVariables(const NuvUnordered_NuvString__NuvLinearProgrammingVariable* x) const
    {
        PinBlock(x->v.allocator, x->v.begin);
        for (auto* link = x->l.node.next.b; link != &x->l.node; link = link->next.b)
        {
            PinBlock(x->l.allocator, link);
            const NuvPair_NuvString__NuvLinearProgrammingVariable* const entry =
                NuvList_NuvPair_NuvString__NuvLinearProgrammingVariableIteratorContentOf(&link);
            PinString(&entry->first);
            PinString(&entry->second.name);
        }
    }

    void PinConstraints(const NuvUnordered_NuvUint__NuvLinearProgrammingConstraint* x) const
    {
        PinBlock(x->v.allocator, x->v.begin);
        for (auto* link = x->l.node.next.b; link != &x->l.node; link = link->next.b)
        {
            PinBlock(x->l.allocator, link);
            const NuvLinearProgrammingConstraint* const constraint =
                &NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraintIteratorContentOf(&link)
                     ->second;
            if (constraint->type == NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME)
                PinArray(&constraint->u.variableCoefficientsByName);
            else
                PinBlock(constraint->u.variableCoefficientsByIndex.allocator,
                         constraint->u.variableCoefficientsByIndex.begin);
        }
    }

    const NuvScratchAllocator* scratch;
};

/// Gives back the blocks younger than `mark` that are not pinned, and unpins the others.
void ReleaseYounger(NuvScratchAllocator* x, NuvSizeT mark)
{
    for (NuvScratchBlock* block = x->newest; block && block->number > mark;)
    {
        NuvScratchBlock* const older = block->older;
        if (!block->isPinned)
            ReleaseScratch(x, block);
        block = older;
    }
    for (NuvScratchBlock* block = x->newest; block; block = block->older)
        block->isPinned = false;
}
}  // namespace
}  // namespace nuv

NuvScratchAllocator* NuvScratchAllocatorConstruct(NuvScratchAllocator* x, NuvAllocator* upstream)
{
    x->allocator = {nuv::AllocateScratch, nuv::DeallocateScratch, upstream->maxSize, x};
    x->upstream = upstream;
    x->newest = nullptr;
    // same bits: only the order of the numbers of marks counts
    x->taken = 0;
    x->numBlocks = 0;
    return x;
}

void NuvScratchAllocatorDestruct(NuvScratchAllocator* x)
{
    while (x->newest)
        nuv::ReleaseScratch(x, x->newest);
}

NuvAllocator* NuvScratchAllocatorGetAllocator(NuvScratchAllocator* x)
{
    return &x->allocator;
}

NuvSizeT NuvScratchAllocatorGetNumBlocks(const NuvScratchAllocator* x)
{
    return x->numBlocks;
}

NuvSizeT NuvScratchAllocatorMark(NuvScratchAllocator* x)
{
    return x->taken;
}

void NuvScratchAllocatorRelease(NuvScratchAllocator* x, NuvSizeT mark,
                                const NuvLinearProgramming* lp)
{
    if (!nuv::HasYounger(x, mark))
        return;
    if (lp)
        nuv::Pinning(x).PinModel(lp);
    nuv::ReleaseYounger(x, mark);
}

bool nuv::IsScratchAllocator(const NuvAllocator* allocator)
{
    return allocator->allocate == AllocateScratch;
}
