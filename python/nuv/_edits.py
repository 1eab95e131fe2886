"""What a model is made of and changed by: variables, rows, the objective."""

from __future__ import annotations

import math
from fractions import Fraction
from typing import TYPE_CHECKING, Any, Optional, Sequence, Union, cast

import numpy as np

from ._arrays import Rows, finite, matrix, objects, pointer, sides, vector
from ._expression import Coefficient, Constraint, Variable, _as_expression
from ._handle import (COLUMN_LOWER, COLUMN_UPPER, COST, ENTRY, ROW_LOWER, ROW_UPPER, Beside, beside,
                      block, construct, entries_beside, get_beside, names_of, set_beside)
from ._interface import ffi
from ._library import check, diagnostics, lib
from ._places import Indices, Places
from ._rows import Row, RowArray
from ._vectors import ConstraintArray, LinearArray, VariableArray

if TYPE_CHECKING:
    from ._model import Model

Names = Optional[Sequence[str]]


class Edits:
    """The part of Model that states and changes it."""

    def __init__(self) -> None:
        self._handle = construct()
        self._names: dict[bool, Optional[tuple[str, ...]]] = {False: None, True: None}
        self._columns = Places()
        self._rows = Places()
        #: Whether there may be numbers that no double says.
        self._is_exact = False

    def _model(self) -> Model:
        return cast("Model", self)

    def variable(self, name: Optional[str] = None, lower: Any = 0.0, upper: Any = math.inf,
                 cost: Any = 0.0) -> Variable:
        """A new variable; None is no bound, and one without a name gets one."""
        found = self.variables(None if name is None else [name], 1, lower, upper, cost)
        return Variable(self._model(), int(found.key[0]))

    def variables(self, name: Union[str, Sequence[str], None] = None,
                  shape: Union[int, tuple[int, ...]] = 1, lower: Any = 0.0, upper: Any = math.inf,
                  cost: Any = 0.0) -> VariableArray:
        """New variables in the shape of an array, named x_0, x_1 or x_0_0 of the name x.

        Bounds and costs are numbers, or arrays that broadcast to the shape; None is no bound.
        """
        shape, first = _shape(shape), self.num_variables
        count = math.prod(shape)
        names = [f"{name}_" + "_".join(map(str, at)) for at in np.ndindex(shape)
                 ] if isinstance(name, str) else name
        index, data = np.arange(first, first + count), []
        exact: list[Beside] = []
        for value, what, place, otherwise in (
                (cost, "cost", COST, 0.0), (lower, "lower", COLUMN_LOWER, -math.inf),
                (upper, "upper", COLUMN_UPPER, math.inf)):
            filled = np.ascontiguousarray(_filled(value, what, shape, otherwise)).reshape(-1)
            nearest, others = beside(place, filled, index)
            data.append(nearest)
            exact += others
        called, told = block(names, "name", count), diagnostics()
        check(lib.NuvModelAddColumns(self._handle, count, *(pointer(part, "double") for part in data),
                                     called or ffi.NULL, len(called), told), told)
        self._names[False] = None
        self._set_beside(exact)
        self._columns, keys = self._columns.added(first, count)
        return VariableArray(self._model(), keys.reshape(shape))

    def _set_beside(self, numbers: list[Beside]) -> None:
        self._is_exact = self._is_exact or bool(numbers)
        set_beside(self._handle, numbers)

    def add(self, constraint: Union[Constraint, ConstraintArray],
            name: Union[str, Sequence[str], None] = None) -> Any:
        """A row for a constraint, or rows in the shape of an array of constraints."""
        if isinstance(constraint, Constraint):
            found, ends = constraint.expression, (constraint.lower, constraint.upper)
            if found.model is not self._model():
                raise ValueError("constraint: its variables are of another model")
            columns = self._columns.now(np.fromiter(found.terms, np.int64)).astype(np.uint32)
            rows = Rows((1, self.num_variables), np.array([0, columns.size], np.uint64), columns,
                        objects(list(found.terms.values())))
            keys = self._append(rows, *ends, None if name is None else [str(name)])
            return Row(self._model(), int(keys[0]))
        if not isinstance(constraint, ConstraintArray):
            raise TypeError(f"constraint: comparisons of expressions are needed, not {constraint!r}")
        array, shape = constraint.expressions, constraint.expressions.shape
        if array.model is not self._model():
            raise ValueError("constraint: its variables are of another model")
        rows = Rows((array.size, self.num_variables), array.starts.astype(np.uint64),
                    self._columns.now(array.columns).astype(np.uint32), array.values)
        names = [f"{name}_" + "_".join(map(str, at)) for at in np.ndindex(shape)
                 ] if isinstance(name, str) else name
        keys = self._append(rows, constraint.lower, constraint.upper, names)
        return RowArray(self._model(), keys.reshape(shape))

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
        if x is not None and not isinstance(x, VariableArray):
            raise TypeError(f"x: variables of the model are needed, not a {type(x).__name__}")
        rows = matrix(A, "A", self.num_variables if x is None else x.size)
        if x is not None:
            if x.model is not self._model():
                raise ValueError("x: its variables are of another model")
            rows = rows._replace(indices=x.index.reshape(-1)[rows.indices].astype(np.uint32))
        return RowArray(self._model(), self._append(rows, lower, upper, names))

    def _append(self, rows: Rows, lower: Any, upper: Any, names: Names) -> Indices:
        """Appends rows; their keys."""
        first, count = self.num_rows, rows.shape[0]
        rows, exact = entries_beside(rows)
        exact = [(place, first + at, column, number) for place, at, column, number in exact]
        index, ends = np.arange(first, first + count), []
        for value, name, place in ((lower, "lower", ROW_LOWER), (upper, "upper", ROW_UPPER)):
            nearest, others = beside(place, sides(value, name, count), index)
            ends.append(nearest)
            exact += others
        called, told = block(names, "name", count), diagnostics()
        check(lib.NuvModelAddRows(
            self._handle, count, pointer(ends[0], "double"), pointer(ends[1], "double"),
            pointer(rows.starts, "uint64_t"), pointer(rows.indices, "uint32_t"),
            pointer(rows.values, "double"), called or ffi.NULL, len(called), told), told)
        self._names[True] = None
        self._set_beside(exact)
        self._rows, keys = self._rows.added(first, count)
        return keys

    def minimize(self, objective: Any) -> None:
        """Sets the objective, all of it."""
        self._set_objective(objective, False)

    def maximize(self, objective: Any) -> None:
        """Sets the objective, all of it."""
        self._set_objective(objective, True)

    def _set_objective(self, objective: Any, maximize: bool) -> None:
        if isinstance(objective, (LinearArray, VariableArray)):
            raise TypeError("objective: one expression is needed, not an array; see its sum()")
        found = _as_expression(objective)
        if found is None:
            raise TypeError(f"objective: a {type(objective).__name__} is no linear expression")
        if found.model not in (None, self._model()):
            raise ValueError("objective: its variables are of another model")
        columns = self._columns.now(np.fromiter(found.terms, np.int64))
        costs = np.zeros(self.num_variables)
        exact: list[Beside] = []
        if columns.size:
            nearest, exact = beside(COST, objects(list(found.terms.values())), columns)
            costs[columns] = nearest
        told = diagnostics()
        check(lib.NuvModelSetCosts(self._handle, costs.size, ffi.NULL, pointer(costs, "double"),
                                   told), told)
        self._set_beside(exact)
        self._set_sense_and_constant(maximize, found.constant)

    def _set_sense_and_constant(self, maximize: bool, constant: Coefficient) -> None:
        told = diagnostics()
        check(lib.NuvModelSetConstant(self._handle, float(constant), told), told)
        if isinstance(constant, Fraction):
            self._set_beside([(lib.NUV_PLACE_Constant, 0, 0, constant)])
        check(lib.NuvModelSetSense(
            self._handle, lib.NUV_SENSE_Maximize if maximize else lib.NUV_SENSE_Minimize))

    def set_bounds(self, of: Any, lower: Any = None, upper: Any = None) -> None:
        """New bounds of variables, or sides of rows; what is None stays as it is."""
        is_row = isinstance(of, (Row, RowArray))
        change = lib.NuvModelSetRowBounds if is_row else lib.NuvModelSetColumnBounds
        places = (ROW_LOWER, ROW_UPPER) if is_row else (COLUMN_LOWER, COLUMN_UPPER)
        index = self._indices(of, (Variable, VariableArray, Row, RowArray))
        data, exact = [], []
        for side, name, place in ((lower, "lower", places[0]), (upper, "upper", places[1])):
            nearest, others = beside(place, None if side is None else sides(side, name, index.size),
                                     index)
            data.append(nearest)
            exact += others
            if side is None and self._is_exact:
                # The library forgets what it is told of a bound when the other one is set.
                kept = [(place, int(k), 0, get_beside(self._handle, place, int(k))) for k in index]
                exact += [(place, k, 0, number) for place, k, _, number in kept if number is not None]
        told = diagnostics()
        check(change(self._handle, index.size, pointer(index, "uint32_t"),
                     *(pointer(side, "double") for side in data), told), told)
        self._set_beside(exact)

    def set_cost(self, of: Any, cost: Any) -> None:
        """New costs of variables."""
        index = self._indices(of, (Variable, VariableArray))
        costs, exact = beside(COST, vector(cost, "cost", index.size), index)
        told = diagnostics()
        check(lib.NuvModelSetCosts(self._handle, index.size, pointer(index, "uint32_t"),
                                   pointer(costs, "double"), told), told)
        self._set_beside(exact)

    def set_coefficient(self, row: Row, variable: Variable, coefficient: Any) -> None:
        """A new coefficient; 0 takes it out."""
        at = self._indices(row, (Row,)), self._indices(variable, (Variable,))
        value, others = beside(ENTRY, vector(coefficient, "coefficient", 1))
        told = diagnostics()
        check(lib.NuvModelSetCoefficients(self._handle, 1, *(pointer(k, "uint32_t") for k in at),
                                          pointer(value, "double"), told), told)
        self._set_beside([(ENTRY, int(at[0][0]), int(at[1][0]), number)
                          for *_, number in others])

    def remove(self, of: Any) -> None:
        """Takes variables with all their coefficients, or rows, out of the model.

        What is left keeps its handles; those behind what is removed get lower indices.
        """
        index = self._indices(of, (Variable, VariableArray, Row, RowArray))
        is_row = isinstance(of, (Row, RowArray))
        count = self.num_rows if is_row else self.num_variables
        remove = lib.NuvModelRemoveRows if is_row else lib.NuvModelRemoveColumns
        told = diagnostics()
        check(remove(self._handle, index.size, pointer(index, "uint32_t"), told), told)
        self._names[is_row] = None
        if is_row:
            self._rows = self._rows.removed(index, count)
        else:
            self._columns = self._columns.removed(index, count)

    def _indices(self, of: Any, kinds: tuple[type, ...]) -> Any:
        if not isinstance(of, kinds):
            names = " or ".join(kind.__name__ for kind in kinds)
            by_name = f": model[{of!r}] or model.row({of!r}) finds one" if isinstance(of, str) else ""
            raise TypeError(f"a {names} is needed, not {of!r:.60}{by_name}")
        if of.model is not self._model():
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
        at = lib.NuvModelFindColumn(self._handle, text_argument(name, "name"))
        if at == lib.NUV_MODEL_NO_INDEX:
            raise KeyError(f"there is no variable {name!r}")
        return Variable(self._model(), self._columns.key(at))

    def row(self, name: str) -> Row:
        """The row of a name."""
        at = lib.NuvModelFindRow(self._handle, text_argument(name, "name"))
        if at == lib.NUV_MODEL_NO_INDEX:
            raise KeyError(f"there is no row {name!r}")
        return Row(self._model(), self._rows.key(at))

    def _all_names(self, rows: bool) -> tuple[str, ...]:
        found = self._names[rows]
        if found is None:
            found = self._names[rows] = names_of(self._handle, rows)
        return found

    def _column_name(self, index: int) -> str:
        return self._all_names(False)[index]

    def _row_name(self, index: int) -> str:
        return self._all_names(True)[index]


def text_argument(value: Any, name: str) -> bytes:
    if not isinstance(value, str):
        raise TypeError(f"{name}: a text is needed, not a {type(value).__name__}")
    if not value or "\0" in value:
        raise ValueError(f"{name}: must neither be empty nor have a NUL in it")
    return value.encode()


def _shape(shape: Any) -> tuple[int, ...]:
    sizes = (shape,) if isinstance(shape, (int, np.integer)) else shape
    if not isinstance(sizes, (tuple, list)) or not all(
            isinstance(size, (int, np.integer)) and size >= 0 for size in sizes):
        raise ValueError(f"shape: whole numbers from 0 are needed, not {shape!r:.80}")
    if math.prod(map(int, sizes)) >= 2**31:
        raise ValueError(f"shape: {shape} are too many variables")
    return tuple(map(int, sizes))


def _filled(value: Any, name: str, shape: tuple[int, ...], otherwise: float) -> Any:
    numbers = np.asarray(otherwise if value is None else value, object if isinstance(
        value, (list, tuple)) else None)
    flat = sides(numbers.reshape(-1), name, numbers.size)
    try:
        return np.broadcast_to(flat.reshape(numbers.shape), shape)
    except ValueError:
        raise ValueError(f"{name}: the shape {numbers.shape} does not go with {shape}") from None
