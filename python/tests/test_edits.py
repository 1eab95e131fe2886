"""Numbers that no double says, removal, repair, ranges, pictures, and what shows a solve."""

import os
import pickle
import signal
import subprocess
import sys
import time
from fractions import Fraction

import numpy as np
import pytest

import nuv
from test_model import plan


def thirds():
    """x / 3 + y / 7 <= 1/11, x <= 1/9: every kind of place has a quotient."""
    model = nuv.Model()
    x = model.variable("x", upper="1/9", cost=Fraction(1, 3))
    y = model.variable("y", lower=Fraction(1, 13))
    row = model.add(x / 3 + y / 7 <= Fraction(1, 11), "row")
    model.maximize(x / 3 + y / 5 + Fraction(1, 17))
    return model, x, y, row


THIRDS = Fraction(1, 17) + Fraction(7, 55)


def test_quotients_are_kept_in_every_place():
    model, x, y, row = thirds()
    # By unit of the row, y gives 7/5 and x 1: y alone is worth it.
    assert model.solve().exact_objective == THIRDS
    assert (x.exact, y.exact, row.exact_dual) == (0, Fraction(7, 11), Fraction(7, 5))
    assert "1/11" in str(model)
    for again in (pickle.loads(pickle.dumps(model)), model.copy(),
                  nuv.Model.from_text(model.text("lp")),
                  pickle.loads(pickle.dumps(nuv.Model.from_text(model.text("lp"))))):
        assert again.solve().exact_objective == THIRDS


def test_a_bound_stays_what_it_was_told_when_the_other_one_changes():
    model, x, y, row = thirds()
    model.maximize(x)
    model.set_bounds(x, lower="-1/21")
    assert model.solve().exact_objective == Fraction(1, 9)
    model.set_bounds(x, upper=5)
    model.minimize(x)
    assert model.solve().exact_objective == Fraction(-1, 21)
    model.set_bounds(row, lower="1/23")
    model.set_bounds(x, lower=0)
    model.maximize(y)
    assert model.solve().exact_objective == Fraction(7, 11)
    model.minimize(y)
    model.set_bounds(x, upper=0)
    assert model.solve().exact_objective == Fraction(7, 23)
    model.set_coefficient(row, y, Fraction(1, 3))
    model.set_cost(y, Fraction(1, 29))
    assert model.solve().exact_objective == Fraction(3, 23 * 29)
    with pytest.raises(ValueError, match="cost"):
        model.set_cost(y, "1e-400")


def test_quotients_in_arrays():
    model = nuv.Model()
    x = model.variables("x", 3, upper=["1/3", 1, Fraction(1, 7)])
    weights = np.array([Fraction(1, 3), 2, 0.5], object)
    sides = np.array([1, "4/3", 9], object)
    rows = model.add(weights * x + Fraction(1, 3) <= sides, "row")
    model.maximize((weights @ x) / 3 - x[0] / 9 + x.sum())
    solution = model.solve()
    assert solution.exact(x) == [Fraction(1, 3), Fraction(1, 2), Fraction(1, 7)]
    assert solution.exact_objective == sum(
        (w / Fraction(3) + 1) * v for w, v in zip((0, 2, Fraction(1, 2)), solution.exact(x)))
    assert rows[1].exact_dual == Fraction(5, 6)
    whole = nuv.Model.from_arrays(["1/3", 1], [["1/3", 1], [1, "2/3"]], "1/7", ["1/5", 1],
                                  constant="1/3")
    other = nuv.Model.from_arrays([7, 21], [[7, 21], [21, 14]], 3, ["21/5", 21], constant=7)
    assert whole.solve().exact_objective == other.solve().exact_objective / 21
    added = nuv.Model()
    z = added.variables("z", 2, cost=["1/3", 1])
    added.add_rows([["1/3", 1], [1, "2/3"]], "1/7", ["1/5", 1], z)
    assert added.solve().exact_objective + Fraction(1, 3) == whole.solution.exact_objective


def test_sums_of_random_decimals_are_exact():
    r = np.random.default_rng(8)
    model = nuv.Model()
    x = model.variables("x", 4, lower=1)
    A, B = r.normal(size=(5, 4)), r.normal(size=(5, 4))
    both = A @ x + B @ x - A @ x * 0.3
    for k in range(5):
        terms = both[k].terms
        for j in range(4):
            a, b = (Fraction(repr(float(M[k, j]))) for M in (A, B))
            assert terms[x[j].key] == a + b - a * Fraction(3, 10) or \
                Fraction(repr(terms[x[j].key])) == a + b - a * Fraction(3, 10)
    np.testing.assert_allclose((both.constants, ), np.zeros((1, 5)))


def test_handles_stay_when_others_are_removed():
    model = nuv.Model()
    x = model.variables("x", (2, 3), upper=[[1, 2, 3], [4, 5, 6]])
    rows = model.add(x <= 10, "row")
    total = x.sum()
    model.maximize(total)
    before = model.solve()
    model.remove(x[0])
    model.remove(rows[1, :2])
    assert (model.num_variables, model.num_rows) == (3, 4)
    assert x[1].index.tolist() == [0, 1, 2] and rows[1, 2].index == 3
    assert x[1, 2].name == "x_1_2" and rows[1, 2].name == "row_1_2"
    assert model["x_1_1"].key == x[1, 1].key and model.row("row_1_2") == rows[1, 2]
    for call in (lambda: x[0].index, lambda: model.add(total <= 3), lambda: x.value,
                 lambda: model.maximize(total), lambda: rows[1, 0].name,
                 lambda: model.set_bounds(x, 3), lambda: model.remove(x[0, 0])):
        with pytest.raises(LookupError, match="removed"):
            call() if model.solve() else None
    model.add(x[1, 0] + x[1, 2] <= 7, "pair")
    y = model.variable("y", upper=8)
    model.maximize(x[1].sum() + y)
    assert model.solve().exact_objective == 7 + 5 + 8 and y.value == 8 and y.index == 3
    # What was found before is still told of what was there before.
    assert before[x].tolist() == [[1, 2, 3], [4, 5, 6]] and before.value(total) == 21
    model.remove(x[1, 0])
    assert model.solve().exact_objective == 6 + 5 + 8 and model.row("pair").activity == 6
    again = pickle.loads(pickle.dumps(model))
    assert again.solve().exact_objective == 19
    assert nuv.VariableArray(again, x[1, 1:].key).value.tolist() == [5, 6]
    assert nuv.Row(again, rows[1, 2].key).name == "row_1_2"


def test_a_repair_by_name_and_its_weights():
    model = nuv.Model()
    x, y = model.variable("x", upper=3), model.variable("y", upper="1/3")
    need = model.add(x + y >= 6, "need")
    low = model.add(x <= 2, "low")
    assert model.solve().status == "infeasible"
    found = model.repair()
    assert (found.status, found.proved, found.exact_total) == ("optimal", True, Fraction(11, 3))
    assert sum(abs(change.after - change.before) for change in found.changes) == pytest.approx(found.total)
    only = model.repair(row_weights={low: np.inf, "need": np.inf})
    assert [(c.kind, c.name, c.side, c.exact_after) for c in only.changes] == [
        ("variable", "y", "upper", 4)]
    assert str(only.changes[0]) == f"variable y, upper: {1 / 3!r} -> 4.0"
    repaired = only.model()
    assert repaired.solve().status == "optimal" and repaired.solution[y] == 4
    assert model.solve().status == "infeasible"
    never = model.repair(row_weights=np.inf, variable_weights=[np.inf, np.inf])
    assert never.status == "infeasible" and never.changes == [] and never.proved
    with pytest.raises(LookupError, match="infeasible"):
        never.model()
    assert plan()[0].repair().changes == []
    assert repr(only) == "<repair optimal, 1 change, 3.6666666666666665 in all>"
    assert need.name == "need"


@pytest.mark.parametrize("error, name, change", [
    (ValueError, "row_weights", dict(row_weights=[1, 2, 3])),
    (ValueError, "row_weights", dict(row_weights=["1/3", 1])),
    (TypeError, "variable_weights", dict(variable_weights={"chairs": 1j})),
    (KeyError, "beds", dict(variable_weights={"beds": 1})),
    (TypeError, "Row", dict(row_weights={3: 1})),
    (ValueError, "pivot_limit", dict(pivot_limit=-1)),
    (ValueError, "row_weights: must be above zero", dict(row_weights=[-1, 1])),
    (ValueError, "variable_weights", dict(variable_weights={"chairs": np.nan})),
    (ValueError, "variable_weights", dict(variable_weights={"chairs": [1, 2]})),
])
def test_what_is_wrong_with_weights_is_said(error, name, change):
    with pytest.raises(error, match=name):
        plan()[0].repair(**change)


@pytest.mark.parametrize("pandas", [True, False])
def test_ranges_as_tables(pandas, monkeypatch):
    if pandas:
        pytest.importorskip("pandas")
    else:
        monkeypatch.setitem(sys.modules, "pandas", None)
    model, chairs, tables, wood, labour = plan()
    with pytest.raises(LookupError, match="ranging"):
        model.solve().ranging()
    solution = model.solve(ranging=True)
    variables, rows = solution.ranging()
    if pandas:
        assert list(variables.index) == ["chairs", "tables"]
        variables, rows = variables.reset_index().to_dict("records"), \
            rows.reset_index().to_dict("records")
    assert variables[0] == {
        "variable": "chairs", "value": solution["chairs"], "reduced cost": 0.0, "cost": 30.0,
        "cost from": solution.cost_range("chairs").lower, "cost to": solution.cost_range("chairs").upper}
    wood_row = rows[0]
    assert (wood_row["row"], wood_row["activity"], wood_row["upper"]) == ("wood", 300, 300)
    assert (wood_row["upper from"], wood_row["upper to"]) == solution.side_range("wood", "upper")
    # Within its range the basis stays, and beyond it does not.
    for side, stays in ((wood_row["upper to"], True), (wood_row["upper to"] + 1, False)):
        model.set_bounds(wood, upper=side)
        gained = model.solve().objective - solution.objective
        assert (gained == pytest.approx(wood_row["dual"] * (side - 300))) == stays


def test_a_picture_of_the_plane():
    model = plan()[0]
    drawing = model.picture()
    assert drawing.svg == drawing._repr_svg_() == model._repr_svg_()
    assert drawing.svg.count("<line") == 4 and drawing.svg.count("<polygon") == 1
    assert "wood" in drawing.svg and "(21.4286, 51.4286)" in drawing.svg
    from xml.etree import ElementTree

    corners = ElementTree.fromstring(drawing.svg).find("{*}polygon").get("points").split()
    assert len(corners) == 4
    model.set_bounds(model.row("wood"), lower=1000, upper=2000)
    assert "<polygon" not in model.picture().svg and "infeasible" in model.picture().svg
    assert "<svg" in nuv.Model.from_arrays([0, 0]).picture(200).svg
    assert "<svg" in nuv.Model.from_arrays([1, 1], lower=-np.inf).picture().svg
    three = nuv.Model.from_arrays([1, 2, 3])
    assert three._repr_svg_() is None
    with pytest.raises(ValueError, match="two variables"):
        three.picture()
    with pytest.raises(ValueError, match="width"):
        model.picture(0)


@pytest.mark.parametrize("tqdm", [True, False])
def test_progress_is_shown(tqdm, monkeypatch, capsys):
    if tqdm:
        pytest.importorskip("tqdm")
    else:
        monkeypatch.setitem(sys.modules, "tqdm", None)
        monkeypatch.setitem(sys.modules, "tqdm.auto", None)
    assert plan()[0].solve(progress=True).status == "optimal"
    assert "1 pivots" in capsys.readouterr().err
    assert plan()[0].solve(progress=False).status == "optimal"
    assert capsys.readouterr().err == ""
    with pytest.raises(TypeError, match="progress"):
        plan()[0].solve(progress="yes")


LONG_SOLVE = """
import sys, numpy as np, nuv, nuv._solve

def say_go(call, options, begin=nuv._solve.Call.__init__):  # just before the library is first called
    nuv._solve.Call.__init__ = begin
    begin(call, options)
    print("go", flush=True)

nuv._solve.Call.__init__ = say_go
r = np.random.default_rng(1)
A = r.integers(0, 100, (1500, 1500)) * (r.random((1500, 1500)) < 0.3)
c, b = -r.integers(1, 100, 1500), r.integers(1000, 9000, 1500)
try:
    if sys.argv[1] == "model":
        nuv.Model.from_arrays(c, A, row_upper=b).solve()
    elif sys.argv[1] == "linprog":
        nuv.linprog(c, A, b)
    else:
        nuv.solve_batch(c, A, np.broadcast_to(b, (3, 1500)), workers=int(sys.argv[1]))
except nuv.Interrupted as stop:
    found = stop.solution
    print(found.status, found.proved)
"""


@pytest.mark.parametrize("kind, said", [("model", "stopped False"), ("linprog", "1 False"),
                                        ("1", "[1 1 1] [False False False]"),
                                        ("3", "[1 1 1] [False False False]")])
def test_an_interrupt_from_the_keyboard_ends_a_long_solve_with_what_is_known(kind, said):
    child = subprocess.Popen([sys.executable, "-c", LONG_SOLVE, kind], stdout=subprocess.PIPE, text=True,
                             env={**os.environ, "PYTHONUNBUFFERED": "1"})
    assert child.stdout.readline() == "go\n"
    time.sleep(0.1)
    begin = time.monotonic()
    child.send_signal(signal.SIGINT)
    output, _ = child.communicate(timeout=60)
    assert (output.strip(), child.returncode) == (said, 0)
    assert time.monotonic() - begin < 10
