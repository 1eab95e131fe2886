// Runs a test's body once for each request that it makes of its allocator, with that request
// refused: alone, and together with all later ones. The last run of each mode is the first that has
// nothing refused, so that every request of the body has had its turn.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <initializer_list>

#include "tests/support/TestAllocator.hpp"

/// How many runs had a request refused, over all tests of a program: the number of pairs of an
/// operation and an n. Printed at the program's end.
class RefusedRuns : public ::testing::Environment
{
public:
    void TearDown() override
    {
        std::printf("%zu runs with a request refused\n", count);
    }

    static inline std::size_t count = 0;
};

inline ::testing::Environment* const refusedRuns =
    ::testing::AddGlobalTestEnvironment(new RefusedRuns);

enum class Refusal
{
    OnlyOne,
    AllFromOneOn
};

/// Runs `body(TestAllocator&)` in one mode, and stops at the first n that fails.
/// @return the number of requests that a run without refusals makes.
template <class Body>
std::size_t ForEachRefusedAllocation(Refusal mode, Body&& body)
{
    constexpr std::size_t kLongestRun = 1000000;
    for (std::size_t n = 1; n <= kLongestRun; ++n)
    {
        SCOPED_TRACE(::testing::Message()
                     << "request " << n << " refused"
                     << (mode == Refusal::OnlyOne ? "" : ", and all after it"));
        bool refused;
        {
            TestAllocator allocator;
            if (mode == Refusal::OnlyOne)
                allocator.RefuseOnly(n);
            else
                allocator.RefuseFrom(n);
            body(allocator);
            refused = allocator.Refusals() != 0;
        }
        if (!refused || ::testing::Test::HasFailure())
            return n - 1;
        ++RefusedRuns::count;
    }
    ADD_FAILURE() << "still refused after " << kLongestRun << " runs";
    return kLongestRun;
}

/// Runs `body(TestAllocator&)` in both modes. Setting up and checking inside the body may go on
/// under `TestAllocator::Spare`, and are then granted. A body that makes no request tests nothing
/// and fails.
template <class Body>
void ForEachRefusedAllocation(Body&& body)
{
    for (const Refusal mode : {Refusal::OnlyOne, Refusal::AllFromOneOn})
    {
        if (ForEachRefusedAllocation(mode, body) == 0 && !::testing::Test::HasFailure())
            ADD_FAILURE() << "no request could be refused";
    }
}
