"""The document of bench/netlib: each model with pivots, times and ratios, and the geometric means."""
import math


TEXT = """# Proved answers beside answers

`bench/netlib` runs `nuvlp`, which proves each answer, beside programs that solve the same netlib models in floating point (`clp`,
`glpsol`) or prove it too (`esolver`, of QSopt_ex), and writes every figure of this document. A time is processor time of a whole
process, reading included, {runs}, on {machine}.
A run that takes more than {limit:.0f} s or ends without an optimum counts as not ended (–).

## Geometric means

{means}

A share of models solved within a factor of the quickest contender (Dolan and Moré, Benchmarking optimization software with performance
profiles, 2002):

![performance profile](netlib-times.svg)

## Each model

Pivots of `nuvlp` are those in single precision, in doubles, and exact; of the others what they call iterations. A ratio is the time of
`nuvlp` over the other's, bold where `nuvlp` is behind. Memory is the largest resident size; up to about 17 MB it
is that of the script which starts the programs, so that only larger figures tell.

{models}
"""


def seconds_of(record, name):
    return record["contenders"].get(name, {}).get("seconds")


def ratio(record, name):
    mine, other = seconds_of(record, "nuv"), seconds_of(record, name)
    return mine / other if mine and other else None


def mean(values):
    return math.exp(sum(math.log(v) for v in values) / len(values)) if values else None


def means_table(times, others):
    rows = [["contender", "ended", "time of nuv ÷ its, geometric mean", "where it takes 50 ms or more",
             "largest ratio", "memory of nuv ÷ its, geometric mean"]]  # fmt: skip
    for name in others:
        ratios = [(r["model"], ratio(r, name)) for r in times if ratio(r, name)]
        long = [q for (_, q), r in zip(ratios, (r for r in times if ratio(r, name))) if seconds_of(r, name) >= 0.05]
        memory = [r["contenders"]["nuv"]["kib"] / r["contenders"][name]["kib"] for r in times if ratio(r, name)]
        if not ratios:
            continue
        worst = max(ratios, key=lambda pair: pair[1])
        rows.append([name, f"{len([r for r in times if seconds_of(r, name)])} of {len(times)}",
                     f"{mean([q for _, q in ratios]):.2f}", f"{mean(long):.2f}" if long else "–",
                     f"{worst[1]:.1f} ({worst[0]})", f"{mean(memory):.2f}"])  # fmt: skip
    ended = len([r for r in times if seconds_of(r, "nuv")])
    return f"`nuvlp` ended on {ended} of {len(times)} models, proved.\n\n" + markdown(rows)


def markdown(rows):
    lines = ["| " + " | ".join(rows[0]) + " |", "|---" + "|--:" * (len(rows[0]) - 1) + "|"]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows[1:]])


def models_table(times, others):
    rows = [["model", "rows", "columns", "pivots of nuv", "nuv, s"]
            + [f"{name}, s" for name in others] + [f"÷ {name}" for name in others] + ["clp's pivots", "nuv, MB"]]  # fmt: skip
    for record in times:
        pivots = "/".join(str(n) for n in record.get("pivots", {}).values()) or "–"
        row = [record["model"], str(record.get("rows", "–")), str(record.get("columns", "–")), pivots]
        for name in ["nuv", *others]:
            seconds = seconds_of(record, name)
            row.append(f"{seconds:.3f}" if seconds else "–")
        for name in others:
            value = ratio(record, name)
            row.append("–" if value is None else f"**{value:.2f}**" if value > 1 else f"{value:.2f}")
        row.append(str(record["contenders"].get("clp", {}).get("pivots") or "–"))
        row.append(f"{record['contenders']['nuv']['kib'] / 1024:.0f}")
        rows.append(row)
    return markdown(rows)


def turns(runs):
    return "the contenders taking turns once" if runs == 1 else f"the median of {runs} runs in turns"


def document_with(records):
    times = [r for r in records if r["kind"] == "times"]
    machine = next(r for r in records if r["kind"] == "machine")
    others = [name for name in ("clp", "glpsol", "esolver") if any(name in r["contenders"] for r in times)]
    place = f"{machine['processor']}, {machine['system']}, built by {machine['compiler']}"
    return TEXT.format(runs=turns(times[0]["runs"]), limit=times[0]["limit"], machine=place,
                       means=means_table(times, others), models=models_table(times, others))  # fmt: skip
