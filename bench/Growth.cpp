// How time per pivot and memory grow with the numbers of rows m and columns n.
//
//     bench_growth [--quick] [--output FILE]
//
// The file gets a line `time`, sweep, m, n, pivots, seconds per pivot, or `memory`, m, n and five
// figures in bytes, for each size; bench/report/document.py fits the exponents.
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cstdlib>
#include <fstream>
#include <initializer_list>
#include <string>

#include "bench/contenders/Contender.hpp"
#include "bench/JsonLine.hpp"
#include "bench/QuickOrWhole.hpp"
#include "bench/Stopwatch.hpp"

namespace bench
{
namespace
{
struct Size
{
    const char* sweep;
    std::size_t m;
    std::size_t n;
};

/// @return the median seconds per pivot over the first 3 m pivots, from a few solves.
double TimePerPivot(const Input& input, std::uint64_t maxPivots, std::uint64_t* pivots)
{
    std::vector<double> samples;
    const Stopwatch whole;
    while (samples.size() < 3 || (samples.size() < 15 && whole.Seconds() < 0.3))
    {
        const Run run = CountPivots(input, maxPivots, 60.0);
        *pivots = run.pivots;
        samples.push_back(run.solving / static_cast<double>(run.pivots));
    }
    return MedianOf(samples);
}

void MeasureTime(const Size& size, std::FILE* file)
{
    const Input input = MakeInput(MakeInstance(Family::NonDegenerate, size.m, size.n, 1));
    std::uint64_t pivots = 0;
    const double seconds = TimePerPivot(input, 3 * size.m, &pivots);
    std::printf("%s: m = %zu, n = %zu: %llu pivots, %.3f us each\n", size.sweep, size.m, size.n,
                static_cast<unsigned long long>(pivots), seconds * 1e6);
    JsonLine line("time");
    line.Add("sweep", size.sweep).Add("m", size.m).Add("n", size.n).Add("pivots", pivots);
    std::fputs(line.Add("seconds", seconds).Text().c_str(), file);
}

/// @return a figure of /proc/self/status in bytes, 0 where there is none.
double StatusBytes(const char* name)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(name))
            return std::strtod(line.c_str() + std::strlen(name), nullptr) * 1024.0;
    return 0.0;
}

/// Lets the kernel's record of the peak start anew from what is resident now.
void ForgetPeak()
{
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
}

/// What a solve needs at its peak above what was resident before, and what stays resident after it.
struct Peak
{
    double above;
    double kept;
};

Peak MeasureSolve(nuv::LinearProgram* program)
{
    ForgetPeak();
    const double before = StatusBytes("VmRSS:");
    program->Solve();
    const double peak = StatusBytes("VmHWM:");
    malloc_trim(0);
    return {peak - before, StatusBytes("VmRSS:") - before};
}

/// In a process of its own, so that no memory is there from another size.
void MeasureMemory(const Size& size, std::FILE* file)
{
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child != 0)
    {
        int status = 0;
        if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
            std::fprintf(stderr, "m = %zu, n = %zu: memory could not be measured\n", size.m,
                         size.n);
        return;
    }
    const Input input = MakeInput(MakeInstance(Family::Positive, size.m, size.n, 1));
    ForgetPeak();
    const double before = StatusBytes("VmRSS:");
    nuv::LinearProgram program = BuildProgram(input);
    const double model = StatusBytes("VmRSS:") - before;
    const Peak first = MeasureSolve(&program);
    const Peak again = MeasureSolve(&program);
    std::printf("m = %zu, n = %zu: model %.0f KiB, first solve %.0f KiB above it, the next %.0f\n",
                size.m, size.n, model / 1024.0, first.above / 1024.0, again.above / 1024.0);
    JsonLine line("memory");
    line.Add("m", size.m).Add("n", size.n).Add("model", model).Add("first", first.above);
    std::fputs(line.Add("kept", first.kept).Add("next", again.above).Text().c_str(), file);
    std::fflush(nullptr);
    _exit(0);
}

std::vector<Size> Sizes(bool isQuick)
{
    std::vector<Size> sizes;
    const std::size_t largest = isQuick ? 400 : 1000;
    for (const std::size_t m : std::initializer_list<std::size_t>{50, 100, 200, 400, 700, 1000})
        if (m <= largest)
            sizes.push_back({"m = n", m, m});
    for (const std::size_t m : std::initializer_list<std::size_t>{50, 100, 200, 400, 700, 1000})
        if (m <= largest)
            sizes.push_back({"n = 100", m, 100});
    for (const std::size_t n : std::initializer_list<std::size_t>{100, 200, 400, 800, 1600, 3200})
        sizes.push_back({"m = 100", 100, n});
    return sizes;
}

void MeasureAll(bool isQuick, std::FILE* file)
{
    for (const std::size_t m : std::initializer_list<std::size_t>{100, 200, 400, 700, 1000})
        MeasureMemory({"m = n", m, m}, file);
    for (const Size& size : Sizes(isQuick))
        MeasureTime(size, file);
}
}  // namespace
}  // namespace bench

int main(int count, char** words)
{
    return bench::RunQuickOrWhole(count, words, "bench_growth", bench::MeasureAll);
}
