// The colour scale of a quantity: map, range, limits of bands, colours; or colours of categories.

import type { PageModel } from "../data/page_model";
import type { ViewState } from "../state";
import { listCategories } from "./categories";
import type { CategoryRow } from "./categories";
import { categoryColor, categoryTable, colorTable } from "./color_maps";
import type { Color } from "./color_maps";
import type { Quantity } from "./quantity";
import { findRoundRange, listLimits } from "./ticks";

export interface ColorScale {
  map: string; // "" of categories
  range: [number, number]; // of the table
  limits: number[]; // of bands, ascending; empty: categories
  colors: Uint8Array; // [256 x 3]
  categories: (CategoryRow & { color: Color })[];
}

// "auto": blue-red for values of both signs, else cividis.
function chooseMap(
  quantity: Quantity,
  chosen: string,
  lowest: number,
  highest: number,
): string {
  if (chosen !== "auto") return chosen;
  return quantity.isSigned && lowest < 0 && highest > 0 ? "blue-red" : "cividis";
}

// measured: lowest and highest of all that is shown; null: no number anywhere. The range that a
// person has typed holds as it is; else it is the measured one with round limits, symmetric where
// blue-red was chosen for it.
export function makeColorScale(
  quantity: Quantity,
  model: PageModel,
  measured: [number, number] | null,
  choice: Pick<ViewState, "map" | "bands" | "range">,
): ColorScale {
  if (quantity.isCategory) return makeCategoryScale(quantity.id, model);
  const [lowest, highest] = measured ?? [0, 1];
  const map = chooseMap(quantity, choice.map, lowest, highest);
  const round = findRoundRange(lowest, highest, choice.bands, map === "blue-red");
  const range = choice.range ?? round.range;
  return {
    map,
    range,
    limits: choice.range === null ? round.limits : listLimits(range, choice.bands),
    colors: colorTable(map, choice.bands, range),
    categories: [],
  };
}

function makeCategoryScale(id: string, model: PageModel): ColorScale {
  const rows = listCategories(id, model);
  const count = Math.max(1, rows.length);
  return {
    map: "",
    range: [-0.5, count - 0.5],
    limits: [],
    colors: categoryTable(id, count),
    categories: rows.map((row) => ({ ...row, color: categoryColor(id, row.row) })),
  };
}
