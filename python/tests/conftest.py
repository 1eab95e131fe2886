"""Every test has a deadline, and no process that a test has begun outlives the tests."""

import contextlib
import faulthandler
import os
import signal
import sys
from pathlib import Path

import pytest

#: Seconds that a test may take, its fixtures included; the long run has longer tests.
SECONDS = int(os.environ.get("NUV_PYTHON_SECONDS", 300 if os.environ.get("NUV_PYTHON_LONG") else 120))
#: Seconds after the deadline in which it has to fail, or the run ends there.
GRACE = min(30, SECONDS)


class DeadlinePassed(BaseException):
    """No Exception: what a test waits in would take it for one of its own."""


def children():
    """The processes that descend from this one."""
    parents = {}
    for entry in Path("/proc").iterdir():
        with contextlib.suppress(OSError, ValueError):
            # "12 (name of any letters) S 11 ..."
            parents[int(entry.name)] = int((entry / "stat").read_text().rpartition(")")[2].split()[1])
    found = [os.getpid()]
    for process in found:
        found += [child for child, parent in parents.items() if parent == process]
    return found[1:]


def end_children():
    for process in children():
        with contextlib.suppress(ProcessLookupError):
            os.kill(process, signal.SIGKILL)


def pytest_configure(config):
    # Output is captured while tests run: stacks go to where it went before.
    config.stacks = os.fdopen(os.dup(sys.__stderr__.fileno()), "w")


def pytest_unconfigure(config):
    faulthandler.cancel_dump_traceback_later()
    end_children()
    config.stacks.close()


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_protocol(item):
    """At the deadline all threads are shown and the test fails; if it cannot, the run ends."""
    stacks = item.config.stacks

    def stop(number, frame):
        print(f"\n{item.nodeid} has not ended in {SECONDS} s", file=stacks, flush=True)
        faulthandler.dump_traceback(stacks, all_threads=True)
        raise DeadlinePassed(f"no end in {SECONDS} s")

    before = signal.signal(signal.SIGALRM, stop)
    signal.alarm(SECONDS)
    faulthandler.dump_traceback_later(SECONDS + GRACE, exit=True, file=stacks)
    try:
        yield
    finally:
        signal.alarm(0)
        faulthandler.cancel_dump_traceback_later()
        signal.signal(signal.SIGALRM, before)
