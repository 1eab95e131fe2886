"""A model as the library has it."""

from __future__ import annotations

from typing import Any, Optional, Sequence

import numpy as np
import numpy.typing as npt

from ._arrays import Doubles, Rows, pointer
from ._interface import ffi
from ._library import check, diagnostics, lib, owned, take_text

FORMATS = {"": lib.NUV_FORMAT_ByContent, "lp": lib.NUV_FORMAT_Lp, "mps": lib.NUV_FORMAT_Mps,
           "mps-fixed": lib.NUV_FORMAT_MpsFixed, "mps-free": lib.NUV_FORMAT_MpsFree}


def assign(handle: Any, costs: Optional[Doubles], rows: Rows, row_lower: Optional[Doubles],
           row_upper: Optional[Doubles], lower: Optional[Doubles], upper: Optional[Doubles],
           maximize: bool = False, constant: float = 0.0, column_names: bytes = b"",
           row_names: bytes = b"") -> None:
    """Makes a model the one of these arrays. None is the default of the library."""
    given = ffi.new("NuvModelArrays*")
    check(lib.NuvModelArraysInit(given, ffi.sizeof("NuvModelArrays")))
    given.sense = lib.NUV_SENSE_Maximize if maximize else lib.NUV_SENSE_Minimize
    given.numRows, given.numColumns = rows.shape
    given.layout = lib.NUV_LAYOUT_ByColumns if rows.by_columns else lib.NUV_LAYOUT_ByRows
    given.numEntries = rows.values.size
    given.constant = constant
    given.costs = pointer(costs, "double")
    given.columnLower, given.columnUpper = pointer(lower, "double"), pointer(upper, "double")
    given.rowLower, given.rowUpper = pointer(row_lower, "double"), pointer(row_upper, "double")
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


def construct() -> Any:
    """An empty model."""
    return owned(lib.NuvModelConstruct(), lib.NuvModelDestruct)


def from_arrays(costs: Doubles, rows: Rows, row_lower: Doubles, row_upper: Doubles,
                lower: Doubles, upper: Doubles) -> Any:
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


def state(handle: Any) -> tuple[Any, ...]:
    """What `assign` makes the same model of."""
    held = ffi.new("NuvModelArrays*")
    held.size = ffi.sizeof("NuvModelArrays")
    check(lib.NuvModelGetArrays(handle, held))

    def array(data: Any, kind: type, size: int) -> npt.NDArray[Any]:
        if data == ffi.NULL:
            return np.zeros(size, kind)
        return np.frombuffer(ffi.buffer(data, size * np.dtype(kind).itemsize)[:], kind)

    num_rows, num_columns = held.numRows, held.numColumns
    rows = Rows((num_rows, num_columns), array(held.starts, np.uint64, num_rows + 1),
                array(held.indices, np.uint32, held.numEntries),
                array(held.values, np.float64, held.numEntries))
    sides = [array(data, np.float64, size) for data, size in (
        (held.costs, num_columns), (held.rowLower, num_rows), (held.rowUpper, num_rows),
        (held.columnLower, num_columns), (held.columnUpper, num_columns))]
    names = [b"".join(name.encode() + b"\0" for name in names_of(handle, is_row))
             for is_row in (False, True)]
    return (sides[0], rows, *sides[1:], held.sense == lib.NUV_SENSE_Maximize, held.constant, *names)
