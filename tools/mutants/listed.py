"""The mutants that no test can notice, because all that can be observed is the same: tools/mutants/same.

A reason stands above its entries; an entry is a place and, below it, mutants there:

    The reason, in a sentence.
        Nuv/Utils/Kernels/X.cpp, Function: a part of the line's text
            < -> <=; jne #2 never; je never in Plain WalkAcross

The words after `in` are parts of the names of the unit and of the compiled function, where a line is
compiled into several or for several types.
"""
from collections import defaultdict


class Listed:
    def __init__(self, path):
        self.entries = defaultdict(list)  # (file, function) -> (part, mutant)
        self.used, place = set(), None
        for number, line in enumerate(path.read_text().split("\n"), 1):
            if not line.strip() or line.startswith("#"):
                continue
            if line.startswith(" " * 8):
                for text in line.strip().split("; "):
                    self.entries[place[:2]].append((place[2], text))
            elif line.startswith(" " * 4):
                where, _, part = line.strip().partition(": ")
                file, _, function = where.partition(", ")
                place = (file, function, part)
                if not part:
                    raise SystemExit(f"{path}:{number}: file, function: part of the line")

    def has(self, mutant):
        where = (str(mutant.file), mutant.function)
        for part, text in self.entries.get(where, ()):
            what, _, symbol = text.partition(" in ")
            is_here = all(word in mutant.symbol for word in symbol.split())
            if what == mutant.text and is_here and part in mutant.line_text:
                self.used.add((where, part, text))
                return True
        return False

    def unused(self, files):
        """Entries of some files that fit no mutant."""
        return [
            f"{where[0]}, {where[1]}: {part}: {text}"
            for where, entries in self.entries.items()
            for part, text in entries
            if where[0] in files and (where, part, text) not in self.used
        ]
