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

/** The loaded core. Its memory is as large as the largest batch wanted. */
export class Core {
  readonly #exports: Exports;
  #end = 0;

  /** @internal */
  constructor(exports: Exports) {
    this.#exports = exports;
  }

  /** How many bytes the program has taken from the host so far. */
  get memory(): number {
    return this.#exports.memory.buffer.byteLength;
  }

  /** Solves one program. */
  solve(program: Omit<Batch, "count">): CoreAnswer {
    const all = this.solveBatch(program);
    const verdict = all.verdicts[0]!;
    const objective = verdict === "optimal" ? all.objectives[0]! : verdict === "unbounded" ? Infinity : NaN;
    return { verdict, objective, values: all.values, prices: all.prices, pivots: all.pivots[0]! };
  }

  /** Solves all programs of a batch. */
  solveBatch(batch: Batch): BatchAnswers {
    const { rows: m, columns: n, count = 1 } = batch;
    for (const [name, size] of Object.entries({ rows: m, columns: n, count }))
      if (!Number.isInteger(size) || size < 1) throw wrong(`${name} is ${size}, and has to be at least 1`);
    const strides = [
      stride("A", batch.A.length, m * n, count),
      stride("b", batch.b.length, m, count),
      stride("c", batch.c.length, n, count),
    ];
    const workspaceSize = this.#exports.workspaceSize(m, n, count);
    if (workspaceSize === 0) throw wrong(`a program of ${m} x ${n} is too large for the core`);
    this.#end = this.#exports.__heap_base.value as number;
    const data = [batch.A, batch.b, batch.c].map((numbers) => this.#take(4 * numbers.length));
    const room = [count, count, count * n, count, count * m, count * m].map((length) => this.#take(4 * length));
    const workspace = this.#take(workspaceSize);
    this.#grow();
    [batch.A, batch.b, batch.c].forEach((numbers, k) => {
      new Float32Array(this.#exports.memory.buffer, data[k], numbers.length).set(numbers);
    });
    const places = data.flatMap((place, k) => [place, strides[k]!]);
    const limit = batch.pivotLimit ?? 0;
    if (!this.#exports.solve(m, n, count, ...places, limit, ...room, workspace))
      throw wrong(`a program of ${m} x ${n} cannot be solved`);
    const floats = (k: number, length: number) =>
      new Float32Array(this.#exports.memory.buffer, room[k], length).slice();
    const numbers = (k: number, length: number) => new Uint32Array(this.#exports.memory.buffer, room[k], length).slice();
    return {
      verdicts: Array.from(numbers(0, count), (verdict) => VERDICTS[verdict]!),
      objectives: floats(1, count),
      values: floats(2, count * n),
      pivots: numbers(3, count),
      bases: numbers(4, count * m),
      prices: floats(5, count * m),
    };
  }

  #take(size: number): number {
    const at = Math.ceil(this.#end / ALIGNMENT) * ALIGNMENT;
    this.#end = at + size;
    return at;
  }

  #grow(): void {
    const { memory } = this.#exports;
    const missing = this.#end - memory.buffer.byteLength;
    if (missing <= 0) return;
    try {
      memory.grow(Math.ceil(missing / PAGE));
    } catch {
      throw new NuvError({ code: "js.memory", message: `there is no room for ${this.#end} bytes` });
    }
  }
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
