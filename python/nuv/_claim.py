"""Whether what somebody says of a model is so: solutions of files, of other programs, of hand."""

from __future__ import annotations

import math
import os
from fractions import Fraction
from typing import Any, Callable, NamedTuple, Optional

import numpy as np

from ._arrays import Doubles, finite, pointer
from ._interface import ffi
from ._library import check, diagnostics, lib, owned, take_text
from ._record import STATUSES, STOP_REASONS
from ._solve import Asked, Interrupted, Options, Progress, one_of, real, seconds_of

_CLAIMS = ("", "feasible", "optimal", "infeasible", "unbounded")
_VERDICTS = ("confirmed", "refuted", "undecided")
_EVIDENCE = ("", "values", "certificate", "basis", "conflict", "solve")


class Disagreement(NamedTuple):
    """Where a claim is not so.

    >>> import nuv
    >>> model = nuv.Model.from_arrays([1], [[1]], row_lower=2, names=["x"], row_names=["need"])
    >>> model.prove([1.0]).disagreements[0].code
    'claim.row'
    """

    #: For programs, the same in every version: ``"claim.row"``.
    code: str
    #: For people.
    text: str


class Judgement:
    """What has become of a claim about a model; made by ``Model.prove``. True if it is confirmed.

    >>> import nuv
    >>> model = nuv.Model()
    >>> x, y = model.variable("x", upper=4), model.variable("y", upper=4)
    >>> row = model.add(x + y <= 6, "row")
    >>> model.maximize(x + 2 * y)
    >>> model.prove({"x": 2, "y": 4})
    <confirmed: optimal>
    >>> found = model.prove({"x": 4, "y": 2})
    >>> bool(found), found.verdict, found.objective, found.exact_optimum
    (False, 'refuted', 8.0, Fraction(10, 1))
    >>> bool(model.prove({"x": 4, "y": 2}, claim="feasible"))
    True
    """

    def __init__(self, handle: Any) -> None:
        info = ffi.new("NuvClaimInfo*")
        info.size = ffi.sizeof("NuvClaimInfo")
        check(lib.NuvClaimGetInfo(handle, info))
        #: ``"confirmed"``, ``"refuted"``, or ``"undecided"`` where a limit came first.
        self.verdict: str = _VERDICTS[info.judgement]
        #: ``"feasible"``, ``"optimal"``, ``"infeasible"`` or ``"unbounded"``.
        self.claim: str = _CLAIMS[info.claim]
        #: The proved status of the model; ``"stopped"`` where it is not known.
        self.truth: str = STATUSES[info.truth]
        #: What proved it: ``"values"``, ``"certificate"``, ``"basis"``, ``"conflict"`` or ``"solve"``.
        self.evidence: str = _EVIDENCE[info.evidence]
        self.numbers: str = "stored" if info.numbers == lib.NUV_NUMBERS_Stored else "written"
        #: ``"time limit"`` or ``"cancelled"``; empty otherwise.
        self.stop_reason: str = STOP_REASONS[info.stopReason]
        #: How far the values leave a row or bound at most; NaN without values.
        self.violation: float = info.violation
        #: Of the values; NaN without any.
        self.objective: float = info.objective
        #: The true one; NaN where there is none.
        self.optimum: float = info.optimum
        #: The same as a fraction; None where there is none.
        self.exact_optimum: Optional[Fraction] = _exact_optimum(handle)
        #: The first twenty at most.
        self.disagreements: list[Disagreement] = [_disagreement(handle, k)
                                                  for k in range(info.numDisagreements)]
        #: How many there were.
        self.num_disagreements: int = info.disagreementCount
        #: Variables without a value, which count as zero.
        self.num_unnamed: int = info.numUnnamed
        self.pivots: int = info.pivots
        self.seconds: float = info.seconds
        #: As ``nuvlp prove --json`` writes it.
        self.json: str = _text(lib.NuvClaimMakeJson, handle)
        self._report = _text(lib.NuvClaimMakeReport, handle)

    def __bool__(self) -> bool:
        return self.verdict == "confirmed"

    def __repr__(self) -> str:
        told = f"; {self.disagreements[0].text}" if self.disagreements else ""
        return f"<{self.verdict}: {self.claim}{told}>"

    def __str__(self) -> str:
        return self._report


def _disagreement(handle: Any, k: int) -> Disagreement:
    code = ffi.new("const char**")
    text = ffi.string(lib.NuvClaimGetDisagreement(handle, k, code)).decode("utf-8", "replace")
    return Disagreement(ffi.string(code[0]).decode(), text)


def _exact_optimum(handle: Any) -> Optional[Fraction]:
    size = lib.NuvClaimGetExactOptimum(handle, ffi.NULL, 0)
    if size == 0:
        return None
    text = ffi.new("char[]", size)
    lib.NuvClaimGetExactOptimum(handle, text, size)
    return Fraction(ffi.string(text).decode())


def _text(make: Any, handle: Any) -> str:
    made = ffi.new("NuvText**")
    check(make(handle, made))
    return take_text(made).decode("utf-8", "replace")


def prove(model: Any, said: Any, claim: Any, numbers: Any, tolerance: Any, time_limit: Any,
          progress: Optional[Callable[[Progress], Optional[bool]]]) -> Judgement:
    """Of what is said: the bytes of a solution file, its path, or an array of values."""
    options = ffi.new("NuvClaimOptions*")
    check(lib.NuvClaimOptionsInit(options, ffi.sizeof("NuvClaimOptions")))
    if not (claim is None or isinstance(claim, str) and claim in _CLAIMS[1:]):
        raise ValueError(f"claim: one of {', '.join(_CLAIMS[1:])} is needed, not {claim!r}")
    options.claim = _CLAIMS.index(claim or "")
    options.numbers = lib.NUV_NUMBERS_AsStated if numbers is None else one_of(numbers)
    options.tolerance = _tolerance(tolerance)
    options.seconds = seconds_of(time_limit, "time_limit")
    asked = Asked(Options(progress=progress))
    asked.give(options)
    made, told = ffi.new("NuvClaim**"), diagnostics()
    if isinstance(said, np.ndarray):
        values: Doubles = finite(said, "values")
        result = lib.NuvModelCheckValues(model, pointer(values, "double"), values.size, options, made, told)
    elif isinstance(said, bytes):
        result = lib.NuvModelCheckClaimText(model, said, len(said), b"solution", options, made, told)
    else:
        result = lib.NuvModelCheckClaim(model, os.fsencode(said), options, made, told)
    check(result, told)
    found = Judgement(owned(made[0], lib.NuvClaimDestruct))
    if isinstance(asked.failure, KeyboardInterrupt):
        raise Interrupted(found) from asked.failure
    if asked.failure is not None:
        raise asked.failure
    return found


def _tolerance(value: Any) -> float:
    tolerance = real(value, "tolerance")
    if not 0 <= tolerance < math.inf:
        raise ValueError("tolerance: must be zero or above, and finite")
    return tolerance
