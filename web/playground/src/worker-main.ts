// The page's worker: the model layer with its program inside, so that the page works from a folder.
import { load } from "../../dist/all-inlined.js";
import type { AllNuv, Model, SolveOptions } from "../../dist/all.js";
import { serve } from "../../dist/serve.js";
import { study } from "./study.js";

const loading = load().then((loaded) => {
  const nuv = loaded as unknown as AllNuv;
  return {
    model: nuv.model.bind(nuv),
    repair: nuv.repair.bind(nuv),
    solve: ((model: Model, options: SolveOptions) => study(nuv, model, options)) as unknown as AllNuv["solve"],
  };
});
const answer = serve(() => loading, (reply) => postMessage(reply));
addEventListener("message", ({ data }) => void answer(data));
