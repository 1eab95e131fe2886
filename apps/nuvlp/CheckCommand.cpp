// nuvlp check FILE: reads a model and says what is odd about it, without solving it.
#include "Commands.hpp"
#include "Input.hpp"
#include "Output.hpp"

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

std::string Sizes(const nuv::Model& model)
{
    return fmt::format("rows         {}\nvariables    {}\nnonzeros     {}\nsense        {}\n",
                       model.RowCount(), model.VariableCount(), model.NonzeroCount(),
                       model.ObjectiveSense() == nuv::Sense::Maximize ? "maximise" : "minimise");
}

std::string Scales(const nuv::Model& model)
{
    return fmt::format("\nmagnitudes\n  objective     {}\n  coefficients  {}\n  row sides     {}\n "
                       " bounds        {}\n",
                       MagnitudesOf(model.Objective()).Words(),
                       MagnitudesOf(model.Coefficients()).Words(),
                       MagnitudesOf(model.RowLower(), model.RowUpper()).Words(),
                       MagnitudesOf(model.VariableLower(), model.VariableUpper()).Words());
}

std::string Rounding(const nuv::Model& model)
{
    const nuv::Canonicalisation canonicalised = nuv::ToCanonicalForm(nuv::FormOf(model));
    const nuv::Binary32Report report = nuv::ReportBinary32(canonicalised);
    std::string text =
        fmt::format("\nin single precision\n  canonical form   {} rows, {} columns\n"
                    "  not exact        {} of {} numbers, by at most {} of their size\n",
                    canonicalised.form.rows, canonicalised.form.columns, report.inexact,
                    report.numbers, report.largestRelativeChange);
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

ExitCode Run(const ModelSource& source)
{
    const nuv::ReadResult reading = ReadModel(source, Show::Notes);
    if (!reading.Ok())
        return ExitCodeOf(reading.GetError());
    const nuv::Model& model = *reading.model;
    return WriteOutput(Sizes(model) + Scales(model) + Rounding(model), ExitCode::Success);
}

}  // namespace

Verb CheckVerb()
{
    const auto source = std::make_shared<ModelSource>();
    Verb verb{.name = "check", .text = "Say what is odd about a model file", .run = [source] {
                  return Run(*source);
              }};
    AddModelSource(verb, *source);
    return verb;
}

}  // namespace nuvlp
