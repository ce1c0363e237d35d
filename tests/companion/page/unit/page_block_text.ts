// Writes what data/decode_block.ts reads, by the text of data/blocks.ts: blocks for tests.
//
// One byte at a time and without any of the page's code, so that a mistake cannot stand on both
// sides.

import { gzipSync } from "node:zlib";

import type { Column } from "../../../../companion/view/page/src/data/blocks";

export interface TestBlock {
  columns: Column[];
  bytes: number[];
}

export function makeBlock(): TestBlock {
  return { columns: [], bytes: [] };
}

// numbers: of `size` bytes each, as integers that are not negative; written plane by plane.
function addPlanes(block: TestBlock, numbers: bigint[], size: number): void {
  for (let plane = 0n; plane < BigInt(size); ++plane) {
    for (const number of numbers) {
      block.bytes.push(Number((number >> (8n * plane)) & 255n));
    }
  }
}

export function addIntegers(block: TestBlock, name: string, values: number[]): void {
  const at = block.bytes.length;
  block.columns.push({ name, encoding: "integers", count: values.length, at });
  const differences = values.map((value, i) => BigInt(value) - BigInt(i > 0 ? values[i - 1] : 0));
  addPlanes(block, differences.map((difference) => BigInt.asUintN(32, difference)), 4);
}

// A number of six digits as m 10^e: the shortest m.
function splitDecimal(value: number): [mantissa: number, exponent: number] {
  if (Number.isNaN(value)) return [3, 63];
  if (!Number.isFinite(value)) return [value > 0 ? 1 : 2, 63];
  if (value === 0) return [0, 0];
  const [digits, exponent] = value.toExponential(5).split("e");
  return [Number(digits.replace(".", "")), Number(exponent) - 5];
}

export function addDecimals(block: TestBlock, name: string, values: number[]): void {
  const at = block.bytes.length;
  block.columns.push({ name, encoding: "decimals", count: values.length, at });
  const codes = values.map((value) => {
    const [mantissa, exponent] = splitDecimal(value);
    return BigInt(mantissa + 2 ** 23) | (BigInt(exponent + 64) << 24n);
  });
  addPlanes(block, codes, 4);
}

export function addDoubles(block: TestBlock, name: string, values: number[]): void {
  const at = block.bytes.length;
  block.columns.push({ name, encoding: "doubles", count: values.length, at });
  const view = new DataView(new ArrayBuffer(8));
  const codes = values.map((value) => {
    view.setFloat64(0, value);
    return view.getBigUint64(0);
  });
  addPlanes(block, codes, 8);
}

export function encodeBlock(block: TestBlock): string {
  return gzipSync(Uint8Array.from(block.bytes)).toString("base64");
}
