"""tools/mutation [--model] [--sample N] [--seed S] [--kind jumps|operators] [--marked] [--minutes M] [--jobs N] [file...]:
are the core's tests good enough to notice that the core is wrong?

Makes mutants of the core (of the files named, or of all; with --model, of the checker and the engine): each
conditional jump of the compiler's output taken always and never, each operator and constant of the source
replaced by another. Each mutant takes the place of one object of a shared library, against which the
layer's tests run until one fails, crashes or exceeds its time. A mutant that no test notices survives and is
listed. Mutants that do not compile, compile to the same code, or to that of another mutant, are no mutants and
are left out of the count, as are survivors of a line of which a comment says why its results may be the same
(tools/mutants/marked.py). With --marked the mutants of such lines alone are run, and a comment of none that
survives is an error. Ends with 1 when fewer than 95 % are killed (90 % with --model) or a comment is wrong.
"""
import argparse
import hashlib
import queue
import random
import subprocess
import sys
import tempfile
import time
from collections import Counter
from concurrent.futures import ProcessPoolExecutor, ThreadPoolExecutor
from itertools import repeat
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
import build
import jumps
import operators
import places
from assembly import Assemblies
from marked import Marked
from trial import Trial

TREE = ROOT / "build/mutation"


def prepare(layer):
    """Configures, builds the objects of the layer's tests, and answers the names of these."""
    command = ["cmake", "--preset", "release", "-B", TREE, "-DNUV_BUILD_BENCHMARKS=OFF"]
    subprocess.run(command, cwd=ROOT, check=True, stdout=subprocess.DEVNULL)
    listed = subprocess.run(
        ["ninja", "-C", TREE, "-t", "targets", "all"], check=True, capture_output=True, text=True
    ).stdout
    files = [line.split(":")[0] for line in listed.split("\n")]
    objects = [file for file in files if layer.tests.match(file) and file.endswith(".o")]
    names = sorted({layer.tests.match(file)["name"] for file in objects})
    subprocess.run(["ninja", "--quiet", "-C", TREE, *objects, *layer.libraries], check=True)
    return names


def find(core, where, given):
    found = {}
    with ProcessPoolExecutor(given.jobs) as pool:
        kept = [core.work / f"{unit.name}.changes" for unit in core.units]
        read = list(pool.map(operators.changes_of, repeat(where), core.units, kept))
    for functions, changes in read:
        where.functions.update(functions)
        found.update(changes)
    mutants, assemblies = [], Assemblies(core)
    if given.kind != "operators":
        mutants += jumps.find(assemblies, core.layer.has_nans)
    if given.kind != "jumps":
        mutants += operators.find(core, assemblies, found, where)
    wanted = {core.relative(file) for file in given.files}
    mutants = [mutant for mutant in mutants if not wanted or mutant.file in wanted]
    where.describe(mutants)
    return mutants


def is_of_solver(file):
    """The files that a solve is made of. What a product, an inverse and each loop are has tests of its
    own."""
    return file.parent.name == "Simplex" or file.parts[1] not in ("Templates", "Utils")


class Run:
    """Tries mutants, several at a time, each in a directory of its own."""

    def __init__(self, core, trial, jobs, minutes):
        self.core, self.trial, self.jobs = core, trial, jobs
        self.end = time.monotonic() + 60 * minutes
        self.directories = queue.SimpleQueue()
        self.codes = set()

    def outcome(self, mutant):
        if time.monotonic() >= self.end:
            return "untried"
        directory = self.directories.get()
        try:
            replaced = mutant.build(self.core, directory)
            if not replaced or self.is_known(replaced) or not self.core.link(directory, replaced):
                return "none"
            noticed = self.trial.is_noticed(directory, mutant.file, is_of_solver(mutant.file))
            return "killed" if noticed else "survives"
        finally:
            self.directories.put(directory)

    def is_known(self, replaced):
        code = frozenset(
            (name, hashlib.sha256(file.read_bytes()).digest()) for name, file in replaced.items()
        )
        known = code in self.codes
        self.codes.add(code)
        return known

    def outcomes(self, mutants):
        """(mutant, outcome) of all, in their order."""
        begin = time.monotonic()
        with tempfile.TemporaryDirectory(dir=self.core.work) as scratch:
            for number in range(self.jobs):
                directory = Path(scratch, str(number))
                directory.mkdir()
                self.directories.put(directory)
            with ThreadPoolExecutor(self.jobs) as pool:
                outcomes = pool.map(self.outcome, mutants)
                for number, (mutant, outcome) in enumerate(zip(mutants, outcomes), 1):
                    yield mutant, outcome
                    if number % 50 == 0 and outcome != "untried":
                        minutes = (time.monotonic() - begin) / 60
                        print(f"  {number} of {len(mutants)} in {minutes:.1f} min", flush=True)


def describe(mutant):
    place = f"{mutant.file}, {mutant.function}: {mutant.line_text}"
    return f"{place}\n        {mutant.text}   ({mutant.line}, {mutant.detail})"


def report(counts, by_file):
    for file in sorted(by_file):
        of = by_file[file]
        print(f"{str(file):50} {of['killed']} of {of['killed'] + of['survives']} killed")
    killed, made = counts["killed"], counts["killed"] + counts["survives"]
    if counts["untried"]:
        print(f"the time was up before {counts['untried']} of {sum(counts.values())} were tried")
    share = killed / made if made else 1.0
    print(
        f"{killed} of {made} mutants killed, {100 * share:.1f} %; {counts['same']} more are the same, as a "
        f"comment says; {counts['survives']} survive"
    )
    return share


def try_mutants(run, mutants, marked, goal):
    counts, by_file = Counter(), {}
    for mutant, outcome in run.outcomes(mutants):
        if outcome == "survives" and marked.comment_of(mutant):
            outcome = "same"
        counts[outcome] += 1
        if outcome != "untried":
            by_file.setdefault(mutant.file, Counter())[outcome] += 1
        if outcome == "survives":
            print(f"survives: {describe(mutant)}", flush=True)
    return report(counts, by_file) >= goal


def try_marked(run, mutants, marked, files):
    unneeded = marked.comments(files)
    for mutant, outcome in run.outcomes(mutants):
        if outcome == "survives":
            unneeded.discard(marked.comment_of(mutant))
    for file, line in sorted(unneeded):
        print(f"{file}:{line}: nothing survives here")
    return not unneeded


def arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sample", type=int, help="so many mutants, drawn by chance")
    parser.add_argument("--seed", type=int, default=1, help="of the sample")
    parser.add_argument("--kind", choices=("jumps", "operators"), help="one kind of mutants alone")
    parser.add_argument("--marked", action="store_true", help="the mutants that comments are about, alone")
    parser.add_argument("--model", action="store_true", help="of the checker and the engine")
    parser.add_argument("--minutes", type=float, default=1e6, help="begin with no mutant after so many")
    parser.add_argument("--jobs", type=int, default=2, help="so many at a time")
    parser.add_argument("files", nargs="*")
    return parser.parse_args()


def main():
    given = arguments()
    layer = build.MODEL if given.model else build.CORE
    names = prepare(layer)
    core = build.Library(layer, ROOT, TREE, TREE / f"mutants-{layer.name}", given.jobs)
    core.compile_all()
    core.link(core.work, {})
    trial = Trial(core.link_tests(names), core.work, given.jobs, layer.rooms)
    for test in trial.tests:
        print(f"{test.program.name}: {test.seconds:.2f} s")
    where = places.Places(core)
    mutants = find(core, where, given)
    print(f"{len(mutants)} mutants")
    marked = Marked(where.lines)
    if given.marked:
        mutants = [mutant for mutant in mutants if marked.comment_of(mutant)]
    if given.sample and given.sample < len(mutants):
        # A smaller sample of the same seed is the beginning of a larger one.
        random.Random(given.seed).shuffle(mutants)
        mutants = mutants[: given.sample]
        print(f"{len(mutants)} of them, seed {given.seed}")
    run = Run(core, trial, given.jobs, given.minutes)
    if given.marked:
        return 0 if try_marked(run, mutants, marked, {mutant.file for mutant in mutants}) else 1
    return 0 if try_mutants(run, mutants, marked, layer.goal) else 1


if __name__ == "__main__":
    sys.exit(main())
