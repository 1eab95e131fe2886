"""solve_batch on local clusters: the same bits whatever the workers do."""

import contextlib
import hashlib
import os
import signal

import numpy as np
import pytest

import nuv

distributed = pytest.importorskip("distributed")

import nuv.dask  # noqa: E402


def problems(count=600):
    """Each of a millisecond or so, of all verdicts and two that are no problems."""
    r = np.random.default_rng(11)
    A = r.integers(-6, 9, (12, 10)).astype(float)
    A[11] = np.abs(A[11])
    A[:, 0] = -np.abs(A[:, 0])
    A[11, 0] = 0
    b = r.integers(-3, 60, (count, 12)).astype(float)
    c = r.integers(-9, 4, (count, 10)).astype(float)
    c[:, 0] = r.integers(-1, 20, count)
    c[count // 3, 2], b[count // 2, 3] = np.nan, np.inf
    return c, A, b


def digest(found):
    whole = hashlib.sha256()
    for array in found:
        whole.update(repr((array.shape, str(array.dtype))).encode() + array.tobytes())
    return whole.hexdigest()


#: Clusters take seconds to begin and to replace a worker: one and three are for the long run.
WORKERS = [1, 2, 3] if os.environ.get("NUV_PYTHON_LONG") else [2]


@contextlib.contextmanager
def cluster_of(workers):
    with distributed.LocalCluster(n_workers=workers, threads_per_worker=1, processes=True,
                                  dashboard_address=None) as cluster:
        with distributed.Client(cluster) as client:
            client.wait_for_workers(workers)
            yield client


@pytest.fixture(scope="module", params=WORKERS)
def client(request):
    with cluster_of(request.param) as client:
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


# Tests that end workers have clusters of their own: a worker may take minutes to come back.
@pytest.mark.parametrize("workers", WORKERS)
def test_a_worker_that_is_killed_loses_nothing(workers, expected, monkeypatch):
    with cluster_of(workers) as client:
        pids = client.run(os.getpid)
        # The third part that comes back is what ends a worker, in the midst of others.
        take, seen = nuv.dask._Job._take, []

        def take_and_kill(job, first, last, found):
            take(job, first, last, found)
            seen.append(first)
            if len(seen) == 3:
                os.kill(next(iter(pids.values())), signal.SIGKILL)

        monkeypatch.setattr(nuv.dask._Job, "_take", take_and_kill)
        found = nuv.dask.solve_batch(client, *problems(), chunk=5)
    assert digest(found) == digest(expected) and sorted(seen) == list(range(0, 600, 5))


class Deadly(distributed.WorkerPlugin if hasattr(distributed, "WorkerPlugin") else object):
    """Workers die of a problem that has the number 12345."""

    def setup(self, worker):
        import os

        import nuv._batch as batch

        self.real = real = batch.solve_problems

        def solve_problems(problems, count, workers, settings):
            if (problems.c == 12345).any():
                os._exit(1)
            return real(problems, count, workers, settings)

        batch.solve_problems = solve_problems

    def teardown(self, worker):
        import nuv._batch as batch

        batch.solve_problems = self.real


def test_a_problem_that_kills_its_workers_is_reported_as_itself(expected):
    c, A, b = problems()
    c, b = c[:12], b[:12]
    c[5, 5] = 12345
    # It ends three workers, which a cluster of five need not wait for.
    with cluster_of(5) as client:
        client.register_worker_plugin(Deadly(), name="deadly")
        # How often a task may end its worker before it is given up is said where the scheduler is.
        client.cluster.scheduler.allowed_failures = 0
        found = nuv.dask.solve_batch(client, c, A, b, chunk=2)
    others = np.arange(12) != 5
    assert found.status[5] == 4 and np.isnan(found.x[5]).all() and not found.proved[5]
    for mine, alone in zip(found, expected):
        assert mine[others].tobytes() == alone[:12][others].tobytes()


def test_a_failure_of_the_task_itself_is_raised(client):
    with pytest.raises(ValueError, match="chunk"):
        nuv.dask.solve_batch(client, *problems(), chunk=0)
    with pytest.raises(ValueError, match="retries"):
        nuv.dask.solve_batch(client, *problems(), retries=-1)
    with pytest.raises(ValueError, match="^A_ub"):
        nuv.dask.solve_batch(client, [1, 2], [[1]], [1])
    none = nuv.dask.solve_batch(client, np.ones((0, 2)), [[1, 1]], [1])
    assert none.x.shape == (0, 2)
