// The scratch allocator. A block that is expected to stay comes from upstream by itself, with a
// header that links it into a list, newest first; one taken after a mark is cut from a chunk where
// it fits. Invariant: list and chunks hold exactly the blocks that are out, and the numbers of the
// blocks fall along the list.
#include "Nuv/Utils/NuvScratchAllocator.h"

#include <stddef.h>

#include <initializer_list>

#include "Nuv/Utils/Kernels/Switches.h"
#include "Nuv/Utils/Memory/ScratchChunks.h"

struct alignas(max_align_t) NuvScratchBlock
{
    NuvScratchBlock* newer;
    NuvScratchBlock* older;
    /// The bytes behind the header.
    NuvSizeT size;
    /// Counts the blocks ever taken, from 1.
    NuvSizeT number;
    bool isHeld;
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
    if (x->isMarked && switches.chunks)
        if (void* const memory = TakeFromChunk(x, size))
            return memory;
    NuvScratchBlock* const block = static_cast<NuvScratchBlock*>(
        NuvAllocatorAllocate(x->upstream, size + sizeof(NuvScratchBlock)));
    if (!block)
        return nullptr;
    *block = {nullptr, x->newest, size, ++x->taken, false};
    if (x->newest)
        x->newest->newer = block;
    x->newest = block;
    x->bytesSinceMark += size;
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
    if (memory && !GiveBackToChunk(ScratchOf(allocator), memory))
        ReleaseScratch(ScratchOf(allocator), BlockOf(memory));
}

bool HasYounger(const NuvScratchAllocator* x, NuvSizeT mark)
{
    return x->newest && x->newest->number > mark;
}

/// Marks the blocks of one object after another as held, if they come from this allocator and a
/// release to the mark would take them: most of what a model holds is older.
class Holder
{
public:
    Holder(const NuvScratchAllocator* x, NuvSizeT mark)
        : scratch(x), chunks(RangeOfChunks(x)), hasYounger(HasYounger(x, mark))
    {
    }

    void Hold(const NuvLinearProgramming* lp) const
    {
        for (const NuvMatrix_NuvFloat32* const x : {&lp->A, &lp->b, &lp->c})
            HoldBlock(x->allocator, x->data);
        for (const NuvMatrix_NuvUint* const x : {&lp->basic, &lp->independent})
            HoldBlock(x->allocator, x->data);
        HoldBlock(lp->objective.allocator, lp->objective.begin);
        HoldArray(&lp->variableValues);
        HoldVariables(&lp->variables);
        HoldConstraints(&lp->constraints);
    }

private:
    void HoldBlock(const NuvAllocator* allocator, void* memory) const
    {
        if (allocator != &scratch->allocator || !memory)
            return;
        if (IsInRange(chunks, memory) && HoldInChunk(scratch, memory))
            return;
        if (hasYounger)
            BlockOf(memory)->isHeld = true;
    }

    void HoldString(const NuvString* x) const
    {
        if (x->capacity != 0)
            HoldBlock(x->allocator, x->buf);
    }

    void HoldArray(const NuvVector_NuvPair_NuvString__NuvFloat32* x) const
    {
        HoldBlock(x->allocator, x->begin);
        for (const NuvPair_NuvString__NuvFloat32* pair = x->begin; pair != x->end; ++pair)
            HoldString(&pair->first);
    }

    void HoldVariables(const NuvUnordered_NuvString__NuvLinearProgrammingVariable* x) const
    {
        HoldBlock(x->v.allocator, x->v.begin);
        for (auto* link = x->l.node.next.b; link != &x->l.node; link = link->next.b)
        {
            HoldBlock(x->l.allocator, link);
            const NuvPair_NuvString__NuvLinearProgrammingVariable* const entry =
                NuvList_NuvPair_NuvString__NuvLinearProgrammingVariableIteratorContentOf(&link);
            HoldString(&entry->first);
            HoldString(&entry->second.name);
        }
    }

    void HoldConstraints(const NuvUnordered_NuvUint__NuvLinearProgrammingConstraint* x) const
    {
        HoldBlock(x->v.allocator, x->v.begin);
        for (auto* link = x->l.node.next.b; link != &x->l.node; link = link->next.b)
        {
            HoldBlock(x->l.allocator, link);
            const NuvLinearProgrammingConstraint* const constraint =
                &NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraintIteratorContentOf(&link)
                     ->second;
            if (constraint->type == NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME)
                HoldArray(&constraint->u.variableCoefficientsByName);
            else
                HoldBlock(constraint->u.variableCoefficientsByIndex.allocator,
                          constraint->u.variableCoefficientsByIndex.begin);
        }
    }

    const NuvScratchAllocator* scratch;
    ChunkRange chunks;
    bool hasYounger;
};

/// Gives back the blocks younger than `mark` that are not held, and lets go of the others.
void ReleaseYounger(NuvScratchAllocator* x, NuvSizeT mark)
{
    for (NuvScratchBlock* block = x->newest; block && block->number > mark;)
    {
        NuvScratchBlock* const older = block->older;
        if (!block->isHeld)
            ReleaseScratch(x, block);
        block = older;
    }
    for (NuvScratchBlock* block = x->newest; block; block = block->older)
        block->isHeld = false;
}
}  // namespace
}  // namespace nuv

NuvScratchAllocator* NuvScratchAllocatorConstruct(NuvScratchAllocator* x, NuvAllocator* upstream)
{
    x->allocator = {nuv::AllocateScratch, nuv::DeallocateScratch, upstream->maxSize, x};
    x->upstream = upstream;
    x->newest = nullptr;
    x->chunks = nullptr;
    x->isMarked = NUV_FALSE;
    x->bytesSinceMark = 0;
    x->taken = 0;
    x->numBlocks = 0;
    return x;
}

void NuvScratchAllocatorDestruct(NuvScratchAllocator* x)
{
    nuv::ReleaseInChunks(x, 0);
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
    x->isMarked = NUV_TRUE;
    x->bytesSinceMark = 0;
    return x->taken;
}

void NuvScratchAllocatorRelease(NuvScratchAllocator* x, NuvSizeT mark,
                                const NuvLinearProgramming* lp)
{
    if (lp)
        nuv::Holder(x, mark).Hold(lp);
    x->isMarked = NUV_FALSE;
    nuv::ReleaseInChunks(x, mark);
    if (nuv::HasYounger(x, mark))
        nuv::ReleaseYounger(x, mark);
}
