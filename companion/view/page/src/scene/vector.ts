// Vectors of three numbers, as far as the picture needs them.

import { cross, normalise, subtract } from "../data/frames";
import type { Vector } from "../data/frames";

export { cross, normalise, subtract };
export type { Vector };

export function add(a: Vector, b: Vector, factor = 1): Vector {
  return [a[0] + factor * b[0], a[1] + factor * b[1], a[2] + factor * b[2]];
}

export function times(a: Vector, factor: number): Vector {
  return [factor * a[0], factor * a[1], factor * a[2]];
}

export function dot(a: Vector, b: Vector): number {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

export function length(a: Vector): number {
  return Math.hypot(a[0], a[1], a[2]);
}

export function distance(a: Vector, b: Vector): number {
  return length(subtract(a, b));
}

export function isFinite3(a: Vector): boolean {
  return Number.isFinite(a[0]) && Number.isFinite(a[1]) && Number.isFinite(a[2]);
}

// The vector of row `row` of an array [rows x width].
export function takeVector(array: ArrayLike<number>, row: number, width = 3, first = 0): Vector {
  const at = row * width + first;
  return [array[at], array[at + 1], array[at + 2]];
}

// a turned about a unit axis, right-handed.
export function turn(a: Vector, axis: Vector, angle: number): Vector {
  const cosine = Math.cos(angle);
  const along = dot(axis, a) * (1 - cosine);
  return add(add(times(a, cosine), cross(axis, a), Math.sin(angle)), axis, along);
}
