// Solves the models of tests/models whose answers are known, and prints a line of JSON for each.
//
//     bench_models MODELS
//
// Ends with 1 if a verdict is not the known one or is not proved.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "bench/JsonLine.hpp"
#include "bench/Stopwatch.hpp"
#include "tests/support/KnownModels.hpp"

#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Report/Words.hpp"
#include "Nuv/Solve/Solution.hpp"

namespace bench
{
namespace
{
struct Run
{
    nuv::Solution solution;
    double seconds = 0.0;       ///< of processor time
    double proofSeconds = 0.0;  ///< of these, what the stages behind the core and the check take
};

nuv::SolveOptions OptionsFor(nuv::CoefficientMeaning numbers)
{
    nuv::SolveOptions options;
    options.numbers = numbers;
    options.limits.seconds = 60.0;
    // The time of a proof, without that of the explanation behind it.
    options.iisWork = 0;
    return options;
}

/// Everything that is not the core's: the stages behind it and the check.
double ProofSeconds(const nuv::Solution& solution)
{
    return solution.stages[nuv::Stage::Double].seconds +
           solution.stages[nuv::Stage::Exact].seconds + solution.checkSeconds;
}

/// The solve of median time out of so many, with the least time of a proof among them: stages are
/// timed by the clock on the wall, which other programs disturb.
Run MedianRun(const nuv::Model& model, nuv::CoefficientMeaning numbers, int times)
{
    std::vector<Run> runs;
    double proofSeconds = std::numeric_limits<double>::infinity();
    for (int time = 0; time < times; ++time)
    {
        const Stopwatch watch;
        Run run;
        run.solution = nuv::Solve(model, OptionsFor(numbers));
        run.seconds = watch.Seconds();
        proofSeconds = std::min(proofSeconds, ProofSeconds(run.solution));
        runs.push_back(std::move(run));
    }
    const auto middle = runs.begin() + times / 2;
    std::nth_element(runs.begin(), middle, runs.end(),
                     [](const Run& a, const Run& b) { return a.seconds < b.seconds; });
    middle->proofSeconds = proofSeconds;
    return std::move(*middle);
}

std::string StagesOf(const nuv::Solution& solution)
{
    std::string stages;
    for (const auto& [hasRun, name] :
         {std::pair{!solution.singlePrecision.basicLabels.empty(), "float"},
          std::pair{solution.stages[nuv::Stage::Double].ran, "double"},
          std::pair{solution.stages[nuv::Stage::Exact].ran, "exact"}})
        if (hasRun)
            stages += (stages.empty() ? "" : ", ") + std::string(name);
    return stages;
}

/// How far the optimum is from the known one, as the table shows it.
std::string DistanceOf(const nuv::Solution& solution, const nuv::test::KnownModel& known)
{
    const std::optional<nuv::Rational> optimum = nuv::test::ParseRational(solution.exactObjective);
    if (!optimum)
        return "–";
    const nuv::Rational distance = nuv::test::RelativeDistance(*optimum, known.optimum);
    char text[32];
    (void)std::snprintf(text, sizeof text, distance == 0 ? "0" : "%.0e", nuv::ToDouble(distance));
    return text;
}

bool IsAsKnown(const Run& run, const nuv::test::KnownModel& known)
{
    return run.solution.status == known.status && run.solution.proved;
}

/// Prints the line of a model that was solved both ways. Verdict, pivots and time are those of the
/// numbers as the document has them: as written in textbooks, as stored elsewhere.
void Print(const char* collection, const nuv::test::KnownModel& known, const nuv::Model& model,
           const Run& asStored, const Run& asWritten)
{
    const bool isTextbook = std::string_view(collection) == "textbook";
    const Run& shown = isTextbook ? asWritten : asStored;
    const nuv::Solution& solution = shown.solution;
    JsonLine line("model");
    line.Add("collection", collection)
        .Add("name", known.name)
        .Add("rows", model.RowCount())
        .Add("columns", model.VariableCount())
        .Add("as_known", IsAsKnown(asStored, known) && IsAsKnown(asWritten, known))
        .Add("status", nuv::WordOf(solution.status))
        .Add("proved", solution.proved)
        .Add("stages", StagesOf(solution))
        .Add("float_pivots", solution.singlePrecision.pivots)
        .Add("double_pivots", solution.stages[nuv::Stage::Double].pivots)
        .Add("exact_pivots", solution.stages[nuv::Stage::Exact].pivots)
        .Add("seconds", shown.seconds)
        .Add("slowest", std::max(asStored.seconds, asWritten.seconds))
        .Add("proof", std::max(asStored.proofSeconds, asWritten.proofSeconds))
        .Add("float_seconds", solution.stages[nuv::Stage::SinglePrecision].seconds)
        .Add("double_seconds", solution.stages[nuv::Stage::Double].seconds)
        .Add("exact_seconds", solution.stages[nuv::Stage::Exact].seconds + solution.checkSeconds)
        .Add("proof_written", asWritten.proofSeconds)
        .Add("off_stored", DistanceOf(asStored.solution, known))
        .Add("off_written", DistanceOf(asWritten.solution, known))
        .Add("optimum", asWritten.solution.exactObjective);
    std::cout << line.Text() << std::flush;
}

/// @return whether the model was read, and is as known.
bool SolveKnown(const char* collection, const nuv::test::KnownModel& known, int times)
{
    const nuv::ReadResult reading = nuv::ReadModelFile(known.path);
    if (!reading.Ok())
    {
        std::cerr << known.path << ": " << reading.GetError().text << '\n';
        return false;
    }
    const Run asStored = MedianRun(*reading.model, nuv::CoefficientMeaning::StoredDouble, times);
    const Run asWritten =
        MedianRun(*reading.model, nuv::CoefficientMeaning::ShortestDecimal, times);
    Print(collection, known, *reading.model, asStored, asWritten);
    const bool isGood = IsAsKnown(asStored, known) && IsAsKnown(asWritten, known);
    std::fprintf(stderr, "%-28s %s\n", known.name.c_str(),
                 isGood ? "as known, proved" : "NOT as known, or not proved");
    return isGood;
}

bool SolveAll(const char* collection, const std::vector<nuv::test::KnownModel>& models, int times)
{
    bool areGood = true;
    for (const nuv::test::KnownModel& known : models)
        areGood = SolveKnown(collection, known, times) && areGood;
    return areGood;
}
}  // namespace
}  // namespace bench

int main(int count, char** words)
{
    if (count != 2)
    {
        std::cerr << "usage: bench_models MODELS\n";
        return 64;
    }
    using namespace nuv::test;
    const std::string models = words[1];
    bool areGood = bench::SolveAll("netlib", KnownNetlibModels(models + "/netlib"), 3);
    areGood &= bench::SolveAll("infeasible", KnownInfeasibleModels(models + "/infeas"), 3);
    // These take microseconds; the first runs find their memory cold.
    areGood &= bench::SolveAll("textbook", KnownTextbookModels(models + "/textbook"), 51);
    return areGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
