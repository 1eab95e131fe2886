// node tools/wasi.mjs PROGRAM [ARGUMENT...]: runs a WebAssembly program that was built for WASI.
import { readFile } from "node:fs/promises";
import { WASI } from "node:wasi";

const [program, ...rest] = process.argv.slice(2);
const wasi = new WASI({ version: "preview1", args: [program, ...rest] });
const imports = wasi.getImportObject?.() ?? { wasi_snapshot_preview1: wasi.wasiImport };
const { instance } = await WebAssembly.instantiate(await readFile(program), imports);
process.exitCode = wasi.start(instance);
