// Signs of loads, prescribed displacements and reactions: arrows whose tips are where the load
// acts, for moments arrows with two heads along the axis (right-handed). The largest of each kind
// has full length, others in proportion, but for very small ones.

import type { CaseLoads, CaseResults, PageModel } from "../data/page_model";
import type { Glyph } from "./glyphs";
import type { Palette, Rgb } from "./palette";
import { pickSparse } from "./sparse";
import type { PlaceOf } from "./support_glyphs";
import { add, cross, isFinite3, length, normalise, subtract, takeVector, times } from "./vector";
import type { Vector } from "./vector";

const ArrowSize = 0.06; // of the model's diagonal
const PressureSize = 0.036;
const LeastShare = 0.08; // shorter ones could not be seen
const MostArrows = 150; // of nodal loads, of pressures, and of line loads

// An arrow of a vector; none where it is zero or no number.
function arrowOf(
  shape: "arrow" | "doubleArrow",
  vector: Vector,
  largest: number,
  at: { place: Vector; move: Vector },
  full: number,
  color: Rgb,
): Glyph[] {
  const value = length(vector);
  if (!(value > 0) || !Number.isFinite(value)) return [];
  const size = full * Math.max(LeastShare, Math.min(1, value / largest));
  return [{ ...at, shape, direction: times(vector, 1 / value), size, color }];
}

function largestOf(vectors: Vector[]): number {
  return vectors.map(length).filter(Number.isFinite).reduce((a, b) => Math.max(a, b), 0);
}

// Forces and moments at nodes, [n x 6].
function listNodal(
  nodes: Int32Array,
  values: Float32Array,
  placeOf: PlaceOf,
  forceColor: Rgb,
  momentColor: Rgb,
): Glyph[] {
  const rows = Array.from(nodes, (_, row) => row);
  const forces = rows.map((row) => takeVector(values, row, 6));
  const moments = rows.map((row) => takeVector(values, row, 6, 3));
  const [force, moment] = [largestOf(forces), largestOf(moments)];
  const shareOf = (value: number, most: number): number => (value > 0 ? value / most : 0);
  const sizeOf = (row: number): number =>
    Math.max(shareOf(length(forces[row]), force), shareOf(length(moments[row]), moment));
  return thinRows(rows, nodes, placeOf, sizeOf).flatMap((row) => {
    const at = placeOf(nodes[row]);
    if (!at) return [];
    // What is smaller than rounding is no load.
    const isSmall = (vector: Vector, largest: number): boolean => length(vector) < 1e-9 * largest;
    return [
      ...(isSmall(forces[row], force)
        ? []
        : arrowOf("arrow", forces[row], force, at, ArrowSize, forceColor)),
      ...(isSmall(moments[row], moment)
        ? []
        : arrowOf("doubleArrow", moments[row], moment, at, ArrowSize, momentColor)),
    ];
  });
}

// Of hundreds some that stay apart, the largest first.
function thinRows(
  rows: number[],
  nodes: Int32Array,
  placeOf: PlaceOf,
  sizeOf: (row: number) => number,
): number[] {
  if (rows.length <= MostArrows) return rows;
  const placed = rows.flatMap((row) => {
    const at = placeOf(nodes[row]);
    return at ? [{ row, place: at.place, size: sizeOf(row) }] : [];
  });
  placed.sort((a, b) => b.size - a.size || a.row - b.row);
  return pickSparse(placed, MostArrows).map(({ row }) => row);
}

export function listReactions(results: CaseResults, placeOf: PlaceOf, palette: Palette): Glyph[] {
  const { reactionNodes, reactions } = results;
  return listNodal(reactionNodes, reactions, placeOf, palette.reaction, palette.reaction);
}

export interface LoadPlaces {
  model: PageModel;
  placeOf: PlaceOf;
  isShown: (kind: "shells" | "triangles" | "beams", row: number) => boolean;
}

export function listLoads(loads: CaseLoads, places: LoadPlaces, palette: Palette): Glyph[] {
  const { forceNodes, forces } = loads;
  return [
    ...listNodal(forceNodes, forces, places.placeOf, palette.force, palette.moment),
    ...listPressures(loads, places, palette),
    ...listLineLoads(loads, places, palette),
    ...listPrescribed(loads, places, palette),
  ];
}

function listPrescribed(loads: CaseLoads, places: LoadPlaces, palette: Palette): Glyph[] {
  return Array.from(loads.prescribedNodes).flatMap((node, row) => {
    const at = places.placeOf(node);
    const dof = loads.prescribedDofs[row];
    if (!at || !(dof >= 0 && dof < 6)) return [];
    const vector: Vector = [0, 0, 0];
    vector[dof % 3] = Math.sign(loads.prescribedValues[row]);
    const shape = dof < 3 ? "arrow" : "doubleArrow";
    return arrowOf(shape, vector, 1, at, ArrowSize, palette.prescribed);
  });
}

interface Loaded {
  place: Vector;
  move: Vector;
  vector: Vector;
}

interface LoadedElement {
  nodes: Int32Array;
  pressure: number; // mean of the three, along the normal
  place: Vector; // of its first node
}

function listPressures(loads: CaseLoads, places: LoadPlaces, palette: Palette): Glyph[] {
  const { shells, triangles } = places.model;
  const { shellLoads, shellPressures, triangleLoads, trianglePressures } = loads;
  const list: LoadedElement[] = [];
  const look = (
    elements: Int32Array,
    pressures: Float32Array,
    kind: "shells" | "triangles",
  ): void => {
    const table = kind === "shells" ? shells : triangles;
    for (let row = 0; row < elements.length; ++row) {
      const first = table.corners * elements[row];
      const nodes = table.nodes.subarray(first, first + table.corners);
      const pressure = (pressures[3 * row] + pressures[3 * row + 1] + pressures[3 * row + 2]) / 3;
      if (pressure === 0 || !Number.isFinite(pressure)) continue;
      if (!places.isShown(kind, elements[row])) continue;
      const at = places.placeOf(nodes[0]);
      if (at) list.push({ nodes, pressure, place: at.place });
    }
  };
  look(shellLoads, shellPressures, "shells");
  look(triangleLoads, trianglePressures, "triangles");
  const largest = list.reduce((most, each) => Math.max(most, Math.abs(each.pressure)), 0);
  return pickSparse(list, MostArrows).flatMap((each) => {
    const at = middleOf(each, places.placeOf);
    return at ? arrowOf("arrow", at.vector, largest, at, PressureSize, palette.pressure) : [];
  });
}

// The middle of an element and its pressure along the normal; null where it has none.
function middleOf({ nodes, pressure }: LoadedElement, placeOf: PlaceOf): Loaded | null {
  const corners = Array.from(nodes, placeOf).filter((corner) => corner !== null);
  if (corners.length < nodes.length) return null;
  let place: Vector = [0, 0, 0];
  let move: Vector = [0, 0, 0];
  for (const corner of corners) {
    place = add(place, corner.place, 1 / nodes.length);
    move = add(move, corner.move, 1 / nodes.length);
  }
  const first = corners[0].place;
  const last = corners[corners.length - 1].place;
  const normal = normalise(cross(subtract(corners[1].place, first), subtract(last, first)));
  return isFinite3(normal) ? { place, move, vector: times(normal, pressure) } : null;
}

// Arrows at some places of each beam, along its local z.
function listLineLoads(loads: CaseLoads, places: LoadPlaces, palette: Palette): Glyph[] {
  const { model } = places;
  const rows = Array.from(loads.beamLoads, (_, row) => row);
  const each = Math.max(1, Math.min(5, Math.floor(MostArrows / Math.max(1, rows.length))));
  const loaded = rows.flatMap((row): Loaded[] => {
    const beam = loads.beamLoads[row];
    if (!places.isShown("beams", beam)) return [];
    const first = places.placeOf(model.beams.nodes[2 * beam]);
    const second = places.placeOf(model.beams.nodes[2 * beam + 1]);
    const z = takeVector(model.beams.z, beam);
    if (!first || !second || !isFinite3(z)) return [];
    const [q1, q2] = loads.lineLoads.subarray(2 * row, 2 * row + 2);
    return Array.from({ length: each }, (_, step) => {
      const s = (step + 0.5) / each;
      const place = add(times(first.place, 1 - s), second.place, s);
      const move = add(times(first.move, 1 - s), second.move, s);
      return { place, move, vector: times(z, (1 - s) * q1 + s * q2) };
    });
  });
  const largest = largestOf(loaded.map((one) => one.vector));
  return pickSparse(loaded, MostArrows).flatMap((one) =>
    arrowOf("arrow", one.vector, largest, one, PressureSize, palette.pressure),
  );
}
