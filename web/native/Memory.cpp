// Memory for a program whose blocks are mostly small and short-lived, in a few hundred bytes.
// Blocks have 12, 28, 44, ..., 124, 156, 188, 220, 252, 316, ... bytes, four sizes for each
// doubling, behind four bytes with the number of their size. What is given back waits in the list
// of its size, and what no list has is taken from the end of the memory: blocks are never cut or
// joined, so that a program that asks for the same again and again takes no more than it did once.
#include <stddef.h>
#include <stdint.h>

extern "C" unsigned char __heap_base;

namespace
{

constexpr size_t kUnit = 16;
constexpr size_t kHead = sizeof(uint32_t);
constexpr size_t kPage = 65536;
constexpr size_t kLargest = 0xE0000000;

struct Block
{
    Block* next;
};

Block* lists[4 * 32];
uintptr_t end = 0;  // of what is taken: kHead bytes before a multiple of kUnit

/// The number of the smallest size that holds so many units.
unsigned NumberOf(size_t units)
{
    const size_t last = units - 1;
    if (last < 8)
        return static_cast<unsigned>(last);
    const unsigned doubling =
        31U - static_cast<unsigned>(__builtin_clz(static_cast<uint32_t>(last)));
    return 4 * doubling - 4 + (static_cast<unsigned>(last >> (doubling - 2)) & 3);
}

size_t UnitsOf(unsigned number)
{
    return number < 8 ? number + 1 : (size_t{5} + number % 4) << (number / 4 - 1);
}

bool HasMemoryUpTo(uintptr_t needed)
{
    const size_t pages = __builtin_wasm_memory_size(0);
    if (needed <= pages * kPage)
        return true;
    // An eighth more than there was, so that there are few of these calls.
    const size_t least = (needed - 1) / kPage + 1 - pages;
    const size_t wanted = least > pages / 8 ? least : pages / 8;
    return __builtin_wasm_memory_grow(0, wanted) != SIZE_MAX ||
           __builtin_wasm_memory_grow(0, least) != SIZE_MAX;
}

}  // namespace

extern "C"
{
    void* malloc(size_t size)
    {
        if (size > kLargest)
            return nullptr;
        const unsigned number = NumberOf((size + kHead + kUnit - 1) / kUnit);
        Block* const waiting = lists[number];
        if (waiting)
        {
            lists[number] = waiting->next;
            return waiting;
        }
        if (end == 0)
            end = (reinterpret_cast<uintptr_t>(&__heap_base) + kHead + kUnit - 1) / kUnit * kUnit -
                  kHead;
        const size_t taken = UnitsOf(number) * kUnit;
        if (taken > SIZE_MAX - end || !HasMemoryUpTo(end + taken))
            return nullptr;
        auto* const head = reinterpret_cast<uint32_t*>(end);
        *head = number;
        end += taken;
        return head + 1;
    }

    void free(void* memory)
    {
        if (!memory)
            return;
        auto* const block = static_cast<Block*>(memory);
        const uint32_t number = static_cast<uint32_t*>(memory)[-1];
        block->next = lists[number];
        lists[number] = block;
    }

    // Parts of the C library that the linker looks at, and leaves out in the end, ask for these.
    void* calloc(size_t /*count*/, size_t /*size*/)
    {
        return nullptr;
    }
    void* realloc(void* /*memory*/, size_t /*size*/)
    {
        return nullptr;
    }
    void* aligned_alloc(size_t /*alignment*/, size_t /*size*/)
    {
        return nullptr;
    }
    int posix_memalign(void** /*memory*/, size_t /*alignment*/, size_t /*size*/)
    {
        return 12;  // ENOMEM
    }
}
