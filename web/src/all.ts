/**
 * All of `nuv/proof`, and what not every page wants to load: the least repair of an infeasible model,
 * sessions, models written as texts, and the check of certificates.
 */
import { NuvError, wrong } from "./error.js";
import type { Layer, ProofExports } from "./layer.js";
import { Model } from "./model.js";
import { loadLayer, Nuv, type AnyModel } from "./proof.js";
import type { Source } from "./program.js";
import { repair, type Repair, type RepairExports, type RepairOptions } from "./repair.js";
import { solve, type Answer, type SolveOptions } from "./answer.js";
import { toLp, type WriterExports } from "./writer.js";

export * from "./proof.js";
export type { Repair, RepairChange, RepairOptions } from "./repair.js";

/** @internal What the larger program exports beside; see native/All.cpp. */
export interface AllExports extends ProofExports, RepairExports, WriterExports {
  verify(model: number, certificate: number, size: number, numbers: number, diagnostics: number): number;
  solveAgain(
    model: number, session: number, flags: number, seconds: number, pivots: number, diagnostics: number,
  ): number;
  NuvSolverConstruct(): number;
  NuvSolverDestruct(session: number): void;
}

/** The loaded model layer with all it can. */
export class AllNuv extends Nuv {
  readonly #layer: Layer<AllExports>;

  /** @internal */
  constructor(layer: Layer<AllExports>) {
    super(layer);
    this.#layer = layer;
  }

  /** The least change that makes an infeasible model feasible. */
  repair(model: AnyModel, options: RepairOptions = {}): Repair {
    return this.with(model, (held) => repair(this.#layer, held, options));
  }

  /** The model in LP format. */
  toLp(model: AnyModel): string {
    return this.with(model, (held) => toLp(this.#layer, held));
  }

  /** Checks, without solving, that a certificate proves what it claims of a model. @return what. */
  verify(model: AnyModel, certificate: string): "optimal" | "infeasible" | "unbounded" {
    return this.with(model, (held) => {
      const handle = held.handleIn(this.#layer);
      const { exports, diagnostics } = this.#layer;
      const status = this.#layer.lendText(certificate, (at, size) => exports.verify(handle, at, size, 0, diagnostics));
      const proved = (["optimal", "infeasible", "unbounded"] as const)[status];
      if (!proved) throw new NuvError({ code: "js.defect", message: `unknown status ${status}` });
      return proved;
    });
  }

  /** A session, in which solves of one model after the other start where the last one ended. */
  session(): Session {
    return new Session(this.#layer);
  }
}

/** What a solve leaves for the next one. Give it back with `dispose()` or `using`. */
export class Session implements Disposable {
  readonly #layer: Layer<AllExports>;
  #handle: number;

  /** @internal */
  constructor(layer: Layer<AllExports>) {
    this.#layer = layer;
    this.#handle = layer.made(layer.exports.NuvSolverConstruct());
  }

  solve(model: Model, options: Omit<SolveOptions, "path"> = {}): Answer {
    if (this.#handle === 0) throw wrong("the session was disposed of");
    const { exports } = this.#layer;
    return solve(this.#layer, model, options, (at, ...asked) => exports.solveAgain(at, this.#handle, ...asked));
  }

  dispose(): void {
    this.#layer.exports.NuvSolverDestruct(this.#handle);
    this.#handle = 0;
  }

  [Symbol.dispose](): void {
    this.dispose();
  }
}

/** Loads the model layer with all it can. */
export async function load(source: Source = new URL("./all.wasm", import.meta.url)): Promise<AllNuv> {
  return new AllNuv(await loadLayer<AllExports>(source));
}
