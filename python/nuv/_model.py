"""Models for people: variables, constraints made with operators, whole matrices, files."""

from __future__ import annotations

import html
import math
import os
import threading
from typing import Any, Callable, Optional, Sequence, Union

import numpy as np

from ._arrays import Rows, as_double, finite, matrix, pointer, vector
from ._expression import Constraint, Variable, _as_expression
from ._handle import FORMATS, assign, block, construct, copied, names_of, state
from ._interface import ffi
from ._library import check, diagnostics, lib, owned, take_text
from ._record import Record
from ._rows import Row, RowArray
from ._solution import Solution
from ._solve import Interrupted, Options, Progress, solve, verify
from ._vectors import ConstraintArray, LinearArray, VariableArray

Names = Optional[Sequence[str]]

#: A model with more coefficients shows how many it has, and not all of them.
_SHOWN = 1000


class Model:
    """A linear program, to be minimised unless ``maximize`` says otherwise.

    >>> import nuv
    >>> model = nuv.Model()
    >>> chairs, tables = model.variable("chairs"), model.variable("tables")
    >>> wood = model.add(2 * chairs + 5 * tables <= 300, "wood")
    >>> labour = model.add(4 * chairs + 3 * tables <= 240, "labour")
    >>> model.maximize(30 * chairs + 70 * tables)
    >>> model.solve()
    <optimal 4242.857142857143, proved as written, exactly 29700/7>
    >>> chairs.exact, wood.dual
    (Fraction(150, 7), 13.571428571428571)
    """

    def __init__(self, name: str = "") -> None:
        self._handle = construct()
        self._session: Any = None
        self._lock = threading.Lock()
        self._solution: Optional[Solution] = None
        self._names: dict[bool, Optional[tuple[str, ...]]] = {False: None, True: None}
        if name:
            check(lib.NuvModelSetName(self._handle, _text(name, "name")))

    @classmethod
    def read(cls, path: Union[str, os.PathLike[str]], relax: bool = False) -> Model:
        """The model in a file in LP or MPS format, plain or gzipped.

        With `relax`, integer variables are taken for continuous ones instead of being refused.
        """
        model, told = cls(), diagnostics()
        check(lib.NuvModelRead(model._handle, os.fsencode(path), _read_options(relax), told), told)
        return model

    @classmethod
    def from_text(cls, text: Union[str, bytes], name: str = "text.lp", relax: bool = False) -> Model:
        """The same for what a file would hold; the ending of `name` says the format if need be."""
        model, told = cls(), diagnostics()
        data = text.encode() if isinstance(text, str) else text
        check(lib.NuvModelReadText(model._handle, data, len(data), _text(name, "name"),
                                   _read_options(relax), told), told)
        return model

    @classmethod
    def from_arrays(cls, c: Any, A: Any = None, row_lower: Any = -math.inf,
                    row_upper: Any = math.inf, lower: Any = 0.0, upper: Any = math.inf, *,
                    maximize: bool = False, constant: float = 0.0, names: Names = None,
                    row_names: Names = None) -> Model:
        """``c @ x`` subject to ``row_lower <= A @ x <= row_upper`` and ``lower <= x <= upper``.

        A may be dense or of scipy.sparse; a number stands for a whole vector of sides or bounds.
        """
        costs = finite(vector(c, "c", int(np.size(c))), "c")
        rows = matrix([] if A is None else A, "A", costs.size, either=True)
        model = cls()
        assign(model._handle, costs, rows, vector(row_lower, "row_lower", rows.shape[0]),
               vector(row_upper, "row_upper", rows.shape[0]), vector(lower, "lower", costs.size),
               vector(upper, "upper", costs.size), maximize, as_double(constant, "constant"),
               block(names, "names", costs.size), block(row_names, "row_names", rows.shape[0]))
        return model

    def variable(self, name: Optional[str] = None, lower: Any = 0.0, upper: Any = math.inf,
                 cost: Any = 0.0) -> Variable:
        """A new variable; None is no bound, and one without a name gets one."""
        found = self.variables(None if name is None else [name], 1, lower, upper, cost)
        return Variable(self, int(found.index[0]))

    def variables(self, name: Union[str, Sequence[str], None] = None,
                  shape: Union[int, tuple[int, ...]] = 1, lower: Any = 0.0, upper: Any = math.inf,
                  cost: Any = 0.0) -> VariableArray:
        """New variables in the shape of an array, named x_0, x_1 or x_0_0 of the name x.

        Bounds and costs are numbers, or arrays that broadcast to the shape; None is no bound.
        """
        shape = (shape,) if isinstance(shape, (int, np.integer)) else tuple(shape)
        count, first = math.prod(shape), self.num_variables
        names = [f"{name}_" + "_".join(map(str, at)) for at in np.ndindex(shape)
                 ] if isinstance(name, str) else name
        data = [np.ascontiguousarray(_filled(value, what, shape, otherwise)) for
                value, what, otherwise in ((cost, "cost", 0.0), (lower, "lower", -math.inf),
                                           (upper, "upper", math.inf))]
        called, told = block(names, "name", count), diagnostics()
        check(lib.NuvModelAddColumns(self._handle, count, *(pointer(part, "double") for part in data),
                                     called or ffi.NULL, len(called), told), told)
        self._names[False] = None
        return VariableArray(self, np.arange(first, first + count).reshape(shape))

    def add(self, constraint: Union[Constraint, ConstraintArray],
            name: Union[str, Sequence[str], None] = None) -> Any:
        """A row for a constraint, or rows in the shape of an array of constraints."""
        if isinstance(constraint, Constraint):
            found, sides = constraint.expression, (constraint.lower, constraint.upper)
            if found.model is not self:
                raise ValueError("constraint: its variables are of another model")
            rows = Rows((1, self.num_variables), np.array([0, len(found.terms)], np.uint64),
                        np.fromiter(found.terms, np.uint32), np.fromiter(found.terms.values(), float))
            return Row(self, self._append(rows, *sides, None if name is None else [str(name)]))
        if not isinstance(constraint, ConstraintArray):
            raise TypeError(f"constraint: comparisons of expressions are needed, not {constraint!r}")
        array, shape = constraint.expressions, constraint.expressions.shape
        if array.model is not self:
            raise ValueError("constraint: its variables are of another model")
        rows = Rows((array.size, self.num_variables), array.starts.astype(np.uint64),
                    array.columns.astype(np.uint32), array.values)
        names = [f"{name}_" + "_".join(map(str, at)) for at in np.ndindex(shape)
                 ] if isinstance(name, str) else name
        first = self._append(rows, constraint.lower, constraint.upper, names)
        return RowArray(self, np.arange(first, first + array.size).reshape(shape))

    def add_range(self, lower: Any, expression: Any, upper: Any, name: Optional[str] = None) -> Any:
        """A row, or rows, for ``lower <= expression <= upper``."""
        above, below = expression >= lower, expression <= upper
        if not isinstance(above, (Constraint, ConstraintArray)):
            raise TypeError("expression: linear expressions are needed")
        above.upper = below.upper
        return self.add(above, name)

    def add_rows(self, A: Any, lower: Any = -math.inf, upper: Any = math.inf,
                 x: Optional[VariableArray] = None, names: Names = None) -> RowArray:
        """``lower <= A @ x <= upper``; without x, A has a column for each variable so far."""
        rows = matrix(A, "A", self.num_variables if x is None else x.size)
        if x is not None:
            if x.model is not self:
                raise ValueError("x: its variables are of another model")
            rows = rows._replace(indices=x.index.reshape(-1)[rows.indices].astype(np.uint32))
        first = self._append(rows, lower, upper, names)
        return RowArray(self, np.arange(first, first + rows.shape[0]))

    def _append(self, rows: Rows, lower: Any, upper: Any, names: Names) -> int:
        first, count = self.num_rows, rows.shape[0]
        sides = vector(lower, "lower", count), vector(upper, "upper", count)
        called, told = block(names, "name", count), diagnostics()
        check(lib.NuvModelAddRows(
            self._handle, count, pointer(sides[0], "double"), pointer(sides[1], "double"),
            pointer(rows.starts, "uint64_t"), pointer(rows.indices, "uint32_t"),
            pointer(rows.values, "double"), called or ffi.NULL, len(called), told), told)
        self._names[True] = None
        return first

    def minimize(self, objective: Any) -> None:
        """Sets the objective, all of it."""
        self._set_objective(objective, lib.NUV_SENSE_Minimize)

    def maximize(self, objective: Any) -> None:
        """Sets the objective, all of it."""
        self._set_objective(objective, lib.NUV_SENSE_Maximize)

    def _set_objective(self, objective: Any, sense: int) -> None:
        if isinstance(objective, (LinearArray, VariableArray)):
            raise TypeError("objective: one expression is needed, not an array; see its sum()")
        found = _as_expression(objective)
        if found is None:
            raise TypeError(f"objective: a {type(objective).__name__} is no linear expression")
        if found.model not in (None, self):
            raise ValueError("objective: its variables are of another model")
        costs = np.zeros(self.num_variables)
        costs[list(found.terms)] = list(found.terms.values())
        told = diagnostics()
        check(lib.NuvModelSetCosts(self._handle, costs.size, ffi.NULL, pointer(costs, "double"),
                                   told), told)
        check(lib.NuvModelSetConstant(self._handle, found.constant, told), told)
        check(lib.NuvModelSetSense(self._handle, sense))

    def set_bounds(self, of: Any, lower: Any = None, upper: Any = None) -> None:
        """New bounds of variables, or sides of rows; what is None stays as it is."""
        change = lib.NuvModelSetRowBounds if isinstance(of, (Row, RowArray)) else \
            lib.NuvModelSetColumnBounds
        index = self._indices(of, (Variable, VariableArray, Row, RowArray))
        data = [None if side is None else np.ascontiguousarray(
            np.broadcast_to(vector(side, name, index.size), index.size))
            for side, name in ((lower, "lower"), (upper, "upper"))]
        told = diagnostics()
        check(change(self._handle, index.size, pointer(index, "uint32_t"),
                     *(pointer(side, "double") for side in data), told), told)

    def set_cost(self, of: Any, cost: Any) -> None:
        """New costs of variables."""
        index = self._indices(of, (Variable, VariableArray))
        costs, told = vector(cost, "cost", index.size), diagnostics()
        check(lib.NuvModelSetCosts(self._handle, index.size, pointer(index, "uint32_t"),
                                   pointer(costs, "double"), told), told)

    def set_coefficient(self, row: Row, variable: Variable, coefficient: Any) -> None:
        """A new coefficient; 0 takes it out."""
        at = self._indices(row, (Row,)), self._indices(variable, (Variable,))
        value, told = vector(coefficient, "coefficient", 1), diagnostics()
        check(lib.NuvModelSetCoefficients(self._handle, 1, *(pointer(k, "uint32_t") for k in at),
                                          pointer(value, "double"), told), told)

    def _indices(self, of: Any, kinds: tuple[type, ...]) -> Any:
        if not isinstance(of, kinds):
            names = " or ".join(kind.__name__ for kind in kinds)
            raise TypeError(f"a {names} is needed, not a {type(of).__name__}")
        if of.model is not self:
            raise ValueError("what is to be changed is of another model")
        return np.ascontiguousarray(np.atleast_1d(of.index).reshape(-1), np.uint32)

    @property
    def num_variables(self) -> int:
        return int(lib.NuvModelGetNumColumns(self._handle))

    @property
    def num_rows(self) -> int:
        return int(lib.NuvModelGetNumRows(self._handle))

    @property
    def num_entries(self) -> int:
        """How many coefficients the rows have."""
        return int(lib.NuvModelGetNumEntries(self._handle))

    def __getitem__(self, name: str) -> Variable:
        """The variable of a name."""
        at = lib.NuvModelFindColumn(self._handle, _text(name, "name"))
        if at == lib.NUV_MODEL_NO_INDEX:
            raise KeyError(f"there is no variable {name!r}")
        return Variable(self, at)

    def row(self, name: str) -> Row:
        """The row of a name."""
        at = lib.NuvModelFindRow(self._handle, _text(name, "name"))
        if at == lib.NUV_MODEL_NO_INDEX:
            raise KeyError(f"there is no row {name!r}")
        return Row(self, at)

    def _all_names(self, rows: bool) -> tuple[str, ...]:
        found = self._names[rows]
        if found is None:
            found = self._names[rows] = names_of(self._handle, rows)
        return found

    def _column_name(self, index: int) -> str:
        return self._all_names(False)[index]

    def _row_name(self, index: int) -> str:
        return self._all_names(True)[index]

    def write(self, path: Union[str, os.PathLike[str]], format: str = "") -> None:
        """Writes a file: MPS for a path that ends with .mps, else LP; with .gz behind, packed."""
        told = diagnostics()
        check(lib.NuvModelWrite(self._handle, os.fsencode(path), _format(format), told), told)

    def text(self, format: str = "lp") -> str:
        """The model as a file: "lp", "mps", "mps-fixed" or "mps-free"."""
        made, told = ffi.new("NuvText**"), diagnostics()
        check(lib.NuvModelMakeText(self._handle, _format(format), made, told), told)
        return take_text(made).decode("utf-8", "replace")

    def copy(self) -> Model:
        """A model of its own, which shares its storage until one of the two changes."""
        model = type(self)()
        model._handle = copied(self._handle)
        return model

    def solve(self, *, numbers: str = "written", time_limit: float = math.inf,
              pivot_limit: Optional[int] = None, scale: bool = False, ranging: bool = False,
              conflict_work: Optional[int] = None,
              progress: Optional[Callable[[Progress], Optional[bool]]] = None,
              log: Optional[Callable[[str], None]] = None) -> Solution:
        """Solves, from where the last solve of this model ended, and proves the answer.

        `progress` is called before each pivot and ends the solve by returning False, `log` with
        lines for people. Ctrl-C ends the solve with nuv.Interrupted, a KeyboardInterrupt, which
        has what is known as its ``solution``. `conflict_work` bounds the search of a conflict that
        cannot do without any member: entries, rows and columns times pivots.
        """
        options = Options(numbers, time_limit, pivot_limit, scale, ranging, conflict_work,
                          progress, log)
        # A session is one thread's at a time; another that comes meanwhile does without.
        is_mine = self._lock.acquire(blocking=False)
        try:
            if is_mine and self._session is None:
                self._session = owned(lib.NuvSolverConstruct(), lib.NuvSolverDestruct)
            handle, failure = solve(self._handle, options, self._session if is_mine else None)
        finally:
            if is_mine:
                self._lock.release()
        solution = Solution(Record(handle), self._all_names(False), self._all_names(True))
        self._solution = solution
        if isinstance(failure, KeyboardInterrupt):
            raise Interrupted(solution) from failure
        if failure is not None:
            raise failure
        return solution

    @property
    def solution(self) -> Solution:
        """What the last solve found."""
        if self._solution is None:
            raise LookupError("the model has not been solved")
        return self._solution

    def verify(self, certificate: str, numbers: str = "written") -> str:
        """Checks a certificate in VIPR format against this model, without solving.

        Returns the verdict that it proves; raises CertificateError for one that does not.
        """
        return verify(self._handle, certificate, numbers)

    def __repr__(self) -> str:
        return (f"<model with {self.num_variables} variables, {self.num_rows} rows and "
                f"{self.num_entries} coefficients>")

    def __str__(self) -> str:
        return self.text() if self.num_entries <= _SHOWN else repr(self)

    def _repr_html_(self) -> str:
        return f"<pre>{html.escape(str(self))}</pre>"

    def __reduce__(self) -> tuple[Any, ...]:
        titles = (ffi.string(lib.NuvModelGetName(self._handle)),
                  ffi.string(lib.NuvModelGetObjectiveName(self._handle)))
        return _restored, (state(self._handle), titles, self._solution)


def _restored(kept: tuple[Any, ...], titles: tuple[bytes, bytes],
              solution: Optional[Solution]) -> Model:
    model = Model()
    assign(model._handle, *kept)
    check(lib.NuvModelSetName(model._handle, titles[0]))
    check(lib.NuvModelSetObjectiveName(model._handle, titles[1]))
    model._solution = solution
    return model


def _text(value: Any, name: str) -> bytes:
    if not isinstance(value, str):
        raise TypeError(f"{name}: a text is needed, not a {type(value).__name__}")
    if not value or "\0" in value:
        raise ValueError(f"{name}: must neither be empty nor have a NUL in it")
    return value.encode()


def _filled(value: Any, name: str, shape: tuple[int, ...], otherwise: float) -> Any:
    numbers = np.asarray(otherwise if value is None else value, object if isinstance(
        value, (list, tuple)) else None)
    flat = vector(numbers.reshape(-1), name, numbers.size)
    try:
        return np.broadcast_to(flat.reshape(numbers.shape), shape)
    except ValueError:
        raise ValueError(f"{name}: the shape {numbers.shape} does not go with {shape}") from None


def _format(name: str) -> int:
    if name not in FORMATS:
        raise ValueError(f"format: one of {', '.join(filter(None, FORMATS))} is needed, not {name!r}")
    return int(FORMATS[name])


def _read_options(relax: bool) -> Any:
    options = ffi.new("NuvReadOptions*")
    check(lib.NuvReadOptionsInit(options, ffi.sizeof("NuvReadOptions")))
    options.relax = bool(relax)
    return options
