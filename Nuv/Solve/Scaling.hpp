/// What may be done to the numbers of a model before the core gets them.
#pragma once

#include <cstdint>

namespace nuv
{

/// How rows and columns are scaled.
enum class Scaling : std::uint8_t
{
    None,         ///< not at all
    PowersOfTwo,  ///< of rows and columns, which changes exponents and no other bit
};

}  // namespace nuv
