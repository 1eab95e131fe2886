"""Clusters whose workers die, one scenario a process: `python workers.py NAME COUNT`.

The workers are processes that this one begins and replaces itself: no nanny has to bring one back.
"""

import contextlib
import faulthandler
import hashlib
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
import warnings

import dask
import distributed
import numpy as np

import nuv
import nuv.dask


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


def each_once(ranges, count):
    """A range that was lost too often comes back in parts."""
    ranges = sorted(ranges)
    assert [first for first, _ in ranges] == [0] + [last for _, last in ranges[:-1]], ranges
    assert ranges[-1][1] == count, ranges


class Cluster:
    """A scheduler here, and workers of one thread each that nothing replaces."""

    def __init__(self):
        self.local = distributed.LocalCluster(n_workers=0, dashboard_address=":0")
        self.folder = tempfile.mkdtemp(prefix="nuv-workers-")
        self.scheduler = self.local.scheduler
        self.workers = []

    def begin(self, count):
        for _ in range(count):
            self.workers.append(subprocess.Popen(
                [sys.executable, "-m", "distributed.cli.dask_worker", self.scheduler.address, "--no-nanny",
                 "--nthreads", "1", "--no-dashboard", "--local-directory", self.folder],
                stdin=subprocess.DEVNULL))

    def kill(self, at=0):
        self.workers[at].send_signal(signal.SIGKILL)
        self.workers.pop(at).wait()

    def close(self):
        while self.workers:
            self.kill()
        shutil.rmtree(self.folder, ignore_errors=True)
        self.local.close()


@contextlib.contextmanager
def cluster_of(count):
    with contextlib.closing(Cluster()) as cluster, distributed.Client(cluster.local) as client:
        cluster.begin(count)
        if count > 0:
            client.wait_for_workers(count, timeout=60)
        yield cluster, client


def after_each_part(act):
    """The ranges that come back, as they do; `act` is called after each."""
    take, seen = nuv.dask._Job._take, []

    def take_and_act(job, first, last, found):
        take(job, first, last, found)
        seen.append((first, last))
        act(len(seen))

    nuv.dask._Job._take = take_and_act
    return seen


def a_worker_that_is_killed_loses_nothing(count):
    """The last one is replaced, others are not."""
    expected = digest(nuv.solve_batch(*problems()))
    with cluster_of(count) as (cluster, client):
        # The third part that comes back is what ends a worker, in the midst of others.
        def kill_at_third(parts):
            if parts == 3:
                cluster.kill()
                if count == 1:
                    cluster.begin(1)

        seen = after_each_part(kill_at_third)
        found = nuv.dask.solve_batch(client, *problems(), chunk=5)
    assert digest(found) == expected
    each_once(seen, 600)


def every_worker_is_killed_in_turn(count):
    """At each tenth part, so that what the problems share is lost with the last that had it."""
    expected = digest(nuv.solve_batch(*problems()))
    with cluster_of(count) as (cluster, client):
        def kill_at_each_tenth(parts):
            if parts % 10 == 0 and parts < 10 * (count + 2):
                cluster.begin(1)
                cluster.kill()

        seen = after_each_part(kill_at_each_tenth)
        found = nuv.dask.solve_batch(client, *problems(), chunk=5)
    assert digest(found) == expected
    each_once(seen, 600)


class Wrapped(distributed.WorkerPlugin):
    """Workers that do something else before they solve: it is given the costs of the problems."""

    def __init__(self, before):
        self.before = before

    def setup(self, worker):
        import nuv._batch as batch

        before, real = self.before, batch.solve_problems

        def solve_problems(problems, count, workers, settings):
            before(problems.c)
            return real(problems, count, workers, settings)

        batch.solve_problems = solve_problems


def is_slow(costs):
    time.sleep(0.2)


def is_deadly(costs):
    if (costs == 12345).any():
        os._exit(1)


def a_task_that_waits_for_a_worker_is_not_lost(count):
    """A scheduler has tasks that are with no worker yet when all that have the shared data die."""
    expected = digest(nuv.solve_batch(*problems()))
    with cluster_of(count) as (cluster, client):
        client.register_worker_plugin(Wrapped(is_slow))
        take, kills = nuv.dask._Job._take, []

        def take_and_kill(job, *arguments):
            take(job, *arguments)
            if cluster.scheduler.queued and len(kills) < 3:
                kills.append(len(cluster.scheduler.queued))
                for _ in range(count):
                    cluster.kill()
                cluster.begin(count)

        nuv.dask._Job._take = take_and_kill
        found = nuv.dask.solve_batch(client, *problems(), chunk=20)
    assert len(kills) == 3 and digest(found) == expected


def a_problem_that_kills_its_workers_is_reported_as_itself(count):
    expected = nuv.solve_batch(*problems())
    c, A, b = problems()
    c, b = c[:12], b[:12]
    c[5, 5] = 12345
    with cluster_of(count) as (cluster, client):
        client.register_worker_plugin(Wrapped(is_deadly))
        ended = threading.Event()

        def replace():
            while not ended.wait(0.1):
                for worker in [worker for worker in cluster.workers if worker.poll() is not None]:
                    cluster.workers.remove(worker)
                    cluster.begin(1)

        replacing = threading.Thread(target=replace)
        replacing.start()
        try:
            found = nuv.dask.solve_batch(client, c, A, b, chunk=2, retries=1)
        finally:
            ended.set()
            replacing.join()
    others = np.arange(12) != 5
    assert found.status[5] == 4 and np.isnan(found.x[5]).all() and not found.proved[5]
    for mine, alone in zip(found, expected):
        assert mine[others].tobytes() == alone[:12][others].tobytes()


def what_a_worker_was_never_told_is_sent_again(count):
    """The scheduler believes that it has sent the second task, and the twentieth."""
    expected = digest(nuv.solve_batch(*problems()))
    nuv.dask._SILENCE = 0.5
    with cluster_of(count) as (cluster, client):
        send, dropped, sent = cluster.scheduler.stream_comms, [], []

        def without(batched):
            real = batched.send

            def send_some(*messages):
                kept = []
                for message in messages:
                    if message["op"] == "compute-task":
                        sent.append(message["key"])
                        if len(sent) in (2, 20):
                            dropped.append(message["key"])
                            continue
                    kept.append(message)
                real(*kept)

            batched.send = send_some

        for batched in send.values():
            without(batched)
        found = nuv.dask.solve_batch(client, *problems(), chunk=5)
    assert len(dropped) == 2 and digest(found) == expected


def a_worker_that_is_stopped_is_waited_for(count):
    """It gives no answer to what it does, and goes on where it was."""
    expected = digest(nuv.solve_batch(*problems()))
    nuv.dask._SILENCE = 0.5
    with cluster_of(count) as (cluster, client):
        take, answers = nuv.dask._Job._take, []
        look = nuv.dask._Watch.look

        def looked(watch):
            answers.append(look(watch))
            return answers[-1]

        def take_and_stop(job, first, last, found):
            take(job, first, last, found)
            if first == 40:
                for worker in cluster.workers:
                    worker.send_signal(signal.SIGSTOP)
                    threading.Timer(4, worker.send_signal, (signal.SIGCONT,)).start()

        client.register_worker_plugin(Wrapped(is_slow))
        nuv.dask._Watch.look, nuv.dask._Job._take = looked, take_and_stop
        found = nuv.dask.solve_batch(client, *problems(), chunk=20)
    assert None in answers and digest(found) == expected


def what_never_comes_back_ends_the_batch(count):
    nuv.dask._SILENCE = 0.2
    with cluster_of(count) as (cluster, client):
        for batched in cluster.scheduler.stream_comms.values():
            batched.send = lambda *messages: None
        try:
            nuv.dask.solve_batch(client, *problems(), chunk=100)
        except RuntimeError as error:
            assert str(error) == "300 problems do not come back from workers that have nothing to do"
        else:
            raise AssertionError("a batch that nobody solves has come back")


def a_scheduler_that_is_gone_ends_the_batch(count):
    nuv.dask._SILENCE = 0.2
    # How long a client tries to find its scheduler again.
    dask.config.set({"distributed.comm.timeouts.connect": "3s"})
    take = nuv.dask._Job._take
    with cluster_of(count) as (cluster, client):

        def take_and_close(job, first, last, found):
            take(job, first, last, found)
            if first == 50:
                cluster.close()

        nuv.dask._Job._take = take_and_close
        try:
            nuv.dask.solve_batch(client, *problems(), chunk=5)
        except RuntimeError as error:
            assert str(error) == "the client is closed, or its scheduler is gone"
        else:
            raise AssertionError("a batch without a scheduler has come back")


def a_cluster_without_workers_is_waited_for(count):
    expected = digest(nuv.solve_batch(*problems()))
    nuv.dask._SILENCE, nuv.dask._ALONE = 0.2, 1.0
    with cluster_of(0) as (cluster, client), warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always", RuntimeWarning)
        threading.Timer(3, cluster.begin, (count,)).start()
        found = nuv.dask.solve_batch(client, *problems(), chunk=50)
    assert any("the cluster has no worker" in str(warning.message) for warning in caught)
    assert digest(found) == expected


if __name__ == "__main__":
    faulthandler.enable()
    globals()[sys.argv[1]](int(sys.argv[2]))
    # What distributed leaves behind is not what is tested.
    sys.stdout.flush()
    os._exit(0)
