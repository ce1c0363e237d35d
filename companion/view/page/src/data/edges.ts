// The edges of shells, each once, as pairs of corners (data/corners.ts).
//
// An edge is a pair of different nodes that follow one another around an element. It may run in
// either direction. Elements with nodes that do not exist have no edges there.

import { listCornerNodes } from "./corners";
import type { ShellMesh } from "./corners";

export interface ShellEdges {
  all: Uint32Array; // [edges x 2] corners
  free: Uint32Array; // of one element only
  outline: Uint32Array; // free, folded, or of three elements or more: what makes the shape visible
}

// Elements that meet at a larger angle make a fold. Neighbours in a curved plate of a usual mesh
// turn by less.
const foldCosine = Math.cos((20 * Math.PI) / 180);

export function findEdges(mesh: ShellMesh): ShellEdges {
  const nodes = listCornerNodes(mesh);
  const next = listNextCorners(mesh);
  const { uses, second } = matchEdges(nodes, next, mesh.coordinates.length / 3);
  const normals = computeNormals(mesh);
  const isFree = uses.map((count) => (count === 1 ? 1 : 0));
  const isOutline = new Uint8Array(nodes.length);
  for (let corner = 0; corner < nodes.length; ++corner) {
    isOutline[corner] =
      uses[corner] === 1 ||
      uses[corner] > 2 ||
      (uses[corner] === 2 && isFold(mesh, normals, corner, second[corner]))
        ? 1
        : 0;
  }
  return {
    all: takePairs(uses, next),
    free: takePairs(isFree, next),
    outline: takePairs(isOutline, next),
  };
}

// The corner that follows each corner around its element.
function listNextCorners(mesh: ShellMesh): Uint32Array {
  const next = new Uint32Array(4 * mesh.shells.count + 3 * mesh.triangles.count);
  let at = 0;
  for (let e = 0; e < mesh.shells.count; ++e, at += 4) {
    next[at] = at + 1;
    next[at + 1] = at + 2;
    next[at + 2] = at + 3;
    next[at + 3] = at;
  }
  for (let t = 0; t < mesh.triangles.count; ++t, at += 3) {
    next[at] = at + 1;
    next[at + 1] = at + 2;
    next[at + 2] = at;
  }
  return next;
}

// Which edges are one. uses: at the first corner where an edge begins, how many elements have it;
// at all others 0. More than 255 elements at an edge count as 255. second: at such a corner, the
// one where it begins in the second element.
function matchEdges(
  nodes: Int32Array,
  next: Uint32Array,
  nodeCount: number,
): { uses: Uint8Array; second: Uint32Array } {
  const uses = new Uint8Array(nodes.length);
  const second = new Uint32Array(nodes.length);
  // A hash table with open addressing, at most half full, of the corners where edges begin.
  const bits = Math.max(4, Math.ceil(Math.log2(2 * nodes.length + 1)));
  const table = new Int32Array(2 ** bits).fill(-1);
  for (let corner = 0; corner < nodes.length; ++corner) {
    const a = nodes[corner];
    const b = nodes[next[corner]];
    if (a === b || a < 0 || b < 0 || a >= nodeCount || b >= nodeCount) continue;
    const [low, high] = a < b ? [a, b] : [b, a];
    let slot = hashPair(low, high, bits);
    while (table[slot] >= 0 && !isEdge(nodes, next, table[slot], low, high)) {
      slot = (slot + 1) & (table.length - 1);
    }
    if (table[slot] < 0) table[slot] = corner;
    const first = table[slot];
    if (uses[first] === 1) second[first] = corner;
    if (uses[first] < 255) ++uses[first];
  }
  return { uses, second };
}

// The upper bits of a product with the golden ratio (Knuth 1998, sec. 6.4), after both nodes are
// mixed by another odd factor.
function hashPair(low: number, high: number, bits: number): number {
  const mixed = Math.imul(low, 0x85ebca6b) ^ high;
  return Math.imul(mixed ^ (mixed >>> 15), 0x9e3779b1) >>> (32 - bits);
}

function isEdge(
  nodes: Int32Array,
  next: Uint32Array,
  corner: number,
  low: number,
  high: number,
): boolean {
  const a = nodes[corner];
  const b = nodes[next[corner]];
  return (a === low && b === high) || (a === high && b === low);
}

// Normals of the elements, four-node shells first, [elements x 3], of any length: the product of
// the diagonals, of a triangle of two sides.
function computeNormals(mesh: ShellMesh): Float64Array {
  const normals = new Float64Array(3 * (mesh.shells.count + mesh.triangles.count));
  const quads = mesh.shells.nodes;
  for (let e = 0; e < mesh.shells.count; ++e) {
    const at = 4 * e;
    crossSides(mesh, quads[at], quads[at + 2], quads[at + 1], quads[at + 3], normals, 3 * e);
  }
  const first = 3 * mesh.shells.count;
  const triples = mesh.triangles.nodes;
  for (let t = 0; t < mesh.triangles.count; ++t) {
    const [a, b, c] = [triples[3 * t], triples[3 * t + 1], triples[3 * t + 2]];
    crossSides(mesh, a, b, a, c, normals, first + 3 * t);
  }
  return normals;
}

// (b - a) x (d - c), written to normals[at ..].
function crossSides(
  mesh: ShellMesh,
  a: number,
  b: number,
  c: number,
  d: number,
  normals: Float64Array,
  at: number,
): void {
  const p = mesh.coordinates;
  const x1 = p[3 * b] - p[3 * a];
  const y1 = p[3 * b + 1] - p[3 * a + 1];
  const z1 = p[3 * b + 2] - p[3 * a + 2];
  const x2 = p[3 * d] - p[3 * c];
  const y2 = p[3 * d + 1] - p[3 * c + 1];
  const z2 = p[3 * d + 2] - p[3 * c + 2];
  normals[at] = y1 * z2 - z1 * y2;
  normals[at + 1] = z1 * x2 - x1 * z2;
  normals[at + 2] = x1 * y2 - y1 * x2;
}

// Whether the elements of two corners meet at a fold. The normals of neighbours may point to
// opposite sides, which is no fold; nor is an element without a normal.
function isFold(mesh: ShellMesh, normals: Float64Array, one: number, other: number): boolean {
  const a = 3 * elementOf(mesh, one);
  const b = 3 * elementOf(mesh, other);
  const product =
    normals[a] * normals[b] +
    normals[a + 1] * normals[b + 1] +
    normals[a + 2] * normals[b + 2];
  const lengths =
    Math.hypot(normals[a], normals[a + 1], normals[a + 2]) *
    Math.hypot(normals[b], normals[b + 1], normals[b + 2]);
  return Math.abs(product) < foldCosine * lengths;
}

// The element among four-node shells, then triangles.
function elementOf(mesh: ShellMesh, corner: number): number {
  const first = 4 * mesh.shells.count;
  return corner < first
    ? corner >> 2
    : mesh.shells.count + Math.floor((corner - first) / 3);
}

// The edges that begin at the marked corners.
function takePairs(marks: Uint8Array, next: Uint32Array): Uint32Array {
  let count = 0;
  for (const mark of marks) count += mark > 0 ? 1 : 0;
  const pairs = new Uint32Array(2 * count);
  let at = 0;
  for (let corner = 0; corner < marks.length; ++corner) {
    if (marks[corner] === 0) continue;
    pairs[at++] = corner;
    pairs[at++] = next[corner];
  }
  return pairs;
}
