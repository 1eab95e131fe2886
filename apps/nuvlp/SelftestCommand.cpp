// nuvlp selftest: whether this machine and this build give the promised bits.
#include "Commands.hpp"
#include "Output.hpp"

#include "Nuv/SelfTest/SelfTest.hpp"

#include <cstdio>
#include <memory>

namespace nuvlp
{
namespace
{

struct SelftestArguments
{
    std::string instructionSet = "all";
    bool models = false;
};

ExitCode Run(const SelftestArguments& options)
{
    ExitCode code = ExitCode::Success;
    if (options.models)
        nuv::selftest::PrintModels(nuv::selftest::Loops::OfThisMachine, stdout);
    else if (nuv::selftest::RunByName(options.instructionSet.c_str(), stdout) != 0)
        code = ExitCode::Internal;
    return WriteOutput("", code);  // what was printed may still fail to arrive
}

}  // namespace

Verb SelftestVerb()
{
    const auto options = std::make_shared<SelftestArguments>();
    Verb verb{.name = "selftest",
              .text = "Test that this machine gives the promised bits",
              .run = [options] { return Run(*options); }};
    verb.Add({
        {.names = {"--instruction-set"},
         .value = "KIND",
         .text = "The loops to test: those that this machine chooses, one kind, or all it has",
         .target = &options->instructionSet,
         .choices = {"machine", "plain", "baseline", "avx2", "avx512", "all"},
         .standard = "all"},
        {.names = {"--models"},
         .text = "Print the hash of each model instead, to compare two machines",
         .target = &options->models},
    });
    return verb;
}

}  // namespace nuvlp
