/// A page of SVG: shapes and words appended in drawing order, in colours that follow the reader's
/// light or dark setting. Numbers are written with two decimals at most, so that a picture is the
/// same bytes on every machine.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace nuv
{

struct Point
{
    double x = 0.0;
    double y = 0.0;
};

enum class Anchor
{
    Start,
    Middle,
    End
};

class Svg
{
public:
    Svg(double width, double height, std::string_view title);

    /// Classes name the styles of the page: "axis", "grid", "line", "bound", "area", "level",
    /// "path", "dot", "best", "bar", "bar2", "phase", "text", "name", "quiet", "head".
    void Line(std::string_view style, Point from, Point to);
    void Polyline(std::string_view style, std::span<const Point> points);
    void Polygon(std::string_view style, std::span<const Point> points);
    void Circle(std::string_view style, Point centre, double radius);
    void Rectangle(std::string_view style, Point corner, double width, double height);
    void Arrow(std::string_view style, Point from, Point to);
    void Text(std::string_view style, Point at, Anchor anchor, std::string_view text);

    /// Ends the page. @return its bytes.
    [[nodiscard]] std::string Finish();

private:
    void Shape(std::string_view element, std::string_view style, std::span<const Point> points);

    std::string m_text;
};

/// The width that text of this many characters takes, about.
[[nodiscard]] double TextWidth(std::string_view text);

/// A coordinate: two decimals at most, no trailing zeros.
[[nodiscard]] std::string Coordinate(double value);

/// A number for a reader: up to six significant digits.
[[nodiscard]] std::string ShortNumber(double value);

/// A round step that divides `span` into about `count` parts: 1, 2 or 5 times a power of ten.
[[nodiscard]] double RoundStep(double span, int count);

}  // namespace nuv
