// What the page is told about a model, by its worker.
import type { Answer, Diagnostic, Model, ModelArrays, AllNuv, Repair, SolveOptions } from "../../dist/all.js";

export interface Study {
  answer: Answer;
  arrays: ModelArrays;
  diagnostics: readonly Diagnostic[];
  repair?: Repair;
}

/** Pictures in the plane and tables of repairs are for models that can be looked at. */
const LARGEST_REPAIR = 2000;

export function study(nuv: AllNuv, model: Model, options: SolveOptions): Study {
  const isPlane = model.columns.length === 2;
  const answer = nuv.solve(model, { ...options, sensitivity: true, certificate: true, path: isPlane });
  const found: Study = { answer, arrays: model.arrays(), diagnostics: model.diagnostics };
  if (answer.status === "infeasible" && model.rows.length + model.columns.length <= LARGEST_REPAIR) {
    const { progress } = options;
    found.repair = nuv.repair(model, progress ? { progress } : {});
  }
  return found;
}
