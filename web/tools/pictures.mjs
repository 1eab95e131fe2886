// node tools/pictures.mjs: draws the pictures of the page that docs/web.md shows.
import { fileURLToPath } from "node:url";
import { openBrowser, openPage, says } from "../tests/browser/page.mjs";

const docs = new URL("../../docs/", import.meta.url);
const pictures = [
  ["web-light", "light", { width: 1200, height: 960 }, "Factory", "29700/7"],
  ["web-dark", "dark", { width: 1200, height: 960 }, "A contradiction", "Infeasible"],
  ["web-phone", "light", { width: 390, height: 844 }, "Factory", "29700/7"],
];
const browser = await openBrowser();
for (const [name, colorScheme, viewport, example, verdict] of pictures) {
  const { page, close } = await openPage(browser, { colorScheme, viewport });
  await page.selectOption("#example", example);
  await says(page, verdict);
  await page.screenshot({ path: fileURLToPath(new URL(`${name}.png`, docs)), fullPage: viewport.width < 500 });
  await close();
}
await browser.close();
