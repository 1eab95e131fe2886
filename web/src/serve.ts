// What a worker does with its messages.
import { NuvError } from "./error.js";
import type { Nuv } from "./proof.js";
import type { Reply, Request } from "./worker.js";

/** Told as often as that, in milliseconds. */
const PERIOD = 50;

/** Answers one message after the other. */
export function serve(loading: Promise<Pick<Nuv, "model" | "solve" | "repair">>, post: (reply: Reply) => void): (request: Request) => Promise<void> {
  return async ({ id, call, model, options, relax }) => {
    let last = performance.now();
    const progress = (told: Parameters<NonNullable<Parameters<Nuv["solve"]>[1]>["progress"] & object>[0]) => {
      const now = performance.now();
      if (now - last < PERIOD) return;
      last = now;
      post({ id, progress: told });
    };
    try {
      const nuv = await loading;
      const held = nuv.model(model, { relax });
      try {
        post({ id, answer: nuv[call](held, { ...options, progress }) });
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
