// The page's worker: the model layer with its program inside, so that the page works from a folder.
import { load } from "../../dist/proof-inlined.js";
import type { Model, Nuv, SolveOptions } from "../../dist/proof.js";
import { serve } from "../../dist/serve.js";
import { study } from "./study.js";

const loading = load().then((loaded) => {
  const nuv = loaded as unknown as Nuv;
  return {
    model: nuv.model.bind(nuv),
    repair: nuv.repair.bind(nuv),
    solve: ((model: Model, options: SolveOptions) => study(nuv, model, options)) as unknown as Nuv["solve"],
  };
});
const answer = serve(loading, (reply) => postMessage(reply));
addEventListener("message", ({ data }) => void answer(data));
