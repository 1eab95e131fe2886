#include "Output.hpp"

#include "Input.hpp"

#include "Nuv/Report/JsonReport.hpp"

#include <fmt/core.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

namespace nuvlp
{
namespace
{

struct Close
{
    void operator()(std::FILE* file) const
    {
        (void)std::fclose(file);
    }
};

ExitCode Complain(const std::string& path, const char* reason)
{
    std::fprintf(stderr, "nuvlp: cannot write %s: %s\n", path.c_str(), reason);
    return ExitCode::CannotWrite;
}

/// @return whether all bytes are on their way to the disk; errno says why not.
bool WriteWhole(const std::string& path, std::string_view text)
{
    std::unique_ptr<std::FILE, Close> file(std::fopen(path.c_str(), "wb"));
    if (!file)
        return false;
    const bool isWritten = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size() &&
                           std::fflush(file.get()) == 0;
    // Closing can fail too, where the disk is full.
    return std::fclose(file.release()) == 0 && isWritten;
}

/// A device or a pipe must not be replaced by a file, nor /dev/stdout, even where a file is behind
/// it.
bool IsWrittenAsItIs(const std::string& path)
{
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(path, ignored);
    return path.starts_with("/dev/") ||
           (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status));
}

}  // namespace

ExitCode WriteOutput(std::string_view text, ExitCode otherwise)
{
    errno = 0;
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (std::fflush(stdout) == 0 && written)
        return otherwise;
    std::fprintf(stderr, "nuvlp: cannot write the result: %s\n", std::strerror(errno));
    return ExitCode::CannotWrite;
}

ExitCode WriteTo(const std::string& path, std::string_view text, ExitCode otherwise)
{
    if (path.empty() || path == "-")
        return WriteOutput(text, otherwise);
    if (IsWrittenAsItIs(path))
        return WriteWhole(path, text) ? otherwise : Complain(path, std::strerror(errno));
    std::error_code error;
    std::error_code ignored;
    // Behind a symbolic link the file is replaced, not the link.
    std::filesystem::path target = path;
    if (std::filesystem::is_symlink(path, ignored))
        target = std::filesystem::canonical(path, error);
    if (error)
        return Complain(path, error.message().c_str());
    const std::string beside = target.string() + ".nuvlp-new";
    if (!WriteWhole(beside, text))
    {
        const ExitCode code = Complain(path, std::strerror(errno));
        std::filesystem::remove(beside, error);
        return code;
    }
    std::filesystem::rename(beside, target, error);
    if (!error)
        return otherwise;
    const std::string reason = error.message();
    std::filesystem::remove(beside, error);
    return Complain(path, reason.c_str());
}

Option OutputOption(Output& output, std::string value)
{
    return {.names = {"-o", "--output"},
            .value = std::move(value),
            .text = "The file to write to; standard output if not given",
            .target = &output.path};
}

Option JsonOption(Output& output, std::string_view what)
{
    return {.names = {"--json"},
            .text = fmt::format("Write the {} as JSON, for programs", what),
            .target = &output.json};
}

nuv::Error UsageError(std::string text, std::string hint)
{
    return {"usage", std::move(text), std::move(hint), "", 0, 0};
}

ExitCode Report(const Output& output, std::string_view schema, const nuv::Error& error,
                ExitCode code)
{
    const std::vector failure{nuv::WithoutPlace(error)};
    if (error.code == "usage")
        fmt::print(stderr, "nuvlp: {}\n{}{}", error.text, error.hint,
                   error.hint.empty() ? "" : "\n");
    else
        PrintDiagnostics(failure, Show::Errors);
    return WriteError(output, schema, failure, code);
}

ExitCode WriteError(const Output& output, std::string_view schema,
                    std::span<const nuv::Diagnostic> diagnostics, ExitCode code)
{
    if (!output.json)
        return code;
    const auto found =
        std::ranges::find(diagnostics, nuv::Severity::Error, &nuv::Diagnostic::severity);
    return found == diagnostics.end()
               ? code
               : WriteTo(output.path, nuv::ErrorJson(schema, found->error, diagnostics), code);
}

}  // namespace nuvlp
