// Displacements of nodes by the id of their quantity: "u" is the size of ux, uy, uz.

export const displacementIds = ["ux", "uy", "uz", "rx", "ry", "rz"];

// displacements: [nodes x 6]. The function gives NaN where there is no such node.
export function displacementValue(
  id: string,
  displacements: Float32Array,
): (node: number) => number {
  const component = displacementIds.indexOf(id);
  if (component >= 0) return (node) => displacements[6 * node + component] ?? NaN;
  return (node) =>
    Math.hypot(
      displacements[6 * node] ?? NaN,
      displacements[6 * node + 1],
      displacements[6 * node + 2],
    );
}
