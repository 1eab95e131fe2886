"""Linear programs with their proof: an answer in doubles, checked in exact arithmetic."""

from ._basis import Basis
from ._batch import BatchResult, solve_batch
from ._claim import Disagreement, Judgement
from ._expression import Constraint, Expression, Variable, sum
from ._library import CertificateError, Error, FileError, ModelError
from ._linprog import linprog
from ._model import Model
from ._picture import Picture
from ._repair import Change, Repair
from ._result import ConflictMember, Exact, LinprogResult, Marginals
from ._rows import Row, RowArray
from ._solution import Member, Range, Ranging, Solution
from ._solve import Interrupted, Progress
from ._vectors import ConstraintArray, LinearArray, VariableArray
from ._version import VERSION as __version__

__all__ = ["Basis", "BatchResult", "CertificateError", "Change", "ConflictMember", "Constraint",
           "ConstraintArray", "Disagreement", "Error", "Exact", "Expression", "FileError", "Interrupted",
           "Judgement", "LinearArray", "LinprogResult", "Marginals", "Member", "Model", "ModelError", "Picture",
           "Progress", "Range", "Ranging", "Repair", "Row", "RowArray", "Solution", "Variable",
           "VariableArray", "__version__", "linprog", "solve_batch", "sum"]
