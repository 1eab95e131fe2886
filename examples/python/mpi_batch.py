"""Many problems on many machines through MPI: each process solves a range, the first one has all.

    mpirun -n 4 python3 mpi_batch.py

The first process makes the problems, here the plan of a workshop for random supplies, and prints
what came of them. The result is the same, to the bit, for every number of processes.
"""

import hashlib

import numpy as np
from mpi4py import MPI

import nuv

COUNT = 20_000


def problems():
    """Costs and a matrix that all problems share, and the supplies of each."""
    generator = np.random.default_rng(1)
    costs = np.array([-30.0, -70.0, -50.0])
    matrix = np.array([[2.0, 5.0, 4.0], [4.0, 3.0, 2.0], [1.0, 1.0, 1.0]])
    supplies = generator.integers(50, 400, (COUNT, 3)).astype(float)
    return costs, matrix, supplies


def main():
    world = MPI.COMM_WORLD
    costs, matrix, supplies = problems() if world.rank == 0 else (None, None, None)
    costs, matrix = world.bcast(costs), world.bcast(matrix)
    parts = np.array_split(supplies, world.size) if world.rank == 0 else None
    found = nuv.solve_batch(costs, matrix, world.scatter(parts))
    gathered = world.gather(found)
    if world.rank != 0:
        return
    whole = nuv.BatchResult(*(np.concatenate(arrays) for arrays in zip(*gathered)))
    assert len(whole.fun) == COUNT
    digest = hashlib.sha256(b"".join(array.tobytes() for array in whole)).hexdigest()
    print(f"{int(whole.proved.sum())} of {COUNT} proved, mean profit {-whole.fun.mean():.2f}")
    print(f"sha256 of the results {digest[:16]}")


main()
