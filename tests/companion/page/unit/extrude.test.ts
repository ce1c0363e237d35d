// Extruded sections against areas and volumes by hand.
import assert from "node:assert/strict";
import { test } from "node:test";

import type { Section } from "../../../../companion/view/page/src/data/page_model";
import { extrudeSection } from "../../../../companion/view/page/src/scene/extrude";
import type { Extrusion } from "../../../../companion/view/page/src/scene/extrude";

function makeSection(rings: number[][]): Section {
  return {
    type: "T",
    index: 0,
    mirrored: false,
    offset: 0,
    name: "",
    sizes: "",
    rings,
    centroid: [0, 0],
    area: 0,
    Iy: 0,
    Iz: 0,
  };
}

function extrude(rings: number[][], segments: number): Extrusion {
  const extrusion = extrudeSection(makeSection(rings), segments);
  assert.ok(extrusion);
  return extrusion;
}

// The volume that the triangles enclose, with x = s, y, z right-handed: the sum of a . (b x c) / 6.
// It is positive where all of them are seen counter-clockwise from outside.
function volumeOf({ points, triangles }: Extrusion): number {
  let sum = 0;
  for (let at = 0; at < triangles.length; at += 3) {
    const [a, b, c] = [0, 1, 2].map((corner) => {
      const from = 3 * triangles[at + corner];
      return [points[from + 2], points[from], points[from + 1]];
    });
    sum += a[0] * (b[1] * c[2] - b[2] * c[1]);
    sum += a[1] * (b[2] * c[0] - b[0] * c[2]);
    sum += a[2] * (b[0] * c[1] - b[1] * c[0]);
  }
  return sum / 6;
}

const angle = [0, 0, 6, 0, 6, 1, 1, 1, 1, 9, 0, 9];
const angleArea = 6 * 1 + 1 * 8;
const outer = [-2, -2, 2, -2, 2, 2, -2, 2];
const inner = [-1, -1, 1, -1, 1, 1, -1, 1];

// Coordinates are small whole numbers, s in halves: sums of products are exact.
test("an angle is closed, and its faces look outwards", () => {
  assert.equal(volumeOf(extrude([angle], 2)), angleArea);
});

test("the direction of a ring does not matter", () => {
  const pairs = [];
  for (let at = angle.length - 2; at >= 0; at -= 2) pairs.push(angle[at], angle[at + 1]);
  assert.equal(volumeOf(extrude([pairs], 2)), angleArea);
});

test("a hole takes its area away, in whatever direction it runs", () => {
  assert.equal(volumeOf(extrude([outer, inner], 1)), 16 - 4);
  const turned = [-1, -1, -1, 1, 1, 1, 1, -1];
  assert.equal(volumeOf(extrude([outer, turned], 1)), 16 - 4);
});

test("a first point that stands again at the end is one point", () => {
  const closed = extrude([[...outer, -2, -2]], 1);
  assert.equal(closed.points.length, extrude([outer], 1).points.length);
  assert.equal(volumeOf(closed), 16);
});

test("a square has an edge at each corner, a circle has none", () => {
  const circle = Array.from({ length: 48 }, (_, at) => {
    const turn = (2 * Math.PI * Math.floor(at / 2)) / 24;
    return at % 2 === 0 ? Math.cos(turn) : Math.sin(turn);
  });
  // Distances 2 and 3 are those to the sides of a face.
  const hasEdge = ({ distances }: Extrusion): boolean =>
    distances.some((value, at) => at % 4 >= 2 && value === 0);
  assert.ok(hasEdge(extrude([outer], 1)));
  assert.ok(!hasEdge(extrude([circle], 1)));
});

test("a section without area is not drawn", () => {
  assert.equal(extrudeSection(makeSection([]), 1), null);
  assert.equal(extrudeSection(makeSection([[0, 0, 1, 0, 2, 0]]), 1), null);
  assert.equal(extrudeSection(makeSection([[0, 0, 1, 0, NaN, 1]]), 1), null);
});
