"""Stands for PuLP 4 where that is not installed: what nuv.pulp uses of it, after its guide for the
move from 3 to 4. Variables and constraints keep their numbers when they are told None, constraints are
a method's list, the problem has no status, and a solve gives LpSolveStats back.
"""

import dataclasses
import enum
import sys
import time
import types


class PulpError(Exception):
    pass


class PulpSolverError(PulpError):
    pass


class LpSolveStatus(enum.IntEnum):
    NotSolved = 0
    Optimal = 1
    Infeasible = -1
    Unbounded = -2
    Undefined = -3
    TimeLimit = -4
    IterationLimit = -8
    Interrupted = -10


@dataclasses.dataclass
class LpSolveStats:
    solver: str
    status: LpSolveStatus
    has_solution: bool
    time: float
    num_variables: int
    num_constraints: int


class Kept:
    """An attribute that None does not change."""

    def __set_name__(self, owner, name):
        self.name = f"_{name}"

    def __get__(self, instance, owner):
        return getattr(instance, self.name, None)

    def __set__(self, instance, value):
        if value is not None:
            setattr(instance, self.name, float(value))


class LpVariable:
    varValue, dj = Kept(), Kept()

    def __init__(self, name, lowBound, upBound, cat):
        self.name, self.lowBound, self.upBound, self.cat = name, lowBound, upBound, cat


class Terms:
    def __init__(self, terms, constant=0.0):
        self._terms, self.constant = terms, constant

    def items(self):
        return list(self._terms.items())


class LpConstraint(Terms):
    pi, slack = Kept(), Kept()

    def __init__(self, terms, sense, side, name):
        super().__init__(terms, -side)
        self.sense, self.name = sense, name


class LpProblem:
    def __init__(self, name, sense):
        self.name, self.sense, self.objective = name, sense, None
        self._variables, self._constraints = [], []

    def add_variable(self, name, lowBound=None, upBound=None, cat="Continuous"):
        self._variables.append(LpVariable(name, lowBound, upBound, cat))
        return self._variables[-1]

    def add(self, terms, sense, side, name):
        self._constraints.append(LpConstraint(terms, sense, side, name))
        return self._constraints[-1]

    def variables(self):
        return list(self._variables)

    def constraints(self):
        return list(self._constraints)

    def checkDuplicateVars(self):
        if len({variable.name for variable in self._variables}) < len(self._variables):
            raise PulpError("a name is there twice")

    def solve(self, solver):
        return solver.actualSolve(self)


class LpSolver:
    def __init__(self, mip=True, msg=True, options=None, timeLimit=None, **others):
        self.mip, self.msg, self.options, self.timeLimit = mip, msg, options or [], timeLimit
        self.optionsDict = {key: value for key, value in others.items() if value is not None}

    def buildStats(self, lp, status, has_solution, start=None):
        assert isinstance(status, LpSolveStatus) and isinstance(has_solution, bool)
        return LpSolveStats(self.name, status, has_solution, time.time() - start[0], len(lp.variables()),
                            len(lp.constraints()))


def module(name, **names):
    found = sys.modules[name] = types.ModuleType(name)
    vars(found).update(names)
    return found


SOLVERS = []
constants = module("pulp.constants", LpSolveStatus=LpSolveStatus, LpMinimize=1, LpMaximize=-1, LpInteger="Integer",
                   LpConstraintLE=-1, LpConstraintEQ=0, LpConstraintGE=1, PulpError=PulpError)
core = module("pulp.apis.core", LpSolver=LpSolver, PulpSolverError=PulpSolverError,
              clocks=lambda: (time.time(), time.process_time()))
apis = module("pulp.apis", core=core, LpSolver=LpSolver, addSolver=SOLVERS.append)
module("pulp", constants=constants, apis=apis, LpProblem=LpProblem, LpSolveStatus=LpSolveStatus)


def main():
    from fractions import Fraction

    from nuv.pulp import NUV

    assert SOLVERS == [NUV]

    def plan(**more):
        problem = LpProblem("plan", constants.LpMaximize)
        x = problem.add_variable("x", 0, **more)
        y = problem.add_variable("y", 0)
        problem.objective = Terms({x: 30, y: 70}, 0.5)
        problem.add({x: 2, y: 5}, constants.LpConstraintLE, 300, "wood")
        problem.add({x: 4, y: 3}, constants.LpConstraintLE, 240, "labour")
        return problem, x, y

    problem, x, y = plan()
    solver = NUV()
    found = problem.solve(solver)
    assert found.status is LpSolveStatus.Optimal and found.has_solution and found.solver == "NUV"
    assert (found.num_variables, found.num_constraints) == (2, 2) and found.time >= 0
    assert abs(x.varValue - 150 / 7) < 1e-12 and x.dj == 0
    assert [abs(c.pi - dual) < 1e-12 for c, dual in zip(problem.constraints(), (95 / 7, 5 / 7))] == [True, True]
    assert solver.solution.exact_objective == Fraction(29700, 7) + Fraction(1, 2)
    assert solver.solution.dual("wood") == problem.constraints()[0].pi

    stopped = problem.solve(NUV(pivotLimit=0))
    assert stopped.status is LpSolveStatus.IterationLimit
    assert problem.solve(NUV(timeLimit=0)).status is LpSolveStatus.TimeLimit
    problem.add({x: 1}, constants.LpConstraintGE, 500, "too much")
    found = problem.solve(solver)
    assert found.status is LpSolveStatus.Infeasible and not found.has_solution
    assert ("row", "too much", "lower") in solver.solution.conflict
    problem, x, y = plan()
    problem._constraints.clear()
    assert problem.solve(NUV()).status is LpSolveStatus.Unbounded
    problem, x, y = plan(cat="Integer")
    try:
        problem.solve(NUV())
    except PulpSolverError as error:
        assert "must be continuous" in str(error)
    else:
        raise AssertionError("an integer was taken")
    assert problem.solve(NUV(mip=False)).status is LpSolveStatus.Optimal


if __name__ == "__main__":
    main()
