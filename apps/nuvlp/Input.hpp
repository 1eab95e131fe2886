/// What every verb does with a model file and with its own output.
#pragma once

#include "ExitCodes.hpp"

#include "Nuv/Model/Reading.hpp"

#include <string>
#include <string_view>

namespace nuvlp
{

/// The least serious diagnostics that a verb shows.
enum class Show
{
    Errors,
    Warnings,
    Notes
};

/// Prints diagnostics on stderr, in colour if that is a terminal.
void PrintDiagnostics(const std::vector<nuv::Diagnostic>& diagnostics, Show least);

/// The exit code for a file that could not be read.
[[nodiscard]] ExitCode ExitCodeOf(const nuv::Error& error);

/// Writes to stdout and makes sure that it arrived.
/// @return CannotWrite, with a message on stderr, or else `otherwise`.
[[nodiscard]] ExitCode WriteOutput(std::string_view text, ExitCode otherwise);

}  // namespace nuvlp
