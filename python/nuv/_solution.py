"""What a solve of a model found, by handles and names."""

from __future__ import annotations

import html
import math
from fractions import Fraction
from typing import Any, NamedTuple, Optional

import numpy as np

from ._arrays import written
from ._expression import Expression, Variable
from ._record import BASIS_STATUSES, Record
from ._rows import Row, RowArray
from ._vectors import LinearArray, VariableArray


class Member(NamedTuple):
    """A side of a row or a bound of a variable, one of those that exclude each other."""

    #: ``"row"`` or ``"variable"``.
    kind: str
    name: str
    #: ``"lower"`` or ``"upper"``.
    side: str


class Range(NamedTuple):
    """Between which numbers a cost or a side may move with the same basis."""

    lower: float
    upper: float


class Solution:
    """The verdict on a model, and the numbers that go with it.

    It stays as it is when the model changes, and asks nothing of it once it has been pickled.
    """

    def __init__(self, record: Record, column_names: tuple[str, ...],
                 row_names: tuple[str, ...]) -> None:
        self._record = record
        self._column_names = column_names
        self._row_names = row_names
        self._columns: Optional[dict[str, int]] = None
        self._rows: Optional[dict[str, int]] = None

    @property
    def status(self) -> str:
        """``"optimal"``, ``"infeasible"``, ``"unbounded"`` or ``"stopped"``."""
        return self._record.status

    @property
    def proved(self) -> bool:
        """Whether the verdict was checked in exact arithmetic."""
        return self._record.proved

    @property
    def proof(self) -> str:
        """What is proved, in a line."""
        return self._record.proof_line()

    @property
    def stop_reason(self) -> str:
        """``"time limit"``, ``"pivot limit"`` or ``"cancelled"``; empty for a verdict."""
        return self._record.stop_reason

    @property
    def objective(self) -> float:
        """NaN where there is none."""
        return float(self._record.info["objective"])

    @property
    def exact_objective(self) -> Optional[Fraction]:
        """None where there is no proved optimum."""
        found = self._record.exact("Objective") if self.status == "optimal" else None
        return found[0] if found else None

    @property
    def seconds(self) -> float:
        return float(self._record.info["seconds"])

    @property
    def pivots(self) -> int:
        return self._record.pivots

    def __getitem__(self, of: Any) -> Any:
        """The value of a variable, an array of variables, an expression, a row, or of a name."""
        if isinstance(of, str) and self._index(of, rows=False) is None:
            return self._of("Activities", of, rows=True)
        if isinstance(of, (Row, RowArray)):
            return self._of("Activities", of)
        return self.value(of)

    def value(self, of: Any) -> Any:
        """The value of a variable or an expression, by handle or name; of arrays, as an array."""
        if isinstance(of, (Expression, LinearArray)):
            return of._evaluated(self._array("Values"))
        return self._of("Values", of)

    def exact(self, of: Any) -> Any:
        """The same as a fraction, or a list of them row after row."""
        numbers = self._fractions("Values")
        if isinstance(of, Expression):
            return sum((written(value) * numbers[index] for index, value in of.terms.items()),
                       written(of.constant))
        at = self._place(of, False)
        return numbers[at] if isinstance(at, int) else [numbers[k] for k in at.reshape(-1).tolist()]

    def exact_dual(self, row: Any) -> Fraction:
        """The dual of a row, by handle or name, as a fraction."""
        found = self._fractions("Duals")
        return found[int(self._place(row, True))]

    def reduced_cost(self, variable: Any) -> Any:
        """What the objective gains per unit by which a variable is moved up."""
        return self._of("ReducedCosts", variable)

    def dual(self, row: Any) -> Any:
        """What the objective gains per unit by which the active side of a row moves up."""
        return self._of("Duals", row, rows=True)

    def slack(self, row: Any) -> Any:
        """How far a row is from its nearer side."""
        return self._of("Slacks", row, rows=True)

    def activity(self, row: Any) -> Any:
        """The value of a row."""
        return self._of("Activities", row, rows=True)

    def is_basic(self, of: Any) -> bool:
        """Whether a variable, or a row, is basic."""
        return self.basis(of) == "basic"

    def basis(self, of: Any) -> str:
        """``"basic"``, ``"at lower"``, ``"at upper"`` or ``"free"``, of a variable or a row."""
        is_row = isinstance(of, Row)
        found = self._array("RowBasis" if is_row else "ColumnBasis")
        return BASIS_STATUSES[found[self._place(of, is_row)]]

    def cost_range(self, variable: Any) -> Range:
        """Between which numbers a cost may move; of a solve with ranging=True."""
        return self._range("CostRanges", self._place(variable, False))

    def side_range(self, row: Any, side: str) -> Range:
        """The same for the "lower" or the "upper" side of a row."""
        if side not in ("lower", "upper"):
            raise ValueError(f"side: 'lower' or 'upper' is needed, not {side!r}")
        return self._range(f"Row{side.title()}Ranges", self._place(row, True))

    @property
    def conflict(self) -> list[Member]:
        """Sides and bounds that exclude each other, where the model is infeasible.

        Lower bounds of zero stay in force without being members.
        """
        return [Member("row" if is_row else "variable",
                       (self._row_names if is_row else self._column_names)[index],
                       "upper" if is_upper else "lower")
                for index, is_row, is_upper in self._record.conflict()]

    @property
    def values(self) -> dict[str, float]:
        """The value of every variable by its name; empty without a point."""
        found = self._record.array("Values")
        return {} if found is None else dict(zip(self._column_names, found.tolist()))

    @property
    def json(self) -> str:
        """All of it as ``nuvlp solve --json`` writes it."""
        return self._record.text("Json") or ""

    @property
    def certificate(self) -> Optional[str]:
        """The proof in VIPR format; None where nothing is proved."""
        return self._record.text("Certificate")

    def __repr__(self) -> str:
        number = "" if math.isnan(self.objective) else f" {self.objective!r}"
        return f"<{self.status}{number}, {self.proof}>"

    def __str__(self) -> str:
        return self._record.text("Report") or repr(self)

    def _repr_html_(self) -> str:
        colour = {"optimal": "#1a7f37", "stopped": "#9a6700"}.get(self.status, "#cf222e")
        head = (f'<b style="color:{colour}">{self.status}</b> '
                + ("" if math.isnan(self.objective) else html.escape(repr(self.objective)))
                + f"<br><small>{html.escape(self.proof)}</small>")
        cells = "".join(f"<tr><td>{html.escape(name)}</td><td>{value!r}</td></tr>"
                        for name, value in list(self.values.items())[:50])
        members = "".join(f"<li>{html.escape(f'{m.kind} {m.name}, {m.side}')}</li>"
                          for m in self.conflict)
        return head + (f"<table>{cells}</table>" if cells else "") + \
            (f"<ul>{members}</ul>" if members else "")

    def _array(self, name: str) -> Any:
        found = self._record.array(name)
        if found is None:
            raise LookupError(f"a model that is {self.status} has no {name}")
        return found

    def _fractions(self, kind: str) -> list[Fraction]:
        found = self._record.exact(kind)
        if found is None:
            raise LookupError("exact numbers are those of a proved optimum")
        return found

    def _range(self, name: str, at: int) -> Range:
        found = self._record.array(name)
        if found is None or found.size == 0:
            raise LookupError("ranges are found by solve(ranging=True) at an optimum")
        return Range(float(found[2 * at]), float(found[2 * at + 1]))

    def _index(self, name: str, rows: bool) -> Optional[int]:
        if rows:
            if self._rows is None:
                self._rows = {name: k for k, name in enumerate(self._row_names)}
            return self._rows.get(name)
        if self._columns is None:
            self._columns = {name: k for k, name in enumerate(self._column_names)}
        return self._columns.get(name)

    def _place(self, of: Any, rows: bool) -> Any:
        if isinstance(of, str):
            at = self._index(of, rows)
            if at is None:
                raise KeyError(f"there is no {'row' if rows else 'variable'} {of!r}")
            return at
        if rows and isinstance(of, (Row, RowArray)) or \
                not rows and isinstance(of, (Variable, VariableArray)):
            return of.index
        raise TypeError(f"a {'row' if rows else 'variable'} is needed, not a {type(of).__name__}")

    def _of(self, name: str, of: Any, rows: bool = False) -> Any:
        at = self._place(of, rows or isinstance(of, (Row, RowArray)))
        found = self._array(name)[at]
        return float(found) if isinstance(at, int) else np.array(found)
