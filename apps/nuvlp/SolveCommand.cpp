// nuvlp solve FILE: reads, solves, prints.
#include "Commands.hpp"
#include "Input.hpp"
#include "TextReport.hpp"

#include "Nuv/Model/ModelFile.hpp"
#include "Nuv/Model/Solution.hpp"

#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdio>
#include <memory>
#include <optional>

namespace nuvlp
{
namespace
{

struct Options
{
    std::string file;
    std::optional<std::uint64_t> maxPivots;
    std::optional<double> timeLimit;
    bool exitStatus = false;
    bool quiet = false;
    bool relax = false;
};

volatile std::sig_atomic_t interrupted = 0;

void Interrupt(int)
{
    interrupted = 1;
    // A second interrupt ends the program at once.
    (void)std::signal(SIGINT, SIG_DFL);
}

nuv::SolveOptions SolveOptionsOf(const Options& options)
{
    nuv::SolveOptions solve;
    if (options.maxPivots)
    {
        solve.useFloatStage = *options.maxPivots != 0;
        solve.floatPivots = *options.maxPivots;
        solve.doublePivots = *options.maxPivots;
        solve.exactPivots = *options.maxPivots;
    }
    if (options.timeLimit)
        solve.seconds = *options.timeLimit;
    solve.keepGoing = [](const nuv::SolveProgress&) { return interrupted == 0; };
    return solve;
}

ExitCode ExitCodeOfStatus(nuv::SolveStatus status, bool exitStatus)
{
    switch (status)
    {
    case nuv::SolveStatus::Optimal:
        return ExitCode::Success;
    case nuv::SolveStatus::Infeasible:
        return exitStatus ? ExitCode::Infeasible : ExitCode::Success;
    case nuv::SolveStatus::Unbounded:
        return exitStatus ? ExitCode::Unbounded : ExitCode::Success;
    case nuv::SolveStatus::Stopped:
        return ExitCode::Stopped;
    case nuv::SolveStatus::Invalid:
        break;
    }
    return ExitCode::Internal;
}

ExitCode Run(const Options& options)
{
    const nuv::Reading reading = nuv::ReadModelFile(options.file, {options.relax});
    PrintDiagnostics(reading.diagnostics, options.quiet ? Show::Errors : Show::Warnings);
    if (!reading.Ok())
        return ExitCodeOf(reading.GetError());
    (void)std::signal(SIGINT, Interrupt);
    const nuv::Solution solution = nuv::Solve(*reading.model, SolveOptionsOf(options));
    if (solution.status == nuv::SolveStatus::Invalid)
        PrintDiagnostics({nuv::WithoutPlace(solution.failure)}, Show::Errors);
    const Detail detail = options.quiet ? Detail::Verdict : Detail::Full;
    return WriteOutput(TextReport(*reading.model, solution, detail),
                       ExitCodeOfStatus(solution.status, options.exitStatus));
}

}  // namespace

void AddSolveCommand(CLI::App& app, ExitCode& exitCode)
{
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand("solve", "Solve a model and print the answer");
    command
        ->add_option("FILE", options->file,
                     "The model, in CPLEX-LP format, plain or gzipped; - is standard input")
        ->required();
    command
        ->add_option("--max-pivots", options->maxPivots,
                     "Stop a stage of the solve after so many pivots")
        ->type_name("N");
    command->add_option("--time-limit", options->timeLimit, "Stop after so many seconds")
        ->type_name("SECONDS")
        ->check(CLI::NonNegativeNumber);
    command->add_flag("--exit-status", options->exitStatus,
                      "Exit with 2 if infeasible and 3 if unbounded");
    command->add_flag("-q,--quiet", options->quiet,
                      "Print status and objective only, and no warnings");
    command->add_flag("--relax", options->relax, "Read integer variables as continuous ones");
    command->callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace nuvlp
