// node tools/build.mjs: makes the package in dist/: the programs for WebAssembly (native/build), the
// modules with their types, and the modules that have their program inside.
import { execFileSync } from "node:child_process";
import { writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

const root = join(dirname(fileURLToPath(import.meta.url)), "..");
const dist = join(root, "dist");

const run = (command, ...given) => execFileSync(command, given, { cwd: root, stdio: "inherit", timeout: 3_600_000 });

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
inline("core", "nuv", "Core");
inline("proof", "proof", "Nuv");
inline("all", "all", "AllNuv");
