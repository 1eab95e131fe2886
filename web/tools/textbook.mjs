// node tools/textbook.mjs NUVLP: writes tests/textbook.json, the verdict and the exact optimum that the
// native program has of each textbook model.
import { spawnSync } from "node:child_process";
import { readdirSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { fileURLToPath } from "node:url";

const models = fileURLToPath(new URL("../../tests/models/textbook/", import.meta.url));
const all = {};
for (const name of readdirSync(models).filter((file) => file.endsWith(".lp")).sort()) {
  const { stdout } = spawnSync(process.argv[2], ["solve", "--json", join(models, name)], { encoding: "utf8", timeout: 60_000 });
  if (stdout === null || stdout === "") throw new Error(`${name}: no answer in a minute`);
  const { status, proof } = JSON.parse(stdout);
  all[name] = [status, status === "optimal" ? proof.objective : null];
}
writeFileSync(new URL("../tests/textbook.json", import.meta.url), JSON.stringify(all, null, 1) + "\n");
