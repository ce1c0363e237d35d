// The blocks of the page: base64, gzip, byte planes.
import assert from "node:assert/strict";
import { test } from "node:test";
import { gzipSync } from "node:zlib";

import {
  decodeBase64,
  decodeBlock,
  readColumn,
} from "../../../../companion/view/page/src/data/decode_block";
import { addDecimals, addDoubles, addIntegers, encodeBlock, makeBlock } from "./page_block_text";

test("base64 texts of RFC 4648, section 10", () => {
  const texts: [string, string][] = [
    ["", ""], ["Zg==", "f"], ["Zm8=", "fo"], ["Zm9v", "foo"], ["Zm9vYg==", "foob"],
    ["Zm9vYmE=", "fooba"], ["Zm9vYmFy", "foobar"],
  ];
  for (const [base64, text] of texts) {
    assert.equal(Buffer.from(decodeBase64(base64)).toString("latin1"), text);
  }
});

test("base64 gives each byte back, with white space around it", () => {
  const bytes = Uint8Array.from({ length: 256 }, (_, i) => i);
  assert.deepEqual(decodeBase64(`\n ${Buffer.from(bytes).toString("base64")}\n`), bytes);
});

test("base64 that is cut off or has foreign characters is refused", () => {
  assert.throws(() => decodeBase64("Zm9vY"), /cut off/);
  assert.throws(() => decodeBase64("Zm9v*mFy"), /foreign/);
  assert.throws(() => decodeBase64("Zm9\u20acYmFy"), /foreign/);
});

test("integers: differences modulo 2^32, lowest bytes first", () => {
  // 5, then 5 + 1 = 6, then 6 - 7 = -1 (difference 2^32 - 7 = 0xfffffff9).
  const bytes = Uint8Array.from([5, 1, 0xf9, 0, 0, 0xff, 0, 0, 0xff, 0, 0, 0xff]);
  const column = { name: "n", encoding: "integers" as const, count: 3, at: 0 };
  assert.deepEqual(readColumn(bytes, column), Int32Array.from([5, 6, -1]));
});

test("decimals: m + 2^23 in three planes, e + 64 in one", () => {
  // 123456e-3: 2^23 + 123456 = 0x81e240; -1e6: m = -1, 2^23 - 1 = 0x7fffff, e = 6; then NaN, -inf.
  const bytes = Uint8Array.from([
    0x40, 0xff, 3, 2, 0xe2, 0xff, 0, 0, 0x81, 0x7f, 0x80, 0x80, 61, 70, 127, 127,
  ]);
  const column = { name: "d", encoding: "decimals" as const, count: 4, at: 0 };
  const values = readColumn(bytes, column);
  assert.deepEqual(values, Float32Array.from([123.456, -1e6, NaN, -Infinity]));
});

test("decimals of six digits come back as the nearest floats", () => {
  const values = [0, 1, -1, 999999, 1.23456e-5, -7.00001e12, 3.40282e38, 1.17550e-38, 1e-30, 0.1,
    -0.333333, 1.4e-45, NaN, Infinity, -Infinity, 210000, 8.16667e25, 6.54321e-25];
  const block = makeBlock();
  addDecimals(block, "values", values);
  const column = block.columns[0];
  // A literal of the language is rounded once, to double; it has 9 digits more than a float.
  assert.deepEqual(readColumn(Uint8Array.from(block.bytes), column), Float32Array.from(values));
});

test("six digits of any float above 1.2e-38 survive: toPrecision(6) gives them back", () => {
  // A plain linear congruential generator (Knuth 1997, sec. 3.3.4): the same numbers each time.
  let seed = 1n;
  const next = () => Number((seed = (seed * 6364136223846793005n + 1442695040888963407n) &
    0xffffffffffffffffn) >> 40n) / 2 ** 24;
  const texts = Array.from({ length: 20000 }, () =>
    Number(`${100000 + Math.floor(899999 * next())}e${Math.floor(76 * next()) - 43}`)
      .toExponential(5));
  const block = makeBlock();
  addDecimals(block, "values", texts.map(Number));
  const values = readColumn(Uint8Array.from(block.bytes), block.columns[0]);
  texts.forEach((text, i) => {
    if (Math.abs(Number(text)) > 1.2e-38 && Math.abs(Number(text)) < 3.4e38) {
      assert.equal(Number(values[i].toPrecision(6)), Number(text));
    }
  });
});

test("doubles come back bit by bit", () => {
  const values = [0, -0, Math.PI, -1e308, 5e-324, NaN, Infinity, 0.1];
  const block = makeBlock();
  addDoubles(block, "values", values);
  const read = readColumn(Uint8Array.from(block.bytes), block.columns[0]);
  values.forEach((value, i) => assert.ok(Object.is(read[i], value)));
});

test("fixed: zigzag differences of integers over a power of ten", () => {
  // -1.5, 2.25, 1e10 with two decimal places: n = -150, 225, 10^12; differences -150, 375,
  // 999999999775, written 299 = 0x12b, 750 = 0x2ee, 1999999999550 = 0x1d1a94a1e3e.
  const bytes = Uint8Array.from([
    0x2b, 0xee, 0x3e, 0x01, 0x02, 0x1e, 0, 0, 0x4a, 0, 0, 0xa9, 0, 0, 0xd1, 0, 0, 0x01,
  ]);
  const column = { name: "x", encoding: "fixed" as const, count: 3, at: 0, digits: 2 };
  assert.deepEqual(readColumn(bytes, column), Float64Array.from([-1.5, 2.25, 1e10]));
  const whole = { name: "x", encoding: "fixed" as const, count: 1, at: 0 };
  assert.deepEqual(readColumn(Uint8Array.from([9, 0, 0, 0, 0, 0]), whole), Float64Array.from([-5]));
});

test("rows of a width: the first numbers of all rows come first", () => {
  const block = makeBlock();
  addIntegers(block, "nodes", [1, 4, 2, 5, 3, 6]);
  addDecimals(block, "forces", [0.5, 2, 1, 3]);
  addDoubles(block, "z", [0.1, 0.2, 0.3]);
  const bytes = Uint8Array.from(block.bytes);
  const widths = [3, 2, 3];
  const read = block.columns.map((column, i) => readColumn(bytes, { ...column, width: widths[i] }));
  assert.deepEqual(read[0], Int32Array.from([1, 2, 3, 4, 5, 6]));
  assert.deepEqual(read[1], Float32Array.from([0.5, 1, 2, 3]));
  assert.deepEqual(read[2], Float64Array.from([0.1, 0.2, 0.3]));
});

test("a block with three columns", async () => {
  const block = makeBlock();
  addIntegers(block, "nodes", [3, 2, -2147483648, 2147483647]);
  addDoubles(block, "coordinates", [0.1, 0.2]);
  addDecimals(block, "forces", [-12.5]);
  const read = await decodeBlock(encodeBlock(block), block.columns);
  assert.deepEqual(read.get("nodes"), Int32Array.from([3, 2, -2147483648, 2147483647]));
  assert.deepEqual(read.get("coordinates"), Float64Array.from([0.1, 0.2]));
  assert.deepEqual(read.get("forces"), Float32Array.from([-12.5]));
});

test("an empty block", async () => {
  const block = makeBlock();
  addIntegers(block, "none", []);
  const read = await decodeBlock(encodeBlock(block), block.columns);
  assert.deepEqual(read.get("none"), new Int32Array(0));
});

test("a damaged block is refused with a sentence", async () => {
  const block = makeBlock();
  addIntegers(block, "nodes", [1, 2, 3]);
  const bytes = gzipSync(Uint8Array.from(block.bytes));
  bytes[bytes.length - 8] ^= 1; // the check sum of RFC 1952
  await assert.rejects(decodeBlock(bytes.toString("base64"), block.columns), /cannot be unpacked/);
  const tooLong = [{ ...block.columns[0], count: 4 }];
  await assert.rejects(decodeBlock(encodeBlock(block), tooLong), /column nodes does not fit/);
});
