"""The shared libraries, and what a call into them comes back with.

They are looked for in the folder that the environment variable NUV_LIBRARY_DIR names, then beside
this file (where a wheel has them), then wherever the system's loader looks.
"""

from __future__ import annotations

import os
from pathlib import Path
from typing import Any

from ._interface import ffi
from ._version import VERSION

_SONAME_VERSION = ".".join(VERSION.split(".")[:2])


class Error(Exception):
    """What the library refused, and why; the base of this package's own exceptions.

    >>> import nuv
    >>> try:
    ...     nuv.Model.from_text("Minimize x +")
    ... except nuv.Error as error:
    ...     print(type(error).__name__, error.code)
    ModelError lp.unfinished
    """

    def __init__(self, message: str, code: str = "") -> None:
        super().__init__(message)
        #: For programs, the same in every version: ``"lp.unknown-section"``; may be empty.
        self.code = code

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self), (self.args[0], self.code)


class ModelError(Error, ValueError):
    """The numbers or names are none of a model, or a text is not well formed.

    >>> import nuv
    >>> issubclass(nuv.ModelError, ValueError)
    True
    """


class FileError(Error, OSError):
    """A file cannot be read or written.

    >>> import nuv
    >>> issubclass(nuv.FileError, OSError)
    True
    """


class CertificateError(Error):
    """A certificate does not prove what it claims, or is about another model.

    >>> import nuv
    >>> proof = nuv.linprog([1], [[-1]], [-1]).certificate
    >>> try:
    ...     nuv.Model.from_arrays([1], [[-1]], row_upper=-2).verify(proof)
    ... except nuv.CertificateError:
    ...     print("refused")
    refused
    """


def _open(name: str) -> Any:
    file = f"lib{name}.so.{_SONAME_VERSION}"
    given = os.environ.get("NUV_LIBRARY_DIR")
    for folder in (Path(given) if given else None, Path(__file__).parent / "lib"):
        if folder is not None and (folder / file).exists():
            return ffi.dlopen(str(folder / file))
    if given:
        raise ImportError(f"NUV_LIBRARY_DIR: there is no {file} in {given}")
    try:
        return ffi.dlopen(file)
    except OSError as error:
        raise ImportError(f"nuv: {error}") from error


# The model layer asks for the core by its soname, which the loader then has already.
core: Any = _open("NuvLinearProgramming")
lib: Any = _open("NuvModel")

_found = ffi.string(lib.NuvModelGetVersion()).decode()
if _found.split(".")[:2] != VERSION.split(".")[:2]:
    raise ImportError(f"nuv {VERSION} needs libraries of the same version, and these are {_found}")

_EXCEPTIONS: dict[int, type[Error]] = {
    lib.NUV_MODELRESULT_InvalidModel: ModelError,
    lib.NUV_MODELRESULT_BadText: ModelError,
    lib.NUV_MODELRESULT_CannotRead: FileError,
    lib.NUV_MODELRESULT_CannotWrite: FileError,
    lib.NUV_MODELRESULT_Refused: CertificateError,
}


def diagnostics() -> Any:
    """A place for what one call has to say."""
    return owned(lib.NuvDiagnosticsConstruct(), lib.NuvDiagnosticsDestruct)


def owned(handle: Any, destruct: Any) -> Any:
    """A handle that is given back with its last reference."""
    if handle == ffi.NULL:
        raise MemoryError
    return ffi.gc(handle, destruct)


def check(result: int, told: Any = None) -> None:
    """Raises what a result other than Ok stands for."""
    if result == lib.NUV_MODELRESULT_Ok:
        return
    if result == lib.NUV_MODELRESULT_NoMemory:
        raise MemoryError
    message, code = _reason(told)
    name = ffi.string(lib.NuvModelGetResultName(result)).decode()
    message = message or f"the library answers {name}"
    if result == lib.NUV_MODELRESULT_InvalidArgument:
        raise ValueError(message)
    raise _EXCEPTIONS.get(result, Error)(message, code)


def _reason(told: Any) -> tuple[str, str]:
    """All that was told, as people see it, and the code of the first error."""
    if told is None or lib.NuvDiagnosticsGetCount(told) == 0:
        return "", ""
    text = ffi.new("NuvText**")
    if lib.NuvDiagnosticsMakeText(told, text) != lib.NUV_MODELRESULT_Ok:
        return "", ""
    first = ffi.new("NuvDiagnostic*")
    first.size = ffi.sizeof("NuvDiagnostic")
    code = ""
    for k in range(lib.NuvDiagnosticsGetCount(told)):
        lib.NuvDiagnosticsGet(told, k, first)
        if first.severity == lib.NUV_SEVERITY_Error:
            code = ffi.string(first.code).decode()
            break
    return take_text(text).decode("utf-8", "replace").strip(), code


def take_text(text: Any) -> bytes:
    """The bytes of a text that the library has made, which is given back."""
    made = owned(text[0], lib.NuvTextDestruct)
    data = ffi.buffer(lib.NuvTextGetData(made), lib.NuvTextGetSize(made))[:]
    ffi.release(made)
    return bytes(data)
