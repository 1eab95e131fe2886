// nuvlp solve FILE: reads, solves, prints.
#include "Commands.hpp"
#include "Input.hpp"
#include "Interrupts.hpp"
#include "Output.hpp"
#include "ProgressLine.hpp"
#include "Nuv/Report/TextReport.hpp"

#include "Nuv/Io/Basis/MpsBasisReader.hpp"
#include "Nuv/Io/Basis/MpsBasisWriter.hpp"
#include "Nuv/Io/TextFile.hpp"
#include "Nuv/Report/JsonReport.hpp"
#include "Nuv/Solve/Solution.hpp"
#include "Nuv/Vipr/Certify.hpp"
#include "Nuv/Vipr/Text.hpp"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

namespace nuvlp
{
namespace
{

/// Why an option asks for nothing where nothing is proved.
constexpr const char* kComesWithProof = "what it shows comes with the proof";

struct SolveArguments
{
    ModelSource source;
    Output output;
    std::string certificate;
    std::string basisIn;
    std::string basisOut;
    nuv::CoefficientMeaning numbers = nuv::CoefficientMeaning::ShortestDecimal;
    std::optional<std::uint64_t> maxPivots;
    double timeLimit = std::numeric_limits<double>::infinity();
    bool exitStatus = false;
    bool quiet = false;
    bool sensitivity = false;
    bool exact = false;
    bool uniqueness = false;
    bool floatOnly = false;
    bool noProof = false;
    bool progress = false;
};

nuv::SolveOptions SolveOptionsOf(const SolveArguments& options, ProgressLine& line)
{
    nuv::SolveOptions solve;
    if (options.maxPivots)
    {
        solve.limits.singlePrecisionPivots = *options.maxPivots;
        solve.limits.doublePivots = *options.maxPivots;
        solve.limits.exactPivots = *options.maxPivots;
    }
    solve.limits.seconds = options.timeLimit;
    solve.singlePrecisionOnly = options.floatOnly;
    solve.doublePrecisionOnly = options.noProof;
    solve.sensitivity = options.sensitivity;
    solve.numbers = options.numbers;
    solve.exact = options.exact;
    solve.uniqueness = options.exact || options.uniqueness;
    solve.limits.reportObjective = options.progress;
    solve.limits.keepGoing = [&line](const nuv::Progress& progress)
    {
        line.Show(progress);
        return !IsInterrupted();
    };
    return solve;
}

nuv::Solution Solve(const nuv::Model& model, std::optional<nuv::Basis> start,
                    const SolveArguments& options)
{
    ProgressLine line(options.progress);
    nuv::SolveOptions solve = SolveOptionsOf(options, line);
    solve.start = std::move(start);
    return nuv::Solve(model, solve);
}

/// The basis to start from, and what its reader has to say of it, which is printed.
nuv::BasisReadResult ReadBasis(const SolveArguments& options, const nuv::Model& model)
{
    nuv::BasisReadResult result;
    if (options.basisIn.empty())
        return result;
    const nuv::Result<std::string> text = nuv::ReadTextFile(options.basisIn);
    if (text)
        result = nuv::ReadMpsBasis(*text, nuv::DisplayName(options.basisIn), model);
    else
        result.diagnostics = {nuv::WithoutPlace(text.GetError())};
    PrintDiagnostics(result.diagnostics, options.quiet ? Show::Errors : Show::Warnings);
    return result;
}

/// Writes the last basis if it is asked for and there is one.
ExitCode WriteBasis(const SolveArguments& options, const nuv::Model& model,
                    const nuv::Solution& solution, ExitCode otherwise)
{
    if (options.basisOut.empty() || otherwise == ExitCode::CannotWrite)
        return otherwise;
    const nuv::Result<std::string> text = nuv::WriteMpsBasis(model, solution.basis);
    if (text)
        return WriteTo(options.basisOut, *text, otherwise);
    if (text.GetError().code == "basis.none")
    {
        std::fputs("nuvlp: there is no basis, so none is written\n", stderr);
        return otherwise;
    }
    PrintDiagnostics({nuv::WithoutPlace(text.GetError())}, Show::Errors);
    return ExitCode::CannotWrite;
}

ExitCode ExitCodeOfStatus(nuv::Status status, bool exitStatus)
{
    switch (status)
    {
    case nuv::Status::Optimal:
        return ExitCode::Success;
    case nuv::Status::Infeasible:
        return exitStatus ? ExitCode::Infeasible : ExitCode::Success;
    case nuv::Status::Unbounded:
        return exitStatus ? ExitCode::Unbounded : ExitCode::Success;
    case nuv::Status::Stopped:
        return ExitCode::Stopped;
    case nuv::Status::Invalid:
        break;
    }
    return ExitCode::Internal;
}

/// Writes the certificate if it is asked for and something is proved.
ExitCode WriteCertificate(const SolveArguments& options, const nuv::Model& model,
                          const nuv::Solution& solution, ExitCode otherwise)
{
    if (options.certificate.empty())
        return otherwise;
    if (!solution.certificate)
    {
        std::fputs("nuvlp: nothing is proved, so no certificate is written\n", stderr);
        return otherwise;
    }
    using namespace nuv::vipr;
    return WriteTo(options.certificate,
                   Write(CertificateOf(model, solution.numbers, *solution.certificate)), otherwise);
}

ExitCode Run(const SolveArguments& options)
{
    const nuv::ReadResult reading =
        ReadModel(options.source, options.quiet ? Show::Errors : Show::Warnings);
    if (!reading.Ok())
        return WriteError(options.output, nuv::kResultSchema, reading.diagnostics,
                          ExitCodeOf(reading.GetError()));
    nuv::BasisReadResult start = ReadBasis(options, *reading.model);
    if (!options.basisIn.empty() && !start.basis)
    {
        const auto error =
            std::ranges::find(start.diagnostics, nuv::Severity::Error, &nuv::Diagnostic::severity);
        return WriteError(options.output, nuv::kResultSchema, start.diagnostics,
                          ExitCodeOf(error->error));
    }
    CatchInterrupts();
    const nuv::Solution solution = Solve(*reading.model, std::move(start.basis), options);
    if (solution.status == nuv::Status::Invalid)
        return Report(options.output, nuv::kResultSchema, solution.failure, ExitCode::Internal);
    const nuv::Detail detail = options.quiet ? nuv::Detail::Verdict : nuv::Detail::Full;
    const std::string report = options.output.json
                                   ? nuv::JsonReport(*reading.model, solution, reading.diagnostics)
                                   : nuv::TextReport(*reading.model, solution, detail);
    const ExitCode code =
        WriteTo(options.output.path, report, ExitCodeOfStatus(solution.status, options.exitStatus));
    return code == ExitCode::CannotWrite
               ? code
               : WriteBasis(options, *reading.model, solution,
                            WriteCertificate(options, *reading.model, solution, code));
}

}  // namespace

Verb SolveVerb()
{
    const auto options = std::make_shared<SolveArguments>();
    Verb verb{.name = "solve",
              .text = "Solve a model and print the answer",
              .run = [options] { return Run(*options); },
              .schema = std::string(nuv::kResultSchema)};
    AddModelSource(verb, options->source);
    verb.Add({
        OutputOption(options->output, "RESULT"),
        {.names = {"--certificate"},
         .value = "CERTIFICATE",
         .text = "Write the proof there, in VIPR format, for other programs to check",
         .target = &options->certificate},
        {.names = {"--basis-in"},
         .value = "BASIS",
         .text = "Start from the basis in this file, in MPS basis format",
         .target = &options->basisIn},
        {.names = {"--basis-out"},
         .value = "BASIS",
         .text = "Write the last basis there, in MPS basis format",
         .target = &options->basisOut},
        NumbersOption([options](nuv::CoefficientMeaning numbers) { options->numbers = numbers; }),
        MaxPivotsOption(options->maxPivots),
        TimeLimitOption(options->timeLimit),
        {.names = {"--exit-status"},
         .text = "Exit with 2 if infeasible and 3 if unbounded",
         .target = &options->exitStatus},
        {.names = {"-q", "--quiet"},
         .text = "Print status and objective only, and no warnings",
         .target = &options->quiet},
        JsonOption(options->output, "result"),
        {.names = {"--progress"},
         .text = "Show on the terminal how far the solve is",
         .target = &options->progress},
        {.names = {"--exact"},
         .text = "Show values and prices as fractions, and whether others are optimal",
         .target = &options->exact},
        {.names = {"--uniqueness"},
         .text = "Decide whether another point, or other duals, are optimal too",
         .target = &options->uniqueness},
        {.names = {"--sensitivity"},
         .text = "Find how far each cost and each side of a row may move",
         .target = &options->sensitivity},
        {.names = {"--float-only"},
         .text = "Solve in single precision and stop there: nothing is proved",
         .target = &options->floatOnly,
         .excludes = {{"--exact", kComesWithProof},
                      {"--uniqueness", kComesWithProof},
                      {"--sensitivity", kComesWithProof},
                      {"--basis-in", "single precision starts from a basis of its own"}}},
        {.names = {"--no-proof"},
         .text = "Believe the simplex in double precision: nothing is proved",
         .target = &options->noProof,
         .excludes = {{"--exact", kComesWithProof},
                      {"--uniqueness", kComesWithProof},
                      {"--sensitivity", kComesWithProof},
                      {"--float-only"}}},
    });
    return verb;
}

}  // namespace nuvlp
