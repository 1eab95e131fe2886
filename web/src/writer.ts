// Models as texts.
import type { Layer, ProofExports } from "./layer.js";
import type { Model } from "./model.js";

/** What the larger program exports for it. */
export interface WriterExports extends ProofExports {
  writeLp(model: number, diagnostics: number): number;
}

export function toLp(layer: Layer<WriterExports>, model: Model): string {
  const { exports, diagnostics } = layer;
  const written = layer.madeText(() => exports.writeLp(model.handleIn(layer), diagnostics));
  if (written === undefined) throw layer.refusal();
  return written;
}
