// The page: what is typed is solved in the worker, and the answer shown.
import { NuvError, type Diagnostic } from "../../dist/error.js";
import { WorkerSolver } from "../../dist/worker.js";
import { showAnswer } from "./answer-view.js";
import { showCharts } from "./charts.js";
import { byId, element } from "./dom.js";
import { Editor } from "./editor.js";
import { examples } from "./examples.js";
import { Plane, type PlaneHooks } from "./plane.js";
import { addressOf, textIn } from "./share.js";
import { sideOf } from "./sides.js";
import type { Study } from "./study.js";
import { plural, seconds } from "./words.js";

/** The worker's program, put in by the build. */
declare const WORKER: string;

/** A model that takes longer than this to type is solved when it is asked for. */
const LARGEST_WHILE_TYPING = 100_000;
const PAUSE = 120;
const LONG = 250;

const workerAddress = URL.createObjectURL(new Blob([WORKER], { type: "text/javascript" }));
const solver = new WorkerSolver(() => new Worker(workerAddress));
const editor = new Editor(byId("editor"), typed, () => void solve());
const chosen = byId<HTMLSelectElement>("example");
const [state, problems, stop] = [byId("state"), byId("problems"), byId<HTMLButtonElement>("stop")];
let running: AbortController | undefined;
let waiting: ReturnType<typeof setTimeout> | undefined;
let step: number | undefined;

function typed(): void {
  clearTimeout(waiting);
  step = undefined;
  // A text that was changed is no longer the example, which can be chosen again.
  if (examples[chosen.value] !== editor.text) chosen.selectedIndex = -1;
  if (editor.text.length <= LARGEST_WHILE_TYPING) waiting = setTimeout(() => void solve(), PAUSE);
  else state.textContent = "Press Solve when the model is ready.";
}

async function solve(): Promise<void> {
  clearTimeout(waiting);
  running?.abort();
  const mine = (running = new AbortController());
  const { text } = editor;
  const began = performance.now();
  const long = setTimeout(() => {
    stop.hidden = false;
    state.textContent = "Solving…";
  }, LONG);
  try {
    const answer = await solver.solve(text, {
      relax: true,
      signal: mine.signal,
      onProgress: ({ pivots, seconds: time }) => (state.textContent = `Solving: ${plural(pivots, "pivot")}, ${seconds(time)}`),
    });
    if (running === mine) show(answer as unknown as Study, performance.now() - began);
  } catch (error) {
    if (running === mine) fail(error);
  } finally {
    clearTimeout(long);
    if (running === mine) {
      running = undefined;
      stop.hidden = true;
    }
  }
}

function show(study: Study, milliseconds: number): void {
  tell(study.diagnostics);
  state.textContent = `Answered in ${seconds(milliseconds / 1000)}.`;
  showAnswer(byId("answer"), study, (certificate) => save("certificate.vipr", certificate));
  if (study.arrays.columns.length !== 2) return showCharts(byId("picture"), study);
  const held = document.activeElement?.getAttribute("data-row");
  new Plane(byId("picture"), study, hooks);
  // The row that is moved by keys keeps them.
  if (held) byId("picture").querySelector<SVGElement>(`[data-row=${CSS.escape(held)}]`)?.focus();
}

const hooks: PlaneHooks = {
  get step() {
    return step;
  },
  set step(value) {
    step = value;
  },
  frame: undefined,
  settle: () => void solve(),
  canMove: (row) => sideOf(editor.text, row) !== undefined,
  move(row, side) {
    const place = sideOf(editor.text, row);
    if (!place || Number(editor.text.slice(place.from, place.to)) === side) return;
    editor.replace(place.from, place.to, String(side));
    void solve();
  },
};

function fail(error: unknown): void {
  const isAborted = error instanceof DOMException && error.name === "AbortError";
  const diagnostics = error instanceof NuvError ? error.diagnostics : [];
  tell(diagnostics);
  const message = isAborted ? "Stopped." : error instanceof NuvError ? "The model cannot be read yet." : String(error);
  state.textContent = message;
  const said = element("p", { class: "said", id: "verdict" }, message);
  byId("answer").replaceChildren(said);
  byId("picture").replaceChildren();
}

/** Diagnostics under the editor and in it. */
function tell(diagnostics: readonly Diagnostic[]): void {
  editor.mark(diagnostics);
  problems.replaceChildren(
    ...diagnostics.map(({ severity, message, hint, line, column, code }) => {
      const button = element("button", { type: "button" }, line ? `Line ${line}: ${message}` : message);
      button.addEventListener("click", () => line && editor.goTo(line, column));
      return element("li", { class: severity, "data-code": code }, button, hint ? element("span", { class: "hint" }, hint) : undefined);
    }),
  );
}

function save(name: string, text: string): void {
  const address = URL.createObjectURL(new Blob([text], { type: "text/plain" }));
  element("a", { href: address, download: name }).click();
  setTimeout(() => URL.revokeObjectURL(address), 1000);
}

function note(text: string): void {
  byId("note").textContent = text;
  setTimeout(() => (byId("note").textContent = ""), 2500);
}

async function share(): Promise<void> {
  const address = await addressOf(editor.text);
  history.replaceState(null, "", address);
  try {
    await navigator.clipboard.writeText(address);
    note("The link is on the clipboard.");
  } catch {
    note("The link is in the address bar.");
  }
}

async function start(): Promise<void> {
  chosen.append(...Object.keys(examples).map((name) => element("option", {}, name)));
  chosen.addEventListener("change", () => (editor.text = examples[chosen.value]!));
  byId("solve").addEventListener("click", () => void solve());
  stop.addEventListener("click", () => running?.abort());
  byId("share").addEventListener("click", () => void share());
  byId<HTMLInputElement>("file").addEventListener("change", async ({ target }) => {
    const file = (target as HTMLInputElement).files?.[0];
    if (file) editor.text = await file.text();
  });
  const shared = async () => {
    const text = await textIn(location.hash);
    if (text !== undefined) editor.text = text;
    return text !== undefined;
  };
  addEventListener("hashchange", () => void shared());
  if (!(await shared())) editor.text = examples["Factory"]!;
  await solve();
}

void start();
