// A model of two variables in the plane. Everything is reduced to half planes a x + b y <= c; the
// region is the window cut by each of them.
#include "apps/nuvlp/plot/Picture.hpp"
#include "apps/nuvlp/plot/Svg.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

namespace nuv
{
namespace
{

constexpr double kWidth = 760.0;
constexpr double kHeight = 620.0;
constexpr double kLeft = 64.0;
constexpr double kRight = 736.0;
constexpr double kTop = 64.0;
constexpr double kBottom = 560.0;

struct HalfPlane
{
    double a = 0.0;
    double b = 0.0;
    double c = 0.0;
    std::string name;  ///< empty for a bound

    [[nodiscard]] double Excess(Point p) const
    {
        return a * p.x + b * p.y - c;
    }
    /// How far outside is still taken for the edge.
    [[nodiscard]] double Tolerance(Point p) const
    {
        return 1e-9 * (std::fabs(a * p.x) + std::fabs(b * p.y) + std::fabs(c) + 1.0);
    }
};

void AddRow(const Model& model, std::uint32_t i, std::vector<HalfPlane>& planes)
{
    double a[2] = {0.0, 0.0};
    for (std::size_t at = 0; at < model.RowColumns(i).size(); ++at)
        a[model.RowColumns(i)[at]] = model.RowCoefficients(i)[at];
    if (a[0] == 0.0 && a[1] == 0.0)
        return;
    const std::string name(model.RowName(i));
    if (std::isfinite(model.RowUpper()[i]))
        planes.push_back({a[0], a[1], model.RowUpper()[i], name});
    if (std::isfinite(model.RowLower()[i]))
        planes.push_back({-a[0], -a[1], -model.RowLower()[i], name});
}

std::vector<HalfPlane> HalfPlanesOf(const Model& model)
{
    std::vector<HalfPlane> planes;
    for (std::uint32_t i = 0; i < model.RowCount(); ++i)
        AddRow(model, i, planes);
    for (std::uint32_t j = 0; j < 2; ++j)
    {
        const double unit[2] = {j == 0 ? 1.0 : 0.0, j == 1 ? 1.0 : 0.0};
        if (std::isfinite(model.VariableUpper()[j]))
            planes.push_back({unit[0], unit[1], model.VariableUpper()[j], ""});
        if (std::isfinite(model.VariableLower()[j]))
            planes.push_back({-unit[0], -unit[1], -model.VariableLower()[j], ""});
    }
    return planes;
}

std::optional<Point> Intersection(const HalfPlane& p, const HalfPlane& q)
{
    const double determinant = p.a * q.b - p.b * q.a;
    if (std::fabs(determinant) <= 1e-12 * (std::fabs(p.a * q.b) + std::fabs(p.b * q.a)))
        return std::nullopt;
    return Point{(p.c * q.b - p.b * q.c) / determinant, (p.a * q.c - p.c * q.a) / determinant};
}

bool IsFeasible(std::span<const HalfPlane> planes, Point p)
{
    return std::ranges::all_of(planes, [&](const HalfPlane& plane)
                               { return plane.Excess(p) <= plane.Tolerance(p); });
}

/// The part of the plane that is shown.
struct Window
{
    Point low;
    Point high;

    [[nodiscard]] Point OnPage(Point p) const
    {
        return {kLeft + (kRight - kLeft) * (p.x - low.x) / (high.x - low.x),
                kBottom - (kBottom - kTop) * (p.y - low.y) / (high.y - low.y)};
    }
    [[nodiscard]] std::vector<Point> Corners() const
    {
        return {low, {high.x, low.y}, high, {low.x, high.y}};
    }
};

/// What must be seen: the corners of the region, or of all lines where there is none, and the way.
std::vector<Point> PlacesOf(std::span<const HalfPlane> planes, const Solution& solution)
{
    std::vector<Point> feasible;
    std::vector<Point> all;
    for (std::size_t i = 0; i < planes.size(); ++i)
        for (std::size_t k = i + 1; k < planes.size(); ++k)
            if (const std::optional<Point> p = Intersection(planes[i], planes[k]))
            {
                all.push_back(*p);
                if (IsFeasible(planes, *p))
                    feasible.push_back(*p);
            }
    std::vector<Point> places = feasible.empty() ? all : feasible;
    for (const PathStep& step : solution.path)
        places.push_back({step.values[0], step.values[1]});
    if (solution.values.size() == 2)
        places.push_back({solution.values[0], solution.values[1]});
    if (places.empty())
        places.push_back({0.0, 0.0});
    return places;
}

Window WindowFor(std::span<const Point> places)
{
    Window window = {places[0], places[0]};
    for (const Point& p : places)
    {
        window.low = {std::fmin(window.low.x, p.x), std::fmin(window.low.y, p.y)};
        window.high = {std::fmax(window.high.x, p.x), std::fmax(window.high.y, p.y)};
    }
    const auto widen = [](double& low, double& high)
    {
        const double span = high > low ? high - low : std::fmax(1.0, std::fabs(high));
        low -= 0.12 * span;
        high += 0.22 * span;
    };
    widen(window.low.x, window.high.x);
    widen(window.low.y, window.high.y);
    return window;
}

/// Cuts a convex polygon at the edge of a half plane (Sutherland and Hodgman's step).
std::vector<Point> Cut(std::span<const Point> polygon, const HalfPlane& plane)
{
    std::vector<Point> result;
    for (std::size_t i = 0; i < polygon.size(); ++i)
    {
        const Point p = polygon[i];
        const Point q = polygon[(i + 1) % polygon.size()];
        const double atP = plane.Excess(p);
        const double atQ = plane.Excess(q);
        if (atP <= 0.0)
            result.push_back(p);
        if ((atP < 0.0 && atQ > 0.0) || (atP > 0.0 && atQ < 0.0))
        {
            const double t = atP / (atP - atQ);
            result.push_back({p.x + t * (q.x - p.x), p.y + t * (q.y - p.y)});
        }
    }
    return result;
}

/// The piece of the line a x + b y = c inside the window, if any.
std::optional<std::pair<Point, Point>> Visible(const HalfPlane& line, const Window& window)
{
    std::vector<Point> ends;
    const std::vector<Point> corners = window.Corners();
    for (std::size_t i = 0; i < corners.size(); ++i)
    {
        const Point p = corners[i];
        const Point q = corners[(i + 1) % corners.size()];
        const double atP = line.Excess(p);
        const double atQ = line.Excess(q);
        if ((atP <= 0.0) == (atQ <= 0.0))
            continue;
        const double t = atP / (atP - atQ);
        ends.push_back({p.x + t * (q.x - p.x), p.y + t * (q.y - p.y)});
    }
    if (ends.size() < 2)
        return std::nullopt;
    return std::pair(ends[0], ends[1]);
}

struct Box
{
    Point low;
    Point high;
    [[nodiscard]] bool Meets(const Box& other) const
    {
        return low.x < other.high.x && other.low.x < high.x && low.y < other.high.y &&
               other.low.y < high.y;
    }
};

/// A line on the page.
struct Segment
{
    Point from;
    Point to;

    [[nodiscard]] Point At(double t) const
    {
        return {from.x + t * (to.x - from.x), from.y + t * (to.y - from.y)};
    }
    /// The distance of a point from the line through both ends.
    [[nodiscard]] double Distance(Point p) const
    {
        const Point along = {to.x - from.x, to.y - from.y};
        const double length = std::sqrt(along.x * along.x + along.y * along.y);
        return length == 0.0
                   ? kWidth
                   : std::fabs((p.x - from.x) * along.y - (p.y - from.y) * along.x) / length;
    }
};

/// Finds each name a place along its line: where it meets no earlier one, far from other lines.
class Labels
{
public:
    explicit Labels(std::span<const Segment> lines) : m_lines(lines) {}

    void Reserve(Point at, double radius)
    {
        m_taken.push_back({{at.x - radius, at.y - radius}, {at.x + radius, at.y + radius}});
    }

    void Place(Svg& svg, std::string_view style, std::string_view text, const Segment& line)
    {
        Box best = BoxAt(line.At(0.9), text);
        double bestRoom = -1.0;
        for (const double t : {0.9, 0.1, 0.75, 0.25, 0.6, 0.4, 0.96, 0.04})
        {
            const Box box = BoxAt(line.At(t), text);
            if (std::ranges::any_of(m_taken, [&](const Box& other) { return box.Meets(other); }))
                continue;
            const double room = RoomAround(line.At(t), line);
            if (room > bestRoom)
            {
                bestRoom = room;
                best = box;
            }
        }
        m_taken.push_back(best);
        svg.Text(style, {best.low.x, best.high.y - 4.0}, Anchor::Start, text);
    }

private:
    static Box BoxAt(Point at, std::string_view text)
    {
        const double wide = TextWidth(text);
        const double x = std::clamp(at.x + 7.0, kLeft + 2.0, std::fmax(kLeft + 2.0, kRight - wide));
        const double y = std::clamp(at.y - 6.0, kTop + 16.0, kBottom - 4.0);
        return {{x, y - 14.0}, {x + wide, y + 4.0}};
    }

    /// The distance to the nearest other line, as far as it matters.
    [[nodiscard]] double RoomAround(Point p, const Segment& own) const
    {
        double room = 60.0;
        for (const Segment& line : m_lines)
            if (line.from.x != own.from.x || line.from.y != own.from.y || line.to.x != own.to.x ||
                line.to.y != own.to.y)
                room = std::fmin(room, line.Distance(p));
        return room;
    }

    std::span<const Segment> m_lines;
    std::vector<Box> m_taken;
};

void DrawAxes(Svg& svg, const Window& window, const Model& model)
{
    const double stepX = RoundStep(window.high.x - window.low.x, 8);
    const double stepY = RoundStep(window.high.y - window.low.y, 7);
    for (double k = std::ceil(window.low.x / stepX); k * stepX <= window.high.x; ++k)
    {
        const double x = window.OnPage({k * stepX, window.low.y}).x;
        svg.Line("grid", {x, kTop}, {x, kBottom});
        svg.Text("quiet", {x, kBottom + 18.0}, Anchor::Middle, ShortNumber(k * stepX));
    }
    for (double k = std::ceil(window.low.y / stepY); k * stepY <= window.high.y; ++k)
    {
        const double y = window.OnPage({window.low.x, k * stepY}).y;
        svg.Line("grid", {kLeft, y}, {kRight, y});
        svg.Text("quiet", {kLeft - 8.0, y + 4.0}, Anchor::End, ShortNumber(k * stepY));
    }
    const Point origin = window.OnPage({0.0, 0.0});
    if (origin.x > kLeft && origin.x < kRight)
        svg.Line("axis", {origin.x, kTop}, {origin.x, kBottom});
    if (origin.y > kTop && origin.y < kBottom)
        svg.Line("axis", {kLeft, origin.y}, {kRight, origin.y});
    svg.Text("name", {kRight, kBottom + 38.0}, Anchor::End, model.VariableName(0));
    svg.Text("name", {kLeft - 8.0, kTop - 10.0}, Anchor::Start, model.VariableName(1));
}

void DrawObjective(Svg& svg, const Window& window, const Model& model, Point optimum)
{
    const double a = model.Objective()[0];
    const double b = model.Objective()[1];
    if (a == 0.0 && b == 0.0)
        return;
    if (const auto level = Visible({a, b, a * optimum.x + b * optimum.y, ""}, window))
        svg.Line("level", window.OnPage(level->first), window.OnPage(level->second));
    // The direction as the page shows it, where the axes may have different scales.
    const double sign = model.ObjectiveSense() == Sense::Maximize ? 1.0 : -1.0;
    const Point from = window.OnPage(optimum);
    const Point ahead = window.OnPage(
        {optimum.x + sign * a * (window.high.x - window.low.x) * (window.high.x - window.low.x),
         optimum.y + sign * b * (window.high.y - window.low.y) * (window.high.y - window.low.y)});
    const Point step = {ahead.x - from.x, ahead.y - from.y};
    const double length = std::sqrt(step.x * step.x + step.y * step.y);
    if (std::isfinite(length) && length > 0.0)
        svg.Arrow("arrow", from,
                  {from.x + 58.0 * step.x / length, from.y + 58.0 * step.y / length});
}

/// The vertices from the first to the last, a dot and its number at each new one.
void DrawPath(Svg& svg, const Window& window, const Solution& solution, Labels& labels)
{
    std::vector<Point> points;
    const auto visit = [&](const std::vector<double>& values)
    {
        const Point p = window.OnPage({values[0], values[1]});
        if (points.empty() ||
            std::fabs(points.back().x - p.x) + std::fabs(points.back().y - p.y) > 0.5)
            points.push_back(p);
    };
    for (const PathStep& step : solution.path)
        visit(step.values);
    if (solution.values.size() == 2)
        visit(solution.values);
    if (points.size() > 1)
        svg.Polyline("path", points);
    for (std::size_t k = 0; k < points.size(); ++k)
    {
        svg.Circle("dot", points[k], 4.0);
        labels.Reserve(points[k], 7.0);
        labels.Place(svg, "text", std::to_string(k), {points[k], points[k]});
    }
}

}  // namespace

std::string DrawPlane(const Model& model, const Solution& solution)
{
    const std::vector<HalfPlane> planes = HalfPlanesOf(model);
    const Window window = WindowFor(PlacesOf(planes, solution));
    Svg svg(kWidth, kHeight, Headline(solution));
    svg.Text("head", {kLeft, 30.0}, Anchor::Start, Headline(solution));
    DrawAxes(svg, window, model);

    std::vector<Point> region = window.Corners();
    for (const HalfPlane& plane : planes)
        region = Cut(region, plane);
    for (Point& p : region)
        p = window.OnPage(p);
    if (region.size() > 2)
        svg.Polygon("area", region);

    std::vector<Segment> lines;
    std::vector<std::string> names;
    for (const HalfPlane& plane : planes)
        if (const auto line = Visible(plane, window))
        {
            lines.push_back({window.OnPage(line->first), window.OnPage(line->second)});
            names.push_back(plane.name);
            svg.Line(plane.name.empty() ? "bound" : "line", lines.back().from, lines.back().to);
        }
    Labels labels(lines);
    if (solution.status == Status::Optimal)
        DrawObjective(svg, window, model, {solution.values[0], solution.values[1]});
    DrawPath(svg, window, solution, labels);
    for (std::size_t k = 0; k < lines.size(); ++k)
        if (!names[k].empty())
            labels.Place(svg, "name", names[k], lines[k]);
    if (solution.status == Status::Optimal)
        svg.Circle("best", window.OnPage({solution.values[0], solution.values[1]}), 6.0);
    return svg.Finish();
}

}  // namespace nuv
