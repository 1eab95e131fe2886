// An allocator that watches what is done with it. It knows every live block with the size that was
// asked for, fences each with guard bytes, poisons what it hands out and what it takes back, and
// refuses the requests that it is told to. A misuse is a test failure at the moment it is noticed:
// a block given back with another size, to another allocator or twice, a byte written outside a
// block, and blocks still out when the allocator's life ends.
//
// Invariant: 'blocks' holds exactly the blocks that were given out and not taken back.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <set>

#include "Nuv/Utils/NuvAllocator.h"

/// @code
/// TestAllocator allocator;
/// NuvLinearProgrammingConstruct(&lp, 2, allocator);
/// @endcode
class TestAllocator
{
public:
    using Sizes = std::multiset<NuvSizeT>;

    TestAllocator() : callbacks{Allocate, Deallocate, kUnlimited, this} {}

    ~TestAllocator()
    {
        if (!leftBlocksAccepted && !blocks.empty())
            ADD_FAILURE() << "blocks left with the allocator: " << Listed();
        ReleaseAll();
    }

    TestAllocator(const TestAllocator&) = delete;
    TestAllocator& operator=(const TestAllocator&) = delete;

    /// The record that the library is given.
    operator NuvAllocator*()
    {
        return &callbacks;
    }

    // What is out ------------------------------------------------------------------------------

    std::size_t LiveBlocks() const
    {
        return blocks.size();
    }

    NuvSizeT LiveBytes() const
    {
        return liveBytes;
    }

    /// The sizes of the live blocks, so that a test can say "4 blocks of m floats stayed behind".
    Sizes LiveSizes() const
    {
        Sizes sizes;
        for (const auto& [memory, size] : blocks)
            sizes.insert(size);
        return sizes;
    }

    bool Owns(const void* memory) const
    {
        return blocks.contains(static_cast<const unsigned char*>(memory));
    }

    /// The size asked for, or 0 for what this allocator does not own.
    NuvSizeT SizeOf(const void* memory) const
    {
        const auto found = blocks.find(static_cast<const unsigned char*>(memory));
        return found == blocks.end() ? 0 : found->second;
    }

    // What was asked ---------------------------------------------------------------------------

    /// The requests so far, the refused ones among them.
    std::size_t Requests() const
    {
        return requests;
    }

    /// The bytes that the last request asked for, granted or not.
    NuvSizeT LastRequest() const
    {
        return lastRequest;
    }

    std::size_t ZeroByteRequests() const
    {
        return zeroByteRequests;
    }

    std::size_t Refusals() const
    {
        return refusals;
    }

    /// How often a null was given back with size 0, which an assignment to an empty matrix does and
    /// nothing else may.
    std::size_t NullsGivenBack() const
    {
        return nullsGivenBack;
    }

    NuvSizeT PeakBytes() const
    {
        return peakBytes;
    }

    // What is refused --------------------------------------------------------------------------

    /// Refuses the n-th request from now, once; n is 1 for the next.
    void RefuseOnly(std::size_t n)
    {
        firstRefused = lastRefused = counted + n;
    }

    /// Refuses the n-th request from now and all after it; n is 1 for the next.
    void RefuseFrom(std::size_t n)
    {
        firstRefused = counted + n;
        lastRefused = kNever;
    }

    void RefuseNothing()
    {
        firstRefused = lastRefused = kNever;
    }

    /// While it lives, requests are granted and do not count toward the n-th: for setting up what a
    /// test of refusals needs, and for checking what the refusal left.
    class Spared
    {
    public:
        explicit Spared(TestAllocator& x) : allocator(x)
        {
            ++allocator.spared;
        }

        ~Spared()
        {
            --allocator.spared;
        }

        Spared(const Spared&) = delete;
        Spared& operator=(const Spared&) = delete;

    private:
        TestAllocator& allocator;
    };

    [[nodiscard]] Spared Spare()
    {
        return Spared(*this);
    }

    // At the end -------------------------------------------------------------------------------

    /// For tests of what stays behind by contract: blocks left at the end are no failure.
    void AcceptLeftBlocks()
    {
        leftBlocksAccepted = true;
    }

    /// Takes back everything that is out, after looking at the guards.
    void ReleaseAll()
    {
        while (!blocks.empty())
            Release(blocks.begin());
    }

    /// Looks at the guards of everything that is out.
    void CheckGuards() const
    {
        for (const auto& [memory, size] : blocks)
            CheckGuardsOf(memory, size);
    }

private:
    using Blocks = std::map<const unsigned char*, NuvSizeT>;

    static constexpr NuvSizeT kUnlimited = std::numeric_limits<NuvSizeT>::max();
    static constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();
    static constexpr std::size_t kGuardSize = 32;  // keeps malloc's alignment
    static constexpr unsigned char kGuard = 0xB5;
    // As a float a NaN, as a pointer an address that no program has.
    static constexpr unsigned char kFresh = 0xFD;
    static constexpr unsigned char kFreed = 0xFE;

    static TestAllocator& Self(NuvAllocator* allocator)
    {
        return *static_cast<TestAllocator*>(allocator->userData);
    }

    static void* Allocate(NuvAllocator* allocator, NuvSizeT size)
    {
        TestAllocator& self = Self(allocator);
        ++self.requests;
        self.lastRequest = size;
        self.zeroByteRequests += size == 0;
        if (self.IsRefused())
        {
            ++self.refusals;
            return nullptr;
        }
        return self.Give(size);
    }

    static void Deallocate(NuvAllocator* allocator, void* memory, NuvSizeT size)
    {
        TestAllocator& self = Self(allocator);
        // The one null that the library hands back is an unallocated matrix's, with size 0.
        if (!memory && size == 0)
        {
            ++self.nullsGivenBack;
            return;
        }
        const auto found = self.blocks.find(static_cast<unsigned char*>(memory));
        if (found == self.blocks.end())
        {
            ADD_FAILURE() << memory << " (" << size << " bytes) is no live block of this allocator";
            return;
        }
        if (found->second != size)
            ADD_FAILURE() << "a block of " << found->second << " bytes was given back as " << size;
        self.Release(found);
    }

    bool IsRefused()
    {
        if (spared)
            return false;
        ++counted;
        return counted >= firstRefused && counted <= lastRefused;
    }

    void* Give(NuvSizeT size)
    {
        auto* fence = static_cast<unsigned char*>(std::malloc(size + 2 * kGuardSize));
        if (!fence)
        {
            ADD_FAILURE() << "the machine has no room for " << size << " bytes";
            return nullptr;
        }
        std::memset(fence, kGuard, kGuardSize);
        std::memset(fence + kGuardSize, kFresh, size);
        std::memset(fence + kGuardSize + size, kGuard, kGuardSize);
        blocks.emplace(fence + kGuardSize, size);
        liveBytes += size;
        peakBytes = liveBytes > peakBytes ? liveBytes : peakBytes;
        return fence + kGuardSize;
    }

    void Release(Blocks::const_iterator block)
    {
        CheckGuardsOf(block->first, block->second);
        unsigned char* fence = const_cast<unsigned char*>(block->first) - kGuardSize;
        // Through a volatile pointer, or the compiler drops the writes to what is freed next.
        static void* (*volatile const fill)(void*, int, std::size_t) = std::memset;
        fill(fence + kGuardSize, kFreed, static_cast<std::size_t>(block->second));
        liveBytes -= block->second;
        blocks.erase(block);
        std::free(fence);
    }

    static void CheckGuardsOf(const unsigned char* memory, NuvSizeT size)
    {
        const unsigned char* const before = memory - kGuardSize;
        const unsigned char* const behind = memory + size;
        // Each is Guard from its first byte on, as the first one is and each equals the one before.
        const auto isWhole = [](const unsigned char* guards)
        { return guards[0] == kGuard && std::memcmp(guards, guards + 1, kGuardSize - 1) == 0; };
        if (isWhole(before) && isWhole(behind))
            return;
        for (std::size_t i = 0; i < kGuardSize; ++i)
        {
            if (before[i] == kGuard && behind[i] == kGuard)
                continue;
            ADD_FAILURE() << "a byte " << (behind[i] == kGuard ? "before" : "behind")
                          << " a block of " << size << " bytes was written";
            return;
        }
    }

    ::testing::Message Listed() const
    {
        ::testing::Message list;
        list << blocks.size() << " of";
        for (const NuvSizeT size : LiveSizes())
            list << ' ' << size;
        return list << " bytes";
    }

    NuvAllocator callbacks;
    Blocks blocks;
    NuvSizeT liveBytes = 0;
    NuvSizeT peakBytes = 0;
    std::size_t requests = 0;
    NuvSizeT lastRequest = 0;
    std::size_t zeroByteRequests = 0;
    std::size_t refusals = 0;
    std::size_t nullsGivenBack = 0;
    std::size_t counted = 0;
    std::size_t firstRefused = kNever;
    std::size_t lastRefused = kNever;
    int spared = 0;
    bool leftBlocksAccepted = false;
};
