// What a worker does with its messages.
import { NuvError } from "./error.js";
import type { AllNuv } from "./all.js";
import type { Reply, Request } from "./worker.js";

/** Told as often as that, in milliseconds. */
const PERIOD = 50;

/** The program that can answer such a call. */
export type Loading = (call: Request["call"]) => Promise<Pick<AllNuv, "model" | "solve"> & Partial<Pick<AllNuv, "repair">>>;

/** Answers one message after the other. */
export function serve(loading: Loading, post: (reply: Reply) => void): (request: Request) => Promise<void> {
  return async ({ id, call, model, options, relax }) => {
    let last = performance.now();
    const progress = (told: Parameters<NonNullable<Parameters<AllNuv["solve"]>[1]>["progress"] & object>[0]) => {
      const now = performance.now();
      if (now - last < PERIOD) return;
      last = now;
      post({ id, progress: told });
    };
    try {
      const nuv = await loading(call);
      const held = nuv.model(model, { relax });
      try {
        post({ id, answer: nuv[call]!(held, { ...options, progress }) });
      } finally {
        held.dispose();
      }
    } catch (error) {
      const { code, message, diagnostics } =
        error instanceof NuvError ? error : new NuvError({ code: "js.defect", message: String(error) });
      post({ id, error: { code, message, diagnostics } });
    }
  };
}
