// nuvlp solve FILE: reads, solves, prints.
#include "Commands.hpp"
#include "Input.hpp"
#include "OutputFile.hpp"
#include "ProgressLine.hpp"
#include "ReadingOptions.hpp"
#include "TextReport.hpp"

#include "Nuv/Model/FloatSolve.hpp"
#include "Nuv/Model/JsonReport.hpp"
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
    ModelSource source;
    std::string output;
    std::optional<std::uint64_t> maxPivots;
    std::optional<double> timeLimit;
    bool exitStatus = false;
    bool quiet = false;
    bool json = false;
    bool sensitivity = false;
    bool floatOnly = false;
    bool progress = false;
};

volatile std::sig_atomic_t interrupted = 0;

void Interrupt(int)
{
    interrupted = 1;
    // A second interrupt ends the program at once.
    (void)std::signal(SIGINT, SIG_DFL);
}

nuv::SolveOptions SolveOptionsOf(const Options& options, ProgressLine& line)
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
    solve.sensitivity = options.sensitivity;
    solve.keepGoing = [&line](const nuv::SolveProgress& progress)
    {
        line.Show(progress);
        return interrupted == 0;
    };
    return solve;
}

nuv::Solution Solve(const nuv::Model& model, const Options& options)
{
    ProgressLine line(options.progress);
    const nuv::SolveOptions solve = SolveOptionsOf(options, line);
    return options.floatOnly ? nuv::SolveInFloats(model, solve) : nuv::Solve(model, solve);
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
    const nuv::Reading reading = nuv::ReadModelFile(options.source.file, options.source.options);
    PrintDiagnostics(reading.diagnostics, options.quiet ? Show::Errors : Show::Warnings);
    if (!reading.Ok())
        return ExitCodeOf(reading.GetError());
    (void)std::signal(SIGINT, Interrupt);
    const nuv::Solution solution = Solve(*reading.model, options);
    if (solution.status == nuv::SolveStatus::Invalid)
        PrintDiagnostics({nuv::WithoutPlace(solution.failure)}, Show::Errors);
    const Detail detail = options.quiet ? Detail::Verdict : Detail::Full;
    const std::string report = options.json
                                   ? nuv::JsonReport(*reading.model, solution, reading.diagnostics)
                                   : TextReport(*reading.model, solution, detail);
    return WriteTo(options.output, report, ExitCodeOfStatus(solution.status, options.exitStatus));
}

}  // namespace

void AddSolveCommand(CLI::App& app, ExitCode& exitCode)
{
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand("solve", "Solve a model and print the answer");
    AddModelSource(*command, options->source);
    command
        ->add_option("-o,--output", options->output,
                     "The file to write to; standard output if not given")
        ->type_name("RESULT");
    command
        ->add_option("--max-pivots", options->maxPivots,
                     "Stop a stage of the solve after so many pivots")
        ->type_name("N")
        ->check(CLI::NonNegativeNumber);
    command->add_option("--time-limit", options->timeLimit, "Stop after so many seconds")
        ->type_name("SECONDS")
        ->check(CLI::NonNegativeNumber);
    command->add_flag("--exit-status", options->exitStatus,
                      "Exit with 2 if infeasible and 3 if unbounded");
    command->add_flag("-q,--quiet", options->quiet,
                      "Print status and objective only, and no warnings");
    command->add_flag("--json", options->json, "Write the result as JSON, for programs");
    command->add_flag("--progress", options->progress, "Show on the terminal how far the solve is");
    CLI::Option* const sensitivity =
        command->add_flag("--sensitivity", options->sensitivity,
                          "Find how far each cost and each side of a row may move");
    command
        ->add_flag("--float-only", options->floatOnly,
                   "Solve in single precision and stop there: nothing is proved")
        ->excludes(sensitivity);
    command->callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace nuvlp
