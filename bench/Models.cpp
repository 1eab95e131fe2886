// Solves the models of tests/models whose answers are known, and writes docs/netlib.md's tables.
//
//     bench_models MODELS              prints the blocks
//     bench_models MODELS DOCUMENT     rewrites what stands between the document's markers
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

#include "bench/Document.hpp"
#include "bench/Machine.hpp"
#include "bench/ModelTables.hpp"
#include "bench/Stopwatch.hpp"

#include "Nuv/Io/ModelFile.hpp"

namespace bench
{
namespace
{
nuv::SolveOptions OptionsFor(nuv::Numbers numbers)
{
    nuv::SolveOptions options;
    options.numbers = numbers;
    options.seconds = 60.0;
    // The time of a proof, without that of the explanation behind it.
    options.conflictSeconds = 0.0;
    return options;
}

/// Everything that is not the core's: the stages behind it and the check.
double ProofSeconds(const nuv::Proof& proof)
{
    return proof.doubleSeconds + proof.exactSeconds + proof.checkSeconds;
}

/// The solve of median time out of so many, with the least time of a proof among them: stages are
/// timed by the clock on the wall, which other programs disturb.
Run MedianRun(const nuv::Model& model, nuv::Numbers numbers, int times)
{
    std::vector<Run> runs;
    double proofSeconds = std::numeric_limits<double>::infinity();
    for (int time = 0; time < times; ++time)
    {
        const Stopwatch watch;
        Run run;
        run.solution = nuv::Solve(model, OptionsFor(numbers));
        run.seconds = watch.Seconds();
        proofSeconds = std::min(proofSeconds, ProofSeconds(run.solution.proof));
        runs.push_back(std::move(run));
    }
    const auto middle = runs.begin() + times / 2;
    std::nth_element(runs.begin(), middle, runs.end(),
                     [](const Run& a, const Run& b) { return a.seconds < b.seconds; });
    middle->proofSeconds = proofSeconds;
    return std::move(*middle);
}

std::optional<SolvedModel> SolveKnown(const nuv::test::KnownModel& known, int times)
{
    const nuv::Reading reading = nuv::ReadModelFile(known.path);
    if (!reading.Ok())
    {
        std::cerr << known.path << ": " << reading.GetError().text << '\n';
        return std::nullopt;
    }
    SolvedModel solved{known, reading.model->RowCount(), reading.model->VariableCount(), {}, {}};
    solved.asStored = MedianRun(*reading.model, nuv::Numbers::AsStored, times);
    solved.asWritten = MedianRun(*reading.model, nuv::Numbers::AsWritten, times);
    return solved;
}

bool SolveAll(const std::vector<nuv::test::KnownModel>& models, int times,
              std::vector<SolvedModel>* solved)
{
    bool areGood = true;
    for (const nuv::test::KnownModel& known : models)
    {
        std::optional<SolvedModel> model = SolveKnown(known, times);
        areGood = areGood && model && model->IsAsKnown();
        if (!model)
            continue;
        std::fprintf(stderr, "%-28s %s\n", known.name.c_str(),
                     model->IsAsKnown() ? "as known, proved" : "NOT as known, or not proved");
        solved->push_back(std::move(*model));
    }
    return areGood;
}

std::string MachineText()
{
    return "Measured on " + ProcessorName() + " (" + std::to_string(ProcessorCount()) +
           " processors), " + SystemName() + ", built by " + CompilerName() + ".\n";
}
}  // namespace
}  // namespace bench

int main(int count, char** words)
{
    if (count != 2 && count != 3)
    {
        std::cerr << "usage: bench_models MODELS [DOCUMENT]\n";
        return 64;
    }
    const std::string models = words[1];
    std::vector<bench::SolvedModel> netlib;
    std::vector<bench::SolvedModel> infeasible;
    std::vector<bench::SolvedModel> textbook;
    bool areGood = bench::SolveAll(nuv::test::KnownNetlibModels(models + "/netlib"), 3, &netlib);
    areGood &=
        bench::SolveAll(nuv::test::KnownInfeasibleModels(models + "/infeas"), 3, &infeasible);
    // These take microseconds; the first runs find their memory cold.
    areGood &= bench::SolveAll(nuv::test::KnownTextbookModels(models + "/textbook"), 51, &textbook);

    const std::vector<bench::Block> blocks = {
        {"machine", bench::MachineText()},
        {"summary", bench::SummaryText(netlib, infeasible, textbook)},
        {"netlib", bench::OptimaTable(netlib)},
        {"infeasible", bench::InfeasibleTable(infeasible)},
        {"textbook", bench::TextbookTable(textbook)}};
    bool isWritten = true;
    if (count == 3)
        isWritten = bench::RewriteBlocks(words[2], blocks);
    else
        bench::PrintBlocks(blocks);
    return areGood && isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
}
