// The deformed line of a beam: cubic across, linear along. Its displacement at s = x / length is
//
//   u = (1 - s) u1 + s u2
//   v = H1 v1 + H2 L rz1 + H3 v2 + H4 L rz2        (slope of v: +rz)
//   w = H1 w1 - H2 L ry1 + H3 w2 - H4 L ry2        (slope of w: -ry)
//
// in local axes, with the cubics H of Hermite. The shaders of beams.ts have the same formulas.

import { add, cross, dot, isFinite3, length, subtract, takeVector, times } from "./vector";
import type { Vector } from "./vector";
import type { BeamTable } from "../data/page_model";

export interface BeamLine {
  start: Vector; // in the frame of the places
  end: Vector;
  x: Vector; // local axes; y and z are NaN where the beam has no direction
  y: Vector;
  z: Vector;
  length: number; // in the unit of displacements
}

// places: of nodes, [nodes x 3], in units of `size`. Null where a node has no place or both nodes
// are at one place.
export function placeBeamLine(
  beams: BeamTable,
  beam: number,
  places: ArrayLike<number>,
  size: number,
): BeamLine | null {
  const start = takeVector(places, beams.nodes[2 * beam]);
  const end = takeVector(places, beams.nodes[2 * beam + 1]);
  const along = subtract(end, start);
  const distance = length(along);
  if (!(distance > 0) || !isFinite3(along)) return null;
  const x = times(along, 1 / distance);
  const z = takeVector(beams.z, beam);
  return { start, end, x, y: cross(z, x), z, length: size * distance };
}

// [H1, H2, H3, H4] at s.
export function hermite(s: number): [number, number, number, number] {
  const rest = 1 - s;
  return [rest * rest * (1 + 2 * s), s * rest * rest, s * s * (3 - 2 * s), -s * s * rest];
}

// The displacement at s, global, from the motion of both ends (ux .. rz each, global). Without
// local axes the ends are joined by a straight line.
export function moveAlong(
  line: BeamLine,
  first: ArrayLike<number>,
  second: ArrayLike<number>,
  s: number,
): Vector {
  const u1 = takeVector(first, 0);
  const u2 = takeVector(second, 0);
  if (!isFinite3(line.y)) return add(times(u1, 1 - s), u2, s);
  const r1 = takeVector(first, 0, 6, 3);
  const r2 = takeVector(second, 0, 6, 3);
  const [h1, h2, h3, h4] = hermite(s);
  const u = (1 - s) * dot(u1, line.x) + s * dot(u2, line.x);
  const slopesV = h2 * dot(r1, line.z) + h4 * dot(r2, line.z);
  const slopesW = h2 * dot(r1, line.y) + h4 * dot(r2, line.y);
  const v = h1 * dot(u1, line.y) + h3 * dot(u2, line.y) + line.length * slopesV;
  const w = h1 * dot(u1, line.z) + h3 * dot(u2, line.z) - line.length * slopesW;
  return add(add(times(line.x, u), line.y, v), line.z, w);
}

// The displacement of the point y, z of the section at s: the section turns with the rotations,
// linearly: r = (twist, -w', v'), displacement + r x (0, y, z). y, z: in the unit of displacements.
export function moveInSection(
  line: BeamLine,
  first: ArrayLike<number>,
  second: ArrayLike<number>,
  s: number,
  y: number,
  z: number,
): Vector {
  const u1 = takeVector(first, 0);
  const u2 = takeVector(second, 0);
  const r1 = takeVector(first, 0, 6, 3);
  const r2 = takeVector(second, 0, 6, 3);
  const [h1, h2, h3, h4] = hermiteSlopes(s);
  const size = line.length;
  const slope = (axis: Vector, turned: (r: Vector) => number): number =>
    (h1 * dot(u1, axis) + h3 * dot(u2, axis)) / size + h2 * turned(r1) + h4 * turned(r2);
  const ry = -slope(line.z, (r) => -dot(r, line.y));
  const rz = slope(line.y, (r) => dot(r, line.z));
  const rx = (1 - s) * dot(r1, line.x) + s * dot(r2, line.x);
  const turned = add(add(times(line.x, ry * z - rz * y), line.y, -rx * z), line.z, rx * y);
  return add(moveAlong(line, first, second, s), turned);
}

// The slopes of H1 .. H4 over s.
function hermiteSlopes(s: number): [number, number, number, number] {
  const rest = 1 - s;
  return [-6 * s * rest, rest * (1 - 3 * s), 6 * s * rest, s * (3 * s - 2)];
}

// c0 + c1 s + c2 s^2 + c3 s^3 of row `row` of curves [rows x 4].
export function evaluate(curves: ArrayLike<number>, row: number, s: number): number {
  const at = 4 * row;
  return curves[at] + s * (curves[at + 1] + s * (curves[at + 2] + s * curves[at + 3]));
}
