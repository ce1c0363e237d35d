// The address of the page, read and written.

import { readAddress, writeAddress, type AddressLimits } from "./address";
import type { App } from "./app_parts";
import { settleQuantities } from "./pair_quantities";
import type { PageModel } from "../data/page_model";
import { MapNames } from "../fields/color_maps";
import { beamQuantities, hasOwnValues, shellQuantities } from "../fields/quantities";
import type { ViewState } from "../state";

const AddressDelay = 250; // ms after the last change: browsers limit how often it may be written

export function readHash(defaults: ViewState, limits: AddressLimits): ViewState {
  const state = readAddress(window.location.hash, defaults, limits);
  return settleQuantities(state, defaults, shellQuantities, beamQuantities);
}

export function limitsOf(model: PageModel): AddressLimits {
  return {
    cases: model.cases.length,
    hasEnvelopes: model.cases.filter((row) => row.isSolved).length > 1,
    hasOwnValues: hasOwnValues(model),
    shellQuantities: shellQuantities.map((row) => row.id),
    beamQuantities: beamQuantities.map((row) => row.id),
    maps: MapNames,
    hidden: {
      thicknesses: model.thicknesses.length,
      materials: model.materials.length,
      sections: model.sections.length,
      parts: model.parts,
      groups: model.origin?.groups.length ?? 0,
    },
    counts: {
      node: model.nodeCount,
      shell: model.shells.count,
      triangle: model.triangles.count,
      beam: model.beams.count,
    },
  };
}

export function planAddress(app: App): void {
  window.clearTimeout(app.timer);
  app.timer = window.setTimeout(() => writeNow(app), AddressDelay);
}

export function writeNow(app: App): void {
  window.clearTimeout(app.timer);
  const hash = writeAddress(app.store.state(), app.defaults);
  if (hash === app.written && hash === window.location.hash) return;
  app.written = hash;
  const { pathname, search } = window.location;
  window.history.replaceState(null, "", `${pathname}${search}${hash}`);
}
