// Limits of bands as text, and numbers that a person types.
import assert from "node:assert/strict";
import { test } from "node:test";

import { formatLimits, parseNumber } from "../../../../companion/view/page/src/ui/numbers";

test("limits that are round have the decimals that they need", () => {
  assert.deepEqual(formatLimits([0, 30, 60, 90]), ["0", "30", "60", "90"]);
  assert.deepEqual(formatLimits([0, 2.5, 5, 7.5]), ["0", "2.5", "5.0", "7.5"]);
  assert.deepEqual(formatLimits([-0.02, 0, 0.02]), ["-0.02", "0", "0.02"]);
  // As sums of floating-point numbers give them.
  assert.deepEqual(formatLimits([0.1, 0.1 + 0.2, 0.5]), ["0.1", "0.3", "0.5"]);
});

test("large and small limits share an exponent", () => {
  assert.deepEqual(formatLimits([0, 8e5, 1.6e6]), ["0", "0.8e6", "1.6e6"]);
  assert.deepEqual(formatLimits([0, 1e5]), ["0", "100e3"]);
  assert.deepEqual(formatLimits([0, 99999]), ["0", "99999"]);
  assert.deepEqual(formatLimits([0, 2e-5, 4e-5]), ["0", "20e-6", "40e-6"]);
  assert.deepEqual(formatLimits([-1e-3, 1e-3]), ["-1e-3", "1e-3"]);
  assert.deepEqual(formatLimits([0, 0, 0]), ["0", "0", "0"]);
});

test("limits that are not round have six digits, more where neighbours would be alike", () => {
  assert.deepEqual(formatLimits([0, 100 / 3]), ["0", "33.3333"]);
  assert.deepEqual(formatLimits([100, 100.00001]), ["100.00000", "100.00001"]);
});

test("typed numbers: point or comma, either minus; else none", () => {
  assert.equal(parseNumber(" -1.5e3 "), -1500);
  assert.equal(parseNumber("0,25"), 0.25);
  assert.equal(parseNumber("\u22122"), -2);
  for (const text of ["", "  ", "abc", "1 2", "1,2,3", "Infinity", "NaN"]) {
    assert.equal(parseNumber(text), null, text);
  }
});
