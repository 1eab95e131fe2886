// nuvlp: the library from the command line. Results go to stdout, everything else to stderr.
#include "Commands.hpp"

#include <cstdio>
#include <exception>
#include <new>
#include <string_view>

namespace
{

void AddVerbs(nuvlp::Command& command)
{
    using namespace nuvlp;
    for (Verb (*const make)() : {SolveVerb, BatchVerb, CheckVerb, ConvertVerb, PlotVerb, ProveVerb,
                                 VerifyVerb, RepairVerb, SelftestVerb})
        command.verbs.push_back(make());
    for (Verb (*const make)(const Command&) : {CompletionVerb, ManVerb, HelpVerb})
        command.verbs.push_back(make(command));
}

nuvlp::ExitCode Run(int argc, char** argv)
{
    nuvlp::Command command{"nuvlp", NUVLP_VERSION, "Reads, solves and proves linear programs.", {}};
    // The verb that nearly all calls are for needs none of the others.
    const std::string_view word = argc > 1 ? argv[1] : "";
    if (word == "solve")
        command.verbs.push_back(nuvlp::SolveVerb());
    else
        AddVerbs(command);
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
