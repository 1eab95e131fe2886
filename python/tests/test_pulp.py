"""PuLP's own tests of solvers, but for those that need integers, and what they do not look at."""

import contextlib
import io
import pickle
import subprocess
import sys
from fractions import Fraction
from pathlib import Path

import pytest

pulp = pytest.importorskip("pulp")
own = pytest.importorskip("pulp.tests.test_pulp")

from nuv.pulp import NUV  # noqa: E402

#: Those with integer variables that are not relaxed.
INTEGER = {"test_pulp_020", "test_pulp_021", "test_pulp_022", "test_pulp_023", "test_pulp_040",
           "test_pulp_060", "test_pulp_061", "test_export_dict_MIP"}
#: Those that ask for more of solvers in the lists in them, of which NUV takes the place of one: two
#: variables of one name may be an error, as they are for most.
LISTED = {"test_pulp_014": "COINMP_DLL", "test_pulp_075": "PYGLPK", "test_pulp_080": "PYGLPK", "test_pulp_090": "COINMP_DLL",
          "test_pulp_100": "COINMP_DLL", "test_pulp_018": "COIN_CMD"}


def solves(name):
    """One of PuLP's tests, of NUV."""
    return type("Solves", (own.BaseSolverTest.PuLPTest,), {"solveInst": NUV})(name)


ALL = {name for name in dir(own.BaseSolverTest.PuLPTest) if name.startswith("test")}
NAMES = sorted(ALL - INTEGER)


def test_most_of_pulps_tests_are_taken():
    assert INTEGER | set(LISTED) <= ALL and len(NAMES) >= 40


@pytest.mark.parametrize("name", NAMES)
def test_pulps_own(name, monkeypatch, tmp_path):
    monkeypatch.chdir(tmp_path)
    if name in LISTED:
        monkeypatch.setattr(own, LISTED[name], NUV)
        real = NUV.actualSolve
        monkeypatch.setattr(NUV, "actualSolve", lambda self, lp, use_mps=None: real(self, lp))
    with contextlib.redirect_stdout(io.StringIO()):
        solves(name).debug()


@pytest.mark.parametrize("name", sorted(INTEGER - {"test_export_dict_MIP"}))
def test_integers_are_refused(name, monkeypatch, tmp_path):
    monkeypatch.chdir(tmp_path)
    with contextlib.redirect_stdout(io.StringIO()):
        with pytest.raises(pulp.PulpError, match="must be continuous"):
            solves(name).debug()


def problem(sense=pulp.LpMaximize):
    found = pulp.LpProblem("plan", sense)
    x, y = pulp.LpVariable("x", 0), pulp.LpVariable("y", 0, 100)
    found += 30 * x + 70 * y + 0.5
    found += 2 * x + 5 * y <= 300, "wood"
    found += 4 * x + 3 * y + 1 <= 241, "labour"
    found += x + y >= 1, "some"
    return found, x, y


def test_duals_slacks_and_the_proof():
    lp, x, y = problem()
    solver = NUV()
    assert lp.solve(solver) == pulp.LpStatusOptimal == lp.status
    assert lp.sol_status == pulp.LpSolutionOptimal
    assert solver.solution.exact_objective == Fraction(59407, 14)
    assert lp.objective.value() == pytest.approx(59407 / 14)
    assert [c.pi for c in lp.constraints.values()] == pytest.approx([95 / 7, 5 / 7, 0])
    assert [c.slack for c in lp.constraints.values()] == pytest.approx([0, 0, 1 - 510 / 7])
    assert (x.dj, y.dj) == (0, 0) and lp.valid()
    # By a unit more wood the objective gains its dual.
    lp.constraints["wood"].constant -= 1
    before = lp.objective.value()
    lp.solve(solver)
    assert lp.objective.value() - before == pytest.approx(95 / 7)
    lp.sense = pulp.LpMinimize
    assert lp.solve(solver) == pulp.LpStatusOptimal
    assert solver.solution.exact_objective == Fraction(61, 2) and y.dj == 40


def test_other_verdicts_leave_no_values():
    lp, x, y = problem()
    lp += x <= -1
    assert lp.solve(NUV()) == pulp.LpStatusInfeasible and x.varValue is None and x.dj is None
    lp, x, y = problem()
    for name in ("wood", "labour"):
        del lp.constraints[name]
    assert lp.solve(NUV()) == pulp.LpStatusUnbounded and y.varValue is None
    lp, x, y = problem()
    assert lp.solve(NUV(pivotLimit=0)) == pulp.LpStatusNotSolved
    assert lp.sol_status in (pulp.LpSolutionNoSolutionFound, pulp.LpSolutionIntegerFeasible)
    lp.sos1["set"] = {x: 1, y: 2}
    with pytest.raises(pulp.PulpError, match="ordered sets"):
        lp.solve(NUV())


def test_it_is_known_by_its_name_and_writes_a_log(tmp_path, capsys):
    solver = pulp.getSolver("NUV", logPath=str(tmp_path / "log"), numbers="stored")
    lp, x, y = problem()
    lp.solve(solver)
    assert "as stored" in solver.solution.proof and capsys.readouterr().out == ""
    assert "optimal" in (tmp_path / "log").read_text()
    assert "NUV" in pulp.listSolvers(onlyAvailable=True)
    lp.solve(NUV(msg=True))
    assert "optimal" in capsys.readouterr().out
    assert pickle.loads(pickle.dumps(solver.solution)).proof == solver.solution.proof


def test_the_interface_of_pulp_4():
    run = subprocess.run([sys.executable, str(Path(__file__).with_name("later_pulp.py"))],
                         capture_output=True, text=True, timeout=60)
    assert run.returncode == 0, run.stderr
