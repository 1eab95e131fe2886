// node bench.mjs: this package beside others on dense models from 2 x 2 to 100 x 100, in one process and
// turn by turn, so that what else the machine does falls on all alike. Prints a document: bytes, the time to
// the first answer, the time of a solve, and how far answers are from the proved optimum.
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { performance } from "node:perf_hooks";
import { gzipSync } from "node:zlib";

const require = createRequire(import.meta.url);
const ROUNDS = 5;
const SECONDS = 0.15;

/** A program with a bounded region: positive coefficients of at most three digits. */
function program(size) {
  let state = 12345 + size;
  const next = () => ((state = (Math.imul(state, 1103515245) + 12345) >>> 0) >>> 16) % 999 + 1;
  const numbers = (length) => Array.from({ length }, next);
  return { rows: size, columns: size, A: numbers(size * size), b: numbers(size).map((x) => x * size), c: numbers(size) };
}

const x = (k) => `x${k + 1}`;
const rowOf = ({ A, columns }, row) => A.slice(row * columns, (row + 1) * columns);

function lpText(p) {
  const sum = (numbers) => numbers.map((number, k) => `${number} ${x(k)}`).join(" + ");
  const rows = p.b.map((side, row) => ` r${row}: ${sum(rowOf(p, row))} <= ${side}`);
  return `Maximize\n obj: ${sum(p.c)}\nSubject To\n${rows.join("\n")}\nEnd\n`;
}

function object(p) {
  const terms = (numbers) => Object.fromEntries(numbers.map((number, k) => [x(k), number]));
  const rows = p.b.map((upper, row) => [`r${row}`, { terms: terms(rowOf(p, row)), upper }]);
  return { maximize: terms(p.c), rows: Object.fromEntries(rows) };
}

function records(p) {
  const constraints = Object.fromEntries(p.b.map((max, row) => [`r${row}`, { max }]));
  const variables = Object.fromEntries(
    p.c.map((gain, k) => [x(k), { gain, ...Object.fromEntries(p.b.map((_, row) => [`r${row}`, p.A[row * p.columns + k]])) }]),
  );
  return { constraints, variables };
}

const gz = (...files) => files.reduce((sum, file) => sum + gzipSync(readFileSync(file), { level: 9 }).length, 0);
const here = (path) => new URL(path, import.meta.url).pathname;
const coreFiles = ["core.js", "error.js", "program.js", "nuv.wasm"];
const proofFiles = ["proof.js", "answer.js", "error.js", "exact.js", "layer.js", "model.js", "object.js", "program.js", "repair.js", "proof.wasm"];

/** Each: its bytes, and how it is loaded; loaded, how it takes a program, and solves what it took. */
const packages = {
  "nuv, core": {
    bytes: gz(...coreFiles.map((name) => here(`../dist/${name}`))),
    async load() {
      const core = await (await import("../dist/core.js")).load();
      const arrays = (p) => ({ ...p, A: Float32Array.from(p.A), b: Float32Array.from(p.b), c: Float32Array.from(p.c) });
      return { take: arrays, solve: (p) => core.solve(p).objective };
    },
  },
  "nuv, proved": {
    bytes: gz(...proofFiles.map((name) => here(`../dist/${name}`))),
    async load() {
      const nuv = await (await import("../dist/proof.js")).load();
      return { take: object, solve: (model) => nuv.solve(model, { exact: false }).objective };
    },
  },
  highs: {
    bytes: gz(here("node_modules/highs/build/highs.js"), here("node_modules/highs/build/highs.wasm")),
    async load() {
      const highs = await require("highs")();
      return { take: lpText, solve: (text) => highs.solve(text, { output_flag: false }).ObjectiveValue };
    },
  },
  "glpk.js": {
    bytes: gz(here("node_modules/glpk.js/dist/glpk.js"), here("node_modules/glpk.js/dist/glpk.wasm")),
    async load() {
      const glpk = await (await import("glpk.js/node")).default();
      const take = (p) => {
        const vars = (numbers) => numbers.map((coef, k) => ({ name: x(k), coef }));
        const subjectTo = p.b.map((ub, row) => ({ name: `r${row}`, vars: vars(rowOf(p, row)), bnds: { type: glpk.GLP_UP, ub, lb: 0 } }));
        return { name: "p", objective: { direction: glpk.GLP_MAX, name: "obj", vars: vars(p.c) }, subjectTo };
      };
      return { take, solve: (model) => glpk.solve(model, { msglev: glpk.GLP_MSG_OFF }).result.z };
    },
  },
  yalps: {
    bytes: gz(here("node_modules/yalps/dist/index.min.js")),
    async load() {
      const { solve } = await import("yalps");
      return { take: (p) => ({ direction: "maximize", objective: "gain", ...records(p) }), solve: (model) => solve(model).result };
    },
  },
  "javascript-lp-solver": {
    bytes: gz(here("node_modules/javascript-lp-solver/dist/solver.global.js")),
    async load() {
      const loaded = (await import("javascript-lp-solver")).default;
      return { take: (p) => ({ optimize: "gain", opType: "max", ...records(p) }), solve: (model) => loaded.Solve(model).result };
    },
  },
};

/** Microseconds of a solve: as many as there is time for. */
function time(run) {
  const began = performance.now();
  let count = 0;
  do run(), ++count;
  while (performance.now() - began < 1000 * SECONDS);
  return (1000 * (performance.now() - began)) / count;
}

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
  const { load } = await import("../dist/proof.js");
  const optimum = (await load()).solve(object(p)).objective;
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
