/// A model from a file, in whichever of the formats it is.
#pragma once

#include "Nuv/Io/ReadResult.hpp"
#include "Nuv/Io/WriteResult.hpp"

#include <cstdint>
#include <string>
#include <string_view>

namespace nuv
{

/// The formats of model files.
enum class ModelFormat : std::uint8_t
{
    Lp,
    Mps
};

/// The format of a text, or where that shows neither, the one that the end of `path` stands for:
/// MPS for .mps, .sif and .qps, compressed or not, LP for all others.
[[nodiscard]] ModelFormat FormatOf(std::string_view text, std::string_view path) noexcept;

/// Reads a text with the reader for its format; `path` names it.
[[nodiscard]] ReadResult ReadModel(std::string_view text, const std::string& path,
                                   const ReadOptions& options = {});

/// Reads the file at `path`, or standard input for "-". A file that cannot be read at all is an
/// error whose code starts with "file."; any other error is about what stands in it.
[[nodiscard]] ReadResult ReadModelFile(const std::string& path, const ReadOptions& options = {});

/// Writes in the format that the end of `path` stands for: MPS for .mps, LP for all others.
[[nodiscard]] WriteResult WriteModel(const Model& model, std::string_view path);

}  // namespace nuv
