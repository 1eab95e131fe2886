// Models as JavaScript objects.
import { wrong } from "./error.js";
import { toNumber, type Quantity } from "./exact.js";

/** Coefficients by the names of variables. */
export type Terms = Readonly<Record<string, Quantity>> | Iterable<readonly [string, Quantity]>;

export interface VariableObject {
  /** 0 if it is not said; -Infinity or null for none. */
  lower?: Quantity | null;
  /** Infinity, which null is too, if it is not said. */
  upper?: Quantity | null;
}

export interface RowObject {
  terms: Terms;
  lower?: Quantity | null;
  upper?: Quantity | null;
  /** Both sides. */
  equal?: Quantity;
}

/** A linear program. Variables are those that are named anywhere, in the order of their first naming. */
export interface ModelObject {
  /** One of these, or none for a model without objective. */
  maximize?: Terms;
  minimize?: Terms;
  /** Added to the objective. */
  constant?: Quantity;
  /** Bounds; a variable that is not here is at least 0. */
  variables?: Readonly<Record<string, VariableObject>>;
  rows?: Readonly<Record<string, RowObject>>;
}

/** Which number of a model, as NUV_PLACE_... has it. */
export const enum Place {
  Constant = 0,
  Cost = 1,
  ColumnLower = 2,
  ColumnUpper = 3,
  RowLower = 4,
  RowUpper = 5,
  Entry = 6,
}

/** A number that no double says. */
export interface ExactPlace {
  place: Place;
  at: number;
  column: number;
  text: string;
}

/** A model as arrays; `exact` has what the doubles do not say. */
export class ObjectReader {
  readonly columns = new Map<string, number>();
  readonly rows: string[] = [];
  readonly isMaximised: boolean;
  readonly constant: number;
  readonly costs: number[] = [];
  readonly lower: number[] = [];
  readonly upper: number[] = [];
  readonly rowLower: number[] = [];
  readonly rowUpper: number[] = [];
  readonly starts: number[] = [0];
  readonly indices: number[] = [];
  readonly values: number[] = [];
  readonly exact: ExactPlace[] = [];
  /** Of each column, the last row that had it. */
  readonly #lastRow: number[] = [];

  constructor(model: ModelObject) {
    if (model === null || typeof model !== "object") throw wrong("a model is an object or a text");
    if (model.maximize && model.minimize) throw wrong("a model has either `maximize` or `minimize`");
    for (const key of Object.keys(model))
      if (!["maximize", "minimize", "constant", "variables", "rows"].includes(key))
        throw wrong(`a model has no '${key}'`, "it has maximize or minimize, constant, variables and rows");
    this.isMaximised = model.maximize !== undefined;
    this.constant = this.#number(model.constant ?? 0, "the constant", Place.Constant, 0);
    for (const name of Object.keys(model.variables ?? {})) this.#column(name);
    visitTerms(model.maximize ?? model.minimize ?? {}, "the objective", (name, coefficient) => {
      const column = this.#column(name);
      this.costs[column] = isPlain(coefficient)
        ? coefficient
        : this.#number(coefficient, `the cost of '${name}'`, Place.Cost, column);
    });
    for (const [name, row] of Object.entries(model.rows ?? {})) this.#row(name, row);
    for (const [name, bounds] of Object.entries(model.variables ?? {})) this.#bounds(name, bounds);
  }

  #column(name: string): number {
    const known = this.columns.get(name);
    if (known !== undefined) return known;
    checkName(name, "variable");
    const column = this.columns.size;
    this.columns.set(name, column);
    this.costs.push(0);
    this.lower.push(0);
    this.upper.push(Infinity);
    this.#lastRow.push(-1);
    return column;
  }

  #row(name: string, row: RowObject): void {
    checkName(name, "row");
    if (row === null || typeof row !== "object" || !("terms" in row)) throw wrong(`row '${name}' has no terms`);
    const at = this.rows.length;
    const side = (value: Quantity | null | undefined, absent: number, place: Place) =>
      value === undefined || value === null ? absent : this.#number(value, `a side of row '${name}'`, place, at, 0, true);
    if (row.equal !== undefined && (row.lower !== undefined || row.upper !== undefined))
      throw wrong(`row '${name}' has either \`equal\` or \`lower\` and \`upper\``);
    this.rows.push(name);
    this.rowLower.push(side(row.equal ?? row.lower, -Infinity, Place.RowLower));
    this.rowUpper.push(side(row.equal ?? row.upper, Infinity, Place.RowUpper));
    visitTerms(row.terms, `row '${name}'`, (variable, coefficient) => {
      const column = this.#column(variable);
      if (this.#lastRow[column] === at) throw wrong(`row '${name}' has '${variable}' twice`);
      this.#lastRow[column] = at;
      this.indices.push(column);
      this.values.push(
        isPlain(coefficient)
          ? coefficient
          : this.#number(coefficient, `the coefficient of '${variable}' in row '${name}'`, Place.Entry, at, column),
      );
    });
    this.starts.push(this.indices.length);
  }

  #bounds(name: string, { lower, upper }: VariableObject): void {
    const at = this.columns.get(name)!;
    const bound = (value: Quantity | null, absent: number, place: Place) =>
      value === null ? absent : this.#number(value, `a bound of '${name}'`, place, at, 0, true);
    if (lower !== undefined) this.lower[at] = bound(lower, -Infinity, Place.ColumnLower);
    if (upper !== undefined) this.upper[at] = bound(upper, Infinity, Place.ColumnUpper);
  }

  /** The nearest double; what it does not say is noted. */
  #number(value: Quantity, what: string, place: Place, at: number, column = 0, mayBeInfinite = false): number {
    if (typeof value === "number") {
      if (Number.isFinite(value) || (mayBeInfinite && !Number.isNaN(value))) return value;
      throw wrong(`${what} is ${value}`);
    }
    const text = textOf(value, what);
    const [num = "", den] = text.split("/");
    const nearest = den === undefined ? Number(num) : toNumber({ num: BigInt(num), den: BigInt(den) });
    if (!Number.isFinite(nearest)) throw wrong(`${what} is too large: ${text}`);
    if (String(nearest) !== text) this.exact.push({ place, at, column, text });
    return nearest;
  }
}

const DECIMAL = /^[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d{1,5})?$/;
const QUOTIENT = /^[+-]?\d+\/0*[1-9]\d*$/;

function textOf(value: Exclude<Quantity, number>, what: string): string {
  const text =
    typeof value === "string" ? value.trim() : typeof value === "bigint" ? `${value}` : `${value.num}/${value.den}`;
  if (DECIMAL.test(text) || QUOTIENT.test(text)) return text.replace(/^\+/, "");
  throw wrong(`${what} is '${text}', which is no number`, 'write it like "0.1", "1e-3" or "1/3"');
}

/** A number that a model takes as it stands; most are. */
function isPlain(value: Quantity): value is number {
  return typeof value === "number" && value - value === 0;
}

function visitTerms(terms: Terms, where: string, visit: (name: string, coefficient: Quantity) => void): void {
  if (terms === null || typeof terms !== "object") throw wrong(`the terms of ${where} are no object`);
  if (Symbol.iterator in terms)
    for (const [name, coefficient] of terms as Iterable<readonly [string, Quantity]>) visit(name, coefficient);
  else for (const name of Object.keys(terms)) visit(name, terms[name]!);
}

function checkName(name: string, kind: string): void {
  if (typeof name !== "string" || name === "" || name.includes("\0"))
    throw wrong(`'${String(name)}' is no name of a ${kind}`);
}
