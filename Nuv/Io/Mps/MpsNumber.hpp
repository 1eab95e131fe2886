/// Numbers as MPS files write them: an optional sign, digits with an optional point, an exponent
/// after e, E, d or D; infinity and nan in the words of C. Each is read as the nearest double, and
/// where that does not say it, kept in full beside it.
#pragma once

#include "Nuv/Model/WrittenNumber.hpp"

#include <cstdint>
#include <string_view>

namespace nuv::mps
{

enum class NumberFault : std::uint8_t
{
    None,
    NotANumber,  ///< the text is none
    Undefined,   ///< "nan"
    TooLarge,    ///< beyond the largest double
    TooSmall,    ///< not zero, and below the smallest double
};

struct Number
{
    double value = 0.0;  ///< may be infinite
    NumberFault fault = NumberFault::None;
};

[[nodiscard]] Number ReadNumber(std::string_view text) noexcept;

/// The number that `text`, which ReadNumber took, is exactly; `nearest` is what that gave.
[[nodiscard]] WrittenNumber ExactNumberOf(std::string_view text, double nearest);

}  // namespace nuv::mps
