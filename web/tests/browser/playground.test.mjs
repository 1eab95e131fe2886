// The page as people use it: typing, mistakes, contradictions, long solves, dragging, links.
import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { createRequire } from "node:module";
import { mkdtemp, readFile, writeFile } from "node:fs/promises";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, beforeEach, afterEach, test } from "node:test";
import { gzipSync } from "node:zlib";
import { openBrowser, openPage, root, says, write } from "./page.mjs";
import { contradictionLp, factoryLp, rayLp, slowLp } from "../models.mjs";

let browser;
let opened;
let page;

const limit = { timeout: 60_000 };

before(async () => (browser = await openBrowser()), limit);
after(() => browser?.close(), limit);
beforeEach(async () => {
  opened = await openPage(browser);
  ({ page } = opened);
  await says(page, "29700/7");
}, limit);
afterEach(async () => {
  assert.deepEqual(opened.errors, []);
  await opened.close();
}, limit);

const texts = (selector) => page.locator(selector).allTextContents();

test("a model is typed and its answer read", limit, async () => {
  await write(page, factoryLp.replace("300", "310"));
  await says(page, "30650/7");
  assert.match((await texts(".said.proved"))[0], /Proved in exact arithmetic/);
  assert.ok((await texts("#words li")).includes("One more unit of wood is worth 95/7, from 120 to 400."));
  assert.deepEqual((await texts("table[aria-label=Variables] tbody th")), ["chairs", "tables"]);
});

test("after the last key a textbook model is answered in less than 50 ms and the pause", limit, async () => {
  const times = [];
  for (const side of [310, 320, 330, 340, 350]) {
    await write(page, factoryLp.replace("300", String(side)));
    await page.waitForFunction((wanted) => document.querySelector("table[aria-label=Rows] td")?.textContent === wanted, String(side));
    times.push(parseFloat(/Answered in ([\d.]+) ms/.exec(await page.textContent("#state"))[1]));
  }
  assert.ok(Math.min(...times) < 50, String(times));
});

test("a mistake is underlined at its place and told with a hint", limit, async () => {
  await write(page, "Maximize\n x + y\nSubject To\n c: x + y <= <= 4\nEnd\n");
  await page.waitForSelector("#problems li.error");
  assert.match((await texts("#problems button"))[0], /^Line 4: /);
  const marked = page.locator(".squiggle.error");
  assert.equal(await marked.count(), 1);
  assert.match(await marked.textContent(), /^<=/);
  assert.ok((await marked.getAttribute("title")).length > 0);
  await page.click("#problems button");
  assert.ok(await page.evaluate(() => document.activeElement.classList.contains("cm-content")));
  await write(page, factoryLp);
  await says(page, "29700/7");
  assert.equal(await page.locator(".squiggle").count(), 0);
});

test("a contradiction is told in words with its least repair", limit, async () => {
  await write(page, contradictionLp);
  await says(page, "Infeasible");
  assert.deepEqual(await texts("#conflict li"), ["row most with its upper side", "row least with its lower side"]);
  assert.equal((await texts("#repair li")).length, 1);
  assert.match((await texts("#repair li"))[0], /^Move row (most from 1 to 2|least from 2 to 1)\.$/);
});

test("a model without end shows its direction", limit, async () => {
  await write(page, rayLp);
  await says(page, "Unbounded");
  assert.deepEqual(await texts("#ray li"), ["x by 1", "y by 1"]);
});

test("a long solve is stopped, and the page goes on", limit, async () => {
  await page.setInputFiles("#file", { name: "slow.lp", mimeType: "text/plain", buffer: Buffer.from(slowLp()) });
  await page.waitForFunction(() => document.querySelector("#state").textContent.startsWith("Press Solve"));
  await page.click("#solve");
  await page.click("#stop", { timeout: 20_000 });
  await page.waitForFunction(() => document.querySelector("#state").textContent === "Stopped.");
  await write(page, factoryLp);
  await says(page, "29700/7");
});

test("a row is dragged, and its number in the text follows", limit, async () => {
  const grip = page.locator('[data-row="labour"]');
  await page.locator("#picture").scrollIntoViewIfNeeded();
  const { x, y, width, height } = await grip.boundingBox();
  await page.mouse.move(x + width / 2, y + height / 2);
  await page.mouse.down();
  await page.mouse.move(x + width / 2 + 60, y + height / 2, { steps: 5 });
  await page.mouse.up();
  await page.waitForFunction(() => !document.querySelector("#verdict").textContent.includes("29700/7"));
  const side = /labour: .* <= ([\d.]+)/.exec(await page.locator(".cm-content").innerText())[1];
  assert.ok(Number(side) > 240, side);
  assert.equal((await texts("table[aria-label=Rows] tbody tr:nth-child(2) td"))[0], side);
});

test("a row is moved by the arrow keys", limit, async () => {
  await page.focus('[data-row="wood"]');
  await page.keyboard.press("ArrowUp");
  await page.waitForFunction(() => !document.querySelector("#verdict").textContent.includes("29700/7"));
  assert.equal(await page.evaluate(() => document.activeElement.getAttribute("data-row")), "wood");
});

test("the way of the solve is stepped through", limit, async () => {
  const step = () => page.textContent("#step");
  assert.match(await step(), /^Point 3 of 3: chairs 21\.4286/);
  await page.click('[aria-label="Step back"]');
  assert.match(await step(), /^Point 2 of 3/);
  await page.click('[aria-label="Step back"]');
  assert.match(await step(), /^Point 1 of 3: chairs 0, tables 0, objective 0$/);
  await page.click('[aria-label="Step on"]');
  assert.match(await step(), /^Point 2 of 3/);
});

test("steps end where the way does", limit, async () => {
  const disabled = () => page.locator(".steps button").evaluateAll((buttons) => buttons.map((button) => button.getAttribute("aria-disabled")));
  assert.deepEqual(await disabled(), ["false", "true"]);
  for (const _ of [1, 2]) await page.click('[aria-label="Step back"]');
  assert.deepEqual(await disabled(), ["true", "false"]);
  await write(page, contradictionLp);
  await says(page, "Infeasible");
  assert.equal(await page.locator(".steps, #here").count(), 0);
});

test("an example that was changed can be chosen again", limit, async () => {
  await write(page, factoryLp.replace("300", "310"));
  await says(page, "30650/7");
  assert.equal(await page.inputValue("#example"), "");
  await page.selectOption("#example", "Factory");
  await says(page, "29700/7");
});

test("whole optima are told once, and a mistake has no empty picture", limit, async () => {
  await page.selectOption("#example", "Transport");
  await says(page, "4400");
  assert.equal(await page.textContent("#verdict"), "Optimal: 4400");
  assert.ok(await page.isVisible(".picture"));
  await write(page, factoryLp.replace("wood:", "wood: ="));
  await page.waitForSelector("#problems li.error");
  assert.ok(!(await page.isVisible(".picture")));
});

test("a larger model has charts", limit, async () => {
  await page.selectOption("#example", "Transport");
  await page.waitForFunction(() => document.querySelector("#picture svg[role=img]"));
  assert.ok((await page.locator("#picture rect").count()) > 4);
});

test("every example has an answer that is proved", limit, async () => {
  for (const name of await page.locator("#example option").allTextContents()) {
    const before = await page.textContent("#answer");
    await page.selectOption("#example", name);
    if (name !== "Factory") await page.waitForFunction((was) => document.querySelector("#answer").textContent !== was, before);
    assert.equal(await page.locator(".said.proved").count(), 1, name);
  }
});

test("a link has the model in it", limit, async () => {
  await write(page, factoryLp.replace("300", "310"));
  await says(page, "30650/7");
  await page.click("#share");
  await page.waitForFunction(() => location.hash.startsWith("#m="));
  const other = await openPage(browser, {}, page.url());
  await says(other.page, "30650/7");
  assert.deepEqual(other.errors, []);
  await other.close();
});

test("the certificate is one that the native program takes", limit, async () => {
  const [download] = await Promise.all([page.waitForEvent("download"), page.click("#certificate")]);
  const folder = await mkdtemp(join(tmpdir(), "nuv-certificate-"));
  await download.saveAs(join(folder, "c.vipr"));
  await writeFile(join(folder, "factory.lp"), factoryLp);
  const nuvlp = process.env.NUVLP ?? join(root, "../build/release/apps/nuvlp/nuvlp");
  const { status, stdout, stderr } = spawnSync(nuvlp, ["verify", join(folder, "factory.lp"), join(folder, "c.vipr")], { encoding: "utf8", timeout: 30_000 });
  assert.equal(status, 0, stdout + stderr);
  const text = await readFile(join(folder, "c.vipr"), "utf8");
  await writeFile(join(folder, "wrong.vipr"), text.replaceAll("29700/7", "29701/7"));
  assert.notEqual(spawnSync(nuvlp, ["verify", join(folder, "factory.lp"), join(folder, "wrong.vipr")], { timeout: 30_000 }).status, 0);
});

test("the first load is less than 300 KB gzipped", limit, async () => {
  const files = ["index.html", "style.css", "playground.js"];
  const all = await Promise.all(files.map((name) => readFile(join(root, "playground/dist", name))));
  assert.ok(all.reduce((sum, bytes) => sum + gzipSync(bytes, { level: 9 }).length, 0) < 300_000);
});

test("the page fits a phone", limit, async () => {
  await page.setViewportSize({ width: 360, height: 740 });
  assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= 360));
});

const axe = createRequire(import.meta.url).resolve("axe-core/axe.min.js");
for (const colorScheme of ["light", "dark"])
  for (const example of ["Factory", "A contradiction", "Transport"])
    test(`axe finds no violation: ${example}, ${colorScheme}`, limit, async () => {
      await page.emulateMedia({ colorScheme });
      await page.selectOption("#example", example);
      if (example !== "Factory") await page.waitForFunction(() => !document.querySelector("#verdict").textContent.includes("29700/7"));
      await page.addScriptTag({ path: axe });
      const { violations } = await page.evaluate(() => window.axe.run({ preload: false }));
      assert.deepEqual(violations.map(({ id, nodes }) => [id, nodes.map(({ html }) => html)]), []);
    });
