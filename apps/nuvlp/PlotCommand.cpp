// nuvlp plot FILE -o PICTURE: solves, and draws the model with its solution.
#include "Commands.hpp"
#include "Input.hpp"
#include "Interrupts.hpp"
#include "Output.hpp"

#include "apps/nuvlp/plot/Picture.hpp"
#include "Nuv/Io/LetterCase.hpp"

#include <fmt/core.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace nuvlp
{
namespace
{

struct PlotArguments
{
    ModelSource source;
    std::string output;
    double timeLimit = 60.0;
    nuv::CoefficientMeaning numbers = nuv::CoefficientMeaning::ShortestDecimal;
};

/// Another program would take the file for what its name says.
void WarnOfOtherFormat(const std::string& path)
{
    const std::string ending = std::filesystem::path(path).extension().string();
    for (const std::string_view other : {".png", ".jpg", ".jpeg", ".gif", ".pdf", ".eps"})
        if (nuv::EqualsIgnoringCase(ending, other))
            fmt::print(stderr, "nuvlp: {} is written as SVG, which its name does not say\n", path);
}

ExitCode Run(const PlotArguments& options)
{
    const nuv::ReadResult reading = ReadModel(options.source, Show::Warnings);
    if (!reading.Ok())
        return ExitCodeOf(reading.GetError());
    nuv::SolveOptions solve;
    solve.recordPath = true;
    solve.numbers = options.numbers;
    solve.limits.seconds = options.timeLimit;
    CatchInterrupts();
    solve.limits.keepGoing = [](const nuv::Progress&) { return !IsInterrupted(); };
    const nuv::Solution solution = nuv::Solve(*reading.model, solve);
    const bool isStopped = solution.status == nuv::Status::Stopped;
    WarnOfOtherFormat(options.output);
    return WriteTo(options.output, nuv::DrawPicture(*reading.model, solution),
                   isStopped ? ExitCode::Stopped : ExitCode::Success);
}

}  // namespace

Verb PlotVerb()
{
    const auto options = std::make_shared<PlotArguments>();
    Verb verb{.name = "plot", .text = "Draw a model and its solution as SVG", .run = [options] {
                  return Run(*options);
              }};
    AddModelSource(verb, options->source);
    verb.Add({
        {.names = {"-o", "--output"},
         .value = "PICTURE",
         .text = "The picture; standard output if not given",
         .target = &options->output},
        NumbersOption([options](nuv::CoefficientMeaning numbers) { options->numbers = numbers; }),
        {.names = {"--time-limit"},
         .value = "SECONDS",
         .text = "Stop solving after so many seconds",
         .target = &options->timeLimit,
         .standard = "60"},
    });
    return verb;
}

}  // namespace nuvlp
