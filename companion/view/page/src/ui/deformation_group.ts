// How far displacements are exaggerated, and the animation.
//
// Accessible names: slider "Deformation", spinbutton "Scale of displacements", buttons
// "Automatic", "Animate".

import type { Actions } from "./actions";
import { make, makeButton, makeGroup, setText } from "./dom";
import { formatNumber, parseNumber } from "./numbers";
import type { Control } from "./panel";
import type { Shown } from "./shown";

// The slider goes from 0 to 10 times the automatic scale, as the square of its place: the automatic
// scale stands near a third of it, and small factors have room.
const LargestFactor = 10;
const Steps = 1000;
const SpinFactor = 1.25; // an arrow key in the number field

export function scaleOfSlider(step: number, automatic: number): number {
  // Three digits: the scale is read, too.
  return Number((automatic * LargestFactor * (step / Steps) ** 2).toPrecision(3));
}

export function sliderOfScale(scale: number, automatic: number): number {
  if (!(automatic > 0)) return 0;
  return Math.round(Steps * Math.sqrt(Math.min(1, scale / (LargestFactor * automatic))));
}

export function makeDeformationGroup(actions: Actions): Control {
  let shown: Shown | null = null;
  const limits = { type: "range", min: "0", max: String(Steps), step: "1" };
  const slider = make("input", { label: "Deformation", attributes: limits });
  const number = make("input", {
    label: "Scale of displacements",
    attributes: { type: "text", inputmode: "decimal", role: "spinbutton", "aria-valuemin": "0" },
  });
  const automatic = makeButton({ text: "Automatic" }, () => actions.change({ scale: null }));
  const animate = makeButton({ text: "Animate", title: "Swing between 0 and the scale (A)" }, () =>
    actions.change({ isAnimated: !(shown?.state.isAnimated ?? false) }),
  );
  const note = make("p", { class: "reason" });
  slider.addEventListener("input", () => {
    if (shown === null) return;
    actions.change({ scale: scaleOfSlider(slider.valueAsNumber, shown.automaticScale) });
  });
  number.addEventListener("change", () => {
    const value = parseNumber(number.value);
    if (value !== null && value >= 0) actions.change({ scale: value });
    else if (shown !== null) number.value = formatNumber(shown.scale, 4);
  });
  number.addEventListener("keydown", (event) => {
    const power = event.key === "ArrowUp" ? 1 : event.key === "ArrowDown" ? -1 : 0;
    if (shown === null || power === 0) return;
    event.preventDefault();
    const scale = Number((shown.scale * SpinFactor ** power).toPrecision(3));
    number.value = formatNumber(scale, 4);
    actions.change({ scale });
  });
  const row = make(
    "div",
    { class: "row" },
    make("label", { class: "times" }, make("span", { text: "×" }), number),
    automatic,
    animate,
  );
  return {
    root: makeGroup("Deformation", true, slider, row, note),
    update(next: Shown): void {
      shown = next;
      const canMove = next.automaticScale > 0;
      for (const control of [slider, number, automatic, animate]) control.disabled = !canMove;
      slider.value = String(sliderOfScale(next.scale, next.automaticScale));
      slider.setAttribute("aria-valuetext", `${formatNumber(next.scale, 4)} times`);
      if (document.activeElement !== number) number.value = formatNumber(next.scale, 4);
      number.setAttribute("aria-valuenow", formatNumber(next.scale, 4));
      automatic.setAttribute("aria-pressed", String(next.state.scale === null));
      animate.setAttribute("aria-pressed", String(next.state.isAnimated));
      setText(note, canMove ? "" : explainRest(next));
      note.hidden = canMove;
    },
  };
}

function explainRest(shown: Shown): string {
  if (shown.state.case < 0) return "An envelope has no deformed shape.";
  return shown.results === null ? "There are no results yet." : "Nothing moves in this case.";
}
