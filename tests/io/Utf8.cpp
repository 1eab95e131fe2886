// Characters of UTF-8 by the letter of RFC 3629, and the columns that they take.
#include "Nuv/Io/Utf8.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

namespace nuv::test
{
namespace
{

TEST(Utf8, TakesTheFirstAndTheLastCharacterOfEachLength)
{
    const std::pair<std::string_view, std::uint32_t> characters[] = {
        {std::string_view("\0", 1), 0},
        {"\x7F", 0x7F},
        {"\xC2\x80", 0x80},
        {"\xDF\xBF", 0x7FF},
        {"\xE0\xA0\x80", 0x800},
        {"\xEF\xBF\xBF", 0xFFFF},
        {"\xED\x9F\xBF", 0xD7FF},
        {"\xEE\x80\x80", 0xE000},
        {"\xF0\x90\x80\x80", 0x10000},
        {"\xF4\x8F\xBF\xBF", 0x10FFFF},
    };
    for (const auto& [text, code] : characters)
    {
        const Utf8Character character = FirstCharacter(std::string(text) + "x");
        EXPECT_EQ(character.code, code) << text;
        EXPECT_EQ(character.bytes, text.size()) << text;
    }
}

TEST(Utf8, TakesByteByByteWhatIsNoCharacter)
{
    for (const std::string_view text :
         {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2x", "\xE0\x9F\xBF", "\xE2\x82",
          "\xE2\x82x", "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80",
          "\xF5\x80\x80\x80", "\xFF"})
    {
        const Utf8Character character = FirstCharacter(text);
        EXPECT_EQ(character.code, Utf8Character::kNoCharacter) << text;
        EXPECT_EQ(character.bytes, 1U) << text;
    }
}

TEST(Utf8, KnowsHowWideATextIs)
{
    EXPECT_EQ(DisplayWidth(std::string_view()), 0U);
    EXPECT_EQ(DisplayWidth(std::string_view("caf\u00e9")), 4U);
    EXPECT_EQ(DisplayWidth(std::string_view("cafe\u0301")), 4U) << "the accent sits on the e";
    EXPECT_EQ(DisplayWidth(std::string_view("\u6728\u6750")), 4U);
    EXPECT_EQ(DisplayWidth(std::string_view("\xFFx")), 2U);
}

}  // namespace
}  // namespace nuv::test
