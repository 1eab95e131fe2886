"""What is seldom come by: interrupts at bad moments, libraries that are not there, odd arguments."""

import os
import pickle
import subprocess
import sys
from decimal import Decimal
from fractions import Fraction
from pathlib import Path
from types import SimpleNamespace

import numpy as np
import pytest

import nuv
import nuv._batch
import nuv._library
import nuv._linprog
import nuv._solve
from test_batch import problems
from test_model import plan


class Library:
    """The shared library, but for some functions."""

    def __init__(self, real, **instead):
        self.__dict__.update(instead, real=real)

    def __getattr__(self, name):
        return getattr(self.__dict__["real"], name)


@pytest.mark.parametrize("raised, error", [(KeyboardInterrupt, nuv.Interrupted), (OSError("full"), OSError)])
def test_what_is_raised_while_linprog_tells_of_itself_ends_it(raised, error, monkeypatch):
    def tell(line):
        raise raised

    monkeypatch.setattr(nuv._linprog, "print", tell, raising=False)
    with pytest.raises(error) as caught:
        nuv.linprog([-30, -70], [[2, 5], [4, 3]], [300, 240], options={"disp": True})
    if error is nuv.Interrupted:
        assert caught.value.solution.status in (0, 1)


def test_an_interrupt_behind_the_last_callback_keeps_the_solution(monkeypatch):
    lib, model = nuv._solve.lib, plan()[0]

    def solved(*arguments):
        lib.NuvSolverSolve(*arguments)
        raise KeyboardInterrupt

    monkeypatch.setattr(nuv._solve, "lib", Library(lib, NuvSolverSolve=solved))
    with pytest.raises(nuv.Interrupted) as caught:
        model.solve()
    assert caught.value.solution.status == "optimal" and model.solution is caught.value.solution

    def unsolved(*arguments):
        raise KeyboardInterrupt

    monkeypatch.setattr(nuv._solve, "lib", Library(lib, NuvSolverSolve=unsolved))
    with pytest.raises(KeyboardInterrupt) as caught:
        model.solve()
    assert not isinstance(caught.value, nuv.Interrupted)


@pytest.mark.parametrize("workers", [1, 2])
@pytest.mark.parametrize("proved", [True, False])
def test_an_interrupt_of_a_batch_keeps_what_is_done(workers, proved, monkeypatch):
    c, A, b = problems(count=400)
    alone = nuv.solve_batch(c, A, b, proved=proved)
    monkeypatch.setattr(nuv._batch, "_PROVED_PIECE" if proved else "_PIECE", 1, raising=False)
    in_pieces, calls = nuv._batch._in_pieces, []

    def interrupted(count, workers, piece, work):
        def some(first, last):
            calls.append(first)
            if len(calls) == 3:
                raise KeyboardInterrupt
            work(first, last)

        return in_pieces(count, workers, 20, some)

    monkeypatch.setattr(nuv._batch, "_in_pieces", interrupted)
    with pytest.raises(nuv.Interrupted) as caught:
        nuv.solve_batch(c, A, b, proved=proved, workers=workers)
    found = caught.value.solution
    done = found.status != 1
    assert 0 < done.sum() < 400 and (found.status[done] == alone.status[done]).all()
    assert found.x[done].tobytes() == alone.x[done].tobytes() and np.isnan(found.x[~done]).all()


def test_what_fails_in_a_large_problem_of_a_batch_is_raised(monkeypatch):
    monkeypatch.setattr(nuv._batch, "_LARGE", 1)
    expected = nuv.solve_batch(*problems(count=3))

    def fails(model, options):
        return None, OSError("full")

    monkeypatch.setattr(nuv._batch, "solve", fails)
    with pytest.raises(OSError, match="full"):
        nuv.solve_batch(*problems(count=3))
    assert (expected.status == [nuv.linprog(*problem).status for problem in zip(*problems(count=3))]).all()


def test_a_batch_of_more_elements_than_the_core_counts(monkeypatch):
    core = Library(nuv._batch.core, NuvLinearProgrammingBatchWorkspaceSize=lambda batch: 0)
    monkeypatch.setattr(nuv._batch, "core", core)
    with pytest.raises(ValueError, match="^A_ub"):
        nuv.solve_batch([-1], [[1]], [[1], [2]], proved=False)


def test_a_repair_and_a_picture_are_interrupted(monkeypatch):
    model = nuv.Model()
    x, y = model.variable("x", upper=2), model.variable("y")
    model.add(x >= 7, "need")
    for raised, error in ((KeyboardInterrupt(), KeyboardInterrupt), (OSError("full"), OSError)):
        monkeypatch.setattr("nuv._picture.solve", lambda handle, options, raised=raised: (None, raised))
        with pytest.raises(error):
            model.picture()

        class Failed(nuv._solve.Call):
            def __init__(self, options, raised=raised):
                super().__init__(options)
                self.failure = raised

        monkeypatch.setattr("nuv._repair.Call", Failed)
        with pytest.raises(nuv.Interrupted if error is KeyboardInterrupt else error):
            model.repair()


def test_uniqueness_that_is_interrupted(monkeypatch):
    found = nuv.linprog([-1, -1], [[1, 1]], [1])
    monkeypatch.setattr(nuv._linprog, "solve", lambda model, options: (None, KeyboardInterrupt()))
    with pytest.raises(KeyboardInterrupt):
        found.unique


def test_libraries_that_are_not_there(monkeypatch, tmp_path):
    monkeypatch.setenv("NUV_LIBRARY_DIR", str(tmp_path))
    with pytest.raises(ImportError, match=f"NUV_LIBRARY_DIR: there is no libNuvNothing.so.0.1 in {tmp_path}"):
        nuv._library._open("NuvNothing")
    monkeypatch.delenv("NUV_LIBRARY_DIR")
    with pytest.raises(ImportError, match="nuv: cannot load library"):
        nuv._library._open("NuvNothing")


def test_a_library_of_another_version_under_the_right_name(tmp_path):
    for line in Path("/proc/self/maps").read_text().splitlines():
        path = Path(line.split(maxsplit=5)[-1])
        if path.name.startswith("libNuv"):
            (tmp_path / f"{path.name.partition('.so')[0]}.so.9.9").unlink(missing_ok=True)
            (tmp_path / f"{path.name.partition('.so')[0]}.so.9.9").symlink_to(path)
    program = ("import sys, types; m = types.ModuleType('nuv._version'); m.VERSION = '9.9.0'; "
               "sys.modules['nuv._version'] = m; import nuv")
    run = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, timeout=60,
                         env={**os.environ, "NUV_LIBRARY_DIR": str(tmp_path)})
    assert "ImportError: nuv 9.9.0 needs libraries of the same version, and these are 0.1" in run.stderr


def test_what_the_library_has_no_words_for(monkeypatch):
    lib = nuv._library.lib
    with pytest.raises(MemoryError):
        nuv._library.owned(nuv._library.ffi.NULL, None)
    with pytest.raises(MemoryError):
        nuv._library.check(lib.NUV_MODELRESULT_NoMemory)
    with pytest.raises(nuv.ModelError, match="the library answers"):
        nuv._library.check(lib.NUV_MODELRESULT_InvalidModel, nuv._library.diagnostics())
    told = nuv._library.diagnostics()
    assert lib.NuvModelReadText(nuv.Model()._handle, b"x", 1, b"x.lp", nuv._library.ffi.NULL, told) != 0
    monkeypatch.setattr(nuv._library, "lib", Library(
        lib, NuvDiagnosticsMakeText=lambda *_: lib.NUV_MODELRESULT_NoMemory))
    with pytest.raises(nuv.ModelError, match="the library answers"):
        nuv._library.check(lib.NUV_MODELRESULT_BadText, told)


def test_errors_are_pickled():
    with pytest.raises(nuv.ModelError) as caught:
        nuv.Model.from_text("Minimize x +")
    again = pickle.loads(pickle.dumps(caught.value))
    assert type(again) is nuv.ModelError and (str(again), again.code) == (str(caught.value), "lp.unfinished")


def test_a_solution_without_a_text_is_pickled(monkeypatch):
    solution, real = plan()[0].solve(), nuv._solution.Record.text

    def text(record, kind):
        if kind == "Certificate":
            raise nuv.Error("too long")
        return real(record, kind)

    monkeypatch.setattr(nuv._solution.Record, "text", text)
    kept = pickle.dumps(solution)
    monkeypatch.undo()
    again = pickle.loads(kept)
    assert again.certificate is None and again.exact_objective == Fraction(29700, 7) and again.seconds >= 0


def test_numbers_of_all_kinds():
    assert nuv.linprog([1], bounds=(Decimal("0.1"), Decimal("Infinity"))).exact.x == [Fraction(1, 10)]
    found = nuv.linprog([1, 1], [[-1, -1]], [-3], bounds=SimpleNamespace(lb=[1, 0], ub=2))
    assert found.fun == 3 and (found.x >= [1, 0]).all() and (found.x <= 2).all()
    with pytest.raises(ValueError, match="^A_ub: the rows differ"):
        nuv.linprog([1, 1], np.array([[1, 2], [3]], object), [1, 1])
    x = nuv.Model().variable("x")
    with pytest.raises(ValueError, match="beyond what doubles"):
        1e300 * x * 1e300
    with pytest.raises(ValueError, match="time_limit"):
        plan()[0].solve(time_limit=10**400)


def test_arguments_of_linprog_that_it_does_not_have():
    with pytest.raises(NotImplementedError, match="progress="):
        nuv.linprog([1], callback=print)
    with pytest.raises(AttributeError, match="duals"):
        nuv.linprog([1]).duals
    with pytest.raises(AttributeError, match="duals"):
        nuv.linprog([1]).lower.duals
    result = nuv.linprog([1], [[1]], [-1])
    assert "conflict" in dir(result) and "exact" in dir(result) and "conflict: [" in repr(result)
    result.mine = 3
    assert result["mine"] == 3 and result.exact is None


def test_operators_at_their_edges():
    model = nuv.Model()
    x, y = model.variable("x", upper=3), model.variable("y")
    assert nuv.sum([0.5, Fraction(1, 4)]).exact == Fraction(3, 4) and nuv.sum([]).value == 0
    assert repr(1 + x) == "x + 1" and repr(+x) == "x" and repr(3 - x) == "-x + 3"
    for wrong in (lambda: x - "1", lambda: x / "1", lambda: "1" <= x, lambda: nuv.sum([x, "1"])):
        with pytest.raises(TypeError):
            wrong()
    array = model.variables("z", (2, 2))
    assert len(array) == 2 and len(2 * array) == 2 and [row.shape for row in array] == [(2,), (2,)]
    assert [row.shape for row in 2 * array] == [(2,), (2,)]
    with pytest.raises(ValueError, match="one dimension"):
        np.ones((2, 2)) @ array
    for wrong in (lambda: array != 1, lambda: bool(array <= 1)):
        with pytest.raises(TypeError, match="constraints"):
            wrong()
    with pytest.raises(TypeError, match="^expression"):
        model.add_range(1, 2, 3)
    other = nuv.Model().variables("x", 2)
    with pytest.raises(ValueError, match="^x: "):
        model.add_rows([[1, 2]], x=other)
    with pytest.raises(ValueError, match="^objective"):
        model.minimize(other[0])
    with pytest.raises(KeyError, match="no row 'none'"):
        model.row("none")
    with pytest.raises(ValueError, match="^shape"):
        model.variables("w", (2**16, 2**16))
    row = model.add_range(1, x + y, 2, "both")
    constraint = x + y >= 1
    constraint.upper = 2.0
    assert repr(constraint) == "1 <= x + y <= 2" and row.name == "both"
    both = model.add_rows([[1] * 6] * 2)
    model.minimize(2 * x + y)
    solution = model.solve()
    assert x.reduced_cost == 1 and array.reduced_cost.shape == (2, 2)
    assert solution.exact(x - x + 3) == 3
    assert solution.exact_dual(both) == [0, 0] and solution.exact_dual(row) == 1
    assert model._repr_html_().startswith("<pre>Minimize")
    # After one has gone, an expression with it has no value, and others have theirs.
    kept = model.variables("k", 2)
    model.add(kept >= 1)
    model.remove(x)
    assert model.solve().value(2 * kept).tolist() == [2, 2] and np.isnan(model.solution.value(x + y))


def test_a_picture_with_an_empty_row_is_saved(tmp_path):
    model = nuv.Model.from_arrays([-1, -1], [[1, 2], [0, 0]], row_upper=[3, 1])
    picture = model.picture()
    picture.save(tmp_path / "plan.svg")
    assert (tmp_path / "plan.svg").read_text() == picture.svg and "bytes of SVG" in repr(picture)
