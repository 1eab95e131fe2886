"""Claims of others judged, bases read, written and begun from, exact numbers of all kinds."""

import json
import math
import pickle
from fractions import Fraction

import numpy as np
import pytest

import nuv
from test_model import plan


def small():
    """Chairs and tables, of which the optimum has a basis without slack."""
    return plan()[0]


@pytest.fixture
def solved():
    model = small()
    return model, model.solve(exact=True)


def test_what_it_says_itself_is_confirmed_in_every_way_of_saying_it(solved, tmp_path):
    model, solution = solved
    path = tmp_path / "plan.json"
    path.write_text(solution.json)
    for said in (solution, path, str(path), solution.json.encode()):
        found = model.prove(said, tolerance=0)
        assert found and found.verdict == "confirmed" and found.claim == found.truth == "optimal"
        assert found.evidence == "certificate" and found.exact_optimum == solution.exact_objective
    lines = "".join(f"{name} {solution.exact(name)}\n" for name in solution.values)
    values = [solution[name] for name in solution.values]
    for said in (lines.encode(), values, np.array(values), solution.values):
        found = model.prove(said)
        assert found and found.evidence == "solve" and found.numbers == "written", repr(found)
    assert model.prove(lines.encode(), tolerance=0) and not model.prove(values, tolerance=0)
    assert json.loads(found.json) and "confirmed" in str(found)
    assert found.pivots > 0 and found.seconds > 0 and found.num_unnamed == 0
    assert model.prove(b"tables 1\n", claim="feasible").num_unnamed == 1


def test_what_is_not_so_is_refuted_and_said():
    model, chairs, tables, wood, labour = plan()
    found = model.prove({chairs: 30, "tables": 40})
    assert not found and found.verdict == "refuted" and found.truth == "optimal"
    assert repr(found).startswith("<refuted: optimal; ") and found.num_disagreements == 1
    assert [member.code for member in found.disagreements] == ["claim.not-optimal"]
    assert found.objective == 3700 and found.optimum == pytest.approx(29700 / 7) and found.violation == 0
    assert model.prove({chairs: 30, "tables": 40}, claim="feasible").evidence == "values"
    # Beyond a row by 100.
    found = model.prove({"tables": 80})
    assert not found and found.violation == 100 and "wood" in found.disagreements[0].text
    for claim in ("infeasible", "unbounded"):
        found = model.prove(b"chairs 1\n", claim=claim)
        assert not found and found.claim == claim and found.truth == "optimal"
    model.add(chairs + tables >= 1000, "too much")
    assert model.prove(b"chairs 1", claim="infeasible") and not model.prove([0, 0], claim="feasible")
    found = model.prove([0, 0])
    assert not found and found.exact_optimum is None and math.isnan(found.optimum)
    assert found.truth == "infeasible"


def test_numbers_are_as_said():
    model = nuv.Model.from_arrays([1], [[1]], row_lower=0.1, names=["x"])
    assert model.prove([0.1], tolerance=0) and model.prove([0.1], tolerance=0, numbers="stored")
    assert model.prove([0.1], numbers="stored").numbers == "stored"
    # The double next to a tenth is above a tenth.
    assert model.prove(b"x 1/10", tolerance=0)
    assert not model.prove(b"x 1/10", tolerance=0, numbers="stored")


def test_a_limit_leaves_a_claim_undecided_and_a_callback_ends_it():
    model = small()
    found = model.prove([0, 0], time_limit=0)
    assert not found and (found.verdict, found.truth, found.stop_reason) == ("undecided", "stopped", "time limit")
    assert found.evidence == ""
    told = []
    found = model.prove([0, 0], progress=lambda where: told.append(where.stage) or False)
    assert (found.verdict, found.stop_reason) == ("undecided", "cancelled") and len(told) == 1

    def fails(where):
        raise KeyError("mine")

    with pytest.raises(KeyError, match="mine"):
        model.prove([0, 0], progress=fails)

    def interrupts(where):
        raise KeyboardInterrupt

    with pytest.raises(nuv.Interrupted) as caught:
        model.prove([0, 0], progress=interrupts)
    assert caught.value.solution.verdict == "undecided"


def test_a_judgement_stays_when_it_is_pickled(solved):
    model, solution = solved
    found = pickle.loads(pickle.dumps(model.prove(solution)))
    assert found and found.exact_optimum == Fraction(29700, 7) and "confirmed" in str(found)


@pytest.mark.parametrize("arguments, error, match", [
    (([1, 2, 3],), ValueError, "said"),
    (([1, math.nan],), ValueError, "values"),
    (([1, 1j],), TypeError, "said"),
    ((["1/3", 0],), ValueError, "said"),
    (({"sofas": 1},), KeyError, "sofas"),
    (({1: 1},), TypeError, "Variable"),
    ((b"sofas 1\n",), nuv.ModelError, "sofas"),
    ((b"{",), nuv.ModelError, "solution"),
    (("/nowhere/at/all",), nuv.FileError, "nowhere"),
])
def test_what_no_claim_is(arguments, error, match):
    with pytest.raises(error, match=match):
        small().prove(*arguments)


@pytest.mark.parametrize("options, error, match", [
    (dict(claim="best"), ValueError, "claim"), (dict(claim=2), ValueError, "claim"),
    (dict(claim=""), ValueError, "claim"),
    (dict(numbers="both"), ValueError, "numbers"), (dict(tolerance=-1), ValueError, "tolerance"),
    (dict(tolerance=math.nan), ValueError, "tolerance"), (dict(tolerance="much"), TypeError, "tolerance"),
    (dict(time_limit=-1), ValueError, "time_limit"), (dict(claim="infeasible"), ValueError, "claim")])
def test_options_of_claims_that_are_wrong(options, error, match):
    with pytest.raises(error, match=match):
        small().prove([0, 0], **options)


def test_bases_go_through_files(tmp_path):
    model = small()
    model.set_bounds(model["chairs"], upper=10)
    solution = model.solve()
    basis = solution.basis()
    assert isinstance(basis, nuv.Basis)
    assert [solution.basis(name) for name in ("chairs", "tables")] == ["at upper", "basic"]
    assert basis.variables.tolist() == [2, 0] and sorted(basis.rows.tolist()) == [0, 2]
    for name in ("plan.bas", "plan.bas.gz"):
        for of in (None, solution, basis):
            model.write_basis(tmp_path / name, *() if of is None else (of,))
            for found in (model.read_basis(tmp_path / name), model.read_basis(str(tmp_path / name))):
                assert found.variables.tolist() == [2, 0] and found.rows.tolist() == basis.rows.tolist()
    assert (tmp_path / "plan.bas").read_text() == model.basis_text() == model.basis_text(basis)
    assert model.read_basis(model.basis_text().encode()).variables.tolist() == [2, 0]
    assert pickle.loads(pickle.dumps(basis)).variables.tolist() == [2, 0]


def test_a_solve_begins_at_a_basis():
    r = np.random.default_rng(3)
    A = r.integers(1, 9, (40, 60))
    model = nuv.Model.from_arrays(-r.integers(1, 9, 60), A, row_upper=r.integers(50, 90, 40))
    cold = model.solve()
    again = model.copy().solve(start=cold)
    assert cold.pivots > 5 and again.pivots == 0 and again.exact_objective == cold.exact_objective
    assert model.copy().solve(start=cold.basis()).pivots == 0
    # It is taken by a model that has been solved too, which goes on from its end then.
    slack = nuv.Basis(np.ones(60, int), np.zeros(40, int))
    again = model.solve(start=slack)
    assert again.pivots > 5 and again.exact_objective == cold.exact_objective
    assert model.solve().pivots == 0


@pytest.mark.parametrize("basis, error", [
    (nuv.Basis([0], [0, 0]), ValueError), (nuv.Basis([0, 0], [0]), ValueError),
    (nuv.Basis([0, 4], [1, 1]), ValueError), (nuv.Basis([0, -1], [1, 1]), ValueError),
    (nuv.Basis([0.0, 1.0], [1, 1]), ValueError), ([0, 0], TypeError), ("basis", TypeError)])
def test_bases_that_are_none(basis, error):
    model = small()
    for use, what in ((lambda: model.solve(start=basis), "start"), (lambda: model.basis_text(basis), "basis")):
        with pytest.raises(error, match=f"^{what}: "):
            use()


def test_files_of_bases_that_are_none(tmp_path):
    model = small()
    with pytest.raises(LookupError):
        model.write_basis(tmp_path / "basis")
    with pytest.raises(nuv.FileError):
        model.read_basis(tmp_path / "none")
    with pytest.raises(nuv.ModelError, match="sofas"):
        model.read_basis(b"NAME\n UL sofas\nENDATA\n")
    # As many variables are to be basic as rows are not.
    with pytest.raises(nuv.FileError):
        model.basis_text(nuv.Basis([0, 0], [0, 0]))


def test_all_numbers_are_there_exactly_if_asked_for():
    model, chairs, tables, wood, labour = plan()
    free = model.add_rows([[1, -1]], names=["free"])[0]
    model.set_bounds(chairs, upper="10")
    solution = model.solve(exact=True)
    assert solution.exact_activity(labour) == 208 and solution.exact_slack(labour) == 32
    assert solution.exact_slack("wood") == 0 and solution.exact_reduced_cost(chairs) == 2
    assert solution.exact_activity(free) == -46 and solution.exact_slack(free) is None
    assert solution.exact_dual(wood) == 14
    kept = pickle.loads(pickle.dumps(solution))
    assert kept.exact_slack(labour) == 32
    for ask in (solution.exact_slack, solution.exact_activity, solution.exact_dual):
        with pytest.raises(KeyError, match="stone"):
            ask("stone")
    plain = model.solve()
    for ask in (plain.exact_slack, plain.exact_activity):
        with pytest.raises(LookupError, match="exact=True"):
            ask(wood)
    model.set_bounds(wood, lower=1000)
    with pytest.raises(LookupError, match="optimum"):
        model.solve(exact=True).exact_slack(wood)
