"""What a cluster of local processes adds to nuv.solve_batch: problems a second against the number of
workers, what a task costs beside its problems, and from which chunk on that is under a twentieth.

    python3 cluster.py [WORKERS...]
"""

import os
import sys
import time

import distributed
import numpy as np

import nuv
import nuv.dask

#: Seconds of work for one thread, problems of which its time is taken, and tasks of one problem each.
SECONDS, SAMPLE, TASKS = 4.0, 5_000, 300


def problems(count):
    """Plans of 20 products and 12 supplies, of which the supplies differ."""
    generator = np.random.default_rng(1)
    return (-generator.integers(1, 50, 20).astype(float), generator.integers(0, 9, (12, 20)).astype(float),
            generator.integers(50, 900, (count, 12)).astype(float))


def timed(run):
    begin = time.perf_counter()
    run()
    return time.perf_counter() - begin


def main():
    workers = [int(number) for number in sys.argv[1:]] or [1, 2, 3]
    sample = problems(SAMPLE)
    alone = min(timed(lambda: nuv.solve_batch(*sample)) for _ in range(5)) / SAMPLE
    count = round(SECONDS / alone)
    data = problems(count)
    print(f"{os.cpu_count()} processors, {count} problems")
    print(f"{'workers':>8}{'a second':>12}{'one thread':>12}{'over it':>9}{'us a task':>12}{'chunk for 5 %':>15}")
    for number in workers:
        with distributed.LocalCluster(n_workers=number, threads_per_worker=1,
                                      dashboard_address=":0") as cluster, \
                distributed.Client(cluster) as client:
            client.wait_for_workers(number, timeout=120)
            nuv.dask.solve_batch(client, *problems(100), chunk=10)
            # In turn, for what else the machine does.
            both = [(timed(lambda: nuv.solve_batch(*data)), timed(lambda: nuv.dask.solve_batch(client, *data)))
                    for _ in range(3)]
            alone, whole = min(one for one, _ in both) / count, min(many for _, many in both)
            small = problems(TASKS)
            ones = min(timed(lambda: nuv.dask.solve_batch(client, *small, chunk=1)) for _ in range(2))
            # What a task of one problem takes beyond the problem, on the client's clock.
            task = ones / TASKS - alone / min(number, os.cpu_count() or 1)
            print(f"{number:8}{count / whole:12.0f}{1 / alone:12.0f}{count / whole * alone:9.2f}{task * 1e6:12.0f}"
                  f"{20 * task * min(number, os.cpu_count() or 1) / alone:15.0f}")


if __name__ == "__main__":
    main()
