/**
 * The core: many small dense linear programs
 *
 *     maximise c.x   subject to   A x <= b,   x >= 0
 *
 * in single precision, with the same bits as everywhere else. One `await` loads it; all else is
 * synchronous.
 */
import { NuvError, wrong } from "./error.js";
import { instantiate, type Source } from "./program.js";

export { NuvError, type Diagnostic } from "./error.js";
export type { Source } from "./program.js";

export type Verdict = "optimal" | "unbounded" | "infeasible" | "stopped";

/** Programs of one shape. An array of the length of one program is shared by all. */
export interface Batch {
  rows: number;
  columns: number;
  /** How many programs; 1 if it is not said. */
  count?: number;
  /** rows x columns numbers, row after row, for one program or for each. */
  A: ArrayLike<number>;
  b: ArrayLike<number>;
  c: ArrayLike<number>;
  /** A program that wants more pivots is given up; 100 x (rows + columns) if it is not said. */
  pivotLimit?: number;
}

export interface BatchAnswers {
  verdicts: Verdict[];
  objectives: Float32Array;
  /** [count x columns] */
  values: Float32Array;
  /** [count x rows] what one more unit of each right-hand side is worth. */
  prices: Float32Array;
  /** [count x rows] the basic column of each row, from 1, those of the slacks behind the others. */
  bases: Uint32Array;
  pivots: Uint32Array;
}

export interface CoreAnswer {
  verdict: Verdict;
  /** Infinity of an unbounded program, NaN where there is no optimum. */
  objective: number;
  values: Float32Array;
  prices: Float32Array;
  pivots: number;
}

interface Exports {
  memory: WebAssembly.Memory;
  __heap_base: WebAssembly.Global;
  workspaceSize(rows: number, columns: number, count: number): number;
  solve(...values: number[]): number;
}

const VERDICTS: readonly (Verdict | undefined)[] = ["optimal", undefined, "unbounded", "infeasible", "stopped"];
const PAGE = 65536;
const ALIGNMENT = 64;

/** Where the arrays of a batch lie in the memory; the same for all batches of one shape. */
interface Layout {
  m: number;
  n: number;
  count: number;
  lengths: readonly [number, number, number];
  strides: readonly [number, number, number];
  data: readonly [number, number, number];
  verdicts: number;
  objectives: number;
  values: number;
  pivots: number;
  bases: number;
  prices: number;
  workspace: number;
}

/** The loaded core. Its memory is as large as the largest batch wanted. */
export class Core {
  readonly #exports: Exports;
  readonly #begin: number;
  // Of the whole memory: views of parts would cost more than solving a small program.
  #floats = new Float32Array();
  #words = new Uint32Array();
  #last: Layout | undefined;

  /** @internal */
  constructor(exports: Exports) {
    this.#exports = exports;
    this.#begin = exports.__heap_base.value as number;
  }

  /** How many bytes the program has taken from the host so far. */
  get memory(): number {
    return this.#exports.memory.buffer.byteLength;
  }

  /** Solves one program. */
  solve(program: Omit<Batch, "count">): CoreAnswer {
    const at = this.#run(program, 1);
    const verdict = VERDICTS[this.#words[at.verdicts]!]!;
    const objective =
      verdict === "optimal" ? this.#floats[at.objectives]! : verdict === "unbounded" ? Infinity : NaN;
    return {
      verdict,
      objective,
      values: this.#floats.slice(at.values, at.values + at.n),
      prices: this.#floats.slice(at.prices, at.prices + at.m),
      pivots: this.#words[at.pivots]!,
    };
  }

  /** Solves all programs of a batch. */
  solveBatch(batch: Batch): BatchAnswers {
    const at = this.#run(batch, batch.count ?? 1);
    const { m, n, count } = at;
    const verdicts = this.#words.subarray(at.verdicts, at.verdicts + count);
    return {
      verdicts: Array.from(verdicts, (verdict) => VERDICTS[verdict]!),
      objectives: this.#floats.slice(at.objectives, at.objectives + count),
      values: this.#floats.slice(at.values, at.values + count * n),
      pivots: this.#words.slice(at.pivots, at.pivots + count),
      bases: this.#words.slice(at.bases, at.bases + count * m),
      prices: this.#floats.slice(at.prices, at.prices + count * m),
    };
  }

  /** Solves, and leaves the answers in the memory. @return where, in words. */
  #run({ rows, columns, A, b, c, pivotLimit = 0 }: Batch, count: number): Layout {
    let layout = this.#last;
    if (
      layout?.m !== rows || layout.n !== columns || layout.count !== count ||
      layout.lengths[0] !== A.length || layout.lengths[1] !== b.length || layout.lengths[2] !== c.length
    )
      layout = this.#last = this.#place(rows, columns, count, [A.length, b.length, c.length]);
    const { strides, data } = layout;
    this.#floats.set(A, data[0]);
    this.#floats.set(b, data[1]);
    this.#floats.set(c, data[2]);
    const solved = this.#exports.solve(
      rows, columns, count, 4 * data[0], strides[0], 4 * data[1], strides[1], 4 * data[2], strides[2], pivotLimit,
      4 * layout.verdicts, 4 * layout.objectives, 4 * layout.values, 4 * layout.pivots, 4 * layout.bases,
      4 * layout.prices, 4 * layout.workspace,
    );
    if (!solved) throw wrong(`a program of ${rows} x ${columns} cannot be solved`);
    return layout;
  }

  #place(m: number, n: number, count: number, lengths: [number, number, number]): Layout {
    checkSize("rows", m);
    checkSize("columns", n);
    checkSize("count", count);
    const strides = [
      stride("A", lengths[0], m * n, count),
      stride("b", lengths[1], m, count),
      stride("c", lengths[2], n, count),
    ] as const;
    const workspaceSize = this.#exports.workspaceSize(m, n, count);
    if (workspaceSize === 0) throw wrong(`a program of ${m} x ${n} is too large for the core`);
    let end = this.#begin;
    const take = (words: number) => {
      const at = Math.ceil(end / ALIGNMENT) * ALIGNMENT;
      end = at + 4 * words;
      return at / 4;
    };
    const layout = {
      m, n, count, lengths, strides,
      data: [take(lengths[0]), take(lengths[1]), take(lengths[2])] as const,
      verdicts: take(count),
      objectives: take(count),
      values: take(count * n),
      pivots: take(count),
      bases: take(count * m),
      prices: take(count * m),
      workspace: take(0),
    };
    this.#grow(4 * layout.workspace + workspaceSize);
    return layout;
  }

  #grow(end: number): void {
    const { memory } = this.#exports;
    const missing = end - memory.buffer.byteLength;
    try {
      if (missing > 0) memory.grow(Math.ceil(missing / PAGE));
    } catch {
      throw new NuvError({ code: "js.memory", message: `there is no room for ${end} bytes` });
    }
    if (this.#floats.buffer === memory.buffer) return;
    this.#floats = new Float32Array(memory.buffer);
    this.#words = new Uint32Array(memory.buffer);
  }
}

function checkSize(name: string, size: number): void {
  if (!Number.isInteger(size) || size < 1) throw wrong(`${name} is ${size}, and has to be at least 1`);
}

function stride(name: string, length: number, one: number, count: number): number {
  if (length === one) return 0;
  if (length === one * count) return one;
  throw wrong(`${name} has ${length} numbers, and has to have ${one} or ${one * count}`);
}

/** Loads the core. */
export async function load(source: Source = new URL("./nuv.wasm", import.meta.url)): Promise<Core> {
  const instance = await instantiate(source, {});
  return new Core(instance.exports as unknown as Exports);
}
