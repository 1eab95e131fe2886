"""Variables and linear expressions in the shape of arrays: ``A @ x <= b``.

An array of expressions is a sparse matrix by rows, one row an expression, and their constants.
"""

from __future__ import annotations

import math
from fractions import Fraction
from typing import TYPE_CHECKING, Any, Iterator, Optional

import numpy as np
import numpy.typing as npt

from ._arrays import INTEGERS, Doubles, Rows, as_number, finite, matrix, numbers, objects
from ._expression import Coefficient, Constraint, Expression, Linear, Variable, negated, plus, times
from ._places import Indices

if TYPE_CHECKING:
    from ._model import Model



#: Doubles, or objects where no doubles say all of the numbers.
Numbers = npt.NDArray[Any]


def _replaced(array: Numbers, places: Indices, items: list[Coefficient]) -> Numbers:
    """An array with other numbers at some places."""
    if any(isinstance(item, Fraction) for item in items):
        array = array.astype(object)
    for place, item in zip(places.tolist(), items):
        array[place] = item
    return array


def _products(a: Numbers, b: Numbers) -> Numbers:
    """Products of numbers as they are written; see _expression.times."""
    if a.dtype == object or b.dtype == object:
        return objects([times(x, y) for x, y in zip(a.tolist(), b.tolist())])
    product: Numbers = a * b
    whole = (a == np.floor(a)) & (b == np.floor(b)) & (np.abs(product) < INTEGERS)
    odd = np.flatnonzero(~((np.abs(a) == 1) | (np.abs(b) == 1) | whole))
    return _replaced(product, odd, [times(x, y) for x, y in zip(a[odd].tolist(), b[odd].tolist())])


def _sums(a: Numbers, b: Numbers) -> Numbers:
    """Sums of numbers as they are written."""
    if a.dtype == object or b.dtype == object:
        return objects([plus(x, y) for x, y in zip(a.tolist(), b.tolist())])
    total: Numbers = a + b
    whole = (a == np.floor(a)) & (b == np.floor(b)) & (np.abs(total) < INTEGERS)
    odd = np.flatnonzero(~(whole | (a == 0) | (b == 0)))
    return _replaced(total, odd, [plus(x, y) for x, y in zip(a[odd].tolist(), b[odd].tolist())])


def _signed(array: Numbers, factor: float) -> Numbers:
    """Times 1 or -1, without a sign on zero."""
    if factor > 0:
        return array
    return objects([negated(item) for item in array.tolist()]) if array.dtype == object else \
        0.0 - array


class ArrayOperations:
    """What arrays of variables and arrays of expressions have in common."""

    __slots__ = ()
    __array_ufunc__ = None
    model: Model

    @property
    def shape(self) -> tuple[int, ...]:
        raise NotImplementedError

    def _linear(self) -> LinearArray:
        raise NotImplementedError

    def __array__(self, dtype: Any = None) -> npt.NDArray[np.object_]:
        # What asks for numbers, as matrices of scipy.sparse do, gets none and leaves the operation
        # to this side.
        array = np.empty((), object)
        array[()] = self
        return array

    def __len__(self) -> int:
        return self.shape[0]

    @property
    def size(self) -> int:
        return math.prod(self.shape)

    def __add__(self, other: Any) -> LinearArray:
        return self._linear()._plus(other, 1.0)

    __radd__ = __add__

    def __sub__(self, other: Any) -> LinearArray:
        return self._linear()._plus(other, -1.0)

    def __rsub__(self, other: Any) -> LinearArray:
        return (-self)._plus(other, 1.0)

    def __neg__(self) -> LinearArray:
        return self * -1.0

    def __mul__(self, factor: Any) -> LinearArray:
        if isinstance(factor, (Linear, ArrayOperations)):
            raise TypeError("a product of variables is not linear")
        source = self._linear()
        factors = finite(numbers(factor, "factor"), "factor")
        shape = np.broadcast_shapes(source.shape, factors.shape)
        source = source._broadcast(shape)
        by = np.broadcast_to(factors, shape).reshape(-1)
        counts = np.diff(source.starts)
        return LinearArray(source.model, shape, source.starts, source.columns,
                           _products(source.values, np.repeat(by, counts)),
                           _products(source.constants, by))

    __rmul__ = __mul__

    def __rmatmul__(self, left: Any) -> Any:
        """``A @ x`` for a matrix or a vector of numbers and a one-dimensional x."""
        source = self._linear()
        if len(source.shape) != 1:
            raise ValueError(f"@: one dimension is needed, not the shape {source.shape}")
        is_vector = not hasattr(left, "tocsr") and np.ndim(left) == 1
        rows = matrix([left] if is_vector else left, "matrix", source.shape[0])
        product = source._times_rows(rows)
        return product[0] if is_vector else product

    def __matmul__(self, right: Any) -> Any:
        """``x @ A`` is ``A.T @ x``."""
        return self.__rmatmul__(right.T if hasattr(right, "T") else np.transpose(right))

    def sum(self, axis: Optional[int] = None) -> Any:
        """The sum of all, or along an axis."""
        source = self._linear()
        order = np.arange(source.size).reshape(source.shape)
        shape: tuple[int, ...] = (1,) if axis is None else np.sum(order, axis=axis).shape
        order = order.reshape(1, -1) if axis is None else np.moveaxis(order, axis, -1)
        width = order.shape[-1]
        taken = source._taken(order.reshape(-1), (order.size,))
        count = math.prod(shape)
        adding = Rows((count, order.size), np.arange(0, order.size + 1, width or 1, np.uint64)
                      if width else np.zeros(count + 1, np.uint64),
                      np.arange(order.size, dtype=np.uint32), np.ones(order.size))
        total = taken._times_rows(adding)
        return total[0] if axis is None else \
            LinearArray(total.model, shape, total.starts, total.columns, total.values,
                        total.constants)

    def __lt__(self, other: Any) -> Any:
        raise TypeError("linear programs have no strict inequalities: <= and >= are there")

    def __gt__(self, other: Any) -> Any:
        return self < other

    def __le__(self, other: Any) -> ConstraintArray:
        return self._compared(other, -math.inf, 0.0)

    def __ge__(self, other: Any) -> ConstraintArray:
        return self._compared(other, 0.0, math.inf)

    def __eq__(self, other: Any) -> ConstraintArray:  # type: ignore[override]
        return self._compared(other, 0.0, 0.0)

    def __ne__(self, other: Any) -> Any:
        raise TypeError("linear programs have no constraints with !=")

    __hash__ = None  # type: ignore[assignment]

    def _compared(self, other: Any, lower: float, upper: float) -> ConstraintArray:
        difference = self._linear()._plus(other, -1.0)
        sides = _signed(difference.constants, -1.0)
        difference.constants = np.zeros(sides.size)
        low, high = (sides if math.isfinite(side) else np.full(sides.size, side)
                     for side in (lower, upper))
        return ConstraintArray(difference, low, high)


class LinearArray(ArrayOperations):
    """Linear expressions in the shape of an array; `columns` are the keys of variables.

    >>> import nuv
    >>> x = nuv.Model().variables("x", 3)
    >>> totals = [[1, 1, 0], [0, 0.5, 2]] @ x - 1
    >>> totals.shape, totals[1]
    ((2,), 0.5 x_1 + 2 x_2 - 1)
    """

    __slots__ = ("model", "_shape", "starts", "columns", "values", "constants")

    def __init__(self, model: Model, shape: tuple[int, ...], starts: Indices, columns: Indices,
                 values: Numbers, constants: Numbers) -> None:
        self.model = model
        self._shape = shape
        self.starts = starts
        self.columns = columns
        self.values = values
        self.constants = constants

    @property
    def shape(self) -> tuple[int, ...]:
        return self._shape

    def _linear(self) -> LinearArray:
        return self

    def _taken(self, order: Indices, shape: tuple[int, ...]) -> LinearArray:
        """The expressions of these places, in a shape."""
        counts = np.diff(self.starts)[order]
        starts = np.concatenate(([0], np.cumsum(counts)))
        at = np.arange(starts[-1]) + np.repeat(self.starts[:-1][order] - starts[:-1], counts)
        return LinearArray(self.model, shape, starts, self.columns[at], self.values[at],
                           self.constants[order])

    def _broadcast(self, shape: tuple[int, ...]) -> LinearArray:
        if shape == self.shape:
            return self
        order = np.broadcast_to(np.arange(self.size).reshape(self.shape), shape)
        return self._taken(order.reshape(-1), shape)

    def __getitem__(self, key: Any) -> Any:
        order = np.arange(self.size).reshape(self.shape)[key]
        if isinstance(order, np.ndarray):
            return self._taken(order.reshape(-1), order.shape)
        part = slice(self.starts[order], self.starts[order + 1])
        return Expression(self.model, dict(zip(self.columns[part].tolist(),
                                               self.values[part].tolist())),
                          as_number(self.constants[order], "constant"))

    def __iter__(self) -> Iterator[Any]:
        return (self[k] for k in range(len(self)))

    def _plus(self, other: Any, factor: float) -> LinearArray:
        if isinstance(other, Linear):
            other = _single(other, self.model)
        if not isinstance(other, ArrayOperations):
            added = finite(numbers(other, "constant"), "constant")
            shape = np.broadcast_shapes(self.shape, added.shape)
            mine = self._broadcast(shape)
            added = _signed(np.broadcast_to(added, shape).reshape(-1), factor)
            return LinearArray(mine.model, shape, mine.starts, mine.columns, mine.values,
                               _sums(mine.constants, added))
        if other.model is not self.model:
            raise ValueError("the variables of an expression are of different models")
        shape = np.broadcast_shapes(self.shape, other.shape)
        mine, theirs = self._broadcast(shape), other._linear()._broadcast(shape)
        rows = np.concatenate([np.repeat(np.arange(mine.size), np.diff(part.starts))
                               for part in (mine, theirs)])
        return _gathered(self.model, shape, rows, np.concatenate((mine.columns, theirs.columns)),
                         np.concatenate((mine.values, _signed(theirs.values, factor))),
                         _sums(mine.constants, _signed(theirs.constants, factor)))

    def _times_rows(self, left: Rows) -> LinearArray:
        """Each row of a matrix, times this vector of expressions."""
        places = left.indices.astype(np.int64)
        rows = np.repeat(np.arange(left.shape[0]), np.diff(left.starts.astype(np.int64)))
        taken = self._taken(places, (places.size,))
        counts = np.diff(taken.starts)
        constants: Numbers = np.zeros(left.shape[0])
        if taken.constants.any():
            totals: list[Coefficient] = [0.0] * left.shape[0]
            for row, number in zip(rows.tolist(), _products(taken.constants, left.values).tolist()):
                totals[row] = plus(totals[row], number)
            constants = objects(totals)
        return _gathered(self.model, (left.shape[0],), np.repeat(rows, counts), taken.columns,
                         _products(taken.values, np.repeat(left.values, counts)), constants)

    def _evaluated(self, values: Doubles) -> Doubles:
        """The values for those of all variables by key."""
        rows = np.repeat(np.arange(self.size), np.diff(self.starts))
        products = self.values.astype(np.float64) * values[self.columns]
        constants: Doubles = self.constants.astype(np.float64)
        constants += np.bincount(rows, products, self.size)
        return constants.reshape(self.shape)

    @property
    def value(self) -> Doubles:
        """In the model's last solution."""
        found: Doubles = self.model.solution.value(self)
        return found

    def __repr__(self) -> str:
        return f"<linear expressions, shape {self.shape}>"


class VariableArray(ArrayOperations):
    """Variables in the shape of an array; made by ``Model.variables``.

    >>> import nuv
    >>> x = nuv.Model().variables("x", (2, 3))
    >>> x.shape, x[1, 0], x.sum(axis=0)[2], x.T.shape
    ((2, 3), x_1_0, x_0_2 + x_1_2, (3, 2))
    """

    __slots__ = ("model", "key")

    def __init__(self, model: Model, key: Indices) -> None:
        self.model = model
        #: Keys stay when others are removed.
        self.key = key

    @property
    def index(self) -> Indices:
        """The numbers of their columns."""
        found: Indices = self.model._columns.now(self.key)
        return found

    @property
    def shape(self) -> tuple[int, ...]:
        return self.key.shape

    @property
    def T(self) -> VariableArray:
        return VariableArray(self.model, self.key.T)

    def reshape(self, *shape: Any) -> VariableArray:
        return VariableArray(self.model, self.key.reshape(*shape))

    def _linear(self) -> LinearArray:
        size = self.key.size
        return LinearArray(self.model, self.shape, np.arange(size + 1), self.key.reshape(-1),
                           np.ones(size), np.zeros(size))

    def __getitem__(self, key: Any) -> Any:
        picked = self.key[key]
        return VariableArray(self.model, picked) if isinstance(picked, np.ndarray) else \
            Variable(self.model, int(picked))

    def __iter__(self) -> Iterator[Any]:
        return (self[k] for k in range(len(self)))

    @property
    def value(self) -> Doubles:
        """In the model's last solution."""
        found: Doubles = self.model.solution.value(self)
        return found

    @property
    def reduced_cost(self) -> Doubles:
        found: Doubles = self.model.solution.reduced_cost(self)
        return found

    def __repr__(self) -> str:
        return f"<variables, shape {self.shape}>"


class ConstraintArray:
    """Constraints in the shape of an array; ``Model.add`` makes rows of them.

    >>> import nuv
    >>> (nuv.Model().variables("x", 3) <= [1, 2, 3])[2]
    x_2 <= 3
    """

    __slots__ = ("expressions", "lower", "upper")

    def __init__(self, expressions: LinearArray, lower: Numbers, upper: Numbers) -> None:
        self.expressions = expressions
        self.lower = lower
        self.upper = upper

    def __bool__(self) -> bool:
        raise TypeError("constraints are neither true nor false; for a <= x <= b use add_range")

    def __repr__(self) -> str:
        return f"<constraints, shape {self.expressions.shape}>"

    def __getitem__(self, at: int) -> Constraint:
        lower, upper = (side.reshape(self.expressions.shape)[at] for side in
                        (self.lower, self.upper))
        return Constraint(self.expressions[at], as_number(lower, "lower"), as_number(upper, "upper"))


def _single(value: Linear, model: Model) -> LinearArray:
    """An expression as an array without dimensions."""
    expression = value._expression()
    columns = np.array(list(expression.terms), np.int64)
    return LinearArray(expression.model or model, (), np.array([0, columns.size]), columns,
                       objects(list(expression.terms.values())), objects([expression.constant]))


def _gathered(model: Model, shape: tuple[int, ...], rows: Indices, columns: Indices,
              values: Numbers, constants: Numbers) -> LinearArray:
    """Rows of entries in any order, of which several may be of the same column."""
    order = np.lexsort((columns, rows))
    rows, columns, values = rows[order], columns[order], values[order]
    again = (np.diff(rows) == 0) & (np.diff(columns) == 0)
    if again.any():
        first = np.concatenate(([True], ~again))
        target = np.cumsum(first) - 1
        totals: dict[int, Coefficient] = {}
        kept = values[first]
        for k in np.flatnonzero(~first).tolist():
            place = int(target[k])
            before = totals[place] if place in totals else as_number(kept[place], "coefficient")
            totals[place] = plus(before, as_number(values[k], "coefficient"))
        values = _replaced(kept, np.array(list(totals), np.int64), list(totals.values()))
        rows, columns = rows[first], columns[first]
    starts = np.zeros(math.prod(shape) + 1, np.int64)
    np.cumsum(np.bincount(rows, minlength=starts.size - 1), out=starts[1:])
    return LinearArray(model, shape, starts, columns, values, constants)
