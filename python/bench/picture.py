"""Draws what a problem takes against its size, of scipy.optimize.linprog in a loop, nuv.linprog in a
loop, and nuv.solve_batch with and without proof: processor time on one thread, the best of three runs
in turn. python3 python/bench/picture.py docs/python-times.svg
"""

import math
import sys
import time
from pathlib import Path

import numpy as np
import scipy.optimize

import nuv

SIZES = (5, 10, 20, 30, 50, 100)
#: Problems alone and in a batch, by size.
ALONE = {5: 200, 10: 200, 20: 100, 30: 60, 50: 30, 100: 10}
TOGETHER = {5: 4000, 10: 2000, 20: 500, 30: 200, 50: 60, 100: 12}
#: Name, class of the line, mark.
CONTENDERS = (("scipy.optimize.linprog", "scipy", "M-4 0L0 -5L4 0L0 5z"),
              ("nuv.linprog", "one", "M-4 -4h8v8h-8z"),
              ("nuv.solve_batch, proved", "batch", "M-4 0a4 4 0 1 0 8 0a4 4 0 1 0 -8 0z"),
              ("nuv.solve_batch, single precision", "single", "M-5 4L0 -5L5 4z"))
LEFT, TOP, WIDTH, HEIGHT = 80, 64, 620, 380
STYLE = """
.paper { fill: #ffffff }
text { fill: #24292f }
.grid { stroke: #d0d7de; stroke-width: 0.7; fill: none }
.line { fill: none; stroke-width: 2; stroke-linejoin: round }
.mark { fill: #ffffff; stroke-width: 1.6 }
.scipy { stroke: #1d4ed8 }
.one { stroke: #7e22ce }
.batch { stroke: #c2410c }
.single { stroke: #15803d }
@media (prefers-color-scheme: dark) {
.paper { fill: #0d1117 }
text { fill: #e6edf3 }
.grid { stroke: #30363d }
.mark { fill: #0d1117 }
.scipy { stroke: #6ea8fe }
.one { stroke: #c99bff }
.batch { stroke: #fb923c }
.single { stroke: #4ade80 }
}
"""


def measured(size):
    """Seconds a problem takes, of each contender."""
    generator = np.random.default_rng(size)
    alone, together = ALONE[size], TOGETHER[size]
    A = generator.random((together, size, size)) + 0.1
    b, c = generator.random((together, size)) + 1, -generator.random((together, size))
    floats = [array.astype(np.float32) for array in (c, A, b)]
    some = [(c[k % together], A[k % together], b[k % together]) for k in range(alone)]
    runs = ((alone, lambda: [scipy.optimize.linprog(*problem) for problem in some]),
            (alone, lambda: [nuv.linprog(*problem) for problem in some]),
            (together, lambda: nuv.solve_batch(c, A, b)),
            (together, lambda: nuv.solve_batch(*floats, proved=False)))
    best = [math.inf] * len(runs)
    for _ in range(3):
        for k, (count, run) in enumerate(runs):
            begin = time.process_time()
            run()
            best[k] = min(best[k], (time.process_time() - begin) / count)
    return best


def said(seconds):
    return f"{seconds * 1e6:g} µs" if seconds < 0.9e-3 else f"{seconds * 1e3:g} ms"


def drawing(times):
    """SVG, of the seconds by size and contender."""
    values = [value for row in times.values() for value in row]
    low, high = math.floor(math.log10(min(values))), math.ceil(math.log10(max(values)))
    widest = math.log(SIZES[-1] / SIZES[0])

    def x(size):
        return LEFT + WIDTH * math.log(size / SIZES[0]) / widest

    def y(seconds):
        return TOP + HEIGHT * (high - math.log10(seconds)) / (high - low)

    title = "What a problem takes on one thread against its rows and columns, both axes logarithmic"
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {LEFT + WIDTH + 220} {TOP + HEIGHT + 50}" '
             'font-family="Helvetica, Arial, sans-serif" font-size="12">', f"<title>{title}</title>",
             f"<style>{STYLE}</style>", '<rect class="paper" width="100%" height="100%"/>',
             f'<text x="{LEFT}" y="30" font-size="16" font-weight="bold">{title}</text>']
    for power in range(low, high + 1):
        at = y(10.0 ** power)
        parts += [f'<path class="grid" d="M{LEFT} {at:.1f}h{WIDTH}"/>',
                  f'<text x="{LEFT - 8}" y="{at + 4:.1f}" text-anchor="end">{said(10.0 ** power)}</text>']
    for size in SIZES:
        parts += [f'<path class="grid" d="M{x(size):.1f} {TOP}v{HEIGHT}"/>',
                  f'<text x="{x(size):.1f}" y="{TOP + HEIGHT + 18}" text-anchor="middle">{size}</text>']
    parts.append(f'<text x="{LEFT + WIDTH / 2}" y="{TOP + HEIGHT + 38}" text-anchor="middle">rows, and as many '
                 "columns</text>")
    for k, (name, kind, mark) in enumerate(CONTENDERS):
        points = [(x(size), y(times[size][k])) for size in SIZES]
        parts.append(f'<path class="line {kind}" d="M' + "L".join(f"{px:.1f} {py:.1f}" for px, py in points) + '"/>')
        parts += [f'<path class="mark {kind}" transform="translate({px:.1f} {py:.1f})" d="{mark}"/>'
                  for px, py in points]
    # The names stand at the ends of the lines, a line of text apart.
    last = -math.inf
    for at, name in sorted((y(times[SIZES[-1]][k]) + 4, name) for k, (name, _, _) in enumerate(CONTENDERS)):
        last = max(at, last + 15)
        parts.append(f'<text x="{LEFT + WIDTH + 12}" y="{last:.1f}">{name}</text>')
    return "\n".join([*parts, "</svg>", ""])


def main():
    times = {size: measured(size) for size in SIZES}
    print(f"{'microseconds a problem':35}" + "".join(f"{size:>10}" for size in SIZES))
    for k, (name, _, _) in enumerate(CONTENDERS):
        print(f"{name:35}" + "".join(f"{times[size][k] * 1e6:10.2f}" for size in SIZES))
    if len(sys.argv) > 1:
        Path(sys.argv[1]).write_text(drawing(times), encoding="utf-8")


if __name__ == "__main__":
    main()
