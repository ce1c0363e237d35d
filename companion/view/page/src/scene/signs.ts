// All signs of a drawing: supports, loads, reactions, findings, nodes without elements.

import type { Finding, PageModel } from "../data/page_model";
import { createDots, setDots } from "./dots";
import type { DotList, Dots } from "./dots";
import { createGlyphs, setGlyphs } from "./glyphs";
import type { Glyph, Glyphs } from "./glyphs";
import { listLoads, listReactions } from "./load_glyphs";
import { toPicture } from "./frame";
import type { Frame } from "./frame";
import type { Hidden } from "./outline";
import type { Palette, Rgb } from "./palette";
import { nodesOfThing } from "./pick";
import type { Drawing } from "./scene";
import type { SharedUniforms } from "./shaders";
import { listLoneNodes } from "./shown_nodes";
import { listSupports } from "./support_glyphs";
import type { PlaceOf } from "./support_glyphs";
import { add, distance, isFinite3, takeVector } from "./vector";
import type { Vector } from "./vector";

export interface Signs {
  model: PageModel;
  frame: Frame;
  places: Float32Array; // [nodes x 3], in the frame of the picture
  spacings: Float32Array; // [nodes] length of the shortest element at a node
  loneNodes: number[];
  glyphs: Glyphs;
  findings: Dots;
  lone: Dots;
}

export function createSigns(
  model: PageModel,
  frame: Frame,
  places: Float32Array,
  shared: SharedUniforms,
): Signs {
  const findings = createDots(shared, 11, true);
  const lone = createDots(shared, 7, false);
  findings.mesh.renderOrder = 8;
  return {
    model,
    frame,
    places,
    spacings: findSpacings(model, places),
    loneNodes: listLoneNodes(model),
    glyphs: createGlyphs(shared),
    findings,
    lone,
  };
}

function findSpacings(model: PageModel, places: Float32Array): Float32Array {
  const spacings = new Float32Array(model.nodeCount).fill(Infinity);
  const isHeld = new Uint8Array(model.nodeCount);
  for (const node of model.supportNodes) isHeld[node] = 1;
  const look = (nodes: Int32Array, width: number): void => {
    for (let at = 0; at < nodes.length; ++at) {
      const next = at % width === width - 1 ? at - width + 1 : at + 1;
      const [first, second] = [nodes[at], nodes[next]];
      if (!isHeld[first] && !isHeld[second]) continue;
      const apart = distance(takeVector(places, first), takeVector(places, second));
      for (const node of [first, second]) if (apart < spacings[node]) spacings[node] = apart;
    }
  };
  look(model.shells.nodes, 4);
  look(model.triangles.nodes, 3);
  look(model.beams.nodes, 2);
  return spacings;
}

// moves: drawn displacements of nodes, [nodes x 3]. isShown: of nodes.
export function showSigns(
  signs: Signs,
  drawing: Drawing,
  palette: Palette,
  hidden: Hidden,
  moves: ArrayLike<number>,
  isShown: Uint8Array,
): void {
  const placeOf: PlaceOf = (node) =>
    isShown[node]
      ? { place: takeVector(signs.places, node), move: takeVector(moves, node) }
      : null;
  const { shows } = drawing.state;
  const { model } = signs;
  const places = {
    model,
    placeOf,
    isShown: (kind: keyof Hidden, row: number) => !hidden[kind][row],
  };
  const glyphs: Glyph[] = [
    ...(shows.supports ? listSupports(model, signs.spacings, placeOf, palette) : []),
    ...(shows.loads ? listLoads(drawing.loads, places, palette) : []),
    ...(shows.reactions && drawing.results
      ? listReactions(drawing.results, placeOf, palette)
      : []),
  ];
  setGlyphs(signs.glyphs, glyphs);
  setDots(signs.findings, shows.findings ? listFindings(signs, palette, placeOf) : noDots());
  setDots(signs.lone, listLone(signs, palette, placeOf));
}

function noDots(): DotList {
  return makeDots([]);
}

interface Dot {
  place: Vector;
  move: Vector;
  color: Rgb;
}

function makeDots(dots: Dot[]): DotList {
  return {
    places: new Float32Array(dots.flatMap((dot) => dot.place)),
    moves: new Float32Array(dots.flatMap((dot) => dot.move)),
    colors: new Float32Array(dots.flatMap((dot) => dot.color.map((value) => value / 255))),
  };
}

function listLone(signs: Signs, palette: Palette, placeOf: PlaceOf): DotList {
  const dots = signs.loneNodes.flatMap((node) => {
    const at = placeOf(node);
    return at ? [{ ...at, color: palette.outline }] : [];
  });
  return makeDots(dots);
}

// More marks hide the model without telling more: the list of findings has all of them.
const MostMarks = 100; // of one finding
const MostFindings = 1000;

function listFindings(signs: Signs, palette: Palette, placeOf: PlaceOf): DotList {
  const dots = signs.model.findings.flatMap((finding) => markFinding(signs, finding, placeOf).map(
    (at) => ({ ...at, color: palette[finding.severity] }),
  ));
  return makeDots(dots.slice(0, MostFindings));
}

// At its nodes and in the middle of its elements, or at its place where it has none.
function markFinding(
  signs: Signs,
  finding: Finding,
  placeOf: PlaceOf,
): { place: Vector; move: Vector }[] {
  const marks = finding.nodes.map((node) => placeOf(node));
  for (const element of finding.elements.slice(0, MostMarks)) {
    const nodes = nodesOfThing(signs.model, element).map((node) => placeOf(node));
    const middle = { place: [0, 0, 0] as Vector, move: [0, 0, 0] as Vector };
    for (const at of nodes) {
      if (!at) continue;
      middle.place = add(middle.place, at.place, 1 / nodes.length);
      middle.move = add(middle.move, at.move, 1 / nodes.length);
    }
    marks.push(nodes.every((at) => at) && nodes.length > 0 ? middle : null);
  }
  const found = marks.filter((mark) => mark !== null).slice(0, MostMarks);
  if (finding.nodes.length + finding.elements.length > 0 || !finding.place) return found;
  const place = toPicture(signs.frame, finding.place);
  return isFinite3(place) ? [{ place, move: [0, 0, 0] }] : [];
}
