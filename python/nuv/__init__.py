"""Linear programs with their proof: an answer in doubles, checked in exact arithmetic."""

from ._library import CertificateError, Error, FileError, ModelError
from ._linprog import linprog
from ._result import ConflictMember, Exact, LinprogResult, Marginals
from ._version import VERSION as __version__

__all__ = ["CertificateError", "ConflictMember", "Error", "Exact", "FileError", "LinprogResult",
           "Marginals", "ModelError", "__version__", "linprog"]
