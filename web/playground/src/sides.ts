// Where the number on the right of a row stands in the text.
export interface Side {
  from: number;
  to: number;
}

/** The number behind the relation of the row with this label; undefined for all that is not so plain. */
export function sideOf(text: string, name: string): Side | undefined {
  const label = new RegExp(`(?:^|\\s)${name.replace(/[.*+?^${}()|[\]\\]/g, "\\$&")}\\s*:`, "m").exec(text);
  if (!label) return undefined;
  const begin = label.index + label[0].length;
  const rest = text.slice(begin);
  const end = /^[^\n]*?:|\n\s*(?:bounds?|free|general|integer|binar|end)\b/im.exec(rest.slice(1))?.index ?? rest.length;
  const relation = /(?:<=|>=|=<|=>|<|>|=)\s*([+-]?(?:\d+\.?\d*|\.\d+)(?:e[+-]?\d+)?)\s*$/im.exec(rest.slice(0, Math.max(end + 1, rest.indexOf("\n"))));
  if (!relation) return undefined;
  const to = begin + relation.index + relation[0].trimEnd().length;
  return { from: to - relation[1]!.length, to };
}
