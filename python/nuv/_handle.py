"""A model as the library has it."""

from __future__ import annotations

from typing import Any, Optional

from ._arrays import Doubles, Rows, pointer
from ._interface import ffi
from ._library import check, diagnostics, lib, owned


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
