"""tools/mutation [--sample N] [--seed S] [--kind jumps|operators] [--listed] [--jobs N] [file...]: are
the core's tests good enough to notice that the core is wrong?

Makes mutants of the core (of the files named, or of all): each conditional jump of the compiler's output
taken always and never, each operator and constant of the source replaced by another. Each mutant takes
the place of one object of a shared library, against which the core's tests run until one fails, crashes
or exceeds its time. A mutant that no test notices survives and is listed. Mutants that do not compile,
compile to the same code, or to that of another mutant, are no mutants and are left out of the count.
Those of tools/mutants/same, which no test can notice, are counted by themselves and not run; with
--listed they alone are run, and none may be noticed. Ends with 1 when fewer than 95 % of the others are
killed, or when an entry of the list is wrong or fits no mutant.
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
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
import build
import jumps
import operators
import places
from listed import Listed
from trial import Trial

TREE = ROOT / "build/mutation"
LIST = ROOT / "tools/mutants/same"
GOAL = 0.95


def prepare():
    """Configures and builds the tests, and answers their names."""
    flags = ["-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_C_FLAGS_DEBUG=-O2", "-DCMAKE_CXX_FLAGS_DEBUG=-O2"]
    switches = ["-DNUV_BUILD_TESTS=ON", "-DNUV_BUILD_BENCHMARKS=OFF", "-DNUV_WARNINGS_AS_ERRORS=OFF"]
    command = ["cmake", "-S", ROOT, "-B", TREE, "-G", "Ninja", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON"]
    subprocess.run(command + flags + switches, check=True, stdout=subprocess.DEVNULL)
    listed = subprocess.run(
        ["ninja", "-C", TREE, "-t", "targets", "all"], check=True, capture_output=True, text=True
    ).stdout
    names = sorted({line.split(":")[0] for line in listed.split("\n") if line.startswith("test_core_")})
    subprocess.run(["ninja", "--quiet", "-C", TREE, *names], check=True)
    return names


def find(core, kinds, files):
    where = places.Places(core)
    trees = list(places.trees(core))
    for tree in trees:
        where.add_functions(tree.cursor)
    mutants = []
    if "jumps" in kinds:
        mutants += jumps.find(core)
    if "operators" in kinds:
        mutants += operators.find(core, trees, where)
    wanted = {core.relative(file) for file in files}
    mutants = [mutant for mutant in mutants if not wanted or mutant.file in wanted]
    where.describe(mutants)
    return mutants


def is_of_solver(file):
    """The files that a solve is made of. What a product, an inverse and each loop are has tests of its
    own."""
    return file.parent.name == "Simplex"


class Run:
    """Tries mutants, several at a time, each in a directory of its own."""

    def __init__(self, core, trial, jobs):
        self.core, self.trial, self.jobs = core, trial, jobs
        self.directories = queue.SimpleQueue()
        self.codes = set()

    def outcome(self, mutant):
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
                    if number % 50 == 0:
                        minutes = (time.monotonic() - begin) / 60
                        print(f"  {number} of {len(mutants)} in {minutes:.1f} min", flush=True)


def describe(mutant):
    place = f"{mutant.file}, {mutant.function}: {mutant.line_text}"
    return f"{place}\n        {mutant.text}   ({mutant.line}, {mutant.detail})"


def report(counts, by_file, num_listed):
    for file in sorted(by_file):
        of = by_file[file]
        print(f"{str(file):50} {of['killed']} of {of['killed'] + of['survives']} killed")
    killed, made = counts["killed"], counts["killed"] + counts["survives"]
    share = killed / made if made else 1.0
    print(
        f"{killed} of {made} mutants killed, {100 * share:.1f} %; {num_listed} more are of tools/mutants/same; "
        f"{counts['survives']} survive"
    )
    return share >= GOAL


def try_mutants(run, mutants, num_listed):
    counts, by_file = Counter(), {}
    for mutant, outcome in run.outcomes(mutants):
        counts[outcome] += 1
        by_file.setdefault(mutant.file, Counter())[outcome] += 1
        if outcome == "survives":
            print(f"survives: {describe(mutant)}", flush=True)
    return report(counts, by_file, num_listed)


def try_listed(run, mutants):
    counts = Counter()
    for mutant, outcome in run.outcomes(mutants):
        counts[outcome] += 1
        if outcome == "killed":
            print(f"listed, and noticed: {describe(mutant)}", flush=True)
    print(f"{counts['survives']} of those listed run as the core does, {counts['killed']} do not")
    return counts["killed"] == 0


def arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sample", type=int, help="so many mutants, drawn by chance")
    parser.add_argument("--seed", type=int, default=1, help="of the sample")
    parser.add_argument("--kind", choices=("jumps", "operators"), help="one kind of mutants alone")
    parser.add_argument("--listed", action="store_true", help="the mutants of tools/mutants/same alone")
    parser.add_argument("--jobs", type=int, default=2, help="so many at a time")
    parser.add_argument("files", nargs="*")
    return parser.parse_args()


def main():
    given = arguments()
    names = prepare()
    core = build.Core(ROOT, TREE, TREE / "mutants")
    core.compile_all()
    core.link(core.work, {})
    trial = Trial(core.link_tests(names), core.work)
    for test in trial.tests:
        print(f"{test.program.name}: {test.seconds:.2f} s")
    kinds = [given.kind] if given.kind else ["jumps", "operators"]
    mutants = find(core, kinds, given.files)
    print(f"{len(mutants)} mutants")
    same = Listed(LIST)
    listed = {id(mutant) for mutant in mutants if same.has(mutant)}
    stale = [] if given.kind else same.unused({str(mutant.file) for mutant in mutants})
    if given.sample and given.sample < len(mutants):
        # A smaller sample of the same seed is the beginning of a larger one.
        random.Random(given.seed).shuffle(mutants)
        mutants = mutants[: given.sample]
        print(f"{len(mutants)} of them, seed {given.seed}")
    run = Run(core, trial, given.jobs)
    chosen = [mutant for mutant in mutants if (id(mutant) in listed) == given.listed]
    is_good = try_listed(run, chosen) if given.listed else try_mutants(run, chosen, len(mutants) - len(chosen))
    for entry in stale:
        print(f"tools/mutants/same: fits no mutant: {entry}")
    return 0 if is_good and not stale else 1


if __name__ == "__main__":
    sys.exit(main())
