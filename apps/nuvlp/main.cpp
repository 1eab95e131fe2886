// nuvlp: the library from the command line. Results go to stdout, everything else to stderr.
#include "Commands.hpp"
#include "Help.hpp"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <iostream>

namespace
{

int Run(int argc, char** argv)
{
    CLI::App app("Reads, solves and proves linear programs.", "nuvlp");
    nuvlp::SetUpHelp(app);
    app.require_subcommand(1);
    nuvlp::ExitCode exitCode = nuvlp::ExitCode::Success;
    nuvlp::AddSolveCommand(app, exitCode);
    nuvlp::AddCheckCommand(app, exitCode);
    nuvlp::AddConvertCommand(app, exitCode);
    nuvlp::AddPlotCommand(app, exitCode);
    nuvlp::AddProveCommand(app, exitCode);
    nuvlp::AddSelftestCommand(app, exitCode);
    nuvlp::AddCompletionCommands(app, exitCode);
    nuvlp::FinishHelp(app);
    if (!nuvlp::StartsWithVerb(app, argc > 1 ? argv[1] : nullptr))
        return static_cast<int>(nuvlp::ExitCode::Usage);
    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::ParseError& error)
    {
        // Help and version arrive here too, as errors whose code is 0.
        return app.exit(error, std::cout, std::cerr) == 0
                   ? 0
                   : static_cast<int>(nuvlp::ExitCode::Usage);
    }
    return static_cast<int>(exitCode);
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        return Run(argc, argv);
    }
    catch (const std::bad_alloc&)
    {
        std::fputs("nuvlp: not enough memory\n", stderr);
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "nuvlp: internal error: %s\n", error.what());
    }
    catch (...)
    {
        std::fputs("nuvlp: internal error\n", stderr);
    }
    return static_cast<int>(nuvlp::ExitCode::Internal);
}
