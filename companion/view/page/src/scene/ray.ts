// Where a ray from the eye meets lines and triangles.

import { add, cross, dot, subtract } from "./vector";
import type { Vector } from "./vector";

export interface Ray {
  from: Vector;
  along: Vector; // unit length, away from the eye
}

// A place on a surface, in the frame of the picture.
export interface SurfaceHit {
  place: Vector; // undeformed
  seen: Vector; // as it is drawn
}

// The place with these shares of places.
export function mixPlaces(places: Vector[], weights: number[]): Vector {
  return places.reduce<Vector>((sum, one, corner) => add(sum, one, weights[corner]), [0, 0, 0]);
}

// Shares of the corners of a line, a triangle or a quadrilateral at the place that the ray meets.
export function weightsAt(ray: Ray, corners: Vector[]): number[] {
  if (corners.length === 2) return nearestOnLine(ray, corners[0], corners[1]);
  return weightsInside(ray, corners);
}

// Shares of the ends of a line at its place nearest to the ray.
function nearestOnLine(ray: Ray, start: Vector, end: Vector): number[] {
  const line = subtract(end, start);
  const across = cross(cross(line, ray.along), ray.along);
  const speed = dot(across, line);
  const s = speed === 0 ? 0.5 : dot(across, subtract(ray.from, start)) / speed;
  const bounded = Math.max(0, Math.min(1, s));
  return [1 - bounded, bounded];
}

// Shares of the corners where the ray meets one of the triangles (0, 1, 2), (0, 2, 3). Beside both,
// by less than a pixel, the nearer place of one of them.
function weightsInside(ray: Ray, corners: Vector[]): number[] {
  let best: number[] = corners.map(() => 1 / corners.length);
  let least = -Infinity;
  for (let corner = 2; corner < corners.length; ++corner) {
    const inside = meetTriangle(ray, corners[0], corners[corner - 1], corners[corner]);
    const smallest = Math.min(...inside);
    if (!(smallest > least)) continue;
    least = smallest;
    const bounded = inside.map((share) => Math.max(0, share));
    const sum = bounded[0] + bounded[1] + bounded[2];
    best = corners.map(() => 0);
    [0, corner - 1, corner].forEach((at, row) => (best[at] = bounded[row] / sum));
  }
  return best;
}

// Shares of three corners where the ray meets their plane; NaN where it does not.
export function meetTriangle(ray: Ray, a: Vector, b: Vector, c: Vector): [number, number, number] {
  const normal = cross(subtract(b, a), subtract(c, a));
  const depth = dot(subtract(a, ray.from), normal) / dot(ray.along, normal);
  const place = add(ray.from, ray.along, depth);
  const size = dot(normal, normal);
  const shareOf = (p: Vector, q: Vector): number =>
    dot(cross(subtract(q, p), subtract(place, p)), normal) / size;
  return [shareOf(b, c), shareOf(c, a), shareOf(a, b)];
}
