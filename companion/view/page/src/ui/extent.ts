// The box around all nodes, global axes.

export interface Extent {
  low: [number, number, number];
  high: [number, number, number];
}

// coordinates: [nodes x 3]. Those that are no numbers do not count; without any the box is a point.
export function findExtent(coordinates: ArrayLike<number>): Extent {
  const low: [number, number, number] = [Infinity, Infinity, Infinity];
  const high: [number, number, number] = [-Infinity, -Infinity, -Infinity];
  for (let k = 0; k < coordinates.length; k++) {
    const value = coordinates[k] ?? NaN;
    const d = k % 3;
    if (value < (low[d] ?? 0)) low[d] = value;
    if (value > (high[d] ?? 0)) high[d] = value;
  }
  for (let d = 0; d < 3; d++) {
    if (!((low[d] ?? 0) <= (high[d] ?? 0))) low[d] = high[d] = 0;
  }
  return { low, high };
}

export function diagonalOf(extent: Extent): number {
  return Math.hypot(...extent.low.map((value, d) => (extent.high[d] ?? 0) - value));
}
