// Axes of elements, by hand.
import assert from "node:assert/strict";
import { test } from "node:test";

import {
  findBeamLine,
  findElementFrame,
  findShellFrame,
} from "../../../../companion/view/page/src/data/frames";
import type { Axes } from "../../../../companion/view/page/src/data/frames";
import { makeSmallModel } from "./small_model";

// Two roundings of numbers of about 1 are below 1e-15.
function assertAxes(axes: Axes, expected: Axes): void {
  for (let i = 0; i < 3; ++i) {
    for (let d = 0; d < 3; ++d) {
      assert.ok(Math.abs(axes[i][d] - expected[i][d]) < 1e-15, `${axes} against ${expected}`);
    }
  }
}

test("an element that is tilted about x and stands skew", () => {
  // a = (0, 3, 4), b = (1, 3, 4), n = a x b = (3*4 - 4*3, 4*1 - 0*4, 0*3 - 3*1) = (0, 4, -3);
  // e2 = n x a / |n x a| with n x a = (4*4 + 3*3, 0, 0).
  assertAxes(findElementFrame([1, 1, 1], [1, 4, 5], [2, 4, 5]), [
    [0, 0.6, 0.8],
    [1, 0, 0],
    [0, 0.8, -0.6],
  ]);
});

test("the last node of a four-node shell and of a triangle", () => {
  const model = makeSmallModel();
  // The wall, nodes 3, 4, 7, 6: e1 = x, upwards is z, so e3 = x cross z = -y.
  assertAxes(findShellFrame(model.coordinates, model.shells, 2), [
    [1, 0, 0],
    [0, 0, 1],
    [0, -1, 0],
  ]);
  // The triangle 2, 8, 5 lies in the plane z = 0, counter-clockwise.
  assertAxes(findShellFrame(model.coordinates, model.triangles, 0), [
    [1, 0, 0],
    [0, 1, 0],
    [0, 0, 1],
  ]);
});

test("of a warped shell the third node does not count", () => {
  // Nodes 0, 1 and 3 lie in the plane z = 0, node 2 stands above it.
  const table = { corners: 4, nodes: Int32Array.of(0, 1, 2, 3) };
  assertAxes(findShellFrame([0, 0, 0, 1, 0, 0, 1, 1, 0.5, 0, 1, 0], table, 0), [
    [1, 0, 0],
    [0, 1, 0],
    [0, 0, 1],
  ]);
});

test("coincident nodes and nodes that do not exist give NaN", () => {
  assert.ok(findElementFrame([1, 1, 1], [1, 1, 1], [2, 4, 5])[0].every(Number.isNaN));
  const table = { corners: 3, nodes: Int32Array.of(0, 99, -1) };
  assert.ok(findShellFrame([0, 0, 0], table, 0).flat().every(Number.isNaN));
});

test("a beam along z with its web along x", () => {
  const beams = { ...makeSmallModel().beams, count: 1, z: Float64Array.of(1, 0, 0) };
  const line = findBeamLine([5, 0, 1, 5, 0, 3], beams, 0);
  assert.equal(line.length, 2);
  // y = z cross x = (1, 0, 0) x (0, 0, 1) = (0, -1, 0).
  assertAxes(line.axes, [
    [0, 0, 1],
    [0, -1, 0],
    [1, 0, 0],
  ]);
});
