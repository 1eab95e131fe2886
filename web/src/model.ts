// A model in the program's memory.
import { wrong, type Diagnostic } from "./error.js";
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

// What nobody gave back goes with the object that had it. A model that lives for one call alone is given
// back by that call, and not noted.
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
    isNoted = true,
  ) {
    this.#layer = layer;
    this.#handle = handle;
    this.diagnostics = diagnostics;
    const { exports } = layer;
    this.columns =
      names?.columns ?? namesOf(layer, handle, 0);
    this.rows = names?.rows ?? namesOf(layer, handle, 1);
    if (isNoted) forgotten.register(this, () => exports.freeModel(handle), this);
  }

  /** @internal A text in LP or MPS format. */
  static read(layer: Layer, text: string, relax: boolean, isNoted: boolean): Model {
    return Model.#make(layer, (handle) => {
      const ok = layer.lendText(text, (at, size) =>
        layer.exports.read(handle, at, size, relax ? 1 : 0, layer.diagnostics),
      );
      if (!ok) throw layer.refusal();
      return new Model(layer, handle, layer.told(), undefined, isNoted);
    });
  }

  /** @internal */
  static state(layer: Layer, object: ModelObject, isNoted: boolean): Model {
    const read = new ObjectReader(object);
    return Model.#make(layer, (handle) => {
      assign(layer, handle, read);
      for (const exact of read.exact) setExact(layer, handle, exact);
      if (!layer.exports.check(handle, layer.diagnostics)) throw layer.refusal();
      return new Model(layer, handle, [], { columns: [...read.columns.keys()], rows: read.rows }, isNoted);
    });
  }

  /** @internal A model that the program has made. */
  static adopt(layer: Layer, handle: number): Model {
    return new Model(layer, handle, []);
  }

  static #make(layer: Layer, fill: (handle: number) => Model): Model {
    const handle = layer.made(layer.call(() => layer.exports.makeModel()));
    try {
      return fill(handle);
    } catch (error) {
      layer.exports.freeModel(handle);
      throw error;
    }
  }

  /** @internal */
  handleIn(layer: Layer): number {
    if (layer !== this.#layer) throw wrong("the model is one of another program");
    if (this.#handle === 0) throw wrong("the model was disposed of");
    return this.#handle;
  }

  /** The model as arrays, copied. */
  arrays(): ModelArrays {
    const layer = this.#layer;
    layer.call(() => layer.exports.arrays(this.handleIn(layer), layer.scratch, layer.scratch + 8));
    const [sense, columns, rows, entries, ...at] = layer.words(layer.scratch + 8, 12) as unknown as number[];
    const floats = (k: number, length: number) => layer.floats(at[k]!, length);
    return {
      isMaximised: sense === 1,
      constant: layer.memoryFloats[layer.scratch / 8]!,
      columns: this.columns,
      rows: this.rows,
      costs: floats(0, columns!),
      lower: floats(1, columns!),
      upper: floats(2, columns!),
      rowLower: floats(3, rows!),
      rowUpper: floats(4, rows!),
      starts: layer.words(at[5]!, rows! + 1),
      indices: layer.words(at[6]!, entries!),
      values: floats(7, entries!),
    };
  }

  dispose(): void {
    if (this.#handle === 0) return;
    forgotten.unregister(this);
    this.#layer.exports.freeModel(this.#handle);
    this.#handle = 0;
  }

  [Symbol.dispose](): void {
    this.dispose();
  }
}

function namesOf(layer: Layer, handle: number, areRows: number): string[] {
  const names = layer.madeText(() => layer.exports.names(handle, areRows));
  return names ? names.slice(0, -1).split("\0") : [];
}

function assign(layer: Layer, handle: number, read: ObjectReader): void {
  const columnNames = layer.encoded([...read.columns.keys(), ""].join("\0"));
  const rowNames = layer.encoded([...read.rows, ""].join("\0"));
  const numbers = [read.costs, read.lower, read.upper, read.rowLower, read.rowUpper];
  const entries = read.values.length;
  const sizes = [
    8 + 8 * (3 * read.columns.size + 2 * read.rows.length), 4 * read.starts.length, 8 * entries, 4 * entries,
    columnNames.length, rowNames.length,
  ];
  layer.lend(sizes, (numbersAt, startsAt, valuesAt, indicesAt, columnNamesAt, rowNamesAt) => {
    const { memoryFloats: floats, memoryWords: words } = layer;
    let at = numbersAt! / 8;
    floats[at++] = read.constant;
    for (const all of numbers) for (const number of all) floats[at++] = number;
    words.set(read.starts, startsAt! / 4);
    floats.set(read.values, valuesAt! / 8);
    words.set(read.indices, indicesAt! / 4);
    columnNames.put(columnNamesAt!);
    rowNames.put(rowNamesAt!);
    layer.exports.assign(
      handle, read.isMaximised ? 1 : 0, read.columns.size, read.rows.length, numbersAt!, startsAt!, indicesAt!,
      valuesAt!, columnNamesAt!, rowNamesAt!,
    );
  });
}

function setExact(layer: Layer, handle: number, { place, at, column, text }: ExactPlace): void {
  const isSet = layer.lendText(text, (textAt) =>
    layer.exports.setExact(handle, place, at, column, textAt, layer.diagnostics),
  );
  if (!isSet) throw layer.refusal();
}
