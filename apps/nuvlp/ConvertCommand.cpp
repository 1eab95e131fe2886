// nuvlp convert FILE -o MODEL: reads a model in one format and writes it in another.
#include "Commands.hpp"
#include "Input.hpp"
#include "Output.hpp"

#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Io/Mps/MpsWriter.hpp"

#include <cstdio>
#include <memory>

namespace nuvlp
{
namespace
{

struct Options
{
    ModelSource source;
    std::string output;
    std::string format;
};

/// The format asked for, or else the one that the output's name ends with.
nuv::Writing Write(const nuv::Model& model, const Options& options)
{
    const std::string format =
        !options.format.empty()
            ? options.format
            : (nuv::FormatOf("", options.output) == nuv::ModelFormat::Mps ? "mps" : "lp");
    if (format == "lp")
        return nuv::WriteLp(model);
    return nuv::WriteMps(model, format == "mps-fixed"  ? nuv::MpsForm::Fixed
                                : format == "mps-free" ? nuv::MpsForm::Free
                                                       : nuv::MpsForm::ByContent);
}

ExitCode Run(const Options& options)
{
    if (options.format.empty() && (options.output.empty() || options.output == "-"))
    {
        std::fputs("nuvlp: say which format to write: --to lp, mps, mps-fixed or mps-free\n",
                   stderr);
        return ExitCode::Usage;
    }
    const nuv::Reading reading = ReadModel(options.source, Show::Warnings);
    if (!reading.Ok())
        return ExitCodeOf(reading.GetError());
    const nuv::Writing writing = Write(*reading.model, options);
    PrintDiagnostics(writing.diagnostics, Show::Warnings);
    if (!writing.Ok())
        return ExitCode::BadModel;
    return WriteTo(options.output, *writing.text, ExitCode::Success);
}

}  // namespace

Verb ConvertVerb()
{
    const auto options = std::make_shared<Options>();
    Verb verb{.name = "convert", .text = "Write a model in another format", .run = [options] {
                  return Run(*options);
              }};
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
         .choices = {"lp", "mps", "mps-fixed", "mps-free"}},
    });
    return verb;
}

}  // namespace nuvlp
