// Section-force diagrams on beams: the curve of the beam quantity over the line of the centroids,
// in the colours of the legend. They move with the deformed line.
//
// Moments are drawn on the side that they stretch: My towards +z where it is positive, Mz towards
// -y. N, Vz and T are drawn along z, Vy along y (companion/audit/beam_diagrams.h).

import * as three from "three";
import type { PageModel } from "../data/page_model";
import { forceIndex } from "../fields/quantities";
import type { BeamField } from "../fields/quantity";
import { evaluate, moveAlong } from "./beam_line";
import type { BeamLine } from "./beam_line";
import { motionOf } from "./beams";
import type { Beams } from "./beams";
import { createLines, setLines } from "./lines";
import type { LineList, Lines } from "./lines";
import type { Palette } from "./palette";
import { createMaterial, drawAlways, setColor } from "./shaders";
import type { SharedUniforms } from "./shaders";
import { add, isFinite3, times } from "./vector";
import type { Vector } from "./vector";

export interface Diagrams {
  size: number; // of the model
  areas: three.Mesh<three.BufferGeometry, three.RawShaderMaterial>;
  curves: Lines;
  ends: Lines; // across, at both ends of each beam: fainter, because many beams are short
}

const LargestHeight = 0.09; // of the model's diagonal: the largest value
const StationBudget = 20000; // of all beams together
const MostStations = 32; // of one beam

const vertexText = `
in vec3 position;
in vec3 displacement;
in vec3 onLine;
in float value;
out vec3 rest;
out float inside;
void main() {
  rest = onLine;
  inside = value;
  gl_Position = projectionMatrix * viewMatrix * vec4(position + motion.x * displacement, 1.0);
}
`;

const fragmentText = `
in vec3 rest;
in float inside;
out vec4 color;
void main() {
  clipAt(rest);
  color = vec4(colorOf(inside), 0.8);
}
`;

export function createDiagrams(size: number, shared: SharedUniforms): Diagrams {
  const material = createMaterial(shared, {}, vertexText, fragmentText);
  material.transparent = true;
  material.depthWrite = false;
  const areas = new three.Mesh(new three.BufferGeometry(), material);
  drawAlways(areas);
  areas.renderOrder = 4;
  const style = { isDeformed: true, lift: 0.5, isClipped: true, border: 0 };
  const curves = createLines(shared, { ...style, width: 1.5, opacity: 0.9 });
  const ends = createLines(shared, { ...style, width: 1, opacity: 0.25 });
  curves.mesh.renderOrder = ends.mesh.renderOrder = 5;
  areas.visible = false;
  return { size, areas, curves, ends };
}

// A place of the curve and what is below it.
interface Station {
  base: Vector; // on the line of the centroids, in the frame of the picture
  tip: Vector;
  move: Vector; // displacement
  value: number;
}

// field: null, or no section force: no diagrams.
export function showDiagrams(
  diagrams: Diagrams,
  beams: Beams,
  field: BeamField | null,
  isHidden: Uint8Array,
  displacements: Float32Array | null,
  palette: Palette,
): void {
  const force = field ? forceIndex(field.quantity.id) : -1;
  const rows =
    field && force >= 0
      ? listStations(diagrams, beams, field, force, isHidden, displacements)
      : [];
  fillAreas(diagrams, rows);
  setLines(diagrams.curves, listCurves(rows));
  setLines(diagrams.ends, listEnds(rows));
  for (const lines of [diagrams.curves, diagrams.ends]) {
    setColor(lines.mesh.material.uniforms.lineColor, palette.outline);
  }
}

// By beam that is shown and has numbers.
function listStations(
  diagrams: Diagrams,
  beams: Beams,
  field: BeamField,
  force: number,
  isHidden: Uint8Array,
  displacements: Float32Array | null,
): Station[][] {
  const shown = beams.lines
    .map((line, beam) => ({ line, beam }))
    .filter(({ line }) => line && isFinite3(line.z))
    .filter(({ beam }) => !isHidden[beam] && isWhole(field, beam));
  const count = Math.floor(StationBudget / Math.max(1, shown.length));
  const steps = Math.min(MostStations, Math.max(2, count));
  let largest = 0;
  for (const { beam } of shown) {
    for (let step = 0; step <= steps; ++step) {
      largest = Math.max(largest, Math.abs(evaluate(field.a, beam, step / steps)));
    }
  }
  if (largest === 0) return [];
  return shown.map(({ line, beam }) => {
    const up = line ? directionOf(line, force) : ([0, 0, 0] as Vector);
    const motion = displacements && motionOf(beams.model, beam, displacements);
    return Array.from({ length: steps + 1 }, (_, step): Station => {
      const s = step / steps;
      const value = evaluate(field.a, beam, s);
      const base = line ? baseOf(beams.model, beam, line, s, diagrams.size) : up;
      const move = line && motion ? moveAlong(line, ...motion, s) : ([0, 0, 0] as Vector);
      return { base, tip: add(base, up, (LargestHeight * value) / largest), move, value };
    });
  });
}

function isWhole(field: BeamField, beam: number): boolean {
  return field.a.subarray(4 * beam, 4 * beam + 4).every(Number.isFinite);
}

const Vy = 1;
const Mz = 5;

function directionOf(line: BeamLine, force: number): Vector {
  if (force === Vy) return line.y;
  return force === Mz ? times(line.y, -1) : line.z;
}

function baseOf(model: PageModel, beam: number, line: BeamLine, s: number, size: number): Vector {
  const place = add(times(line.start, 1 - s), line.end, s);
  const [y, z] = model.sections[model.beams.section[beam]]?.centroid ?? [0, 0];
  return add(add(place, line.y, y / size), line.z, z / size);
}

function fillAreas(diagrams: Diagrams, rows: Station[][]): void {
  const positions: number[] = [];
  const moves: number[] = [];
  const bases: number[] = [];
  const values: number[] = [];
  const triangles: number[] = [];
  for (const stations of rows) {
    const first = positions.length / 3;
    stations.forEach(({ base, tip, move, value }, step) => {
      positions.push(...base, ...tip);
      moves.push(...move, ...move);
      bases.push(...base, ...base);
      values.push(value, value);
      const at = first + 2 * step;
      if (step + 1 < stations.length) triangles.push(at, at + 2, at + 1, at + 1, at + 2, at + 3);
    });
  }
  const geometry = new three.BufferGeometry();
  geometry.setAttribute("position", new three.Float32BufferAttribute(positions, 3));
  geometry.setAttribute("displacement", new three.Float32BufferAttribute(moves, 3));
  geometry.setAttribute("onLine", new three.Float32BufferAttribute(bases, 3));
  geometry.setAttribute("value", new three.Float32BufferAttribute(values, 1));
  geometry.setIndex(new three.BufferAttribute(new Uint32Array(triangles), 1));
  diagrams.areas.geometry.dispose();
  diagrams.areas.geometry = geometry;
  drawAlways(diagrams.areas);
  diagrams.areas.visible = triangles.length > 0;
}

// The tips, one after another.
function listCurves(rows: Station[][]): LineList {
  return joinStations(
    rows.flatMap((stations) =>
      stations.slice(1).map((here, step): [Vector, Station, Vector, Station] => {
        const before = stations[step];
        return [before.tip, before, here.tip, here];
      }),
    ),
  );
}

function listEnds(rows: Station[][]): LineList {
  return joinStations(
    rows.flatMap((stations) =>
      [stations[0], stations[stations.length - 1]].map(
        (end): [Vector, Station, Vector, Station] => [end.base, end, end.tip, end],
      ),
    ),
  );
}

// Lines from a place of one station to a place of another.
function joinStations(pairs: [Vector, Station, Vector, Station][]): LineList {
  return {
    count: pairs.length,
    starts: new Float32Array(pairs.flatMap(([start]) => start)),
    ends: new Float32Array(pairs.flatMap(([, , end]) => end)),
    startMoves: new Float32Array(pairs.flatMap(([, first]) => first.move)),
    endMoves: new Float32Array(pairs.flatMap(([, , , second]) => second.move)),
    values: null,
    extents: null,
  };
}
