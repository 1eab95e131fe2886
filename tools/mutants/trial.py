"""Running the tests against one mutant. A mutant may loop, or ask for all memory that there is: each
test runs under limits of memory and processor time, and in a process group that can be ended whole."""
import os
import re
import signal
import subprocess
import threading
from concurrent.futures import ThreadPoolExecutor

MEMORY = 2_000_000  # KiB
MAX_SECONDS = 20
WALL_SECONDS = 900
SLOW_SECONDS = 0.5  # with the smaller share
# Of the tests' random cases every second is run, of slow tests every eighth: a mutant that only the others
# would notice counts as one that survives.
SHARE, SHARE_OF_SLOW = "2", "8"
CONFINED = 'ulimit -c 0 -v "$1" -t "$2"; exec "$3" --gtest_brief=1 --gtest_fail_fast'


class Test:
    def __init__(self, program):
        self.program = program
        self.share = SHARE_OF_SLOW
        self.is_slow = False
        self.seconds = None  # of processor time, when nothing is mutated

    def passes(self, library, limit):
        process = subprocess.Popen(
            ["bash", "-c", CONFINED, "test", str(MEMORY), str(limit), str(self.program)],
            env={**os.environ, "LD_LIBRARY_PATH": str(library), "NUV_TEST_SHARE": self.share},
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            start_new_session=True,
        )  # fmt: skip
        deadline = threading.Timer(WALL_SECONDS, os.killpg, (process.pid, signal.SIGKILL))
        deadline.start()
        _, status, used = os.wait4(process.pid, 0)
        deadline.cancel()
        process.returncode = status
        self.last_seconds = used.ru_utime + used.ru_stime
        return status == 0

    def measure(self, library):
        """Whether the test passes while nothing is mutated; a quick one with more of its cases."""
        passes = self.passes(library, MAX_SECONDS)
        self.is_slow = self.last_seconds >= SLOW_SECONDS
        if not self.is_slow:
            self.share = SHARE
            passes = passes and self.passes(library, MAX_SECONDS)
        self.seconds = self.last_seconds
        return passes

    def limit(self):
        return min(MAX_SECONDS, 1 + int(6 * self.seconds))


class Trial:
    """The tests, fastest first, all of which pass while nothing is mutated."""

    def __init__(self, programs, library, jobs, rooms):
        self.rooms = [(room, "test" + re.sub("[A-Z]", lambda letter: "_" + letter[0].lower(), room)) for room in rooms]
        self.tests = [Test(program) for program in programs]
        with ThreadPoolExecutor(jobs) as pool:
            for test, passes in zip(self.tests, pool.map(lambda test: test.measure(library), self.tests)):
                if not passes:
                    raise SystemExit(f"{test.program.name} fails, or needs too much, before anything is mutated")
        self.tests.sort(key=lambda test: test.seconds)
        self.orders = {}

    def can_reach(self, test, file):
        """Whether a test is of the file's room or of one above it."""
        of_test = [k for k, (_, prefix) in enumerate(self.rooms) if test.program.name.startswith(prefix)]
        of_file = [k for k, (room, _) in enumerate(self.rooms) if room in file.parts]
        return not of_test or not of_file or of_test[0] >= of_file[0]

    def is_noticed(self, library, file, is_solver):
        """Whether any test fails. The one that noticed the last mutant of the file comes first. The slow
        tests compare whole solves: they run for the solver's mutants alone, since for a container's they
        find nothing that its own tests do not, and take most of the time."""
        order = self.orders.get(file, self.tests)
        for test in order:
            if (not is_solver and test.is_slow) or not self.can_reach(test, file):
                continue
            if not test.passes(library, test.limit()):
                self.orders[file] = [test] + [other for other in order if other is not test]
                return True
        return False
