// Fields along beams and their extremes, by hand.
import assert from "node:assert/strict";
import { test } from "node:test";

import type { CaseResults } from "../../../../companion/view/page/src/data/page_model";
import { computeBeamField } from "../../../../companion/view/page/src/fields/beam_field";
import {
  evaluateCubic,
  findBeamExtremes,
  findLargestSize,
  listExtremePlaces,
  listHighestBeams,
  measureBeamRange,
} from "../../../../companion/view/page/src/fields/beam_ranges";
import {
  beamQuantities,
  listBeamQuantities,
  shellQuantities,
} from "../../../../companion/view/page/src/fields/quantities";
import type { BeamField } from "../../../../companion/view/page/src/fields/quantity";
import { hideNothing, makeSmallResults, makeSmallSources } from "./small_model";

function fieldOf(id: string, sources = makeSmallSources()): BeamField {
  const field = computeBeamField(id, sources);
  assert.ok(field !== null, id);
  return field;
}

test("section forces are the cubics of the data", () => {
  assert.deepEqual([...fieldOf("beamVy").a.subarray(0, 4)], [0, -1, 1, 0]);
  assert.deepEqual([...fieldOf("beamMy").a.subarray(0, 4)], [0, 40, 0, 0]);
  assert.equal(fieldOf("beamN").a[4], -50);
  assert.ok(fieldOf("beamN").b.every((value) => value === 0));
});

test("stress along the beam: N/A + My z/Iy - Mz y/Iz", () => {
  // A = 10, Iy = 20, Iz = 5; N = 100, My = 40 s, Mz = 10.
  const { a, b, c } = fieldOf("beamStress");
  assert.deepEqual([...a.subarray(0, 4)], [10, 0, 0, 0]);
  assert.deepEqual([...b.subarray(0, 4)], [0, 2, 0, 0]);
  assert.deepEqual([...c.subarray(0, 4)], [-2, -0, -0, -0]);
  assert.ok(a.subarray(4).every(Number.isNaN)); // beam 1 has no section
});

test("the extremes of stress are at corners of the section", () => {
  // The bar is 2 wide and 4 high about its centroid. At s = 1: 10 + 2 z - 2 y.
  const { lowest, highest, isNumber } = findBeamExtremes(fieldOf("beamStress"),
    makeSmallSources().model, 0);
  assert.deepEqual(highest, { value: 16, s: 1, y: -1, z: 2 });
  assert.deepEqual(lowest, { value: 4, s: 1, y: 1, z: -2 });
  assert.ok(isNumber);
});

test("the size of stress: least where it changes its sign", () => {
  const { model } = makeSmallSources();
  const size = fieldOf("beamSize");
  const both = findBeamExtremes(size, model, 0); // all is tension, as above
  assert.deepEqual([both.lowest.value, both.highest.value], [4, 16]);
  // All turned: -16 .. -4.
  const turned = { ...size, a: size.a.map((v) => -v), b: size.b.map((v) => -v),
    c: size.c.map((v) => -v) };
  const { lowest, highest } = findBeamExtremes(turned, model, 0);
  assert.deepEqual(lowest, { value: 4, s: 1, y: 1, z: -2 });
  assert.deepEqual(highest, { value: 16, s: 1, y: -1, z: 2 });
  // Pressed by 12 more: -8 .. 4.
  const mixed = { ...size, a: size.a.map((v) => v - (v === 10 ? 12 : 0)) };
  const found = findBeamExtremes(mixed, model, 0);
  assert.deepEqual(found.highest, { value: 8, s: 1, y: 1, z: -2 });
  assert.equal(found.lowest.value, 0);
  const { s, y, z } = found.lowest;
  assert.ok(Math.abs(-2 + 2 * s * z - 2 * y) < 1e-4, `${s}, ${y}, ${z}`); // 12 over 2^20
  // The largest at s = 0.5: |-2 + z - 2 y| at y = 1, z = -2.
  assert.equal(findLargestSize(mixed, model, 0, 0.5), 6);
  assert.equal(fieldOf("beamStress").isSize, false);
});

test("their place is that of the section's corner", () => {
  const range = measureBeamRange(fieldOf("beamStress"), makeSmallSources().model, hideNothing());
  // Local y is z x x = Y. The bar stands on the line between the nodes: z from 0 to 4.
  assert.deepEqual(range?.highest, {
    value: 16, kind: "beam", number: 0, corner: -1, node: 1, face: "middle", place: [2, -1, 4],
  });
  assert.equal(range?.notNumbers, 1);
});

test("the place counts from the line between the nodes, also sideways", () => {
  const { model } = makeSmallSources();
  const rings = [[-0.5, 0, 1.5, 0, 1.5, 4, -0.5, 4]];
  Object.assign(model.sections[0], { centroid: [0.5, 2], rings });
  // The section of the test above, moved by 0.5 along y.
  const range = measureBeamRange(fieldOf("beamStress"), model, hideNothing());
  assert.equal(range?.highest.value, 16);
  assert.deepEqual(range?.highest.place, [2, -0.5, 4]);
});

test("a parabola between the ends", () => {
  // s^2 - s is lowest, -0.25, at 0.5, on the centroid's line, 2 above the nodes.
  const range = measureBeamRange(fieldOf("beamVy"), makeSmallSources().model, hideNothing());
  assert.equal(range?.lowest.value, -0.25);
  assert.deepEqual(range?.lowest.place, [1, 0, 2]);
  assert.equal(range?.highest.value, 0);
});

test("a tube is looked at all around its circle", () => {
  // Radius 5 about (0, 2), drawn as a square. At s = 0 b = 3, c = -4: 10 + 5 * 5 where z : y is
  // 3 : -4; no corner of the square has more than 10 + 5 * 4. At s = 1 b = 0, c = -4.
  const sources = makeSmallSources();
  Object.assign(sources.model.sections[0], {
    type: "tube", rings: [[5, 2, 0, 7, -5, 2, 0, -3]], centroid: [0, 2],
  });
  const field = fieldOf("beamStress");
  field.a.set([10, 0, 0, 0]);
  field.b.set([3, -3, 0, 0]);
  field.c.set([-4, 0, 0, 0]);
  const { highest, lowest } = findBeamExtremes(field, sources.model, 0);
  // Numbers of about 10 after a few roundings.
  assert.ok(Math.abs(highest.value - 35) < 1e-13 && Math.abs(lowest.value + 15) < 1e-13);
  assert.equal(highest.s, 0);
  assert.ok(Math.abs(highest.y + 4) < 1e-13 && Math.abs(highest.z - 3) < 1e-13);
});

test("places of zero slope of cubics", () => {
  const sorted = (c: number[]) => listExtremePlaces(c).sort((a, b) => a - b);
  assert.deepEqual(sorted([5, 0, 0, 0]), [0, 1]);
  assert.deepEqual(sorted([0, 1, 0, 0]), [0, 1]);
  assert.deepEqual(sorted([0, -1, 1, 0]), [0, 0.5, 1]);
  // s^3 / 3 - s^2 / 2 + 3 s / 16 has the slope (s - 1/4) (s - 3/4).
  assert.deepEqual(sorted([0, 3 / 16, -1 / 2, 1 / 3]), [0, 0.25, 0.75, 1]);
  // The slope (s - 2) (s - 0.5): one place is outside.
  assert.deepEqual(sorted([0, 1, -1.25, 1 / 3]), [0, 0.5, 1]);
  // 1 + s + s^2 is never zero.
  assert.deepEqual(sorted([0, 1, 0.5, 1 / 3]), [0, 1]);
  assert.deepEqual(sorted([NaN, NaN, NaN, NaN]), [0, 1]);
});

test("a nearly straight curve keeps its place of zero slope", () => {
  // c3 = 1e-12: the other root is far outside, and the near one must not be lost in rounding.
  const places = listExtremePlaces([0, -1, 1, 1e-12]);
  assert.ok(places.some((s) => Math.abs(s - 0.5) < 1e-11));
  assert.equal(evaluateCubic([1, 2, 3, 4], 0.5), 1 + 1 + 0.75 + 0.5);
});

test("displacements run straight between the values of the ends", () => {
  const { a } = fieldOf("u");
  assert.deepEqual([...a], [0, 3, 0, 0, 3, 3, 0, 0]);
  assert.deepEqual([...fieldOf("uy").a], [0, 2, 0, 0, 2, 2, 0, 0]);
});

test("rows and the detail model at mid-length", () => {
  assert.deepEqual([fieldOf("section").a[0], fieldOf("section").a[4]], [0, -1]);
  assert.deepEqual([fieldOf("material").a[0], fieldOf("material").a[4]], [0, 1]);
  assert.deepEqual([fieldOf("finding").a[0], fieldOf("finding").a[4]], [0, 2]);
  const { a } = fieldOf("detailMiddle");
  assert.deepEqual([a[0], a[1], a[4]], [15.25, 0, NaN]);
  // The middle of beam 0, from 0 to 2 along x, on the centroid's line.
  const range = measureBeamRange(fieldOf("detailMiddle"), makeSmallSources().model, hideNothing());
  assert.deepEqual(range?.highest.place, [1, 0, 2]);
});

test("the highest beams, of signed values by size", () => {
  const { model } = makeSmallSources();
  const list = (id: string, n: number) => listHighestBeams(fieldOf(id), model, hideNothing(), n);
  assert.deepEqual(list("beamN", 5).map(({ value }) => value), [100, -50]);
  assert.deepEqual(list("beamN", 1).map(({ number }) => number), [0]);
  assert.deepEqual(list("u", 2).map(({ number, node }) => [number, node]), [[1, 2], [0, 1]]);
  // Beam 1 has no number.
  assert.deepEqual(list("beamStress", 5).map(({ number }) => number), [0]);
});

test("hidden beams do not count", () => {
  const { model } = makeSmallSources();
  const hidden = { ...hideNothing(), beams: Uint8Array.of(1, 0) };
  const range = measureBeamRange(fieldOf("beamN"), model, hidden);
  assert.equal(range?.highest.value, -50);
  assert.equal(listHighestBeams(fieldOf("beamN"), model, hidden, 5).length, 1);
  assert.equal(measureBeamRange(fieldOf("beamStress"), model, hidden), null);
});

test("NaN everywhere: no range, no error", () => {
  const sources = makeSmallSources();
  sources.model.coordinates.fill(NaN);
  sources.results?.forces.fill(NaN);
  sources.results?.displacements.fill(NaN);
  for (const id of ["beamN", "beamStress", "beamSize", "beamMz", "u", "ux"]) {
    const field = fieldOf(id, sources);
    assert.equal(measureBeamRange(field, sources.model, hideNothing()), null);
    assert.deepEqual(listHighestBeams(field, sources.model, hideNothing(), 3), []);
  }
});

test("what is not there gives no field", () => {
  const sources = { ...makeSmallSources(), results: null };
  for (const id of ["plain", "detail", "beamN", "mises"]) {
    assert.equal(computeBeamField(id, sources), null);
  }
  const results = { ...makeSmallResults(), detailStresses: null };
  assert.equal(computeBeamField("detailMiddle", { ...sources, results }), null);
  const ids = (known: CaseResults) =>
    listBeamQuantities(sources.model, known).map((quantity) => quantity.id);
  assert.ok(!ids(results).includes("detailMiddle") && !ids(results).includes("detail"));
  assert.ok(ids(makeSmallResults()).includes("detailMiddle"));
});

test("ids that shells and beams share mean the same quantity", () => {
  for (const quantity of beamQuantities) {
    const same = shellQuantities.find((one) => one.id === quantity.id);
    if (same !== undefined) assert.deepEqual(same, quantity);
  }
});
