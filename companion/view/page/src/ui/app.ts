// Wires the parts of the page: state, data, scene, controls, keys, address.

import { makeActions } from "./app_actions";
import { limitsOf, planAddress, readHash } from "./app_address";
import { listen } from "./app_events";
import type { App } from "./app_parts";
import { makeCaseReader } from "./case_data";
import { makeDerive } from "./derive";
import { drawingOf } from "./drawing";
import { chooseQuantities } from "./first_quantities";
import { addNotice } from "./notices";
import { makePage } from "./page";
import type { Shown } from "./shown";
import { makeStore } from "./store";
import { applyTheme, isDark } from "./theme";
import type { Cases } from "../data/load_model";
import type { PageModel } from "../data/page_model";
import { MapNames } from "../fields/color_maps";
import { createScene } from "../scene/create_scene";
import type { Scene } from "../scene/scene";
import { defaultState, type ViewState } from "../state";

// What scripts and tests see as window.kvx (main.ts).
export interface Hook {
  model: PageModel;
  scene: Scene;
  state: () => ViewState;
  change: (patch: Partial<ViewState>) => Promise<void>;
}

export async function startApp(parent: HTMLElement, model: PageModel, cases: Cases): Promise<Hook> {
  const defaults = await chooseDefaults(model, cases);
  const limits = limitsOf(model);
  const state = readHash(defaults, limits);
  applyTheme(state.theme);
  let app: App | null = null;
  const actions = makeActions(() => app);
  const page = makePage(parent, model, actions, MapNames);
  const scene = createScene(page.canvas, model, {
    onLost: (message) => message !== null && addNotice(page.notices, message),
  });
  const store = makeStore(state, makeCaseReader(model, cases), makeDerive(model), (shown) => {
    if (app !== null) show(app, shown);
  });
  app = { model, page, scene, store, defaults, limits, shown: null, written: "", timer: 0 };
  await store.change({});
  if (hasErrors(model)) page.lists.open("findings");
  listen(app, actions);
  return { model, scene, state: store.state, change: store.change };
}

const NarrowWidth = 900; // CSS pixels; below, the panel would leave no room for the picture

async function chooseDefaults(model: PageModel, cases: Cases): Promise<ViewState> {
  const row = model.cases.findIndex((each) => each.isSolved);
  const first = chooseQuantities(model, row < 0 ? null : await cases.results(row));
  const state = defaultState(first.shells, first.beams);
  return {
    ...state,
    shows: { ...state.shows, findings: hasErrors(model) },
    case: Math.max(0, row),
    isPanelOpen: window.innerWidth >= NarrowWidth,
  };
}

// Then the findings are what a reader has to see first.
function hasErrors(model: PageModel): boolean {
  return model.findings.some((finding) => finding.severity === "error");
}

function show(app: App, shown: Shown): void {
  applyTheme(shown.state.theme);
  app.scene.show(drawingOf(shown, isDark(shown.state.theme)));
  app.page.update(shown);
  app.shown = shown;
  planAddress(app);
}
