// The nodes that can be seen and picked: those of elements that are shown, and those of no element.

import type { PageModel } from "../data/page_model";
import type { Hidden } from "./outline";

// places: of nodes; those without one are left out.
export function listShownNodes(
  model: PageModel,
  hidden: Hidden,
  places: Float32Array,
): Uint32Array {
  const marks = new Uint8Array(model.nodeCount); // 1: of an element, 2: of one that is shown
  const mark = (nodes: Int32Array, width: number, isHidden: Uint8Array): void => {
    for (let at = 0; at < nodes.length; ++at) {
      const state = isHidden[Math.floor(at / width)] ? 1 : 2;
      if (marks[nodes[at]] < state) marks[nodes[at]] = state;
    }
  };
  mark(model.shells.nodes, 4, hidden.shells);
  mark(model.triangles.nodes, 3, hidden.triangles);
  mark(model.beams.nodes, 2, hidden.beams);
  const shown: number[] = [];
  for (let node = 0; node < model.nodeCount; ++node) {
    const sum = places[3 * node] + places[3 * node + 1] + places[3 * node + 2];
    if (marks[node] !== 1 && Number.isFinite(sum)) shown.push(node);
  }
  return new Uint32Array(shown);
}

// Nodes of no element.
export function listLoneNodes(model: PageModel): number[] {
  const isUsed = new Uint8Array(model.nodeCount);
  for (const table of [model.shells, model.triangles, model.beams]) {
    for (const node of table.nodes) isUsed[node] = 1;
  }
  const lone: number[] = [];
  for (let node = 0; node < model.nodeCount; ++node) if (!isUsed[node]) lone.push(node);
  return lone;
}
