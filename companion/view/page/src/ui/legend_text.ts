// What stands below the title of the legend, line by line.

import { describeEnvelope, describeFace } from "./face_text";
import { formatNumber } from "./numbers";
import { mainQuantity, type Shown } from "./shown";

// "case harbour", "lower face, averaged", "force/length²", "beams: axial force"
export function describeLegend(shown: Shown): string[] {
  const { shellQuantity, beamQuantity, state } = shown;
  const lines: string[] = [];
  const name = nameCase(shown);
  const hasCases = name !== "" && shown.model.cases.length > 1;
  if (hasCases) lines.push(state.case < 0 ? name : `case ${name}`);
  const kinds: string[] = [];
  if (shellQuantity?.hasFaces === true) kinds.push(describeFace(state.face));
  if (shellQuantity?.hasAverages === true) kinds.push(state.isAveraged ? "averaged" : "by element");
  lines.push(kinds.join(", "), mainQuantity(shown)?.unit ?? "");
  const hasBoth = shellQuantity !== null && beamQuantity !== null;
  if (hasBoth && beamQuantity.label !== shellQuantity.label) {
    lines.push(`beams: ${beamQuantity.label}`);
  }
  return lines.filter((line) => line !== "");
}

// The case that is shown, or what is shown of all; empty: the only one has no name.
export function nameCase({ state, model }: Shown): string {
  if (state.case < 0) return describeEnvelope(state.case);
  return model.cases[state.case]?.name ?? "";
}

// How far the shape is off the real one; empty: there are no displacements.
export function describeDeformation(shown: Shown): string {
  if (shown.results === null) return shown.state.case < 0 ? "Drawn undeformed" : "";
  if (shown.scale === 0) return "Drawn undeformed";
  const times = shown.scale === 1 ? "as they are" : `${formatNumber(shown.scale, 4)} times`;
  return `Displacements drawn ${times}`;
}
