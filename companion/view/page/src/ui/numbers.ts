// How the page writes numbers beside the picture, and reads those that a person types.

import { formatDigits } from "../fields/ticks";

const FileDigits = 6; // as result files have them

export function formatNumber(value: number, digits = FileDigits): string {
  return formatDigits(value, digits);
}

export function formatPlace(place: readonly number[], digits = FileDigits): string {
  return `(${place.map((value) => formatDigits(value, digits)).join(", ")})`;
}

// Limits of bands: all with the same exponent, a multiple of three, and as many decimals as keep
// them exact and apart, six digits at most where these are enough: "0.8e6", "1.2e6".
export function formatLimits(limits: readonly number[]): string[] {
  const size = Math.max(...limits.map(Math.abs));
  const power = size > 0 ? Math.floor(Math.log10(size) + Slack) : 0;
  const exponent = power >= LeastPower && power < MostPower ? 0 : 3 * Math.floor(power / 3);
  const parts = limits.map((value) => value / 10 ** exponent);
  const slack = Slack * 10 ** (power - exponent);
  const isExact = (digits: number): boolean =>
    parts.every((part) => Math.abs(Number(part.toFixed(digits)) - part) <= slack);
  const areApart = (digits: number): boolean =>
    new Set(parts.map((part) => part.toFixed(digits))).size === parts.length;
  const most = Math.max(0, FileDigits - 1 - (power - exponent));
  let decimals = 0;
  while (decimals < most && !isExact(decimals)) decimals++;
  while (decimals < MostDecimals && !areApart(decimals)) decimals++;
  const suffix = exponent === 0 ? "" : `e${exponent}`;
  return parts.map((part) => {
    const text = part.toFixed(decimals);
    return Number(text) === 0 ? "0" : `${text}${suffix}`;
  });
}

// Powers of ten of the largest limit that are written without an exponent: 0.01 to 99999.
const LeastPower = -2;
const MostPower = 5;
const MostDecimals = 15;
const Slack = 1e-12; // log10(1000) may come out a little below 3

// A number that a person typed; a decimal comma is taken as a point. Null: no number.
export function parseNumber(text: string): number | null {
  const cleaned = text.trim().replace("−", "-").replace(",", ".");
  if (cleaned === "") return null;
  const value = Number(cleaned);
  return Number.isFinite(value) ? value : null;
}
