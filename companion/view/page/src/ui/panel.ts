// The panel at the left: groups of controls that can be folded.
//
// Accessible names: region "Controls"; the groups' names stand in ui/*_group.ts.

import type { Actions } from "./actions";
import { makeClipGroup } from "./clip_group";
import { makeDeformationGroup } from "./deformation_group";
import { make } from "./dom";
import { makeFilterGroup } from "./filter_group";
import { makeFindGroup } from "./find_group";
import { makeResultGroup } from "./result_group";
import { makeShowGroup } from "./show_group";
import type { Shown } from "./shown";
import type { PageModel } from "../data/page_model";

// A part of the page that follows what is shown.
export interface Control {
  root: HTMLElement;
  update(shown: Shown): void;
}

export function makePanel(model: PageModel, actions: Actions): Control {
  const groups: Control[] = [
    makeResultGroup(actions),
    makeDeformationGroup(actions),
    makeShowGroup(model, actions),
    makeFilterGroup(model, actions),
    makeClipGroup(model, actions),
    makeFindGroup(model, actions),
  ];
  const root = make(
    "section",
    { class: "panel sheet", label: "Controls" },
    ...groups.map((group) => group.root),
  );
  return {
    root,
    update(shown: Shown): void {
      root.hidden = !shown.state.isPanelOpen;
      for (const group of groups) group.update(shown);
    },
  };
}
