// Which load case governs a value of an envelope.

import type { PageModel } from "../data/page_model";
import type { BeamEnvelope, ShellEnvelope } from "../fields/envelope";
import type { PlacedValue } from "../fields/quantity";

// What is shown of all cases; rows of cases are those of the solved ones.
export interface Envelopes {
  shell: ShellEnvelope | null;
  beam: BeamEnvelope | null;
}

// The name of the case; empty: there is no envelope, or nothing governs.
export function governingCase(
  model: PageModel,
  envelopes: Envelopes,
  value: PlacedValue,
): string {
  const solved = model.cases.filter((row) => row.isSolved);
  return solved[governingRow(model, envelopes, value)]?.name ?? "";
}

function governingRow(model: PageModel, { shell, beam }: Envelopes, value: PlacedValue): number {
  if (value.kind === "beam") return beam?.cases[value.number] ?? -1;
  if (shell === null) return -1;
  const cases = value.face === "lower" ? shell.lowerCases : shell.upperCases;
  const first =
    value.kind === "shell" ? 4 * value.number : 4 * model.shells.count + 3 * value.number;
  return cases[first + value.corner] ?? -1;
}
