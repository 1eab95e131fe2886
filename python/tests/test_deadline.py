"""What waits for ever fails, says where it stood, and leaves no process behind."""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

WAITING = """
import subprocess
import threading

def test_that_waits_for_ever():
    threading.Event().wait()

def test_that_comes_after_it():
    child = subprocess.Popen(["sleep", "600"])
    print("child", child.pid)
    assert child.poll() is not None, "output is shown of what fails"
"""

DEAF = """
import signal
import threading

def test_that_hears_nothing():
    signal.signal(signal.SIGALRM, signal.SIG_IGN)
    threading.Event().wait()
"""


def run_of(tests, folder):
    shutil.copy(Path(__file__).with_name("conftest.py"), folder)
    (folder / "test_waiting.py").write_text(tests)
    return subprocess.run([sys.executable, "-m", "pytest", "-q", "-p", "no:cacheprovider", folder], timeout=60,
                          env={**os.environ, "NUV_PYTHON_SECONDS": "2"}, capture_output=True, text=True)


def test_a_test_that_waits_for_ever_fails_and_the_next_one_runs(tmp_path):
    run = run_of(WAITING, tmp_path)
    assert run.returncode == 1 and "2 failed" in run.stdout
    assert "test_that_waits_for_ever has not ended in 2 s" in run.stderr
    assert 'test_waiting.py", line 6 in test_that_waits_for_ever' in run.stderr
    child, = re.findall(r"^child (\d+)$", run.stdout, flags=re.M)
    assert not Path("/proc", child).exists()


def test_a_test_that_hears_no_signal_ends_the_run(tmp_path):
    run = run_of(DEAF, tmp_path)
    assert run.returncode == 1 and "Timeout (0:00:04)!" in run.stderr
    assert 'test_waiting.py", line 7 in test_that_hears_nothing' in run.stderr
