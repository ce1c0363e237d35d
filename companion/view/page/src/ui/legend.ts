// The legend: what the colours mean, where the highest and lowest value are, and the settings of
// the colour scale.
//
// Accessible names: region "Legend"; buttons "Maximum: ...", "Minimum: ..." or "Least shown: ...";
// group "Scale" (folded) with textboxes "From", "To", button "Whole range", check box "Same limits
// for all cases", comboboxes "Colour map", "Bands".

import type { Actions } from "./actions";
import { make, makeButton, makeCheckBox, makeField, makeGroup, makeSelect } from "./dom";
import { setText } from "./dom";
import { governingCase } from "./governing";
import { drawScale, makeSwatchRow } from "./legend_scale";
import { describeDeformation, describeLegend } from "./legend_text";
import { formatNumber, formatPlace, parseNumber } from "./numbers";
import type { Control } from "./panel";
import { headingOf } from "./quantity_text";
import { mainQuantity, showsLargest, valuesBeyond, type Shown } from "./shown";
import { isDark } from "./theme";
import type { PlacedValue } from "../fields/quantity";
import { darkPalette, lightPalette } from "../scene/palette";
import { notNumberColor } from "../fields/color_maps";

const BandCounts = [0, 5, 8, 10, 12, 16, 20];

export function makeLegend(actions: Actions, maps: readonly string[]): Control {
  const title = make("h2");
  const detail = make("div", { class: "detail" });
  const scale = make("div", { class: "scale" });
  const missing = make("p", { class: "missing" });
  const highest = makeExtreme("Maximum", actions);
  const lowest = makeExtreme("Minimum", actions);
  const settings = makeSettings(actions, maps);
  const sides = make("div", { class: "scale categories" });
  const parts = [title, detail, scale, missing, highest.root, lowest.root, settings.root];
  const colored = make("div", {}, ...parts);
  const deformation = make("p", { class: "deformation" });
  const all = [sides, colored, deformation];
  const root = make("section", { class: "legend sheet", label: "Legend" }, ...all);
  return {
    root,
    update(shown: Shown): void {
      const quantity = mainQuantity(shown);
      const hasSides = drawSides(sides, shown);
      // Front and back take the place of the shells' values.
      colored.hidden = quantity === null || (hasSides && shown.beamQuantity === null);
      setText(deformation, describeDeformation(shown));
      deformation.hidden = deformation.textContent === "";
      root.hidden = colored.hidden && !hasSides && deformation.hidden;
      if (quantity === null || shown.colors === null) return;
      setText(title, headingOf(quantity));
      writeLines(detail, describeLegend(shown));
      drawScale(scale, shown.colors, valuesBeyond(shown));
      writeMissing(missing, shown.notNumbers);
      const isScale = !quantity.isCategory;
      highest.update(isScale ? pickExtreme(shown, "highest") : null, shown);
      lowest.update(isScale ? pickExtreme(shown, "lowest") : null, shown);
      settings.root.hidden = !isScale;
      settings.update(shown);
    },
  };
}

function writeLines(root: HTMLElement, lines: string[]): void {
  if (lines.join() === [...root.children].map((line) => line.textContent).join()) return;
  root.replaceChildren(...lines.map((text) => make("p", { text })));
}

// The higher, or lower, one of shells and beams.
function pickExtreme(shown: Shown, end: "highest" | "lowest"): PlacedValue | null {
  const sign = end === "highest" ? 1 : -1;
  let best: PlacedValue | null = null;
  for (const range of [shown.shellRange, shown.beamRange]) {
    const found = range?.[end] ?? null;
    if (found !== null && (best === null || sign * found.value > sign * best.value)) best = found;
  }
  return best;
}

// The colours of both faces, where they are shown; whether they are.
function drawSides(root: HTMLElement, shown: Shown): boolean {
  const { model, state } = shown;
  const hasShells = model.shells.count + model.triangles.count > 0;
  root.hidden = !(state.shows.normals && state.shows.shells && hasShells);
  if (root.hidden) return false;
  const { front, back } = isDark(state.theme) ? darkPalette : lightPalette;
  const rows = [makeSwatchRow("upper face", front), makeSwatchRow("lower face", back)];
  root.replaceChildren(make("ul", {}, ...rows));
  return true;
}

function writeMissing(root: HTMLElement, count: number): void {
  root.hidden = count === 0;
  if (count === 0) return;
  const text = count === 1 ? "1 place without a number" : `${count} places without a number`;
  root.replaceChildren(...makeSwatchRow(text, notNumberColor).children);
}

function makeExtreme(
  name: string,
  actions: Actions,
): { root: HTMLElement; update(value: PlacedValue | null, shown: Shown): void } {
  let present: PlacedValue | null = null;
  const number = make("span", { class: "number" });
  const where = make("span", { class: "where" });
  const go = (): void => {
    if (present !== null) actions.goTo(present.kind, present.number, present.place);
  };
  const short = make("span", { class: "name" });
  const root = makeButton({ class: "extreme" }, go, short, number, where);
  return {
    root,
    update(value: PlacedValue | null, shown: Shown): void {
      present = value;
      root.hidden = value === null;
      if (value === null) return;
      setText(number, formatNumber(value.value));
      const isLeast = name === "Minimum" && showsLargest(shown);
      const isOfFace = value.face !== "middle" && value.kind !== "beam" && !isLeast;
      const face = isOfFace ? `, ${value.face} face` : "";
      setText(short, isLeast ? "least" : name === "Maximum" ? "max" : "min");
      const governing = governingCase(shown.model, shown.envelopes, value);
      const of = governing === "" ? "" : `, case ${governing}`;
      setText(where, `${value.kind} ${value.number}${face}${of}`);
      const place = formatPlace(value.place, 4);
      root.title = `At ${place}. Click to go there.`;
      const text = `${formatNumber(value.value)} in ${where.textContent ?? ""}, at ${place}`;
      root.setAttribute("aria-label", `${isLeast ? "Least shown" : name}: ${text}. Go there.`);
    },
  };
}

function makeSettings(actions: Actions, mapNames: readonly string[]): Control {
  let range: [number, number] = [0, 1];
  const change = (): void => {
    const low = parseNumber(from.value);
    const high = parseNumber(to.value);
    if (low !== null && high !== null && low < high) actions.change({ range: [low, high] });
  };
  const from = makeLimit("From", change);
  const to = makeLimit("To", change);
  const whole = makeButton({ text: "Whole range" }, () => actions.change({ range: null }));
  const maps = makeSelect(
    "Colour map",
    ["auto", ...mapNames].map((name) => ({
      value: name,
      text: name === "auto" ? "automatic" : name,
    })),
    (map) => actions.change({ map }),
  );
  const bands = makeSelect(
    "Bands",
    BandCounts.map((count) => ({
      value: String(count),
      text: count === 0 ? "none" : String(count),
    })),
    (value) => actions.change({ bands: Number(value) }),
  );
  const same = makeCheckBox("Same limits for all cases", (hasSameLimits) =>
    actions.change({ hasSameLimits, range: null }),
  );
  const root = makeGroup(
    "Scale",
    false,
    make("div", { class: "row" }, makeField("From", from), makeField("To", to)),
    whole,
    same.root,
    make("div", { class: "row" }, makeField("Colours", maps), makeField("Bands", bands)),
  );
  return {
    root,
    update(shown: Shown): void {
      range = shown.colors?.range ?? range;
      if (document.activeElement !== from) from.value = formatNumber(range[0]);
      if (document.activeElement !== to) to.value = formatNumber(range[1]);
      whole.disabled = shown.state.range === null;
      same.root.hidden = shown.model.cases.length < 2 || shown.state.case < 0;
      same.box.checked = shown.state.hasSameLimits;
      maps.value = shown.state.map;
      bands.value = String(shown.state.bands);
    },
  };
}

function makeLimit(label: string, change: () => void): HTMLInputElement {
  const input = make("input", { label, attributes: { type: "text", inputmode: "decimal" } });
  input.addEventListener("change", change);
  return input;
}
