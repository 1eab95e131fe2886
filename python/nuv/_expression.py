"""Linear expressions of variables, and the constraints that comparisons make of them.

Coefficients are added and multiplied as the decimals they are written as: 0.1 x + 0.2 x is 0.3 x, and
x / 3 is 1/3 x. One that no double says is a fraction.
"""

from __future__ import annotations

import math
from fractions import Fraction
from typing import TYPE_CHECKING, Any, Iterable, Optional, Union

from ._arrays import INTEGERS, as_number, meant, said

if TYPE_CHECKING:
    from ._model import Model


Coefficient = Union[float, Fraction]


def plus(a: Coefficient, b: Coefficient) -> Coefficient:
    """The sum of two numbers as they are written."""
    if isinstance(a, float) and isinstance(b, float):
        total = a + b
        if a == 0 or b == 0 or a.is_integer() and b.is_integer() and abs(total) < INTEGERS:
            return total
    return said(meant(a) + meant(b))


def times(a: Coefficient, b: Coefficient) -> Coefficient:
    """The product of two numbers as they are written."""
    if isinstance(a, float) and isinstance(b, float):
        product = a * b
        if abs(a) == 1 or abs(b) == 1 or a.is_integer() and b.is_integer() and \
                abs(product) < INTEGERS:
            return product
    return said(meant(a) * meant(b))


def negated(number: Coefficient) -> Coefficient:
    """Without a sign on zero."""
    return -number if number else 0.0


def coefficient(value: Any) -> Coefficient:
    """A finite number."""
    number = as_number(value, "coefficient")
    if not math.isfinite(number):
        raise ValueError(f"coefficient: must be finite, not {number}")
    return number


def is_number(value: Any) -> bool:
    """Whether a value takes part in an expression as a number."""
    return not isinstance(value, str) and (
        isinstance(value, (int, float, Fraction)) or
        hasattr(value, "__float__") and getattr(value, "ndim", 0) == 0)


class Linear:
    """What variables and expressions have in common: arithmetic and comparisons."""

    __slots__ = ()
    # Arrays of numbers leave the operation to this side.
    __array_ufunc__ = None

    def _expression(self) -> Expression:
        raise NotImplementedError

    def __add__(self, other: Any) -> Expression:
        if _as_expression(other) is None:
            return NotImplemented
        return Expression._copied(self._expression())._increase(other, 1.0)

    def __radd__(self, other: Any) -> Expression:
        return self.__add__(other)

    def __sub__(self, other: Any) -> Expression:
        if _as_expression(other) is None:
            return NotImplemented
        return Expression._copied(self._expression())._increase(other, -1.0)

    def __rsub__(self, other: Any) -> Expression:
        return (-self).__add__(other)

    def __neg__(self) -> Expression:
        return self * -1.0

    def __pos__(self) -> Expression:
        return self._expression()

    def __mul__(self, factor: Any) -> Expression:
        if isinstance(factor, Linear):
            raise TypeError("a product of variables is not linear")
        if not is_number(factor):
            return NotImplemented
        by, source = coefficient(factor), self._expression()
        terms = {key: times(value, by) for key, value in source.terms.items()}
        return Expression(source.model, terms, times(source.constant, by))

    def __rmul__(self, factor: Any) -> Expression:
        return self.__mul__(factor)

    def __truediv__(self, divisor: Any) -> Expression:
        if not is_number(divisor):
            return NotImplemented
        by, source = meant(coefficient(divisor)), self._expression()
        terms = {key: said(meant(value) / by) for key, value in source.terms.items()}
        return Expression(source.model, terms, said(meant(source.constant) / by))

    def __rtruediv__(self, number: Any) -> Any:
        raise TypeError("a quotient by variables is not linear")

    def __pow__(self, exponent: Any) -> Any:
        raise TypeError("a power of variables is not linear")

    def __lt__(self, other: Any) -> Any:
        raise TypeError("linear programs have no strict inequalities: <= and >= are there")

    def __gt__(self, other: Any) -> Any:
        return self < other

    def __le__(self, other: Any) -> Constraint:
        return self._compared(other, -math.inf, 0.0)

    def __ge__(self, other: Any) -> Constraint:
        return self._compared(other, 0.0, math.inf)

    def __eq__(self, other: Any) -> Constraint:  # type: ignore[override]
        return self._compared(other, 0.0, 0.0)

    def __ne__(self, other: Any) -> Any:
        raise TypeError("linear programs have no constraints with !=")

    def _compared(self, other: Any, lower: float, upper: float) -> Constraint:
        if _as_expression(other) is None:
            return NotImplemented
        difference = Expression._copied(self._expression())._increase(other, -1.0)
        side, difference.constant = negated(difference.constant), 0.0
        same = None
        if isinstance(self, Variable) and isinstance(other, Variable):
            same = self.model is other.model and self.key == other.key
        return Constraint(difference, side if math.isfinite(lower) else lower,
                          side if math.isfinite(upper) else upper, same)


class Variable(Linear):
    """A variable of a model; made by ``Model.variable``.

    >>> import nuv
    >>> x = nuv.Model().variable("x", upper=3)
    >>> 2 * x + 1 <= 6, x.name, x.index
    (2 x <= 5, 'x', 0)
    """

    __slots__ = ("model", "key")

    def __init__(self, model: Model, key: int) -> None:
        self.model = model
        #: Stays when others are removed.
        self.key = key

    def _expression(self) -> Expression:
        return Expression(self.model, {self.key: 1.0}, 0.0)

    def __hash__(self) -> int:
        return hash((id(self.model), self.key))

    def __repr__(self) -> str:
        return self.name

    @property
    def index(self) -> int:
        """The number of its column."""
        return int(self.model._columns.now(self.key))

    @property
    def name(self) -> str:
        return self.model._column_name(self.index)

    @property
    def value(self) -> float:
        """In the model's last solution; the next three are of it as well."""
        return float(self.model.solution.value(self))

    @property
    def exact(self) -> Fraction:
        found: Fraction = self.model.solution.exact(self)
        return found

    @property
    def reduced_cost(self) -> float:
        """What the objective gains per unit by which the variable is moved up."""
        return float(self.model.solution.reduced_cost(self))

    @property
    def is_basic(self) -> bool:
        return self.model.solution.is_basic(self)


class Expression(Linear):
    """A sum of coefficients times variables, and a constant.

    >>> import nuv
    >>> model = nuv.Model()
    >>> x, y = model.variable("x"), model.variable("y")
    >>> 0.1 * x + (x + y) / 3 - 1
    13/30 x + 1/3 y - 1
    """

    __slots__ = ("model", "terms", "constant")

    def __init__(self, model: Optional[Model], terms: dict[int, Coefficient],
                 constant: Coefficient) -> None:
        self.model = model
        #: The coefficient by the key of its variable.
        self.terms = terms
        self.constant = constant

    @classmethod
    def _copied(cls, other: Expression) -> Expression:
        return cls(other.model, dict(other.terms), other.constant)

    def _expression(self) -> Expression:
        return self

    def _increase(self, other: Any, factor: float) -> Expression:
        """Adds what `_as_expression` takes, times 1 or -1."""
        if isinstance(other, Variable):
            self._joins(other.model)
            self.terms[other.key] = plus(self.terms.get(other.key, 0.0), factor)
            return self
        added = _as_expression(other)
        if added is None:
            raise TypeError(f"a {type(other).__name__} is no linear expression")
        if added.model is not None:
            self._joins(added.model)
        for key, value in added.terms.items():
            self.terms[key] = plus(self.terms.get(key, 0.0), times(factor, value))
        self.constant = plus(self.constant, times(factor, added.constant))
        return self

    def _joins(self, model: Model) -> None:
        if self.model is None:
            self.model = model
        elif self.model is not model:
            raise ValueError("the variables of an expression are of different models")

    def _evaluated(self, values: Any) -> float:
        """The value for those of all variables by key."""
        return math.fsum([float(self.constant), *(float(value) * float(values[key])
                                                  for key, value in self.terms.items())])

    @property
    def value(self) -> float:
        """In the model's last solution."""
        return float(self.constant) if self.model is None else \
            float(self.model.solution.value(self))

    @property
    def exact(self) -> Fraction:
        """The same as a fraction."""
        if self.model is None:
            return meant(self.constant)
        found: Fraction = self.model.solution.exact(self)
        return found

    def __repr__(self) -> str:
        parts: list[tuple[Coefficient, str]] = []
        if self.model is not None:
            now, name_of = self.model._columns.now, self.model._column_name
            parts = [(value, name_of(now(key))) for key, value in self.terms.items()]
        if self.constant or not parts:
            parts.append((self.constant, ""))
        text = ""
        for value, name in parts:
            sign = ("-" if value < 0 else "") if not text else (" - " if value < 0 else " + ")
            size = "" if abs(value) == 1 and name else shown(max(value, negated(value)))
            text += sign + " ".join(part for part in (size, name) if part)
        return text


def shown(number: Coefficient) -> str:
    """A number as people write it."""
    return str(number) if isinstance(number, Fraction) else repr(number).removesuffix(".0")


class Constraint:
    """An expression without constant between two sides; ``Model.add`` makes a row of it.

    >>> import nuv
    >>> x = nuv.Model().variable("x")
    >>> 3 * x - 1 >= 1
    3 x >= 2
    """

    __slots__ = ("expression", "lower", "upper", "_same")

    def __init__(self, expression: Expression, lower: Coefficient, upper: Coefficient,
                 same: Optional[bool] = None) -> None:
        self.expression = expression
        self.lower = lower
        self.upper = upper
        self._same = same

    def __bool__(self) -> bool:
        # Dictionaries and sets ask whether two variables are the same one.
        if self._same is not None:
            return self._same
        raise TypeError("a constraint is neither true nor false; for a <= x <= b use add_range")

    def __repr__(self) -> str:
        if self.lower == self.upper:
            return f"{self.expression!r} == {shown(self.lower)}"
        if self.lower == -math.inf:
            return f"{self.expression!r} <= {shown(self.upper)}"
        if self.upper == math.inf:
            return f"{self.expression!r} >= {shown(self.lower)}"
        return f"{shown(self.lower)} <= {self.expression!r} <= {shown(self.upper)}"


def _as_expression(value: Any) -> Optional[Expression]:
    """None for what is none."""
    if isinstance(value, Linear):
        return value._expression()
    if is_number(value):
        return Expression(None, {}, coefficient(value))
    return None


def sum(terms: Union[Linear, Iterable[Any]]) -> Expression:
    """The sum of expressions, in time in proportion to their terms.

    >>> import nuv
    >>> model = nuv.Model()
    >>> x = [model.variable(f"x{k}") for k in range(3)]
    >>> nuv.sum((k + 1) * x[k] for k in range(3))
    x0 + 2 x1 + 3 x2
    """
    total = Expression(None, {}, 0.0)
    for term in [terms] if isinstance(terms, Linear) else terms:
        total._increase(term, 1.0)
    return total
