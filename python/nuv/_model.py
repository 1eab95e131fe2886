"""Models for people: variables, constraints made with operators, whole matrices, files."""

from __future__ import annotations

import math
import os
import threading
from typing import Any, Callable, Mapping, Optional, Union

import numpy as np

from . import _basis
from ._arrays import as_number, counted, doubles, escaped, finite, matrix, sides, vector
from ._basis import Basis
from ._claim import Judgement, prove
from ._edits import Edits, Names, text_argument
from ._expression import Variable
from ._handle import FORMATS, array_of, assign, block, copied, held, state
from ._interface import ffi
from ._library import check, diagnostics, lib, owned, take_text
from ._picture import Picture, picture
from ._progress import follow
from ._record import Record
from ._repair import Repair, repair
from ._rows import Row
from ._solution import Ranged, Solution
from ._solve import Interrupted, Options, Progress, solve, verify

Weights = Union[None, Mapping[Any, float], Any]

#: A model with more coefficients shows how many it has, and not all of them.
_SHOWN = 1000


class Model(Edits):
    """A linear program, to be minimised unless ``maximize`` says otherwise.

    >>> import nuv
    >>> model = nuv.Model()
    >>> chairs, tables = model.variable("chairs"), model.variable("tables")
    >>> wood = model.add(2 * chairs + 5 * tables <= 300, "wood")
    >>> labour = model.add(4 * chairs + 3 * tables <= 240, "labour")
    >>> model.maximize(30 * chairs + 70 * tables)
    >>> model.solve()
    <optimal 4242.857142857143, proved as written, exactly 29700/7>
    >>> chairs.exact, wood.dual
    (Fraction(150, 7), 13.571428571428571)
    """

    def __init__(self, name: str = "") -> None:
        super().__init__()
        self._session: Any = None
        self._lock = threading.Lock()
        self._solution: Optional[Solution] = None
        if name:
            check(lib.NuvModelSetName(self._handle, text_argument(name, "name")))

    @classmethod
    def read(cls, path: Union[str, os.PathLike[str]], relax: bool = False) -> Model:
        """The model in a file in LP or MPS format, plain or gzipped.

        With `relax`, integer variables are taken for continuous ones instead of being refused.
        """
        model, told = cls(), diagnostics()
        check(lib.NuvModelRead(model._handle, os.fsencode(path), _read_options(relax), told), told)
        model._is_exact = True
        return model

    @classmethod
    def from_text(cls, text: Union[str, bytes], name: str = "text.lp", relax: bool = False) -> Model:
        """The same for what a file would hold; the ending of `name` says the format if need be."""
        model, told = cls(), diagnostics()
        data = text.encode() if isinstance(text, str) else text
        check(lib.NuvModelReadText(model._handle, data, len(data), text_argument(name, "name"),
                                   _read_options(relax), told), told)
        model._is_exact = True
        return model

    @classmethod
    def from_arrays(cls, c: Any, A: Any = None, row_lower: Any = -math.inf,
                    row_upper: Any = math.inf, lower: Any = 0.0, upper: Any = math.inf, *,
                    maximize: bool = False, constant: float = 0.0, names: Names = None,
                    row_names: Names = None) -> Model:
        """``c @ x`` subject to ``row_lower <= A @ x <= row_upper`` and ``lower <= x <= upper``.

        A may be dense or of scipy.sparse; a number stands for a whole vector of sides or bounds.

        >>> import nuv
        >>> nuv.Model.from_arrays([1, 1], [["1/3", 1]], row_lower=1).solve()
        <optimal 1.0, proved as written, exactly 1>
        """
        if not isinstance(maximize, (bool, np.bool_)):
            raise TypeError(f"maximize: True or False is needed, not a {type(maximize).__name__}")
        costs = finite(vector(c, "c", int(np.size(c))), "c")
        rows = matrix([] if A is None else A, "A", costs.size, either=True)
        model = cls()
        model._is_exact = assign(
            model._handle, costs, rows, sides(row_lower, "row_lower", rows.shape[0]),
            sides(row_upper, "row_upper", rows.shape[0]), sides(lower, "lower", costs.size),
            sides(upper, "upper", costs.size), bool(maximize), as_number(constant, "constant"),
            block(names, "names", costs.size), block(row_names, "row_names", rows.shape[0]))
        return model

    def write(self, path: Union[str, os.PathLike[str]], format: str = "") -> None:
        """Writes a file: MPS for a path that ends with .mps, else LP; with .gz behind, packed."""
        told = diagnostics()
        check(lib.NuvModelWrite(self._handle, os.fsencode(path), _format(format), told), told)

    def text(self, format: str = "lp") -> str:
        """The model as a file: "lp", "mps", "mps-fixed" or "mps-free"."""
        made, told = ffi.new("NuvText**"), diagnostics()
        check(lib.NuvModelMakeText(self._handle, _format(format), made, told), told)
        return take_text(made).decode("utf-8", "replace")

    def copy(self) -> Model:
        """A model of its own, which shares its storage until one of the two changes."""
        model = type(self)()
        model._handle = copied(self._handle)
        model._columns, model._rows = self._columns, self._rows
        model._is_exact = self._is_exact
        return model

    def solve(self, *, numbers: str = "written", time_limit: float = math.inf,
              pivot_limit: Optional[int] = None, scale: bool = False, ranging: bool = False,
              uniqueness: bool = False, exact: bool = False, proved: bool = True,
              conflict_work: Optional[int] = None,
              start: Union[Basis, Solution, None] = None,
              progress: Union[bool, Callable[[Progress], Optional[bool]], None] = None,
              log: Optional[Callable[[str], None]] = None) -> Solution:
        """Solves, from where the last solve of this model ended, and proves the answer.

        `progress` is called before each pivot and ends the solve by returning False; True shows it,
        through tqdm where that is installed. `log` is called with lines for people. Ctrl-C ends the
        solve with nuv.Interrupted, a KeyboardInterrupt, which has what is known as its
        ``solution``. With `uniqueness` it is decided, exactly, whether the optimum is the only one:
        ``solution.unique`` and ``unique_duals``. With `exact` all numbers of the solution are there
        as fractions, and in its JSON too. `conflict_work` bounds the search of a conflict
        that cannot do without any member: entries, rows and columns times pivots. With `start`, a
        basis or a solution that has one, the solve begins there instead. With ``proved=False`` the
        simplex in doubles is believed: there is no proof, and no fraction.
        """
        ranged = self._ranged() if ranging else None
        basis = None if start is None else self._basis(start, "start")
        # A session is one thread's at a time; another that comes meanwhile does without.
        is_mine = self._lock.acquire(blocking=False)
        try:
            if is_mine and self._session is None:
                self._session = owned(lib.NuvSolverConstruct(), lib.NuvSolverDestruct)
            with follow(progress) as told:
                options = Options(numbers, time_limit, pivot_limit, scale, ranging, conflict_work,
                                  told, log, basis=basis, uniqueness=uniqueness, exact=exact,
                                  proved=proved)
                handle, failure = solve(self._handle, options, self._session if is_mine else None)
        finally:
            if is_mine:
                self._lock.release()
        solution = Solution(Record(handle), (self._all_names(False), self._all_names(True)),
                            (self._columns, self._rows), ranged)
        self._solution = solution
        if isinstance(failure, KeyboardInterrupt):
            raise Interrupted(solution) from failure
        if failure is not None:
            raise failure
        return solution

    def _ranged(self) -> Ranged:
        """Costs and sides, which a solution with ranges shows beside them."""
        record = held(self._handle)
        return Ranged(array_of(record.costs, float, record.numColumns),
                      array_of(record.rowLower, float, record.numRows),
                      array_of(record.rowUpper, float, record.numRows))

    def repair(self, *, variable_weights: Weights = None, row_weights: Weights = None,
               numbers: str = "written", time_limit: float = math.inf,
               pivot_limit: Optional[int] = None) -> Repair:
        """The least change of sides and bounds that makes an infeasible model feasible.

        A weight says what a unit of change counts for, infinity that nothing there may change:
        all weights as an array, or some by handle or name. Lower bounds of zero stay.

        >>> import nuv
        >>> model = nuv.Model()
        >>> x = model.variable("x", upper=3)
        >>> need = model.add(2 * x >= 10, "need")
        >>> for change in model.repair(row_weights={need: 0.1}).changes:
        ...     print(change)
        row need, lower: 10.0 -> 6.0
        """
        weights = [self._weights(given, rows) for given, rows in
                   ((variable_weights, False), (row_weights, True))]
        return repair(self._handle, weights[0], weights[1],
                      Options(numbers, time_limit, pivot_limit),
                      (self._all_names(False), self._all_names(True)), self._adopted)

    def _weights(self, given: Weights, rows: bool) -> Any:
        size, name = (self.num_rows, "row_weights") if rows else (
            self.num_variables, "variable_weights")
        if given is None:
            return None
        if not isinstance(given, Mapping):
            weights = vector(doubles(given, name), name, size)
        else:
            weights = np.ones(size)
            for of, weight in given.items():
                if isinstance(of, str):
                    of = self.row(of) if rows else self[of]
                index = self._indices(of, (Row,) if rows else (Variable,))
                weights[index] = vector(doubles(weight, name), name, 1)
        if not (weights > 0).all():
            raise ValueError(f"{name}: must be above zero")
        return weights

    def _adopted(self, handle: Any) -> Model:
        """A model with the handles of this one."""
        model = type(self)()
        model._handle = handle
        model._columns, model._rows, model._is_exact = self._columns, self._rows, True
        return model

    def picture(self, width: int = 480) -> Picture:
        """A drawing, in SVG, of the rows and the optimum of a model with two variables.

        >>> import nuv
        >>> model = nuv.Model.from_arrays([-3, -7], [[2, 5], [4, 3]], row_upper=[300, 240])
        >>> model.picture().svg[:4]
        '<svg'
        """
        return picture(self._handle, self._all_names(False), self._all_names(True), width)

    @property
    def solution(self) -> Solution:
        """What the last solve found."""
        if self._solution is None:
            raise LookupError("the model has not been solved")
        return self._solution

    def verify(self, certificate: str, numbers: str = "written") -> str:
        """Checks a certificate in VIPR format against this model, without solving.

        Returns the verdict that it proves; raises CertificateError for one that does not.
        """
        return verify(self._handle, certificate, numbers)

    def prove(self, said: Any, *, claim: Optional[str] = None, numbers: Optional[str] = None,
              tolerance: float = 1e-9, time_limit: float = math.inf,
              progress: Optional[Callable[[Progress], Optional[bool]]] = None) -> Judgement:
        """Judges, in exact arithmetic, what somebody says of this model.

        It is said by a path: a solution file in JSON, as ``nuvlp solve --json`` and
        ``solution.json`` are, or with a name and a value in each line; by the bytes of such a file;
        by a solution; by an array of values in the order of the variables; or by a dictionary of
        values by name or handle, in which what is missing is zero. `claim` is "feasible",
        "optimal", "infeasible" or "unbounded", by default what the file says, and that values are
        optimal. `tolerance` is how far off a number may be, as a fraction of the largest number that
        it is made of, at least of 1; zero asks for exactness.

        >>> import nuv
        >>> model = nuv.Model.from_arrays([1, 1], [[1, 3]], row_lower=1, names=["x", "y"])
        >>> model.prove([0, 0.3333333333])
        <confirmed: optimal>
        >>> bool(model.prove(model.solve(exact=True), tolerance=0))
        True
        >>> model.prove(b"y 1/3", tolerance=0).evidence
        'solve'
        """
        if isinstance(said, Solution):
            said = said.json.encode()
        elif isinstance(said, Mapping):
            values = np.zeros(self.num_variables)
            for of, value in said.items():
                values[self._indices(self[of] if isinstance(of, str) else of, (Variable,))] = vector(
                    doubles(value, "said"), "said", 1)
            said = values
        elif not isinstance(said, (str, bytes, os.PathLike)):
            said = vector(doubles(said, "said"), "said", self.num_variables)
        return prove(self._handle, said, claim, numbers, tolerance, time_limit, progress)

    def read_basis(self, source: Union[str, os.PathLike[str], bytes]) -> Basis:
        """The basis in an MPS basis file of this model, or in the bytes of one.

        >>> import nuv
        >>> model = nuv.Model.from_arrays([-1], [[2]], row_upper=3, names=["x"], row_names=["row"])
        >>> text = model.basis_text(model.solve())
        >>> model.read_basis(text.encode()).variables.tolist()
        [0]
        """
        return _basis.read(self._handle, source, self.num_variables, self.num_rows)

    def write_basis(self, path: Union[str, os.PathLike[str]],
                    basis: Union[Basis, Solution, None] = None) -> None:
        """Writes a basis, by default the last solution's, as an MPS basis file; .gz packs it."""
        _basis.write(self._handle, self._basis(self.solution if basis is None else basis, "basis"), path)

    def basis_text(self, basis: Union[Basis, Solution, None] = None) -> str:
        """The same as a text."""
        return _basis.text_of(self._handle, self._basis(self.solution if basis is None else basis, "basis"))

    def _basis(self, given: Union[Basis, Solution], what: str) -> Basis:
        found = given.basis() if isinstance(given, Solution) else given
        return _basis.checked(found, self.num_variables, self.num_rows, what)

    def __repr__(self) -> str:
        return (f"<model with {counted(self.num_variables, 'variable')}, {counted(self.num_rows, 'row')} "
                f"and {counted(self.num_entries, 'coefficient')}>")

    def __str__(self) -> str:
        return self.text() if self.num_entries <= _SHOWN else repr(self)

    def _repr_html_(self) -> str:
        return f"<pre>{escaped(str(self))}</pre>"

    def _repr_svg_(self) -> Optional[str]:
        return self.picture()._repr_svg_() if self.num_variables == 2 else None

    def __reduce__(self) -> tuple[Any, ...]:
        titles = (ffi.string(lib.NuvModelGetName(self._handle)),
                  ffi.string(lib.NuvModelGetObjectiveName(self._handle)))
        return _restored, (state(self._handle, self._is_exact), titles,
                           (self._columns, self._rows, self._is_exact, self._solution))


def _restored(kept: tuple[Any, ...], titles: tuple[bytes, bytes], rest: tuple[Any, ...]) -> Model:
    model = Model()
    assign(model._handle, *kept)
    check(lib.NuvModelSetName(model._handle, titles[0]))
    check(lib.NuvModelSetObjectiveName(model._handle, titles[1]))
    model._columns, model._rows, model._is_exact, model._solution = rest
    return model


def _format(name: str) -> int:
    if name not in FORMATS:
        raise ValueError(f"format: one of {', '.join(filter(None, FORMATS))} is needed, not {name!r}")
    return int(FORMATS[name])


def _read_options(relax: bool) -> Any:
    options = ffi.new("NuvReadOptions*")
    check(lib.NuvReadOptionsInit(options, ffi.sizeof("NuvReadOptions")))
    options.relax = bool(relax)
    return options
