#include "Nuv/Io/Utf8.hpp"

#include <algorithm>
#include <iterator>

namespace nuv
{

Utf8Character FirstCharacter(std::string_view text) noexcept
{
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x80u)
        return {1, first};
    const std::size_t bytes = first >= 0xF0u ? 4 : first >= 0xE0u ? 3 : 2;
    if (first < 0xC2u || first > 0xF4u || text.size() < bytes)
        return {};
    std::uint32_t code = first & (0xFFu >> (bytes + 1));
    for (std::size_t i = 1; i < bytes; ++i)
    {
        if (!IsContinuation(text[i]))
            return {};
        code = (code << 6) | (static_cast<unsigned char>(text[i]) & 0x3Fu);
    }
    // Two bytes hold up to 0x7FF and three up to 0xFFFF; a longer form of these is none.
    const bool isOverlong = (bytes == 3 && code < 0x800u) || (bytes == 4 && code < 0x10000u);
    const bool isSurrogate = code >= 0xD800u && code < 0xE000u;
    if (isOverlong || isSurrogate || code > 0x10FFFFu)
        return {};
    return {bytes, code};
}

std::size_t DisplayWidth(std::uint32_t code) noexcept
{
    struct Span
    {
        std::uint32_t first;
        std::uint32_t last;
    };
    static constexpr Span kZero[] = {{0x0300, 0x036F}, {0x200B, 0x200F}, {0xFE00, 0xFE0F}};
    static constexpr Span kDouble[] = {{0x1100, 0x115F},   {0x2E80, 0xA4CF},  {0xAC00, 0xD7A3},
                                       {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},  {0xFF00, 0xFF60},
                                       {0x1F300, 0x1FAFF}, {0x20000, 0x3FFFD}};
    const auto holds = [code](const Span& span) { return span.first <= code && code <= span.last; };
    if (std::any_of(std::begin(kZero), std::end(kZero), holds))
        return 0;
    return std::any_of(std::begin(kDouble), std::end(kDouble), holds) ? 2 : 1;
}

std::size_t DisplayWidth(std::string_view text) noexcept
{
    std::size_t columns = 0;
    while (!text.empty())
    {
        const Utf8Character character = FirstCharacter(text);
        columns += DisplayWidth(character.code);
        text.remove_prefix(character.bytes);
    }
    return columns;
}

}  // namespace nuv
