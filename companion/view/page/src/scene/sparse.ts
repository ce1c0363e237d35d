// Some of many places, spread evenly: none nearer to another than a distance.

import type { Vector } from "./vector";

const LeastDistance = 0.06; // part of the model's diagonal: arrows of 0.036 stay apart

// The distance is widened until there are no more than `most`. Earlier ones are kept first. Places:
// in the frame of the picture.
export function pickSparse<T extends { place: Vector }>(list: T[], most: number): T[] {
  let apart = LeastDistance;
  let chosen = pickApart(thinOut(list, LeastDistance / 3), apart);
  while (chosen.length > most) {
    apart *= 1.25;
    chosen = pickApart(chosen, apart);
  }
  return chosen;
}

// The first one in each cube: what is left of a hundred thousand is soon looked at.
function thinOut<T extends { place: Vector }>(list: T[], side: number): T[] {
  const cubes = new Set<number>();
  return list.filter(({ place }) => {
    const key = keyOf(rowsOf(place, side));
    if (cubes.has(key)) return false;
    cubes.add(key);
    return true;
  });
}

function rowsOf([x, y, z]: Vector, side: number): Vector {
  return [Math.floor(x / side), Math.floor(y / side), Math.floor(z / side)];
}

// Kept ones stand in cubes with the side `apart`, so that only 27 cubes are looked at.
export function pickApart<T extends { place: Vector }>(list: T[], apart: number): T[] {
  const kept: T[] = [];
  const cubes = new Map<number, Vector[]>();
  for (const one of list) {
    const rows = rowsOf(one.place, apart);
    if (hasNeighbour(cubes, rows, one.place, apart)) continue;
    kept.push(one);
    const key = keyOf(rows);
    const cube = cubes.get(key);
    if (cube) cube.push(one.place);
    else cubes.set(key, [one.place]);
  }
  return kept;
}

// Exact where cubes are larger than 1e-5, because the model has the size 1.
function keyOf([x, y, z]: Vector): number {
  return (x * CubeRows + y) * CubeRows + z;
}

const CubeRows = 2e5; // its cube is below 2^53

function hasNeighbour(
  cubes: Map<number, Vector[]>,
  rows: Vector,
  place: Vector,
  apart: number,
): boolean {
  for (let near = 0; near < 27; ++near) {
    const [x, y, z] = [near % 3, Math.floor(near / 3) % 3, Math.floor(near / 9)];
    const cube = cubes.get(keyOf([rows[0] + x - 1, rows[1] + y - 1, rows[2] + z - 1]));
    const isNear = cube?.some(
      (other) =>
        Math.hypot(other[0] - place[0], other[1] - place[1], other[2] - place[2]) < apart,
    );
    if (isNear) return true;
  }
  return false;
}
