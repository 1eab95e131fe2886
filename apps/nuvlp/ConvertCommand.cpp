// nuvlp convert FILE -o MODEL: reads a model in one format and writes it in another.
#include "Commands.hpp"
#include "Input.hpp"
#include "Output.hpp"

#include "Nuv/Io/LetterCase.hpp"
#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Io/Mps/MpsWriter.hpp"
#include "Nuv/Io/Smt/SmtWriter.hpp"
#include "Nuv/Report/JsonReport.hpp"
#include "Nuv/Report/JsonWriter.hpp"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace nuvlp
{
namespace
{

constexpr std::string_view kConvertSchema = "nuvlp/conversion/1";

struct ConvertArguments
{
    ModelSource source;
    std::string output;
    std::string format;
    bool json = false;
};

/// The format asked for, or else the one that the output's name ends with; empty if that tells
/// none.
std::string FormatOf(const ConvertArguments& options)
{
    if (!options.format.empty())
        return options.format;
    const std::string ending = std::filesystem::path(options.output).extension().string();
    for (const auto& [known, format] :
         {std::pair(".lp", "lp"), std::pair(".mps", "mps"), std::pair(".smt2", "smt2")})
        if (nuv::EqualsIgnoringCase(ending, known))
            return format;
    return {};
}

nuv::WriteResult Write(const nuv::Model& model, const std::string& format)
{
    if (format == "lp")
        return nuv::WriteLp(model);
    if (format == "smt2")
        return {.text = nuv::WriteSmt(model), .diagnostics = {}};
    return nuv::WriteMps(model, format == "mps-fixed"  ? nuv::MpsForm::Fixed
                                : format == "mps-free" ? nuv::MpsForm::Free
                                                       : nuv::MpsForm::ByContent);
}

/// @return why nothing can be written there; empty if something can.
std::string Objection(const ConvertArguments& options, const std::string& format)
{
    if (options.output.ends_with(".gz"))
        return "what is written is not compressed: leave out .gz, and run gzip on it";
    if (format.empty())
        return "say which format to write: --to lp, mps, mps-fixed, mps-free or smt2";
    if (options.json && (options.output.empty() || options.output == "-"))
        return "--json writes to standard output: name a file for the model, -o MODEL";
    return {};
}

/// What was written, and what cannot be said in the format.
std::string ConversionJson(const nuv::Model& model, const std::string& format,
                           std::vector<nuv::Diagnostic> remarks,
                           const std::vector<nuv::Diagnostic>& ofWriter)
{
    nuv::Json json = nuv::OpenReport(kConvertSchema);
    nuv::WriteModel(json, model);
    json.Key("format").Text(format);
    remarks.insert(remarks.end(), ofWriter.begin(), ofWriter.end());
    nuv::WriteDiagnostics(json, "warnings", remarks, nuv::Severity::Warning);
    return json.Close('}').Finish();
}

ExitCode Run(const ConvertArguments& options)
{
    const Output report{"", options.json};
    const std::string format = FormatOf(options);
    const std::string objection = Objection(options, format);
    if (!objection.empty())
        return Report(report, kConvertSchema, UsageError(objection), ExitCode::Usage);
    const nuv::ReadResult reading = ReadModel(options.source, Show::Warnings);
    if (!reading.Ok())
        return WriteError(report, kConvertSchema, reading.diagnostics,
                          ExitCodeOf(reading.GetError()));
    const nuv::WriteResult writing = Write(*reading.model, format);
    PrintDiagnostics(writing.diagnostics, Show::Warnings);
    if (!writing.Ok())
        return WriteError(report, kConvertSchema, writing.diagnostics, ExitCode::BadModel);
    const ExitCode code = WriteTo(options.output, *writing.text, ExitCode::Success);
    if (code != ExitCode::Success)
    {
        const nuv::Error error{
            "file.unwritable", "the model cannot be written there", "", options.output, 0, 0};
        return WriteError(report, kConvertSchema, std::vector{nuv::WithoutPlace(error)}, code);
    }
    return !options.json ? code
                         : WriteOutput(ConversionJson(*reading.model, format, reading.diagnostics,
                                                      writing.diagnostics),
                                       code);
}

}  // namespace

Verb ConvertVerb()
{
    const auto options = std::make_shared<ConvertArguments>();
    Verb verb{.name = "convert",
              .text = "Write a model in another format",
              .run = [options] { return Run(*options); },
              .schema = std::string(kConvertSchema)};
    AddModelSource(verb, options->source);
    verb.Add({
        {.names = {"-o", "--output"},
         .value = "MODEL",
         .text = "The file to write; standard output if not given",
         .target = &options->output},
        {.names = {"--to"},
         .value = "FORMAT",
         .text = "The format to write; by the end of the output's name if not given",
         .target = &options->format,
         .choices = {"lp", "mps", "mps-fixed", "mps-free", "smt2"}},
        {.names = {"--json"},
         .text = "Say as JSON what was written, or why nothing was",
         .target = &options->json},
    });
    return verb;
}

}  // namespace nuvlp
