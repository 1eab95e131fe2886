// node tools/wasi.mjs PROGRAM [ARGUMENT...]: runs a WebAssembly program that was built for WASI, in a thread that is ended,
// with status 124, if the program takes longer than NUV_WASI_SECONDS (an hour if that is not said).
import { readFile } from "node:fs/promises";
import { WASI } from "node:wasi";
import { isMainThread, parentPort, Worker, workerData } from "node:worker_threads";

if (isMainThread) {
  const given = process.argv.slice(2);
  const seconds = Number(process.env.NUV_WASI_SECONDS ?? 3600);
  const worker = new Worker(new URL(import.meta.url), { workerData: given });
  const end = setTimeout(() => {
    console.error(`${given.join(" ")} has not ended after ${seconds} seconds`);
    process.exit(124);
  }, 1000 * seconds);
  worker.on("message", (status) => {
    clearTimeout(end);
    process.exitCode = status;
  });
  worker.on("error", (error) => {
    console.error(error);
    process.exit(1);
  });
} else {
  const wasi = new WASI({ version: "preview1", args: workerData, returnOnExit: true });
  const imports = wasi.getImportObject?.() ?? { wasi_snapshot_preview1: wasi.wasiImport };
  const { instance } = await WebAssembly.instantiate(await readFile(workerData[0]), imports);
  parentPort.postMessage(wasi.start(instance));
}
