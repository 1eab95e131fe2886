"""Models made with operators, arrays and whole matrices."""

import pickle
import threading
from fractions import Fraction

import numpy as np
import pytest
import scipy.sparse

import nuv


def plan():
    model = nuv.Model("plan")
    chairs, tables = model.variable("chairs"), model.variable("tables")
    wood = model.add(2 * chairs + 5 * tables <= 300, "wood")
    labour = model.add(4 * chairs + 3 * tables <= 240, "labour")
    model.maximize(30 * chairs + 70 * tables)
    return model, chairs, tables, wood, labour


def test_a_solution_by_handle_and_by_name():
    model, chairs, tables, wood, labour = plan()
    with pytest.raises(LookupError):
        chairs.value
    solution = model.solve()
    assert (solution.status, solution.proved) == ("optimal", True)
    assert solution.exact_objective == Fraction(29700, 7)
    assert (chairs.exact, tables.exact) == (Fraction(150, 7), Fraction(360, 7))
    assert solution["chairs"] == chairs.value == solution.value(chairs) == float(Fraction(150, 7))
    assert (wood.exact_dual, labour.exact_dual) == (Fraction(95, 7), Fraction(5, 7))
    assert wood.dual == solution.dual("wood") and wood.slack == 0 == labour.slack
    assert solution["wood"] == wood.activity == 300 and chairs.is_basic
    assert (30 * chairs + 70 * tables + 1).exact == Fraction(29707, 7)
    assert "29700/7" in solution.proof and "29700/7" in solution._repr_html_()
    assert model.verify(solution.certificate) == "optimal"
    with pytest.raises(KeyError, match="beds"):
        solution["beds"]
    with pytest.raises(LookupError):
        solution.cost_range(chairs)
    ranged = model.solve(ranging=True)
    assert ranged.cost_range("chairs") == (28, float(Fraction(280, 3)))


def test_edits_are_solved_from_where_the_last_solve_ended():
    model, chairs, tables, wood, labour = plan()
    model.solve()
    model.set_bounds(wood, upper=600)
    model.set_cost(chairs, 0)
    assert model.solve().exact_objective == 70 * 80
    assert model.solution.pivots <= 2
    model.set_coefficient(labour, tables, 1)
    model.set_bounds(tables, lower=3, upper=50)
    assert model.solve().exact_objective == 3500
    assert repr(plan()[0].solve()) == "<optimal 4242.857142857143, proved as written, exactly 29700/7>"


def test_decimals_are_added_and_multiplied_as_written():
    model = nuv.Model()
    x, y = model.variable("x"), model.variable("y")
    assert repr(0.1 * x + 0.2 * x - y + 0.1 + 0.2) == "0.3 x - y + 0.3"
    assert repr(0.1 * (0.2 * x)) == "0.02 x" and repr(-(x - 3) / 8) == "-0.125 x + 0.375"
    assert repr((x + 0.1) / 3) == "1/3 x + 1/30" and repr(x / 3 + 2 * x / 3) == "x"
    assert repr(2 * x + 1 <= 5 - y) == "2 x + y <= 4"
    assert repr(nuv.sum([x, y, x, 4])) == "2 x + y + 4"
    assert repr(x == 3) == "x == 3" and repr(1 >= x) == "x <= 1"
    array = model.variables("z", 2)
    total = np.array([0.1, 0.2]) @ array[[0, 0]]
    assert repr(total) == "0.3 z_0"


def test_variables_are_keys_and_constraints_have_no_truth():
    model, x, y, *_ = plan()
    assert {x: 1, y: 2}[model["chairs"]] == 1 and x in [y, x]
    with pytest.raises(TypeError, match="neither true nor false"):
        0 <= x + y <= 1
    with pytest.raises(TypeError, match="!="):
        x != 3


def test_arrays_of_variables_against_numpy():
    generator = np.random.default_rng(3)
    model = nuv.Model()
    x, y = model.variables("x", (3, 4), upper=9), model.variables("y", 4, lower=[0, 1, 2, 3])
    A, B = generator.integers(-5, 6, (5, 4)), generator.normal(size=(5, 4)).round(2)
    model.minimize((generator.random((3, 4)) * x).sum() + y.sum())
    model.add(x.sum(axis=0) >= y + 1, "columns")
    rows = model.add(A @ (x[1] + 2 * y - 3) + B @ y >= np.arange(-205, -200), "rows")
    model.solve()
    assert model.solution.status == "optimal"
    xs, ys = x.value, y.value
    assert xs.shape == (3, 4) and (ys >= [0, 1, 2, 3]).all()
    for expression, numbers in (
            (A @ y, A @ ys), (y @ A.T, ys @ A.T), (scipy.sparse.csr_matrix(B) @ y, B @ ys),
            (x + y, xs + ys), (x - 1, xs - 1), (2 - x, 2 - xs), (x.T, xs.T), (x * ys, xs * ys),
            (x.sum(axis=1), xs.sum(axis=1)), (x.reshape(2, 6)[1], xs.reshape(2, 6)[1]),
            ((x * 2 + 1)[1:, ::2], (xs * 2 + 1)[1:, ::2]), (-(x[0] + x[0, 1]), -(xs[0] + xs[0, 1]))):
        assert expression.shape == numbers.shape
        np.testing.assert_allclose(expression.value, numbers, atol=1e-12)
    assert x.sum().value == pytest.approx(xs.sum())
    np.testing.assert_allclose(rows.activity - A @ np.full(4, 3),
                               (A @ (xs[1] + 2 * ys - 3) + B @ ys), atol=1e-9)
    assert rows.shape == rows.dual.shape == rows.slack.shape == (5,) and rows[2].name == "rows_2"


def test_whole_matrices_in_one_call():
    A = scipy.sparse.csr_matrix(np.array([[2.0, 5], [4, 3]]))
    for matrix in (A, A.tocsc(), A.toarray(), A.toarray().tolist()):
        model = nuv.Model.from_arrays([30, 70], matrix, row_upper=[300, 240], maximize=True,
                                      names=["chairs", "tables"], row_names=["wood", ""])
        assert model.solve().exact_objective == Fraction(29700, 7)
    assert model.row("wood").index == 0 and model.row("R2").index == 1
    model = nuv.Model()
    x = model.variables("x", 3)
    rows = model.add_rows(A, upper=[300, 240], x=x[1:])
    model.maximize(30 * x[1] + 70 * x[2] - x[0])
    assert model.solve().exact_objective == Fraction(29700, 7)
    assert rows.dual.tolist() == [float(Fraction(95, 7)), float(Fraction(5, 7))]
    assert model.add_range(1, x.sum(), 2).model is model
    assert model.solve().exact_objective == 140


def test_a_conflict_by_name():
    model = nuv.Model()
    x, y = model.variable("x", upper=3), model.variable("y", lower=None, upper=2)
    model.add(x + y >= 6, "demand")
    solution = model.solve()
    assert solution.status == "infeasible" and solution.proved and solution.values == {}
    assert set(solution.conflict) == {("row", "demand", "lower"), ("variable", "x", "upper"),
                                      ("variable", "y", "upper")}
    with pytest.raises(LookupError):
        x.value


def test_files_and_texts(tmp_path):
    model = plan()[0]
    for name in ("plan.lp", "plan.mps", "plan.lp.gz"):
        model.write(tmp_path / name)
        assert nuv.Model.read(tmp_path / name).solve().exact_objective == Fraction(29700, 7)
    assert str(nuv.Model.from_text(str(model))) == str(model) == model.text("lp")
    with pytest.raises(nuv.FileError) as missing:
        nuv.Model.read(tmp_path / "missing.lp")
    assert isinstance(missing.value, OSError)
    with pytest.raises(nuv.ModelError, match="line|text.lp") as wrong:
        nuv.Model.from_text("Minimize\n x +\nSubject Too\n")
    assert wrong.value.code.startswith("lp.")


def test_pickles_of_models_and_solutions():
    model = plan()[0]
    again = pickle.loads(pickle.dumps(model))
    assert str(again) == str(model) and again.solve().exact_objective == Fraction(29700, 7)
    solution = model.solve(ranging=True)
    kept = pickle.loads(pickle.dumps(solution))
    del model
    assert kept.exact("chairs") == Fraction(150, 7) and kept.certificate == solution.certificate
    assert kept.values == solution.values and kept.json == solution.json
    assert kept.cost_range("chairs") == solution.cost_range("chairs")
    assert str(kept) == str(solution) and repr(kept) == repr(solution)
    assert pickle.loads(pickle.dumps(nuv.Model())).num_rows == 0
    one = plan()[0]
    other = one.copy()
    other.variable("beds")
    assert (one.num_variables, other.num_variables) == (2, 3)


def test_threads_on_models_of_their_own_and_on_one():
    shared = plan()[0]
    found = []

    def work(own):
        for _ in range(20):
            found.append((shared if own is None else own).solve().exact_objective)

    threads = [threading.Thread(target=work, args=(None if k % 2 else plan()[0],)) for k in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert found == [Fraction(29700, 7)] * 160


def test_without_a_proof_there_are_doubles_alone():
    model, chairs, *_ = plan()
    believed = model.solve(proved=False)
    assert (believed.status, believed.proved, believed.proof) == ("optimal", False, "not proved")
    assert believed[chairs] == pytest.approx(150 / 7) and believed.exact_objective is None
    assert believed.certificate is None
    with pytest.raises(LookupError):
        believed.exact(chairs)
    # The session goes on from there with a proof.
    assert model.solve().exact_objective == Fraction(29700, 7)


def test_callbacks_see_the_solve_and_end_it():
    seen, lines = [], []
    model = plan()[0]
    model.solve(progress=seen.append, log=lines.append)
    assert {told.stage for told in seen} <= {"single precision", "double", "exact"} and seen
    assert "optimal" in lines[-1]
    stopped = plan()[0].solve(progress=lambda told: False)
    assert (stopped.status, stopped.stop_reason, stopped.proved) == ("stopped", "cancelled", False)

    def fail(told):
        raise RuntimeError("enough")

    with pytest.raises(RuntimeError, match="enough"):
        plan()[0].solve(progress=fail)

    def interrupt(told):
        raise KeyboardInterrupt

    with pytest.raises(KeyboardInterrupt) as stop:
        plan()[0].solve(progress=interrupt)
    assert isinstance(stop.value, nuv.Interrupted) and stop.value.solution.status == "stopped"


@pytest.mark.parametrize("error, name, call", [
    (TypeError, "name", lambda m, x, r: m[3]),
    (ValueError, "name", lambda m, x, r: m.row("")),
    (nuv.ModelError, "chairs", lambda m, x, r: m.variable("chairs")),
    (TypeError, "name", lambda m, x, r: m.variable(3)),
    (ValueError, "name", lambda m, x, r: m.variable("a\0b")),
    (ValueError, "lower", lambda m, x, r: m.variables("y", 3, lower=[1, 2])),
    (ValueError, "upper", lambda m, x, r: m.variable("y", upper="high")),
    (nuv.ModelError, "column", lambda m, x, r: m.variable("y", float("inf"))),
    (TypeError, "cost", lambda m, x, r: m.variable("y", cost=1j)),
    (TypeError, "constraint", lambda m, x, r: m.add(True)),
    (ValueError, "constraint", lambda m, x, r: m.add(nuv.Model().variable("z") <= 1)),
    (ValueError, "different models", lambda m, x, r: x + nuv.Model().variable("z")),
    (TypeError, "not linear", lambda m, x, r: x * x),
    (TypeError, "not linear", lambda m, x, r: x * m.variables("y", 2)),
    (TypeError, "not linear", lambda m, x, r: m.variables("y", 2) * x),
    (TypeError, "not linear", lambda m, x, r: x ** 2),
    (TypeError, "not linear", lambda m, x, r: 2 / x),
    (TypeError, "strict", lambda m, x, r: x < 3),
    (TypeError, "strict", lambda m, x, r: 3 < x + 1),
    (TypeError, "strict", lambda m, x, r: m.variables("y", 2) > 3),
    (TypeError, r"model\['chairs'\]", lambda m, x, r: m.set_bounds("chairs", upper=1)),
    (TypeError, "unsupported", lambda m, x, r: x + "1"),
    (ValueError, "coefficient", lambda m, x, r: x * float("nan")),
    (TypeError, "objective", lambda m, x, r: m.minimize("x")),
    (TypeError, "objective", lambda m, x, r: m.minimize(m.variables("y", 2))),
    (ValueError, "A", lambda m, x, r: m.add_rows([[1, 2, 3]])),
    (ValueError, "upper", lambda m, x, r: m.add_rows([[1, 2]], upper=[1, 2])),
    (ValueError, "name", lambda m, x, r: m.add_rows([[1, 2]], names=["a", "b"])),
    (ValueError, "matrix", lambda m, x, r: np.ones((2, 3)) @ m.variables("y", 2)),
    (TypeError, "Row", lambda m, x, r: m.set_coefficient(x, x, 1)),
    (ValueError, "another model", lambda m, x, r: m.set_cost(nuv.Model().variable(), 1)),
    (ValueError, "format", lambda m, x, r: m.text("json")),
    (ValueError, "numbers", lambda m, x, r: m.solve(numbers="near")),
    (TypeError, "proved", lambda m, x, r: m.solve(proved=None)),
    (ValueError, "ranging", lambda m, x, r: m.solve(proved=False, ranging=True)),
    (ValueError, "exact", lambda m, x, r: m.solve(proved=False, exact=True)),
    (ValueError, "uniqueness", lambda m, x, r: m.solve(proved=False, uniqueness=True)),
    (ValueError, "time_limit", lambda m, x, r: m.solve(time_limit=-1)),
    (TypeError, "time_limit", lambda m, x, r: m.solve(time_limit="soon")),
    (ValueError, "pivot_limit", lambda m, x, r: m.solve(pivot_limit=-1)),
    (TypeError, "certificate", lambda m, x, r: m.verify(3)),
    (nuv.Error, "", lambda m, x, r: m.verify("VER 1.1\n")),
    (ValueError, "side", lambda m, x, r: m.solve(ranging=True).side_range(r, "left")),
])
def test_what_is_wrong_is_refused_and_changes_nothing(error, name, call):
    model, chairs, tables, wood, labour = plan()
    with pytest.raises(error, match=name):
        call(model, chairs, wood)
    assert model.num_rows == 2 and model.solve().exact_objective == Fraction(29700, 7)


def test_what_was_not_there_when_the_model_was_solved_has_no_value():
    model, chairs, tables, wood, labour = plan()
    solution = model.solve()
    late, row = model.variable("late"), model.add(chairs >= 0, "later")
    several = model.variables("several", 2)
    for ask in (solution.value, solution.exact, solution.reduced_cost, solution.basis):
        with pytest.raises(LookupError, match="was not there"):
            ask(late)
    for of in (late + chairs, several, 2 * several):
        with pytest.raises(LookupError, match="was not there"):
            solution.value(of)
    with pytest.raises(LookupError, match="was not there"):
        solution.exact(late + chairs)
    for ask in (solution.dual, solution.slack, solution.activity, solution.exact_dual, solution.basis):
        with pytest.raises(LookupError, match="was not there"):
            ask(row)
    model.remove(chairs)
    assert solution.value(tables) == pytest.approx(360 / 7)
    # Removed, and others come after: the places of a solution are those of its own time.
    model.variable("last")
    with pytest.raises(LookupError, match="was not there"):
        solution.value(model["last"])


def test_what_things_show_of_themselves():
    model, chairs, *_ = plan()
    x = model.variables("x", (2, 3))
    assert repr(model) == "<model with 8 variables, 2 rows and 4 coefficients>"
    assert repr(nuv.Model.from_arrays([1], [[2]])) == "<model with 1 variable, 1 row and 1 coefficient>"
    assert repr(x <= 1) == "<constraints, shape (2, 3)>" and repr(x) == "<variables, shape (2, 3)>"
    assert repr(model.add(x <= 1)) == "<rows, shape (2, 3)>" and repr(2 * x) == "<linear expressions, shape (2, 3)>"
    assert repr(model.repair()) == "<repair optimal, 0 changes, 0.0 in all>"


def resident():
    with open("/proc/self/statm", encoding="ascii") as file:
        return int(file.read().split()[1])


def test_models_and_solutions_are_given_back():
    def make(count):
        for _ in range(count):
            model = plan()[0]
            model.solve(progress=lambda told: True).exact("chairs")
            nuv.linprog([-30, -70], [[2, 5], [4, 3]], [300, 240])

    make(300)
    before = resident()
    make(1500)
    # 1500 models that stayed would be far over a thousand pages.
    assert resident() - before < 250
