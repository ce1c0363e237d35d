// The eye: what a turn, a move and a step nearer do, and where places are seen.
import assert from "node:assert/strict";
import { test } from "node:test";

import { findFrame, toModel, toPicture } from "../../../../companion/view/page/src/scene/frame";
import {
  aimCamera,
  createView,
  findInPlane,
  findRay,
  mixViews,
  panView,
  projectPlace,
  toCamera,
  toView,
  turnView,
  zoomView,
} from "../../../../companion/view/page/src/scene/view";
import type { View } from "../../../../companion/view/page/src/scene/view";

// Some ten roundings of numbers up to 1000 (pixels).
function assertNear(found: number[], expected: number[], tolerance = 1e-9): void {
  found.forEach((value, axis) => {
    assert.ok(Math.abs(value - expected[axis]) <= tolerance, `${found} against ${expected}`);
  });
}

// From the front: x to the right, z up; 2 units are seen from bottom to top.
const front: View = { target: [0, 0, 0], direction: [0, -1, 0], up: [0, 0, 1], height: 2 };
const ball = { centre: [0, 0, 0] as [number, number, number], radius: 2 };

test("places on a canvas of 400 x 200 pixels, without perspective", () => {
  const camera = aimCamera(front, true, 2, ball);
  // 100 pixels are one unit; depth does not matter.
  assertNear(projectPlace(camera, [0, 0, 0], 400, 200), [200, 100]);
  assertNear(projectPlace(camera, [1, 0.7, 0.5], 400, 200), [300, 50]);
});

test("places with perspective: in the plane of the target as without, nearer ones larger", () => {
  const camera = aimCamera(front, false, 2, ball);
  assertNear(projectPlace(camera, [1, 0, 0.5], 400, 200), [300, 50]);
  // The eye stands 1 / tan 15 degrees = 3.732 away; halfway, all is twice as large.
  const half = 0.5 / Math.tan(Math.PI / 12);
  assertNear(projectPlace(camera, [0.5, -half, 0.25], 400, 200), [300, 50]);
});

test("the ray of a pixel leads back to the place", () => {
  for (const isOrthographic of [true, false]) {
    const camera = aimCamera(front, isOrthographic, 2, ball);
    const ray = findRay(camera, 300, 50, 400, 200);
    assertNear(findInPlane(front, ray), [1, 0, 0.5]);
  }
});

test("a quarter turn about z shows the model from the right", () => {
  const turned = turnView(front, [0, 0, 0], Math.PI / 2, 0);
  assertNear(turned.direction, [1, 0, 0]);
  assertNear(turned.up, [0, 0, 1]);
});

test("a turn keeps its pivot where it is on the screen", () => {
  const pivot: [number, number, number] = [0.3, -0.2, 0.4];
  const before = projectPlace(aimCamera(front, true, 2, ball), pivot, 400, 200);
  const turned = turnView(front, pivot, 0.7, 0.4);
  assertNear(projectPlace(aimCamera(turned, true, 2, ball), pivot, 400, 200), before);
});

test("the eye stops above the model", () => {
  const turned = turnView(turnView(front, [0, 0, 0], 0, 1), [0, 0, 0], 0, 3);
  assertNear(turned.direction, [0, 0, 1]);
  assertNear(turned.up, [0, 1, 0]);
  // And comes back.
  assertNear(turnView(turned, [0, 0, 0], 0, -Math.PI / 2).direction, [0, -1, 0]);
});

test("the eye stops below the model", () => {
  const turned = turnView(front, [0, 0, 0], 0, -3);
  assertNear(turned.direction, [0, 0, -1]);
  assertNear(turned.up, [0, -1, 0]);
});

test("a move by pixels moves places by as many", () => {
  const moved = panView(front, 30, -20, 200);
  assertNear(projectPlace(aimCamera(moved, true, 2, ball), [0, 0, 0], 400, 200), [230, 80]);
});

test("a step nearer keeps the place below the pointer", () => {
  const nearer = zoomView(front, [1, 0, 0.5], 0.25);
  assert.equal(nearer.height, 0.5);
  const camera = aimCamera(nearer, true, 2, ball);
  assertNear(projectPlace(camera, [1, 0, 0.5], 400, 200), [300, 50]);
});

test("a flight begins and ends where it should", () => {
  const end: View = { target: [1, 2, 3], direction: [1, 0, 0], up: [0, 0, 1], height: 8 };
  assertNear(mixViews(front, end, 0).direction, front.direction);
  assertNear(mixViews(front, end, 1).target, end.target);
  const middle = mixViews(front, end, 0.5);
  // Halfway of a quarter turn, and the geometric mean of 2 and 8.
  assertNear(middle.direction, [Math.SQRT1_2, -Math.SQRT1_2, 0]);
  assertNear([middle.height], [4]);
});

test("a camera in model units and back", () => {
  const frame = findFrame(new Float64Array([1e6, 0, 0, 1e6 + 3, 4, 0]));
  assert.equal(frame.size, 5);
  const view = createView();
  const camera = toCamera(frame, { ...view, target: [0.2, 0, 0], height: 2 });
  assertNear(camera.target, [1e6 + 2.5, 2, 0]);
  assert.equal(camera.height, 10);
  const back = toView(frame, camera, view);
  // 1e6 has steps of 1e-10.
  assertNear(back.target, [0.2, 0, 0], 1e-9);
  assertNear(back.direction, view.direction);
});

test("a camera without height or direction leaves the view as it is", () => {
  const frame = findFrame(new Float64Array([0, 0, 0, 1, 0, 0]));
  const camera = toCamera(frame, front);
  assert.equal(toView(frame, { ...camera, height: NaN }, front), front);
  assert.equal(toView(frame, { ...camera, direction: [0, 0, 0] }, front), front);
});

test("the frame of a model with one node, and with nodes that are nowhere", () => {
  const one = findFrame(new Float64Array([7, 8, 9]));
  assert.equal(one.size, 1);
  assert.deepEqual(toPicture(one, [7, 8, 9]), [0, 0, 0]);
  const frame = findFrame(new Float64Array([0, 0, 0, NaN, 5, 5, 2, 0, 0]));
  assert.deepEqual(frame.high, [2, 0, 0]);
  assert.deepEqual(toModel(frame, [0, 0, 0]), [1, 0, 0]);
  assert.equal(findFrame(new Float64Array([NaN, 0, 0])).size, 1);
});
