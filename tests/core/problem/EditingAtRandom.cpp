// A model that is edited for long stays what its edits make it; tools/limits goes on for a million.
#include <gtest/gtest.h>

#include "tests/reference/RandomEditing.hpp"
#include "tests/support/TestAllocator.hpp"

namespace
{
TEST(EditingAtRandom, KeepsTheModelThatTheEditsMake)
{
    for (const std::uint64_t seed : {1U, 2U, 3U})
    {
        TestAllocator allocator;
        EXPECT_EQ(reference::EditAtRandom(4000, seed, allocator), "") << "seed " << seed;
    }
}
}  // namespace
