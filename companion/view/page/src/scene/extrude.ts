// A section extruded along a beam of length 1: triangles over (y, z, s), y and z in model units
// from the line between the nodes, s = x / length. Outer sides are seen from the front.

import { ShapeUtils, Vector2 } from "three";
import type { Section } from "../data/page_model";

export interface Extrusion {
  points: Float32Array; // [n x 3] y, z, s
  // [n x 4] shares of the way from an edge to the opposite one: from both ends, from both sides of
  // the face; 1 where there is no edge to draw
  distances: Float32Array;
  triangles: Uint32Array; // [m x 3]
}

// Sides that meet at 30 degrees or more have an edge there; a tube's have none.
const EdgeCosine = Math.cos((30 * Math.PI) / 180);

interface Parts {
  points: number[];
  distances: number[];
  triangles: number[];
}

type Ring = [number, number][];

// segments: along the length. Null where the section has no area to draw.
export function extrudeSection(section: Section, segments: number): Extrusion | null {
  const rings = section.rings.map(toRing);
  if (rings.length === 0 || rings.some((ring) => ring.length < 3)) return null;
  const numbers = rings.flat(2);
  if (!numbers.every(Number.isFinite) || areaOf(rings[0]) === 0) return null;
  // Around the material on the left: the outer ring counter-clockwise, holes clockwise.
  rings.forEach((ring, row) => {
    if (areaOf(ring) > 0 !== (row === 0)) ring.reverse();
  });
  const parts: Parts = { points: [], distances: [], triangles: [] };
  for (const ring of rings) addSides(parts, ring, segments);
  addCaps(parts, rings);
  return {
    points: new Float32Array(parts.points),
    distances: new Float32Array(parts.distances),
    triangles: new Uint32Array(parts.triangles),
  };
}

// Without a last point that repeats the first one.
function toRing(numbers: number[]): Ring {
  const ring: Ring = [];
  for (let at = 0; at + 1 < numbers.length; at += 2) {
    const last = ring[ring.length - 1];
    const isRepeated = last && last[0] === numbers[at] && last[1] === numbers[at + 1];
    if (!isRepeated) ring.push([numbers[at], numbers[at + 1]]);
  }
  const [first, last] = [ring[0], ring[ring.length - 1]];
  if (ring.length > 1 && first[0] === last[0] && first[1] === last[1]) ring.pop();
  return ring;
}

// Twice the area, positive counter-clockwise from y to z.
function areaOf(ring: Ring): number {
  let area = 0;
  ring.forEach(([y, z], at) => {
    const [nextY, nextZ] = ring[(at + 1) % ring.length];
    area += y * nextZ - nextY * z;
  });
  return area;
}

function isSharp(ring: Ring, at: number): boolean {
  const count = ring.length;
  const [before, here, after] = [ring[(at + count - 1) % count], ring[at], ring[(at + 1) % count]];
  const [ay, az] = [here[0] - before[0], here[1] - before[1]];
  const [by, bz] = [after[0] - here[0], after[1] - here[1]];
  return ay * by + az * bz < EdgeCosine * Math.hypot(ay, az) * Math.hypot(by, bz);
}

function addSides(parts: Parts, ring: Ring, segments: number): void {
  ring.forEach((from, side) => {
    const next = (side + 1) % ring.length;
    const to = ring[next];
    const first = parts.points.length / 3;
    const isFirstSharp = isSharp(ring, side);
    const isLastSharp = isSharp(ring, next);
    for (let step = 0; step <= segments; ++step) {
      const s = step / segments;
      parts.points.push(from[0], from[1], s, to[0], to[1], s);
      parts.distances.push(s, 1 - s, isFirstSharp ? 0 : 1, 1);
      parts.distances.push(s, 1 - s, 1, isLastSharp ? 0 : 1);
      if (step === segments) break;
      const at = first + 2 * step;
      parts.triangles.push(at, at + 1, at + 3, at, at + 3, at + 2);
    }
  });
}

function addCaps(parts: Parts, rings: Ring[]): void {
  const [contour, ...holes] = rings.map((ring) => ring.map(([y, z]) => new Vector2(y, z)));
  const flat = rings.flat();
  const faces = ShapeUtils.triangulateShape(contour, holes);
  for (const s of [0, 1]) {
    const first = parts.points.length / 3;
    for (const [y, z] of flat) {
      parts.points.push(y, z, s);
      parts.distances.push(1, 1, 1, 1);
    }
    for (const [a, b, c] of faces) {
      const isLeft = areaOf([flat[a], flat[b], flat[c]]) > 0;
      const face = isLeft === (s === 1) ? [a, b, c] : [a, c, b];
      parts.triangles.push(...face.map((corner) => first + corner));
    }
  }
}
