"""A model with two variables as a drawing of the plane: rows, what they leave, and an optimum."""

from __future__ import annotations

import math
from typing import Any, NamedTuple, Optional

import numpy as np

from ._arrays import Doubles, escaped
from ._handle import array_of, held
from ._record import Record
from ._solve import Options, solve

Point = tuple[float, float]

_COLOURS = ("#4063d8", "#cb3c33", "#389826", "#9558b2", "#b8860b", "#008b8b")
_MARGIN = 44


class Picture(NamedTuple):
    """A drawing, which notebooks show.

    >>> import nuv
    >>> model = nuv.Model.from_arrays([1, 2], [[1, 1]], row_lower=1, row_names=["need"])
    >>> "need" in model.picture().svg
    True
    """

    svg: str

    def _repr_svg_(self) -> str:
        return self.svg

    def save(self, path: str) -> None:
        """Writes a file."""
        with open(path, "w", encoding="utf-8") as file:
            file.write(self.svg)

    def __repr__(self) -> str:
        return f"<picture, {len(self.svg)} bytes of SVG>"


class _Side(NamedTuple):
    """a x + b y <= side, of a row or of a bound."""

    name: str
    a: float
    b: float
    side: float


def picture(handle: Any, columns: tuple[str, ...], rows: tuple[str, ...], width: int) -> Picture:
    """The drawing for a model's handle, solved for it."""
    if len(columns) != 2:
        raise ValueError(f"picture: a model with two variables is needed, not with {len(columns)}")
    if not isinstance(width, int) or not 100 <= width <= 10_000:
        raise ValueError("width: a whole number of pixels from 100 to 10000 is needed")
    sides = _sides(handle, columns, rows)
    found, failure = solve(handle, Options())
    if failure is not None:
        raise failure
    record = Record(found)
    values = record.array("Values") if record.status == "optimal" else None
    optimum = None if values is None else (float(values[0]), float(values[1]))
    return Picture(_Drawing(sides, optimum, width).text(columns, record.status))


def _sides(handle: Any, columns: tuple[str, ...], rows: tuple[str, ...]) -> list[_Side]:
    model = held(handle)
    matrix = np.zeros((len(rows), 2))
    starts = array_of(model.starts, np.uint64, len(rows) + 1).astype(int)
    indices = array_of(model.indices, np.uint32, model.numEntries)
    values = array_of(model.values, np.float64, model.numEntries)
    for row in range(len(rows)):
        part = slice(starts[row], starts[row + 1])
        matrix[row, indices[part]] = values[part]
    found = []
    for names, lines, lower, upper, size in (
            (rows, matrix, model.rowLower, model.rowUpper, len(rows)),
            (columns, np.eye(2), model.columnLower, model.columnUpper, 2)):
        lows, highs = (array_of(data, np.float64, size).tolist() for data in (lower, upper))
        for name, (a, b), low, high in zip(names, lines.tolist(), lows, highs):
            if a == b == 0:
                continue
            if math.isfinite(high):
                found.append(_Side(name, a, b, high))
            if math.isfinite(low):
                found.append(_Side(name, -a, -b, -low))
    return found


def _crossings(sides: list[_Side]) -> list[Point]:
    points = []
    for k, one in enumerate(sides):
        for other in sides[:k]:
            determinant = one.a * other.b - one.b * other.a
            if abs(determinant) > 1e-12 * (abs(one.a) + abs(one.b)) * (abs(other.a) + abs(other.b)):
                points.append(((one.side * other.b - one.b * other.side) / determinant,
                               (one.a * other.side - one.side * other.a) / determinant))
    return points


def _clipped(polygon: list[Point], side: _Side) -> list[Point]:
    """What a half-plane leaves of a convex polygon."""
    kept: list[Point] = []
    over = [side.a * x + side.b * y - side.side for x, y in polygon]
    for k, (point, value) in enumerate(zip(polygon, over)):
        before, was = polygon[k - 1], over[k - 1]
        if was * value < 0:
            t = was / (was - value)
            kept.append((before[0] + t * (point[0] - before[0]), before[1] + t * (point[1] - before[1])))
        if value <= 0:
            kept.append(point)
    return kept


class _Drawing:
    """What part of the plane is seen, and where it lies on the paper."""

    def __init__(self, sides: list[_Side], optimum: Optional[Point], width: int) -> None:
        self.sides, self.optimum = sides, optimum
        self.width, self.height = width, width * 3 // 4
        crossings = _crossings(sides)
        scale = max((abs(number) for point in crossings for number in point), default=1.0)
        corners = [(x, y) for x, y in crossings if all(
            side.a * x + side.b * y <= side.side + 1e-9 * (abs(side.a) + abs(side.b)) * max(scale, 1)
            for side in sides)]
        seen = (corners or crossings) + ([optimum] if optimum else [])
        span = np.array(seen + [(0.0, 0.0)] if len(seen) < 2 else seen)
        self.low, high = self._widened(span.min(axis=0), span.max(axis=0))
        self.size = high - self.low
        box = [(self.low[0], self.low[1]), (high[0], self.low[1]), (high[0], high[1]),
               (self.low[0], high[1])]
        self.box = [(float(x), float(y)) for x, y in box]
        polygon = self.box
        for side in sides:
            polygon = _clipped(polygon, side)
        self.polygon = polygon

    @staticmethod
    def _widened(low: Doubles, high: Doubles) -> tuple[Doubles, Doubles]:
        size = high - low
        size = np.where(size > 0, size, max(float(size.max()), 1.0))
        return low - 0.12 * size, low + 1.3 * size

    def place(self, point: Point) -> str:
        """Where a point lies on the paper."""
        x = _MARGIN + (point[0] - self.low[0]) / self.size[0] * (self.width - 2 * _MARGIN)
        y = self.height - _MARGIN - (point[1] - self.low[1]) / self.size[1] * (
            self.height - 2 * _MARGIN)
        return f"{x:.1f},{y:.1f}"

    def line(self, side: _Side) -> list[Point]:
        """The part of a line that is seen."""
        on = _clipped(_clipped(self.box, side), side._replace(a=-side.a, b=-side.b, side=-side.side))
        return [min(on), max(on)] if len(on) > 1 else []

    def text(self, columns: tuple[str, ...], status: str) -> str:
        """The whole drawing."""
        parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{self.width}" '
                 f'height="{self.height}" font-family="sans-serif" font-size="12">',
                 '<rect width="100%" height="100%" fill="#ffffff"/>']
        if len(self.polygon) > 2:
            points = " ".join(self.place(point) for point in self.polygon)
            parts.append(f'<polygon points="{points}" fill="#4063d8" fill-opacity="0.15"/>')
        for k, side in enumerate(self.sides):
            ends = self.line(side)
            if ends:
                parts += self._labelled(side.name, ends, _COLOURS[k % len(_COLOURS)])
        if self.optimum is not None:
            x, y = self.place(self.optimum).split(",")
            parts.append(f'<circle cx="{x}" cy="{y}" r="4"/>')
            parts.append(f'<text x="{float(x) + 7:.1f}" y="{float(y) - 7:.1f}">({self.optimum[0]:g}, '
                         f'{self.optimum[1]:g})</text>')
        name = escaped(f"{status}: {columns[0]} to the right, {columns[1]} up")
        parts.append(f'<text x="{_MARGIN}" y="{self.height - 14}">{name}</text></svg>')
        return "\n".join(parts)

    def _labelled(self, name: str, ends: list[Point], colour: str) -> list[str]:
        (x1, y1), (x2, y2) = (self.place(end).split(",") for end in ends)
        return [f'<line x1="{x1}" y1="{y1}" x2="{x2}" y2="{y2}" stroke="{colour}"/>',
                f'<text x="{x2}" y="{y2}" fill="{colour}">{escaped(name)}</text>']
