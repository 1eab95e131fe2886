#include "Nuv/Report/ClaimText.hpp"

#include "Nuv/Report/TextReport.hpp"
#include "Nuv/Report/Words.hpp"

#include "Nuv/Io/NumberText.hpp"
#include "Nuv/Report/JsonReport.hpp"
#include "Nuv/Report/JsonWriter.hpp"

#include <fmt/core.h>

namespace nuv
{
namespace
{

std::string PivotWords(std::uint64_t pivots)
{
    return fmt::format("{} {}", pivots, pivots == 1 ? "pivot" : "pivots");
}

std::string EvidenceWords(const ClaimReport& report)
{
    switch (report.evidence)
    {
    case Evidence::Values:
        return "the values themselves";
    case Evidence::Certificate:
        return "the certificate in the file, exact as it stands";
    case Evidence::Basis:
        return "from the basis in the file, " + PivotWords(report.pivots);
    case Evidence::Iis:
        return "by the infeasible subsystem in the file, " + PivotWords(report.pivots);
    case Evidence::Solve:
        return "by a solve, " + PivotWords(report.pivots);
    case Evidence::None:
        break;
    }
    return "none";
}

std::string PointWords(const ClaimReport& report)
{
    const std::string text = report.violated.empty()
                                 ? "within all rows and bounds, exactly"
                                 : fmt::format("{} is beyond its bound by {}, nothing by more",
                                               report.violated, NumberText(report.violation));
    return report.unnamed == 0
               ? text
               : fmt::format("{}; {} without a value, taken for 0", text, report.unnamed);
}

}  // namespace

std::string ClaimText(const ClaimReport& report)
{
    std::string text = fmt::format("claim      {}\n", WordOf(report.claimed));
    if (report.hasPoint)
        text += fmt::format("values     {}\nobjective  {}\n", PointWords(report),
                            NumberText(ToDouble(report.objective) + 0.0));
    if (report.truth == Status::Optimal)
        text += fmt::format("optimum    {}{}\n", NumberText(ToDouble(report.optimum) + 0.0),
                            ExactWords(ToString(report.optimum)));
    text += fmt::format("numbers    as {}\nproof      {}\nverdict    {}\n", WordOf(report.numbers),
                        EvidenceWords(report), WordOf(report.judgement));
    if (report.disagreementCount != 0)
        text += '\n';
    for (const Disagreement& disagreement : report.disagreements)
        text += disagreement.text + "\n";
    if (report.disagreementCount > report.disagreements.size())
        text +=
            fmt::format("and {} more\n", report.disagreementCount - report.disagreements.size());
    return text;
}

std::string ClaimJson(const Model& model, const ClaimReport& report)
{
    Json json = OpenReport(kProofSchema);
    WriteModel(json, model);
    json.Key("claim").Text(WordOf(report.claimed));
    json.Key("verdict").Text(WordOf(report.judgement));
    json.Key("numbers").Text(WordOf(report.numbers));
    json.Key("truth").Text(report.truth == Status::Stopped ? "unknown" : WordOf(report.truth));
    json.Key("proof").Open('{').Key("by").Text(WordOf(report.evidence));
    json.Key("pivots").Count(report.pivots);
    if (report.truth == Status::Optimal)
        json.Key("objective").Text(ToString(report.optimum));
    json.Close('}');
    if (report.hasPoint)
    {
        json.Key("objective").Number(ToDouble(report.objective));
        json.Key("unnamed").Count(report.unnamed);
        json.Key("violation").Number(report.violation);
        json.Key("violated").Text(report.violated);
    }
    WriteSeconds(json, report.seconds);
    json.Key("disagreements").Open('[');
    for (const Disagreement& disagreement : report.disagreements)
    {
        json.Open('{').Key("code").Text(disagreement.code);
        json.Key("text").Text(disagreement.text).Close('}');
    }
    json.Close(']').Key("disagreement_count").Count(report.disagreementCount);
    return json.Close('}').Finish();
}

}  // namespace nuv
