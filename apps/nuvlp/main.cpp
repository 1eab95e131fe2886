// nuvlp: the library from the command line. Results go to stdout, everything else to stderr.
#include "Commands.hpp"

#include <cstdio>
#include <exception>
#include <new>

namespace
{

nuvlp::ExitCode Run(int argc, char** argv)
{
    nuvlp::Command command{"nuvlp", NUVLP_VERSION, "Reads, solves and proves linear programs.", {}};
    command.verbs = {nuvlp::SolveVerb(),     nuvlp::BatchVerb(),
                     nuvlp::CheckVerb(),     nuvlp::ConvertVerb(),
                     nuvlp::PlotVerb(),      nuvlp::ProveVerb(),
                     nuvlp::VerifyVerb(),    nuvlp::RepairVerb(),
                     nuvlp::SelftestVerb(),  nuvlp::CompletionVerb(command),
                     nuvlp::ManVerb(command)};
    command.verbs.push_back(nuvlp::HelpVerb(command));
    return nuvlp::RunCommand(command, argc, argv);
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        return static_cast<int>(Run(argc, argv));
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
