// Numbers and sentences.

/** Up to six significant digits, with a true minus and a narrow space between thousands, at which no line is broken. */
export function decimal(value: number): string {
  if (Number.isNaN(value)) return "–";
  if (!Number.isFinite(value)) return value > 0 ? "∞" : "−∞";
  const text = Math.abs(value) >= 1e9 || (value !== 0 && Math.abs(value) < 1e-4) ? value.toPrecision(6) : undefined;
  return (text ?? new Intl.NumberFormat("en", { maximumSignificantDigits: 6 }).format(value).replaceAll(",", "\u202f")).replace("-", "−");
}

/** The exact number where it can be read, else the decimal. */
export function exactText(exact: string | undefined, value: number): string {
  return exact !== undefined && exact.length <= 24 ? exact.replace("-", "−") : decimal(value);
}

export function range([lower, upper]: readonly [number, number]): string {
  if (lower === -Infinity && upper === Infinity) return "whatever it is";
  if (lower === -Infinity) return `up to ${decimal(upper)}`;
  if (upper === Infinity) return `from ${decimal(lower)}`;
  return lower === upper ? `at ${decimal(lower)} only` : `from ${decimal(lower)} to ${decimal(upper)}`;
}

export function seconds(value: number): string {
  return value < 1 ? `${decimal(Math.max(Math.round(value * 1e4) / 10, 0.1))} ms` : `${value.toFixed(1)} s`;
}

export function plural(count: number, one: string, many = `${one}s`): string {
  return `${count} ${count === 1 ? one : many}`;
}
