"""Many problems of one shape at once, on arrays with a leading axis."""

from __future__ import annotations

import os
import threading
from concurrent.futures import ThreadPoolExecutor
from typing import Any, Callable, NamedTuple, Optional

import numpy as np
import numpy.typing as npt

from ._arrays import Doubles, doubles, finite, matrix, pointer
from ._handle import from_arrays
from ._interface import ffi
from ._library import core
from ._linprog import STATUS
from ._record import Record
from ._solve import NUMBERS, Interrupted, Options, solve

_INFEASIBLE, _STOPPED, _UNBOUNDED = 2, 1, 3
#: scipy's numbers, by NuvLinearProgrammingResultType.
_VERDICTS = np.array([0, 4, _UNBOUNDED, _INFEASIBLE, _STOPPED])
_STOPPED_VERDICT = 4
#: How many elements of matrices a call into the library is about, which Ctrl-C does not end.
_PIECE = 2**20


class BatchResult(NamedTuple):
    """What came of each problem; numbers are NaN where there is no optimum."""

    x: npt.NDArray[Any]
    fun: npt.NDArray[Any]
    #: scipy's: 0 optimal, 1 stopped by a limit, 2 infeasible, 3 unbounded.
    status: npt.NDArray[np.int64]
    #: Pivots.
    nit: npt.NDArray[np.int64]
    proved: npt.NDArray[np.bool_]


def solve_batch(c: Any, A_ub: Any, b_ub: Any, *, proved: bool = True, workers: int = 1,
                numbers: str = "written", pivot_limit: Optional[int] = None) -> BatchResult:
    """Minimise ``c @ x`` subject to ``A_ub @ x <= b_ub`` and ``x >= 0``, for many problems.

    c has the shape (n,) or (count, n), A_ub (m, n) or (count, m, n), b_ub (m,) or (count, m): what
    has no leading axis, or one that broadcasts, is shared and not copied. With ``proved=False`` the
    problems are solved in single precision and without proof: each with the bits that it has when
    it is solved alone, whatever `workers`, the number of threads, is. Ctrl-C ends the batch with
    nuv.Interrupted, whose ``solution`` has status 1 for what had not been solved.

    >>> import nuv
    >>> found = nuv.solve_batch([-30, -70], [[2, 5], [4, 3]], [[300, 240], [600, 240]])
    >>> found.fun.round(3).tolist(), found.status.tolist(), found.proved.tolist()
    ([-4242.857, -5600.0], [0, 0], [True, True])
    """
    if numbers not in NUMBERS:
        raise ValueError(f"numbers: 'written' or 'stored' is needed, not {numbers!r}")
    if not isinstance(workers, (int, np.integer)) or workers < 1:
        raise ValueError("workers: a whole number from 1 is needed")
    if pivot_limit is not None and not (isinstance(pivot_limit, (int, np.integer)) and
                                        0 < pivot_limit < 2**32):
        raise ValueError("pivot_limit: a whole number from 1 is needed")
    costs, rows, sides = (_batched(value, name, dimensions, numbers == "stored", proved)
                          for value, name, dimensions in ((c, "c", 1), (A_ub, "A_ub", 2),
                                                          (b_ub, "b_ub", 1)))
    m, n = rows.shape[1:]
    if costs.shape[1] != n or sides.shape[1] != m:
        raise ValueError(f"A_ub: its last two dimensions are {m} and {n}, b_ub has "
                         f"{sides.shape[1]} and c has {costs.shape[1]} numbers")
    if m == 0 or n == 0:
        raise ValueError("A_ub: at least one row and one column are needed")
    try:
        count, = np.broadcast_shapes(costs.shape[:1], rows.shape[:1], sides.shape[:1])
    except ValueError:
        raise ValueError(f"c, A_ub, b_ub: the leading axes {len(costs)}, {len(rows)} and "
                         f"{len(sides)} do not go together") from None
    work = _proved if proved else _single_precision
    return work(costs, rows, sides, count, int(workers), numbers, pivot_limit)


def _batched(value: Any, name: str, dimensions: int, stored: bool, proved: bool) -> npt.NDArray[Any]:
    """An array with a leading axis, of floats where single precision is asked for."""
    if isinstance(value, np.ndarray) and value.dtype == np.float32 and not proved:
        array: npt.NDArray[Any] = value
    else:
        array = doubles(value, name, stored)
        if not proved:
            with np.errstate(over="ignore"):
                array = array.astype(np.float32)
    if array.ndim not in (dimensions, dimensions + 1):
        raise ValueError(f"{name}: {dimensions} or {dimensions + 1} dimensions are needed, not the "
                         f"shape {array.shape}")
    # Of an axis of stride 0 one element stands for all.
    if array.ndim > dimensions and array.strides[0] == 0 and len(array) > 1:
        array = array[:1]
    array = np.ascontiguousarray(array if array.ndim > dimensions else array[np.newaxis])
    finite(array, name)
    return array


def _in_pieces(count: int, workers: int, piece: int,
               work: Callable[[int, int], None]) -> Optional[KeyboardInterrupt]:
    """Gives each thread a range of the problems, of which it takes a piece at a time.

    Ctrl-C ends it between two pieces, and is then returned.
    """
    workers = min(workers, max(count, 1), 4 * (os.cpu_count() or 1))
    cuts = [count * k // workers for k in range(workers + 1)]
    has_to_end = threading.Event()

    def run(first: int, last: int) -> None:
        for at in range(first, last, piece):
            if has_to_end.is_set():
                return
            work(at, min(at + piece, last))

    try:
        if workers == 1:
            run(0, count)
            return None
        with ThreadPoolExecutor(workers) as pool:
            try:
                for done in [pool.submit(run, *ends) for ends in zip(cuts, cuts[1:])]:
                    done.result()
            finally:
                has_to_end.set()
    except KeyboardInterrupt as interrupt:
        return interrupt
    return None


def _single_precision(costs: npt.NDArray[Any], rows: npt.NDArray[Any], sides: npt.NDArray[Any],
                      count: int, workers: int, numbers: str,
                      pivot_limit: Optional[int]) -> BatchResult:
    m, n = rows.shape[1:]
    # The core maximises.
    gains = -costs
    verdicts, pivots = np.full(count, _STOPPED_VERDICT, np.uint32), np.zeros(count, np.uint32)
    x, fun = np.zeros((count, n), np.float32), np.zeros(count, np.float32)
    batch = ffi.new("NuvLinearProgrammingBatch*")
    batch.numVars, batch.numConstraints, batch.count = n, m, count
    for name, array in (("A", rows), ("b", sides), ("c", gains)):
        setattr(batch, name, pointer(array, "float"))
        setattr(batch, f"stride{name.upper()}", 0 if len(array) == 1 else array.strides[0] // 4)
    batch.pivotLimit = pivot_limit or 0
    batch.verdicts, batch.pivots = pointer(verdicts, "uint32_t"), pointer(pivots, "uint32_t")
    batch.objectives, batch.values = pointer(fun, "float"), pointer(x, "float")
    size = core.NuvLinearProgrammingBatchWorkspaceSize(batch)
    if size == 0:
        raise ValueError("A_ub: has more elements than 32 bits count")

    def work(first: int, last: int) -> None:
        workspace = np.empty(size, np.uint8)
        core.NuvLinearProgrammingBatchSolveRange(batch, first, last, pointer(workspace, "void"))

    # A whole number of lanes, of which there are up to 16.
    interrupt = _in_pieces(count, workers, max(_PIECE // (m * n) // 16, 1) * 16, work)
    status = _VERDICTS[verdicts]
    x[status != 0], fun[status != 0] = np.nan, np.nan
    return _ended(BatchResult(x, -fun, status, pivots.astype(np.int64), np.zeros(count, np.bool_)),
                  interrupt)


def _ended(found: BatchResult, interrupt: Optional[KeyboardInterrupt]) -> BatchResult:
    if interrupt is not None:
        raise Interrupted(found) from interrupt
    return found


def _proved(costs: Doubles, rows: Doubles, sides: Doubles, count: int, workers: int, numbers: str,
            pivot_limit: Optional[int]) -> BatchResult:
    m, n = rows.shape[1:]
    x, fun = np.full((count, n), np.nan), np.full(count, np.nan)
    status, nit = np.full(count, _STOPPED, np.int64), np.zeros(count, np.int64)
    proved = np.zeros(count, np.bool_)
    none, lower, upper = np.full(m, -np.inf), np.zeros(n), np.full(n, np.inf)
    shared = matrix(rows[0], "A_ub", n) if len(rows) == 1 else None
    options = Options(numbers=numbers, pivots=pivot_limit)

    def work(first: int, last: int) -> None:
        for k in range(first, last):
            packed = matrix(rows[k], "A_ub", n) if shared is None else shared
            model = from_arrays(costs[k % len(costs)], packed, none, sides[k % len(sides)], lower,
                                upper)
            handle, failure = solve(model, options)
            if failure is not None:
                raise failure
            found = Record(handle)
            values = found.array("Values") if found.status == "optimal" else None
            if values is not None:
                x[k], fun[k] = values, found.info["objective"]
            nit[k], proved[k], status[k] = found.pivots, found.proved, STATUS[found.status]

    interrupt = _in_pieces(count, workers, 1, work)
    x[status != 0], fun[status != 0] = np.nan, np.nan
    return _ended(BatchResult(x, fun, status, nit, proved), interrupt)
