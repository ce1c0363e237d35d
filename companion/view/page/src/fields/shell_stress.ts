// Stresses of shells by corner, on one face: averaged ones of the result files, or those of the
// elements by themselves.
//
// Averaged von Mises stresses of the faces are the files' own numbers. All other values are made
// here from six digits, and are good to about five.

import { findShellFrame } from "../data/frames";
import type { AveragedStresses, CornerStresses, PageModel } from "../data/page_model";
import {
  addRounded,
  equivalentStress,
  globalComponent,
  largerPrincipal,
  planeEquivalentStress,
  resolveStress,
  smallerPrincipal,
} from "./stress_tensor";

export type Face = "upper" | "lower" | "middle";

export const globalStressIds = ["SX", "SY", "SZ", "TXY", "TXZ", "TYZ"];
const globalAxes = [[0, 0], [1, 1], [2, 2], [0, 1], [0, 2], [1, 2]];

// The value of a plane stress that a quantity shows.
const planeValues: Record<string, (x: number, y: number, xy: number) => number> = {
  mises: planeEquivalentStress,
  s1: largerPrincipal,
  s2: smallerPrincipal,
  sx: (x) => x,
  sy: (_x, y) => y,
  txy: (_x, _y, xy) => xy,
};

// Von Mises stresses by corner; needs no axes of elements.
export function averagedMises(stresses: AveragedStresses, face: Face): Float32Array {
  if (face === "upper") return takeRows(stresses.upperMises, 1, 0, stresses.rows);
  if (face === "lower") return takeRows(stresses.lowerMises, 1, 0, stresses.rows);
  return takeRows(equivalentStresses(chooseFace(stresses, face)), 1, 0, stresses.rows);
}

// id: of a quantity with averages, but "membrane". [4 shells + 3 triangles]
export function averagedStress(
  id: string,
  stresses: AveragedStresses,
  face: Face,
  model: PageModel,
): Float32Array {
  if (id === "mises") return averagedMises(stresses, face);
  const rows = stresses.rows;
  const tensors = chooseFace(stresses, face);
  const component = globalStressIds.indexOf(id);
  if (component >= 0) return takeRows(tensors, 6, component, rows);
  const frames = listFrames(model);
  const elements = listElements(model);
  const value = planeValues[id];
  const values = new Float32Array(rows.length);
  for (let corner = 0; corner < rows.length; ++corner) {
    const e1 = 9 * elements[corner];
    const at = 6 * rows[corner];
    values[corner] = value(
      resolveStress(tensors, at, frames, e1, e1),
      resolveStress(tensors, at, frames, e1 + 3, e1 + 3),
      resolveStress(tensors, at, frames, e1, e1 + 3),
    );
  }
  return values;
}

export function ownStress(
  id: string,
  corners: CornerStresses,
  face: Face,
  model: PageModel,
): Float32Array {
  const planes = chooseFace(corners, face);
  const values = new Float32Array(planes.length / 3);
  const component = globalStressIds.indexOf(id);
  if (component < 0) {
    const value = planeValues[id];
    for (let corner = 0, at = 0; corner < values.length; ++corner, at += 3) {
      values[corner] = value(planes[at], planes[at + 1], planes[at + 2]);
    }
    return values;
  }
  const frames = listFrames(model);
  const elements = listElements(model);
  const [i, j] = globalAxes[component];
  for (let corner = 0; corner < values.length; ++corner) {
    const e1 = 9 * elements[corner];
    values[corner] = globalComponent(planes, 3 * corner, frames, e1, i, j);
  }
  return values;
}

// The larger value of both faces: of signed quantities by size, with its sign; of the principal
// stresses the higher tension and the higher compression. rank: by which one is larger. Where one
// face has no number, nor has the result.
export function takeLarger(
  upper: Float32Array,
  lower: Float32Array,
  rank: (value: number) => number,
): { values: Float32Array; faces: Uint8Array } {
  const values = upper.slice();
  const faces = new Uint8Array(upper.length);
  for (let corner = 0; corner < upper.length; ++corner) {
    const isLower = rank(lower[corner]) > rank(upper[corner]);
    if (isLower || Number.isNaN(lower[corner])) values[corner] = lower[corner];
    if (isLower) faces[corner] = 1;
  }
  return { values, faces };
}

function takeRows(
  table: Float32Array,
  columns: number,
  column: number,
  rows: Int32Array,
): Float32Array {
  const values = new Float32Array(rows.length);
  for (let i = 0; i < rows.length; ++i) {
    values[i] = table[columns * rows[i] + column]; // NaN where there is no such row
  }
  return values;
}

// Stresses of the middle face are the mean of those of both faces.
function chooseFace(
  stresses: { upper: Float32Array; lower: Float32Array },
  face: Face,
): Float32Array {
  if (face === "upper") return stresses.upper;
  if (face === "lower") return stresses.lower;
  return stresses.upper.map((value, i) => addRounded(value, stresses.lower[i]) / 2);
}

function equivalentStresses(tensors: Float32Array): Float32Array {
  const values = new Float32Array(tensors.length / 6);
  for (let row = 0, at = 0; row < values.length; ++row, at += 6) {
    values[row] = equivalentStress(
      tensors[at],
      tensors[at + 1],
      tensors[at + 2],
      tensors[at + 3],
      tensors[at + 4],
      tensors[at + 5],
    );
  }
  return values;
}

// Made once for each model: the frames of its elements, [elements x 9], four-node shells first.
const keptFrames = new WeakMap<PageModel, Float64Array>();

function listFrames(model: PageModel): Float64Array {
  let frames = keptFrames.get(model);
  if (frames === undefined) {
    frames = new Float64Array(9 * (model.shells.count + model.triangles.count));
    let at = 0;
    for (const table of [model.shells, model.triangles]) {
      for (let number = 0; number < table.count; ++number) {
        for (const axis of findShellFrame(model.coordinates, table, number)) {
          frames.set(axis, at);
          at += 3;
        }
      }
    }
    keptFrames.set(model, frames);
  }
  return frames;
}

// The element of each corner, four-node shells first.
function listElements(model: PageModel): Uint32Array {
  const first = 4 * model.shells.count;
  const elements = new Uint32Array(first + 3 * model.triangles.count);
  for (let i = 0; i < first; ++i) elements[i] = i >> 2;
  for (let i = first; i < elements.length; ++i) {
    elements[i] = model.shells.count + Math.floor((i - first) / 3);
  }
  return elements;
}
