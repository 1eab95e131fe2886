"""Running the tests against one mutant. A mutant may loop, or ask for all memory that there is: each
test runs under limits of memory and processor time, and in a process group that can be ended whole."""
import os
import resource
import signal
import subprocess
import time

MEMORY = 2_000_000 * 1024
MAX_SECONDS = 20
WALL_SECONDS = 240
SLOW_SECONDS = 1
# Of the tests' random cases every eighth is run: a mutant that only the others would notice counts as one
# that survives.
SHARE = "8"


class Test:
    def __init__(self, program):
        self.program = program
        self.seconds = None  # of processor time, when nothing is mutated

    def run(self, library, limit):
        """Answers whether the test passes."""

        def confine():
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
            resource.setrlimit(resource.RLIMIT_CPU, (limit, limit))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

        process = subprocess.Popen(
            [self.program, "--gtest_brief=1", "--gtest_fail_fast"],
            env={**os.environ, "LD_LIBRARY_PATH": str(library), "NUV_TEST_SHARE": SHARE},
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            preexec_fn=confine, start_new_session=True,
        )  # fmt: skip
        try:
            return process.wait(WALL_SECONDS) == 0
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()
            return False

    def measure(self, library):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        passes = self.run(library, MAX_SECONDS)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        self.seconds = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
        return passes

    def limit(self):
        return min(MAX_SECONDS, 1 + int(6 * self.seconds))


def in_order(tests, library):
    """The tests, fastest first. All must pass while nothing is mutated."""
    for test in tests:
        if not test.measure(library):
            raise SystemExit(f"{test.program.name} fails, or needs too much, before anything is mutated")
    return sorted(tests, key=lambda test: test.seconds)


def is_killed(tests, library, is_solver):
    """Whether any test fails. The slow tests compare whole solves: they run for the solver's mutants
    alone, since for a container's they find nothing that its own tests do not, and take most of the time."""
    chosen = [test for test in tests if is_solver or test.seconds < SLOW_SECONDS]
    return not all(test.run(library, test.limit()) for test in chosen)
