"""The comparison with other programs, and the aims that it is held against."""
from collections import defaultdict

from figures import count, megabytes, number, table, time

LIBRARIES = ("GLPK", "CLP", "lp_solve")
# How far an objective may lie from the reference to count as the optimum.
AGREEMENT = 1e-4


class Instance:
    """What every contender needed for one instance."""

    def __init__(self, records):
        first = records[0]
        self.family, self.rows, self.columns = first["family"], first["rows"], first["columns"]
        self.pivots, self.limit = first["pivots"], first["pass"]
        self.records = records
        self.name = f"{self.family}, {self.rows} × {self.columns}"
        # This library's measurement, whatever its verdict, unless it was stopped.
        self.nuv = next((r for r in records if r["contender"] == "nuv" and r["verdict"] != "stopped"), None)
        self.per_pivot = self.nuv["solving"] / max(self.pivots, 1) if self.nuv else None

    def fastest(self, *contenders):
        """The fastest setting of these that reached the optimum, or None."""
        found = [r for r in self.records if r["contender"] in contenders and r["verdict"] == "optimal"
                 and r["distance"] <= AGREEMENT]  # fmt: skip
        return min(found, key=lambda r: r["solving"], default=None)

    def times(self, *contenders):
        """How many times as long as the fastest of these this library takes."""
        other = self.fastest(*contenders)
        return self.nuv["solving"] / other["solving"] if other else 0.0


def instances_of(records):
    groups = defaultdict(list)
    for record in records["compare"]:
        groups[record["family"], record["rows"], record["columns"]].append(record)
    return [Instance(group) for group in groups.values()]


# The rows that an aim speaks of, what is measured on each, and what it may be at most.
AIMS = (
    ("time per pivot over the limit, m ≥ 200: at most 1.3",
     lambda x: x.rows >= 200, lambda x: x.per_pivot / x.limit, 1.3),
    ("time per pivot over the limit, m from 20 to 100: at most 2.5",
     lambda x: 20 <= x.rows <= 100, lambda x: x.per_pivot / x.limit, 2.5),
    ("solve time over the tableau's, m ≥ 20: below 1",
     lambda x: x.rows >= 20, lambda x: x.times("tableau"), 1.0),
    ("solve time over the tableau's, m < 20: at most 3",
     lambda x: x.rows < 20, lambda x: x.times("tableau"), 3.0),
    ("solve time over the native tableau's, m ≥ 20: below 1",
     lambda x: x.rows >= 20, lambda x: x.times("tableau, native"), 1.0),
    ("solve time over the native tableau's, m < 20: at most 3",
     lambda x: x.rows < 20, lambda x: x.times("tableau, native"), 3.0),
    ("solve time over the fastest library's, every row: below 1",
     lambda x: True, lambda x: x.times(*LIBRARIES), 1.0),
)  # fmt: skip


def tiny_aims(records):
    for record in records["lps"]:
        if record["name"].startswith("start to end/"):
            yield "a 2 × 3 model from start to end: under 4 µs", time(record["seconds"]), record["seconds"] < 4e-6
    for record in records["lps"]:
        if record["name"].startswith("solve/production mix/2x3"):
            yield "its solve: under 1 µs", time(record["seconds"]), record["seconds"] < 1e-6
    for record in records["memory"]:
        if record["m"] == 1000:
            yield ("peak memory of a first solve at m = n = 1000 above the model, the dense matrices that it makes "
                   "(8 MB) among it: under 12 MB", megabytes(record["first"]), record["first"] < 12e6)  # fmt: skip


def aims_block(records):
    rows, misses = [], ""
    for text, concerns, measure, allowed in AIMS:
        found = [(measure(x), x.name) for x in instances_of(records) if x.nuv and concerns(x)]
        missed = [f"{name}: {number(value, 3)}" for value, name in found if value > allowed]
        value, name = max(found, key=lambda pair: pair[0], default=(0.0, "–"))
        rows.append([text, f"{len(found) - len(missed)} of {len(found)}", f"{number(value, 3)} ({name})"])
        misses += f"- {text}. {'; '.join(missed)}\n" if missed else ""
    rows += [[text, "yes" if is_met else "no", measured] for text, measured, is_met in tiny_aims(records)]
    text = table("aim | met | measured; for several rows, the worst", rows)
    return text + (f"\nRows that fall short:\n\n{misses}" if misses else "")


def comparison_block(records):
    rows = []
    for x in instances_of(records):
        tableau, native = x.fastest("tableau"), x.fastest("tableau, native")
        library = x.fastest(*LIBRARIES)

        def ratio(other):
            """How many times as long the other takes; in bold when it is ahead."""
            if not x.nuv or not other:
                return "–"
            times = other["solving"] / x.nuv["solving"]
            return f"**{number(times, 2)}**" if times < 1 else number(times, 2)

        shown = [time(r["solving"]) if r else "–"
                 for r in (x.nuv, tableau, native, *map(x.fastest, LIBRARIES))]  # fmt: skip
        off = "stopped" if not x.nuv else x.nuv["verdict"]
        if off == "optimal":
            off = f"{x.nuv['distance']:.0e}" if x.nuv["distance"] else "0"
        per_pivot = [time(x.per_pivot), number(x.per_pivot / x.limit, 3)] if x.nuv else ["–", "–"]
        rows.append([x.name, count(x.pivots), *per_pivot, *shown, ratio(tableau), ratio(native), ratio(library),
                     count(library["its_pivots"]) if library else "–", off])  # fmt: skip
    return table("instance | pivots:| per pivot:| ÷ limit:| nuv:| tableau:| native:| GLPK:| CLP:| lp_solve:|"
                 " tableau ÷ nuv:| native ÷ nuv:| fastest library ÷ nuv:| its pivots:| objective off by:", rows)
