// The clipping plane.
//
// Accessible names: radio group "Plane across" ("Off", "x", "y", "z"), slider "Place of the plane",
// check box "Other side".

import type { Actions } from "./actions";
import { make, makeCheckBox, makeGroup, makeSegments, setText } from "./dom";
import { formatNumber } from "./numbers";
import type { Control } from "./panel";
import type { Shown } from "./shown";
import { findExtent } from "./extent";
import type { PageModel } from "../data/page_model";
import type { ViewState } from "../state";

type Clip = ViewState["clip"];

const Axes: { value: Clip["axis"]; text: string }[] = [
  { value: "none", text: "Off" },
  { value: "x", text: "x" },
  { value: "y", text: "y" },
  { value: "z", text: "z" },
];
const Steps = 1000; // of the slider

export function makeClipGroup(model: PageModel, actions: Actions): Control {
  const extent = findExtent(model.coordinates);
  let clip: Clip | null = null;
  const change = (patch: Partial<Clip>): void => {
    if (clip !== null) actions.change({ clip: { ...clip, ...patch } });
  };
  const axis = makeSegments("Plane across", Axes, (value) => {
    const chosen = Axes.find((known) => known.value === value);
    if (chosen !== undefined) change({ axis: chosen.value });
  });
  const limits = { type: "range", min: "0", max: String(Steps), step: "1" };
  const slider = make("input", { label: "Place of the plane", attributes: limits });
  slider.addEventListener("input", () => change({ share: slider.valueAsNumber / Steps }));
  const flip = makeCheckBox("Other side", (isFlipped) => change({ isFlipped }));
  const place = make("output", {});
  const row = make("div", { class: "row" }, flip.root, place);
  const more = make("div", { class: "more" }, slider, row);
  return {
    root: makeGroup("Clip", false, axis.root, more),
    update(shown: Shown): void {
      clip = shown.state.clip;
      axis.set(clip.axis);
      more.hidden = clip.axis === "none";
      slider.value = String(Math.round(clip.share * Steps));
      flip.box.checked = clip.isFlipped;
      if (clip.axis === "none") return;
      const d = "xyz".indexOf(clip.axis);
      const low = extent.low[d] ?? 0;
      const at = low + clip.share * ((extent.high[d] ?? 0) - low);
      const text = `${clip.axis} = ${formatNumber(at, 4)}`;
      setText(place, text);
      slider.setAttribute("aria-valuetext", text);
    },
  };
}
