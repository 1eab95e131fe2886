// The words of results: each is one value's alone, and leads back to it.
#include "Nuv/Report/Words.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace nuv::test
{
namespace
{

template <class Enum>
class EnumWords : public testing::Test
{
};

using Enums =
    testing::Types<Status, BasisStatus, SinglePrecisionStop, ClaimedStatus, Judgement, Evidence>;
TYPED_TEST_SUITE(EnumWords, Enums);

TYPED_TEST(EnumWords, LeadFromEachValueToAWordAndBack)
{
    std::size_t next = 0;
    for (const Word<TypeParam>& word : Words<TypeParam>::kTable)
    {
        EXPECT_EQ(static_cast<std::size_t>(word.value), next++) << word.text << ": one is missing";
        EXPECT_EQ(WordOf(word.value), word.text);
        EXPECT_EQ(FromWord<TypeParam>(word.text), word.value) << word.text << " stands twice";
    }
    EXPECT_EQ(WordOf(static_cast<TypeParam>(next)), "");
    EXPECT_EQ(FromWord<TypeParam>(""), std::nullopt);
    EXPECT_EQ(FromWord<TypeParam>("Optimal"), std::nullopt);
    EXPECT_EQ(AllWords<TypeParam>().size(), next);
}

}  // namespace
}  // namespace nuv::test
