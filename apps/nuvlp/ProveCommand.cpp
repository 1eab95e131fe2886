// nuvlp prove MODEL SOLUTION: checks what a solution file says about a model.
#include "ClaimText.hpp"
#include "Commands.hpp"
#include "Input.hpp"
#include "OutputFile.hpp"
#include "ReadingOptions.hpp"

#include "Nuv/Model/ClaimReader.hpp"
#include "Nuv/Model/ModelFile.hpp"
#include "Nuv/Model/TextFile.hpp"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <map>
#include <memory>
#include <optional>

namespace nuvlp
{
namespace
{

struct Options
{
    ModelSource source;
    std::string solution;
    std::string output;
    std::string claim;
    nuv::ClaimOptions check;
    std::optional<double> timeLimit;
    bool json = false;
    bool quiet = false;
};

std::optional<nuv::ClaimedStatus> StatusOf(const std::string& word)
{
    static const std::map<std::string, nuv::ClaimedStatus> words = {
        {"feasible", nuv::ClaimedStatus::Feasible},
        {"optimal", nuv::ClaimedStatus::Optimal},
        {"infeasible", nuv::ClaimedStatus::Infeasible},
        {"unbounded", nuv::ClaimedStatus::Unbounded}};
    const auto found = words.find(word);
    return found == words.end() ? std::nullopt : std::optional(found->second);
}

ExitCode ExitCodeOfJudgement(nuv::Judgement judgement)
{
    switch (judgement)
    {
    case nuv::Judgement::Confirmed:
        return ExitCode::Success;
    case nuv::Judgement::Refuted:
        return ExitCode::Refuted;
    case nuv::Judgement::Undecided:
        break;
    }
    return ExitCode::Stopped;
}

ExitCode Run(const Options& options)
{
    if (options.source.file == "-" && options.solution == "-")
    {
        std::fputs("nuvlp: only one of model and solution can come from standard input\n", stderr);
        return ExitCode::Usage;
    }
    const nuv::Reading reading = nuv::ReadModelFile(options.source.file, options.source.options);
    PrintDiagnostics(reading.diagnostics, options.quiet ? Show::Errors : Show::Warnings);
    if (!reading.Ok())
        return ExitCodeOf(reading.GetError());
    const nuv::Result<std::string> text = nuv::ReadTextFile(options.solution);
    if (!text)
    {
        PrintDiagnostics({nuv::WithoutPlace(text.GetError())}, Show::Errors);
        return ExitCodeOf(text.GetError());
    }
    const nuv::ClaimReading claim = nuv::ReadClaim(*text, nuv::DisplayName(options.solution),
                                                   *reading.model, StatusOf(options.claim));
    PrintDiagnostics(claim.diagnostics, Show::Warnings);
    if (!claim.claim)
        return ExitCode::BadModel;
    nuv::ClaimOptions check = options.check;
    if (options.timeLimit)
        check.limits.seconds = *options.timeLimit;
    const nuv::ClaimReport report = nuv::CheckClaim(*reading.model, *claim.claim, check);
    return WriteTo(options.output, options.json ? ClaimJson(report) : ClaimText(report),
                   ExitCodeOfJudgement(report.judgement));
}

}  // namespace

void AddProveCommand(CLI::App& app, ExitCode& exitCode)
{
    const auto options = std::make_shared<Options>();
    CLI::App* command =
        app.add_subcommand("prove", "Check in exact arithmetic what a solution file claims");
    AddModelSource(*command, options->source);
    command
        ->add_option("SOLUTION", options->solution,
                     "The solution: what solve --json wrote, or a name and a value in each line")
        ->required();
    command
        ->add_option(
            "--claim", options->claim,
            "What is to be proved; what the file says, or that it is optimal, if not given")
        ->check(CLI::IsMember({"feasible", "optimal", "infeasible", "unbounded"}));
    command
        ->add_option("--tolerance", options->check.tolerance,
                     "How far off a number may be, as a fraction of its size; 0 for not at all")
        ->type_name("FRACTION")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    command
        ->add_option("--time-limit", options->timeLimit,
                     "Stop looking for a proof after so many seconds")
        ->type_name("SECONDS")
        ->check(CLI::NonNegativeNumber);
    command
        ->add_option("-o,--output", options->output,
                     "The file to write to; standard output if not given")
        ->type_name("REPORT");
    command->add_flag("--json", options->json, "Write the report as JSON, for programs");
    command->add_flag("-q,--quiet", options->quiet, "Print no warnings");
    command->callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace nuvlp
