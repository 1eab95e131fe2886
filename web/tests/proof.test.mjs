import assert from "node:assert/strict";
import { readdir, readFile } from "node:fs/promises";
import { test } from "node:test";
import { load as loadAll } from "../dist/all.js";
import { load as loadAllInlined } from "../dist/all-inlined.js";
import { load, NuvError, toFraction, toNumber } from "../dist/proof.js";
import { load as loadInlined } from "../dist/proof-inlined.js";
import { contradictionLp, cube, factoryLp, factoryObject, rayLp } from "./models.mjs";

const nuv = await load();
const all = await loadAll();

function refusal(run) {
  try {
    run();
  } catch (error) {
    assert.ok(error instanceof NuvError, String(error.stack));
    return error;
  }
  return assert.fail("nothing was refused");
}

test("the factory's plan comes with its proof", () => {
  const plan = nuv.solve(factoryLp, { sensitivity: true });
  assert.equal(plan.status, "optimal");
  assert.ok(plan.proved);
  assert.equal(plan.exactObjective, "29700/7");
  assert.equal(plan.objective, 29700 / 7);
  assert.deepEqual(plan.variables.map(({ name, exact }) => [name, exact]), [["chairs", "150/7"], ["tables", "360/7"]]);
  assert.deepEqual(plan.rows.map(({ name, exactDual }) => [name, exactDual]), [["wood", "95/7"], ["labour", "5/7"]]);
  assert.deepEqual(plan.rows[0].upperRange, [120, 400]);
  assert.deepEqual(plan.variables[0].costRange, [28, 280 / 3]);
  assert.equal(plan.values.chairs, 150 / 7);
  assert.equal(plan.duals.wood, 95 / 7);
});

test("a model as an object is the model as a text", () => {
  const times = ({ seconds, ...others }) => others;
  assert.deepEqual(times(nuv.solve(factoryObject)), times(nuv.solve(factoryLp)));
});

test("what is inlined is the same program", async () => {
  for (const inlined of [await loadInlined(), await loadAllInlined()])
    assert.equal(inlined.solve(factoryLp).exactObjective, "29700/7");
});

test("exact numbers are fractions of big integers too", () => {
  assert.deepEqual(toFraction("29700/7"), { num: 29700n, den: 7n });
  assert.deepEqual(toFraction("-12"), { num: -12n, den: 1n });
});

test("the double nearest to a fraction is found where neither part is one", () => {
  assert.equal(toNumber({ num: 1n, den: 3n }), 1 / 3);
  assert.equal(toNumber({ num: -(10n ** 400n), den: 3n * 10n ** 400n }), -1 / 3);
  assert.equal(toNumber({ num: 10n ** 320n, den: 10n ** 300n }), 1e20);
  assert.equal(toNumber({ num: 2n ** 53n + 1n, den: 1n }), 2 ** 53);
  assert.equal(toNumber({ num: 2n ** 54n + 3n, den: 2n }), 2 ** 53 + 2);
});

test("thirds and tenths are taken as they are written", () => {
  const terms = { x: { num: 1n, den: 3n }, y: "0.1", z: 10n };
  const answer = nuv.solve({ maximize: { x: 1 }, rows: { a: { terms, upper: 0.3 } } });
  assert.equal(answer.exactObjective, "9/10");
  const stored = nuv.solve({ maximize: { x: 1 }, rows: { a: { terms: { x: 0.1 }, upper: 1 } } }, { stored: true });
  assert.notEqual(stored.exactObjective, "10");
});

test("numbers beyond doubles are kept", () => {
  const huge = 2n ** 80n + 1n;
  const answer = nuv.solve({ maximize: { x: 1 }, rows: { a: { terms: { x: 1 }, upper: huge } } });
  assert.equal(answer.exactObjective, String(huge));
});

test("what no model has is refused as it is stated", () => {
  const rows = { a: { terms: { x: 1 }, upper: 1 } };
  assert.equal(refusal(() => nuv.model({ maximize: { x: "1e-400" }, rows })).code, "model.not-a-number");
  assert.equal(refusal(() => nuv.model({ rows, variables: { x: { lower: Infinity } } })).code, "model.impossible-bound");
  assert.equal(refusal(() => nuv.model({ rows: { a: { ...rows.a, upper: -Infinity } } })).code, "model.impossible-bound");
});

test("bounds and sides are all there", () => {
  const answer = nuv.solve({
    minimize: { x: 1, y: 1, z: -1 },
    constant: 5,
    variables: { x: { lower: -3 }, y: { lower: null, upper: 7 }, z: { upper: "5/2" } },
    rows: { band: { terms: { x: 1, y: 1 }, lower: -10, upper: 20 }, tie: { terms: { y: 1, z: 2 }, equal: 1 } },
  });
  assert.equal(answer.exactObjective, "-9/2");
  assert.deepEqual(answer.variables.map(({ exact }) => exact), ["-3", "-4", "5/2"]);
});

test("a contradiction is told by its rows and proved", () => {
  const answer = nuv.solve(contradictionLp);
  assert.equal(answer.status, "infeasible");
  assert.ok(answer.proved && answer.conflictIsMinimal);
  assert.deepEqual(answer.conflict, [
    { kind: "row", name: "most", side: "upper" },
    { kind: "row", name: "least", side: "lower" },
  ]);
  assert.equal(answer.farkas.length, 2);
});

test("the least repair of a contradiction is found and holds", () => {
  const repair = all.repair(contradictionLp, { rowWeights: { most: 5 } });
  assert.equal(repair.status, "optimal");
  assert.ok(repair.proved);
  assert.equal(repair.exactTotal, "1");
  assert.deepEqual(repair.changes.map(({ name, exactTo }) => [name, exactTo]), [["least", "1"]]);
  assert.equal(nuv.solve(repair.lp).exactObjective, "0");
  assert.equal(all.repair(contradictionLp, { rowWeights: { most: Infinity, least: Infinity } }).status, "infeasible");
});

test("a model without end has its direction", () => {
  const answer = nuv.solve(rayLp);
  assert.equal(answer.status, "unbounded");
  assert.deepEqual(answer.exactRay, ["1", "1"]);
});

test("certificates hold, and only for their model", () => {
  const factory = all.model(factoryLp);
  const other = all.model(rayLp);
  const { certificate } = all.solve(factory, { certificate: true });
  assert.match(certificate, /^VER 1/m);
  assert.equal(all.verify(factory, certificate), "optimal");
  assert.equal(refusal(() => all.verify(other, certificate)).code, "vipr.other-model");
  assert.throws(() => all.verify(factory, "nonsense"), NuvError);
  assert.equal(all.verify(factory, certificate), "optimal");
  assert.equal(nuv.solve(factoryLp, { certificate: true }).certificate, certificate);
  assert.equal(all.verify(factoryLp, certificate), "optimal");
});

test("a model of another program is refused", () => {
  assert.match(refusal(() => nuv.solve(all.model(factoryLp))).message, /another program/);
  assert.match(refusal(() => all.session().solve(nuv.model(factoryLp))).message, /another program/);
});

test("a mistake in a text is told with its place, code and hint", () => {
  const error = refusal(() => nuv.solve("Maximize\n x + 2 y\nSubject To\n c: x + y =< = 4\nEnd\n"));
  assert.deepEqual([error.line, error.column > 0, error.code.slice(0, 3)], [4, true, "lp."]);
  assert.ok(error.diagnostics[0].excerpt.includes("=< = 4"));
});

test("integers are refused, or taken for continuous with a warning", () => {
  const text = factoryLp.replace("End", "General\n chairs\nEnd");
  assert.ok(refusal(() => nuv.solve(text)).line > 0);
  const model = nuv.model(text, { relax: true });
  assert.equal(model.diagnostics[0].severity, "warning");
});

test("mistakes in an object are named", () => {
  const wrong = (model) => refusal(() => nuv.solve(model)).message;
  assert.match(wrong({ maximise: { x: 1 } }), /no 'maximise'/);
  assert.match(wrong({ maximize: { x: NaN } }), /cost of 'x' is NaN/);
  assert.match(wrong({ maximize: { x: "1/0" } }), /'1\/0', which is no number/);
  assert.match(wrong({ rows: { a: { terms: [["x", 1], ["x", 2]] } } }), /'x' twice/);
  assert.match(wrong({ rows: { a: { terms: { x: Infinity } } } }), /coefficient of 'x' in row 'a' is Infinity/);
  assert.match(wrong({ rows: { a: { terms: { x: 1 }, equal: 1, upper: 2 } } }), /either/);
  assert.match(wrong({ variables: { "": {} } }), /no name/);
  assert.throws(() => nuv.solve(null), NuvError);
});

test("a solve is stopped by pivots, time and the caller", () => {
  const text = cube(10);
  assert.equal(nuv.solve(text, { pivots: 0 }).stopReason, "pivots");
  assert.equal(nuv.solve(text, { seconds: 0 }).stopReason, "time");
  let told = 0;
  const answer = nuv.solve(text, { progress: () => ++told < 3 });
  assert.deepEqual([answer.status, answer.stopReason, told], ["stopped", "cancelled", 3]);
  assert.throws(() => nuv.solve(text, { progress: () => { throw new TypeError("mine"); } }), TypeError);
  assert.equal(nuv.solve(text).exactObjective, String(5n ** 10n));
});

test("the path leads from corner to corner", () => {
  const { path } = nuv.solve(factoryLp, { path: true });
  assert.deepEqual(path[0].values, [0, 0]);
  assert.ok(path.length >= 2);
  for (let k = 1; k < path.length; ++k) assert.ok(path[k].objective >= path[k - 1].objective);
});

test("the path comes in from outside, and is the way of the answer", () => {
  const answer = nuv.solve("Minimize\n x + 2 y\nSubject To\n a: x + y >= 4\n b: x - y <= 1\nEnd\n", { path: true });
  const { path, pivots } = answer;
  assert.deepEqual(path.map(({ phase }) => phase), [1, 1]);
  assert.deepEqual(path.map(({ values }) => values), [[0, 0], [1, 0]]);
  assert.deepEqual(path.map(({ objective }) => objective), [0, 1]);
  assert.equal(pivots.double, path.length);
  assert.equal(answer.exactObjective, "11/2");
  assert.deepEqual(nuv.solve(factoryLp).path, undefined);
});

test("who watches the path may end it", () => {
  let told = 0;
  const answer = nuv.solve(cube(10), { path: true, progress: ({ stage }) => stage === "double" && ++told < 4 });
  assert.deepEqual([answer.status, answer.stopReason, told, answer.path.length], ["stopped", "cancelled", 4, 3]);
});

test("a session starts where it ended", () => {
  const session = all.session();
  const factory = all.model(factoryLp);
  const richer = all.model(factoryLp.replace("300", "310"));
  assert.equal(session.solve(factory).exactObjective, "29700/7");
  assert.equal(session.solve(richer).exactObjective, "30650/7");
});

test("what was disposed of is refused", () => {
  const model = nuv.model(factoryLp);
  model.dispose();
  model.dispose();
  assert.match(refusal(() => nuv.solve(model)).message, /disposed/);
});

test("a model is written in LP format and read back", () => {
  const model = all.model(factoryObject);
  assert.equal(nuv.solve(all.toLp(model)).exactObjective, "29700/7");
  const arrays = model.arrays();
  assert.deepEqual([...arrays.costs], [30, 70]);
  assert.deepEqual([...arrays.values], [2, 5, 4, 3]);
  assert.deepEqual([...arrays.starts], [0, 2, 4]);
});

test("numbers are written as the native program writes them", () => {
  for (const value of [0.1, 1 / 3, 1e21, 1e-7, 123456.789, 5e-324, 1.7976931348623157e308, 2 ** 60, 0.1 + 0.2, 1e22, 12e-5]) {
    const text = all.toLp({ maximize: { x: value }, rows: { a: { terms: { x: 1 }, upper: 1 } } });
    assert.equal(nuv.model(text).arrays().costs[0], value, text);
  }
});

const textbook = new URL("../../tests/models/textbook/", import.meta.url);
const expected = JSON.parse(await readFile(new URL("textbook.json", import.meta.url), "utf8"));

test("all textbook models are known", async () => {
  const names = (await readdir(textbook)).filter((name) => name.endsWith(".lp")).sort();
  assert.deepEqual(Object.keys(expected).sort(), names);
});

for (const [name, known] of Object.entries(expected))
  test(`${name} has the verdict and optimum of the native program, proved`, async () => {
    const answer = nuv.solve(await readFile(new URL(name, textbook), "utf8"));
    assert.ok(answer.proved);
    assert.deepEqual([answer.status, answer.exactObjective ?? null], known);
  });

test("100 000 solves and 100 000 mistakes take no more memory", () => {
  const mistake = factoryLp.replace("<=", "=<>");
  const once = () => {
    nuv.solve(factoryLp, { exact: false });
    refusal(() => nuv.solve(mistake));
  };
  for (let k = 0; k < 100; ++k) once();
  const taken = nuv.memory;
  for (let k = 0; k < 100_000; ++k) once();
  assert.equal(nuv.memory, taken);
});
