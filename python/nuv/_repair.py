"""The least change that makes an infeasible model feasible."""

from __future__ import annotations

import math
from fractions import Fraction
from typing import TYPE_CHECKING, Any, Callable, NamedTuple, Optional

from ._arrays import Doubles, counted, pointer
from ._interface import ffi
from ._library import check, diagnostics, lib, owned
from ._record import STATUSES, STOP_REASONS
from ._solve import Call, Interrupted, Options

if TYPE_CHECKING:
    from ._model import Model


class Change(NamedTuple):
    """A side of a row or a bound of a variable, and where it has to go.

    >>> import nuv
    >>> model = nuv.Model.from_arrays([1], [[1]], row_lower=4, upper=3, names=["x"])
    >>> model.repair(row_weights=float("inf")).changes
    [Change(kind='variable', name='x', side='upper', before=3.0, after=4.0, exact_after=Fraction(4, 1))]
    """

    #: ``"row"`` or ``"variable"``.
    kind: str
    name: str
    #: ``"lower"`` or ``"upper"``.
    side: str
    before: float
    after: float
    #: None where nothing is proved.
    exact_after: Optional[Fraction]

    def __str__(self) -> str:
        return f"{self.kind} {self.name}, {self.side}: {self.before!r} -> {self.after!r}"


class Repair:
    """What would make an infeasible model feasible; made by ``Model.repair``.

    >>> import nuv
    >>> model = nuv.Model()
    >>> row = model.add(3 * model.variable("x", upper=2) >= 7, "row")
    >>> found = model.repair()
    >>> found.status, found.proved, found.exact_total, found.changes[0].name
    ('optimal', True, Fraction(1, 3), 'x')
    >>> found.model().solve().status
    'optimal'
    """

    def __init__(self, handle: Any, names: tuple[tuple[str, ...], tuple[str, ...]],
                 adopt: Callable[[Any], Model]) -> None:
        self._handle = handle
        self._adopt = adopt
        info = ffi.new("NuvRepairInfo*")
        info.size = ffi.sizeof("NuvRepairInfo")
        check(lib.NuvRepairGetInfo(handle, info))
        #: ``"optimal"``; ``"infeasible"`` if what has to stay excludes itself; ``"stopped"``.
        self.status: str = STATUSES[info.status]
        #: Whether it was checked in exact arithmetic that no smaller change does, or none at all.
        self.proved: bool = info.proved != 0
        #: ``"time limit"``, ``"pivot limit"`` or ``"cancelled"``; empty for a verdict.
        self.stop_reason: str = STOP_REASONS[info.stopReason]
        #: The sum of weights times amounts; NaN where it is not known.
        self.total: float = info.total
        #: The same as a fraction.
        self.exact_total: Optional[Fraction] = _exact(handle, lib.NUV_MODEL_NO_INDEX)
        count = ffi.new("uint32_t*")
        found = lib.NuvRepairGetChanges(handle, count)
        #: What moves, and where to.
        self.changes: list[Change] = [
            Change("row" if change.isRow else "variable", names[change.isRow != 0][change.index],
                   "upper" if change.isUpper else "lower", getattr(change, "from"), change.to,
                   _exact(handle, k))
            for k, change in enumerate(found[k] for k in range(count[0]))]

    def model(self) -> Model:
        """A model of its own with these changes, to which the handles of the first one fit."""
        made = ffi.new("NuvModel**")
        result = lib.NuvRepairMakeModel(self._handle, made)
        if result == lib.NUV_MODELRESULT_NotKnown:
            raise LookupError(f"a repair that is {self.status} has no model")
        check(result)
        return self._adopt(owned(made[0], lib.NuvModelDestruct))

    def __repr__(self) -> str:
        total = "" if math.isnan(self.total) else f", {self.total!r} in all"
        return f"<repair {self.status}, {counted(len(self.changes), 'change')}{total}>"


def _exact(handle: Any, change: int) -> Optional[Fraction]:
    size = lib.NuvRepairGetExact(handle, change, ffi.NULL, 0)
    if size == 0:
        return None
    text = ffi.new("char[]", size)
    lib.NuvRepairGetExact(handle, change, text, size)
    return Fraction(ffi.string(text).decode())


def repair(model: Any, column_weights: Optional[Doubles], row_weights: Optional[Doubles],
           options: Options, names: tuple[tuple[str, ...], tuple[str, ...]],
           adopt: Callable[[Any], Model]) -> Repair:
    """Finds it for a model's handle; Ctrl-C ends it as it ends a solve."""
    call, made, told = Call(options), ffi.new("NuvRepair**"), diagnostics()
    check(lib.NuvModelRepair(model, pointer(column_weights, "double"),
                             pointer(row_weights, "double"), call.given, made, told), told)
    found = Repair(owned(made[0], lib.NuvRepairDestruct), names, adopt)
    if isinstance(call.failure, KeyboardInterrupt):
        raise Interrupted(found) from call.failure
    if call.failure is not None:
        raise call.failure
    return found
