/// Numbers as MPS files write them: an optional sign, digits with an optional point, an exponent
/// after e, E, d or D; infinity and nan in the words of C. Every number is the nearest double.
#pragma once

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

/// rightHandSide - range or, with `sum`, rightHandSide + range: of the decimals that they look
/// like, unless `text`, which is what `range` was read from, has more digits than a double holds;
/// then the nearest double to the double plus or minus all of them. Not every pair of doubles is
/// the sum of two doubles that short decimals can name, so a writer of ranges needs the longer
/// ones.
[[nodiscard]] double EndOfRange(double rightHandSide, double range, std::string_view text,
                                bool sum);

}  // namespace nuv::mps
