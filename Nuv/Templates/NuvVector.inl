// The growable array, defined. A failed copy is reported like a refused block.
#include "Nuv/Templates/NuvArray.hpp"
#include "Nuv/Templates/NuvTemplateBegin.h"
#include "Nuv/Templates/NuvStep.hpp"

#define NUV_ITERATOR NUV_OP(Iterator)
#define NUV_CONTENT NUV_ELEMENT
#define NUV_STEP nuv::ArrayStep<nuv::Direction::Forward>
#include "Nuv/Templates/NuvArrayIterator.inl"

#define NUV_ITERATOR NUV_OP(ConstIterator)
#define NUV_CONTENT const NUV_ELEMENT
#define NUV_STEP nuv::ArrayStep<nuv::Direction::Forward>
#include "Nuv/Templates/NuvArrayIterator.inl"

#define NUV_ITERATOR NUV_OP(ReverseIterator)
#define NUV_CONTENT NUV_ELEMENT
#define NUV_STEP nuv::ArrayStep<nuv::Direction::Reverse>
#include "Nuv/Templates/NuvArrayIterator.inl"

#define NUV_ITERATOR NUV_OP(ConstReverseIterator)
#define NUV_CONTENT const NUV_ELEMENT
#define NUV_STEP nuv::ArrayStep<nuv::Direction::Reverse>
#include "Nuv/Templates/NuvArrayIterator.inl"

NUV_SELF* NUV_OP(ConstructDefault)(NUV_SELF* x, NuvAllocator* a)
{
    x->allocator = a;
    nuv::ForgetBlock(x);
    return x;
}

NUV_SELF* NUV_OP(ConstructN)(NUV_SELF* x, NUV_OP(SizeType) n, const NUV_ELEMENT* t, NuvAllocator* a)
{
    x->allocator = a;
    return nuv::ConstructExactly(x, n, {t, 0}) ? x : nullptr;
}

NUV_SELF* NUV_OP(ConstructRange)(NUV_SELF* x, NUV_OP(ConstIterator) first,
                                 NUV_OP(ConstIterator) last, NuvAllocator* a)
{
    x->allocator = a;
    return nuv::ConstructExactly(x, static_cast<NuvSizeT>(last - first), {first, 1}) ? x : nullptr;
}

NUV_SELF* NUV_OP(ConstructCopy)(NUV_SELF* x, const NUV_SELF* y)
{
    x->allocator = y->allocator;
    return nuv::ConstructExactly(x, nuv::SizeOf(y), {y->begin, 1}) ? x : nullptr;
}

void NUV_OP(Destruct)(NUV_SELF* x)
{
    nuv::ReleaseBlock(x);
}

NUV_SELF* NUV_OP(Assign)(NUV_SELF* x, const NUV_SELF* y)
{
    // same bits: assigning each element to itself changes nothing and asks for nothing
    if (x == y)
        return x;
    const NuvSizeT size = nuv::SizeOf(y);
    if (size > nuv::CapacityOf(x))
    {
        nuv::ReleaseBlock(x);
        return nuv::ConstructExactly(x, size, {y->begin, 1}) ? x : nullptr;
    }
    // same bits: no element lies between two equal sizes
    if (size < nuv::SizeOf(x))
    {
        nuv::DestructRun(x->begin + size, x->end);
        x->end = x->begin + size;
    }
    const NuvSizeT kept = nuv::SizeOf(x);
    // same bits: copies of elements that own nothing cannot fail
    if (!nuv::AssignRun(x->begin, kept, y->begin) ||
        !nuv::ConstructRun(x->end, size - kept, {y->begin + kept, 1}))
    {
        nuv::ReleaseBlock(x);
        return nullptr;
    }
    x->end = x->begin + size;
    return x;
}

NuvBool NUV_OP(Swap)(NUV_SELF* x, NUV_SELF* y)
{
    const NuvSizeT sizeX = nuv::SizeOf(x);
    const NuvSizeT sizeY = nuv::SizeOf(y);
    if (sizeX == 0 && sizeY == 0)
        return NUV_TRUE;
    if (x->allocator == y->allocator)
    {
        nuv::Exchange(x, y);
        return NUV_TRUE;
    }
    // The longer sequence moves to a new block, the shorter one into the block that it leaves.
    NUV_SELF* const longer = sizeX >= sizeY ? x : y;
    NUV_SELF* const shorter = sizeX >= sizeY ? y : x;
    const NuvSizeT longerSize = nuv::SizeOf(longer);
    const NuvSizeT shorterSize = nuv::SizeOf(shorter);
    NUV_ELEMENT* const block = nuv::AllocateElements<NUV_ELEMENT>(x->allocator, longerSize);
    if (!block)
        return NUV_FALSE;
    nuv::Relocate(block, longer->begin, longer->end);
    nuv::Relocate(longer->begin, shorter->begin, shorter->end);
    nuv::DeallocateElements(shorter->allocator, shorter->begin, nuv::CapacityOf(shorter));
    longer->end = longer->begin + shorterSize;
    shorter->begin = block;
    shorter->end = block + longerSize;
    shorter->endBuf = shorter->end;
    return NUV_TRUE;
}

void NUV_OP(Clear)(NUV_SELF* x)
{
    nuv::DestructRun(x->begin, x->end);
    x->end = x->begin;
}

NuvAllocator* NUV_OP(GetAllocator)(const NUV_SELF* x)
{
    return x->allocator;
}

NuvBool NUV_OP(Empty)(const NUV_SELF* x)
{
    return nuv::AsNuvBool(x->begin == x->end);
}

NUV_OP(SizeType) NUV_OP(Size)(const NUV_SELF* x)
{
    return nuv::SizeOf(x);
}

NUV_OP(SizeType) NUV_OP(Capacity)(const NUV_SELF* x)
{
    return nuv::CapacityOf(x);
}

NUV_OP(SizeType) NUV_OP(MaxSize)(void)
{
    return UINT32_MAX / sizeof(NUV_ELEMENT);
}

NUV_OP(Iterator) NUV_OP(Begin)(NUV_SELF* x)
{
    return x->begin;
}

NUV_OP(ConstIterator) NUV_OP(BeginConst)(const NUV_SELF* x)
{
    return x->begin;
}

NUV_OP(Iterator) NUV_OP(End)(NUV_SELF* x)
{
    return x->end;
}

NUV_OP(ConstIterator) NUV_OP(EndConst)(const NUV_SELF* x)
{
    return x->end;
}

NUV_OP(ReverseIterator) NUV_OP(RBegin)(NUV_SELF* x)
{
    return x->end;
}

NUV_OP(ConstReverseIterator) NUV_OP(RBeginConst)(const NUV_SELF* x)
{
    return x->end;
}

NUV_OP(ReverseIterator) NUV_OP(REnd)(NUV_SELF* x)
{
    return x->begin;
}

NUV_OP(ConstReverseIterator) NUV_OP(REndConst)(const NUV_SELF* x)
{
    return x->begin;
}

NUV_ELEMENT* NUV_OP(At)(NUV_SELF* x, NUV_OP(SizeType) n)
{
    return x->begin + n;
}

const NUV_ELEMENT* NUV_OP(AtConst)(const NUV_SELF* x, NUV_OP(SizeType) n)
{
    return x->begin + n;
}

NUV_ELEMENT* NUV_OP(Front)(NUV_SELF* x)
{
    return x->begin;
}

const NUV_ELEMENT* NUV_OP(FrontConst)(const NUV_SELF* x)
{
    return x->begin;
}

NUV_ELEMENT* NUV_OP(Back)(NUV_SELF* x)
{
    return x->end - 1;
}

const NUV_ELEMENT* NUV_OP(BackConst)(const NUV_SELF* x)
{
    return x->end - 1;
}

NuvBool NUV_OP(Reserve)(NUV_SELF* x, NUV_OP(SizeType) capacity)
{
    return nuv::AsNuvBool(capacity <= nuv::CapacityOf(x) || nuv::Grow(x, capacity));
}

NuvBool NUV_OP(PushBack)(NUV_SELF* x, const NUV_ELEMENT* t)
{
    // same bits: of one element the first is the only one, whatever the stride
    return nuv::AsNuvBool(nuv::InsertAt(x, nuv::SizeOf(x), 1, {t, 0}, nuv::DoubledCapacity(x)));
}

void NUV_OP(PopBack)(NUV_SELF* x)
{
    nuv::Destruct(--x->end);
}

NUV_OP(Iterator) NUV_OP(Insert)(NUV_SELF* x, NUV_OP(Iterator) pos, const NUV_ELEMENT* t)
{
    const NuvSizeT index = static_cast<NuvSizeT>(pos - x->begin);
    // same bits: of one element the first is the only one, whatever the stride
    return nuv::InsertAt(x, index, 1, {t, 0}, nuv::DoubledCapacity(x)) ? x->begin + index : nullptr;
}

NuvBool NUV_OP(InsertN)(NUV_SELF* x, NUV_OP(Iterator) pos, NUV_OP(SizeType) n, const NUV_ELEMENT* t)
{
    // same bits: inserting nothing reverses the elements behind the place twice
    if (n == 0)
        return NUV_TRUE;
    const NuvSizeT index = static_cast<NuvSizeT>(pos - x->begin);
    return nuv::AsNuvBool(nuv::InsertAt(x, index, n, {t, 0}, nuv::CapacityForMore(x, n)));
}

NuvBool NUV_OP(InsertRange)(NUV_SELF* x, NUV_OP(Iterator) pos, NUV_OP(ConstIterator) first,
                            NUV_OP(ConstIterator) last)
{
    // same bits: inserting nothing reverses the elements behind the place twice
    if (first == last)
        return NUV_TRUE;
    const NuvSizeT index = static_cast<NuvSizeT>(pos - x->begin);
    const NuvSizeT count = static_cast<NuvSizeT>(last - first);
    return nuv::AsNuvBool(
        nuv::InsertAt(x, index, count, {first, 1}, nuv::CapacityForMore(x, count)));
}

NUV_OP(Iterator) NUV_OP(Erase)(NUV_SELF* x, NUV_OP(Iterator) pos)
{
    NUV_OP(EraseRange)(x, pos, pos + 1);
    return pos;
}

NUV_OP(Iterator) NUV_OP(EraseRange)(NUV_SELF* x, NUV_OP(Iterator) first, NUV_OP(Iterator) last)
{
    // same bits: moving elements onto themselves changes nothing
    if (first == last)
        return last;
    nuv::DestructRun(first, last);
    nuv::Relocate(first, last, x->end);
    x->end -= last - first;
    return last;
}

NuvBool NUV_OP(Resize)(NUV_SELF* x, NUV_OP(SizeType) n, const NUV_ELEMENT* t)
{
    const NuvSizeT size = nuv::SizeOf(x);
    if (n <= size)
    {
        nuv::DestructRun(x->begin + n, x->end);
        x->end = x->begin + n;
        return NUV_TRUE;
    }
    // same bits: a block of so many elements is refused further down
    if (n > UINT64_MAX - size)
        return NUV_FALSE;
    nuv::Source<NUV_ELEMENT> source = {t, 0};
    if (size + n > nuv::CapacityOf(x) && !nuv::GrowKeeping(x, size + n, &source))
        return NUV_FALSE;
    // same bits: copies of elements that own nothing cannot fail
    if (!nuv::ConstructRun(x->end, n - size, source))
        return NUV_FALSE;
    x->end = x->begin + n;
    return NUV_TRUE;
}

void NUV_OP(Dump)(const NUV_SELF*, const char*, unsigned int) {}

#include "Nuv/Templates/NuvTemplateEnd.h"
