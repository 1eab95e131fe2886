// Chunks. Blocks are laid upwards from a chunk's header, records of them downwards from its end.
// Invariant: the records of a chunk rise in place and in number; the last one is of a block that is
// out; a chunk without such a block is given back. Only the newest chunk takes more blocks.
#include "Nuv/Utils/NuvScratchChunks.h"

#include <stddef.h>
#include <stdint.h>

struct alignas(max_align_t) NuvScratchChunk
{
    NuvScratchChunk* older;
    /// Bytes, the header among them.
    NuvSizeT size;
    /// Where the last block ends, from the header's beginning.
    NuvSizeT used;
    NuvSizeT numRecords;
    /// How many of the recorded blocks are out.
    NuvSizeT numBlocks;
};

namespace nuv
{
namespace
{
constexpr NuvSizeT unit = alignof(max_align_t);
constexpr NuvSizeT smallestChunk = NuvSizeT(1) << 14U;
constexpr NuvSizeT largestChunk = NuvSizeT(1) << 26U;

/// A chunk is taken for blocks of which it holds at least so many.
constexpr NuvSizeT blocksPerChunk = 4;

/// What is known of a block.
struct Record
{
    /// From the chunk's header, in units.
    NuvUint start;
    bool isHeld;
    /// Among all blocks ever taken, from 1; 0 when it was given back.
    NuvSizeT number;
};

unsigned char* BytesOf(NuvScratchChunk* chunk)
{
    return reinterpret_cast<unsigned char*>(chunk);
}

Record* RecordOf(NuvScratchChunk* chunk, NuvSizeT i)
{
    return reinterpret_cast<Record*>(BytesOf(chunk) + chunk->size) - 1 - i;
}

/// The room between the blocks and the records.
NuvSizeT RoomIn(const NuvScratchChunk* chunk)
{
    return chunk->size - chunk->used - chunk->numRecords * sizeof(Record);
}

NuvScratchChunk* ChunkOf(const NuvScratchAllocator* x, const void* memory)
{
    const uintptr_t at = reinterpret_cast<uintptr_t>(memory);
    for (NuvScratchChunk* chunk = x->chunks; chunk; chunk = chunk->older)
    {
        const uintptr_t begin = reinterpret_cast<uintptr_t>(chunk);
        if (at > begin && at - begin < chunk->size)
            return chunk;
    }
    return nullptr;
}

/// The record of a block of the chunk: the last one that does not begin behind it.
Record* FindRecord(NuvScratchChunk* chunk, const void* memory)
{
    const NuvSizeT start =
        static_cast<NuvSizeT>(static_cast<const unsigned char*>(memory) - BytesOf(chunk)) / unit;
    NuvSizeT first = 0;
    NuvSizeT count = chunk->numRecords;
    while (count > 1)
    {
        const NuvSizeT half = count / 2;
        if (RecordOf(chunk, first + half)->start <= start)
            first += half;
        count -= half;
    }
    return RecordOf(chunk, first);
}

/// Makes room of the records and blocks at the end that were given back.
void Shrink(NuvScratchChunk* chunk)
{
    while (chunk->numRecords != 0 && RecordOf(chunk, chunk->numRecords - 1)->number == 0)
    {
        --chunk->numRecords;
        chunk->used = RecordOf(chunk, chunk->numRecords)->start * unit;
    }
}

/// Gives chunks without blocks back upstream.
void DropEmptyChunks(NuvScratchAllocator* x)
{
    for (NuvScratchChunk** link = &x->chunks; *link;)
    {
        NuvScratchChunk* const chunk = *link;
        if (chunk->numBlocks != 0)
        {
            link = &chunk->older;
            continue;
        }
        *link = chunk->older;
        NuvAllocatorDeallocate(x->upstream, chunk, chunk->size);
    }
}

/// Takes a chunk as large as all blocks since the mark, so that there are few.
/// @return false when it is refused, or too small for several such blocks.
bool TakeChunk(NuvScratchAllocator* x, NuvSizeT blockSize)
{
    NuvSizeT size = x->bytesSinceMark < smallestChunk ? smallestChunk : x->bytesSinceMark;
    size = size < largestChunk ? size / unit * unit : largestChunk;
    if (blockSize > size / blocksPerChunk)
        return false;
    NuvScratchChunk* const chunk =
        static_cast<NuvScratchChunk*>(NuvAllocatorAllocate(x->upstream, size));
    if (!chunk)
        return false;
    *chunk = {x->chunks, size, sizeof(NuvScratchChunk), 0, 0};
    x->chunks = chunk;
    return true;
}
}  // namespace

void* TakeFromChunk(NuvScratchAllocator* x, NuvSizeT size)
{
    if (size > largestChunk)
        return nullptr;
    const NuvSizeT needed = size == 0 ? unit : (size + unit - 1) / unit * unit;
    if ((!x->chunks || RoomIn(x->chunks) < needed + sizeof(Record)) && !TakeChunk(x, needed))
        return nullptr;
    NuvScratchChunk* const chunk = x->chunks;
    void* const memory = BytesOf(chunk) + chunk->used;
    *RecordOf(chunk, chunk->numRecords) = {static_cast<NuvUint>(chunk->used / unit), false,
                                           ++x->taken};
    ++chunk->numRecords;
    ++chunk->numBlocks;
    chunk->used += needed;
    ++x->numBlocks;
    return memory;
}

bool GiveBackToChunk(NuvScratchAllocator* x, const void* memory)
{
    NuvScratchChunk* const chunk = ChunkOf(x, memory);
    if (!chunk)
        return false;
    FindRecord(chunk, memory)->number = 0;
    --chunk->numBlocks;
    --x->numBlocks;
    Shrink(chunk);
    if (chunk->numBlocks == 0)
        DropEmptyChunks(x);
    return true;
}

bool HoldInChunk(const NuvScratchAllocator* x, const void* memory)
{
    NuvScratchChunk* const chunk = ChunkOf(x, memory);
    if (!chunk)
        return false;
    FindRecord(chunk, memory)->isHeld = true;
    return true;
}

void ReleaseInChunks(NuvScratchAllocator* x, NuvSizeT mark)
{
    for (NuvScratchChunk* chunk = x->chunks; chunk; chunk = chunk->older)
    {
        for (NuvSizeT i = chunk->numRecords; i != 0; --i)
        {
            Record* const record = RecordOf(chunk, i - 1);
            if (record->number > mark && !record->isHeld)
            {
                record->number = 0;
                --chunk->numBlocks;
                --x->numBlocks;
            }
            record->isHeld = false;
        }
        Shrink(chunk);
    }
    DropEmptyChunks(x);
}
}  // namespace nuv
