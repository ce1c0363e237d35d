// What is picked, drawn on top of everything: the edges of an element or of a beam's section, a dot
// on a node.

import type { PageModel } from "../data/page_model";
import { moveAlong, moveInSection } from "./beam_line";
import { drawnMotion } from "./beams";
import type { Beams } from "./beams";
import { createDots, setDots } from "./dots";
import type { Dots } from "./dots";
import { createLines, setLines } from "./lines";
import type { LineList, Lines } from "./lines";
import { joinNodes } from "./outline";
import type { Palette, Rgb } from "./palette";
import { nodesOfThing } from "./pick";
import type { Thing } from "./pick";
import { setColor } from "./shaders";
import type { SharedUniforms } from "./shaders";
import { add, takeVector, times } from "./vector";
import type { Vector } from "./vector";

export interface Highlight {
  lines: Lines;
  dot: Dots;
}

export function createHighlight(shared: SharedUniforms): Highlight {
  const style = { width: 2.4, opacity: 1, isDeformed: true, lift: 0, isClipped: false, border: 0 };
  const lines = createLines(shared, style);
  lines.mesh.material.depthTest = false;
  lines.mesh.renderOrder = 10;
  const dot = createDots(shared, 13, true);
  dot.mesh.renderOrder = 11;
  return { lines, dot };
}

export function showHighlight(
  highlight: Highlight,
  model: PageModel,
  beams: Beams,
  places: Float32Array,
  displacements: Float32Array | null,
  picked: Thing | null,
  palette: Palette,
): void {
  setColor(highlight.lines.mesh.material.uniforms.lineColor, palette.picked);
  highlight.lines.mesh.visible = highlight.dot.mesh.visible = false;
  if (!picked || !(picked.number >= 0)) return;
  if (picked.kind === "node") {
    if (picked.number >= model.nodeCount) return;
    setDots(highlight.dot, dotAt(places, displacements, picked.number, palette.picked));
    return;
  }
  if (picked.kind === "beam") {
    const list = linesOfBeam(beams, displacements, picked.number);
    if (list) setLines(highlight.lines, list);
    return;
  }
  const nodes = nodesOfThing(model, picked);
  const pairs = nodes.flatMap((node, side) => [node, nodes[(side + 1) % nodes.length]]);
  setLines(highlight.lines, joinNodes(places, pairs, displacements));
}

function dotAt(
  places: Float32Array,
  displacements: Float32Array | null,
  node: number,
  color: Rgb,
): { places: Float32Array; moves: Float32Array; colors: Float32Array } {
  const moved = displacements ? takeVector(displacements, node, 6) : [0, 0, 0];
  return {
    places: new Float32Array(takeVector(places, node)),
    moves: new Float32Array(moved.map((value) => (Number.isFinite(value) ? value : 0))),
    colors: new Float32Array(color.map((value) => value / 255)),
  };
}

// The edges of a beam's section along it and at both ends; of a beam that is drawn as a line, this.
function linesOfBeam(
  beams: Beams,
  displacements: Float32Array | null,
  beam: number,
): LineList | null {
  const line = beams.lines[beam];
  if (!line) return null;
  const [first, second] = drawnMotion(beams, beam, displacements);
  const ring = beams.extents[beam] > 0 ? ringOf(beams.model, beam) : [];
  const pairs = listBeamEdges(ring, beams.segments);
  const take = (end: 0 | 1, of: (point: Point) => Vector): Float32Array =>
    new Float32Array(pairs.flatMap((pair) => of(pair[end])));
  const place = ({ y, z, s }: Point): Vector => {
    const onLine = add(times(line.start, 1 - s), line.end, s);
    if (y === 0 && z === 0) return onLine; // it may have no y and z
    return add(add(onLine, line.y, y / beams.size), line.z, z / beams.size);
  };
  const move = ({ y, z, s }: Point): Vector =>
    ring.length > 0
      ? moveInSection(line, first, second, s, y, z)
      : moveAlong(line, first, second, s);
  return {
    count: pairs.length,
    starts: take(0, place),
    ends: take(1, place),
    startMoves: take(0, move),
    endMoves: take(1, move),
    values: null,
    extents: null,
  };
}

// Around both ends, and along the corners; along the line between the nodes where there are none.
function listBeamEdges(ring: Corner[], segments: number): [Point, Point][] {
  const ends = ring.flatMap((from, at) => {
    const to = ring[(at + 1) % ring.length];
    return [0, 1].map((s): [Point, Point] => [{ ...from, s }, { ...to, s }]);
  });
  const isRound = ring.length > MostCorners;
  const corners = isRound || ring.length === 0 ? [{ y: 0, z: 0 }] : ring;
  const along = corners.flatMap((corner) =>
    Array.from({ length: segments }, (_, step): [Point, Point] => [
      { ...corner, s: step / segments },
      { ...corner, s: (step + 1) / segments },
    ]),
  );
  return [...ends, ...along];
}

// A point of a beam: y and z in model units from the line between the nodes, s = x / length.
interface Corner {
  y: number;
  z: number;
}
interface Point extends Corner {
  s: number;
}

// Sections with more corners are round: lines along each would hide the beam.
const MostCorners = 12;

function ringOf(model: PageModel, beam: number): Corner[] {
  const ring = model.sections[model.beams.section[beam]]?.rings[0] ?? [];
  return Array.from({ length: ring.length >> 1 }, (_, at) => ({
    y: ring[2 * at],
    z: ring[2 * at + 1],
  }));
}
