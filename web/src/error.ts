/** One thing that a reader or a solve has to say. */
export interface Diagnostic {
  readonly severity: "error" | "warning" | "note";
  /** For programs, the same in every version: "lp.unknown-section". */
  readonly code: string;
  /** For people. */
  readonly message: string;
  /** What to do about it; empty where there is nothing. */
  readonly hint: string;
  /** From 1; 0 where there is no such place. Columns count characters. */
  readonly line: number;
  readonly column: number;
  /** The line of the text, where there is one. */
  readonly excerpt: string;
}

/** What every function here throws when it cannot do what it was asked for. */
export class NuvError extends Error {
  override readonly name = "NuvError";
  readonly code: string;
  readonly hint: string;
  readonly line: number;
  readonly column: number;
  /** All that was said, warnings and notes included. */
  readonly diagnostics: readonly Diagnostic[];

  constructor(first: Partial<Diagnostic> & { code: string; message: string }, all?: readonly Diagnostic[]) {
    super(first.line ? `${first.line}:${first.column}: ${first.message}` : first.message);
    this.code = first.code;
    this.hint = first.hint ?? "";
    this.line = first.line ?? 0;
    this.column = first.column ?? 0;
    this.diagnostics = all ?? [
      { severity: "error", hint: "", line: 0, column: 0, excerpt: "", ...first },
    ];
  }
}

/** An error in what the caller passed. */
export function wrong(message: string, hint = ""): NuvError {
  return new NuvError({ code: "js.argument", message, hint });
}
