// Numbers as text, and round numbers for the limits of bands.

// Digits of the result files, and of what the page computes from them.
export const fileDigits = 6;
export const computedDigits = 5;

// As the result files show numbers, the characters of printf's "%.6g" (but "nan" without a sign):
// six significant digits, no trailing zeros, an exponent below 1e-4 and from 1e6 on.
export function formatFile(value: number): string {
  return formatDigits(value, fileDigits);
}

// Numbers made from those of result files: five digits are sure.
export function formatComputed(value: number): string {
  return formatDigits(value, computedDigits);
}

// A sum or difference of numbers of about `size`: digits beyond the fifth of `size` are not sure
// and are left out, so that what is zero shows as zero.
export function formatSure(value: number, size: number): string {
  if (!Number.isFinite(value) || !(size > 0) || !Number.isFinite(size)) {
    return formatComputed(value);
  }
  const step = `e${Math.floor(Math.log10(size)) - computedDigits + 1}`;
  const steps = Math.round(value / Number(`1${step}`));
  return formatComputed(Number(`${steps === 0 ? 0 : steps}${step}`));
}

// The value with so many digits.
export function roundDigits(value: number, digits: number): number {
  return Number.isFinite(value) ? Number(value.toPrecision(digits)) : value;
}

// A number of the model file with as many digits as tell it from all other doubles, which are those
// of the file.
export function formatPlain(value: number): string {
  if (Number.isNaN(value)) return "nan";
  if (!Number.isFinite(value)) return value > 0 ? "inf" : "-inf";
  return String(value);
}

// "%.{digits}g" of C.
export function formatDigits(value: number, digits: number): string {
  if (!Number.isFinite(value)) return formatPlain(value);
  if (value === 0) return Object.is(value, -0) ? "-0" : "0";
  const [mantissa, exponentText] = roundToEven(value, digits).split("e");
  const exponent = Number(exponentText);
  if (exponent >= -4 && exponent < digits) {
    const text = Number(`${mantissa}e${exponent}`).toFixed(digits - 1 - exponent);
    return text.includes(".") ? text.replace(/\.?0+$/, "") : text;
  }
  const sign = exponent < 0 ? "-" : "+";
  const digitsText = mantissa.includes(".") ? mantissa.replace(/\.?0+$/, "") : mantissa;
  return `${digitsText}e${sign}${String(Math.abs(exponent)).padStart(2, "0")}`;
}

// toExponential with `digits` digits. That rounds ties away from zero; printf rounds them to the
// even digit. A double on a tie has zeros behind the 5 in all of 30 digits, any other double has
// not.
function roundToEven(value: number, digits: number): string {
  const rounded = value.toExponential(digits - 1);
  const [exact, exponent] = value.toExponential(30).split("e");
  const tail = exact.replace(/[-.]/g, "").slice(digits);
  if (!/^50*$/.test(tail)) return rounded;
  const kept = exact.slice(0, exact.length - tail.length).replace(/\.$/, "");
  return Number(kept[kept.length - 1]) % 2 === 0 ? `${kept}e${exponent}` : rounded;
}

// Steps that make limits easy to read, as parts of a power of ten.
const roundSteps = [1, 1.2, 1.5, 2, 2.5, 3, 4, 5, 6, 8, 10];

// Where all values are one number, the range is this part of it.
const narrowest = 1e-3;

export interface RoundRange {
  range: [number, number]; // contains all values
  limits: number[]; // bands + 1, ascending
}

// The range of `bands` equal bands with round limits that holds lowest .. highest. isSymmetric:
// with zero in its middle. bands 0 (continuous) has the limits of 10 bands.
export function findRoundRange(
  lowest: number,
  highest: number,
  bands: number,
  isSymmetric: boolean,
): RoundRange {
  const count = bands > 0 ? bands : 10;
  const size = Math.max(Math.abs(lowest), Math.abs(highest));
  if (isSymmetric) {
    const step = findRoundStep(size === 0 ? 2 / count : (2 * size) / count);
    return makeLimits(-count / 2, step, count);
  }
  const width = Math.max(highest - lowest, narrowest * size);
  let step = findRoundStep(width === 0 ? 1 / count : width / count);
  // Rounding the lower limit down may push the upper one below the highest value.
  for (let tries = 0; tries < roundSteps.length; ++tries) {
    const first = Math.floor(lowest / step);
    if ((first + count) * step >= highest) return makeLimits(first, step, count);
    step = findRoundStep(step * 1.01);
  }
  // One band with values of both signs.
  return { range: [lowest, highest], limits: listLimits([lowest, highest], count) };
}

// Limits first * step, (first + 1) * step ... with the digits that these numbers have.
function makeLimits(first: number, step: number, count: number): RoundRange {
  const limits = Array.from({ length: count + 1 }, (_, i) =>
    Number(((first + i) * step).toPrecision(12)),
  );
  return { range: [limits[0], limits[count]], limits };
}

// The smallest round step that is not smaller; steps that differ by rounding alone are one.
function findRoundStep(smallest: number): number {
  const power = Math.floor(Math.log10(smallest));
  const part = roundSteps.find((step) => Number(`${step}e${power}`) >= smallest * (1 - 1e-12));
  return Number(`${part ?? 10}e${power}`);
}

// Limits of bands of any range: as they are.
export function listLimits(range: [number, number], bands: number): number[] {
  const count = bands > 0 ? bands : 10;
  return Array.from(
    { length: count + 1 },
    (_, i) => range[0] + ((range[1] - range[0]) * i) / count,
  );
}
