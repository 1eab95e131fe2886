"""The compiler's output for a unit, with the lines of the source that it comes from."""
import re
from collections import defaultdict
from pathlib import Path

FILE = re.compile(r'\t\.file (\d+) (?:"([^"]*)" )?"([^"]*)"')
LOCATION = re.compile(r"\t\.loc (\d+) (\d+)")
WEAK = re.compile(r"\t\.weak\t(\S+)")
SYMBOL = re.compile(r"([A-Za-z_][\w.]*):")


class Assembly:
    def __init__(self, core, unit):
        self.path = core.assembly_of(unit)
        self.code = []  # (index, symbol, file, line, text) of what comes from the layer's files
        self.weak = set()
        self.symbols = defaultdict(set)  # by file and line
        self.lines = self.path.read_text().split("\n")
        files, place, symbol = {}, (None, 0), ""
        for index, text in enumerate(self.lines):
            if match := FILE.match(text):
                files[match[1]] = core.relative(Path(match[2] or ".", match[3]))
            elif match := LOCATION.match(text):
                place = (files[match[1]], int(match[2]))
            elif match := SYMBOL.match(text):
                symbol = match[1]
            elif match := WEAK.match(text):
                self.weak.add(match[1])
            elif text.startswith("\t") and text[1] != "." and place[0]:
                self.code.append((index, symbol, *place, text))
                self.symbols[place].add(symbol)


class Assemblies:
    """Those of all units."""

    def __init__(self, core):
        self.of = {unit.name: Assembly(core, unit) for unit in core.units}
        self.units = core.units

    def units_with(self, places):
        """Units that have all code of some places: of an inline function, which the linker takes once, the
        first one that has it."""
        known, found = set(), []
        for unit in self.units:
            assembly = self.of[unit.name]
            here = set().union(*(assembly.symbols.get(place, ()) for place in places)) - known
            known |= here & assembly.weak
            if here:
                found.append(unit)
        return found
