import assert from "node:assert/strict";
import { after, test } from "node:test";
import { WorkerSolver } from "../dist/worker.js";
import { factoryLp, factoryObject, contradictionLp, slowLp } from "./models.mjs";

const limit = { timeout: 60_000 };
const solver = new WorkerSolver();
after(() => solver.dispose());

test("a worker solves texts and objects, and repairs", limit, async () => {
  assert.equal((await solver.solve(factoryLp)).exactObjective, "29700/7");
  assert.equal((await solver.solve(factoryObject)).exactObjective, "29700/7");
  assert.equal((await solver.repair(contradictionLp)).exactTotal, "1");
});

test("a worker's errors have their place", limit, async () => {
  await assert.rejects(solver.solve("Maximize\n x +* y\nEnd\n"), { name: "NuvError", line: 2 });
});

test("a long solve tells of its progress and is aborted, and the next one is solved", limit, async () => {
  const stop = new AbortController();
  const told = [];
  const long = solver.solve(slowLp(), {
    signal: stop.signal,
    onProgress: (progress) => {
      told.push(progress);
      stop.abort(new Error("enough"));
    },
  });
  const next = solver.solve(factoryLp);
  await assert.rejects(long, { message: "enough" });
  assert.ok(told.length >= 1 && told[0].seconds > 0);
  assert.equal((await next).exactObjective, "29700/7");
});

test("what waits is aborted without ending what runs", limit, async () => {
  const stop = new AbortController();
  const first = solver.solve(factoryLp);
  const second = solver.solve(factoryLp, { signal: stop.signal });
  stop.abort(new Error("not that one"));
  await assert.rejects(second, { message: "not that one" });
  assert.equal((await first).status, "optimal");
});
