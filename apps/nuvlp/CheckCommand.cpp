// nuvlp check FILE: reads a model and says what is odd about it, without solving it.
#include "Commands.hpp"
#include "Input.hpp"
#include "Output.hpp"
#include "Stopwatch.hpp"

#include "Nuv/Report/JsonReport.hpp"
#include "Nuv/Report/JsonWriter.hpp"
#include "Nuv/Report/Words.hpp"
#include "Nuv/Solve/CanonicalForm.hpp"
#include "Nuv/Solve/ModelForm.hpp"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace nuvlp
{
namespace
{

constexpr std::string_view kCheckSchema = "nuvlp/check/1";

struct CheckArguments
{
    ModelSource source;
    Output output;
};

struct Magnitudes
{
    double smallest = 0.0;
    double largest = 0.0;

    void Include(double value)
    {
        const double magnitude = std::fabs(value);
        if (magnitude == 0.0 || std::isinf(magnitude))
            return;
        smallest = largest == 0.0 ? magnitude : std::min(smallest, magnitude);
        largest = std::max(largest, magnitude);
    }

    [[nodiscard]] std::string Words() const
    {
        return largest == 0.0 ? "none" : fmt::format("{} .. {}", smallest, largest);
    }
};

template <class... Spans>
Magnitudes MagnitudesOf(const Spans&... spans)
{
    Magnitudes magnitudes;
    const auto include = [&](double value) { magnitudes.Include(value); };
    (std::ranges::for_each(spans, include), ...);
    return magnitudes;
}

/// What is looked at.
struct Findings
{
    explicit Findings(const nuv::Model& model)
        : objective(MagnitudesOf(model.Objective())),
          coefficients(MagnitudesOf(model.Coefficients())),
          sides(MagnitudesOf(model.RowLower(), model.RowUpper())),
          bounds(MagnitudesOf(model.VariableLower(), model.VariableUpper())),
          canonicalised(nuv::ToCanonicalForm(nuv::FormOf(model))),
          rounding(nuv::ReportBinary32(canonicalised))
    {
    }

    Magnitudes objective;
    Magnitudes coefficients;
    Magnitudes sides;
    Magnitudes bounds;
    nuv::Canonicalisation canonicalised;
    nuv::Binary32Report rounding;
};

std::string CheckText(const nuv::Model& model, const Findings& found)
{
    const nuv::Binary32Report& report = found.rounding;
    std::string text = fmt::format(
        "rows         {}\nvariables    {}\nnonzeros     {}\nsense        {}\n", model.RowCount(),
        model.VariableCount(), model.NonzeroCount(), nuv::WordOf(model.ObjectiveSense()));
    text += fmt::format("\nmagnitudes\n  objective     {}\n  coefficients  {}\n"
                        "  row sides     {}\n  bounds        {}\n",
                        found.objective.Words(), found.coefficients.Words(), found.sides.Words(),
                        found.bounds.Words());
    text += fmt::format("\nin single precision\n  canonical form   {} rows, {} columns\n"
                        "  not exact        {} of {} numbers, by at most {} of their size\n",
                        found.canonicalised.form.rows, found.canonicalised.form.columns,
                        report.inexact, report.numbers, report.largestRelativeChange);
    if (report.overflowing != 0)
        text += fmt::format(
            "  too large        {} numbers, the first {}{}\n", report.overflowing,
            report.row == nuv::kNoIndex ? std::string("outside the rows")
                                        : fmt::format("in row '{}'", model.RowName(report.row)),
            report.column == nuv::kNoIndex
                ? std::string()
                : fmt::format(" at variable '{}'", model.VariableName(report.column)));
    return text;
}

void WriteMagnitudes(nuv::Json& json, std::string_view key, const Magnitudes& magnitudes)
{
    json.Key(key);
    if (magnitudes.largest == 0.0)
        json.Raw("null");
    else
        json.Open('[').Number(magnitudes.smallest).Number(magnitudes.largest).Close(']');
}

void WriteRounding(nuv::Json& json, const nuv::Model& model, const Findings& found)
{
    const nuv::Binary32Report& report = found.rounding;
    json.Key("single_precision").Open('{');
    json.Key("rows").Count(found.canonicalised.form.rows);
    json.Key("columns").Count(found.canonicalised.form.columns);
    json.Key("numbers").Count(report.numbers).Key("inexact").Count(report.inexact);
    json.Key("largest_relative_change").Number(report.largestRelativeChange);
    json.Key("overflowing").Count(report.overflowing);
    if (report.overflowing != 0)
    {
        json.Key("first_overflow").Open('{');
        nuv::WriteTextOrNull(json, "row",
                             report.row == nuv::kNoIndex ? "" : model.RowName(report.row));
        nuv::WriteTextOrNull(json, "variable",
                             report.column == nuv::kNoIndex ? ""
                                                            : model.VariableName(report.column));
        json.Close('}');
    }
    json.Close('}');
}

std::string CheckJson(const nuv::Model& model, const Findings& found, double seconds,
                      const std::vector<nuv::Diagnostic>& diagnostics)
{
    nuv::Json json = nuv::OpenReport(kCheckSchema);
    nuv::WriteModel(json, model);
    json.Key("magnitudes").Open('{');
    WriteMagnitudes(json, "objective", found.objective);
    WriteMagnitudes(json, "coefficients", found.coefficients);
    WriteMagnitudes(json, "row_sides", found.sides);
    WriteMagnitudes(json, "bounds", found.bounds);
    json.Close('}');
    WriteRounding(json, model, found);
    nuv::WriteSeconds(json, seconds);
    nuv::WriteDiagnostics(json, "remarks", diagnostics, nuv::Severity::Note);
    return json.Close('}').Finish();
}

ExitCode Run(const CheckArguments& options)
{
    const nuv::ReadResult reading = ReadModel(options.source, Show::Notes);
    if (!reading.Ok())
        return WriteError(options.output, kCheckSchema, reading.diagnostics,
                          ExitCodeOf(reading.GetError()));
    const nuv::Model& model = *reading.model;
    const Stopwatch stopwatch;
    const Findings found(model);
    const double seconds = stopwatch.Seconds();
    return WriteOutput(options.output.json ? CheckJson(model, found, seconds, reading.diagnostics)
                                           : CheckText(model, found),
                       ExitCode::Success);
}

}  // namespace

Verb CheckVerb()
{
    const auto options = std::make_shared<CheckArguments>();
    Verb verb{.name = "check",
              .text = "Say what is odd about a model file",
              .run = [options] { return Run(*options); },
              .schema = std::string(kCheckSchema)};
    AddModelSource(verb, options->source);
    verb.Add({{.names = {"--json"},
               .text = "Write what is found as JSON, for programs",
               .target = &options->output.json}});
    return verb;
}

}  // namespace nuvlp
