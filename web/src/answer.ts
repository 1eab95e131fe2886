// A solve and what it found, as plain objects that can be kept and sent.
import { wrong } from "./error.js";
import type { Layer } from "./layer.js";
import type { Model } from "./model.js";

export type Status = "optimal" | "infeasible" | "unbounded" | "stopped";
export type BasisStatus = "basic" | "lower" | "upper" | "free";

/** Where a solve stands. */
export interface Progress {
  stage: "double" | "exact";
  /** Of this stage. */
  pivots: number;
  seconds: number;
  /** Of the current basis; the sum of violations while that is not feasible, NaN where not known. */
  objective: number;
  feasible: boolean;
}

export interface SolveOptions {
  /** Ends the solve; what is found by then is no answer. */
  seconds?: number;
  pivots?: number;
  /** Exact numbers of variables and rows; that of the objective comes anyway. True if not said. */
  exact?: boolean;
  /** How far each cost, bound and side may move. */
  sensitivity?: boolean;
  /** The proof in VIPR format. */
  certificate?: boolean;
  /** The vertices that the simplex method went through. */
  path?: boolean;
  /** Numbers are the doubles themselves instead of the decimals that say them. */
  stored?: boolean;
  /** Told before each pivot; returning false ends the solve. */
  progress?: (progress: Progress) => boolean | void;
}

export interface VariableAnswer {
  name: string;
  value: number;
  /** "p" or "p/q". */
  exact?: string;
  /** What the objective gains per unit by which the variable is moved up. */
  reducedCost?: number;
  exactReducedCost?: string;
  /** Between which numbers its cost may move while the vertex stays. */
  costRange?: [number, number];
  basis: BasisStatus;
}

export interface RowAnswer {
  name: string;
  /** The value of the row's terms. */
  activity: number;
  exact?: string;
  /** To the nearer side. */
  slack: number;
  exactSlack?: string;
  /** What the objective gains per unit by which the active side is moved up. */
  dual?: number;
  exactDual?: string;
  /** Between which numbers a side may move while the dual stays. */
  lowerRange?: [number, number];
  upperRange?: [number, number];
  basis: BasisStatus;
}

export interface ConflictMember {
  kind: "variable" | "row";
  name: string;
  side: "lower" | "upper";
}

/** A vertex on the way of the solve, before a pivot of phase 1 or 2. */
export interface PathStep {
  phase: number;
  objective: number;
  values: number[];
}

export interface Answer {
  status: Status;
  /** Whether the verdict was checked in exact arithmetic. */
  proved: boolean;
  stopReason?: "time" | "pivots" | "cancelled";
  /** NaN where there is none. */
  objective: number;
  exactObjective?: string;
  variables: VariableAnswer[];
  rows: RowAnswer[];
  /** The values of the variables and the duals of the rows by name. */
  values: Record<string, number>;
  duals: Record<string, number>;
  /** Infeasible: rows and bounds that exclude each other. */
  conflict?: ConflictMember[];
  /** Whether the members of the conflict agree without any one of them. */
  conflictIsMinimal?: boolean;
  /** Infeasible: a multiplier for each row; their combination contradicts the bounds. */
  farkas?: number[];
  /** Unbounded: a direction that improves for ever. */
  ray?: number[];
  exactRay?: string[];
  path?: PathStep[];
  certificate?: string;
  pivots: { double: number; exact: number };
  seconds: number;
}

const STATUSES: readonly Status[] = ["optimal", "infeasible", "unbounded", "stopped"];
/** By their number in the program; the first one is the core's, which is not in it. */
const STAGES = [undefined, "double", "exact"] as const;
const REASONS = [undefined, "time", "pivots", "cancelled"] as const;
const BASIS: readonly BasisStatus[] = ["basic", "lower", "upper", "free"];

const enum Flag {
  Sensitivity = 1,
  Exact = 2,
  Path = 4,
  Progress = 8,
  Stored = 16,
}

const enum Exact {
  Objective = 0,
  Values = 1,
  Duals = 2,
  Ray = 3,
  ReducedCosts = 5,
  Activities = 6,
  Slacks = 7,
}

/** What a solve or a repair is asked for, as the program takes it. */
export function asked(options: SolveOptions): { flags: number; seconds: number; pivots: number } {
  const { seconds = Infinity, pivots = Infinity } = options;
  if (!(seconds >= 0)) throw wrong(`a time limit of ${seconds} seconds`);
  if (!(pivots >= 0)) throw wrong(`a limit of ${pivots} pivots`);
  const flags =
    (options.sensitivity ? Flag.Sensitivity : 0) |
    (options.exact ?? true ? Flag.Exact : 0) |
    (options.path ? Flag.Path : 0) |
    (options.progress ? Flag.Progress : 0) |
    (options.stored ? Flag.Stored : 0);
  return { flags, seconds, pivots };
}

/** The caller's function as the program calls it. */
export function watcher(progress: SolveOptions["progress"]) {
  return progress
    ? (stage: number, pivots: number, seconds: number, objective: number, feasible: number) =>
        progress({ stage: STAGES[stage]!, pivots, seconds, objective, feasible: feasible !== 0 }) === false ? 0 : 1
    : undefined;
}

type Asked = [flags: number, seconds: number, pivots: number, diagnostics: number];

export function solve(
  layer: Layer,
  model: Model,
  options: SolveOptions,
  call = (at: number, ...given: Asked) => layer.exports.solve(at, ...given),
): Answer {
  const { flags, seconds, pivots } = asked(options);
  const handle = model.handleIn(layer);
  const solution = layer.watch(watcher(options.progress), () =>
    call(handle, flags, seconds, pivots, layer.diagnostics),
  );
  if (solution === 0) throw layer.refusal();
  try {
    return layer.call(() => new AnswerReader(layer, model, solution, options).read());
  } finally {
    layer.exports.freeSolution(solution);
  }
}

/** The arrays of a solution, in the order in which the program tells where they are. */
const enum ArrayOf {
  Values = 0,
  ReducedCosts = 1,
  CostRanges = 2,
  Activities = 3,
  Slacks = 4,
  Duals = 5,
  RowLowerRanges = 6,
  RowUpperRanges = 7,
  Ray = 8,
  Farkas = 9,
  ColumnBasis = 10,
  RowBasis = 11,
  Conflict = 12,
}

const NUMBERS = 8;
const ARRAYS = 13;

class AnswerReader {
  readonly #layer: Layer;
  readonly #model: Model;
  readonly #solution: number;
  readonly #options: SolveOptions;
  readonly #info: number[] = [];
  /** Address and length of each array. */
  readonly #arrays: number[] = [];

  constructor(layer: Layer, model: Model, solution: number, options: SolveOptions) {
    this.#layer = layer;
    this.#model = model;
    this.#solution = solution;
    this.#options = options;
    const arraysAt = layer.scratch + 8 * NUMBERS;
    layer.exports.info(solution, layer.scratch, arraysAt);
    const { memoryFloats, memoryWords } = layer;
    for (let k = 0; k < NUMBERS; ++k) this.#info.push(memoryFloats[layer.scratch / 8 + k]!);
    for (let k = 0; k < 2 * ARRAYS; ++k) this.#arrays.push(memoryWords[arraysAt / 4 + k]!);
  }

  read(): Answer {
    const info = this.#info;
    const status = STATUSES[info[0]!]!;
    const reason = REASONS[info[2]! as 0 | 1 | 2 | 3];
    // Exact numbers come first: making them may move the memory that the arrays are read from.
    const exact = this.#options.exact ?? true;
    const exactColumns = exact ? [this.#exact(Exact.Values), this.#exact(Exact.ReducedCosts)] as const : [];
    const exactRows = exact
      ? [this.#exact(Exact.Activities), this.#exact(Exact.Slacks), this.#exact(Exact.Duals)] as const
      : [];
    const answer: Answer = {
      status,
      proved: info[1] === 1,
      objective: info[4]!,
      variables: this.#variables(...exactColumns),
      rows: this.#rows(...exactRows),
      values: Object.create(null) as Record<string, number>,
      duals: Object.create(null) as Record<string, number>,
      pivots: { double: info[6]!, exact: info[7]! },
      seconds: info[5]!,
    };
    if (reason) answer.stopReason = reason;
    for (const { name, value } of answer.variables) answer.values[name] = value;
    for (const { name, dual } of answer.rows) if (dual !== undefined) answer.duals[name] = dual;
    const objective = this.#exact(Exact.Objective)?.[0];
    if (objective !== undefined) answer.exactObjective = objective;
    if (status === "infeasible") this.#addConflict(answer, info[3] === 1);
    if (status === "unbounded") {
      answer.ray = [...this.#array(ArrayOf.Ray)];
      const exactRay = this.#exact(Exact.Ray);
      if (exactRay) answer.exactRay = exactRay;
    }
    if (this.#options.path) answer.path = this.#path();
    if (this.#options.certificate) {
      const certificate = this.#layer.madeText(() => this.#layer.exports.certificate(this.#solution));
      if (certificate !== undefined) answer.certificate = certificate;
    }
    return answer;
  }

  #variables(exact?: string[], exactCosts?: string[]): VariableAnswer[] {
    const memory = this.#layer.memoryFloats;
    const bytes = this.#layer.memoryBytes;
    const values = this.#place(ArrayOf.Values);
    const costs = this.#place(ArrayOf.ReducedCosts);
    const ranges = this.#place(ArrayOf.CostRanges);
    const basis = this.#arrays[2 * ArrayOf.ColumnBasis]!;
    return this.#model.columns.map((name, k) => {
      const answer: VariableAnswer = {
        name,
        value: values ? memory[values + k]! : NaN,
        basis: basis ? BASIS[bytes[basis + k]!]! : "free",
      };
      if (exact) answer.exact = exact[k]!;
      if (costs) answer.reducedCost = memory[costs + k]!;
      if (exactCosts) answer.exactReducedCost = exactCosts[k]!;
      if (ranges) answer.costRange = [memory[ranges + 2 * k]!, memory[ranges + 2 * k + 1]!];
      return answer;
    });
  }

  #rows(exact?: string[], exactSlacks?: string[], exactDuals?: string[]): RowAnswer[] {
    const memory = this.#layer.memoryFloats;
    const bytes = this.#layer.memoryBytes;
    const activities = this.#place(ArrayOf.Activities);
    const slacks = this.#place(ArrayOf.Slacks);
    const duals = this.#place(ArrayOf.Duals);
    const lower = this.#place(ArrayOf.RowLowerRanges);
    const upper = this.#place(ArrayOf.RowUpperRanges);
    const basis = this.#arrays[2 * ArrayOf.RowBasis]!;
    return this.#model.rows.map((name, k) => {
      const answer: RowAnswer = {
        name,
        activity: activities ? memory[activities + k]! : NaN,
        slack: slacks ? memory[slacks + k]! : NaN,
        basis: basis ? BASIS[bytes[basis + k]!]! : "free",
      };
      if (exact) answer.exact = exact[k]!;
      if (exactSlacks) answer.exactSlack = exactSlacks[k]!;
      if (duals) answer.dual = memory[duals + k]!;
      if (exactDuals) answer.exactDual = exactDuals[k]!;
      if (lower) answer.lowerRange = [memory[lower + 2 * k]!, memory[lower + 2 * k + 1]!];
      if (upper) answer.upperRange = [memory[upper + 2 * k]!, memory[upper + 2 * k + 1]!];
      return answer;
    });
  }

  #addConflict(answer: Answer, isMinimal: boolean): void {
    const [at, count] = this.#arrays.slice(2 * ArrayOf.Conflict);
    const words = this.#layer.words(at!, 3 * count!);
    answer.conflict = [];
    for (let k = 0; k < words.length; k += 3) {
      const isRow = words[k + 1] === 1;
      answer.conflict.push({
        kind: isRow ? "row" : "variable",
        name: (isRow ? this.#model.rows : this.#model.columns)[words[k]!]!,
        side: words[k + 2] === 1 ? "upper" : "lower",
      });
    }
    answer.conflictIsMinimal = isMinimal;
    answer.farkas = [...this.#array(ArrayOf.Farkas)];
  }

  #path(): PathStep[] {
    const { exports } = this.#layer;
    const length = this.#model.columns.length + 2;
    return Array.from({ length: exports.pathLength(this.#solution) }, (_, index) =>
      this.#layer.lend([8 * length], (at) => {
        const count = exports.pathStep(this.#solution, index, at!);
        const [phase, objective, ...values] = this.#layer.floats(at!, count);
        return { phase: phase!, objective: objective!, values };
      }),
    );
  }

  /** Where an array of doubles begins among all doubles of the memory; 0 where there is none. */
  #place(of: ArrayOf): number {
    return this.#arrays[2 * of]! / 8;
  }

  #array(of: ArrayOf): Float64Array {
    return this.#layer.floats(this.#arrays[2 * of]!, this.#arrays[2 * of + 1]!);
  }

  /** The numbers of a kind; undefined where there are none. */
  #exact(kind: Exact): string[] | undefined {
    return this.#layer.madeTexts(() => this.#layer.exports.exact(this.#solution, kind));
  }
}
