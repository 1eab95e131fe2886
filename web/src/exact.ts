/** A fraction in lowest terms; the denominator is positive. */
export interface Fraction {
  readonly num: bigint;
  readonly den: bigint;
}

/** A number as a model takes it: 0.1 and "0.1" are one tenth exactly, and "1/3" is a third. */
export type Quantity = number | bigint | string | Fraction;

/** The fraction that an exact number's text says: "29700/7". */
export function toFraction(exact: string): Fraction {
  const [num = "", den = "1"] = exact.split("/");
  return { num: BigInt(num), den: BigInt(den) };
}

/** The double nearest to a fraction, also where neither part of it fits into one. */
export function toNumber({ num, den }: Fraction): number {
  if (num < 0n) return -toNumber({ num: -num, den });
  const direct = [Number(num), Number(den)] as const;
  if (Number.isSafeInteger(direct[0]) && Number.isSafeInteger(direct[1])) return direct[0] / direct[1];
  // 66 or more significant bits of the quotient, the last one standing for all behind it, so that
  // the one rounding below is that of the quotient itself.
  const shift = bits(den) - bits(num) + 66;
  const [scaled, divisor] = shift >= 0 ? [num << BigInt(shift), den] : [num, den << BigInt(-shift)];
  const quotient = (scaled / divisor) | (scaled % divisor === 0n ? 0n : 1n);
  return scale(Number(quotient), -shift);
}

function bits(value: bigint): number {
  return value.toString(16).length * 4;
}

/** value * 2^power in two steps, the first of which is exact. */
function scale(value: number, power: number): number {
  const half = Math.trunc(power / 2);
  return value * 2 ** half * 2 ** (power - half);
}
