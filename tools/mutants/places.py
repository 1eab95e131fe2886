"""Where a mutant stands, in words that outlive other edits: file, function, the line's text."""
import re
from pathlib import Path

from clang.cindex import CursorKind, Index

FUNCTIONS = (
    CursorKind.FUNCTION_DECL, CursorKind.FUNCTION_TEMPLATE, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR,
    CursorKind.DESTRUCTOR, CursorKind.CONVERSION_FUNCTION,
)  # fmt: skip
# A name composed by a macro, such as NUV_OP(PushBack), or one that stands there.
NAME = re.compile(r"[A-Z_]+\((\w+)\)|[\w~]+")


def tree(root, unit):
    """The syntax tree of a unit."""
    arguments = [word for word in unit.command[1:] if word.startswith(("-I", "-D", "-std", "-m"))]
    result = Index.create().parse(str(root / unit.source), args=arguments)
    errors = [note for note in result.diagnostics if note.severity >= 3]
    if errors:
        raise SystemExit(f"clang does not read {unit.source}: {errors[0].spelling}")
    return result


class Places:
    def __init__(self, core):
        self.root = core.root
        self.files = {(core.root / file).resolve(): file for file in core.files}
        self.names = {}  # the same by the names that clang gives them; None of other files
        self.lines = {file: (core.root / file).read_text().split("\n") for file in core.files}
        self.functions = {}  # by file and line, the innermost

    def file_of(self, location):
        if not location.file:
            return None
        name = location.file.name
        if name not in self.names:
            self.names[name] = self.files.get(Path(name).resolve())
        return self.names[name]

    def add_functions(self, cursor):
        for child in cursor.get_children():
            file = self.file_of(child.location)
            if not file:
                continue
            if child.kind in FUNCTIONS and child.is_definition():
                name = self._name(child, file)
                for line in range(child.extent.start.line, child.extent.end.line + 1):
                    self.functions[file, line] = name
            self.add_functions(child)

    def _name(self, cursor, file):
        text = self.lines[file][cursor.location.line - 1].encode()[cursor.location.column - 1 :].decode()
        match = NAME.match(text)
        return (match[1] or match[0]) if match else cursor.spelling

    def function_lines(self, file, line):
        """The lines of the function that a line is in."""
        first = last = line
        name = self.functions.get((file, line))
        while name and self.functions.get((file, first - 1)) == name:
            first -= 1
        while name and self.functions.get((file, last + 1)) == name:
            last += 1
        return range(first, last + 1)

    def text(self, file, line):
        return self.lines[file][line - 1].strip() if line else ""

    def describe(self, mutants):
        """Gives each mutant its place in words."""
        for mutant in mutants:
            mutant.function = self.functions.get((mutant.file, mutant.line), "")
            mutant.line_text = self.text(mutant.file, mutant.line)
