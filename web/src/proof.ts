/**
 * Models as people state them, and answers with their proof: exact numbers, duals, ranges, the
 * conflict of an infeasible model and the least repair of it, certificates. One `await` loads it;
 * all else is synchronous.
 */
import { wrong } from "./error.js";
import { Layer, type Host, type ProofExports } from "./layer.js";
import { Model } from "./model.js";
import type { ModelObject } from "./object.js";
import { instantiate, type Source } from "./program.js";
import { repair, type Repair, type RepairOptions } from "./repair.js";
import { solve, type Answer, type SolveOptions } from "./answer.js";

export { NuvError, type Diagnostic } from "./error.js";
export { toFraction, toNumber, type Fraction, type Quantity } from "./exact.js";
export { Model } from "./model.js";
export type { ModelArrays } from "./model.js";
export type { ModelObject, RowObject, Terms, VariableObject } from "./object.js";
export type { Source } from "./program.js";
export type { Repair, RepairChange, RepairOptions } from "./repair.js";
export type {
  Answer,
  BasisStatus,
  ConflictMember,
  PathStep,
  Progress,
  RowAnswer,
  SolveOptions,
  Status,
  VariableAnswer,
} from "./answer.js";

/** A model: the handle, an object, or a text in LP or MPS format. */
export type AnyModel = Model | ModelObject | string;

/** The loaded model layer. */
export class Nuv {
  readonly #layer: Layer;

  /** @internal */
  constructor(layer: Layer) {
    this.#layer = layer;
  }

  /** How many bytes the program has taken from the host so far. */
  get memory(): number {
    return this.#layer.exports.memory.buffer.byteLength;
  }

  /**
   * Makes a model that can be solved many times; give it back with `dispose()` or `using`.
   * Of a text, `relax` takes integer variables for continuous ones.
   */
  model(stated: ModelObject | string, options: { relax?: boolean } = {}): Model {
    return this.#made(stated, options.relax ?? false, true);
  }

  #made(stated: ModelObject | string, relax: boolean, isNoted: boolean): Model {
    return typeof stated === "string"
      ? Model.read(this.#layer, stated, relax, isNoted)
      : Model.state(this.#layer, stated, isNoted);
  }

  /** Solves and proves. Infeasible and unbounded are answers, and so is a solve that a limit ended. */
  solve(model: AnyModel, options: SolveOptions = {}): Answer {
    return this.#with(model, (held) => solve(this.#layer, held, options));
  }

  /** The least change that makes an infeasible model feasible. */
  repair(model: AnyModel, options: RepairOptions = {}): Repair {
    return this.#with(model, (held) => repair(this.#layer, held, options));
  }

  /** A session, in which solves of one model after the other start where the last one ended. */
  session(): Session {
    return new Session(this.#layer);
  }

  #with<Result>(model: AnyModel, use: (held: Model) => Result): Result {
    if (model instanceof Model) return use(model);
    const held = this.#made(model, false, false);
    try {
      return use(held);
    } finally {
      held.dispose();
    }
  }
}

/** What a solve leaves for the next one. Give it back with `dispose()` or `using`. */
export class Session implements Disposable {
  readonly #layer: Layer;
  #handle: number;

  /** @internal */
  constructor(layer: Layer) {
    this.#layer = layer;
    this.#handle = layer.made(layer.exports.NuvSolverConstruct());
  }

  solve(model: Model, options: Omit<SolveOptions, "path"> = {}): Answer {
    if (this.#handle === 0) throw wrong("the session was disposed of");
    return solve(this.#layer, model, options, this.#handle);
  }

  dispose(): void {
    this.#layer.exports.NuvSolverDestruct(this.#handle);
    this.#handle = 0;
  }

  [Symbol.dispose](): void {
    this.dispose();
  }
}

/** Loads the model layer. */
export async function load(source: Source = new URL("./proof.wasm", import.meta.url)): Promise<Nuv> {
  const host = { layer: undefined as Layer | undefined };
  const instance = await instantiate(source, { host: hostOf(host) });
  host.layer = new Layer(instance.exports as unknown as ProofExports);
  return new Nuv(host.layer);
}

function hostOf(of: { layer: Layer | undefined }): Host {
  return {
    seconds: () => performance.now() / 1000,
    write: (value, text) => of.layer!.writeAscii(text, value.toExponential()),
    read: (text, size) => Number(of.layer!.textAt(text, size)),
    progress: (stage, pivots, seconds, objective, feasible) =>
      of.layer!.progress(stage, pivots, seconds, objective, feasible),
    fail: (reason, code, text, hint) => of.layer!.fail(reason, code, text, hint),
  };
}

