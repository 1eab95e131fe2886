// Runs the Google Benchmark programs: their usual output on the screen, and with
// --benchmark_out=FILE one line per benchmark for bench_report: name, seconds per iteration, and
// the counters as name=value.
#ifndef BENCH_RESULTFILE_HPP
#define BENCH_RESULTFILE_HPP

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <ostream>
#include <string_view>

namespace bench
{
class ResultFile : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context&) override
    {
        GetOutputStream().precision(9);
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
        {
            if (run.error_occurred || run.iterations == 0)
                continue;
            // Time taken by hand counts as real time.
            const bool isByHand = !run.run_name.time_type.empty();
            const double seconds = isByHand ? run.real_accumulated_time : run.cpu_accumulated_time;
            GetOutputStream() << run.run_name.function_name << '\t'
                              << seconds / static_cast<double>(run.iterations);
            for (const auto& [name, counter] : run.counters)
                GetOutputStream() << '\t' << name << '=' << counter.value;
            GetOutputStream() << '\n';
        }
    }
};

/// @return the program's exit code.
inline int RunBenchmarks(int count, char** words)
{
    bool isFileAsked = false;
    for (int i = 1; i < count; ++i)
        isFileAsked = isFileAsked || std::string_view(words[i]).starts_with("--benchmark_out=");
    benchmark::Initialize(&count, words);
    if (benchmark::ReportUnrecognizedArguments(count, words))
        return EXIT_FAILURE;
    ResultFile file;
    benchmark::RunSpecifiedBenchmarks(nullptr, isFileAsked ? &file : nullptr);
    benchmark::Shutdown();
    return EXIT_SUCCESS;
}
}  // namespace bench

#endif
