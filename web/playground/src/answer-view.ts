// The answer in words and tables.
import type { Answer, Repair, RowAnswer, VariableAnswer } from "../../dist/all.js";
import { element } from "./dom.js";
import type { Study } from "./study.js";
import { decimal, exactText, plural, range, seconds } from "./words.js";

/** More rows than these are not for reading. */
const MOST = 200;
const MOST_WORDS = 12;

export function showAnswer(into: HTMLElement, study: Study, download: (certificate: string) => void): void {
  const { answer } = study;
  into.replaceChildren(verdict(answer), proof(answer));
  if (answer.status === "optimal") into.append(...optimum(study));
  else if (answer.status === "infeasible") into.append(...contradiction(study));
  else if (answer.status === "unbounded") into.append(...direction(study));
  if (answer.certificate !== undefined) {
    const button = element("button", { type: "button", id: "certificate" }, "Download certificate");
    button.addEventListener("click", () => download(answer.certificate!));
    into.append(
      element("div", { class: "actions" }, button),
      element("p", { class: "said" }, "The certificate is the proof in VIPR format; ", element("code", {}, "nuvlp verify"), " checks it without solving."),
    );
  }
}

function verdict(answer: Answer): HTMLElement {
  const line = element("p", { class: "verdict", id: "verdict" });
  const { exactObjective, objective } = answer;
  if (answer.status === "optimal") {
    const exact = exactText(exactObjective, objective);
    line.append("Optimal: ", element("span", { class: "exact" }, exact));
    if (exact.includes("/")) line.append(` ≈ ${decimal(objective)}`);
  } else if (answer.status === "infeasible") line.append("Infeasible: no point satisfies all rows");
  else if (answer.status === "unbounded") line.append("Unbounded: it gets better for ever");
  else line.append("Stopped before there was an answer");
  return line;
}

function proof({ proved, pivots, seconds: time }: Answer): HTMLElement {
  const all = pivots.double + pivots.exact;
  const how = `${plural(all, "pivot")}, ${seconds(time)}`;
  return proved
    ? element("p", { class: "said proved" }, `Proved in exact arithmetic. ${how}.`)
    : element("p", { class: "said" }, `Not proved. ${how}.`);
}

function table(caption: string, heads: readonly string[], lines: readonly (Node | string)[][]): HTMLElement {
  const head = element("tr", {}, ...heads.map((text) => element("th", { scope: "col" }, text)));
  const body = lines.slice(0, MOST).map(([first, ...cells]) =>
    element("tr", {}, element("th", { scope: "row" }, first), ...cells.map((cell) => element("td", {}, cell))),
  );
  const made = element("table", { "aria-label": caption }, element("thead", {}, head), element("tbody", {}, ...body));
  const box = element("div", { class: "scroll", tabindex: "0", role: "region", "aria-label": caption }, made);
  if (lines.length > MOST) box.append(element("p", { class: "said" }, `and ${lines.length - MOST} more`));
  return box;
}

/** A number as it is, and in decimals where that says something else. */
function number(exact: string | undefined, value: number | undefined): Node | string {
  if (value === undefined) return "–";
  const text = exactText(exact, value);
  if (text === decimal(value)) return text;
  return element("span", {}, text, element("span", { class: "decimal" }, decimal(value)));
}

function optimum({ answer, arrays }: Study): HTMLElement[] {
  const variables = answer.variables.map((found) => [
    found.name, number(found.exact, found.value), number(found.exactReducedCost, found.reducedCost),
  ]);
  const rows = answer.rows.map((found) => [
    found.name, number(found.exact, found.activity), number(found.exactSlack, found.slack), number(found.exactDual, found.dual),
  ]);
  const words = [
    ...answer.rows.flatMap((found, k) => worth(found, arrays.isMaximised, arrays.rowLower[k] === arrays.rowUpper[k])),
    ...answer.variables.flatMap((found) => keeps(found)),
  ];
  return [
    element("h3", {}, "Variables"),
    table("Variables", ["name", "value", "reduced cost"], variables),
    element("h3", {}, "Rows"),
    ...(rows.length === 0 ? [element("p", { class: "said" }, "none")] : [table("Rows", ["name", "value", "slack", "dual"], rows)]),
    ...(words.length === 0
      ? []
      : [
          element("h3", {}, "In words"),
          element("ul", { class: "words", id: "words" }, ...words.slice(0, MOST_WORDS).map((line) => element("li", {}, line))),
        ]),
  ];
}

/** "One more unit of wood is worth 95/7, from 120 to 400." */
function worth({ name, dual, exactDual, lowerRange, upperRange }: RowAnswer, isMaximised: boolean, isEquation: boolean): string[] {
  if (!dual) return [];
  const better = dual > 0 === isMaximised;
  const amount = exactText(exactDual?.replace(/^-/, ""), Math.abs(dual));
  const moves = isEquation ? lowerRange : dual > 0 === isMaximised ? upperRange : lowerRange;
  const where = moves && (Number.isFinite(moves[0]) || Number.isFinite(moves[1])) ? `, ${range(moves)}` : "";
  return [`One more unit of ${name} ${better ? "is worth" : "costs"} ${amount}${where}.`];
}

function keeps({ name, value, costRange }: VariableAnswer): string[] {
  if (!costRange || value === 0) return [];
  return [`The plan stays while the objective's coefficient of ${name} is ${range(costRange)}.`];
}

function contradiction({ answer, repair }: Study): HTMLElement[] {
  const members = (answer.conflict ?? []).map(({ kind, name, side }) =>
    kind === "row"
      ? `row ${name} with its ${side} side`
      : `the ${side} bound of ${name}`,
  );
  const why = answer.conflictIsMinimal ? "Without any one of them the others can be satisfied." : "";
  return [
    element("h3", {}, "What excludes each other"),
    element("ul", { class: "words", id: "conflict" }, ...members.map((member) => element("li", {}, member))),
    element("p", { class: "said" }, why),
    ...(repair ? repaired(repair) : []),
  ];
}

function repaired(repair: Repair): HTMLElement[] {
  const title = element("h3", {}, "The least change that helps");
  if (repair.status !== "optimal") return [title, element("p", { class: "said" }, "None: what has to stay excludes itself.")];
  const lines = repair.changes.map(({ kind, name, side, from, to, exactTo }) => {
    const what = kind === "row" ? `row ${name}` : `the ${side} bound of ${name}`;
    return element("li", {}, `Move ${what} from ${decimal(from)} to ${exactText(exactTo, to)}.`);
  });
  const all = `In all ${exactText(repair.exactTotal, repair.total)}${repair.proved ? ", and no less does, which is proved" : ""}.`;
  return [title, element("ul", { class: "words", id: "repair" }, ...lines), element("p", { class: "said" }, all)];
}

function direction({ answer }: Study): HTMLElement[] {
  const lines = answer.variables
    .map(({ name }, k) => ({ name, by: exactText(answer.exactRay?.[k], answer.ray?.[k] ?? 0) }))
    .filter(({ by }) => by !== "0")
    .slice(0, MOST)
    .map(({ name, by }) => element("li", {}, `${name} by ${by}`));
  return [
    element("h3", {}, "Moving on like this, for ever"),
    element("ul", { class: "words", id: "ray" }, ...lines),
  ];
}
