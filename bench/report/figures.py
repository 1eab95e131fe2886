"""Figures and tables as the documents show them."""
import math


def number(value, digits):
    """Rounded to so many significant digits."""
    if value == 0 or not math.isfinite(value):
        return "0" if value == 0 else "–"
    # Rounded first: 9.99 to two digits is 10, with no decimals left.
    unit = 10.0 ** (math.floor(math.log10(abs(value))) - digits + 1)
    rounded = math.floor(abs(value) / unit + 0.5) * unit
    whole = math.floor(math.log10(rounded * 1.0000001)) + 1
    return f"{math.copysign(rounded, value):.{max(digits - whole, 0)}f}"


def count(value):
    return f"{value:.0f}"


def time(seconds):
    for unit, factor in (("µs", 1e6), ("ms", 1e3)):
        if seconds < 1e3 / factor:
            return f"{number(seconds * factor, 3)} {unit}"
    return f"{number(seconds, 3)} s"


def milliseconds(seconds):
    """To three digits, and at most four decimals."""
    value = 1e3 * seconds
    decimals = 0 if value <= 0 else min(max(2 - math.floor(math.log10(value)), 0), 4)
    return f"{value:.{decimals}f}"


def megabytes(size):
    return f"{number(size / 1e6, 3)} MB"


def exponent(points):
    """The exponent e of value ≈ factor · size^e, by least squares over the logarithms."""
    if len(points) < 2:
        return "–"
    logs = [(math.log(size), math.log(value)) for size, value in points]
    mean_x, mean_y = (sum(column) / len(logs) for column in zip(*logs))
    above = sum((x - mean_x) * (y - mean_y) for x, y in logs)
    return number(above / sum((x - mean_x) ** 2 for x, _ in logs), 2)


def table(title, rows):
    """A table in Markdown. A title that ends with a colon is that of a column of figures."""
    titles = [cell.strip() for cell in title.split("|")]
    lines = ["|" + "|".join(f" {cell.rstrip(':')} " if cell else " " for cell in titles) + "|"]
    lines += ["|" + "|".join("--:" if cell.endswith(":") else "---" for cell in titles) + "|"]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines) + "\n"
