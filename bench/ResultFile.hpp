// Runs the Google Benchmark programs: their usual output on the screen, and with
// --benchmark_out=FILE one line of JSON per benchmark: name, counters, and seconds per iteration.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <ostream>
#include <string_view>

#include "bench/JsonLine.hpp"

namespace bench
{
class ResultFile : public benchmark::BenchmarkReporter
{
public:
    explicit ResultFile(const char* kindOfLines) : kind(kindOfLines) {}

    bool ReportContext(const Context&) override
    {
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
        {
            if (run.error_occurred || run.iterations == 0)
                continue;
            JsonLine line(kind);
            line.Add("name", run.run_name.function_name);
            for (const auto& [name, counter] : run.counters)
                line.Add(name, counter.value);
            // The mean of times taken by hand has the interruptions in it.
            const auto median = run.counters.find("median");
            const double mean = run.cpu_accumulated_time / static_cast<double>(run.iterations);
            line.Add("seconds", median != run.counters.end() ? median->second.value : mean);
            GetOutputStream() << line.Text();
        }
    }

private:
    const char* kind;
};

/// @return the program's exit code.
inline int RunBenchmarks(const char* kind, int count, char** words)
{
    bool isFileAsked = false;
    for (int i = 1; i < count; ++i)
        isFileAsked = isFileAsked || std::string_view(words[i]).starts_with("--benchmark_out=");
    benchmark::Initialize(&count, words);
    if (benchmark::ReportUnrecognizedArguments(count, words))
        return EXIT_FAILURE;
    ResultFile file(kind);
    benchmark::RunSpecifiedBenchmarks(nullptr, isFileAsked ? &file : nullptr);
    benchmark::Shutdown();
    return EXIT_SUCCESS;
}
}  // namespace bench
