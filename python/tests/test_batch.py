"""Many problems of one shape, proved and in single precision."""

import numpy as np
import pytest

import nuv


def problems(count=200, m=5, n=4, seed=5):
    """Some are feasible and bounded, some not; numbers that single precision holds."""
    r = np.random.default_rng(seed)
    A = r.integers(-6, 7, (count, m, n)).astype(float)
    b = r.integers(-3, 30, (count, m)).astype(float)
    c = r.integers(-9, 4, (count, n)).astype(float)
    return c, A, b


def test_proved_answers_are_those_of_linprog():
    c, A, b = problems()
    found = nuv.solve_batch(c, A, b)
    assert set(found.status.tolist()) == {0, 2, 3} and found.proved.all()
    for k in range(len(c)):
        alone = nuv.linprog(c[k], A[k], b[k])
        assert found.status[k] == alone.status
        if alone.status == 0:
            assert found.fun[k] == alone.fun
            assert found.x[k].tolist() == alone.x.tolist() or not alone.unique
        else:
            assert np.isnan(found.fun[k]) and np.isnan(found.x[k]).all()


def test_equations_and_bounds_are_those_of_linprog():
    c, A, b = problems()
    r = np.random.default_rng(1)
    E, d = r.integers(-2, 5, (200, 1, 4)), r.integers(0, 9, (200, 1))
    for bounds in ((0, 3), [(None, 4), (-2, None), (0, 1), (None, None)],
                   np.sort(r.integers(-4, 9, (200, 4, 2)))):
        found = nuv.solve_batch(c, A, b, E, d, bounds, workers=2)
        assert found.proved.all() and len(set(found.status.tolist())) >= 2
        for k in range(len(c)):
            one = bounds[k] if np.ndim(bounds) == 3 else bounds
            alone = nuv.linprog(c[k], A[k], b[k], E[k], d[k], one)
            assert found.status[k] == alone.status
            assert alone.status != 0 or found.fun[k] == alone.fun
    only = nuv.solve_batch(c, A_eq=E, b_eq=d, bounds=(0, 3))
    assert [nuv.linprog(c[k], A_eq=E[k], b_eq=d[k], bounds=(0, 3)).fun for k in range(5)] == [
        None if np.isnan(fun) else fun for fun in only.fun[:5]]
    neither = nuv.solve_batch(c, bounds=(-1, 3))
    assert neither.fun.tolist() == [float(np.where(row < 0, 3, -1) @ row) for row in c]


@pytest.mark.parametrize("proved", [False, True])
def test_a_member_that_is_no_problem_is_reported_as_itself(proved):
    c, A, b = problems()
    whole = nuv.solve_batch(c, A, b, proved=proved)
    c[3, 1], A[50, 2, 3], b[199, 0] = np.nan, np.inf, -np.inf
    found = nuv.solve_batch(c, A, b, proved=proved, workers=2)
    bad = np.isin(np.arange(200), [3, 50, 199])
    assert (found.status[bad] == 4).all() and not found.proved[bad].any()
    assert np.isnan(found.x[bad]).all() and np.isnan(found.fun[bad]).all()
    for mine, before in zip(found, whole):
        assert mine[~bad].tobytes() == before[~bad].tobytes()


def test_large_members_are_solved_one_by_one_with_the_same_answers(monkeypatch):
    c, A, b = problems(40)
    E, d = np.ones((1, 4)), np.full((40, 1), 2.0)
    small = nuv.solve_batch(c, A, b, E, d, (0, 9))
    monkeypatch.setattr("nuv._batch._LARGE", 0)
    large = nuv.solve_batch(c, A, b, E, d, (0, 9), workers=2)
    assert small.status.tolist() == large.status.tolist() and large.proved.all()
    assert small.fun.tobytes() == large.fun.tobytes()


def test_single_precision_has_the_same_bits_alone_and_together():
    c, A, b = problems()
    found = nuv.solve_batch(c, A, b, proved=False)
    assert not found.proved.any() and found.x.dtype == found.fun.dtype == np.float32
    for workers in (2, 3, 7):
        again = nuv.solve_batch(c, A, b, proved=False, workers=workers)
        assert all(one.tobytes() == other.tobytes() for one, other in zip(found, again))
    for k in range(len(c)):
        alone = nuv.solve_batch(c[k], A[k], b[k], proved=False)
        assert all(one[k:k + 1].tobytes() == other.tobytes() for one, other in zip(found, alone))
    proved = nuv.solve_batch(c, A, b, workers=2)
    both = (found.status == 0) & (proved.status == 0)
    assert both.sum() > 20
    np.testing.assert_allclose(found.fun[both], proved.fun[both], rtol=1e-4, atol=1e-4)


def test_doubles_are_believed_where_a_proof_takes_long(monkeypatch):
    r = np.random.default_rng(3)
    c, A, b = -1 - r.random((4, 60)), r.random((4, 60, 60)), np.full((4, 60), 9.0)
    E, d = np.ones((1, 60)), [[12.0]]
    for large in (2**14, 0):
        monkeypatch.setattr("nuv._batch._LARGE", large)
        proved = nuv.solve_batch(c, A, b, E, d, (0, 1))
        found = nuv.solve_batch(c, A, b, E, d, (0, 1), proved=False, precision="double", workers=2)
        assert proved.proved.all() and (found.status == 0).all() and not found.proved.any()
        np.testing.assert_allclose(found.fun, proved.fun, rtol=1e-9)
        np.testing.assert_allclose(found.x, proved.x, atol=1e-9)
        alone = nuv.solve_batch(c[2], A[2], b[2], E, d, (0, 1), proved=False, precision="double")
        assert all(one[2:3].tobytes() == other.tobytes() for one, other in zip(found, alone))


def test_what_has_no_leading_axis_is_shared():
    c, A, b = problems()
    for proved in (False, True):
        whole = nuv.solve_batch(c, np.broadcast_to(A[0], A.shape), b, proved=proved)
        for matrix in (A[0], A[:1], np.broadcast_to(A[0], A.shape).copy()):
            shared = nuv.solve_batch(c, matrix, b, proved=proved, workers=2)
            assert all(one.tobytes() == other.tobytes() for one, other in zip(whole, shared))
        one = nuv.solve_batch(c[0], A[0], b[0], proved=proved)
        assert one.x.shape == (1, 4) and one.fun.shape == one.status.shape == (1,)
        none = nuv.solve_batch(c[:0], A[0], b[0], proved=proved)
        assert none.x.shape == (0, 4) and none.fun.shape == (0,)


def test_a_pivot_limit_stops_members_alone():
    c, A, b = problems()
    whole = nuv.solve_batch(c, A, b, proved=False)
    found = nuv.solve_batch(c, A, b, proved=False, pivot_limit=1)
    stopped = found.status == 1
    assert stopped.any() and not stopped.all()
    assert (stopped == (whole.nit > 1)).all() and np.isnan(found.fun[stopped]).all()


@pytest.mark.parametrize("proved", [False, True])
@pytest.mark.parametrize("error, name, change", [
    (ValueError, "A_ub", dict(A_ub=[1, 2])),
    (ValueError, "A_ub", dict(A_ub=[[1, 2, 3]])),
    (ValueError, "A_ub", dict(A_ub=np.ones((1, 1, 1, 2)))),
    (ValueError, "A_ub", dict(A_ub=None)),
    (ValueError, "A_ub", dict(A_ub=None, b_ub=None, proved=False)),
    (ValueError, "A_eq", dict(A_eq=[[1, 1]], b_eq=[1], proved=False)),
    (ValueError, "A_eq", dict(A_eq=[[1, 1]])),
    (ValueError, "A_eq", dict(A_eq=[[1, 1, 1]], b_eq=[1])),
    (ValueError, "bounds", dict(bounds=[0, 1], proved=False)),
    (ValueError, "bounds", dict(bounds=[0, np.nan], proved=True)),
    (ValueError, "bounds", dict(bounds=[np.inf, np.inf], proved=True)),
    (ValueError, "bounds", dict(bounds=[[0, 1]] * 3)),
    (ValueError, "bounds", dict(bounds=[0, 1, 2])),
    (TypeError, "bounds", dict(bounds=[0, 1j], proved=True)),
    (ValueError, "A_ub", dict(A_ub=[[1, np.nan]])),
    (TypeError, "c", dict(c=object())),
    (TypeError, "c", dict(c=[1j, 2])),
    (ValueError, "b_ub", dict(c=np.ones((3, 2)), b_ub=np.ones((2, 1)))),
    (ValueError, "c", dict(c=[])),
    (ValueError, "workers", dict(workers=True)),
    (ValueError, "b_ub", dict(b_ub=[np.inf])),
    (ValueError, "workers", dict(workers=0)),
    (ValueError, "workers", dict(workers="two")),
    (ValueError, "pivot_limit", dict(pivot_limit=0)),
    (ValueError, "numbers", dict(numbers="near")),
    (TypeError, "proved", dict(proved=1)),
    (ValueError, "precision", dict(proved=False, precision="half")),
    (ValueError, "precision", dict(proved=True, precision="double")),
])
def test_what_is_wrong_with_an_argument_is_said_by_its_name(proved, error, name, change):
    right = dict(c=[-1, -2], A_ub=[[1, 1]], b_ub=[1], proved=proved)
    assert nuv.solve_batch(**right).fun.tolist() == [-2]
    with pytest.raises(error, match=f"^{name}:"):
        nuv.solve_batch(**{**right, **change})
