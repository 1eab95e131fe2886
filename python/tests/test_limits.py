"""Memory, time and processes: what must not grow, wait or break."""

import os
import subprocess
import sys
import time
from fractions import Fraction
from pathlib import Path

import numpy as np
import pytest
from hypothesis import HealthCheck, given, settings, strategies

import nuv
from test_model import plan, resident

LONG = bool(os.environ.get("NUV_PYTHON_LONG"))


def test_models_made_and_dropped_leave_memory_as_it_was():
    def make(count):
        for _ in range(count):
            model, chairs, *_ = plan()
            model.solve()
            chairs.exact

    count = 10_000 if LONG else 2_000
    make(count // 5)
    before = resident()
    make(count)
    # A page for each tenth model would be far over this.
    assert resident() - before < 200


def best_seconds(code, times=5):
    """The processor time of a new interpreter, the least of some."""
    found = []
    for _ in range(times):
        program = f"import time, sys; {code}; sys.stdout.write(str(time.process_time()))"
        found.append(float(subprocess.run([sys.executable, "-c", program], capture_output=True, text=True,
                                          check=True).stdout))
    return min(found)


def test_importing_takes_little_more_than_numpy():
    assert best_seconds("import nuv") - best_seconds("import numpy") < 0.05
    # What is optional waits until it is asked for.
    code = "import sys, nuv; print([m for m in ('scipy', 'pandas', 'dask', 'pulp', 'tqdm') if m in sys.modules])"
    assert subprocess.check_output([sys.executable, "-c", code], text=True).strip() == "[]"


def test_a_million_coefficients_of_a_sparse_matrix():
    sparse = pytest.importorskip("scipy.sparse")
    rows = np.arange(20_000)
    indices = (np.arange(50) * 200 + (rows % 200)[:, np.newaxis]).reshape(-1)
    matrix = sparse.csr_matrix((np.random.default_rng(1).integers(1, 99, 1_000_000) / 8, indices,
                                np.arange(20_001) * 50), (20_000, 10_000))
    costs, least = np.ones(10_000), float("inf")
    for given_matrix in (matrix, matrix, matrix, matrix.tocsc()):
        begin = time.process_time()
        model = nuv.Model.from_arrays(costs, given_matrix, row_upper=1.0)
        least = min(least, time.process_time() - begin)
        assert model.num_entries == 1_000_000
    assert least < 0.3


FORKED = """
import os, pickle, signal
from fractions import Fraction
import nuv
from test_model import plan

model, chairs, *_ = plan()
solution = model.solve()
read, write = os.pipe()
child = os.fork()
if child == 0:
    signal.alarm(60)
    try:
        model.set_bounds(model.row("wood"), upper=600)
        found = model.solve(), solution.exact("chairs"), nuv.solve_batch(
            [-1, -2], [[1, 1]], [[1], [2]], workers=2)
        os.write(write, pickle.dumps(found))
    finally:
        os._exit(0)
os.close(write)
with os.fdopen(read, "rb") as pipe:
    theirs, exact, batch = pickle.loads(pipe.read())
assert os.waitpid(child, 0)[1] == 0
assert theirs.exact_objective == 5600 and exact == Fraction(150, 7)
assert batch.fun.tolist() == [-2, -4]
assert model.solve().exact_objective == Fraction(29700, 7)
"""


def test_a_forked_process_solves_and_leaves_its_parent_alone():
    # In an interpreter of its own: a process is not forked that has threads of other packages.
    subprocess.run([sys.executable, "-c", FORKED], cwd=Path(__file__).parent, check=True, timeout=100)


NUMBERS = strategies.one_of(
    strategies.integers(-9, 9).map(Fraction), strategies.fractions(-3, 3, max_denominator=9),
    strategies.integers(-99, 99).map(lambda n: Fraction(n, 100)))


@strategies.composite
def problems(draw):
    """c, A, b and bounds in fractions, written in one of the ways that a number may be."""
    n, m = draw(strategies.integers(1, 4)), draw(strategies.integers(0, 4))

    def row():
        return draw(strategies.lists(NUMBERS, min_size=n, max_size=n))

    b = draw(strategies.lists(NUMBERS, min_size=m, max_size=m))
    return row(), [row() for _ in range(m)], b, [sorted(pair) for pair in zip(row(), row())]


@settings(max_examples=2000 if LONG else 100, deadline=None,
          suppress_health_check=[HealthCheck.too_slow, HealthCheck.data_too_large], derandomize=True)
@given(problems())
def test_the_exact_optimum_keeps_to_the_problem_and_its_dual(problem):
    c, A, b, bounds = problem
    found = nuv.linprog([str(number) for number in c], A or None, b or None, bounds=bounds)
    assert found.proved and found.status in (0, 2)
    if found.status == 2:
        assert found.exact is None and len(found.conflict) > 0
        return
    x, exact = found.exact.x, found.exact
    for row, side in zip(A, b):
        assert sum(p * q for p, q in zip(row, x)) <= side
    assert all(low <= value <= high for (low, high), value in zip(bounds, x))
    value = sum((y * side for y, side in zip(exact.ineqlin, b)), Fraction(0))
    value += sum(l * low + u * high for l, u, (low, high) in zip(exact.lower, exact.upper, bounds))
    assert exact.fun == sum(p * q for p, q in zip(c, x)) == value
    # A model made by operators is the same problem.
    model = nuv.Model()
    variables = [model.variable(None, low, high) for low, high in bounds]
    for row, side in zip(A, b):
        model.add(nuv.sum(p * q for p, q in zip(row, variables)) + Fraction(1, 7) <= side + Fraction(1, 7))
    model.minimize(nuv.sum(p * q for p, q in zip(c, variables)))
    assert model.solve().exact_objective == exact.fun
