#include "bench/ModelTables.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Nuv/Report/Words.hpp"

namespace bench
{
namespace
{
std::string Cell(const std::string& text)
{
    return " " + text + " |";
}

std::string CountCell(std::uint64_t count)
{
    return Cell(std::to_string(count));
}

/// Milliseconds, to three digits.
std::string MillisecondsCell(double seconds)
{
    char text[32];
    const double milliseconds = 1e3 * seconds;
    const int decimals =
        milliseconds <= 0.0
            ? 0
            : std::clamp(2 - static_cast<int>(std::floor(std::log10(milliseconds))), 0, 4);
    std::snprintf(text, sizeof text, "%.*f", decimals, milliseconds);
    return Cell(text);
}

std::string StagesCell(const nuv::Solution& solution)
{
    std::string stages;
    if (solution.floatStage.outcome != nuv::FloatOutcome::Skipped)
        stages += "float, ";
    if (solution.proof.ranDouble)
        stages += "double, ";
    if (solution.proof.ranExact)
        stages += "exact, ";
    stages.resize(stages.size() - std::min<std::size_t>(stages.size(), 2));
    return Cell(stages.empty() ? "none" : stages);
}

std::string VerdictCells(const nuv::Solution& solution)
{
    return Cell(std::string(nuv::WordOf(solution.status))) +
           Cell(solution.proved ? "proved" : "**not proved**");
}

std::string PivotCells(const nuv::Solution& solution)
{
    return CountCell(solution.floatStage.pivots) + CountCell(solution.proof.doublePivots) +
           CountCell(solution.proof.exactPivots);
}

/// Where the time went, in percent: the float stage, the double stage, the exact stage with its
/// check.
std::string ShareCells(const nuv::Solution& solution)
{
    const double stages[] = {solution.floatSeconds, solution.proof.doubleSeconds,
                             solution.proof.exactSeconds + solution.proof.checkSeconds};
    const double whole = stages[0] + stages[1] + stages[2];
    std::string cells;
    for (const double stage : stages)
        cells +=
            CountCell(whole > 0.0 ? static_cast<std::uint64_t>(100.0 * stage / whole + 0.5) : 0);
    return cells;
}

std::string DistanceCell(const SolvedModel& model, const Run& run)
{
    const std::optional<nuv::Rational> optimum =
        nuv::test::ParseRational(run.solution.exactObjective);
    if (!optimum)
        return Cell("–");
    const nuv::Rational distance = nuv::test::RelativeDistance(*optimum, model.known.optimum);
    if (distance == 0)
        return Cell("0");
    char text[32];
    std::snprintf(text, sizeof text, "%.0e", nuv::ToDouble(distance));
    return Cell(text);
}

std::string SolveCells(const SolvedModel& model)
{
    const nuv::Solution& solution = model.asStored.solution;
    return "|" + Cell(model.known.name) + CountCell(model.rows) + CountCell(model.columns) +
           VerdictCells(solution) + StagesCell(solution) + PivotCells(solution) +
           MillisecondsCell(model.asStored.seconds) + ShareCells(solution);
}

std::string CountedText(const std::string& what, const std::vector<SolvedModel>& models)
{
    const auto good = std::count_if(models.begin(), models.end(),
                                    [](const SolvedModel& model) { return model.IsAsKnown(); });
    double longest = 0.0;
    std::string name;
    for (const SolvedModel& model : models)
    {
        const double seconds = std::max(model.asStored.seconds, model.asWritten.seconds);
        if (seconds <= longest)
            continue;
        longest = seconds;
        name = model.known.name;
    }
    char text[160];
    std::snprintf(text, sizeof text,
                  "- %s: %td of %zu as known and proved, the slowest (%s) in %.3g s\n",
                  what.c_str(), good, models.size(), name.c_str(), longest);
    return text;
}
}  // namespace

bool SolvedModel::IsAsKnown() const
{
    return asStored.solution.status == known.status && asStored.solution.proved &&
           asWritten.solution.status == known.status && asWritten.solution.proved;
}

std::string SummaryText(const std::vector<SolvedModel>& netlib,
                        const std::vector<SolvedModel>& infeasible,
                        const std::vector<SolvedModel>& textbook)
{
    double longest = 0.0;
    for (const SolvedModel& model : textbook)
        longest = std::max({longest, model.asStored.proofSeconds, model.asWritten.proofSeconds});
    char text[120];
    std::snprintf(text, sizeof text,
                  "- what the proof adds to the core's time on a textbook model: at most %.3g ms\n",
                  1e3 * longest);
    return CountedText("netlib", netlib) + CountedText("infeasible", infeasible) +
           CountedText("textbook", textbook) + text;
}

std::string OptimaTable(const std::vector<SolvedModel>& models)
{
    std::string text =
        "| model | rows | columns | verdict | | stages | float pivots | double | exact "
        "| ms | float % | double % | exact % | off, as stored | as written |\n"
        "|---|--:|--:|---|---|---|--:|--:|--:|--:|--:|--:|--:|--:|--:|\n";
    for (const SolvedModel& model : models)
        text += SolveCells(model) + DistanceCell(model, model.asStored) +
                DistanceCell(model, model.asWritten) + "\n";
    return text;
}

std::string InfeasibleTable(const std::vector<SolvedModel>& models)
{
    std::string text =
        "| model | rows | columns | verdict | | stages | float pivots | double | exact "
        "| ms | float % | double % | exact % |\n"
        "|---|--:|--:|---|---|---|--:|--:|--:|--:|--:|--:|--:|\n";
    for (const SolvedModel& model : models)
        text += SolveCells(model) + "\n";
    return text;
}

std::string TextbookTable(const std::vector<SolvedModel>& models)
{
    std::string text =
        "| model | verdict | | stages | float pivots | double | exact | ms | proof, ms "
        "| optimum |\n"
        "|---|---|---|---|--:|--:|--:|--:|--:|--:|\n";
    for (const SolvedModel& model : models)
    {
        const nuv::Solution& solution = model.asWritten.solution;
        text += "|" + Cell(model.known.name) + VerdictCells(solution) + StagesCell(solution) +
                PivotCells(solution) + MillisecondsCell(model.asWritten.seconds) +
                MillisecondsCell(model.asWritten.proofSeconds) +
                Cell(solution.exactObjective.empty() ? "–" : solution.exactObjective) + "\n";
    }
    return text;
}
}  // namespace bench
