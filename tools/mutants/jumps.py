"""Mutants of the compiler's output: each conditional jump taken always, or never.

After a comparison of doubles for equality there are two jumps, one of which is for a NaN alone. A layer that
refuses NaNs at its door never takes that one, so that to leave it out is no mutant there, unless what is
compared is a number with itself, which asks whether it is a NaN.
"""
import re
from collections import Counter

JUMP = re.compile(r"\t(j(?!mp)[a-z]+)\t(\.L\w+)$")
WITH_ITSELF = re.compile(r"\tu?comis[sd]\t(\S+), \1$")


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


def _is_for_nans(assembly, index):
    """Whether a jump of this line is taken for a NaN alone."""
    return JUMP.match(assembly.lines[index])[1] == "jp" and not WITH_ITSELF.match(assembly.lines[index - 1])


def find(assemblies, has_nans):
    """All jumps of the layer's files, in the order of units and lines, but for those of inline functions that
    an earlier unit had. Those that a line has several of in a function of the compiler's output are
    numbered."""
    mutants, known = [], set()
    for unit in assemblies.units:
        assembly = assemblies.of[unit.name]
        jumps = [(*place, match[1]) for *place, text in assembly.code if (match := JUMP.match(text))]
        found = [jump for jump in jumps if jump[1] not in known]
        known |= assembly.weak
        of, seen = Counter(jump[1:] for jump in found), Counter()
        for index, *group in found:
            key = tuple(group)
            seen[key] += 1
            text = group.pop() + (f" #{seen[key]}" if of[key] > 1 else "")
            ways = (True,) if not has_nans and _is_for_nans(assembly, index) else (True, False)
            mutants += [Jump(unit, assembly.path, index, always, *group, text) for always in ways]
    return mutants
