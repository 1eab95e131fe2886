"""What a solve of a model found, by handles and names."""

from __future__ import annotations

import math
from contextlib import contextmanager
from fractions import Fraction
from typing import Any, Iterator, NamedTuple, Optional, Union, overload

import numpy as np

from ._arrays import Doubles, escaped, meant
from ._basis import Basis
from ._expression import Expression, Variable
from ._places import Places
from ._record import BASIS_STATUSES, Record
from ._rows import Row, RowArray
from ._vectors import LinearArray, VariableArray


class Member(NamedTuple):
    """A side of a row or a bound of a variable, one of those that exclude each other.

    >>> import nuv
    >>> model = nuv.Model.from_arrays([1], [[1]], row_upper=-4, row_names=["debt"])
    >>> model.solve().conflict
    [Member(kind='row', name='debt', side='upper')]
    """

    #: ``"row"`` or ``"variable"``.
    kind: str
    name: str
    #: ``"lower"`` or ``"upper"``.
    side: str


class Range(NamedTuple):
    """Between which numbers a cost or a side may move with the same basis.

    >>> import nuv
    >>> model = nuv.Model.from_arrays([1, 2], [[1, 1]], row_lower=3, row_names=["need"])
    >>> model.solve(ranging=True).side_range("need", "lower")
    Range(lower=0.0, upper=inf)
    """

    lower: float
    upper: float


class Ranged(NamedTuple):
    """The costs of variables and the sides of rows that a solve with ranges was about."""

    costs: Doubles
    row_lower: Doubles
    row_upper: Doubles


class Ranging(NamedTuple):
    """How far costs and sides may move with the same basis: a table each.

    The tables are of pandas where that is installed, else lists of dictionaries.

    >>> import nuv
    >>> model = nuv.Model.from_arrays([1, 2], [[1, 1]], row_lower=3, row_names=["need"])
    >>> tables = model.solve(ranging=True).ranging()
    >>> len(tables.variables), len(tables.rows)
    (2, 1)
    """

    variables: Any
    rows: Any


class Solution:
    """The verdict on a model, and the numbers that go with it.

    It stays as it is when the model changes, and asks nothing of it once it has been pickled.

    >>> import nuv
    >>> model = nuv.Model()
    >>> x = model.variable("x", upper=3)
    >>> row = model.add(2 * x <= 1, "row")
    >>> model.maximize(x)
    >>> solution = model.solve(ranging=True)
    >>> solution["x"], solution.exact(x), solution.dual("row"), solution.cost_range("x")
    (0.5, Fraction(1, 2), 0.5, Range(lower=0.0, upper=inf))
    """

    def __init__(self, record: Record, names: tuple[tuple[str, ...], tuple[str, ...]],
                 places: tuple[Places, Places], ranged: Optional[Ranged] = None) -> None:
        self._record = record
        #: Of columns, and of rows, as they were when the model was solved.
        self._names = names
        self._places = places
        self._ranged = ranged
        self._by_name: list[Optional[dict[str, int]]] = [None, None]

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
    def unique(self) -> Optional[bool]:
        """Whether there is no other optimal point; None without solve(uniqueness=True)."""
        return self._record.unique

    @property
    def unique_duals(self) -> Optional[bool]:
        """The same for the duals."""
        return self._record.unique_duals

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
            with _known():
                return of._evaluated(self._places[False].by_key(self._array("Values")))
        return self._of("Values", of)

    def exact(self, of: Any) -> Any:
        """The same as a fraction, or a list of them row after row."""
        if isinstance(of, Expression):
            numbers, now = self._fractions("Values"), self._places[False].now
            with _known():
                return sum((meant(value) * numbers[now(key)] for key, value in of.terms.items()),
                           meant(of.constant))
        return self._fraction("Values", self._place(of, False))

    def exact_dual(self, row: Any) -> Any:
        """The dual of a row, by handle or name, as a fraction; of an array of rows, a list of them."""
        return self._fraction("Duals", self._place(row, True))

    def exact_slack(self, row: Any) -> Any:
        """How far a row is from its nearer side, as a fraction; of a solve with exact=True.

        None for a row without sides.
        """
        return self._fraction("Slacks", self._place(row, True))

    def exact_activity(self, row: Any) -> Any:
        """The value of a row as a fraction; of a solve with exact=True."""
        return self._fraction("Activities", self._place(row, True))

    def exact_reduced_cost(self, variable: Any) -> Any:
        """The reduced cost of a variable as a fraction; of a solve with exact=True."""
        return self._fraction("ReducedCosts", self._place(variable, False))

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

    @overload
    def basis(self) -> Basis: ...

    @overload
    def basis(self, of: Any) -> str: ...

    def basis(self, of: Any = None) -> Union[str, Basis]:
        """``"basic"``, ``"at lower"``, ``"at upper"`` or ``"free"``, of a variable or a row.

        Without an argument it is the whole basis, as Model.solve and Model.write_basis take it.
        """
        if of is None:
            return Basis(self._array("ColumnBasis"), self._array("RowBasis"))
        is_row = isinstance(of, Row)
        found = self._array("RowBasis" if is_row else "ColumnBasis")
        return BASIS_STATUSES[found[self._place(of, is_row)]]

    def cost_range(self, variable: Any) -> Range:
        """Between which numbers a cost may move; of a solve with ranging=True."""
        return self._range("CostRanges", self._place(variable, False))

    def side_range(self, row: Any, side: str) -> Range:
        """The same for the "lower" or the "upper" side of a row."""
        if not isinstance(side, str) or side not in ("lower", "upper"):
            raise ValueError(f"side: 'lower' or 'upper' is needed, not {side!r}")
        return self._range(f"Row{side.title()}Ranges", self._place(row, True))

    def ranging(self) -> Ranging:
        """All ranges as tables; of a solve with ranging=True."""
        if self._ranged is None or self._record.array("CostRanges") is None:
            raise LookupError("ranges are found by solve(ranging=True) at an optimum")
        costs, values, reduced = self._ranged.costs, self._array("Values"), self._array("ReducedCosts")
        variables = _table("variable", self._names[False], {
            "value": values, "reduced cost": reduced, "cost": costs,
            **_ends("cost", self._array("CostRanges"))})
        columns = {"activity": self._array("Activities"), "dual": self._array("Duals")}
        for side, now in (("lower", self._ranged.row_lower), ("upper", self._ranged.row_upper)):
            columns[side] = now
            columns.update(_ends(side, self._array(f"Row{side.title()}Ranges")))
        return Ranging(variables, _table("row", self._names[True], columns))

    @property
    def conflict(self) -> list[Member]:
        """Sides and bounds that exclude each other, where the model is infeasible.

        Lower bounds of zero stay in force without being members.
        """
        return [Member("row" if is_row else "variable",
                       self._names[is_row][index],
                       "upper" if is_upper else "lower")
                for index, is_row, is_upper in self._record.conflict()]

    @property
    def values(self) -> dict[str, float]:
        """The value of every variable by its name; empty without a point."""
        found = self._record.array("Values")
        return {} if found is None else dict(zip(self._names[False], found.tolist()))

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
                + ("" if math.isnan(self.objective) else escaped(repr(self.objective)))
                + f"<br><small>{escaped(self.proof)}</small>")
        cells = "".join(f"<tr><td>{escaped(name)}</td><td>{value!r}</td></tr>"
                        for name, value in list(self.values.items())[:50])
        members = "".join(f"<li>{escaped(f'{m.kind} {m.name}, {m.side}')}</li>"
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
        if found is None and kind not in ("Values", "Duals") and self._record.exact("Values") is not None:
            raise LookupError("exact slacks, activities and reduced costs are found by solve(exact=True)")
        if found is None:
            raise LookupError("exact numbers are those of a proved optimum")
        return found

    def _fraction(self, kind: str, at: Any) -> Any:
        numbers = self._fractions(kind)
        return numbers[at] if isinstance(at, int) else [numbers[k] for k in at.reshape(-1).tolist()]

    def _range(self, name: str, at: int) -> Range:
        found = self._record.array(name)
        if found is None or found.size == 0:
            raise LookupError("ranges are found by solve(ranging=True) at an optimum")
        return Range(float(found[2 * at]) + 0.0, float(found[2 * at + 1]) + 0.0)

    def _index(self, name: str, rows: bool) -> Optional[int]:
        found = self._by_name[rows]
        if found is None:
            found = self._by_name[rows] = {name: k for k, name in enumerate(self._names[rows])}
        return found.get(name)

    def _place(self, of: Any, rows: bool) -> Any:
        if isinstance(of, str):
            at = self._index(of, rows)
            if at is None:
                raise KeyError(f"there is no {'row' if rows else 'variable'} {of!r}")
            return at
        if rows and isinstance(of, (Row, RowArray)) or \
                not rows and isinstance(of, (Variable, VariableArray)):
            with _known():
                at = self._places[rows].now(of.key)
                if np.any(np.asarray(at) >= len(self._names[rows])):
                    raise IndexError
                return at
        raise TypeError(f"a {'row' if rows else 'variable'} is needed, not a {type(of).__name__}")

    def _of(self, name: str, of: Any, rows: bool = False) -> Any:
        at = self._place(of, rows or isinstance(of, (Row, RowArray)))
        found = self._array(name)[at]
        return float(found) if isinstance(at, int) else np.array(found)


@contextmanager
def _known() -> Iterator[None]:
    """What came after the solve has no place in it."""
    try:
        yield
    except IndexError:
        raise LookupError("what is asked for was not there when the model was solved") from None


def _ends(of: str, ranges: Doubles) -> dict[str, Doubles]:
    # Adding zero takes the sign from a zero.
    return {f"{of} from": ranges[0::2] + 0.0, f"{of} to": ranges[1::2] + 0.0}


def _table(index: str, names: tuple[str, ...], columns: dict[str, Doubles]) -> Any:
    try:
        import pandas
    except ImportError:
        return [{index: name, **{title: float(column[k]) for title, column in columns.items()}}
                for k, name in enumerate(names)]
    return pandas.DataFrame(columns, pandas.Index(names, name=index))
