"""Solves the models that peer_models has written by glpsol and by scipy's linprog, and compares.

    compare.py FOLDER

Both must find the verdict and the objective that models.json tells; where the optimal point or the
duals are unique, the values, duals and reduced costs as well, which settles their signs: a dual is
what the objective gains per unit by which the row's active side moves up, a reduced cost what it
gains per unit by which the variable moves up, both in the model's own sense.
"""
import json
import os
import subprocess
import sys

from scipy.optimize import linprog

TOLERANCE = 1e-6


def same(a, b):
    return abs(a - b) <= TOLERANCE * (1 + abs(a))


def all_same(a, b):
    return len(a) == len(b) and all(map(same, a, b))


def solve_by_linprog(model):
    """-> verdict, objective, values, duals, reduced costs"""
    sign = -1 if model["maximize"] else 1
    sides, equations = [], []
    for i, (lower, upper) in enumerate(zip(model["row_lower"], model["row_upper"])):
        if lower is not None and lower == upper:
            equations.append((i, lower))
            continue
        if upper is not None:
            sides.append((i, 1, upper))
        if lower is not None:
            sides.append((i, -1, lower))
    rows = model["rows"]
    arguments = {
        "c": [sign * c for c in model["cost"]],
        "A_ub": [[s * a for a in rows[i]] for i, s, _ in sides] or None,
        "b_ub": [s * side for _, s, side in sides] or None,
        "A_eq": [rows[i] for i, _ in equations] or None,
        "b_eq": [side for _, side in equations] or None,
        "bounds": list(zip(model["lower"], model["upper"])),
        "method": "highs",
    }
    result = linprog(**arguments)
    if result.status != 0:  # its presolve does not always tell infeasible from unbounded
        result = linprog(**arguments, options={"presolve": False})
    if result.status != 0:
        return {2: "infeasible", 3: "unbounded"}.get(result.status, result.message), None, [], [], []
    duals = [0.0] * len(rows)
    for (i, s, _), marginal in zip(sides, result.ineqlin.marginals):
        duals[i] += sign * s * marginal
    for (i, _), marginal in zip(equations, result.eqlin.marginals):
        duals[i] += sign * marginal
    reduced = [sign * (a + b) for a, b in zip(result.lower.marginals, result.upper.marginals)]
    return "optimal", sign * result.fun, list(result.x), duals, reduced


def solve_by_glpsol(folder, model):
    """-> verdict, objective, values, duals, reduced costs"""
    path = os.path.join(folder, model["file"])
    solution = path + ".sol"
    form = "--freemps" if path.endswith(".mps") else "--lp"
    run = subprocess.run(["glpsol", form, path, "--nopresol", "-w", solution],
                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    if not os.path.exists(solution):
        return run.stdout, None, [], [], []
    rows, columns, objective, verdict = [], [], None, None
    with open(solution, encoding="ascii") as lines:
        for line in lines:
            fields = line.split()
            if fields[0] == "s":
                primal, dual, objective = fields[4], fields[5], float(fields[6])
                verdict = ("optimal" if primal + dual == "ff" else "infeasible" if primal == "n"
                           else "unbounded" if dual == "n" else primal + dual)
            elif fields[0] in ("i", "j"):
                (rows if fields[0] == "i" else columns).append([float(x) for x in fields[3:5]])
    if verdict != "optimal":
        return verdict, None, [], [], []
    rows = rows[len(rows) - len(model["rows"]):]  # the objective is a row of an MPS file
    return (verdict, objective, [value for value, _ in columns], [dual for _, dual in rows],
            [reduced for _, reduced in columns])


def has_free_row(model):
    return any(lower is None and upper is None
               for lower, upper in zip(model["row_lower"], model["row_upper"]))


def differences(model, answer):
    verdict, objective, values, duals, reduced = answer
    if verdict != model["status"]:
        return [f"says {verdict}"]
    if verdict != "optimal":
        return []
    found = []
    if not same(model["objective"], objective):
        found.append(f"objective {objective!r}")
    if model["one_point"] and not all_same(model["values"], values):
        found.append(f"values {values}")
    if model["one_dual"] and not all_same(model["duals"], duals):
        found.append(f"duals {duals}")
    if model["one_dual"] and not all_same(model["reduced_costs"], reduced):
        found.append(f"reduced costs {reduced}")
    return found


def main(folder):
    with open(os.path.join(folder, "models.json"), encoding="ascii") as lines:
        models = [json.loads(line) for line in lines]
    failures = 0
    kinds = {"optimal": 0, "infeasible": 0, "unbounded": 0, "priced": 0}
    for model in models:
        kinds[model["status"]] = kinds.get(model["status"], 0) + 1
        kinds["priced"] += 1 if model.get("one_dual") and model.get("one_point") else 0
        answers = {"linprog": solve_by_linprog(model)}
        if not has_free_row(model):  # whose -1e30 in an MPS file glpsol takes for a limit
            answers["glpsol"] = solve_by_glpsol(folder, model)
        for name, answer in answers.items():
            for difference in differences(model, answer):
                failures += 1
                print(f"{model['file']}: {name}: {difference}, not as here: "
                      + json.dumps({k: model.get(k) for k in
                                    ("status", "objective", "values", "duals", "reduced_costs")}))
        if not model["proved"]:
            failures += 1
            print(f"{model['file']}: not proved")
    print(f"{len(models)} models, {failures} differences: {kinds}")
    # The generator must not have drifted into one kind.
    if min(kinds.values()) < len(models) // 20:
        print("some kind of model is missing")
        return 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
