/// The two ways to understand a double as an exact number.
#pragma once

#include <cstdint>

namespace nuv
{

/// What a double stands for in exact arithmetic.
enum class Numbers : std::uint8_t
{
    AsStored,   ///< itself: 0.1 is 3602879701896397 / 2^55
    AsWritten,  ///< the shortest decimal that reads back to it: 0.1 is 1/10
};

}  // namespace nuv
