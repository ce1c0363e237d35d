// What controls ask for (ui/actions.ts), done.

import type { Actions, Place, ViewName } from "./actions";
import { writeNow } from "./app_address";
import type { App } from "./app_parts";
import { copyText } from "./copy_text";
import { diagonalOf, findExtent } from "./extent";
import { addNotice } from "./notices";
import { measureInsets } from "./page";
import { placeOf } from "./place_of";
import { savePicture } from "./save_picture";
import { viewOf } from "./views";
import type { Kind } from "../data/page_model";
import type { ViewState } from "../state";

const FlightShare = 0.25; // of the model's diagonal is seen around a place that is flown to

export function makeActions(find: () => App | null): Actions {
  // Controls are made before the app is whole; nobody uses them before.
  const use = (call: (app: App) => void): void => {
    const app = find();
    if (app !== null) call(app);
  };
  return {
    change: (patch) => use((app) => change(app, patch)),
    view: (name) => use((app) => lookFrom(app, name)),
    fit: () => use((app) => app.scene.fit()),
    goTo: (kind, number, place) => use((app) => goTo(app, kind, number, place)),
    goToPlace: (place) => use((app) => fly(app, place)),
    focusPicture: () => use((app) => app.page.canvas.focus({ preventScroll: true })),
    savePicture: () => use((app) => void saveShown(app)),
    copyLink: () => use((app) => void copyLink(app)),
    openHelp: () => use((app) => app.page.help.open()),
    openList: (name) => use((app) => app.page.lists.open(name)),
    say: (text) => use((app) => tell(app, text)),
  };
}

// What cannot be shown is told, and the controls go back.
export function change(app: App, patch: Partial<ViewState>): void {
  app.store.change(patch).catch((error: unknown) => {
    const reason = error instanceof Error ? error.message : String(error);
    addNotice(app.page.notices, reason);
    void app.store.change({});
  });
}

function lookFrom(app: App, name: ViewName): void {
  app.scene.fit(viewOf(name));
}

export function goTo(app: App, kind: Kind, number: number, place: Place | null): void {
  change(app, { picked: { kind, number } });
  const found = place ?? placeOf(app.model, kind, number);
  if (found !== null) fly(app, found, { kind, number });
}

// Nearer, never farther: who looks closely keeps the scale.
function fly(app: App, place: Place, element?: { kind: Kind; number: number }): void {
  const size = FlightShare * diagonalOf(findExtent(app.model.coordinates));
  app.scene.fly(place, Math.min(size, app.scene.camera().height), element);
}

async function saveShown(app: App): Promise<void> {
  if (app.shown === null) return;
  try {
    await savePicture(app.scene, app.shown, app.page.canvas, measureInsets(app.page));
    tell(app, "Picture saved.");
  } catch (error) {
    addNotice(app.page.notices, `The picture was not saved: ${String(error)}`);
  }
}

async function copyLink(app: App): Promise<void> {
  writeNow(app);
  const isCopied = await copyText(window.location.href);
  const text = isCopied ? "Link copied." : "Copy the link from the address bar of the browser.";
  tell(app, text);
}

// To everyone, for a moment.
function tell(app: App, text: string): void {
  app.page.say(text);
  app.page.flash(text);
}
