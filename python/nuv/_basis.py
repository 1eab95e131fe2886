"""Bases as a whole, and files of them."""

from __future__ import annotations

import os
from typing import Any, NamedTuple, Union

import numpy as np
import numpy.typing as npt

from ._arrays import pointer
from ._interface import ffi
from ._library import check, diagnostics, lib, take_text
from ._record import BASIS_STATUSES

Bytes = npt.NDArray[np.uint8]


class Basis(NamedTuple):
    """What is basic: a number for each variable and each row, in the order of the model.

    0 is basic, 1 at its lower and 2 at its upper side, 3 free. ``Solution.basis()`` and
    ``Model.read_basis`` give one; ``Model.solve(start=...)`` begins there, and ``Model.write_basis``
    writes it.

    >>> import nuv
    >>> model = nuv.Model.from_arrays([-1, -1], [[1, 2], [3, 1]], row_upper=[4, 6])
    >>> basis = model.solve().basis()
    >>> basis.variables.tolist(), basis.rows.tolist()
    ([0, 0], [2, 2])
    >>> model.copy().solve(start=basis).pivots
    0
    """

    variables: Bytes
    rows: Bytes


def checked(basis: Any, num_variables: int, num_rows: int, what: str) -> Basis:
    """The arrays of a basis that a model of this size may have."""
    if not isinstance(basis, tuple) or len(basis) != 2:
        raise TypeError(f"{what}: a basis is needed, not a {type(basis).__name__}")
    arrays = []
    for given, size, of in ((basis[0], num_variables, "variables"), (basis[1], num_rows, "rows")):
        array = np.asarray(given)
        if array.shape != (size,) or array.size and array.dtype.kind not in "iu":
            raise ValueError(f"{what}: a number for each of {size} {of} is needed")
        if array.size and not (0 <= array.min() and array.max() < len(BASIS_STATUSES)):
            raise ValueError(f"{what}: numbers from 0 to {len(BASIS_STATUSES) - 1} are needed")
        arrays.append(np.ascontiguousarray(array, np.uint8))
    return Basis(*arrays)


def read(model: Any, source: Union[str, os.PathLike[str], bytes], num_variables: int,
         num_rows: int) -> Basis:
    """Out of a file, or out of the bytes of one."""
    basis, told = Basis(np.zeros(num_variables, np.uint8), np.zeros(num_rows, np.uint8)), diagnostics()
    given = _given(basis)
    if isinstance(source, bytes):
        result = lib.NuvModelReadBasisText(model, source, len(source), b"basis", *given, told)
    else:
        result = lib.NuvModelReadBasis(model, os.fsencode(source), *given, told)
    check(result, told)
    return basis


def write(model: Any, basis: Basis, path: Union[str, os.PathLike[str]]) -> None:
    """As an MPS basis file."""
    told = diagnostics()
    check(lib.NuvModelWriteBasis(model, os.fsencode(path), *_given(basis), told), told)


def text_of(model: Any, basis: Basis) -> str:
    """The same as a text."""
    made, told = ffi.new("NuvText**"), diagnostics()
    check(lib.NuvModelMakeBasisText(model, *_given(basis), made, told), told)
    return take_text(made).decode("utf-8", "replace")


def _given(basis: Basis) -> tuple[Any, int, Any, int]:
    return (pointer(basis.variables, "uint8_t"), basis.variables.size,
            pointer(basis.rows, "uint8_t"), basis.rows.size)
