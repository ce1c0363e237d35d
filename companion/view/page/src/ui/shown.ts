// What the page shows at the moment, worked out from the state: what controls, legend, lists and
// card write. Made by ui/derive.ts.

import type { CaseLoads, CaseResults, CornerStresses } from "../data/page_model";
import type { DetailModels, PageModel } from "../data/page_model";
import type { Envelopes } from "./governing";
import type { Peak } from "./peaks";
import type { ColorScale } from "../fields/color_scale";
import type { Hidden } from "../fields/filters";
import type { BeamField, FieldRange, Quantity, ShellField } from "../fields/quantity";
import type { ViewState } from "../state";

export interface Shown {
  model: PageModel;
  state: ViewState;
  results: CaseResults | null; // null: not solved, or not yet read
  loads: CaseLoads | null; // null: an envelope
  corners: CornerStresses | null; // null: not needed, or none
  details: DetailModels | null; // null: beams are drawn as their sections
  shellQuantities: Quantity[]; // what this model has
  beamQuantities: Quantity[];
  shellQuantity: Quantity | null; // null: one colour
  beamQuantity: Quantity | null;
  shellField: ShellField | null;
  beamField: BeamField | null;
  detailField: ShellField | null; // in place of beamField
  envelopes: Envelopes;
  hidden: Hidden;
  automaticScale: number; // of displacements; 0: nothing moves
  scale: number;
  // Of what is not filtered out; null: no number anywhere.
  shellRange: FieldRange | null;
  beamRange: FieldRange | null;
  notNumbers: number;
  colors: ColorScale | null; // null: nothing is coloured by a quantity
  peaks: Peak[]; // the highest ones, falling
}

// The quantity that the legend names: that of the shells, where they have one.
export function mainQuantity(shown: Shown): Quantity | null {
  return shown.shellQuantity ?? shown.beamQuantity;
}

// Whether values lie below, above the range of the colours.
export function valuesBeyond(shown: Shown): [boolean, boolean] {
  const range = shown.colors?.range ?? [-Infinity, Infinity];
  const known = [shown.shellRange, shown.beamRange].filter((row) => row !== null);
  return [
    known.some((row) => row.lowest.value < range[0]),
    known.some((row) => row.highest.value > range[1]),
  ];
}

// Whether each place shows the largest of several values: their minimum is elsewhere. Of signed
// ones the largest by size is often the lowest.
export function showsLargest({ shellQuantity, beamQuantity, state }: Shown): boolean {
  const isLarger = shellQuantity?.hasFaces === true && state.face === "larger";
  const isSigned = (shellQuantity ?? beamQuantity)?.isSigned === true;
  return !isSigned && (isLarger || state.case === -1);
}
