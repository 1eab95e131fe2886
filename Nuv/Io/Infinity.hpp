/// Which numbers of a file stand for infinity, in both formats.
#pragma once

namespace nuv
{

/// From here on a limit is infinite, as most programs take it.
inline constexpr double kInfiniteFrom = 1e30;
/// Programs that take limits from here on for infinite are common enough to warn.
inline constexpr double kInfiniteForSomeFrom = 1e20;

}  // namespace nuv
