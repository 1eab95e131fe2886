/// Reads models in the CPLEX-LP format, the linear part of it: an objective, rows, bounds. Where
/// programs disagree about a construction the reader decides for what cannot be misunderstood, says
/// so in a warning or a note, and refuses the rest with line, column and a way out. Numbers are
/// read to the nearest double, whatever the locale.
#pragma once

#include "Nuv/Io/ReadResult.hpp"

#include <string_view>

namespace nuv
{

/// Reads a whole file. `file` is the name that messages give it.
[[nodiscard]] ReadResult ReadLp(std::string_view text, std::string_view file,
                                const ReadOptions& options = {});

}  // namespace nuv
