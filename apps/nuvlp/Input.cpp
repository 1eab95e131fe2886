// Everything that goes to stderr goes through here, so that stdout holds results alone.
#include "Input.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

namespace nuvlp
{
namespace
{

bool WantsColour()
{
    // https://no-color.org: any value turns colour off.
    return isatty(STDERR_FILENO) != 0 && std::getenv("NO_COLOR") == nullptr;
}

}  // namespace

void PrintDiagnostics(const std::vector<nuv::Diagnostic>& diagnostics, Show least)
{
    const bool colour = WantsColour();
    for (const nuv::Diagnostic& diagnostic : diagnostics)
    {
        const bool shown =
            diagnostic.severity == nuv::Severity::Error ||
            (diagnostic.severity == nuv::Severity::Warning && least != Show::Errors) ||
            least == Show::Notes;
        if (shown)
            std::fputs(nuv::Render(diagnostic, colour).c_str(), stderr);
    }
}

ExitCode ExitCodeOf(const nuv::Error& error)
{
    const bool unopened = error.code == "file.missing" || error.code == "file.directory" ||
                          error.code == "file.permission" || error.code == "file.unreadable";
    return unopened ? ExitCode::NoInput : ExitCode::BadModel;
}

ExitCode WriteOutput(std::string_view text, ExitCode otherwise)
{
    errno = 0;
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (std::fflush(stdout) == 0 && written)
        return otherwise;
    std::fprintf(stderr, "nuvlp: cannot write the result: %s\n", std::strerror(errno));
    return ExitCode::CannotWrite;
}

}  // namespace nuvlp
