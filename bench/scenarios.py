#!/usr/bin/python3
"""bench/scenarios.py NUVLP MODEL [COUNT]: times `nuvlp batch` on a table of COUNT scenarios (100 000) of the
blending model, with its whole run: start, reading, solving, writing. Prints lines of JSON, and ends with 1 where
results differ between numbers of threads or parts.

Each scenario draws all prices within a fifth of the model's, and the two supplies. A time is the least of the
rounds; the ways take turns in each, so that other work on the machine is shared out."""
import json
import os
import random
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROUNDS, DEADLINE = 5, 600
WAYS = {"proved": [], "in doubles": ["--no-proof"], "in single precision": ["--float-only"]}
PRICES = {"a": 310, "b": 275, "c": 360, "d": 240, "e": 295}


def write_table(path, count):
    draw = random.Random(20)
    with open(path, "w", encoding="ascii") as table:
        print(*(f"cost:{name}" for name in PRICES), "upper:b", "upper:d", sep=",", file=table)
        for _ in range(count):
            prices = (round(price * draw.uniform(0.8, 1.2), 1) for price in PRICES.values())
            print(*prices, draw.randint(10, 60) / 100, draw.randint(20, 90) / 100, sep=",", file=table)


def run(nuvlp, model, table, options):
    """The seconds it takes, and what it writes."""
    result = table.with_name("result.csv")
    result.unlink(missing_ok=True)
    command = [nuvlp, "batch", "--exact", "--value", "a", "--value", "b", "-o", result, *options, model, table]
    begin = time.perf_counter()
    subprocess.run(command, check=True, timeout=DEADLINE)
    return time.perf_counter() - begin, result.read_bytes()


def main(nuvlp, model, count=100_000):
    threads = (1, 2)
    with tempfile.TemporaryDirectory() as folder:
        table = Path(folder) / "table.csv"
        write_table(table, int(count))
        for name, options in WAYS.items():
            parts = b"".join(run(nuvlp, model, table, [*options, "--shard", f"{k}/3"])[1] for k in (1, 2, 3))
            seconds = {number: float("inf") for number in threads}
            for _ in range(ROUNDS):
                for number in threads:
                    taken, written = run(nuvlp, model, table, [*options, "--threads", str(number)])
                    seconds[number] = min(seconds[number], taken)
                    if written != parts:
                        sys.exit(f"{name}: {number} threads write other bytes than three parts do")
            print(json.dumps({"kind": "scenarios", "name": name, "count": int(count),
                              "seconds": [round(seconds[number], 4) for number in threads]}), flush=True)
    if len(os.sched_getaffinity(0)) < max(threads):
        print("two threads had one processor", file=sys.stderr)


if __name__ == "__main__":
    main(*sys.argv[1:])
