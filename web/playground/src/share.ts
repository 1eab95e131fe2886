// The model in the address of the page.
const PREFIX = "#m=";

async function through(bytes: BlobPart, stream: ReadableWritablePair<Uint8Array<ArrayBuffer>, BufferSource>): Promise<Uint8Array<ArrayBuffer>> {
  return new Uint8Array(await new Response(new Blob([bytes]).stream().pipeThrough(stream)).arrayBuffer());
}

export async function addressOf(text: string): Promise<string> {
  const packed = await through(text, new CompressionStream("deflate-raw"));
  let characters = "";
  for (const byte of packed) characters += String.fromCharCode(byte);
  const base64 = btoa(characters).replaceAll("+", "-").replaceAll("/", "_").replaceAll("=", "");
  return `${location.href.split("#")[0]}${PREFIX}${base64}`;
}

/** The text in an address; undefined where there is none, or none that can be read. */
export async function textIn(hash: string): Promise<string | undefined> {
  if (!hash.startsWith(PREFIX)) return undefined;
  try {
    const characters = atob(hash.slice(PREFIX.length).replaceAll("-", "+").replaceAll("_", "/"));
    const packed = Uint8Array.from(characters, (character) => character.charCodeAt(0));
    return new TextDecoder().decode(await through(packed, new DecompressionStream("deflate-raw")));
  } catch {
    return undefined;
  }
}
