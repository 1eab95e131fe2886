/// A model from a file, in whichever of the formats it is.
#pragma once

#include "Nuv/Model/Reading.hpp"

#include <string>

namespace nuv
{

/// Reads the file at `path`, or standard input for "-". A file that cannot be read at all is an
/// error whose code starts with "file."; any other error is about what stands in it.
[[nodiscard]] Reading ReadModelFile(const std::string& path, const ReadOptions& options = {});

}  // namespace nuv
