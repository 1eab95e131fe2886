// The self-test as a program for WebAssembly, for node and for browsers.
export async function openSelfTest(bytes) {
  const { instance } = await WebAssembly.instantiate(bytes, {});
  const program = instance.exports;
  const hex = (hash) => BigInt.asUintN(64, hash).toString(16).padStart(16, "0");
  const text = (at) => {
    const memory = new Uint8Array(program.memory.buffer);
    return new TextDecoder().decode(memory.subarray(at, memory.indexOf(0, at)));
  };
  return {
    has: (loops) => program.has(loops) !== 0,
    families: Array.from({ length: program.families() }, (_, family) => ({
      name: text(program.nameOf(family)),
      models: program.models(family),
      promised: hex(program.promised(family)),
      run: (loops) => hex(program.run(family, loops)),
    })),
  };
}
