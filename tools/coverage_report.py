"""Prints what tools/coverage found, file by file, and what is missing and not excused by
tools/coverage-exceptions. Ends with 1 when anything is."""
import json
import os
import re
import sys
from collections import defaultdict
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent


class Exceptions:
    """Lines that may be missing: (file, part of the line's text), each of which must be needed."""

    def __init__(self, path, kind, layer):
        self.parts, self.reasons, self.used = [], 0, set()
        counts, is_counted = False, False
        for line in path.read_text().split("\n"):
            if line.startswith(" "):
                file, text = line.strip().split(": ", 1)
                if counts and layer.match(file):
                    self.parts.append((file, text))
                    self.reasons += not is_counted
                    is_counted = True
            elif line and not line.startswith("#"):
                counts, is_counted = kind == "mcdc" or not line.startswith("--mcdc"), False

    def allow(self, file, text):
        matching = {part for part in self.parts if part[0] == file and part[1] in text}
        self.used |= matching
        return bool(matching)

    def unused(self):
        return [part for part in self.parts if part not in self.used]


class Tally:
    """How much of a file there is, and how much of it was reached."""

    def __init__(self):
        self.all = defaultdict(int)
        self.reached = defaultdict(int)

    def count(self, what, reached, of):
        self.all[what] += of
        self.reached[what] += reached

    def text(self):
        return "  ".join(f"{what} {self.reached[what]}/{self.all[what]}" for what in self.all)


def line_text(file, number):
    return (ROOT / file).read_text().split("\n")[number - 1].strip()


def branches(paths, _layer):
    """(file, line number, what is missing, tally's counts) of gcovr's findings."""
    for file in json.loads(paths[0].read_text())["files"]:
        for line in file["lines"]:
            if line.get("gcovr/noncode"):
                continue
            taken = sum(branch["count"] > 0 for branch in line["branches"])
            of = len(line["branches"])
            missing = []
            if line["count"] == 0:
                missing.append("not run")
            elif taken != of:
                missing.append(f"{of - taken} of {of} branches not taken")
            counts = {"lines": (int(line["count"] > 0), 1), "branches": (taken, of)}
            yield file["file"], line["line_number"], missing, counts


def files_of(path, layer):
    """(name, findings) of each file of the layer in clang's own format."""
    for unit in json.loads(path.read_text())["data"]:
        for file in unit["files"]:
            name = os.path.relpath(file["filename"], ROOT)
            if layer.match(name):
                yield name, file


def regions(paths, layer):
    """The same of clang's lines and branches. A branch stands in each stamped copy of its line."""
    taken = defaultdict(lambda: [0, 0])
    for name, file in files_of(paths[0], layer):
        for line, *place, if_true, if_false, _, _, _ in file["branches"]:
            counts = taken[name, line, *place]
            counts[:] = [counts[0] + if_true, counts[1] + if_false]
    by_line = defaultdict(list)
    for (name, line, *_), counts in taken.items():
        by_line[name, line] += counts
    for text in paths[1].read_text().split("end_of_record"):
        if not (match := re.search(r"^SF:(.*)$", text, re.MULTILINE)):
            continue
        name = os.path.relpath(match[1], ROOT)
        for line, count in re.findall(r"^DA:(\d+),(\d+)", text, re.MULTILINE) if layer.match(name) else ():
            found = by_line[name, int(line)]
            ways = sum(way > 0 for way in found)
            missing = ["not run"] if count == "0" else []
            if not missing and ways != len(found):
                missing.append(f"{len(found) - ways} of {len(found)} branches not taken")
            counts = {"lines": (int(count != "0"), 1), "branches": (ways, len(found))}
            yield name, int(line), missing, counts


def mcdc(paths, layer):
    """The same of clang's decisions, each of which stands in each stamped or inlined copy of its line."""
    decisions = {}
    for name, file in files_of(paths[0], layer):
        for record in file["mcdc_records"]:
            conditions = record[-1]
            known = decisions.setdefault((name, *record[:4]), [False] * len(conditions))
            known[:] = [a or b for a, b in zip(known, conditions)]
    for (name, line, *_), conditions in sorted(decisions.items()):
        missing = [str(i) for i, seen in enumerate(conditions, 1) if not seen]
        found = [f"condition {', '.join(missing)} of {len(conditions)} not seen to decide"] if missing else []
        yield name, line, found, {"conditions": (sum(conditions), len(conditions))}


def main():
    kind, layer, *paths = sys.argv[1:]
    layer = re.compile(layer)
    exceptions = Exceptions(ROOT / "tools/coverage-exceptions", kind, layer)
    files, total, failures, excused = defaultdict(Tally), Tally(), [], 0
    find = {"branches": branches, "regions": regions, "mcdc": mcdc}[kind]
    for file, number, missing, counts in find([Path(path) for path in paths], layer):
        text = line_text(file, number)
        allowed = bool(missing) and exceptions.allow(file, text)
        excused += allowed
        if not allowed:
            failures += [f"{file}:{number}: {what}: {text}" for what in missing]
        for what, (reached, of) in counts.items():
            files[file].count(what, reached, of)
            total.count(what, reached, of)
    for file in sorted(files):
        print(f"{file:50} {files[file].text()}")
    print(f"{'all':50} {total.text()}")
    print(f"{excused} lines excused, for {exceptions.reasons} reasons at most: tools/coverage-exceptions")
    for failure in failures:
        print(failure)
    stale = exceptions.unused() if kind != "mcdc" else []
    for file, text in stale:
        print(f"tools/coverage-exceptions: no longer needed: {file}: {text}")
    return 1 if failures or stale else 0


if __name__ == "__main__":
    sys.exit(main())
