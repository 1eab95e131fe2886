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


def trees(core):
    """The syntax tree of each unit of the core."""
    index = Index.create()
    for unit in core.units:
        arguments = [word for word in unit.command[1:] if word.startswith(("-I", "-D", "-std", "-m"))]
        tree = index.parse(str(core.root / unit.source), args=arguments)
        errors = [note for note in tree.diagnostics if note.severity >= 3]
        if errors:
            raise SystemExit(f"clang does not read {unit.source}: {errors[0].spelling}")
        yield tree


class Places:
    def __init__(self, core):
        self.root = core.root
        self.files = {(core.root / file).resolve(): file for file in core.files}
        self.lines = {file: (core.root / file).read_text().split("\n") for file in core.files}
        self.functions = {}  # by file and line, the innermost

    def file_of(self, location):
        return self.files.get(Path(location.file.name).resolve()) if location.file else None

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

    def text(self, file, line):
        return self.lines[file][line - 1].strip() if line else ""

    def describe(self, mutants):
        """Gives each mutant its place in words."""
        for mutant in mutants:
            mutant.function = self.functions.get((mutant.file, mutant.line), "")
            mutant.line_text = self.text(mutant.file, mutant.line)
