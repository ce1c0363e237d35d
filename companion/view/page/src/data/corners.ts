// Corners of shells: the places where fields have their values.
//
// Corner k of four-node element e has the index 4 e + k; corner k of triangle t has
// 4 shells + 3 t + k. So each corner of the model has one index, and arrays by corner one order.

import type { PageModel } from "./page_model";

// What a mesh of shells is made of: a PageModel, or the detail models as one.
export interface ShellMesh {
  coordinates: ArrayLike<number>; // [nodes x 3]
  shells: { count: number; nodes: Int32Array };
  triangles: { count: number; nodes: Int32Array };
}

export function countCorners(mesh: ShellMesh): number {
  return 4 * mesh.shells.count + 3 * mesh.triangles.count;
}

// The node of each corner.
export function listCornerNodes(mesh: ShellMesh): Int32Array {
  const nodes = new Int32Array(countCorners(mesh));
  nodes.set(mesh.shells.nodes);
  nodes.set(mesh.triangles.nodes, 4 * mesh.shells.count);
  return nodes;
}

export interface CornerPlace {
  kind: "shell" | "triangle";
  number: number; // of the element
  corner: number; // 0 .. 3
}

export function findCorner(model: Pick<PageModel, "shells">, index: number): CornerPlace {
  const first = 4 * model.shells.count; // of the triangles
  return index < first
    ? { kind: "shell", number: Math.floor(index / 4), corner: index % 4 }
    : { kind: "triangle", number: Math.floor((index - first) / 3), corner: (index - first) % 3 };
}

// The index of an element's first corner.
export function firstCorner(
  model: Pick<PageModel, "shells">,
  kind: "shell" | "triangle",
  number: number,
): number {
  return kind === "shell" ? 4 * number : 4 * model.shells.count + 3 * number;
}
