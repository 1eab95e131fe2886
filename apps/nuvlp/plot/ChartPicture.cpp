// Charts of a larger model: the objective against the pivots, then the rows with the least slack
// and the largest duals, as bars.
#include "apps/nuvlp/plot/Picture.hpp"
#include "apps/nuvlp/plot/Svg.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace nuv
{
namespace
{

constexpr double kWidth = 860.0;
constexpr double kLeft = 84.0;
constexpr double kRight = 836.0;
constexpr double kPathTop = 70.0;
constexpr double kPathBottom = 300.0;
constexpr double kBarsTop = 372.0;
constexpr double kBarHeight = 20.0;
constexpr std::size_t kMostBars = 16;

struct Bar
{
    std::string name;
    double value = 0.0;
};

/// A scale from numbers to one side of a chart; a constant lies in the middle.
struct Span
{
    double low = 0.0;
    double high = 1.0;
    double from = 0.0;
    double to = 1.0;

    [[nodiscard]] double At(double value) const
    {
        return high > low ? from + (to - from) * (value - low) / (high - low) : (from + to) / 2.0;
    }
};

void DrawTicks(Svg& svg, const Span& scale)
{
    const double step = RoundStep(scale.high - scale.low, 5);
    for (double k = std::ceil(scale.low / step); k * step <= scale.high; ++k)
    {
        const double y = scale.At(k * step);
        svg.Line("grid", {kLeft, y}, {kRight, y});
        svg.Text("quiet", {kLeft - 8.0, y + 4.0}, Anchor::End, ShortNumber(k * step));
    }
}

std::vector<double> ObjectivesOf(const Solution& solution)
{
    std::vector<double> objectives;
    for (const PathStep& step : solution.path)
        objectives.push_back(step.objective);
    if (solution.status == Status::Optimal)
        objectives.push_back(solution.objective);
    return objectives;
}

void DrawObjectives(Svg& svg, const Solution& solution)
{
    svg.Text("name", {kLeft, kPathTop - 14.0}, Anchor::Start, "objective against pivots");
    const std::vector<double> objectives = ObjectivesOf(solution);
    if (objectives.empty())
    {
        svg.Text("quiet", {kLeft, kPathTop + 20.0}, Anchor::Start, "no pivot was made");
        return;
    }
    const auto [low, high] = std::ranges::minmax(objectives);
    const Span vertical = {low, high, kPathBottom, kPathTop};
    const Span across = {0.0, static_cast<double>(std::max<std::size_t>(objectives.size() - 1, 1)),
                         kLeft, kRight};
    const auto phaseOne = std::ranges::count(solution.path, 1U, &PathStep::phase);
    if (phaseOne != 0)
    {
        svg.Rectangle("phase", {kLeft, kPathTop}, across.At(static_cast<double>(phaseOne)) - kLeft,
                      kPathBottom - kPathTop);
        svg.Text("quiet", {kLeft + 6.0, kPathTop + 16.0}, Anchor::Start, "not feasible yet");
    }
    DrawTicks(svg, vertical);
    std::vector<Point> points;
    for (std::size_t k = 0; k < objectives.size(); ++k)
        points.push_back({across.At(static_cast<double>(k)), vertical.At(objectives[k])});
    svg.Polyline("path", points);
    if (points.size() <= 60)
        for (const Point& point : points)
            svg.Circle("dot", point, 3.0);
    svg.Circle("best", points.back(), 5.0);
    svg.Line("axis", {kLeft, kPathBottom}, {kRight, kPathBottom});
    svg.Text("quiet", {kLeft, kPathBottom + 18.0}, Anchor::Middle, "0");
    svg.Text("quiet", {kRight, kPathBottom + 18.0}, Anchor::Middle,
             std::to_string(objectives.size() - 1));
}

double SlackOf(const Model& model, const Solution& solution, std::uint32_t i)
{
    const double activity = solution.activities[i];
    return std::fmin(model.RowUpper()[i] - activity, activity - model.RowLower()[i]);
}

void DrawBars(Svg& svg, std::string_view title, std::string_view style, std::span<const Bar> bars,
              double from, double to)
{
    svg.Text("name", {from, kBarsTop - 14.0}, Anchor::Start, title);
    double largest = 0.0;
    for (const Bar& bar : bars)
        largest = std::fmax(largest, std::fabs(bar.value));
    const double middle = from + 0.42 * (to - from);
    for (std::size_t k = 0; k < bars.size(); ++k)
    {
        const double y = kBarsTop + kBarHeight * static_cast<double>(k);
        const double length =
            largest > 0.0 ? (to - middle - 64.0) * std::fabs(bars[k].value) / largest : 0.0;
        std::string name = bars[k].name;
        if (TextWidth(name) > middle - from - 12.0)
            name.replace(16, std::string::npos, "...");
        svg.Text("text", {middle - 8.0, y + 14.0}, Anchor::End, name);
        svg.Rectangle(style, {middle, y + 3.0}, std::fmax(length, 1.0), kBarHeight - 7.0);
        svg.Text("quiet", {middle + std::fmax(length, 1.0) + 6.0, y + 14.0}, Anchor::Start,
                 ShortNumber(bars[k].value));
    }
    if (bars.empty())
        svg.Text("quiet", {from, kBarsTop + 14.0}, Anchor::Start, "none");
}

/// The rows whose number is finite, ordered, cut to what fits.
template <class Value, class Before>
std::vector<Bar> ChooseBars(const Model& model, Value&& value, Before&& before)
{
    std::vector<Bar> bars;
    for (std::uint32_t i = 0; i < model.RowCount(); ++i)
        if (const double number = value(i); std::isfinite(number))
            bars.push_back({std::string(model.RowName(i)), number});
    std::ranges::stable_sort(bars, before);
    if (bars.size() > kMostBars)
        bars.resize(kMostBars);
    return bars;
}

}  // namespace

std::string DrawCharts(const Model& model, const Solution& solution)
{
    std::vector<Bar> slacks;
    std::vector<Bar> duals;
    if (solution.status == Status::Optimal)
    {
        slacks = ChooseBars(
            model, [&](std::uint32_t i) { return SlackOf(model, solution, i); },
            [](const Bar& x, const Bar& y) { return x.value < y.value; });
        duals = ChooseBars(
            model,
            [&](std::uint32_t i)
            {
                const double dual = solution.duals[i];
                if (dual == 0.0)
                    return Infinity;
                return dual;
            },
            [](const Bar& x, const Bar& y) { return std::fabs(x.value) > std::fabs(y.value); });
    }
    const double rows =
        static_cast<double>(std::max<std::size_t>({slacks.size(), duals.size(), 1}));
    Svg svg(kWidth, kBarsTop + kBarHeight * rows + 24.0, Headline(solution));
    svg.Text("head", {kLeft - 60.0, 30.0}, Anchor::Start, Headline(solution));
    DrawObjectives(svg, solution);
    DrawBars(svg, "rows with the least slack", "bar", slacks, kLeft - 60.0, 440.0);
    DrawBars(svg, "largest duals", "bar2", duals, 460.0, kRight);
    return svg.Finish();
}

}  // namespace nuv
