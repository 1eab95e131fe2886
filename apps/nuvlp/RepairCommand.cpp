// nuvlp repair FILE: the least change of sides and bounds that makes an infeasible model feasible.
#include "Commands.hpp"
#include "Input.hpp"
#include "Interrupts.hpp"
#include "Output.hpp"

#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Report/JsonReport.hpp"
#include "Nuv/Report/TextReport.hpp"
#include "Nuv/Solve/Repair.hpp"
#include "Nuv/Vipr/Certify.hpp"
#include "Nuv/Vipr/Text.hpp"

#include <fmt/core.h>

#include <charconv>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

namespace nuvlp
{
namespace
{

struct RepairArguments
{
    ModelSource source;
    Output output;
    std::string repaired;
    std::string elastic;
    std::string certificate;
    nuv::CoefficientMeaning numbers = nuv::CoefficientMeaning::ShortestDecimal;
    std::vector<std::string> weights;  ///< NAME=W
    std::vector<std::string> kept;     ///< NAME
    std::optional<std::uint64_t> maxPivots;
    double timeLimit = std::numeric_limits<double>::infinity();
    bool exitStatus = false;
    bool quiet = false;
};

/// Gives the row and the variable of a name, of which there is one at least, a weight.
std::optional<nuv::Error> Weigh(const nuv::Model& model, const std::string& name, double weight,
                                nuv::RepairOptions& repair)
{
    const std::optional<nuv::Variable> variable = model.FindVariable(name);
    const std::optional<nuv::Row> row = model.FindRow(name);
    if (!variable && !row)
        return UsageError(fmt::format("the model has no row and no variable '{}'", name),
                          "names count in their letter case");
    if (variable)
        repair.weights.push_back({*variable, weight});
    if (row)
        repair.weights.push_back({*row, weight});
    return std::nullopt;
}

/// "NAME=W"; the name may have a = of its own.
std::optional<nuv::Error> WeighAsSaid(const nuv::Model& model, const std::string& said,
                                      nuv::RepairOptions& repair)
{
    const std::size_t sign = said.rfind('=');
    double weight = 0.0;
    const char* const end = said.data() + said.size();
    if (sign == std::string::npos ||
        std::from_chars(said.data() + sign + 1, end, weight).ptr != end || !(weight > 0.0) ||
        weight > std::numeric_limits<double>::max())
        return UsageError(
            fmt::format("--weight takes NAME=W with a positive number, not '{}'", said),
            "--keep NAME says that something stays");
    return Weigh(model, said.substr(0, sign), weight, repair);
}

nuv::Result<nuv::RepairOptions> RepairOptionsOf(const nuv::Model& model,
                                                const RepairArguments& options)
{
    nuv::RepairOptions repair;
    repair.numbers = options.numbers;
    repair.limits.seconds = options.timeLimit;
    repair.certificate = !options.elastic.empty() || !options.certificate.empty();
    if (options.maxPivots)
        repair.limits.doublePivots = repair.limits.exactPivots = *options.maxPivots;
    repair.limits.keepGoing = [](const nuv::Progress&) { return !IsInterrupted(); };
    for (const std::string& said : options.weights)
        if (std::optional<nuv::Error> error = WeighAsSaid(model, said, repair))
            return *error;
    for (const std::string& name : options.kept)
        if (std::optional<nuv::Error> error = Weigh(model, name, nuv::Infinity, repair))
            return *error;
    return repair;
}

ExitCode ExitCodeOfStatus(const nuv::RepairResult& repair, bool exitStatus)
{
    if (repair.status == nuv::Status::Optimal)
        return ExitCode::Success;
    if (repair.status == nuv::Status::Infeasible)
        return exitStatus ? ExitCode::Infeasible : ExitCode::Success;
    return ExitCode::Stopped;
}

/// Writes a model if it is asked for and there is one.
ExitCode WriteModelTo(const std::string& path, const std::optional<nuv::Model>& model,
                      ExitCode otherwise)
{
    if (path.empty() || !model || otherwise == ExitCode::CannotWrite ||
        otherwise == ExitCode::BadModel)
        return otherwise;
    const nuv::WriteResult writing = nuv::WriteModel(*model, path);
    PrintDiagnostics(writing.diagnostics, Show::Warnings);
    return writing.Ok() ? WriteTo(path, *writing.text, otherwise) : ExitCode::BadModel;
}

/// The same of the proof.
ExitCode WriteCertificate(const RepairArguments& options, const nuv::RepairResult& repair,
                          ExitCode otherwise)
{
    if (options.certificate.empty() || otherwise == ExitCode::CannotWrite)
        return otherwise;
    if (!repair.elastic)
    {
        std::fputs("nuvlp: nothing is proved, so no certificate is written\n", stderr);
        return otherwise;
    }
    return WriteTo(options.certificate,
                   nuv::vipr::Write(nuv::vipr::CertificateOf(*repair.elastic, repair.numbers,
                                                             *repair.certificate)),
                   otherwise);
}

ExitCode Run(const RepairArguments& options)
{
    const nuv::ReadResult reading =
        ReadModel(options.source, options.quiet ? Show::Errors : Show::Warnings);
    if (!reading.Ok())
        return WriteError(options.output, nuv::kRepairSchema, reading.diagnostics,
                          ExitCodeOf(reading.GetError()));
    const nuv::Model& model = *reading.model;
    const nuv::Result<nuv::RepairOptions> asked = RepairOptionsOf(model, options);
    if (!asked)
        return Report(options.output, nuv::kRepairSchema, asked.GetError(), ExitCode::Usage);
    CatchInterrupts();
    const nuv::RepairResult repair = nuv::Repair(model, *asked);
    if (repair.status == nuv::Status::Invalid)
        return Report(options.output, nuv::kRepairSchema, repair.failure, ExitCode::Internal);
    ExitCode code =
        WriteTo(options.output.path,
                options.output.json ? nuv::RepairJson(model, repair, reading.diagnostics)
                                    : nuv::RepairText(model, repair),
                ExitCodeOfStatus(repair, options.exitStatus));
    code = WriteModelTo(options.repaired, repair.model, code);
    code = WriteModelTo(options.elastic, repair.elastic, code);
    return WriteCertificate(options, repair, code);
}

}  // namespace

Verb RepairVerb()
{
    const auto options = std::make_shared<RepairArguments>();
    Verb verb{.name = "repair",
              .text = "Find the least change that makes an infeasible model feasible",
              .run = [options] { return Run(*options); },
              .schema = std::string(nuv::kRepairSchema)};
    AddModelSource(verb, options->source);
    verb.Add({
        {.names = {"--weight"},
         .value = "NAME=W",
         .text = "Count each unit of change of this row or variable W times; as often as needed",
         .target = [options](const std::string& text) { options->weights.push_back(text); },
         .repeats = true},
        {.names = {"--keep"},
         .value = "NAME",
         .text = "Leave this row or variable as it is; as often as needed",
         .target = [options](const std::string& text) { options->kept.push_back(text); },
         .repeats = true},
        {.names = {"--write"},
         .value = "MODEL",
         .text = "Write the repaired model there, as MPS if the name ends in .mps, else as LP",
         .target = &options->repaired},
        {.names = {"--certificate"},
         .value = "FILE",
         .text = "Write the proof that no smaller change is enough there, in VIPR format",
         .target = &options->certificate},
        {.names = {"--elastic"},
         .value = "MODEL",
         .text = "Write the model there that the certificate is about; LP or MPS as above",
         .target = &options->elastic},
        OutputOption(options->output, "RESULT"),
        NumbersOption([options](nuv::CoefficientMeaning numbers) { options->numbers = numbers; }),
        MaxPivotsOption(options->maxPivots),
        TimeLimitOption(options->timeLimit),
        {.names = {"--exit-status"},
         .text = "Exit with 2 if what has to stay excludes itself",
         .target = &options->exitStatus},
        {.names = {"-q", "--quiet"}, .text = "Print no warnings", .target = &options->quiet},
        JsonOption(options->output, "result"),
    });
    return verb;
}

}  // namespace nuvlp
