// One package and one model, in a thread that can be ended: tells the least time of a solve and what it found.
import { readFileSync } from "node:fs";
import { performance } from "node:perf_hooks";
import { parentPort, workerData } from "node:worker_threads";
import { load } from "../dist/all.js";
import { packages } from "./packages.mjs";

const SECONDS = 1;
const nuv = await load();
const model = nuv.model(readFileSync(workerData.path, "utf8"));
const { takeModel, solve } = await packages[workerData.name].load();
const taken = takeModel(nuv.toLp(model), model.arrays());
if (taken === null) parentPort.postMessage({ failure: "not taken" });
else {
  let least = Infinity;
  let objective = NaN;
  const began = performance.now();
  do {
    const start = performance.now();
    objective = solve(taken);
    least = Math.min(least, performance.now() - start);
  } while (performance.now() - began < 1000 * SECONDS);
  const { status } = nuv.solve(model, { exact: false });
  const { length: rows } = model.rows;
  parentPort.postMessage({ milliseconds: least, objective, status, rows, columns: model.columns.length });
}
process.exitCode = 0;
