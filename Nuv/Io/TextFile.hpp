/// Whole files as text: from disk or from standard input, plain or compressed.
#pragma once

#include "Nuv/Model/Error.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace nuv
{

/// Reads the file at `path`, or standard input for "-". What starts with the mark of gzip is
/// unpacked, whatever it is called.
/// @return the text, or an error whose code is file.missing, file.directory, file.permission,
/// file.unreadable, file.damaged (gzip), file.utf-16 or file.too-large (beyond 4 GiB, unpacked).
[[nodiscard]] Result<std::string> ReadTextFile(const std::string& path);

/// The bytes of such a file, unpacked if they are packed; `path` names it in errors.
[[nodiscard]] Result<std::string> Unpacked(std::string bytes, const std::string& path);

/// Writes the file at `path` anew, gzipped if its name ends with .gz, or to standard output for
/// "-".
/// @return nothing, or an error with the code file.unwritable and the reason.
[[nodiscard]] std::optional<Error> WriteTextFile(const std::string& path, std::string_view text);

/// The name that messages give `path`: itself, or <stdin> for "-".
[[nodiscard]] std::string DisplayName(const std::string& path);

}  // namespace nuv
