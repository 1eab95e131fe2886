// Models that several tests solve.

/** 30 chairs and 70 tables of wood and labour. */
export const factory = {
  rows: 2,
  columns: 2,
  A: [2, 5, 4, 3],
  b: [300, 240],
  c: [30, 70],
};

export const factoryLp = `\\ a factory
Maximize
 profit: 30 chairs + 70 tables
Subject To
 wood: 2 chairs + 5 tables <= 300
 labour: 4 chairs + 3 tables <= 240
End
`;

export const factoryObject = {
  maximize: { chairs: 30, tables: 70 },
  rows: {
    wood: { terms: { chairs: 2, tables: 5 }, upper: 300 },
    labour: { terms: { chairs: 4, tables: 3 }, upper: 240 },
  },
};

export const contradictionLp = `Minimize
 cost: x
Subject To
 most: x + y <= 1
 least: x + y >= 2
End
`;

export const rayLp = `Maximize
 sum: x + y
Subject To
 a: x - y <= 1
 b: y - x <= 1
End
`;

/** A Klee-Minty cube: the core visits all its corners. */
export function cube(dimensions) {
  const names = Array.from({ length: dimensions }, (_, k) => `x${k + 1}`);
  const lines = ["Maximize", " " + names.map((name, k) => `${2 ** (dimensions - 1 - k)} ${name}`).join(" + "), "Subject To"];
  names.forEach((name, k) => {
    const terms = names.slice(0, k).map((other, j) => `${2 ** (k - j + 1)} ${other}`);
    lines.push(` c${k + 1}: ${[...terms, name].join(" + ")} <= ${5n ** BigInt(k + 1)}`);
  });
  return lines.join("\n") + "\nEnd\n";
}

/** A dense model of numbers with many digits, of which the exact stages have a long time. */
export function slowLp(size = 220, digits = 40) {
  let state = 7;
  const next = () => (state = Math.imul(state, 1103515245) + 12345) >>> 16;
  const fraction = () => Array.from({ length: digits }, next).join("").slice(0, digits);
  const names = Array.from({ length: size }, (_, k) => `x${k + 1}`);
  const sum = (signs) => names.map((name) => `${signs[next() % 2]} ${next() % 1000}.${fraction()} ${name}`).join("\n ");
  const rows = names.map((_, k) => ` r${k + 1}: ${sum("+-")} <= ${(next() % 1000) + 1000}`);
  return `Maximize\n ${sum("++")}\nSubject To\n all: ${names.join("\n + ")} <= 5000\n${rows.join("\n")}\nEnd\n`;
}
