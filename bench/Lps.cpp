// Linear programs through the public interface, by steps: building the model, solving it for the
// first time, solving it again; and a tiny one from start to end, as a program that solves
// thousands of them sees it.
#include <memory>
#include <string>

#include "bench/Cases.hpp"
#include "bench/contenders/Contender.hpp"
#include "bench/ResultFile.hpp"

namespace bench
{
namespace
{
using Inputs = std::shared_ptr<const Input>;

void Build(benchmark::State& state, const Inputs& input, Clock clock)
{
    std::vector<double> samples;
    for (auto _ : state)
    {
        const Stopwatch watch(clock);
        nuv::LinearProgram program = BuildProgram(*input);
        samples.push_back(watch.Seconds());
        state.SetIterationTime(samples.back());
        benchmark::DoNotOptimize(program.Record());
    }
    state.counters["median"] = MedianOf(samples);
}

void SolveFirst(benchmark::State& state, const Inputs& input, Clock clock)
{
    std::vector<double> samples;
    for (auto _ : state)
    {
        nuv::LinearProgram program = BuildProgram(*input);
        const Stopwatch watch(clock);
        benchmark::DoNotOptimize(program.Solve());
        samples.push_back(watch.Seconds());
        state.SetIterationTime(samples.back());
    }
    state.counters["median"] = MedianOf(samples);
}

void SolveAgain(benchmark::State& state, const Inputs& input, Clock)
{
    nuv::LinearProgram program = BuildProgram(*input);
    benchmark::DoNotOptimize(program.Solve());
    for (auto _ : state)
        benchmark::DoNotOptimize(program.Solve());
}

/// Everything, the destruction of the model too.
void StartToEnd(benchmark::State& state, const Inputs& input)
{
    for (auto _ : state)
    {
        nuv::LinearProgram program = BuildProgram(*input);
        benchmark::DoNotOptimize(program.Solve());
        benchmark::DoNotOptimize(program.Objective());
    }
}

/// A caller's allocator: blocks one behind the other out of a buffer that is emptied between
/// models.
struct Arena
{
    NuvAllocator allocator = {Take, Give, 0, this};
    std::size_t used = 0;
    alignas(64) unsigned char memory[std::size_t(1) << 16U];

    static void* Take(NuvAllocator* self, NuvSizeT size)
    {
        Arena* const arena = static_cast<Arena*>(self->userData);
        const std::size_t needed = (static_cast<std::size_t>(size) + 63U) / 64U * 64U;
        if (needed > sizeof(arena->memory) - arena->used)
            return nullptr;
        void* const taken = arena->memory + arena->used;
        arena->used += needed;
        return taken;
    }

    static void Give(NuvAllocator*, void*, NuvSizeT) {}
};

/// The C interface on the caller's arena, start to end.
void StartToEndInC(benchmark::State& state, const Inputs& input)
{
    const auto arena = std::make_unique<Arena>();
    const auto view = [](std::span<const nuv::IndexedTerm> terms)
    {
        auto* const first = const_cast<nuv::IndexedTerm*>(terms.data());
        return NuvVector_NuvPair_NuvUint__NuvFloat32{nullptr, first, first + terms.size(),
                                                     first + terms.size()};
    };
    for (auto _ : state)
    {
        arena->used = 0;
        NuvLinearProgramming lp;
        NuvLinearProgrammingConstruct(&lp, static_cast<NuvUint>(input->instance.columns),
                                      &arena->allocator);
        for (std::size_t i = 0; i < input->instance.rows; ++i)
        {
            const auto row = view(input->TermsOf(i));
            NuvLinearProgrammingSetConstraintByIndex(&lp, static_cast<NuvUint>(i) + 1, &row,
                                                     input->instance.b[i]);
        }
        const auto objective = view(input->objective);
        NuvLinearProgrammingSetObjectiveByIndex(&lp, &objective);
        if (NuvLinearProgrammingSolve(&lp) != NUV_LINEARPROGRAMMINGRESULTTYPE_Ok)
            state.SkipWithError("the solve failed");
        benchmark::DoNotOptimize(NuvLinearProgrammingGetObjectiveValue(&lp));
        NuvLinearProgrammingDestruct(&lp);
    }
}

std::string Label(const char* step, const Case& which)
{
    return std::string(step) + "/" + NameOf(which.family) + "/" + std::to_string(which.rows) + "x" +
           std::to_string(which.columns);
}

void RegisterSteps(const Case& which)
{
    const auto input = std::make_shared<Input>(
        MakeInput(MakeInstance(which.family, which.rows, which.columns, kCaseSeed)));
    const auto counted = CountPivots(*input, 200 * (which.rows + which.columns), 10.0);
    if (counted.verdict == Verdict::Stopped)
        return;
    const auto withPivots = [counted](auto step, const Inputs& model)
    {
        return [=](benchmark::State& state)
        {
            step(state, model, ClockFor(counted.solving));
            state.counters["pivots"] = static_cast<double>(counted.pivots);
        };
    };
    benchmark::RegisterBenchmark(Label("build", which).c_str(), withPivots(Build, input))
        ->UseManualTime();
    benchmark::RegisterBenchmark(Label("solve", which).c_str(), withPivots(SolveFirst, input))
        ->UseManualTime();
    benchmark::RegisterBenchmark(Label("again", which).c_str(), withPivots(SolveAgain, input));
}

void RegisterTiny()
{
    const Case tiny = {Family::ProductionMix, 2, 3, true};
    const auto input = std::make_shared<Input>(
        MakeInput(MakeInstance(tiny.family, tiny.rows, tiny.columns, kCaseSeed)));
    benchmark::RegisterBenchmark(Label("start to end", tiny).c_str(), StartToEnd, input);
    benchmark::RegisterBenchmark(Label("start to end in C", tiny).c_str(), StartToEndInC, input);
}
}  // namespace
}  // namespace bench

int main(int count, char** words)
{
    bench::RegisterTiny();
    for (const bench::Case& which : bench::kCases)
        if (which.isQuick)
            bench::RegisterSteps(which);
    return bench::RunBenchmarks("lps", count, words);
}
