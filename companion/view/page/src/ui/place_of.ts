// Where a node is, or the middle of an element: of its nodes, undeformed.

import type { Place } from "./actions";
import type { Kind, PageModel } from "../data/page_model";

// Null: there is no such thing, or a coordinate of it is no number.
export function placeOf(model: PageModel, kind: Kind, number: number): Place | null {
  const nodes = nodesOf(model, kind, number);
  const place: Place = [0, 0, 0];
  for (const node of nodes) {
    for (let d = 0; d < 3; d++) place[d] += model.coordinates[3 * node + d] / nodes.length;
  }
  return nodes.length > 0 && place.every(Number.isFinite) ? place : null;
}

function nodesOf(model: PageModel, kind: Kind, number: number): number[] {
  if (kind === "node") return [number];
  if (kind === "beam") return [...model.beams.nodes.subarray(2 * number, 2 * number + 2)];
  const table = kind === "shell" ? model.shells : model.triangles;
  return [...table.nodes.subarray(table.corners * number, table.corners * (number + 1))];
}
