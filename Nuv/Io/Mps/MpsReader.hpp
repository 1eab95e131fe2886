/// Reads models in the MPS format, fixed and free. Which of the two a file is follows from its
/// content and is reported; the options can force it. Where programs disagree about a construction
/// the reader decides as CPLEX does and says so in a warning or a note; integers, quadratic terms,
/// sets and cones are refused, naming the section. Numbers are read to the nearest double, whatever
/// the locale.
#pragma once

#include "Nuv/Io/ReadResult.hpp"

#include <string_view>

namespace nuv
{

/// Reads a whole file. `file` is the name that messages give it.
[[nodiscard]] ReadResult ReadMps(std::string_view text, std::string_view file,
                                 const ReadOptions& options = {});

}  // namespace nuv
