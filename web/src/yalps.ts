/**
 * Models as yalps and javascript-lp-solver take them, solved and proved here. Models with integer or
 * binary variables are refused: these are another kind of problem.
 */
import { wrong } from "./error.js";
import type { Nuv } from "./proof.js";
import type { ModelObject, RowObject, VariableObject } from "./object.js";
import type { SolveOptions } from "./answer.js";

type Pairs<Value> = Readonly<Record<string, Value>> | Iterable<readonly [string, Value]>;

/** What a constraint says; `equal` counts before the others. */
export interface Constraint {
  equal?: number;
  min?: number;
  max?: number;
}

/** A model of yalps. */
export interface YalpsModel {
  direction?: "maximize" | "minimize";
  objective?: string;
  constraints: Pairs<Constraint>;
  variables: Pairs<Pairs<number>>;
  integers?: boolean | Iterable<string>;
  binaries?: boolean | Iterable<string>;
}

/** A model of javascript-lp-solver. */
export interface JsLpModel {
  optimize: string;
  opType: "max" | "min";
  constraints: Record<string, Constraint>;
  variables: Record<string, Record<string, number>>;
  ints?: Record<string, unknown>;
  binaries?: Record<string, unknown>;
  unrestricted?: Record<string, unknown>;
}

/** An answer of yalps. */
export interface YalpsSolution {
  status: "optimal" | "infeasible" | "unbounded" | "timedout";
  /** NaN of an infeasible model, infinite of an unbounded one. */
  result: number;
  /** Those that are not zero, unless zeros are asked for. */
  variables: [string, number][];
  /** The exact objective: "p" or "p/q". */
  exact?: string;
}

function pairs<Value>(of: Pairs<Value>): (readonly [string, Value])[] {
  return Symbol.iterator in of ? [...(of as Iterable<readonly [string, Value]>)] : Object.entries(of);
}

function refuseIntegers(kind: string, of: unknown): void {
  const names = of instanceof Object && !(Symbol.iterator in of) ? Object.keys(of) : of;
  if (names === true || (names instanceof Object && [...(names as Iterable<string>)].length > 0))
    throw wrong(`the model has ${kind} variables`, "only continuous ones are solved here");
}

/** The model as one of this package. Of keys that come twice the last counts. */
function stated(
  isMaximised: boolean,
  objective: string | undefined,
  constraints: Pairs<Constraint>,
  variables: Pairs<Pairs<number>>,
  free: ReadonlySet<string>,
): ModelObject {
  const rows: Record<string, RowObject> = Object.create(null) as Record<string, RowObject>;
  const terms = new Map<string, [string, number][]>();
  for (const [name, { equal, min, max }] of pairs(constraints)) {
    const held: [string, number][] = terms.get(name) ?? [];
    terms.set(name, held);
    const before = rows[name];
    const lower = min ?? before?.lower;
    const upper = max ?? before?.upper;
    rows[name] =
      equal !== undefined
        ? { terms: held, equal }
        : { terms: held, ...(lower !== undefined && { lower }), ...(upper !== undefined && { upper }) };
  }
  const costs: [string, number][] = [];
  const bounds: Record<string, VariableObject> = Object.create(null) as Record<string, VariableObject>;
  for (const [variable, coefficients] of new Map(pairs(variables))) {
    bounds[variable] = free.has(variable) ? { lower: null } : {};
    for (const [key, coefficient] of new Map(pairs(coefficients))) {
      if (key === objective) costs.push([variable, coefficient]);
      terms.get(key)?.push([variable, coefficient]);
    }
  }
  return { [isMaximised ? "maximize" : "minimize"]: costs, variables: bounds, rows };
}

const STATUSES = { optimal: "optimal", infeasible: "infeasible", unbounded: "unbounded", stopped: "timedout" } as const;

/** Solves a model of yalps. */
export function solve(nuv: Nuv, model: YalpsModel, options: SolveOptions & { includeZeroVariables?: boolean } = {}): YalpsSolution {
  refuseIntegers("integer", model.integers);
  refuseIntegers("binary", model.binaries);
  const isMaximised = (model.direction ?? "maximize") === "maximize";
  const { includeZeroVariables = false, ...asked } = options;
  const object = stated(isMaximised, model.objective, model.constraints, model.variables, new Set());
  const answer = nuv.solve(object, { exact: false, ...asked });
  const infinite = isMaximised ? Infinity : -Infinity;
  const solution: YalpsSolution = {
    status: STATUSES[answer.status],
    result: answer.status === "optimal" ? answer.objective : answer.status === "unbounded" ? infinite : NaN,
    variables:
      answer.status === "optimal"
        ? answer.variables.filter(({ value }) => includeZeroVariables || value !== 0).map(({ name, value }) => [name, value])
        : [],
  };
  if (answer.exactObjective !== undefined) solution.exact = answer.exactObjective;
  return solution;
}

/** Solves a model of javascript-lp-solver: feasible, result and bounded, and each variable that is not zero. */
export function solveJsLp(nuv: Nuv, model: JsLpModel, options: SolveOptions = {}): Record<string, number | boolean> {
  refuseIntegers("integer", model.ints);
  refuseIntegers("binary", model.binaries);
  const free = new Set(Object.keys(model.unrestricted ?? {}));
  const object = stated(model.opType === "max", model.optimize, model.constraints, model.variables, free);
  const answer = nuv.solve(object, { exact: false, ...options });
  const isOptimal = answer.status === "optimal";
  const told: Record<string, number | boolean> = {
    feasible: isOptimal || answer.status === "unbounded",
    result: isOptimal ? answer.objective : 0,
    bounded: answer.status !== "unbounded",
  };
  if (isOptimal) for (const { name, value } of answer.variables) if (value !== 0) told[name] = value;
  return told;
}
