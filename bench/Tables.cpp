// The blocks about instances and machines.
#include "bench/Tables.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <set>

#include "bench/Cases.hpp"
#include "bench/Machine.hpp"

namespace bench
{
namespace
{
constexpr const char* libraries[] = {"GLPK", "CLP", "lp_solve"};

/// This library's measurement, whatever its verdict; null when it was stopped.
const Measurement* NuvOf(const ComparedInstance& instance)
{
    for (const Measurement& measurement : instance.measurements)
        if (measurement.contender == "nuv" && measurement.verdict != "stopped")
            return &measurement;
    return nullptr;
}

double PerPivot(const ComparedInstance& instance)
{
    return NuvOf(instance)->solving / std::max(instance.pivots, 1.0);
}

std::string TimeOrDash(const Measurement* measurement)
{
    return measurement ? TimeText(measurement->solving) : "–";
}

/// How many times as long the other takes; in bold when it is ahead.
std::string RatioText(const Measurement* nuv, const Measurement* other)
{
    if (!nuv || !other)
        return "–";
    const double ratio = other->solving / nuv->solving;
    const std::string text = NumberText(ratio, 2);
    return ratio < 1.0 ? "**" + text + "**" : text;
}

std::string DistanceText(const Measurement* nuv)
{
    if (!nuv)
        return "stopped";
    if (nuv->verdict != "optimal")
        return nuv->verdict;
    char text[32];
    std::snprintf(text, sizeof text, "%.0e", nuv->distance);
    return nuv->distance == 0.0 ? "0" : text;
}

/// An aim: the instances that it speaks of, what is measured on each, and what it may be at most.
struct Aim
{
    const char* text;
    std::function<bool(const ComparedInstance&)> concerns;
    std::function<double(const ComparedInstance&)> measure;
    double allowed;
};

bool HasRows(const ComparedInstance& instance, std::size_t least, std::size_t most)
{
    return instance.rows >= least && instance.rows <= most;
}

double Against(const ComparedInstance& instance, const char* contender)
{
    const Measurement* const other = instance.Find(contender);
    return other ? NuvOf(instance)->solving / other->solving : 0.0;
}

double AgainstTableau(const ComparedInstance& instance)
{
    return Against(instance, "tableau");
}

double AgainstNativeTableau(const ComparedInstance& instance)
{
    return Against(instance, "tableau, native");
}

double AgainstLibraries(const ComparedInstance& instance)
{
    const Measurement* const library = instance.FastestLibrary();
    return library ? NuvOf(instance)->solving / library->solving : 0.0;
}

double AgainstLimit(const ComparedInstance& instance)
{
    return PerPivot(instance) / instance.pass;
}

std::vector<Aim> Aims()
{
    const auto all = [](const ComparedInstance&) { return true; };
    const auto isBig = [](const ComparedInstance& x) { return HasRows(x, 200, SIZE_MAX); };
    const auto isMiddle = [](const ComparedInstance& x) { return HasRows(x, 20, 100); };
    const auto isTiny = [](const ComparedInstance& x) { return HasRows(x, 0, 19); };
    const auto isNotTiny = [](const ComparedInstance& x) { return HasRows(x, 20, SIZE_MAX); };
    return {
        {"time per pivot over the limit, m ≥ 200: at most 1.3", isBig, AgainstLimit, 1.3},
        {"time per pivot over the limit, m from 20 to 100: at most 2.5", isMiddle, AgainstLimit,
         2.5},
        {"solve time over the tableau's, m ≥ 20: below 1", isNotTiny, AgainstTableau, 1.0},
        {"solve time over the tableau's, m < 20: at most 3", isTiny, AgainstTableau, 3.0},
        {"solve time over the native tableau's, m ≥ 20: below 1", isNotTiny, AgainstNativeTableau,
         1.0},
        {"solve time over the native tableau's, m < 20: at most 3", isTiny, AgainstNativeTableau,
         3.0},
        {"solve time over the fastest library's, every row: below 1", all, AgainstLibraries, 1.0},
    };
}

std::string AimRow(const Aim& aim, const Results& results, std::string* misses)
{
    std::size_t concerned = 0;
    std::size_t met = 0;
    double worst = 0.0;
    std::string worstName = "–";
    std::string missed;
    for (const ComparedInstance& instance : results.instances)
    {
        if (!aim.concerns(instance) || !NuvOf(instance))
            continue;
        const double measured = aim.measure(instance);
        ++concerned;
        if (measured <= aim.allowed)
            ++met;
        else
            missed +=
                (missed.empty() ? "" : "; ") + instance.Name() + ": " + NumberText(measured, 3);
        if (measured <= worst)
            continue;
        worst = measured;
        worstName = instance.Name();
    }
    if (!missed.empty())
        *misses += std::string("- ") + aim.text + ". " + missed + "\n";
    return std::string("| ") + aim.text + " | " + std::to_string(met) + " of " +
           std::to_string(concerned) + " | " + NumberText(worst, 3) + " (" + worstName + ") |\n";
}

const Step* FindStep(const std::vector<Step>& steps, std::string_view start)
{
    for (const Step& step : steps)
        if (step.name.starts_with(start))
            return &step;
    return nullptr;
}

std::string SingleAimRow(const std::string& text, const std::string& measured, bool isMet)
{
    return "| " + text + " | " + (isMet ? "yes" : "no") + " | " + measured + " |\n";
}

std::string TinyAimRows(const Results& results)
{
    std::string rows;
    const Step* const whole = FindStep(results.lps, "start to end/");
    const Step* const solve = FindStep(results.lps, "solve/production mix/2x3");
    if (whole)
        rows += SingleAimRow("a 2 × 3 model from start to end: under 4 µs",
                             TimeText(whole->seconds), whole->seconds < 4e-6);
    if (solve)
        rows +=
            SingleAimRow("its solve: under 1 µs", TimeText(solve->seconds), solve->seconds < 1e-6);
    for (const MemoryPoint& point : results.memory)
        if (point.m == 1000.0)
            rows += SingleAimRow(
                "peak memory of a first solve at m = n = 1000 above the model, the dense matrices "
                "that it makes (8 MB) among it: under 12 MB",
                NumberText(point.first / 1e6, 3) + " MB", point.first < 12e6);
    return rows;
}
}  // namespace

std::string NumberText(double number, int digits)
{
    if (number == 0.0 || !std::isfinite(number))
        return number == 0.0 ? "0" : "–";
    // Rounded first: 9.99 to two digits is 10, with no decimals left.
    const double unit = std::pow(10.0, std::floor(std::log10(std::fabs(number))) - digits + 1);
    const double rounded = std::round(number / unit) * unit;
    const int whole = static_cast<int>(std::floor(std::log10(std::fabs(rounded) * 1.0000001))) + 1;
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", std::max(digits - whole, 0), rounded);
    return text;
}

std::string CountText(double number)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.0f", number);
    return text;
}

std::string TimeText(double seconds)
{
    if (seconds < 1e-3)
        return NumberText(seconds * 1e6, 3) + " µs";
    if (seconds < 1.0)
        return NumberText(seconds * 1e3, 3) + " ms";
    return NumberText(seconds, 3) + " s";
}

std::string MachineBlock(const Results& results)
{
    std::string text = "Measured on " + ProcessorName() + " (" + std::to_string(ProcessorCount()) +
                       " processors; data caches";
    for (const Cache& cache : DataCaches())
        text += std::string(cache.level == 1 ? " " : ", ") + "L" + std::to_string(cache.level) +
                " " + CountText(cache.bytes / 1024.0) + " KiB";
    text += "), " + SystemName() + ", built by " + CompilerName() + ".";
    std::set<std::string> versions;
    for (const ComparedInstance& instance : results.instances)
        for (const Measurement& measurement : instance.measurements)
            if (!measurement.version.empty())
                versions.insert(measurement.contender + " " + measurement.version);
    std::string list;
    for (const std::string& version : versions)
        list += (list.empty() ? "" : ", ") + version;
    text += list.empty() ? "" : " Compared with " + list + ".";
    if (results.instances.size() < cases.size())
        text += " These figures are from a quick run.";
    return text + "\n";
}

std::string AimsBlock(const Results& results)
{
    std::string misses;
    std::string text = "| aim | met | measured; for several rows, the worst |\n|---|---|---|\n";
    for (const Aim& aim : Aims())
        text += AimRow(aim, results, &misses);
    text += TinyAimRows(results);
    if (!misses.empty())
        text += "\nRows that fall short:\n\n" + misses;
    return text;
}

std::string ComparisonBlock(const Results& results)
{
    std::string text =
        "| instance | pivots | per pivot | ÷ limit | nuv | tableau | native | GLPK | CLP | "
        "lp_solve | tableau ÷ nuv | native ÷ nuv | fastest library ÷ nuv | its pivots | objective "
        "off by |\n"
        "|---|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|\n";
    for (const ComparedInstance& instance : results.instances)
    {
        const Measurement* const nuv = NuvOf(instance);
        const Measurement* const native = instance.Find("tableau, native");
        const Measurement* const tableau = instance.Find("tableau");
        text += "| " + instance.Name() + " | " + CountText(instance.pivots) + " | " +
                (nuv ? TimeText(PerPivot(instance)) : "–") + " | " +
                (nuv ? NumberText(AgainstLimit(instance), 3) : "–") + " | " + TimeOrDash(nuv) +
                " | " + TimeOrDash(tableau) + " | " + TimeOrDash(native) + " | ";
        for (const char* const library : libraries)
            text += TimeOrDash(instance.Find(library)) + " | ";
        const Measurement* const library = instance.FastestLibrary();
        text += RatioText(nuv, tableau) + " | " + RatioText(nuv, native) + " | " +
                RatioText(nuv, library) + " | " + (library ? CountText(library->pivots) : "–") +
                " | " + DistanceText(nuv) + " |\n";
    }
    return text;
}
}  // namespace bench
