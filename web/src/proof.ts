/**
 * Models as people state them, and answers with their proof: exact numbers, duals, ranges, the
 * conflict of an infeasible model, certificates. One `await` loads it; all else is synchronous.
 */
import { Layer, type Host, type ProofExports } from "./layer.js";
import { Model } from "./model.js";
import type { ModelObject } from "./object.js";
import { instantiate, type Source } from "./program.js";
import { solve, type Answer, type SolveOptions } from "./answer.js";

export { NuvError, type Diagnostic } from "./error.js";
export { toFraction, toNumber, type Fraction, type Quantity } from "./exact.js";
export { Model } from "./model.js";
export type { ModelArrays } from "./model.js";
export type { ModelObject, RowObject, Terms, VariableObject } from "./object.js";
export type { Source } from "./program.js";
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
    return this.with(model, (held) => solve(this.#layer, held, options));
  }

  /** @internal */
  protected with<Result>(model: AnyModel, use: (held: Model) => Result): Result {
    if (model instanceof Model) return use(model);
    const held = this.#made(model, false, false);
    try {
      return use(held);
    } finally {
      held.dispose();
    }
  }
}

/** Loads the model layer. */
export async function load(source: Source = new URL("./proof.wasm", import.meta.url)): Promise<Nuv> {
  return new Nuv(await loadLayer(source));
}

/** @internal */
export async function loadLayer<Exports extends ProofExports>(source: Source): Promise<Layer<Exports>> {
  const host = { layer: undefined as Layer | undefined };
  const instance = await instantiate(source, { host: hostOf(host) });
  const layer = new Layer(instance.exports as unknown as Exports);
  host.layer = layer;
  return layer;
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

