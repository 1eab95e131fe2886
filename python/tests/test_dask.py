"""solve_batch on local clusters: the same bits whatever the workers do."""

import contextlib
import os
import signal
import subprocess
import sys
from types import SimpleNamespace

import numpy as np
import pytest

import nuv

distributed = pytest.importorskip("distributed")

import nuv.dask  # noqa: E402
import workers  # noqa: E402
from workers import digest, problems  # noqa: E402

#: Clusters take seconds to begin and to replace a worker: one and three are for the long run.
WORKERS = [1, 2, 3] if os.environ.get("NUV_PYTHON_LONG") else [2]


@pytest.fixture(scope="module", params=WORKERS)
def client(request):
    with distributed.LocalCluster(n_workers=request.param, threads_per_worker=1, processes=True,
                                  dashboard_address=":0") as cluster:
        with distributed.Client(cluster) as client:
            client.wait_for_workers(request.param, timeout=60)
            yield client


@pytest.fixture(scope="module")
def expected():
    found = nuv.solve_batch(*problems())
    assert set(found.status.tolist()) == {0, 2, 3, 4} and (found.proved == (found.status != 4)).all()
    return found


@pytest.mark.parametrize("chunk", [None, 1, 7, 600, 10_000])
def test_every_chunk_and_number_of_workers_gives_the_same_bits(client, expected, chunk):
    if chunk == 1:
        part = [array[150:250] if len(array) == 600 else array for array in problems()]
        found = nuv.dask.solve_batch(client, *part, chunk=1)
        assert digest(found) == digest([array[150:250] for array in expected])
        return
    assert digest(nuv.dask.solve_batch(client, *problems(), chunk=chunk)) == digest(expected)


def test_single_precision_too(client):
    c, A, b = problems()
    alone = nuv.solve_batch(c, A, b, proved=False)
    assert digest(nuv.dask.solve_batch(client, c, A, b, proved=False, chunk=37)) == digest(alone)


# Tests that end workers run in a process of their own, which a deadline ends with all that it has begun.
SCENARIOS = [
    ("a_worker_that_is_killed_loses_nothing", WORKERS),
    ("every_worker_is_killed_in_turn", WORKERS),
    ("a_task_that_waits_for_a_worker_is_not_lost", WORKERS[-2:]),
    ("a_problem_that_kills_its_workers_is_reported_as_itself", [1, 3]),
    ("what_a_worker_was_never_told_is_sent_again", WORKERS),
    ("a_worker_that_is_stopped_is_waited_for", [1]),
    ("what_never_comes_back_ends_the_batch", [1]),
    ("a_scheduler_that_is_gone_ends_the_batch", [1]),
    ("a_cluster_without_workers_is_waited_for", [1]),
]


@pytest.mark.parametrize("name, count", [(name, count) for name, counts in SCENARIOS for count in counts])
def test_workers_that_die(name, count):
    process = subprocess.Popen([sys.executable, workers.__file__, name, str(count)], stdin=subprocess.DEVNULL,
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                               start_new_session=True)
    try:
        printed, _ = process.communicate(timeout=100)
        assert process.returncode == 0, printed
    except subprocess.TimeoutExpired:
        # It shows where its threads are.
        process.send_signal(signal.SIGABRT)
        with contextlib.suppress(subprocess.TimeoutExpired):
            pytest.fail(f"no end in 100 s\n{process.communicate(timeout=5)[0]}")
        pytest.fail("no end in 100 s")
    finally:
        with contextlib.suppress(ProcessLookupError):
            os.killpg(process.pid, signal.SIGKILL)


def test_an_interrupt_keeps_what_has_come_back(client, expected, monkeypatch):
    take, taken = nuv.dask._Job._take, []

    def take_two(job, first, last, found):
        if len(taken) == 2:
            raise KeyboardInterrupt
        take(job, first, last, found)
        taken.append((first, last))

    monkeypatch.setattr(nuv.dask._Job, "_take", take_two)
    with pytest.raises(nuv.Interrupted) as caught:
        nuv.dask.solve_batch(client, *problems(), chunk=50)
    found = caught.value.solution
    there = np.zeros(600, bool)
    for first, last in taken:
        there[first:last] = True
    assert there.sum() == 100 and (found.status[~there] == 1).all() and np.isnan(found.x[~there]).all()
    assert found.x[there].tobytes() == expected.x[there].tobytes()
    monkeypatch.undo()
    # The workers go on with what is asked of them next.
    assert digest(nuv.dask.solve_batch(client, *problems(), chunk=100)) == digest(expected)


def test_a_result_that_does_not_come_is_asked_for_again(client, expected, monkeypatch):
    result, failures = distributed.Future.result, [distributed.TimeoutError, MemoryError, distributed.TimeoutError]

    def late(future, timeout=None):
        if failures:
            raise failures.pop()
        return result(future, timeout)

    monkeypatch.setattr(distributed.Future, "result", late)
    assert digest(nuv.dask.solve_batch(client, *problems(), chunk=50)) == digest(expected) and not failures


@pytest.mark.parametrize("failures", [2, 100])
def test_a_worker_that_dies_of_what_the_problems_share(client, expected, failures, monkeypatch):
    scatter, calls = client.scatter, []

    def failing(*arguments, **more):
        calls.append(arguments)
        if len(calls) <= failures:
            raise OSError("the connection is gone")
        return scatter(*arguments, **more)

    monkeypatch.setattr(client, "scatter", failing)
    if failures == 2:
        assert digest(nuv.dask.solve_batch(client, *problems())) == digest(expected) and len(calls) == 3
    else:
        with pytest.raises(OSError, match="connection"):
            nuv.dask.solve_batch(client, *problems())


def job():
    c, A, b = problems(4)
    settings = nuv._batch.checked_settings(True, "written", None)
    return nuv.dask._Job(None, *nuv._batch.checked_problems(c, A, b, None, None, None, settings), settings, 1)


def test_a_part_that_comes_twice_or_never_is_an_error(monkeypatch):
    twice, found = job(), nuv.solve_batch(*problems(4))
    twice._take(0, 4, found)
    with pytest.raises(RuntimeError, match="twice"):
        twice._take(0, 4, found)
    never = job()
    never.client = SimpleNamespace(nthreads=dict)
    monkeypatch.setattr(nuv.dask._Job, "_drain", lambda job, ranges, ahead: None)
    with pytest.raises(RuntimeError, match="has not come back"):
        never.run(2)


def test_what_workers_say_of_themselves(monkeypatch):
    monkeypatch.setattr(nuv.dask, "_SILENCE", 5)
    states = {"a": "executing", "b": "memory", "c": "waiting", "d": "error"}
    tasks = {key: SimpleNamespace(state=state) for key, state in states.items()}
    worker = SimpleNamespace(state=SimpleNamespace(tasks=tasks), status=SimpleNamespace(name="running"))
    busy, idle, paused = nuv.dask._unfinished(worker), (True, []), (False, [])
    assert busy == (True, ["a", "c"])

    def lost(*answers):
        """What is said after each of these answers of two workers, of tasks a and x."""
        watch = nuv.dask._Watch(SimpleNamespace(run=lambda ask: answers[len(found)]))
        found = []
        for _ in answers:
            found.append(watch.is_lost({"a", "x"}))
        return found

    other = (True, ["of another batch"])
    assert lost({1: other, 2: idle}, {1: other, 2: idle}) == [False, True]
    assert lost({1: busy, 2: idle}, {1: busy, 2: idle}) == [False, False]
    assert lost({1: other, 2: paused}, {1: other, 2: other}) == [False, False]
    assert lost({1: idle}, {1: busy}, {1: idle}, {1: idle}) == [False, False, False, True]

    def fails(ask):
        raise OSError("the scheduler is gone")

    assert nuv.dask._Watch(SimpleNamespace(run=fails)).look() is None


def test_a_failure_of_the_task_itself_is_raised(client):
    with pytest.raises(ValueError, match="chunk"):
        nuv.dask.solve_batch(client, *problems(), chunk=0)
    with pytest.raises(ValueError, match="retries"):
        nuv.dask.solve_batch(client, *problems(), retries=-1)
    with pytest.raises(ValueError, match="^A_ub"):
        nuv.dask.solve_batch(client, [1, 2], [[1]], [1])
    none = nuv.dask.solve_batch(client, np.ones((0, 2)), [[1, 1]], [1])
    assert none.x.shape == (0, 2)
