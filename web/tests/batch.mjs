// A batch of seeded programs and a hash of all its answers' bits.

/** xorshift32: whole numbers of 32 bits, the same everywhere. */
function random(seed) {
  let state = seed;
  return () => {
    state ^= state << 13;
    state ^= state >>> 17;
    state ^= state << 5;
    return state >>> 0;
  };
}

function add(hash, bytes) {
  for (const byte of bytes) hash = Math.imul(hash ^ byte, 0x01000193);
  return hash;
}

/** FNV-1a over verdicts, objectives, values, pivots, bases and prices of 300 programs of 5 shapes. */
export function batchHash(core) {
  let hash = 0x811c9dc5;
  const shapes = [[2, 2], [5, 3], [8, 8], [12, 20], [40, 30]];
  for (const [index, [rows, columns]] of shapes.entries()) {
    const next = random(2026 + index);
    const numbers = (length, least) => Float32Array.from({ length }, () => (next() % 1000) / 8 + least);
    const count = 60;
    const all = core.solveBatch({
      rows,
      columns,
      count,
      A: numbers(count * rows * columns, -30),
      b: numbers(count * rows, -2),
      c: numbers(columns, -20),
    });
    const verdicts = Uint8Array.from(all.verdicts, (verdict) => verdict.charCodeAt(0));
    for (const array of [verdicts, all.objectives, all.values, all.pivots, all.bases, all.prices])
      hash = add(hash, new Uint8Array(array.buffer, array.byteOffset, array.byteLength));
  }
  return (hash >>> 0).toString(16).padStart(8, "0");
}
