// Shells and beams share one colour map, one legend and one maximum. So what colours them must be
// comparable: of one unit, and both with a sign or both without; or the same category. Choosing one
// here settles the other.

import type { Shown } from "./shown";
import type { Quantity } from "../fields/quantity";
import type { ViewState } from "../state";

export const Plain = "plain"; // one colour

type Choice = Pick<ViewState, "shellQuantity" | "beamQuantity">;

// What goes with a quantity that the others do not have.
const Partners: Record<string, string> = {
  mises: "beamSize",
  membrane: "beamSize",
  beamSize: "mises",
  detailMiddle: "mises",
  detail: "mises",
  s1: "beamStress",
  s2: "beamStress",
};

export function canShareScale(one: Quantity, other: Quantity): boolean {
  if (one.isCategory || other.isCategory) return one.id === other.id;
  return one.unit === other.unit && one.isSigned === other.isSigned;
}

// The quantity of shells was chosen: that of beams follows.
export function pairBeam(shellId: string, shown: Shown): Choice {
  const { shellQuantities, beamQuantities, beamQuantity } = shown;
  const chosen = shellQuantities.find((row) => row.id === shellId);
  return {
    shellQuantity: chosen?.id ?? Plain,
    beamQuantity: findPartner(chosen, beamQuantities, beamQuantity),
  };
}

// The quantity of beams was chosen: that of shells follows.
export function pairShell(beamId: string, shown: Shown): Choice {
  const { shellQuantities, beamQuantities, shellQuantity } = shown;
  const chosen = beamQuantities.find((row) => row.id === beamId);
  return {
    shellQuantity: findPartner(chosen, shellQuantities, shellQuantity),
    beamQuantity: chosen?.id ?? Plain,
  };
}

// The same quantity, else what is shown if it fits, else the partner.
function findPartner(
  chosen: Quantity | undefined,
  others: readonly Quantity[],
  present: Quantity | null,
): string {
  if (chosen === undefined) return present?.id ?? Plain;
  const fitting = others.filter((row) => canShareScale(chosen, row));
  const found =
    fitting.find((row) => row.id === chosen.id) ??
    fitting.find((row) => row.id === present?.id) ??
    fitting.find((row) => row.id === Partners[chosen.id]);
  return found?.id ?? Plain;
}

// An address may name one of the two, and the default of the other may not go with it: the one that
// is not the default holds, and of two such that of the shells.
export function settleQuantities(
  state: ViewState,
  defaults: ViewState,
  shells: readonly Quantity[],
  beams: readonly Quantity[],
): ViewState {
  const shell = shells.find((row) => row.id === state.shellQuantity);
  const beam = beams.find((row) => row.id === state.beamQuantity);
  if (shell === undefined || beam === undefined || canShareScale(shell, beam)) return state;
  if (shell.id === defaults.shellQuantity) {
    return { ...state, shellQuantity: findPartner(beam, shells, null) };
  }
  return { ...state, beamQuantity: findPartner(shell, beams, null) };
}
