"""Many problems on many machines: solve_batch on the workers of a dask cluster.

It asks for the package distributed, and for nuv where the workers are.
"""

from __future__ import annotations

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


def solve_batch(client: Any, c: Any, A_ub: Any = None, b_ub: Any = None, A_eq: Any = None,
                b_eq: Any = None, bounds: Any = None, *, proved: bool = True,
                numbers: str = "written", pivot_limit: Optional[int] = None,
                chunk: Optional[int] = None, retries: int = 3) -> BatchResult:
    """nuv.solve_batch on the workers of a distributed.Client, with the same result to the bit.

    Each task solves `chunk` problems, by default as many as take about half a second, and is tried
    `retries` times more if it fails. What the problems share goes to a worker once. What a worker
    that dies had before it goes to others; a task that ends its worker time and again, as often as
    ``distributed.scheduler.allowed-failures`` says, is cut in two, until the problem that does it
    stands alone: it has status 4. Ctrl-C ends the batch with nuv.Interrupted, whose ``solution`` has status 1 for what had not
    come back.

    >>> import nuv.dask
    >>> from distributed import Client
    >>> with Client(n_workers=1, processes=False, dashboard_address=None) as client:
    ...     found = nuv.dask.solve_batch(client, [-1, -2], [[1, 3]], [[3], [6]], chunk=1)
    >>> found.fun.tolist(), found.proved.tolist()
    ([-3.0, -6.0], [True, True])
    """
    settings = _batch.checked_settings(proved, numbers, pivot_limit)
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


class _Shared:
    """What all problems have in common: a task of its own, which a worker that lost it redoes."""

    def __init__(self, client: Any, problems: Problems, count: int) -> None:
        arrays = {name: array for name, array in problems._asdict().items() if len(array) != count}
        with warnings.catch_warnings():
            warnings.filterwarnings("ignore", "Large object")
            self.future = client.submit(_kept, arrays, pure=False)
        self.names = frozenset(arrays)


def _kept(arrays: dict[str, Any]) -> dict[str, Any]:
    return arrays


def _solved(shared: dict[str, Any], own: dict[str, Any], count: int, settings: Settings) -> BatchResult:
    """The task of a worker."""
    return _batch.solve_problems(Problems(**shared, **own), count, 1, settings)


class _Job:
    """Which ranges of a batch are on their way, and what has come back."""

    def __init__(self, client: Any, problems: Problems, count: int, settings: Settings,
                 retries: int) -> None:
        self.client, self.problems, self.settings = client, problems, settings
        self.retries, self.count = retries, count
        self.shared = _Shared(client, problems, count)
        self.waiting: dict[Any, tuple[int, int]] = {}
        self.suspects: list[int] = []
        self.is_alone = False
        self.patience = _PATIENCE
        n = problems.c.shape[1]
        kind = np.float64 if settings.proved else np.float32
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
        coming: Any = distributed.as_completed()
        self._submit(coming, ranges, ahead)
        for future in coming:
            first, last = self.waiting.pop(future)
            again: Iterator[tuple[int, int]] = iter([])
            try:
                self._take(first, last, future.result(timeout=self.patience))
            except (distributed.KilledWorker, MemoryError):
                again = self._parts(first, last)
            except (distributed.TimeoutError, distributed.CancelledError):
                # The worker that had the result has died since.
                self.patience *= 2
                again = iter([(first, last)])
                self.client.cancel([future])
            future.release()
            self._submit(coming, again)
            self._submit(coming, ranges, 1)

    def _submit(self, coming: Any, ranges: Iterator[tuple[int, int]],
                most: Optional[int] = None) -> None:
        for number, (first, last) in enumerate(ranges, 1):
            if self.shared.future.status in ("error", "cancelled"):
                # It stood on a worker that a problem has ended, and was blamed for it.
                self.shared = _Shared(self.client, self.problems, self.count)
            part = self.problems.part(first, last)._asdict()
            own = {name: array for name, array in part.items() if name not in self.shared.names}
            with warnings.catch_warnings():
                warnings.filterwarnings("ignore", "Large object")
                future = self.client.submit(_solved, self.shared.future, own, last - first,
                                            self.settings, pure=False, retries=self.retries)
            self.waiting[future] = (first, last)
            coming.add(future)
            if number == most:
                return

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
        """Ends what is still on its way."""
        self.client.cancel([*self.waiting, self.shared.future])
