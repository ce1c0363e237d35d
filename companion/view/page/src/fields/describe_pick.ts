// What the card says of a picked node, element or beam: groups of rows with a name and a value.
//
// Numbers of the model file have their own digits, those of result files six, those computed here
// five. Loads and reactions that are zero are left out.

import { describeBeam } from "./describe_beam";
import { describeNode } from "./describe_node";
import { nameInDeck } from "./describe_parts";
import { describeShell } from "./describe_shell";
import type { BeamEnvelope, ShellEnvelope } from "./envelope";
import type { BeamField, ShellField } from "./quantity";
import type { CaseLoads, CaseResults, CornerStresses, Kind, PageModel } from "../data/page_model";

export interface PickGroup {
  title: string; // empty: the first one
  rows: PickRow[];
}

export interface PickRow {
  name: string;
  value: string; // may hold text of the model
  exact?: string; // the value as the results have it, where the card shows less
}

// Null: not there, or not yet read.
export interface PickSources {
  model: PageModel;
  loads: CaseLoads | null;
  results: CaseResults | null;
  corners: CornerStresses | null;
  shellField: ShellField | null; // what is shown
  beamField?: BeamField | null;
  // Of all solved cases, where such are shown; then there are no results.
  envelopes?: { shell: ShellEnvelope | null; beam: BeamEnvelope | null };
}

const kindNames: Record<Kind, string> = {
  node: "Node",
  shell: "Shell",
  triangle: "Triangle",
  beam: "Beam",
};

// "Shell 5", of an imported model "Shell 5 · CQUAD4 5006" and "Node 3 · node 104 of the deck".
export function titlePick(model: PageModel, picked: { kind: Kind; number: number }): string {
  const name = nameInDeck(model, picked.kind, picked.number);
  const title = `${kindNames[picked.kind]} ${picked.number}`;
  if (name === "") return title;
  return `${title} · ${name}${picked.kind === "node" ? " of the deck" : ""}`;
}

// An element that does not exist has no groups.
export function describePick(
  sources: PickSources,
  picked: { kind: Kind; number: number },
): PickGroup[] {
  const groups = listGroups(sources, picked.kind, picked.number);
  return groups.filter((group) => group.rows.length > 0);
}

function listGroups(sources: PickSources, kind: Kind, number: number): PickGroup[] {
  const { model } = sources;
  if (kind === "node") {
    return number >= 0 && number < model.nodeCount ? describeNode(sources, number) : [];
  }
  const tables = { shell: model.shells, triangle: model.triangles, beam: model.beams };
  if (!(number >= 0 && number < tables[kind].count)) return [];
  return kind === "beam"
    ? describeBeam(sources, number)
    : describeShell(sources, kind, number);
}
