// nuvlp selftest: whether this machine and this build give the promised bits.
#include "Commands.hpp"
#include "Input.hpp"

#include "Nuv/SelfTest/SelfTest.hpp"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>

namespace nuvlp
{
namespace
{

struct Options
{
    std::string instructionSet = "all";
    bool models = false;
};

ExitCode Run(const Options& options)
{
    ExitCode code = ExitCode::Success;
    if (options.models)
        nuv::selftest::PrintModels(nuv::selftest::Loops::OfThisMachine, stdout);
    else if (nuv::selftest::RunByName(options.instructionSet.c_str(), stdout) != 0)
        code = ExitCode::Internal;
    return WriteOutput("", code);  // what was printed may still fail to arrive
}

}  // namespace

void AddSelftestCommand(CLI::App& app, ExitCode& exitCode)
{
    const auto options = std::make_shared<Options>();
    CLI::App* command =
        app.add_subcommand("selftest", "Test that this machine gives the promised bits");
    command
        ->add_option("--instruction-set", options->instructionSet,
                     "The loops to test: those that this machine chooses, one kind, or all it has")
        ->check(CLI::IsMember({"machine", "plain", "baseline", "avx2", "avx512", "all"}))
        ->capture_default_str();
    command->add_flag("--models", options->models,
                      "Print the hash of each model instead, to compare two machines");
    command->callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace nuvlp
