// A model in the program's memory.
import { NuvError, wrong, type Diagnostic } from "./error.js";
import type { Layer } from "./layer.js";
import { ObjectReader, type ExactPlace, type ModelObject } from "./object.js";

/** A model as numbers, by rows: row k has the entries starts[k] to starts[k + 1]. */
export interface ModelArrays {
  isMaximised: boolean;
  constant: number;
  columns: readonly string[];
  rows: readonly string[];
  costs: Float64Array;
  lower: Float64Array;
  upper: Float64Array;
  rowLower: Float64Array;
  rowUpper: Float64Array;
  starts: Uint32Array;
  indices: Uint32Array;
  values: Float64Array;
}

// What nobody gave back goes with the object that had it.
const forgotten = new FinalizationRegistry<() => void>((giveBack) => giveBack());

/** A linear program that can be solved many times. Give it back with `dispose()` or `using`. */
export class Model implements Disposable {
  /** The names of the variables and rows, in order. */
  readonly columns: readonly string[];
  readonly rows: readonly string[];
  /** What its text's reader had to say: warnings and notes. */
  readonly diagnostics: readonly Diagnostic[];
  readonly #layer: Layer;
  #handle: number;

  private constructor(
    layer: Layer,
    handle: number,
    diagnostics: readonly Diagnostic[],
    names?: { columns: string[]; rows: string[] },
  ) {
    this.#layer = layer;
    this.#handle = handle;
    this.diagnostics = diagnostics;
    const { exports } = layer;
    this.columns =
      names?.columns ?? split(layer.madeText((out) => exports.NuvModelMakeColumnNames(handle, out)));
    this.rows = names?.rows ?? split(layer.madeText((out) => exports.NuvModelMakeRowNames(handle, out)));
    forgotten.register(this, () => exports.NuvModelDestruct(handle), this);
  }

  /** @internal A text in LP or MPS format. */
  static read(layer: Layer, text: string, relax: boolean): Model {
    return Model.#make(layer, (handle) => {
      const ok = layer.lendText(text, (at, size) =>
        layer.exports.read(handle, at, size, relax ? 1 : 0, layer.diagnostics),
      );
      if (!ok) throw layer.refusal();
      return new Model(layer, handle, layer.told());
    });
  }

  /** @internal */
  static state(layer: Layer, object: ModelObject): Model {
    const read = new ObjectReader(object);
    return Model.#make(layer, (handle) => {
      assign(layer, handle, read);
      for (const exact of read.exact) setExact(layer, handle, exact);
      return new Model(layer, handle, [], { columns: [...read.columns.keys()], rows: read.rows });
    });
  }

  /** @internal A model that the program has made. */
  static adopt(layer: Layer, handle: number): Model {
    return new Model(layer, handle, []);
  }

  static #make(layer: Layer, fill: (handle: number) => Model): Model {
    const handle = layer.made(layer.call(() => layer.exports.NuvModelConstruct()));
    try {
      return fill(handle);
    } catch (error) {
      layer.exports.NuvModelDestruct(handle);
      throw error;
    }
  }

  /** @internal */
  get handle(): number {
    if (this.#handle === 0) throw wrong("the model was disposed of");
    return this.#handle;
  }

  /** The model as arrays, copied. */
  arrays(): ModelArrays {
    const layer = this.#layer;
    layer.call(() => layer.exports.arrays(this.handle, layer.scratch, layer.scratch + 8));
    const [sense, columns, rows, entries, ...at] = layer.words(layer.scratch + 8, 12).slice() as unknown as number[];
    const floats = (k: number, length: number) => layer.floats(at[k]!, length).slice();
    const starts = new BigUint64Array(layer.exports.memory.buffer, at[5], rows! + 1);
    return {
      isMaximised: sense === 1,
      constant: layer.floats(layer.scratch, 1)[0]!,
      columns: this.columns,
      rows: this.rows,
      costs: floats(0, columns!),
      lower: floats(1, columns!),
      upper: floats(2, columns!),
      rowLower: floats(3, rows!),
      rowUpper: floats(4, rows!),
      starts: Uint32Array.from(starts, Number),
      indices: layer.words(at[6]!, entries!).slice(),
      values: floats(7, entries!),
    };
  }

  /** The model in LP format. */
  toLp(): string {
    const { exports, diagnostics } = this.#layer;
    let text = 0;
    const written = this.#layer.madeText((out) => {
      text = exports.writeLp(this.handle, diagnostics);
      this.#layer.words(out, 1)[0] = text;
      return text === 0 ? 1 : 0;
    });
    if (written === undefined) throw this.#layer.refusal();
    return written;
  }

  /** Checks, without solving, that a certificate proves what it claims of this model. @return what. */
  verify(certificate: string): "optimal" | "infeasible" | "unbounded" {
    const { exports, diagnostics } = this.#layer;
    const status = this.#layer.lendText(certificate, (at, size) =>
      exports.verify(this.handle, at, size, 0, diagnostics),
    );
    const proved = (["optimal", "infeasible", "unbounded"] as const)[status];
    if (!proved) throw new NuvError({ code: "js.defect", message: `unknown status ${status}` });
    return proved;
  }

  dispose(): void {
    if (this.#handle === 0) return;
    forgotten.unregister(this);
    this.#layer.exports.NuvModelDestruct(this.#handle);
    this.#handle = 0;
  }

  [Symbol.dispose](): void {
    this.dispose();
  }
}

function split(names: string | undefined): string[] {
  return names ? names.slice(0, -1).split("\0") : [];
}

function assign(layer: Layer, handle: number, read: ObjectReader): void {
  const numbers = [
    read.constant, ...read.costs, ...read.lower, ...read.upper, ...read.rowLower, ...read.rowUpper,
  ];
  const columnNames = layer.encode([...read.columns.keys(), ""].join("\0"));
  const rowNames = layer.encode([...read.rows, ""].join("\0"));
  const entries = read.values.length;
  const sizes = [
    8 * numbers.length, 8 * read.starts.length, 8 * entries, 4 * entries, columnNames.length, rowNames.length,
  ];
  const result = layer.lend(sizes, (numbersAt, startsAt, valuesAt, indicesAt, columnNamesAt, rowNamesAt) => {
    layer.floats(numbersAt!, numbers.length).set(numbers);
    const starts = new BigUint64Array(layer.exports.memory.buffer, startsAt, read.starts.length);
    read.starts.forEach((start, k) => (starts[k] = BigInt(start)));
    layer.floats(valuesAt!, entries).set(read.values);
    layer.words(indicesAt!, entries).set(read.indices);
    layer.bytes(columnNamesAt!, columnNames.length).set(columnNames);
    layer.bytes(rowNamesAt!, rowNames.length).set(rowNames);
    return layer.exports.assign(
      handle, read.isMaximised ? 1 : 0, read.columns.size, read.rows.length, numbersAt!, startsAt!, indicesAt!,
      valuesAt!, columnNamesAt!, columnNames.length, rowNamesAt!, rowNames.length, layer.diagnostics,
    );
  });
  if (result !== 0) throw layer.refusal();
}

function setExact(layer: Layer, handle: number, { place, at, column, text }: ExactPlace): void {
  const result = layer.lendText(text, (textAt) =>
    layer.exports.NuvModelSetExact(handle, place, at, column, textAt, layer.diagnostics),
  );
  if (result !== 0) throw layer.refusal();
}
