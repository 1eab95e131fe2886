import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { test } from "node:test";
import { load } from "../dist/core.js";
import { load as loadInlined } from "../dist/core-inlined.js";
import { batchHash } from "./batch.mjs";
import { factory } from "./models.mjs";

const core = await load();

test("the factory's plan is that of the paper", () => {
  const plan = core.solve(factory);
  assert.equal(plan.verdict, "optimal");
  // The bits that `nuvlp solve --float-only` has, a few units in the last place from 29700/7.
  assert.equal(plan.objective, 4242.85693359375);
  assert.deepEqual([...plan.values], [21.428565979003906, 51.428565979003906]);
  assert.deepEqual([...plan.prices], [13.571426391601562, 0.7142868041992188]);
  assert.equal(plan.pivots, 2);
});

test("what is inlined is the same program", async () => {
  assert.deepEqual((await loadInlined()).solve(factory), core.solve(factory));
});

test("a program is taken as bytes, as a module and as an address", async () => {
  const address = new URL("../dist/nuv.wasm", import.meta.url);
  const bytes = await readFile(address);
  for (const source of [address, String(address), bytes, await WebAssembly.compile(bytes)])
    assert.equal((await load(source)).solve(factory).verdict, "optimal");
});

test("unbounded and infeasible programs are told apart", () => {
  assert.equal(core.solve({ rows: 1, columns: 1, A: [-1], b: [1], c: [1] }).objective, Infinity);
  const contradiction = core.solve({ rows: 1, columns: 1, A: [1], b: [-1], c: [1] });
  assert.equal(contradiction.verdict, "infeasible");
  assert.ok(Number.isNaN(contradiction.objective));
});

test("a program that wants more pivots than its limit is stopped", () => {
  assert.equal(core.solve({ ...factory, pivotLimit: 1 }).verdict, "stopped");
});

test("programs of a batch share what is of the length of one", () => {
  const { objectives } = core.solveBatch({ ...factory, count: 2, b: [300, 240, 600, 480] });
  assert.deepEqual([...objectives], [4242.85693359375, 2 * 4242.85693359375]);
});

test("lengths that fit no batch are refused by name", () => {
  assert.throws(() => core.solve({ ...factory, b: [300] }), { name: "NuvError", code: "js.argument", message: /^b has 1 / });
  assert.throws(() => core.solve({ ...factory, rows: 0 }), { message: /^rows is 0/ });
  assert.throws(() => core.solve({ ...factory, columns: 1.5 }), { message: /^columns is 1.5/ });
  assert.throws(() => core.solveBatch({ rows: 65536, columns: 65536, A: [], b: [], c: [] }), { name: "NuvError" });
});

test("a batch has the bits that it has on every machine", () => {
  assert.equal(batchHash(core), "457551ce");
});

test("100 000 solves take no more memory than the first", () => {
  core.solve(factory);
  const before = process.memoryUsage().arrayBuffers;
  const taken = core.memory;
  for (let k = 0; k < 100_000; ++k) core.solve(factory);
  globalThis.gc?.();
  assert.equal(core.memory, taken);
  assert.ok(process.memoryUsage().arrayBuffers - before < 64e6);
});
