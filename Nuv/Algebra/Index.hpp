/// Numbers of rows, columns, variables and vectors, from 0.
#pragma once

#include <cstdint>
#include <limits>

namespace nuv
{

/// The number of a row, column or variable.
using Index = std::uint32_t;
/// What is not there.
inline constexpr Index kNoIndex = std::numeric_limits<Index>::max();

}  // namespace nuv
