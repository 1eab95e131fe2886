// The string of names. Invariant: `buf` is readable and NUL-terminated at all times; a block is
// held exactly while `capacity` is not 0, and is `capacity + 1` bytes long.
#include "Nuv/Utils/NuvString.h"

#include <stdarg.h>
#include <stdio.h>

#include "Nuv/Utils/NuvAllocatorInline.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
// What empty strings without a block share. Never written: every write is preceded by a test of
// `capacity`.
// same bits: a place more is not used
const char kEmptyText[1] = {'\0'};

bool ConstructBytes(NuvString* x, NuvAllocator* allocator, const char* bytes, NuvSizeT size)
{
    NuvStringConstructDefault(x, allocator);
    if (size == 0)
        return true;
    char* const block = static_cast<char*>(NuvAllocatorAllocate(allocator, size + 1));
    if (!block)
        return false;
    NuvMemCopy(block, bytes, size);
    block[size] = '\0';
    x->buf = block;
    x->size = size;
    x->capacity = size;
    return true;
}
}  // namespace
}  // namespace nuv

NuvString* NuvStringConstructDefault(NuvString* x, NuvAllocator* allocator)
{
    x->allocator = allocator;
    x->buf = const_cast<char*>(nuv::kEmptyText);
    x->size = 0;
    x->capacity = 0;
    return x;
}

NuvString* NuvStringConstructCopy(NuvString* x, const NuvString* y)
{
    return nuv::ConstructBytes(x, y->allocator, y->buf, y->size) ? x : nullptr;
}

NuvString* NuvStringConstructFormatted(NuvString* x, NuvAllocator* allocator, const char* format,
                                       ...)
{
    NuvStringConstructDefault(x, allocator);
    // same bits: a text of 31 characters comes out of either way
    char shortText[32];
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(shortText, sizeof shortText, format, arguments);
    va_end(arguments);
    if (length < 0)
        return nullptr;
    const NuvSizeT size = static_cast<NuvSizeT>(length);
    if (size < sizeof shortText)
        return nuv::ConstructBytes(x, allocator, shortText, size) ? x : nullptr;

    char* const block = static_cast<char*>(NuvAllocatorAllocate(allocator, size + 1));
    if (!block)
        return nullptr;
    va_start(arguments, format);
    // same bits: the text has its length, and so its end, before the room is used up
    (void)vsnprintf(block, static_cast<size_t>(size) + 1, format, arguments);
    va_end(arguments);
    x->buf = block;
    x->size = size;
    x->capacity = size;
    return x;
}

NuvString* NuvStringAssign(NuvString* x, const NuvString* y)
{
    if (y->size <= x->capacity)
    {
        if (x->capacity != 0)
        {
            NuvMemMove(x->buf, y->buf, y->size);
            x->buf[y->size] = '\0';
        }
        x->size = y->size;
        return x;
    }
    NuvString grown;
    if (!nuv::ConstructBytes(&grown, x->allocator, y->buf, y->size))
        return nullptr;
    NuvStringDestruct(x);
    *x = grown;
    return x;
}

NuvBool NuvStringEqual(const NuvString* x, const NuvString* y)
{
    return x->size == y->size ? NuvMemEqual(x->buf, y->buf, x->size) : NUV_FALSE;
}

NuvSizeT NuvStringHash(const NuvString* x)
{
    NuvSizeT hash = 14695981039346656037U;
    for (NuvSizeT i = 0; i != x->size; ++i)
        hash = (hash ^ static_cast<unsigned char>(x->buf[i])) * 1099511628211U;
    return hash;
}

void NuvStringDestruct(NuvString* x)
{
    if (x->capacity != 0)
        NuvAllocatorDeallocate(x->allocator, x->buf, x->capacity + 1);
    NuvStringConstructDefault(x, x->allocator);
}
