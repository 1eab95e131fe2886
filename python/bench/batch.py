"""What a problem of 5 rows and 5 columns takes on one thread: scipy.optimize.linprog in a loop,
nuv.linprog in a loop, and nuv.solve_batch with and without proof. Processor time, the best of
three runs in turn.
"""

import time

import numpy as np
import scipy.optimize

import nuv

COUNT, ALONE = 10_000, 300


def main() -> None:
    generator = np.random.default_rng(1)
    A = generator.random((COUNT, 5, 5)) + 0.1
    b, c = generator.random((COUNT, 5)) + 1, -generator.random((COUNT, 5))
    floats = [array.astype(np.float32) for array in (c, A, b)]
    runs = {
        "scipy.optimize.linprog": (ALONE, lambda: [scipy.optimize.linprog(c[k], A[k], b[k])
                                                   for k in range(ALONE)]),
        "nuv.linprog": (ALONE, lambda: [nuv.linprog(c[k], A[k], b[k]) for k in range(ALONE)]),
        "nuv.solve_batch, proved": (COUNT, lambda: nuv.solve_batch(c, A, b)),
        "nuv.solve_batch, single precision": (
            COUNT, lambda: nuv.solve_batch(*floats, proved=False)),
    }
    best = dict.fromkeys(runs, float("inf"))
    for _ in range(3):
        for name, (count, run) in runs.items():
            begin = time.process_time()
            run()
            best[name] = min(best[name], (time.process_time() - begin) / count)
    for name, seconds in best.items():
        ratio = best["scipy.optimize.linprog"] / seconds
        print(f"{name:35}{seconds * 1e6:10.2f} us{ratio:10.1f} times scipy's pace")


if __name__ == "__main__":
    main()
