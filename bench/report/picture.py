"""The picture: solve time against size. A panel is a frame with ticks, and one line with markers per
contender; the colours are its reader's, for light paper and dark."""
import math

# Contender ("limit" for the streaming limit times the pivots), label, class of style.
SERIES = (("nuv", "nuv", "nuv"), ("tableau", "tableau by hand", "tab"), ("GLPK", "GLPK", "glp"),
          ("CLP", "CLP", "clp"), ("lp_solve", "lp_solve", "lps"),
          ("limit", "memory limit of nuv's pivots", "lim"))  # fmt: skip
# The instances of a family with so many columns to a row.
PANELS = (("mixed signs", 1, "mixed signs, m = n"), ("phase I", 1, "phase I needed, m = n"),
          ("positive", 1, "all positive, m = n"), ("sparse 10 %", 1, "one coefficient in ten, m = n"),
          ("assignment", 5, "assignment, n = 5 m"), ("transport", 5, "transport, n = 5 m"))  # fmt: skip
WIDTH, HEIGHT, LEFT, TOP, GAP_X, GAP_Y = 400.0, 250.0, 62.0, 84.0, 70.0, 72.0
HEADER = """<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {:.0f} {:.0f}" font-family="Helvetica, Arial, sans-serif" font-size="12">
<title>{}</title>
<style>
.paper {{ fill: #ffffff }}
text {{ fill: #24292f }}
.title {{ font-weight: bold }}
.grid {{ stroke: #d0d7de; stroke-width: 0.7; fill: none }}
.line {{ fill: none; stroke-width: 1.6; stroke-linejoin: round }}
.nuv {{ stroke: #c2410c; stroke-width: 3 }}
.tab {{ stroke: #1d4ed8 }}
.glp {{ stroke: #15803d }}
.clp {{ stroke: #7e22ce }}
.lps {{ stroke: #8a6100 }}
.lim {{ stroke: #6e7781; stroke-dasharray: 5 4 }}
.mark {{ fill: #ffffff; stroke-width: 1.6; stroke-dasharray: none }}
@media (prefers-color-scheme: dark) {{
.paper {{ fill: #0d1117 }}
text {{ fill: #e6edf3 }}
.grid {{ stroke: #30363d }}
.nuv {{ stroke: #fb923c }}
.tab {{ stroke: #6ea8fe }}
.glp {{ stroke: #4ade80 }}
.clp {{ stroke: #c99bff }}
.lps {{ stroke: #e3b341 }}
.lim {{ stroke: #9aa4af }}
.mark {{ fill: #0d1117 }}
}}
</style>
<rect class="paper" width="100%" height="100%"/>
"""


def header(title, width, height):
    """How each picture begins: its size, its title, and the colours of the contenders."""
    return HEADER.format(width, height, title)


MARKS = {"nuv": "M-4 0a4 4 0 1 0 8 0a4 4 0 1 0 -8 0z", "tab": "M-3.5 -3.5h7v7h-7z", "glp": "M0 -4.5l4.2 7.5h-8.4z",
         "clp": "M0 -4.6l4.6 4.6l-4.6 4.6l-4.6 -4.6z", "lps": "M-3.5 -3.5l7 7M-3.5 3.5l7 -7"}  # fmt: skip


def mark(style, x, y):
    shape = MARKS.get(style)
    place = f'transform="translate({x:.1f} {y:.1f})"'
    return f'<path class="mark {style}" {place} d="{shape}"/>\n' if shape else ""


def points_of(instances, family, columns_per_row, contender):
    """(rows, seconds) of a contender in a panel."""
    for x in instances:
        found = x.fastest("nuv" if contender == "limit" else contender)
        if found and x.family == family and x.columns == columns_per_row * x.rows:
            yield x.rows, x.limit * x.pivots if contender == "limit" else found["solving"]


class Frame:
    """Where values of the two logarithmic axes stand."""

    def __init__(self, points, left, top):
        sizes, seconds = ([math.log10(value) for value in column] for column in zip(*points))
        self.left, self.bottom = left, top + HEIGHT
        self.x_range = min(sizes) - 0.06, max(sizes) + 0.06
        self.y_range = math.floor(min(seconds)), math.ceil(max(seconds))

    def x(self, size):
        low, high = self.x_range
        return self.left + WIDTH * (math.log10(size) - low) / max(high - low, 1e-9)

    def y(self, seconds):
        low, high = self.y_range
        return self.bottom - HEIGHT * (math.log10(seconds) - low) / max(high - low, 1e-9)


def decade_text(decade):
    """"100 µs" for -4."""
    for unit, shift in (("s", 0), ("ms", 3), ("µs", 6), ("ns", 9)):
        if decade >= -shift:
            break
    return f"{10.0 ** (decade + shift):.0f} {unit}"


def draw_grid(frame, title):
    left, bottom = frame.left, frame.bottom
    text = f'<text class="title" x="{left:.1f}" y="{bottom - HEIGHT - 10:.1f}">{title}</text>\n'
    for decade in range(frame.y_range[0], frame.y_range[1] + 1):
        y = frame.y(10.0**decade)
        text += f'<path class="grid" d="M{left:.1f} {y:.1f}h{WIDTH:.1f}"/>\n'
        text += f'<text text-anchor="end" x="{left - 6:.1f}" y="{y + 4:.1f}">{decade_text(decade)}</text>\n'
    for size in (5, 10, 20, 50, 100, 200, 500, 1000):
        if frame.x_range[0] <= math.log10(size) <= frame.x_range[1]:
            x = frame.x(size)
            text += f'<path class="grid" d="M{x:.1f} {bottom:.1f}v{-HEIGHT:.1f}"/>\n'
            text += f'<text text-anchor="middle" x="{x:.1f}" y="{bottom + 16:.1f}">{size}</text>\n'
    place = f'x="{left + WIDTH / 2:.1f}" y="{bottom + 32:.1f}"'
    return text + f'<text text-anchor="middle" {place}>rows m</text>\n'


def draw_panel(instances, panel, left, top):
    family, columns_per_row, title = panel
    lines = [(list(points_of(instances, family, columns_per_row, contender)), style)
             for contender, _, style in SERIES]  # fmt: skip
    points = [point for line, _ in lines for point in line]
    if not points:
        return ""
    frame = Frame(points, left, top)
    text = draw_grid(frame, title)
    # This library's line last, on top of the others.
    for line, style in reversed(lines):
        places = [(frame.x(size), frame.y(seconds)) for size, seconds in line]
        path = "L".join(f"{x:.1f} {y:.1f}" for x, y in places)
        text += f'<path class="line {style}" d="{"M" + path if path else ""}"/>\n'
        text += "".join(mark(style, x, y) for x, y in places)
    return text


def draw_legend():
    text = (f'<text class="title" font-size="16" x="{LEFT:.1f}" y="26">Solve time against size, both axes '
            "logarithmic</text>\n")  # fmt: skip
    x = LEFT
    for _, label, style in SERIES:
        text += f'<path class="line {style}" d="M{x:.1f} 46h28"/>\n' + mark(style, x + 14, 46)
        text += f'<text x="{x + 34:.1f}" y="50">{label}</text>\n'
        x += 54 + 6.6 * len(label)
    return text


def draw(instances):
    width = LEFT + 2 * WIDTH + GAP_X + 16
    height = TOP + 3 * HEIGHT + 2 * GAP_Y + 46
    text = header("Solve time against size", width, height) + draw_legend()
    for i, panel in enumerate(PANELS):
        text += draw_panel(instances, panel, LEFT + i % 2 * (WIDTH + GAP_X), TOP + i // 2 * (HEIGHT + GAP_Y))
    return text + "</svg>\n"
