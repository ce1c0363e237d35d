// Ranges with their places, the highest elements, envelopes, filters.
import assert from "node:assert/strict";
import { test } from "node:test";

import { computeBeamField } from "../../../../companion/view/page/src/fields/beam_field";
import {
  envelopeOf,
  envelopeOfBeams,
} from "../../../../companion/view/page/src/fields/envelope";
import { findHidden } from "../../../../companion/view/page/src/fields/filters";
import type { ShellField } from "../../../../companion/view/page/src/fields/quantity";
import {
  listHighest,
  listHighestDetails,
  measureDetailRange,
  measureRange,
  selectHighest,
} from "../../../../companion/view/page/src/fields/ranges";
import {
  computeDetailField,
  computeShellField,
} from "../../../../companion/view/page/src/fields/shell_field";
import {
  hideNothing,
  makeSmallDetails,
  makeSmallModel,
  makeSmallResults,
  makeSmallSources,
} from "./small_model";

const model = makeSmallModel();

function fieldOf(id: string, face: "upper" | "larger" | "visible" | "middle"): ShellField {
  const field = computeShellField(id, makeSmallSources(), { face, isAveraged: true });
  assert.ok(field !== null);
  return field;
}

test("the range of the larger face, with places", () => {
  // The highest row is 12, at corner 13: corner 1 of the triangle, node 8 at (6, 0, 0).
  const range = measureRange(fieldOf("mises", "larger"), model, hideNothing());
  assert.deepEqual(range?.highest, {
    value: 240.5, kind: "triangle", number: 0, corner: 1, node: 8, face: "lower", place: [6, 0, 0],
  });
  assert.deepEqual(range?.lowest, {
    value: 0.5, kind: "shell", number: 0, corner: 0, node: 0, face: "upper", place: [0, 0, 0],
  });
  assert.equal(range?.notNumbers, 0);
});

test("both faces count where both are seen", () => {
  const range = measureRange(fieldOf("SX", "visible"), model, hideNothing());
  assert.deepEqual([range?.highest.value, range?.highest.face], [120, "upper"]);
  assert.deepEqual([range?.lowest.value, range?.lowest.face], [-240, "lower"]);
  const without = measureRange(fieldOf("u", "visible"), model, hideNothing());
  assert.equal(without?.highest.face, "middle");
});

test("values have the digits that are sure", () => {
  const field = fieldOf("mises", "upper");
  field.upper[13] = 987.6543;
  const highest = (digits: number) =>
    measureRange({ ...field, digits }, model, hideNothing())?.highest.value;
  assert.equal(highest(6), 987.654);
  assert.equal(highest(5), 987.65);
});

test("numbers that are none are counted and hide nothing", () => {
  const field = fieldOf("mises", "upper");
  field.upper.set([NaN, Infinity, -Infinity], 12);
  const range = measureRange(field, model, hideNothing());
  assert.equal(range?.notNumbers, 3);
  assert.equal(range?.highest.value, 110.5);
  field.upper.fill(NaN);
  assert.equal(measureRange(field, model, hideNothing()), null);
  assert.deepEqual(listHighest(field, model, hideNothing(), 4), []);
});

test("each element stands in the list once, with its highest corner", () => {
  const list = listHighest(fieldOf("mises", "larger"), model, hideNothing(), 10);
  // Largest rows: triangle 12, wall 11 (node 6), shell 1 6, shell 0 3.
  assert.deepEqual(
    list.map(({ kind, number, node, value }) => [kind, number, node, value]),
    [["triangle", 0, 8, 240.5], ["shell", 2, 6, 220.5], ["shell", 1, 5, 120.5],
      ["shell", 0, 3, 60.5]],
  );
  assert.equal(listHighest(fieldOf("mises", "larger"), model, hideNothing(), 2).length, 2);
  assert.deepEqual(listHighest(fieldOf("mises", "larger"), model, hideNothing(), 0), []);
});

test("signed values are ranked by size, principal stresses by tension and compression", () => {
  const field = fieldOf("SX", "visible");
  const [first] = listHighest(field, model, hideNothing(), 1);
  assert.deepEqual([first.value, first.face], [-240, "lower"]);
  const tension = { ...field, quantity: fieldOf("s1", "upper").quantity };
  assert.equal(listHighest(tension, model, hideNothing(), 1)[0].value, 120);
  const compression = { ...field, quantity: fieldOf("s2", "upper").quantity };
  assert.equal(listHighest(compression, model, hideNothing(), 1)[0].value, -240);
});

test("equal values stand in the order of elements and corners", () => {
  const field = fieldOf("mises", "upper");
  field.upper.fill(7);
  const list = listHighest(field, model, hideNothing(), 3);
  assert.deepEqual(list.map(({ number, corner }) => [number, corner]), [[0, 0], [1, 0], [2, 0]]);
  assert.deepEqual(selectHighest(Float64Array.of(1, 3, NaN, 3, 2), 3), [1, 3, 4]);
  assert.deepEqual(selectHighest(Float64Array.of(1, 3, NaN, 3, 2), 1), [1]);
});

test("filters hide elements by their rows", () => {
  const none = { thicknesses: [], materials: [], sections: [], parts: [], groups: [] };
  assert.deepEqual(findHidden(model, none), hideNothing());
  const thick = findHidden(model, { ...none, thicknesses: [0] });
  assert.deepEqual([...thick.shells, ...thick.triangles, ...thick.beams], [1, 1, 0, 1, 0, 0]);
  const material = findHidden(model, { ...none, materials: [1] });
  assert.deepEqual([...material.shells, ...material.triangles, ...material.beams],
    [0, 0, 1, 0, 0, 1]);
  const part = findHidden(model, { ...none, parts: [1] });
  assert.deepEqual([...part.shells, ...part.triangles, ...part.beams], [0, 0, 0, 1, 0, 1]);
  const section = findHidden(model, { ...none, sections: [0] });
  assert.deepEqual([...section.beams], [1, 0]);
  assert.deepEqual([...findHidden(model, { ...none, sections: [-1] }).beams], [0, 1]);
});

test("what is hidden does not count", () => {
  const hidden = { ...hideNothing(), triangles: Uint8Array.of(1), shells: Uint8Array.of(0, 1, 0) };
  const field = fieldOf("mises", "larger");
  assert.equal(measureRange(field, model, hidden)?.highest.value, 220.5);
  assert.deepEqual(listHighest(field, model, hidden, 9).map(({ number }) => number), [2, 0]);
  const all = { ...hideNothing(), triangles: Uint8Array.of(1), shells: Uint8Array.of(1, 1, 1) };
  assert.equal(measureRange(field, model, all), null);
});

test("detail models: ranges and lists are those of beams", () => {
  const details = makeSmallDetails();
  const field = computeDetailField(details, { face: "larger" });
  assert.ok(field !== null);
  const range = measureDetailRange(field, details, hideNothing(), model);
  // Shell 1 of the details belongs to beam 1, from (2, 0, 0) to (4, 0, 0); its corner 2 is at
  // (4, 1, 0).
  assert.deepEqual(range?.highest, {
    value: 70, kind: "beam", number: 1, corner: -1, node: 2, face: "upper", place: [4, 1, 0],
  });
  assert.equal(range?.notNumbers, 1);
  const list = listHighestDetails(field, details, hideNothing(), model, 5);
  assert.deepEqual(list.map(({ number, value }) => [number, value]), [[1, 70], [0, 8]]);
  const hidden = { ...hideNothing(), beams: Uint8Array.of(0, 1) };
  assert.equal(measureDetailRange(field, details, hidden, model)?.highest.value, 8);
});

function withUpper(field: ShellField, first: number[]): ShellField {
  const upper = new Float32Array(field.upper.length);
  upper.set(first);
  return { ...field, upper, lower: upper, faces: field.faces?.slice() ?? null };
}

test("the envelope has the highest value and its case, the first of equal ones", () => {
  const base = fieldOf("SX", "larger");
  const fields = [
    withUpper(base, [1, NaN, 5, NaN, -1]),
    withUpper(base, [3, 2, 5, NaN, -2]),
    withUpper(base, [2, Infinity, 4, NaN, -3]),
  ];
  fields.forEach((field, row) => field.faces?.fill(row === 1 ? 1 : 0));
  const highest = envelopeOf(fields, "highest");
  assert.deepEqual([...highest.field.upper.subarray(0, 5)], [3, 2, 5, NaN, -1]);
  assert.deepEqual([...highest.upperCases.subarray(0, 5)], [1, 1, 0, -1, 0]);
  assert.deepEqual([...(highest.field.faces?.subarray(0, 3) ?? [])], [1, 1, 0]);
  assert.equal(highest.lowerCases, highest.upperCases);
  const lowest = envelopeOf(fields, "lowest");
  assert.deepEqual([...lowest.field.upper.subarray(0, 5)], [1, 2, 4, NaN, -3]);
  assert.deepEqual([...lowest.upperCases.subarray(0, 5)], [0, 1, 2, -1, 2]);
});

test("faces that are seen apart have envelopes of their own", () => {
  const one = fieldOf("SX", "visible");
  const other = { ...one, upper: one.lower, lower: one.upper };
  const { field, upperCases, lowerCases } = envelopeOf([one, other], "highest");
  // Row 12 at corner 13: 120 on the upper face, -240 on the lower one.
  assert.deepEqual([field.upper[13], field.lower[13]], [120, 120]);
  assert.deepEqual([upperCases[13], lowerCases[13]], [0, 1]);
});

test("beams have the curve of the case with the highest value", () => {
  const other = makeSmallResults();
  other.forces.set([60, 50], 0); // N = 60 + 50 s: 110 at the second end
  other.forces.set([-60], 24);
  const fields = [makeSmallResults(), other].map((results) => {
    const field = computeBeamField("beamN", { model, results });
    assert.ok(field !== null);
    return field;
  });
  const highest = envelopeOfBeams(fields, model, "highest");
  assert.deepEqual([...highest.cases], [1, 0]);
  assert.deepEqual([...highest.field.a], [60, 50, 0, 0, -50, 0, 0, 0]);
  const lowest = envelopeOfBeams(fields, model, "lowest");
  assert.deepEqual([...lowest.cases], [1, 1]);
});
