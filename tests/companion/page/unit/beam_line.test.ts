// The deformed line of a beam against values by hand.
import assert from "node:assert/strict";
import { test } from "node:test";

import {
  hermite,
  moveAlong,
  moveInSection,
  placeBeamLine,
} from "../../../../companion/view/page/src/scene/beam_line";
import type { BeamLine } from "../../../../companion/view/page/src/scene/beam_line";

// A beam 4 long from (1, 2, 3) along y, with z upwards: then y = z cross x = -X. Its places are in
// units of 2, so that they are 2 apart.
function makeLine(z: [number, number, number] = [0, 0, 1]): BeamLine {
  const beams = {
    count: 1,
    nodes: new Int32Array([0, 1]),
    section: new Int32Array([0]),
    material: new Int32Array([0]),
    part: new Int32Array([0]),
    z: new Float64Array(z),
  };
  const line = placeBeamLine(beams, 0, [0.5, 1, 1.5, 0.5, 3, 1.5], 2);
  assert.ok(line);
  return line;
}

// Numbers of about 1 after some ten roundings.
function assertNear(found: number[], expected: number[]): void {
  found.forEach((value, axis) => {
    assert.ok(Math.abs(value - expected[axis]) < 1e-14, `${found} against ${expected}`);
  });
}

test("the axes and the length of a beam", () => {
  const line = makeLine();
  assert.deepEqual(line.x, [0, 1, 0]);
  assertNear(line.y, [-1, 0, 0]);
  assert.equal(line.length, 4);
});

test("a beam whose nodes are at one place has no line", () => {
  const beams = { ...tableOf([0, 0]) };
  assert.equal(placeBeamLine(beams, 0, [1, 1, 1], 1), null);
  assert.equal(placeBeamLine(tableOf([0, 1]), 0, [1, 1, 1, NaN, 1, 1], 1), null);
});

function tableOf(nodes: number[]): Parameters<typeof placeBeamLine>[0] {
  const row = new Int32Array([0]);
  const z = new Float64Array([0, 0, 1]);
  return { count: 1, nodes: new Int32Array(nodes), section: row, material: row, part: row, z };
}

test("Hermite's cubics at a quarter", () => {
  // s = 1/4: (3/4)^2 (3/2), (1/4)(3/4)^2, (1/4)^2 (5/2), -(1/4)^2 (3/4).
  assertNear(hermite(0.25), [27 / 32, 9 / 64, 5 / 32, -3 / 64]);
});

test("both ends have the displacements of their nodes", () => {
  const first = [1, 2, 3, 0.1, 0.2, 0.3];
  const second = [4, 5, 6, 0.4, 0.5, 0.6];
  assertNear(moveAlong(makeLine(), first, second, 0), [1, 2, 3]);
  assertNear(moveAlong(makeLine(), first, second, 1), [4, 5, 6]);
});

test("a rotation about local z bends towards local y", () => {
  // Only rz of the first node, 1 about Z: v(1/2) = L H2 = 4 / 8 = 0.5 along y = -X. As a rigid
  // turn about Z it would move places beyond the node along Y to -X as well.
  assertNear(moveAlong(makeLine(), [0, 0, 0, 0, 0, 1], [0, 0, 0, 0, 0, 0], 0.5), [-0.5, 0, 0]);
});

test("a rotation about local y bends away from local z", () => {
  // Only ry of the second node: 1 about y = -X, so rx = -1: w(1/2) = -L H4 ry = 4 / 8 = 0.5.
  // A turn by +1 about -X takes places before the node (at -Y from it) upwards.
  assertNear(moveAlong(makeLine(), [0, 0, 0, 0, 0, 0], [0, 0, 0, -1, 0, 0], 0.5), [0, 0, 0.5]);
});

test("a rigid turn leaves the line straight", () => {
  // The whole beam turns by 0.01 about X at its first node: uz = 0.01 (Y - 2) = 0.04 at its end.
  const first = [0, 0, 0, 0.01, 0, 0];
  const second = [0, 0, 0.04, 0.01, 0, 0];
  assertNear(moveAlong(makeLine(), first, second, 0.25), [0, 0, 0.01]);
  assertNear(moveAlong(makeLine(), first, second, 0.75), [0, 0, 0.03]);
});

test("without a direction the ends are joined by a straight line", () => {
  const line = makeLine([NaN, NaN, NaN]);
  assertNear(moveAlong(line, [0, 0, 2, 9, 9, 9], [4, 0, 0, 9, 9, 9], 0.25), [1, 0, 1.5]);
});

test("a section turns with its beam when that turns as a whole", () => {
  // About the first node (1, 2, 3) by r = (0.01, 0.02, 0.03): u = r cross (place - node). The
  // second node is at (0, 4, 0) from it; a point at s = 1/4, y = 0.5, z = -2 at (-0.5, 1, -2).
  const r = [0.01, 0.02, 0.03];
  const first = [0, 0, 0, ...r];
  const second = [-0.03 * 4, 0, 0.01 * 4, ...r];
  assertNear(moveInSection(makeLine(), first, second, 0.25, 0.5, -2), [
    0.02 * -2 - 0.03 * 1,
    0.03 * -0.5 - 0.01 * -2,
    0.01 * 1 - 0.02 * -0.5,
  ]);
});

test("a section turns by the slope of the line", () => {
  // Only w of the second node, 1: w' L = 6 s (1 - s) = 9/8 at s = 1/4, ry = -9/32 about y. A point
  // at z = 2 moves along the beam (+Y) by ry z = -9/16, and w = H3 = 5/32.
  const none = [0, 0, 0, 0, 0, 0];
  assertNear(moveInSection(makeLine(), none, [0, 0, 1, 0, 0, 0], 0.25, 0, 2), [0, -9 / 16, 5 / 32]);
  // The first node's instead: the slope is the opposite one, and w = H1 = 27/32.
  assertNear(moveInSection(makeLine(), [0, 0, 1, 0, 0, 0], none, 0.25, 0, 2), [0, 9 / 16, 27 / 32]);
});
