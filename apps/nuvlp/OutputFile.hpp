/// Output that is either there in full or not at all.
#pragma once

#include "ExitCodes.hpp"

#include <string>
#include <string_view>

namespace nuvlp
{

/// Writes `text` to the file at `path`, or to stdout if that is empty or "-". A file is written
/// beside its place and then put there, so that an old one stays until the new one is whole.
/// @return CannotWrite, with a message on stderr, or else `otherwise`.
[[nodiscard]] ExitCode WriteTo(const std::string& path, std::string_view text, ExitCode otherwise);

}  // namespace nuvlp
