// Turns a block's text into its columns: base64, gzip, byte planes (data/blocks.ts).
//
// A text that is not what the program wrote, such as a page that was cut off, is an Error with a
// sentence. The typed arrays are read in the machine's own byte order, little endian on every
// machine that shows pages.

import type { Block, Column } from "./blocks";

// Value of each character of base64 (RFC 4648, table 1) by its code; 255: not one of them.
const base64Values = makeBase64Values();

function makeBase64Values(): Uint8Array {
  const letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const values = new Uint8Array(256).fill(255);
  for (let i = 0; i < letters.length; ++i) {
    values[letters.charCodeAt(i)] = i;
  }
  return values;
}

// The bytes that a base64 text stands for. White space around it is ignored. A loop over character
// codes: atob would make a second text of the same length first.
export function decodeBase64(text: string): Uint8Array<ArrayBuffer> {
  const trimmed = text.trim();
  let length = trimmed.length;
  if (length % 4 !== 0) {
    throw new Error("The data of this page is not complete: its base64 text is cut off.");
  }
  const padding = trimmed.endsWith("==") ? 2 : trimmed.endsWith("=") ? 1 : 0;
  length -= padding;
  const bytes = new Uint8Array((trimmed.length / 4) * 3 - padding);
  let seen = 0; // bits of all values; more than 63: a character that does not belong there
  let at = 0;
  for (let i = 0; i < length; i += 4) {
    const a = valueAt(trimmed, i, length);
    const b = valueAt(trimmed, i + 1, length);
    const c = valueAt(trimmed, i + 2, length);
    const d = valueAt(trimmed, i + 3, length);
    seen |= a | b | c | d;
    // Bytes beyond the end, which padding stands for, are dropped by the array.
    bytes[at++] = (a << 2) | (b >> 4);
    bytes[at++] = (b << 4) | (c >> 2);
    bytes[at++] = (c << 6) | d;
  }
  if (seen > 63) {
    throw new Error("The data of this page is damaged: its base64 text has foreign characters.");
  }
  return bytes;
}

function valueAt(text: string, i: number, length: number): number {
  if (i >= length) {
    return 0;
  }
  const code = text.charCodeAt(i);
  return code < 256 ? base64Values[code] : 255;
}

async function unpackGzip(bytes: Uint8Array<ArrayBuffer>): Promise<Uint8Array<ArrayBuffer>> {
  try {
    const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip"));
    return new Uint8Array(await new Response(stream).arrayBuffer());
  } catch (error) {
    throw new Error("The data of this page is damaged: it cannot be unpacked.", { cause: error });
  }
}

// The block whose text this is. columns: as the page's JSON lists them.
export async function decodeBlock(text: string, columns: Column[]): Promise<Block> {
  const bytes = await unpackGzip(decodeBase64(text));
  const block: Block = new Map();
  for (const column of columns) {
    block.set(column.name, readColumn(bytes, column));
  }
  return block;
}

type Numbers = Int32Array | Float32Array | Float64Array;

const bytesPerNumber = { integers: 4, decimals: 4, doubles: 8, fixed: 6 };

export function readColumn(bytes: Uint8Array, column: Column): Numbers {
  const size = bytesPerNumber[column.encoding];
  if (size === undefined || column.at + size * column.count > bytes.length) {
    throw new Error(`The data of this page is damaged: column ${column.name} does not fit.`);
  }
  const planes = bytes.subarray(column.at, column.at + size * column.count);
  const width = column.width ?? 1;
  switch (column.encoding) {
    case "integers":
      return placeInRows(readIntegers(planes, column.count), new Int32Array(column.count), width);
    case "decimals":
      return placeInRows(readDecimals(planes, column.count), new Float32Array(column.count), width);
    case "doubles":
      return placeInRows(readDoubles(planes, column.count), new Float64Array(column.count), width);
    case "fixed":
      return placeInRows(
        readFixed(planes, column.count, column.digits ?? 0),
        new Float64Array(column.count),
        width,
      );
  }
}

// values: the first numbers of all rows, then the second ones. placed: receives them row by row.
function placeInRows<T extends Numbers>(values: T, placed: T, width: number): T {
  if (width === 1) {
    return values;
  }
  let i = 0;
  for (let first = 0; first < width; ++first) {
    for (let at = first; at < placed.length; at += width) {
      placed[at] = values[i++];
    }
  }
  return placed;
}

function readIntegers(planes: Uint8Array, count: number): Int32Array {
  const values = new Int32Array(count);
  let value = 0;
  for (let i = 0; i < count; ++i) {
    const difference =
      planes[i] |
      (planes[count + i] << 8) |
      (planes[2 * count + i] << 16) |
      (planes[3 * count + i] << 24);
    value = (value + difference) | 0;
    values[i] = value;
  }
  return values;
}

// Zero of the exponents, and the exponent that stands for what is no finite number.
const exponentZero = 64;
const specialExponent = 127;
const mantissaZero = 1 << 23;
const specialValues = [NaN, Infinity, -Infinity, NaN]; // by mantissa, 1 to 3

// Powers of ten that are exact doubles: a product or quotient with one of them is rounded once.
const largestExactPower = 22;

function readDecimals(planes: Uint8Array, count: number): Float32Array {
  const powers = Array.from({ length: 2 * exponentZero }, (_, e) => Number(`1e${e}`));
  const values = new Float32Array(count);
  for (let i = 0; i < count; ++i) {
    const mantissa =
      (planes[i] | (planes[count + i] << 8) | (planes[2 * count + i] << 16)) - mantissaZero;
    const biased = planes[3 * count + i];
    const exponent = biased - exponentZero;
    if (biased === specialExponent) {
      values[i] = specialValues[mantissa] ?? NaN;
    } else if (exponent < -largestExactPower || exponent > largestExactPower) {
      values[i] = Number(`${mantissa}e${exponent}`);
    } else {
      values[i] = exponent < 0 ? mantissa / powers[-exponent] : mantissa * powers[exponent];
    }
  }
  return values;
}

function readDoubles(planes: Uint8Array, count: number): Float64Array {
  const values = new Float64Array(count);
  const bytes = new Uint8Array(values.buffer);
  for (let plane = 0; plane < 8; ++plane) {
    const from = plane * count;
    for (let i = 0; i < count; ++i) {
      bytes[8 * i + plane] = planes[from + i];
    }
  }
  return values;
}

// Differences 0, -1, 1, -2, 2 ... of integers below 2^53, which a division gives as they were.
function readFixed(planes: Uint8Array, count: number, digits: number): Float64Array {
  const values = new Float64Array(count);
  const scale = Number(`1e${digits}`);
  let value = 0;
  for (let i = 0; i < count; ++i) {
    const low = planes[i] + 2 ** 8 * planes[count + i] + 2 ** 16 * planes[2 * count + i];
    const high =
      planes[3 * count + i] + 2 ** 8 * planes[4 * count + i] + 2 ** 16 * planes[5 * count + i];
    const code = low + 2 ** 24 * high;
    value += low % 2 === 0 ? code / 2 : -(code + 1) / 2;
    values[i] = value / scale;
  }
  return values;
}
