// What the growable arrays share below their operations: blocks, runs of elements, and insertion.
// Written for any record of the shape {allocator, begin, end, endBuf}. Invariant: elements are
// [begin, end) of the block [begin, endBuf).
#pragma once

#include "Nuv/Templates/NuvElement.hpp"
#include "Nuv/Utils/NuvAllocatorInline.h"

namespace nuv
{
template <class Vector>
using ElementOf = std::remove_pointer_t<decltype(Vector::begin)>;

template <class T>
inline T* AllocateElements(NuvAllocator* allocator, NuvSizeT count)
{
    if (count > UINT64_MAX / sizeof(T))
        return nullptr;
    return static_cast<T*>(NuvAllocatorAllocate(allocator, count * sizeof(T)));
}

template <class T>
inline void DeallocateElements(NuvAllocator* allocator, T* block, NuvSizeT count)
{
    if (block)
        NuvAllocatorDeallocate(allocator, block, count * sizeof(T));
}

template <class Vector>
inline NuvSizeT SizeOf(const Vector* x)
{
    return static_cast<NuvSizeT>(x->end - x->begin);
}

template <class Vector>
inline NuvSizeT CapacityOf(const Vector* x)
{
    return static_cast<NuvSizeT>(x->endBuf - x->begin);
}

template <class T>
inline void DestructRun(T* first, T* last)
{
    // same bits: elements that own nothing need not be destroyed
    if constexpr (!kIsPlain<T>)
        while (last != first)
            Destruct(--last);
}

/// Where copies come from: one element again and again, or a range.
template <class T>
struct Source
{
    const T* first;
    NuvSizeT stride;  // 0 for one element, 1 for a range

    const T* At(NuvSizeT i) const
    {
        return first + i * stride;
    }
};

/// Copies `count` elements to where nothing lives; what was made is destroyed again when a copy
/// fails.
template <class T>
inline bool ConstructRun(T* destination, NuvSizeT count, Source<T> source)
{
    if constexpr (kIsPlain<T>)
        // same bits: one copy of all is the copies of each
        if (source.stride == 1)
        {
            Relocate(destination, source.first, source.first + count);
            return true;
        }
    for (NuvSizeT i = 0; i != count; ++i)
    {
        // same bits: copies of elements that own nothing cannot fail
        if (Construct(destination + i, source.At(i)))
            continue;
        DestructRun(destination, destination + i);
        return false;
    }
    return true;
}

/// Assigns `count` elements to those at `destination`, from the first on, so that the source may
/// begin among them.
/// @return false when one is refused.
template <class T>
inline bool AssignRun(T* destination, NuvSizeT count, const T* source)
{
    if constexpr (kIsPlain<T>)
        Relocate(destination, source, source + count);
    else
        for (NuvSizeT i = 0; i != count; ++i)
            if (!Assign(destination + i, source + i))
                return false;
    return true;
}

template <class Vector>
inline void ForgetBlock(Vector* x)
{
    x->begin = nullptr;
    x->end = nullptr;
    x->endBuf = nullptr;
}

/// Destroys the elements and gives the block back.
template <class Vector>
inline void ReleaseBlock(Vector* x)
{
    DestructRun(x->begin, x->end);
    DeallocateElements(x->allocator, x->begin, CapacityOf(x));
    ForgetBlock(x);
}

/// Fills an array without a block with copies, in a block of exactly `count`; on failure it stays
/// without one.
template <class Vector>
inline bool ConstructExactly(Vector* x, NuvSizeT count, Source<ElementOf<Vector>> source)
{
    ForgetBlock(x);
    if (count == 0)
        return true;
    ElementOf<Vector>* const block = AllocateElements<ElementOf<Vector>>(x->allocator, count);
    if (!block)
        return false;
    // same bits: copies of elements that own nothing cannot fail
    if (!ConstructRun(block, count, source))
    {
        DeallocateElements(x->allocator, block, count);
        return false;
    }
    x->begin = block;
    x->end = block + count;
    x->endBuf = block + count;
    return true;
}

/// Takes a larger block; the elements move there bit by bit, so that no copy can fail.
template <class Vector>
inline bool Grow(Vector* x, NuvSizeT capacity)
{
    ElementOf<Vector>* const block = AllocateElements<ElementOf<Vector>>(x->allocator, capacity);
    if (!block)
        return false;
    const NuvSizeT size = SizeOf(x);
    Relocate(block, x->begin, x->end);
    DeallocateElements(x->allocator, x->begin, CapacityOf(x));
    x->begin = block;
    x->end = block + size;
    x->endBuf = block + capacity;
    return true;
}

/// Grows, and follows elements of the array itself that `source` points to.
template <class Vector>
inline bool GrowKeeping(Vector* x, NuvSizeT capacity, Source<ElementOf<Vector>>* source)
{
    const bool isOwn = PointsInto<ElementOf<Vector>>(source->first, x->begin, x->end);
    const NuvDistanceT index = isOwn ? source->first - x->begin : 0;
    // same bits: the answer is false on both ways, and after a refusal the source is not used
    if (!Grow(x, capacity))
        return false;
    if (isOwn)
        source->first = x->begin + index;
    return true;
}

/// Makes the new elements behind the old ones, where a failed copy harms nothing. One that is to
/// stand in the place of an element that moves up is made as if it were assigned to that element.
template <class Vector>
inline bool ConstructBehindEnd(Vector* x, NuvSizeT index, NuvSizeT count,
                               Source<ElementOf<Vector>> source)
{
    const NuvSizeT displaced = SizeOf(x) - index;
    for (NuvSizeT i = 0; i != count; ++i)
    {
        const bool isMade = i < displaced
                                // same bits: where elements own nothing, a copy in the place of
                                // another is a copy
                                ? ConstructInPlaceOf(x->end + i, x->begin + index + i, source.At(i))
                                : Construct(x->end + i, source.At(i));
        // same bits: copies of elements that own nothing cannot fail
        if (isMade)
            continue;
        DestructRun(x->end, x->end + i);
        return false;
    }
    return true;
}

/// Inserts into a larger block. The copies are made there first: the old block still holds what
/// `source` points to, and a failed copy changes nothing.
template <class Vector>
inline bool InsertIntoNewBlock(Vector* x, NuvSizeT index, NuvSizeT count,
                               Source<ElementOf<Vector>> source, NuvSizeT capacity)
{
    ElementOf<Vector>* const block = AllocateElements<ElementOf<Vector>>(x->allocator, capacity);
    if (!block)
        return false;
    // same bits: copies of elements that own nothing cannot fail
    if (!ConstructRun(block + index, count, source))
    {
        DeallocateElements(x->allocator, block, capacity);
        return false;
    }
    const NuvSizeT size = SizeOf(x) + count;
    Relocate(block, x->begin, x->begin + index);
    Relocate(block + index + count, x->begin + index, x->end);
    DeallocateElements(x->allocator, x->begin, CapacityOf(x));
    x->begin = block;
    x->end = block + size;
    x->endBuf = block + capacity;
    return true;
}

/// Inserts before the element at `index`; an array without room takes a block of `capacity`.
template <class Vector>
inline bool InsertAt(Vector* x, NuvSizeT index, NuvSizeT count, Source<ElementOf<Vector>> source,
                     NuvSizeT capacity)
{
    if (CapacityOf(x) - SizeOf(x) < count)
        return InsertIntoNewBlock(x, index, count, source, capacity);
    // same bits: copies of elements that own nothing cannot fail
    if (!ConstructBehindEnd(x, index, count, source))
        return false;
    Rotate(x->begin + index, x->end, x->end + count);
    x->end += count;
    return true;
}

/// The capacity that a full array takes for one more element.
template <class Vector>
inline NuvSizeT DoubledCapacity(const Vector* x)
{
    const NuvSizeT size = SizeOf(x);
    return size != 0 ? 2 * size : 2;
}

/// The capacity that an array without room takes for `count` more elements. A count that wraps asks
/// for more than any allocator has.
template <class Vector>
inline NuvSizeT CapacityForMore(const Vector* x, NuvSizeT count)
{
    // same bits: at the limit the largest number is what is needed as well
    if (count > UINT64_MAX - SizeOf(x))
        return UINT64_MAX;
    const NuvSizeT needed = SizeOf(x) + count;
    const NuvSizeT capacity = CapacityOf(x);
    const NuvSizeT doubled = capacity != 0 ? 2 * capacity : 2 * count;
    return doubled > needed ? doubled : needed;
}
}  // namespace nuv
