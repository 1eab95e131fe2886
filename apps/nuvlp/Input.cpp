#include "Input.hpp"

#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Report/Words.hpp"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include <unistd.h>

namespace nuvlp
{
namespace
{

bool WantsColour()
{
    // https://no-color.org: any value turns colour off.
    return isatty(STDERR_FILENO) != 0 && std::getenv("NO_COLOR") == nullptr;
}

}  // namespace

void PrintDiagnostics(const std::vector<nuv::Diagnostic>& diagnostics, Show least)
{
    const bool colour = WantsColour();
    for (const nuv::Diagnostic& diagnostic : diagnostics)
    {
        const bool shown =
            diagnostic.severity == nuv::Severity::Error ||
            (diagnostic.severity == nuv::Severity::Warning && least != Show::Errors) ||
            least == Show::Notes;
        if (shown)
            std::fputs(nuv::Render(diagnostic, colour).c_str(), stderr);
    }
}

ExitCode ExitCodeOf(const nuv::Error& error)
{
    const bool unopened = error.code == "file.missing" || error.code == "file.directory" ||
                          error.code == "file.permission" || error.code == "file.unreadable";
    return unopened ? ExitCode::NoInput : ExitCode::BadModel;
}

void AddModelSource(Verb& verb, ModelSource& source)
{
    nuv::ReadOptions& read = source.options;
    const auto form = [&read](nuv::MpsForm value)
    { return [&read, value](const std::string&) { read.mpsForm = value; }; };
    verb.positionals.push_back(
        {.names = {"FILE"},
         .value = "FILE",
         .text = "The model, in CPLEX-LP or MPS format, plain or gzipped; - is standard input",
         .target = &source.file});
    verb.Add({
        {.names = {"--relax"},
         .text = "Read integer variables as continuous ones",
         .target = &read.relax},
        {.names = {"--mps-fixed"},
         .text = "Read MPS fields by their columns",
         .target = form(nuv::MpsForm::Fixed)},
        {.names = {"--mps-free"},
         .text = "Read MPS fields by the blanks between them",
         .target = form(nuv::MpsForm::Free),
         .excludes = {{"--mps-fixed"}}},
        {.names = {"--mps-objective-constant"},
         .value = "SIGN",
         .text = "What the right-hand side of an MPS objective row is: the constant or its "
                 "negative",
         .target = [&read](const std::string& sign) { read.mpsConstantPlus = sign == "plus"; },
         .choices = {"plus", "minus"}},
        {.names = {"--mps-sense-comment"},
         .text = "Obey a comment *SENSE:Maximize in an MPS file",
         .target = &read.mpsSenseComment},
    });
}

Option NumbersOption(std::function<void(nuv::CoefficientMeaning)> use)
{
    return {.names = {"--numbers"},
            .value = "WHICH",
            .text = "What a decimal of the model stands for: itself as it is written, or the "
                    "nearest double, as it is stored",
            .target =
                [use = std::move(use)](const std::string& word)
            {
                use(nuv::FromWord<nuv::CoefficientMeaning>(word).value_or(
                    nuv::CoefficientMeaning::ShortestDecimal));
            },
            .choices = nuv::AllWords<nuv::CoefficientMeaning>()};
}

Option MaxPivotsOption(std::optional<std::uint64_t>& pivots)
{
    return {.names = {"--max-pivots"},
            .value = "N",
            .text = "Stop a stage of the solve after so many pivots",
            .target = &pivots};
}

Option TimeLimitOption(double& seconds)
{
    return {.names = {"--time-limit"},
            .value = "SECONDS",
            .text = "Stop after so many seconds",
            .target = &seconds};
}

nuv::ReadResult ReadModel(const ModelSource& source, Show least)
{
    nuv::ReadResult reading = nuv::ReadModelFile(source.file, source.options);
    PrintDiagnostics(reading.diagnostics, least);
    return reading;
}

}  // namespace nuvlp
