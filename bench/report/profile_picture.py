"""The performance profile of Dolan and Moré: for each contender, which share of the models it solves within
a factor of the quickest one's time."""
import math

from picture import header

CONTENDERS = (("nuv", "nuv, proved", "nuv"), ("clp", "clp", "clp"), ("glpsol", "glpsol", "glp"),
              ("esolver", "esolver, proved", "tab"))  # fmt: skip
WIDTH, HEIGHT, LEFT, TOP = 640.0, 320.0, 60.0, 50.0
DECADES = 2  # factors of 1 to 100


def factors(times):
    """By contender, its time over the quickest for each model that it ended on, in order."""
    found = {name: [] for name, _, _ in CONTENDERS}
    for record in times:
        seconds = {n: c["seconds"] for n, c in record["contenders"].items() if c["seconds"]}
        for name, taken in seconds.items():
            found[name].append(taken / min(seconds.values()))
    return {name: sorted(values) for name, values in found.items() if values}


def place(factor, share):
    x = LEFT + WIDTH * min(math.log10(factor) / DECADES, 1.0)
    return f"{x:.1f} {TOP + HEIGHT * (1.0 - share):.1f}"


def draw(times):
    parts = [header("Share of models solved within a factor of the quickest time", WIDTH + 2 * LEFT, HEIGHT + TOP + 60.0)]
    parts.append(f'<text class="title" x="{LEFT}" y="24">share of models solved within a factor of the quickest time</text>\n')
    for step in range(6):
        share = step / 5
        parts.append(f'<path class="grid" d="M {place(1, share)} L {place(10**DECADES, share)}"/>\n')
        parts.append(f'<text x="{LEFT - 34}" y="{TOP + HEIGHT * (1 - share) + 4:.1f}">{100 * share:.0f} %</text>\n')
    for factor in (1, 2, 3, 5, 10, 20, 50, 100):
        parts.append(f'<path class="grid" d="M {place(factor, 0)} L {place(factor, 1)}"/>\n')
        x = place(factor, 0).split()[0]
        parts.append(f'<text text-anchor="middle" x="{x}" y="{TOP + HEIGHT + 18:.1f}">{factor}</text>\n')
    found = factors(times)
    at = LEFT
    for name, label, style in CONTENDERS:
        if name not in found:
            continue
        path, share = f"M {place(1, 0)}", 0.0
        for factor in found[name]:
            path += f" L {place(factor, share)}"
            share += 1.0 / len(times)
            path += f" L {place(factor, share)}"
        path += f" L {place(10**DECADES, share)}"
        parts.append(f'<path class="line {style}" d="{path}"/>\n')
        y = TOP + HEIGHT + 44
        parts.append(f'<path class="line {style}" d="M {at:.1f} {y - 4:.1f} h 24"/>\n<text x="{at + 30:.1f}" y="{y:.1f}">{label}</text>\n')
        at += 150.0
    return "".join(parts) + "</svg>\n"
