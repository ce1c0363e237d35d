// What happens outside of the controls: keys, clicks in the picture, turns of the camera, sizes, the
// address, the colours of the system.

import type { Actions } from "./actions";
import { change, goTo } from "./app_actions";
import { planAddress, readHash } from "./app_address";
import type { App } from "./app_parts";
import { listenToKeys } from "./keyboard";
import { measureInsets } from "./page";
import { listenToPicking } from "./picking";
import { nextTheme, onSystemTheme } from "./theme";
import { nearCamera, viewOf } from "./views";

export function listen(app: App, actions: Actions): void {
  const { scene, store, page } = app;
  scene.onCameraMoved(() => {
    store.note({ camera: scene.camera() });
    planAddress(app);
  });
  window.addEventListener("hashchange", () => {
    const state = readHash(app.defaults, app.limits);
    change(app, state);
    if (state.camera !== null) scene.setCamera(state.camera, true);
    else scene.fit(viewOf("iso"));
  });
  onSystemTheme(() => change(app, {}));
  followSizes(app);
  listenToPicking(page.canvas, scene, actions);
  listenToKeys(actions, {
    state: store.state,
    step: (factor) => stepScale(app, factor),
    near: (factor) => scene.setCamera(nearCamera(scene.camera(), factor), false),
    stepCase: (step) => stepCase(app, step),
    toggleList: (name) => page.lists.open(page.lists.opened() === name ? null : name),
    goToPicked() {
      const { picked } = store.state();
      if (picked !== null) goTo(app, picked.kind, picked.number, null);
    },
    nextTheme: () => change(app, { theme: nextTheme(store.state().theme) }),
    close: () => closeTopmost(app),
  });
}

// The picture keeps to what sheets leave free.
function followSizes(app: App): void {
  const { page, scene } = app;
  const sheets = [page.canvas, page.panel, page.legend, page.lists.root, page.notices];
  let known = "";
  const follow = (): void => {
    const insets = measureInsets(page);
    const text = JSON.stringify(insets);
    if (text !== known) scene.setInsets(insets);
    known = text;
    scene.resize();
  };
  const observer = new ResizeObserver(follow);
  for (const sheet of sheets) observer.observe(sheet);
  follow();
}

function stepScale(app: App, factor: number): void {
  if (app.shown === null) return;
  const scale = app.shown.scale * factor;
  if (Number.isFinite(scale)) change(app, { scale });
}

// From an envelope to the first, or last, case.
function stepCase(app: App, step: number): void {
  const { length } = app.model.cases;
  const present = app.store.state().case;
  const next = present >= 0 ? present + step : step > 0 ? 0 : length - 1;
  if (next >= 0 && next < length) change(app, { case: next });
}

function closeTopmost(app: App): void {
  const { page, store } = app;
  if (page.help.close()) return;
  const { activeElement } = document;
  if (activeElement instanceof HTMLInputElement && activeElement.inputMode !== "") {
    page.canvas.focus({ preventScroll: true }); // out of a field that takes text
    return;
  }
  if (store.state().picked !== null) change(app, { picked: null });
  else page.lists.open(null);
}
