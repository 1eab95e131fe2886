"""One solve: its options, the way out by Ctrl-C, and the callbacks for progress and the log."""

from __future__ import annotations

import math
import threading
from typing import Any, Callable, NamedTuple, Optional

import numpy as np

from ._arrays import Doubles, pointer
from ._interface import ffi
from ._library import check, diagnostics, lib, owned
from ._record import STATUSES

NUMBERS = {"written": lib.NUV_NUMBERS_Written, "stored": lib.NUV_NUMBERS_Stored}
_STAGES = ("single precision", "double", "exact")


class Progress(NamedTuple):
    """Where a solve stands.

    >>> import nuv
    >>> stages = []
    >>> model = nuv.Model.from_arrays([1, 2], [[1, 1]], row_lower=3)
    >>> solution = model.solve(progress=lambda told: stages.append(told.stage))
    >>> stages[0]
    'single precision'
    """

    stage: str
    pivots: int
    seconds: float
    #: Of the current basis; the sum of violations while that is not feasible, NaN if not known.
    objective: float
    feasible: bool


class Options(NamedTuple):
    """What a solve may be told."""

    numbers: str = "written"
    seconds: float = math.inf
    pivots: Optional[int] = None
    scale: bool = False
    ranging: bool = False
    conflict_work: Optional[int] = None
    progress: Optional[Callable[[Progress], Optional[bool]]] = None
    log: Optional[Callable[[str], None]] = None
    #: Values to start from, NaN where none is known.
    start: Optional[Doubles] = None
    #: Of columns and rows, to start from.
    basis: Optional[tuple[Any, Any]] = None
    #: Whether it is to be decided if there are other optima.
    uniqueness: bool = False
    #: Whether all exact numbers are to be written down.
    exact: bool = False
    #: Whether the answer is to be proved; if not, the simplex in doubles is believed.
    proved: bool = True


class Interrupted(KeyboardInterrupt):
    """Ctrl-C has ended a solve; ``solution`` is what was known by then.

    >>> import nuv
    >>> issubclass(nuv.Interrupted, KeyboardInterrupt)
    True
    """

    def __init__(self, solution: Any) -> None:
        super().__init__(repr(solution))
        self.solution = solution


def _fail(kind: Any, failure: BaseException, traceback: Any) -> None:
    """Keeps what was raised in a callback: Ctrl-C may come at any of its instructions."""
    user_data = traceback.tb_frame.f_locals.get("user_data") if traceback else None
    if user_data is not None:
        call = ffi.from_handle(user_data)
        call.failure = call.failure or failure


@ffi.callback("int32_t(void*, const NuvProgress*)", error=0, onerror=_fail)  # type: ignore[misc]
def _progress(user_data: Any, told: Any) -> int:
    # Signals are seen between the instructions of this function, if it is on the main thread.
    call = ffi.from_handle(user_data)
    if call.failure is not None:
        return 0
    if call.options.progress is None:
        return 1
    answer = call.options.progress(Progress(_STAGES[told.stage], told.pivots, told.seconds,
                                            told.objective, told.feasible != 0))
    return 0 if answer is False else 1


@ffi.callback("void(void*, const char*)", onerror=_fail)  # type: ignore[misc]
def _log(user_data: Any, line: Any) -> None:
    call = ffi.from_handle(user_data)
    if call.options.log is not None and call.failure is None:
        call.options.log(ffi.string(line).decode("utf-8", "replace"))


class Asked:
    """What the callbacks of a call share: an exception in one ends the call, and is then `failure`."""

    def __init__(self, options: Options) -> None:
        self.options = options
        self.failure: BaseException | None = None
        self._user_data = ffi.new_handle(self)

    def give(self, given: Any) -> None:
        """To a record of options of the library."""
        given.userData = self._user_data
        # Python sees signals on its main thread alone: elsewhere the call would only cost.
        if self.options.progress is not None or threading.current_thread() is threading.main_thread():
            given.progress = _progress


class Call(Asked):
    """The options of one solve as the library takes them."""

    def __init__(self, options: Options) -> None:
        super().__init__(options)
        self.given = given = ffi.new("NuvSolveOptions*")
        check(lib.NuvSolveOptionsInit(given, ffi.sizeof("NuvSolveOptions")))
        given.numbers = one_of(options.numbers)
        given.seconds = seconds_of(options.seconds, "time_limit")
        given.scale, given.sensitivity = bool(options.scale), bool(options.ranging)
        given.uniqueness, given.exact = bool(options.uniqueness), bool(options.exact)
        if not truth(options.proved, "proved"):
            for name in ("ranging", "uniqueness", "exact"):
                if getattr(options, name):
                    raise ValueError(f"{name}: has a meaning with a proof alone")
            given.stages = lib.NUV_STAGES_WithoutProof
        if options.conflict_work is not None:
            given.iisWork = whole(options.conflict_work, "conflict_work")
        if options.pivots is not None:
            given.singlePrecisionPivots = given.doublePivots = given.exactPivots = \
                whole(options.pivots, "pivot_limit")
        self.give(given)
        if options.log is not None:
            given.log = _log
        if options.start is not None:
            given.startValues = pointer(options.start, "double")
            given.numStartValues = options.start.size
        if options.basis is not None:
            columns, rows = options.basis
            given.startColumnBasis, given.numStartColumns = pointer(columns, "uint8_t"), columns.size
            given.startRowBasis, given.numStartRows = pointer(rows, "uint8_t"), rows.size


def solve(model: Any, options: Options,
          session: Any = None) -> tuple[Any, Optional[BaseException]]:
    """Solves without the interpreter's lock, from what the last solve of a session left.

    Returns the solution's handle, and the exception, such as KeyboardInterrupt, that ended it.
    """
    call, made, told = Call(options), ffi.new("NuvSolution**"), diagnostics()
    try:
        if session is None:
            result = lib.NuvModelSolve(model, call.given, made, told)
        else:
            result = lib.NuvSolverSolve(session, model, call.given, made, told)
        check(result, told)
    except KeyboardInterrupt as stop:
        # It came after the last callback: what the solve has made is kept with it.
        if not made[0]:
            raise
        call.failure = stop
    return owned(made[0], lib.NuvSolutionDestruct), call.failure


def verify(model: Any, certificate: Any, numbers: str) -> str:
    """The verdict that a certificate proves of a model."""
    if not isinstance(certificate, (str, bytes)):
        raise TypeError(f"certificate: a text is needed, not a {type(certificate).__name__}")
    data = certificate.encode() if isinstance(certificate, str) else certificate
    found, told = ffi.new("NuvVerification*"), diagnostics()
    found.size = ffi.sizeof("NuvVerification")
    check(lib.NuvModelVerify(model, data, len(data), one_of(numbers), found, told), told)
    return STATUSES[found.status]


def one_of(numbers: Any) -> int:
    """NUV_NUMBERS_... of a word."""
    if not isinstance(numbers, str) or numbers not in NUMBERS:
        raise ValueError(f"numbers: 'written' or 'stored' is needed, not {numbers!r}")
    return int(NUMBERS[numbers])


def real(value: Any, name: str) -> float:
    """A number that only has to be near to what is given."""
    try:
        return float(value)
    except (TypeError, ValueError):
        raise TypeError(f"{name}: a number is needed, not {value!r:.60}") from None
    except OverflowError:
        raise ValueError(f"{name}: is beyond what doubles are near to") from None


def seconds_of(value: Any, name: str) -> float:
    """A limit of time."""
    seconds = real(value, name)
    if not seconds >= 0:
        raise ValueError(f"{name}: must not be negative or NaN")
    return seconds


def truth(value: Any, name: str) -> bool:
    """True or False, and not what only counts as one of them."""
    if not isinstance(value, (bool, np.bool_)):
        raise TypeError(f"{name}: True or False is needed, not a {type(value).__name__}")
    return bool(value)


def whole(value: Any, name: str, least: int = 0, end: int = 2**64) -> int:
    """A whole number from `least` to before `end`."""
    if isinstance(value, bool) or not isinstance(value, (int, np.integer)) or not least <= value < end:
        raise ValueError(f"{name}: a whole number from {least} is needed, not {value!r}")
    return int(value)
