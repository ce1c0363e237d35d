// Forces and moments per length of shells, in the element's own axes.
//
// With the stresses of both faces at a corner, n = t (upper + lower) / 2 and
// m = t^2 (upper - lower) / 12: n > 0 is tension, m > 0 stretches the upper face. qx and qy are
// those of the element's centre, at all its corners; triangles have none.

import { firstCorner } from "../data/corners";
import type { CornerStresses, PageModel } from "../data/page_model";
import { addRounded } from "./stress_tensor";

const components: Record<string, { isMoment: boolean; component: number }> = {
  nx: { isMoment: false, component: 0 },
  ny: { isMoment: false, component: 1 },
  nxy: { isMoment: false, component: 2 },
  mx: { isMoment: true, component: 0 },
  my: { isMoment: true, component: 1 },
  mxy: { isMoment: true, component: 2 },
};

export const resultantIds = [...Object.keys(components), "qx", "qy"];

// A value and the size of the numbers that it is a sum of: digits beyond the fifth of `size` are
// not sure.
export interface SumOfRounded {
  value: number;
  size: number;
}

// The values at the corners of one element.
export function resultantsOf(
  id: string,
  corners: CornerStresses,
  model: PageModel,
  kind: "shell" | "triangle",
  number: number,
): SumOfRounded[] {
  const table = kind === "shell" ? model.shells : model.triangles;
  if (id === "qx" || id === "qy") {
    const at = 2 * number + (id === "qx" ? 0 : 1);
    const shear = kind === "shell" ? corners.shear[at] : NaN;
    return Array.from({ length: table.corners }, () => ({ value: shear, size: 0 }));
  }
  const { isMoment, component } = components[id];
  const t = model.thicknesses[table.thickness[number]] ?? NaN;
  const first = firstCorner(model, kind, number);
  return Array.from({ length: table.corners }, (_, k) => {
    const upper = corners.upper[3 * (first + k) + component];
    const lower = corners.lower[3 * (first + k) + component];
    const factor = isMoment ? (t * t) / 12 : t / 2;
    const sum = addRounded(upper, isMoment ? -lower : lower);
    return { value: factor * sum, size: factor * (Math.abs(upper) + Math.abs(lower)) };
  });
}

// [4 shells + 3 triangles]
export function computeResultant(
  id: string,
  corners: CornerStresses,
  model: PageModel,
): Float32Array {
  const values = new Float32Array(corners.upper.length / 3);
  for (const kind of ["shell", "triangle"] as const) {
    const { count } = kind === "shell" ? model.shells : model.triangles;
    for (let number = 0; number < count; ++number) {
      const first = firstCorner(model, kind, number);
      resultantsOf(id, corners, model, kind, number).forEach(({ value }, k) => {
        values[first + k] = value;
      });
    }
  }
  return values;
}
