"""Mutants of the source: operators and constants, found in clang's syntax trees of all units.

A file that is stamped out per element type is changed once, for all types. How much room a container is told
to reserve changes nothing but its room, and is left alone.
"""
import pickle
import re
from collections import Counter
from pathlib import Path

import places as places_of
from clang.cindex import CursorKind, TokenKind

OTHER_BINARY = {
    "<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",),
    "&&": ("||",), "||": ("&&",), "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "%": ("/",),
    "&": ("|",), "|": ("&",), "^": ("&",), "<<": (">>",), ">>": ("<<",),
    "+=": ("-=",), "-=": ("+=",), "|=": ("&=",), "&=": ("|=",), "<<=": (">>=",), ">>=": ("<<=",),
}  # fmt: skip
OTHER_UNARY = {"++": ("--",), "--": ("++",), "!": ("",), "-": ("",)}
OTHER_WORD = {"NUV_TRUE": ("NUV_FALSE",), "NUV_FALSE": ("NUV_TRUE",)}
BINARY = (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR)
RESERVE = re.compile(r"[\w.\[\]]+\.reserve\(.*\);")
LITERALS = (CursorKind.INTEGER_LITERAL, CursorKind.FLOATING_LITERAL, CursorKind.CXX_BOOL_LITERAL_EXPR)


class Change:
    kind, symbol = "operators", ""

    def __init__(self, units, file, line, offset, old, new, number):
        self.units = units  # those that are compiled anew
        self.file, self.line, self.offset, self.old, self.new = file, line, offset, old, new
        self.text = f"{old}{number} -> {new or 'nothing'}"
        self.detail = f"offset {offset}"

    def build(self, core, directory):
        """Compiles what has the changed code; answers the objects that it replaces, of which there are none
        when it compiles to the same code, or None when it does not compile."""
        overlay = directory / "overlay"
        file = overlay / self.file
        file.parent.mkdir(parents=True, exist_ok=True)
        code = (core.root / self.file).read_bytes()
        end = self.offset + len(self.old)
        file.write_bytes(code[: self.offset] + self.new.encode() + code[end:])
        try:
            return self.compile(core, directory, overlay)
        finally:
            file.unlink()

    def compile(self, core, directory, overlay):
        replaced = {}
        for unit in self.units:
            output = directory / f"{unit.name}.o"
            assembly = directory / f"{unit.name}.s"
            if not (core.compile(unit, assembly, overlay, ("-S",)) and core.assemble(assembly, output)):
                return None
            if output.read_bytes() != core.object_of(unit).read_bytes():
                replaced[unit.name] = output
        return replaced


def _other_literals(text):
    if text in ("true", "false"):
        return ("false" if text == "true" else "true",)
    digits = text.rstrip("uUlLfF") if not text.lower().startswith("0x") else text.rstrip("uUlL")
    suffix = text[len(digits) :]
    if "." in digits:
        return ("1.0F",) if float(digits) == 0 else ("0.0F",)
    try:
        value = int(digits, 0)
    except ValueError:
        return ()
    return tuple(f"{other}{suffix}" for other in ((value + 1,) if value == 0 else (value - 1, value + 1)))


def _changes_at(cursor):
    """(token, replacements) of one node, taken from the source as it is written."""
    kind = cursor.kind
    if kind in BINARY:
        children = list(cursor.get_children())
        if len(children) != 2:
            return
        between = children[0].extent.end.offset
        for token in cursor.get_tokens():
            if token.extent.start.offset >= between and token.spelling != ")":
                yield token, OTHER_BINARY.get(token.spelling, ())
                return
    elif kind == CursorKind.UNARY_OPERATOR:
        tokens = list(cursor.get_tokens())
        for token in tokens[:1] + tokens[-1:]:
            if token.spelling in OTHER_UNARY and token.kind == TokenKind.PUNCTUATION:
                yield token, OTHER_UNARY[token.spelling]
                return
    elif kind in LITERALS:
        for token in list(cursor.get_tokens())[:1]:
            yield token, _other_literals(token.spelling)


def _walk(cursor, places, found):
    for child in cursor.get_children():
        if child.location.file and not places.file_of(child.location):
            continue
        for token, others in _changes_at(child):
            place = token.extent.start
            file = places.file_of(place)
            for other in others if file else ():
                found.setdefault((file, place.offset, other), (place.line, token.spelling))
        _walk(child, places, found)


def changes_of(places, unit, kept):
    """What a unit's tree has: its functions by file and line, and its changes. They are kept in a file until
    the unit changes."""
    if unit.is_newer(kept, Path(__file__), Path(places_of.__file__)):
        return pickle.loads(kept.read_bytes())
    tree, found = places_of.tree(places.root, unit), {}
    places.functions = {}
    places.add_functions(tree.cursor)
    _walk(tree.cursor, places, found)
    kept.write_bytes(pickle.dumps((places.functions, found)))
    return places.functions, found


def _words(core, found):
    """The two words for false and true, which are macros and have no node of their own."""
    for file in core.files:
        offset = 0
        for number, line in enumerate((core.root / file).read_text().split("\n"), 1):
            for word, others in OTHER_WORD.items():
                at = line.find(word)
                if at >= 0 and not line.lstrip().startswith(("//", "#")):
                    start = offset + len(line[:at].encode())
                    found.setdefault((file, start, others[0]), (number, word))
            offset += len(line.encode()) + 1


def _units_of(core, assemblies, places, file, line):
    """The units to compile anew: those with code of the function there; of what is in no function, or of
    one that the compiler evaluates, all that read the file."""
    with_code = assemblies.units_with((file, number) for number in places.function_lines(file, line))
    return with_code or [unit for unit in core.units if file in unit.reads]


def find(core, assemblies, found, places):
    """All changes in the layer's files, in the order of files and places. Operators and constants that a
    line has several of are numbered."""
    _words(core, found)
    # A token that comes out of a macro stands elsewhere.
    code = {file: (core.root / file).read_bytes() for file in core.files}
    known = [
        (file, line, offset, old, new)
        for (file, offset, new), (line, old) in sorted(found.items())
        if code[file][offset : offset + len(old)] == old.encode() and not RESERVE.match(places.text(file, line))
    ]
    offsets = sorted({(file, line, old, offset) for file, line, offset, old, _ in known})
    of, seen, numbers = Counter(key[:3] for key in offsets), Counter(), {}
    for *key, offset in offsets:
        seen[tuple(key)] += 1
        numbers[key[0], offset] = f" #{seen[tuple(key)]}" if of[tuple(key)] > 1 else ""
    units = {place: _units_of(core, assemblies, places, *place) for place in {key[:2] for key in known}}
    return [Change(units[change[:2]], *change, numbers[change[0], change[2]]) for change in known]
