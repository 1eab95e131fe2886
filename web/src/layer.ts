// The model layer's program: its calls, its memory, and how it fails.
import { NuvError, wrong, type Diagnostic } from "./error.js";

type Pointer = number;

/** What the program asks of JavaScript. */
export interface Host extends Record<string, (...values: never[]) => unknown> {
  seconds(): number;
  write(value: number, text: Pointer): number;
  read(text: Pointer, size: number): number;
  progress(stage: number, pivots: number, seconds: number, objective: number, feasible: number): number;
  fail(reason: number, code: Pointer, text: Pointer, hint: Pointer): never;
}

/** What the program exports; see native/Proof.cpp and NuvModel.h. */
export interface ProofExports {
  memory: WebAssembly.Memory;
  __stack_pointer: WebAssembly.Global;
  __wasm_call_ctors(): void;
  allocate(size: number): Pointer;
  free(at: Pointer): void;
  read(model: Pointer, text: Pointer, size: number, relax: number, diagnostics: Pointer): number;
  assign(
    model: Pointer, sense: number, columns: number, rows: number, numbers: Pointer, starts: Pointer,
    indices: Pointer, values: Pointer, columnNames: Pointer, columnNamesSize: number, rowNames: Pointer,
    rowNamesSize: number, diagnostics: Pointer,
  ): number;
  diagnostic(diagnostics: Pointer, index: number, out: Pointer): void;
  arrays(model: Pointer, constant: Pointer, out: Pointer): void;
  writeLp(model: Pointer, diagnostics: Pointer): Pointer;
  verify(model: Pointer, certificate: Pointer, size: number, numbers: number, diagnostics: Pointer): number;
  solve(model: Pointer, session: Pointer, flags: number, seconds: number, pivots: number, diagnostics: Pointer): Pointer;
  info(solution: Pointer, out: Pointer): void;
  hasExact(solution: Pointer, kind: number): number;
  hasProof(solution: Pointer): number;
  pathLength(solution: Pointer): number;
  pathStep(solution: Pointer, index: number, out: Pointer): number;
  repair(
    model: Pointer, columnWeights: Pointer, rowWeights: Pointer, flags: number, seconds: number, pivots: number,
    diagnostics: Pointer,
  ): Pointer;
  repairInfo(repair: Pointer, out: Pointer): void;
  repairChange(repair: Pointer, index: number, out: Pointer): void;
  NuvModelConstruct(): Pointer;
  NuvModelDestruct(model: Pointer): void;
  NuvModelSetExact(model: Pointer, place: number, at: number, column: number, text: Pointer, diagnostics: Pointer): number;
  NuvModelMakeColumnNames(model: Pointer, text: Pointer): number;
  NuvModelMakeRowNames(model: Pointer, text: Pointer): number;
  NuvDiagnosticsConstruct(): Pointer;
  NuvDiagnosticsGetCount(diagnostics: Pointer): number;
  NuvTextGetData(text: Pointer): Pointer;
  NuvTextGetSize(text: Pointer): bigint;
  NuvTextDestruct(text: Pointer): void;
  NuvSolverConstruct(): Pointer;
  NuvSolverDestruct(session: Pointer): void;
  NuvSolutionDestruct(solution: Pointer): void;
  NuvSolutionGetValues(solution: Pointer, count: Pointer): Pointer;
  NuvSolutionGetReducedCosts(solution: Pointer, count: Pointer): Pointer;
  NuvSolutionGetActivities(solution: Pointer, count: Pointer): Pointer;
  NuvSolutionGetSlacks(solution: Pointer, count: Pointer): Pointer;
  NuvSolutionGetDuals(solution: Pointer, count: Pointer): Pointer;
  NuvSolutionGetRay(solution: Pointer, count: Pointer): Pointer;
  NuvSolutionGetFarkas(solution: Pointer, count: Pointer): Pointer;
  NuvSolutionGetCostRanges(solution: Pointer, count: Pointer): Pointer;
  NuvSolutionGetRowLowerRanges(solution: Pointer, count: Pointer): Pointer;
  NuvSolutionGetRowUpperRanges(solution: Pointer, count: Pointer): Pointer;
  NuvSolutionGetColumnBasis(solution: Pointer, count: Pointer): Pointer;
  NuvSolutionGetRowBasis(solution: Pointer, count: Pointer): Pointer;
  NuvSolutionGetIis(solution: Pointer, count: Pointer): Pointer;
  NuvSolutionMakeExact(solution: Pointer, kind: number, text: Pointer): number;
  NuvSolutionMakeCertificate(solution: Pointer, text: Pointer): number;
  NuvRepairDestruct(repair: Pointer): void;
  NuvRepairGetExact(repair: Pointer, change: number, buffer: Pointer, size: bigint): bigint;
  NuvRepairMakeModel(repair: Pointer, model: Pointer): number;
}

const NO_MEMORY = 3;
const INTERNAL = 10;
const SEVERITIES = ["error", "warning", "note"] as const;
const SCRATCH = 4096;

export class Layer {
  readonly exports: ProofExports;
  /** Bytes for what a call writes. */
  readonly scratch: Pointer;
  readonly diagnostics: Pointer;
  readonly #decoder = new TextDecoder();
  readonly #encoder = new TextEncoder();
  #progress: Host["progress"] | undefined;
  #thrown: unknown;
  #defect: NuvError | undefined;

  constructor(exports: ProofExports) {
    this.exports = exports;
    exports.__wasm_call_ctors();
    this.scratch = exports.allocate(SCRATCH);
    this.diagnostics = exports.NuvDiagnosticsConstruct();
  }

  /** Runs a call that may fail in the middle, and puts the program's stack back if it does. */
  call<Result>(run: () => Result): Result {
    if (this.#defect) throw this.#defect;
    const stack = this.exports.__stack_pointer;
    const before = stack.value as unknown;
    try {
      return run();
    } catch (error) {
      stack.value = before as number;
      if (!(error instanceof WebAssembly.RuntimeError || error instanceof RangeError)) throw error;
      this.#defect = broken("js.defect", `the program has stopped: ${error.message}`);
      throw this.#defect;
    }
  }

  /** Solves while `progress` is told; what that throws is thrown once the solve has ended. */
  watch<Result>(progress: Host["progress"] | undefined, run: () => Result): Result {
    this.#progress = progress;
    this.#thrown = undefined;
    try {
      return this.call(run);
    } finally {
      this.#progress = undefined;
      if (this.#thrown !== undefined) throw this.#thrown;
    }
  }

  progress(...told: Parameters<Host["progress"]>): number {
    try {
      return this.#progress?.(...told) ?? 1;
    } catch (error) {
      this.#thrown = error;
      return 0;
    }
  }

  fail(reason: number, code: Pointer, text: Pointer, hint: Pointer): never {
    if (reason !== NO_MEMORY && reason !== INTERNAL)
      throw new NuvError({ code: this.textAt(code), message: this.textAt(text), hint: this.textAt(hint) });
    this.#defect =
      reason === NO_MEMORY ? broken("js.memory", "there is not enough memory") : broken("js.defect", "a defect");
    throw this.#defect;
  }

  made(handle: Pointer): Pointer {
    if (handle === 0) throw broken("js.memory", "there is not enough memory");
    return handle;
  }

  textAt(at: Pointer, size?: number): string {
    const bytes = new Uint8Array(this.exports.memory.buffer);
    return this.#decoder.decode(bytes.subarray(at, size === undefined ? bytes.indexOf(0, at) : at + size));
  }

  writeAscii(at: Pointer, text: string): number {
    const bytes = new Uint8Array(this.exports.memory.buffer, at, text.length);
    for (let k = 0; k < text.length; ++k) bytes[k] = text.charCodeAt(k);
    return text.length;
  }

  floats(at: Pointer, length: number): Float64Array {
    return new Float64Array(this.exports.memory.buffer, at, length);
  }

  words(at: Pointer, length: number): Uint32Array {
    return new Uint32Array(this.exports.memory.buffer, at, length);
  }

  bytes(at: Pointer, length: number): Uint8Array {
    return new Uint8Array(this.exports.memory.buffer, at, length);
  }

  /** A copy of an array that a solution holds; empty where it has none. */
  array(get: (solution: Pointer, count: Pointer) => Pointer, solution: Pointer): Float64Array {
    const at = get(solution, this.scratch);
    return this.floats(at, this.words(this.scratch, 1)[0]!).slice();
  }

  /** The text that `make` writes the handle of, which is given back; undefined where there is none. */
  madeText(make: (out: Pointer) => number): string | undefined {
    const text = this.call(() => (make(this.scratch) === 0 ? this.words(this.scratch, 1)[0]! : 0));
    if (text === 0) return undefined;
    const taken = this.textAt(this.exports.NuvTextGetData(text), Number(this.exports.NuvTextGetSize(text)));
    this.exports.NuvTextDestruct(text);
    return taken;
  }

  /** Gives a call memory of its own, filled by `fill`, and takes it back. */
  lend<Result>(sizes: readonly number[], use: (...at: Pointer[]) => Result): Result {
    const total = sizes.reduce((sum, size) => sum + ((size + 7) & ~7), 8);
    const block = this.call(() => this.exports.allocate(total));
    try {
      let at = block;
      const places = sizes.map((size) => {
        const place = at;
        at += (size + 7) & ~7;
        return place;
      });
      return this.call(() => use(...places));
    } finally {
      this.exports.free(block);
    }
  }

  /** Gives a call a text, ended by a NUL. */
  lendText<Result>(text: string, use: (at: Pointer, size: number) => Result): Result {
    const bytes = this.#encoder.encode(text);
    return this.lend([bytes.length + 1], (at) => {
      const room = this.bytes(at, bytes.length + 1);
      room.set(bytes);
      room[bytes.length] = 0;
      return use(at, bytes.length);
    });
  }

  encode(text: string): Uint8Array {
    return this.#encoder.encode(text);
  }

  /** What the last call had to say. */
  told(): Diagnostic[] {
    const count = this.exports.NuvDiagnosticsGetCount(this.diagnostics);
    return Array.from({ length: count }, (_, index) => {
      this.exports.diagnostic(this.diagnostics, index, this.scratch);
      const [severity, line, column, code, message, hint, excerpt] = this.words(this.scratch, 7).slice();
      return {
        severity: SEVERITIES[severity!]!,
        line: line!,
        column: column!,
        code: this.textAt(code!),
        message: this.textAt(message!),
        hint: this.textAt(hint!),
        excerpt: this.textAt(excerpt!),
      };
    });
  }

  /** The first error of what was told, as an exception. */
  refusal(): NuvError {
    const told = this.told();
    const first = told.find(({ severity }) => severity === "error");
    return first ? new NuvError(first, told) : wrong("the program refused what it was given");
  }
}

function broken(code: string, message: string): NuvError {
  return new NuvError({ code, message, hint: "load the module again" });
}
