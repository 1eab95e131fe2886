// The worker's own program, in browsers and in node: the larger one once a repair is asked for.
import type { AllNuv } from "./all.js";
import { load } from "./proof.js";
import { serve, type Loading } from "./serve.js";
import type { Reply, Request } from "./worker.js";

interface Port {
  postMessage(reply: Reply): void;
  on(type: "message", listen: (request: Request) => void): void;
}

const proof = load();
let all: Promise<AllNuv> | undefined;
const loading: Loading = (call) =>
  call === "repair" ? (all ??= import("./all.js").then(({ load }) => load())) : proof;

if (typeof addEventListener === "function" && typeof document === "undefined" && typeof postMessage === "function") {
  const answer = serve(loading, (reply) => postMessage(reply));
  addEventListener("message", ({ data }) => void answer(data as Request));
} else {
  const threads = ["node:worker", "threads"].join("_");
  const { parentPort } = (await import(threads)) as { parentPort: Port };
  parentPort.on("message", serve(loading, (reply) => parentPort.postMessage(reply)));
}
