// A model of two variables in the plane: where its rows leave room, the level of the objective, and the
// corners that the simplex method went through. A row can be dragged, or moved by the arrow keys.
import { element, shape } from "./dom.js";
import type { Study } from "./study.js";
import { decimal, plural } from "./words.js";

type Point = readonly [number, number];

/** a x + b y <= c, or = where it is a line. */
interface Half {
  a: number;
  b: number;
  c: number;
}

interface Line extends Half {
  name: string;
  row: number;
}

/** The part of the plane that is seen. */
interface Frame {
  low: Point;
  high: Point;
}

const WIDTH = 640;
const HEIGHT = 480;
const MARGIN = 44;
const TINY = 1e-9;

export interface PlaneHooks {
  /** Whether the text says the side of this row so that it can be changed. */
  canMove(row: string): boolean;
  /** The row's side is to be this. */
  move(row: string, side: number): void;
  /** Which step of the path is looked at; kept while a row is dragged. */
  step: number | undefined;
  /** What is seen while a row is dragged. */
  frame: Frame | undefined;
  /** The row that was dragged has been let go. */
  settle(): void;
}

/** Half planes of all rows and bounds. */
function halves({ arrays }: Study): { all: Half[]; lines: Line[] } {
  const all: Half[] = [];
  const lines: Line[] = [];
  for (let row = 0; row < arrays.rows.length; ++row) {
    const terms: [number, number] = [0, 0];
    for (let k = arrays.starts[row]!; k < arrays.starts[row + 1]!; ++k) terms[arrays.indices[k] as 0 | 1] += arrays.values[k]!;
    const [a, b] = terms;
    const [lower, upper] = [arrays.rowLower[row]!, arrays.rowUpper[row]!];
    if (Number.isFinite(upper)) all.push({ a, b, c: upper });
    if (Number.isFinite(lower)) all.push({ a: -a, b: -b, c: -lower });
    if (a === 0 && b === 0) continue;
    const sides = new Set([lower, upper].filter(Number.isFinite));
    for (const c of sides) lines.push({ a, b, c, name: arrays.rows[row]!, row });
  }
  for (const [k, [a, b]] of [[1, 0] as const, [0, 1] as const].entries()) {
    const [lower, upper] = [arrays.lower[k]!, arrays.upper[k]!];
    if (Number.isFinite(upper)) all.push({ a, b, c: upper });
    if (Number.isFinite(lower)) all.push({ a: -a, b: -b, c: -lower });
  }
  return { all, lines };
}

function holds({ a, b, c }: Half, [x, y]: Point): boolean {
  return a * x + b * y <= c + TINY * (1 + Math.abs(c) + Math.abs(a * x) + Math.abs(b * y));
}

/** Where two of them meet. */
function meetings(all: readonly Half[]): Point[] {
  const found: Point[] = [];
  for (let i = 0; i < all.length; ++i)
    for (let j = i + 1; j < all.length; ++j) {
      const [p, q] = [all[i]!, all[j]!];
      const determinant = p.a * q.b - p.b * q.a;
      if (Math.abs(determinant) < TINY) continue;
      found.push([(p.c * q.b - p.b * q.c) / determinant, (p.a * q.c - p.c * q.a) / determinant]);
    }
  return found;
}

/** What is left of a polygon on the side of a half plane that is allowed. */
function clip(polygon: readonly Point[], half: Half): Point[] {
  const left = (point: Point) => half.c - half.a * point[0] - half.b * point[1];
  return polygon.flatMap((point, k) => {
    const next = polygon[(k + 1) % polygon.length]!;
    const [here, there] = [left(point), left(next)];
    const kept: Point[] = here >= -TINY ? [point] : [];
    if (here * there < 0) {
      const t = here / (here - there);
      kept.push([point[0] + t * (next[0] - point[0]), point[1] + t * (next[1] - point[1])]);
    }
    return kept;
  });
}

/** What is to be seen: the origin, all points, and where there are few corners all that meets anywhere. */
function frame(corners: readonly Point[], way: readonly Point[], all: readonly Half[]): Frame {
  const seen = [...corners, ...way, ...(corners.length < 3 ? meetings(all) : [])];
  const spread = (k: 0 | 1): [number, number] => {
    const all = [0, ...seen.map((point) => point[k])];
    const [least, most] = [Math.min(...all), Math.max(...all)];
    const size = most - least || 1;
    return [least - 0.08 * size, most + 0.22 * size];
  };
  const [x, y] = [spread(0), spread(1)];
  return { low: [x[0], y[0]], high: [x[1], y[1]] };
}

/** 1, 2 or 5 times a power of ten, so that there are about six of it. */
function roundStep(span: number): number {
  const power = 10 ** Math.floor(Math.log10(span / 6));
  return [1, 2, 5, 10].map((digit) => digit * power).find((step) => span / step <= 7)!;
}

export class Plane {
  readonly #study: Study;
  readonly #hooks: PlaneHooks;
  readonly #low: Point;
  readonly #high: Point;
  readonly #svg: SVGSVGElement;
  readonly #path: readonly { objective: number; point: Point }[];
  readonly #told = element("p", { id: "step", "aria-live": "polite" });
  #back: HTMLElement | undefined;
  #on: HTMLElement | undefined;
  #step: number;

  constructor(into: HTMLElement, study: Study, hooks: PlaneHooks) {
    this.#study = study;
    this.#hooks = hooks;
    const { answer, arrays } = study;
    const { all, lines } = halves(study);
    // Of a model without a point no way leads anywhere.
    const way = answer.status === "infeasible" ? [] : (answer.path ?? []);
    const path = way.map(({ objective, values }) => ({ objective, point: [values[0]!, values[1]!] as Point }));
    if (answer.status === "optimal") {
      const point: Point = [answer.variables[0]!.value, answer.variables[1]!.value];
      const last = path.at(-1)?.point;
      if (!last || Math.hypot(last[0] - point[0], last[1] - point[1]) > 1e-4 * (1 + Math.hypot(...point)))
        path.push({ objective: answer.objective, point });
      else path[path.length - 1] = { objective: answer.objective, point };
    }
    this.#path = path;
    this.#step = Math.min(hooks.step ?? path.length - 1, path.length - 1);
    const vertices = meetings(all).filter((point) => all.every((half) => holds(half, point)));
    const seen = hooks.frame ?? frame(vertices, path.map(({ point }) => point), all);
    ({ low: this.#low, high: this.#high } = seen);
    this.#svg = shape("svg", { viewBox: `0 0 ${WIDTH} ${HEIGHT}`, role: "group", "aria-label": this.#summary(vertices.length) });
    this.#drawGrid(arrays.columns);
    this.#drawArea(all);
    lines.forEach((line) => this.#drawRow(line));
    this.#drawPath();
    into.replaceChildren(this.#svg, ...(path.length > 0 ? [this.#controls()] : []));
    this.#show();
  }

  #summary(vertices: number): string {
    const { columns } = this.#study.arrays;
    return `The plane of ${columns[0]} and ${columns[1]}: room with ${plural(vertices, "corner")}, ${plural(this.#path.length, "point")} on the way of the solve`;
  }

  #x(x: number): number {
    return MARGIN + ((x - this.#low[0]) / (this.#high[0] - this.#low[0])) * (WIDTH - 2 * MARGIN);
  }

  #y(y: number): number {
    return HEIGHT - MARGIN - ((y - this.#low[1]) / (this.#high[1] - this.#low[1])) * (HEIGHT - 2 * MARGIN);
  }

  #drawGrid(names: readonly string[]): void {
    const [left, right, top, bottom] = [this.#x(this.#low[0]), this.#x(this.#high[0]), this.#y(this.#high[1]), this.#y(this.#low[1])];
    const ticks = (k: 0 | 1) => {
      const step = roundStep(this.#high[k] - this.#low[k]);
      const first = Math.ceil(this.#low[k] / step);
      return Array.from({ length: Math.floor(this.#high[k] / step) - first + 1 }, (_, at) => (first + at) * step);
    };
    for (const x of ticks(0))
      this.#svg.append(
        shape("line", { class: x === 0 ? "axis" : "grid", x1: this.#x(x), x2: this.#x(x), y1: top, y2: bottom }),
        shape("text", { x: this.#x(x), y: bottom + 18, "text-anchor": "middle" }, decimal(x)),
      );
    for (const y of ticks(1))
      this.#svg.append(
        shape("line", { class: y === 0 ? "axis" : "grid", x1: left, x2: right, y1: this.#y(y), y2: this.#y(y) }),
        shape("text", { x: left - 6, y: this.#y(y) + 4, "text-anchor": "end" }, decimal(y)),
      );
    this.#svg.append(
      shape("text", { class: "name", x: right, y: bottom + 34, "text-anchor": "end" }, names[0]!),
      shape("text", { class: "name", x: left - 30, y: top - 12 }, names[1]!),
    );
  }

  #box(): Point[] {
    const [low, high] = [this.#low, this.#high];
    return [low, [high[0], low[1]], high, [low[0], high[1]]];
  }

  #points(points: readonly Point[]): string {
    return points.map(([x, y]) => `${this.#x(x).toFixed(2)},${this.#y(y).toFixed(2)}`).join(" ");
  }

  #drawArea(all: readonly Half[]): void {
    const polygon = all.reduce<Point[]>(clip, this.#box());
    if (polygon.length > 2) this.#svg.append(shape("polygon", { class: "area", id: "area", points: this.#points(polygon) }));
  }

  /** The part of a line that is to be seen. */
  #segment({ a, b, c }: Half): [Point, Point] | undefined {
    const ends = this.#box().flatMap((point, k, box) => {
      const next = box[(k + 1) % 4]!;
      const [here, there] = [point, next].map(([x, y]) => a * x + b * y - c) as [number, number];
      if (here === there || here * there > 0) return [];
      const t = here / (here - there);
      return [[point[0] + t * (next[0] - point[0]), point[1] + t * (next[1] - point[1])] as Point];
    });
    const far = ends.find((end) => ends[0] && Math.hypot(end[0] - ends[0][0], end[1] - ends[0][1]) > TINY);
    return ends[0] && far ? [ends[0], far] : undefined;
  }

  #drawRow(line: Line): void {
    const ends = this.#segment(line);
    if (!ends) return;
    const [from, to] = ends;
    const place = { x1: this.#x(from[0]), y1: this.#y(from[1]), x2: this.#x(to[0]), y2: this.#y(to[1]) };
    const drawn = shape("line", { class: "row", ...place });
    // Where the line leaves the picture on the right its name stands above it, else at its upper end.
    const isOnRight = (point: Point) => point[0] > this.#high[0] - 1e-9 * (this.#high[0] - this.#low[0]);
    const right = [from, to].find(isOnRight);
    const end = right ?? (from[1] > to[1] ? from : to);
    const label = right
      ? { x: this.#x(end[0]) - 6, y: Math.max(this.#y(end[1]) - 10, MARGIN - 4), "text-anchor": "end" }
      : { x: this.#x(end[0]) + 8, y: this.#y(end[1]) + 14, "text-anchor": "start" };
    const name = shape("text", { class: "name", ...label }, line.name);
    if (this.#hooks.canMove(line.name)) this.#svg.append(this.#grip(line, place));
    this.#svg.append(drawn, name);
  }

  /** What is taken hold of to move a row; the arrow keys move it too. */
  #grip(line: Line, place: Record<string, number>): SVGLineElement {
    const grip = shape("line", {
      class: "grip", ...place, tabindex: 0, role: "slider", "aria-label": `Row ${line.name}`,
      "aria-valuenow": line.c, "aria-valuetext": `${line.name} is ${decimal(line.c)}`, "data-row": line.name,
    });
    const span = Math.abs(line.a) * (this.#high[0] - this.#low[0]) + Math.abs(line.b) * (this.#high[1] - this.#low[1]);
    const step = roundStep(span) / 20;
    const sideAt = (event: PointerEvent, matrix: DOMMatrix) => {
      const at = new DOMPoint(event.clientX, event.clientY).matrixTransform(matrix);
      const x = this.#low[0] + ((at.x - MARGIN) / (WIDTH - 2 * MARGIN)) * (this.#high[0] - this.#low[0]);
      const y = this.#low[1] + ((HEIGHT - MARGIN - at.y) / (HEIGHT - 2 * MARGIN)) * (this.#high[1] - this.#low[1]);
      return Math.round((line.a * x + line.b * y) / step) * step;
    };
    const move = (side: number) => this.#hooks.move(line.name, Number(side.toPrecision(6)));
    grip.addEventListener("pointerdown", (down) => {
      down.preventDefault();
      // The picture is drawn anew under the pointer, in the same frame; so the window follows it.
      const matrix = this.#svg.getScreenCTM()!.inverse();
      this.#hooks.frame = { low: this.#low, high: this.#high };
      const follow = (event: PointerEvent) => move(sideAt(event, matrix));
      const end = () => {
        this.#hooks.frame = undefined;
        this.#hooks.settle();
        removeEventListener("pointermove", follow);
        removeEventListener("pointerup", end);
        removeEventListener("pointercancel", end);
      };
      addEventListener("pointermove", follow);
      addEventListener("pointerup", end);
      addEventListener("pointercancel", end);
    });
    grip.addEventListener("keydown", (event) => {
      const by = { ArrowUp: 1, ArrowRight: 1, ArrowDown: -1, ArrowLeft: -1 }[event.key];
      if (by === undefined) return;
      event.preventDefault();
      move(line.c + by * step);
    });
    return grip;
  }

  #drawPath(): void {
    if (this.#path.length === 0) return;
    this.#svg.append(
      shape("line", { class: "level", id: "level" }),
      shape("polyline", { class: "path", points: this.#points(this.#path.map(({ point }) => point)) }),
      ...this.#path.map(({ point }) => shape("circle", { class: "corner", cx: this.#x(point[0]), cy: this.#y(point[1]), r: 4 })),
      shape("circle", { class: "here", id: "here", r: 7 }),
    );
  }

  #controls(): HTMLElement {
    const button = (label: string, text: string, by: number) => {
      const made = element("button", { type: "button", "aria-label": label }, text);
      made.addEventListener("click", () => {
        this.#step = Math.max(0, Math.min(this.#path.length - 1, this.#step + by));
        this.#hooks.step = this.#step;
        this.#show();
      });
      return made;
    };
    this.#back = button("Step back", "←", -1);
    this.#on = button("Step on", "→", 1);
    return element("div", { class: "steps" }, this.#back, this.#on, this.#told);
  }

  /** The step that is looked at. */
  #show(): void {
    const at = this.#path[this.#step];
    if (!at) return;
    const { columns, costs, constant } = this.#study.arrays;
    const [x, y] = at.point;
    this.#svg.querySelector("#here")!.setAttribute("transform", `translate(${this.#x(x)} ${this.#y(y)})`);
    const level = this.#segment({ a: costs[0]!, b: costs[1]!, c: costs[0]! * x + costs[1]! * y });
    if (level) {
      const [from, to] = level;
      const place = { x1: this.#x(from[0]), y1: this.#y(from[1]), x2: this.#x(to[0]), y2: this.#y(to[1]) };
      for (const [key, value] of Object.entries(place)) this.#svg.querySelector("#level")!.setAttribute(key, String(value));
    }
    // Not disabled, which would take the focus from who steps by keys.
    this.#back?.setAttribute("aria-disabled", String(this.#step === 0));
    this.#on?.setAttribute("aria-disabled", String(this.#step === this.#path.length - 1));
    const value = costs[0]! * x + costs[1]! * y + constant;
    this.#told.textContent = `Point ${this.#step + 1} of ${this.#path.length}: ${columns[0]} ${decimal(x)}, ${columns[1]} ${decimal(y)}, objective ${decimal(value)}`;
  }
}
