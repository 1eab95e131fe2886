// The hashes of the solves of the self-test's corpus, by the loops without vectors and by those with.
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { test } from "node:test";
import { openSelfTest } from "./selftest.mjs";

const selftest = await openSelfTest(await readFile(new URL("../dist/selftest.wasm", import.meta.url)));

test("the self-test has all its families", () => {
  assert.ok(selftest.families.length > 10);
});

for (const [loops, name] of [[1, "without vectors"], [2, "in fours"]])
  for (const family of selftest.families)
    test(`${family.name} has its bits, ${name}`, () => {
      assert.ok(selftest.has(loops));
      assert.equal(family.run(loops), family.promised);
    });
