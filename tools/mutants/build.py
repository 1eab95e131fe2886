"""A layer as a shared library whose objects are replaced one at a time, and its tests, linked once.

The flags are those of a build tree configured by CMake; all symbols are visible here, because tests
call functions that are not exported.
"""
import json
import os
import re
import shlex
import subprocess
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path


def _tests(names):
    """The objects of test programs, whose name is the group of that name."""
    return re.compile(rf"tests/.*/CMakeFiles/(?P<name>test_{names}?)\.dir/")


@dataclass
class Layer:
    name: str
    targets: re.Pattern  # of the objects
    files: re.Pattern
    tests: re.Pattern
    goal: float
    libraries: tuple  # what the tests need besides, of the build tree
    flags: tuple
    rooms: tuple  # with the tests of each, from the lowest on; none: every test may reach every file
    has_nans: bool  # whether a NaN is compared anywhere, but with itself


CORE = Layer(
    "core", re.compile(r".*/NuvLinearProgramming\.dir/"), re.compile("Nuv/"), _tests("core_.*"), 0.95,
    ("tests/libnuv_test_reference.a", "Nuv/SelfTest/libnuv_selftest_run.a", "Nuv/Corpus/libnuv_corpus.a"), (), (), True,
)  # fmt: skip
MODEL = Layer(
    "model", re.compile(r".*/nuv_(algebra|sparse_simplex|certificate|exact)\.dir/"),
    re.compile("Nuv/(Algebra|SparseSimplex|Certificate|Exact)/"),
    _tests("(algebra|sparse_simplex|certificate|exact).*"), 0.90, (), ("-lgmp",),
    ("Algebra", "SparseSimplex", "Certificate", "Exact"), False,
)  # fmt: skip


class Unit:
    """A source of the core with the command that compiles it, and the files that it reads."""

    def __init__(self, entry, root):
        words = shlex.split(entry["command"])
        at = words.index("-o")
        kept = words[:at] + words[at + 2 : words.index("-c")]
        dropped = ("-fvisibility", "-Werror", "-W")
        self.command = [word for word in kept if not word.startswith(dropped)]
        self.command += ["-fvisibility=default", "-w"]
        # Each condition of the source makes one jump: not one per place where it is inlined or unrolled, nor
        # a second before a loop, nor one behind it that asks whether to write back.
        self.command += ["-O1", "-fno-inline", "-fno-tree-ch", "-fno-tree-loop-im", "-ffinite-loops"]
        # A step past the end of a vector is noticed where it happens.
        self.command += ["-D_GLIBCXX_ASSERTIONS"]
        self.source = Path(entry["file"]).relative_to(root)
        self.name = self.source.stem
        listed = subprocess.run(
            self.command + ["-MM", str(self.source)], cwd=root, check=True, capture_output=True, text=True
        ).stdout
        words = listed.replace("\\\n", " ").split(":", 1)[1].split()
        files = [Path(os.path.relpath(Path(root, word).resolve(), root)) for word in words]
        self.reads = {file for file in files if file.parts[0] == "Nuv"}
        self.root = root

    def is_newer(self, made, *tools):
        """Whether a file made of the unit by some tools is newer than all of these."""
        read = [*tools, *(self.root / file for file in {self.source, *self.reads})]
        return made.exists() and made.stat().st_mtime > max(file.stat().st_mtime for file in read)


class Library:
    def __init__(self, layer, root, tree, work, jobs):
        self.jobs = jobs
        self.layer, self.root, self.tree, self.work = layer, Path(root), Path(tree), Path(work)
        self.work.mkdir(parents=True, exist_ok=True)
        entries = json.loads((self.tree / "compile_commands.json").read_text())
        mine = [entry for entry in entries if layer.targets.match(entry["command"])]
        with ThreadPoolExecutor(jobs) as pool:
            self.units = list(pool.map(lambda entry: Unit(entry, self.root), mine))
        read = set().union(*(unit.reads for unit in self.units))
        self.files = sorted(file for file in read if layer.files.match(str(file)))

    def compile(self, unit, output, overlay=None, flags=("-c",)):
        """Compiles a unit, reading files from `overlay` first. Answers whether it compiled."""
        command, source = list(unit.command), self.root / unit.source
        if overlay:
            command.insert(1, f"-I{overlay}")
            if (overlay / unit.source).exists():
                source = overlay / unit.source
        command += [*flags, "-o", str(output), str(source)]
        return subprocess.run(command, cwd=self.root, stderr=subprocess.DEVNULL).returncode == 0

    def assemble(self, assembly, output):
        """The assembler alone. Answers whether it took the text."""
        commands = [["as", "-o", str(output), str(assembly)], ["strip", "--strip-debug", str(output)]]
        return all(subprocess.run(words, stderr=subprocess.DEVNULL).returncode == 0 for words in commands)

    def relative(self, path):
        """The name of a file of the core below the root, or None."""
        resolved = os.path.relpath(Path(self.root, path).resolve(), self.root)
        return Path(resolved) if self.layer.files.match(resolved) else None

    def object_of(self, unit):
        return self.work / f"{unit.name}.o"

    def assembly_of(self, unit):
        return self.work / f"{unit.name}.s"

    def compile_all(self):
        """Compiles each unit that has changed: with the lines of the source, which are no part of the
        object."""

        def compile_one(unit):
            assembly = self.assembly_of(unit)
            is_made = unit.is_newer(assembly, Path(__file__))
            return (is_made or self.compile(unit, assembly, flags=("-S", "-g1"))) and self.assemble(
                assembly, self.object_of(unit)
            )

        with ThreadPoolExecutor(self.jobs) as pool:
            for unit, is_compiled in zip(self.units, pool.map(compile_one, self.units)):
                if not is_compiled:
                    raise SystemExit(f"{unit.source} does not compile")

    def link(self, directory, replaced):
        """Links the library with some objects replaced. Answers whether it could be linked."""
        directory.mkdir(parents=True, exist_ok=True)
        # Of an inline function that several objects have, the first one's is taken.
        objects = [*map(str, replaced.values())]
        objects += [str(self.object_of(unit)) for unit in self.units if unit.name not in replaced]
        # -Bsymbolic-functions: the library calls itself, as it does with hidden symbols.
        command = ["c++" if self.layer.flags else "cc", "-shared", "-fuse-ld=lld", "-Wl,-Bsymbolic-functions"]
        command += ["-o", str(directory / "libcore.so"), *objects, *self.layer.flags]
        return subprocess.run(command, stderr=subprocess.DEVNULL).returncode == 0

    def link_tests(self, names):
        """Links the test programs of the build tree with the shared library; answers their paths."""
        programs = []
        for name in names:
            objects = sorted((self.tree / "tests").glob(f"**/CMakeFiles/{name}.dir/**/*.o"))
            if not objects:
                raise SystemExit(f"{name} is not built")
            program = self.work / name
            command = ["c++", "-fuse-ld=lld", "-o", str(program), *map(str, objects)]
            command += [str(self.tree / library) for library in self.layer.libraries]
            command += [f"-L{self.work}", "-lcore", *self.layer.flags, "-lgtest_main", "-lgtest", "-pthread"]
            subprocess.run(command, check=True)
            programs.append(program)
        return programs
