"""Many problems of one shape at once, on arrays with a leading axis."""

from __future__ import annotations

import os
import threading
from typing import Any, Callable, NamedTuple, Optional

import numpy as np
import numpy.typing as npt

from ._arrays import doubles, matrix, pointer, stacked
from ._handle import from_arrays
from ._interface import ffi
from ._library import check, core, diagnostics, lib
from ._linprog import STATUS
from ._record import Record
from ._solve import NUMBERS, Interrupted, Options, one_of, solve, truth, whole

Array = npt.NDArray[Any]

#: scipy's numbers: what is none of a problem counts among the numerical difficulties.
_STOPPED, INVALID = 1, 4
#: By NuvLinearProgrammingResultType, and by NUV_STATUS_...
_VERDICTS, _STOPPED_VERDICT = np.array([0, 4, 3, 2, 1]), 4
_STATUSES = np.array([0, 2, 3, 1, 4])
#: How many elements of matrices a call into the library is about, which Ctrl-C does not end.
_PIECE, _PROVED_PIECE = 2**20, 2**18
#: Problems with more elements are solved one by one, as Ctrl-C ends each of those.
_LARGE = 2**14


class BatchResult(NamedTuple):
    """What came of each problem; numbers are NaN where there is no optimum.

    >>> import nuv
    >>> found = nuv.solve_batch([-1], [[2]], [[4], [-4]])
    >>> found.fun.tolist(), found.status.tolist(), found.x.shape
    ([-2.0, nan], [0, 2], (2, 1))
    """

    x: Array
    fun: Array
    #: scipy's: 0 optimal, 1 stopped by a limit, 2 infeasible, 3 unbounded; 4 for a problem that has
    #: NaN or infinity among its numbers.
    status: npt.NDArray[np.int64]
    #: Pivots.
    nit: npt.NDArray[np.int64]
    proved: npt.NDArray[np.bool_]


class Problems(NamedTuple):
    """The arrays, each with a leading axis, of length 1 where all problems share it."""

    c: Array
    A_ub: Array
    b_ub: Array
    A_eq: Array
    b_eq: Array
    lower: Array
    upper: Array

    def part(self, first: int, last: int) -> Problems:
        """The problems from `first` to before `last`."""
        return Problems._make(array if len(array) == 1 else array[first:last] for array in self)

    @property
    def elements(self) -> int:
        """Of the matrices of a problem."""
        return int((self.A_ub.shape[1] + self.A_eq.shape[1]) * self.c.shape[1])


class Settings(NamedTuple):
    """How they are solved."""

    proved: bool = True
    numbers: str = "written"
    pivot_limit: Optional[int] = None
    #: What is believed without a proof: ``"single"`` or ``"double"``.
    precision: str = "single"

    @property
    def is_single(self) -> bool:
        """Whether the core solves them, which has neither equations nor bounds."""
        return not self.proved and self.precision == "single"


def solve_batch(c: Any, A_ub: Any = None, b_ub: Any = None, A_eq: Any = None, b_eq: Any = None,
                bounds: Any = None, *, proved: bool = True, workers: int = 1,
                numbers: str = "written", pivot_limit: Optional[int] = None,
                precision: Optional[str] = None) -> BatchResult:
    """Minimise ``c @ x`` as linprog does, for many problems of one shape.

    c has the shape (n,) or (count, n), A_ub (m, n) or (count, m, n), b_ub (m,) or (count, m), and so
    have A_eq and b_eq; bounds are (2,), (n, 2) or (count, n, 2), from 0 to infinity where there are
    none. What has no leading axis, or one that broadcasts, is shared and not copied. With
    ``proved=False`` the problems are solved in single precision and without proof; they have no
    equations and no other bounds then. With ``precision="double"`` besides, the simplex in doubles is
    believed where a proof would take longer than a few words of arithmetic. `workers` is the number of threads. Each problem has the
    result, to the bit, that it has alone, whatever stands beside it. Ctrl-C ends the batch with
    nuv.Interrupted, whose ``solution`` has status 1 for what had not been solved.

    >>> import nuv
    >>> found = nuv.solve_batch([-30, -70], [[2, 5], [4, 3]], [[300, 240], [600, 240]])
    >>> found.fun.round(3).tolist(), found.status.tolist(), found.proved.tolist()
    ([-4242.857, -5600.0], [0, 0], [True, True])
    """
    workers = whole(workers, "workers", 1)
    settings = checked_settings(proved, numbers, pivot_limit, precision)
    problems, count = checked_problems(c, A_ub, b_ub, A_eq, b_eq, bounds, settings)
    return solve_problems(problems, count, workers, settings)


def checked_settings(proved: Any, numbers: Any, pivot_limit: Any, precision: Any = None) -> Settings:
    """What they are if they are right."""
    one_of(numbers)
    proved = truth(proved, "proved")
    if precision is not None and (not isinstance(precision, str) or precision not in ("single", "double")):
        raise ValueError(f"precision: 'single' or 'double' is needed, not {precision!r}")
    if precision is not None and proved:
        raise ValueError("precision: has a meaning without a proof alone")
    if pivot_limit is not None:
        pivot_limit = whole(pivot_limit, "pivot_limit", 1, 2**32)
    return Settings(proved, numbers, pivot_limit, precision or "single")


def checked_problems(c: Any, A_ub: Any, b_ub: Any, A_eq: Any, b_eq: Any, bounds: Any,
                     settings: Settings) -> tuple[Problems, int]:
    """The arrays of the arguments, and how many problems there are."""
    costs = _batched(c, "c", 1, settings)
    n = costs.shape[1]
    if n == 0:
        raise ValueError("c: at least one number is needed")
    arrays = [costs]
    for A, b, which in ((A_ub, b_ub, "ub"), (A_eq, b_eq, "eq")):
        if (A is None) != (b is None):
            raise ValueError(f"A_{which}: is given without b_{which}, or the other way round")
        rows = _batched(np.zeros((0, n)) if A is None else A, f"A_{which}", 2, settings)
        sides = _batched(np.zeros(0) if b is None else b, f"b_{which}", 1, settings)
        if rows.shape[2] != n or sides.shape[1] != rows.shape[1]:
            raise ValueError(f"A_{which}: its last two dimensions are {rows.shape[1]} and "
                             f"{rows.shape[2]}, b_{which} has {sides.shape[1]} and c has {n} numbers")
        arrays += [rows, sides]
    if settings.is_single:
        if A_eq is not None or bounds is not None:
            raise ValueError(f"{'bounds' if A_eq is None else 'A_eq'}: has to stay away in single precision")
        if A_ub is None or arrays[1].shape[1] == 0:
            raise ValueError("A_ub: at least one row is needed in single precision")
    problems = Problems._make([*arrays, *_batched_bounds(bounds, n, settings)])
    lengths = [len(array) for array in problems]
    count = max(lengths) if 0 not in lengths else 0
    for name, length in zip(("c", "A_ub", "b_ub", "A_eq", "b_eq", "bounds", "bounds"), lengths):
        if length not in (1, count):
            raise ValueError(f"{name}: has a leading axis of {length}, where others have {count}")
    return problems, count


def _batched(value: Any, name: str, dimensions: int, settings: Settings) -> Array:
    """An array with a leading axis, of floats where single precision is asked for."""
    if isinstance(value, np.ndarray) and value.dtype == np.float32 and settings.is_single:
        array: Array = value
    else:
        array = doubles(value, name, settings.numbers == "stored")
        if settings.is_single:
            with np.errstate(over="ignore"):
                array = array.astype(np.float32)
    if array.ndim not in (dimensions, dimensions + 1):
        raise ValueError(f"{name}: {dimensions} or {dimensions + 1} dimensions are needed, not the "
                         f"shape {array.shape}")
    # Of an axis of stride 0 one element stands for all.
    if array.ndim > dimensions and array.strides[0] == 0 and len(array) > 1:
        array = array[:1]
    array = np.ascontiguousarray(array if array.ndim > dimensions else array[np.newaxis])
    if len(array) == 1 and not np.isfinite(array).all():
        raise ValueError(f"{name}: must not contain inf, nan, or None")
    return array


def _batched_bounds(bounds: Any, n: int, settings: Settings) -> tuple[Array, Array]:
    """Lower and upper ones; None is no bound."""
    if bounds is None:
        return np.zeros((1, n)), np.full((1, n), np.inf)
    pairs = np.asarray(bounds)
    if pairs.dtype == object and pairs.shape[-1:] == (2,):
        is_none = np.array([item is None for item in pairs.flat]).reshape(pairs.shape)
        pairs = np.where(is_none, [-np.inf, np.inf], pairs)
    pairs = doubles(pairs, "bounds", settings.numbers == "stored")
    if pairs.shape[-1:] != (2,) or pairs.ndim > 3 or pairs.ndim > 1 and pairs.shape[-2] != n:
        raise ValueError(f"bounds: pairs for {n} variables are needed, not the shape {pairs.shape}")
    pairs = np.broadcast_to(pairs, (1, n, 2)) if pairs.ndim < 3 else pairs
    lower, upper = np.ascontiguousarray(pairs[..., 0]), np.ascontiguousarray(pairs[..., 1])
    if len(pairs) == 1 and not ((lower < np.inf) & (upper > -np.inf)).all():
        raise ValueError("bounds: a lower one is below infinity, an upper one above minus infinity")
    return lower, upper


def solve_problems(problems: Problems, count: int, workers: int, settings: Settings) -> BatchResult:
    """Solves what the arguments have become; those with numbers that are none are left out."""
    invalid = np.zeros(count, np.bool_)
    for array in problems[:5]:
        if len(array) == count:
            invalid |= ~np.isfinite(array).all(axis=tuple(range(1, array.ndim)))
    for array, never in zip(problems[5:], (np.inf, -np.inf)):
        if len(array) == count:
            invalid |= (np.isnan(array) | (array == never)).any(axis=1)
    if invalid.any():
        problems = Problems._make(array if len(array) != count else np.where(
            invalid.reshape(-1, *[1] * (array.ndim - 1)), array.dtype.type(0), array)
            for array in problems)
    work = _single_precision if settings.is_single else \
        _one_by_one if problems.elements > _LARGE else _in_doubles
    found, interrupt = work(problems, count, workers, settings)
    found.status[invalid], found.proved[invalid], found.nit[invalid] = INVALID, False, 0
    found.x[found.status != 0], found.fun[found.status != 0] = np.nan, np.nan
    if interrupt is not None:
        raise Interrupted(found) from interrupt
    return found


def _in_pieces(count: int, workers: int, piece: int,
               work: Callable[[int, int], None],
               has_to_end: Optional[threading.Event] = None) -> Optional[KeyboardInterrupt]:
    """Gives each thread a range of the problems, of which it takes a piece at a time.

    Ctrl-C ends it between two pieces, and is then returned; `has_to_end` is set for the threads.
    """
    workers = min(workers, max(count, 1), 4 * (os.cpu_count() or 1))
    cuts = [count * k // workers for k in range(workers + 1)]
    ended = has_to_end or threading.Event()

    def run(first: int, last: int) -> None:
        for at in range(first, last, piece):
            if ended.is_set():
                return
            work(at, min(at + piece, last))

    try:
        if workers == 1:
            run(0, count)
            return None
        from concurrent.futures import ThreadPoolExecutor  # Takes milliseconds to import.

        with ThreadPoolExecutor(workers) as pool:
            try:
                for done in [pool.submit(run, *ends) for ends in zip(cuts, cuts[1:])]:
                    done.result()
            finally:
                ended.set()
    except KeyboardInterrupt as interrupt:
        return interrupt
    return None


Found = tuple[BatchResult, Optional[KeyboardInterrupt]]


def _single_precision(problems: Problems, count: int, workers: int, settings: Settings) -> Found:
    rows, sides, gains = problems.A_ub, problems.b_ub, -problems.c  # The core maximises.
    m, n = rows.shape[1:]
    verdicts, pivots = np.full(count, _STOPPED_VERDICT, np.uint32), np.zeros(count, np.uint32)
    x, fun = np.zeros((count, n), np.float32), np.zeros(count, np.float32)
    batch = ffi.new("NuvLinearProgrammingBatch*")
    batch.numVars, batch.numConstraints, batch.count = n, m, count
    for name, array in (("A", rows), ("b", sides), ("c", gains)):
        setattr(batch, name, pointer(array, "float"))
        setattr(batch, f"stride{name.upper()}", _stride(array))
    batch.pivotLimit = settings.pivot_limit or 0
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
    return BatchResult(x, -fun, _VERDICTS[verdicts], pivots.astype(np.int64),
                       np.zeros(count, np.bool_)), interrupt


def _stride(array: Array) -> int:
    """How many numbers lie between two problems; 0 where they share one."""
    return 0 if len(array) == 1 else int(np.prod(array.shape[1:]))


def _in_doubles(problems: Problems, count: int, workers: int, settings: Settings) -> Found:
    n = problems.c.shape[1]
    status = np.full(count, lib.NUV_STATUS_Stopped, np.uint32)
    proved, pivots = np.zeros(count, np.uint8), np.zeros(count, np.uint64)
    x, fun = np.zeros((count, n)), np.zeros(count)
    batch = ffi.new("NuvBatch*")
    check(lib.NuvBatchInit(batch, ffi.sizeof("NuvBatch")))
    batch.numbers, batch.numColumns, batch.count = NUMBERS[settings.numbers], n, count
    batch.numUpperRows, batch.numEqualRows = problems.A_ub.shape[1], problems.A_eq.shape[1]
    if not settings.proved:
        batch.stages = lib.NUV_STAGES_WithoutProof
    if settings.pivot_limit is not None:
        batch.pivotLimit = settings.pivot_limit
    for data, stride, array in zip(
            ("costs", "upperMatrix", "upperSides", "equalMatrix", "equalSides", "columnLower",
             "columnUpper"),
            ("costsStride", "upperStride", "upperSidesStride", "equalStride", "equalSidesStride",
             "columnLowerStride", "columnUpperStride"), problems):
        setattr(batch, data, pointer(array, "double"))
        setattr(batch, stride, _stride(array))
    batch.status, batch.proved = pointer(status, "uint32_t"), pointer(proved, "uint8_t")
    batch.pivots = pointer(pivots, "uint64_t")
    batch.objectives, batch.values = pointer(fun, "double"), pointer(x, "double")

    def work(first: int, last: int) -> None:
        told = diagnostics()
        check(lib.NuvModelSolveBatch(batch, first, last, told), told)

    interrupt = _in_pieces(count, workers, max(_PROVED_PIECE // (problems.elements + n), 1), work)
    return BatchResult(x, fun, _STATUSES[status], pivots.astype(np.int64), proved != 0), interrupt


def _one_by_one(problems: Problems, count: int, workers: int, settings: Settings) -> Found:
    n = problems.c.shape[1]
    found = BatchResult(np.zeros((count, n)), np.zeros(count), np.full(count, _STOPPED),
                        np.zeros(count, np.int64), np.zeros(count, np.bool_))
    has_to_end = threading.Event()
    # One of these takes long, and Python's signals come to the main thread alone.
    options = Options(numbers=settings.numbers, pivots=settings.pivot_limit, proved=settings.proved,
                      progress=lambda told: not has_to_end.is_set())
    shared = [matrix(rows[0], "A", n) if len(rows) == 1 else None
              for rows in (problems.A_ub, problems.A_eq)]

    def work(k: int, _: int) -> None:
        one = Problems._make(array[0 if len(array) == 1 else k] for array in problems)
        upper, equal = (matrix(rows, "A", n) if ready is None else ready
                        for rows, ready in zip((one.A_ub, one.A_eq), shared))
        sides = np.concatenate((one.b_ub, one.b_eq))
        lower = np.concatenate((np.full(one.b_ub.size, -np.inf), one.b_eq))
        handle, failure = solve(from_arrays(one.c, stacked(upper, equal), lower, sides, one.lower,
                                            one.upper), options)
        if failure is not None:
            raise failure
        record = Record(handle)
        values = record.array("Values") if record.status == "optimal" else None
        if values is not None:
            found.x[k], found.fun[k] = values, record.info["objective"]
        found.nit[k], found.proved[k] = record.pivots, record.proved
        found.status[k] = STATUS[record.status]

    return found, _in_pieces(count, workers, 1, work, has_to_end)
