// What a page is coloured by at first.

import { Plain } from "./pair_quantities";
import type { CaseResults, PageModel } from "../data/page_model";
import { listBeamQuantities, listShellQuantities } from "../fields/quantities";

// The stresses where there are results, else thicknesses and sections. Of beams it is the stress
// from section forces, which holds all along them; beside shells without a sign, as von Mises
// stress has none, and both share a scale. results: of the first case;
// null: it has none.
export function chooseQuantities(
  model: PageModel,
  results: CaseResults | null,
): { shells: string; beams: string } {
  const shells = listShellQuantities(model).map((row) => row.id);
  const beams = listBeamQuantities(model, results).map((row) => row.id);
  const pick = (known: string[], wanted: string[]): string =>
    wanted.find((id) => known.includes(id)) ?? Plain;
  if (shells.length === 0) {
    return { shells: Plain, beams: pick(beams, results === null ? ["section"] : ["beamStress"]) };
  }
  if (results === null) return { shells: pick(shells, ["thickness"]), beams: Plain };
  return { shells: "mises", beams: pick(beams, ["beamSize"]) };
}
