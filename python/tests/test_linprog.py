"""linprog, against the documented examples of scipy's and against what its solver answers."""

import pickle
import warnings
from fractions import Fraction

import numpy as np
import pytest
import scipy.optimize
import scipy.sparse

import nuv


def meant(value):
    return Fraction(repr(float(value)))


def exact_rows(A, x):
    return [sum((meant(a) * v for a, v in zip(row, x) if a), Fraction(0)) for row in A]


def assert_exact_optimum(problem, exact):
    """Feasible, and bounded by its marginals: an optimum, with no arithmetic that rounds."""
    c, A_ub, b_ub, A_eq, b_eq, bounds = problem
    bound = Fraction(0)
    for A, b, marginals, is_equation in ((A_ub, b_ub, exact.ineqlin, False),
                                         (A_eq, b_eq, exact.eqlin, True)):
        for value, side, marginal in zip(exact_rows(A, exact.x), b, marginals):
            assert value == meant(side) if is_equation else value <= meant(side)
            assert is_equation or marginal <= 0
            bound += marginal * meant(side)
    for x, (low, high), lower, upper in zip(exact.x, bounds, exact.lower, exact.upper):
        assert (low is None or x >= meant(low)) and (high is None or x <= meant(high))
        assert lower >= 0 >= upper
        assert (low is not None or lower == 0) and (high is not None or upper == 0)
        bound += lower * meant(low or 0) + upper * meant(high or 0)
    assert exact.fun == sum(meant(a) * v for a, v in zip(c, exact.x)) == bound


def assert_exactly_unbounded(problem):
    """There is a point, and a direction that improves for ever: both are optima, checked as such."""
    c, A_ub, b_ub, A_eq, b_eq, bounds = problem
    somewhere = (0 * c, A_ub, b_ub, A_eq, b_eq, bounds)
    assert_exact_optimum(somewhere, nuv.linprog(*somewhere).exact)
    cone = [(-1 if low is None else 0, 1 if high is None else 0) for low, high in bounds]
    onwards = (c, A_ub, 0 * b_ub, A_eq, 0 * b_eq, cone)
    direction = nuv.linprog(*onwards).exact
    assert_exact_optimum(onwards, direction)
    assert direction.fun < 0


def random_problem(seed):
    """Small numbers, so that ties, redundant rows and degenerate vertices are common."""
    r = np.random.default_rng(seed)
    n, num_ub, num_eq = int(r.integers(1, 8)), int(r.integers(0, 7)), int(r.integers(0, 3))
    scale = (1.0, 0.1, 0.125)[seed % 3]

    def draw(*shape):
        numbers = r.integers(-9, 10, shape) * (r.random(shape) < 0.7)
        return np.round(numbers * scale, 3)

    A_ub, A_eq = draw(num_ub, n), draw(num_eq, n)
    inside = r.integers(0, 4, n)
    feasible = r.random() < 0.7
    b_ub = np.round(A_ub @ inside + r.integers(0, 5, num_ub), 3) if feasible else draw(num_ub)
    b_eq = np.round(A_eq @ inside, 3) if feasible else draw(num_eq)
    bounds = [((0, None), (0, 5), (None, None), (-2, 7), (None, 4))[k]
              for k in r.integers(0, 5, n)]
    return draw(n), A_ub, b_ub, A_eq, b_eq, bounds


@pytest.mark.parametrize("block", range(20))
def test_agrees_with_scipy_on_random_problems(block):
    verdicts = set()
    for seed in range(100 * block, 100 * block + 100):
        problem = random_problem(seed)
        mine = nuv.linprog(*problem)
        other = scipy.optimize.linprog(*problem)
        assert mine.proved, seed
        if mine.status == 0:
            assert_exact_optimum(problem, mine.exact)
        if mine.status != other.status:
            assert mine.status == 3, seed
            assert_exactly_unbounded(problem)
        assert mine.success == other.success
        verdicts.add(mine.status)
        if mine.status == 0:
            assert abs(mine.fun - other.fun) <= 1e-9 * max(1.0, abs(other.fun)), seed
            assert mine.x.shape == other.x.shape
            for name in ("ineqlin", "eqlin", "lower", "upper"):
                assert mine[name].marginals.shape == other[name].marginals.shape
                assert mine[name].residual.shape == other[name].residual.shape
    assert verdicts == {0, 2, 3}


def test_marginals_are_scipys_where_the_optimum_is_not_degenerate():
    compared = 0
    for seed in range(400):
        r = np.random.default_rng(seed)
        n, num_ub = 5, 4
        A_ub, A_eq = r.normal(size=(num_ub, n)), r.normal(size=(1, n))
        inside = r.random(n)
        problem = (r.normal(size=n), A_ub, A_ub @ inside + r.random(num_ub), A_eq, A_eq @ inside,
                   [(-1, 2), (0, 3), (0, 1), (None, 4), (-5, 5)])
        mine, other = nuv.linprog(*problem), scipy.optimize.linprog(*problem)
        assert mine.status == other.status
        if mine.status == 0:
            for name in ("ineqlin", "eqlin", "lower", "upper"):
                np.testing.assert_allclose(mine[name].marginals, other[name].marginals, atol=1e-8)
                np.testing.assert_allclose(mine[name].residual, other[name].residual, atol=1e-8)
            np.testing.assert_allclose(mine.x, other.x, atol=1e-8)
            np.testing.assert_allclose(mine.slack, other.slack, atol=1e-8)
            np.testing.assert_allclose(mine.con, other.con, atol=1e-8)
            compared += 1
    assert compared > 300


def test_the_first_documented_example():
    result = nuv.linprog([-1, 4], A_ub=[[-3, 1], [1, 2]], b_ub=[6, 4], bounds=[(None, None), (-3, None)])
    assert result.fun == -22 and result.x.tolist() == [10, -3]
    assert result.slack.tolist() == [39, 0]
    assert result.ineqlin.residual.tolist() == [39, 0]
    assert result.ineqlin.marginals.tolist() == [0, -1]
    assert result.lower.marginals.tolist() == [0, 6]
    assert result.upper.residual.tolist() == [np.inf, np.inf]
    assert (result.status, result.success) == (0, True)


def test_the_documented_example_with_equations():
    result = nuv.linprog([-29, -45, 0, 0], [[1, -1, -3, 0], [-2, 3, 7, -3]], [5, -10],
                         [[2, 8, 1, 0], [4, 4, 0, 1]], [60, 60],
                         [(0, None), (0, 5), (-np.inf, 0.5), (-3, None)])
    other = scipy.optimize.linprog([-29, -45, 0, 0], [[1, -1, -3, 0], [-2, 3, 7, -3]], [5, -10],
                                   [[2, 8, 1, 0], [4, 4, 0, 1]], [60, 60],
                                   [(0, None), (0, 5), (-np.inf, 0.5), (-3, None)])
    assert result.status == other.status
    assert (result.fun is None) == (other.fun is None)
    if result.fun is not None:
        assert result.fun == pytest.approx(other.fun, rel=1e-9)


def test_numbers_are_those_written():
    # 0.1 + 0.2 is not the double 0.3, but one tenth and two tenths are three tenths.
    rows = [[0.1, 0.2], [-0.1, -0.2], [0.3, 0.0], [-0.3, 0.0]]
    sides = [0.3, -0.3, 0.3, -0.3]
    written = nuv.linprog([1, 1], rows, sides)
    assert written.exact.x == [1, 1] and written.exact.fun == 2
    stored = nuv.linprog([1, 1], rows, sides, numbers="stored")
    assert stored.exact.x[1] == (Fraction(0.3) - Fraction(0.1)) / Fraction(0.2) != 1


def test_fractions_and_texts_are_the_numbers_they_say():
    result = nuv.linprog([Fraction(-1, 4), "-2/5"], [["0.5", 1]], [Fraction(3, 2)])
    assert result.exact.fun == Fraction(-3, 4)
    assert nuv.linprog([2**53 + 1], [[-1]], [-1]).exact.fun == 2**53 + 1
    assert nuv.linprog([2**60], [[-1]], [-1], numbers="stored").exact.fun == 2**60
    assert nuv.linprog([10**22], [[-1]], [-1]).exact.fun == 10**22
    assert nuv.linprog(["0.1000000000000000000001"], [[-1]], [-1]).exact.fun == \
        Fraction(1, 10) + Fraction(1, 10**22)
    with pytest.raises(ValueError, match="^c: 1/10.*would be rounded"):
        nuv.linprog([Fraction(1, 10)], [[-1]], [-1], numbers="stored")
    with pytest.raises(ValueError, match="^A_ub: .*is no number that a double holds"):
        nuv.linprog([1], [["1e400"]], [1])
    with pytest.raises(ValueError, match="^b_ub: .*would be rounded"):
        nuv.linprog([1], [[1]], ["1e-400"])


@pytest.mark.parametrize("seed", range(40))
def test_quotients_in_every_place_have_the_optimum_of_their_whole_multiples(seed):
    """x = y / 21 and rows times 6 turn a problem in sevenths and thirds into one of integers."""
    r = np.random.default_rng(seed)
    n, num_ub, num_eq = 4, 3, 1
    A_ub, A_eq = r.integers(-5, 9, (num_ub, n)), r.integers(-2, 5, (num_eq, n))
    b_ub, b_eq = r.integers(1, 60, num_ub), A_eq @ r.integers(0, 9, n)
    c, low, high = r.integers(-9, 10, n), r.integers(-9, 1, n), r.integers(9, 70, n)

    def parts(array, divisor):
        return [parts(row, divisor) if np.ndim(row) else Fraction(int(row), divisor)
                for row in array]

    whole = nuv.linprog(c, A_ub, b_ub, A_eq, b_eq, np.column_stack((low, high)))
    quotients = nuv.linprog(
        parts(c, 3), [[f"{a}/6" for a in row] for row in A_ub], parts(b_ub, 126), parts(A_eq, 6),
        parts(b_eq, 126), list(zip(parts(low, 21), parts(high, 21))))
    assert (whole.status, whole.proved) == (quotients.status, quotients.proved)
    if whole.status == 0:
        exact = quotients.exact
        assert exact.fun == whole.exact.fun / 63
        assert exact.fun == sum(a * b for a, b in zip(parts(c, 3), exact.x))
        for row, side in zip(parts(A_ub, 6), parts(b_ub, 126)):
            assert sum(a * b for a, b in zip(row, exact.x)) <= side
        bound = sum(y * side for y, side in zip(exact.ineqlin, parts(b_ub, 126)))
        bound += sum(y * side for y, side in zip(exact.eqlin, parts(b_eq, 126)))
        bound += sum(a * b for a, b in zip(exact.lower, parts(low, 21)))
        bound += sum(a * b for a, b in zip(exact.upper, parts(high, 21)))
        assert exact.fun == bound


def test_a_start_near_the_optimum_saves_pivots():
    r = np.random.default_rng(4)
    A = r.integers(1, 9, (60, 40))
    cold = nuv.linprog(-np.ones(40), A, np.full(60, 100.0))
    warm = nuv.linprog(-np.ones(40), A, np.full(60, 100.0), x0=cold.x)
    assert warm.exact.fun == cold.exact.fun and warm.nit < cold.nit / 2
    some = nuv.linprog(-np.ones(40), A, np.full(60, 100.0), x0=np.full(40, np.nan))
    assert some.exact.fun == cold.exact.fun


def test_sparse_matrices_of_every_format_are_taken():
    A = np.array([[2.0, 0, 5], [4, 3, 0]])
    dense = nuv.linprog([-30, -70, -1], A, [300, 240])
    for kind in ("csr", "csc", "coo", "lil", "dok", "dia", "bsr"):
        sparse = nuv.linprog([-30, -70, -1], scipy.sparse.csr_matrix(A).asformat(kind), [300, 240])
        assert sparse.exact == dense.exact
    # An entry that is given in two parts.
    twice = scipy.sparse.csr_matrix(([1.0, 1, 5, 4, 3], [0, 0, 2, 0, 1], [0, 3, 5]), (2, 3))
    assert nuv.linprog([-30, -70, -1], twice, [300, 240]).exact == dense.exact
    assert twice.nnz == 5


def test_a_conflict_names_rows_and_bounds():
    result = nuv.linprog([1, 1], [[1, 1], [5, 5]], [-1, 99], bounds=[(0, 9), (0, 9)])
    assert result.status == 2 and result.x is None and result.fun is None and result.proved
    # Lower bounds of zero stay in force without being members.
    assert result.conflict == [nuv.ConflictMember("A_ub", 0, "upper")]
    result = nuv.linprog([1, 1], [[5, 5]], [99], [[1, 1]], [9], [(5, 9), (6, None)])
    assert {(member.of, member.index, member.side) for member in result.conflict} == {
        ("A_eq", 0, "upper"), ("bounds", 0, "lower"), ("bounds", 1, "lower")}
    crossed = nuv.linprog([1], bounds=(2, 1))
    assert crossed.status == 2 and [m.side for m in crossed.conflict] == ["lower", "upper"]


def test_limits_end_a_solve_with_status_1():
    r = np.random.default_rng(1)
    A = r.random((30, 30))
    result = nuv.linprog(-np.ones(30), A, np.ones(30), options={"maxiter": 1})
    assert (result.status, result.success, result.proved) == (1, False, False)
    result = nuv.linprog(-np.ones(30), A, np.ones(30), options={"time_limit": 0.0})
    assert result.status == 1 and "time limit" in result.message


def test_without_a_proof_doubles_are_believed():
    r = np.random.default_rng(2)
    problem = -np.ones(20), r.random((20, 20)), np.ones(20)
    result, proved = nuv.linprog(*problem, proved=False), nuv.linprog(*problem)
    assert proved.proved and (result.status, result.success, result.proved) == (0, True, False)
    assert (result.exact, result.unique, result.certificate) == (None, None, None)
    assert result.proof == "not proved" and result.fun == pytest.approx(proved.fun, rel=1e-9)
    np.testing.assert_allclose(result.ineqlin.marginals, proved.ineqlin.marginals, atol=1e-9)
    assert nuv.linprog([1], [[1]], [-1], proved=False).status == 2
    assert nuv.linprog([-1], [[-1]], [-1], proved=False).status == 3


def brute_uniqueness(problem, found):
    """No other point is as good: the largest and smallest of each variable on the optimal face."""
    c, A_ub, b_ub = problem
    face = (np.vstack((A_ub, [c])), [*b_ub, str(found.exact.fun)])
    for k in range(len(c)):
        for sign in (1, -1):
            end = nuv.linprog(sign * np.eye(len(c))[k], *face)
            if end.status != 0 or sign * end.exact.fun != found.exact.x[k]:
                return False
    return True


def test_uniqueness_is_decided_exactly():
    seen = {True: 0, False: 0}
    for seed in range(150):
        r = np.random.default_rng(seed)
        n, m = int(r.integers(1, 5)), int(r.integers(1, 5))
        problem = r.integers(-3, 4, n), r.integers(-2, 5, (m, n)), r.integers(0, 9, m)
        found = nuv.linprog(*problem)
        if found.status != 0:
            assert found.unique is None
        else:
            assert found.unique is brute_uniqueness(problem, found), seed
            seen[found.unique] += 1
    assert min(seen.values()) > 20
    two = nuv.Model.from_arrays([1, 1], [[1, 1], [2, 2]], row_lower=[1, 2])
    assert two.solve().unique is None
    solution = two.solve(uniqueness=True)
    assert (solution.unique, solution.unique_duals) == (False, False)
    assert pickle.loads(pickle.dumps(solution)).unique is False
    assert pickle.loads(pickle.dumps(nuv.linprog([1], [[-1]], [-1]))).unique is True


def test_the_certificate_and_pickles():
    result = nuv.linprog([-30, -70], [[2, 5], [4, 3]], [300, 240])
    assert result.certificate.lstrip().startswith("VER")
    again = pickle.loads(pickle.dumps(nuv.linprog([-30, -70], [[2, 5], [4, 3]], [300, 240])))
    assert again.exact == result.exact and again.certificate == result.certificate
    assert again.x.tolist() == result.x.tolist() and type(again) is nuv.LinprogResult
    assert again["fun"] == again.fun and "x: array" in repr(again)
    with pytest.raises(AttributeError):
        result.nothing


@pytest.mark.parametrize("arguments, error, name", [
    (dict(c=[]), ValueError, "c"),
    (dict(c=[[1, 2], [3, 4]]), ValueError, "c"),
    (dict(c=[np.nan]), ValueError, "c"),
    (dict(c=["a"]), ValueError, "c"),
    (dict(c=[1 + 2j]), TypeError, "c"),
    (dict(c=[None]), TypeError, "c"),
    (dict(c=object()), TypeError, "c"),
    (dict(A_ub=[[1, 2, 3]]), ValueError, "A_ub"),
    (dict(A_ub=[[1, 2], [3]]), ValueError, "A_ub"),
    (dict(A_ub=[[1, np.inf]]), ValueError, "A_ub"),
    (dict(A_ub=[[1, 2]], b_ub=None), ValueError, "A_ub"),
    (dict(A_ub=scipy.sparse.csr_matrix((1, 3))), ValueError, "A_ub"),
    (dict(b_ub=[1, 2]), ValueError, "b_ub"),
    (dict(b_ub=[np.inf]), ValueError, "b_ub"),
    (dict(A_ub=None), ValueError, "b_ub"),
    (dict(A_eq=[1, 2], b_eq=[1]), ValueError, "A_eq"),
    (dict(A_eq=[[1, 2]], b_eq=[[[1, 2]]]), ValueError, "b_eq"),
    (dict(bounds=3), ValueError, "bounds"),
    (dict(bounds=[(0, 1, 2)]), ValueError, "bounds"),
    (dict(bounds=[(0, 1)] * 3), ValueError, "bounds"),
    (dict(bounds=(np.nan, 1)), ValueError, "bounds"),
    (dict(bounds=(np.inf, None)), ValueError, "bounds"),
    (dict(bounds=("x", None)), ValueError, "bounds"),
    (dict(x0=[1]), ValueError, "x0"),
    (dict(x0="near"), ValueError, "x0"),
    (dict(x0=["1/3", 0]), ValueError, "x0"),
    (dict(x0=[1j, 0]), TypeError, "x0"),
    (dict(method="ellipsoid"), ValueError, "method"),
    (dict(numbers="near"), ValueError, "numbers"),
    (dict(proved=0), TypeError, "proved"),
    (dict(integrality=[1, 0]), NotImplementedError, "integrality"),
    (dict(options={"maxiter": -1}), ValueError, "pivot_limit|maxiter"),
    (dict(options={"time_limit": "soon"}), TypeError, "time_limit"),
])
def test_what_is_wrong_with_an_argument_is_said_by_its_name(arguments, error, name):
    right = dict(c=[1, 2], A_ub=[[1, 1]], b_ub=[1])
    nuv.linprog(**right)
    with pytest.raises(error, match=f"^({name}):"):
        nuv.linprog(**{**right, **arguments})


def test_nothing_is_printed_unless_asked_for(capfd):
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        nuv.linprog([-1], [[1]], [1])
    assert capfd.readouterr() == ("", "")
    nuv.linprog([-1], [[1]], [1], options={"disp": True})
    assert "optimal" in capfd.readouterr().out
    with pytest.warns(UserWarning, match="unknown are tolerance"):
        nuv.linprog([-1], [[1]], [1], options={"tolerance": 1})
