"""Many problems on many machines: solve_batch on the workers of a dask cluster.

It asks for the package distributed, and for nuv where the workers are.
"""

from __future__ import annotations

import queue
import threading
import time
import warnings
from typing import Any, Iterator, Optional

import distributed
import numpy as np

from . import _batch
from ._batch import BatchResult, Problems, Settings
from ._solve import Interrupted, whole

#: What a task is to take.
_SECONDS = 0.5
#: How many tasks a thread of a worker has before it, so that it never waits for the next one.
_AHEAD = 3
#: Seconds in which a result has to come that is said to be there.
_PATIENCE = 10.0
#: Seconds without a result after which the workers are asked what they do.
_SILENCE = 5.0
#: How often in a row, without a result between, what is lost is sent again.
_ROUNDS = 6
#: Seconds without a worker after which a warning is due.
_ALONE = 60.0


def solve_batch(client: Any, c: Any, A_ub: Any = None, b_ub: Any = None, A_eq: Any = None,
                b_eq: Any = None, bounds: Any = None, *, proved: bool = True,
                numbers: str = "written", pivot_limit: Optional[int] = None,
                precision: Optional[str] = None,
                chunk: Optional[int] = None, retries: int = 3) -> BatchResult:
    """nuv.solve_batch on the workers of a distributed.Client, with the same result to the bit.

    Each task solves `chunk` problems, by default as many as take about half a second, and is tried
    `retries` times more if it fails. What the problems share goes to a worker once. What a worker
    that dies had before it goes to others; a task that ends its worker time and again, as often as
    ``distributed.scheduler.allowed-failures`` or `retries` says, is cut in two, until the problem that
    does it stands alone: it has status 4. Ctrl-C ends the batch with nuv.Interrupted, whose ``solution`` has
    status 1 for what had not come back.

    A cluster without workers is waited for, with a RuntimeWarning each minute. Workers that say that
    they have nothing to do while results are missing are given them again; a RuntimeError ends a batch
    that gets no further so, and one whose scheduler is gone.

    >>> import nuv.dask
    >>> from distributed import Client
    >>> with Client(n_workers=1, processes=False, dashboard_address=None) as client:
    ...     found = nuv.dask.solve_batch(client, [-1, -2], [[1, 3]], [[3], [6]], chunk=1)
    >>> found.fun.tolist(), found.proved.tolist()
    ([-3.0, -6.0], [True, True])
    """
    settings = _batch.checked_settings(proved, numbers, pivot_limit, precision)
    problems, count = _batch.checked_problems(c, A_ub, b_ub, A_eq, b_eq, bounds, settings)
    retries = whole(retries, "retries")
    chunk = _chunk(problems, count, settings) if chunk is None else whole(chunk, "chunk", 1)
    job = _Job(client, problems, count, settings, retries)
    try:
        job.run(chunk)
    except KeyboardInterrupt as interrupt:
        raise Interrupted(job.result) from interrupt
    finally:
        job.close()
    return job.result


def _chunk(problems: Problems, count: int, settings: Settings) -> int:
    """How many problems take about half a second, by the first few of them."""
    tried, seconds = 0, 0.0
    while tried < count and seconds < _SECONDS / 20:
        last = min(count, 2 * tried + 1)
        begin = time.perf_counter()
        _batch.solve_problems(problems.part(tried, last), last - tried, 1, settings)
        seconds += time.perf_counter() - begin
        tried = last
    return max(1, min(count, int(_SECONDS * tried / max(seconds, 1e-9))))


def _unfinished(dask_worker: Any) -> tuple[bool, list[str]]:
    """What a worker says of itself: whether it takes tasks, and which it has not finished."""
    ended = ("memory", "error", "released", "forgotten")
    tasks = list(dask_worker.state.tasks.items())
    return dask_worker.status.name == "running", [key for key, task in tasks if task.state not in ended]


class _Watch:
    """Asks the workers after a silence whether what is on its way is with them.

    A scheduler can take a task for begun of which its worker knows nothing: nothing ends such a wait.
    """

    def __init__(self, client: Any) -> None:
        self.client = client
        self.answers: queue.SimpleQueue[Optional[dict[str, tuple[bool, list[str]]]]] = queue.SimpleQueue()
        self.is_asked = False
        self.misses = 0
        self.alone_since = time.monotonic()

    def hear(self) -> None:
        """A result has come."""
        self.misses, self.alone_since = 0, time.monotonic()

    def is_lost(self, keys: set[str]) -> bool:
        """Whether twice in a row no worker had any of these, though one had nothing else to do."""
        answer = self.look()
        if answer is not None:
            is_idle = any(takes and not has for takes, has in answer.values())
            is_known = any(keys.intersection(has) for _, has in answer.values())
            self.misses = self.misses + 1 if is_idle and not is_known else 0
        return self.misses >= 2

    def look(self) -> Optional[dict[str, tuple[bool, list[str]]]]:
        """What the workers answer, if they do so in time."""
        if not self.is_asked:
            # A worker that has been stopped gives no answer, and is not waited for.
            self.is_asked = True
            threading.Thread(target=self._ask, daemon=True).start()
        try:
            answer = self.answers.get(timeout=_SILENCE)
        except queue.Empty:
            return None
        self.is_asked = False
        if answer is not None:
            self._warn(len(answer))
        return answer

    def _ask(self) -> None:
        try:
            self.answers.put(self.client.run(_unfinished))
        except Exception:  # A worker died of being asked, or the scheduler is gone.
            self.answers.put(None)

    def _warn(self, workers: int) -> None:
        now = time.monotonic()
        if workers > 0:
            self.alone_since = now
        elif now - self.alone_since >= _ALONE:
            self.alone_since = now
            warnings.warn("the cluster has no worker: the batch waits for one", RuntimeWarning, stacklevel=7)


def _solved(shared: dict[str, Any], own: dict[str, Any], count: int, settings: Settings) -> BatchResult:
    """The task of a worker."""
    return _batch.solve_problems(Problems(**shared, **own), count, 1, settings)


class _Job:
    """Which ranges of a batch are on their way, and what has come back."""

    def __init__(self, client: Any, problems: Problems, count: int, settings: Settings,
                 retries: int) -> None:
        self.client, self.problems, self.settings = client, problems, settings
        self.retries, self.count = retries, count
        self.common = {name: array for name, array in problems._asdict().items() if len(array) != count}
        self.shared: Any = None
        self.watch, self.rounds = _Watch(client), 0
        self.arrived: queue.SimpleQueue[Any] = queue.SimpleQueue()
        self.waiting: dict[distributed.Future, tuple[int, int]] = {}
        self.losses: dict[tuple[int, int], int] = {}
        self.suspects: list[int] = []
        self.is_alone = False
        self.patience = _PATIENCE
        n = problems.c.shape[1]
        kind = np.float32 if settings.is_single else np.float64
        self.result = BatchResult(np.full((count, n), np.nan, kind), np.full(count, np.nan, kind),
                                  np.full(count, 1), np.zeros(count, np.int64),
                                  np.zeros(count, np.bool_))
        self.is_there = np.zeros(count, np.bool_)

    def run(self, chunk: int) -> None:
        """Until all is there."""
        ranges = ((at, min(at + chunk, self.count)) for at in range(0, self.count, chunk))
        threads = sum(self.client.nthreads().values())
        self._drain(ranges, _AHEAD * max(threads, 1))
        # What was on its way to a worker that died may not have been what ended it: alone it is.
        for at in sorted(self.suspects):
            self.is_alone = True
            self._drain(iter([(at, at + 1)]), 1)
        if not self.is_there.all():
            raise RuntimeError("a part of the batch has not come back")

    def _drain(self, ranges: Iterator[tuple[int, int]], ahead: int) -> None:
        """Has these ranges solved, so many at a time, and those that come of them."""
        self._submit(ranges, ahead)
        while self.waiting:
            future = self._next()
            if future is None:
                self._send_again()
                continue
            first, last = self.waiting.pop(future)
            again: Iterator[tuple[int, int]] = iter([])
            try:
                self._take(first, last, future.result(timeout=self.patience))
                self.rounds = 0
            except (distributed.KilledWorker, MemoryError):
                again = self._parts(first, last)
            except distributed.CancelledError:
                # Its worker has died, and with it what the problems share.
                self._ask_for_client()
                self.losses[first, last] = self.losses.get((first, last), 0) + 1
                is_suspect = self.losses[first, last] > self.retries
                again = self._parts(first, last) if is_suspect else iter([(first, last)])
            except distributed.TimeoutError:
                # The worker that had the result has died since.
                self.patience *= 2
                again = iter([(first, last)])
            future.release()
            self._submit(again)
            self._submit(ranges, 1)

    def _next(self) -> Any:
        """A future that is done; None if what is on its way is lost."""
        while True:
            try:
                future = self.arrived.get(timeout=_SILENCE)
            except queue.Empty:
                self._ask_for_client()
                if self.watch.is_lost({future.key for future in self.waiting}):
                    return None
                continue
            if future in self.waiting:
                self.watch.hear()
                return future

    def _send_again(self) -> None:
        """All that is on its way once more."""
        self.rounds += 1
        if self.rounds > _ROUNDS:
            missing = sum(last - first for first, last in self.waiting.values())
            raise RuntimeError(f"{missing} problems do not come back from workers that have nothing to do")
        lost = list(self.waiting.values())
        self._give_up()
        self.watch.hear()
        self._submit(iter(lost))

    def _give_up(self) -> None:
        """All that is on its way: a scheduler forgets what nobody wants."""
        for future in [*self.waiting, self.shared]:
            if future is not None:
                future.release()
        self.waiting, self.shared = {}, None

    def _ask_for_client(self) -> None:
        if self.client.status in ("closing", "closed"):
            raise RuntimeError("the client is closed, or its scheduler is gone")

    def _submit(self, ranges: Iterator[tuple[int, int]], most: Optional[int] = None) -> None:
        for number, (first, last) in enumerate(ranges, 1):
            own = {name: array for name, array in self.problems.part(first, last)._asdict().items()
                   if name not in self.common}
            with warnings.catch_warnings():
                warnings.filterwarnings("ignore", "Large object")
                future = self.client.submit(_solved, self._scattered(), own, last - first,
                                            self.settings, pure=False, retries=self.retries)
            self.waiting[future] = (first, last)
            future.add_done_callback(self.arrived.put)
            if number == most:
                return

    def _scattered(self) -> Any:
        """What the problems share, on a worker from which the others get it.

        It is data and no task: what waits for a task that has to be done again can be lost in
        distributed 2022.12, where Scheduler.transition_memory_released sends dependents back to wait
        that are with a worker, and none that are queued.
        """
        failed = 0
        while self.common and (self.shared is None or self.shared.status in ("error", "cancelled", "lost")):
            try:
                if not self.client.nthreads():
                    self.watch.look()
                    time.sleep(_SILENCE / 10)
                else:
                    self.shared, = self.client.scatter([self.common], hash=False, timeout=_SILENCE)
            except (OSError, KeyError):
                # The worker that was to have it has died.
                self._ask_for_client()
                failed += 1
                if failed > _ROUNDS:
                    raise
        return self.shared if self.common else {}

    def _take(self, first: int, last: int, found: BatchResult) -> None:
        if self.is_there[first:last].any():
            raise RuntimeError("a part of the batch has come back twice")
        for array, part in zip(self.result, found):
            array[first:last] = part
        self.is_there[first:last] = True

    def _parts(self, first: int, last: int) -> Iterator[tuple[int, int]]:
        """The halves of a range whose worker has died; a single problem waits to be alone."""
        if last - first > 1:
            middle = (first + last) // 2
            return iter([(first, middle), (middle, last)])
        if not self.is_alone:
            self.suspects.append(first)
        else:
            self.result.status[first], self.is_there[first] = _batch.INVALID, True
        return iter([])

    def close(self) -> None:
        """Gives up what is still on its way; a scheduler that is gone is not waited for."""
        self._give_up()
