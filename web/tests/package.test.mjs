// What the package weighs, and that its bytes come from its sources alone.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdtemp, readFile, rm } from "node:fs/promises";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath } from "node:url";
import { test } from "node:test";
import { gzipSync } from "node:zlib";

const dist = fileURLToPath(new URL("../dist/", import.meta.url));

async function gzipped(...names) {
  const files = await Promise.all(names.map((name) => readFile(join(dist, name))));
  return files.reduce((sum, bytes) => sum + gzipSync(bytes, { level: 9 }).length, 0);
}

test("no program asks for anything but its own host", async () => {
  const imports = async (name) =>
    WebAssembly.Module.imports(await WebAssembly.compile(await readFile(join(dist, name)))).map(({ module }) => module);
  assert.deepEqual(await imports("nuv.wasm"), []);
  assert.deepEqual(new Set(await imports("proof.wasm")), new Set(["host"]));
  assert.deepEqual(new Set(await imports("all.wasm")), new Set(["host"]));
});

test("the core's program takes less than 20 KB gzipped, and 21 with its modules", async () => {
  assert.ok((await gzipped("nuv.wasm")) < 20_000);
  assert.ok((await gzipped("nuv.wasm", "core.js", "error.js", "program.js")) < 21_000);
});

test("the program that proves takes less than 130 KB gzipped", async () => {
  assert.ok((await gzipped("proof.wasm")) < 130_000);
});

test("the modules have no dependency", async () => {
  const { dependencies } = JSON.parse(await readFile(join(dist, "../package.json"), "utf8"));
  assert.equal(dependencies, undefined);
});

test("the lock file names no registry", async () => {
  assert.doesNotMatch(await readFile(join(dist, "../package-lock.json"), "utf8"), /"resolved"/);
});

test("the same sources give the same bytes", { timeout: 900_000 }, async () => {
  const folder = await mkdtemp(join(tmpdir(), "nuv-web-"));
  try {
    execFileSync(join(dist, "../native/build"), [folder], { stdio: "pipe", timeout: 880_000 });
    for (const name of ["nuv.wasm", "proof.wasm", "all.wasm", "selftest.wasm"])
      assert.ok((await readFile(join(folder, name))).equals(await readFile(join(dist, name))), name);
  } finally {
    await rm(folder, { recursive: true });
  }
});
