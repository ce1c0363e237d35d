// The data of the load cases that are shown, read when they are needed.

import { remember } from "./remember";
import type { Cases } from "../data/load_model";
import type { CaseLoads, CaseResults, CornerStresses } from "../data/page_model";
import type { DetailModels, PageModel } from "../data/page_model";
import { findShellQuantity } from "../fields/quantities";
import type { ViewState } from "../state";

export interface CaseData {
  row: number; // of PageModel.cases
  loads: CaseLoads;
  results: CaseResults | null;
  corners: CornerStresses | null; // null, too, where nothing shown needs them
  details: DetailModels | null;
}

// The case that is shown, or all solved cases for an envelope and for limits that are those of all
// cases. The same array while it is the same data.
export function makeCaseReader(
  model: PageModel,
  cases: Cases,
): (state: ViewState) => Promise<CaseData[]> {
  const read = remember((row: number, hasCorners: boolean, hasDetails: boolean) => {
    const solved = model.cases.map((_, each) => each).filter((each) => model.cases[each].isSolved);
    const rows = row < 0 ? solved : [row];
    return Promise.all(rows.map((each) => readCase(cases, each, hasCorners, hasDetails)));
  });
  return (state) => {
    const row = needsAll(model, state) ? -1 : state.case;
    return read(row, needsCorners(state), needsDetails(state));
  };
}

async function readCase(
  cases: Cases,
  row: number,
  hasCorners: boolean,
  hasDetails: boolean,
): Promise<CaseData> {
  const [loads, results, corners, details] = await Promise.all([
    cases.loads(row),
    cases.results(row),
    hasCorners ? cases.corners(row) : null,
    hasDetails ? cases.details(row) : null,
  ]);
  return { row, loads, results, corners, details };
}

// Detail models are read of one case at a time: all of them would be too many.
function needsAll(model: PageModel, state: ViewState): boolean {
  if (state.case < 0) return true;
  const isSolved = model.cases[state.case]?.isSolved ?? false;
  return state.hasSameLimits && isSolved && !needsDetails(state);
}

// Values of elements by themselves; a picked shell tells its own, too.
function needsCorners(state: ViewState): boolean {
  const kind = state.picked?.kind;
  if (kind === "shell" || kind === "triangle") return true;
  const quantity = findShellQuantity(state.shellQuantity);
  if (quantity === null) return false;
  return quantity.needs === "corners" || (quantity.hasAverages && !state.isAveraged);
}

function needsDetails(state: ViewState): boolean {
  return state.beamQuantity === "detail" && state.case >= 0;
}
