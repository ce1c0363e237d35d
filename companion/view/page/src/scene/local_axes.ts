// The local axes x, y, z of the beam or shell that is picked, in its middle, drawn on top of
// everything. Of a shell z is the normal on its upper side (data/frames.ts).

import * as three from "three";
import { findShellFrame } from "../data/frames";
import type { PageModel } from "../data/page_model";
import { drawLetter } from "./axes";
import { moveInSection } from "./beam_line";
import { drawnMotion } from "./beams";
import type { Beams } from "./beams";
import { createLines, setLines } from "./lines";
import type { Lines } from "./lines";
import type { Palette } from "./palette";
import { nodesOfThing } from "./pick";
import type { Thing } from "./pick";
import { setColor } from "./shaders";
import type { SharedUniforms } from "./shaders";
import { add, distance, isFinite3, takeVector, times } from "./vector";
import type { Vector } from "./vector";

export interface LocalAxes {
  lines: Lines[]; // x, y, z
  letters: three.Sprite[];
  place: Vector; // of the origin, in the frame of the picture, undeformed
  move: Vector; // its displacement
  ends: Vector[]; // of the lines, from the origin
  palette: Palette | null; // of the letters
}

export function createLocalAxes(shared: SharedUniforms): LocalAxes {
  const style = { width: 2, opacity: 1, isDeformed: true, lift: 0, isClipped: false, border: 0 };
  const made: LocalAxes = {
    lines: [],
    letters: [],
    place: [0, 0, 0],
    move: [0, 0, 0],
    ends: [],
    palette: null,
  };
  for (let axis = 0; axis < 3; ++axis) {
    const line = createLines(shared, style);
    line.mesh.material.depthTest = false;
    line.mesh.renderOrder = 12;
    const letter = new three.Sprite(new three.SpriteMaterial({ depthTest: false }));
    letter.renderOrder = 13;
    made.lines.push(line);
    made.letters.push(letter);
  }
  return made;
}

// Origin, axes and length of the lines.
interface Found {
  place: Vector;
  move: Vector;
  axes: Vector[];
  length: number;
}

export function showLocalAxes(
  local: LocalAxes,
  model: PageModel,
  beams: Beams,
  places: Float32Array,
  displacements: Float32Array | null,
  picked: Thing | null,
  palette: Palette,
): void {
  const found = picked && picked.number >= 0
    ? picked.kind === "beam"
      ? findBeamAxes(beams, displacements, picked.number)
      : findShellAxes(model, places, displacements, picked)
    : null;
  const isShown = found !== null && isFinite3(found.place) && found.axes.every(isFinite3);
  for (const each of [...local.lines.map(({ mesh }) => mesh), ...local.letters]) {
    each.visible = isShown;
  }
  if (!isShown) return;
  paintLetters(local, palette);
  const { place, move, axes, length } = found;
  Object.assign(local, { place, move, ends: axes.map((axis) => times(axis, length)) });
  axes.forEach((axis, at) => {
    setColor(local.lines[at].mesh.material.uniforms.lineColor, palette.axes[at]);
    setLines(local.lines[at], {
      count: 1,
      starts: new Float32Array(place),
      ends: new Float32Array(add(place, axis, length)),
      startMoves: new Float32Array(move),
      endMoves: new Float32Array(move),
      values: null,
      extents: null,
    });
  });
}

function paintLetters(local: LocalAxes, palette: Palette): void {
  if (local.palette === palette) return;
  local.palette = palette;
  local.letters.forEach(({ material }, axis) => {
    material.map?.dispose();
    material.map = drawLetter("xyz"[axis], palette.axes[axis]);
    material.needsUpdate = true;
  });
}

// On the centroid at mid-length; out of the section, that they are seen.
function findBeamAxes(
  beams: Beams,
  displacements: Float32Array | null,
  beam: number,
): Found | null {
  const line = beams.lines[beam];
  if (!line || !isFinite3(line.y)) return null;
  const [first, second] = drawnMotion(beams, beam, displacements);
  const [y, z] = beams.model.sections[beams.model.beams.section[beam]]?.centroid ?? [0, 0];
  const middle = add(times(line.start, 0.5), line.end, 0.5);
  return {
    place: add(add(middle, line.y, y / beams.size), line.z, z / beams.size),
    move: moveInSection(line, first, second, 0.5, y, z),
    axes: [line.x, line.y, line.z],
    length: Math.max(0.25 * (line.length / beams.size), 0.8 * beams.extents[beam]),
  };
}

const ShareOfEdge = 0.4;

function findShellAxes(
  model: PageModel,
  places: Float32Array,
  displacements: Float32Array | null,
  thing: Thing,
): Found | null {
  if (thing.kind === "node" || thing.kind === "beam") return null;
  const table = thing.kind === "shell" ? model.shells : model.triangles;
  if (thing.number >= table.count) return null;
  const nodes = nodesOfThing(model, thing);
  const found: Found = {
    place: [0, 0, 0],
    move: [0, 0, 0],
    axes: findShellFrame(model.coordinates, table, thing.number),
    length: Infinity,
  };
  nodes.forEach((node, side) => {
    const place = takeVector(places, node);
    const move: Vector = displacements ? takeVector(displacements, node, 6) : [0, 0, 0];
    found.place = add(found.place, place, 1 / nodes.length);
    if (isFinite3(move)) found.move = add(found.move, move, 1 / nodes.length);
    const next = takeVector(places, nodes[(side + 1) % nodes.length]);
    found.length = Math.min(found.length, ShareOfEdge * distance(place, next));
  });
  return found;
}

const LetterSize = 20; // CSS pixels
const LetterGap = 9; // from the end of the line

// Letters follow deformation and view. factor: displacements -> picture; perPixel: of the picture,
// at the target of the view.
export function placeLetters(local: LocalAxes, factor: number, perPixel: number): void {
  const origin = add(local.place, local.move, factor);
  local.ends.forEach((end, axis) => {
    const reach = Math.hypot(...end);
    const share = reach > 0 ? 1 + (LetterGap * perPixel) / reach : 1;
    local.letters[axis].position.set(...add(origin, end, share));
    local.letters[axis].scale.setScalar(LetterSize * perPixel);
  });
}
