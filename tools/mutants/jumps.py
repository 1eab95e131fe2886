"""Mutants of the compiler's output: each conditional jump taken always, or never."""
import re
from collections import Counter
from pathlib import Path

JUMP = re.compile(r"\t(j(?!mp)[a-z]+)\t(\.L\w+)$")
FILE = re.compile(r'\t\.file (\d+) (?:"([^"]*)" )?"([^"]*)"')
LOCATION = re.compile(r"\t\.loc (\d+) (\d+)")
WEAK = re.compile(r"\t\.weak\t(\S+)")
SYMBOL = re.compile(r"([A-Za-z_][\w.]*):")


class Jump:
    kind = "jumps"

    def __init__(self, unit, assembly, index, always, symbol, file, line, text):
        self.unit, self.assembly, self.index, self.always = unit, assembly, index, always
        self.symbol, self.file, self.line = f"{unit.name} {symbol}", file, line
        self.text = f"{text} {'always' if always else 'never'}"
        self.detail = f"{unit.name} {index + 1} {symbol}"

    def build(self, core, directory):
        """Writes and assembles the mutant; answers the objects that it replaces."""
        lines = self.assembly.read_text().split("\n")
        target = JUMP.match(lines[self.index])[2]
        lines[self.index] = f"\tjmp\t{target}" if self.always else ""
        (directory / "mutant.s").write_text("\n".join(lines))
        output = directory / "mutant.o"
        return {self.unit.name: output} if core.assemble(directory / "mutant.s", output) else None


def _jumps_of(core, assembly, known):
    """(index, symbol, file, line, instruction) of each jump of the core's files, but for those of inline
    functions that an earlier unit had."""
    files, place, symbol, shared = {}, (None, 0), "", set()
    for index, line in enumerate(assembly.read_text().split("\n")):
        if match := FILE.match(line):
            files[match[1]] = core.relative(Path(match[2] or ".", match[3]))
        elif match := LOCATION.match(line):
            place = (files[match[1]], int(match[2]))
        elif match := SYMBOL.match(line):
            symbol = match[1]
        elif match := WEAK.match(line):
            shared.add(match[1])
        elif (match := JUMP.match(line)) and place[0] and symbol not in known:
            yield index, symbol, *place, match[1]
    known |= shared


def find(core):
    """All jumps of the core's files, in the order of units and lines. Those that a line has several of
    in a function of the compiler's output are numbered."""
    mutants, known = [], set()
    for unit in core.units:
        assembly = core.work / f"{unit.name}.s"
        core.compile(unit, assembly, flags=("-S", "-g1"))
        found = list(_jumps_of(core, assembly, known))
        of, seen = Counter(jump[1:] for jump in found), Counter()
        for index, *group in found:
            key = tuple(group)
            seen[key] += 1
            text = group.pop() + (f" #{seen[key]}" if of[key] > 1 else "")
            mutants += [Jump(unit, assembly, index, always, *group, text) for always in (True, False)]
    return mutants
