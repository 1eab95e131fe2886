/// Output that is either there in full or not at all.
#pragma once

#include "Arguments.hpp"

#include "Nuv/Io/Diagnostics.hpp"

#include <span>
#include <string>
#include <string_view>

namespace nuvlp
{

/// Where a verb writes, and whether that is for programs.
struct Output
{
    std::string path;
    bool json = false;
};

/// -o, the file for what the verb calls `value`; `output` outlives the verb.
[[nodiscard]] Option OutputOption(Output& output, std::string value);

/// --json for a verb that writes a `what`; `output` outlives the verb.
[[nodiscard]] Option JsonOption(Output& output, std::string_view what);

/// Writes to stdout and makes sure that it arrived.
/// @return CannotWrite, with a message on stderr, or else `otherwise`.
[[nodiscard]] ExitCode WriteOutput(std::string_view text, ExitCode otherwise);

/// Writes `text` to the file at `path`, or to stdout if that is empty or "-". A file is written
/// beside its place and then put there, so that an old one stays until the new one is whole.
/// @return CannotWrite, with a message on stderr, or else `otherwise`.
[[nodiscard]] ExitCode WriteTo(const std::string& path, std::string_view text, ExitCode otherwise);

/// That a call is wrong in what only the verb can tell.
[[nodiscard]] nuv::Error UsageError(std::string text, std::string hint = {});

/// Tells people of an error and does what WriteError does.
[[nodiscard]] ExitCode Report(const Output& output, std::string_view schema,
                              const nuv::Error& error, ExitCode code);

/// What a verb does about an error that people have been told of: with --json the error is a result
/// of the schema, in the place of the one that was asked for.
/// @return CannotWrite or `code`.
[[nodiscard]] ExitCode WriteError(const Output& output, std::string_view schema,
                                  std::span<const nuv::Diagnostic> diagnostics, ExitCode code);

}  // namespace nuvlp
