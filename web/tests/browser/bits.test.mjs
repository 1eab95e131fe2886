// The package in a browser, served: the same bits as everywhere, and its worker.
import assert from "node:assert/strict";
import { createServer } from "node:http";
import { readFile } from "node:fs/promises";
import { extname, join } from "node:path";
import { after, before, test } from "node:test";
import { openBrowser, root } from "./page.mjs";
import { factoryLp, slowLp } from "../models.mjs";

const kinds = { ".js": "text/javascript", ".mjs": "text/javascript", ".wasm": "application/wasm", ".html": "text/html" };
const server = createServer(async ({ url }, response) => {
  try {
    const bytes = url === "/" ? "<!doctype html><title>Nuv</title>" : await readFile(join(root, url));
    response.writeHead(200, { "content-type": kinds[extname(url)] ?? kinds[".html"] }).end(bytes);
  } catch {
    response.writeHead(404).end();
  }
});
let browser;
let page;

before(async () => {
  await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));
  browser = await openBrowser();
  page = await browser.newPage();
  await page.goto(`http://127.0.0.1:${server.address().port}/`);
}, { timeout: 60_000 });
after(async () => {
  await browser?.close();
  server.close();
}, { timeout: 60_000 });

test("the self-test's hashes are those of every machine", { timeout: 120_000 }, async () => {
  const found = await page.evaluate(async () => {
    const { openSelfTest } = await import("/tests/selftest.mjs");
    const selftest = await openSelfTest(await (await fetch("/dist/selftest.wasm")).arrayBuffer());
    return selftest.families.map((family) => [family.name, family.promised, family.run(1), family.run(2)]);
  });
  assert.ok(found.length > 10);
  for (const [name, promised, ...runs] of found) assert.deepEqual(runs, [promised, promised], name);
});

test("a batch's hash is that of every machine", { timeout: 60_000 }, async () => {
  const hash = await page.evaluate(async () => {
    const { load } = await import("/dist/core.js");
    const { batchHash } = await import("/tests/batch.mjs");
    return batchHash(await load());
  });
  assert.equal(hash, "457551ce");
});

test("a worker solves, tells of its progress and is aborted", { timeout: 60_000 }, async () => {
  const found = await page.evaluate(
    async ([factory, slow]) => {
      const { WorkerSolver } = await import("/dist/worker.js");
      const solver = new WorkerSolver();
      const { exactObjective } = await solver.solve(factory);
      const stop = new AbortController();
      const aborted = await solver
        .solve(slow, { signal: stop.signal, onProgress: () => stop.abort() })
        .then(() => "solved", (error) => error.name);
      const again = await solver.solve(factory);
      solver.dispose();
      return [exactObjective, aborted, again.exactObjective];
    },
    [factoryLp, slowLp()],
  );
  assert.deepEqual(found, ["29700/7", "AbortError", "29700/7"]);
});
