// Models in the forms of yalps and of javascript-lp-solver.
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { test } from "node:test";
import { load } from "../dist/proof.js";
import { solve, solveJsLp } from "../dist/yalps.js";

const nuv = await load();

const workshop = {
  direction: "maximize",
  objective: "profit",
  constraints: { wood: { max: 300 }, labor: { max: 110 }, storage: { max: 400 } },
  variables: {
    table: { wood: 30, labor: 5, profit: 1200, storage: 30 },
    dresser: { wood: 20, labor: 10, profit: 1600, storage: 50 },
  },
};

test("a model with records is solved", () => {
  const { status, result, variables, exact } = solve(nuv, workshop);
  assert.deepEqual([status, result, exact], ["optimal", 44000 / 3, "44000/3"]);
  assert.deepEqual(variables, [["table", 70 / 9], ["dresser", 10 / 3]]);
});

test("a model with pairs is the same model", () => {
  const constraints = new Map(Object.entries(workshop.constraints));
  const variables = Object.entries(workshop.variables).map(([name, terms]) => [name, new Map(Object.entries(terms))]);
  assert.deepEqual(solve(nuv, { ...workshop, constraints, variables }), solve(nuv, workshop));
});

test("both halves of a constraint that is said twice count", () => {
  const constraints = [["size", { min: 2 }], ["size", { max: 5 }]];
  const model = { objective: "gain", constraints, variables: { x: { size: 1, gain: 1 } } };
  assert.equal(solve(nuv, model).result, 5);
  assert.equal(solve(nuv, { ...model, direction: "minimize" }).result, 2);
});

test("verdicts are those words", () => {
  const variables = { x: { size: 1, gain: 1 } };
  const infeasible = solve(nuv, { objective: "gain", constraints: { size: { max: -1 } }, variables });
  assert.deepEqual([infeasible.status, infeasible.result, infeasible.variables], ["infeasible", NaN, []]);
  assert.deepEqual(
    [solve(nuv, { objective: "gain", constraints: { size: { min: 1 } }, variables }).result], [Infinity]);
});

test("variables of zero are told of if they are asked for", () => {
  const model = { objective: "gain", constraints: { size: { max: 1 } }, variables: { x: { size: 1, gain: 1 }, y: { size: 1 } } };
  assert.deepEqual(solve(nuv, model).variables, [["x", 1]]);
  assert.deepEqual(solve(nuv, model, { includeZeroVariables: true }).variables, [["x", 1], ["y", 0]]);
});

test("integers are refused", () => {
  for (const more of [{ integers: true }, { integers: ["table"] }, { binaries: new Set(["table"]) }])
    assert.throws(() => solve(nuv, { ...workshop, ...more }), { name: "NuvError", message: /variables/ });
  assert.equal(solve(nuv, { ...workshop, integers: [], binaries: false }).status, "optimal");
});

test("a model of the other form is solved, with unrestricted variables", () => {
  const { constraints, variables } = workshop;
  const model = { optimize: "profit", opType: "max", constraints, variables };
  assert.deepEqual(solveJsLp(nuv, model), { feasible: true, result: 44000 / 3, bounded: true, table: 70 / 9, dresser: 10 / 3 });
  const free = { optimize: "y", opType: "min", constraints: { low: { min: -4 } }, variables: { x: { low: 1, y: 1 } } };
  assert.equal(solveJsLp(nuv, free).result, 0);
  assert.equal(solveJsLp(nuv, { ...free, unrestricted: { x: 1 } }).result, -4);
  assert.throws(() => solveJsLp(nuv, { ...model, ints: { table: 1 } }), { name: "NuvError" });
});

test("the other form tells what has no optimum", () => {
  const variables = { x: { size: 1, gain: 1 } };
  assert.deepEqual(solveJsLp(nuv, { optimize: "gain", opType: "max", constraints: { size: { max: -1 } }, variables }),
    { feasible: false, result: 0, bounded: true });
  assert.equal(solveJsLp(nuv, { optimize: "gain", opType: "max", constraints: { size: { min: 1 } }, variables }).bounded, false);
});

const publicModels = JSON.parse(await readFile(new URL("public-models.json", import.meta.url), "utf8")).models;
const SIDES = { "<=": "max", ">=": "min", "=": "equal" };

/** A model of the file as both packages have it: what a variable has of each row and of the objective. */
function recordsOf({ variables, costs, rows }) {
  const constraints = Object.fromEntries(rows.map(([name, , relation, side]) => [name, { [SIDES[relation]]: side }]));
  const columns = variables.map((name, k) => [
    name, Object.fromEntries([["objective", costs[k]], ...rows.map(([row, coefficients]) => [row, coefficients[k]])]),
  ]);
  return { constraints, variables: Object.fromEntries(columns) };
}

for (const model of publicModels) {
  const { name, direction, unrestricted, status, result, values } = model;
  const isOptimal = status === "optimal";
  const optimum = isOptimal ? Number(result.split("/")[0]) / Number(result.split("/")[1] ?? 1) : undefined;

  if (!unrestricted)
    test(`their test: ${name}`, () => {
      const found = solve(nuv, { direction, objective: "objective", ...recordsOf(model) });
      assert.equal(found.status, status);
      assert.equal(found.exact, isOptimal ? result : undefined);
      if (isOptimal) assert.equal(found.result, optimum);
      if (values) assert.deepEqual(Object.fromEntries(found.variables), values);
    });

  test(`their test, in the other form: ${name}`, () => {
    const free = Object.fromEntries((unrestricted ?? []).map((variable) => [variable, 1]));
    const found = solveJsLp(nuv, { optimize: "objective", opType: direction.slice(0, 3), unrestricted: free, ...recordsOf(model) });
    assert.deepEqual([found.feasible, found.bounded], [status !== "infeasible", status !== "unbounded"]);
    if (isOptimal) assert.equal(found.result, optimum);
    for (const [variable, value] of Object.entries(values ?? {})) assert.equal(found[variable], value);
  });
}
