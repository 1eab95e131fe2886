"""Small problems by the thousand: the tables of bench_small and bench_building, and their picture, problems per
second against size."""
import math
from collections import defaultdict

from figures import number, table, time
from picture import HEIGHT, TOP, WIDTH, Frame, decade_text, draw_grid, header, mark

# Contender, label, class of style.
SERIES = (("batch", "nuv, batch", "nuv"), ("models", "nuv, one by one", "one"), ("tableau", "tableau by hand, native", "tab"),
          ("GLPK", "GLPK", "glp"), ("CLP", "CLP", "clp"), ("lp_solve", "lp_solve", "lps"))  # fmt: skip
LEFT, GAP = 88.0, 96.0
PANELS = (("mixed signs", "mixed signs, m = n"), ("assignment", "assignment, m = n"))


def seconds_by_shape(records):
    """By (family, rows, columns) the seconds of each contender, of a library the fastest setting's."""
    shapes = defaultdict(dict)
    for r in records["small"]:
        found = shapes[r["family"], r["rows"], r["columns"]]
        name = r["contender"].split(", ")[0]
        found[name] = min(found.get(name, math.inf), r["seconds"])
        found["pivots"] = r["pivots"]
    return shapes


def small_block(records):
    def ratio(found, name):
        if name not in found:
            return "–"
        value = found["tableau"] / found[name]
        return f"**{value:.2f}**" if value < 1 else f"{value:.2f}"

    def row(shape, found):
        libraries = [found[name] / found["batch"] for name in ("GLPK", "CLP", "lp_solve") if name in found]
        return [f"{shape[0]}, {shape[1]} × {shape[2]}", f"{found['pivots']:.1f}", number(1 / found["batch"], 3),
                time(found["batch"]), time(found["models"]), time(found["new models"]), time(found["tableau"]),
                *(ratio(found, name) for name in ("batch", "16 lanes", "8 lanes", "one by one", "models")),
                f"{min(libraries):.0f}" if libraries else "–"]  # fmt: skip

    title = ("problems | pivots:| batch, a second:| batch:| model:| new model:| tableau:| tableau ÷ batch:|"
             " ÷ 16 lanes:| ÷ 8 lanes:| ÷ one by one:| ÷ model:| fastest library ÷ batch:")
    return table(title, [row(shape, found) for shape, found in seconds_by_shape(records).items()])


def building_block(records):
    seconds = {r["what"]: r["seconds"] for r in records["building"]}
    tableau = seconds["tableau, native, 5 × 5"]

    def row(what, value):
        return [what, f"{number(1e9 * value, 3)} ns", f"{value / tableau:.2f}" if what.endswith("5 × 5") else "–"]

    return table("what | time:| ÷ tableau:", [row(what, value) for what, value in seconds.items()])


def points_of(shapes, family, name):
    return [(rows, found[name]) for (of, rows, columns), found in shapes.items()
            if of == family and rows == columns and name in found]  # fmt: skip


def draw_panel(shapes, panel, left):
    lines = [(points_of(shapes, panel[0], name), style) for name, _, style in SERIES]
    frame = Frame([point for line, _ in lines for point in line], left, TOP)
    # Upside down, as problems a second are: the fewest seconds at the top.
    low, high = frame.y_range
    frame.y = lambda seconds: frame.bottom - HEIGHT * (high - math.log10(seconds)) / (high - low)
    text = draw_grid(frame, panel[1])
    for decade in range(low, high + 1):
        text = text.replace(f">{decade_text(decade)}<", f">{10**-decade:,}<".replace(",", " "))
    for line, style in reversed(lines):
        places = [(frame.x(size), frame.y(seconds)) for size, seconds in line]
        if places:
            text += f'<path class="line {style}" d="M{"L".join(f"{x:.1f} {y:.1f}" for x, y in places)}"/>\n'
        text += "".join(mark(style, x, y) for x, y in places)
    return text


def draw(records):
    """The picture."""
    title = "Problems per second on one processor, against size, both axes logarithmic"
    shapes = seconds_by_shape(records)
    text = header(title, LEFT + 2 * WIDTH + GAP + 16, TOP + HEIGHT + 46)
    text = text.replace(".tab {", ".one { stroke: #c2410c; stroke-dasharray: 7 3 }\n.tab {", 1)
    text = text.replace("fb923c }\n", "fb923c }\n.one { stroke: #fb923c }\n", 1)
    text += f'<text class="title" font-size="16" x="{LEFT:.1f}" y="26">{title}</text>\n'
    x = LEFT
    for _, label, style in SERIES:
        text += f'<path class="line {style}" d="M{x:.1f} 46h28"/>\n' + mark(style, x + 14, 46)
        text += f'<text x="{x + 34:.1f}" y="50">{label}</text>\n'
        x += 54 + 6.6 * len(label)
    for i, panel in enumerate(PANELS):
        text += draw_panel(shapes, panel, LEFT + i * (WIDTH + GAP))
    return text + "</svg>\n"
