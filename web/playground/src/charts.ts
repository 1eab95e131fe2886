// Larger models: the rows whose duals are largest, as bars.
import { element, shape } from "./dom.js";
import type { Study } from "./study.js";
import { decimal } from "./words.js";

const WIDTH = 640;
const BAR = 26;
const LABEL = 160;
const MOST = 12;

interface Bar {
  name: string;
  value: number;
}

function bars(title: string, all: readonly Bar[]): HTMLElement[] {
  const shown = [...all].sort((x, y) => Math.abs(y.value) - Math.abs(x.value)).slice(0, MOST).filter(({ value }) => value !== 0);
  if (shown.length === 0) return [];
  const most = Math.abs(shown[0]!.value);
  const svg = shape("svg", { viewBox: `0 0 ${WIDTH} ${BAR * shown.length + 8}`, role: "img", "aria-label": `${title}: ${shown.map(({ name, value }) => `${name} ${decimal(value)}`).join(", ")}` });
  shown.forEach(({ name, value }, k) => {
    const width = (Math.abs(value) / most) * (WIDTH - LABEL - 110);
    const y = 4 + BAR * k;
    svg.append(
      shape("text", { class: "name", x: LABEL - 8, y: y + 17, "text-anchor": "end" }, name.length > 20 ? `${name.slice(0, 19)}…` : name),
      shape("rect", { class: "bar", x: LABEL, y: y + 4, width: Math.max(width, 1), height: BAR - 10, rx: 2 }),
      shape("text", { x: LABEL + width + 8, y: y + 17 }, decimal(value)),
    );
  });
  return [element("h3", {}, title), svg as unknown as HTMLElement];
}

export function showCharts(into: HTMLElement, { answer }: Study): void {
  into.replaceChildren(
    ...bars("Largest values", answer.variables.filter(({ value }) => !Number.isNaN(value))),
    ...bars("What one more unit of a row is worth", answer.rows.map(({ name, dual }) => ({ name, value: dual ?? 0 }))),
  );
  if (into.childElementCount === 0) into.replaceChildren(element("p", { class: "said" }, "There is nothing to draw."));
}
