"""Variables and linear expressions in the shape of arrays: ``A @ x <= b``.

An array of expressions is a sparse matrix by rows, one row an expression, and their constants.
"""

from __future__ import annotations

import math
from typing import TYPE_CHECKING, Any, Iterator, Optional

import numpy as np
import numpy.typing as npt

from ._arrays import INTEGERS, Doubles, Rows, doubles, finite, matrix
from ._expression import Constraint, Expression, Linear, Variable, plus, times

if TYPE_CHECKING:
    from ._model import Model

Indices = npt.NDArray[np.int64]


def _products(a: Doubles, b: Doubles) -> Doubles:
    """Products of numbers as they are written; see _expression.times."""
    product: Doubles = a * b
    whole = (a == np.floor(a)) & (b == np.floor(b)) & (np.abs(product) < INTEGERS)
    plain = (np.abs(a) == 1) | (np.abs(b) == 1) | whole
    for k in np.flatnonzero(~plain):
        product[k] = times(float(a[k]), float(b[k]))
    return product


def _sums(a: Doubles, b: Doubles) -> Doubles:
    """Sums of numbers as they are written."""
    total: Doubles = a + b
    whole = (a == np.floor(a)) & (b == np.floor(b)) & (np.abs(total) < INTEGERS)
    for k in np.flatnonzero(~(whole | (a == 0) | (b == 0))):
        total[k] = plus(float(a[k]), float(b[k]))
    return total


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
        source = self._linear()
        factors = finite(doubles(factor, "factor"), "factor")
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
        sides = 0.0 - difference.constants
        difference.constants = np.zeros_like(sides)
        return ConstraintArray(difference, lower + sides, upper + sides)


class LinearArray(ArrayOperations):
    """Linear expressions in the shape of an array."""

    __slots__ = ("model", "_shape", "starts", "columns", "values", "constants")

    def __init__(self, model: Model, shape: tuple[int, ...], starts: Indices, columns: Indices,
                 values: Doubles, constants: Doubles) -> None:
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
                          float(self.constants[order]))

    def __iter__(self) -> Iterator[Any]:
        return (self[k] for k in range(len(self)))

    def _plus(self, other: Any, factor: float) -> LinearArray:
        if isinstance(other, Linear):
            other = _single(other, self.model)
        if not isinstance(other, ArrayOperations):
            numbers = factor * finite(doubles(other, "constant"), "constant")
            shape = np.broadcast_shapes(self.shape, numbers.shape)
            mine = self._broadcast(shape)
            return LinearArray(mine.model, shape, mine.starts, mine.columns, mine.values,
                               _sums(mine.constants, np.broadcast_to(numbers, shape).reshape(-1)))
        if other.model is not self.model:
            raise ValueError("the variables of an expression are of different models")
        shape = np.broadcast_shapes(self.shape, other.shape)
        mine, theirs = self._broadcast(shape), other._linear()._broadcast(shape)
        rows = np.concatenate([np.repeat(np.arange(mine.size), np.diff(part.starts))
                               for part in (mine, theirs)])
        return _gathered(self.model, shape, rows, np.concatenate((mine.columns, theirs.columns)),
                         np.concatenate((mine.values, factor * theirs.values)),
                         _sums(mine.constants, factor * theirs.constants))

    def _times_rows(self, left: Rows) -> LinearArray:
        """Each row of a matrix, times this vector of expressions."""
        places = left.indices.astype(np.int64)
        rows = np.repeat(np.arange(left.shape[0]), np.diff(left.starts.astype(np.int64)))
        taken = self._taken(places, (places.size,))
        counts = np.diff(taken.starts)
        constants = np.zeros(left.shape[0])
        if taken.constants.any():
            for row, number in zip(rows.tolist(), _products(taken.constants, left.values).tolist()):
                constants[row] = plus(float(constants[row]), number)
        return _gathered(self.model, (left.shape[0],), np.repeat(rows, counts), taken.columns,
                         _products(taken.values, np.repeat(left.values, counts)), constants)

    def _evaluated(self, values: Doubles) -> Doubles:
        rows = np.repeat(np.arange(self.size), np.diff(self.starts))
        products = self.values * values[self.columns]
        total: Doubles = np.bincount(rows, products, self.size) + self.constants
        return total.reshape(self.shape)

    @property
    def value(self) -> Doubles:
        """In the model's last solution."""
        found: Doubles = self.model.solution.value(self)
        return found

    def __repr__(self) -> str:
        return f"<linear expressions, shape {self.shape}>"


class VariableArray(ArrayOperations):
    """Variables in the shape of an array; made by ``Model.variables``."""

    __slots__ = ("model", "index")

    def __init__(self, model: Model, index: Indices) -> None:
        self.model = model
        self.index = index

    @property
    def shape(self) -> tuple[int, ...]:
        return self.index.shape

    @property
    def T(self) -> VariableArray:
        return VariableArray(self.model, self.index.T)

    def reshape(self, *shape: Any) -> VariableArray:
        return VariableArray(self.model, self.index.reshape(*shape))

    def _linear(self) -> LinearArray:
        size = self.index.size
        return LinearArray(self.model, self.shape, np.arange(size + 1), self.index.reshape(-1),
                           np.ones(size), np.zeros(size))

    def __getitem__(self, key: Any) -> Any:
        picked = self.index[key]
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
    """Constraints in the shape of an array; ``Model.add`` makes rows of them."""

    __slots__ = ("expressions", "lower", "upper")

    def __init__(self, expressions: LinearArray, lower: Doubles, upper: Doubles) -> None:
        self.expressions = expressions
        self.lower = lower
        self.upper = upper

    def __bool__(self) -> bool:
        raise TypeError("constraints are neither true nor false; for a <= x <= b use add_range")

    def __getitem__(self, at: int) -> Constraint:
        lower, upper = (side.reshape(self.expressions.shape)[at] for side in
                        (self.lower, self.upper))
        return Constraint(self.expressions[at], float(lower), float(upper))


def _single(value: Linear, model: Model) -> LinearArray:
    """An expression as an array without dimensions."""
    expression = value._expression()
    columns = np.array(list(expression.terms), np.int64)
    return LinearArray(expression.model or model, (), np.array([0, columns.size]), columns,
                       np.array(list(expression.terms.values()), np.float64),
                       np.array([expression.constant]))


def _gathered(model: Model, shape: tuple[int, ...], rows: Indices, columns: Indices,
              values: Doubles, constants: Doubles) -> LinearArray:
    """Rows of entries in any order, of which several may be of the same column."""
    order = np.lexsort((columns, rows))
    rows, columns, values = rows[order], columns[order], values[order]
    again = (np.diff(rows) == 0) & (np.diff(columns) == 0)
    if again.any():
        first = np.concatenate(([True], ~again))
        target = np.cumsum(first) - 1
        total = values[first]
        for k in np.flatnonzero(~first):
            total[target[k]] = plus(float(total[target[k]]), float(values[k]))
        rows, columns, values = rows[first], columns[first], total
    starts = np.zeros(math.prod(shape) + 1, np.int64)
    np.cumsum(np.bincount(rows, minlength=starts.size - 1), out=starts[1:])
    return LinearArray(model, shape, starts, columns, values, constants)
