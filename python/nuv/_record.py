"""What a solve found, as arrays and fractions: read out of the library once and then kept."""

from __future__ import annotations

from fractions import Fraction
from typing import Any, Optional

import numpy as np
import numpy.typing as npt

from ._interface import ffi
from ._library import Error, check, lib, take_text

STATUSES = ("optimal", "infeasible", "unbounded", "stopped")
STOP_REASONS = ("", "time limit", "pivot limit", "cancelled")
_UNIQUENESS = (None, True, False)
BASIS_STATUSES = ("basic", "at lower", "at upper", "free")

_INFO = ("proved", "iisMinimal", "objective", "primalViolation", "dualViolation", "seconds",
         "checkSeconds", "singlePrecisionPivots", "doublePivots", "exactPivots", "numColumns",
         "numRows")
_DOUBLES = ("Values", "ReducedCosts", "Activities", "Slacks", "Duals", "Ray", "Farkas",
            "CostRanges", "RowLowerRanges", "RowUpperRanges")
_BYTES = ("ColumnBasis", "RowBasis")
_EXACT = ("Objective", "Values", "Duals", "Ray", "Farkas", "ReducedCosts", "Activities", "Slacks")
_TEXTS = ("Json", "Report", "Certificate")


class Record:
    """A solution's handle, or all that it had to say: a pickled one is that alone."""

    def __init__(self, handle: Any) -> None:
        self._handle = handle
        self._kept: dict[str, Any] = {}
        info = ffi.new("NuvSolutionInfo*")
        info.size = ffi.sizeof("NuvSolutionInfo")
        check(lib.NuvSolutionGetInfo(handle, info))
        self.info: dict[str, Any] = {name: getattr(info, name) for name in _INFO}
        self.status: str = STATUSES[info.status]
        self.stop_reason: str = STOP_REASONS[info.stopReason]
        self.numbers = "stored" if info.numbers == lib.NUV_NUMBERS_Stored else "written"
        self.proved: bool = info.proved != 0
        #: Of the optimal point, and of the optimal duals; None where it was not decided.
        self.unique: Optional[bool] = _UNIQUENESS[lib.NuvSolutionGetPointUniqueness(handle)]
        self.unique_duals: Optional[bool] = _UNIQUENESS[lib.NuvSolutionGetDualUniqueness(handle)]

    @property
    def pivots(self) -> int:
        """Of all stages."""
        return sum(int(self.info[f"{stage}Pivots"]) for stage in
                   ("singlePrecision", "double", "exact"))

    def array(self, name: str) -> Optional[npt.NDArray[Any]]:
        """One of the arrays, which is not to be written to; None where there is none."""
        if name not in self._kept and self._handle is not None:
            count = ffi.new("uint32_t*")
            data = getattr(lib, f"NuvSolutionGet{name}")(self._handle, count)
            kept = None
            if data != ffi.NULL:
                kind = np.uint8 if name in _BYTES else np.float64
                size = count[0] * np.dtype(kind).itemsize
                kept = np.frombuffer(ffi.buffer(data, size)[:], kind)
            elif self._is_empty(name):
                kept = np.zeros(0)
            self._kept[name] = kept
        array: Optional[npt.NDArray[Any]] = self._kept.get(name)
        return array

    def _is_empty(self, name: str) -> bool:
        """Whether there is no element rather than no array: no rows, of a model with an optimum."""
        of_rows = name in ("Activities", "Slacks", "Duals")
        return self.status == "optimal" and self.info["numRows" if of_rows else "numColumns"] == 0

    def exact(self, kind: str) -> Optional[list[Any]]:
        """The exact numbers of a kind; None where nothing is proved, and for one that there is not."""
        key = f"Exact{kind}"
        if key not in self._kept and self._handle is not None:
            self._kept[key] = self._text("Exact", getattr(lib, f"NUV_EXACT_{kind}"))
        text = self._kept.get(key)
        return None if text is None else [Fraction(number) if number else None
                                            for number in text.split("\0")[:-1]]

    def text(self, kind: str) -> Optional[str]:
        """The solution as JSON, as a report or as a certificate; None where it has none."""
        if kind not in self._kept and self._handle is not None:
            self._kept[kind] = self._text(kind)
        text: Optional[str] = self._kept.get(kind)
        return text

    def _text(self, kind: str, *arguments: Any) -> Optional[str]:
        made = ffi.new("NuvText**")
        result = getattr(lib, f"NuvSolutionMake{kind}")(self._handle, *arguments, made)
        if result == lib.NUV_MODELRESULT_NotKnown:
            return None
        check(result)
        return take_text(made).decode("utf-8", "replace")

    def conflict(self) -> list[tuple[int, bool, bool]]:
        """The index, whether it is a row, and whether its upper side is meant, of each member."""
        if "Iis" not in self._kept and self._handle is not None:
            count = ffi.new("uint32_t*")
            members = lib.NuvSolutionGetIis(self._handle, count)
            self._kept["Iis"] = [(members[k].index, members[k].isRow != 0, members[k].isUpper != 0)
                                 for k in range(count[0])]
        found: list[tuple[int, bool, bool]] = self._kept.get("Iis", [])
        return found

    def proof_line(self) -> str:
        """What is proved, in a line."""
        if not self.proved:
            return "not proved" + (f": {self.stop_reason}" if self.stop_reason else "")
        of = "as written" if self.numbers == "written" else "as stored"
        exact = self.exact("Objective") if self.status == "optimal" else None
        if not exact:
            return f"proved {of}"
        text = str(exact[0])
        return f"proved {of}, exactly {text}" if len(text) <= 60 else f"proved {of}, exactly"

    def __getstate__(self) -> dict[str, Any]:
        for name in _DOUBLES + _BYTES:
            self.array(name)
        for name in _EXACT:
            self.exact(name)
        for name in _TEXTS:
            try:
                self.text(name)
            except Error:
                self._kept[name] = None
        self.conflict()
        return dict(self.__dict__, _handle=None)
