/// Numbers of rows, columns, variables and vectors, from 0.
#pragma once

#include <cstdint>
#include <limits>

namespace nuv
{

using Index = std::uint32_t;
inline constexpr Index kNoIndex = std::numeric_limits<Index>::max();

}  // namespace nuv
