// The bar at the top: the model's name, load case, standard views and tools.
//
// Accessible names: button "Controls", combobox "Load case"; toolbar "Views" with buttons
// "Isometric view", "Top view", "Bottom view", "Front view", "Back view", "Left view",
// "Right view", in narrow windows combobox "View"; buttons "Fit", "Orthographic", "Theme: ...",
// "Save picture", "Copy link", "Help".

import { ViewNames, type Actions, type ViewName } from "./actions";
import { make, makeButton, makeSelect, type Choice } from "./dom";
import { makeTool } from "./icons";
import type { Shown } from "./shown";
import { nextTheme } from "./theme";
import type { PageModel } from "../data/page_model";
import type { ViewState } from "../state";

const ViewTexts: Record<ViewName, [string, string]> = {
  iso: ["Iso", "Isometric view"],
  top: ["Top", "Top view"],
  bottom: ["Bottom", "Bottom view"],
  front: ["Front", "Front view"],
  back: ["Back", "Back view"],
  left: ["Left", "Left view"],
  right: ["Right", "Right view"],
};

const ThemeTexts: Record<ViewState["theme"], string> = {
  auto: "as the system",
  light: "light",
  dark: "dark",
};

export interface TopBar {
  root: HTMLElement;
  update(shown: Shown): void;
}

export function makeTopBar(model: PageModel, actions: Actions): TopBar {
  let state: ViewState | null = null;
  const change = (makePatch: (now: ViewState) => Partial<ViewState>) => () => {
    if (state !== null) actions.change(makePatch(state));
  };
  const panel = makeTool("panel", "Controls", "Show or hide the controls (C)", change((now) => ({
    isPanelOpen: !now.isPanelOpen,
  })));
  const cases = makeCaseSelect(model, actions);
  const orthographic = makeTool(
    "orthographic",
    "Orthographic",
    "No perspective: parallel lines stay parallel (O)",
    change((now) => ({ isOrthographic: !now.isOrthographic })),
  );
  const theme = makeTool("theme", "", "", change((now) => ({ theme: nextTheme(now.theme) })));
  const root = make(
    "header",
    { class: "topbar" },
    panel,
    make("h1", { text: model.title, title: model.title }),
    cases === null ? null : makeCaseLabel(cases),
    make("span", { class: "space" }),
    makeViews(actions),
    makeViewSelect(actions),
    make(
      "div",
      { class: "tools", attributes: { role: "toolbar", "aria-label": "Tools" } },
      makeTool("fit", "Fit", "Show all of the model (F)", actions.fit),
      orthographic,
      theme,
      makeTool("picture", "Save picture", "Save this view as PNG (P)", actions.savePicture),
      makeTool("link", "Copy link", "Copy the address of this view (L)", actions.copyLink),
      makeTool("help", "Help", "Mouse, keys, quantities (?)", actions.openHelp),
    ),
  );
  return {
    root,
    update(shown: Shown): void {
      state = shown.state;
      panel.setAttribute("aria-expanded", String(state.isPanelOpen));
      orthographic.setAttribute("aria-pressed", String(state.isOrthographic));
      const name = `Theme: ${ThemeTexts[state.theme]}`;
      theme.setAttribute("aria-label", name);
      theme.title = `${name} (T)`;
      if (cases !== null) cases.value = String(state.case);
    },
  };
}

function makeCaseSelect(model: PageModel, actions: Actions): HTMLSelectElement | null {
  if (model.cases.length < 2) return null;
  const choices: Choice[] = model.cases.map((row, index) => {
    const name = row.name === "" ? `Case ${index + 1}` : row.name;
    const text = row.isSolved ? name : `${name} (not solved)`;
    return { value: String(index), text, group: "Load case" };
  });
  if (model.cases.filter((row) => row.isSolved).length > 1) {
    choices.push({ value: "-1", text: "Highest of all", group: "Envelope" });
    choices.push({ value: "-2", text: "Lowest of all", group: "Envelope" });
  }
  const select = makeSelect("Load case", choices, (value) =>
    actions.change({ case: Number(value) }),
  );
  return select;
}

function makeCaseLabel(cases: HTMLSelectElement): HTMLElement {
  return make("label", { class: "case" }, make("span", { text: "Case" }), cases);
}

function makeViews(actions: Actions): HTMLElement {
  const buttons = ViewNames.map((name, index) =>
    makeButton(
      {
        text: ViewTexts[name][0],
        label: ViewTexts[name][1],
        title: `${ViewTexts[name][1]} (${index + 1})`,
      },
      () => actions.view(name),
    ),
  );
  const attributes = { role: "toolbar", "aria-label": "Views" };
  return make("div", { class: "views", attributes }, ...buttons);
}

// The views in a window that has no room for seven buttons.
function makeViewSelect(actions: Actions): HTMLSelectElement {
  const choices = ViewNames.map((name) => ({ value: name, text: ViewTexts[name][0] }));
  const select = makeSelect("View", [{ value: "", text: "View" }, ...choices], (value) => {
    const name = ViewNames.find((known) => known === value);
    if (name !== undefined) actions.view(name);
    select.value = "";
  });
  select.classList.add("view-list");
  return select;
}
