// A program for WebAssembly and its memory.
import { NuvError } from "./error.js";

/** Where a program may come from; the default is the file beside this module. */
export type Source = URL | string | BufferSource | WebAssembly.Module | Response;

type Imports = Record<string, Record<string, (...values: never[]) => unknown>>;

async function bytesAt(url: URL): Promise<BufferSource | Response> {
  if (url.protocol !== "file:" || typeof process === "undefined") return fetch(url);
  // Out of the sight of bundlers for browsers, which have no such module.
  const files = ["node:fs", "promises"].join("/");
  const { readFile } = (await import(files)) as {
    readFile(url: URL): Promise<Uint8Array<ArrayBuffer>>;
  };
  return readFile(url);
}

declare const process: unknown;

export async function instantiate(source: Source, imports: Imports): Promise<WebAssembly.Instance> {
  let from: BufferSource | Response | WebAssembly.Module =
    typeof source === "string" || source instanceof URL ? await bytesAt(new URL(source)) : source;
  if (typeof Response !== "undefined" && from instanceof Response) {
    if (!from.ok) throw new NuvError({ code: "js.load", message: `cannot load ${from.url}: ${from.status}` });
    from = await from.arrayBuffer();
  }
  const module = from instanceof WebAssembly.Module ? from : await WebAssembly.compile(from as BufferSource);
  return WebAssembly.instantiate(module, imports as WebAssembly.Imports);
}

/** The bytes of a program that stands compressed in the source text of a module. */
export async function unpack(base64: string): Promise<ArrayBuffer> {
  const packed = Uint8Array.from(atob(base64), (character) => character.charCodeAt(0));
  const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream("gzip"));
  return new Response(stream).arrayBuffer();
}
