#!/usr/bin/python3
"""Writes what the benchmark programs found, recorded as lines of JSON, into a document and its picture.

    bench/report/document.py RESULTS                              prints the blocks
    bench/report/document.py RESULTS DOCUMENT [PICTURE...]           rewrites what stands between the markers
    bench/report/document.py --check RESULTS DOCUMENT [PICTURE...]   ends with 1 unless they are in step
    bench/report/document.py --replace RESULTS NEWER                 takes the records of the newer kinds into RESULTS
    bench/report/document.py --machine [--quick]                  prints the line that says where it runs

A block stands between the lines `<!-- measured: NAME -->` and `<!-- end of NAME -->`; all else is left alone.
The pictures are those of the comparison and of small problems.
"""
import json
import math
import re
import subprocess
import sys
from collections import defaultdict
from pathlib import Path

sys.dont_write_bytecode = True
import picture
import small
from comparison import aims_block, comparison_block, instances_of
from figures import count, exponent, megabytes, milliseconds, number, table, time


STAGES = ("float", "double", "exact")


def machine_line(is_quick):
    """Read from /proc and /sys."""
    def field(path, name, separator):
        for line in Path(path).read_text().split("\n"):
            if line.startswith(name):
                return line.split(separator, 1)[1].strip().strip('"')
        return "unknown"

    caches = []
    for folder in sorted(Path("/sys/devices/system/cpu/cpu0/cache").glob("index*")):
        if (folder / "type").read_text().strip() in ("Data", "Unified"):
            size = (folder / "size").read_text().strip()
            unit = 1024 if size.endswith("M") else 1
            caches.append([int((folder / "level").read_text()), int(size[:-1]) * unit])
    version = subprocess.run(["g++", "-dumpfullversion"], check=True, capture_output=True, text=True).stdout
    return json.dumps({
        "kind": "machine", "processor": field("/proc/cpuinfo", "model name", ":"),
        "processors": Path("/proc/cpuinfo").read_text().count("processor\t:"), "caches": sorted(caches),
        "system": field("/etc/os-release", "PRETTY_NAME", "="),
        "compiler": "g++ " + ".".join(version.split(".")[:2]), "quick": is_quick,
    })  # fmt: skip


def machine_block(records):
    machine = records["machine"][0]
    caches = ", ".join(f"L{level} {kib} KiB" for level, kib in machine["caches"])
    versions = {f"{r['contender']} {r['version']}" for r in records["compare"] if r["version"]}
    text = f"Measured on {machine['processor']} ({machine['processors']} processors; data caches {caches}), "
    text += f"{machine['system']}, built by {machine['compiler']}."
    text += f" Compared with {', '.join(sorted(versions))}." if versions else ""
    return text + (" These figures are from a quick run." if machine["quick"] else "") + "\n"


def steps_block(records):
    text, rows = "", {}
    for record in records["lps"]:
        what, model = record["name"].split("/", 1)
        family, _, shape = model.rpartition("/")
        model = f"{family}, {shape.replace('x', ' × ')}"
        if what.startswith("start"):
            text += f"- {model}, {what}: {time(record['seconds'])}\n"
        else:
            rows.setdefault(model, {"pivots": record["pivots"]})[what] = record["seconds"]
    return text + "\n" + table(
        "instance | pivots:| build:| first solve:| solve again:",
        ([model, count(row["pivots"]), *(time(row[what]) for what in ("build", "solve", "again"))]
         for model, row in rows.items()))  # fmt: skip


def kernels_block(records):
    def level(size):
        caches = records["machine"][0]["caches"]
        return next((f"L{level}" for level, kib in caches if size <= kib * 1024), "memory")

    return table(
        "what | m:| n:| lives in | time:| limit:| ÷ limit:",
        ([r["name"].split("/")[0], count(r["m"]), count(r["n"]), level(r["bytes"]), time(r["seconds"]),
          time(r["limit"]), number(r["ratio"], 3)] for r in records["kernels"]))  # fmt: skip


def roads_block(records):
    names, rows = [], {}
    for record in records["road"]:
        names += [record["name"]] if record["name"] not in names else []
        rows.setdefault(record["instance"], {})[record["name"]] = record["ratio"]
    if not rows:
        return ""
    rows["the most"] = {name: max(row.get(name, 0.0) for row in rows.values()) for name in names}

    def text(ratio):
        shown = f"{ratio:.2f}" if ratio < 9.995 else f"{ratio:.0f}"
        return f"**{shown}**" if ratio >= 1.05 else shown

    cells = ([instance, *(text(row[name]) for name in names)] for instance, row in rows.items())
    return table("instance |" + "|".join(f" {name}:" for name in names), cells)


def growth_block(records):
    text = table(
        "sweep | m:| n:| pivots:| per pivot:",
        ([r["sweep"], count(r["m"]), count(r["n"]), count(r["pivots"]), time(r["seconds"])]
         for r in records["time"]))  # fmt: skip
    sweeps = defaultdict(list)
    for record in records["time"]:
        size = "n" if record["sweep"].startswith("m = 1") else "m"
        sweeps[record["sweep"], size].append((record[size], record["seconds"]))
    rows = ([sweep, f"{size} to the power {exponent(points)}"] for (sweep, size), points in sweeps.items())
    return text + "\n" + table("sweep | time per pivot grows as", rows)


def memory_block(records):
    points = records["memory"]
    text = table(
        "m:| n:| model:| first solve, peak above it:| of that, kept:| next solve, peak above that:",
        ([count(p["m"]), count(p["n"]), *(megabytes(p[what]) for what in ("model", "first", "kept", "next"))]
         for p in points))  # fmt: skip
    model, first = (exponent([(p["m"], p[what]) for p in points]) for what in ("model", "first"))
    return text + (f"\nWith m = n, the model grows as m to the power {model}, the peak of a first solve as m to "
                   f"the power {first}.\n")


def models_of(records, collection):
    return [record for record in records["model"] if record["collection"] == collection]


def summary_block(records):
    text = ""
    for collection in ("netlib", "infeasible", "textbook"):
        models = models_of(records, collection)
        good = sum(model["as_known"] for model in models)
        slowest = max(models, key=lambda model: model["slowest"])
        text += (f"- {collection}: {good} of {len(models)} as known and proved, the slowest ({slowest['name']}) in "
                 f"{slowest['slowest']:.3g} s\n")
    longest = max(model["proof"] for model in models_of(records, "textbook"))
    return text + f"- what the proof adds to the core's time on a textbook model: at most {1e3 * longest:.3g} ms\n"


def verdict_cells(model):
    return [model["status"], "proved" if model["proved"] else "**not proved**", model["stages"] or "none",
            *(count(model[f"{stage}_pivots"]) for stage in STAGES), milliseconds(model["seconds"])]  # fmt: skip


def models_block(collection, has_optimum):
    def block(records):
        title = ("model | rows:| columns:| verdict | | stages | float pivots:| double:| exact:| ms:| float %:|"
                 " double %:| exact %:" + ("| off, as stored:| as written:" if has_optimum else ""))
        rows = []
        for model in models_of(records, collection):
            seconds = [model[f"{stage}_seconds"] for stage in STAGES]
            whole = sum(seconds)
            shares = [count(math.floor(100 * part / whole + 0.5) if whole else 0) for part in seconds]
            off = [model["off_stored"], model["off_written"]] if has_optimum else []
            rows.append([model["name"], count(model["rows"]), count(model["columns"]), *verdict_cells(model),
                         *shares, *off])  # fmt: skip
        return table(title, rows)

    return block


def textbook_block(records):
    rows = ([model["name"], *verdict_cells(model), milliseconds(model["proof_written"]), model["optimum"] or "–"]
            for model in models_of(records, "textbook"))  # fmt: skip
    title = "model | verdict | | stages | float pivots:| double:| exact:| ms:| proof, ms:| optimum:"
    return table(title, rows)


def limits_block(records):
    def memory(size):
        return f"{size / 1e3:.0f} kB" if size < 1000000 else f"{size / 1e6:.1f} MB"

    def span(seconds):
        return f"{seconds * 1e3:.1f} ms" if seconds < 1 else f"{seconds:.2f} s"

    return table("what | time:| held then:| most until then:", (
        [r["what"], span(r["seconds"]), memory(r["held"]), memory(r["most"])] for r in records["limit"]))  # fmt: skip


def warm_block(records):
    def ratio(record, name):
        return "–" if math.isnan(record[name]) else f"{record[name]:.3f}"

    models = records["warm"]
    rows = ([r["name"], count(r["rows"]), count(r["columns"]), count(r["changes"]), time(r["cold_seconds"]),
             time(r["warm_seconds"]), ratio(r, "ratio"), count(r["stayed"]), ratio(r, "stayed_ratio"), count(r["pivoted"]),
             ratio(r, "pivoted_ratio")] for r in models)  # fmt: skip
    mean = math.exp(sum(math.log(r["ratio"]) for r in models) / len(models))
    title = ("model | rows:| columns:| changes:| cold:| again:| ratio:| basis stays:| ratio:| simplex goes on:"
             "| ratio:")
    return table(title, rows) + f"\nThe geometric mean of the ratios of {len(models)} models is {mean:.3f}.\n"


def scenarios_block(records):
    rows = []
    for r in records["scenarios"]:
        one, two = r["seconds"]
        rows.append([r["name"], f"{one:.2f} s", f"{two:.2f} s", f"{one / two:.2f}", time(one / r["count"])])
    title = "answers | one thread:| two threads:| times as fast:| a scenario, one thread:"
    return table(title, rows)


def wrong_block(records):
    def share(record, what):
        return f"{number(100 * record[what] / record['problems'], 2)} %"

    return table("problems | wrong:| given up:| drawn:| model layer, not proved:", (
        [r["family"], share(r, "wrong"), share(r, "stopped"), count(r["problems"]), count(r["unproved"])]
        for r in records["wrong"]))  # fmt: skip


# By kind of record: the blocks that it fills.
BLOCKS = {
    "machine": {"machine": machine_block},
    "compare": {"aims": aims_block, "comparison": comparison_block},
    "lps": {"steps": steps_block},
    "kernels": {"kernels": kernels_block},
    "road": {"roads": roads_block},
    "time": {"growth": growth_block},
    "memory": {"memory": memory_block},
    "model": {"summary": summary_block, "netlib": models_block("netlib", True),
              "infeasible": models_block("infeasible", False), "textbook": textbook_block},
    "limit": {"limits": limits_block},
    "warm": {"warm": warm_block},
    "scenarios": {"scenarios": scenarios_block},
    "small": {"small": small.small_block},
    "building": {"building": small.building_block},
    "wrong": {"wrong": wrong_block},
}  # fmt: skip


def rewritten(document, records):
    """The document with every block that the records fill."""
    for kind in list(records):
        for name, make in BLOCKS[kind].items():
            place = re.compile(rf"(<!-- measured: {name} -->\n).*?(<!-- end of {name} -->\n)", re.DOTALL)
            block = make(records)
            # Tables need an empty line before them.
            document, places = place.subn(lambda match: f"{match[1]}\n{block}\n{match[2]}", document)
            if places != 1:
                raise SystemExit(f"the document has no place for the block {name}")
    return document


def replace(path, newer):
    """Takes the place of the records of each kind that the newer ones have."""
    lines = newer.read_text().splitlines()
    kinds = {json.loads(line)["kind"] for line in lines}
    kept = [line for line in path.read_text().splitlines() if json.loads(line)["kind"] not in kinds]
    path.write_text("\n".join(kept + lines) + "\n")


def main():
    words = sys.argv[1:]
    if words[:1] == ["--machine"]:
        print(machine_line("--quick" in words))
        return 0
    if words[:1] == ["--replace"] and len(words) == 3:
        replace(Path(words[1]), Path(words[2]))
        return 0
    is_check = words[:1] == ["--check"]
    paths = [Path(word) for word in words[is_check:]]
    if not (2 if is_check else 1) <= len(paths) <= 4:
        print(__doc__, file=sys.stderr)
        return 64
    records = defaultdict(list)
    for line in paths[0].read_text().splitlines():
        record = json.loads(line)
        records[record["kind"]].append(record)
    if len(paths) == 1:
        for kind in list(records):
            for name, make in BLOCKS[kind].items():
                print(f"== {name}\n\n{make(records)}")
        return 0
    made = [rewritten(paths[1].read_text(), records)]
    made += [picture.draw(instances_of(records))] if len(paths) >= 3 else []
    made += [small.draw(records)] if len(paths) == 4 else []
    is_in_step = True
    for path, text in zip(paths[1:], made):
        if not is_check:
            path.write_text(text)
        elif path.read_text() != text:
            print(f"{path} is not what bench/report/document.py makes of {paths[0]}")
            is_in_step = False
    return 0 if is_in_step else 1


if __name__ == "__main__":
    sys.exit(main())
