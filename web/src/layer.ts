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

/** What the program exports; see native/Proof.cpp. */
export interface ProofExports {
  memory: WebAssembly.Memory;
  __stack_pointer: WebAssembly.Global;
  __wasm_call_ctors(): void;
  allocate(size: number): Pointer;
  free(at: Pointer): void;
  makeDiagnostics(): Pointer;
  diagnosticCount(diagnostics: Pointer): number;
  diagnostic(diagnostics: Pointer, index: number, out: Pointer): void;
  textData(text: Pointer): Pointer;
  textSize(text: Pointer): number;
  freeText(text: Pointer): void;
  makeModel(): Pointer;
  freeModel(model: Pointer): void;
  read(model: Pointer, text: Pointer, size: number, relax: number, diagnostics: Pointer): number;
  assign(
    model: Pointer, isMaximised: number, columns: number, rows: number, numbers: Pointer, starts: Pointer,
    indices: Pointer, values: Pointer, columnNames: Pointer, rowNames: Pointer,
  ): void;
  setExact(model: Pointer, place: number, at: number, column: number, text: Pointer, diagnostics: Pointer): number;
  check(model: Pointer, diagnostics: Pointer): number;
  names(model: Pointer, areRows: number): Pointer;
  arrays(model: Pointer, constant: Pointer, out: Pointer): void;
  solve(model: Pointer, flags: number, seconds: number, pivots: number, diagnostics: Pointer): Pointer;
  freeSolution(solution: Pointer): void;
  info(solution: Pointer, out: Pointer, arrays: Pointer): void;
  exact(solution: Pointer, kind: number): Pointer;
  certificate(solution: Pointer): Pointer;
  pathLength(solution: Pointer): number;
  pathStep(solution: Pointer, index: number, out: Pointer): number;
}

const NO_MEMORY = 3;
const INTERNAL = 10;
const SEVERITIES = ["error", "warning", "note"] as const;
const SCRATCH = 4096;
const ASCII = /^[\0-\x7f]*$/;

export class Layer<Exports extends ProofExports = ProofExports> {
  readonly exports: Exports;
  /** Bytes for what a call writes. */
  readonly scratch: Pointer;
  readonly diagnostics: Pointer;
  readonly #decoder = new TextDecoder();
  readonly #encoder = new TextEncoder();
  /** Of the whole memory as it is now; a view of a part costs more than what is done with it. */
  #floats = new Float64Array();
  #words = new Uint32Array();
  #bytes = new Uint8Array();
  #progress: Host["progress"] | undefined;
  #thrown: unknown;
  #defect: NuvError | undefined;

  constructor(exports: Exports) {
    this.exports = exports;
    exports.__wasm_call_ctors();
    this.scratch = exports.allocate(SCRATCH);
    this.diagnostics = exports.makeDiagnostics();
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
    const bytes = this.memoryBytes;
    return this.#decoder.decode(bytes.subarray(at, size === undefined ? bytes.indexOf(0, at) : at + size));
  }

  writeAscii(at: Pointer, text: string): number {
    const bytes = this.memoryBytes;
    for (let k = 0; k < text.length; ++k) bytes[at + k] = text.charCodeAt(k);
    return text.length;
  }

  /** The memory, until the next call that may take more of it. */
  get memoryBytes(): Uint8Array {
    if (this.#bytes.buffer !== this.exports.memory.buffer) this.#view();
    return this.#bytes;
  }

  get memoryWords(): Uint32Array {
    if (this.#bytes.buffer !== this.exports.memory.buffer) this.#view();
    return this.#words;
  }

  get memoryFloats(): Float64Array {
    if (this.#bytes.buffer !== this.exports.memory.buffer) this.#view();
    return this.#floats;
  }

  #view(): void {
    const { buffer } = this.exports.memory;
    this.#bytes = new Uint8Array(buffer);
    this.#words = new Uint32Array(buffer);
    this.#floats = new Float64Array(buffer);
  }

  /** Copies of what stands at an address. */
  floats(at: Pointer, length: number): Float64Array {
    return this.memoryFloats.slice(at / 8, at / 8 + length);
  }

  words(at: Pointer, length: number): Uint32Array {
    return this.memoryWords.slice(at / 4, at / 4 + length);
  }

  word(at: Pointer): number {
    return this.memoryWords[at / 4]!;
  }

  /** The text whose handle `make` returns, which is given back; undefined where that is 0. */
  madeText(make: () => Pointer): string | undefined {
    const { exports } = this;
    const text = this.call(make);
    if (text === 0) return undefined;
    const taken = this.textAt(exports.textData(text), exports.textSize(text));
    exports.freeText(text);
    return taken;
  }

  /** The same of texts that end with a NUL each. */
  madeTexts(make: () => Pointer): string[] | undefined {
    return this.madeText(make)?.slice(0, -1).split("\0");
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
    const bytes = this.encoded(text);
    return this.lend([bytes.length + 1], (at) => {
      bytes.put(at!);
      this.memoryBytes[at! + bytes.length] = 0;
      return use(at!, bytes.length);
    });
  }

  /** A text as bytes that can be put at an address; most are ASCII and need none of their own. */
  encoded(text: string): { length: number; put(at: Pointer): void } {
    if (ASCII.test(text)) return { length: text.length, put: (at) => void this.writeAscii(at, text) };
    const bytes = this.#encoder.encode(text);
    return { length: bytes.length, put: (at) => this.memoryBytes.set(bytes, at) };
  }

  /** What the last call had to say. */
  told(): Diagnostic[] {
    const count = this.exports.diagnosticCount(this.diagnostics);
    return Array.from({ length: count }, (_, index) => {
      this.exports.diagnostic(this.diagnostics, index, this.scratch);
      const [severity, line, column, code, message, hint, excerpt] = this.words(this.scratch, 7);
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
