// The editor: LP highlighted line by line, and what the reader has to say under its place.
import { standardKeymap, history, historyKeymap } from "@codemirror/commands";
import { EditorState, RangeSetBuilder, StateEffect, StateField, type Extension } from "@codemirror/state";
import {
  Decoration, drawSelection, EditorView, keymap, lineNumbers, ViewPlugin, type DecorationSet, type ViewUpdate,
} from "@codemirror/view";
import type { Diagnostic } from "../../dist/error.js";

const TOKENS =
  /(?<comment>\\.*)|(?<keyword>^\s*(?:maximi[sz]e|minimi[sz]e|max|min|maximum|minimum|subject to|such that|s\.t\.|st\.?|bounds?|free|general|generals|integers?|binary|binaries|end)\b)|(?<label>[A-Za-z_!"#$%&()/,;?@'`{}|~][\w.!"#$%&()/,;?@'`{}|~[\]]*\s*(?=:))|(?<name>[A-Za-z_][\w.[\]]*)|(?<number>\d+\.?\d*(?:[eE][+-]?\d+)?|\.\d+)/gi;

const marks = new Map(
  ["comment", "keyword", "label", "number"].map((kind) => [kind, Decoration.mark({ class: `lp-${kind}` })]),
);

function highlight(view: EditorView): DecorationSet {
  const builder = new RangeSetBuilder<Decoration>();
  for (const { from, to } of view.visibleRanges)
    for (let at = from; at <= to; ) {
      const line = view.state.doc.lineAt(at);
      for (const match of line.text.matchAll(TOKENS)) {
        const kind = Object.entries(match.groups!).find(([, text]) => text !== undefined)![0];
        const mark = marks.get(kind);
        const start = line.from + match.index;
        if (mark) builder.add(start, start + match[0].length, mark);
      }
      at = line.to + 1;
    }
  return builder.finish();
}

const highlighting = ViewPlugin.fromClass(
  class {
    decorations: DecorationSet;
    constructor(view: EditorView) {
      this.decorations = highlight(view);
    }
    update(update: ViewUpdate) {
      if (update.docChanged || update.viewportChanged) this.decorations = highlight(update.view);
    }
  },
  { decorations: (plugin) => plugin.decorations },
);

const setProblems = StateEffect.define<DecorationSet>();

/** What is underlined; it moves with the text until the reader has said more. */
const problems = StateField.define<DecorationSet>({
  create: () => Decoration.none,
  update(shown, change) {
    const told = change.effects.find((effect) => effect.is(setProblems));
    return told ? (told.value as DecorationSet) : shown.map(change.changes);
  },
  provide: (field) => EditorView.decorations.from(field),
});

export class Editor {
  readonly #view: EditorView;

  constructor(parent: HTMLElement, onChange: () => void, onSolve: () => void) {
    const extensions: Extension = [
      lineNumbers(),
      history(),
      drawSelection(),
      highlighting,
      problems,
      EditorView.lineWrapping,
      EditorView.contentAttributes.of({ "aria-label": "Model in LP format", spellcheck: "false" }),
      keymap.of([
        { key: "Mod-Enter", run: () => (onSolve(), true) },
        ...historyKeymap,
        ...standardKeymap,
      ]),
      EditorView.updateListener.of((update) => update.docChanged && onChange()),
    ];
    this.#view = new EditorView({ parent, state: EditorState.create({ extensions }) });
  }

  get text(): string {
    return this.#view.state.doc.toString();
  }

  set text(text: string) {
    this.#view.dispatch({ changes: { from: 0, to: this.#view.state.doc.length, insert: text } });
  }

  replace(from: number, to: number, insert: string): void {
    this.#view.dispatch({ changes: { from, to, insert } });
  }

  /** Underlines the words at the places of diagnostics. */
  mark(diagnostics: readonly Diagnostic[]): void {
    const { doc } = this.#view.state;
    const placed = diagnostics.filter(({ line }) => line >= 1 && line <= doc.lines);
    const found = placed.map(({ line: number, column, severity, message, hint }) => {
      const line = doc.line(number);
      const from = Math.min(line.from + [...line.text].slice(0, column - 1).join("").length, line.to);
      const word = /^[\w.]+|^\S+/.exec(line.text.slice(from - line.from))?.[0].length ?? 0;
      // At the end of a line the mark takes the character before.
      const start = word === 0 ? Math.max(from - 1, line.from) : from;
      const title = hint ? `${message}\n${hint}` : message;
      const mark = Decoration.mark({ class: `squiggle ${severity}`, attributes: { title } });
      return { mark, from: start, to: from + word };
    });
    const marked = found.filter(({ from, to }) => from < to).map(({ mark, from, to }) => mark.range(from, to));
    this.#view.dispatch({ effects: setProblems.of(Decoration.set(marked, true)) });
  }

  goTo(line: number, column: number): void {
    const at = this.#view.state.doc.line(line);
    this.#view.dispatch({ selection: { anchor: Math.min(at.from + column - 1, at.to) }, scrollIntoView: true });
    this.#view.focus();
  }
}
