// The worker's own program, in browsers and in node.
import { load } from "./proof.js";
import { serve } from "./serve.js";
import type { Reply, Request } from "./worker.js";

interface Port {
  postMessage(reply: Reply): void;
  on(type: "message", listen: (request: Request) => void): void;
}

if (typeof addEventListener === "function" && typeof document === "undefined" && typeof postMessage === "function") {
  const answer = serve(load(), (reply) => postMessage(reply));
  addEventListener("message", ({ data }) => void answer(data as Request));
} else {
  const threads = "node:worker_threads";
  const { parentPort } = (await import(/* @vite-ignore */ threads)) as { parentPort: Port };
  parentPort.on("message", serve(load(), (reply) => parentPort.postMessage(reply)));
}
