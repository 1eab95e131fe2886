#include "Nuv/Report/ClaimText.hpp"

#include "Nuv/Report/TextReport.hpp"

#include "Nuv/Io/NumberText.hpp"
#include "Nuv/Report/JsonWriter.hpp"

#include <fmt/format.h>

namespace nuvlp
{
namespace
{

std::string_view Word(nuv::ClaimedStatus status)
{
    constexpr std::string_view words[] = {"feasible", "optimal", "infeasible", "unbounded"};
    return words[static_cast<std::size_t>(status)];
}

std::string_view Word(nuv::ProofStatus status)
{
    constexpr std::string_view words[] = {"optimal", "infeasible", "unbounded", "unknown"};
    return words[static_cast<std::size_t>(status)];
}

std::string_view Word(nuv::Judgement judgement)
{
    constexpr std::string_view words[] = {"confirmed", "refuted", "undecided"};
    return words[static_cast<std::size_t>(judgement)];
}

std::string_view Word(nuv::Evidence evidence)
{
    constexpr std::string_view words[] = {"none",  "values",   "certificate",
                                          "basis", "conflict", "solve"};
    return words[static_cast<std::size_t>(evidence)];
}

std::string PivotWords(std::uint64_t pivots)
{
    return fmt::format("{} {}", pivots, pivots == 1 ? "pivot" : "pivots");
}

std::string EvidenceWords(const nuv::ClaimReport& report)
{
    switch (report.evidence)
    {
    case nuv::Evidence::Values:
        return "the values themselves";
    case nuv::Evidence::Certificate:
        return "the certificate in the file, exact as it stands";
    case nuv::Evidence::Basis:
        return "from the basis in the file, " + PivotWords(report.pivots);
    case nuv::Evidence::Conflict:
        return "by the conflict in the file, " + PivotWords(report.pivots);
    case nuv::Evidence::Solve:
        return "by a solve, " + PivotWords(report.pivots);
    case nuv::Evidence::None:
        break;
    }
    return "none";
}

std::string PointWords(const nuv::ClaimReport& report)
{
    const std::string text = report.violated.empty()
                                 ? "within all rows and bounds, exactly"
                                 : fmt::format("{} is beyond its bound by {}, nothing by more",
                                               report.violated, nuv::NumberText(report.violation));
    return report.unnamed == 0
               ? text
               : fmt::format("{}; {} without a value, taken for 0", text, report.unnamed);
}

}  // namespace

std::string ClaimText(const nuv::ClaimReport& report)
{
    std::string text = fmt::format("claim      {}\n", Word(report.claimed));
    if (report.hasPoint)
        text += fmt::format("values     {}\nobjective  {}\n", PointWords(report),
                            nuv::NumberText(nuv::ToDouble(report.objective) + 0.0));
    if (report.truth == nuv::ProofStatus::Optimal)
        text +=
            fmt::format("optimum    {}{}\n", nuv::NumberText(nuv::ToDouble(report.optimum) + 0.0),
                        ExactWords(nuv::ToString(report.optimum)));
    text += fmt::format("proof      {}\nverdict    {}\n", EvidenceWords(report),
                        Word(report.judgement));
    if (report.disagreementCount != 0)
        text += '\n';
    for (const nuv::Disagreement& disagreement : report.disagreements)
        text += disagreement.text + "\n";
    if (report.disagreementCount > report.disagreements.size())
        text +=
            fmt::format("and {} more\n", report.disagreementCount - report.disagreements.size());
    return text;
}

std::string ClaimJson(const nuv::ClaimReport& report)
{
    nuv::Json json;
    json.Open('{').Key("schema").Text(kProofSchema);
    json.Key("claim").Text(Word(report.claimed));
    json.Key("verdict").Text(Word(report.judgement));
    json.Key("truth").Text(Word(report.truth));
    json.Key("proof").Open('{').Key("by").Text(Word(report.evidence));
    json.Key("pivots").Count(report.pivots);
    if (report.truth == nuv::ProofStatus::Optimal)
        json.Key("objective").Text(nuv::ToString(report.optimum));
    json.Close('}');
    if (report.hasPoint)
    {
        json.Key("objective").Number(nuv::ToDouble(report.objective));
        json.Key("unnamed").Count(report.unnamed);
        json.Key("violation").Number(report.violation);
        json.Key("violated").Text(report.violated);
    }
    json.Key("disagreements").Open('[');
    for (const nuv::Disagreement& disagreement : report.disagreements)
    {
        json.Open('{').Key("code").Text(disagreement.code);
        json.Key("text").Text(disagreement.text).Close('}');
    }
    json.Close(']').Key("disagreement_count").Count(report.disagreementCount);
    return json.Close('}').Finish();
}

}  // namespace nuvlp
