// Lines that make the shape of shells visible: free edges and folds, deformed and undeformed, and
// the free edges alone. Beams that lie on no edge of a shell have a line in the undeformed outline.

import { findCorner, listCornerNodes } from "../data/corners";
import { findEdges } from "../data/edges";
import type { ShellEdges } from "../data/edges";
import type { PageModel, ShellTable } from "../data/page_model";
import { createLines, setLines } from "./lines";
import type { LineList, Lines } from "./lines";
import type { Palette } from "./palette";
import { setColor } from "./shaders";
import type { SharedUniforms } from "./shaders";

export interface Outline {
  model: PageModel;
  places: Float32Array; // [nodes x 3], in the frame of the picture
  cornerNodes: Int32Array;
  edges: ShellEdges; // of the whole model
  loneBeams: number[]; // on no edge of a shell
  deformed: Lines;
  undeformed: Lines;
  freeEdges: Lines;
}

export interface Hidden {
  shells: Uint8Array;
  triangles: Uint8Array;
  beams: Uint8Array;
}

export function createOutline(
  model: PageModel,
  places: Float32Array,
  shared: SharedUniforms,
): Outline {
  const edges = findEdges(model);
  const cornerNodes = listCornerNodes(model);
  // The undeformed outline is behind what lies at the same place.
  const style = { opacity: 1, lift: 0.5, isClipped: true, border: 0 };
  return {
    model,
    places,
    cornerNodes,
    edges,
    loneBeams: listLoneBeams(model, cornerNodes, edges),
    deformed: createLines(shared, { ...style, width: 1.25, opacity: 0.8, isDeformed: true }),
    undeformed: createLines(shared, { ...style, width: 1, lift: -2, isDeformed: false }),
    freeEdges: createLines(shared, { ...style, width: 2.6, lift: 1.5, isDeformed: true }),
  };
}

function listLoneBeams(model: PageModel, cornerNodes: Int32Array, edges: ShellEdges): number[] {
  const keyOf = (a: number, b: number): number => Math.min(a, b) * model.nodeCount + Math.max(a, b);
  const { beams } = model;
  const rows = Array.from({ length: beams.count }, (_, beam) => beam);
  const keys = rows.map((beam) => keyOf(beams.nodes[2 * beam], beams.nodes[2 * beam + 1]));
  const along = new Set(keys);
  const onEdges = new Set<number>();
  for (let at = 0; at < edges.all.length && along.size > 0; at += 2) {
    const key = keyOf(cornerNodes[edges.all[at]], cornerNodes[edges.all[at + 1]]);
    if (along.has(key)) onEdges.add(key);
  }
  return rows.filter((beam) => !onEdges.has(keys[beam]));
}

// displacements: [nodes x 6] or null.
export function showOutline(
  outline: Outline,
  hidden: Hidden,
  displacements: Float32Array | null,
): void {
  const { model, places, cornerNodes } = outline;
  const shapes = listShapes(outline, hidden);
  const isShown = (corner: number): boolean => {
    const { kind, number } = findCorner(model, corner);
    return !(kind === "shell" ? hidden.shells : hidden.triangles)[number];
  };
  const free: number[] = [];
  for (let at = 0; at < outline.edges.free.length; at += 2) {
    const [first, second] = outline.edges.free.subarray(at, at + 2);
    if (isShown(first)) free.push(cornerNodes[first], cornerNodes[second]);
  }
  const beams = outline.loneBeams.filter((beam) => !hidden.beams[beam]);
  const lone = beams.flatMap((beam) => [...model.beams.nodes.subarray(2 * beam, 2 * beam + 2)]);
  setLines(outline.deformed, joinNodes(places, shapes, displacements));
  setLines(outline.undeformed, joinNodes(places, shapes.concat(lone), null));
  setLines(outline.freeEdges, joinNodes(places, free, displacements));
}

// Pairs of nodes: the outline of what is shown.
function listShapes(outline: Outline, hidden: Hidden): number[] {
  const { model } = outline;
  if (!hidden.shells.includes(1) && !hidden.triangles.includes(1)) {
    return Array.from(outline.edges.outline, (corner) => outline.cornerNodes[corner]);
  }
  const mesh = {
    coordinates: model.coordinates,
    shells: takeShown(model.shells, hidden.shells),
    triangles: takeShown(model.triangles, hidden.triangles),
  };
  const nodes = listCornerNodes(mesh);
  return Array.from(findEdges(mesh).outline, (corner) => nodes[corner]);
}

function takeShown(table: ShellTable, isHidden: Uint8Array): { count: number; nodes: Int32Array } {
  const { corners, nodes } = table;
  let count = 0;
  const shown = new Int32Array(nodes.length);
  for (let row = 0; row < table.count; ++row) {
    if (isHidden[row]) continue;
    shown.set(nodes.subarray(corners * row, corners * row + corners), corners * count++);
  }
  return { count, nodes: shown.subarray(0, corners * count) };
}

// Lines between pairs of nodes, without those that do not exist. A node without a displacement
// stays.
export function joinNodes(
  places: Float32Array,
  asked: number[],
  displacements: Float32Array | null,
): LineList {
  const isThere = (node: number): boolean => node >= 0 && 3 * node < places.length;
  const pairs = asked.filter((node, at) => isThere(node) && isThere(asked[at ^ 1]));
  const count = pairs.length / 2;
  const take = (end: number, array: Float32Array, width: number): Float32Array => {
    const taken = new Float32Array(3 * count);
    for (let row = 0; row < count; ++row) {
      const from = width * pairs[2 * row + end];
      taken.set(array.subarray(from, from + 3), 3 * row);
    }
    return taken;
  };
  const move = (end: number): Float32Array | null =>
    displacements && clearNaN(take(end, displacements, 6));
  return {
    count,
    starts: take(0, places, 3),
    ends: take(1, places, 3),
    startMoves: move(0),
    endMoves: move(1),
    values: null,
    extents: null,
  };
}

function clearNaN(moves: Float32Array): Float32Array {
  for (let at = 0; at < moves.length; ++at) if (!Number.isFinite(moves[at])) moves[at] = 0;
  return moves;
}

export function paintOutline(outline: Outline, palette: Palette): void {
  setColor(outline.deformed.mesh.material.uniforms.lineColor, palette.outline);
  setColor(outline.undeformed.mesh.material.uniforms.lineColor, palette.undeformed);
  setColor(outline.freeEdges.mesh.material.uniforms.lineColor, palette.freeEdge);
}
