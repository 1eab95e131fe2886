"""Arguments as the arrays that the library reads; what is wrong with one is said by its name."""

from __future__ import annotations

from decimal import Decimal
from fractions import Fraction
from typing import Any, NamedTuple, Sequence, Union

import numpy as np
import numpy.typing as npt

from ._interface import ffi

Doubles = npt.NDArray[np.float64]
Number = Union[int, float, Fraction, Decimal, str]

#: Of magnitudes up to this, every integer is a double.
INTEGERS = 2**53


def written(value: float) -> Fraction:
    """The number that a double is written as: 0.1 is one tenth."""
    return Fraction(repr(float(value)))


def meant(value: Union[float, Fraction]) -> Fraction:
    """The same for what may be a fraction already."""
    return value if isinstance(value, Fraction) else written(value)


def as_number(value: Any, name: str, stored: bool = False) -> Union[float, Fraction]:
    """The double that says a number, or the number itself where no double says it.

    A double says what it is written as, or itself where numbers are taken as stored: then a number
    that is none is refused.
    """
    kind = type(value)
    if kind is float or kind is int and -INTEGERS <= value <= INTEGERS:
        return float(value)
    if isinstance(value, (float, np.floating)):
        return float(value)
    if isinstance(value, (int, np.integer, Fraction, Decimal, str)):
        try:
            exact = Fraction(int(value) if isinstance(value, np.integer) else value)
            nearest = float(exact)
        except (ValueError, ZeroDivisionError, OverflowError):
            return _as_special(value, name)
        if (Fraction(nearest) if stored else written(nearest)) == exact:
            return nearest
        if stored or nearest == 0:
            raise ValueError(f"{name}: {value} is not what a double stands for, and would be rounded")
        return exact
    raise TypeError(f"{name}: a {kind.__name__} is no number")


def said(number: Fraction) -> Union[float, Fraction]:
    """A number as `as_number` gives it."""
    try:
        nearest = float(number)
    except OverflowError:
        raise ValueError(f"{str(number)[:40]}... is beyond what doubles are near to") from None
    return nearest if written(nearest) == number else number


def _as_special(value: Any, name: str) -> float:
    """Infinity and NaN have no fraction."""
    if isinstance(value, Decimal) and not value.is_finite():
        return float(value)
    text = str(value)
    if text.lower().lstrip("+-") in ("inf", "infinity"):
        return float(text)
    raise ValueError(f"{name}: {text[:40]!r} is no number that a double holds")


def numbers(value: Any, name: str, stored: bool = False) -> npt.NDArray[Any]:
    """An array of any shape that lies row after row, of doubles; a copy only where it has to be.

    Where no doubles say all of the numbers, it is one of objects, `as_number`'s.
    """
    try:
        array = np.asarray(value)
    except ValueError as error:
        raise ValueError(f"{name}: the rows differ in length") from error
    kind = array.dtype.kind
    if kind == "f" and array.dtype.itemsize <= 8 or kind == "b":
        return np.ascontiguousarray(array, np.float64).reshape(array.shape)
    if kind in "iu":
        if array.size == 0 or -INTEGERS <= array.min() and array.max() <= INTEGERS:
            return array.astype(np.float64)
    elif kind not in "OUf":
        raise TypeError(f"{name}: numbers are needed, not {array.dtype}")
    if any(isinstance(item, (list, tuple, np.ndarray)) for item in array.flat):
        raise ValueError(f"{name}: the rows differ in length")
    return objects([as_number(item, name, stored) for item in array.astype(object).flat]
                   ).reshape(array.shape)


def objects(items: Sequence[Union[float, Fraction]]) -> npt.NDArray[Any]:
    """Doubles where they say all of the numbers, else objects."""
    if all(type(item) is float for item in items):
        return np.array(items, np.float64)
    array = np.empty(len(items), object)
    array[:] = items
    return array


def doubles(value: Any, name: str, stored: bool = False) -> Doubles:
    """The same where only doubles will do."""
    array = numbers(value, name, stored)
    if array.dtype == object:
        _, beside = parted(array)
        raise ValueError(f"{name}: {beside[0][1]} is not what a double stands for, and would be rounded")
    return array


def parted(array: npt.NDArray[Any]) -> tuple[Doubles, list[tuple[int, Fraction]]]:
    """The nearest doubles, and the numbers that these do not say, each behind its place."""
    if array.dtype != object:
        return array, []
    flat = list(array.flat)
    beside = [(k, item) for k, item in enumerate(flat) if isinstance(item, Fraction)]
    return np.array(flat, np.float64).reshape(array.shape), beside


def vector(value: Any, name: str, size: int, stored: bool = False) -> npt.NDArray[Any]:
    """A vector of `size` numbers; a single number stands for all of them."""
    array = numbers(value, name, stored)
    if array.ndim == 0:
        return np.full(size, array[()], array.dtype)
    array = array.reshape(-1) if array.size == max(array.shape, default=0) else array
    if array.ndim != 1 or array.size != size:
        raise ValueError(f"{name}: {size} numbers are needed, in one dimension, not {array.shape}")
    return array


def sides(value: Any, name: str, size: int) -> npt.NDArray[Any]:
    """A vector of bounds or sides, which may be infinite."""
    array = vector(value, name, size)
    if np.isnan(array.astype(np.float64, copy=False)).any():
        raise ValueError(f"{name}: must not contain nan")
    return array


def finite(array: npt.NDArray[Any], name: str) -> npt.NDArray[Any]:
    """The array, if it has neither NaN nor infinity."""
    if not np.isfinite(array.astype(np.float64, copy=False)).all():
        raise ValueError(f"{name}: must not contain inf, nan, or None")
    return array


class Rows(NamedTuple):
    """A matrix by rows, or by columns, as NuvModelArrays takes it."""

    shape: tuple[int, int]
    starts: npt.NDArray[np.uint64]
    indices: npt.NDArray[np.uint32]
    values: npt.NDArray[Any]
    by_columns: bool = False


def matrix(value: Any, name: str, columns: int | None, stored: bool = False,
           either: bool = False) -> Rows:
    """A matrix given as nested lists, an array, or what scipy.sparse has, with that many columns.

    It comes by rows, or with `either` by columns where it is stored by columns.
    """
    if hasattr(value, "tocsr") and hasattr(value, "shape"):
        return _sparse(value, name, columns, stored, either)
    array = numbers(value, name, stored)
    if array.size == 0 and array.ndim < 2:
        array = array.reshape(0, columns or 0)
    if array.ndim != 2 or columns is not None and array.shape[1] != columns:
        wanted = "two dimensions" if columns is None else f"two dimensions and {columns} columns"
        raise ValueError(f"{name}: {wanted} are needed, not the shape {array.shape}")
    finite(array, name)
    occupied = array != 0
    at = np.flatnonzero(occupied)
    starts = np.zeros(array.shape[0] + 1, np.uint64)
    np.cumsum(np.count_nonzero(occupied, axis=1), out=starts[1:])
    indices = (at % array.shape[1]).astype(np.uint32) if at.size else np.zeros(0, np.uint32)
    return Rows((array.shape[0], array.shape[1]), starts, indices, array.reshape(-1)[at])


def _sparse(value: Any, name: str, columns: int | None, stored: bool, either: bool) -> Rows:
    if len(value.shape) != 2 or columns is not None and value.shape[1] != columns:
        raise ValueError(f"{name}: {columns} columns are needed, not the shape {value.shape}")
    by_columns = either and getattr(value, "format", "") == "csc"
    packed = value if by_columns else value.tocsr()
    if not packed.has_canonical_format:
        packed = packed.copy()
        packed.sum_duplicates()
    indices = packed.indices.astype(np.uint32) if packed.indices.dtype.itemsize != 4 else \
        packed.indices.view(np.uint32)
    return Rows((int(value.shape[0]), int(value.shape[1])), packed.indptr.astype(np.uint64),
                np.ascontiguousarray(indices), finite(numbers(packed.data, name, stored), name),
                by_columns)


def stacked(upper: Rows, lower: Rows) -> Rows:
    """Two matrices by rows, one above the other."""
    return Rows((upper.shape[0] + lower.shape[0], upper.shape[1]),
                np.concatenate((upper.starts, lower.starts[1:] + upper.starts[-1])),
                np.concatenate((upper.indices, lower.indices)),
                np.concatenate((upper.values, lower.values)))


def escaped(text: str) -> str:
    """As it stands in HTML."""
    import html  # Takes a millisecond to import, and is seldom needed.

    return html.escape(text)


def counted(number: int, what: str) -> str:
    """A number of things, with an s where it is not one."""
    return f"{number} {what}" if number == 1 else f"{number} {what}s"


def pointer(array: npt.NDArray[Any] | None, element: str) -> Any:
    """Where an array lies, for a call during which it stays."""
    if array is None or array.size == 0:
        return ffi.NULL
    return ffi.cast(f"{element}*", array.ctypes.data)
