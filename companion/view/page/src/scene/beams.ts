// Beams as their sections: one draw call for each section, its extrusion as an instance for each
// beam. The deformation is that of beam_line.ts; sections turn with the rotations, linearly, as the
// places of the detail models do. Beams whose section is too thin to be seen, or that have none,
// are lines, all in one further call.

import * as three from "three";
import type { PageModel } from "../data/page_model";
import { findLargestSize } from "../fields/beam_ranges";
import type { BeamField } from "../fields/quantity";
import { evaluate, placeBeamLine, moveAlong } from "./beam_line";
import type { BeamLine } from "./beam_line";
import { fragmentText, vertexText } from "./beam_shaders";
import { extrudeSection } from "./extrude";
import type { Extrusion } from "./extrude";
import { createLines, setLines } from "./lines";
import type { LineList, Lines } from "./lines";
import type { Palette } from "./palette";
import { createMaterial, drawAlways, NotNumber, orNotNumber, pickText, setColor } from "./shaders";
import { sinkMaterial } from "./shaders";
import type { SharedUniforms } from "./shaders";
import { add, isFinite3, times } from "./vector";
import type { Vector } from "./vector";

interface SectionBeams {
  section: number;
  extrusion: Extrusion;
  beams: number[];
  mesh: three.Mesh<three.InstancedBufferGeometry, three.RawShaderMaterial>;
  pickMesh: three.Mesh<three.InstancedBufferGeometry, three.RawShaderMaterial>;
}

export interface Beams {
  model: PageModel;
  size: number; // of the model
  lines: (BeamLine | null)[]; // by beam, in the frame of the picture
  sections: SectionBeams[];
  thinLines: Lines;
  extents: Float32Array; // [beams] largest length of the section as it is drawn; 0: a line
  extentsAtNodes: Float32Array; // [nodes] the largest of a node's beams
  largestExtent: number;
  segments: number; // along the length
  shownLines: number[]; // beams of thinLines, in their order
}

// What is shown of the beams.
export interface BeamDrawing {
  displacements: Float32Array | null; // [nodes x 6]
  field: BeamField | null;
  isHidden: Uint8Array; // [beams]
}

function listBeamLines(
  model: PageModel,
  places: Float32Array,
  size: number,
): (BeamLine | null)[] {
  const { beams } = model;
  return Array.from({ length: beams.count }, (_, row) => placeBeamLine(beams, row, places, size));
}

// Faces along all beams together, some two triangles each: cubics of few beams show, and beams that
// are one of many along a line have few segments.
const FaceBudget = 80000;
const MostSegments = 16;

function chooseSegments(model: PageModel): number {
  const sides = model.sections.map((section) => section.rings.flat().length / 2);
  let faces = 1;
  for (const section of model.beams.section) faces += sides[section] ?? 1;
  return Math.min(MostSegments, Math.max(2, Math.round(FaceBudget / faces)));
}

// places: of nodes, in the frame of the picture; size: of the model. firstNumber: of the first beam
// among picked things.
export function createBeams(
  model: PageModel,
  places: Float32Array,
  size: number,
  shared: SharedUniforms,
  firstNumber: number,
): Beams {
  const { beams } = model;
  const made: Beams = {
    model,
    size,
    lines: listBeamLines(model, places, size),
    sections: [],
    thinLines: createLines(
      shared,
      { width: 2.6, opacity: 1, isDeformed: true, lift: 1, isClipped: true, border: 0.6 },
      firstNumber,
    ),
    extents: new Float32Array(beams.count),
    extentsAtNodes: new Float32Array(model.nodeCount),
    largestExtent: 0,
    segments: chooseSegments(model),
    shownLines: [],
  };
  const rows = new Map<number, number[]>();
  for (let beam = 0; beam < beams.count; ++beam) {
    const line = made.lines[beam];
    if (!line || !isFinite3(line.z)) continue;
    const row = rows.get(beams.section[beam]);
    if (row) row.push(beam);
    else rows.set(beams.section[beam], [beam]);
  }
  for (const [section, members] of rows) {
    if (section < 0 || section >= model.sections.length) continue;
    addSection(made, section, members, size, shared, firstNumber);
  }
  return made;
}

function addSection(
  made: Beams,
  row: number,
  members: number[],
  size: number,
  shared: SharedUniforms,
  firstNumber: number,
): void {
  const section = made.model.sections[row];
  const extrusion = extrudeSection(section, made.segments);
  if (!extrusion) return;
  const geometry = makeGeometry(extrusion, members.length);
  const common = { size: { value: size }, firstNumber: { value: firstNumber } };
  const own = {
    ...common,
    centre: { value: new three.Vector2(section.centroid[0], section.centroid[1]) },
    isField: { value: 0 },
    isSize: { value: 0 },
    plainColor: { value: new three.Vector3() },
    edgeStrength: { value: 0.45 },
  };
  const mesh = new three.Mesh(geometry, createMaterial(shared, own, vertexText, fragmentText));
  const pickMaterial = createMaterial(shared, common, vertexText, pickText);
  const pickMesh = new three.Mesh(geometry, pickMaterial);
  // Behind shells: the side of a web that lies in a plate is hidden by the plate.
  for (const { material } of [mesh, pickMesh]) sinkMaterial(material, 3);
  for (const each of [mesh, pickMesh]) drawAlways(each);
  made.sections.push({ section: row, extrusion, beams: members, mesh, pickMesh });
  const [y0, y1, z0, z1] = boxOf(section.rings[0]);
  const extent = Math.max(y1 - y0, z1 - z0) / size;
  made.largestExtent = Math.max(made.largestExtent, extent);
  for (const beam of members) {
    made.extents[beam] = extent;
    for (const node of made.model.beams.nodes.subarray(2 * beam, 2 * beam + 2)) {
      made.extentsAtNodes[node] = Math.max(made.extentsAtNodes[node], extent);
    }
  }
}

// With room for `count` beams.
function makeGeometry(extrusion: Extrusion, count: number): three.InstancedBufferGeometry {
  const geometry = new three.InstancedBufferGeometry();
  geometry.setAttribute("shape", new three.BufferAttribute(extrusion.points, 3));
  geometry.setAttribute("distances", new three.BufferAttribute(extrusion.distances, 4));
  geometry.setIndex(new three.BufferAttribute(extrusion.triangles, 1));
  for (const [name, width] of instanceAttributes) {
    const array = new Float32Array(width * count);
    geometry.setAttribute(name, new three.InstancedBufferAttribute(array, width));
  }
  return geometry;
}

const instanceAttributes: [string, number][] = [
  ["start", 3],
  ["end", 3],
  ["axisZ", 3],
  ["move1", 3],
  ["turn1", 3],
  ["move2", 3],
  ["turn2", 3],
  ["curveA", 4],
  ["curveB", 4],
  ["curveC", 4],
  ["beam", 1],
];

// The box around a ring: lowest and highest y, lowest and highest z.
function boxOf(ring: number[]): [number, number, number, number] {
  const [ys, zs] = [0, 1].map((first) => ring.filter((_, at) => at % 2 === first));
  return [Math.min(...ys), Math.max(...ys), Math.min(...zs), Math.max(...zs)];
}

// Calls for the corners of the boxes around the sections at both ends of beams that are shown.
// aside: from the node, undeformed, in the frame of the picture.
export function eachSectionCorner(
  beams: Beams,
  call: (node: number, aside: Vector) => void,
): void {
  const { model, size } = beams;
  for (const beam of beams.shownLines) {
    const line = beams.lines[beam];
    const ring = model.sections[model.beams.section[beam]]?.rings[0];
    if (!line || !ring || beams.extents[beam] === 0) continue;
    const [y0, y1, z0, z1] = boxOf(ring);
    for (const [y, z] of [[y0, z0], [y0, z1], [y1, z0], [y1, z1]]) {
      const aside = add(times(line.y, y / size), line.z, z / size);
      call(model.beams.nodes[2 * beam], aside);
      call(model.beams.nodes[2 * beam + 1], aside);
    }
  }
}

// The motion of a beam's ends, 6 numbers each; null where one of them is no number.
export function motionOf(
  model: PageModel,
  beam: number,
  displacements: Float32Array,
): [Float32Array, Float32Array] | null {
  const ends = [0, 1].map((end) => {
    const node = model.beams.nodes[2 * beam + end];
    return displacements.subarray(6 * node, 6 * node + 6);
  });
  return ends.every((end) => end.every(Number.isFinite)) ? [ends[0], ends[1]] : null;
}

// Places, motion and colours of all beams that are shown.
export function showBeams(beams: Beams, drawing: BeamDrawing): void {
  for (const group of beams.sections) placeSection(beams, group, drawing);
  const shown: number[] = [];
  beams.lines.forEach((line, beam) => {
    if (line && !drawing.isHidden[beam]) shown.push(beam);
  });
  beams.shownLines = shown;
  setLines(beams.thinLines, listThinLines(beams, drawing));
  colorBeams(beams, drawing);
}

// The colours alone; the rest of the drawing is that of the last showBeams.
export function colorBeams(beams: Beams, drawing: BeamDrawing): void {
  const isLost = new Uint8Array(beams.lines.length);
  for (let beam = 0; beam < isLost.length; ++beam) {
    if (isBeamLost(beams, beam, drawing)) isLost[beam] = 1;
  }
  for (const group of beams.sections) colorSection(beams, group, drawing, isLost);
  const attribute = beams.thinLines.mesh.geometry.getAttribute("values");
  if (!attribute) return;
  const values = attribute.array as Float32Array;
  const { field } = drawing;
  let at = 0;
  for (const beam of beams.shownLines) {
    for (let piece = 0; piece < beams.segments; ++piece) {
      for (const s of [piece / beams.segments, (piece + 1) / beams.segments]) {
        const value = field ? orNotNumber(valueOnLine(beams, field, beam, s)) : 0;
        values[at++] = isLost[beam] ? NotNumber : value;
      }
    }
  }
  attribute.needsUpdate = true;
}

// Of a size the largest in the section: who sees a line must not read less than there is.
function valueOnLine({ model }: Beams, field: BeamField, beam: number, s: number): number {
  return field.isSize
    ? findLargestSize(field, model, beam, s)
    : evaluate(field.a, beam, s);
}

const still = new Float32Array(6);

// What is drawn of a beam's motion: none where it has no number.
export function drawnMotion(
  beams: Beams,
  beam: number,
  displacements: Float32Array | null,
): [Float32Array, Float32Array] {
  return (displacements && motionOf(beams.model, beam, displacements)) ?? [still, still];
}

// A displacement or a coefficient of the field is no number.
function isBeamLost(beams: Beams, beam: number, { displacements, field }: BeamDrawing): boolean {
  if (displacements && !motionOf(beams.model, beam, displacements)) return true;
  if (!field) return false;
  let sum = 0;
  for (let at = 4 * beam; at < 4 * beam + 4; ++at) {
    // Times 0: what is finite stays so in the sum.
    sum += 0 * field.a[at] + 0 * field.b[at] + 0 * field.c[at];
  }
  return !Number.isFinite(sum);
}

function placeSection(beams: Beams, group: SectionBeams, drawing: BeamDrawing): void {
  const { geometry } = group.mesh;
  const names = ["start", "end", "axisZ", "move1", "turn1", "move2", "turn2", "beam"];
  const arrays = names.map((name) => {
    const attribute = geometry.getAttribute(name);
    attribute.needsUpdate = true;
    return attribute.array as Float32Array;
  });
  const [start, end, axisZ, move1, turn1, move2, turn2, number] = arrays;
  let row = 0;
  for (const beam of group.beams) {
    const line = beams.lines[beam];
    if (!line || drawing.isHidden[beam]) continue;
    const [first, second] = drawnMotion(beams, beam, drawing.displacements);
    start.set(line.start, 3 * row);
    end.set(line.end, 3 * row);
    axisZ.set(line.z, 3 * row);
    move1.set(first.subarray(0, 3), 3 * row);
    turn1.set(first.subarray(3), 3 * row);
    move2.set(second.subarray(0, 3), 3 * row);
    turn2.set(second.subarray(3), 3 * row);
    number[row++] = beam;
  }
  geometry.instanceCount = row;
  group.mesh.visible = group.pickMesh.visible = row > 0;
}

function colorSection(
  beams: Beams,
  group: SectionBeams,
  { field, isHidden }: BeamDrawing,
  isLost: Uint8Array,
): void {
  const { geometry } = group.mesh;
  (["curveA", "curveB", "curveC"] as const).forEach((name, which) => {
    const attribute = geometry.getAttribute(name);
    attribute.needsUpdate = true;
    const to = attribute.array as Float32Array;
    const from = field ? [field.a, field.b, field.c][which] : null;
    let row = 0;
    for (const beam of group.beams) {
      if (!beams.lines[beam] || isHidden[beam]) continue;
      for (let at = 0; at < 4; ++at) to[4 * row + at] = from ? from[4 * beam + at] : 0;
      if (which === 0 && isLost[beam]) to[4 * row] = NotNumber;
      ++row;
    }
  });
}

// The lines of beams that are shown, in pieces that follow the deformed line. Without values.
function listThinLines(beams: Beams, drawing: BeamDrawing): LineList {
  const { segments, shownLines } = beams;
  const count = segments * shownLines.length;
  const list = {
    count,
    starts: new Float32Array(3 * count),
    ends: new Float32Array(3 * count),
    startMoves: new Float32Array(3 * count),
    endMoves: new Float32Array(3 * count),
    values: new Float32Array(2 * count),
    extents: new Float32Array(count),
    numbers: new Float32Array(count),
  };
  shownLines.forEach((beam, at) => {
    const line = beams.lines[beam];
    if (!line) return;
    const [first, second] = drawnMotion(beams, beam, drawing.displacements);
    for (let step = 0; step <= segments; ++step) {
      const s = step / segments;
      const place = add(times(line.start, 1 - s), line.end, s);
      const move = moveAlong(line, first, second, s);
      const row = at * segments + step;
      if (step < segments) {
        list.starts.set(place, 3 * row);
        list.startMoves.set(move, 3 * row);
        list.extents[row] = beams.extents[beam];
        list.numbers[row] = beam;
      }
      if (step === 0) continue;
      list.ends.set(place, 3 * (row - 1));
      list.endMoves.set(move, 3 * (row - 1));
    }
  });
  return list;
}

export function paintBeams(beams: Beams, palette: Palette, field: BeamField | null): void {
  for (const { mesh } of beams.sections) {
    setColor(mesh.material.uniforms.plainColor, palette.beam);
    mesh.material.uniforms.isField.value = field ? 1 : 0;
    mesh.material.uniforms.isSize.value = field?.isSize ? 1 : 0;
  }
  setColor(beams.thinLines.mesh.material.uniforms.lineColor, palette.beam);
  beams.thinLines.mesh.material.uniforms.isField.value = field ? 1 : 0;
}
