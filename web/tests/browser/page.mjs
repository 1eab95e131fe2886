// The playground in Debian's Chromium, opened from its folder.
import { chromium } from "playwright-core";
import { fileURLToPath } from "node:url";

export const address = new URL("../../playground/dist/index.html", import.meta.url).href;
export const root = fileURLToPath(new URL("../../", import.meta.url));

export function openBrowser() {
  return chromium.launch({
    executablePath: "/usr/bin/chromium",
    args: [
      "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
      "--disable-component-update", "--disable-sync",
    ],
  });
}

/** A page in a window of its own, with what it logs as an error. */
export async function openPage(browser, options = {}, at = address) {
  const context = await browser.newContext({ viewport: { width: 1280, height: 900 }, offline: true, ...options });
  const page = await context.newPage();
  const errors = [];
  page.on("pageerror", (error) => errors.push(String(error)));
  page.on("console", (message) => message.type() === "error" && errors.push(message.text()));
  await page.goto(at);
  await page.waitForSelector("#verdict");
  return { page, errors, close: () => context.close() };
}

/** Puts a text in the place of the model, as by keys. */
export async function write(page, text) {
  await page.click(".cm-content");
  await page.keyboard.press("Control+A");
  await page.keyboard.insertText(text);
}

/** Waits until the verdict is this. */
export async function says(page, verdict) {
  await page.waitForFunction((wanted) => document.querySelector("#verdict")?.textContent.includes(wanted), verdict, {
    timeout: 20_000,
  });
}
