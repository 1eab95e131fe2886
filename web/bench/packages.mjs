// What is compared: how each package is loaded, how it takes a program or a model, and solves what it took.
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { gzipSync } from "node:zlib";

const require = createRequire(import.meta.url);

const x = (k) => `x${k + 1}`;
const rowOf = ({ A, columns }, row) => A.slice(row * columns, (row + 1) * columns);

function lpText(p) {
  const sum = (numbers) => numbers.map((number, k) => `${number} ${x(k)}`).join(" + ");
  const rows = p.b.map((side, row) => ` r${row}: ${sum(rowOf(p, row))} <= ${side}`);
  return `Maximize\n obj: ${sum(p.c)}\nSubject To\n${rows.join("\n")}\nEnd\n`;
}

export function object(p) {
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

/** A model of ours, as arrays, for those that take records: bounds beyond zero are rows. @return null where a
 * variable may be negative, unless `isFree` notes it. */
function recordsOf(a, isFree) {
  const constraints = {};
  const variables = Object.fromEntries(a.columns.map((name, j) => [name, { gain: a.costs[j] }]));
  const limit = (name, lower, upper) => {
    if (lower === upper) constraints[name] = { equal: lower };
    else constraints[name] = { ...(lower > -Infinity && { min: lower }), ...(upper < Infinity && { max: upper }) };
  };
  a.rows.forEach((name, i) => {
    if (a.rowLower[i] === -Infinity && a.rowUpper[i] === Infinity) return;
    limit(`row ${name}`, a.rowLower[i], a.rowUpper[i]);
    for (let k = a.starts[i]; k < a.starts[i + 1]; ++k) variables[a.columns[a.indices[k]]][`row ${name}`] = a.values[k];
  });
  for (const [j, name] of a.columns.entries()) {
    const [lower, upper] = [a.lower[j], a.upper[j]];
    if (lower < 0) {
      if (!isFree || lower !== -Infinity) return null;
      isFree(name);
    }
    if (lower <= 0 && upper === Infinity) continue;
    limit(`bound ${name}`, lower > 0 ? lower : -Infinity, upper);
    variables[name][`bound ${name}`] = 1;
  }
  return { constraints, variables };
}

const gz = (...files) => files.reduce((sum, file) => sum + gzipSync(readFileSync(file), { level: 9 }).length, 0);
const here = (path) => new URL(path, import.meta.url).pathname;
const coreFiles = ["core.js", "error.js", "program.js", "nuv.wasm"];
const proofFiles = ["proof.js", "answer.js", "error.js", "exact.js", "layer.js", "model.js", "object.js", "program.js", "proof.wasm"];

/** Each: its bytes, and how it is loaded; loaded, how it takes a program, and solves what it took. */
export const packages = {
  "nuv, core": {
    bytes: gz(...coreFiles.map((name) => here(`../dist/${name}`))),
    async load() {
      const core = await (await import("../dist/core.js")).load();
      const arrays = (p) => ({ ...p, A: Float32Array.from(p.A), b: Float32Array.from(p.b), c: Float32Array.from(p.c) });
      return { take: arrays, takeModel: () => null, solve: (p) => core.solve(p).objective };
    },
  },
  "nuv, proved": {
    bytes: gz(...proofFiles.map((name) => here(`../dist/${name}`))),
    async load() {
      const nuv = await (await import("../dist/proof.js")).load();
      return { take: object, takeModel: (text) => nuv.model(text), solve: (model) => nuv.solve(model, { exact: false }).objective };
    },
  },
  highs: {
    bytes: gz(here("node_modules/highs/build/highs.js"), here("node_modules/highs/build/highs.wasm")),
    async load() {
      const highs = await require("highs")();
      return { take: lpText, takeModel: (text) => text, solve: (text) => highs.solve(text, { output_flag: false }).ObjectiveValue };
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
      const bounds = (lb, ub) => ({
        type:
          lb === ub ? glpk.GLP_FX
          : lb > -Infinity ? (ub < Infinity ? glpk.GLP_DB : glpk.GLP_LO)
          : ub < Infinity ? glpk.GLP_UP
          : glpk.GLP_FR,
        lb: lb > -Infinity ? lb : 0,
        ub: ub < Infinity ? ub : 0,
      });
      const takeModel = (_, a) => {
        const vars = a.columns.map((name, j) => ({ name, coef: a.costs[j] }));
        const terms = (i) => [...a.indices.subarray(a.starts[i], a.starts[i + 1])].map((j, k) => ({ name: a.columns[j], coef: a.values[a.starts[i] + k] }));
        const subjectTo = a.rows.map((name, i) => ({ name, vars: terms(i), bnds: bounds(a.rowLower[i], a.rowUpper[i]) }));
        const direction = a.isMaximised ? glpk.GLP_MAX : glpk.GLP_MIN;
        const limits = a.columns.map((name, j) => ({ name, ...bounds(a.lower[j], a.upper[j]) }));
        return { name: "p", constant: a.constant, objective: { direction, name: "obj", vars }, subjectTo, bounds: limits };
      };
      const solve = (model) => glpk.solve(model, { msglev: glpk.GLP_MSG_OFF }).result.z + (model.constant ?? 0);
      return { take, takeModel, solve };
    },
  },
  yalps: {
    bytes: gz(here("node_modules/yalps/dist/index.min.js")),
    async load() {
      const { solve } = await import("yalps");
      const takeModel = (_, a) => {
        const made = recordsOf(a);
        return made && { constant: a.constant, direction: a.isMaximised ? "maximize" : "minimize", objective: "gain", ...made };
      };
      const take = (p) => ({ direction: "maximize", objective: "gain", ...records(p) });
      return { take, takeModel, solve: (model) => solve(model).result + (model.constant ?? 0) };
    },
  },
  "javascript-lp-solver": {
    bytes: gz(here("node_modules/javascript-lp-solver/dist/solver.global.js")),
    async load() {
      const loaded = (await import("javascript-lp-solver")).default;
      const takeModel = (_, a) => {
        const unrestricted = {};
        const made = recordsOf(a, (name) => (unrestricted[name] = 1));
        return made && { constant: a.constant, optimize: "gain", opType: a.isMaximised ? "max" : "min", unrestricted, ...made };
      };
      const take = (p) => ({ optimize: "gain", opType: "max", ...records(p) });
      return { take, takeModel, solve: (model) => loaded.Solve(model).result + (model.constant ?? 0) };
    },
  },
};

