/// The sections of an MPS file, in the order that each builds on those before it.
#pragma once

#include <cstdint>
#include <string_view>

namespace nuv::mps
{

enum class Section : std::uint8_t
{
    None,
    Name,
    ObjectiveSense,
    ObjectiveName,
    Rows,
    Columns,
    RightHandSides,
    Ranges,
    Bounds,
    End,
    Refused,  ///< known, and no part of a linear program
    Unknown,
};

/// Whether the lines of a section are records of fields.
[[nodiscard]] constexpr bool HasFields(Section section) noexcept
{
    return section >= Section::Rows && section <= Section::Bounds;
}

/// The section that a word opens, in any letter case.
[[nodiscard]] Section FindSection(std::string_view word) noexcept;

}  // namespace nuv::mps
