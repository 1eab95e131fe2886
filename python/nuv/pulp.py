"""A solver for PuLP: ``problem.solve(nuv.pulp.NUV())``. It asks for the package pulp."""

from __future__ import annotations

import math
from typing import Any, Optional

import numpy as np
import pulp
from pulp import constants

from ._arrays import Rows, as_number, objects
from ._expression import Coefficient
from ._model import Model
from ._solution import Solution

_core = getattr(pulp.apis, "core", pulp.apis)
_LpSolver: Any = _core.LpSolver
#: From PuLP 4 on a solve gives LpSolveStats back, and nothing of it is written into the problem.
_LATER: Any = getattr(constants, "LpSolveStatus", None)
_STATUS = {"optimal": 1, "infeasible": -1, "unbounded": -2, "stopped": 0}
_STOPPED = {"time limit": "TimeLimit", "pivot limit": "IterationLimit", "cancelled": "Interrupted"}


class NUV(_LpSolver):  # type: ignore[misc]
    """Solves and proves; values, reduced costs, duals and slacks go into the problem.

    ``solution``, a nuv.Solution, then has the proof and the exact numbers, by the names in the
    problem. A problem with integer variables is refused, unless ``mip=False`` relaxes it.

    >>> import pulp
    >>> from nuv.pulp import NUV
    >>> problem = pulp.LpProblem("plan", pulp.LpMaximize)
    >>> x, y = pulp.LpVariable("x", 0), pulp.LpVariable("y", 0)
    >>> problem += 30 * x + 70 * y
    >>> problem += 2 * x + 5 * y <= 300, "wood"
    >>> problem += 4 * x + 3 * y <= 240, "labour"
    >>> solver = NUV()
    >>> pulp.LpStatus[problem.solve(solver)], round(x.value(), 3), solver.solution.proof
    ('Optimal', 21.429, 'proved as written, exactly 29700/7')
    """

    name = "NUV"

    def __init__(self, mip: bool = True, msg: bool = False,
                 options: Optional[list[Any]] = None, timeLimit: Optional[float] = None,
                 pivotLimit: Optional[int] = None, numbers: str = "written",
                 logPath: Optional[str] = None) -> None:
        super().__init__(mip=mip, msg=msg, options=options, timeLimit=timeLimit, logPath=logPath,
                         pivotLimit=pivotLimit, numbers=numbers)
        #: What the last solve found.
        self.solution: Optional[Solution] = None

    def available(self) -> bool:
        """There is nothing else that it needs."""
        return True

    def actualSolve(self, lp: Any, **kwargs: Any) -> Any:
        """Called by ``LpProblem.solve``."""
        begin = None if _LATER is None else _core.clocks()
        variables, constraints = list(lp.variables()), _constraints(lp)
        self._refuse(lp, variables)
        lines: list[str] = []
        found = _model(lp, variables, constraints).solve(
            numbers=self.optionsDict.get("numbers", "written"),
            time_limit=math.inf if self.timeLimit is None else self.timeLimit,
            pivot_limit=self.optionsDict.get("pivotLimit"), log=lines.append)
        self._log(lines)
        self.solution = found
        values = found._record.array("Values")
        has_point = values is not None and (
            found.status == "optimal" or found._record.info["primalViolation"] == 0)
        _assign(variables, constraints, found)
        status = _STATUS[found.status]
        if _LATER is not None:
            why = _LATER[_STOPPED[found.stop_reason]] if found.status == "stopped" else _LATER(status)
            return self.buildStats(lp, why, has_point, start=begin)
        solution_status = constants.LpStatusToSolution[status]
        if found.status == "stopped":
            solution_status = constants.LpSolutionIntegerFeasible if has_point else \
                constants.LpSolutionNoSolutionFound
        lp.assignStatus(status, solution_status)
        return status

    def _refuse(self, lp: Any, variables: list[Any]) -> None:
        lp.checkDuplicateVars()
        if self.mip and any(variable.cat == constants.LpInteger for variable in variables):
            raise _core.PulpSolverError("NUV: all variables must be continuous; mip=False relaxes them")
        if getattr(lp, "sos1", None) or getattr(lp, "sos2", None):
            raise _core.PulpSolverError("NUV: there are no special ordered sets")

    def _log(self, lines: list[str]) -> None:
        if self.msg:
            print("\n".join(lines))
        path = self.optionsDict.get("logPath")
        if path:
            with open(path, "w", encoding="utf-8") as file:
                file.write("".join(f"{line}\n" for line in lines))


def _constraints(lp: Any) -> dict[str, Any]:
    """By name: an attribute is a dictionary, a method's answer (from PuLP 4 on) a list."""
    found = lp.constraints() if callable(lp.constraints) else lp.constraints
    return found if isinstance(found, dict) else {constraint.name: constraint for constraint in found}


def _model(lp: Any, variables: list[Any], constraints: dict[str, Any]) -> Model:
    """A model with the columns of `variables` and the rows of `constraints`, in their order."""
    column = {variable.name: k for k, variable in enumerate(variables)}
    costs: list[Coefficient] = [0.0] * len(variables)
    for variable, value in lp.objective.items():
        costs[column[variable.name]] = as_number(value, "objective")
    starts, columns, entries, lower, upper = [0], [], [], [], []
    for name, constraint in constraints.items():
        for variable, value in constraint.items():
            columns.append(column[variable.name])
            entries.append(as_number(value, name))
        starts.append(len(columns))
        side = as_number(-constraint.constant, name) if constraint.constant else 0.0
        lower.append(-math.inf if constraint.sense == constants.LpConstraintLE else side)
        upper.append(math.inf if constraint.sense == constants.LpConstraintGE else side)
    model = Model()
    least, most = ([otherwise if bound is None else as_number(bound, "bound") for bound in found]
                   for otherwise, found in ((-math.inf, [v.lowBound for v in variables]),
                                            (math.inf, [v.upBound for v in variables])))
    model.variables([variable.name for variable in variables], len(variables), objects(least),
                    objects(most), objects(costs))
    if constraints:
        model._append(Rows((len(constraints), len(variables)), np.array(starts, np.uint64),
                           np.array(columns, np.uint32), objects(entries)),
                      objects(lower), objects(upper), list(constraints))
    constant = as_number(lp.objective.constant or 0.0, "objective")
    model._set_sense_and_constant(lp.sense == constants.LpMaximize, constant)
    return model


def _assign(variables: list[Any], constraints: dict[str, Any], found: Solution) -> None:
    """Into the problem: None where there is nothing of the kind."""
    def taken(name: str, size: int) -> list[Any]:
        array = found._record.array(name)
        return [None] * size if array is None or array.size != size else list(array.tolist())

    for variable, value, reduced in zip(variables, taken("Values", len(variables)),
                                        taken("ReducedCosts", len(variables))):
        variable.varValue, variable.dj = value, reduced
    for constraint, activity, dual in zip(constraints.values(),
                                          taken("Activities", len(constraints)),
                                          taken("Duals", len(constraints))):
        constraint.pi = dual
        constraint.slack = None if activity is None else -constraint.constant - activity
        constraint.modified = False


# pulp.getSolver("NUV") and pulp.listSolvers() know it from now on.
if hasattr(pulp.apis, "addSolver"):
    pulp.apis.addSolver(NUV)
elif NUV not in getattr(pulp.apis, "_all_solvers", [NUV]):
    pulp.apis._all_solvers.append(NUV)
