"""Mutants of the compiler's output: each conditional jump taken always, or never."""
import re
from pathlib import Path

JUMP = re.compile(r"\tj(?!mp)[a-z]+\t(\.L\w+)$")
FILE = re.compile(r'\t\.file (\d+) (?:"([^"]*)" )?"([^"]*)"')
LOCATION = re.compile(r"\t\.loc (\d+) (\d+)")


class Jump:
    def __init__(self, unit, assembly, index, always, place):
        self.unit, self.assembly, self.index, self.always = unit, assembly, index, always
        self.file, self.line = place
        self.text = f"jump {'always' if always else 'never'} ({unit.name} {index + 1})"

    def build(self, core, directory):
        """Writes and assembles the mutant; answers the objects that it replaces."""
        lines = self.assembly.read_text().split("\n")
        target = JUMP.match(lines[self.index]).group(1)
        lines[self.index] = f"\tjmp\t{target}" if self.always else ""
        (directory / "mutant.s").write_text("\n".join(lines))
        output = directory / "mutant.o"
        return {self.unit.name: output} if core.assemble(directory / "mutant.s", output) else None


def find(core):
    """All jumps of the core's files, in the order of units and lines."""
    mutants = []
    for unit in core.units:
        assembly = core.work / f"{unit.name}.s"
        core.compile(unit, assembly, flags=("-S", "-g1"))
        files, place = {}, (None, 0)
        for index, line in enumerate(assembly.read_text().split("\n")):
            if match := FILE.match(line):
                files[match[1]] = Path(match[2] or ".", match[3])
            elif match := LOCATION.match(line):
                place = (files[match[1]], int(match[2]))
            elif JUMP.match(line):
                file = core.relative(place[0])
                if file:
                    mutants += [Jump(unit, assembly, index, always, (file, place[1])) for always in (True, False)]
    return mutants
