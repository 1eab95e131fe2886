#!/usr/bin/python3
"""compare.py PROGRAM RECORD: runs the program on the first problems of each family, and ends with 1 unless it says of
them what the record does."""
import json
import subprocess
import sys

FIRST = 100


def firsts(lines):
    """By family, what is said of the first problems."""
    records = [json.loads(line) for line in lines]
    return {r["family"]: {key: value for key, value in r.items() if key.endswith("_first")} for r in records}


def main():
    program, path = sys.argv[1:]
    run = subprocess.run([program, "--problems", str(FIRST)], check=True, capture_output=True, text=True)
    found = firsts(run.stdout.splitlines())
    with open(path, encoding="utf-8") as file:
        recorded = firsts(file)
    if not recorded or found == recorded:
        return 0 if recorded else 1
    for family in sorted(found.keys() | recorded.keys()):
        if found.get(family) != recorded.get(family):
            print(f"{family}: found {found.get(family)}, recorded {recorded.get(family)}")
    return 1


if __name__ == "__main__":
    sys.exit(main())
