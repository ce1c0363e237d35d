// Where beam fields are lowest and highest, and the beams with the highest values.
//
// A field that varies over the section is looked at in all corners of the section's outer ring, of
// a tube all around its circle.
// Along the beam the extremes of a cubic are at its ends or where its slope is zero.

import { findBeamLine } from "../data/frames";
import type { Vector } from "../data/frames";
import type { PageModel } from "../data/page_model";
import type { Hidden } from "./filters";
import { rankOf } from "./quantities";
import type { BeamField, FieldRange, PlacedValue } from "./quantity";
import { selectHighest } from "./ranges";
import { roundDigits } from "./ticks";

// The values of a beam between which all others are; a value that is not finite has isNumber false.
interface BeamExtremes {
  isNumber: boolean;
  lowest: PointOfBeam;
  highest: PointOfBeam;
}

interface PointOfBeam {
  value: number;
  s: number; // x / length
  y: number; // from the centroid
  z: number;
}

export function findBeamExtremes(field: BeamField, model: PageModel, beam: number): BeamExtremes {
  const found = findSignedExtremes(field, model, beam);
  return field.isSize ? sizesOf(found, field, beam) : found;
}

// Of values of both signs the least size is 0, on the way from the lowest to the highest.
function sizesOf(found: BeamExtremes, field: BeamField, beam: number): BeamExtremes {
  const { isNumber, lowest, highest } = found;
  if (!(lowest.value <= highest.value)) return found; // none has a number
  const sized = (point: PointOfBeam): PointOfBeam => ({ ...point, value: Math.abs(point.value) });
  const [low, high] = [sized(lowest), sized(highest)];
  const [least, most] = low.value <= high.value ? [low, high] : [high, low];
  const hasZero = lowest.value < 0 && highest.value > 0;
  const zero = (): PointOfBeam => ({ ...findZero(lowest, highest, field, beam), value: 0 });
  return { isNumber, lowest: hasZero ? zero() : least, highest: most };
}

// By halving the straight way between two points of a beam whose values have different signs.
function findZero(
  from: PointOfBeam,
  to: PointOfBeam,
  field: BeamField,
  beam: number,
): PointOfBeam {
  const at = (share: number): PointOfBeam => {
    const mix = (a: number, b: number): number => a + share * (b - a);
    const [s, y, z] = [mix(from.s, to.s), mix(from.y, to.y), mix(from.z, to.z)];
    return { value: evaluateCubic(cubicAt(field, beam, y, z), s), s, y, z };
  };
  let [low, high] = [0, 1];
  for (let step = 0; step < ZeroSteps; ++step) {
    const middle = (low + high) / 2;
    if (at(middle).value < 0) low = middle;
    else high = middle;
  }
  return at((low + high) / 2);
}

const ZeroSteps = 20; // a millionth of the way

// The largest size in a section at s = x / length.
export function findLargestSize(
  field: BeamField,
  model: PageModel,
  beam: number,
  s: number,
): number {
  const curves = [field.a, field.b, field.c];
  const [a, b, c] = curves.map((curve) => evaluateCubic(takeCubic(curve, beam), s));
  const section = model.sections[model.beams.section[beam]];
  const ring = section?.rings[0] ?? [];
  if (section === undefined || ring.length === 0) return Math.abs(a);
  const [cy, cz] = section.centroid;
  if (section.type === "tube") {
    return Math.abs(a) + Math.hypot(ring[0] - cy, ring[1] - cz) * Math.hypot(b, c);
  }
  let largest = 0;
  for (let i = 0; i + 1 < ring.length; i += 2) {
    largest = Math.max(largest, Math.abs(a + b * (ring[i + 1] - cz) + c * (ring[i] - cy)));
  }
  return largest;
}

function findSignedExtremes(field: BeamField, model: PageModel, beam: number): BeamExtremes {
  const found: BeamExtremes = {
    isNumber: true,
    lowest: { value: Infinity, s: 0, y: 0, z: 0 },
    highest: { value: -Infinity, s: 0, y: 0, z: 0 },
  };
  for (const [y, z] of listSectionPoints(field, model, beam)) {
    const cubic = cubicAt(field, beam, y, z);
    if (!cubic.every(Number.isFinite)) {
      found.isNumber = false;
      continue;
    }
    for (const s of field.isAtMiddle ? [0.5] : listExtremePlaces(cubic)) {
      const value = evaluateCubic(cubic, s);
      if (value < found.lowest.value) found.lowest = { value, s, y, z };
      if (value > found.highest.value) found.highest = { value, s, y, z };
    }
  }
  return found;
}

type Point = [y: number, z: number]; // from the centroid

// Only the centroid where the field is the same all over the section.
function listSectionPoints(field: BeamField, model: PageModel, beam: number): Point[] {
  const section = model.sections[model.beams.section[beam]];
  const b = takeCubic(field.b, beam);
  const c = takeCubic(field.c, beam);
  const isSame = [...b, ...c].every((value) => value === 0);
  if (section === undefined || isSame) return [[0, 0]];
  const [cy, cz] = section.centroid;
  const ring = section.rings[0] ?? [];
  const points: Point[] = [];
  for (let i = 0; i + 1 < ring.length; i += 2) points.push([ring[i] - cy, ring[i + 1] - cz]);
  if (points.length === 0) return [[0, 0]];
  return section.type === "tube" ? listCirclePoints(b, c, Math.hypot(...points[0])) : points;
}

// Stations along a tube at which its circle is looked at, beside those of the largest b and c.
const tubeStations = 8;

// The points of a circle where b z + c y is highest and lowest, in some places along the beam. The
// ring's corners would miss up to 1 %.
function listCirclePoints(b: Cubic, c: Cubic, radius: number): Point[] {
  const stations = Array.from({ length: tubeStations + 1 }, (_, k) => k / tubeStations);
  stations.push(...listExtremePlaces(b), ...listExtremePlaces(c));
  const points: Point[] = [[0, 0]];
  for (const s of stations) {
    const [alongZ, alongY] = [evaluateCubic(b, s), evaluateCubic(c, s)];
    const size = Math.hypot(alongZ, alongY);
    if (size === 0) continue;
    const [y, z] = [(radius * alongY) / size, (radius * alongZ) / size];
    points.push([y, z], [-y, -z]);
  }
  return points;
}

function takeCubic(values: Float32Array, beam: number): Cubic {
  const at = 4 * beam;
  return [values[at], values[at + 1], values[at + 2], values[at + 3]];
}

type Cubic = [number, number, number, number];

// a + b z + c y
function cubicAt(field: BeamField, beam: number, y: number, z: number): Cubic {
  const at = 4 * beam;
  const sum = (i: number) => field.a[at + i] + field.b[at + i] * z + field.c[at + i] * y;
  return [sum(0), sum(1), sum(2), sum(3)];
}

export function evaluateCubic(c: ArrayLike<number>, s: number): number {
  return c[0] + s * (c[1] + s * (c[2] + s * c[3]));
}

// The ends, and the places between them where c1 + 2 c2 s + 3 c3 s^2 = 0.
export function listExtremePlaces(c: ArrayLike<number>): number[] {
  const [p, q, r] = [3 * c[3], 2 * c[2], c[1]];
  const places = [0, 1];
  const root = q * q - 4 * p * r;
  if (!(root >= 0)) return places;
  // Without cancellation: one root is w / p, the other r / w (Press et al. 2007, sec. 5.6).
  const w = -0.5 * (q + (q < 0 ? -1 : 1) * Math.sqrt(root));
  for (const s of [w / p, r / w]) {
    if (s > 0 && s < 1) places.push(s);
  }
  return places;
}

export function measureBeamRange(
  field: BeamField,
  model: PageModel,
  isHidden: Hidden,
): FieldRange | null {
  let lowest: { beam: number; point: PointOfBeam } | null = null;
  let highest: { beam: number; point: PointOfBeam } | null = null;
  let notNumbers = 0;
  for (let beam = 0; beam < model.beams.count; ++beam) {
    if (isHidden.beams[beam] === 1) continue;
    const found = findBeamExtremes(field, model, beam);
    if (!found.isNumber) ++notNumbers;
    if (found.lowest.value < (lowest?.point.value ?? Infinity)) {
      lowest = { beam, point: found.lowest };
    }
    if (found.highest.value > (highest?.point.value ?? -Infinity)) {
      highest = { beam, point: found.highest };
    }
  }
  if (lowest === null || highest === null) return null;
  return {
    lowest: placeBeamValue(field, model, lowest.beam, lowest.point),
    highest: placeBeamValue(field, model, highest.beam, highest.point),
    notNumbers,
  };
}

// The n beams with the highest values, each once.
export function listHighestBeams(
  field: BeamField,
  model: PageModel,
  isHidden: Hidden,
  n: number,
): PlacedValue[] {
  const rank = rankOf(field.quantity);
  const ranks = new Float64Array(model.beams.count).fill(NaN);
  const findHighest = (beam: number) => {
    const { lowest, highest } = findBeamExtremes(field, model, beam);
    return rank(lowest.value) > rank(highest.value) ? lowest : highest;
  };
  for (let beam = 0; beam < model.beams.count; ++beam) {
    const { value } = findHighest(beam);
    if (isHidden.beams[beam] !== 1 && Number.isFinite(value)) ranks[beam] = rank(value);
  }
  return selectHighest(ranks, n).map((beam) =>
    placeBeamValue(field, model, beam, findHighest(beam)),
  );
}

// The place is that of the section's point; without local axes or a section it is on the line
// between the nodes.
function placeBeamValue(
  field: BeamField,
  model: PageModel,
  beam: number,
  point: PointOfBeam,
): PlacedValue {
  const { start, end, axes } = findBeamLine(model.coordinates, model.beams, beam);
  const section = model.sections[model.beams.section[beam]];
  const [cy, cz] = section?.centroid ?? [0, 0];
  const shift = (d: number) => (cy + point.y) * axes[1][d] + (cz + point.z) * axes[2][d];
  const place = start.map((value, d) => {
    const across = shift(d);
    return value + point.s * (end[d] - value) + (Number.isFinite(across) ? across : 0);
  }) as Vector;
  return {
    value: roundDigits(point.value, field.digits),
    kind: "beam",
    number: beam,
    corner: -1,
    node: point.s <= 0.5 ? model.beams.nodes[2 * beam] : model.beams.nodes[2 * beam + 1],
    face: "middle",
    place,
  };
}
