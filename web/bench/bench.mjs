// node bench.mjs: this package beside others, in the order of a document's tables: bytes, the time to the first answer, the time of
// a solve of dense programs from 2 x 2 to 100 x 100 and how far answers are from the proved optimum, all in one process
// and turn by turn, so that what else the machine does falls on all alike; then textbook and netlib models, each solve in a
// thread of its own that is ended after half a minute.
import { performance } from "node:perf_hooks";
import { fileURLToPath } from "node:url";
import { Worker } from "node:worker_threads";
import { load } from "../dist/proof.js";
import { object, packages } from "./packages.mjs";

const ROUNDS = 5;
const SECONDS = 0.15;
const MOST_SECONDS = 30;

/** A program with a bounded region: positive coefficients of at most three digits. */
function program(size) {
  let state = 12345 + size;
  const next = () => ((state = (Math.imul(state, 1103515245) + 12345) >>> 0) >>> 16) % 999 + 1;
  const numbers = (length) => Array.from({ length }, next);
  return { rows: size, columns: size, A: numbers(size * size), b: numbers(size).map((x) => x * size), c: numbers(size) };
}

/** Microseconds of a solve: as many as there is time for. */
function time(run) {
  const began = performance.now();
  let count = 0;
  do run(), ++count;
  while (performance.now() - began < 1000 * SECONDS);
  return (1000 * (performance.now() - began)) / count;
}

const proving = await load();
const small = program(2);
const loaded = {};
const first = {};
for (const [name, { load }] of Object.entries(packages)) {
  const began = performance.now();
  try {
    loaded[name] = await load();
    loaded[name].solve(loaded[name].take(small));
    first[name] = performance.now() - began;
  } catch (error) {
    console.error(`${name} is left out: ${error.message}`);
  }
}

const sizes = [2, 5, 10, 20, 50, 100];
const times = {};
const errors = {};
for (const size of sizes) {
  const p = program(size);
  const optimum = proving.solve(object(p)).objective;
  const taken = Object.fromEntries(Object.entries(loaded).map(([name, { take }]) => [name, take(p)]));
  for (let round = 0; round < ROUNDS; ++round)
    for (const [name, { solve }] of Object.entries(loaded)) {
      const found = time(() => solve(taken[name]));
      (times[name] ??= {})[size] = Math.min(times[name][size] ?? Infinity, found);
      const error = Math.abs(solve(taken[name]) - optimum) / Math.abs(optimum);
      errors[name] = Math.max(errors[name] ?? 0, error);
    }
}

const line = (cells) => console.log(`| ${cells.join(" | ")} |`);
line(["package", "KB gzipped", "first answer, ms", ...sizes.map((size) => `${size} × ${size}, µs`), "largest relative error"]);
line(Array(sizes.length + 4).fill("---"));
for (const name of Object.keys(loaded))
  line([
    name, (packages[name].bytes / 1000).toFixed(1), first[name].toFixed(1),
    ...sizes.map((size) => times[name][size].toPrecision(3)), errors[name] === 0 ? "0" : errors[name].toExponential(1),
  ]);

/** What a package makes of a model: milliseconds and the objective; or why there are none. */
function ask(name, path) {
  return new Promise((resolve) => {
    const worker = new Worker(new URL("./model.mjs", import.meta.url), { workerData: { name, path } });
    const end = setTimeout(() => { resolve({ failure: `> ${MOST_SECONDS} s` }); worker.terminate(); }, 1000 * MOST_SECONDS);
    const settle = (told) => { clearTimeout(end); resolve(told); };
    worker.on("message", settle);
    worker.on("error", ({ message }) => { console.error(`${name}, ${path}: ${message}`); settle({ failure: "fails" }); });
    worker.on("exit", () => settle({ failure: "fails" }));
  });
}

const models = new URL("../../tests/models/", import.meta.url);
const netlib = ["afiro", "sc50a", "adlittle", "blend", "share1b", "e226", "25fv47"];
const textbook = ["beale_1955", "chvatal_ch1_diet", "clrs_29_5", "dantzig_transport", "klee_minty_chvatal_8", "klee_minty_pow5_12", "kuhn"];
const paths = [...textbook.map((name) => `textbook/${name}.lp`), ...netlib.map((name) => `netlib/${name}.mps`)];
const asked = Object.keys(loaded).filter((name) => name !== "nuv, core");
console.log();
line(["model", "rows", "columns", ...asked.map((name) => `${name}, ms`)]);
line(Array(asked.length + 3).fill("---"));
for (const path of paths) {
  const told = {};
  const file = fileURLToPath(new URL(path, models));
  for (const name of asked) told[name] = await ask(name, file);
  const { rows, columns, status, objective } = told["nuv, proved"];
  const cell = ({ failure, milliseconds, objective: found }) => {
    if (failure) return failure;
    if (Number.isNaN(found)) return "gives up";
    const isRight = Math.abs(found - objective) <= 1e-6 * Math.max(1, Math.abs(objective));
    return milliseconds.toPrecision(3) + (status !== "optimal" || isRight ? "" : " (wrong)");
  };
  line([path.replace(/^.*\/|\.\w+$/g, ""), rows, columns, ...asked.map((name) => cell(told[name]))]);
}
