"""linprog: the arguments and the result of scipy.optimize.linprog, and a proof with it."""

from __future__ import annotations

import math
import warnings
from fractions import Fraction
from typing import Any, Callable, NamedTuple, Optional, Union

import numpy as np
import numpy.typing as npt

from ._arrays import (Doubles, Rows, as_number, doubles, finite, matrix, objects, stacked, vector,
                      written)
from ._handle import assign, construct
from ._record import Record
from ._result import ConflictMember, Exact, LinprogResult, Marginals
from ._solve import Interrupted, Options, one_of, solve

_METHODS = ("highs", "highs-ds", "highs-ipm", "simplex", "revised simplex", "interior-point")
#: Options of scipy's solvers that ask for another algorithm or another tolerance.
_WITHOUT_MEANING = frozenset((
    "presolve", "autoscale", "rr", "rr_method", "tol", "bland", "pivot", "sparse", "cholesky",
    "sym_pos", "lstsq", "ip", "pc", "alpha0", "beta", "permc_spec", "maxupdate", "mast",
    "dual_feasibility_tolerance", "primal_feasibility_tolerance", "ipm_optimality_tolerance",
    "simplex_dual_edge_weight_strategy", "mip_rel_gap"))
STATUS = {"optimal": 0, "stopped": 1, "infeasible": 2, "unbounded": 3}
_MESSAGE = {
    "optimal": "An optimum was found",
    "stopped": "A limit was reached",
    "infeasible": "The problem is infeasible",
    "unbounded": "The problem is unbounded",
}


class _Problem(NamedTuple):
    """The arguments as arrays, of objects where no doubles say them: rows of A_ub, then of A_eq."""

    c: npt.NDArray[Any]
    rows: Rows
    num_ub: int
    row_lower: npt.NDArray[Any]
    b: npt.NDArray[Any]
    lower: npt.NDArray[Any]
    upper: npt.NDArray[Any]
    stored: bool


def linprog(c: Any, A_ub: Any = None, b_ub: Any = None, A_eq: Any = None, b_eq: Any = None,
            bounds: Any = None, method: str = "highs", callback: None = None,
            options: Optional[dict[str, Any]] = None, x0: Any = None, integrality: Any = None, *,
            numbers: str = "written", proved: bool = True) -> LinprogResult:
    """Minimise ``c @ x`` subject to ``A_ub @ x <= b_ub``, ``A_eq @ x == b_eq`` and bounds.

    Arguments and result are those of ``scipy.optimize.linprog``: bounds are from 0 to infinity where
    none are given, a matrix may be sparse, and `method` may be any of its names, which all stand
    for the one method here. Numbers may also be fractions, decimals or texts such as ``"1/3"``, and
    are then those numbers, whether doubles hold them or not. With ``numbers="written"`` 0.1 is one
    tenth, with ``"stored"`` it is the double. The solve starts near `x0`, of which NaN is not known.
    With ``proved=False`` the simplex in doubles is believed, and nothing is proved.
    Of `options`, ``maxiter``, ``time_limit`` (seconds) and ``disp`` have a meaning. Ctrl-C ends a
    solve with nuv.Interrupted, a KeyboardInterrupt, whose ``solution`` is the result so far.

    The result has in addition ``proved``, ``proof``, ``exact``, ``unique``, ``conflict`` and
    ``certificate``.

    >>> import nuv
    >>> plan = nuv.linprog([-30, -70], [[2, 5], [4, 3]], [300, 240])
    >>> plan.exact.fun, plan.proof
    (Fraction(-29700, 7), 'proved as written, exactly -29700/7')
    >>> nuv.linprog([1, 1], [["-1/3", -1]], ["-1/7"], bounds=(0, "1/9")).exact.x
    [Fraction(2, 21), Fraction(1, 9)]
    """
    one_of(numbers)
    if not isinstance(method, str) or method not in _METHODS:
        raise ValueError(f"method: one of {', '.join(_METHODS)} is needed, not {method!r}")
    if callback is not None:
        raise NotImplementedError("callback: is not called here; nuv.Model.solve has progress=")
    if integrality is not None and np.any(np.asarray(integrality) != 0):
        raise NotImplementedError("integrality: all variables are continuous here")
    problem = _problem(c, A_ub, b_ub, A_eq, b_eq, bounds, numbers == "stored")
    wanted = _options({} if options is None else options, numbers)._replace(proved=proved)
    if x0 is not None:
        wanted = wanted._replace(start=vector(doubles(x0, "x0"), "x0", problem.c.size))
    model = construct()
    assign(model, problem.c, problem.rows, problem.row_lower, problem.b, problem.lower,
           problem.upper)
    handle, failure = solve(model, wanted)
    record = Record(handle)
    result = _result(record, problem, lambda: _unique(model, record, wanted))
    if isinstance(failure, KeyboardInterrupt):
        raise Interrupted(result) from failure
    if failure is not None:
        raise failure
    return result


def _problem(c: Any, A_ub: Any, b_ub: Any, A_eq: Any, b_eq: Any, bounds: Any,
             stored: bool) -> _Problem:
    costs = np.asarray(c)
    size = costs.size
    if size == 0 or costs.ndim > 1 and max(costs.shape) != size:
        raise ValueError("c: one dimension and at least one number are needed")
    costs = finite(vector(costs.reshape(-1), "c", size, stored), "c")
    upper_rows, upper_sides = _rows(A_ub, b_ub, "ub", size, stored)
    equal_rows, equal_sides = _rows(A_eq, b_eq, "eq", size, stored)
    lower, upper = _bounds(bounds, size, stored)
    sides = np.concatenate((upper_sides, equal_sides))
    row_lower = sides.copy()
    row_lower[:upper_sides.size] = -math.inf
    return _Problem(costs, stacked(upper_rows, equal_rows), upper_sides.size, row_lower, sides,
                    lower, upper, stored)


def _rows(A: Any, b: Any, which: str, columns: int,
          stored: bool) -> tuple[Rows, npt.NDArray[Any]]:
    rows = matrix([] if A is None else A, f"A_{which}", columns, stored)
    if A is None and b is not None and np.size(b) != 0:
        raise ValueError(f"b_{which}: is given without A_{which}")
    if b is None and rows.shape[0] != 0:
        raise ValueError(f"A_{which}: is given without b_{which}")
    # A number alone is the side of a single row, as scipy has it, and not of all rows.
    sides = vector(np.atleast_1d(np.asarray([] if b is None else b)), f"b_{which}", rows.shape[0],
                   stored)
    return rows, finite(sides, f"b_{which}")


def _bounds(bounds: Any, size: int, stored: bool) -> tuple[npt.NDArray[Any], npt.NDArray[Any]]:
    """None, one pair for all, or a pair for each variable; None in a pair is no bound."""
    if bounds is None or np.size(np.asarray(bounds, object)) == 0:
        return np.zeros(size), np.full(size, math.inf)
    if hasattr(bounds, "lb") and hasattr(bounds, "ub"):
        return (vector(bounds.lb, "bounds", size, stored), vector(bounds.ub, "bounds", size, stored))
    try:
        pairs = np.array([list(pair) if np.iterable(pair) and not isinstance(pair, str) else pair
                          for pair in bounds], object)
    except (TypeError, ValueError) as error:
        raise ValueError("bounds: pairs of a lower and an upper bound are needed") from error
    if pairs.shape in ((2,), (1, 2)):
        pairs = np.broadcast_to(pairs.reshape(1, 2), (size, 2))
    if pairs.shape != (size, 2):
        raise ValueError(f"bounds: a pair, or {size} pairs, are needed, not the shape {pairs.shape}")
    lower = objects([-math.inf if low is None else as_number(low, "bounds", stored)
                     for low in pairs[:, 0]])
    upper = objects([math.inf if high is None else as_number(high, "bounds", stored)
                     for high in pairs[:, 1]])
    lows, highs = lower.astype(np.float64), upper.astype(np.float64)
    if np.isnan(lows).any() or np.isnan(highs).any():
        raise ValueError("bounds: must not contain nan")
    if (lows == math.inf).any() or (highs == -math.inf).any():
        raise ValueError("bounds: no number is above infinity or below minus infinity")
    return lower, upper


def _options(given: Any, numbers: str) -> Options:
    if not isinstance(given, dict) or hasattr(given, "shape"):
        raise TypeError(f"options: a dictionary is needed, not a {type(given).__name__}")
    unknown = sorted(set(map(str, given)) - _WITHOUT_MEANING - {"maxiter", "time_limit", "disp"})
    if unknown:
        warnings.warn(f"options: unknown are {', '.join(unknown)}", UserWarning, stacklevel=3)
    limit, seconds = given.get("maxiter"), given.get("time_limit")
    return Options(numbers=numbers, pivots=None if limit is None else limit,
                   seconds=math.inf if seconds is None else seconds,
                   log=print if given.get("disp") else None)


def _unique(model: Any, found: Record, options: Options) -> Optional[bool]:
    """Decided from the basis that was found, of what is proved."""
    if not found.proved:
        return None
    columns, rows = found.array("ColumnBasis"), found.array("RowBasis")
    basis = None if columns is None or rows is None else (columns, rows)
    handle, failure = solve(model, options._replace(basis=basis, start=None, uniqueness=True))
    if failure is not None:
        raise failure
    return Record(handle).unique


def _result(found: Record, problem: _Problem,
            unique: Callable[[], Optional[bool]]) -> LinprogResult:
    message = f"{_MESSAGE[found.status]}; {found.proof_line()}."
    status, x = STATUS[found.status], found.array("Values")
    if found.status != "optimal" or x is None:
        conflict = [_member(member, problem.num_ub) for member in found.conflict()]
        result = LinprogResult._without_point(status, message, found.pivots, found.proved,
                                              found.proof_line(), conflict)
        if found.status == "stopped" and x is not None:
            result["x"], result["fun"] = x.copy(), found.info["objective"]
        return result._with_record(found)
    num_ub = problem.num_ub
    activities, duals = _of(found, "Activities"), _of(found, "Duals")
    reduced = _of(found, "ReducedCosts")
    b, lower, upper = (array.astype(np.float64, copy=False) for array in
                       (problem.b, problem.lower, problem.upper))
    residual = b - activities
    return LinprogResult(
        x=x.copy(), fun=float(found.info["objective"]), slack=residual[:num_ub],
        con=residual[num_ub:], status=status, success=True, message=message, nit=found.pivots,
        crossover_nit=0, ineqlin=Marginals(residual[:num_ub], duals[:num_ub]),
        eqlin=Marginals(residual[num_ub:], duals[num_ub:]),
        lower=Marginals(x - lower, np.maximum(reduced, 0.0)),
        upper=Marginals(upper - x, np.minimum(reduced, 0.0)), proved=found.proved,
        proof=found.proof_line(), conflict=[])._with_record(
            found, lambda: _exact(found, problem), unique)


def _of(found: Record, name: str) -> Doubles:
    array = found.array(name)
    # Adding zero takes the sign from a zero.
    return np.zeros(0) if array is None else array + 0.0


def _member(member: tuple[int, bool, bool], num_ub: int) -> ConflictMember:
    index, is_row, is_upper = member
    side = "upper" if is_upper else "lower"
    if not is_row:
        return ConflictMember("bounds", index, side)
    return ConflictMember("A_ub", index, side) if index < num_ub else \
        ConflictMember("A_eq", index - num_ub, side)


def _exact(found: Record, problem: _Problem) -> Optional[Exact]:
    """The optimum in fractions; the reduced costs are c - A^T y of the numbers meant."""
    fun, x, duals = found.exact("Objective"), found.exact("Values"), found.exact("Duals")
    if fun is None or x is None or duals is None:
        return None

    def meant(value: Union[float, Fraction]) -> Fraction:
        if isinstance(value, Fraction):
            return value
        return Fraction(value) if problem.stored else written(value)

    reduced = [meant(cost) for cost in problem.c.tolist()]
    starts, rows = problem.rows.starts.tolist(), problem.rows
    for row, dual in enumerate(duals):
        if dual != 0:
            part = slice(starts[row], starts[row + 1])
            for column, value in zip(rows.indices[part].tolist(), rows.values[part].tolist()):
                reduced[column] -= dual * meant(value)
    zero = Fraction(0)
    return Exact(fun[0], x, duals[:problem.num_ub], duals[problem.num_ub:],
                 [max(cost, zero) for cost in reduced], [min(cost, zero) for cost in reduced])
