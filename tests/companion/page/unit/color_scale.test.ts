// The colour scale of a quantity, and the scale of displacements.
import assert from "node:assert/strict";
import { test } from "node:test";

import {
  findAutomaticScale,
  findLargestDisplacement,
  measureDiagonal,
} from "../../../../companion/view/page/src/fields/automatic_scale";
import { listCategories } from "../../../../companion/view/page/src/fields/categories";
import { makeColorScale } from "../../../../companion/view/page/src/fields/color_scale";
import { findShellQuantity } from "../../../../companion/view/page/src/fields/quantities";
import { makeSmallModel, makeSmallResults } from "./small_model";

const model = makeSmallModel();
const usual = { map: "auto", bands: 10, range: null };

function scaleOf(id: string, measured: [number, number] | null, choice = {}) {
  const quantity = findShellQuantity(id);
  assert.ok(quantity !== null);
  return makeColorScale(quantity, model, measured, { ...usual, ...choice });
}

test("von Mises stress: cividis, round limits", () => {
  const { map, range, limits } = scaleOf("mises", [3.2, 237.1]);
  assert.equal(map, "cividis");
  assert.deepEqual(range, [0, 250]);
  assert.equal(limits.length, 11);
});

test("values of both signs: blue-red about zero; of one sign: cividis", () => {
  assert.equal(scaleOf("SX", [-93, 14]).map, "blue-red");
  assert.deepEqual(scaleOf("SX", [-93, 14]).range, [-100, 100]);
  assert.equal(scaleOf("SX", [2, 14]).map, "cividis");
  // Whoever chooses a map gets it.
  assert.equal(scaleOf("SX", [-93, 14], { map: "viridis" }).map, "viridis");
});

test("a range that was typed holds as it is", () => {
  const { range, limits } = scaleOf("mises", [0, 90], { range: [10, 50], bands: 4 });
  assert.deepEqual(range, [10, 50]);
  assert.deepEqual(limits, [10, 20, 30, 40, 50]);
});

test("nothing with a number has a range, too", () => {
  assert.deepEqual(scaleOf("mises", null).range, [0, 1]);
});

test("categories have the rows of their tables", () => {
  const { range, limits, categories } = scaleOf("thickness", null);
  assert.deepEqual(range, [-0.5, 1.5]);
  assert.deepEqual(limits, []);
  assert.deepEqual(categories.map(({ label }) => label), ["10", "6"]);
  assert.deepEqual(listCategories("section", model), [
    { row: 0, label: "flat bar 0, FB <4 x 2>, Hw 4, Tw 2" },
  ]);
  assert.deepEqual(listCategories("part", model).map(({ label }) => label), ["part 0", "part 1"]);
  assert.deepEqual(listCategories("finding", model).map(({ label }) => label),
    ["none", "hint", "warning", "error"]);
  assert.equal(listCategories("material", model)[1].label, "1: E 70000");
});

test("the largest displacement is drawn as 5 % of the diagonal, or a little less", () => {
  const results = makeSmallResults();
  // The box is 6 x 1 x 1, its diagonal sqrt(38); node 8 moves by 24: 0.05 sqrt(38) / 24 = 0.0128.
  // hypot may be off by its last digit.
  assert.ok(Math.abs(measureDiagonal(model.coordinates) - Math.sqrt(38)) < 1e-14);
  assert.equal(findLargestDisplacement(results.displacements), 24);
  assert.equal(findAutomaticScale(model, results), 0.01);
});

test("scales are 1, 2, 5 times a power of ten, rounded down", () => {
  // Of a model with the diagonal 20, with one displacement: 1 / u.
  const line = { ...model, coordinates: Float64Array.of(0, 0, 0, 20, 0, 0) };
  const scaleFor = (u: number) => {
    const displacements = Float32Array.of(0, 0, 0, 0, 0, 0, u, 0, 0, 0, 0, 0);
    return findAutomaticScale(line, { ...makeSmallResults(), displacements });
  };
  const expected: [number, number][] = [
    [1, 1], [0.5, 2], [0.25, 2], [0.21, 2], [0.2, 5], [0.125, 5], [0.101, 5], [3, 0.2],
    [0.0009765625, 1000], [1.001, 0.5], [-1e6, 1e-6],
  ];
  for (const [u, scale] of expected) {
    // Single precision holds 0.2 as 0.200000003, so 1 / u is a little below 5.
    assert.equal(scaleFor(u === 0.2 ? 0.19999 : u), scale, `u ${u}`);
  }
});

test("nothing that moves, nothing with a number: 0", () => {
  const results = makeSmallResults();
  results.displacements.fill(0);
  assert.equal(findAutomaticScale(model, results), 0);
  results.displacements.fill(NaN);
  assert.equal(findAutomaticScale(model, results), 0);
  const nowhere = { ...model, coordinates: new Float64Array(27).fill(NaN) };
  assert.equal(findAutomaticScale(nowhere, makeSmallResults()), 0);
  assert.equal(measureDiagonal(new Float64Array(0)), 0);
});

test("single nodes without numbers do not spoil the scale", () => {
  const results = makeSmallResults();
  results.displacements.set([NaN, 1, 1], 0);
  results.displacements.set([Infinity, 1, 1], 6);
  assert.equal(findAutomaticScale(model, results), 0.01);
});
