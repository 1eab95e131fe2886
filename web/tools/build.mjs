// node tools/build.mjs: makes the package in dist/: the programs for WebAssembly (native/build), the
// modules with their types, and the modules that have their program inside.
import { execFileSync } from "node:child_process";
import { readFileSync, readdirSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { minifySync } from "vite";

const root = join(dirname(fileURLToPath(import.meta.url)), "..");
const dist = join(root, "dist");

const run = (command, ...given) => execFileSync(command, given, { cwd: root, stdio: "inherit", timeout: 3_600_000 });

/** Without comments and blanks, and with short names; the types beside a module keep what it says of itself. */
function minify(name) {
  const path = join(dist, name);
  const { code, errors } = minifySync(name, readFileSync(path, "utf8"), { module: true, compress: false });
  if (errors.length > 0) throw new Error(`${name}: ${errors[0].message}`);
  writeFileSync(path, code);
}

function inline(module, program, Loaded) {
  // A twentieth smaller than zlib's, and the same bytes everywhere.
  const packed = execFileSync("zopfli", ["-c", "--i5", join(dist, `${program}.wasm`)], { maxBuffer: 1 << 28, timeout: 900_000 });
  writeFileSync(
    join(dist, `${module}-inlined.js`),
    `// ${module}.js with its program inside.
import { load as loadFrom } from "./${module}.js";
import { unpack } from "./program.js";
export * from "./${module}.js";
const program = "${packed.toString("base64")}";
export async function load() {
  return loadFrom(await unpack(program));
}
`,
  );
  writeFileSync(
    join(dist, `${module}-inlined.d.ts`),
    `import { ${Loaded} } from "./${module}.js";
export * from "./${module}.js";
/** Loads the program that is inside this module. */
export declare function load(): Promise<${Loaded}>;
`,
  );
}

run(join(root, "native", "build"), dist);
run(process.execPath, join(root, "node_modules", "typescript", "bin", "tsc"));
for (const name of readdirSync(dist)) if (name.endsWith(".js") && !name.endsWith("-inlined.js")) minify(name);
inline("core", "nuv", "Core");
inline("proof", "proof", "Nuv");
inline("all", "all", "AllNuv");
