// The blocks about steps, kernels and growth.
#include <cmath>
#include <map>

#include "bench/Machine.hpp"
#include "bench/Tables.hpp"

namespace bench
{
namespace
{
struct Point
{
    double size;
    double value;
};

/// The exponent e of value ≈ factor · size^e, by least squares over the logarithms.
double FitExponent(const std::vector<Point>& points)
{
    double meanX = 0.0;
    double meanY = 0.0;
    const auto count = static_cast<double>(points.size());
    for (const Point& point : points)
    {
        meanX += std::log(point.size) / count;
        meanY += std::log(point.value) / count;
    }
    double above = 0.0;
    double below = 0.0;
    for (const Point& point : points)
    {
        const double x = std::log(point.size) - meanX;
        above += x * (std::log(point.value) - meanY);
        below += x * x;
    }
    return below > 0.0 ? above / below : 0.0;
}

std::string ExponentText(const std::vector<Point>& points)
{
    return points.size() < 2 ? "–" : NumberText(FitExponent(points), 2);
}

double Counter(const Step& step, const char* name)
{
    const auto found = step.counters.find(name);
    return found == step.counters.end() ? 0.0 : found->second;
}

std::string MegabytesText(double bytes)
{
    return NumberText(bytes / 1e6, 3) + " MB";
}
}  // namespace

std::string StepsBlock(const Results& results)
{
    struct Row
    {
        double pivots = 0.0;
        std::map<std::string, double> seconds;
    };
    std::vector<std::pair<std::string, Row>> rows;
    std::string text;
    for (const Step& step : results.lps)
    {
        const std::size_t slash = step.name.find('/');
        const std::string what = step.name.substr(0, slash);
        std::string model = step.name.substr(slash + 1);
        model.replace(model.rfind('/'), 1, ", ");
        model.replace(model.rfind('x'), 1, " × ");
        if (what.starts_with("start"))
        {
            text += "- " + model + ", " + what + ": " + TimeText(step.seconds) + "\n";
            continue;
        }
        if (rows.empty() || rows.back().first != model)
            rows.push_back({model, {}});
        rows.back().second.seconds[what] = step.seconds;
        rows.back().second.pivots = Counter(step, "pivots");
    }
    text += "\n| instance | pivots | build | first solve | solve again |\n|---|--:|--:|--:|--:|\n";
    for (auto& [model, row] : rows)
        text += "| " + model + " | " + CountText(row.pivots) + " | " +
                TimeText(row.seconds["build"]) + " | " + TimeText(row.seconds["solve"]) + " | " +
                TimeText(row.seconds["again"]) + " |\n";
    return text;
}

std::string KernelsBlock(const Results& results)
{
    std::string text = "| what | m | n | lives in | time | limit | ÷ limit |\n"
                       "|---|--:|--:|---|--:|--:|--:|\n";
    for (const Step& step : results.kernels)
    {
        const double limit = Counter(step, "limit");
        const double ratio = Counter(step, "ratio");
        text += "| " + step.name.substr(0, step.name.find('/')) + " | " +
                CountText(Counter(step, "m")) + " | " + CountText(Counter(step, "n")) + " | " +
                LevelOf(Counter(step, "bytes")) + " | " + TimeText(step.seconds) + " | " +
                TimeText(limit) + " | " + NumberText(ratio, 3) + " |\n";
    }
    return text;
}

std::string GrowthBlock(const Results& results)
{
    std::string text = "| sweep | m | n | pivots | per pivot |\n|---|--:|--:|--:|--:|\n";
    // In the order of their first points.
    std::vector<std::pair<std::string, std::vector<Point>>> sweeps;
    for (const TimePoint& point : results.times)
    {
        text += "| " + point.sweep + " | " + CountText(point.m) + " | " + CountText(point.n) +
                " | " + CountText(point.pivots) + " | " + TimeText(point.secondsPerPivot) + " |\n";
        if (sweeps.empty() || sweeps.back().first != point.sweep)
            sweeps.push_back({point.sweep, {}});
        const bool growsInN = point.sweep.starts_with("m = 1");
        sweeps.back().second.push_back({growsInN ? point.n : point.m, point.secondsPerPivot});
    }
    text += "\n| sweep | time per pivot grows as |\n|---|---|\n";
    for (const auto& [sweep, points] : sweeps)
        text += "| " + sweep + " | " + (sweep.starts_with("m = 1") ? "n" : "m") + " to the power " +
                ExponentText(points) + " |\n";
    return text;
}

std::string MemoryBlock(const Results& results)
{
    std::string text = "| m | n | model | first solve, peak above it | of that, kept | next solve, "
                       "peak above that |\n|--:|--:|--:|--:|--:|--:|\n";
    std::vector<Point> models;
    std::vector<Point> peaks;
    for (const MemoryPoint& point : results.memory)
    {
        text += "| " + CountText(point.m) + " | " + CountText(point.n) + " | " +
                MegabytesText(point.model) + " | " + MegabytesText(point.first) + " | " +
                MegabytesText(point.kept) + " | " + MegabytesText(point.next) + " |\n";
        models.push_back({point.m, point.model});
        peaks.push_back({point.m, point.first});
    }
    return text + "\nWith m = n, the model grows as m to the power " + ExponentText(models) +
           ", the peak of a first solve as m to the power " + ExponentText(peaks) + ".\n";
}
}  // namespace bench
