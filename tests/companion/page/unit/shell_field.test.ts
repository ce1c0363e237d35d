// Fields of shells: stresses, resultants, displacements, categories, by hand.
import assert from "node:assert/strict";
import { test } from "node:test";

import {
  listShellQuantities,
  rankOf,
  shellQuantities,
} from "../../../../companion/view/page/src/fields/quantities";
import {
  computeDetailField,
  computeShellField,
} from "../../../../companion/view/page/src/fields/shell_field";
import type { FaceChoice } from "../../../../companion/view/page/src/state";
import { makeSmallDetails, makeSmallSources } from "./small_model";

const cornerCount = 15;

// Values of about 100 in single precision, after a few roundings.
const tolerance = 1e-5;

function fieldOf(id: string, face: FaceChoice, isAveraged: boolean, sources = makeSmallSources()) {
  const field = computeShellField(id, sources, { face, isAveraged });
  assert.ok(field !== null, id);
  assert.equal(field.upper.length, cornerCount);
  assert.equal(field.lower.length, cornerCount);
  return field;
}

function assertNear(value: number, expected: number): void {
  assert.ok(Math.abs(value - expected) <= tolerance, `${value} against ${expected}`);
}

// Sources where corner 5 has these stresses of its own on the upper and on the lower face.
function setOwn(upper: number[], lower: number[]) {
  const sources = makeSmallSources();
  sources.corners?.upper.set(upper, 15);
  sources.corners?.lower.set(lower, 15);
  return sources;
}

test("averaged von Mises stresses of the faces are the numbers of the file", () => {
  // Corners 1 and 4 share row 1, corner 12 has row 5.
  const upper = fieldOf("mises", "upper", true);
  assert.deepEqual([upper.upper[1], upper.upper[4], upper.upper[12]], [10.5, 10.5, 50.5]);
  assert.equal(upper.lower, upper.upper);
  assert.equal(fieldOf("mises", "lower", true).upper[12], 100.5);
  const visible = fieldOf("mises", "visible", true);
  assert.deepEqual([visible.upper[12], visible.lower[12], visible.faces], [50.5, 100.5, null]);
});

test("the larger face is the larger one, and the field says which", () => {
  const { upper, lower, faces } = fieldOf("mises", "larger", true);
  assert.equal(upper, lower);
  assert.equal(upper[12], 100.5);
  assert.equal(faces?.[12], 1);
  // Row 0: 0.5 on both faces; the upper one counts.
  assert.deepEqual([upper[0], faces?.[0]], [0.5, 0]);
  assert.deepEqual([...(fieldOf("mises", "middle", true).faces ?? [])], Array(15).fill(2));
});

test("the middle face has the mean of both stresses", () => {
  // Row 5: (50 - 100) / 2 = -25 along X alone.
  assertNear(fieldOf("mises", "middle", true).upper[12], 25);
  assertNear(fieldOf("membrane", "upper", true).upper[12], 25);
  assertNear(fieldOf("SX", "middle", true).upper[12], -25);
});

test("signed values of the larger face keep their sign", () => {
  const { upper, faces } = fieldOf("SX", "larger", true);
  assert.deepEqual([upper[12], faces?.[12]], [-100, 1]);
});

test("plane stress: von Mises and principal values", () => {
  // (50, -10, 40): centre 20, radius sqrt(30^2 + 40^2) = 50; 2500 + 500 + 100 + 3 * 1600 = 7900.
  const sources = setOwn([50, -10, 40], [0, 0, 0]);
  assertNear(fieldOf("s1", "upper", false, sources).upper[5], 70);
  assertNear(fieldOf("s2", "upper", false, sources).upper[5], -30);
  assertNear(fieldOf("mises", "upper", false, sources).upper[5], Math.sqrt(7900));
  assert.equal(fieldOf("sx", "upper", false, sources).upper[5], 50);
  assert.equal(fieldOf("sy", "upper", false, sources).upper[5], -10);
  assert.equal(fieldOf("txy", "upper", false, sources).upper[5], 40);
});

test("principal values without shear, of pure shear, and of nothing", () => {
  assert.equal(fieldOf("s2", "upper", false, setOwn([7, 3, 0], [0, 0, 0])).upper[5], 3);
  assert.equal(fieldOf("s1", "upper", false, setOwn([0, 0, -4], [0, 0, 0])).upper[5], 4);
  assert.equal(fieldOf("s1", "upper", false, setOwn([0, 0, 0], [0, 0, 0])).upper[5], 0);
});

test("larger face of principal stresses: highest tension and highest compression", () => {
  const sources = setOwn([30, 10, 0], [-20, -80, 0]);
  assert.equal(fieldOf("s1", "larger", false, sources).upper[5], 30);
  assert.equal(fieldOf("s2", "larger", false, sources).upper[5], -80);
});

test("membrane stress by element", () => {
  // (30 - 10) / 2 = 10 along x.
  assertNear(fieldOf("membrane", "upper", false, setOwn([30, 0, 0], [-10, 0, 0])).upper[5], 10);
});

test("stresses of the wall in global axes and back", () => {
  // Its e1 is X, its e2 is Z (frames.test.ts): sx, sy, txy are SX, SZ, TXZ.
  const sources = makeSmallSources();
  sources.corners?.upper.set([1, 2, 3], 3 * 8);
  const expected: [string, number][] = [
    ["SX", 1], ["SZ", 2], ["TXZ", 3], ["SY", 0], ["TXY", 0], ["TYZ", 0],
  ];
  for (const [id, value] of expected) {
    assertNear(fieldOf(id, "upper", false, sources).upper[8], value);
  }
  // Corner 8 has row 8 of the averages.
  sources.results?.shells.upper.set([1, 9, 2, 7, 3, 8], 6 * 8);
  assertNear(fieldOf("sx", "upper", true, sources).upper[8], 1);
  assertNear(fieldOf("sy", "upper", true, sources).upper[8], 2);
  assertNear(fieldOf("txy", "upper", true, sources).upper[8], 3);
  // Principal stresses in the wall's plane: 1.5 +- sqrt(0.25 + 9).
  assertNear(fieldOf("s1", "upper", true, sources).upper[8], 1.5 + Math.sqrt(9.25));
  assertNear(fieldOf("s2", "upper", true, sources).upper[8], 1.5 - Math.sqrt(9.25));
});

test("global components of an element whose axes are turned", () => {
  // Shell 0 with its nodes from 1: e1 = Y, e2 = -X. sx = SY, sy = SX, txy = -TXY.
  const sources = makeSmallSources();
  sources.model.shells.nodes.set([1, 4, 3, 0], 0);
  sources.corners?.upper.set([5, 6, 7], 0);
  const values = ["SX", "SY", "TXY"].map((id) => fieldOf(id, "upper", false, sources).upper[0]);
  [6, 5, -7].forEach((value, i) => assertNear(values[i], value));
});

test("averages in the axes of that element", () => {
  // SX = 6, SY = 5, TXY = -7 give sx = 5, sy = 6, txy = 7: the same the other way round.
  const sources = makeSmallSources();
  sources.model.shells.nodes.set([1, 4, 3, 0], 0);
  sources.results?.shells.upper.set([6, 5, 0, -7, 0, 0], 0);
  const values = ["sx", "sy", "txy"].map((id) => fieldOf(id, "upper", true, sources).upper[0]);
  [5, 6, 7].forEach((value, i) => assertNear(values[i], value));
});

test("von Mises stress of the middle face, of six components", () => {
  // Mean of both faces: SX = 6, SY = 3, SZ = 0, TXY = 1, TXZ = 2, TYZ = 3:
  // (9 + 9 + 36 + 6 (1 + 4 + 9)) / 2 = 69.
  const sources = makeSmallSources();
  sources.results?.shells.upper.set([12, 3, 0, 2, 2, 3], 0);
  sources.results?.shells.lower.set([0, 3, 0, 0, 2, 3], 0);
  assertNear(fieldOf("mises", "middle", true, sources).upper[0], Math.sqrt(69));
});

test("forces and moments from the stresses of both faces", () => {
  // t = 10 in shell 1: n = 10 (60 + 20) / 2 = 400, m = 100 (60 - 20) / 12. Back: n / t + 6 m / t^2
  // is 60.
  const sources = setOwn([60, 0, 3], [20, 0, 5]);
  assertNear(fieldOf("nx", "upper", true, sources).upper[5], 400);
  assert.equal(fieldOf("mx", "upper", true, sources).upper[5], Math.fround(4000 / 12));
  assertNear(fieldOf("nxy", "upper", true, sources).upper[5], 40);
  assert.equal(fieldOf("mxy", "upper", true, sources).upper[5], Math.fround(-200 / 12));
  // The wall is 6 thick. Corner 9: (9 - 9) and (18 + 9) 6 / 2 = 81.
  assertNear(fieldOf("ny", "upper", true).upper[9], 81);
  assertNear(fieldOf("nx", "upper", true).upper[9], 0);
  // m = 36 (18 - 9) / 12.
  assertNear(fieldOf("my", "upper", true).upper[9], 27);
});

test("a plate in bending has no membrane forces, whatever six digits leave over", () => {
  // 123.457 and -123.456 may be one number; 123.457 and -123.455 may not.
  const bending = setOwn([123.457, 5, 0], [-123.456, 7, 0]);
  assert.equal(fieldOf("nx", "upper", true, bending).upper[5], 0);
  assert.equal(fieldOf("sx", "middle", false, bending).upper[5], 0);
  const pulled = setOwn([123.457, 5, 0], [-123.455, 7, 0]);
  assert.ok(fieldOf("nx", "upper", true, pulled).upper[5] > 0);
  // The same for the moments of a plate in its plane.
  const plane = setOwn([123.457, 5, 0], [123.456, 5, 0]);
  assert.equal(fieldOf("mx", "upper", true, plane).upper[5], 0);
});

test("six digits of what the solver has rounded, five of what is made of it", () => {
  const digits = (id: string, face: FaceChoice, isAveraged: boolean) =>
    fieldOf(id, face, isAveraged).digits;
  assert.equal(digits("mises", "larger", true), 6);
  assert.equal(digits("mises", "visible", true), 6);
  assert.equal(digits("mises", "middle", true), 5);
  assert.equal(digits("mises", "larger", false), 5);
  assert.equal(digits("SX", "upper", true), 6);
  assert.equal(digits("SX", "upper", false), 5);
  assert.equal(digits("sx", "upper", true), 5);
  assert.equal(digits("sx", "upper", false), 6);
  assert.equal(digits("s1", "upper", true), 5);
  assert.equal(digits("membrane", "upper", true), 5);
  assert.deepEqual([digits("u", "upper", true), digits("ux", "upper", true)], [5, 6]);
  assert.deepEqual([digits("qx", "upper", true), digits("nx", "upper", true)], [6, 5]);
});

test("shear forces are those of the centre; triangles have none", () => {
  const { upper } = fieldOf("qy", "upper", true);
  assert.deepEqual([...upper.subarray(8, 12)], [-2, -2, -2, -2]);
  assert.ok(upper.subarray(12).every(Number.isNaN));
});

test("displacements of the nodes", () => {
  // Corner 13 is node 8: (8, 16, 16), so 24; it turns by 0.008.
  assert.equal(fieldOf("u", "larger", true).upper[13], 24);
  assert.equal(fieldOf("uy", "larger", true).upper[13], 16);
  assert.equal(fieldOf("rx", "larger", true).upper[13], Math.fround(0.008));
});

test("rows of the model", () => {
  assert.deepEqual([fieldOf("thickness", "upper", true).upper[7],
    fieldOf("thickness", "upper", true).upper[8]], [0, 1]);
  assert.equal(fieldOf("material", "upper", true).upper[8], 1);
  assert.equal(fieldOf("part", "upper", true).upper[12], 1);
  // Shell 1 has a warning and a hint, the triangle a hint.
  const finding = fieldOf("finding", "upper", true).upper;
  assert.deepEqual([finding[0], finding[4], finding[12]], [0, 2, 1]);
  const side = fieldOf("side", "upper", true);
  assert.deepEqual([side.upper[3], side.lower[3]], [0, 1]);
});

test("NaN of a face shows on the larger one, wherever it is", () => {
  for (const table of ["upperMises", "lowerMises"] as const) {
    const sources = makeSmallSources();
    sources.results?.shells[table].fill(NaN, 5, 6);
    assert.ok(Number.isNaN(fieldOf("mises", "larger", true, sources).upper[12]));
  }
});

test("NaN everywhere: every quantity has NaN and no error", () => {
  const sources = makeSmallSources();
  sources.model.coordinates.fill(NaN);
  for (const array of [sources.results?.displacements, sources.corners?.upper,
    sources.corners?.lower, sources.corners?.shear, sources.results?.shells.upper,
    sources.results?.shells.lower, sources.results?.shells.upperMises,
    sources.results?.shells.lowerMises]) array?.fill(NaN);
  for (const quantity of shellQuantities.filter((one) => one.needs !== "model")) {
    for (const face of ["upper", "larger", "visible"] as const) {
      for (const isAveraged of [true, false]) {
        const { upper, lower } = fieldOf(quantity.id, face, isAveraged, sources);
        assert.ok(upper.every(Number.isNaN) && lower.every(Number.isNaN), quantity.id);
      }
    }
  }
});

test("what is not there gives no field", () => {
  const sources = { ...makeSmallSources(), results: null, corners: null };
  const options = { face: "upper" as const, isAveraged: true };
  for (const id of ["plain", "nothing", "mises", "mx", "u", "qx"]) {
    assert.equal(computeShellField(id, sources, options), null);
  }
  const averages = { ...makeSmallSources(), corners: null };
  assert.equal(computeShellField("mises", averages, { ...options, isAveraged: false }), null);
  assert.ok(computeShellField("thickness", sources, options) !== null);
});

test("the list has what the page has", () => {
  const { model } = makeSmallSources();
  const idsOf = () => listShellQuantities(model).map((quantity) => quantity.id);
  assert.ok(["mises", "qx", "finding", "side"].every((id) => idsOf().includes(id)));
  model.findings = [];
  model.cases[0].blocks = { loads: "loads-0" };
  assert.deepEqual(idsOf(), ["thickness", "material", "part", "side"]);
  const ids = shellQuantities.map((quantity) => quantity.id);
  assert.equal(new Set(ids).size, ids.length);
});

test("detail models: von Mises stress by corner of their shells", () => {
  const details = makeSmallDetails();
  assert.deepEqual(computeDetailField(details, { face: "larger" })?.upper,
    Float32Array.of(8, 7, 6, 5, 50, 60, 70, NaN));
  assert.deepEqual(computeDetailField(details, { face: "lower" })?.upper,
    details.stresses.lowerMises);
});

test("which values are higher", () => {
  const rank = (id: string, value: number) =>
    rankOf(shellQuantities.find((one) => one.id === id) ?? shellQuantities[0])(value);
  assert.ok(rank("mises", 2) > rank("mises", 1));
  assert.ok(rank("SX", -2) > rank("SX", 1));
  assert.ok(rank("s1", 1) > rank("s1", -2));
  assert.ok(rank("s2", -2) > rank("s2", 3));
});
