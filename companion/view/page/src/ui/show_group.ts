// What is drawn beside the colours.
//
// Accessible names: check boxes as in Texts below.

import type { Actions } from "./actions";
import { make, makeCheckBox, makeGroup } from "./dom";
import type { Control } from "./panel";
import type { Shown } from "./shown";
import type { PageModel } from "../data/page_model";
import type { ViewState } from "../state";

type Shows = ViewState["shows"];

const Texts: [keyof Shows, string][] = [
  ["shells", "Shells"],
  ["beams", "Beams"],
  ["edges", "Element edges"],
  ["outline", "Undeformed"],
  ["supports", "Supports"],
  ["loads", "Loads"],
  ["reactions", "Support forces"],
  ["diagrams", "Force diagrams"],
  ["freeEdges", "Free edges"],
  ["normals", "Side colours"],
  ["findings", "Findings"],
  ["shading", "Shading"],
  ["axes", "Global axes"],
];

const Tips: Partial<Record<keyof Shows, string>> = {
  outline: "The shape without displacements",
  freeEdges: "Edges of shells at which no other shell ends",
  normals: "Upper and lower side of the shells, each in a colour",
  diagrams: "Of the section force that colours the beams",
  reactions: "As they act on the structure",
  axes: "The global axes",
};

function explainLack(shown: Shown): string {
  return shown.state.case < 0 ? "Not in an envelope: of one load case" : "There are no results";
}

export function makeShowGroup(model: PageModel, actions: Actions): Control {
  let shown: Shown | null = null;
  const rows = Texts.filter(([key]) => isOfUse(key, model)).map(([key, text]) => ({
    key,
    ...makeCheckBox(text, (isChecked) => {
      if (shown !== null) actions.change({ shows: { ...shown.state.shows, [key]: isChecked } });
    }),
  }));
  const grid = make("div", { class: "checks" }, ...rows.map((row) => row.root));
  return {
    root: makeGroup("Show", true, grid),
    update(next: Shown): void {
      shown = next;
      for (const row of rows) {
        row.box.checked = next.state.shows[row.key];
        row.box.disabled = !isPossible(row.key, next);
        row.root.title = row.box.disabled ? explainLack(next) : (Tips[row.key] ?? "");
      }
    },
  };
}

// Whether the model has what could be shown.
function isOfUse(key: keyof Shows, model: PageModel): boolean {
  const shells = model.shells.count + model.triangles.count;
  if (key === "shells" || key === "freeEdges" || key === "normals") return shells > 0;
  if (key === "beams" || key === "diagrams") return model.beams.count > 0;
  if (key === "findings") return model.findings.length > 0;
  return true;
}

function isPossible(key: keyof Shows, shown: Shown): boolean {
  if (key === "reactions" || key === "outline") return shown.results !== null;
  if (key === "diagrams") return shown.results !== null;
  if (key === "loads") return shown.loads !== null;
  return true;
}
