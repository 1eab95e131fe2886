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
        assert found.status[k] == alone.status and found.nit[k] == alone.nit
        if alone.status == 0:
            assert found.fun[k] == alone.fun and found.x[k].tolist() == alone.x.tolist()
        else:
            assert np.isnan(found.fun[k]) and np.isnan(found.x[k]).all()


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
    (ValueError, "A_ub", dict(A_ub=[[1, np.nan]])),
    (TypeError, "c", dict(c=object())),
    (TypeError, "c", dict(c=[1j, 2])),
    (ValueError, "c, A_ub, b_ub", dict(c=np.ones((3, 2)), b_ub=np.ones((2, 1)))),
    (ValueError, "b_ub", dict(b_ub=[np.inf])),
    (ValueError, "workers", dict(workers=0)),
    (ValueError, "workers", dict(workers="two")),
    (ValueError, "pivot_limit", dict(pivot_limit=0)),
    (ValueError, "numbers", dict(numbers="near")),
])
def test_what_is_wrong_with_an_argument_is_said_by_its_name(proved, error, name, change):
    right = dict(c=[-1, -2], A_ub=[[1, 1]], b_ub=[1], proved=proved)
    assert nuv.solve_batch(**right).fun.tolist() == [-2]
    with pytest.raises(error, match=f"^{name}:"):
        nuv.solve_batch(**{**right, **change})
