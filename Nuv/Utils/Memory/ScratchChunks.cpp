// Chunks. What is known of a chunk and its blocks stands in a block of its own, so that the chunk
// itself, which nobody may ever write to, costs no memory that is in use. Invariant: the records of
// a chunk rise in place and in number; the last one is of a block that is out; a chunk without such
// a block is given back. Only the newest chunk takes more blocks.
#include "Nuv/Utils/Memory/ScratchChunks.h"

#include <stddef.h>

struct alignas(max_align_t) NuvScratchChunk
{
    NuvScratchChunk* older;
    unsigned char* memory;
    /// Bytes of the memory, and where its last block ends.
    NuvSizeT size;
    NuvSizeT used;
    /// How many blocks are recorded, and can be; the records stand behind this.
    NuvSizeT numRecords;
    NuvSizeT maxRecords;
    /// How many of the recorded blocks are out, and whether some are held.
    NuvSizeT numBlocks;
    bool hasHeld;
    /// No block of the chunk has a smaller number.
    NuvSizeT firstNumber;
};

namespace nuv
{
namespace
{
constexpr NuvSizeT unit = alignof(max_align_t);
constexpr NuvSizeT smallestChunk = NuvSizeT(1) << 13U;
constexpr NuvSizeT largestChunk = NuvSizeT(1) << 26U;

/// How many times as large as all blocks since the mark the next chunk is.
constexpr NuvSizeT growth = 3;

/// A chunk is taken for blocks of which it holds at least so many.
constexpr NuvSizeT blocksPerChunk = 4;

/// Between these there is no chunk: the C library takes larger blocks from the system, and holds on
/// to as much from the first one on. Memory that nobody writes to costs nothing.
constexpr NuvSizeT smallChunk = smallestChunk * 5;
constexpr NuvSizeT mediumChunk = smallestChunk << 5U;

/// How large the blocks of the first chunk are taken to be, on average.
constexpr NuvSizeT bytesPerRecord = 128;

/// What is known of a block.
struct Record
{
    /// Where it begins, in units.
    NuvUint start;
    bool isHeld;
    /// Among all blocks ever taken, from 1; 0 when it was given back.
    NuvSizeT number;
};

Record* RecordOf(NuvScratchChunk* chunk, NuvSizeT i)
{
    return reinterpret_cast<Record*>(chunk + 1) + i;
}

bool HasRoom(const NuvScratchChunk* chunk, NuvSizeT size)
{
    return chunk->numRecords != chunk->maxRecords && chunk->size - chunk->used >= size;
}

NuvSizeT SizeWithRecords(NuvSizeT maxRecords)
{
    return sizeof(NuvScratchChunk) + maxRecords * sizeof(Record);
}

NuvScratchChunk* ChunkOf(const NuvScratchAllocator* x, const void* memory)
{
    const uintptr_t at = reinterpret_cast<uintptr_t>(memory);
    for (NuvScratchChunk* chunk = x->chunks; chunk; chunk = chunk->older)
    {
        // From an address before the chunk the distance wraps.
        if (at - reinterpret_cast<uintptr_t>(chunk->memory) < chunk->used)
            return chunk;
    }
    return nullptr;
}

/// The record of a block of the chunk: the last one that does not begin behind it.
Record* FindRecord(NuvScratchChunk* chunk, const void* memory)
{
    const NuvSizeT start =
        static_cast<NuvSizeT>(static_cast<const unsigned char*>(memory) - chunk->memory) / unit;
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

/// Forgets the blocks at the end that were given back.
void Shrink(NuvScratchChunk* chunk)
{
    while (chunk->numRecords != 0 && RecordOf(chunk, chunk->numRecords - 1)->number == 0)
    {
        --chunk->numRecords;
        chunk->used = RecordOf(chunk, chunk->numRecords)->start * unit;
    }
}

void GiveBackChunk(NuvAllocator* upstream, NuvScratchChunk* chunk)
{
    NuvAllocatorDeallocate(upstream, chunk->memory, chunk->size);
    NuvAllocatorDeallocate(upstream, chunk, SizeWithRecords(chunk->maxRecords));
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
        GiveBackChunk(x->upstream, chunk);
    }
}

/// The size of the next chunk: such that there are few. That the last chunk is larger than all
/// before it together keeps the C library from giving its memory back to the system after each
/// solve: it holds on to twice the largest block that it was given.
NuvSizeT NextChunkSize(const NuvScratchAllocator* x)
{
    if (x->bytesSinceMark < smallestChunk / growth)
        return smallestChunk;
    if (x->bytesSinceMark > largestChunk / growth)
        return largestChunk;
    const NuvSizeT size = x->bytesSinceMark * growth / unit * unit;
    return size <= smallChunk || size >= mediumChunk ? size : mediumChunk;
}

/// How many records a chunk of the size has: more than enough for blocks as large as those so far.
NuvSizeT NextNumRecords(const NuvScratchAllocator* x, NuvSizeT size)
{
    NuvSizeT bytes = 0;
    NuvSizeT count = 0;
    for (const NuvScratchChunk* chunk = x->chunks; chunk; chunk = chunk->older)
    {
        bytes += chunk->used;
        count += chunk->numRecords;
    }
    if (count == 0)
        return size / bytesPerRecord;
    return smallestChunk / bytesPerRecord + size / (bytes / count) * 3 / 2;
}

/// @return false when a chunk is refused, or too small for several such blocks.
bool TakeChunk(NuvScratchAllocator* x, NuvSizeT blockSize)
{
    const NuvSizeT size = NextChunkSize(x);
    if (blockSize > size / blocksPerChunk)
        return false;
    const NuvSizeT maxRecords = NextNumRecords(x, size);
    NuvScratchChunk* const chunk = static_cast<NuvScratchChunk*>(
        NuvAllocatorAllocate(x->upstream, SizeWithRecords(maxRecords)));
    if (!chunk)
        return false;
    void* const memory = NuvAllocatorAllocate(x->upstream, size);
    if (!memory)
    {
        NuvAllocatorDeallocate(x->upstream, chunk, SizeWithRecords(maxRecords));
        return false;
    }
    *chunk = {x->chunks,   static_cast<unsigned char*>(memory), size, 0, 0, maxRecords, 0, false,
              x->taken + 1};
    x->chunks = chunk;
    return true;
}

void* Take(NuvScratchAllocator* x, NuvScratchChunk* chunk, NuvSizeT size, NuvSizeT needed)
{
    void* const memory = chunk->memory + chunk->used;
    *RecordOf(chunk, chunk->numRecords) = {static_cast<NuvUint>(chunk->used / unit), false,
                                           ++x->taken};
    ++chunk->numRecords;
    ++chunk->numBlocks;
    chunk->used += needed;
    x->bytesSinceMark += size;
    ++x->numBlocks;
    return memory;
}

void* TakeFromNewChunk(NuvScratchAllocator* x, NuvSizeT size, NuvSizeT needed)
{
    return TakeChunk(x, needed) ? Take(x, x->chunks, size, needed) : nullptr;
}
}  // namespace

void* TakeFromChunk(NuvScratchAllocator* x, NuvSizeT size)
{
    const NuvSizeT needed = size == 0 ? unit : (size + unit - 1) / unit * unit;
    NuvScratchChunk* const chunk = x->chunks;
    return chunk && HasRoom(chunk, needed) ? Take(x, chunk, size, needed)
                                           : TakeFromNewChunk(x, size, needed);
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

ChunkRange RangeOfChunks(const NuvScratchAllocator* x)
{
    ChunkRange range = {UINTPTR_MAX, 0};
    for (const NuvScratchChunk* chunk = x->chunks; chunk; chunk = chunk->older)
    {
        const uintptr_t first = reinterpret_cast<uintptr_t>(chunk->memory);
        const uintptr_t end = first + static_cast<uintptr_t>(chunk->used);
        range.first = first < range.first ? first : range.first;
        range.end = end > range.end ? end : range.end;
    }
    return range;
}

bool HoldInChunk(const NuvScratchAllocator* x, const void* memory)
{
    NuvScratchChunk* const chunk = ChunkOf(x, memory);
    if (!chunk)
        return false;
    chunk->hasHeld = true;
    FindRecord(chunk, memory)->isHeld = true;
    return true;
}

void ReleaseInChunks(NuvScratchAllocator* x, NuvSizeT mark)
{
    for (NuvScratchChunk* chunk = x->chunks; chunk; chunk = chunk->older)
    {
        if (chunk->firstNumber > mark && !chunk->hasHeld)
        {
            x->numBlocks -= chunk->numBlocks;
            chunk->numBlocks = 0;
            continue;
        }
        chunk->hasHeld = false;
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
