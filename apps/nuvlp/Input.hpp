/// What every verb does with a model file: how it is read, and what is said of it.
#pragma once

#include "Arguments.hpp"

#include "Nuv/Algebra/ExactNumber.hpp"
#include "Nuv/Io/ReadResult.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

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

/// A model file and how to read it.
struct ModelSource
{
    std::string file;
    nuv::ReadOptions options;
};

/// Adds FILE and the options that say how to read it; `source` outlives the verb.
void AddModelSource(Verb& verb, ModelSource& source);

/// --numbers, which says what a decimal of the model stands for.
[[nodiscard]] Option NumbersOption(std::function<void(nuv::CoefficientMeaning)> use);

/// --max-pivots and --time-limit of a solve; what they fill outlives the verb.
[[nodiscard]] Option MaxPivotsOption(std::optional<std::uint64_t>& pivots);
[[nodiscard]] Option TimeLimitOption(double& seconds);

/// Reads the model, and prints what the reader has to say of it.
[[nodiscard]] nuv::ReadResult ReadModel(const ModelSource& source, Show least);

/// The exit code for a file that could not be read.
[[nodiscard]] ExitCode ExitCodeOf(const nuv::Error& error);

}  // namespace nuvlp
