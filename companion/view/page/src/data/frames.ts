// The local axes of elements, as the solver has them.
//
// Shell: e1 along the first edge, e3 normal to it and to the edge from the first to the last node,
// e2 = e3 x e1. Beam: x from the first to the second node, z as the page's data has it, y = z x x.
// Nothing is checked: coincident or missing nodes give NaN.

import type { BeamTable } from "./page_model";

export type Vector = [number, number, number];

// Three unit vectors, global components: e1, e2, e3 of a shell, x, y, z of a beam.
export type Axes = [Vector, Vector, Vector];

export function subtract(a: Vector, b: Vector): Vector {
  return [a[0] - b[0], a[1] - b[1], a[2] - b[2]];
}

export function cross(a: Vector, b: Vector): Vector {
  return [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]];
}

export function normalise(a: Vector): Vector {
  const length = Math.sqrt(a[0] * a[0] + a[1] * a[1] + a[2] * a[2]);
  return [a[0] / length, a[1] / length, a[2] / length];
}

// Row `node` of places [nodes x 3]; NaN where there is none.
export function takePlace(places: ArrayLike<number>, node: number): Vector {
  return [places[3 * node] ?? NaN, places[3 * node + 1] ?? NaN, places[3 * node + 2] ?? NaN];
}

export function findElementFrame(first: Vector, second: Vector, last: Vector): Axes {
  const a = subtract(second, first);
  const normal = cross(a, subtract(last, first));
  return [normalise(a), normalise(cross(normal, a)), normalise(normal)];
}

// The frame of element `number` of a table with `corners` nodes each.
export function findShellFrame(
  coordinates: ArrayLike<number>,
  table: { corners: number; nodes: Int32Array },
  number: number,
): Axes {
  const at = table.corners * number;
  return findElementFrame(
    takePlace(coordinates, table.nodes[at]),
    takePlace(coordinates, table.nodes[at + 1]),
    takePlace(coordinates, table.nodes[at + table.corners - 1]),
  );
}

export interface BeamLine {
  start: Vector; // of its nodes
  end: Vector;
  length: number;
  axes: Axes;
}

export function findBeamLine(
  coordinates: ArrayLike<number>,
  beams: BeamTable,
  beam: number,
): BeamLine {
  const start = takePlace(coordinates, beams.nodes[2 * beam]);
  const end = takePlace(coordinates, beams.nodes[2 * beam + 1]);
  const along = subtract(end, start);
  const x = normalise(along);
  const z = takePlace(beams.z, beam);
  return { start, end, length: Math.hypot(...along), axes: [x, cross(z, x), z] };
}
