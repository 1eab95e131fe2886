/// Characters of UTF-8 (RFC 3629: no overlong forms, no surrogates) and the columns they take.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace nuv
{

/// One character: its bytes, and its code point. A byte that begins none is a character by itself,
/// whose code is kNoCharacter.
struct Utf8Character
{
    static constexpr std::uint32_t kNoCharacter = 0xFFFFFFFFu;

    std::size_t bytes = 1;
    std::uint32_t code = kNoCharacter;
};

/// The character that `text`, which is not empty, begins with.
[[nodiscard]] Utf8Character FirstCharacter(std::string_view text) noexcept;

/// Whether a byte goes on with a character that another one began.
[[nodiscard]] inline bool IsContinuation(char c) noexcept
{
    return (static_cast<unsigned char>(c) & 0xC0u) == 0x80u;
}

/// Columns that a terminal gives to a character: 0 for marks that sit on the one before, 2 for East
/// Asian and pictures.
[[nodiscard]] std::size_t DisplayWidth(std::uint32_t code) noexcept;
[[nodiscard]] std::size_t DisplayWidth(std::string_view text) noexcept;

}  // namespace nuv
