"""The lines after whose mutants all that can be observed may be the same. A comment says so, at the end of
the line or above it, with the reason:

    // same bits: no element lies between two equal sizes
    // same bits (-> <=, never): the reason; of the mutants here only those that end in these words
    // same bits (in NuvUint__): the reason; only those of the functions of that name in the compiler's output

A mutant there that no test notices is not counted; one that is noticed is killed like any other.
"""
import re

MARK = re.compile(r"// same bits(?: \(([^)]*)\))?: ")


class Marked:
    def __init__(self, lines):
        self.marks = {}  # by file and line: [(words, line of the comment)]
        for file, texts in lines.items():
            for number, text in enumerate(texts, 1):
                if match := MARK.search(text):
                    words = [word.strip() for word in match[1].split(",")] if match[1] else []
                    line = self._line_of(texts, number, match)
                    self.marks.setdefault((file, line), []).append((words, number))

    @staticmethod
    def _line_of(texts, number, match):
        """The line that a comment is about: its own, or the next that is not a comment."""
        if texts[number - 1][: match.start()].strip():
            return number
        while texts[number].lstrip().startswith("//"):
            number += 1
        return number + 1

    def comment_of(self, mutant):
        """The place of the comment that a mutant is of, or None."""
        for words, number in self.marks.get((mutant.file, mutant.line), ()):
            names = [word[3:] for word in words if word.startswith("in ")]
            ends = [word for word in words if not word.startswith("in ")]
            is_named = not names or any(name in mutant.symbol for name in names)
            if is_named and (not ends or any(mutant.text.endswith(end) for end in ends)):
                return mutant.file, number
        return None

    def comments(self, files):
        """The places of all comments in some files."""
        return {(file, number) for (file, _), marks in self.marks.items() if file in files for _, number in marks}
