// nuvlp prove MODEL SOLUTION: checks what a solution file says about a model.
#include "Commands.hpp"
#include "Input.hpp"
#include "Interrupts.hpp"
#include "Output.hpp"

#include "Nuv/Io/TextFile.hpp"
#include "Nuv/Report/CheckClaim.hpp"
#include "Nuv/Report/ClaimReader.hpp"
#include "Nuv/Report/ClaimText.hpp"
#include "Nuv/Report/Words.hpp"

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nuvlp
{
namespace
{

struct ProveArguments
{
    ModelSource source;
    std::string solution;
    Output output;
    std::string claim;
    std::optional<nuv::CoefficientMeaning> numbers;
    nuv::ClaimOptions check;
    bool quiet = false;
};

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

ExitCode Run(const ProveArguments& options)
{
    if (options.source.file == "-" && options.solution == "-")
        return Report(options.output, nuv::kProofSchema,
                      UsageError("only one of model and solution can come from standard input"),
                      ExitCode::Usage);
    const nuv::ReadResult reading =
        ReadModel(options.source, options.quiet ? Show::Errors : Show::Warnings);
    if (!reading.Ok())
        return WriteError(options.output, nuv::kProofSchema, reading.diagnostics,
                          ExitCodeOf(reading.GetError()));
    const nuv::Result<std::string> text = nuv::ReadTextFile(options.solution);
    if (!text)
        return Report(options.output, nuv::kProofSchema, text.GetError(),
                      ExitCodeOf(text.GetError()));
    const nuv::ClaimReadResult claim =
        nuv::ReadClaim(*text, nuv::DisplayName(options.solution), *reading.model,
                       nuv::FromWord<nuv::ClaimedStatus>(options.claim), options.numbers);
    PrintDiagnostics(claim.diagnostics, Show::Warnings);
    if (!claim.claim)
        return WriteError(options.output, nuv::kProofSchema, claim.diagnostics, ExitCode::BadModel);
    CatchInterrupts();
    nuv::ClaimOptions check = options.check;
    check.limits.keepGoing = [](const nuv::Progress&) { return !IsInterrupted(); };
    const nuv::ClaimReport report = nuv::CheckClaim(*reading.model, *claim.claim, check);
    return WriteTo(options.output.path,
                   options.output.json ? nuv::ClaimJson(*reading.model, report)
                                       : nuv::ClaimText(report),
                   ExitCodeOfJudgement(report.judgement));
}

}  // namespace

Verb ProveVerb()
{
    const auto options = std::make_shared<ProveArguments>();
    Verb verb{.name = "prove",
              .text = "Check in exact arithmetic what a solution file claims",
              .run = [options] { return Run(*options); },
              .schema = std::string(nuv::kProofSchema)};
    AddModelSource(verb, options->source);
    verb.positionals.push_back(
        {.names = {"SOLUTION"},
         .value = "SOLUTION",
         .text = "The solution: what solve --json wrote, or a name and a value in each line",
         .target = &options->solution});
    verb.Add({
        {.names = {"--claim"},
         .value = "STATUS",
         .text = "What is to be proved; what the file says, or that it is optimal, if not given",
         .target = &options->claim,
         .choices = nuv::AllWords<nuv::ClaimedStatus>()},
        NumbersOption([options](nuv::CoefficientMeaning numbers) { options->numbers = numbers; }),
        {.names = {"--tolerance"},
         .value = "FRACTION",
         .text = "How far off a number may be, as a fraction of its size; 0 for not at all",
         .target = &options->check.tolerance,
         .standard = "1e-09"},
        {.names = {"--time-limit"},
         .value = "SECONDS",
         .text = "Stop looking for a proof after so many seconds",
         .target = &options->check.limits.seconds},
        OutputOption(options->output, "REPORT"),
        JsonOption(options->output, "report"),
        {.names = {"-q", "--quiet"}, .text = "Print no warnings", .target = &options->quiet},
    });
    return verb;
}

}  // namespace nuvlp
