#include "apps/nuvlp/plot/Svg.hpp"

#include "Nuv/Io/Utf8.hpp"

#include <charconv>
#include <cmath>
#include <utility>

namespace nuv
{
namespace
{

constexpr std::string_view kStyles = R"(<style>
text{font:13px system-ui,-apple-system,"Segoe UI",Helvetica,Arial,sans-serif;fill:#1f2430}
.page{fill:#ffffff}.head{font-size:16px;font-weight:600}.name{fill:#3d4a66}.quiet{fill:#6b7280;font-size:12px}
.axis{stroke:#6b7280;stroke-width:1.2;fill:none}.grid{stroke:#e5e7eb;stroke-width:1}
.line{stroke:#3d6fb6;stroke-width:1.8;fill:none}.bound{stroke:#9aa5b8;stroke-width:1.4;stroke-dasharray:2 4;fill:none}
.area{fill:#3d6fb6;fill-opacity:.14;stroke:none}.phase{fill:#6b7280;fill-opacity:.12;stroke:none}
.level{stroke:#b4591b;stroke-width:1.6;stroke-dasharray:7 5;fill:none}.arrow{stroke:#b4591b;stroke-width:2;fill:#b4591b}
.path{stroke:#7a3aa8;stroke-width:2.2;fill:none;stroke-linejoin:round}.dot{fill:#7a3aa8}.best{fill:#b4591b}
.bar{fill:#3d6fb6}.bar2{fill:#b4591b}
@media (prefers-color-scheme:dark){text{fill:#e6e9f0}.page{fill:#14171f}.name{fill:#b9c6e0}.quiet{fill:#9aa3b2}
.axis{stroke:#9aa3b2}.grid{stroke:#272c38}.line{stroke:#7fb0f5}.bound{stroke:#5d6779}.area{fill:#7fb0f5}.phase{fill:#9aa3b2}
.level{stroke:#f0a064}.arrow{stroke:#f0a064;fill:#f0a064}.path{stroke:#c99cf0}.dot{fill:#c99cf0}.best{fill:#f0a064}
.bar{fill:#7fb0f5}.bar2{fill:#f0a064}}
</style>
)";

std::string Escaped(std::string_view text)
{
    std::string result;
    for (const char c : text)
    {
        switch (c)
        {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        default:
            result += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
        }
    }
    return result;
}

std::string Attribute(std::string_view name, std::string_view value)
{
    return std::string(" ").append(name).append("=\"").append(value).append("\"");
}

std::string_view NameOf(Anchor anchor)
{
    switch (anchor)
    {
    case Anchor::Start:
        return "start";
    case Anchor::Middle:
        return "middle";
    case Anchor::End:
        break;
    }
    return "end";
}

}  // namespace

std::string Coordinate(double value)
{
    // A rounded number of hundredths, so that no bit beyond them shows.
    const double hundredths = std::round(value * 100.0);
    char buffer[40];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, (hundredths + 0.0) / 100.0);
    return std::string(buffer, end.ptr);
}

std::string ShortNumber(double value)
{
    char buffer[40];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, value + 0.0, std::chars_format::general, 6);
    return std::string(buffer, end.ptr);
}

double RoundStep(double span, int count)
{
    if (!(span > 0.0) || !std::isfinite(span))
        return 1.0;
    const double wanted = span / count;
    double power = 1.0;
    while (power * 10.0 <= wanted)
        power *= 10.0;
    while (power > wanted)
        power /= 10.0;
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * power >= wanted)
            return factor * power;
    return 10.0 * power;
}

double TextWidth(std::string_view text)
{
    return 7.2 * static_cast<double>(DisplayWidth(text));
}

Svg::Svg(double width, double height, std::string_view title)
    : m_text("<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 ")
{
    m_text.append(Coordinate(width)).append(" ").append(Coordinate(height)).append("\"");
    m_text.append(Attribute("width", Coordinate(width)));
    m_text.append(Attribute("height", Coordinate(height))).append(" role=\"img\">\n<title>");
    m_text.append(Escaped(title)).append("</title>\n").append(kStyles);
    Rectangle("page", {0.0, 0.0}, width, height);
}

void Svg::Line(std::string_view style, Point from, Point to)
{
    m_text.append("<line").append(Attribute("class", style));
    m_text.append(Attribute("x1", Coordinate(from.x))).append(Attribute("y1", Coordinate(from.y)));
    m_text.append(Attribute("x2", Coordinate(to.x))).append(Attribute("y2", Coordinate(to.y)));
    m_text.append("/>\n");
}

void Svg::Shape(std::string_view element, std::string_view style, std::span<const Point> points)
{
    std::string list;
    for (const Point& point : points)
    {
        if (!list.empty())
            list += ' ';
        list.append(Coordinate(point.x)).append(",").append(Coordinate(point.y));
    }
    m_text.append("<").append(element).append(Attribute("class", style));
    m_text.append(Attribute("points", list)).append("/>\n");
}

void Svg::Polyline(std::string_view style, std::span<const Point> points)
{
    Shape("polyline", style, points);
}

void Svg::Polygon(std::string_view style, std::span<const Point> points)
{
    Shape("polygon", style, points);
}

void Svg::Circle(std::string_view style, Point centre, double radius)
{
    m_text.append("<circle").append(Attribute("class", style));
    m_text.append(Attribute("cx", Coordinate(centre.x)));
    m_text.append(Attribute("cy", Coordinate(centre.y)));
    m_text.append(Attribute("r", Coordinate(radius))).append("/>\n");
}

void Svg::Rectangle(std::string_view style, Point corner, double width, double height)
{
    m_text.append("<rect").append(Attribute("class", style));
    m_text.append(Attribute("x", Coordinate(corner.x)))
        .append(Attribute("y", Coordinate(corner.y)));
    m_text.append(Attribute("width", Coordinate(width)));
    m_text.append(Attribute("height", Coordinate(height))).append("/>\n");
}

void Svg::Arrow(std::string_view style, Point from, Point to)
{
    const double length =
        std::sqrt((to.x - from.x) * (to.x - from.x) + (to.y - from.y) * (to.y - from.y));
    if (length == 0.0)
        return;
    const Point along = {(to.x - from.x) / length, (to.y - from.y) / length};
    const Point back = {to.x - 11.0 * along.x, to.y - 11.0 * along.y};
    Line(style, from, back);
    const Point head[] = {to,
                          {back.x - 4.5 * along.y, back.y + 4.5 * along.x},
                          {back.x + 4.5 * along.y, back.y - 4.5 * along.x}};
    Polygon(style, head);
}

void Svg::Text(std::string_view style, Point at, Anchor anchor, std::string_view text)
{
    m_text.append("<text").append(Attribute("class", style));
    m_text.append(Attribute("x", Coordinate(at.x))).append(Attribute("y", Coordinate(at.y)));
    m_text.append(Attribute("text-anchor", NameOf(anchor))).append(">");
    m_text.append(Escaped(text)).append("</text>\n");
}

std::string Svg::Finish()
{
    m_text.append("</svg>\n");
    return std::move(m_text);
}

}  // namespace nuv
