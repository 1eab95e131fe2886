// The picture. A panel is a frame with ticks, and one polyline with markers per contender.
#include "bench/Picture.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace bench
{
namespace
{
struct Series
{
    /// The contender, or "limit" for the streaming limit times the pivots.
    const char* contender;
    const char* label;
    const char* style;
};

constexpr std::array<Series, 6> allSeries = {{{"nuv", "nuv", "nuv"},
                                              {"tableau", "tableau by hand", "tab"},
                                              {"GLPK", "GLPK", "glp"},
                                              {"CLP", "CLP", "clp"},
                                              {"lp_solve", "lp_solve", "lps"},
                                              {"limit", "memory limit of nuv's pivots", "lim"}}};

/// The instances of a family with so many columns to a row.
struct Panel
{
    const char* family;
    std::size_t columnsPerRow;
    const char* title;
};

constexpr std::array<Panel, 6> panels = {{{"mixed signs", 1, "mixed signs, m = n"},
                                          {"phase I", 1, "phase I needed, m = n"},
                                          {"positive", 1, "all positive, m = n"},
                                          {"sparse 10 %", 1, "one coefficient in ten, m = n"},
                                          {"assignment", 5, "assignment, n = 5 m"},
                                          {"transport", 5, "transport, n = 5 m"}}};

constexpr double panelWidth = 400.0;
constexpr double panelHeight = 250.0;
constexpr double marginLeft = 62.0;
constexpr double marginTop = 84.0;
constexpr double gapX = 70.0;
constexpr double gapY = 72.0;

constexpr const char* header = R"(<svg xmlns="http://www.w3.org/2000/svg" )"
                               R"(viewBox="0 0 %.0f %.0f" font-family="Helvetica, Arial, )"
                               R"(sans-serif" font-size="12">
<title>Solve time against size</title>
<style>
.paper { fill: #ffffff }
text { fill: #24292f }
.title { font-weight: bold }
.grid { stroke: #d0d7de; stroke-width: 0.7; fill: none }
.line { fill: none; stroke-width: 1.6; stroke-linejoin: round }
.nuv { stroke: #c2410c; stroke-width: 3 }
.tab { stroke: #1d4ed8 }
.glp { stroke: #15803d }
.clp { stroke: #7e22ce }
.lps { stroke: #8a6100 }
.lim { stroke: #6e7781; stroke-dasharray: 5 4 }
.mark { fill: #ffffff; stroke-width: 1.6; stroke-dasharray: none }
@media (prefers-color-scheme: dark) {
.paper { fill: #0d1117 }
text { fill: #e6edf3 }
.grid { stroke: #30363d }
.nuv { stroke: #fb923c }
.tab { stroke: #6ea8fe }
.glp { stroke: #4ade80 }
.clp { stroke: #c99bff }
.lps { stroke: #e3b341 }
.lim { stroke: #9aa4af }
.mark { fill: #0d1117 }
}
</style>
<rect class="paper" width="100%%" height="100%%"/>
)";

struct Point
{
    double size;
    double seconds;
};

template <class... Values>
std::string Format(const char* format, Values... values)
{
    char text[2048];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

/// A shape of the series' own at a place.
std::string Mark(std::string_view style, double x, double y)
{
    const auto shape = [&](const char* path)
    {
        return Format("<path class=\"mark %s\" transform=\"translate(%.1f %.1f)\" d=\"%s\"/>\n",
                      style.data(), x, y, path);
    };
    if (style == "nuv")
        return shape("M-4 0a4 4 0 1 0 8 0a4 4 0 1 0 -8 0z");
    if (style == "tab")
        return shape("M-3.5 -3.5h7v7h-7z");
    if (style == "glp")
        return shape("M0 -4.5l4.2 7.5h-8.4z");
    if (style == "clp")
        return shape("M0 -4.6l4.6 4.6l-4.6 4.6l-4.6 -4.6z");
    if (style == "lps")
        return shape("M-3.5 -3.5l7 7M-3.5 3.5l7 -7");
    return "";
}

std::vector<Point> PointsOf(const Results& results, const Panel& panel, const Series& series)
{
    std::vector<Point> points;
    for (const ComparedInstance& instance : results.instances)
    {
        if (instance.family != panel.family ||
            instance.columns != panel.columnsPerRow * instance.rows)
            continue;
        const auto size = static_cast<double>(instance.rows);
        const bool isLimit = std::string_view(series.contender) == "limit";
        const Measurement* const found = instance.Find(isLimit ? "nuv" : series.contender);
        if (found)
            points.push_back({size, isLimit ? instance.pass * instance.pivots : found->solving});
    }
    return points;
}

/// Where values of a logarithmic axis stand.
struct Axis
{
    double lowest;
    double highest;
    double start;
    double length;

    double At(double value) const
    {
        return start + length * (std::log10(value) - lowest) / std::max(highest - lowest, 1e-9);
    }
};

struct Frame
{
    Axis x;
    Axis y;
};

Frame MakeFrame(const std::vector<std::vector<Point>>& lines, double left, double top)
{
    double least[2] = {HUGE_VAL, HUGE_VAL};
    double most[2] = {-HUGE_VAL, -HUGE_VAL};
    for (const std::vector<Point>& line : lines)
        for (const Point& point : line)
        {
            const double logs[2] = {std::log10(point.size), std::log10(point.seconds)};
            for (std::size_t i = 0; i < 2; ++i)
            {
                least[i] = std::min(least[i], logs[i]);
                most[i] = std::max(most[i], logs[i]);
            }
        }
    return {{least[0] - 0.06, most[0] + 0.06, left, panelWidth},
            {std::floor(least[1]), std::ceil(most[1]), top + panelHeight, -panelHeight}};
}

/// "100 µs" for 1e-4.
std::string DecadeText(int decade)
{
    const char* const unit = decade < -6 ? "ns" : decade < -3 ? "µs" : decade < 0 ? "ms" : "s";
    const int shift = decade < -6 ? 9 : decade < -3 ? 6 : decade < 0 ? 3 : 0;
    return Format("%.0f %s", std::pow(10.0, decade + shift), unit);
}

std::string DrawGrid(const Frame& frame, const std::string& title)
{
    const double left = frame.x.start;
    const double bottom = frame.y.start;
    std::string text = Format("<text class=\"title\" x=\"%.1f\" y=\"%.1f\">%s</text>\n", left,
                              bottom - panelHeight - 10.0, title.c_str());
    for (int decade = static_cast<int>(frame.y.lowest); decade <= frame.y.highest; ++decade)
    {
        const double y = frame.y.At(std::pow(10.0, decade));
        text += Format("<path class=\"grid\" d=\"M%.1f %.1fh%.1f\"/>\n", left, y, panelWidth);
        text += Format("<text text-anchor=\"end\" x=\"%.1f\" y=\"%.1f\">%s</text>\n", left - 6.0,
                       y + 4.0, DecadeText(decade).c_str());
    }
    for (const double size : {5.0, 10.0, 20.0, 50.0, 100.0, 200.0, 500.0, 1000.0})
    {
        if (std::log10(size) < frame.x.lowest || std::log10(size) > frame.x.highest)
            continue;
        const double x = frame.x.At(size);
        text += Format("<path class=\"grid\" d=\"M%.1f %.1fv%.1f\"/>\n", x, bottom, -panelHeight);
        text += Format("<text text-anchor=\"middle\" x=\"%.1f\" y=\"%.1f\">%.0f</text>\n", x,
                       bottom + 16.0, size);
    }
    return text + Format("<text text-anchor=\"middle\" x=\"%.1f\" y=\"%.1f\">rows m</text>\n",
                         left + panelWidth / 2.0, bottom + 32.0);
}

std::string DrawLine(const Frame& frame, const std::vector<Point>& points, const char* style)
{
    std::string path;
    std::string marks;
    for (const Point& point : points)
    {
        const double x = frame.x.At(point.size);
        const double y = frame.y.At(point.seconds);
        path += Format("%s%.1f %.1f", path.empty() ? "M" : "L", x, y);
        marks += Mark(style, x, y);
    }
    return Format("<path class=\"line %s\" d=\"", style) + path + "\"/>\n" + marks;
}

std::string DrawPanel(const Results& results, const Panel& panel, double left, double top)
{
    std::vector<std::vector<Point>> lines;
    std::size_t points = 0;
    for (const Series& series : allSeries)
    {
        lines.push_back(PointsOf(results, panel, series));
        points += lines.back().size();
    }
    if (points == 0)
        return "";
    const Frame frame = MakeFrame(lines, left, top);
    std::string text = DrawGrid(frame, panel.title);
    // This library's line last, on top of the others.
    for (std::size_t i = lines.size(); i-- > 0;)
        text += DrawLine(frame, lines[i], allSeries[i].style);
    return text;
}

std::string DrawLegend()
{
    std::string text = Format("<text class=\"title\" font-size=\"16\" x=\"%.1f\" y=\"26\">Solve "
                              "time against size, both axes logarithmic</text>\n",
                              marginLeft);
    double x = marginLeft;
    for (const Series& series : allSeries)
    {
        text += Format("<path class=\"line %s\" d=\"M%.1f 46h28\"/>\n", series.style, x);
        text += Mark(series.style, x + 14.0, 46.0);
        text += Format("<text x=\"%.1f\" y=\"50\">%s</text>\n", x + 34.0, series.label);
        x += 54.0 + 6.6 * static_cast<double>(std::string_view(series.label).size());
    }
    return text;
}
}  // namespace

std::string DrawPicture(const Results& results)
{
    const double width = marginLeft + 2.0 * panelWidth + gapX + 16.0;
    const double height = marginTop + 3.0 * panelHeight + 2.0 * gapY + 46.0;
    std::string text = Format(header, width, height) + DrawLegend();
    for (std::size_t i = 0; i < panels.size(); ++i)
        text += DrawPanel(results, panels[i],
                          marginLeft + static_cast<double>(i % 2) * (panelWidth + gapX),
                          marginTop + static_cast<double>(i / 2) * (panelHeight + gapY));
    return text + "</svg>\n";
}
}  // namespace bench
