// The least change that makes an infeasible model feasible.
import { wrong } from "./error.js";
import type { Layer } from "./layer.js";
import { Model } from "./model.js";
import { toLp, type WriterExports } from "./writer.js";
import { asked, watcher, type SolveOptions } from "./answer.js";

export interface RepairOptions extends Pick<SolveOptions, "seconds" | "pivots" | "stored" | "progress"> {
  /** What a unit of change counts for, by the names of rows and variables; 1 for those not named,
   * Infinity for what has to stay. */
  rowWeights?: Readonly<Record<string, number>>;
  variableWeights?: Readonly<Record<string, number>>;
}

export interface RepairChange {
  kind: "variable" | "row";
  name: string;
  side: "lower" | "upper";
  from: number;
  to: number;
  exactTo: string;
  amount: number;
}

export interface Repair {
  /** "optimal" where the changes are known, none for a model that is feasible as it stands;
   * "infeasible" where what has to stay excludes itself. */
  status: "optimal" | "infeasible" | "stopped";
  /** Whether it was checked in exact arithmetic that no smaller change does. */
  proved: boolean;
  /** The sum of weights times amounts. */
  total: number;
  exactTotal?: string;
  changes: RepairChange[];
  /** The model with the changes, in LP format. */
  lp?: string;
}

/** What the larger program exports for it. */
export interface RepairExports extends WriterExports {
  repair(
    model: number, columnWeights: number, rowWeights: number, flags: number, seconds: number, pivots: number,
    diagnostics: number,
  ): number;
  repairInfo(repair: number, out: number): void;
  repairChange(repair: number, index: number, out: number): void;
  NuvRepairDestruct(repair: number): void;
  NuvRepairGetExact(repair: number, change: number, buffer: number, size: bigint): bigint;
  NuvRepairMakeModel(repair: number, model: number): number;
}

type RepairLayer = Layer<RepairExports>;

const STATUSES = ["optimal", "infeasible", "stopped", "stopped"] as const;
const TOTAL = 0xffffffff;

export function repair(layer: RepairLayer, model: Model, options: RepairOptions): Repair {
  const { flags, seconds, pivots } = asked(options);
  const columns = weights(model.columns, options.variableWeights, "variable");
  const rows = weights(model.rows, options.rowWeights, "row");
  const handle = layer.watch(watcher(options.progress), () =>
    layer.lend([8 * columns.length, 8 * rows.length], (columnsAt, rowsAt) => {
      layer.memoryFloats.set(columns, columnsAt! / 8);
      layer.memoryFloats.set(rows, rowsAt! / 8);
      return layer.exports.repair(model.handleIn(layer), columnsAt!, rowsAt!, flags, seconds, pivots, layer.diagnostics);
    }),
  );
  if (handle === 0) throw layer.refusal();
  try {
    return layer.call(() => read(layer, model, handle));
  } finally {
    layer.exports.NuvRepairDestruct(handle);
  }
}

function read(layer: RepairLayer, model: Model, handle: number): Repair {
  const { exports, scratch } = layer;
  exports.repairInfo(handle, scratch);
  const [status, proved, , count, total] = layer.floats(scratch, 5);
  const found: Repair = { status: STATUSES[status!]!, proved: proved === 1, total: total!, changes: [] };
  const exactTotal = exactText(layer, handle, TOTAL);
  if (exactTotal) found.exactTotal = exactTotal;
  for (let k = 0; k < count!; ++k) {
    exports.repairChange(handle, k, scratch);
    const [index, isRow, isUpper, from, to, amount] = layer.floats(scratch, 6);
    found.changes.push({
      kind: isRow ? "row" : "variable",
      name: (isRow ? model.rows : model.columns)[index!]!,
      side: isUpper ? "upper" : "lower",
      from: from!,
      to: to!,
      exactTo: exactText(layer, handle, k),
      amount: amount!,
    });
  }
  if (found.status === "optimal") {
    exports.NuvRepairMakeModel(handle, scratch);
    const repaired = Model.adopt(layer, layer.word(scratch));
    found.lp = toLp(layer, repaired);
    repaired.dispose();
  }
  return found;
}

function exactText(layer: RepairLayer, handle: number, change: number): string {
  const size = Number(layer.exports.NuvRepairGetExact(handle, change, 0, 0n));
  if (size === 0) return "";
  return layer.lend([size], (at) => {
    layer.exports.NuvRepairGetExact(handle, change, at!, BigInt(size));
    return layer.textAt(at!);
  });
}

function weights(names: readonly string[], given: Readonly<Record<string, number>> = {}, kind: string): number[] {
  for (const [name, weight] of Object.entries(given)) {
    if (!names.includes(name)) throw wrong(`there is no ${kind} '${name}' to weigh`);
    if (!(weight > 0)) throw wrong(`the weight of ${kind} '${name}' is ${weight}, and has to be positive`);
  }
  return names.map((name) => given[name] ?? 1);
}
