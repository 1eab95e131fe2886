// nuvlp plot FILE -o PICTURE: solves, and draws the model with its solution.
#include "Commands.hpp"
#include "Input.hpp"
#include "OutputFile.hpp"
#include "ReadingOptions.hpp"

#include "Nuv/Model/ModelFile.hpp"
#include "Nuv/Model/Picture.hpp"

#include <CLI/CLI.hpp>

#include <memory>

namespace nuvlp
{
namespace
{

struct Options
{
    ModelSource source;
    std::string output;
    double timeLimit = 60.0;
};

ExitCode Run(const Options& options)
{
    const nuv::Reading reading = nuv::ReadModelFile(options.source.file, options.source.options);
    PrintDiagnostics(reading.diagnostics, Show::Warnings);
    if (!reading.Ok())
        return ExitCodeOf(reading.GetError());
    nuv::SolveOptions solve;
    solve.recordPath = true;
    solve.seconds = options.timeLimit;
    const nuv::Solution solution = nuv::Solve(*reading.model, solve);
    const bool isStopped = solution.status == nuv::SolveStatus::Stopped;
    return WriteTo(options.output, nuv::DrawPicture(*reading.model, solution),
                   isStopped ? ExitCode::Stopped : ExitCode::Success);
}

}  // namespace

void AddPlotCommand(CLI::App& app, ExitCode& exitCode)
{
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand("plot", "Draw a model and its solution as SVG");
    AddModelSource(*command, options->source);
    command->add_option("-o,--output", options->output, "The picture; standard output if not given")
        ->type_name("PICTURE");
    command->add_option("--time-limit", options->timeLimit, "Stop solving after so many seconds")
        ->type_name("SECONDS")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    command->callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace nuvlp
