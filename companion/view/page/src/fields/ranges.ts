// Where fields are lowest and highest, and the elements with the highest values.
//
// Hidden elements do not count; numbers that are not finite are counted apart and hide nothing. Of
// equal values the element with the lower number wins: four-node shells, then triangles.

import { findCorner } from "../data/corners";
import type { ShellMesh } from "../data/corners";
import { subtract, takePlace } from "../data/frames";
import type { Vector } from "../data/frames";
import type { DetailModels, PageModel } from "../data/page_model";
import type { Hidden } from "./filters";
import { rankOf } from "./quantities";
import { faceNames } from "./quantity";
import type { FieldRange, PlacedValue, ShellField } from "./quantity";
import { roundDigits } from "./ticks";

// Calls `visit` for each shell that is not hidden with its first corner and the number of corners.
function visitShells(
  mesh: ShellMesh,
  isHidden: Pick<Hidden, "shells" | "triangles">,
  visit: (first: number, corners: number) => void,
): void {
  for (let e = 0; e < mesh.shells.count; ++e) {
    if (isHidden.shells[e] !== 1) visit(4 * e, 4);
  }
  const first = 4 * mesh.shells.count;
  for (let t = 0; t < mesh.triangles.count; ++t) {
    if (isHidden.triangles[t] !== 1) visit(first + 3 * t, 3);
  }
}

// A corner and a face, as one number: 2 corner + (0 upper array, 1 lower array).
function valueOf(field: ShellField, place: number): number {
  return (place & 1) === 0 ? field.upper[place >> 1] : field.lower[place >> 1];
}

function sureValueOf(field: ShellField, place: number): number {
  return roundDigits(valueOf(field, place), field.digits);
}

interface FoundRange {
  lowest: number; // places; -1: none
  highest: number;
  notNumbers: number;
}

function searchRange(
  field: ShellField,
  mesh: ShellMesh,
  isHidden: Pick<Hidden, "shells" | "triangles">,
): FoundRange {
  const found: FoundRange = { lowest: -1, highest: -1, notNumbers: 0 };
  let lowest = Infinity;
  let highest = -Infinity;
  const faces = field.upper === field.lower ? 1 : 2;
  visitShells(mesh, isHidden, (first, corners) => {
    for (let corner = first; corner < first + corners; ++corner) {
      let isNumber = true;
      for (let place = 2 * corner; place < 2 * corner + faces; ++place) {
        const value = valueOf(field, place);
        if (!Number.isFinite(value)) {
          isNumber = false;
          continue;
        }
        if (value < lowest) [lowest, found.lowest] = [value, place];
        if (value > highest) [highest, found.highest] = [value, place];
      }
      if (!isNumber) ++found.notNumbers;
    }
  });
  return found;
}

export function measureRange(
  field: ShellField,
  model: PageModel,
  isHidden: Hidden,
): FieldRange | null {
  const found = searchRange(field, model, isHidden);
  if (found.lowest < 0) return null;
  return {
    lowest: placeShellValue(field, model, found.lowest),
    highest: placeShellValue(field, model, found.highest),
    notNumbers: found.notNumbers,
  };
}

// The same of the detail models; values are those of beams.
export function measureDetailRange(
  field: ShellField,
  details: DetailModels,
  isHidden: Hidden,
  model: PageModel,
): FieldRange | null {
  const found = searchRange(field, meshOf(details), hideDetails(details, isHidden));
  if (found.lowest < 0) return null;
  return {
    lowest: placeDetailValue(field, details, model, found.lowest),
    highest: placeDetailValue(field, details, model, found.highest),
    notNumbers: found.notNumbers,
  };
}

// The n shells with the highest values, each once with its highest corner; rankOf tells which value
// is higher.
export function listHighest(
  field: ShellField,
  model: PageModel,
  isHidden: Hidden,
  n: number,
): PlacedValue[] {
  const elements = model.shells.count + model.triangles.count;
  const first = 4 * model.shells.count;
  const elementOf = (corner: number) =>
    corner < first ? corner >> 2 : model.shells.count + Math.floor((corner - first) / 3);
  const places = searchHighest(field, model, isHidden, elements, elementOf, n);
  return places.map((place) => placeShellValue(field, model, place));
}

// The n beams with the highest values in their detail models.
export function listHighestDetails(
  field: ShellField,
  details: DetailModels,
  isHidden: Hidden,
  model: PageModel,
  n: number,
): PlacedValue[] {
  const hidden = hideDetails(details, isHidden);
  const beamOf = (corner: number) => details.beams[corner >> 2];
  const places = searchHighest(field, meshOf(details), hidden, model.beams.count, beamOf, n);
  return places.map((place) => placeDetailValue(field, details, model, place));
}

// The places of the highest values of the n groups that have the highest ones, falling.
function searchHighest(
  field: ShellField,
  mesh: ShellMesh,
  isHidden: Pick<Hidden, "shells" | "triangles">,
  groups: number,
  groupOf: (corner: number) => number,
  n: number,
): number[] {
  const rank = rankOf(field.quantity);
  const ranks = new Float64Array(groups).fill(NaN);
  const places = new Int32Array(groups);
  const faces = field.upper === field.lower ? 1 : 2;
  visitShells(mesh, isHidden, (first, corners) => {
    const group = groupOf(first);
    for (let place = 2 * first; place < 2 * (first + corners); place += 3 - faces) {
      const value = valueOf(field, place);
      if (!Number.isFinite(value) || rank(value) <= ranks[group]) continue;
      ranks[group] = rank(value);
      places[group] = place;
    }
  });
  return selectHighest(ranks, n).map((group) => places[group]);
}

// The rows of the n highest values, falling; of equal ones the first. NaNs are left out.
export function selectHighest(values: Float64Array, n: number): number[] {
  const rows: number[] = [];
  for (let row = 0; row < values.length; ++row) {
    const value = values[row];
    const isFull = rows.length >= n;
    if (Number.isNaN(value) || (isFull && !(value > values[rows[rows.length - 1]]))) continue;
    if (isFull) rows.pop();
    let at = rows.length;
    while (at > 0 && values[rows[at - 1]] < value) --at;
    rows.splice(at, 0, row);
  }
  return n > 0 ? rows : [];
}

function placeShellValue(field: ShellField, model: PageModel, place: number): PlacedValue {
  const corner = place >> 1;
  const at = findCorner(model, corner);
  const table = at.kind === "shell" ? model.shells : model.triangles;
  const node = table.nodes[table.corners * at.number + at.corner];
  return {
    value: sureValueOf(field, place),
    ...at,
    node,
    face: faceOf(field, place),
    place: takePlace(model.coordinates, node),
  };
}

// node: of the model, the beam's end that is nearer.
function placeDetailValue(
  field: ShellField,
  details: DetailModels,
  model: PageModel,
  index: number,
): PlacedValue {
  const number = details.beams[index >> 3];
  const place = takePlace(details.coordinates, details.shells[index >> 1]);
  return {
    value: sureValueOf(field, index),
    kind: "beam",
    number,
    corner: -1,
    node: nearerEnd(model, number, place),
    face: faceOf(field, index),
    place,
  };
}

// The node of a beam that is nearer to a place.
function nearerEnd(model: PageModel, beam: number, place: Vector): number {
  const nodes = [model.beams.nodes[2 * beam], model.beams.nodes[2 * beam + 1]];
  const [first, second] = nodes.map((node) =>
    Math.hypot(...subtract(place, takePlace(model.coordinates, node))),
  );
  return second < first ? nodes[1] : nodes[0];
}

function faceOf(field: ShellField, place: number): PlacedValue["face"] {
  if (field.upper !== field.lower) return (place & 1) === 0 ? "upper" : "lower";
  return field.faces === null ? "middle" : faceNames[field.faces[place >> 1]];
}

function meshOf(details: DetailModels): ShellMesh {
  const none = { count: 0, nodes: new Int32Array(0) };
  const shells = { count: details.beams.length, nodes: details.shells };
  return { coordinates: details.coordinates, shells, triangles: none };
}

function hideDetails(
  details: DetailModels,
  isHidden: Hidden,
): Pick<Hidden, "shells" | "triangles"> {
  const shells = Uint8Array.from(details.beams, (beam) => isHidden.beams[beam]);
  return { shells, triangles: new Uint8Array(0) };
}
