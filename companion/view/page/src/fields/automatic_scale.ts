// The scale of displacements that shows the deformed shape without exaggeration.

import type { CaseResults, PageModel } from "../data/page_model";

// The largest displacement is drawn as this part of the model's diagonal, or a little less.
const drawnPart = 0.05;

// 1, 2 or 5 times a power of ten; 0 where nothing moves or nothing has a number.
export function findAutomaticScale(model: PageModel, results: CaseResults): number {
  const largest = findLargestDisplacement(results.displacements);
  const diagonal = measureDiagonal(model.coordinates);
  if (!(largest > 0) || !(diagonal > 0)) return 0;
  return roundDown((drawnPart * diagonal) / largest);
}

// The size of the largest displacement; 0 where there is none. Nodes without numbers do not count.
export function findLargestDisplacement(displacements: Float32Array): number {
  let largest = 0;
  for (let at = 0; at + 5 < displacements.length; at += 6) {
    const size = Math.hypot(displacements[at], displacements[at + 1], displacements[at + 2]);
    if (size > largest && size < Infinity) largest = size;
  }
  return largest;
}

// Of the box around all nodes that have coordinates; 0 where there are none.
export function measureDiagonal(coordinates: Float64Array): number {
  const low = [Infinity, Infinity, Infinity];
  const high = [-Infinity, -Infinity, -Infinity];
  for (let i = 0; i < coordinates.length; ++i) {
    const value = coordinates[i];
    if (!Number.isFinite(value)) continue;
    if (value < low[i % 3]) low[i % 3] = value;
    if (value > high[i % 3]) high[i % 3] = value;
  }
  const diagonal = Math.hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]);
  return low[0] <= high[0] && low[1] <= high[1] && low[2] <= high[2] ? diagonal : 0;
}

function roundDown(value: number): number {
  const power = Math.floor(Math.log10(value));
  // From the largest; 0.5: where the logarithm was rounded up.
  const part = [5, 2, 1, 0.5].find((step) => Number(`${step}e${power}`) <= value) ?? 1;
  return Number(`${part}e${power}`);
}
