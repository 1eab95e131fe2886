"""A model as the library has it."""

from __future__ import annotations

from fractions import Fraction
from typing import Any, Optional, Sequence, Union

import numpy as np
import numpy.typing as npt

from ._arrays import Doubles, Rows, parted, pointer
from ._interface import ffi
from ._library import check, diagnostics, lib, owned, take_text

FORMATS = {"": lib.NUV_FORMAT_ByContent, "lp": lib.NUV_FORMAT_Lp, "mps": lib.NUV_FORMAT_Mps,
           "mps-fixed": lib.NUV_FORMAT_MpsFixed, "mps-free": lib.NUV_FORMAT_MpsFree}


COST, COLUMN_LOWER, COLUMN_UPPER = (lib.NUV_PLACE_Cost, lib.NUV_PLACE_ColumnLower,
                                    lib.NUV_PLACE_ColumnUpper)
ROW_LOWER, ROW_UPPER, ENTRY = (lib.NUV_PLACE_RowLower, lib.NUV_PLACE_RowUpper, lib.NUV_PLACE_Entry)

#: A number that no double says, behind its NUV_PLACE_..., index and, for an entry, column.
Beside = tuple[int, int, int, Fraction]


def beside(place: int, array: Optional[npt.NDArray[Any]],
           index: Optional[npt.NDArray[Any]] = None) -> tuple[Optional[Doubles], list[Beside]]:
    """The doubles of a vector, and what they do not say; `index` are its columns or rows."""
    if array is None:
        return None, []
    nearest, others = parted(array)
    return nearest, [(place, k if index is None else int(index[k]), 0, number)
                     for k, number in others]


def entries_beside(rows: Rows) -> tuple[Rows, list[Beside]]:
    """The same for the entries of a matrix."""
    nearest, others = parted(rows.values)
    found = []
    for k, number in others:
        major = int(np.searchsorted(rows.starts, k, "right")) - 1
        at = (int(rows.indices[k]), major) if rows.by_columns else (major, int(rows.indices[k]))
        found.append((ENTRY, *at, number))
    return rows._replace(values=nearest), found


def set_beside(handle: Any, numbers: Sequence[Beside]) -> None:
    """Sets numbers that no double says, of a model that has the doubles nearest to them."""
    for place, at, column, number in numbers:
        told = diagnostics()
        check(lib.NuvModelSetExact(handle, place, at, column, str(number).encode(), told), told)


def get_beside(handle: Any, place: int, at: int, column: int = 0) -> Optional[Fraction]:
    """The number at a place of a model, if no double says it."""
    size = lib.NuvModelGetExact(handle, place, at, column, ffi.NULL, 0)
    if size == 0:
        return None
    text = ffi.new("char[]", size)
    lib.NuvModelGetExact(handle, place, at, column, text, size)
    return Fraction(ffi.string(text).decode())


def assign(handle: Any, costs: Optional[npt.NDArray[Any]], rows: Rows,
           row_lower: Optional[npt.NDArray[Any]], row_upper: Optional[npt.NDArray[Any]],
           lower: Optional[npt.NDArray[Any]], upper: Optional[npt.NDArray[Any]],
           maximize: bool = False, constant: Union[float, Fraction] = 0.0,
           column_names: bytes = b"", row_names: bytes = b"") -> bool:
    """Makes a model the one of these arrays; None is the default of the library.

    Returns whether it has numbers that no double says.
    """
    vectors, exact = [], []
    for place, array in ((COST, costs), (COLUMN_LOWER, lower), (COLUMN_UPPER, upper),
                         (ROW_LOWER, row_lower), (ROW_UPPER, row_upper)):
        nearest, others = beside(place, array)
        vectors.append(nearest)
        exact += others
    rows, others = entries_beside(rows)
    exact += others
    if isinstance(constant, Fraction):
        exact.append((lib.NUV_PLACE_Constant, 0, 0, constant))
    given = ffi.new("NuvModelArrays*")
    check(lib.NuvModelArraysInit(given, ffi.sizeof("NuvModelArrays")))
    given.sense = lib.NUV_SENSE_Maximize if maximize else lib.NUV_SENSE_Minimize
    given.numRows, given.numColumns = rows.shape
    given.layout = lib.NUV_LAYOUT_ByColumns if rows.by_columns else lib.NUV_LAYOUT_ByRows
    given.numEntries = rows.values.size
    given.constant = float(constant)
    (given.costs, given.columnLower, given.columnUpper, given.rowLower,
     given.rowUpper) = (pointer(array, "double") for array in vectors)
    given.starts = pointer(rows.starts, "uint64_t")
    given.indices = pointer(rows.indices, "uint32_t")
    given.values = pointer(rows.values, "double")
    named = ffi.from_buffer(column_names), ffi.from_buffer(row_names)
    if column_names:
        given.columnNames, given.columnNamesSize = named[0], len(column_names)
    if row_names:
        given.rowNames, given.rowNamesSize = named[1], len(row_names)
    told = diagnostics()
    check(lib.NuvModelAssignArrays(handle, given, told), told)
    set_beside(handle, exact)
    return bool(exact)


def construct() -> Any:
    """An empty model."""
    return owned(lib.NuvModelConstruct(), lib.NuvModelDestruct)


def from_arrays(costs: npt.NDArray[Any], rows: Rows, row_lower: npt.NDArray[Any],
                row_upper: npt.NDArray[Any], lower: npt.NDArray[Any],
                upper: npt.NDArray[Any]) -> Any:
    """A model without names, to be minimised."""
    handle = construct()
    assign(handle, costs, rows, row_lower, row_upper, lower, upper)
    return handle


def copied(handle: Any) -> Any:
    """Another model of the same content."""
    return owned(lib.NuvModelConstructCopy(handle), lib.NuvModelDestruct)


def block(names: Optional[Sequence[str]], what: str, count: int) -> bytes:
    """Names one behind the other, each ended by a NUL; empty ones get a name of the library's."""
    if names is None:
        return b""
    if not isinstance(names, (str, Sequence)) and getattr(names, "ndim", 0) != 1:
        raise TypeError(f"{what}: {count} names are needed, not a {type(names).__name__}")
    if isinstance(names, str) or len(names) != count:
        raise ValueError(f"{what}: {count} names are needed")
    for name in names:
        if not isinstance(name, str):
            raise TypeError(f"{what}: texts are needed, not a {type(name).__name__}")
        if "\0" in name:
            raise ValueError(f"{what}: a name must not have a NUL in it")
    return "".join(f"{name}\0" for name in names).encode()


def names_of(handle: Any, rows: bool) -> tuple[str, ...]:
    """The names of all rows, or of all columns."""
    made = ffi.new("NuvText**")
    check((lib.NuvModelMakeRowNames if rows else lib.NuvModelMakeColumnNames)(handle, made))
    return tuple(take_text(made).decode("utf-8", "replace").split("\0")[:-1])


def held(handle: Any) -> Any:
    """The record of what a model has, by rows; its arrays stay until the model changes."""
    record = ffi.new("NuvModelArrays*")
    record.size = ffi.sizeof("NuvModelArrays")
    check(lib.NuvModelGetArrays(handle, record))
    return record


def array_of(data: Any, kind: type, size: int) -> npt.NDArray[Any]:
    """A copy of an array of the library's."""
    if data == ffi.NULL:
        return np.zeros(size, kind)
    return np.frombuffer(ffi.buffer(data, size * np.dtype(kind).itemsize)[:], kind)


def state(handle: Any, is_exact: bool) -> tuple[Any, ...]:
    """What `assign` makes the same model of; `is_exact` where it may have what no double says."""
    record = held(handle)
    num_rows, num_columns = record.numRows, record.numColumns
    rows = Rows((num_rows, num_columns), array_of(record.starts, np.uint64, num_rows + 1),
                array_of(record.indices, np.uint32, record.numEntries),
                array_of(record.values, np.float64, record.numEntries))
    sides = [array_of(data, np.float64, size) for data, size in (
        (record.costs, num_columns), (record.rowLower, num_rows), (record.rowUpper, num_rows),
        (record.columnLower, num_columns), (record.columnUpper, num_columns))]
    constant: Union[float, Fraction] = record.constant
    maximize = record.sense == lib.NUV_SENSE_Maximize
    if is_exact:
        sides = [_with_beside(handle, array, place) for place, array in
                 zip((COST, ROW_LOWER, ROW_UPPER, COLUMN_LOWER, COLUMN_UPPER), sides)]
        owners = np.repeat(np.arange(num_rows), np.diff(rows.starts.astype(np.int64)))
        rows = rows._replace(values=_with_beside(handle, rows.values, ENTRY, owners, rows.indices))
        constant = get_beside(handle, lib.NUV_PLACE_Constant, 0) or constant
    names = [b"".join(name.encode() + b"\0" for name in names_of(handle, is_row))
             for is_row in (False, True)]
    return (sides[0], rows, *sides[1:], maximize, constant, *names)


def _with_beside(handle: Any, array: npt.NDArray[Any], place: int,
                 at: Optional[npt.NDArray[Any]] = None,
                 columns: Optional[npt.NDArray[Any]] = None) -> npt.NDArray[Any]:
    """The numbers at places that have these doubles."""
    found = {}
    for k in range(array.size):
        number = get_beside(handle, place, k if at is None else int(at[k]),
                            0 if columns is None else int(columns[k]))
        if number is not None:
            found[k] = number
    if found:
        array = array.astype(object)
        for k, number in found.items():
            array[k] = number
    return array
