"""Calls with one argument that is wrong, or odd: each ends with an answer, or with an exception that
names an argument. NUV_PYTHON_CALLS says how many there are; tests/memory makes them under the address
sanitizer.
"""

import os
import random
import re
from decimal import Decimal
from fractions import Fraction

import numpy as np
import pytest

import nuv

sparse = pytest.importorskip("scipy.sparse")

CALLS = int(os.environ.get("NUV_PYTHON_CALLS", "600"))
BLOCKS = 20

#: What an answer may be, other than an answer.
REFUSALS = (TypeError, ValueError, LookupError, NotImplementedError, OSError, nuv.Error)


def random_array(r):
    shape = tuple(r.choice((0, 1, 2, 2, 3, 5)) for _ in range(r.randrange(4)))
    kind = r.choice((np.float64, np.float32, np.int8, np.int64, np.uint64, np.complex64, bool, object,
                     np.float16, np.longdouble, ">f8", "U3", "S2", "M8[s]", [("a", "f8"), ("b", "i4")]))
    array = np.zeros(shape, kind)
    if array.dtype.kind in "fiu" and array.size:
        array[...] = np.random.default_rng(r.randrange(1000)).integers(0, 90, shape).astype(kind)
        if array.dtype.kind == "f" and r.random() < 0.2:
            array.flat[r.randrange(array.size)] = r.choice((np.nan, np.inf, -np.inf, 1e300, 5e-324, -0.0))
    views = (lambda a: a, lambda a: a[::-1] if a.ndim else a, lambda a: a.T,
             lambda a: np.broadcast_to(a, (2, *a.shape)), lambda a: np.ma.masked_array(a),
             lambda a: memoryview(a) if a.dtype.kind in "fi" else a, lambda a: a.tolist())
    return r.choice(views)(array)


def random_value(r):
    """Anything at all."""
    simple = (None, True, False, 0, 1, 2, -1, 2**31, 2**32, 2**63, 2**64, -2**70, 10**400, 0.5, -0.0,
              float("nan"), float("inf"), -float("inf"), 1e308, 5e-324, 1j, "", "x", "1/3", "1/0", "1e999",
              "-inf", "nan", "\0", "\udcff", "é" * 300, "x" * 70_000, b"", b"x\0y", bytearray(3), [], (), {},
              set(), [[]], [[], []], [None], [1], [1, 2], [1, 2, 3], [[1, 2], [3]], [[1, 2], [3, 4]],
              [[1, 2, 3]], ["1/3", 2], [[1, "x"], [2, 3]], [(0, 1), (None, None)], [(1, 0)] * 2, {"a": 1},
              object, object(), len, lambda *_: False, Fraction(1, 3), Fraction(10**400, 3), Decimal("0.1"),
              Decimal("NaN"), Decimal("1e500"), range(2), iter([1, 2]), np.float64(1), np.int64(2),
              np.uint64(2**63), np.bool_(True), np.datetime64("2020"), slice(1), Ellipsis, NotImplemented)
    kind = r.random()
    if kind < 0.55:
        return r.choice(simple)
    if kind < 0.8:
        return random_array(r)
    if kind < 0.9:
        shape = r.choice(((2, 2), (1, 2), (2, 3), (0, 2), (2, 0), (3, 2)))
        matrix = sparse.random(*shape, 0.7, random_state=r.randrange(99)).asformat(
            r.choice(("csr", "csc", "coo", "lil", "dok", "dia", "bsr")))
        if r.random() < 0.3 and getattr(matrix, "data", None) is not None and matrix.format in ("csr", "csc") \
                and matrix.nnz:
            matrix.data[0] = r.choice((np.nan, np.inf, 0.0))
        return matrix
    other = nuv.Model()
    x = other.variables("x", 2)
    return r.choice((other, x, x[0], x[0] + 1, x <= 1, x[0] <= 1, other.add(x[0] <= 1), other.add(x <= 1)))


def plan():
    model = nuv.Model("plan")
    x = model.variables("x", 2)
    rows = model.add([[2, 5], [4, 3]] @ x <= [300, 240], "row")
    model.maximize(30 * x[0] + 70 * x[1])
    return model, x, rows


CERTIFICATE = plan()[0].solve().certificate

#: Arguments that are right, by function.
CALLABLES = {
    "linprog": (lambda **kw: nuv.linprog(**kw), dict(
        c=[-30, -70], A_ub=[[2, 5], [4, 3]], b_ub=[300, 240], A_eq=[[1, -1]], b_eq=[0], bounds=[(0, 9)] * 2,
        method="highs", options={}, x0=[0, 0], integrality=0, numbers="written", callback=None)),
    "solve_batch": (lambda **kw: nuv.solve_batch(**kw), dict(
        c=[-30, -70], A_ub=[[2, 5], [4, 3]], b_ub=[[300, 240], [1, 2]], A_eq=[[1, -1]], b_eq=[0],
        bounds=[(0, 9)] * 2, workers=1, numbers="stored", pivot_limit=50, proved=True)),
    "solve_batch unproved": (lambda **kw: nuv.solve_batch(proved=False, **kw), dict(
        c=[-30, -70], A_ub=[[2, 5], [4, 3]], b_ub=[[300, 240], [1, 2]], workers=2, pivot_limit=50)),
    "from_arrays": (lambda **kw: nuv.Model.from_arrays(**kw).solve(), dict(
        c=[30, 70], A=[[2, 5], [4, 3]], row_lower=-np.inf, row_upper=[300, 240], lower=0, upper=9,
        maximize=True, constant=1, names=["a", "b"], row_names=["r", "s"])),
    "variables": (lambda **kw: plan()[0].variables(**kw), dict(
        name="y", shape=2, lower=[0, 1], upper=9, cost=1)),
    "variable": (lambda **kw: plan()[0].variable(**kw), dict(name="y", lower=0, upper=9, cost=1)),
    "add": (lambda **kw: plan()[0].add(**kw), dict(constraint=None, name="new")),
    "add_rows": (lambda **kw: plan()[0].add_rows(**kw), dict(
        A=[[1, 2], [3, 4]], lower=0, upper=[8, 9], x=None, names=["r", "s"])),
    "set_bounds": (lambda of, **kw: (lambda m: m[0].set_bounds(m[1] if of is None else of, **kw))(plan()),
                   dict(of=None, lower=0, upper=[3, 4])),
    "set_cost": (lambda of, **kw: (lambda m: m[0].set_cost(m[1] if of is None else of, **kw))(plan()),
                 dict(of=None, cost=[1, 2])),
    "set_coefficient": (lambda row, variable, coefficient: (lambda m: m[0].set_coefficient(
        m[2][0] if row is None else row, m[1][0] if variable is None else variable, coefficient))(plan()),
        dict(row=None, variable=None, coefficient=3)),
    "remove": (lambda of: plan()[0].remove(of), dict(of=None)),
    "objective": (lambda objective: plan()[0].minimize(objective), dict(objective=1)),
    "times": (lambda factor: plan()[1] * factor, dict(factor=[1, 2])),
    "matrix": (lambda matrix: matrix @ plan()[1] if hasattr(matrix, "shape") else plan()[1].__rmatmul__(matrix),
               dict(matrix=[[1, 2]])),
    "plus": (lambda constant: plan()[1] + constant <= 3, dict(constant=[1, 2])),
    "expression": (lambda coefficient: (plan()[1][0] * coefficient + coefficient <= coefficient),
                   dict(coefficient=2)),
    "solve": (lambda **kw: plan()[0].solve(**kw), dict(
        numbers="written", time_limit=9, pivot_limit=9, scale=False, ranging=True, uniqueness=True,
        exact=True, conflict_work=9, start=nuv.Basis([0, 0], [2, 2]), progress=None, log=None)),
    "prove": (lambda **kw: plan()[0].prove(**kw), dict(
        said=[1, 2], claim="optimal", numbers="written", tolerance=1e-6, time_limit=9, progress=None)),
    "prove text": (lambda text: plan()[0].prove(text.encode() if isinstance(text, str) else text),
                   dict(text="x_0 1/3\nx_1 2\n")),
    "basis_text": (lambda **kw: plan()[0].basis_text(**kw), dict(basis=nuv.Basis([0, 0], [2, 2]))),
    "read_basis": (lambda text: plan()[0].read_basis(text.encode() if isinstance(text, str) else text),
                   dict(text="NAME\n XU x_0 row_0\nENDATA\n")),
    "repair": (lambda **kw: plan()[0].repair(**kw), dict(
        variable_weights=[1, 2], row_weights={"row_0": 2}, numbers="written", time_limit=9, pivot_limit=99)),
    "picture": (lambda width: plan()[0].picture(width), dict(width=200)),
    "text": (lambda format: plan()[0].text(format), dict(format="lp")),
    "from_text": (lambda **kw: nuv.Model.from_text(**kw), dict(text="Minimize\n x\nEnd\n", name="a.lp")),
    "verify": (lambda **kw: plan()[0].verify(**kw), dict(certificate=CERTIFICATE, numbers="written")),
    "name": (lambda name: plan()[0][name], dict(name="x_0")),
    "row": (lambda name: plan()[0].row(name), dict(name="row_0")),
    "value": (lambda of: plan()[0].solve()[of], dict(of="x_0")),
    "side_range": (lambda row, side: plan()[0].solve(ranging=True).side_range(row, side),
                   dict(row="row_0", side="upper")),
}

#: Of arguments that have to fit each other, either may be named.
TOGETHER = {"c", "A_ub", "b_ub", "A_eq", "b_eq", "A", "x0", "bounds", "row_lower", "row_upper", "lower",
            "upper", "names", "row_names", "integrality", "x", "shape", "name", "cost"}


def names_it(message, argument):
    """Whether a message names the argument, or one that has to fit it."""
    words = set(re.findall(r"\w+", message))
    return argument in words or (argument in TOGETHER and bool(words & TOGETHER))


@pytest.mark.parametrize("block", range(BLOCKS))
def test_random_calls(block):
    answers = refusals = 0
    for seed in range(block, CALLS, BLOCKS):
        r = random.Random(seed)
        name, (function, right) = list(CALLABLES.items())[seed // BLOCKS % len(CALLABLES)]
        argument = r.choice(list(right))
        value = random_value(r)
        try:
            function(**{**right, argument: value})
            answers += 1
        except REFUSALS as refusal:
            refusals += 1
            if name in ("linprog", "solve_batch", "solve_batch unproved", "from_arrays"):
                assert names_it(str(refusal), argument), (seed, name, argument, value, refusal)
        except BaseException as failure:
            raise AssertionError(f"seed {seed}: {name}({argument}={value!r:.300})") from failure
    assert refusals > 0 and answers > 0
    assert plan()[0].solve().exact_objective == Fraction(29700, 7)


def mangled(text, r):
    """A text with a few changes."""
    data = list(text)
    for _ in range(r.randrange(1, 6)):
        at = r.randrange(len(data))
        what = r.random()
        if what < 0.4:
            data[at] = chr(r.choice((0, 9, 10, 32, 45, 47, 48, 57, 58, 60, 61, 101, 120, 233, 0x1f600)))
        elif what < 0.7:
            del data[at:at + r.randrange(1, 9)]
            data = data or [" "]
        else:
            data[at:at] = data[at:at + r.randrange(1, 30)]
    return "".join(data)


@pytest.mark.parametrize("block", range(4))
def test_mangled_texts_and_certificates(block):
    model = plan()[0]
    texts = [model.text("lp"), model.text("mps"), model.text("mps-free")]
    for seed in range(block, CALLS // 2, 4):
        r = random.Random(seed)
        kind = seed % 4
        try:
            if kind == 3:
                assert model.verify(mangled(CERTIFICATE, r)) == "optimal"
            else:
                found = nuv.Model.from_text(mangled(texts[kind], r), "a.mps" if kind else "a.lp")
                found.solve(pivot_limit=100)
        except nuv.Error as refusal:
            assert str(refusal)
