// Numbers as text, and round limits.
import assert from "node:assert/strict";
import { test } from "node:test";

import {
  findRoundRange,
  formatComputed,
  formatFile,
  formatPlain,
  formatSure,
  listLimits,
  roundDigits,
} from "../../../../companion/view/page/src/fields/ticks";

test("six digits are the characters of printf's %.6g", () => {
  // The texts are what printf of the C library wrote.
  const texts: [number, string][] = [
    [0, "0"], [-0, "-0"], [1, "1"], [-1, "-1"], [2.5, "2.5"], [123456, "123456"],
    [1234567, "1.23457e+06"], [999999.4, "999999"], [999999.5, "1e+06"], [1e6, "1e+06"],
    [1e-4, "0.0001"], [9.99999e-5, "9.99999e-05"], [0.000123456789, "0.000123457"],
    [1e21, "1e+21"], [1e100, "1e+100"], [-2.5e-310, "-2.5e-310"], [0.1 + 0.2, "0.3"],
    [1 / 3, "0.333333"], [100000, "100000"], [3.14159265, "3.14159"], [210000, "210000"],
    [1.5e-5, "1.5e-05"], [33554432.5, "3.35544e+07"],
    // Ties go to the even digit.
    [123456.5, "123456"], [123457.5, "123458"], [1000005, "1e+06"], [1000015, "1.00002e+06"],
    [Infinity, "inf"], [-Infinity, "-inf"], [NaN, "nan"],
  ];
  for (const [value, text] of texts) assert.equal(formatFile(value), text);
});

test("five digits for what is computed", () => {
  const texts: [number, string][] = [
    [123456, "1.2346e+05"], [100005, "1e+05"], [0.123456, "0.12346"], [12, "12"],
  ];
  for (const [value, text] of texts) assert.equal(formatComputed(value), text);
});

test("sums: only the digits that are sure", () => {
  // Five digits of 1234.5 are tenths.
  const texts: [number, number, string][] = [
    [0.0123456, 1234.5, "0"], [-0.04, 1234.5, "0"], [-0.06, 1234.5, "-0.1"],
    [1234.56, 1234.5, "1234.6"], [3.14159, 0, "3.1416"], [12.3456, 9.87, "12.346"],
    [NaN, 1, "nan"], [1, NaN, "1"], [1.23456e-9, 1e-8, "1.235e-09"], [5e8, 3e12, "5e+08"],
  ];
  for (const [value, size, text] of texts) assert.equal(formatSure(value, size), text);
});

test("values with fewer digits", () => {
  assert.equal(roundDigits(123.4567, 5), 123.46);
  assert.equal(roundDigits(-0.00123456789, 6), -0.00123457);
  assert.ok(Number.isNaN(roundDigits(NaN, 5)));
  assert.equal(roundDigits(Infinity, 5), Infinity);
});

test("floats of six digits are written with these digits", () => {
  for (const text of ["0.1", "123.456", "-9.87654e-05", "3.40282e+38", "1.00001e+06"]) {
    assert.equal(formatFile(Math.fround(Number(text))), text);
  }
});

test("numbers of the model file have their own digits", () => {
  for (const text of ["0.1", "1234567.125", "-3", "1e+25", "nan", "inf", "-inf"]) {
    const value = text === "nan" ? NaN : Number(text.replace("inf", "Infinity"));
    assert.equal(formatPlain(value), text);
  }
});

test("round limits hold all values in so many bands", () => {
  // (237.1 - 3.2) / 10 = 23.39; the next round step is 25, and 10 of them from 0 reach 250.
  const { range, limits } = findRoundRange(3.2, 237.1, 10, false);
  assert.deepEqual(range, [0, 250]);
  assert.deepEqual(limits, [0, 25, 50, 75, 100, 125, 150, 175, 200, 225, 250]);
});

test("a lower limit that was rounded down makes the step larger", () => {
  // (19.5 - 9.9) / 5 = 1.92 -> 2: from 8 to 18, too short. 2.5: from 7.5 to 20.
  assert.deepEqual(findRoundRange(9.9, 19.5, 5, false).limits, [7.5, 10, 12.5, 15, 17.5, 20]);
});

test("symmetric limits have zero in the middle", () => {
  // 2 * 93 / 10 = 18.6 -> 20.
  assert.deepEqual(findRoundRange(-93, 14, 10, true).range, [-100, 100]);
  assert.equal(findRoundRange(-93, 14, 10, true).limits[5], 0);
  // 2 * 4.9 / 5 = 1.96 -> 2.
  assert.deepEqual(findRoundRange(-1, 4.9, 5, true).limits, [-5, -3, -1, 1, 3, 5]);
});

test("limits are decimal numbers without the errors of sums", () => {
  // 0.7 / 7 = 0.1, and 3 * 0.1 would be 0.30000000000000004.
  const { limits } = findRoundRange(0, 0.7, 7, false);
  assert.deepEqual(limits, [0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7]);
});

test("values that are all the same have a range around them", () => {
  for (const value of [0, 7, -7, 1e-12, 3e20]) {
    for (const isSymmetric of [false, true]) {
      const { range, limits } = findRoundRange(value, value, 10, isSymmetric);
      assert.ok(range[0] <= value && value <= range[1] && range[0] < range[1]);
      assert.equal(new Set(limits.map(formatFile)).size, 11);
    }
  }
});

test("any range is held, with round limits", () => {
  for (let k = 0; k < 2000; ++k) {
    // A spread of ranges of all sizes; the sines only make the numbers irregular.
    const lowest = Math.sin(k) * 10 ** ((k % 13) - 6);
    const highest = lowest + (1 + Math.sin(3 * k)) * 10 ** ((k % 7) - 3);
    const bands = 1 + (k % 20);
    for (const isSymmetric of [false, true]) {
      const { range, limits } = findRoundRange(lowest, highest, bands, isSymmetric);
      assert.equal(limits.length, bands + 1);
      // Limits are rounded to 12 digits.
      const slack = 1e-11 * Math.max(Math.abs(range[0]), Math.abs(range[1]));
      assert.ok(range[0] <= lowest + slack && highest <= range[1] + slack);
    }
  }
});

test("limits of a range that a person typed", () => {
  assert.deepEqual(listLimits([-1, 3], 4), [-1, 0, 1, 2, 3]);
  assert.equal(listLimits([0, 1], 0).length, 11);
});
