// The same instances through this library, the hand-written tableau and the libraries that users
// might pick instead: in one process, in turns, several rounds, medians.
//
//     bench_compare [--quick | --smoke | --case FAMILY ROWS COLUMNS] [--output FILE]
//
// The file gets one line per instance and contender, for bench/report/document.py. --smoke runs two
// tiny instances and fails unless all contenders agree on them.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include "bench/Cases.hpp"
#include "bench/contenders/Contender.hpp"
#include "bench/JsonLine.hpp"
#include "bench/contenders/Streaming.hpp"

namespace bench
{
namespace
{
/// How far an objective may lie from the reference, relative to it.
constexpr double kAgreement = 1e-4;
/// What a contender's share of a round is filled up to with repeated runs.
constexpr double kSampleSeconds = 1e-3;

struct Effort
{
    /// For the rounds of one instance.
    double seconds;
    std::size_t maxRounds;
    /// When to give up on a single solve.
    double patience;
};

struct Entrant
{
    const Contender* contender;
    Run first;
    std::size_t repeats;
    Conditions conditions;
    std::vector<double> building;
    std::vector<double> solving;
};

struct Comparison
{
    Case which;
    Run counted;
    std::vector<Entrant> entrants;
    std::vector<double> streaming;
    std::size_t rounds;
};

std::vector<Entrant> Enter(const Input& input, const Run& counted, const Effort& effort)
{
    std::vector<Entrant> entrants;
    for (const Contender& contender : Contenders())
    {
        Entrant entrant = {&contender, counted, 0, {effort.patience, Clock::Processor}, {}, {}};
        const bool isStopped = contender.run == RunNuv && counted.verdict == Verdict::Stopped;
        if (!isStopped)
        {
            const Stopwatch watch;
            entrant.first = contender.run(input, entrant.conditions);
            const double seconds = std::max(watch.Seconds(), 1e-7);
            entrant.conditions.clock = ClockFor(entrant.first.solving);
            entrant.repeats =
                static_cast<std::size_t>(std::clamp(kSampleSeconds / seconds, 1.0, 200.0));
            // What is this slow has its one sample.
            if (seconds > effort.seconds / 4.0)
                entrant.repeats = 0;
            if (entrant.repeats == 0)
            {
                entrant.building.push_back(entrant.first.building);
                entrant.solving.push_back(entrant.first.solving);
            }
        }
        entrants.push_back(entrant);
    }
    return entrants;
}

/// One contender's share of a round: the median of its repeated runs.
void TakeSample(const Input& input, Entrant* entrant)
{
    std::vector<double> building;
    std::vector<double> solving;
    for (std::size_t i = 0; i < entrant->repeats; ++i)
    {
        const Run run = entrant->contender->run(input, entrant->conditions);
        building.push_back(run.building);
        solving.push_back(run.solving);
    }
    entrant->building.push_back(MedianOf(building));
    entrant->solving.push_back(MedianOf(solving));
}

Comparison CompareOn(const Case& which, const Effort& effort)
{
    const Input input = MakeInput(MakeInstance(which.family, which.rows, which.columns, kCaseSeed));
    const std::uint64_t maxPivots = 200 * (which.rows + which.columns);
    Comparison found = {which, CountPivots(input, maxPivots, effort.patience), {}, {}, 0};
    found.entrants = Enter(input, found.counted, effort);
    StreamingPass pass = PivotPass(which.rows, which.columns);

    const Stopwatch watch;
    while (found.rounds < 3 ||
           (found.rounds < effort.maxRounds && watch.Seconds() < effort.seconds))
    {
        // The turn moves on, so that no one always runs after the same neighbour.
        const std::size_t count = found.entrants.size();
        for (std::size_t i = 0; i < count; ++i)
        {
            Entrant* const entrant = &found.entrants[(found.rounds + i) % count];
            if (entrant->repeats != 0)
                TakeSample(input, entrant);
        }
        found.streaming.push_back(pass.Seconds(2e-3));
        ++found.rounds;
    }
    return found;
}

/// The objective that all are held against: the median of those found in double precision.
std::optional<double> ReferenceObjective(const Comparison& found)
{
    std::vector<double> objectives;
    for (const Entrant& entrant : found.entrants)
        if (entrant.contender->run != RunNuv && entrant.first.verdict == Verdict::Optimal)
            objectives.push_back(entrant.first.objective);
    return objectives.empty() ? std::nullopt : std::optional(MedianOf(objectives));
}

/// The distance of an objective from the reference; infinite without an optimum.
double DistanceOf(const Entrant& entrant, std::optional<double> reference)
{
    if (!reference || entrant.first.verdict != Verdict::Optimal)
        return HUGE_VAL;
    return std::fabs(entrant.first.objective - *reference) / std::max(std::fabs(*reference), 1.0);
}

/// A plain solve of this library does not count its pivots; the one under a monitor made the same.
std::uint64_t PivotsOf(const Comparison& found, const Entrant& entrant)
{
    return entrant.contender->run == RunNuv ? found.counted.pivots : entrant.first.pivots;
}

/// @return whether all agree.
bool Print(const Comparison& found)
{
    const std::optional<double> reference = ReferenceObjective(found);
    std::printf("%s %zu x %zu: %llu pivots, a pass takes %.3g us, %zu rounds\n",
                NameOf(found.which.family), found.which.rows, found.which.columns,
                static_cast<unsigned long long>(found.counted.pivots),
                MedianOf(found.streaming) * 1e6, found.rounds);
    bool isAgreed = true;
    for (const Entrant& entrant : found.entrants)
    {
        const double distance = DistanceOf(entrant, reference);
        isAgreed = isAgreed && distance <= kAgreement;
        std::printf("  %-9s %-8s %-10s %12.8g %8llu pivots %12.3f us%s\n", entrant.contender->name,
                    entrant.contender->setting, NameOf(entrant.first.verdict),
                    entrant.first.objective,
                    static_cast<unsigned long long>(PivotsOf(found, entrant)),
                    MedianOf(entrant.solving) * 1e6, distance <= kAgreement ? "" : "  DISAGREES");
    }
    std::fflush(stdout);
    return isAgreed;
}

void Write(const Comparison& found, std::FILE* file)
{
    const std::optional<double> reference = ReferenceObjective(found);
    for (const Entrant& entrant : found.entrants)
    {
        JsonLine line("compare");
        line.Add("family", NameOf(found.which.family))
            .Add("rows", found.which.rows)
            .Add("columns", found.which.columns)
            .Add("pivots", found.counted.pivots)
            .Add("pass", MedianOf(found.streaming))
            .Add("contender", entrant.contender->name)
            .Add("setting", entrant.contender->setting)
            .Add("version", entrant.contender->version())
            .Add("verdict", NameOf(entrant.first.verdict))
            .Add("objective", entrant.first.objective)
            .Add("distance", DistanceOf(entrant, reference))
            .Add("its_pivots", PivotsOf(found, entrant))
            .Add("building", MedianOf(entrant.building))
            .Add("solving", MedianOf(entrant.solving));
        std::fputs(line.Text().c_str(), file);
    }
    std::fflush(file);
}

struct Arguments
{
    bool isQuick = false;
    bool isSmoke = false;
    std::optional<Case> single;
    const char* output = nullptr;
};

bool Parse(int count, char** words, Arguments* arguments)
{
    for (int i = 1; i < count; ++i)
    {
        const std::string word = words[i];
        if (word == "--quick")
            arguments->isQuick = true;
        else if (word == "--smoke")
            arguments->isSmoke = true;
        else if (word == "--output" && i + 1 < count)
            arguments->output = words[++i];
        else if (word == "--case" && i + 3 < count)
        {
            Case single = {Family::Positive, 0, 0, true};
            if (!FindFamily(words[i + 1], &single.family))
                return false;
            single.rows = std::strtoul(words[i + 2], nullptr, 10);
            single.columns = std::strtoul(words[i + 3], nullptr, 10);
            if (single.rows < 2 || single.columns < 2)
                return false;
            arguments->single = single;
            i += 3;
        }
        else
            return false;
    }
    return true;
}

std::vector<Case> CasesFor(const Arguments& arguments)
{
    if (arguments.single)
        return {*arguments.single};
    if (arguments.isSmoke)
        return {{Family::ProductionMix, 4, 3, true}, {Family::Diet, 5, 6, true}};
    std::vector<Case> chosen;
    for (const Case& one : kCases)
        if (one.isQuick || !arguments.isQuick)
            chosen.push_back(one);
    return chosen;
}

int Main(const Arguments& arguments)
{
    std::FILE* const file = arguments.output ? std::fopen(arguments.output, "w") : nullptr;
    if (arguments.output && !file)
    {
        std::perror(arguments.output);
        return EXIT_FAILURE;
    }
    const Effort effort = arguments.isSmoke   ? Effort{0.05, 3, 5.0}
                          : arguments.isQuick ? Effort{1.5, 15, 10.0}
                                              : Effort{12.0, 25, 60.0};
    bool isAgreed = true;
    for (const Case& which : CasesFor(arguments))
    {
        const Comparison found = CompareOn(which, effort);
        isAgreed = Print(found) && isAgreed;
        if (file)
            Write(found, file);
    }
    if (file)
        std::fclose(file);
    // Elsewhere a disagreement is a finding, which the report shows.
    return isAgreed || !arguments.isSmoke ? EXIT_SUCCESS : EXIT_FAILURE;
}
}  // namespace
}  // namespace bench

int main(int count, char** words)
{
    bench::Arguments arguments;
    if (bench::Parse(count, words, &arguments))
        return bench::Main(arguments);
    std::fprintf(stderr, "usage: bench_compare [--quick | --smoke | --case FAMILY ROWS COLUMNS] "
                         "[--output FILE]\n");
    return 64;
}
