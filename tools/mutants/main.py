"""tools/mutation [--sample N] [--seed S] [--kind jumps|operators] [file...]: are the core's tests good
enough to notice that the core is wrong?

Makes mutants of the core (of the files named, or of all): each conditional jump of the compiler's output
taken always and never, each operator and constant of the source replaced by another. Each mutant takes
the place of one object of a shared library, against which the core's tests run, fastest first, until one
fails, crashes or exceeds its time. A mutant that no test notices survives and is listed. Mutants that do
not compile, or compile to the same code, are no mutants and are left out of the count. The survivors
known, each with its reason, stand in docs/mutation.md. Ends with 1 when fewer than 95 % are killed.
"""
import argparse
import random
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
import build
import jumps
import trial

TREE = ROOT / "build/mutation"
GOAL = 0.95


def prepare():
    """Configures and builds the tests, and answers their names. Optimised, without the inlining and
    unrolling that would make many jumps out of one."""
    flags = ["-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_C_FLAGS_DEBUG=-O1", "-DCMAKE_CXX_FLAGS_DEBUG=-O1 -ffinite-loops"]
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
    mutants = []
    if "jumps" in kinds:
        mutants += jumps.find(core)
    if "operators" in kinds:
        import operators

        mutants += operators.find(core)
    wanted = {core.relative(file) for file in files}
    return [mutant for mutant in mutants if not wanted or mutant.file in wanted]


def is_of_solver(file):
    """The files that a solve is made of. What a product, an inverse and each loop are has tests of its
    own."""
    parts = ("Basis", "LiteralRoad", "ReducedCosts", "Simplex", "SolveStorage")
    return any(part in file.name for part in parts)


def run(core, tests, mutants):
    """Tries the mutants; answers how many were killed, and the survivors."""
    killed, survivors, begin = 0, [], time.monotonic()
    with tempfile.TemporaryDirectory(dir=core.work) as scratch:
        scratch = Path(scratch)
        for number, mutant in enumerate(mutants, 1):
            replaced = mutant.build(core, scratch)
            if replaced and core.link(scratch, replaced):
                if trial.is_killed(tests, scratch, is_of_solver(mutant.file)):
                    killed += 1
                else:
                    survivors.append(mutant)
                    print(f"{mutant.file}:{mutant.line}: survives: {mutant.text}", flush=True)
            if number % 20 == 0:
                minutes = (time.monotonic() - begin) / 60
                print(f"  {number} of {len(mutants)} in {minutes:.0f} min, {len(survivors)} survive", flush=True)
    return killed, survivors


def report(killed, survivors):
    for file in sorted({mutant.file for mutant in survivors}):
        print(f"{file}: {sum(mutant.file == file for mutant in survivors)} survive")
    made = killed + len(survivors)
    share = killed / made if made else 1.0
    print(f"{killed} of {made} mutants killed, {100 * share:.1f} %")
    return 0 if share >= GOAL else 1


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sample", type=int, help="so many mutants, drawn by chance")
    parser.add_argument("--seed", type=int, default=1, help="of the sample")
    parser.add_argument("--kind", choices=("jumps", "operators"), help="one kind of mutants alone")
    parser.add_argument("files", nargs="*")
    given = parser.parse_args()
    names = prepare()
    core = build.Core(ROOT, TREE, TREE / "mutants")
    core.compile_all()
    core.link(core.work, {})
    tests = trial.in_order([trial.Test(program) for program in core.link_tests(names)], core.work)
    for test in tests:
        print(f"{test.program.name}: {test.seconds:.1f} s")
    mutants = find(core, [given.kind] if given.kind else ["jumps", "operators"], given.files)
    print(f"{len(mutants)} mutants")
    if given.sample and given.sample < len(mutants):
        # A smaller sample of the same seed is the beginning of a larger one.
        random.Random(given.seed).shuffle(mutants)
        mutants = mutants[: given.sample]
        print(f"{len(mutants)} of them, seed {given.seed}")
    return report(*run(core, tests, mutants))


if __name__ == "__main__":
    sys.exit(main())
