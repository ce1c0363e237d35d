// Edges of small meshes, counted by hand.
import assert from "node:assert/strict";
import { test } from "node:test";

import { findEdges } from "../../../../companion/view/page/src/data/edges";
import { findCorner, firstCorner } from "../../../../companion/view/page/src/data/corners";
import { makeSmallModel } from "./small_model";

const noTriangles = { count: 0, nodes: new Int32Array(0) };

function pairsOf(values: Uint32Array): number[][] {
  return Array.from({ length: values.length / 2 }, (_, i) => [values[2 * i], values[2 * i + 1]]);
}

test("a plate with a wall and a triangle", () => {
  // Corners 0 to 3 are shell 0 (nodes 0 1 4 3), 4 to 7 shell 1 (1 2 5 4), 8 to 11 the wall
  // (3 4 7 6), 12 to 14 the triangle (2 8 5). Shared are 1-4, 3-4 and 2-5; 3-4 is a fold.
  const edges = findEdges(makeSmallModel());
  const free = [[0, 1], [3, 0], [4, 5], [6, 7], [9, 10], [10, 11], [11, 8], [12, 13], [13, 14]];
  const byCorner = (a: number[], b: number[]) => a[0] - b[0];
  assert.deepEqual(pairsOf(edges.free), free);
  assert.deepEqual(pairsOf(edges.outline), [...free, [2, 3]].sort(byCorner));
  assert.deepEqual(pairsOf(edges.all), [...free, [2, 3], [1, 2], [5, 6]].sort(byCorner));
});

// Two squares that meet along 1-2 at this angle, with nodes in the order of `second`.
function makeFold(degrees: number, second: number[]) {
  const [c, s] = [Math.cos((degrees * Math.PI) / 180), Math.sin((degrees * Math.PI) / 180)];
  return {
    coordinates: [0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 1 + c, 0, s, 1 + c, 1, s],
    shells: { count: 2, nodes: Int32Array.of(0, 1, 2, 3, ...second) },
    triangles: noTriangles,
  };
}

test("folds begin at 20 degrees, whichever way the normals point", () => {
  for (const second of [[1, 4, 5, 2], [2, 5, 4, 1]]) {
    assert.equal(findEdges(makeFold(19.9, second)).outline.length / 2, 6);
    assert.equal(findEdges(makeFold(20.1, second)).outline.length / 2, 7);
    assert.equal(findEdges(makeFold(20.1, second)).free.length / 2, 6);
  }
});

test("an edge of three elements is part of the outline, and not free", () => {
  const mesh = makeFold(0, [1, 4, 5, 2]);
  mesh.shells = { count: 3, nodes: Int32Array.of(...mesh.shells.nodes, 1, 4, 3, 2) };
  const edges = findEdges(mesh);
  // 3 x 4 sides; 1-2 counts three times, 2-3 and 1-4 twice; all in one plane.
  assert.equal(edges.all.length / 2, 12 - 2 - 2);
  assert.equal(edges.free.length / 2, 8 - 3);
  assert.ok(pairsOf(edges.outline).some(([a, b]) => a === 1 && b === 2));
  assert.equal(edges.outline.length / 2, 6);
});

test("repeated and missing nodes make no edge, places without numbers no fold", () => {
  const mesh = {
    coordinates: [0, 0, 0, 1, 0, 0, 1, 1, 0, NaN, NaN, NaN],
    shells: { count: 1, nodes: Int32Array.of(0, 1, 1, 2) },
    triangles: { count: 2, nodes: Int32Array.of(0, 2, 9, 2, 1, 3) },
  };
  const edges = findEdges(mesh);
  // 0-1, 1-2 (twice), 2-0 (twice); of the first triangle 0-2; of the second 2-1, 1-3, 3-2.
  assert.equal(edges.all.length / 2, 5);
  assert.equal(edges.outline.length / 2, 3);
});

test("a long strip: each edge once", () => {
  const n = 3000;
  const coordinates = Array.from({ length: 2 * (n + 1) }, (_, i) => [i >> 1, i & 1, 0]).flat();
  const nodes = Array.from({ length: n }, (_, e) => [2 * e, 2 * e + 2, 2 * e + 3, 2 * e + 1]);
  const shells = { count: n, nodes: Int32Array.from(nodes.flat()) };
  const edges = findEdges({ coordinates, shells, triangles: noTriangles });
  assert.equal(edges.all.length / 2, 3 * n + 1);
  assert.equal(edges.free.length / 2, 2 * n + 2);
  assert.deepEqual(edges.outline, edges.free);
});

test("corners are found back from their index", () => {
  const model = makeSmallModel();
  assert.deepEqual(findCorner(model, 11), { kind: "shell", number: 2, corner: 3 });
  assert.deepEqual(findCorner(model, 13), { kind: "triangle", number: 0, corner: 1 });
  assert.equal(firstCorner(model, "shell", 2), 8);
  assert.equal(firstCorner(model, "triangle", 0), 12);
});
