// An operator new that counts, and refuses what a test in C asks it to refuse.
#include "RefusingNew.h"

#include <cstdlib>
#include <new>

namespace
{

NewCounts counts;
unsigned long long refusedFrom = 0;
unsigned long long refusedUpTo = 0;

void* Allocate(std::size_t size) noexcept
{
    ++counts.asked;
    counts.bytes += size;
    if (counts.asked >= refusedFrom && counts.asked < refusedUpTo)
    {
        ++counts.refused;
        return nullptr;
    }
    void* memory = std::malloc(size == 0 ? 1 : size);
    counts.held += memory != nullptr;
    return memory;
}

void Release(void* memory) noexcept
{
    counts.held -= memory != nullptr;
    std::free(memory);
}

}  // namespace

void RefuseNew(unsigned long long from, unsigned long long count)
{
    counts.asked = 0;
    counts.bytes = 0;
    counts.refused = 0;
    refusedFrom = from;
    refusedUpTo = from + count < from ? ~0ULL : from + count;
}

NewCounts CountsOfNew(void)
{
    return counts;
}

void* operator new(std::size_t size)
{
    if (void* memory = Allocate(size))
        return memory;
    throw std::bad_alloc();
}

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}

void operator delete(void* memory) noexcept
{
    Release(memory);
}

void operator delete[](void* memory) noexcept
{
    Release(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    Release(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    Release(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    Release(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    Release(memory);
}
