// node tools/playground.mjs: builds the page in playground/dist from the package in dist/. It is plain files
// that work from a folder too, so its one script is no module and has its worker inside.
import { copyFileSync, mkdirSync, readFileSync, rmSync, statSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";
import { build } from "vite";

const root = join(dirname(fileURLToPath(import.meta.url)), "..");
const page = join(root, "playground");
const out = join(page, "dist");

/** The programs are inside, so that no address of a file beside the modules is wanted. */
const withoutAddresses = {
  name: "without-addresses",
  enforce: "pre",
  transform: (code) => code.replaceAll(/new URL\(`[^`]*`,import\.meta\.url\)/g, "undefined"),
};

/** Builds one script that is no module. @return its text. */
async function script(entry, define) {
  const built = await build({
    root: page,
    configFile: false,
    logLevel: "warn",
    define,
    plugins: [withoutAddresses],
    build: {
      write: false,
      target: "es2022",
      modulePreload: false,
      lib: { entry: join(page, "src", entry), formats: ["iife"], name: "nuv", fileName: () => "script.js" },
    },
  });
  return (Array.isArray(built) ? built[0] : built).output.find(({ type }) => type === "chunk").code;
}

rmSync(out, { recursive: true, force: true });
mkdirSync(out, { recursive: true });
const worker = await script("worker-main.ts");
writeFileSync(join(out, "playground.js"), await script("main.ts", { WORKER: JSON.stringify(worker) }));
for (const name of ["index.html", "style.css"]) copyFileSync(join(page, name), join(out, name));
const files = ["index.html", "style.css", "playground.js"];
const gzipped = files.reduce((sum, name) => sum + gzipSync(readFileSync(join(out, name)), { level: 9 }).length, 0);
const bytes = files.reduce((sum, name) => sum + statSync(join(out, name)).size, 0);
console.log(`playground: ${bytes} bytes, ${gzipped} gzipped`);
