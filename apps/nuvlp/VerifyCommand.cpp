// nuvlp verify MODEL CERTIFICATE: checks, without solving, that a certificate proves its verdict.
#include "Commands.hpp"
#include "Input.hpp"
#include "Output.hpp"
#include "Stopwatch.hpp"

#include "Nuv/Io/NumberText.hpp"
#include "Nuv/Io/TextFile.hpp"
#include "Nuv/Report/JsonReport.hpp"
#include "Nuv/Report/JsonWriter.hpp"
#include "Nuv/Report/Words.hpp"
#include "Nuv/Vipr/Text.hpp"
#include "Nuv/Vipr/Verify.hpp"

#include <fmt/core.h>

#include <cstdio>
#include <memory>

namespace nuvlp
{
namespace
{

constexpr std::string_view kVerifySchema = "nuvlp/verification/1";

struct VerifyArguments
{
    ModelSource source;
    std::string certificate;
    nuv::CoefficientMeaning numbers = nuv::CoefficientMeaning::ShortestDecimal;
    Output output;
    bool quiet = false;
};

using nuv::vipr::Verification;

std::string_view StatusWord(nuv::vipr::Goal goal)
{
    constexpr std::string_view kWords[] = {"infeasible", "optimal", "unbounded"};
    return kWords[static_cast<std::size_t>(goal)];
}

std::string VerificationText(const Verification& result)
{
    if (!result.defect.empty())
        return fmt::format("proof      refused: {}\n", result.defect);
    if (!result.objective)
        return fmt::format("status     {}\nproof      verified as {}\n", StatusWord(result.goal),
                           nuv::WordOf(result.numbers));
    return fmt::format("status     {}\nobjective  {}\nproof      verified as {}, exactly {}\n",
                       StatusWord(result.goal), nuv::NumberText(nuv::ToDouble(*result.objective)),
                       nuv::WordOf(result.numbers), nuv::ToString(*result.objective));
}

std::string VerificationJson(const nuv::Model& model, const Verification& result, double seconds)
{
    const bool holds = result.defect.empty();
    nuv::Json json = nuv::OpenReport(kVerifySchema);
    nuv::WriteModel(json, model);
    json.Key("numbers").Text(nuv::WordOf(result.numbers));
    json.Key("verdict").Text(holds ? "verified" : "refused");
    if (!holds)
        json.Key("defect").Text(result.defect);
    else
        json.Key("status").Text(StatusWord(result.goal));
    if (result.objective)
    {
        json.Key("objective").Number(nuv::ToDouble(*result.objective));
        json.Key("exact_objective").Text(nuv::ToString(*result.objective));
    }
    nuv::WriteSeconds(json, seconds);
    return json.Close('}').Finish();
}

ExitCode Run(const VerifyArguments& options)
{
    if (options.source.file == "-" && options.certificate == "-")
        return Report(options.output, kVerifySchema,
                      UsageError("only one of model and certificate can come from standard input"),
                      ExitCode::Usage);
    const nuv::ReadResult reading =
        ReadModel(options.source, options.quiet ? Show::Errors : Show::Warnings);
    if (!reading.Ok())
        return WriteError(options.output, kVerifySchema, reading.diagnostics,
                          ExitCodeOf(reading.GetError()));
    const nuv::Result<std::string> text = nuv::ReadTextFile(options.certificate);
    if (!text)
        return Report(options.output, kVerifySchema, text.GetError(), ExitCodeOf(text.GetError()));
    const nuv::Result<nuv::vipr::Certificate> certificate =
        nuv::vipr::Read(*text, nuv::DisplayName(options.certificate));
    if (!certificate)
        return Report(options.output, kVerifySchema, certificate.GetError(), ExitCode::BadModel);
    const Stopwatch stopwatch;
    const Verification result = nuv::vipr::Verify(*reading.model, options.numbers, *certificate);
    const double seconds = stopwatch.Seconds();
    return WriteTo(options.output.path,
                   options.output.json ? VerificationJson(*reading.model, result, seconds)
                                       : VerificationText(result),
                   result.defect.empty() ? ExitCode::Success : ExitCode::Refuted);
}

}  // namespace

Verb VerifyVerb()
{
    const auto options = std::make_shared<VerifyArguments>();
    Verb verb{.name = "verify",
              .text = "Check a certificate without solving",
              .run = [options] { return Run(*options); },
              .schema = std::string(kVerifySchema)};
    AddModelSource(verb, options->source);
    verb.positionals.push_back({.names = {"CERTIFICATE"},
                                .value = "CERTIFICATE",
                                .text = "The certificate, in VIPR format: what solve --certificate "
                                        "wrote, or another program",
                                .target = &options->certificate});
    verb.Add({
        NumbersOption([options](nuv::CoefficientMeaning numbers) { options->numbers = numbers; }),
        OutputOption(options->output, "REPORT"),
        JsonOption(options->output, "report"),
        {.names = {"-q", "--quiet"}, .text = "Print no warnings", .target = &options->quiet},
    });
    return verb;
}

}  // namespace nuvlp
